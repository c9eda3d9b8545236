#include "Expectations.h"

#include <qor/QORClassifierMap.h>
#include <qor/QORDataAttribute.h>
#include <qor/QORDataSet.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORReport.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORTransformation.h>

TEST(QORDataSet, LeavesItsOwnersTransformationFirst) {
    Graph graph;
    auto* const set = graph.make<QORDataSet>("set");
    auto* const transformation = graph.make<QORTransformation>();
    auto* const report = graph.make<QORReport>();
    auto* const package = graph.make<QORDesignPackage>();
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

TEST(QORDataSet, IsRenamedAsAClassifierWithoutATransformation) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const set = graph.make<QORDataSet>("set");
    package->addModelElement(set);
    package->addModelElement(graph.make<QORDataSet>("taken"));
    expectNameRefused(*set, "taken", "DesignPackage", "ModelElement");
    auto* const report = graph.make<QORReport>();
    report->addClassifier(graph.make<QORReportDataSet>("m"));
    report->addClassifier(set);
    set->setName("b"); // under a report, so the package isn't asked
    EXPECT_EQ(report->getClassifier(0), set);
    set->setName("taken");
    EXPECT_EQ(report->getClassifier(1), set);
    set->setName("set");
}

TEST(QORDataSet, DeletesItsFeaturesAndLeavesItsMaps) {
    Graph graph;
    auto* const transformation = graph.make<QORTransformation>();
    auto* const map = graph.make<QORClassifierMap>();
    transformation->addClassifierMap(map);
    QORDataSet set;
    set.addSourceOfClassifierMap(map);
    set.addFeature(graph.mortal<QORDataAttribute>("feature"));
    EXPECT_TRUE(set.recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"feature"});
    EXPECT_EQ(map->getSourceClassifierCount(), 0);
}

TEST(QORDataSet, IsolatesItsTransformationFirst) {
    Graph graph;
    QORDataSet set;
    set.addDesignPackage(graph.mortal<QORDesignPackage>("package"));
    set.addReport(graph.mortal<QORReport>("report"));
    set.addFeature(graph.mortal<QORDataAttribute>("feature"));
    set.addTransformation(graph.mortal<QORTransformation>("transformation"));
    set.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"transformation", "report", "feature", "package"}));
}

TEST(QORDataSet, WalksItsFeatures) {
    QORDataSet set;
    auto* const feature = new QORDataAttribute;
    set.addFeature(feature);
    EXPECT_EQ(walkOf(set), (Objects{&set, feature}));
}
