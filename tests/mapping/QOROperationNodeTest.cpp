#include "Graph.h"

#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORConstantNode.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>
#include <qor/QOROperationNode.h>

TEST(QOROperationNode, DeletesWhatANodeHasThenArgumentsThenAFreeOperation) {
    Graph graph;
    QOROperationNode node;
    node.addOperation(graph.mortal<QOROperation>("operation"));
    node.addExpressionNode(graph.mortal<QORConstantNode>("argument"));
    node.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"type", "argument", "operation"}));
}

TEST(QOROperationNode, LeavesAnOperationThatHasAClass) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const operation = graph.make<QOROperation>();
    owner->addOperation(operation);
    auto* const node = new QOROperationNode;
    node->addOperation(operation);
    delete node;
    EXPECT_EQ(operation->getOperationNodeCount(), 0);
    EXPECT_EQ(operation->getAssociatedClass(), owner);
}

TEST(QOROperationNode, IsolatesItsOperationThenArgumentsThenTheRest) {
    Graph graph;
    QOROperationNode node;
    node.addType(graph.mortal<QORBaseType>("type"));
    node.addExpressionNode(graph.mortal<QORConstantNode>("argument"));
    node.addOperation(graph.mortal<QOROperation>("operation"));
    node.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"operation", "argument", "type"}));
}

TEST(QOROperationNode, ReencodesAndWalksItsArguments) {
    Graph graph;
    auto* const node = graph.make<QOROperationNode>();
    auto* const argument = graph.mortal<QORConstantNode>("argument");
    auto* const note = graph.make<QORNote>();
    node->addOperation(graph.mortal<QOROperation>("operation"));
    node->addExpressionNode(argument);
    node->addNote(note);
    EXPECT_EQ(walkOf(*node), (Objects{node, note, argument}));
    Recoding recode;
    recode(*node);
    EXPECT_EQ(graph.recodings, Labels{"argument"});
}

TEST(QOROperationNode, CanBeTheArgumentOfAnother) {
    Graph graph;
    auto* const outer = graph.make<QOROperationNode>();
    auto* const inner = graph.make<QOROperationNode>();
    EXPECT_TRUE(outer->addExpressionNode(inner));
    EXPECT_EQ(inner->getOperationNode(), outer);
    EXPECT_EQ(inner->getParent(), outer);
    EXPECT_EQ(outer->getParent(), nullptr);
}
