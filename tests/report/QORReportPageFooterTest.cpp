#include "ReportItemSupport.h"

#include <qor/QORReportPageFooter.h>
#include <qor/QORReportPageHeader.h>

using namespace graph;

TEST(QORReportPageFooter, IsAReportItem) {
    expectConcrete<QORReportPageFooter>(QORElementType::REPORT_PAGE_FOOTER, 129, "ReportPageFooter",
                                        QORReportItem::getStaticMetaClass());
    EXPECT_TRUE(QORReportPageFooter().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportPageFooter().isInstanceOf(QORElementType::REPORT_BLOCK), false);
}

TEST(QORReportPageFooter, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportPageFooter>();
}

TEST(QORReportPageFooter, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportPageFooter, QORReportPageHeader>();
}
