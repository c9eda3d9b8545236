#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORReport.h>
#include <qor/QORReportAttribute.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportField.h>

using namespace graph;

TEST(QORReportAttribute, IsAStructuralFeature) {
    expectConcrete<QORReportAttribute>(QORElementType::REPORT_ATTRIBUTE, 120, "ReportAttribute",
                                       QORStructuralFeature::getStaticMetaClass());
}

TEST(QORReportAttribute, StartsWithTheDefaultUsage) {
    EXPECT_EQ(QORReportAttribute().getUsage(), QORAttributeUsageType::DEFAULT);
    EXPECT_EQ(static_cast<int>(QORAttributeUsageType::DEFAULT), 0);
}

TEST(QORReportAttribute, IsReferencedThroughItsFieldsToo) {
    using A = QORReportAttribute;
    expectReferencedThrough<A, QORReportField>(&A::addReportField, &A::removeReportField);
    expectReferencedThrough<A, QORReportDataSet>(&A::addClassifier, &A::removeClassifier);
}

TEST(QORReportAttribute, IsNamedAsAFeature) {
    QORReportDataSet data;
    auto* const attribute = named<QORReportAttribute>("attribute");
    data.addFeature(attribute);
    data.addFeature(named<QORReportAttribute>("taken"));
    expectNameRefused(*attribute, "taken", "Classifier", "Feature");
}

TEST(QORReportAttribute, DeletesWhatAFeatureHasBeforeFreeFields) {
    Journal journal;
    QORReportAttribute attribute;
    Held<QORReport> report;
    Held<QORReportField> kept;
    report->addReportItem(kept);
    attribute.addReportField(kept);
    attribute.addReportField(watched<QORReportField>(journal, "field"));
    attribute.addSourceOfFeatureMap(watched<QORFeatureMap>(journal, "map"));
    attribute.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_TRUE(attribute.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"type", "map", "field"}));
    EXPECT_EQ(kept->getReportAttribute(), nullptr);
    EXPECT_EQ(kept->getReport(), report.get());
}

TEST(QORReportAttribute, IsolatesItsFieldsFirst) {
    Journal journal;
    QORReportAttribute attribute;
    attribute.addClassifier(watched<QORReportDataSet>(journal, "data"));
    attribute.addType(watched<QORBaseType>(journal, "type"));
    attribute.addReportField(watched<QORReportField>(journal, "field"));
    attribute.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"field", "type", "data"}));
}

TEST(QORReportAttribute, IsShownByAnyNumberOfFieldsButAFieldShowsOne) {
    Held<QORReportAttribute> one;
    Held<QORReportAttribute> two;
    Held<QORReportField> field;
    Held<QORReportField> other;
    EXPECT_TRUE(one->addReportField(field));
    EXPECT_TRUE(one->addReportField(other));
    EXPECT_FALSE(two->addReportField(field));
    EXPECT_EQ(field->getReportAttribute(), one.get());
    EXPECT_EQ(two->getReportFieldCount(), 0);
    EXPECT_EQ(walkOf(*one), Objects{one});
}

TEST(QORReportAttribute, ComparesAndCopiesItsUsage) {
    expectCompared<QORReportAttribute>([](auto& each) { each.setUsage(QORAttributeUsageType::MEASURE); });
    expectCompared<QORReportAttribute>([](auto& each) { each.setInitialValue("x"); });
    expectCompared<QORReportAttribute>([](auto& each) { each.setOptional(true); });
    expectCompared<QORReportAttribute>([](auto& each) { each.setPosition(1); });
    QORReportAttribute source;
    source.setUsage(QORAttributeUsageType::IDENTIFIER);
    source.setInitialValue("i");
    EXPECT_TRUE(QORReportAttribute(source).equals(source));
    QORReportAttribute target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
}
