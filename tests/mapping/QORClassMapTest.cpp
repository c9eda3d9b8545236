#include "Expectations.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORClassMap.h>
#include <qor/QORClassMapByPosition.h>
#include <qor/QORExpression.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORTransformation.h>

TEST(QORClassMap, ShowsItsFirstDestinationClassifierAndNoAttribute) {
    Graph graph;
    auto* const map = graph.make<QORClassMap>("map");
    map->addDestinationAttribute(graph.make<QORAttribute>("attribute"));
    EXPECT_STREQ(map->getDisplayName().chars, "map");
    map->addDestinationClassifier(graph.make<QORClass>("destination"));
    EXPECT_STREQ(map->getDisplayName().chars, "destination");
}

TEST(QORClassMap, KeepsAttributesApartFromClassifiers) {
    Graph graph;
    auto* const map = graph.make<QORClassMap>();
    auto* const owner = graph.make<QORClass>();
    auto* const attribute = graph.make<QORAttribute>();
    owner->addFeature(attribute);
    EXPECT_TRUE(map->addSourceAttribute(attribute));
    EXPECT_EQ(map->getSourceClassifierCount(), 0);
    EXPECT_EQ(owner->getSourceOfClassifierMapCount(), 0);
    EXPECT_TRUE(map->addDestinationClassifier(owner));
    EXPECT_EQ(map->getDestinationAttributeCount(), 0);
    EXPECT_EQ(attribute->getSourceOfClassMap(0), map);
    EXPECT_EQ(attribute->getDestinationOfClassMapCount(), 0);
}

TEST(QORClassMap, ReportsATakenNameAsThatOfAClassifierMap) {
    expectNamedAndOwned<QORTransformation, QORClassMap, QORClassifierMap>(
        &QORTransformation::addClassifierMap, "Transformation", "ClassifierMap");
}

TEST(QORClassMap, DeletesWhatAClassifierMapHasBeforeItsAttributes) {
    Graph graph;
    QORClassMap map;
    map.addDestinationAttribute(graph.mortal<QORAttribute>("destination attribute"));
    map.addSourceAttribute(graph.mortal<QORAttribute>("source attribute"));
    map.addDestinationClassifier(graph.mortal<QORClass>("destination"));
    map.addSourceClassifier(graph.mortal<QORClass>("source"));
    map.addFeatureMap(graph.mortal<QORFeatureMap>("feature"));
    map.addExpression(graph.mortal<QORExpression>("expression"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"expression", "feature", "source", "destination", "source attribute",
                                    "destination attribute"}));
}

TEST(QORClassMap, IsolatesItsAttributesFirst) {
    Graph graph;
    QORClassMap map;
    map.addSourceClassifier(graph.mortal<QORClass>("source"));
    map.addTransformation(graph.mortal<QORTransformation>("transformation"));
    map.addDestinationAttribute(graph.mortal<QORAttribute>("destination attribute"));
    map.addSourceAttribute(graph.mortal<QORAttribute>("source attribute"));
    EXPECT_EQ(map.isolate(true), &map);
    EXPECT_EQ(graph.deaths,
              (Labels{"source attribute", "destination attribute", "transformation", "source"}));
}

TEST(QORClassMap, ReencodesItsFilterAndTheTextsOfAClassifierMap) {
    Graph graph;
    QORClassMap map;
    map.setWhereClause(inUtf8);
    map.setOperation(notInLatin1);
    map.setOperationDescription(inUtf8);
    map.addExpression(graph.mortal<QORExpression>("expression"));
    Recoding recode;
    recode(map);
    EXPECT_STREQ(map.getWhereClause().chars, inLatin1);
    EXPECT_STREQ(map.getOperation().chars, notInLatin1);
    EXPECT_STREQ(map.getOperationDescription().chars, inLatin1);
    EXPECT_EQ(graph.recodings, Labels{"expression"});
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORClassMap, SortsByPositionInAViewThatTheCallerFills) {
    QORClassMap late;
    late.setName("a");
    late.setPosition(2);
    QORClassMap early;
    early.setName("b");
    early.setPosition(1);
    QORClassMapByPosition view;
    view.add(&late, false, nullptr);
    view.add(&early, false, nullptr);
    EXPECT_EQ(namesOf(view), (Labels{"b", "a"}));
}
