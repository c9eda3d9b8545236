#include "GraphObservers.h"

#include <qor/QORAllClasses.h>
#include <qor/QORDataSet.h>
#include <qor/QORReport.h>
#include <qor/QORReportAttribute.h>
#include <qor/QORReportDataSet.h>

using namespace graph;

TEST(QORReportDataSet, IsAClassifier) {
    expectConcrete<QORReportDataSet>(QORElementType::REPORT_DATA_SET, 122, "ReportDataSet",
                                     QORClassifier::getStaticMetaClass());
}

TEST(QORReportDataSet, IsMadeByItsNumber) {
    std::unique_ptr<QORObject> const made(createQORObject(QORElementType::REPORT_DATA_SET));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(static_cast<int>(made->getElementType()), 122);
    EXPECT_EQ(made->getMetaClass(), QORReportDataSet::getStaticMetaClass());
}

TEST(QORReportDataSet, OwnsItsAttributesAndGoesWithItsReport) {
    Journal journal;
    auto* const report = new QORReport;
    auto* const data = watched<QORReportDataSet>(journal, "data");
    data->addFeature(watched<QORReportAttribute>(journal, "attribute"));
    report->addClassifier(data);
    delete report;
    EXPECT_EQ(journal.deaths, (Labels{"attribute", "data"}));
}

TEST(QORReportDataSet, EqualsNoDataSetOfATransformation) {
    QORReportDataSet const data;
    QORDataSet const other;
    EXPECT_FALSE(data.equals(other));
    EXPECT_FALSE(other.equals(data));
    expectCompared<QORReportDataSet>([](auto& each) { each.setPhysicalName("x"); });
}
