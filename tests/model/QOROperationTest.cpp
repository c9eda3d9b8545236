#include "ModelTestSupport.h"

#include <qor/QORArgument.h>
#include <qor/QORArgumentByPosition.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QOROperation.h>
#include <qor/QOROperationNode.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORTrigger.h>

namespace {

void link(Graph& graph, QOROperation& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "class", object, &QOROperation::addAssociatedClass);
    linkFurtherOwner(graph, owners, "view", object, &QOROperation::addAssociatedSQLViewEntity);
    ASSERT_TRUE(object.addOperationNode(hung<QOROperationNode>(graph, "node")));
    ASSERT_TRUE(object.addArgument(hung<QORArgument>(graph, "b argument")));
    ASSERT_TRUE(object.addArgument(hung<QORArgument>(graph, "a argument")));
    ASSERT_TRUE(object.addReturnType(hung<QORBaseType>(graph, "type")));
}

} // namespace

TEST(QOROperation, IsAModelObject) {
    graph::expectConcrete<QOROperation>(QORElementType::OPERATION, 23, "Operation",
                                        QORModelObject::getStaticMetaClass());
    expectClassesUnequal<QOROperation, QORTrigger>();
}

TEST(QOROperation, AttributesHaveTheirFirstValuesAndCountForEquality) {
    using Class = QOROperation;
    expectAttribute<Class>(&Class::getPosition, &Class::setPosition, short{0}, short{1});
    expectAttribute<Class>(&Class::getCppScope, &Class::setCppScope, QORVisibilityType::PUBLIC,
                           QORVisibilityType::IMPLEMENTATION);
    expectAttribute<Class>(&Class::getCppConcurrency, &Class::setCppConcurrency,
                           QORConcurrencyType::SEQUENTIAL, QORConcurrencyType::GUARDED);
    expectAttribute<Class>(&Class::getCppAbstract, &Class::setCppAbstract, false, true);
    expectAttribute<Class>(&Class::getCppFriend, &Class::setCppFriend, false, true);
    expectAttribute<Class>(&Class::getCppStatic, &Class::setCppStatic, false, true);
    expectAttribute<Class>(&Class::getCppVirtual, &Class::setCppVirtual, false, true);
    expectAttribute<Class>(&Class::getSemantics, &Class::setSemantics, "", "A");
    expectAttribute<Class>(&Class::getPrecondition, &Class::setPrecondition, "", "A");
    expectAttribute<Class>(&Class::getPostcondition, &Class::setPostcondition, "", "A");
}

TEST(QOROperation, TextsAreReencodedEachOnItsOwn) {
    using Class = QOROperation;
    expectTextsRecoded<Class>({{&Class::getSemantics, &Class::setSemantics},
                               {&Class::getPrecondition, &Class::setPrecondition},
                               {&Class::getPostcondition, &Class::setPostcondition}});
}

TEST(QOROperation, CopiesHaveNoLinks) {
    expectCopiesUnlinked<QOROperation>(link);
}

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

TEST(QOROperation, EachEndCountsAsAReference) {
    expectEndCounts<QOROperation, QORType, QORBaseType>(&QOROperation::addReturnType);
    expectEndCounts<QOROperation, QORClass>(&QOROperation::addAssociatedClass);
    expectEndCounts<QOROperation, QORSQLViewEntity>(&QOROperation::addAssociatedSQLViewEntity);
    expectEndCounts<QOROperation, QORArgument>(&QOROperation::addArgument);
    expectEndCounts<QOROperation, QOROperationNode>(&QOROperation::addOperationNode);
}

TEST(QOROperation, IsTakenApartInOrder) {
    expectTakenApart<QOROperation>(
        link, {"type", "class", "view", "a argument", "b argument", "node", "base", "synonym", "note"},
        {"note", "synonym", "base", "a argument", "b argument", "type", "node"});
    expectIsolationFreesFarEnds<QOROperation>(link);
}

TEST(QOROperation, ReachesItsArguments) {
    expectChildrenReached<QOROperation>(link, {"note", "synonym", "a argument", "b argument"});
}

TEST(QOROperation, RecursiveDeleteInAViewChangesNothing) {
    Graph graph;
    auto* const operation = graph.make<QOROperation>();
    auto* const view = graph.make<QORSQLViewEntity>();
    link(graph, *operation, Owners::NONE);
    ASSERT_TRUE(view->addOperation(operation));
    EXPECT_FALSE(operation->recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels());
    EXPECT_EQ(operation->getArgumentCount(), 2);
    EXPECT_EQ(operation->getAssociatedSQLViewEntity(), view);
}

TEST(QOROperation, DeletedWithTwoOwnersItLeavesItsArgumentsUnlinked) {
    Graph graph;
    auto* const operation = new QOROperation;
    link(graph, *operation, Owners::NONE);
    std::vector<QORObject*> const left{operation->getArgument(0), operation->getArgument(1),
                                       operation->getReturnType(), operation->getOperationNode(0)};
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
