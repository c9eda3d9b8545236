#include "FormatSupport.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORDataMovementFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORModelFormat.h>

namespace {

/// A class of metadata formats whose type is fixed, with that type and the name that a new one has.
struct ModelFormat {
    using Format = QORModelFormat;
    static constexpr char const* type = "application/x-tova-tzm";
    static constexpr char const* name = "Model Metadata";
};
struct MappingFormat {
    using Format = QORMappingFormat;
    static constexpr char const* type = "application/x-tova-tzt";
    static constexpr char const* name = "Transformation Metadata";
};
struct DataMovementFormat {
    using Format = QORDataMovementFormat;
    static constexpr char const* type = "application/x-tova-tze";
    static constexpr char const* name = "ETL Metadata";
};
struct ConfigurationFormat {
    using Format = QORConfigurationFormat;
    static constexpr char const* type = "application/x-tova-tzc";
    static constexpr char const* name = "Configuration Metadata";
};

template <class Row>
class QORFixedFormats : public testing::Test {
protected:
    typename Row::Format format;
};
using FixedFormats = testing::Types<ModelFormat, MappingFormat, DataMovementFormat, ConfigurationFormat>;
TYPED_TEST_SUITE(QORFixedFormats, FixedFormats);

} // namespace

TYPED_TEST(QORFixedFormats, StartWithTheirType) {
    EXPECT_STREQ(this->format.getFormatType().chars, TypeParam::type);
    EXPECT_STREQ(this->format.getName().chars, TypeParam::name);
}

TYPED_TEST(QORFixedFormats, RefuseAnyOtherTypeWhicheverWayItComes) {
    this->format.setFormatType(TypeParam::type);
    std::string const type = TypeParam::type;
    for (std::string const& refused : {std::string(), std::string("application/x-tova"), type + "x",
                                       std::string(type).replace(0, 1, "A"), type.substr(0, 20) + "z"}) {
        SCOPED_TRACE(refused);
        expectThrowsOne([&] { this->format.setFormatType(refused.c_str()); });
        expectThrowsOne([&] { static_cast<QORFormat&>(this->format).setFormatType(refused.c_str()); });
        EXPECT_STREQ(this->format.getFormatType().chars, TypeParam::type);
    }
}

TYPED_TEST(QORFixedFormats, RefuseTheTypesOfEachOther) {
    for (char const* const type :
         {ModelFormat::type, MappingFormat::type, DataMovementFormat::type, ConfigurationFormat::type}) {
        if (type != std::string(TypeParam::type))
            expectThrowsOne([&] { this->format.setFormatType(type); });
    }
    EXPECT_STREQ(this->format.getFormatType().chars, TypeParam::type);
}

TYPED_TEST(QORFixedFormats, RefuseAnotherTypeThroughReflection) {
    QORMetaAttribute const* const attribute =
        this->format.getMetaClass()->getMetaAttributeByID(QORAttributeType::FORMAT__FORMAT_TYPE);
    EXPECT_STREQ(attribute->getValue(&this->format).chars, TypeParam::type);
    QORString text(TypeParam::type);
    attribute->setValue(&this->format, text);
    text = "text/plain";
    expectThrowsOne([&] { attribute->setValue(&this->format, text); });
    EXPECT_STREQ(attribute->getValue(&this->format).chars, TypeParam::type);
}

TYPED_TEST(QORFixedFormats, ARefusedAssignmentHasWrittenTheOtherTexts) {
    QORFileFormat file;
    fillStrange(file);
    file.setFormatType("text/plain");
    this->format.setNativeId("id");
    expectThrowsOne([&] { static_cast<QORFormat&>(this->format) = file; });
    expectOverwritten(this->format);
    EXPECT_STREQ(this->format.getFormatType().chars, TypeParam::type);

    typename TypeParam::Format set;
    expectThrowsOne([&] { set.setFrom(file); });
    expectOverwritten(set);
    EXPECT_STREQ(set.getFormatType().chars, TypeParam::type);
}

TYPED_TEST(QORFixedFormats, AreSetFromAnyFormatOfTheirType) {
    QORFileFormat file;
    file.setFormatType(TypeParam::type);
    file.setName("of that type");
    auto const before = this->format.getElementType();
    this->format.setFrom(file);
    EXPECT_STREQ(this->format.getName().chars, "of that type");
    EXPECT_STREQ(this->format.getFormatType().chars, TypeParam::type);
    EXPECT_EQ(this->format.getElementType(), before);
}
