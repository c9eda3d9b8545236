#include "FormatSupport.h"

#include <qor/QORModelFormat.h>

TEST(QORFileFormat, TakesAnyFormatTypeAlsoThroughReflection) {
    QORFileFormat file;
    for (char const* type : {"text/plain", "application/x-tova-tzm", ""}) {
        file.setFormatType(type);
        EXPECT_STREQ(file.getFormatType().chars, type);
    }
    QORMetaAttribute const* const attribute =
        QORFileFormat::getStaticMetaClass()->getMetaAttributeByDisplayName("formatType");
    QORString text("anything");
    attribute->setValue(&file, text);
    EXPECT_STREQ(file.getFormatType().chars, "anything");
    EXPECT_STREQ(attribute->getValue(&file).chars, "anything");
}

TEST(QORFileFormat, EqualsNoFormatOfAnotherClass) {
    QORModelFormat const model;
    QORFileFormat file;
    static_cast<QORFormat&>(file) = model;
    EXPECT_TRUE(file.QORFormat::finalEquals(model));
    EXPECT_FALSE(file.equals(model));
    EXPECT_FALSE(model.equals(file));
}
