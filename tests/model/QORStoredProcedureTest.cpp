#include "Expectations.h"

#include <qor/QORArgument.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOROperationNode.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORStoredProcedure.h>

namespace {

void link(Graph& graph, QORStoredProcedure& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "package", object, &QORStoredProcedure::addDesignPackage);
    linkFurtherOwner(graph, owners, "class", object, &QOROperation::addAssociatedClass);
    linkFurtherOwner(graph, owners, "view", object, &QOROperation::addAssociatedSQLViewEntity);
    ASSERT_TRUE(object.addOperationNode(graph.mortal<QOROperationNode>("node")));
    ASSERT_TRUE(object.addArgument(graph.mortal<QORArgument>("argument")));
    ASSERT_TRUE(object.addReturnType(graph.mortal<QORBaseType>("type")));
}

} // namespace

TEST(QORStoredProcedure, AsksDesignPackageThenClassThenView) {
    Graph graph;
    auto* const procedure = graph.make<QORStoredProcedure>();
    auto* const package = graph.make<QORDesignPackage>();
    auto* const owner = graph.make<QORClass>();
    auto* const view = graph.make<QORSQLViewEntity>();
    ASSERT_TRUE(owner->addOperation(procedure));
    expectParent(*procedure, owner, 1);
    ASSERT_TRUE(package->addStoredProcedure(procedure));
    expectParent(*procedure, package, 2);
    ASSERT_TRUE(view->addOperation(procedure));
    expectLeaves(*procedure, {package, owner, view});
    EXPECT_EQ(package->getStoredProcedureCount(), 0);
}

TEST(QORStoredProcedure, IsTakenApartInOrder) {
    expectTakenApart<QORStoredProcedure>(
        link, {"package", "type", "class", "view", "argument", "node", "base", "synonym", "note"},
        {"note", "synonym", "base", "argument", "type", "node"});
}

TEST(QORStoredProcedure, ReachesItsArguments) {
    expectChildrenReached<QORStoredProcedure>(link, {"note", "synonym", "argument"});
}

TEST(QORStoredProcedure, DeletedInAPackageAndAClassItDeletesItsArguments) {
    Graph graph;
    auto* const procedure = new QORStoredProcedure;
    link(graph, *procedure, Owners::NONE);
    auto* const package = graph.make<QORDesignPackage>();
    auto* const owner = graph.make<QORClass>();
    ASSERT_TRUE(package->addStoredProcedure(procedure) && owner->addOperation(procedure));
    EXPECT_FALSE(procedure->recursiveDelete());
    delete procedure; // the procedure leaves the package, the operation the class
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base", "argument", "type", "node"}));
    EXPECT_FALSE(package->isReferenced());
    EXPECT_FALSE(owner->isReferenced());
}

TEST(QORStoredProcedure, DeletedWithThreeOwnersItLeavesItsArgumentsUnlinked) {
    Graph graph;
    auto* const procedure = new QORStoredProcedure;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const owner = graph.make<QORClass>();
    auto* const view = graph.make<QORSQLViewEntity>();
    auto* const argument = graph.make<QORArgument>();
    ASSERT_TRUE(package->addStoredProcedure(procedure) && owner->addOperation(procedure) &&
                view->addOperation(procedure) && procedure->addArgument(argument));
    delete procedure;
    for (QORObject const* const each : Objects{package, owner, view, argument})
        EXPECT_FALSE(each->isReferenced());
}

TEST(QORStoredProcedure, InAPackageAndAClassItDiesWithTheSecondOne) {
    Graph graph;
    auto* const procedure = graph.mortal<QORStoredProcedure>("procedure");
    auto* const package = new QORDesignPackage;
    auto* const owner = new QORClass;
    ASSERT_TRUE(package->addStoredProcedure(procedure) && owner->addOperation(procedure));
    delete package;
    EXPECT_EQ(graph.deaths, Labels());
    expectParent(*procedure, owner, 1);
    delete owner;
    EXPECT_EQ(graph.deaths, Labels{"procedure"});
}

TEST(QORStoredProcedure, ATakenNameIsRefusedByItsPackageOnly) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const owner = graph.make<QORClass>();
    auto* const procedure = graph.make<QORStoredProcedure>("A");
    ASSERT_TRUE(owner->addOperation(procedure) && owner->addOperation(graph.make<QOROperation>("B")));
    procedure->setName("B");
    procedure->setName("A");
    ASSERT_TRUE(package->addStoredProcedure(procedure));
    ASSERT_TRUE(package->addStoredProcedure(graph.make<QORStoredProcedure>("C")));
    expectNameRefused(*procedure, "C", "DesignPackage", "StoredProcedure");
    EXPECT_EQ(package->getStoredProcedure(0), procedure);
    procedure->setName("D");
    EXPECT_EQ(package->getStoredProcedure(1), procedure);
    expectParent(*procedure, package, 2);
}
