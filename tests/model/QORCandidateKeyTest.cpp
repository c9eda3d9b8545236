#include "Expectations.h"

#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORForeignKey.h>
#include <qor/QORIndex.h>
#include <qor/QORKeyMap.h>

namespace {

void linkEnds(Graph& graph, QORCandidateKey& key, Owners owners) {
    linkBase(graph, key);
    ASSERT_TRUE(key.addPrimaryOfClass(graph.mortal<QORClass>("primary")));
    ASSERT_TRUE(key.addForeignKey(graph.mortal<QORForeignKey>("foreignKey")));
    ASSERT_TRUE(key.addIndex(graph.mortal<QORIndex>("index")));
    ASSERT_TRUE(key.addDestinationOfKeyMap(graph.mortal<QORKeyMap>("keyMap")));
    ASSERT_TRUE(key.addAttribute(graph.mortal<QORAttribute>("attribute")));
    linkOwner(graph, owners, "owner", key, &QORKey::addAssociatedClass);
}

QORAttribute* attributeOf(Graph& graph, QORCandidateKey& key, char const* name, short position) {
    auto* const attribute = graph.make<QORAttribute>(name);
    attribute->setPosition(position);
    EXPECT_TRUE(key.addAttribute(attribute));
    return attribute;
}

} // namespace

TEST(QORCandidateKey, AKeyAloneShowsCk) {
    QORCandidateKey key;
    EXPECT_EQ(key.getDisplayName(), "ck");
    key.setName("K");
    EXPECT_EQ(key.getDisplayName(), "ck");
    EXPECT_FALSE(key.getUniqueKey());
}

TEST(QORCandidateKey, ThePrimaryClassAloneMakesTheDisplayName) {
    Graph graph;
    auto* const key = graph.make<QORCandidateKey>("K");
    attributeOf(graph, *key, "A", 0);
    ASSERT_TRUE(graph.make<QORClass>("Owner")->addKey(key));
    ASSERT_TRUE(key->addPrimaryOfClass(graph.make<QORClass>("Primary")));
    EXPECT_EQ(key->getDisplayName(), "pk_Primary");
    key->getPrimaryOfClass()->setName("");
    EXPECT_EQ(key->getDisplayName(), "pk_");
}

TEST(QORCandidateKey, ShowsClassAndFirstAttribute) {
    Graph graph;
    auto* const key = graph.make<QORCandidateKey>();
    auto* const owner = graph.make<QORClass>("T");
    ASSERT_TRUE(owner->addKey(key));
    EXPECT_EQ(key->getDisplayName(), "ck_T");
    attributeOf(graph, *key, "B", 0);
    EXPECT_EQ(key->getDisplayName(), "ck_T_B");
    ASSERT_TRUE(owner->removeKey(key));
    EXPECT_EQ(key->getDisplayName(), "ck_B");
}

TEST(QORCandidateKey, TheLowestPositionIsFirstAndOfEqualOnesTheLowestName) {
    Graph graph;
    auto* const key = graph.make<QORCandidateKey>();
    ASSERT_TRUE(graph.make<QORClass>("T")->addKey(key));
    attributeOf(graph, *key, "B", 3);
    auto* const sameName = attributeOf(graph, *key, "A", 3);
    EXPECT_EQ(key->getDisplayName(), "ck_T_A");
    attributeOf(graph, *key, "A", 3);
    EXPECT_EQ(key->getDisplayName(), "ck_T_A");
    auto* const lowest = attributeOf(graph, *key, "Z", 2);
    EXPECT_EQ(key->getDisplayName(), "ck_T_Z");
    sameName->setPosition(-1);
    EXPECT_EQ(key->getDisplayName(), "ck_T_A");
    lowest->setPosition(-2);
    EXPECT_EQ(key->getDisplayName(), "ck_T_Z");
}

TEST(QORCandidateKey, NamesCompareByByte) {
    Graph graph;
    auto* const key = graph.make<QORCandidateKey>();
    attributeOf(graph, *key, "a", 0);
    attributeOf(graph, *key, inUtf8, 0);
    attributeOf(graph, *key, "aa", 0);
    EXPECT_EQ(key->getDisplayName(), "ck_a");
    attributeOf(graph, *key, "B", 0);
    EXPECT_EQ(key->getDisplayName(), "ck_B");
}

TEST(QORCandidateKey, IsTakenApartInOrder) {
    expectTakenApart<QORCandidateKey>(
        linkEnds, {"primary", "foreignKey", "index", "owner", "keyMap", "attribute", "base"},
        {"base", "index", "keyMap", "attribute", "primary", "foreignKey"});
}
