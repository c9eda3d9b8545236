#include "ReportItemSupport.h"

#include <qor/QORReportBlock.h>

using namespace graph;

TEST(QORReportBlock, IsAnAbstractReportItem) {
    expectAbstract<QORReportBlock>(QORElementType::REPORT_BLOCK, 146, "ReportBlock",
                                   QORReportItem::getStaticMetaClass());
}

TEST(QORReportBlock, HasTheOwnersOfAReportItem) {
    Held<Plain<QORReportBlock>> block("block");
    Held<QORReport> report;
    report->addReportItem(block);
    EXPECT_EQ(block->getParent(), report.get());
    EXPECT_EQ(block->getParentCount(), 1);
    expectDeletionRefused(*block);
    EXPECT_EQ(block->removeAggregationAssembly(), report.get());
}
