#include "Graph.h"

#include <qor/QORClass.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORDerivedType.h>
#include <qor/QOREnumeratedAttributeMap.h>
#include <qor/QOREnumeratedTypeMap.h>
#include <qor/QORTransformation.h>

TEST(QOREnumeratedTypeMap, ShowsItsDestinationClassifierAndNoType) {
    Graph graph;
    auto* const map = graph.make<QOREnumeratedTypeMap>("map");
    map->addDestinationDerivedType(graph.make<QORDerivedType>("type"));
    EXPECT_STREQ(map->getDisplayName().chars, "map");
    map->addDestinationClassifier(graph.make<QORClass>("destination"));
    EXPECT_STREQ(map->getDisplayName().chars, "destination");
}

TEST(QOREnumeratedTypeMap, DeletesWhatAClassifierMapHasBeforeItsOwnEnds) {
    Graph graph;
    QOREnumeratedTypeMap map;
    map.addEnumeratedAttributeMap(graph.mortal<QOREnumeratedAttributeMap>("attribute map"));
    map.addDestinationDerivedType(graph.mortal<QORDerivedType>("destination"));
    map.addSourceDerivedType(graph.mortal<QORDerivedType>("source"));
    map.addSourceClassifier(graph.mortal<QORClass>("classifier"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"classifier", "source", "destination", "attribute map"}));
}

TEST(QOREnumeratedTypeMap, LeavesAnAttributeMapThatHasItsClassifierMap) {
    Graph graph;
    auto* const owner = graph.make<QORClassifierMap>();
    auto* const kept = graph.make<QOREnumeratedAttributeMap>();
    owner->addFeatureMap(kept);
    auto* const map = new QOREnumeratedTypeMap;
    map->addEnumeratedAttributeMap(kept);
    map->addEnumeratedAttributeMap(graph.mortal<QOREnumeratedAttributeMap>("free"));
    delete map;
    EXPECT_EQ(graph.deaths, Labels{"free"});
    EXPECT_EQ(kept->getEnumeratedTypeMap(), nullptr);
    EXPECT_EQ(kept->getClassifierMap(), owner);
}

TEST(QOREnumeratedTypeMap, IsolatesItsOwnEndsFirst) {
    Graph graph;
    QOREnumeratedTypeMap map;
    map.addSourceClassifier(graph.mortal<QORClass>("classifier"));
    map.addTransformation(graph.mortal<QORTransformation>("transformation"));
    map.addEnumeratedAttributeMap(graph.mortal<QOREnumeratedAttributeMap>("attribute map"));
    map.addDestinationDerivedType(graph.mortal<QORDerivedType>("destination"));
    map.addSourceDerivedType(graph.mortal<QORDerivedType>("source"));
    map.isolate(true);
    EXPECT_EQ(graph.deaths,
              (Labels{"source", "destination", "attribute map", "transformation", "classifier"}));
}

TEST(QOREnumeratedTypeMap, WalksNoAttributeMap) {
    Graph graph;
    auto* const map = graph.make<QOREnumeratedTypeMap>();
    auto* const attributeMap = graph.make<QOREnumeratedAttributeMap>();
    map->addEnumeratedAttributeMap(attributeMap);
    EXPECT_EQ(walkOf(*map), Objects{map});
    EXPECT_EQ(attributeMap->getParent(), nullptr);
}

TEST(QOREnumeratedTypeMap, OneTypeCanBeBothSourceAndDestination) {
    Graph graph;
    auto* const map = graph.make<QOREnumeratedTypeMap>();
    auto* const type = graph.make<QORDerivedType>();
    EXPECT_TRUE(map->addSourceDerivedType(type));
    EXPECT_TRUE(map->addDestinationDerivedType(type));
    EXPECT_EQ(type->getSourceOfEnumeratedTypeMap(0), map);
    EXPECT_EQ(type->getDestinationOfEnumeratedTypeMap(0), map);
    EXPECT_TRUE(map->removeSourceDerivedType()); // still the destination, so it lives on
    EXPECT_EQ(map->getDestinationDerivedType(), type);
}
