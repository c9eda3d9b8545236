#include "Graph.h"

#include <qor/QORBaseType.h>
#include <qor/QORConstantNode.h>
#include <qor/QORNote.h>
#include <qor/QOROperatorNode.h>

TEST(QOROperatorNode, CanHoldOneNodeOnBothSides) {
    Graph graph;
    auto* const node = new QOROperatorNode;
    auto* const operand = graph.mortal<QORConstantNode>("operand");
    EXPECT_TRUE(node->addLeftExpressionNode(operand));
    EXPECT_TRUE(node->addRightExpressionNode(operand));
    EXPECT_EQ(operand->getParentCount(), 2);
    EXPECT_EQ(operand->removeAggregationAssembly(), node);
    EXPECT_EQ(operand->getLeftOfOperatorNode(), nullptr);
    EXPECT_EQ(operand->getRightOfOperatorNode(), node);
    EXPECT_TRUE(node->addLeftExpressionNode(operand));
    delete node;
    EXPECT_EQ(graph.deaths, Labels{"operand"});
}

TEST(QOROperatorNode, DeletesTheLeftOperandFirst) {
    Graph graph;
    QOROperatorNode node;
    node.addRightExpressionNode(graph.mortal<QORConstantNode>("right"));
    node.addLeftExpressionNode(graph.mortal<QORConstantNode>("left"));
    node.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"type", "left", "right"}));
}

TEST(QOROperatorNode, IsolatesTheLeftOperandFirst) {
    Graph graph;
    QOROperatorNode node;
    node.addType(graph.mortal<QORBaseType>("type"));
    node.addRightExpressionNode(graph.mortal<QORConstantNode>("right"));
    node.addLeftExpressionNode(graph.mortal<QORConstantNode>("left"));
    node.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"left", "right", "type"}));
}

TEST(QOROperatorNode, ReencodesAndWalksTheLeftOperandFirst) {
    Graph graph;
    QOROperatorNode node;
    auto* const right = graph.mortal<QORConstantNode>("right");
    auto* const left = graph.mortal<QORConstantNode>("left");
    auto* const note = new QORNote;
    node.addRightExpressionNode(right);
    node.addLeftExpressionNode(left);
    node.addNote(note);
    EXPECT_EQ(walkOf(node), (Objects{&node, note, left, right}));
    Recoding recode;
    recode(node);
    EXPECT_EQ(graph.recodings, (Labels{"left", "right"}));
}
