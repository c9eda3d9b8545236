#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORBranchingNode.h>
#include <qor/QORConstantNode.h>
#include <qor/QORExpressionNodeByPosition.h>

using namespace graph;

TEST(QORBranchingNode, IsAParserNode) {
    expectConcrete<QORBranchingNode>(QORElementType::BRANCHING_NODE, 103, "BranchingNode",
                                     QORParserNode::getStaticMetaClass());
}

TEST(QORBranchingNode, IsReferencedThroughEachOfItsLinks) {
    using N = QORBranchingNode;
    expectReferencedThrough<N, QORConstantNode>(&N::addConditionExpressionNode,
                                                &N::removeConditionExpressionNode);
    expectReferencedThrough<N, QORConstantNode>(&N::addExpressionNode, &N::removeExpressionNode);
}

TEST(QORBranchingNode, FillsAViewOfItsBranchesWithoutTheCondition) {
    QORBranchingNode node;
    node.addConditionExpressionNode(named<QORConstantNode>("condition"));
    auto* const otherwise = named<QORConstantNode>("otherwise");
    otherwise->setPosition(2);
    auto* const then = named<QORConstantNode>("then");
    then->setPosition(1);
    node.addExpressionNode(otherwise);
    node.addExpressionNode(then);
    QORExpressionNodeByPosition view;
    node.getExpressionNodeByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"then", "otherwise"}));
}

TEST(QORBranchingNode, DeletesItsConditionFirst) {
    Journal journal;
    QORBranchingNode node;
    node.addExpressionNode(watched<QORConstantNode>(journal, "branch"));
    node.addConditionExpressionNode(watched<QORConstantNode>(journal, "condition"));
    node.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"type", "condition", "branch"}));
}

TEST(QORBranchingNode, IsolatesItsConditionFirst) {
    Journal journal;
    QORBranchingNode node;
    node.addType(watched<QORBaseType>(journal, "type"));
    node.addExpressionNode(watched<QORConstantNode>(journal, "branch"));
    node.addConditionExpressionNode(watched<QORConstantNode>(journal, "condition"));
    node.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"condition", "branch", "type"}));
}

TEST(QORBranchingNode, ReencodesAndWalksItsConditionFirst) {
    Journal journal;
    QORBranchingNode node;
    auto* const branch = watched<QORConstantNode>(journal, "branch");
    auto* const condition = watched<QORConstantNode>(journal, "condition");
    node.addExpressionNode(branch);
    node.addConditionExpressionNode(condition);
    EXPECT_EQ(walkOf(node), (Objects{&node, condition, branch}));
    Recoding recode;
    recode(node);
    EXPECT_EQ(journal.recodings, (Labels{"condition", "branch"}));
}

TEST(QORBranchingNode, KeepsConditionAndBranchesApart) {
    Held<QORBranchingNode> node;
    Held<QORConstantNode> condition;
    node->addConditionExpressionNode(condition);
    EXPECT_EQ(node->getExpressionNodeCount(), 0);
    EXPECT_EQ(condition->getConditionOfBranchingNode(), node.get());
    EXPECT_EQ(condition->getBranchingNode(), nullptr);
}
