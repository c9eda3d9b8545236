#include "GraphTestSupport.h"

#include <qor/QORDrillPath.h>
#include <qor/QORDrillPathLevelAssociation.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelAssociation.h>

namespace {

using Step = QORDrillPathLevelAssociation;

void linkEnds(Graph& graph, Step& step, Owners owners) {
    linkBase(graph, step);
    ASSERT_TRUE(step.addLevel(graph.mortal<QORLevel>("level")));
    ASSERT_TRUE(step.addTopOfDrillPath(graph.mortal<QORDrillPath>("topOf")));
    ASSERT_TRUE(step.addBottomOfDrillPath(graph.mortal<QORDrillPath>("bottomOf")));
    ASSERT_TRUE(step.addLevelAssociation(graph.mortal<QORLevelAssociation>("levelAssociation")));
    linkOwner(graph, owners, "path", step, &Step::addDrillPath);
}

} // namespace

TEST(QORDrillPathLevelAssociation, ShowsDrillPathAndLevelAndNotItsName) {
    Graph graph;
    auto* const step = graph.make<Step>("X");
    EXPECT_EQ(step->getDisplayName(), "");
    auto* const path = graph.make<QORDrillPath>("D");
    ASSERT_TRUE(step->addDrillPath(path));
    EXPECT_EQ(step->getDisplayName(), "D_");
    ASSERT_TRUE(step->addLevel(graph.make<QORLevel>("L")));
    EXPECT_EQ(step->getDisplayName(), "D_L");
    ASSERT_TRUE(step->removeDrillPath(path));
    EXPECT_EQ(step->getDisplayName(), "L");
    ASSERT_TRUE(step->addTopOfDrillPath(path) && step->addBottomOfDrillPath(path));
    EXPECT_EQ(step->getDisplayName(), "L");
}

TEST(QORDrillPathLevelAssociation, ANewNameTakesItToTheEndOfItsDrillPath) {
    Graph graph;
    auto* const path = graph.make<QORDrillPath>();
    auto* const first = graph.make<Step>("A");
    auto* const second = graph.make<Step>("B");
    ASSERT_TRUE(path->addDrillPathLevelAssociation(first) && second->addDrillPath(path));
    first->setName("B");
    EXPECT_EQ(path->getDrillPathLevelAssociation(0), second);
    EXPECT_EQ(path->getDrillPathLevelAssociation(1), first);
    EXPECT_EQ(first->getName(), "B");
}

TEST(QORDrillPathLevelAssociation, TheDrillPathThatHoldsItIsItsOnlyParent) {
    Graph graph;
    auto* const step = graph.make<Step>();
    auto* const path = graph.make<QORDrillPath>();
    ASSERT_TRUE(step->addTopOfDrillPath(path) && step->addBottomOfDrillPath(path));
    EXPECT_EQ(step->getParent(), nullptr);
    EXPECT_EQ(step->removeAggregationAssembly(), nullptr);
    ASSERT_TRUE(step->addDrillPath(path));
    EXPECT_EQ(step->getParent(), path);
    EXPECT_EQ(step->getParentCount(), 1);
    EXPECT_EQ(step->removeAggregationAssembly(), path);
    EXPECT_EQ(step->getTopOfDrillPath(), path);
    EXPECT_EQ(step->getBottomOfDrillPath(), path);
    EXPECT_EQ(path->getDrillPathLevelAssociationCount(), 0);
}

TEST(QORDrillPathLevelAssociation, IsTakenApartInOrder) {
    expectTakenApart<Step>(linkEnds, {"path", "level", "topOf", "bottomOf", "levelAssociation", "base"},
                           {"base", "level", "topOf", "bottomOf", "levelAssociation"});
}

TEST(QORDrillPathLevelAssociation, EachEndCountsAsAReference) {
    expectEndCounts<Step, QORDrillPath>(&Step::addDrillPath);
    expectEndCounts<Step, QORLevel>(&Step::addLevel);
    expectEndCounts<Step, QORDrillPath>(&Step::addTopOfDrillPath);
    expectEndCounts<Step, QORDrillPath>(&Step::addBottomOfDrillPath);
    expectEndCounts<Step, QORLevelAssociation>(&Step::addLevelAssociation);
}

TEST(QORDrillPathLevelAssociation, ComparesItsPosition) {
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
