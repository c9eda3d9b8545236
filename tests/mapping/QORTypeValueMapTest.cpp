#include "Graph.h"

#include <qor/QORAttribute.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORTypeValue.h>
#include <qor/QORTypeValueMap.h>

TEST(QORTypeValueMap, ShowsBothValuesAroundTo) {
    Graph graph;
    auto* const map = graph.make<QORTypeValueMap>("its own name");
    auto* const source = graph.make<QORTypeValue>("yes");
    auto* const destination = graph.make<QORTypeValue>();
    destination->setValue("1");
    EXPECT_STREQ(map->getDisplayName().chars, "_to_");
    map->addSourceTypeValue(source);
    EXPECT_STREQ(map->getDisplayName().chars, "yes_to_");
    map->addDestinationTypeValue(destination);
    EXPECT_STREQ(map->getDisplayName().chars, "yes_to_1");
    map->removeSourceTypeValue(source);
    EXPECT_STREQ(map->getDisplayName().chars, "_to_1");
}

TEST(QORTypeValueMap, ShowsNoDestinationFeature) {
    Graph graph;
    auto* const map = graph.make<QORTypeValueMap>();
    map->addDestinationFeature(graph.make<QORAttribute>("feature"));
    EXPECT_STREQ(map->getDisplayName().chars, "_to_");
}

TEST(QORTypeValueMap, DeletesFreeValuesAfterWhatAFeatureMapHas) {
    Graph graph;
    QORTypeValueMap map;
    map.addDestinationTypeValue(graph.mortal<QORTypeValue>("destination"));
    map.addSourceTypeValue(graph.mortal<QORTypeValue>("source"));
    map.addDestinationFeature(graph.mortal<QORAttribute>("feature"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"feature", "source", "destination"}));
}

TEST(QORTypeValueMap, IsolatesItsValuesFirst) {
    Graph graph;
    QORTypeValueMap map;
    map.addClassifierMap(graph.mortal<QORClassifierMap>("owner"));
    map.addDestinationTypeValue(graph.mortal<QORTypeValue>("destination"));
    map.addSourceTypeValue(graph.mortal<QORTypeValue>("source"));
    map.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"source", "destination", "owner"}));
}
