#include "GraphObservers.h"

#include <qor/QORAttribute.h>
#include <qor/QORAttributeMap.h>
#include <qor/QORClassifierMap.h>

using namespace graph;

TEST(QORAttributeMap, IsAFeatureMap) {
    expectConcrete<QORAttributeMap>(QORElementType::ATTRIBUTE_MAP, 44, "AttributeMap",
                                    QORFeatureMap::getStaticMetaClass());
}

TEST(QORAttributeMap, ShowsItsFirstDestinationFeature) {
    Held<QORAttributeMap> map("map");
    Held<QORAttribute> destination("destination");
    EXPECT_STREQ(map->getDisplayName().chars, "map");
    map->addDestinationFeature(destination);
    EXPECT_STREQ(map->getDisplayName().chars, "destination");
}

TEST(QORAttributeMap, ReportsATakenNameAsThatOfAFeatureMap) {
    QORClassifierMap owner;
    auto* const map = named<QORAttributeMap>("map");
    owner.addFeatureMap(map);
    owner.addFeatureMap(named<QORFeatureMap>("taken"));
    expectNameRefused(*map, "taken", "ClassifierMap", "FeatureMap");
}

TEST(QORAttributeMap, EqualsOnlyItsOwnKind) {
    expectCompared<QORAttributeMap>([](auto& map) { map.setPosition(1); });
    QORAttributeMap const map;
    QORFeatureMap const plain;
    EXPECT_FALSE(map.equals(plain));
    EXPECT_FALSE(plain.equals(map));
    EXPECT_TRUE(map.QORFeatureMap::finalEquals(plain));
}

TEST(QORAttributeMap, IsSetFromAnotherOne) {
    QORAttributeMap source;
    source.setName("n");
    source.setPosition(4);
    QORAttributeMap target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
    EXPECT_EQ(target.getElementType(), QORElementType::ATTRIBUTE_MAP);
}
