#include "Graph.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QORVersion.h>

TEST(QORModelFormat, DeletesItsModelAfterWhatAMetadataFormatHas) {
    Graph graph;
    QORModelFormat format;
    format.addDestinationOfMappingFormat(graph.mortal<QORMappingFormat>("destination of"));
    format.addSourceOfMappingFormat(graph.mortal<QORMappingFormat>("source of"));
    format.addModel(graph.mortal<QORModel>("model"));
    format.addConfigurationFormat(graph.mortal<QORConfigurationFormat>("configuration"));
    format.addDefaultOfVersion(graph.mortal<QORVersion>("default of"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"default of", "configuration", "model", "source of", "destination of"}));
}

TEST(QORModelFormat, IsolatesItsModelFirst) {
    Graph graph;
    QORModelFormat format;
    format.addVersion(graph.mortal<QORVersion>("version"));
    format.addConfigurationFormat(graph.mortal<QORConfigurationFormat>("configuration"));
    format.addDestinationOfMappingFormat(graph.mortal<QORMappingFormat>("destination of"));
    format.addSourceOfMappingFormat(graph.mortal<QORMappingFormat>("source of"));
    format.addModel(graph.mortal<QORModel>("model"));
    format.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"model", "source of", "destination of", "configuration", "version"}));
}

TEST(QORModelFormat, ReencodesAndWalksItsModelOnly) {
    Graph graph;
    auto* const format = graph.make<QORModelFormat>(inUtf8);
    auto* const model = graph.mortal<QORModel>("model");
    format->addModel(model);
    format->addSourceOfMappingFormat(graph.mortal<QORMappingFormat>("mapping"));
    EXPECT_EQ(walkOf(*format), (Objects{format, model}));
    Recoding recode;
    recode(*format);
    EXPECT_EQ(graph.recodings, Labels{"model"});
    EXPECT_STREQ(format->getName().chars, inLatin1);
    EXPECT_STREQ(format->getFormatType().chars, "application/x-tova-tzm");
}
