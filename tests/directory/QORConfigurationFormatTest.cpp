#include "Graph.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORModelFormat.h>
#include <qor/QORVersion.h>

TEST(QORConfigurationFormat, SortsTheFormatsItAppliesToByName) {
    Graph graph;
    auto* const configuration = graph.make<QORConfigurationFormat>();
    auto* const b = graph.make<QORModelFormat>("b");
    auto* const a = graph.make<QORMappingFormat>("a");
    auto* const sameAsB = graph.make<QORModelFormat>("b");
    EXPECT_TRUE(configuration->addMetadataFormat(b));
    EXPECT_TRUE(configuration->addMetadataFormat(a));
    EXPECT_TRUE(configuration->addMetadataFormat(sameAsB));
    auto const [low, high] = byAddress(b, sameAsB);
    EXPECT_EQ(configuration->getMetadataFormat(0), a);
    EXPECT_EQ(configuration->getMetadataFormat(1), low);
    EXPECT_EQ(configuration->getMetadataFormat(2), high);
    EXPECT_EQ(b->getConfigurationFormat(0), configuration);
}

TEST(QORConfigurationFormat, DeletesFreeFormatsAfterWhatAMetadataFormatHas) {
    Graph graph;
    QORConfigurationFormat format;
    format.addMetadataFormat(graph.mortal<QORModelFormat>("format"));
    format.addConfigurationFormat(graph.mortal<QORConfigurationFormat>("configuration"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"configuration", "format"}));
}

TEST(QORConfigurationFormat, IsolatesTheFormatsItAppliesToFirst) {
    Graph graph;
    QORConfigurationFormat format;
    format.addVersion(graph.mortal<QORVersion>("version"));
    format.addConfigurationFormat(graph.mortal<QORConfigurationFormat>("configuration"));
    format.addMetadataFormat(graph.mortal<QORModelFormat>("format"));
    format.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"format", "configuration", "version"}));
}

TEST(QORConfigurationFormat, WalksNoFormat) {
    Graph graph;
    auto* const format = graph.make<QORConfigurationFormat>();
    format->addMetadataFormat(graph.make<QORModelFormat>());
    EXPECT_EQ(walkOf(*format), Objects{format});
}
