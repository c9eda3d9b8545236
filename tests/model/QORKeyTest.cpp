#include "GraphTestSupport.h"

#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORForeignKey.h>
#include <qor/QORIndex.h>
#include <qor/QORKeyMap.h>

TEST(QORKey, KeysOfOneClassMayShareAName) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const first = graph.make<QORCandidateKey>("A");
    auto* const second = graph.make<QORForeignKey>("B");
    ASSERT_TRUE(owner->addKey(first));
    ASSERT_TRUE(second->addAssociatedClass(owner));
    second->setName("A");
    EXPECT_EQ(second->getName(), "A");
    EXPECT_EQ(second->getAssociatedClass(), owner);
    EXPECT_EQ(owner->getKeyCount(), 2);
    EXPECT_FALSE(owner->addKey(second));
}

TEST(QORKey, ItsClassIsItsOnlyParent) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const key = graph.make<QORForeignKey>();
    EXPECT_EQ(key->getParent(), nullptr);
    EXPECT_EQ(key->getParentCount(), 0);
    EXPECT_EQ(key->removeAggregationAssembly(), nullptr);
    ASSERT_TRUE(key->addAssociatedClass(owner));
    EXPECT_EQ(key->getParent(), owner);
    EXPECT_EQ(key->getParentCount(), 1);
    EXPECT_EQ(key->removeAggregationAssembly(), owner);
    EXPECT_EQ(key->getAssociatedClass(), nullptr);
    EXPECT_EQ(owner->getKeyCount(), 0);
}

TEST(QORKey, RecursiveDeleteUnderAClassChangesNothing) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const key = graph.make<QORCandidateKey>();
    auto* const attribute = graph.make<QORAttribute>();
    auto* const index = graph.make<QORIndex>();
    auto* const map = graph.make<QORKeyMap>();
    ASSERT_TRUE(owner->addKey(key) && key->addAttribute(attribute) && key->addIndex(index) &&
                key->addDestinationOfKeyMap(map));
    EXPECT_FALSE(key->recursiveDelete());
    EXPECT_EQ(key->getAssociatedClass(), owner);
    EXPECT_EQ(key->getAttribute(0), attribute);
    EXPECT_EQ(key->getIndex(), index);
    EXPECT_EQ(key->getDestinationOfKeyMap(0), map);
}

TEST(QORKey, EachEndCountsAsAReference) {
    expectEndCounts<QORCandidateKey, QORIndex>(&QORCandidateKey::addIndex);
    expectEndCounts<QORCandidateKey, QORClass>(&QORCandidateKey::addAssociatedClass);
    expectEndCounts<QORCandidateKey, QORKeyMap>(&QORCandidateKey::addDestinationOfKeyMap);
    expectEndCounts<QORCandidateKey, QORAttribute>(&QORCandidateKey::addAttribute);
}

TEST(QORKey, HasOneIndexAndAnIndexOneKey) {
    Graph graph;
    auto* const key = graph.make<QORCandidateKey>();
    auto* const other = graph.make<QORForeignKey>();
    auto* const index = graph.make<QORIndex>();
    ASSERT_TRUE(key->addIndex(index));
    EXPECT_FALSE(other->addIndex(index));
    EXPECT_FALSE(key->addIndex(graph.make<QORIndex>()));
    EXPECT_EQ(index->getKey(), key);
}
