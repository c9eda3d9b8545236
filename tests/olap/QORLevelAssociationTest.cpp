#include "GraphTestSupport.h"

#include <qor/QORDrillPathLevelAssociation.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelAssociation.h>

namespace {

using Association = QORLevelAssociation;

void linkEnds(Graph& graph, Association& association, Owners owners) {
    linkBase(graph, association);
    ASSERT_TRUE(association.addChildLevel(graph.mortal<QORLevel>("child")));
    ASSERT_TRUE(association.addHierarchyLevelAssociation(
        graph.mortal<QORHierarchyLevelAssociation>("hierarchy step")));
    ASSERT_TRUE(association.addDrillPathLevelAssociation(
        graph.mortal<QORDrillPathLevelAssociation>("drill path step")));
    linkOwner(graph, owners, "parent", association, &Association::addParentLevel);
}

} // namespace

TEST(QORLevelAssociation, ShowsItsLevelsAndNotItsName) {
    Graph graph;
    auto* const association = graph.make<Association>("X");
    EXPECT_EQ(association->getDisplayName(), "");
    auto* const parent = graph.make<QORLevel>("P");
    ASSERT_TRUE(association->addParentLevel(parent));
    EXPECT_EQ(association->getDisplayName(), "P_");
    ASSERT_TRUE(association->addChildLevel(graph.make<QORLevel>("C")));
    EXPECT_EQ(association->getDisplayName(), "P_C");
    parent->setName("");
    EXPECT_EQ(association->getDisplayName(), "_C");
    ASSERT_TRUE(association->removeParentLevel(parent));
    EXPECT_EQ(association->getDisplayName(), "C");
}

TEST(QORLevelAssociation, ANewNameTakesItToTheEndOfItsLevel) {
    Graph graph;
    auto* const level = graph.make<QORLevel>();
    auto* const first = graph.make<Association>("A");
    auto* const second = graph.make<Association>("B");
    ASSERT_TRUE(level->addParentOfLevelAssociation(first) && level->addParentOfLevelAssociation(second));
    first->setName("B");
    EXPECT_EQ(first->getName(), "B");
    EXPECT_EQ(level->getParentOfLevelAssociation(0), second);
    EXPECT_EQ(level->getParentOfLevelAssociation(1), first);
    EXPECT_EQ(first->getParentLevel(), level);
}

TEST(QORLevelAssociation, TheLevelAboveIsItsOnlyParent) {
    Graph graph;
    auto* const association = graph.make<Association>();
    ASSERT_TRUE(association->addChildLevel(graph.make<QORLevel>()));
    EXPECT_EQ(association->getParent(), nullptr);
    EXPECT_EQ(association->removeAggregationAssembly(), nullptr);
    auto* const level = graph.make<QORLevel>();
    ASSERT_TRUE(association->addParentLevel(level));
    EXPECT_EQ(association->getParent(), level);
    EXPECT_EQ(association->getParentCount(), 1);
    EXPECT_EQ(association->removeAggregationAssembly(), level);
    EXPECT_EQ(association->getParentCount(), 0);
    EXPECT_NE(association->getChildLevel(), nullptr);
}

TEST(QORLevelAssociation, MayLeadBackToItsLevel) {
    Graph graph;
    auto* const level = new QORLevel;
    auto* const association = graph.mortal<Association>("association");
    ASSERT_TRUE(association->addParentLevel(level) && association->addChildLevel(level));
    delete level;
    EXPECT_EQ(graph.deaths, Labels{"association"});
}

TEST(QORLevelAssociation, IsTakenApartInOrder) {
    expectTakenApart<Association>(linkEnds, {"parent", "child", "hierarchy step", "drill path step", "base"},
                                  {"base", "child", "hierarchy step", "drill path step"});
}

TEST(QORLevelAssociation, EachEndCountsAsAReference) {
    expectEndCounts<Association, QORLevel>(&Association::addParentLevel);
    expectEndCounts<Association, QORLevel>(&Association::addChildLevel);
    expectEndCounts<Association, QORHierarchyLevelAssociation>(&Association::addHierarchyLevelAssociation);
    expectEndCounts<Association, QORDrillPathLevelAssociation>(&Association::addDrillPathLevelAssociation);
}

TEST(QORLevelAssociation, EqualsWhateverItsLevels) {
    Graph graph;
    auto* const association = graph.make<Association>("A");
    linkEnds(graph, *association, Owners::ALL);
    Association copy(*association);
    EXPECT_FALSE(copy.isReferenced());
    EXPECT_EQ(copy, *association);
    copy.setName("B");
    EXPECT_NE(copy, *association);
}
