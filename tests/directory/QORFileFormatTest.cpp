#include "FormatSupport.h"

#include <qor/QORModelFormat.h>

using namespace graph;

TEST(QORFileFormat, IsAFormat) {
    expectConcrete<QORFileFormat>(QORElementType::FILE_FORMAT, 34, "FileFormat",
                                  QORFormat::getStaticMetaClass());
}

TEST(QORFileFormat, StartsEmpty) {
    QORFileFormat file;
    EXPECT_STREQ(file.getFormatType().chars, "");
    EXPECT_STREQ(file.getName().chars, "");
    EXPECT_STREQ(file.getLocation().chars, "");
}

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

TEST(QORFileFormat, ReencodesItsLocation) {
    QORFileFormat file;
    file.setLocation(rawText);
    file.setFormatType(stubbornText);
    file.setName(rawText);
    Recoding recode;
    recode(file);
    EXPECT_STREQ(file.getLocation().chars, recodedText);
    EXPECT_STREQ(file.getFormatType().chars, stubbornText);
    EXPECT_STREQ(file.getName().chars, recodedText);
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORFileFormat, ComparesAndCopiesLocationAndType) {
    expectCompared<QORFileFormat>([](auto& file) { file.setLocation("x"); });
    expectCompared<QORFileFormat>([](auto& file) { file.setFormatType("x"); });
    expectCompared<QORFileFormat>([](auto& file) { file.setAuthor("x"); });
    QORFileFormat source;
    fillStrange(source);
    source.setLocation("/tmp/x");
    source.setFormatType("text/plain");
    EXPECT_TRUE(QORFileFormat(source).equals(source));
    QORFileFormat target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
}

TEST(QORFileFormat, EqualsNoFormatOfAnotherClass) {
    QORModelFormat const model;
    QORFileFormat file;
    static_cast<QORFormat&>(file) = model;
    EXPECT_TRUE(file.QORFormat::finalEquals(model));
    EXPECT_FALSE(file.equals(model));
    EXPECT_FALSE(model.equals(file));
}
