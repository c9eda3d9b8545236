#include "GraphObservers.h"

#include <qor/QORPredicate.h>
#include <qor/QORPredicateNode.h>

using namespace graph;

TEST(QORPredicate, IsAnObject) {
    expectConcrete<QORPredicate>(QORElementType::PREDICATE, 117, "Predicate",
                                 QORObject::getStaticMetaClass());
}

TEST(QORPredicate, StartsBehindItsOperandAtPositionZero) {
    QORPredicate predicate;
    EXPECT_EQ(predicate.getPosition(), 0);
    EXPECT_FALSE(predicate.getPrefix());
}

TEST(QORPredicate, IsReferencedThroughItsNode) {
    using P = QORPredicate;
    expectReferencedThrough<P, QORPredicateNode>(&P::addPredicateNode, &P::removePredicateNode);
}

TEST(QORPredicate, BelongsToItsNode) {
    Held<QORPredicateNode> node;
    Held<QORPredicate> predicate;
    EXPECT_EQ(predicate->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(predicate->getParentCount(), 0);
    EXPECT_TRUE(predicate->recursiveDelete());
    node->addPredicate(predicate);
    EXPECT_EQ(predicate->getParent(), node.get());
    EXPECT_EQ(predicate->getParentCount(), 1);
    expectDeletionRefused(*predicate);
    EXPECT_EQ(predicate->removeAggregationAssembly(), node.get());
    EXPECT_EQ(node->getPredicateCount(), 0);
}

TEST(QORPredicate, MovesToTheEndWhenRenamedAndMayShareItsName) {
    QORPredicateNode node;
    auto* const first = named<QORPredicate>("is");
    auto* const second = named<QORPredicate>("not");
    node.addPredicate(first);
    node.addPredicate(second);
    first->setName("not");
    EXPECT_EQ(node.getPredicate(0), second);
    EXPECT_EQ(node.getPredicate(1), first);
    EXPECT_EQ(first->getPredicateNode(), &node);
}

TEST(QORPredicate, TakesAFreeNodeWithItWhenIsolated) {
    Journal journal;
    QORPredicate predicate;
    predicate.addPredicateNode(watched<QORPredicateNode>(journal, "node"));
    EXPECT_EQ(predicate.isolate(true), &predicate);
    EXPECT_EQ(journal.deaths, Labels{"node"});
}

TEST(QORPredicate, ReencodesItsNameOnly) {
    QORPredicate predicate;
    predicate.setName(rawText);
    EXPECT_EQ(walkOf(predicate), Objects{&predicate});
    Recoding recode;
    recode(predicate);
    EXPECT_STREQ(predicate.getName().chars, recodedText);
    EXPECT_EQ(recode.first, 1);
}

TEST(QORPredicate, ComparesAndCopiesItsAttributes) {
    expectCompared<QORPredicate>([](auto& each) { each.setPosition(1); });
    expectCompared<QORPredicate>([](auto& each) { each.setPrefix(true); });
    expectCompared<QORPredicate>([](auto& each) { each.setName("x"); });
    QORPredicate source;
    source.setName("n");
    source.setPosition(4);
    source.setPrefix(true);
    EXPECT_TRUE(QORPredicate(source).equals(source));
    QORPredicate assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
}
