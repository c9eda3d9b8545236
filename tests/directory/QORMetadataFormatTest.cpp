#include "FormatSupport.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORMetadataFormat.h>
#include <qor/QORModelFormat.h>
#include <qor/QORVersion.h>

using namespace graph;

namespace {

/// A caller's metadata format, whose type only its own class can set.
class CustomFormat : public QORMetadataFormat {
public:
    explicit CustomFormat(char const* type = "application/x-custom") { QORFormat::setFormatType(type); }
};

template <class Operation>
void expectTypeRefused(Operation const& operation) {
    try {
        operation();
        ADD_FAILURE() << "nothing was thrown";
    } catch (QORException const& exception) {
        EXPECT_STREQ(exception.what(), QORSDK::ILLEGAL_FORMAT_TYPE.getMessage().chars);
        EXPECT_NE(std::string(exception.what())
                      .find("The formatType property of a MetadataFormat object cannot be changed"),
                  std::string::npos);
    }
}

} // namespace

TEST(QORMetadataFormat, IsAnAbstractFormat) {
    expectAbstract<QORMetadataFormat>(QORElementType::METADATA_FORMAT, 35, "MetadataFormat",
                                      QORFormat::getStaticMetaClass());
}

TEST(QORMetadataFormat, RefusesAnotherTypeThanThePresentOneWithAMessage) {
    CustomFormat format;
    format.setFormatType("application/x-custom");
    for (char const* refused :
         {"", "application/x-custon", "application/x-custom ", "application/x-tova-tzm"}) {
        SCOPED_TRACE(refused);
        expectTypeRefused([&] { format.setFormatType(refused); });
        expectTypeRefused([&] { static_cast<QORFormat&>(format).setFormatType(refused); });
        EXPECT_STREQ(format.getFormatType().chars, "application/x-custom");
    }
    CustomFormat empty("");
    empty.setFormatType("");
    expectTypeRefused([&] { empty.setFormatType("x"); });
}

TEST(QORMetadataFormat, RefusesAnotherTypeThroughReflection) {
    CustomFormat format;
    QORMetaAttribute const* const attribute =
        format.getMetaClass()->getMetaAttributeByID(QORAttributeType::FORMAT__FORMAT_TYPE);
    QORString text("application/x-custom");
    attribute->setValue(&format, text);
    text = "text/plain";
    expectTypeRefused([&] { attribute->setValue(&format, text); });
    EXPECT_STREQ(attribute->getValue(&format).chars, "application/x-custom");
}

TEST(QORMetadataFormat, RefusesToBeAssignedAnotherTypeAfterTheOtherTexts) {
    QORFileFormat file;
    fillStrange(file);
    file.setFormatType("text/plain");
    CustomFormat format;
    format.setNativeId("id");
    expectTypeRefused([&] { static_cast<QORFormat&>(format) = file; });
    expectOverwritten(format);
    EXPECT_STREQ(format.getFormatType().chars, "application/x-custom");

    CustomFormat const other("application/x-other");
    expectTypeRefused([&] { format = other; });
    EXPECT_STREQ(format.getName().chars, "");
    EXPECT_STREQ(format.getFormatType().chars, "application/x-custom");
}

TEST(QORMetadataFormat, IsAssignedFromOneOfItsType) {
    CustomFormat source;
    fillStrange(source);
    CustomFormat target;
    target = source;
    expectOverwritten(target);
}

TEST(QORMetadataFormat, CopyConstructorNeverRefuses) {
    CustomFormat const source("application/x-other");
    CustomFormat const copy(source);
    EXPECT_STREQ(copy.getFormatType().chars, "application/x-other");
}

TEST(QORMetadataFormat, ReencodesItsTypeWithoutAskingTheSetter) {
    CustomFormat format(rawText);
    Recoding recode;
    recode(format);
    EXPECT_STREQ(format.getFormatType().chars, recodedText);
}

TEST(QORMetadataFormat, IsReferencedThroughItsConfigurations) {
    using F = QORMetadataFormat;
    expectReferencedThrough<CustomFormat, QORConfigurationFormat>(&F::addConfigurationFormat,
                                                                  &F::removeConfigurationFormat);
    expectReferencedThrough<CustomFormat, QORVersion>(&QORFormat::addVersion, &QORFormat::removeVersion);
}

TEST(QORMetadataFormat, SortsConfigurationsByNameAndLeavesThemWhereTheyAreWhenRenamed) {
    Held<CustomFormat> format;
    Held<QORConfigurationFormat> b("b");
    Held<QORConfigurationFormat> a("a");
    EXPECT_TRUE(format->addConfigurationFormat(b));
    EXPECT_TRUE(a->addMetadataFormat(format));
    EXPECT_EQ(format->getConfigurationFormat(0), a.get());
    a->setName("z");
    EXPECT_EQ(format->getConfigurationFormat(0), a.get());
    EXPECT_EQ(format->getConfigurationFormat(1), b.get());
    a->setName("a");
}

TEST(QORMetadataFormat, LosesAConfigurationThatDiesUnderANewName) {
    Held<CustomFormat> format;
    Held<QORConfigurationFormat> kept[6];
    char const* const names[] = {"b", "c", "d", "e", "f", "g"};
    for (int i = 0; i < 6; ++i) {
        kept[i]->setName(names[i]);
        format->addConfigurationFormat(kept[i]);
    }
    auto* const renamed = named<QORConfigurationFormat>("a");
    format->addConfigurationFormat(renamed);
    renamed->setName("z");
    delete renamed;
    ASSERT_EQ(format->getConfigurationFormatCount(), 6);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(format->getConfigurationFormat(i), kept[i].get());
}

TEST(QORMetadataFormat, DeletesFreeConfigurationsAfterWhatAFormatHas) {
    Journal journal;
    Held<QORVersion> version;
    Held<QORConfigurationFormat> kept;
    version->addFormat(kept);
    CustomFormat format;
    format.addConfigurationFormat(kept);
    format.addConfigurationFormat(watched<QORConfigurationFormat>(journal, "configuration"));
    format.addOriginalOfVersion(watched<QORVersion>(journal, "original of"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"original of", "configuration"}));
    EXPECT_EQ(kept->getMetadataFormatCount(), 0);
    EXPECT_EQ(kept->getVersion(), version.get());
}

TEST(QORMetadataFormat, IsolatesConfigurationsBeforeWhatAFormatHas) {
    Journal journal;
    CustomFormat format;
    format.addVersion(watched<QORVersion>(journal, "version"));
    format.addConfigurationFormat(watched<QORConfigurationFormat>(journal, "configuration"));
    format.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"configuration", "version"}));
}
