#include "Graph.h"

#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORExpression.h>
#include <qor/QORKeyMap.h>

TEST(QORKeyMap, ShowsItsFirstDestinationFeatureAndNoKey) {
    Graph graph;
    auto* const map = graph.make<QORKeyMap>("map");
    map->addDestinationKey(graph.make<QORCandidateKey>("key"));
    EXPECT_STREQ(map->getDisplayName().chars, "map");
    map->addDestinationFeature(graph.make<QORAttribute>("feature"));
    EXPECT_STREQ(map->getDisplayName().chars, "feature");
}

TEST(QORKeyMap, DeletesWhatAFeatureMapHasBeforeItsOwnEnds) {
    Graph graph;
    QORKeyMap map;
    map.addSourceModelObject(graph.mortal<QORClass>("source 1"));
    map.addSourceModelObject(graph.mortal<QORClass>("source 2"));
    map.addParentKeyMap(graph.mortal<QORKeyMap>("parent"));
    map.addChildKeyMap(graph.mortal<QORKeyMap>("child"));
    map.addDestinationKey(graph.mortal<QORCandidateKey>("key"));
    map.addSourceFeature(graph.mortal<QORAttribute>("feature"));
    map.addExpression(graph.mortal<QORExpression>("expression"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(graph.deaths,
              (Labels{"expression", "feature", "key", "child", "parent", "source 1", "source 2"}));
}

TEST(QORKeyMap, LeavesNeighboursThatOthersNeed) {
    Graph graph;
    auto* const owner = graph.make<QORClassifierMap>();
    auto* const child = graph.make<QORKeyMap>();
    auto* const parent = graph.make<QORKeyMap>();
    auto* const grandparent = graph.make<QORKeyMap>();
    auto* const map = new QORKeyMap;
    owner->addFeatureMap(child);
    child->addParentKeyMap(map);
    map->addParentKeyMap(parent);
    parent->addParentKeyMap(grandparent);
    delete map;
    EXPECT_EQ(child->getParentKeyMapCount(), 0);
    EXPECT_EQ(child->getClassifierMap(), owner);
    EXPECT_EQ(parent->getChildKeyMapCount(), 0);
    EXPECT_EQ(parent->getParentKeyMap(0), grandparent);
}

TEST(QORKeyMap, IsolatesItsOwnEndsFirst) {
    Graph graph;
    QORKeyMap map;
    map.addSourceFeature(graph.mortal<QORAttribute>("feature"));
    map.addClassifierMap(graph.mortal<QORClassifierMap>("owner"));
    map.addSourceModelObject(graph.mortal<QORClass>("source"));
    map.addParentKeyMap(graph.mortal<QORKeyMap>("parent"));
    map.addChildKeyMap(graph.mortal<QORKeyMap>("child"));
    map.addDestinationKey(graph.mortal<QORCandidateKey>("key"));
    EXPECT_EQ(map.isolate(true), &map);
    EXPECT_EQ(graph.deaths, (Labels{"key", "child", "parent", "source", "owner", "feature"}));
}

TEST(QORKeyMap, WalksNoOtherKeyMap) {
    Graph graph;
    auto* const map = graph.make<QORKeyMap>();
    map->addChildKeyMap(graph.make<QORKeyMap>());
    map->addParentKeyMap(graph.make<QORKeyMap>());
    EXPECT_EQ(walkOf(*map), Objects{map});
}
