#include "GraphObservers.h"

#include <qor/QORClassifierMap.h>
#include <qor/QORConstantNode.h>
#include <qor/QORExpression.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORNote.h>
#include <qor/QORStatementNode.h>

using namespace graph;

TEST(QORExpression, IsAnElement) {
    expectConcrete<QORExpression>(QORElementType::EXPRESSION, 112, "Expression",
                                  QORElement::getStaticMetaClass());
}

TEST(QORExpression, StartsWithStatusZero) {
    QORExpression expression;
    EXPECT_EQ(expression.getStatus(), 0);
    EXPECT_FALSE(expression.isReferenced());
}

TEST(QORExpression, IsReferencedThroughEachOfItsLinks) {
    using E = QORExpression;
    expectReferencedThrough<E, QORClassifierMap>(&E::addClassifierMap, &E::removeClassifierMap);
    expectReferencedThrough<E, QORFeatureMap>(&E::addFeatureMap, &E::removeFeatureMap);
    expectReferencedThrough<E, QORStatementNode>(&E::addStatementNode, &E::removeStatementNode);
}

TEST(QORExpression, LeavesItsClassifierMapBeforeItsFeatureMap) {
    Held<QORExpression> expression("expression");
    Held<QORClassifierMap> classifierMap;
    Held<QORFeatureMap> featureMap;
    featureMap->addExpression(expression);
    EXPECT_EQ(expression->getParent(), featureMap.get());
    EXPECT_EQ(expression->getParentCount(), 1);
    classifierMap->addExpression(expression);
    EXPECT_EQ(expression->getParent(), classifierMap.get());
    EXPECT_EQ(expression->getParentCount(), 2);
    expression->setName("renamed");
    EXPECT_STREQ(expression->getName().chars, "renamed");
    EXPECT_EQ(classifierMap->getExpression(), expression.get());
    EXPECT_EQ(featureMap->getExpression(), expression.get());
    expectDeletionRefused(*expression);
    EXPECT_EQ(expression->removeAggregationAssembly(), classifierMap.get());
    EXPECT_EQ(classifierMap->getExpression(), nullptr);
    expectDeletionRefused(*expression);
    EXPECT_EQ(expression->removeAggregationAssembly(), featureMap.get());
    EXPECT_EQ(expression->removeAggregationAssembly(), nullptr);
    EXPECT_TRUE(expression->recursiveDelete());
}

TEST(QORExpression, StaysWithItsOtherOwnerWhenOneIsDeleted) {
    Held<QORExpression> expression;
    Held<QORFeatureMap> featureMap;
    auto* const classifierMap = new QORClassifierMap;
    featureMap->addExpression(expression);
    classifierMap->addExpression(expression);
    delete classifierMap;
    EXPECT_EQ(expression->getClassifierMap(), nullptr);
    EXPECT_EQ(expression->getParent(), featureMap.get());
    EXPECT_EQ(featureMap->getExpression(), expression.get());
}

TEST(QORExpression, IsTheOnlyOneOfItsMap) {
    Held<QORClassifierMap> map;
    Held<QORExpression> one;
    Held<QORExpression> two;
    EXPECT_TRUE(map->addExpression(one));
    EXPECT_FALSE(map->addExpression(two));
    EXPECT_FALSE(two->addClassifierMap(map));
    EXPECT_EQ(map->getExpression(), one.get());
    EXPECT_FALSE(two->isReferenced());
}

TEST(QORExpression, HoldsStatementsByAddressAndOfOneName) {
    Held<QORExpression> expression;
    Held<QORStatementNode> one("same");
    Held<QORStatementNode> two("same");
    EXPECT_TRUE(expression->addStatementNode(one));
    EXPECT_TRUE(expression->addStatementNode(two));
    EXPECT_FALSE(expression->addStatementNode(two));
    auto const [low, high] = byAddress(one.get(), two.get());
    EXPECT_EQ(expression->getStatementNode(0), low);
    EXPECT_EQ(expression->getStatementNode(1), high);
}

TEST(QORExpression, DeletesItsNotesThenItsStatements) {
    Journal journal;
    QORExpression expression;
    auto* const statement = watched<QORStatementNode>(journal, "statement");
    statement->addExpressionNode(watched<QORConstantNode>(journal, "constant"));
    expression.addStatementNode(statement);
    expression.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(expression.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "constant", "statement"}));
}

TEST(QORExpression, IsolatesItsOwnersBeforeItsStatements) {
    Journal journal;
    QORExpression expression;
    expression.addStatementNode(watched<QORStatementNode>(journal, "statement"));
    expression.addFeatureMap(watched<QORFeatureMap>(journal, "feature map"));
    expression.addClassifierMap(watched<QORClassifierMap>(journal, "classifier map"));
    EXPECT_EQ(expression.isolate(true), &expression);
    EXPECT_EQ(journal.deaths, (Labels{"classifier map", "feature map", "statement"}));
}

TEST(QORExpression, ReencodesAndWalksItsStatements) {
    Journal journal;
    Watched<QORExpression> expression(journal, "expression");
    auto* const statement = watched<QORStatementNode>(journal, "statement");
    expression.addStatementNode(statement);
    expression.QORExpression::setName(rawText);
    EXPECT_EQ(walkOf(expression), (Objects{&expression, statement}));
    Recoding recode;
    recode(expression);
    EXPECT_EQ(journal.recodings, (Labels{"expression", "statement"}));
    EXPECT_STREQ(expression.getName().chars, recodedText);
}

TEST(QORExpression, ComparesItsStatusButNoStatement) {
    expectCompared<QORExpression>([](auto& each) { each.setStatus(1); });
    expectCompared<QORExpression>([](auto& each) { each.setName("x"); });
    expectNotCompared<QORExpression>([](auto& each) { each.addStatementNode(new QORStatementNode); });
}

TEST(QORExpression, CopiesItsStatusButNoStatement) {
    QORExpression source;
    source.setStatus(-5);
    source.addStatementNode(new QORStatementNode);
    QORExpression const copy(source);
    EXPECT_EQ(copy.getStatus(), -5);
    EXPECT_EQ(copy.getStatementNodeCount(), 0);
    QORExpression assigned;
    assigned.setFrom(source);
    EXPECT_EQ(assigned.getStatus(), -5);
    EXPECT_EQ(assigned.getStatementNodeCount(), 0);
}
