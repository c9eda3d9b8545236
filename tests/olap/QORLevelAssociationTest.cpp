#include "Expectations.h"

#include <qor/QORDrillPathLevelAssociation.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelAssociation.h>

namespace {

using Association = QORLevelAssociation;

void linkEnds(Graph& graph, Association& association, Owners owners) {
    linkBase(graph, association);
    ASSERT_TRUE(association.addChildLevel(graph.mortal<QORLevel>("child")));
    ASSERT_TRUE(association.addHierarchyLevelAssociation(
        graph.mortal<QORHierarchyLevelAssociation>("hierarchy step")));
    ASSERT_TRUE(association.addDrillPathLevelAssociation(
        graph.mortal<QORDrillPathLevelAssociation>("drill path step")));
    linkOwner(graph, owners, "parent", association, &Association::addParentLevel);
}

} // namespace

TEST(QORLevelAssociation, ShowsItsLevelsAndNotItsName) {
    Graph graph;
    auto* const association = graph.make<Association>("X");
    EXPECT_EQ(association->getDisplayName(), "");
    auto* const parent = graph.make<QORLevel>("P");
    ASSERT_TRUE(association->addParentLevel(parent));
    EXPECT_EQ(association->getDisplayName(), "P_");
    ASSERT_TRUE(association->addChildLevel(graph.make<QORLevel>("C")));
    EXPECT_EQ(association->getDisplayName(), "P_C");
    parent->setName("");
    EXPECT_EQ(association->getDisplayName(), "_C");
    ASSERT_TRUE(association->removeParentLevel(parent));
    EXPECT_EQ(association->getDisplayName(), "C");
}

TEST(QORLevelAssociation, ANewNameTakesItToTheEndOfItsLevel) {
    expectNewNameMovesToEnd(&QORLevel::addParentOfLevelAssociation, &QORLevel::getParentOfLevelAssociation);
}

TEST(QORLevelAssociation, MayLeadBackToItsLevel) {
    Graph graph;
    auto* const level = new QORLevel;
    auto* const association = graph.mortal<Association>("association");
    ASSERT_TRUE(association->addParentLevel(level) && association->addChildLevel(level));
    delete level;
    EXPECT_EQ(graph.deaths, Labels{"association"});
}

TEST(QORLevelAssociation, IsTakenApartInOrder) {
    expectTakenApart<Association>(linkEnds, {"parent", "child", "hierarchy step", "drill path step", "base"},
                                  {"base", "child", "hierarchy step", "drill path step"});
}
