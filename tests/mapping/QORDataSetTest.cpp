#include "GraphObservers.h"

#include <qor/QORClassifierMap.h>
#include <qor/QORDataAttribute.h>
#include <qor/QORDataSet.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORReport.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORTransformation.h>

using namespace graph;

TEST(QORDataSet, IsAClassifier) {
    expectConcrete<QORDataSet>(QORElementType::DATA_SET, 106, "DataSet", QORClassifier::getStaticMetaClass());
}

TEST(QORDataSet, IsReferencedThroughItsTransformationOrAsAClassifier) {
    using D = QORDataSet;
    expectReferencedThrough<D, QORTransformation>(&D::addTransformation, &D::removeTransformation);
    expectReferencedThrough<D, QORDataAttribute>(&D::addFeature, &D::removeFeature);
    expectReferencedThrough<D, QORClassifierMap>(&D::addSourceOfClassifierMap,
                                                 &D::removeSourceOfClassifierMap);
}

TEST(QORDataSet, LeavesItsOwnersTransformationFirst) {
    Held<QORDataSet> set("set");
    Held<QORTransformation> transformation;
    Held<QORReport> report;
    Held<QORDesignPackage> package;
    package->addModelElement(set);
    report->addClassifier(set);
    transformation->addDataSet(set);
    int owners = 3;
    for (QORObject* owner : Objects{transformation, report, package}) {
        EXPECT_EQ(set->getParent(), owner);
        EXPECT_EQ(set->getParentCount(), owners--);
        expectDeletionRefused(*set);
        EXPECT_EQ(set->removeAggregationAssembly(), owner);
    }
    EXPECT_EQ(set->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(set->getParentCount(), 0);
}

TEST(QORDataSet, RefusesATakenNameInItsTransformation) {
    QORTransformation transformation;
    auto* const set = named<QORDataSet>("set");
    transformation.addDataSet(set);
    transformation.addDataSet(named<QORDataSet>("taken"));
    expectNameRefused(*set, "taken", "Transformation", "DataSet");
    set->setName("zebra");
    EXPECT_EQ(transformation.getDataSet(1), set);
}

TEST(QORDataSet, IsRenamedAsAClassifierWithoutATransformation) {
    Held<QORDesignPackage> package;
    Held<QORDataSet> set("set");
    Held<QORDataSet> taken("taken");
    package->addModelElement(set);
    package->addModelElement(taken);
    expectNameRefused(*set, "taken", "DesignPackage", "ModelElement");
    Held<QORReport> report;
    Held<QORReportDataSet> other("m");
    report->addClassifier(other);
    report->addClassifier(set);
    set->setName("b"); // under a report, so the package isn't asked
    EXPECT_EQ(report->getClassifier(0), set.get());
    set->setName("taken");
    EXPECT_EQ(report->getClassifier(1), set.get());
    set->setName("set");
}

TEST(QORDataSet, DeletesItsFeaturesAndLeavesItsMaps) {
    Journal journal;
    Held<QORTransformation> transformation;
    Held<QORClassifierMap> map;
    transformation->addClassifierMap(map);
    QORDataSet set;
    set.addSourceOfClassifierMap(map);
    set.addFeature(watched<QORDataAttribute>(journal, "feature"));
    EXPECT_TRUE(set.recursiveDelete());
    EXPECT_EQ(journal.deaths, Labels{"feature"});
    EXPECT_EQ(map->getSourceClassifierCount(), 0);
}

TEST(QORDataSet, IsolatesItsTransformationFirst) {
    Journal journal;
    QORDataSet set;
    set.addDesignPackage(watched<QORDesignPackage>(journal, "package"));
    set.addReport(watched<QORReport>(journal, "report"));
    set.addFeature(watched<QORDataAttribute>(journal, "feature"));
    set.addTransformation(watched<QORTransformation>(journal, "transformation"));
    set.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"transformation", "report", "feature", "package"}));
}

TEST(QORDataSet, WalksItsFeatures) {
    QORDataSet set;
    auto* const feature = new QORDataAttribute;
    set.addFeature(feature);
    EXPECT_EQ(walkOf(set), (Objects{&set, feature}));
}

TEST(QORDataSet, ComparesAsAModelObject) {
    expectCompared<QORDataSet>([](auto& set) { set.setPhysicalName("x"); });
    expectNotCompared<QORDataSet>([](auto& set) { set.setComment("x"); });
    expectNotCompared<QORDataSet>([](auto& set) { set.addFeature(new QORDataAttribute); });
}
