#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORConstantNode.h>
#include <qor/QORNote.h>
#include <qor/QOROperatorNode.h>

using namespace graph;

TEST(QOROperatorNode, IsAParserNode) {
    expectConcrete<QOROperatorNode>(QORElementType::OPERATOR_NODE, 115, "OperatorNode",
                                    QORParserNode::getStaticMetaClass());
}

TEST(QOROperatorNode, IsReferencedThroughEachOfItsLinks) {
    using N = QOROperatorNode;
    expectReferencedThrough<N, QORConstantNode>(&N::addLeftExpressionNode, &N::removeLeftExpressionNode);
    expectReferencedThrough<N, QORConstantNode>(&N::addRightExpressionNode, &N::removeRightExpressionNode);
}

TEST(QOROperatorNode, HoldsOneOperandOnEachSide) {
    Held<QOROperatorNode> node;
    Held<QORConstantNode> one;
    Held<QORConstantNode> two;
    EXPECT_TRUE(node->addLeftExpressionNode(one));
    EXPECT_FALSE(node->addLeftExpressionNode(two));
    EXPECT_FALSE(two->addLeftOfOperatorNode(node));
    EXPECT_TRUE(two->addRightOfOperatorNode(node));
    EXPECT_EQ(node->getLeftExpressionNode(), one.get());
    EXPECT_EQ(node->getRightExpressionNode(), two.get());
    one->setName("renamed");
    two->setName("renamed");
    EXPECT_EQ(node->getLeftExpressionNode(), one.get());
    EXPECT_EQ(node->getRightExpressionNode(), two.get());
    EXPECT_EQ(one->getLeftOfOperatorNode(), node.get());
    EXPECT_EQ(two->getRightOfOperatorNode(), node.get());
}

TEST(QOROperatorNode, CanHoldOneNodeOnBothSides) {
    Journal journal;
    auto* const node = new QOROperatorNode;
    auto* const operand = watched<QORConstantNode>(journal, "operand");
    EXPECT_TRUE(node->addLeftExpressionNode(operand));
    EXPECT_TRUE(node->addRightExpressionNode(operand));
    EXPECT_EQ(operand->getParentCount(), 2);
    EXPECT_EQ(operand->removeAggregationAssembly(), node);
    EXPECT_EQ(operand->getLeftOfOperatorNode(), nullptr);
    EXPECT_EQ(operand->getRightOfOperatorNode(), node);
    EXPECT_TRUE(node->addLeftExpressionNode(operand));
    delete node;
    EXPECT_EQ(journal.deaths, Labels{"operand"});
}

TEST(QOROperatorNode, RefusesItselfAsAnOperand) {
    Held<QOROperatorNode> node;
    EXPECT_FALSE(node->addLeftExpressionNode(node));
    EXPECT_FALSE(node->addRightOfOperatorNode(node));
    EXPECT_FALSE(node->isReferenced());
}

TEST(QOROperatorNode, DeletesTheLeftOperandFirst) {
    Journal journal;
    QOROperatorNode node;
    node.addRightExpressionNode(watched<QORConstantNode>(journal, "right"));
    node.addLeftExpressionNode(watched<QORConstantNode>(journal, "left"));
    node.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"type", "left", "right"}));
}

TEST(QOROperatorNode, IsolatesTheLeftOperandFirst) {
    Journal journal;
    QOROperatorNode node;
    node.addType(watched<QORBaseType>(journal, "type"));
    node.addRightExpressionNode(watched<QORConstantNode>(journal, "right"));
    node.addLeftExpressionNode(watched<QORConstantNode>(journal, "left"));
    node.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"left", "right", "type"}));
}

TEST(QOROperatorNode, ReencodesAndWalksTheLeftOperandFirst) {
    Journal journal;
    QOROperatorNode node;
    auto* const right = watched<QORConstantNode>(journal, "right");
    auto* const left = watched<QORConstantNode>(journal, "left");
    auto* const note = new QORNote;
    node.addRightExpressionNode(right);
    node.addLeftExpressionNode(left);
    node.addNote(note);
    EXPECT_EQ(walkOf(node), (Objects{&node, note, left, right}));
    Recoding recode;
    recode(node);
    EXPECT_EQ(journal.recodings, (Labels{"left", "right"}));
}

TEST(QOROperatorNode, ComparesShallowly) {
    expectCompared<QOROperatorNode>([](auto& node) { node.setName("+"); });
    expectNotCompared<QOROperatorNode>([](auto& node) { node.addLeftExpressionNode(new QORConstantNode); });
    QOROperatorNode source;
    source.addLeftExpressionNode(new QORConstantNode);
    QOROperatorNode const copy(source);
    EXPECT_EQ(copy.getLeftExpressionNode(), nullptr);
}
