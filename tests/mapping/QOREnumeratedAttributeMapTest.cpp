#include "Graph.h"

#include <qor/QORAttribute.h>
#include <qor/QORClassifierMap.h>
#include <qor/QOREnumeratedAttributeMap.h>
#include <qor/QOREnumeratedTypeMap.h>
#include <qor/QORTransformation.h>

TEST(QOREnumeratedAttributeMap, IsNotOwnedByItsTypeMap) {
    Graph graph;
    auto* const map = graph.make<QOREnumeratedAttributeMap>();
    auto* const typeMap = graph.make<QOREnumeratedTypeMap>();
    map->addEnumeratedTypeMap(typeMap);
    EXPECT_EQ(map->getParent(), nullptr);
    EXPECT_EQ(map->getParentCount(), 0);
    map->setName("n");
    EXPECT_EQ(typeMap->getEnumeratedAttributeMap(0), map);
}

TEST(QOREnumeratedAttributeMap, DeletesAFreeTypeMapLast) {
    Graph graph;
    QOREnumeratedAttributeMap map;
    map.addEnumeratedTypeMap(graph.mortal<QOREnumeratedTypeMap>("type map"));
    map.addSourceFeature(graph.mortal<QORAttribute>("feature"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"feature", "type map"}));
}

TEST(QOREnumeratedAttributeMap, LeavesAnOwnedTypeMap) {
    Graph graph;
    auto* const transformation = graph.make<QORTransformation>();
    auto* const typeMap = graph.make<QOREnumeratedTypeMap>();
    transformation->addClassifierMap(typeMap);
    auto* const map = new QOREnumeratedAttributeMap;
    map->addEnumeratedTypeMap(typeMap);
    delete map;
    EXPECT_EQ(typeMap->getEnumeratedAttributeMapCount(), 0);
    EXPECT_EQ(typeMap->getTransformation(), transformation);
}

TEST(QOREnumeratedAttributeMap, IsolatesItsTypeMapFirst) {
    Graph graph;
    QOREnumeratedAttributeMap map;
    map.addClassifierMap(graph.mortal<QORClassifierMap>("owner"));
    map.addEnumeratedTypeMap(graph.mortal<QOREnumeratedTypeMap>("type map"));
    map.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"type map", "owner"}));
}
