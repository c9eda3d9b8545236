#include "Graph.h"

#include <qor/QORReport.h>
#include <qor/QORReportAttribute.h>
#include <qor/QORReportDataSet.h>

TEST(QORReportDataSet, OwnsItsAttributesAndGoesWithItsReport) {
    Graph graph;
    auto* const report = new QORReport;
    auto* const data = graph.mortal<QORReportDataSet>("data");
    data->addFeature(graph.mortal<QORReportAttribute>("attribute"));
    report->addClassifier(data);
    delete report;
    EXPECT_EQ(graph.deaths, (Labels{"attribute", "data"}));
}
