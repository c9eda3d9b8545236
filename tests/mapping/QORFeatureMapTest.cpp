#include "Graph.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORExpression.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORNote.h>

TEST(QORFeatureMap, ShowsItsOwnNameWithoutADestination) {
    Graph graph;
    auto* const map = graph.make<QORFeatureMap>("map");
    map->addSourceFeature(graph.make<QORAttribute>("source"));
    EXPECT_STREQ(map->getDisplayName().chars, "map");
}

TEST(QORFeatureMap, ShowsTheDestinationOfTheLowestAddress) {
    Graph graph;
    auto* const map = graph.make<QORFeatureMap>("map");
    auto* const one = graph.make<QORAttribute>("one");
    auto* const two = graph.make<QORAttribute>("two");
    auto const [low, high] = byAddress(one, two);
    map->addDestinationFeature(high);
    EXPECT_STREQ(map->getDisplayName().chars, high->getName().chars);
    map->addDestinationFeature(low);
    EXPECT_STREQ(map->getDisplayName().chars, low->getName().chars);
}

TEST(QORFeatureMap, DeletesItsExpressionThenFeaturesThatNobodyElseNeeds) {
    Graph graph;
    QORFeatureMap map;
    auto* const owner = graph.make<QORClass>();
    auto* const owned = graph.make<QORAttribute>("owned");
    owner->addFeature(owned);
    map.addDestinationFeature(graph.mortal<QORAttribute>("destination"));
    map.addDestinationFeature(owned);
    map.addSourceFeature(graph.mortal<QORAttribute>("source"));
    map.addExpression(graph.mortal<QORExpression>("expression"));
    map.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "expression", "source", "destination"}));
    EXPECT_EQ(owned->getDestinationOfFeatureMapCount(), 0);
    EXPECT_EQ(owned->getClassifier(), owner);
}

TEST(QORFeatureMap, IsolatesInItsOwnOrder) {
    Graph graph;
    QORFeatureMap map;
    map.addNote(graph.mortal<QORNote>("note"));
    map.addDestinationFeature(graph.mortal<QORAttribute>("destination"));
    map.addSourceFeature(graph.mortal<QORAttribute>("source"));
    map.addExpression(graph.mortal<QORExpression>("expression"));
    map.addClassifierMap(graph.mortal<QORClassifierMap>("owner"));
    EXPECT_EQ(map.isolate(true), &map);
    EXPECT_EQ(graph.deaths, (Labels{"owner", "expression", "source", "destination", "note"}));
}

TEST(QORFeatureMap, ReencodesTextsThenItsExpression) {
    Graph graph;
    Mortal<QORFeatureMap> map(graph, "map");
    map.QORFeatureMap::setName(inUtf8);
    map.setOperation(inUtf8);
    map.setOperationDescription(notInLatin1);
    map.addExpression(graph.mortal<QORExpression>("expression"));
    map.onSetName = [&] {
        EXPECT_STREQ(map.getOperation().chars, inLatin1);
        EXPECT_EQ(graph.recodings, Labels{"map"});
    };
    Recoding recode;
    recode(map);
    EXPECT_EQ(graph.namings, (Labels{"map", "expression"}));
    EXPECT_EQ(graph.recodings, (Labels{"map", "expression"}));
    EXPECT_STREQ(map.getOperationDescription().chars, notInLatin1);
    EXPECT_STREQ(map.getName().chars, inLatin1);
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORFeatureMap, WalksItsExpressionAndNoFeature) {
    Graph graph;
    auto* const map = graph.make<QORFeatureMap>();
    auto* const expression = graph.make<QORExpression>();
    map->addSourceFeature(graph.make<QORAttribute>());
    map->addExpression(expression);
    EXPECT_EQ(walkOf(*map), (Objects{map, expression}));
}
