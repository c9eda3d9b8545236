#include "GraphObservers.h"

#include <qor/QORClass.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORDerivedType.h>
#include <qor/QOREnumeratedAttributeMap.h>
#include <qor/QOREnumeratedTypeMap.h>
#include <qor/QORTransformation.h>

using namespace graph;

TEST(QOREnumeratedTypeMap, IsAClassifierMap) {
    expectConcrete<QOREnumeratedTypeMap>(QORElementType::ENUMERATED_TYPE_MAP, 47, "EnumeratedTypeMap",
                                         QORClassifierMap::getStaticMetaClass());
}

TEST(QOREnumeratedTypeMap, IsReferencedThroughEachOfItsLinks) {
    using M = QOREnumeratedTypeMap;
    expectReferencedThrough<M, QORDerivedType>(&M::addSourceDerivedType, &M::removeSourceDerivedType);
    expectReferencedThrough<M, QORDerivedType>(&M::addDestinationDerivedType,
                                               &M::removeDestinationDerivedType);
    expectReferencedThrough<M, QOREnumeratedAttributeMap>(&M::addEnumeratedAttributeMap,
                                                          &M::removeEnumeratedAttributeMap);
}

TEST(QOREnumeratedTypeMap, ShowsItsDestinationClassifierAndNoType) {
    Held<QOREnumeratedTypeMap> map("map");
    Held<QORDerivedType> type("type");
    Held<QORClass> destination("destination");
    map->addDestinationDerivedType(type);
    EXPECT_STREQ(map->getDisplayName().chars, "map");
    map->addDestinationClassifier(destination);
    EXPECT_STREQ(map->getDisplayName().chars, "destination");
}

TEST(QOREnumeratedTypeMap, DeletesWhatAClassifierMapHasBeforeItsOwnEnds) {
    Journal journal;
    QOREnumeratedTypeMap map;
    map.addEnumeratedAttributeMap(watched<QOREnumeratedAttributeMap>(journal, "attribute map"));
    map.addDestinationDerivedType(watched<QORDerivedType>(journal, "destination"));
    map.addSourceDerivedType(watched<QORDerivedType>(journal, "source"));
    map.addSourceClassifier(watched<QORClass>(journal, "classifier"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"classifier", "source", "destination", "attribute map"}));
}

TEST(QOREnumeratedTypeMap, LeavesAnAttributeMapThatHasItsClassifierMap) {
    Held<QORClassifierMap> owner;
    Held<QOREnumeratedAttributeMap> kept;
    Journal journal;
    owner->addFeatureMap(kept);
    auto* const map = new QOREnumeratedTypeMap;
    map->addEnumeratedAttributeMap(kept);
    map->addEnumeratedAttributeMap(watched<QOREnumeratedAttributeMap>(journal, "free"));
    delete map;
    EXPECT_EQ(journal.deaths, Labels{"free"});
    EXPECT_EQ(kept->getEnumeratedTypeMap(), nullptr);
    EXPECT_EQ(kept->getClassifierMap(), owner.get());
}

TEST(QOREnumeratedTypeMap, IsolatesItsOwnEndsFirst) {
    Journal journal;
    QOREnumeratedTypeMap map;
    map.addSourceClassifier(watched<QORClass>(journal, "classifier"));
    map.addTransformation(watched<QORTransformation>(journal, "transformation"));
    map.addEnumeratedAttributeMap(watched<QOREnumeratedAttributeMap>(journal, "attribute map"));
    map.addDestinationDerivedType(watched<QORDerivedType>(journal, "destination"));
    map.addSourceDerivedType(watched<QORDerivedType>(journal, "source"));
    map.isolate(true);
    EXPECT_EQ(journal.deaths,
              (Labels{"source", "destination", "attribute map", "transformation", "classifier"}));
}

TEST(QOREnumeratedTypeMap, WalksNoAttributeMap) {
    Held<QOREnumeratedTypeMap> map;
    Held<QOREnumeratedAttributeMap> attributeMap;
    map->addEnumeratedAttributeMap(attributeMap);
    EXPECT_EQ(walkOf(*map), Objects{map});
    EXPECT_EQ(attributeMap->getParent(), nullptr);
}

TEST(QOREnumeratedTypeMap, OneTypeCanBeBothSourceAndDestination) {
    Held<QOREnumeratedTypeMap> map;
    Held<QORDerivedType> type;
    EXPECT_TRUE(map->addSourceDerivedType(type));
    EXPECT_TRUE(map->addDestinationDerivedType(type));
    EXPECT_EQ(type->getSourceOfEnumeratedTypeMap(0), map.get());
    EXPECT_EQ(type->getDestinationOfEnumeratedTypeMap(0), map.get());
    EXPECT_TRUE(map->removeSourceDerivedType()); // still the destination, so it lives on
    EXPECT_EQ(map->getDestinationDerivedType(), type.get());
}
