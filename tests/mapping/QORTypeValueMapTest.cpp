#include "GraphObservers.h"

#include <qor/QORAttribute.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORTypeValue.h>
#include <qor/QORTypeValueMap.h>

using namespace graph;

TEST(QORTypeValueMap, IsAFeatureMap) {
    expectConcrete<QORTypeValueMap>(QORElementType::TYPE_VALUE_MAP, 48, "TypeValueMap",
                                    QORFeatureMap::getStaticMetaClass());
}

TEST(QORTypeValueMap, ShowsBothValuesAroundTo) {
    Held<QORTypeValueMap> map("its own name");
    Held<QORTypeValue> source("yes");
    Held<QORTypeValue> destination;
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
    Held<QORTypeValueMap> map;
    Held<QORAttribute> feature("feature");
    map->addDestinationFeature(feature);
    EXPECT_STREQ(map->getDisplayName().chars, "_to_");
}

TEST(QORTypeValueMap, IsReferencedThroughEachOfItsLinks) {
    using M = QORTypeValueMap;
    expectReferencedThrough<M, QORTypeValue>(&M::addSourceTypeValue, &M::removeSourceTypeValue);
    expectReferencedThrough<M, QORTypeValue>(&M::addDestinationTypeValue, &M::removeDestinationTypeValue);
}

TEST(QORTypeValueMap, DeletesFreeValuesAfterWhatAFeatureMapHas) {
    Journal journal;
    QORTypeValueMap map;
    map.addDestinationTypeValue(watched<QORTypeValue>(journal, "destination"));
    map.addSourceTypeValue(watched<QORTypeValue>(journal, "source"));
    map.addDestinationFeature(watched<QORAttribute>(journal, "feature"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"feature", "source", "destination"}));
}

TEST(QORTypeValueMap, IsolatesItsValuesFirst) {
    Journal journal;
    QORTypeValueMap map;
    map.addClassifierMap(watched<QORClassifierMap>(journal, "owner"));
    map.addDestinationTypeValue(watched<QORTypeValue>(journal, "destination"));
    map.addSourceTypeValue(watched<QORTypeValue>(journal, "source"));
    map.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"source", "destination", "owner"}));
}

TEST(QORTypeValueMap, TakesOneValueAtEitherEnd) {
    Held<QORTypeValueMap> map;
    Held<QORTypeValue> value;
    Held<QORTypeValue> other;
    EXPECT_TRUE(map->addSourceTypeValue(value));
    EXPECT_FALSE(map->addSourceTypeValue(other));
    EXPECT_FALSE(other->addSourceOfTypeValueMap(map));
    EXPECT_EQ(map->getSourceTypeValue(), value.get());
    EXPECT_EQ(other->getSourceOfTypeValueMapCount(), 0);
}
