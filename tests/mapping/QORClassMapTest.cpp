#include "GraphObservers.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORClassMap.h>
#include <qor/QORClassMapByPosition.h>
#include <qor/QORExpression.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORTransformation.h>

using namespace graph;

TEST(QORClassMap, IsAClassifierMap) {
    expectConcrete<QORClassMap>(QORElementType::CLASS_MAP, 42, "ClassMap",
                                QORClassifierMap::getStaticMetaClass());
}

TEST(QORClassMap, StartsInsertingWithACommitForEachRow) {
    QORClassMap map;
    EXPECT_EQ(map.getCommitType(), QORCommitType::ROW);
    EXPECT_EQ(map.getMovementType(), QORMovementType::INSERT);
    EXPECT_FALSE(map.getDistinct());
    EXPECT_EQ(map.getPosition(), 0);
    EXPECT_EQ(map.getVolumetrics(), 0);
    EXPECT_STREQ(map.getWhereClause().chars, "");
    QORMetaAttribute const* const commit =
        QORClassMap::getStaticMetaClass()->getMetaAttributeByDisplayName("commitType");
    EXPECT_STREQ(commit->getDefaultValue().chars, "ROW");
    EXPECT_STREQ(commit->getValue(&map).chars, "ROW");
}

TEST(QORClassMap, ShowsItsFirstDestinationClassifierAndNoAttribute) {
    Held<QORClassMap> map("map");
    Held<QORAttribute> attribute("attribute");
    Held<QORClass> destination("destination");
    map->addDestinationAttribute(attribute);
    EXPECT_STREQ(map->getDisplayName().chars, "map");
    map->addDestinationClassifier(destination);
    EXPECT_STREQ(map->getDisplayName().chars, "destination");
}

TEST(QORClassMap, KeepsAttributesApartFromClassifiers) {
    Held<QORClassMap> map;
    Held<QORClass> owner;
    Held<QORAttribute> attribute;
    owner->addFeature(attribute);
    EXPECT_TRUE(map->addSourceAttribute(attribute));
    EXPECT_EQ(map->getSourceClassifierCount(), 0);
    EXPECT_EQ(owner->getSourceOfClassifierMapCount(), 0);
    EXPECT_TRUE(map->addDestinationClassifier(owner));
    EXPECT_EQ(map->getDestinationAttributeCount(), 0);
    EXPECT_EQ(attribute->getSourceOfClassMap(0), map.get());
    EXPECT_EQ(attribute->getDestinationOfClassMapCount(), 0);
}

TEST(QORClassMap, IsReferencedThroughItsAttributesToo) {
    using M = QORClassMap;
    expectReferencedThrough<M, QORAttribute>(&M::addSourceAttribute, &M::removeSourceAttribute);
    expectReferencedThrough<M, QORAttribute>(&M::addDestinationAttribute, &M::removeDestinationAttribute);
    expectReferencedThrough<M, QORClass>(&M::addSourceClassifier, &M::removeSourceClassifier);
}

TEST(QORClassMap, ReportsATakenNameAsThatOfAClassifierMap) {
    QORTransformation transformation;
    auto* const map = named<QORClassMap>("map");
    transformation.addClassifierMap(map);
    transformation.addClassifierMap(named<QORClassifierMap>("taken"));
    expectNameRefused(*map, "taken", "Transformation", "ClassifierMap");
}

TEST(QORClassMap, DeletesWhatAClassifierMapHasBeforeItsAttributes) {
    Journal journal;
    QORClassMap map;
    map.addDestinationAttribute(watched<QORAttribute>(journal, "destination attribute"));
    map.addSourceAttribute(watched<QORAttribute>(journal, "source attribute"));
    map.addDestinationClassifier(watched<QORClass>(journal, "destination"));
    map.addSourceClassifier(watched<QORClass>(journal, "source"));
    map.addFeatureMap(watched<QORFeatureMap>(journal, "feature"));
    map.addExpression(watched<QORExpression>(journal, "expression"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"expression", "feature", "source", "destination", "source attribute",
                                      "destination attribute"}));
}

TEST(QORClassMap, RefusesToBeDeletedUnderATransformation) {
    Held<QORTransformation> transformation;
    Held<QORClassMap> map;
    Held<QORAttribute> attribute;
    map->addSourceAttribute(attribute);
    transformation->addClassifierMap(map);
    expectDeletionRefused(*map);
    EXPECT_EQ(map->getSourceAttributeCount(), 1);
}

TEST(QORClassMap, IsolatesItsAttributesFirst) {
    Journal journal;
    QORClassMap map;
    map.addSourceClassifier(watched<QORClass>(journal, "source"));
    map.addTransformation(watched<QORTransformation>(journal, "transformation"));
    map.addDestinationAttribute(watched<QORAttribute>(journal, "destination attribute"));
    map.addSourceAttribute(watched<QORAttribute>(journal, "source attribute"));
    EXPECT_EQ(map.isolate(true), &map);
    EXPECT_EQ(journal.deaths,
              (Labels{"source attribute", "destination attribute", "transformation", "source"}));
}

TEST(QORClassMap, ReencodesItsFilterAndTheTextsOfAClassifierMap) {
    Journal journal;
    QORClassMap map;
    map.setWhereClause(rawText);
    map.setOperation(stubbornText);
    map.setOperationDescription(rawText);
    map.addExpression(watched<QORExpression>(journal, "expression"));
    Recoding recode;
    recode(map);
    EXPECT_STREQ(map.getWhereClause().chars, recodedText);
    EXPECT_STREQ(map.getOperation().chars, stubbornText);
    EXPECT_STREQ(map.getOperationDescription().chars, recodedText);
    EXPECT_EQ(journal.recodings, Labels{"expression"});
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORClassMap, ComparesItsSixAttributesAndThoseOfAClassifierMap) {
    expectCompared<QORClassMap>([](auto& map) { map.setPosition(1); });
    expectCompared<QORClassMap>([](auto& map) { map.setWhereClause("x"); });
    expectCompared<QORClassMap>([](auto& map) { map.setCommitType(QORCommitType::NONE); });
    expectCompared<QORClassMap>([](auto& map) { map.setMovementType(QORMovementType::NULL_); });
    expectCompared<QORClassMap>([](auto& map) { map.setDistinct(true); });
    expectCompared<QORClassMap>([](auto& map) { map.setVolumetrics(1); });
    expectCompared<QORClassMap>([](auto& map) { map.setOperation("x"); });
}

TEST(QORClassMap, EqualsNoClassifierMap) {
    QORClassMap const map;
    QORClassifierMap const plain;
    EXPECT_FALSE(map.equals(plain));
    EXPECT_FALSE(plain.equals(map));
}

TEST(QORClassMap, CopiesAttributesButNoLink) {
    Held<QORClassMap> source;
    Held<QORAttribute> attribute;
    source->setPosition(3);
    source->setWhereClause("w");
    source->setCommitType(QORCommitType::PERIODIC);
    source->setMovementType(QORMovementType::INSERT_UPDATE);
    source->setDistinct(true);
    source->setVolumetrics(-9);
    source->setMappingType(QORMappingType::TOVA_ETL);
    source->addSourceAttribute(attribute);
    QORClassMap const copy(*source);
    EXPECT_TRUE(copy.equals(*source));
    EXPECT_FALSE(copy.isReferenced());
    QORClassMap assigned;
    assigned.setFrom(*source);
    EXPECT_TRUE(assigned.equals(*source));
    EXPECT_FALSE(assigned.isReferenced());
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
    EXPECT_EQ(namesIn(view), (Labels{"b", "a"}));
}
