#include "ReportItemSupport.h"

#include <qor/QORReportPage.h>
#include <qor/QORReportRectangle.h>

using namespace graph;

TEST(QORReportRectangle, IsAReportItem) {
    expectConcrete<QORReportRectangle>(QORElementType::REPORT_RECTANGLE, 131, "ReportRectangle",
                                       QORReportItem::getStaticMetaClass());
    EXPECT_TRUE(QORReportRectangle().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportRectangle().isInstanceOf(QORElementType::REPORT_BLOCK), false);
}

TEST(QORReportRectangle, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportRectangle>();
}

TEST(QORReportRectangle, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportRectangle, QORReportPage>();
}
