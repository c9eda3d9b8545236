#include "Expectations.h"

#include <qor/QORBaseType.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDelimiterNode.h>
#include <qor/QORExpression.h>
#include <qor/QORNote.h>
#include <qor/QOROperationNode.h>
#include <qor/QOROperatorNode.h>
#include <qor/QORStatementNode.h>

TEST(QORStatementNode, LeavesItsExpressionBeforeTheOwnersOfANode) {
    Graph graph;
    auto* const statement = graph.make<QORStatementNode>("statement");
    auto* const expression = graph.make<QORExpression>();
    auto* const operation = graph.make<QOROperationNode>();
    auto* const outer = graph.make<QORStatementNode>();
    outer->addExpressionNode(statement);
    operation->addExpressionNode(statement);
    expression->addStatementNode(statement);
    statement->setName("renamed");
    EXPECT_STREQ(statement->getName().chars, "renamed");
    EXPECT_EQ(expression->getStatementNode(0), statement);
    EXPECT_EQ(statement->getExpression(), expression);
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
    Graph graph;
    auto* const statement = graph.make<QORStatementNode>();
    auto* const expression = graph.make<QORExpression>();
    auto* const list = graph.make<QORDelimiterNode>();
    list->addExpressionNode(statement);
    statement->setName("in a list");
    EXPECT_STREQ(statement->getName().chars, "in a list");
    EXPECT_EQ(list->getExpressionNode(0), statement);
    expression->addStatementNode(statement);
    statement->setName("in both");
    EXPECT_STREQ(statement->getName().chars, "in both");
    EXPECT_EQ(statement->getDelimiterNode(), list);
    EXPECT_EQ(statement->getExpression(), expression);
}

TEST(QORStatementNode, RefusesDeletionUnderAnExpressionAndGoesDepthFirstAfterwards) {
    Graph graph;
    auto* const expression = graph.make<QORExpression>();
    QORStatementNode statement;
    auto* const outer = graph.mortal<QOROperatorNode>("outer");
    auto* const inner = graph.mortal<QOROperatorNode>("inner");
    inner->addLeftExpressionNode(graph.mortal<QORConstantNode>("inner left"));
    inner->addRightExpressionNode(graph.mortal<QORConstantNode>("inner right"));
    outer->addLeftExpressionNode(inner);
    outer->addRightExpressionNode(graph.mortal<QORConstantNode>("right"));
    statement.addExpressionNode(outer);
    expression->addStatementNode(&statement);
    expectDeletionRefused(statement);
    EXPECT_EQ(graph.deaths, Labels{});
    EXPECT_EQ(statement.getExpressionNode(0), outer);
    EXPECT_TRUE(statement.removeExpression(expression));
    EXPECT_TRUE(statement.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"inner left", "inner right", "inner", "right", "outer"}));
}

TEST(QORStatementNode, DeletesWhatANodeHasThenMembersThenAFreeReferencedNode) {
    Graph graph;
    QORStatementNode statement;
    statement.addReferencedExpressionNode(graph.mortal<QORConstantNode>("referenced"));
    statement.addExpressionNode(graph.mortal<QORConstantNode>("member"));
    statement.addNextExpressionNode(graph.mortal<QORConstantNode>("next"));
    statement.addType(graph.mortal<QORBaseType>("type"));
    statement.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(statement.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "type", "next", "member", "referenced"}));
}

TEST(QORStatementNode, LeavesAReferencedNodeThatHasAnOwner) {
    Graph graph;
    auto* const owner = graph.make<QORStatementNode>();
    auto* const node = graph.make<QORConstantNode>();
    owner->addExpressionNode(node);
    auto* const statement = new QORStatementNode;
    statement->addReferencedExpressionNode(node);
    EXPECT_EQ(node->getReferencedByStatementNode(), statement);
    delete statement;
    EXPECT_EQ(node->getReferencedByStatementNode(), nullptr);
    EXPECT_EQ(node->getStatementNode(), owner);
}

TEST(QORStatementNode, CanReferToItsOwnMember) {
    Graph graph;
    auto* const statement = graph.mortal<QORStatementNode>("statement");
    auto* const member = graph.mortal<QORConstantNode>("member");
    EXPECT_TRUE(statement->addExpressionNode(member));
    EXPECT_TRUE(statement->addReferencedExpressionNode(member));
    delete statement;
    EXPECT_EQ(graph.deaths, (Labels{"statement", "member"}));
}

TEST(QORStatementNode, IsolatesInItsOwnOrder) {
    Graph graph;
    QORStatementNode statement;
    statement.addType(graph.mortal<QORBaseType>("type"));
    statement.addExpressionNode(graph.mortal<QORConstantNode>("member"));
    statement.addReferencedExpressionNode(graph.mortal<QORConstantNode>("referenced"));
    statement.addExpression(graph.mortal<QORExpression>("expression"));
    EXPECT_EQ(statement.isolate(true), &statement);
    EXPECT_EQ(graph.deaths, (Labels{"expression", "referenced", "member", "type"}));
}

TEST(QORStatementNode, ReencodesAndWalksItsMembersOnly) {
    Graph graph;
    auto* const statement = graph.make<QORStatementNode>();
    auto* const member = graph.mortal<QORConstantNode>("member");
    statement->addExpressionNode(member);
    statement->addReferencedExpressionNode(graph.mortal<QORConstantNode>("referenced"));
    EXPECT_EQ(walkOf(*statement), (Objects{statement, member}));
    Recoding recode;
    recode(*statement);
    EXPECT_EQ(graph.recodings, Labels{"member"});
}
