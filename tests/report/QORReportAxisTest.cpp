#include "ReportItemSupport.h"

#include <qor/QORReportAxis.h>

using namespace graph;

TEST(QORReportAxis, IsAReportItem) {
    expectConcrete<QORReportAxis>(QORElementType::REPORT_AXIS, 147, "ReportAxis",
                                  QORReportItem::getStaticMetaClass());
    expectPlainReportItem<QORReportAxis>();
}

TEST(QORReportAxis, StartsGeneric) {
    EXPECT_EQ(QORReportAxis().getRole(), QORAxisRoleType::GENERIC);
    EXPECT_EQ(static_cast<int>(QORAxisRoleType::GENERIC), 0);
}

TEST(QORReportAxis, ComparesAndCopiesItsRole) {
    expectCompared<QORReportAxis>([](auto& axis) { axis.setRole(QORAxisRoleType::CONTENT); });
    QORReportAxis source;
    source.setRole(QORAxisRoleType::VERTICAL);
    source.setPosition(2);
    EXPECT_TRUE(QORReportAxis(source).equals(source));
    QORReportAxis target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
}
