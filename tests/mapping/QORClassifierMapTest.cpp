#include "GraphObservers.h"

#include <qor/QORClass.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORDataSet.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORExpression.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORFeatureMapByPosition.h>
#include <qor/QORNote.h>
#include <qor/QORTransformation.h>

using namespace graph;

TEST(QORClassifierMap, IsAMappingObject) {
    expectConcrete<QORClassifierMap>(QORElementType::CLASSIFIER_MAP, 76, "ClassifierMap",
                                     QORMappingObject::getStaticMetaClass());
}

TEST(QORClassifierMap, StartsEmptyAtTheGrainOfLineage) {
    QORClassifierMap map;
    EXPECT_STREQ(map.getOperation().chars, "");
    EXPECT_STREQ(map.getOperationDescription().chars, "");
    EXPECT_EQ(map.getMappingType(), QORMappingType::LINEAGE);
    EXPECT_FALSE(map.isReferenced());
}

TEST(QORClassifierMap, ShowsItsOwnNameWithoutADestination) {
    Held<QORClassifierMap> map("map");
    Held<QORClass> source("source");
    map->addSourceClassifier(source);
    EXPECT_STREQ(map->getDisplayName().chars, "map");
}

TEST(QORClassifierMap, ShowsTheDestinationOfTheLowestAddress) {
    Held<QORClassifierMap> map("map");
    Held<QORClass> one("one");
    Held<QORClass> two("two");
    auto const [low, high] = byAddress(one.get(), two.get());
    map->addDestinationClassifier(high);
    EXPECT_STREQ(map->getDisplayName().chars, high->getName().chars);
    map->addDestinationClassifier(low);
    EXPECT_STREQ(map->getDisplayName().chars, low->getName().chars);
    map->removeDestinationClassifier(low);
    EXPECT_STREQ(map->getDisplayName().chars, high->getName().chars);
}

TEST(QORClassifierMap, ShowsAnEmptyTextForADestinationWithoutAName) {
    Held<QORClassifierMap> map("map");
    Held<QORClass> unnamed;
    map->addDestinationClassifier(unnamed);
    EXPECT_STREQ(map->getDisplayName().chars, "");
}

TEST(QORClassifierMap, TakesADataSetAsSourceAndDestination) {
    Held<QORClassifierMap> map("map");
    Held<QORDataSet> set("set");
    EXPECT_TRUE(map->addSourceClassifier(set));
    EXPECT_TRUE(set->addDestinationOfClassifierMap(map));
    EXPECT_EQ(set->getSourceOfClassifierMap(0), map.get());
    EXPECT_EQ(map->getDestinationClassifier(0), set.get());
    EXPECT_STREQ(map->getDisplayName().chars, "set");
}

TEST(QORClassifierMap, IsReferencedThroughEachOfItsLinks) {
    using M = QORClassifierMap;
    expectReferencedThrough<M, QORTransformation>(&M::addTransformation, &M::removeTransformation);
    expectReferencedThrough<M, QORExpression>(&M::addExpression, &M::removeExpression);
    expectReferencedThrough<M, QORFeatureMap>(&M::addFeatureMap, &M::removeFeatureMap);
    expectReferencedThrough<M, QORClass>(&M::addSourceClassifier, &M::removeSourceClassifier);
    expectReferencedThrough<M, QORClass>(&M::addDestinationClassifier, &M::removeDestinationClassifier);
}

TEST(QORClassifierMap, FillsAViewByPosition) {
    QORClassifierMap map;
    auto* const last = named<QORFeatureMap>("a");
    last->setPosition(3);
    auto* const first = named<QORFeatureMap>("z");
    first->setPosition(-1);
    auto* const middle = named<QORFeatureMap>("m");
    middle->setPosition(2);
    auto* const beforeMiddle = named<QORFeatureMap>("b");
    beforeMiddle->setPosition(2);
    for (QORFeatureMap* each : {last, first, middle, beforeMiddle})
        map.addFeatureMap(each);
    EXPECT_EQ(map.getFeatureMap(0), last);
    QORFeatureMapByPosition view;
    QORFeatureMap stray;
    view.add(&stray, false, nullptr);
    map.getFeatureMapByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"z", "b", "m", "a"}));
    QORClassifierMap const empty;
    empty.getFeatureMapByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORClassifierMap, IsUniqueInItsTransformationAsFarAsItHasAName) {
    QORTransformation transformation;
    EXPECT_TRUE(transformation.addClassifierMap(new QORClassifierMap));
    EXPECT_TRUE(transformation.addClassifierMap(new QORClassifierMap));
    EXPECT_TRUE(transformation.addClassifierMap(named<QORClassifierMap>("map")));
    QORClassifierMap other;
    other.setName("map");
    EXPECT_FALSE(transformation.addClassifierMap(&other));
    EXPECT_EQ(other.getTransformation(), nullptr);
    EXPECT_EQ(transformation.getClassifierMapCount(), 3);
}

TEST(QORClassifierMap, RefusesATakenNameUnderItsTransformation) {
    QORTransformation transformation;
    auto* const map = named<QORClassifierMap>("map");
    transformation.addClassifierMap(map);
    transformation.addClassifierMap(named<QORClassifierMap>("taken"));
    expectNameRefused(*map, "taken", "Transformation", "ClassifierMap");
    EXPECT_EQ(transformation.getClassifierMap(0), map);
    map->setName("zebra");
    EXPECT_EQ(transformation.getClassifierMap(1), map);
    map->setName("");
    EXPECT_EQ(transformation.getClassifierMap(0), map);
}

TEST(QORClassifierMap, BelongsToItsTransformation) {
    Held<QORTransformation> transformation;
    Held<QORClassifierMap> map;
    Held<QORFeatureMap> feature;
    Held<QORClass> source;
    map->addFeatureMap(feature);
    map->addSourceClassifier(source);
    map->addTransformation(transformation);
    EXPECT_EQ(map->getParent(), transformation.get());
    EXPECT_EQ(map->getParentCount(), 1);
    expectDeletionRefused(*map);
    EXPECT_EQ(feature->getClassifierMap(), map.get());
    EXPECT_EQ(source->getSourceOfClassifierMapCount(), 1);
    EXPECT_EQ(transformation->getClassifierMapCount(), 1);
    EXPECT_EQ(map->removeAggregationAssembly(), transformation.get());
    EXPECT_EQ(transformation->getClassifierMapCount(), 0);
    EXPECT_EQ(map->removeAggregationAssembly(), nullptr);
}

TEST(QORClassifierMap, DeletesItsExpressionThenFeatureMapsThenClassifiersThatNobodyElseNeeds) {
    Journal journal;
    QORClassifierMap map;
    Held<QORDesignPackage> package;
    Held<QORClass> owned("owned");
    package->addModelElement(owned);
    map.addDestinationClassifier(owned);
    map.addDestinationClassifier(watched<QORClass>(journal, "destination"));
    map.addSourceClassifier(owned);
    map.addSourceClassifier(watched<QORClass>(journal, "source"));
    auto* const both = watched<QORClass>(journal, "both");
    map.addSourceClassifier(both);
    map.addDestinationClassifier(both);
    auto* const featureB = watched<QORFeatureMap>(journal, "b");
    featureB->setName("b");
    map.addFeatureMap(featureB);
    map.addFeatureMap(watched<QORFeatureMap>(journal, "unnamed"));
    map.addExpression(watched<QORExpression>(journal, "expression"));
    map.addNote(watched<QORNote>(journal, "note"));

    EXPECT_TRUE(map.recursiveDelete());

    ASSERT_EQ(journal.deaths.size(), 7U);
    Labels const begin(journal.deaths.begin(), journal.deaths.begin() + 5);
    EXPECT_EQ(begin, (Labels{"note", "expression", "unnamed", "b", "source"}));
    // Which of the two destinations goes first is a matter of their addresses.
    Labels const end(journal.deaths.begin() + 5, journal.deaths.end());
    EXPECT_TRUE(end == (Labels{"both", "destination"}) || end == (Labels{"destination", "both"}));
    EXPECT_EQ(owned->getSourceOfClassifierMapCount(), 0);
    EXPECT_EQ(owned->getDestinationOfClassifierMapCount(), 0);
    EXPECT_EQ(owned->getDesignPackage(), package.get());
}

TEST(QORClassifierMap, LetsAFeatureMapWithoutAnyReferenceGoWithIt) {
    Journal journal;
    auto* const map = watched<QORClassifierMap>(journal, "map");
    auto* const feature = watched<QORFeatureMap>(journal, "feature");
    auto* const expression = watched<QORExpression>(journal, "expression");
    feature->addExpression(expression);
    map->addFeatureMap(feature);
    delete map;
    EXPECT_EQ(journal.deaths, (Labels{"map", "expression", "feature"}));
}

TEST(QORClassifierMap, IsolatesInItsOwnOrder) {
    Journal journal;
    QORClassifierMap map;
    map.addNote(watched<QORNote>(journal, "note"));
    map.addDestinationClassifier(watched<QORClass>(journal, "destination"));
    map.addSourceClassifier(watched<QORClass>(journal, "source"));
    map.addFeatureMap(watched<QORFeatureMap>(journal, "feature"));
    map.addExpression(watched<QORExpression>(journal, "expression"));
    map.addTransformation(watched<QORTransformation>(journal, "transformation"));
    EXPECT_EQ(map.isolate(true), &map);
    EXPECT_EQ(journal.deaths,
              (Labels{"transformation", "expression", "feature", "source", "destination", "note"}));
    EXPECT_FALSE(map.isReferenced());
}

TEST(QORClassifierMap, IsolatesWithoutDeletingAnything) {
    Held<QORClassifierMap> map;
    Held<QORTransformation> transformation;
    Held<QORExpression> expression;
    Held<QORFeatureMap> feature;
    Held<QORClass> source;
    Held<QORClass> destination;
    map->addTransformation(transformation);
    map->addExpression(expression);
    map->addFeatureMap(feature);
    map->addSourceClassifier(source);
    map->addDestinationClassifier(destination);
    map->isolate(false);
    for (QORObject* each : Objects{map, transformation, expression, feature, source, destination})
        EXPECT_FALSE(each->isReferenced());
}

TEST(QORClassifierMap, ReencodesTextsThenExpressionThenFeatureMaps) {
    Journal journal;
    Watched<QORClassifierMap> map(journal, "map");
    map.QORClassifierMap::setName(rawText);
    map.setOperation(rawText);
    map.setOperationDescription(rawText);
    map.addFeatureMap(watched<QORFeatureMap>(journal, "feature"));
    map.addExpression(watched<QORExpression>(journal, "expression"));
    map.onSetName = [&] {
        EXPECT_STREQ(map.getOperation().chars, recodedText);
        EXPECT_STREQ(map.getOperationDescription().chars, recodedText);
        EXPECT_EQ(journal.recodings, Labels{"map"});
    };
    Recoding recode;
    recode(map);
    EXPECT_EQ(journal.namings, Labels{"map"});
    EXPECT_EQ(journal.recodings, (Labels{"map", "expression", "feature"}));
    EXPECT_EQ(recode.errors, 0);
}

TEST(QORClassifierMap, KeepsATextThatCannotBeReencodedAndGoesOn) {
    QORClassifierMap map;
    map.setName(rawText);
    map.setOperation(stubbornText);
    map.setOperationDescription(rawText);
    Recoding recode;
    recode(map);
    EXPECT_STREQ(map.getOperation().chars, stubbornText);
    EXPECT_STREQ(map.getOperationDescription().chars, recodedText);
    EXPECT_STREQ(map.getName().chars, recodedText);
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORClassifierMap, GivesAFeatureMapAnotherNameThatCollidesAfterReencoding) {
    QORClassifierMap map;
    auto* const stays = named<QORFeatureMap>(recodedText); // no valid text in UTF-8
    auto* const moves = named<QORFeatureMap>(rawText);
    map.addFeatureMap(stays);
    map.addFeatureMap(moves);
    Recoding recode;
    recode(map);
    EXPECT_STREQ(stays->getName().chars, recodedText);
    EXPECT_STREQ(moves->getName().chars, "\xE9/1");
    EXPECT_EQ(map.getFeatureMap(1), moves);
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORClassifierMap, WalksExpressionThenFeatureMapsAndNoClassifier) {
    Held<QORClassifierMap> map;
    Held<QORClass> source;
    Held<QORClass> destination;
    Held<QORFeatureMap> featureB("b");
    Held<QORFeatureMap> featureA("a");
    Held<QORExpression> expression;
    Held<QORNote> note;
    map->addSourceClassifier(source);
    map->addDestinationClassifier(destination);
    map->addFeatureMap(featureB);
    map->addFeatureMap(featureA);
    map->addExpression(expression);
    map->addNote(note);
    EXPECT_EQ(walkOf(*map), (Objects{map, note, expression, featureA, featureB}));
}

TEST(QORClassifierMap, ComparesItsThreeAttributesAndTheElement) {
    expectCompared<QORClassifierMap>([](auto& map) { map.setOperation("x"); });
    expectCompared<QORClassifierMap>([](auto& map) { map.setOperationDescription("x"); });
    expectCompared<QORClassifierMap>([](auto& map) { map.setMappingType(QORMappingType::STEP); });
    expectCompared<QORClassifierMap>([](auto& map) { map.setName("x"); });
    expectNotCompared<QORClassifierMap>([](auto& map) { map.setDescription("x"); });
    expectNotCompared<QORClassifierMap>([](auto& map) { map.addFeatureMap(new QORFeatureMap); });
}

TEST(QORClassifierMap, CopiesAttributesButNoLink) {
    QORClassifierMap source;
    source.setName("source");
    source.setOperation("o");
    source.setOperationDescription("d");
    source.setMappingType(QORMappingType::STITCHING);
    source.addFeatureMap(new QORFeatureMap);
    QORClassifierMap const copy(source);
    EXPECT_TRUE(copy.equals(source));
    EXPECT_FALSE(copy.isReferenced());
    QORClassifierMap assigned;
    auto* const kept = new QORFeatureMap;
    assigned.addFeatureMap(kept);
    assigned = source;
    EXPECT_TRUE(assigned.equals(source));
    EXPECT_EQ(assigned.getFeatureMapCount(), 1);
    EXPECT_EQ(assigned.getFeatureMap(0), kept);
}
