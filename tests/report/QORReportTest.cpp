#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORCondition.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORPrompt.h>
#include <qor/QORReport.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportPage.h>
#include <qor/QORReportRectangle.h>

TEST(QORReport, IsNamedAndOwnedAsAModelElement) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const report = graph.make<QORReport>("report");
    auto* const taken = graph.make<QORReport>("taken");
    package->addModelElement(report);
    package->addModelElement(taken);
    package->addModelElement(graph.make<QORClass>("class"));
    expectNameRefused(*report, "taken", "DesignPackage", "ModelElement");
    report->setName("class"); // of another kind, so not taken
    EXPECT_STREQ(report->getName().chars, "class");
    EXPECT_EQ(report->getParent(), package);
    EXPECT_EQ(report->getParentCount(), 1);
    expectDeletionRefused(*report);
    EXPECT_EQ(report->removeAggregationAssembly(), package);
}

TEST(QORReport, SortsItsClassifiersByNameAndAddress) {
    Graph graph;
    auto* const report = graph.make<QORReport>();
    auto* const b1 = graph.make<QORReportDataSet>("b");
    auto* const b2 = graph.make<QORPrompt>("b");
    auto* const a = graph.make<QORClass>("a");
    EXPECT_TRUE(report->addClassifier(b1));
    EXPECT_TRUE(report->addClassifier(b2));
    EXPECT_TRUE(report->addClassifier(a));
    EXPECT_FALSE(report->addClassifier(a));
    auto const [low, high] = byAddress<QORClassifier>(b1, b2);
    EXPECT_EQ(report->getClassifier(0), a);
    EXPECT_EQ(report->getClassifier(1), low);
    EXPECT_EQ(report->getClassifier(2), high);
    a->setName("c");
    EXPECT_EQ(report->getClassifier(2), a);
    EXPECT_EQ(a->getReport(), report);
}

TEST(QORReport, DeletesItemsThenClassifiers) {
    Graph graph;
    QORReport report;
    report.addClassifier(graph.mortal<QORPrompt>("prompt", "b"));
    auto* const data = graph.mortal<QORReportDataSet>("data", "a");
    report.addClassifier(data);
    auto* const condition = graph.mortal<QORCondition>("condition");
    data->addFeature(condition);
    auto* const page = graph.mortal<QORReportPage>("page");
    report.addReportItem(page);
    auto* const nested = graph.mortal<QORReportRectangle>("nested");
    page->addChildReportItem(nested);
    nested->addCondition(condition);
    report.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(report.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "nested", "page", "condition", "data", "prompt"}));
    EXPECT_FALSE(report.isReferenced());
}

TEST(QORReport, TakesTheConditionsOfItsClassifiersFromItemsElsewhere) {
    Graph graph;
    auto* const elsewhere = graph.make<QORReport>();
    auto* const item = graph.make<QORReportRectangle>();
    elsewhere->addReportItem(item);
    auto* const report = new QORReport;
    auto* const data = new QORReportDataSet;
    auto* const condition = new QORCondition;
    report->addClassifier(data);
    data->addFeature(condition);
    item->addCondition(condition);
    delete report;
    EXPECT_EQ(item->getConditionCount(), 0);
    EXPECT_EQ(item->getReport(), elsewhere);
}

TEST(QORReport, LeavesAClassifierThatHasAnotherOwner) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const class_ = graph.make<QORClass>();
    package->addModelElement(class_);
    auto* const report = new QORReport;
    report->addClassifier(class_);
    EXPECT_EQ(class_->getParent(), report);
    delete report;
    EXPECT_EQ(class_->getReport(), nullptr);
    EXPECT_EQ(class_->getParent(), package);
}

TEST(QORReport, IsolatesItemsThenClassifiersThenTheModelElement) {
    Graph graph;
    QORReport report;
    report.addDiagram(graph.mortal<QORClassDiagram>("diagram"));
    report.addDesignPackage(graph.mortal<QORDesignPackage>("package"));
    report.addClassifier(graph.mortal<QORPrompt>("prompt"));
    report.addReportItem(graph.mortal<QORReportPage>("page"));
    EXPECT_EQ(report.isolate(true), &report);
    EXPECT_EQ(graph.deaths, (Labels{"page", "prompt", "package", "diagram"}));
}

TEST(QORReport, ReencodesAndWalksItemsThenClassifiers) {
    Graph graph;
    QORReport report;
    auto* const prompt = graph.mortal<QORPrompt>("prompt", "b");
    auto* const data = graph.mortal<QORReportDataSet>("data", "a");
    auto* const page = graph.mortal<QORReportPage>("page");
    auto* const note = new QORNote;
    report.addClassifier(prompt);
    report.addClassifier(data);
    report.addReportItem(page);
    report.addNote(note);
    EXPECT_EQ(walkOf(report), (Objects{&report, note, page, data, prompt}));
    Recoding recode;
    recode(report);
    EXPECT_EQ(graph.recodings, (Labels{"page", "data", "prompt"}));
}
