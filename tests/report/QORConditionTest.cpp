#include "Expectations.h"

#include <qor/QORBaseType.h>
#include <qor/QORCondition.h>
#include <qor/QORReport.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportRectangle.h>

TEST(QORCondition, IsNamedAsAFeature) {
    expectNamedAndOwned<QORReportDataSet, QORCondition>(&QORClassifier::addFeature, "Classifier", "Feature");
}

TEST(QORCondition, DeletesWhatAFeatureHasBeforeFreeItems) {
    Graph graph;
    auto* const report = graph.make<QORReport>();
    auto* const kept = graph.make<QORReportRectangle>();
    report->addReportItem(kept);
    QORCondition condition;
    condition.addReportItem(kept);
    condition.addReportItem(graph.mortal<QORReportRectangle>("item"));
    condition.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_TRUE(condition.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"type", "item"}));
    EXPECT_EQ(kept->getConditionCount(), 0);
    EXPECT_EQ(kept->getReport(), report);
}

TEST(QORCondition, IsolatesItsItemsFirst) {
    Graph graph;
    QORCondition condition;
    condition.addType(graph.mortal<QORBaseType>("type"));
    condition.addReportItem(graph.mortal<QORReportRectangle>("item"));
    condition.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"item", "type"}));
}
