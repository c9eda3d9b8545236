#include "ReportItemSupport.h"

#include <qor/QORReportChart.h>
#include <qor/QORReportTable.h>

using namespace graph;

TEST(QORReportTable, IsAReportBlock) {
    expectConcrete<QORReportTable>(QORElementType::REPORT_TABLE, 132, "ReportTable",
                                   QORReportBlock::getStaticMetaClass());
    EXPECT_TRUE(QORReportTable().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportTable().isInstanceOf(QORElementType::REPORT_BLOCK), true);
}

TEST(QORReportTable, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportTable>();
}

TEST(QORReportTable, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportTable, QORReportChart>();
}
