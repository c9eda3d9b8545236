#include "GraphObservers.h"

#include <qor/QORAttribute.h>
#include <qor/QORClassifierMap.h>
#include <qor/QOREnumeratedAttributeMap.h>
#include <qor/QOREnumeratedTypeMap.h>
#include <qor/QORTransformation.h>

using namespace graph;

TEST(QOREnumeratedAttributeMap, IsAFeatureMap) {
    expectConcrete<QOREnumeratedAttributeMap>(QORElementType::ENUMERATED_ATTRIBUTE_MAP, 46,
                                              "EnumeratedAttributeMap", QORFeatureMap::getStaticMetaClass());
}

TEST(QOREnumeratedAttributeMap, IsReferencedThroughItsTypeMap) {
    using M = QOREnumeratedAttributeMap;
    expectReferencedThrough<M, QOREnumeratedTypeMap>(&M::addEnumeratedTypeMap, &M::removeEnumeratedTypeMap);
}

TEST(QOREnumeratedAttributeMap, IsNotOwnedByItsTypeMap) {
    Held<QOREnumeratedAttributeMap> map;
    Held<QOREnumeratedTypeMap> typeMap;
    map->addEnumeratedTypeMap(typeMap);
    EXPECT_EQ(map->getParent(), nullptr);
    EXPECT_EQ(map->getParentCount(), 0);
    map->setName("n");
    EXPECT_EQ(typeMap->getEnumeratedAttributeMap(0), map.get());
}

TEST(QOREnumeratedAttributeMap, DeletesAFreeTypeMapLast) {
    Journal journal;
    QOREnumeratedAttributeMap map;
    map.addEnumeratedTypeMap(watched<QOREnumeratedTypeMap>(journal, "type map"));
    map.addSourceFeature(watched<QORAttribute>(journal, "feature"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"feature", "type map"}));
}

TEST(QOREnumeratedAttributeMap, LeavesAnOwnedTypeMap) {
    Held<QORTransformation> transformation;
    Held<QOREnumeratedTypeMap> typeMap;
    transformation->addClassifierMap(typeMap);
    auto* const map = new QOREnumeratedAttributeMap;
    map->addEnumeratedTypeMap(typeMap);
    delete map;
    EXPECT_EQ(typeMap->getEnumeratedAttributeMapCount(), 0);
    EXPECT_EQ(typeMap->getTransformation(), transformation.get());
}

TEST(QOREnumeratedAttributeMap, IsolatesItsTypeMapFirst) {
    Journal journal;
    QOREnumeratedAttributeMap map;
    map.addClassifierMap(watched<QORClassifierMap>(journal, "owner"));
    map.addEnumeratedTypeMap(watched<QOREnumeratedTypeMap>(journal, "type map"));
    map.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"type map", "owner"}));
}
