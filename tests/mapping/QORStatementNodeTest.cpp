#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDelimiterNode.h>
#include <qor/QORExpression.h>
#include <qor/QORExpressionNodeByPosition.h>
#include <qor/QORNote.h>
#include <qor/QOROperationNode.h>
#include <qor/QOROperatorNode.h>
#include <qor/QORStatementNode.h>

using namespace graph;

TEST(QORStatementNode, IsAParserNode) {
    expectConcrete<QORStatementNode>(QORElementType::STATEMENT_NODE, 134, "StatementNode",
                                     QORParserNode::getStaticMetaClass());
}

TEST(QORStatementNode, StartsAsAFormula) {
    EXPECT_EQ(QORStatementNode().getStatementType(), QORStatementNodeType::FORMULA);
}

TEST(QORStatementNode, IsReferencedThroughEachOfItsLinks) {
    using N = QORStatementNode;
    expectReferencedThrough<N, QORExpression>(&N::addExpression, &N::removeExpression);
    expectReferencedThrough<N, QORConstantNode>(&N::addReferencedExpressionNode,
                                                &N::removeReferencedExpressionNode);
    expectReferencedThrough<N, QORConstantNode>(&N::addExpressionNode, &N::removeExpressionNode);
    expectReferencedThrough<N, QORStatementNode>(&QORExpressionNode::addStatementNode,
                                                 &QORExpressionNode::removeStatementNode);
}

TEST(QORStatementNode, LeavesItsExpressionBeforeTheOwnersOfANode) {
    Held<QORStatementNode> statement("statement");
    Held<QORExpression> expression;
    Held<QOROperationNode> operation;
    Held<QORStatementNode> outer;
    outer->addExpressionNode(statement);
    operation->addExpressionNode(statement);
    expression->addStatementNode(statement);
    statement->setName("renamed");
    EXPECT_STREQ(statement->getName().chars, "renamed");
    EXPECT_EQ(expression->getStatementNode(0), statement.get());
    EXPECT_EQ(statement->getExpression(), expression.get());
    int owners = 3;
    for (QORObject* owner : Objects{expression, operation, outer}) {
        EXPECT_EQ(statement->getParent(), owner);
        EXPECT_EQ(statement->getParentCount(), owners--);
        expectDeletionRefused(*statement);
        EXPECT_EQ(statement->removeAggregationAssembly(), owner);
    }
    EXPECT_EQ(statement->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(statement->getParentCount(), 0);
}

TEST(QORStatementNode, IsRenamedUnderEitherKindOfOwner) {
    Held<QORStatementNode> statement;
    Held<QORExpression> expression;
    Held<QORDelimiterNode> list;
    list->addExpressionNode(statement);
    statement->setName("in a list");
    EXPECT_STREQ(statement->getName().chars, "in a list");
    EXPECT_EQ(list->getExpressionNode(0), statement.get());
    expression->addStatementNode(statement);
    statement->setName("in both");
    EXPECT_STREQ(statement->getName().chars, "in both");
    EXPECT_EQ(statement->getDelimiterNode(), list.get());
    EXPECT_EQ(statement->getExpression(), expression.get());
}

TEST(QORStatementNode, RefusesDeletionUnderAnExpressionAndGoesDepthFirstAfterwards) {
    Journal journal;
    Held<QORExpression> expression;
    QORStatementNode statement;
    auto* const outer = watched<QOROperatorNode>(journal, "outer");
    auto* const inner = watched<QOROperatorNode>(journal, "inner");
    inner->addLeftExpressionNode(watched<QORConstantNode>(journal, "inner left"));
    inner->addRightExpressionNode(watched<QORConstantNode>(journal, "inner right"));
    outer->addLeftExpressionNode(inner);
    outer->addRightExpressionNode(watched<QORConstantNode>(journal, "right"));
    statement.addExpressionNode(outer);
    expression->addStatementNode(&statement);
    expectDeletionRefused(statement);
    EXPECT_EQ(journal.deaths, Labels{});
    EXPECT_EQ(statement.getExpressionNode(0), outer);
    EXPECT_TRUE(statement.removeExpression(expression));
    EXPECT_TRUE(statement.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"inner left", "inner right", "inner", "right", "outer"}));
}

TEST(QORStatementNode, DeletesWhatANodeHasThenMembersThenAFreeReferencedNode) {
    Journal journal;
    QORStatementNode statement;
    statement.addReferencedExpressionNode(watched<QORConstantNode>(journal, "referenced"));
    statement.addExpressionNode(watched<QORConstantNode>(journal, "member"));
    statement.addNextExpressionNode(watched<QORConstantNode>(journal, "next"));
    statement.addType(watched<QORBaseType>(journal, "type"));
    statement.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(statement.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "type", "next", "member", "referenced"}));
}

TEST(QORStatementNode, LeavesAReferencedNodeThatHasAnOwner) {
    Held<QORStatementNode> owner;
    Held<QORConstantNode> node;
    owner->addExpressionNode(node);
    auto* const statement = new QORStatementNode;
    statement->addReferencedExpressionNode(node);
    EXPECT_EQ(node->getReferencedByStatementNode(), statement);
    delete statement;
    EXPECT_EQ(node->getReferencedByStatementNode(), nullptr);
    EXPECT_EQ(node->getStatementNode(), owner.get());
}

TEST(QORStatementNode, CanReferToItsOwnMember) {
    Journal journal;
    auto* const statement = watched<QORStatementNode>(journal, "statement");
    auto* const member = watched<QORConstantNode>(journal, "member");
    EXPECT_TRUE(statement->addExpressionNode(member));
    EXPECT_TRUE(statement->addReferencedExpressionNode(member));
    delete statement;
    EXPECT_EQ(journal.deaths, (Labels{"statement", "member"}));
}

TEST(QORStatementNode, IsolatesInItsOwnOrder) {
    Journal journal;
    QORStatementNode statement;
    statement.addType(watched<QORBaseType>(journal, "type"));
    statement.addExpressionNode(watched<QORConstantNode>(journal, "member"));
    statement.addReferencedExpressionNode(watched<QORConstantNode>(journal, "referenced"));
    statement.addExpression(watched<QORExpression>(journal, "expression"));
    EXPECT_EQ(statement.isolate(true), &statement);
    EXPECT_EQ(journal.deaths, (Labels{"expression", "referenced", "member", "type"}));
}

TEST(QORStatementNode, ReencodesAndWalksItsMembersOnly) {
    Journal journal;
    Held<QORStatementNode> statement;
    Held<Watched<QORConstantNode>> member(journal, "member");
    Held<Watched<QORConstantNode>> referenced(journal, "referenced");
    statement->addExpressionNode(member);
    statement->addReferencedExpressionNode(referenced);
    EXPECT_EQ(walkOf(*statement), (Objects{statement, member}));
    Recoding recode;
    recode(*statement);
    EXPECT_EQ(journal.recodings, Labels{"member"});
}

TEST(QORStatementNode, FillsAViewOfItsMembersByPosition) {
    QORStatementNode statement;
    auto* const late = named<QORConstantNode>("late");
    late->setPosition(30000);
    auto* const early = named<QORConstantNode>("early");
    early->setPosition(-30000);
    statement.addExpressionNode(late);
    statement.addExpressionNode(early);
    QORExpressionNodeByPosition view;
    statement.getExpressionNodeByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"early", "late"}));
}

TEST(QORStatementNode, ComparesAndCopiesItsType) {
    expectCompared<QORStatementNode>([](auto& each) { each.setStatementType(QORStatementNodeType::UNION); });
    expectCompared<QORStatementNode>([](auto& each) { each.setPosition(1); });
    expectNotCompared<QORStatementNode>([](auto& each) { each.addExpressionNode(new QORConstantNode); });
    QORStatementNode source;
    source.setStatementType(QORStatementNodeType::CREATE_VIEW);
    source.setBlock(true);
    source.addExpressionNode(new QORConstantNode);
    QORStatementNode const copy(source);
    EXPECT_TRUE(copy.equals(source));
    EXPECT_EQ(copy.getExpressionNodeCount(), 0);
    QORStatementNode assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
}
