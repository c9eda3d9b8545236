#include "Expectations.h"

#include <qor/QORReport.h>
#include <qor/QORReportAttribute.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportField.h>

TEST(QORReportField, ShowsItsOwnName) {
    Graph graph;
    auto* const field = graph.make<QORReportField>("field");
    field->addReportAttribute(graph.make<QORReportAttribute>("attribute"));
    EXPECT_STREQ(field->getDisplayName().chars, "field");
}

TEST(QORReportField, DeletesAFreeAttributeLast) {
    Graph graph;
    QORReportField field;
    field.addReportAttribute(graph.mortal<QORReportAttribute>("attribute"));
    field.addReferencedReportItem(graph.mortal<QORReportField>("referenced"));
    field.addChildReportItem(graph.mortal<QORReportField>("child"));
    EXPECT_TRUE(field.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"child", "referenced", "attribute"}));
}

TEST(QORReportField, LeavesAnAttributeThatHasAClassifier) {
    Graph graph;
    auto* const data = graph.make<QORReportDataSet>();
    auto* const attribute = graph.make<QORReportAttribute>();
    data->addFeature(attribute);
    auto* const field = new QORReportField;
    field->addReportAttribute(attribute);
    delete field;
    EXPECT_EQ(attribute->getReportFieldCount(), 0);
    EXPECT_EQ(attribute->getClassifier(), data);
}

TEST(QORReportField, IsolatesItsAttributeFirst) {
    Graph graph;
    QORReportField field;
    field.addReport(graph.mortal<QORReport>("report"));
    field.addReportAttribute(graph.mortal<QORReportAttribute>("attribute"));
    field.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"attribute", "report"}));
}
