#include "ReportItemSupport.h"

#include <qor/QORReportMatrix.h>
#include <qor/QORReportTable.h>

using namespace graph;

TEST(QORReportMatrix, IsAReportBlock) {
    expectConcrete<QORReportMatrix>(QORElementType::REPORT_MATRIX, 126, "ReportMatrix",
                                    QORReportBlock::getStaticMetaClass());
    EXPECT_TRUE(QORReportMatrix().isInstanceOf(QORElementType::REPORT_ITEM));
    EXPECT_EQ(QORReportMatrix().isInstanceOf(QORElementType::REPORT_BLOCK), true);
}

TEST(QORReportMatrix, BehavesAsAReportItem) {
    expectPlainReportItem<QORReportMatrix>();
}

TEST(QORReportMatrix, EqualsOnlyItsOwnKind) {
    expectDifferentKinds<QORReportMatrix, QORReportTable>();
}
