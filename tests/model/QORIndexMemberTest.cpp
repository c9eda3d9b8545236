#include "Expectations.h"

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

TEST(QORIndexMember, IsTakenApartInOrder) {
    expectTakenApart<QORIndexMember>(linkEnds, {"attribute", "owner", "base"}, {"base", "attribute"});
}
