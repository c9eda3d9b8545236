#include "ReportItemSupport.h"

#include <qor/QORCondition.h>
#include <qor/QORNote.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportItemByPosition.h>
#include <qor/QORReportText.h>
#include <qor/QORSynonym.h>

using namespace graph;

using Item = QORReportRectangle;

TEST(QORReportItem, IsAnAbstractModelObject) {
    expectAbstract<QORReportItem>(QORElementType::REPORT_ITEM, 124, "ReportItem",
                                  QORModelObject::getStaticMetaClass());
}

TEST(QORReportItem, StartsAtPositionZero) {
    EXPECT_EQ(Item().getPosition(), 0);
}

TEST(QORReportItem, IsReferencedThroughEachOfItsLinks) {
    using I = QORReportItem;
    expectReferencedThrough<Item, QORReport>(&I::addReport, &I::removeReport);
    expectReferencedThrough<Item, Item>(&I::addParentReportItem, &I::removeParentReportItem);
    expectReferencedThrough<Item, Item>(&I::addChildReportItem, &I::removeChildReportItem);
    expectReferencedThrough<Item, Item>(&I::addReferencedByReportItem, &I::removeReferencedByReportItem);
    expectReferencedThrough<Item, Item>(&I::addReferencedReportItem, &I::removeReferencedReportItem);
    expectReferencedThrough<Item, QORCondition>(&I::addCondition, &I::removeCondition);
}

TEST(QORReportItem, LeavesItsReportBeforeItsParentItem) {
    Held<QORReport> report;
    Held<Item> parent;
    Held<Item> item("item");
    parent->addChildReportItem(item);
    report->addReportItem(item);
    EXPECT_EQ(item->getParentCount(), 2);
    item->setName("renamed");
    EXPECT_STREQ(item->getName().chars, "renamed");
    EXPECT_EQ(report->getReportItem(0), item.get());
    EXPECT_EQ(parent->getChildReportItem(0), item.get());
    EXPECT_EQ(item->getParent(), report.get());
    expectDeletionRefused(*item);
    EXPECT_EQ(item->removeAggregationAssembly(), report.get());
    EXPECT_EQ(item->getParent(), parent.get());
    expectDeletionRefused(*item);
    EXPECT_EQ(item->removeAggregationAssembly(), parent.get());
    EXPECT_EQ(item->removeAggregationAssembly(), nullptr);
    EXPECT_TRUE(item->recursiveDelete());
}

TEST(QORReportItem, SharesItsNameWithSiblings) {
    Held<QORReport> report;
    Held<Item> parent;
    Held<Item> items[4];
    for (int i = 0; i < 4; ++i) {
        items[i]->setName("same");
        EXPECT_TRUE(i < 2 ? report->addReportItem(items[i]) : parent->addChildReportItem(items[i]));
    }
    items[0]->setName("other");
    items[0]->setName("same");
    items[3]->setName("other");
    items[3]->setName("same");
    EXPECT_EQ(report->getReportItemCount(), 2);
    EXPECT_EQ(parent->getChildReportItemCount(), 2);
    EXPECT_EQ(items[3]->getParentReportItem(), parent.get());
}

TEST(QORReportItem, HasOneParentItem) {
    Held<Item> item;
    Held<Item> other;
    EXPECT_TRUE(item->addParentReportItem(other));
    EXPECT_FALSE(item->addParentReportItem(other));
    EXPECT_FALSE(other->addChildReportItem(item));
    EXPECT_EQ(other->getChildReportItemCount(), 1);
}

TEST(QORReportItem, ReferencesAreSeenFromBothEnds) {
    Held<Item> item;
    Held<QORReportText> target;
    EXPECT_TRUE(item->addReferencedReportItem(target));
    EXPECT_EQ(item->getReferencedReportItem(0), target.get());
    EXPECT_EQ(target->getReferencedByReportItem(0), item.get());
    EXPECT_EQ(target->getReferencedReportItemCount(), 0);
    EXPECT_EQ(item->getReferencedByReportItemCount(), 0);
    EXPECT_FALSE(target->addReferencedByReportItem(item));
    EXPECT_TRUE(target->addReferencedReportItem(item));
    EXPECT_FALSE(item->addReferencedReportItem(item));
    EXPECT_EQ(item->getReferencedReportItemCount(), 1);
    EXPECT_EQ(item->getParentCount(), 0);
}

TEST(QORReportItem, SortsItsConditionsByNameAndTheirItemsByAddress) {
    Held<Item> one;
    Held<Item> two;
    Held<QORCondition> conditionB("b");
    Held<QORCondition> conditionA("a");
    EXPECT_TRUE(one->addCondition(conditionB));
    EXPECT_TRUE(one->addCondition(conditionA));
    EXPECT_TRUE(two->addCondition(conditionA));
    EXPECT_EQ(one->getCondition(0), conditionA.get());
    EXPECT_EQ(one->getCondition(1), conditionB.get());
    auto const [low, high] = byAddress(one.get(), two.get());
    EXPECT_EQ(conditionA->getReportItem(0), low);
    EXPECT_EQ(conditionA->getReportItem(1), high);
}

TEST(QORReportItem, FillsAViewOfItsChildrenByPosition) {
    Item item;
    short position = 3;
    for (char const* name : {"a", "c", "b"}) {
        auto* const child = named<Item>(name);
        child->setPosition(position--);
        item.addChildReportItem(child);
    }
    QORReportItemByPosition view;
    Item stray;
    view.add(&stray, false, nullptr);
    item.getChildReportItemByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"b", "c", "a"}));
    Item const empty;
    empty.getChildReportItemByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORReportItem, DeletesChildrenThenReferrersThenReferencesThenConditions) {
    Journal journal;
    Item item;
    item.addCondition(watched<QORCondition>(journal, "condition"));
    item.addReferencedReportItem(watched<Item>(journal, "referenced"));
    item.addReferencedByReportItem(watched<Item>(journal, "referrer"));
    auto* const child = watched<Item>(journal, "child");
    child->addChildReportItem(watched<Item>(journal, "grandchild"));
    item.addChildReportItem(child);
    item.addSynonym(watched<QORSynonym>(journal, "synonym"));
    EXPECT_TRUE(item.recursiveDelete());
    EXPECT_EQ(journal.deaths,
              (Labels{"synonym", "grandchild", "child", "referrer", "referenced", "condition"}));
}

TEST(QORReportItem, LeavesFarObjectsThatOthersNeed) {
    Held<QORReport> report;
    Held<Item> referenced;
    Held<QORReportDataSet> data;
    Held<QORCondition> condition;
    report->addReportItem(referenced);
    data->addFeature(condition);
    auto* const item = new Item;
    item->addReferencedReportItem(referenced);
    item->addCondition(condition);
    delete item;
    EXPECT_EQ(referenced->getReferencedByReportItemCount(), 0);
    EXPECT_EQ(referenced->getReport(), report.get());
    EXPECT_EQ(condition->getReportItemCount(), 0);
}

TEST(QORReportItem, IsolatesInItsOwnOrder) {
    Journal journal;
    Item item;
    item.addNote(watched<QORNote>(journal, "note"));
    item.addCondition(watched<QORCondition>(journal, "condition"));
    item.addReferencedReportItem(watched<Item>(journal, "referenced"));
    item.addReferencedByReportItem(watched<Item>(journal, "referrer"));
    item.addChildReportItem(watched<Item>(journal, "child"));
    item.addParentReportItem(watched<Item>(journal, "parent"));
    item.addReport(watched<QORReport>(journal, "report"));
    EXPECT_EQ(item.isolate(true), &item);
    EXPECT_EQ(journal.deaths,
              (Labels{"report", "parent", "child", "referrer", "referenced", "condition", "note"}));
}

TEST(QORReportItem, ReencodesAndWalksItsChildrenOnly) {
    Journal journal;
    Held<Item> item;
    Held<Watched<Item>> child(journal, "child");
    Held<Watched<Item>> referenced(journal, "referenced");
    Held<Watched<QORCondition>> condition(journal, "condition");
    Held<QORSynonym> synonym;
    item->addChildReportItem(child);
    item->addReferencedReportItem(referenced);
    item->addCondition(condition);
    item->addSynonym(synonym);
    EXPECT_EQ(walkOf(*item), (Objects{item, synonym, child}));
    Recoding recode;
    recode(*item);
    EXPECT_EQ(journal.recodings, Labels{"child"});
}

TEST(QORReportItem, ComparesItsPositionAndTheModelObject) {
    expectCompared<Item>([](auto& item) { item.setPosition(1); });
    expectCompared<Item>([](auto& item) { item.setPhysicalName("x"); });
    expectNotCompared<Item>([](auto& item) { item.setComment("x"); });
    expectNotCompared<Item>([](auto& item) { item.addChildReportItem(new Item); });
}
