#include "Expectations.h"

#include <qor/QORClassifierMap.h>
#include <qor/QORConstantNode.h>
#include <qor/QORExpression.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORNote.h>
#include <qor/QORStatementNode.h>

TEST(QORExpression, LeavesItsClassifierMapBeforeItsFeatureMap) {
    Graph graph;
    auto* const expression = graph.make<QORExpression>("expression");
    auto* const classifierMap = graph.make<QORClassifierMap>();
    auto* const featureMap = graph.make<QORFeatureMap>();
    featureMap->addExpression(expression);
    EXPECT_EQ(expression->getParent(), featureMap);
    EXPECT_EQ(expression->getParentCount(), 1);
    classifierMap->addExpression(expression);
    EXPECT_EQ(expression->getParent(), classifierMap);
    EXPECT_EQ(expression->getParentCount(), 2);
    expression->setName("renamed");
    EXPECT_STREQ(expression->getName().chars, "renamed");
    EXPECT_EQ(classifierMap->getExpression(), expression);
    EXPECT_EQ(featureMap->getExpression(), expression);
    expectDeletionRefused(*expression);
    EXPECT_EQ(expression->removeAggregationAssembly(), classifierMap);
    EXPECT_EQ(classifierMap->getExpression(), nullptr);
    expectDeletionRefused(*expression);
    EXPECT_EQ(expression->removeAggregationAssembly(), featureMap);
    EXPECT_EQ(expression->removeAggregationAssembly(), nullptr);
    EXPECT_TRUE(expression->recursiveDelete());
}

TEST(QORExpression, StaysWithItsOtherOwnerWhenOneIsDeleted) {
    Graph graph;
    auto* const expression = graph.make<QORExpression>();
    auto* const featureMap = graph.make<QORFeatureMap>();
    auto* const classifierMap = new QORClassifierMap;
    featureMap->addExpression(expression);
    classifierMap->addExpression(expression);
    delete classifierMap;
    EXPECT_EQ(expression->getClassifierMap(), nullptr);
    EXPECT_EQ(expression->getParent(), featureMap);
    EXPECT_EQ(featureMap->getExpression(), expression);
}

TEST(QORExpression, DeletesItsNotesThenItsStatements) {
    Graph graph;
    QORExpression expression;
    auto* const statement = graph.mortal<QORStatementNode>("statement");
    statement->addExpressionNode(graph.mortal<QORConstantNode>("constant"));
    expression.addStatementNode(statement);
    expression.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(expression.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "constant", "statement"}));
}

TEST(QORExpression, IsolatesItsOwnersBeforeItsStatements) {
    Graph graph;
    QORExpression expression;
    expression.addStatementNode(graph.mortal<QORStatementNode>("statement"));
    expression.addFeatureMap(graph.mortal<QORFeatureMap>("feature map"));
    expression.addClassifierMap(graph.mortal<QORClassifierMap>("classifier map"));
    EXPECT_EQ(expression.isolate(true), &expression);
    EXPECT_EQ(graph.deaths, (Labels{"classifier map", "feature map", "statement"}));
}

TEST(QORExpression, ReencodesAndWalksItsStatements) {
    Graph graph;
    Mortal<QORExpression> expression(graph, "expression");
    auto* const statement = graph.mortal<QORStatementNode>("statement");
    expression.addStatementNode(statement);
    expression.QORExpression::setName(inUtf8);
    EXPECT_EQ(walkOf(expression), (Objects{&expression, statement}));
    Recoding recode;
    recode(expression);
    EXPECT_EQ(graph.recodings, (Labels{"expression", "statement"}));
    EXPECT_STREQ(expression.getName().chars, inLatin1);
}
