#include "ReportItemSupport.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORCondition.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORPrompt.h>
#include <qor/QORReportDataSet.h>
#include <qor/QORReportItemByPosition.h>
#include <qor/QORReportPage.h>

using namespace graph;

TEST(QORReport, IsAModelElement) {
    expectConcrete<QORReport>(QORElementType::REPORT, 119, "Report", QORModelElement::getStaticMetaClass());
}

TEST(QORReport, IsReferencedThroughEachOfItsLinks) {
    using R = QORReport;
    expectReferencedThrough<R, QORReportRectangle>(&R::addReportItem, &R::removeReportItem);
    expectReferencedThrough<R, QORPrompt>(&R::addClassifier, &R::removeClassifier);
    expectReferencedThrough<R, QORDesignPackage>(&QORModelElement::addDesignPackage,
                                                 &QORModelElement::removeDesignPackage);
}

TEST(QORReport, IsNamedAndOwnedAsAModelElement) {
    Held<QORDesignPackage> package;
    Held<QORReport> report("report");
    Held<QORReport> taken("taken");
    Held<QORClass> class_("class");
    package->addModelElement(report);
    package->addModelElement(taken);
    package->addModelElement(class_);
    expectNameRefused(*report, "taken", "DesignPackage", "ModelElement");
    report->setName("class"); // of another kind, so not taken
    EXPECT_STREQ(report->getName().chars, "class");
    EXPECT_EQ(report->getParent(), package.get());
    EXPECT_EQ(report->getParentCount(), 1);
    expectDeletionRefused(*report);
    EXPECT_EQ(report->removeAggregationAssembly(), package.get());
}

TEST(QORReport, SortsItsClassifiersByNameAndAddress) {
    Held<QORReport> report;
    Held<QORReportDataSet> b1("b");
    Held<QORPrompt> b2("b");
    Held<QORClass> a("a");
    EXPECT_TRUE(report->addClassifier(b1));
    EXPECT_TRUE(report->addClassifier(b2));
    EXPECT_TRUE(report->addClassifier(a));
    EXPECT_FALSE(report->addClassifier(a));
    auto const [low, high] = byAddress<QORClassifier>(b1.get(), b2.get());
    EXPECT_EQ(report->getClassifier(0), a.get());
    EXPECT_EQ(report->getClassifier(1), low);
    EXPECT_EQ(report->getClassifier(2), high);
    a->setName("c");
    EXPECT_EQ(report->getClassifier(2), a.get());
    EXPECT_EQ(a->getReport(), report.get());
}

TEST(QORReport, FillsAViewOfItsItemsByPosition) {
    QORReport report;
    auto* const second = named<QORReportPage>("a");
    second->setPosition(2);
    auto* const first = named<QORReportPage>("b");
    first->setPosition(1);
    report.addReportItem(second);
    report.addReportItem(first);
    first->addChildReportItem(named<QORReportRectangle>("nested"));
    QORReportItemByPosition view;
    report.getReportItemByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"b", "a"}));
}

TEST(QORReport, DeletesItemsThenClassifiers) {
    Journal journal;
    QORReport report;
    auto* const prompt = watched<QORPrompt>(journal, "prompt");
    prompt->setName("b");
    report.addClassifier(prompt);
    auto* const data = watched<QORReportDataSet>(journal, "data");
    data->setName("a");
    report.addClassifier(data);
    auto* const condition = watched<QORCondition>(journal, "condition");
    data->addFeature(condition);
    auto* const page = watched<QORReportPage>(journal, "page");
    report.addReportItem(page);
    auto* const nested = watched<QORReportRectangle>(journal, "nested");
    page->addChildReportItem(nested);
    nested->addCondition(condition);
    report.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(report.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "nested", "page", "condition", "data", "prompt"}));
    EXPECT_FALSE(report.isReferenced());
}

TEST(QORReport, TakesTheConditionsOfItsClassifiersFromItemsElsewhere) {
    Held<QORReport> elsewhere;
    Held<QORReportRectangle> item;
    elsewhere->addReportItem(item);
    auto* const report = new QORReport;
    auto* const data = new QORReportDataSet;
    auto* const condition = new QORCondition;
    report->addClassifier(data);
    data->addFeature(condition);
    item->addCondition(condition);
    delete report;
    EXPECT_EQ(item->getConditionCount(), 0);
    EXPECT_EQ(item->getReport(), elsewhere.get());
}

TEST(QORReport, LeavesAClassifierThatHasAnotherOwner) {
    Held<QORDesignPackage> package;
    Held<QORClass> class_;
    package->addModelElement(class_);
    auto* const report = new QORReport;
    report->addClassifier(class_);
    EXPECT_EQ(class_->getParent(), report);
    delete report;
    EXPECT_EQ(class_->getReport(), nullptr);
    EXPECT_EQ(class_->getParent(), package.get());
}

TEST(QORReport, IsolatesItemsThenClassifiersThenTheModelElement) {
    Journal journal;
    QORReport report;
    report.addDiagram(watched<QORClassDiagram>(journal, "diagram"));
    report.addDesignPackage(watched<QORDesignPackage>(journal, "package"));
    report.addClassifier(watched<QORPrompt>(journal, "prompt"));
    report.addReportItem(watched<QORReportPage>(journal, "page"));
    EXPECT_EQ(report.isolate(true), &report);
    EXPECT_EQ(journal.deaths, (Labels{"page", "prompt", "package", "diagram"}));
}

TEST(QORReport, ReencodesAndWalksItemsThenClassifiers) {
    Journal journal;
    QORReport report;
    auto* const prompt = watched<QORPrompt>(journal, "prompt");
    prompt->setName("b");
    auto* const data = watched<QORReportDataSet>(journal, "data");
    data->setName("a");
    auto* const page = watched<QORReportPage>(journal, "page");
    auto* const note = new QORNote;
    report.addClassifier(prompt);
    report.addClassifier(data);
    report.addReportItem(page);
    report.addNote(note);
    EXPECT_EQ(walkOf(report), (Objects{&report, note, page, data, prompt}));
    Recoding recode;
    recode(report);
    EXPECT_EQ(journal.recodings, (Labels{"page", "data", "prompt"}));
}

TEST(QORReport, ComparesAsAModelObject) {
    expectCompared<QORReport>([](auto& report) { report.setStatus(QORApprovalStatusType::APPROVED); });
    expectNotCompared<QORReport>([](auto& report) { report.setComment("x"); });
    expectNotCompared<QORReport>([](auto& report) { report.addReportItem(new QORReportPage); });
    QORReport source;
    source.setName("n");
    source.setPhysicalName("p");
    source.addReportItem(new QORReportPage);
    QORReport target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
    EXPECT_EQ(target.getReportItemCount(), 0);
}
