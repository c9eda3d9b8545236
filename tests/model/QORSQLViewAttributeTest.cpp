#include "Expectations.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORSQLViewAttribute.h>
#include <qor/QORSQLViewEntity.h>

namespace {

using Column = QORSQLViewAttribute;

void linkEnds(Graph& graph, Column& column, Owners owners) {
    linkBase(graph, column);
    ASSERT_TRUE(column.addSourceFeature(graph.mortal<QORAttribute>("sourceFeature")));
    ASSERT_TRUE(column.addType(graph.mortal<QORBaseType>("type")));
    ASSERT_TRUE(column.addSourceOfFeatureMap(graph.mortal<QORFeatureMap>("sourceMap")));
    ASSERT_TRUE(column.addDestinationOfFeatureMap(graph.mortal<QORFeatureMap>("destinationMap")));
    ASSERT_TRUE(column.addSourceOfSQLViewAttribute(graph.mortal<Column>("column")));
    if (owners == Owners::ALL) {
        ASSERT_TRUE(column.addSQLViewEntity(graph.mortal<QORSQLViewEntity>("view")));
    } else if (owners == Owners::ONE) {
        ASSERT_TRUE(column.addSQLViewEntity(graph.make<QORSQLViewEntity>()));
    }
}

} // namespace

TEST(QORSQLViewAttribute, ItsViewIsItsClassifier) {
    Graph graph;
    auto* const view = graph.make<QORSQLViewEntity>();
    auto* const column = graph.make<Column>("A");
    EXPECT_EQ(column->getSQLViewEntity(), nullptr);
    EXPECT_TRUE(column->addSQLViewEntity(view));
    EXPECT_FALSE(column->addSQLViewEntity(graph.make<QORSQLViewEntity>()));
    EXPECT_EQ(column->getSQLViewEntity(), view);
    EXPECT_EQ(column->getClassifier(), view);
    EXPECT_EQ(column->getParent(), view);
    EXPECT_EQ(column->getParentCount(), 1);
    EXPECT_EQ(view->getFeature(0), column);
    EXPECT_FALSE(column->removeSQLViewEntity(graph.make<QORSQLViewEntity>()));
    EXPECT_TRUE(column->removeSQLViewEntity(view));
    EXPECT_FALSE(column->removeSQLViewEntity(view));
    EXPECT_FALSE(column->removeSQLViewEntity());
    EXPECT_EQ(view->getFeatureCount(), 0);
}

TEST(QORSQLViewAttribute, RemovingItsViewDeletesAnUnreferencedOne) {
    Graph graph;
    auto* const view = graph.mortal<QORSQLViewEntity>("view");
    auto* const first = graph.make<Column>("A");
    auto* const second = graph.make<Column>("B");
    ASSERT_TRUE(first->addSQLViewEntity(view) && second->addSQLViewEntity(view));
    EXPECT_TRUE(first->removeSQLViewEntity());
    EXPECT_EQ(graph.deaths, Labels());
    EXPECT_TRUE(second->removeSQLViewEntity());
    EXPECT_EQ(graph.deaths, Labels{"view"});
    EXPECT_EQ(second->getSQLViewEntity(), nullptr);
}

TEST(QORSQLViewAttribute, TakesAnyClassifierForItsView) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const column = graph.make<Column>("A");
    ASSERT_TRUE(owner->addFeature(column));
    EXPECT_EQ(static_cast<void*>(column->getSQLViewEntity()), static_cast<void*>(owner));
}

TEST(QORSQLViewAttribute, AFeatureIsTheSourceOfManyColumns) {
    Graph graph;
    auto* const source = graph.make<QORAttribute>();
    auto* const column = graph.make<Column>();
    ASSERT_TRUE(column->addSourceFeature(source) && graph.make<Column>()->addSourceFeature(source));
    EXPECT_EQ(source->getSourceOfSQLViewAttributeCount(), 2);
    EXPECT_FALSE(column->addSourceFeature(graph.make<QORAttribute>()));
    EXPECT_EQ(column->getSourceFeature(), source);
}

TEST(QORSQLViewAttribute, IsTakenApartInOrder) {
    expectTakenApart<Column>(
        linkEnds, {"sourceFeature", "type", "view", "sourceMap", "destinationMap", "column", "base"},
        {"base", "type", "sourceMap", "destinationMap", "column", "sourceFeature"});
}
