#include "Expectations.h"

#include <qor/QORAggregationRule.h>
#include <qor/QORCubeDimensionAssociation.h>

namespace {

using Rule = QORAggregationRule;

void linkEnds(Graph& graph, Rule& rule, Owners owners) {
    linkBase(graph, rule);
    ASSERT_TRUE(rule.addCubeDimensionAssociation(graph.mortal<QORCubeDimensionAssociation>("association")));
    linkOwner(graph, owners, "measure", rule, &Rule::addMeasure);
}

} // namespace

TEST(QORAggregationRule, IsTakenApartInOrder) {
    expectTakenApart<Rule>(linkEnds, {"measure", "association", "base"}, {"base", "association"});
}
