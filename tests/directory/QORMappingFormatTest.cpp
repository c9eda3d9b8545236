#include "FormatSupport.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORDataMovementFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORMappingModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QORVersion.h>

TEST(QORMappingFormat, RefusesToBeSetFromADataMovementFormat) {
    QORDataMovementFormat movement;
    movement.setAuthor("author");
    QORMappingFormat mapping;
    expectThrowsOne([&] { mapping.setFrom(movement); });
    EXPECT_STREQ(mapping.getName().chars, "ETL Metadata");
    EXPECT_STREQ(mapping.getAuthor().chars, "author");
    EXPECT_STREQ(mapping.getFormatType().chars, "application/x-tova-tzt");
}

TEST(QORMappingFormat, CanMapAModelOntoItself) {
    Graph graph;
    auto* const mapping = graph.make<QORMappingFormat>();
    auto* const model = graph.make<QORModelFormat>();
    EXPECT_TRUE(mapping->addSourceModelFormat(model));
    EXPECT_TRUE(mapping->addDestinationModelFormat(model));
    EXPECT_EQ(model->getSourceOfMappingFormat(0), mapping);
    EXPECT_EQ(model->getDestinationOfMappingFormat(0), mapping);
}

TEST(QORMappingFormat, DeletesItsModelThenFreeSourcesThenFreeDestinations) {
    Graph graph;
    QORMappingFormat format;
    format.addDestinationModelFormat(graph.mortal<QORModelFormat>("destination"));
    format.addSourceModelFormat(graph.mortal<QORModelFormat>("source"));
    format.addMappingModel(graph.mortal<QORMappingModel>("model"));
    format.addConfigurationFormat(graph.mortal<QORConfigurationFormat>("configuration"));
    format.addOriginalOfVersion(graph.mortal<QORVersion>("original of"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"original of", "configuration", "model", "source", "destination"}));
}

TEST(QORMappingFormat, IsolatesItsModelFirst) {
    Graph graph;
    QORMappingFormat format;
    format.addVersion(graph.mortal<QORVersion>("version"));
    format.addConfigurationFormat(graph.mortal<QORConfigurationFormat>("configuration"));
    format.addDestinationModelFormat(graph.mortal<QORModelFormat>("destination"));
    format.addSourceModelFormat(graph.mortal<QORModelFormat>("source"));
    format.addMappingModel(graph.mortal<QORMappingModel>("model"));
    format.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"model", "source", "destination", "configuration", "version"}));
}

TEST(QORMappingFormat, ReencodesAndWalksItsModelOnly) {
    Graph graph;
    auto* const format = graph.make<QORMappingFormat>();
    auto* const model = graph.mortal<QORMappingModel>("model");
    format->addMappingModel(model);
    format->addSourceModelFormat(graph.mortal<QORModelFormat>("source"));
    EXPECT_EQ(walkOf(*format), (Objects{format, model}));
    Recoding recode;
    recode(*format);
    EXPECT_EQ(graph.recodings, Labels{"model"});
}
