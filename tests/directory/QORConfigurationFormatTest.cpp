#include "FormatSupport.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORModelFormat.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORConfigurationFormat, IsAMetadataFormat) {
    expectConcrete<QORConfigurationFormat>(QORElementType::CONFIGURATION_FORMAT, 150, "ConfigurationFormat",
                                           QORMetadataFormat::getStaticMetaClass());
}

TEST(QORConfigurationFormat, FixesItsFormatType) {
    expectFixedFormatType<QORConfigurationFormat>("application/x-tova-tzc", "Configuration Metadata");
}

TEST(QORConfigurationFormat, RefusesToBeAssignedAnotherType) {
    expectRefusedAssignment<QORConfigurationFormat>("application/x-tova-tzc");
}

TEST(QORConfigurationFormat, CopiesItsTexts) {
    expectCopied<QORConfigurationFormat>("application/x-tova-tzc");
}

TEST(QORConfigurationFormat, IsReferencedThroughEachOfItsLinks) {
    using F = QORConfigurationFormat;
    expectReferencedThrough<F, QORModelFormat>(&F::addMetadataFormat, &F::removeMetadataFormat);
    expectReferencedThrough<F, QORConfigurationFormat>(&QORMetadataFormat::addConfigurationFormat,
                                                       &QORMetadataFormat::removeConfigurationFormat);
}

TEST(QORConfigurationFormat, SortsTheFormatsItAppliesToByName) {
    Held<QORConfigurationFormat> configuration;
    Held<QORModelFormat> b("b");
    Held<QORMappingFormat> a("a");
    Held<QORModelFormat> sameAsB("b");
    EXPECT_TRUE(configuration->addMetadataFormat(b));
    EXPECT_TRUE(configuration->addMetadataFormat(a));
    EXPECT_TRUE(configuration->addMetadataFormat(sameAsB));
    auto const [low, high] = byAddress(b.get(), sameAsB.get());
    EXPECT_EQ(configuration->getMetadataFormat(0), a.get());
    EXPECT_EQ(configuration->getMetadataFormat(1), low);
    EXPECT_EQ(configuration->getMetadataFormat(2), high);
    EXPECT_EQ(b->getConfigurationFormat(0), configuration.get());
}

TEST(QORConfigurationFormat, CanApplyToAnotherConfigurationButNotToItself) {
    Held<QORConfigurationFormat> one;
    Held<QORConfigurationFormat> two;
    EXPECT_TRUE(one->addMetadataFormat(two));
    EXPECT_EQ(two->getConfigurationFormat(0), one.get());
    EXPECT_FALSE(one->addMetadataFormat(one));
    EXPECT_FALSE(one->addConfigurationFormat(one));
    EXPECT_EQ(one->getMetadataFormatCount(), 1);
    EXPECT_EQ(one->getConfigurationFormatCount(), 0);
}

TEST(QORConfigurationFormat, DeletesFreeFormatsAfterWhatAMetadataFormatHas) {
    Journal journal;
    QORConfigurationFormat format;
    format.addMetadataFormat(watched<QORModelFormat>(journal, "format"));
    format.addConfigurationFormat(watched<QORConfigurationFormat>(journal, "configuration"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"configuration", "format"}));
}

TEST(QORConfigurationFormat, IsolatesTheFormatsItAppliesToFirst) {
    Journal journal;
    QORConfigurationFormat format;
    format.addVersion(watched<QORVersion>(journal, "version"));
    format.addConfigurationFormat(watched<QORConfigurationFormat>(journal, "configuration"));
    format.addMetadataFormat(watched<QORModelFormat>(journal, "format"));
    format.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"format", "configuration", "version"}));
}

TEST(QORConfigurationFormat, WalksNoFormat) {
    Held<QORConfigurationFormat> format;
    Held<QORModelFormat> model;
    format->addMetadataFormat(model);
    EXPECT_EQ(walkOf(*format), Objects{format});
}
