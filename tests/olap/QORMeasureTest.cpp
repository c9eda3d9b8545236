#include "Expectations.h"

#include <qor/QORAggregationRule.h>
#include <qor/QORBaseType.h>
#include <qor/QORCube.h>
#include <qor/QORCubeDimensionAssociation.h>
#include <qor/QORMeasure.h>
#include <qor/QORNote.h>

namespace {

using Measure = QORMeasure;

void linkEnds(Graph& graph, Measure& measure, Owners owners) {
    linkBase(graph, measure);
    ASSERT_TRUE(measure.addType(graph.mortal<QORBaseType>("type")));
    ASSERT_TRUE(measure.addAggregationRule(graph.mortal<QORAggregationRule>("rule")));
    if (owners == Owners::ALL) {
        ASSERT_TRUE(measure.addClassifier(graph.mortal<QORCube>("cube")));
    } else if (owners == Owners::ONE) {
        ASSERT_TRUE(measure.addClassifier(graph.make<QORCube>()));
    }
}

} // namespace

TEST(QORMeasure, IsAFeatureOfItsCube) {
    expectNamedAndOwned<QORCube, Measure>(&QORClassifier::addFeature, "Classifier", "Feature");
}

TEST(QORMeasure, IsTakenApartInOrder) {
    expectTakenApart<Measure>(linkEnds, {"rule", "type", "cube", "base"}, {"base", "type", "rule"});
}

TEST(QORMeasure, RecursiveDeleteTakesItsRulesOutOfTheAssociations) {
    Graph graph;
    auto* const measure = graph.make<Measure>();
    auto* const association = graph.make<QORCubeDimensionAssociation>();
    auto* const rule = graph.mortal<QORAggregationRule>("rule");
    ASSERT_TRUE(graph.make<QORCube>()->addCubeDimensionAssociation(association) &&
                measure->addAggregationRule(rule) && association->addAggregationRule(rule));
    EXPECT_TRUE(measure->recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"rule"});
    EXPECT_EQ(association->getAggregationRuleCount(), 0);
    EXPECT_NE(association->getCube(), nullptr);
}

TEST(QORMeasure, ReencodesNotesBeforeRules) {
    Graph graph;
    auto* const measure = graph.make<Measure>(inUtf8);
    measure->setInitialValue(inUtf8);
    ASSERT_TRUE(measure->addAggregationRule(graph.mortal<QORAggregationRule>("rule", inUtf8)) &&
                measure->addNote(graph.mortal<QORNote>("note")));
    Recoding recode;
    recode(*measure);
    EXPECT_EQ(graph.recodings, (Labels{"note", "rule"}));
    EXPECT_EQ(measure->getInitialValue(), inLatin1);
    EXPECT_EQ(measure->getName(), inLatin1);
    EXPECT_EQ(measure->getAggregationRule(0)->getName(), inLatin1);
}

TEST(QORMeasure, IsWalkedWithNotesBeforeRules) {
    Graph graph;
    auto* const measure = graph.make<Measure>();
    auto* const rule = graph.make<QORAggregationRule>();
    auto* const note = graph.make<QORNote>();
    ASSERT_TRUE(measure->addAggregationRule(rule) && measure->addNote(note) &&
                measure->addType(graph.make<QORBaseType>()));
    EXPECT_EQ(walkOf(*measure), (Objects{measure, note, rule}));
}
