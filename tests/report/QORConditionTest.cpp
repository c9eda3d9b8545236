#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORCondition.h>
#include <qor/QORReport.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportRectangle.h>

using namespace graph;

TEST(QORCondition, IsAStructuralFeature) {
    expectConcrete<QORCondition>(QORElementType::CONDITION, 84, "Condition",
                                 QORStructuralFeature::getStaticMetaClass());
}

TEST(QORCondition, IsReferencedThroughItsItemsToo) {
    using C = QORCondition;
    expectReferencedThrough<C, QORReportRectangle>(&C::addReportItem, &C::removeReportItem);
    expectReferencedThrough<C, QORReportDataSet>(&C::addClassifier, &C::removeClassifier);
}

TEST(QORCondition, IsNamedAsAFeature) {
    QORReportDataSet data;
    auto* const condition = named<QORCondition>("condition");
    data.addFeature(condition);
    data.addFeature(named<QORCondition>("taken"));
    expectNameRefused(*condition, "taken", "Classifier", "Feature");
}

TEST(QORCondition, DeletesWhatAFeatureHasBeforeFreeItems) {
    Journal journal;
    Held<QORReport> report;
    Held<QORReportRectangle> kept;
    report->addReportItem(kept);
    QORCondition condition;
    condition.addReportItem(kept);
    condition.addReportItem(watched<QORReportRectangle>(journal, "item"));
    condition.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_TRUE(condition.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"type", "item"}));
    EXPECT_EQ(kept->getConditionCount(), 0);
    EXPECT_EQ(kept->getReport(), report.get());
}

TEST(QORCondition, IsolatesItsItemsFirst) {
    Journal journal;
    QORCondition condition;
    condition.addType(watched<QORBaseType>(journal, "type"));
    condition.addReportItem(watched<QORReportRectangle>(journal, "item"));
    condition.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"item", "type"}));
}

TEST(QORCondition, ComparesAndCopiesWhetherItHides) {
    EXPECT_FALSE(QORCondition().getHide());
    expectCompared<QORCondition>([](auto& condition) { condition.setHide(true); });
    expectCompared<QORCondition>([](auto& condition) { condition.setOptional(true); });
    QORCondition source;
    source.setHide(true);
    EXPECT_TRUE(QORCondition(source).equals(source));
    QORCondition target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
}
