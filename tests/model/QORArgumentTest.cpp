#include "Expectations.h"

#include <qor/QORArgument.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QOROperation.h>

#include <limits>

namespace {

void link(Graph& graph, QORArgument& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "operation", object, &QORArgument::addOperation);
    linkFurtherOwner(graph, owners, "class", object, &QORArgument::addParameterizedClass);
    ASSERT_TRUE(object.addType(graph.mortal<QORBaseType>("type")));
}

} // namespace

TEST(QORArgument, DisplayNameIsArgAndPositionWhateverTheName) {
    QORArgument argument;
    EXPECT_EQ(argument.getDisplayName(), "arg0");
    argument.setPosition(2);
    EXPECT_EQ(argument.getDisplayName(), "arg2");
    argument.setName("A");
    EXPECT_EQ(argument.getDisplayName(), "arg2");
    argument.setPosition(-3);
    EXPECT_EQ(argument.getDisplayName(), "arg-3");
    argument.setPosition(std::numeric_limits<short>::min());
    EXPECT_EQ(argument.getDisplayName(), "arg-32768");
}

TEST(QORArgument, UnnamedArgumentsOfOneOperationDifferByTheirDisplayNames) {
    Graph graph;
    auto* const operation = graph.make<QOROperation>();
    auto* const first = graph.make<QORArgument>();
    auto* const second = graph.make<QORArgument>();
    second->setPosition(1);
    ASSERT_TRUE(operation->addArgument(first));
    ASSERT_TRUE(operation->addArgument(second));
    EXPECT_EQ(operation->getArgumentCount(), 2);
    EXPECT_EQ(first->getDisplayName(), "arg0");
    EXPECT_EQ(second->getDisplayName(), "arg1");
}

TEST(QORArgument, ItsOperationGoesBeforeItsClass) {
    Graph graph;
    auto* const argument = graph.make<QORArgument>();
    auto* const operation = graph.make<QOROperation>();
    auto* const owner = graph.make<QORClass>();
    ASSERT_TRUE(owner->addArgument(argument));
    expectParent(*argument, owner, 1);
    ASSERT_TRUE(argument->addOperation(operation));
    expectLeaves(*argument, {operation, owner});
    EXPECT_FALSE(operation->isReferenced());
    EXPECT_FALSE(owner->isReferenced());
}

TEST(QORArgument, IsTakenApartInOrder) {
    expectTakenApart<QORArgument>(link, {"operation", "type", "class", "base", "synonym", "note"},
                                  {"note", "synonym", "base", "type"});
}

TEST(QORArgument, ReachesWhatAModelObjectReaches) {
    expectChildrenReached<QORArgument>(link, {"note", "synonym"});
}

TEST(QORArgument, WithTwoOwnersItDiesWithTheSecondOne) {
    Graph graph;
    auto* const argument = graph.mortal<QORArgument>("argument");
    auto* const operation = new QOROperation;
    auto* const owner = new QORClass;
    ASSERT_TRUE(operation->addArgument(argument) && owner->addArgument(argument));
    delete operation;
    EXPECT_EQ(graph.deaths, Labels());
    expectParent(*argument, owner, 1);
    delete owner;
    EXPECT_EQ(graph.deaths, Labels{"argument"});
}

TEST(QORArgument, DeletedWithTwoOwnersItLeavesItsTypeUnlinked) {
    Graph graph;
    auto* const argument = new QORArgument;
    link(graph, *argument, Owners::NONE);
    QORType const* const type = argument->getType();
    auto* const operation = graph.make<QOROperation>();
    auto* const owner = graph.make<QORClass>();
    ASSERT_TRUE(operation->addArgument(argument) && owner->addArgument(argument));
    delete argument;
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base"}));
    EXPECT_FALSE(type->isReferenced());
    EXPECT_FALSE(operation->isReferenced());
    EXPECT_FALSE(owner->isReferenced());
}

TEST(QORArgument, ATakenNameIsRefusedByTheOperationOrElseByTheClass) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const operation = graph.make<QOROperation>();
    auto* const argument = graph.make<QORArgument>("A");
    ASSERT_TRUE(owner->addArgument(argument) && owner->addArgument(graph.make<QORArgument>("B")));
    expectNameRefused(*argument, "B", "Class", "Argument");
    EXPECT_EQ(owner->getArgument(0), argument);

    ASSERT_TRUE(operation->addArgument(argument) && operation->addArgument(graph.make<QORArgument>("C")));
    expectNameRefused(*argument, "C", "Operation", "Argument");
    EXPECT_EQ(operation->getArgument(0), argument);
    EXPECT_EQ(owner->getArgument(0), argument);
}

TEST(QORArgument, InAnOperationItsClassIsNotAskedForAName) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const operation = graph.make<QOROperation>();
    auto* const argument = graph.make<QORArgument>("A");
    ASSERT_TRUE(owner->addArgument(argument) && owner->addArgument(graph.make<QORArgument>("C")));
    ASSERT_TRUE(operation->addArgument(argument) && operation->addArgument(graph.make<QORArgument>("B")));
    argument->setName("C");
    EXPECT_EQ(argument->getName(), "C");
    EXPECT_EQ(operation->getArgument(1), argument);
    EXPECT_EQ(owner->getArgument(0), argument); // where it was
    expectParent(*argument, operation, 2);
}

TEST(QORArgument, TheEmptyNameIsNeverTaken) {
    Graph graph;
    auto* const operation = graph.make<QOROperation>();
    auto* const argument = graph.make<QORArgument>("A");
    ASSERT_TRUE(operation->addArgument(argument) && operation->addArgument(graph.make<QORArgument>()));
    argument->setName("");
    EXPECT_EQ(argument->getName(), "");
    EXPECT_EQ(argument->getOperation(), operation);
    EXPECT_EQ(operation->getArgumentCount(), 2);
}
