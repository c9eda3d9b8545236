#include "GraphTestSupport.h"

#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>

namespace {

void linkEnds(Graph& graph, QORIndexMember& member, Owners owners) {
    linkBase(graph, member);
    ASSERT_TRUE(member.addAttribute(graph.mortal<QORAttribute>("attribute")));
    linkOwner(graph, owners, "owner", member, &QORIndexMember::addIndex);
}

} // namespace

TEST(QORIndexMember, ShowsTheIndexAndTheColumn) {
    Graph graph;
    auto* const member = graph.make<QORIndexMember>("M");
    EXPECT_EQ(member->getDisplayName(), "");
    ASSERT_TRUE(member->addAttribute(graph.make<QORAttribute>("C")));
    EXPECT_EQ(member->getDisplayName(), "C");
    auto* const index = graph.make<QORIndex>("I");
    ASSERT_TRUE(member->addIndex(index));
    EXPECT_EQ(member->getDisplayName(), "I_C");
    ASSERT_TRUE(member->removeAttribute(member->getAttribute()));
    EXPECT_EQ(member->getDisplayName(), "I_");
}

TEST(QORIndexMember, ShowsTheDisplayNameOfAnUnnamedIndex) {
    Graph graph;
    auto* const member = graph.make<QORIndexMember>();
    auto* const index = graph.make<QORIndex>();
    ASSERT_TRUE(index->addIndexMember(member));
    EXPECT_EQ(member->getDisplayName(), "_");
    ASSERT_TRUE(member->addAttribute(graph.make<QORAttribute>("C")));
    ASSERT_TRUE(graph.make<QORClass>("T")->addIndex(index));
    EXPECT_EQ(member->getDisplayName(), "T_C_C");
    ASSERT_TRUE(index->addKey(graph.make<QORCandidateKey>("K")));
    EXPECT_EQ(member->getDisplayName(), "K_C");
}

TEST(QORIndexMember, ItsIndexIsItsOnlyParent) {
    Graph graph;
    auto* const member = graph.make<QORIndexMember>("A");
    EXPECT_EQ(member->removeAggregationAssembly(), nullptr);
    auto* const index = graph.make<QORIndex>();
    ASSERT_TRUE(member->addIndex(index) && index->addIndexMember(graph.make<QORIndexMember>("B")));
    member->setName("B");
    EXPECT_EQ(member->getName(), "B");
    EXPECT_EQ(member->getParent(), index);
    EXPECT_EQ(member->getParentCount(), 1);
    EXPECT_EQ(member->removeAggregationAssembly(), index);
    EXPECT_EQ(member->getParent(), nullptr);
    EXPECT_EQ(index->getIndexMemberCount(), 1);
}

TEST(QORIndexMember, IsTakenApartInOrder) {
    expectTakenApart<QORIndexMember>(linkEnds, {"attribute", "owner", "base"}, {"base", "attribute"});
}

TEST(QORIndexMember, EachEndCountsAsAReference) {
    expectEndCounts<QORIndexMember, QORAttribute>(&QORIndexMember::addAttribute);
    expectEndCounts<QORIndexMember, QORIndex>(&QORIndexMember::addIndex);
}

TEST(QORIndexMember, ComparesPositionAndSortOrder) {
    QORIndexMember member;
    EXPECT_EQ(member.getPosition(), 0);
    EXPECT_EQ(member.getSortOrder(), QORSortOrderType::DEFAULT);
    member.setPosition(3);
    member.setSortOrder(QORSortOrderType::DESCENDING);
    QORIndexMember copy(member);
    EXPECT_EQ(copy.getPosition(), 3);
    EXPECT_EQ(copy.getSortOrder(), QORSortOrderType::DESCENDING);
    EXPECT_EQ(copy, member);
    copy.setPosition(4);
    EXPECT_NE(copy, member);
    copy = member;
    copy.setSortOrder(QORSortOrderType::ASCENDING);
    EXPECT_NE(copy, member);
}
