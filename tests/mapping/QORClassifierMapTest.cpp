#include "Graph.h"

#include <qor/QORClass.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORDataSet.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORExpression.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORNote.h>
#include <qor/QORTransformation.h>

TEST(QORClassifierMap, ShowsItsOwnNameWithoutADestination) {
    Graph graph;
    auto* const map = graph.make<QORClassifierMap>("map");
    map->addSourceClassifier(graph.make<QORClass>("source"));
    EXPECT_STREQ(map->getDisplayName().chars, "map");
}

TEST(QORClassifierMap, ShowsTheDestinationOfTheLowestAddress) {
    Graph graph;
    auto* const map = graph.make<QORClassifierMap>("map");
    auto* const one = graph.make<QORClass>("one");
    auto* const two = graph.make<QORClass>("two");
    auto const [low, high] = byAddress(one, two);
    map->addDestinationClassifier(high);
    EXPECT_STREQ(map->getDisplayName().chars, high->getName().chars);
    map->addDestinationClassifier(low);
    EXPECT_STREQ(map->getDisplayName().chars, low->getName().chars);
    map->removeDestinationClassifier(low);
    EXPECT_STREQ(map->getDisplayName().chars, high->getName().chars);
}

TEST(QORClassifierMap, ShowsAnEmptyTextForADestinationWithoutAName) {
    Graph graph;
    auto* const map = graph.make<QORClassifierMap>("map");
    map->addDestinationClassifier(graph.make<QORClass>());
    EXPECT_STREQ(map->getDisplayName().chars, "");
}

TEST(QORClassifierMap, TakesADataSetAsSourceAndDestination) {
    Graph graph;
    auto* const map = graph.make<QORClassifierMap>("map");
    auto* const set = graph.make<QORDataSet>("set");
    EXPECT_TRUE(map->addSourceClassifier(set));
    EXPECT_TRUE(set->addDestinationOfClassifierMap(map));
    EXPECT_EQ(set->getSourceOfClassifierMap(0), map);
    EXPECT_EQ(map->getDestinationClassifier(0), set);
    EXPECT_STREQ(map->getDisplayName().chars, "set");
}

TEST(QORClassifierMap, DeletesItsExpressionThenFeatureMapsThenClassifiersThatNobodyElseNeeds) {
    Graph graph;
    QORClassifierMap map;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const owned = graph.make<QORClass>("owned");
    package->addModelElement(owned);
    map.addDestinationClassifier(owned);
    map.addDestinationClassifier(graph.mortal<QORClass>("destination"));
    map.addSourceClassifier(owned);
    map.addSourceClassifier(graph.mortal<QORClass>("source"));
    auto* const both = graph.mortal<QORClass>("both");
    map.addSourceClassifier(both);
    map.addDestinationClassifier(both);
    map.addFeatureMap(graph.mortal<QORFeatureMap>("b"));
    map.addFeatureMap(graph.mortal<QORFeatureMap>("unnamed", ""));
    map.addExpression(graph.mortal<QORExpression>("expression"));
    map.addNote(graph.mortal<QORNote>("note"));

    EXPECT_TRUE(map.recursiveDelete());

    ASSERT_EQ(graph.deaths.size(), 7U);
    Labels const begin(graph.deaths.begin(), graph.deaths.begin() + 5);
    EXPECT_EQ(begin, (Labels{"note", "expression", "unnamed", "b", "source"}));
    // Which of the two destinations goes first is a matter of their addresses.
    Labels const end(graph.deaths.begin() + 5, graph.deaths.end());
    EXPECT_TRUE(end == (Labels{"both", "destination"}) || end == (Labels{"destination", "both"}));
    EXPECT_EQ(owned->getSourceOfClassifierMapCount(), 0);
    EXPECT_EQ(owned->getDestinationOfClassifierMapCount(), 0);
    EXPECT_EQ(owned->getDesignPackage(), package);
}

TEST(QORClassifierMap, LetsAFeatureMapWithoutAnyReferenceGoWithIt) {
    Graph graph;
    auto* const map = graph.mortal<QORClassifierMap>("map");
    auto* const feature = graph.mortal<QORFeatureMap>("feature");
    feature->addExpression(graph.mortal<QORExpression>("expression"));
    map->addFeatureMap(feature);
    delete map;
    EXPECT_EQ(graph.deaths, (Labels{"map", "expression", "feature"}));
}

TEST(QORClassifierMap, IsolatesInItsOwnOrder) {
    Graph graph;
    QORClassifierMap map;
    map.addNote(graph.mortal<QORNote>("note"));
    map.addDestinationClassifier(graph.mortal<QORClass>("destination"));
    map.addSourceClassifier(graph.mortal<QORClass>("source"));
    map.addFeatureMap(graph.mortal<QORFeatureMap>("feature"));
    map.addExpression(graph.mortal<QORExpression>("expression"));
    map.addTransformation(graph.mortal<QORTransformation>("transformation"));
    EXPECT_EQ(map.isolate(true), &map);
    EXPECT_EQ(graph.deaths,
              (Labels{"transformation", "expression", "feature", "source", "destination", "note"}));
    EXPECT_FALSE(map.isReferenced());
}

TEST(QORClassifierMap, ReencodesTextsThenExpressionThenFeatureMaps) {
    Graph graph;
    Mortal<QORClassifierMap> map(graph, "map");
    map.QORClassifierMap::setName(inUtf8);
    map.setOperation(inUtf8);
    map.setOperationDescription(inUtf8);
    map.addFeatureMap(graph.mortal<QORFeatureMap>("feature"));
    map.addExpression(graph.mortal<QORExpression>("expression"));
    map.onSetName = [&] {
        EXPECT_STREQ(map.getOperation().chars, inLatin1);
        EXPECT_STREQ(map.getOperationDescription().chars, inLatin1);
        EXPECT_EQ(graph.recodings, Labels{"map"});
    };
    Recoding recode;
    recode(map);
    EXPECT_EQ(graph.namings, (Labels{"map", "expression", "feature"}));
    EXPECT_EQ(graph.recodings, (Labels{"map", "expression", "feature"}));
    EXPECT_EQ(recode.errors, 0);
}

TEST(QORClassifierMap, GivesAFeatureMapAnotherNameThatCollidesAfterReencoding) {
    QORClassifierMap map;
    auto* const stays = named<QORFeatureMap>(inLatin1); // no valid text in UTF-8
    auto* const moves = named<QORFeatureMap>(inUtf8);
    map.addFeatureMap(stays);
    map.addFeatureMap(moves);
    Recoding recode;
    recode(map);
    EXPECT_STREQ(stays->getName().chars, inLatin1);
    EXPECT_STREQ(moves->getName().chars, "\xE9/1");
    EXPECT_EQ(map.getFeatureMap(1), moves);
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORClassifierMap, WalksExpressionThenFeatureMapsAndNoClassifier) {
    Graph graph;
    auto* const map = graph.make<QORClassifierMap>();
    auto* const featureB = graph.make<QORFeatureMap>("b");
    auto* const featureA = graph.make<QORFeatureMap>("a");
    auto* const expression = graph.make<QORExpression>();
    auto* const note = graph.make<QORNote>();
    map->addSourceClassifier(graph.make<QORClass>());
    map->addDestinationClassifier(graph.make<QORClass>());
    map->addFeatureMap(featureB);
    map->addFeatureMap(featureA);
    map->addExpression(expression);
    map->addNote(note);
    EXPECT_EQ(walkOf(*map), (Objects{map, note, expression, featureA, featureB}));
}
