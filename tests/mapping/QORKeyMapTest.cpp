#include "GraphObservers.h"

#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORExpression.h>
#include <qor/QORKeyMap.h>

using namespace graph;

TEST(QORKeyMap, IsAFeatureMap) {
    expectConcrete<QORKeyMap>(QORElementType::KEY_MAP, 43, "KeyMap", QORFeatureMap::getStaticMetaClass());
}

TEST(QORKeyMap, IsReferencedThroughEachOfItsLinks) {
    using M = QORKeyMap;
    expectReferencedThrough<M, QORCandidateKey>(&M::addDestinationKey, &M::removeDestinationKey);
    expectReferencedThrough<M, QORKeyMap>(&M::addChildKeyMap, &M::removeChildKeyMap);
    expectReferencedThrough<M, QORKeyMap>(&M::addParentKeyMap, &M::removeParentKeyMap);
    expectReferencedThrough<M, QORClass>(&M::addSourceModelObject, &M::removeSourceModelObject);
}

TEST(QORKeyMap, IsTheChildOfItsParents) {
    Held<QORKeyMap> map;
    Held<QORKeyMap> parent;
    EXPECT_TRUE(map->addParentKeyMap(parent));
    ASSERT_EQ(parent->getChildKeyMapCount(), 1);
    EXPECT_EQ(parent->getChildKeyMap(0), map.get());
    EXPECT_EQ(parent->getParentKeyMapCount(), 0);
    EXPECT_FALSE(map->addParentKeyMap(parent));
    EXPECT_FALSE(parent->addChildKeyMap(map));
    EXPECT_EQ(parent->getChildKeyMapCount(), 1);
    EXPECT_EQ(map->getParent(), nullptr);
}

TEST(QORKeyMap, IsNotItsOwnParent) {
    Held<QORKeyMap> map;
    EXPECT_FALSE(map->addParentKeyMap(map));
    EXPECT_FALSE(map->addChildKeyMap(map));
    EXPECT_FALSE(map->isReferenced());
}

TEST(QORKeyMap, KeepsTheOrderOfInsertion) {
    Held<QORKeyMap> map;
    Held<QORClass> objects[4];
    int const order[] = {2, 0, 3, 1};
    for (int const i : order)
        EXPECT_TRUE(map->addSourceModelObject(objects[i]));
    EXPECT_FALSE(map->addSourceModelObject(objects[0]));
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(map->getSourceModelObject(i), objects[order[i]].get());
    Held<QORCandidateKey> key;
    Held<QORKeyMap> maps[3];
    for (int const i : {1, 2, 0})
        EXPECT_TRUE(maps[i]->addDestinationKey(key));
    EXPECT_EQ(key->getDestinationOfKeyMap(0), maps[1].get());
    EXPECT_EQ(key->getDestinationOfKeyMap(1), maps[2].get());
    EXPECT_EQ(key->getDestinationOfKeyMap(2), maps[0].get());
}

TEST(QORKeyMap, ShowsItsFirstDestinationFeatureAndNoKey) {
    Held<QORKeyMap> map("map");
    Held<QORCandidateKey> key("key");
    Held<QORAttribute> feature("feature");
    map->addDestinationKey(key);
    EXPECT_STREQ(map->getDisplayName().chars, "map");
    map->addDestinationFeature(feature);
    EXPECT_STREQ(map->getDisplayName().chars, "feature");
}

TEST(QORKeyMap, DeletesWhatAFeatureMapHasBeforeItsOwnEnds) {
    Journal journal;
    QORKeyMap map;
    map.addSourceModelObject(watched<QORClass>(journal, "source 1"));
    map.addSourceModelObject(watched<QORClass>(journal, "source 2"));
    map.addParentKeyMap(watched<QORKeyMap>(journal, "parent"));
    map.addChildKeyMap(watched<QORKeyMap>(journal, "child"));
    map.addDestinationKey(watched<QORCandidateKey>(journal, "key"));
    map.addSourceFeature(watched<QORAttribute>(journal, "feature"));
    map.addExpression(watched<QORExpression>(journal, "expression"));
    EXPECT_TRUE(map.recursiveDelete());
    EXPECT_EQ(journal.deaths,
              (Labels{"expression", "feature", "key", "child", "parent", "source 1", "source 2"}));
}

TEST(QORKeyMap, LeavesNeighboursThatOthersNeed) {
    Held<QORClassifierMap> owner;
    Held<QORKeyMap> child;
    Held<QORKeyMap> parent;
    Held<QORKeyMap> grandparent;
    auto* const map = new QORKeyMap;
    owner->addFeatureMap(child);
    child->addParentKeyMap(map);
    map->addParentKeyMap(parent);
    parent->addParentKeyMap(grandparent);
    delete map;
    EXPECT_EQ(child->getParentKeyMapCount(), 0);
    EXPECT_EQ(child->getClassifierMap(), owner.get());
    EXPECT_EQ(parent->getChildKeyMapCount(), 0);
    EXPECT_EQ(parent->getParentKeyMap(0), grandparent.get());
}

TEST(QORKeyMap, IsolatesItsOwnEndsFirst) {
    Journal journal;
    QORKeyMap map;
    map.addSourceFeature(watched<QORAttribute>(journal, "feature"));
    map.addClassifierMap(watched<QORClassifierMap>(journal, "owner"));
    map.addSourceModelObject(watched<QORClass>(journal, "source"));
    map.addParentKeyMap(watched<QORKeyMap>(journal, "parent"));
    map.addChildKeyMap(watched<QORKeyMap>(journal, "child"));
    map.addDestinationKey(watched<QORCandidateKey>(journal, "key"));
    EXPECT_EQ(map.isolate(true), &map);
    EXPECT_EQ(journal.deaths, (Labels{"key", "child", "parent", "source", "owner", "feature"}));
}

TEST(QORKeyMap, WalksNoOtherKeyMap) {
    Held<QORKeyMap> map;
    Held<QORKeyMap> child;
    Held<QORKeyMap> parent;
    map->addChildKeyMap(child);
    map->addParentKeyMap(parent);
    EXPECT_EQ(walkOf(*map), Objects{map});
}

TEST(QORKeyMap, ComparesAsAFeatureMap) {
    expectCompared<QORKeyMap>([](auto& map) { map.setPosition(1); });
    Held<QORKeyMap> map;
    Held<QORKeyMap> other;
    Held<QORCandidateKey> key;
    map->addDestinationKey(key);
    EXPECT_TRUE(map->equals(*other));
    QORKeyMap const copy(*map);
    EXPECT_EQ(copy.getDestinationKey(), nullptr);
}
