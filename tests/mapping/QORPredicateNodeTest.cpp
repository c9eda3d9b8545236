#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORConstantNode.h>
#include <qor/QORPredicate.h>
#include <qor/QORPredicateByPosition.h>
#include <qor/QORPredicateNode.h>

using namespace graph;

TEST(QORPredicateNode, IsAParserNode) {
    expectConcrete<QORPredicateNode>(QORElementType::PREDICATE_NODE, 118, "PredicateNode",
                                     QORParserNode::getStaticMetaClass());
}

TEST(QORPredicateNode, IsReferencedThroughEachOfItsLinks) {
    using N = QORPredicateNode;
    expectReferencedThrough<N, QORConstantNode>(&N::addExpressionNode, &N::removeExpressionNode);
    expectReferencedThrough<N, QORPredicate>(&N::addPredicate, &N::removePredicate);
}

TEST(QORPredicateNode, HasOneOperand) {
    Held<QORPredicateNode> node;
    Held<QORConstantNode> one;
    Held<QORConstantNode> two;
    EXPECT_TRUE(node->addExpressionNode(one));
    EXPECT_FALSE(node->addExpressionNode(two));
    EXPECT_FALSE(two->addPredicateNode(node));
    EXPECT_EQ(node->getExpressionNode(), one.get());
}

TEST(QORPredicateNode, HoldsPredicatesInOrderOfInsertion) {
    QORPredicateNode node;
    short position = 2;
    for (char const* name : {"not", "is", "null"}) {
        auto* const predicate = named<QORPredicate>(name);
        predicate->setPosition(position--);
        node.addPredicate(predicate);
    }
    EXPECT_STREQ(node.getPredicate(0)->getName().chars, "not");
    EXPECT_STREQ(node.getPredicate(1)->getName().chars, "is");
    EXPECT_STREQ(node.getPredicate(2)->getName().chars, "null");
    QORPredicateByPosition view;
    node.getPredicateByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"null", "is", "not"}));
}

TEST(QORPredicateNode, DeletesItsOperandBeforeItsPredicates) {
    Journal journal;
    QORPredicateNode node;
    node.addPredicate(watched<QORPredicate>(journal, "predicate 1"));
    node.addPredicate(watched<QORPredicate>(journal, "predicate 2"));
    node.addExpressionNode(watched<QORConstantNode>(journal, "operand"));
    node.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"type", "operand", "predicate 1", "predicate 2"}));
}

TEST(QORPredicateNode, IsolatesItsOperandBeforeItsPredicates) {
    Journal journal;
    QORPredicateNode node;
    node.addType(watched<QORBaseType>(journal, "type"));
    node.addPredicate(watched<QORPredicate>(journal, "predicate"));
    node.addExpressionNode(watched<QORConstantNode>(journal, "operand"));
    node.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"operand", "predicate", "type"}));
}

TEST(QORPredicateNode, ReencodesAndWalksItsOperandBeforeItsPredicates) {
    Journal journal;
    QORPredicateNode node;
    auto* const predicate1 = watched<QORPredicate>(journal, "predicate 1");
    auto* const predicate2 = watched<QORPredicate>(journal, "predicate 2");
    auto* const operand = watched<QORConstantNode>(journal, "operand");
    predicate1->QORPredicate::setName(rawText);
    node.addPredicate(predicate1);
    node.addPredicate(predicate2);
    node.addExpressionNode(operand);
    EXPECT_EQ(walkOf(node), (Objects{&node, operand, predicate1, predicate2}));
    Recoding recode;
    recode(node);
    EXPECT_EQ(journal.recodings, (Labels{"operand", "predicate 1", "predicate 2"}));
    EXPECT_EQ(node.getPredicate(1), predicate1); // its new name has moved it to the end
}
