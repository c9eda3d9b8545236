#include "GraphTestSupport.h"

#include <qor/QORHierarchy.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelAssociation.h>

namespace {

using Step = QORHierarchyLevelAssociation;

void linkEnds(Graph& graph, Step& step, Owners owners) {
    linkBase(graph, step);
    ASSERT_TRUE(step.addLevel(graph.mortal<QORLevel>("level")));
    ASSERT_TRUE(step.addTopOfHierarchy(graph.mortal<QORHierarchy>("topOf")));
    ASSERT_TRUE(step.addBottomOfHierarchy(graph.mortal<QORHierarchy>("bottomOf")));
    ASSERT_TRUE(step.addLevelAssociation(graph.mortal<QORLevelAssociation>("levelAssociation")));
    linkOwner(graph, owners, "hierarchy", step, &Step::addHierarchy);
}

} // namespace

TEST(QORHierarchyLevelAssociation, ShowsHierarchyAndLevelAndNotItsName) {
    Graph graph;
    auto* const step = graph.make<Step>("X");
    EXPECT_EQ(step->getDisplayName(), "");
    auto* const hierarchy = graph.make<QORHierarchy>("H");
    ASSERT_TRUE(step->addHierarchy(hierarchy));
    EXPECT_EQ(step->getDisplayName(), "H_");
    ASSERT_TRUE(step->addLevel(graph.make<QORLevel>("L")));
    EXPECT_EQ(step->getDisplayName(), "H_L");
    ASSERT_TRUE(step->removeHierarchy(hierarchy));
    EXPECT_EQ(step->getDisplayName(), "L");
    ASSERT_TRUE(step->addTopOfHierarchy(hierarchy) && step->addBottomOfHierarchy(hierarchy));
    EXPECT_EQ(step->getDisplayName(), "L");
}

TEST(QORHierarchyLevelAssociation, ANewNameTakesItToTheEndOfItsHierarchy) {
    Graph graph;
    auto* const hierarchy = graph.make<QORHierarchy>();
    auto* const first = graph.make<Step>("A");
    auto* const second = graph.make<Step>("B");
    ASSERT_TRUE(hierarchy->addHierarchyLevelAssociation(first) && second->addHierarchy(hierarchy));
    first->setName("B");
    EXPECT_EQ(hierarchy->getHierarchyLevelAssociation(0), second);
    EXPECT_EQ(hierarchy->getHierarchyLevelAssociation(1), first);
    EXPECT_EQ(first->getName(), "B");
}

TEST(QORHierarchyLevelAssociation, TheHierarchyThatHoldsItIsItsOnlyParent) {
    Graph graph;
    auto* const step = graph.make<Step>();
    auto* const hierarchy = graph.make<QORHierarchy>();
    ASSERT_TRUE(step->addTopOfHierarchy(hierarchy) && step->addBottomOfHierarchy(hierarchy));
    EXPECT_EQ(step->getParent(), nullptr);
    EXPECT_EQ(step->removeAggregationAssembly(), nullptr);
    ASSERT_TRUE(step->addHierarchy(hierarchy));
    EXPECT_EQ(step->getParent(), hierarchy);
    EXPECT_EQ(step->getParentCount(), 1);
    EXPECT_EQ(step->removeAggregationAssembly(), hierarchy);
    EXPECT_EQ(step->getTopOfHierarchy(), hierarchy);
    EXPECT_EQ(step->getBottomOfHierarchy(), hierarchy);
    EXPECT_EQ(hierarchy->getHierarchyLevelAssociationCount(), 0);
}

TEST(QORHierarchyLevelAssociation, IsTakenApartInOrder) {
    expectTakenApart<Step>(linkEnds, {"hierarchy", "level", "topOf", "bottomOf", "levelAssociation", "base"},
                           {"base", "level", "topOf", "bottomOf", "levelAssociation"});
}

TEST(QORHierarchyLevelAssociation, EachEndCountsAsAReference) {
    expectEndCounts<Step, QORHierarchy>(&Step::addHierarchy);
    expectEndCounts<Step, QORLevel>(&Step::addLevel);
    expectEndCounts<Step, QORHierarchy>(&Step::addTopOfHierarchy);
    expectEndCounts<Step, QORHierarchy>(&Step::addBottomOfHierarchy);
    expectEndCounts<Step, QORLevelAssociation>(&Step::addLevelAssociation);
}

TEST(QORHierarchyLevelAssociation, ComparesItsPosition) {
    Step step;
    EXPECT_EQ(step.getPosition(), 0);
    step.setPosition(2);
    Step other(step);
    EXPECT_EQ(other, step);
    other.setPosition(3);
    EXPECT_NE(other, step);
    other.setFrom(step);
    EXPECT_EQ(other, step);
}
