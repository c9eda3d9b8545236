#include "Expectations.h"

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

TEST(QORLevelKey, IsTakenApartInOrder) {
    expectTakenApart<Key>(linkEnds, {"level", "attribute", "base"}, {"base", "attribute"});
}
