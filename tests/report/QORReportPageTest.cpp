#include "ReportItemSupport.h"

#include <qor/QORReportPage.h>
#include <qor/QORReportPageBody.h>

using namespace graph;

TEST(QORReportPage, IsAReportItem) {
    expectConcrete<QORReportPage>(QORElementType::REPORT_PAGE, 127, "ReportPage",
                                  QORReportItem::getStaticMetaClass());
    EXPECT_TRUE(QORReportPage().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportPage().isInstanceOf(QORElementType::REPORT_BLOCK), false);
}

TEST(QORReportPage, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportPage>();
}

TEST(QORReportPage, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportPage, QORReportPageBody>();
}
