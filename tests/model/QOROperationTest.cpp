#include "Expectations.h"

#include <qor/QORArgument.h>
#include <qor/QORArgumentByPosition.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QOROperation.h>
#include <qor/QOROperationNode.h>
#include <qor/QORSQLViewEntity.h>

namespace {

void link(Graph& graph, QOROperation& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "class", object, &QOROperation::addAssociatedClass);
    linkFurtherOwner(graph, owners, "view", object, &QOROperation::addAssociatedSQLViewEntity);
    ASSERT_TRUE(object.addOperationNode(graph.mortal<QOROperationNode>("node")));
    ASSERT_TRUE(object.addArgument(graph.mortal<QORArgument>("b argument")));
    ASSERT_TRUE(object.addArgument(graph.mortal<QORArgument>("a argument")));
    ASSERT_TRUE(object.addReturnType(graph.mortal<QORBaseType>("type")));
}

} // namespace

TEST(QOROperation, ItsClassGoesBeforeItsView) {
    Graph graph;
    auto* const operation = graph.make<QOROperation>();
    auto* const owner = graph.make<QORClass>();
    auto* const view = graph.make<QORSQLViewEntity>();
    ASSERT_TRUE(view->addOperation(operation));
    expectParent(*operation, view, 1);
    ASSERT_TRUE(owner->addOperation(operation));
    expectLeaves(*operation, {owner, view});
    EXPECT_EQ(owner->getOperationCount(), 0);
    EXPECT_EQ(view->getOperationCount(), 0);
}

TEST(QOROperation, IsTakenApartInOrder) {
    expectTakenApart<QOROperation>(
        link, {"type", "class", "view", "a argument", "b argument", "node", "base", "synonym", "note"},
        {"note", "synonym", "base", "a argument", "b argument", "type", "node"});
}

TEST(QOROperation, ReachesItsArguments) {
    expectChildrenReached<QOROperation>(link, {"note", "synonym", "a argument", "b argument"});
}

TEST(QOROperation, DeletedWithTwoOwnersItLeavesItsArgumentsUnlinked) {
    Graph graph;
    auto* const operation = new QOROperation;
    link(graph, *operation, Owners::NONE);
    Objects const left{operation->getArgument(0), operation->getArgument(1), operation->getReturnType(),
                       operation->getOperationNode(0)};
    auto* const owner = graph.make<QORClass>();
    auto* const view = graph.make<QORSQLViewEntity>();
    ASSERT_TRUE(owner->addOperation(operation) && view->addOperation(operation));
    delete operation;
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base"}));
    for (QORObject const* const each : left)
        EXPECT_FALSE(each->isReferenced());
    EXPECT_FALSE(owner->isReferenced());
    EXPECT_FALSE(view->isReferenced());
}

TEST(QOROperation, MayShareItsNameAndKeepsItsOwnersWhenItIsNamed) {
    Graph graph;
    auto* const operation = graph.make<QOROperation>("A");
    auto* const owner = graph.make<QORClass>();
    auto* const view = graph.make<QORSQLViewEntity>();
    ASSERT_TRUE(view->addOperation(operation) && view->addOperation(graph.make<QOROperation>("B")));
    operation->setName("B");
    EXPECT_EQ(operation->getName(), "B");
    ASSERT_TRUE(owner->addOperation(operation) && owner->addOperation(graph.make<QOROperation>("C")));
    operation->setName("C");
    EXPECT_EQ(operation->getName(), "C");
    expectParent(*operation, owner, 2);
    EXPECT_EQ(owner->getOperationCount(), 2);
    EXPECT_EQ(view->getOperationCount(), 2);
}

TEST(QOROperation, ArgumentsComeByPosition) {
    expectSortedByPosition<QOROperation, QORArgument, QORArgumentByPosition>(
        &QOROperation::addArgument, &QOROperation::getArgumentByPosition);
}

TEST(QOROperation, UnnamedArgumentsStandSideBySide) {
    Graph graph;
    auto* const operation = graph.make<QOROperation>();
    EXPECT_TRUE(operation->addArgument(graph.make<QORArgument>()));
    EXPECT_TRUE(operation->addArgument(graph.make<QORArgument>()));
    EXPECT_TRUE(operation->addArgument(graph.make<QORArgument>("A")));
    EXPECT_FALSE(operation->addArgument(graph.make<QORArgument>("A")));
    EXPECT_EQ(operation->getArgumentCount(), 3);
}

TEST(QOROperation, RemovingAnArgumentUnlinksItAndRemovingAllDeletesTheUnreferenced) {
    Graph graph;
    auto* const operation = graph.make<QOROperation>();
    auto* const argument = graph.mortal<QORArgument>("argument", "A");
    auto* const held = graph.make<QORArgument>("B");
    ASSERT_TRUE(operation->addArgument(argument) && operation->addArgument(held) &&
                held->addParameterizedClass(graph.make<QORClass>()));
    EXPECT_TRUE(operation->removeArgument(argument));
    EXPECT_FALSE(operation->removeArgument(argument));
    EXPECT_EQ(argument->getOperation(), nullptr);
    EXPECT_EQ(graph.deaths, Labels());
    ASSERT_TRUE(operation->addArgument(argument));
    operation->removeArguments();
    EXPECT_EQ(graph.deaths, Labels{"argument"});
    EXPECT_EQ(held->getOperation(), nullptr);
    EXPECT_EQ(operation->getArgumentCount(), 0);
}
