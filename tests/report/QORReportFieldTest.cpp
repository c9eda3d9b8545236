#include "ReportItemSupport.h"

#include <qor/QORReportAttribute.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportField.h>

using namespace graph;

TEST(QORReportField, IsAReportItem) {
    expectConcrete<QORReportField>(QORElementType::REPORT_FIELD, 123, "ReportField",
                                   QORReportItem::getStaticMetaClass());
    expectPlainReportItem<QORReportField>();
}

TEST(QORReportField, IsReferencedThroughItsAttribute) {
    using F = QORReportField;
    expectReferencedThrough<F, QORReportAttribute>(&F::addReportAttribute, &F::removeReportAttribute);
    expectReferencedThrough<F, QORReport>(&QORReportItem::addReport, &QORReportItem::removeReport);
}

TEST(QORReportField, RefusesDeletionUnderAReport) {
    Held<QORReport> report;
    Held<QORReportField> field;
    Held<QORReportAttribute> attribute;
    field->addReportAttribute(attribute);
    report->addReportItem(field);
    expectDeletionRefused(*field);
    EXPECT_EQ(field->getReportAttribute(), attribute.get());
}

TEST(QORReportField, ShowsItsOwnName) {
    Held<QORReportField> field("field");
    Held<QORReportAttribute> attribute("attribute");
    field->addReportAttribute(attribute);
    EXPECT_STREQ(field->getDisplayName().chars, "field");
}

TEST(QORReportField, DeletesAFreeAttributeLast) {
    Journal journal;
    QORReportField field;
    field.addReportAttribute(watched<QORReportAttribute>(journal, "attribute"));
    field.addReferencedReportItem(watched<QORReportField>(journal, "referenced"));
    field.addChildReportItem(watched<QORReportField>(journal, "child"));
    EXPECT_TRUE(field.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"child", "referenced", "attribute"}));
}

TEST(QORReportField, LeavesAnAttributeThatHasAClassifier) {
    Held<QORReportDataSet> data;
    Held<QORReportAttribute> attribute;
    data->addFeature(attribute);
    auto* const field = new QORReportField;
    field->addReportAttribute(attribute);
    delete field;
    EXPECT_EQ(attribute->getReportFieldCount(), 0);
    EXPECT_EQ(attribute->getClassifier(), data.get());
}

TEST(QORReportField, IsolatesItsAttributeFirst) {
    Journal journal;
    QORReportField field;
    field.addReport(watched<QORReport>(journal, "report"));
    field.addReportAttribute(watched<QORReportAttribute>(journal, "attribute"));
    field.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"attribute", "report"}));
}
