#include "Expectations.h"

#include <qor/QORReport.h>
#include <qor/QORReportAxis.h>
#include <qor/QORReportBlock.h>
#include <qor/QORReportChart.h>
#include <qor/QORReportField.h>
#include <qor/QORReportList.h>
#include <qor/QORReportMatrix.h>
#include <qor/QORReportPage.h>
#include <qor/QORReportPageBody.h>
#include <qor/QORReportPageFooter.h>
#include <qor/QORReportPageHeader.h>
#include <qor/QORReportRectangle.h>
#include <qor/QORReportTable.h>
#include <qor/QORReportText.h>

namespace {

/// What all kinds of report items have from QORReportItem, whatever they add.
template <class Item>
class QORReportItemKinds : public testing::Test {
protected:
    Graph graph;
    Item* const item = graph.make<Item>("item");
};
using Kinds = testing::Types<QORReportAxis, QORReportChart, QORReportField, QORReportList, QORReportMatrix,
                             QORReportPage, QORReportPageBody, QORReportPageFooter, QORReportPageHeader,
                             QORReportRectangle, QORReportTable, QORReportText, Plain<QORReportBlock>>;
TYPED_TEST_SUITE(QORReportItemKinds, Kinds);

} // namespace

TYPED_TEST(QORReportItemKinds, ShowTheirName) {
    EXPECT_STREQ(this->item->getDisplayName().chars, "item");
}

TYPED_TEST(QORReportItemKinds, LeaveTheirReportBeforeTheOuterItem) {
    auto* const report = this->graph.template make<QORReport>();
    auto* const outer = this->graph.template make<QORReportRectangle>();
    outer->addChildReportItem(this->item);
    report->addReportItem(this->item);
    this->item->setName("renamed");
    expectDeletionRefused(*this->item);
    expectLeaves(*this->item, {report, outer});
}

TYPED_TEST(QORReportItemKinds, AreWalkedAndReencodedWithTheItemsInThem) {
    auto* const report = this->graph.template make<QORReport>();
    auto* const inner = this->graph.template make<TypeParam>(inUtf8);
    report->addReportItem(this->item);
    this->item->addChildReportItem(inner);
    EXPECT_EQ(walkOf(*report), (Objects{report, this->item, inner}));
    Recoding recode;
    recode(*this->item);
    EXPECT_STREQ(inner->getName().chars, inLatin1);
}
