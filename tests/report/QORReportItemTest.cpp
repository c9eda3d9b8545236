#include "Expectations.h"

#include <qor/QORCondition.h>
#include <qor/QORNote.h>
#include <qor/QORReport.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportRectangle.h>
#include <qor/QORSynonym.h>

using Item = QORReportRectangle;

TEST(QORReportItem, SortsItsConditionsByNameAndTheirItemsByAddress) {
    Graph graph;
    auto* const one = graph.make<Item>();
    auto* const two = graph.make<Item>();
    auto* const conditionB = graph.make<QORCondition>("b");
    auto* const conditionA = graph.make<QORCondition>("a");
    EXPECT_TRUE(one->addCondition(conditionB));
    EXPECT_TRUE(one->addCondition(conditionA));
    EXPECT_TRUE(two->addCondition(conditionA));
    EXPECT_EQ(one->getCondition(0), conditionA);
    EXPECT_EQ(one->getCondition(1), conditionB);
    auto const [low, high] = byAddress(one, two);
    EXPECT_EQ(conditionA->getReportItem(0), low);
    EXPECT_EQ(conditionA->getReportItem(1), high);
}

TEST(QORReportItem, DeletesChildrenThenReferrersThenReferencesThenConditions) {
    Graph graph;
    Item item;
    item.addCondition(graph.mortal<QORCondition>("condition"));
    item.addReferencedReportItem(graph.mortal<Item>("referenced"));
    item.addReferencedByReportItem(graph.mortal<Item>("referrer"));
    auto* const child = graph.mortal<Item>("child");
    child->addChildReportItem(graph.mortal<Item>("grandchild"));
    item.addChildReportItem(child);
    item.addSynonym(graph.mortal<QORSynonym>("synonym"));
    EXPECT_TRUE(item.recursiveDelete());
    EXPECT_EQ(graph.deaths,
              (Labels{"synonym", "grandchild", "child", "referrer", "referenced", "condition"}));
}

TEST(QORReportItem, LeavesFarObjectsThatOthersNeed) {
    Graph graph;
    auto* const report = graph.make<QORReport>();
    auto* const referenced = graph.make<Item>();
    auto* const data = graph.make<QORReportDataSet>();
    auto* const condition = graph.make<QORCondition>();
    report->addReportItem(referenced);
    data->addFeature(condition);
    auto* const item = new Item;
    item->addReferencedReportItem(referenced);
    item->addCondition(condition);
    delete item;
    EXPECT_EQ(referenced->getReferencedByReportItemCount(), 0);
    EXPECT_EQ(referenced->getReport(), report);
    EXPECT_EQ(condition->getReportItemCount(), 0);
}

TEST(QORReportItem, IsolatesInItsOwnOrder) {
    Graph graph;
    Item item;
    item.addNote(graph.mortal<QORNote>("note"));
    item.addCondition(graph.mortal<QORCondition>("condition"));
    item.addReferencedReportItem(graph.mortal<Item>("referenced"));
    item.addReferencedByReportItem(graph.mortal<Item>("referrer"));
    item.addChildReportItem(graph.mortal<Item>("child"));
    item.addParentReportItem(graph.mortal<Item>("parent"));
    item.addReport(graph.mortal<QORReport>("report"));
    EXPECT_EQ(item.isolate(true), &item);
    EXPECT_EQ(graph.deaths,
              (Labels{"report", "parent", "child", "referrer", "referenced", "condition", "note"}));
}

TEST(QORReportItem, ReencodesAndWalksItsChildrenOnly) {
    Graph graph;
    auto* const item = graph.make<Item>();
    auto* const child = graph.mortal<Item>("child");
    auto* const synonym = graph.make<QORSynonym>();
    item->addChildReportItem(child);
    item->addReferencedReportItem(graph.mortal<Item>("referenced"));
    item->addCondition(graph.mortal<QORCondition>("condition"));
    item->addSynonym(synonym);
    EXPECT_EQ(walkOf(*item), (Objects{item, synonym, child}));
    Recoding recode;
    recode(*item);
    EXPECT_EQ(graph.recodings, Labels{"child"});
}
