#include "GraphTestSupport.h"

#include <qor/QORAggregationRule.h>
#include <qor/QORCubeDimensionAssociation.h>
#include <qor/QORMeasure.h>

namespace {

using Rule = QORAggregationRule;

void linkEnds(Graph& graph, Rule& rule, Owners owners) {
    linkBase(graph, rule);
    ASSERT_TRUE(rule.addCubeDimensionAssociation(graph.mortal<QORCubeDimensionAssociation>("association")));
    linkOwner(graph, owners, "measure", rule, &Rule::addMeasure);
}

} // namespace

TEST(QORAggregationRule, StartsAsASum) {
    Rule rule;
    EXPECT_EQ(rule.getRule(), QORAggregationOperatorType::SUM);
    rule.setRule(QORAggregationOperatorType::UNKNOWN);
    Rule other(rule);
    EXPECT_EQ(other, rule);
    other.setRule(QORAggregationOperatorType::MIN);
    EXPECT_NE(other, rule);
    other.setFrom(rule);
    EXPECT_EQ(other, rule);
}

TEST(QORAggregationRule, RulesOfOneMeasureMayShareAName) {
    Graph graph;
    auto* const measure = graph.make<QORMeasure>();
    auto* const rule = graph.make<Rule>("A");
    ASSERT_TRUE(rule->addMeasure(measure) && measure->addAggregationRule(graph.make<Rule>("B")));
    rule->setName("B");
    EXPECT_EQ(rule->getName(), "B");
    EXPECT_EQ(rule->getMeasure(), measure);
    EXPECT_EQ(measure->getAggregationRuleCount(), 2);
}

TEST(QORAggregationRule, ItsMeasureIsItsOnlyParent) {
    Graph graph;
    auto* const rule = graph.make<Rule>();
    ASSERT_TRUE(rule->addCubeDimensionAssociation(graph.make<QORCubeDimensionAssociation>()));
    EXPECT_EQ(rule->getParent(), nullptr);
    EXPECT_EQ(rule->removeAggregationAssembly(), nullptr);
    auto* const measure = graph.make<QORMeasure>();
    ASSERT_TRUE(rule->addMeasure(measure));
    EXPECT_EQ(rule->getParent(), measure);
    EXPECT_EQ(rule->getParentCount(), 1);
    EXPECT_EQ(rule->removeAggregationAssembly(), measure);
    EXPECT_EQ(rule->getParentCount(), 0);
    EXPECT_NE(rule->getCubeDimensionAssociation(), nullptr);
}

TEST(QORAggregationRule, RemovingItsMeasureDeletesAnUnreferencedOne) {
    Graph graph;
    auto* const rule = graph.make<Rule>();
    auto* const measure = graph.mortal<QORMeasure>("measure");
    ASSERT_TRUE(rule->addMeasure(measure));
    EXPECT_TRUE(rule->removeMeasure(measure));
    EXPECT_EQ(graph.deaths, Labels());
    ASSERT_TRUE(rule->addMeasure(measure));
    EXPECT_TRUE(rule->removeMeasure());
    EXPECT_EQ(graph.deaths, Labels{"measure"});
    EXPECT_EQ(rule->getMeasure(), nullptr);
    EXPECT_FALSE(rule->removeMeasure());
}

TEST(QORAggregationRule, RemovingItByPositionDeletesItIfUnreferenced) {
    Graph graph;
    auto* const measure = graph.make<QORMeasure>();
    auto* const rule = graph.mortal<Rule>("rule");
    ASSERT_TRUE(measure->addAggregationRule(rule));
    EXPECT_TRUE(measure->removeAggregationRule(rule));
    EXPECT_EQ(rule->getMeasure(), nullptr);
    auto* const association = graph.make<QORCubeDimensionAssociation>();
    ASSERT_TRUE(measure->addAggregationRule(rule) && association->addAggregationRule(rule));
    EXPECT_TRUE(measure->removeAggregationRule(0));
    EXPECT_EQ(graph.deaths, Labels());
    ASSERT_TRUE(association->removeAggregationRule(rule) && measure->addAggregationRule(rule));
    EXPECT_TRUE(measure->removeAggregationRule(0));
    EXPECT_EQ(graph.deaths, Labels{"rule"});
    EXPECT_FALSE(measure->removeAggregationRule(0));
}

TEST(QORAggregationRule, IsTakenApartInOrder) {
    expectTakenApart<Rule>(linkEnds, {"measure", "association", "base"}, {"base", "association"});
}

TEST(QORAggregationRule, EachEndCountsAsAReference) {
    expectEndCounts<Rule, QORMeasure>(&Rule::addMeasure);
    expectEndCounts<Rule, QORCubeDimensionAssociation>(&Rule::addCubeDimensionAssociation);
}
