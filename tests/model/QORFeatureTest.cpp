#include "Expectations.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORAliasFeature.h>
#include <qor/QORAttributeMap.h>
#include <qor/QORBaseType.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORModel.h>
#include <qor/QORSQLViewAttribute.h>

namespace {

/// A feature is abstract: an alias has nothing besides.
void link(Graph& graph, QORAliasFeature& object, Owners owners) {
    linkLayers(graph, object);
    linkOwnerMade<QORAliasClassifier>(graph, owners, "classifier", object, &QORFeature::addClassifier);
    ASSERT_TRUE(object.addSourceOfSQLViewAttribute(graph.mortal<QORSQLViewAttribute>("view attribute")));
    ASSERT_TRUE(object.addDestinationOfFeatureMap(graph.mortal<QORFeatureMap>("destination map")));
    ASSERT_TRUE(object.addSourceOfFeatureMap(graph.mortal<QORAttributeMap>("source map")));
    ASSERT_TRUE(object.addType(graph.mortal<QORBaseType>("type")));
}

} // namespace

TEST(QORFeature, IsTakenApartInOrder) {
    expectTakenApart<QORAliasFeature>(
        link,
        {"type", "classifier", "source map", "destination map", "view attribute", "base", "synonym", "note"},
        {"note", "synonym", "base", "type", "source map", "destination map", "view attribute"});
}

TEST(QORFeature, ReachesWhatAModelObjectReaches) {
    expectChildrenReached<QORAliasFeature>(link, {"note", "synonym"});
}

TEST(QORFeature, ItsTypeDiesWithTheLastReference) {
    Graph graph;
    auto* const type = graph.mortal<QORBaseType>("type");
    auto* const first = new QORAliasFeature;
    auto* const second = new QORAliasFeature;
    ASSERT_TRUE(first->addType(type) && second->addType(type));
    delete first;
    EXPECT_EQ(graph.deaths, Labels());
    delete second;
    EXPECT_EQ(graph.deaths, Labels{"type"});
}

TEST(QORFeature, ATypeWithAnOwnerSurvives) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const type = graph.make<QORBaseType>();
    auto* const feature = new QORAliasFeature;
    ASSERT_TRUE(model->addType(type) && feature->addType(type));
    delete feature;
    EXPECT_EQ(type->getFeatureCount(), 0);
    EXPECT_EQ(model->getType(0), type);
}
