#include "ReportItemSupport.h"

#include <qor/QORReportList.h>
#include <qor/QORReportMatrix.h>

using namespace graph;

TEST(QORReportList, IsAReportBlock) {
    expectConcrete<QORReportList>(QORElementType::REPORT_LIST, 125, "ReportList",
                                  QORReportBlock::getStaticMetaClass());
    EXPECT_TRUE(QORReportList().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportList().isInstanceOf(QORElementType::REPORT_BLOCK), true);
}

TEST(QORReportList, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportList>();
}

TEST(QORReportList, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportList, QORReportMatrix>();
}
