#include "Expectations.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORClassMap.h>
#include <qor/QORDataAttribute.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORFeatureByPosition.h>
#include <qor/QORJoinRole.h>
#include <qor/QORReport.h>
#include <qor/QORSQLViewAssociation.h>

namespace {

/// A classifier is abstract: an alias has nothing besides.
void link(Graph& graph, QORAliasClassifier& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "report", object, &QORClassifier::addReport);
    linkFurtherOwner(graph, owners, "package", object, &QORModelElement::addDesignPackage);
    ASSERT_TRUE(object.addDiagram(graph.mortal<QORClassDiagram>("diagram")));
    ASSERT_TRUE(object.addAssociatedJoinRole(graph.mortal<QORJoinRole>("join role")));
    ASSERT_TRUE(object.addSourceOfSQLViewAssociation(graph.mortal<QORSQLViewAssociation>("association")));
    ASSERT_TRUE(object.addFeature(graph.mortal<QORDataAttribute>("feature b")));
    ASSERT_TRUE(object.addFeature(graph.mortal<QORAttribute>("feature a")));
    ASSERT_TRUE(object.addDestinationOfClassifierMap(graph.mortal<QORClassifierMap>("destination map")));
    ASSERT_TRUE(object.addSourceOfClassifierMap(graph.mortal<QORClassMap>("source map")));
}

} // namespace

TEST(QORClassifier, ItsReportGoesBeforeItsDesignPackage) {
    Graph graph;
    auto* const classifier = graph.make<QORAliasClassifier>();
    auto* const report = graph.make<QORReport>();
    auto* const package = graph.make<QORDesignPackage>();
    ASSERT_TRUE(classifier->addDesignPackage(package));
    expectParent(*classifier, package, 1);
    ASSERT_TRUE(report->addClassifier(classifier));
    expectLeaves(*classifier, {report, package});
    EXPECT_EQ(report->getClassifierCount(), 0);
    EXPECT_EQ(package->getModelElementCount(), 0);
}

TEST(QORClassifier, IsTakenApartInOrder) {
    expectTakenApart<QORAliasClassifier>(link,
                                         {"report", "source map", "destination map", "feature a", "feature b",
                                          "association", "join role", "package", "diagram", "base", "synonym",
                                          "note"},
                                         {"note", "synonym", "base", "diagram", "feature a", "feature b",
                                          "source map", "destination map", "association", "join role"});
}

TEST(QORClassifier, ReachesItsFeatures) {
    expectChildrenReached<QORAliasClassifier>(link, {"note", "synonym", "feature a", "feature b"});
}

TEST(QORClassifier, DeletedWithTwoOwnersADerivedOneDeletesAllThatItOwns) {
    Graph graph;
    auto* const classifier = new QORAliasClassifier;
    auto* const report = graph.make<QORReport>();
    auto* const package = graph.make<QORDesignPackage>();
    link(graph, *classifier, Owners::NONE);
    ASSERT_TRUE(classifier->addReport(report) && classifier->addDesignPackage(package));
    delete classifier; // the alias leaves the report, the classifier the package
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base", "diagram", "feature a", "feature b",
                                    "source map", "destination map", "association", "join role"}));
    EXPECT_EQ(report->getClassifierCount(), 0);
    EXPECT_EQ(package->getModelElementCount(), 0);
}

TEST(QORClassifier, WithTwoOwnersItDiesWithTheSecondOne) {
    Graph graph;
    auto* const classifier = graph.mortal<QORAliasClassifier>("classifier");
    auto* const report = new QORReport;
    auto* const package = new QORDesignPackage;
    ASSERT_TRUE(classifier->addReport(report) && classifier->addDesignPackage(package));
    delete package;
    EXPECT_EQ(graph.deaths, Labels());
    expectParent(*classifier, report, 1);
    delete report;
    EXPECT_EQ(graph.deaths, Labels{"classifier"});
}

TEST(QORClassifier, AFeatureNameIsTakenOnce) {
    Graph graph;
    auto* const classifier = graph.make<QORAliasClassifier>();
    auto* const attribute = graph.make<QORAttribute>("A");
    auto* const other = graph.make<QORDataAttribute>("A");
    ASSERT_TRUE(classifier->addFeature(attribute));
    EXPECT_FALSE(classifier->addFeature(other));
    EXPECT_FALSE(other->addClassifier(classifier));
    EXPECT_EQ(other->getClassifier(), nullptr);
    EXPECT_EQ(classifier->getFeatureCount(), 1);
}

TEST(QORClassifier, ATakenNameIsRefusedInItsDesignPackage) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const classifier = graph.make<QORAliasClassifier>("A");
    ASSERT_TRUE(package->addModelElement(classifier));
    ASSERT_TRUE(package->addModelElement(graph.make<QORAliasClassifier>("B")));
    ASSERT_TRUE(package->addModelElement(graph.make<QORClass>("C")));
    expectNameRefused(*classifier, "B", "DesignPackage", "ModelElement");
    EXPECT_EQ(package->getModelElement(0), classifier);
    classifier->setName("C");
    EXPECT_EQ(classifier->getName(), "C");
    EXPECT_EQ(classifier->getDesignPackage(), package);
}

TEST(QORClassifier, InAReportItsDesignPackageIsNotAskedForAName) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const report = graph.make<QORReport>();
    auto* const classifier = graph.make<QORAliasClassifier>("A");
    ASSERT_TRUE(package->addModelElement(classifier) && report->addClassifier(classifier));
    ASSERT_TRUE(package->addModelElement(graph.make<QORAliasClassifier>("C")));
    ASSERT_TRUE(report->addClassifier(graph.make<QORAliasClassifier>("B")));
    classifier->setName("C");
    EXPECT_EQ(classifier->getName(), "C");
    EXPECT_EQ(report->getClassifier(1), classifier);    // brought up to date
    EXPECT_EQ(package->getModelElement(0), classifier); // where it was
    expectParent(*classifier, report, 2);
}

TEST(QORClassifier, FeaturesComeByPosition) {
    expectSortedByPosition<QORAliasClassifier, QORAttribute, QORFeatureByPosition>(
        &QORClassifier::addFeature, &QORClassifier::getFeatureByPosition);
}
