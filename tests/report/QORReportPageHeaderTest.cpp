#include "ReportItemSupport.h"

#include <qor/QORReportPageHeader.h>

using namespace graph;

TEST(QORReportPageHeader, IsAReportItem) {
    expectConcrete<QORReportPageHeader>(QORElementType::REPORT_PAGE_HEADER, 130, "ReportPageHeader",
                                        QORReportItem::getStaticMetaClass());
    EXPECT_TRUE(QORReportPageHeader().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportPageHeader().isInstanceOf(QORElementType::REPORT_BLOCK), false);
}

TEST(QORReportPageHeader, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportPageHeader>();
}

TEST(QORReportPageHeader, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportPageHeader, QORReportRectangle>();
}
