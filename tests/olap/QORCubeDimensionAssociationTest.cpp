#include "GraphTestSupport.h"

#include <qor/QORAggregationRule.h>
#include <qor/QORCube.h>
#include <qor/QORCubeDimensionAssociation.h>
#include <qor/QORDimension.h>
#include <qor/QORHierarchy.h>
#include <qor/QORMeasure.h>

namespace {

using Association = QORCubeDimensionAssociation;

void linkEnds(Graph& graph, Association& association, Owners owners) {
    linkBase(graph, association);
    ASSERT_TRUE(association.addDimension(graph.mortal<QORDimension>("dimension")));
    ASSERT_TRUE(association.addHierarchy(graph.mortal<QORHierarchy>("hierarchy")));
    ASSERT_TRUE(association.addAggregationRule(graph.mortal<QORAggregationRule>("rule")));
    linkOwner(graph, owners, "cube", association, &Association::addCube);
}

} // namespace

TEST(QORCubeDimensionAssociation, ItsCubeIsItsOnlyParent) {
    Graph graph;
    auto* const association = graph.make<Association>("A");
    ASSERT_TRUE(association->addDimension(graph.make<QORDimension>()));
    EXPECT_EQ(association->getParent(), nullptr);
    EXPECT_EQ(association->removeAggregationAssembly(), nullptr);
    auto* const cube = graph.make<QORCube>();
    ASSERT_TRUE(association->addCube(cube) &&
                cube->addCubeDimensionAssociation(graph.make<Association>("B")));
    association->setName("B");
    EXPECT_EQ(association->getName(), "B");
    EXPECT_EQ(association->getDisplayName(), "B");
    EXPECT_EQ(association->getParent(), cube);
    EXPECT_EQ(association->getParentCount(), 1);
    EXPECT_EQ(association->removeAggregationAssembly(), cube);
    EXPECT_EQ(association->getParentCount(), 0);
    EXPECT_NE(association->getDimension(), nullptr);
}

TEST(QORCubeDimensionAssociation, IsTakenApartInOrder) {
    expectTakenApart<Association>(linkEnds, {"cube", "dimension", "hierarchy", "rule", "base"},
                                  {"base", "dimension", "hierarchy", "rule"});
}

TEST(QORCubeDimensionAssociation, EachEndCountsAsAReference) {
    expectEndCounts<Association, QORCube>(&Association::addCube);
    expectEndCounts<Association, QORDimension>(&Association::addDimension);
    expectEndCounts<Association, QORHierarchy>(&Association::addHierarchy);
    expectEndCounts<Association, QORAggregationRule>(&Association::addAggregationRule);
}

TEST(QORCubeDimensionAssociation, LeavesTheRulesToTheirMeasures) {
    Graph graph;
    auto* const association = new Association;
    auto* const measure = graph.make<QORMeasure>();
    auto* const rule = graph.make<QORAggregationRule>();
    ASSERT_TRUE(measure->addAggregationRule(rule) && association->addAggregationRule(rule));
    delete association;
    EXPECT_EQ(rule->getCubeDimensionAssociation(), nullptr);
    EXPECT_EQ(rule->getMeasure(), measure);
}

TEST(QORCubeDimensionAssociation, EqualsWhateverItsLinks) {
    Graph graph;
    auto* const association = graph.make<Association>("A");
    linkEnds(graph, *association, Owners::ALL);
    Association copy(*association);
    EXPECT_FALSE(copy.isReferenced());
    EXPECT_EQ(copy, *association);
    copy.setPhysicalName("P");
    EXPECT_NE(copy, *association);
}
