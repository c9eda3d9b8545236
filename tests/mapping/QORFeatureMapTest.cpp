#include "GraphObservers.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORExpression.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORNote.h>

using namespace graph;

TEST(QORFeatureMap, IsAMappingObject) {
    expectConcrete<QORFeatureMap>(QORElementType::FEATURE_MAP, 78, "FeatureMap",
                                  QORMappingObject::getStaticMetaClass());
}

TEST(QORFeatureMap, StartsEmptyAtPositionZero) {
    QORFeatureMap map;
    EXPECT_STREQ(map.getOperation().chars, "");
    EXPECT_STREQ(map.getOperationDescription().chars, "");
    EXPECT_EQ(map.getPosition(), 0);
    EXPECT_EQ(map.getMappingType(), QORMappingType::LINEAGE);
    EXPECT_FALSE(map.isReferenced());
}

TEST(QORFeatureMap, ShowsItsOwnNameWithoutADestination) {
    Held<QORFeatureMap> map("map");
    Held<QORAttribute> source("source");
    map->addSourceFeature(source);
    EXPECT_STREQ(map->getDisplayName().chars, "map");
}

TEST(QORFeatureMap, ShowsTheDestinationOfTheLowestAddress) {
    Held<QORFeatureMap> map("map");
    Held<QORAttribute> one("one");
    Held<QORAttribute> two("two");
    auto const [low, high] = byAddress(one.get(), two.get());
    map->addDestinationFeature(high);
    EXPECT_STREQ(map->getDisplayName().chars, high->getName().chars);
    map->addDestinationFeature(low);
    EXPECT_STREQ(map->getDisplayName().chars, low->getName().chars);
}

TEST(QORFeatureMap, IsReferencedThroughEachOfItsLinks) {
    using M = QORFeatureMap;
    expectReferencedThrough<M, QORClassifierMap>(&M::addClassifierMap, &M::removeClassifierMap);
    expectReferencedThrough<M, QORExpression>(&M::addExpression, &M::removeExpression);
    expectReferencedThrough<M, QORAttribute>(&M::addSourceFeature, &M::removeSourceFeature);
    expectReferencedThrough<M, QORAttribute>(&M::addDestinationFeature, &M::removeDestinationFeature);
}

TEST(QORFeatureMap, RefusesATakenNameUnderItsClassifierMap) {
    QORClassifierMap owner;
    auto* const map = named<QORFeatureMap>("map");
    owner.addFeatureMap(map);
    owner.addFeatureMap(named<QORFeatureMap>("taken"));
    expectNameRefused(*map, "taken", "ClassifierMap", "FeatureMap");
    EXPECT_EQ(owner.getFeatureMap(0), map);
    EXPECT_EQ(owner.getFeatureMapCount(), 2);
    map->setName("zebra");
    EXPECT_EQ(owner.getFeatureMap(1), map);
}

TEST(QORFeatureMap, BelongsToItsClassifierMap) {
    Held<QORClassifierMap> owner;
    Held<QORFeatureMap> map;
    Held<QORExpression> expression;
    owner->addFeatureMap(map);
    map->addExpression(expression);
    EXPECT_EQ(map->getParent(), owner.get());
    EXPECT_EQ(map->getParentCount(), 1);
    expectDeletionRefused(*map);
    EXPECT_EQ(expression->getFeatureMap(), map.get());
    EXPECT_EQ(map->removeAggregationAssembly(), owner.get());
    EXPECT_EQ(owner->getFeatureMapCount(), 0);
    EXPECT_EQ(map->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(map->getParentCount(), 0);
}

TEST(QORFeatureMap, DeletesItsExpressionThenFeaturesThatNobodyElseNeeds) {
    Journal journal;
    QORFeatureMap map;
    Held<QORClass> owner;
    Held<QORAttribute> owned("owned");
    owner->addFeature(owned);
    map.addDestinationFeature(watched<QORAttribute>(journal, "destination"));
    map.addDestinationFeature(owned);
    map.addSourceFeature(watched<QORAttribute>(journal, "source"));
    map.addExpression(watched<QORExpression>(journal, "expression"));
    map.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "expression", "source", "destination"}));
    EXPECT_EQ(owned->getDestinationOfFeatureMapCount(), 0);
    EXPECT_EQ(owned->getClassifier(), owner.get());
}

TEST(QORFeatureMap, IsolatesInItsOwnOrder) {
    Journal journal;
    QORFeatureMap map;
    map.addNote(watched<QORNote>(journal, "note"));
    map.addDestinationFeature(watched<QORAttribute>(journal, "destination"));
    map.addSourceFeature(watched<QORAttribute>(journal, "source"));
    map.addExpression(watched<QORExpression>(journal, "expression"));
    map.addClassifierMap(watched<QORClassifierMap>(journal, "owner"));
    EXPECT_EQ(map.isolate(true), &map);
    EXPECT_EQ(journal.deaths, (Labels{"owner", "expression", "source", "destination", "note"}));
}

TEST(QORFeatureMap, ReencodesTextsThenItsExpression) {
    Journal journal;
    Watched<QORFeatureMap> map(journal, "map");
    map.QORFeatureMap::setName(rawText);
    map.setOperation(rawText);
    map.setOperationDescription(stubbornText);
    map.addExpression(watched<QORExpression>(journal, "expression"));
    map.onSetName = [&] {
        EXPECT_STREQ(map.getOperation().chars, recodedText);
        EXPECT_EQ(journal.recodings, Labels{"map"});
    };
    Recoding recode;
    recode(map);
    EXPECT_EQ(journal.namings, Labels{"map"});
    EXPECT_EQ(journal.recodings, (Labels{"map", "expression"}));
    EXPECT_STREQ(map.getOperationDescription().chars, stubbornText);
    EXPECT_STREQ(map.getName().chars, recodedText);
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORFeatureMap, WalksItsExpressionAndNoFeature) {
    Held<QORFeatureMap> map;
    Held<QORAttribute> source;
    Held<QORExpression> expression;
    map->addSourceFeature(source);
    map->addExpression(expression);
    EXPECT_EQ(walkOf(*map), (Objects{map, expression}));
}

TEST(QORFeatureMap, ComparesItsFourAttributesAndTheElement) {
    expectCompared<QORFeatureMap>([](auto& map) { map.setOperation("x"); });
    expectCompared<QORFeatureMap>([](auto& map) { map.setOperationDescription("x"); });
    expectCompared<QORFeatureMap>([](auto& map) { map.setPosition(1); });
    expectCompared<QORFeatureMap>([](auto& map) { map.setMappingType(QORMappingType::ACTIVITY); });
    expectCompared<QORFeatureMap>([](auto& map) { map.setNativeType("x"); });
    expectNotCompared<QORFeatureMap>([](auto& map) { map.addExpression(new QORExpression); });
}

TEST(QORFeatureMap, CopiesAttributesButNoLink) {
    QORFeatureMap source;
    source.setOperation("o");
    source.setOperationDescription("d");
    source.setPosition(7);
    source.setMappingType(QORMappingType::STEP);
    source.addExpression(new QORExpression);
    QORFeatureMap const copy(source);
    EXPECT_TRUE(copy.equals(source));
    EXPECT_FALSE(copy.isReferenced());
    QORFeatureMap assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
    EXPECT_FALSE(assigned.isReferenced());
}
