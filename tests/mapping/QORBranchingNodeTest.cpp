#include "Graph.h"

#include <qor/QORBaseType.h>
#include <qor/QORBranchingNode.h>
#include <qor/QORConstantNode.h>

TEST(QORBranchingNode, DeletesItsConditionFirst) {
    Graph graph;
    QORBranchingNode node;
    node.addExpressionNode(graph.mortal<QORConstantNode>("branch"));
    node.addConditionExpressionNode(graph.mortal<QORConstantNode>("condition"));
    node.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"type", "condition", "branch"}));
}

TEST(QORBranchingNode, IsolatesItsConditionFirst) {
    Graph graph;
    QORBranchingNode node;
    node.addType(graph.mortal<QORBaseType>("type"));
    node.addExpressionNode(graph.mortal<QORConstantNode>("branch"));
    node.addConditionExpressionNode(graph.mortal<QORConstantNode>("condition"));
    node.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"condition", "branch", "type"}));
}

TEST(QORBranchingNode, ReencodesAndWalksItsConditionFirst) {
    Graph graph;
    QORBranchingNode node;
    auto* const branch = graph.mortal<QORConstantNode>("branch");
    auto* const condition = graph.mortal<QORConstantNode>("condition");
    node.addExpressionNode(branch);
    node.addConditionExpressionNode(condition);
    EXPECT_EQ(walkOf(node), (Objects{&node, condition, branch}));
    Recoding recode;
    recode(node);
    EXPECT_EQ(graph.recodings, (Labels{"condition", "branch"}));
}

TEST(QORBranchingNode, KeepsConditionAndBranchesApart) {
    Graph graph;
    auto* const node = graph.make<QORBranchingNode>();
    auto* const condition = graph.make<QORConstantNode>();
    node->addConditionExpressionNode(condition);
    EXPECT_EQ(node->getExpressionNodeCount(), 0);
    EXPECT_EQ(condition->getConditionOfBranchingNode(), node);
    EXPECT_EQ(condition->getBranchingNode(), nullptr);
}
