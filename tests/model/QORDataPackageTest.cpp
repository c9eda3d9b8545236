#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORDataPackage.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOROlapSchema.h>

namespace {

/// A data package is abstract: a database schema has nothing besides.
void link(Graph& graph, QORDatabaseSchema& object, Owners owners) {
    linkLayers(graph, object);
    linkOwnerMade<QORDesignPackage>(graph, owners, "parent", object, &QORPackage::addParentPackage);
    ASSERT_TRUE(object.addModelObject(graph.mortal<QORClass>("second listed")));
    ASSERT_TRUE(object.addModelObject(graph.mortal<QORClass>("first listed")));
    ASSERT_TRUE(object.addChildPackage(graph.mortal<QORDatabaseSchema>("child")));
}

} // namespace

TEST(QORDataPackage, IsTakenApartInOrder) {
    expectTakenApart<QORDatabaseSchema>(
        link, {"second listed", "first listed", "parent", "child", "base", "synonym", "note"},
        {"note", "synonym", "base", "child", "second listed", "first listed"});
}

TEST(QORDataPackage, DoesNotReachWhatItLists) {
    expectChildrenReached<QORDatabaseSchema>(link, {"note", "synonym", "child"});
}

TEST(QORDataPackage, AListedObjectWithAnOwnerSurvives) {
    Graph graph;
    auto* const home = graph.make<QORDesignPackage>();
    auto* const listed = graph.make<QORClass>();
    auto* const package = new QOROlapSchema;
    ASSERT_TRUE(home->addModelElement(listed) && package->addModelObject(listed));
    delete package;
    EXPECT_EQ(listed->getDataPackage(), nullptr);
    EXPECT_EQ(listed->getDesignPackage(), home);
}
