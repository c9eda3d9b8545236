#include "Expectations.h"

#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORForeignKey.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>
#include <qor/QORIndexMemberByPosition.h>
#include <qor/QORNote.h>

namespace {

void linkEnds(Graph& graph, QORIndex& index, Owners owners) {
    linkBase(graph, index);
    ASSERT_TRUE(index.addKey(graph.mortal<QORCandidateKey>("key")));
    ASSERT_TRUE(index.addIndexMember(graph.mortal<QORIndexMember>("member")));
    linkOwner(graph, owners, "owner", index, &QORIndex::addAssociatedClass);
}

QORIndexMember* memberOf(Graph& graph, QORIndex& index, char const* name, short position,
                         char const* attribute) {
    auto* const member = graph.make<QORIndexMember>(name);
    member->setPosition(position);
    EXPECT_TRUE(index.addIndexMember(member));
    if (attribute) {
        EXPECT_TRUE(member->addAttribute(graph.make<QORAttribute>(attribute)));
    }
    return member;
}

} // namespace

TEST(QORIndex, AloneShowsNothingNotEvenItsName) {
    QORIndex index;
    EXPECT_EQ(index.getDisplayName(), "");
    index.setName("I");
    EXPECT_EQ(index.getDisplayName(), "");
}

TEST(QORIndex, ShowsClassAndColumnOfTheFirstMember) {
    Graph graph;
    auto* const index = graph.make<QORIndex>("I");
    memberOf(graph, *index, "", 0, "C");
    EXPECT_EQ(index->getDisplayName(), "_C");
    auto* const owner = graph.make<QORClass>("T");
    ASSERT_TRUE(owner->addIndex(index));
    EXPECT_EQ(index->getDisplayName(), "T_C");
    owner->setName("");
    EXPECT_EQ(index->getDisplayName(), "_C");
}

TEST(QORIndex, AFirstMemberWithoutColumnAddsNothing) {
    Graph graph;
    auto* const index = graph.make<QORIndex>();
    ASSERT_TRUE(graph.make<QORClass>("T")->addIndex(index));
    EXPECT_EQ(index->getDisplayName(), "T");
    memberOf(graph, *index, "", 1, "C");
    memberOf(graph, *index, "", 0, nullptr);
    EXPECT_EQ(index->getDisplayName(), "T");
}

TEST(QORIndex, TheFirstMemberHasTheLowestPositionAndOfEqualOnesTheLowestName) {
    Graph graph;
    auto* const index = graph.make<QORIndex>();
    auto* const high = memberOf(graph, *index, "a", 5, "High");
    memberOf(graph, *index, "c", 4, "SecondName");
    memberOf(graph, *index, "b", 4, "FirstName");
    EXPECT_EQ(index->getDisplayName(), "_FirstName");
    high->setPosition(4);
    EXPECT_EQ(index->getDisplayName(), "_High");
}

TEST(QORIndex, ShowsTheLabelOfItsKey) {
    Graph graph;
    auto* const index = graph.make<QORIndex>("I");
    memberOf(graph, *index, "", 0, "C");
    ASSERT_TRUE(graph.make<QORClass>("T")->addIndex(index));
    auto* const key = graph.make<QORCandidateKey>("K");
    ASSERT_TRUE(key->addIndex(index));
    EXPECT_EQ(index->getDisplayName(), "K");
    key->setName("");
    EXPECT_EQ(index->getDisplayName(), "ck");
    ASSERT_TRUE(key->addPrimaryOfClass(graph.make<QORClass>("P")));
    EXPECT_EQ(index->getDisplayName(), "pk_P");
    ASSERT_TRUE(index->removeKey(key));
    ASSERT_TRUE(index->addKey(graph.make<QORForeignKey>()));
    EXPECT_EQ(index->getDisplayName(), "fk");
}

TEST(QORIndex, MembersAreReadInTheOrderOfTheirPositions) {
    Graph graph;
    auto* const index = graph.make<QORIndex>();
    auto* const third = memberOf(graph, *index, "x", 2, nullptr);
    auto* const second = memberOf(graph, *index, "b", 1, nullptr);
    auto* const first = memberOf(graph, *index, "a", 1, nullptr);
    QORIndexMemberByPosition view;
    ASSERT_TRUE(view.add(graph.make<QORIndexMember>("old"), false, nullptr));
    index->getIndexMemberByPosition(view);
    EXPECT_EQ(listOf(view), (Objects{first, second, third}));
    ASSERT_TRUE(index->removeIndexMember(first) && index->removeIndexMember(second) &&
                index->removeIndexMember(third));
    EXPECT_EQ(view.size, 3);
    index->getIndexMemberByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORIndex, IsTakenApartInOrder) {
    expectTakenApart<QORIndex>(linkEnds, {"owner", "key", "member", "base"}, {"base", "member", "key"});
}

TEST(QORIndex, AClassDeletesItsIndexesWithTheirMembersAndNotTheKeysThatOthersHold) {
    Graph graph;
    auto* const owner = new QORClass;
    auto* const index = new QORIndex;
    auto* const member = new QORIndexMember;
    auto* const key = graph.make<QORCandidateKey>();
    auto* const other = graph.make<QORClass>();
    ASSERT_TRUE(owner->addIndex(index) && index->addIndexMember(member) && index->addKey(key) &&
                other->addKey(key));
    ASSERT_TRUE(member->addNote(graph.mortal<QORNote>("member's note")));
    ASSERT_TRUE(index->addNote(graph.mortal<QORNote>("index's note")));
    delete owner;
    EXPECT_EQ(graph.deaths, (Labels{"index's note", "member's note"}));
    EXPECT_EQ(key->getIndex(), nullptr);
    EXPECT_EQ(key->getAssociatedClass(), other);
}

TEST(QORIndex, ReencodesNotesBeforeMembers) {
    Graph graph;
    auto* const index = graph.make<QORIndex>(inUtf8);
    ASSERT_TRUE(index->addIndexMember(graph.mortal<QORIndexMember>("member", inUtf8)) &&
                index->addNote(graph.mortal<QORNote>("note")) &&
                index->addKey(graph.mortal<QORForeignKey>("key")));
    Recoding recode;
    recode(*index);
    EXPECT_EQ(graph.recodings, (Labels{"note", "member"}));
    EXPECT_EQ(index->getName(), inLatin1);
    EXPECT_EQ(index->getIndexMember(0)->getName(), inLatin1);
}

TEST(QORIndex, IsWalkedWithNotesBeforeMembers) {
    Graph graph;
    auto* const index = graph.make<QORIndex>();
    auto* const note = graph.make<QORNote>();
    auto* const member = memberOf(graph, *index, "", 0, "C");
    ASSERT_TRUE(index->addNote(note) && index->addKey(graph.make<QORForeignKey>()));
    EXPECT_EQ(walkOf(*index), (Objects{index, note, member}));
}
