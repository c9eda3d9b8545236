#include "Expectations.h"

#include <qor/QORCubeDimensionAssociation.h>
#include <qor/QORDimension.h>
#include <qor/QORHierarchy.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORLevel.h>

namespace {

using Hierarchy = QORHierarchy;
using Step = QORHierarchyLevelAssociation;

void linkEnds(Graph& graph, Hierarchy& hierarchy, Owners owners) {
    linkBase(graph, hierarchy);
    ASSERT_TRUE(hierarchy.addDefaultOfDimension(graph.mortal<QORDimension>("defaultOf")));
    ASSERT_TRUE(hierarchy.addTopHierarchyLevelAssociation(graph.mortal<Step>("top")));
    ASSERT_TRUE(hierarchy.addHierarchyLevelAssociation(graph.mortal<Step>("step")));
    ASSERT_TRUE(hierarchy.addCubeDimensionAssociation(graph.mortal<QORCubeDimensionAssociation>("cube")));
    ASSERT_TRUE(hierarchy.addBottomHierarchyLevelAssociation(graph.mortal<Step>("bottom")));
    linkOwner(graph, owners, "dimension", hierarchy, &Hierarchy::addDimension);
}

} // namespace

TEST(QORHierarchy, TheDimensionItIsTheDefaultOfIsNoParent) {
    Graph graph;
    auto* const hierarchy = graph.make<Hierarchy>();
    ASSERT_TRUE(hierarchy->addDefaultOfDimension(graph.make<QORDimension>()));
    EXPECT_EQ(hierarchy->getParent(), nullptr);
    EXPECT_EQ(hierarchy->removeAggregationAssembly(), nullptr);
    auto* const dimension = graph.make<QORDimension>();
    ASSERT_TRUE(hierarchy->addDimension(dimension));
    EXPECT_EQ(hierarchy->getParent(), dimension);
    EXPECT_EQ(hierarchy->getParentCount(), 1);
    EXPECT_EQ(hierarchy->removeAggregationAssembly(), dimension);
    EXPECT_NE(hierarchy->getDefaultOfDimension(), nullptr);
}

TEST(QORHierarchy, IsTakenApartInOrder) {
    expectTakenApart<Hierarchy>(linkEnds, {"dimension", "defaultOf", "top", "step", "cube", "bottom", "base"},
                                {"base", "step", "defaultOf", "top", "cube", "bottom"});
}

TEST(QORHierarchy, AFreeDefaultHierarchyTakesAnUnreferencedDimensionWithIt) {
    Graph graph;
    auto* const hierarchy = graph.make<Hierarchy>();
    ASSERT_TRUE(hierarchy->addDefaultOfDimension(graph.mortal<QORDimension>("dimension")));
    EXPECT_TRUE(hierarchy->recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"dimension"});
    EXPECT_EQ(hierarchy->getDefaultOfDimension(), nullptr);
    auto* const kept = graph.make<QORDimension>();
    ASSERT_TRUE(hierarchy->addDefaultOfDimension(kept) && kept->addLevel(graph.make<QORLevel>()));
    EXPECT_TRUE(hierarchy->recursiveDelete());
    EXPECT_EQ(kept->getDefaultHierarchy(), nullptr);
}

TEST(QORHierarchy, DeletesItsStepsThatAreTopOrBottomOnce) {
    Graph graph;
    auto* const hierarchy = new Hierarchy;
    auto* const step = graph.mortal<Step>("step");
    ASSERT_TRUE(hierarchy->addHierarchyLevelAssociation(step) &&
                hierarchy->addTopHierarchyLevelAssociation(step) &&
                hierarchy->addBottomHierarchyLevelAssociation(step) &&
                hierarchy->addHierarchyLevelAssociation(graph.mortal<Step>("second")));
    delete hierarchy;
    EXPECT_EQ(graph.deaths, (Labels{"step", "second"}));
}
