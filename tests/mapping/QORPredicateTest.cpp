#include "Expectations.h"

#include <qor/QORPredicate.h>
#include <qor/QORPredicateNode.h>

TEST(QORPredicate, MovesToTheEndWhenRenamedAndMayShareItsName) {
    expectNewNameMovesToEnd(&QORPredicateNode::addPredicate, &QORPredicateNode::getPredicate);
}

TEST(QORPredicate, TakesAFreeNodeWithItWhenIsolated) {
    Graph graph;
    QORPredicate predicate;
    predicate.addPredicateNode(graph.mortal<QORPredicateNode>("node"));
    EXPECT_EQ(predicate.isolate(true), &predicate);
    EXPECT_EQ(graph.deaths, Labels{"node"});
}

TEST(QORPredicate, ReencodesItsNameOnly) {
    QORPredicate predicate;
    predicate.setName(inUtf8);
    EXPECT_EQ(walkOf(predicate), Objects{&predicate});
    Recoding recode;
    recode(predicate);
    EXPECT_STREQ(predicate.getName().chars, inLatin1);
    EXPECT_EQ(recode.converted, 1);
}
