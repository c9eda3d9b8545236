#include "Graph.h"

#include <qor/QORBaseType.h>
#include <qor/QORConstantNode.h>
#include <qor/QORPredicate.h>
#include <qor/QORPredicateNode.h>

TEST(QORPredicateNode, DeletesItsOperandBeforeItsPredicates) {
    Graph graph;
    QORPredicateNode node;
    node.addPredicate(graph.mortal<QORPredicate>("predicate 1"));
    node.addPredicate(graph.mortal<QORPredicate>("predicate 2"));
    node.addExpressionNode(graph.mortal<QORConstantNode>("operand"));
    node.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"type", "operand", "predicate 1", "predicate 2"}));
}

TEST(QORPredicateNode, IsolatesItsOperandBeforeItsPredicates) {
    Graph graph;
    QORPredicateNode node;
    node.addType(graph.mortal<QORBaseType>("type"));
    node.addPredicate(graph.mortal<QORPredicate>("predicate"));
    node.addExpressionNode(graph.mortal<QORConstantNode>("operand"));
    node.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"operand", "predicate", "type"}));
}

TEST(QORPredicateNode, ReencodesAndWalksItsOperandBeforeItsPredicates) {
    Graph graph;
    QORPredicateNode node;
    auto* const predicate1 = graph.mortal<QORPredicate>("predicate 1", "");
    auto* const predicate2 = graph.mortal<QORPredicate>("predicate 2", "");
    auto* const operand = graph.mortal<QORConstantNode>("operand");
    predicate1->QORPredicate::setName(inUtf8);
    node.addPredicate(predicate1);
    node.addPredicate(predicate2);
    node.addExpressionNode(operand);
    EXPECT_EQ(walkOf(node), (Objects{&node, operand, predicate1, predicate2}));
    Recoding recode;
    recode(node);
    EXPECT_EQ(graph.recodings, (Labels{"operand", "predicate 1", "predicate 2"}));
    EXPECT_EQ(node.getPredicate(1), predicate1); // its new name has moved it to the end
}
