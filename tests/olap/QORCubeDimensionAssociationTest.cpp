#include "Expectations.h"

#include <qor/QORAggregationRule.h>
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

TEST(QORCubeDimensionAssociation, IsTakenApartInOrder) {
    expectTakenApart<Association>(linkEnds, {"cube", "dimension", "hierarchy", "rule", "base"},
                                  {"base", "dimension", "hierarchy", "rule"});
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
