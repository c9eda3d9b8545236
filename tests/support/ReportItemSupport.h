#pragma once

#include "GraphObservers.h"

#include <qor/QORReport.h>
#include <qor/QORReportItem.h>
#include <qor/QORReportRectangle.h>

namespace graph {

/// Expects what a kind of report item that adds nothing of its own has from QORReportItem.
template <class Item>
void expectPlainReportItem() {
    Held<QORReport> report;
    Held<QORReportRectangle> outer;
    Held<Item> item("item");
    Held<Item> inner;
    item->addChildReportItem(inner);
    EXPECT_STREQ(item->getDisplayName().chars, "item");
    EXPECT_EQ(item->getParentCount(), 0);
    EXPECT_EQ(item->removeAggregationAssembly(), nullptr);

    outer->addChildReportItem(item);
    report->addReportItem(item);
    item->setName("renamed");
    EXPECT_EQ(walkOf(*report), (Objects{report, item, inner}));
    EXPECT_EQ(item->getParentCount(), 2);
    EXPECT_EQ(item->getParent(), report.get());
    expectDeletionRefused(*item);
    EXPECT_EQ(item->removeAggregationAssembly(), report.get());
    EXPECT_EQ(item->getParent(), outer.get());
    EXPECT_EQ(item->removeAggregationAssembly(), outer.get());

    inner->setName(rawText);
    Recoding recode;
    recode(*item);
    EXPECT_STREQ(inner->getName().chars, recodedText);

    expectCompared<Item>([](auto& each) { each.setPosition(1); });
    expectCompared<Item>([](auto& each) { each.setStereotype("x"); });
    Item target;
    item->setPosition(-3);
    target.setFrom(*item);
    EXPECT_TRUE(target.equals(*item));
    EXPECT_FALSE(target.isReferenced());
    EXPECT_TRUE(Item(*item).equals(*item));
}

/// Expects a kind of item to equal none of another kind.
template <class Item, class Other>
void expectDifferentKinds() {
    Item const item;
    Other const other;
    EXPECT_FALSE(item.equals(other));
    EXPECT_FALSE(other.equals(item));
}

} // namespace graph
