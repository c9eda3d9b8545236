#include "Expectations.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORClassifierMap.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORJoinRole.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>
#include <qor/QOROperationByPosition.h>
#include <qor/QORReport.h>
#include <qor/QORSQLViewAssociation.h>
#include <qor/QORSQLViewAttribute.h>
#include <qor/QORSQLViewAttributeByPosition.h>
#include <qor/QORSQLViewEntity.h>

namespace {

using View = QORSQLViewEntity;

void linkEnds(Graph& graph, View& view, Owners owners) {
    linkBase(graph, view);
    ASSERT_TRUE(view.addDiagram(graph.mortal<QORClassDiagram>("diagram")));
    ASSERT_TRUE(view.addSourceOfClassifierMap(graph.mortal<QORClassifierMap>("sourceMap")));
    ASSERT_TRUE(view.addDestinationOfClassifierMap(graph.mortal<QORClassifierMap>("destinationMap")));
    ASSERT_TRUE(view.addFeature(graph.mortal<QORSQLViewAttribute>("feature")));
    ASSERT_TRUE(view.addSourceOfSQLViewAssociation(graph.mortal<QORSQLViewAssociation>("from")));
    ASSERT_TRUE(view.addAssociatedJoinRole(graph.mortal<QORJoinRole>("joinRole")));
    ASSERT_TRUE(view.addDestinationOfSQLViewAssociation(graph.mortal<QORSQLViewAssociation>("to")));
    ASSERT_TRUE(view.addOperation(graph.mortal<QOROperation>("operation")));
    linkOwner(graph, owners, "package", view, &View::addDesignPackage);
    linkFurtherOwner(graph, owners, "report", view, &View::addReport);
}

QORSQLViewAttribute* columnOf(Graph& graph, View& view, char const* name, short position = 0) {
    auto* const column = graph.make<QORSQLViewAttribute>(name);
    column->setPosition(position);
    EXPECT_TRUE(view.addSQLViewAttribute(column));
    return column;
}

} // namespace

TEST(QORSQLViewEntity, ItsColumnsAreItsFeatures) {
    Graph graph;
    auto* const view = graph.make<View>();
    auto* const b = columnOf(graph, *view, "B");
    auto* const a = columnOf(graph, *view, "A");
    EXPECT_EQ(view->getSQLViewAttributeCount(), 2);
    EXPECT_EQ(view->getFeatureCount(), 2);
    EXPECT_EQ(view->getSQLViewAttribute(0), a);
    EXPECT_EQ(view->getSQLViewAttribute(1), b);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(view->getSQLViewAttribute(i), view->getFeature(i));
    EXPECT_EQ(view->getSQLViewAttribute(2), nullptr);
    EXPECT_EQ(a->getClassifier(), view);
}

TEST(QORSQLViewEntity, RefusesAColumnOfATakenName) {
    Graph graph;
    auto* const view = graph.make<View>();
    auto* const a = columnOf(graph, *view, "A");
    auto* const b = columnOf(graph, *view, "B");
    EXPECT_FALSE(view->addSQLViewAttribute(graph.make<QORSQLViewAttribute>("A")));
    EXPECT_FALSE(view->addSQLViewAttribute(a));
    EXPECT_EQ(view->getSQLViewAttributeCount(), 2);
    expectNameRefused(*b, "A", "Classifier", "Feature");
}

TEST(QORSQLViewEntity, FindsColumnsByName) {
    Graph graph;
    auto* const view = graph.make<View>();
    columnOf(graph, *view, "A");
    auto* const b = columnOf(graph, *view, "B");
    EXPECT_EQ(view->getSQLViewAttribute("B", nullptr), b);
    EXPECT_EQ(view->getSQLViewAttribute("C", nullptr), nullptr);
    int cursor = 0;
    EXPECT_EQ(view->getSQLViewAttribute("B", &cursor), b);
    EXPECT_EQ(cursor, 1);
    ++cursor;
    EXPECT_EQ(view->getSQLViewAttribute("B", &cursor), nullptr);
    EXPECT_EQ(cursor, 2);
    EXPECT_TRUE(view->containsSQLViewAttribute(b));
    EXPECT_TRUE(view->containsSQLViewAttribute(graph.make<QORSQLViewAttribute>("A")));
    EXPECT_FALSE(view->containsSQLViewAttribute(graph.make<QORSQLViewAttribute>("C")));
}

TEST(QORSQLViewEntity, TakesAnyFeatureForAColumn) {
    Graph graph;
    auto* const view = graph.make<View>();
    auto* const feature = graph.make<QORAttribute>("A");
    ASSERT_TRUE(view->addFeature(feature));
    EXPECT_EQ(static_cast<void*>(view->getSQLViewAttribute(0)), static_cast<void*>(feature));
    EXPECT_EQ(static_cast<void*>(view->getSQLViewAttribute("A", nullptr)), static_cast<void*>(feature));
    int cursor = 0;
    EXPECT_EQ(static_cast<void*>(view->getSQLViewAttribute("A", &cursor)), static_cast<void*>(feature));
    EXPECT_EQ(view->getSQLViewAttributeCount(), 1);
}

TEST(QORSQLViewEntity, RemovesColumnsAsItRemovesFeatures) {
    Graph graph;
    auto* const view = graph.make<View>();
    auto const mortalColumn = [&](char const* name) {
        EXPECT_TRUE(view->addSQLViewAttribute(graph.mortal<QORSQLViewAttribute>(name, name)));
    };
    for (char const* const name : {"A", "B", "C", "D", "E"})
        mortalColumn(name);
    QORSQLViewAttribute* const kept = view->getSQLViewAttribute(4);
    EXPECT_TRUE(view->removeSQLViewAttribute(kept));
    EXPECT_FALSE(view->removeSQLViewAttribute(kept));
    EXPECT_EQ(kept->getClassifier(), nullptr);
    EXPECT_EQ(graph.deaths, Labels());
    EXPECT_FALSE(view->removeSQLViewAttribute(4));
    EXPECT_TRUE(view->removeSQLViewAttribute(1));
    EXPECT_EQ(graph.deaths, Labels{"B"});
    EXPECT_FALSE(view->removeSQLViewAttribute("B", nullptr));
    EXPECT_TRUE(view->removeSQLViewAttribute("A", nullptr));
    int cursor = 0;
    EXPECT_TRUE(view->removeSQLViewAttribute("D", &cursor));
    EXPECT_EQ(cursor, 1);
    EXPECT_EQ(graph.deaths, (Labels{"B", "A", "D"}));
    mortalColumn("A");
    view->removeSQLViewAttributes();
    EXPECT_EQ(graph.deaths, (Labels{"B", "A", "D", "A", "C"}));
    view->removeSQLViewAttributes();
    EXPECT_EQ(view->getFeatureCount(), 0);
}

TEST(QORSQLViewEntity, ColumnsAreReadInTheOrderOfTheirPositions) {
    Graph graph;
    auto* const view = graph.make<View>();
    auto* const last = columnOf(graph, *view, "A", 3);
    auto* const second = columnOf(graph, *view, "C", 1);
    auto* const first = columnOf(graph, *view, "B", 1);
    QORSQLViewAttributeByPosition byPosition;
    ASSERT_TRUE(byPosition.add(graph.make<QORSQLViewAttribute>(), false, nullptr));
    view->getSQLViewAttributeByPosition(byPosition);
    EXPECT_EQ(listOf(byPosition), (Objects{first, second, last}));
    View().getSQLViewAttributeByPosition(byPosition);
    EXPECT_EQ(byPosition.size, 0);
}

TEST(QORSQLViewEntity, OperationsAreReadInTheOrderOfTheirPositions) {
    Graph graph;
    auto* const view = graph.make<View>();
    auto* const last = graph.make<QOROperation>("A");
    auto* const first = graph.make<QOROperation>("B");
    last->setPosition(2);
    first->setPosition(1);
    ASSERT_TRUE(view->addOperation(last) && first->addAssociatedSQLViewEntity(view));
    QOROperationByPosition byPosition;
    ASSERT_TRUE(byPosition.add(graph.make<QOROperation>(), false, nullptr));
    view->getOperationByPosition(byPosition);
    EXPECT_EQ(listOf(byPosition), (Objects{first, last}));
    View().getOperationByPosition(byPosition);
    EXPECT_EQ(byPosition.size, 0);
}

TEST(QORSQLViewEntity, IsTakenApartInOrder) {
    expectTakenApart<View>(
        linkEnds,
        {"to", "operation", "report", "sourceMap", "destinationMap", "feature", "from", "joinRole", "package",
         "diagram", "base"},
        {"base", "diagram", "feature", "sourceMap", "destinationMap", "from", "joinRole", "operation", "to"});
}

TEST(QORSQLViewEntity, ItsOwnersAreThoseOfAClassifier) {
    Graph graph;
    auto* const view = graph.make<View>("V");
    auto* const package = graph.make<QORDesignPackage>();
    auto* const report = graph.make<QORReport>();
    ASSERT_TRUE(package->addModelElement(view) && package->addModelElement(graph.make<QORClass>("C")));
    expectNameRefused(*view, "C", "DesignPackage", "ModelElement");
    ASSERT_TRUE(view->addReport(report));
    EXPECT_EQ(view->getParent(), report);
    EXPECT_EQ(view->getParentCount(), 2);
    EXPECT_FALSE(view->recursiveDelete());
    EXPECT_EQ(view->removeAggregationAssembly(), report);
    EXPECT_EQ(view->removeAggregationAssembly(), package);
}

TEST(QORSQLViewEntity, ReencodesFeaturesBeforeOperations) {
    Graph graph;
    auto* const view = graph.make<View>();
    ASSERT_TRUE(view->addOperation(graph.mortal<QOROperation>("operation", inUtf8)) &&
                view->addFeature(graph.mortal<QORSQLViewAttribute>("first", inUtf8)) &&
                view->addFeature(graph.mortal<QORSQLViewAttribute>("second", "\xC4")) &&
                view->addNote(graph.mortal<QORNote>("note")) &&
                view->addDestinationOfSQLViewAssociation(graph.mortal<QORSQLViewAssociation>("to")));
    Recoding recode;
    recode(*view);
    EXPECT_EQ(graph.recodings, (Labels{"note", "first", "second", "operation"}));
    EXPECT_EQ(view->getFeature(1)->getName(), inLatin1);
    EXPECT_EQ(view->getOperation(0)->getName(), inLatin1);
}

TEST(QORSQLViewEntity, IsWalkedWithFeaturesBeforeOperations) {
    Graph graph;
    auto* const view = graph.make<View>();
    auto* const operation = graph.make<QOROperation>();
    auto* const note = graph.make<QORNote>();
    auto* const b = columnOf(graph, *view, "B");
    auto* const a = columnOf(graph, *view, "A");
    ASSERT_TRUE(view->addOperation(operation) && view->addNote(note) &&
                view->addDestinationOfSQLViewAssociation(graph.make<QORSQLViewAssociation>()));
    EXPECT_EQ(walkOf(*view), (Objects{view, note, a, b, operation}));
}

TEST(QORSQLViewEntity, HoldsNoNullAmongItsAttributes) {
    Graph graph;
    auto* const view = graph.make<View>();
    auto* const a = columnOf(graph, *view, "A");
    EXPECT_TRUE(view->containsSQLViewAttribute(a));
    EXPECT_FALSE(view->containsSQLViewAttribute(nullptr));
}
