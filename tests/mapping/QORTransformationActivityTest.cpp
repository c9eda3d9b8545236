#include "Graph.h"

#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORStepPrecedence.h>
#include <qor/QORTransformation.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>

TEST(QORTransformationActivity, DeletesTransformationThenStepsThenPrecedences) {
    Graph graph;
    QORTransformationActivity activity;
    auto* const edge = graph.mortal<QORStepPrecedence>("edge");
    activity.addStepPrecedence(edge);
    auto* const late = graph.mortal<QORTransformationStep>("b");
    activity.addTransformationStep(late);
    auto* const early = graph.mortal<QORTransformationStep>("a");
    activity.addTransformationStep(early);
    edge->addSourceTransformationStep(early);
    edge->addDestinationTransformationStep(late);
    activity.addTransformation(graph.mortal<QORTransformation>("transformation"));
    activity.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(activity.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "transformation", "a", "b", "edge"}));
    EXPECT_FALSE(activity.isReferenced());
}

TEST(QORTransformationActivity, IsolatesInItsOwnOrder) {
    Graph graph;
    QORTransformationActivity activity;
    activity.addStepPrecedence(graph.mortal<QORStepPrecedence>("edge"));
    activity.addTransformationStep(graph.mortal<QORTransformationStep>("step"));
    activity.addTransformation(graph.mortal<QORTransformation>("transformation"));
    activity.addDesignPackage(graph.mortal<QORDesignPackage>("package"));
    EXPECT_EQ(activity.isolate(true), &activity);
    EXPECT_EQ(graph.deaths, (Labels{"package", "transformation", "step", "edge"}));
}

TEST(QORTransformationActivity, ReencodesAndWalksInTheSameOrder) {
    Graph graph;
    QORTransformationActivity activity;
    auto* const edge = graph.mortal<QORStepPrecedence>("edge");
    auto* const stepB = graph.mortal<QORTransformationStep>("b");
    auto* const stepA = graph.mortal<QORTransformationStep>("a");
    auto* const transformation = graph.mortal<QORTransformation>("transformation");
    activity.addStepPrecedence(edge);
    activity.addTransformationStep(stepB);
    activity.addTransformationStep(stepA);
    activity.addTransformation(transformation);
    EXPECT_EQ(walkOf(activity), (Objects{&activity, transformation, stepA, stepB, edge}));
    Recoding recode;
    recode(activity);
    EXPECT_EQ(graph.recodings, (Labels{"transformation", "a", "b", "edge"}));
}

TEST(QORTransformationActivity, ReencodesEachStepOnceAndKeepsNamesApart) {
    QORTransformationActivity activity;
    auto* const stays = named<QORTransformationStep>(inLatin1); // no valid text in UTF-8
    auto* const moves = named<QORTransformationStep>(inUtf8);
    activity.addTransformationStep(stays);
    activity.addTransformationStep(moves);
    Recoding recode;
    recode(activity);
    EXPECT_STREQ(moves->getName().chars, "\xE9/1");
    EXPECT_STREQ(stays->getName().chars, inLatin1);
    EXPECT_EQ(activity.getTransformationStep(0), stays);
    EXPECT_EQ(activity.getTransformationStep(1), moves);
}
