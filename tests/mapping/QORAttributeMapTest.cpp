#include "Expectations.h"

#include <qor/QORAttribute.h>
#include <qor/QORAttributeMap.h>
#include <qor/QORClassifierMap.h>

TEST(QORAttributeMap, ShowsItsFirstDestinationFeature) {
    Graph graph;
    auto* const map = graph.make<QORAttributeMap>("map");
    EXPECT_STREQ(map->getDisplayName().chars, "map");
    map->addDestinationFeature(graph.make<QORAttribute>("destination"));
    EXPECT_STREQ(map->getDisplayName().chars, "destination");
}

TEST(QORAttributeMap, ReportsATakenNameAsThatOfAFeatureMap) {
    expectNamedAndOwned<QORClassifierMap, QORAttributeMap, QORFeatureMap>(&QORClassifierMap::addFeatureMap,
                                                                          "ClassifierMap", "FeatureMap");
}

TEST(QORAttributeMap, EqualsOnlyItsOwnKind) {
    QORAttributeMap const map;
    QORFeatureMap const plain;
    EXPECT_FALSE(map.equals(plain));
    EXPECT_FALSE(plain.equals(map));
    EXPECT_TRUE(map.QORFeatureMap::finalEquals(plain));
}
