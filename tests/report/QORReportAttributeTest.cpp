#include "Expectations.h"

#include <qor/QORBaseType.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORReport.h>
#include <qor/QORReportAttribute.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportField.h>

TEST(QORReportAttribute, IsNamedAsAFeature) {
    expectNamedAndOwned<QORReportDataSet, QORReportAttribute>(&QORClassifier::addFeature, "Classifier",
                                                              "Feature");
}

TEST(QORReportAttribute, DeletesWhatAFeatureHasBeforeFreeFields) {
    Graph graph;
    QORReportAttribute attribute;
    auto* const report = graph.make<QORReport>();
    auto* const kept = graph.make<QORReportField>();
    report->addReportItem(kept);
    attribute.addReportField(kept);
    attribute.addReportField(graph.mortal<QORReportField>("field"));
    attribute.addSourceOfFeatureMap(graph.mortal<QORFeatureMap>("map"));
    attribute.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_TRUE(attribute.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"type", "map", "field"}));
    EXPECT_EQ(kept->getReportAttribute(), nullptr);
    EXPECT_EQ(kept->getReport(), report);
}

TEST(QORReportAttribute, IsolatesItsFieldsFirst) {
    Graph graph;
    QORReportAttribute attribute;
    attribute.addClassifier(graph.mortal<QORReportDataSet>("data"));
    attribute.addType(graph.mortal<QORBaseType>("type"));
    attribute.addReportField(graph.mortal<QORReportField>("field"));
    attribute.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"field", "type", "data"}));
}
