#include "Graph.h"

#include <qor/QORNote.h>
#include <qor/QORStepPrecedence.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>

TEST(QORStepPrecedence, CanLeadBackToItsOwnStep) {
    Graph graph;
    auto* const edge = graph.make<QORStepPrecedence>();
    auto* const step = graph.make<QORTransformationStep>();
    EXPECT_TRUE(edge->addSourceTransformationStep(step));
    EXPECT_TRUE(edge->addDestinationTransformationStep(step));
    EXPECT_EQ(step->getSourceOfStepPrecedence(0), edge);
    EXPECT_EQ(step->getDestinationOfStepPrecedence(0), edge);
    EXPECT_FALSE(step->addSourceOfStepPrecedence(edge));
}

TEST(QORStepPrecedence, DeletesFreeSourcesThenFreeDestinations) {
    Graph graph;
    QORStepPrecedence edge;
    edge.addDestinationTransformationStep(graph.mortal<QORTransformationStep>("destination"));
    edge.addSourceTransformationStep(graph.mortal<QORTransformationStep>("source"));
    edge.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(edge.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "source", "destination"}));
}

TEST(QORStepPrecedence, IsolatesInItsOwnOrder) {
    Graph graph;
    QORStepPrecedence edge;
    edge.addDestinationTransformationStep(graph.mortal<QORTransformationStep>("destination"));
    edge.addSourceTransformationStep(graph.mortal<QORTransformationStep>("source"));
    edge.addTransformationActivity(graph.mortal<QORTransformationActivity>("activity"));
    EXPECT_EQ(edge.isolate(true), &edge);
    EXPECT_EQ(graph.deaths, (Labels{"activity", "source", "destination"}));
}

TEST(QORStepPrecedence, ReencodesItsTextsAndWalksNoStep) {
    Graph graph;
    auto* const edge = graph.make<QORStepPrecedence>(inUtf8);
    auto* const step = graph.make<QORTransformationStep>(inUtf8);
    edge->setOperation(inUtf8);
    edge->setOperationDescription(inUtf8);
    edge->addSourceTransformationStep(step);
    EXPECT_EQ(walkOf(*edge), Objects{edge});
    Recoding recode;
    recode(*edge);
    EXPECT_STREQ(edge->getOperation().chars, inLatin1);
    EXPECT_STREQ(edge->getOperationDescription().chars, inLatin1);
    EXPECT_STREQ(edge->getName().chars, inLatin1);
    EXPECT_STREQ(step->getName().chars, inUtf8);
}
