#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORSQLViewAssociation.h>
#include <qor/QORSQLViewEntity.h>

namespace {

using From = QORSQLViewAssociation;

void linkEnds(Graph& graph, From& from, Owners owners) {
    linkBase(graph, from);
    ASSERT_TRUE(from.addDestinationSQLViewEntity(graph.mortal<QORSQLViewEntity>("view")));
    ASSERT_TRUE(from.addSourceClassifier(graph.mortal<QORClass>("source")));
    ASSERT_TRUE(from.addDiagram(graph.mortal<QORClassDiagram>("diagram")));
    linkOwner(graph, owners, "package", from, &From::addDesignPackage);
}

} // namespace

TEST(QORSQLViewAssociation, ShowsBothEnds) {
    Graph graph;
    auto* const from = graph.make<From>("F");
    EXPECT_EQ(from->getDisplayName(), "_");
    ASSERT_TRUE(from->addSourceClassifier(graph.make<QORClass>("S")));
    EXPECT_EQ(from->getDisplayName(), "S_");
    ASSERT_TRUE(from->addDestinationSQLViewEntity(graph.make<QORSQLViewEntity>("V")));
    EXPECT_EQ(from->getDisplayName(), "S_V");
    ASSERT_TRUE(from->removeSourceClassifier(from->getSourceClassifier()));
    EXPECT_EQ(from->getDisplayName(), "_V");
}

TEST(QORSQLViewAssociation, NeitherEndIsAParent) {
    Graph graph;
    auto* const from = graph.make<From>();
    ASSERT_TRUE(from->addSourceClassifier(graph.make<QORClass>()) &&
                from->addDestinationSQLViewEntity(graph.make<QORSQLViewEntity>()));
    EXPECT_EQ(from->getParent(), nullptr);
    EXPECT_EQ(from->getParentCount(), 0);
    EXPECT_EQ(from->removeAggregationAssembly(), nullptr);
    EXPECT_NE(from->getSourceClassifier(), nullptr);
    auto* const package = graph.make<QORDesignPackage>();
    ASSERT_TRUE(from->addDesignPackage(package));
    EXPECT_EQ(from->getParent(), package);
    EXPECT_EQ(from->getParentCount(), 1);
}

TEST(QORSQLViewAssociation, MayShareItsNameInAPackage) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const from = graph.make<From>("A");
    ASSERT_TRUE(package->addModelElement(from) && package->addModelElement(graph.make<From>("B")));
    from->setName("B");
    EXPECT_EQ(from->getName(), "B");
    EXPECT_EQ(package->getModelElementCount(), 2);
}

TEST(QORSQLViewAssociation, IsTakenApartInOrder) {
    expectTakenApart<From>(linkEnds, {"view", "source", "package", "diagram", "base"},
                           {"base", "diagram", "view", "source"});
}
