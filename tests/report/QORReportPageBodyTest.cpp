#include "ReportItemSupport.h"

#include <qor/QORReportPageBody.h>
#include <qor/QORReportPageFooter.h>

using namespace graph;

TEST(QORReportPageBody, IsAReportItem) {
    expectConcrete<QORReportPageBody>(QORElementType::REPORT_PAGE_BODY, 128, "ReportPageBody",
                                      QORReportItem::getStaticMetaClass());
    EXPECT_TRUE(QORReportPageBody().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportPageBody().isInstanceOf(QORElementType::REPORT_BLOCK), false);
}

TEST(QORReportPageBody, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportPageBody>();
}

TEST(QORReportPageBody, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportPageBody, QORReportPageFooter>();
}
