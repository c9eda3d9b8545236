#include "GraphTestSupport.h"

#include <qor/QORLevel.h>
#include <qor/QORLevelAttribute.h>
#include <qor/QORLevelKey.h>

namespace {

using Key = QORLevelKey;

void linkEnds(Graph& graph, Key& key, Owners owners) {
    linkBase(graph, key);
    ASSERT_TRUE(key.addLevelAttribute(graph.mortal<QORLevelAttribute>("attribute")));
    linkOwner(graph, owners, "level", key, &Key::addLevel);
}

} // namespace

TEST(QORLevelKey, KeepsItsLevelWhenItGetsAName) {
    Graph graph;
    auto* const level = graph.make<QORLevel>();
    auto* const key = graph.make<Key>("A");
    ASSERT_TRUE(key->addLevel(level));
    key->setName("B");
    EXPECT_EQ(key->getName(), "B");
    EXPECT_EQ(key->getDisplayName(), "B");
    EXPECT_EQ(key->getLevel(), level);
    EXPECT_EQ(level->getLevelKey(), key);
}

TEST(QORLevelKey, ItsLevelIsItsOnlyParent) {
    Graph graph;
    auto* const key = graph.make<Key>();
    EXPECT_EQ(key->removeAggregationAssembly(), nullptr);
    auto* const level = graph.make<QORLevel>();
    ASSERT_TRUE(key->addLevel(level) && key->addLevelAttribute(graph.make<QORLevelAttribute>()));
    EXPECT_EQ(key->getParent(), level);
    EXPECT_EQ(key->getParentCount(), 1);
    EXPECT_EQ(key->removeAggregationAssembly(), level);
    EXPECT_EQ(level->getLevelKey(), nullptr);
    EXPECT_EQ(key->getParentCount(), 0);
    EXPECT_EQ(key->getLevelAttributeCount(), 1);
}

TEST(QORLevelKey, AnAttributeIsInOneKey) {
    Graph graph;
    auto* const attribute = graph.make<QORLevelAttribute>();
    auto* const key = graph.make<Key>();
    EXPECT_TRUE(key->addLevelAttribute(attribute));
    EXPECT_FALSE(graph.make<Key>()->addLevelAttribute(attribute));
    EXPECT_EQ(attribute->getLevelKey(), key);
}

TEST(QORLevelKey, IsTakenApartInOrder) {
    expectTakenApart<Key>(linkEnds, {"level", "attribute", "base"}, {"base", "attribute"});
}

TEST(QORLevelKey, EachEndCountsAsAReference) {
    expectEndCounts<Key, QORLevel>(&Key::addLevel);
    expectEndCounts<Key, QORLevelAttribute>(&Key::addLevelAttribute);
}

TEST(QORLevelKey, EqualsWhateverItsLinks) {
    Graph graph;
    auto* const key = graph.make<Key>("K");
    linkEnds(graph, *key, Owners::ALL);
    Key copy(*key);
    EXPECT_FALSE(copy.isReferenced());
    EXPECT_EQ(copy, *key);
    copy.setStereotype("S");
    EXPECT_NE(copy, *key);
}
