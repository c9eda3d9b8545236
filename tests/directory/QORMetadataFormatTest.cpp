#include "FormatSupport.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORMetadataFormat.h>
#include <qor/QORVersion.h>

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
    CustomFormat format(inUtf8);
    Recoding recode;
    recode(format);
    EXPECT_STREQ(format.getFormatType().chars, inLatin1);
}

TEST(QORMetadataFormat, SortsConfigurationsByNameAndLeavesThemWhereTheyAreWhenRenamed) {
    Graph graph;
    auto* const format = graph.make<CustomFormat>();
    auto* const b = graph.make<QORConfigurationFormat>("b");
    auto* const a = graph.make<QORConfigurationFormat>("a");
    EXPECT_TRUE(format->addConfigurationFormat(b));
    EXPECT_TRUE(a->addMetadataFormat(format));
    EXPECT_EQ(format->getConfigurationFormat(0), a);
    a->setName("z");
    EXPECT_EQ(format->getConfigurationFormat(0), a);
    EXPECT_EQ(format->getConfigurationFormat(1), b);
    a->setName("a");
}

TEST(QORMetadataFormat, LosesAConfigurationThatDiesUnderANewName) {
    Graph graph;
    auto* const format = graph.make<CustomFormat>();
    std::vector<QORConfigurationFormat*> kept;
    for (char const* const name : {"b", "c", "d", "e", "f", "g"}) {
        kept.push_back(graph.make<QORConfigurationFormat>(name));
        format->addConfigurationFormat(kept.back());
    }
    auto* const renamed = named<QORConfigurationFormat>("a");
    format->addConfigurationFormat(renamed);
    renamed->setName("z");
    delete renamed;
    ASSERT_EQ(format->getConfigurationFormatCount(), 6);
    EXPECT_EQ(listOf(6, [&](int i) { return format->getConfigurationFormat(i); }), kept);
}

TEST(QORMetadataFormat, DeletesFreeConfigurationsAfterWhatAFormatHas) {
    Graph graph;
    auto* const version = graph.make<QORVersion>();
    auto* const kept = graph.make<QORConfigurationFormat>();
    version->addFormat(kept);
    CustomFormat format;
    format.addConfigurationFormat(kept);
    format.addConfigurationFormat(graph.mortal<QORConfigurationFormat>("configuration"));
    format.addOriginalOfVersion(graph.mortal<QORVersion>("original of"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"original of", "configuration"}));
    EXPECT_EQ(kept->getMetadataFormatCount(), 0);
    EXPECT_EQ(kept->getVersion(), version);
}

TEST(QORMetadataFormat, IsolatesConfigurationsBeforeWhatAFormatHas) {
    Graph graph;
    CustomFormat format;
    format.addVersion(graph.mortal<QORVersion>("version"));
    format.addConfigurationFormat(graph.mortal<QORConfigurationFormat>("configuration"));
    format.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"configuration", "version"}));
}
