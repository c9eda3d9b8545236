#include "ReportItemSupport.h"

#include <qor/QORReportChart.h>
#include <qor/QORReportList.h>

using namespace graph;

TEST(QORReportChart, IsAReportBlock) {
    expectConcrete<QORReportChart>(QORElementType::REPORT_CHART, 121, "ReportChart",
                                   QORReportBlock::getStaticMetaClass());
    EXPECT_TRUE(QORReportChart().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportChart().isInstanceOf(QORElementType::REPORT_BLOCK), true);
}

TEST(QORReportChart, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportChart>();
}

TEST(QORReportChart, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportChart, QORReportList>();
}
