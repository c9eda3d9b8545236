#include "Graph.h"

#include <qor/QORNote.h>
#include <qor/QORStepPrecedence.h>
#include <qor/QORTransformation.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>
#include <qor/QORTransformationTask.h>

TEST(QORTransformationStep, DeletesItsTransformationThenFreeTaskAndPrecedences) {
    Graph graph;
    QORTransformationStep step;
    step.addDestinationOfStepPrecedence(graph.mortal<QORStepPrecedence>("incoming"));
    step.addSourceOfStepPrecedence(graph.mortal<QORStepPrecedence>("outgoing"));
    auto* const both = graph.mortal<QORStepPrecedence>("loop");
    step.addSourceOfStepPrecedence(both);
    auto* const neighbour = graph.make<QORTransformationStep>();
    auto* const shared = graph.make<QORStepPrecedence>();
    step.addDestinationOfStepPrecedence(shared);
    neighbour->addSourceOfStepPrecedence(shared);
    step.addTransformationTask(graph.mortal<QORTransformationTask>("task"));
    step.addTransformation(graph.mortal<QORTransformation>("transformation"));
    step.addNote(graph.mortal<QORNote>("note"));
    both->addDestinationTransformationStep(&step);
    step.removeDestinationOfStepPrecedence(both);
    EXPECT_TRUE(step.recursiveDelete());
    ASSERT_EQ(graph.deaths.size(), 6U);
    EXPECT_EQ(Labels(graph.deaths.begin(), graph.deaths.begin() + 3),
              (Labels{"note", "transformation", "task"}));
    EXPECT_EQ(graph.deaths.back(), "incoming");
    EXPECT_EQ(shared->getDestinationTransformationStepCount(), 0);
    EXPECT_EQ(shared->getSourceTransformationStep(0), neighbour);
}

TEST(QORTransformationStep, SparesAPrecedenceToItselfUntilItsSecondEndIsTakenApart) {
    Graph graph;
    QORTransformationStep step;
    step.addDestinationOfStepPrecedence(graph.mortal<QORStepPrecedence>("incoming"));
    auto* const loop = graph.mortal<QORStepPrecedence>("loop");
    step.addSourceOfStepPrecedence(loop);
    step.addDestinationOfStepPrecedence(loop);
    step.addSourceOfStepPrecedence(graph.mortal<QORStepPrecedence>("outgoing"));
    EXPECT_TRUE(step.recursiveDelete());
    ASSERT_EQ(graph.deaths.size(), 3U);
    EXPECT_EQ(graph.deaths.front(), "outgoing");
}

TEST(QORTransformationStep, LosesItsTaskWhenThatIsDeleted) {
    Graph graph;
    auto* const activity = graph.make<QORTransformationActivity>();
    auto* const step = graph.make<QORTransformationStep>();
    activity->addTransformationStep(step);
    auto* const task = new QORTransformationTask;
    step->addTransformationTask(task);
    delete task;
    EXPECT_EQ(step->getTransformationTask(), nullptr);
    EXPECT_EQ(step->getTransformationActivity(), activity);
}

TEST(QORTransformationStep, GoesWithItsTaskWhenNothingElseRefersToIt) {
    Graph graph;
    auto* const task = new QORTransformationTask;
    task->addTransformationStep(graph.mortal<QORTransformationStep>("step"));
    delete task;
    EXPECT_EQ(graph.deaths, Labels{"step"});
}

TEST(QORTransformationStep, IsolatesInItsOwnOrder) {
    Graph graph;
    QORTransformationStep step;
    step.addDestinationOfStepPrecedence(graph.mortal<QORStepPrecedence>("incoming"));
    step.addSourceOfStepPrecedence(graph.mortal<QORStepPrecedence>("outgoing"));
    step.addTransformation(graph.mortal<QORTransformation>("transformation"));
    step.addTransformationActivity(graph.mortal<QORTransformationActivity>("activity"));
    step.addTransformationTask(graph.mortal<QORTransformationTask>("task"));
    EXPECT_EQ(step.isolate(true), &step);
    EXPECT_EQ(graph.deaths, (Labels{"task", "activity", "transformation", "outgoing", "incoming"}));
}

TEST(QORTransformationStep, ReencodesAndWalksItsTransformationOnly) {
    Graph graph;
    auto* const step = graph.make<QORTransformationStep>();
    auto* const transformation = graph.mortal<QORTransformation>("transformation");
    step->addTransformationTask(graph.mortal<QORTransformationTask>("task"));
    step->addSourceOfStepPrecedence(graph.mortal<QORStepPrecedence>("edge"));
    step->addTransformation(transformation);
    EXPECT_EQ(walkOf(*step), (Objects{step, transformation}));
    Recoding recode;
    recode(*step);
    EXPECT_EQ(graph.recodings, Labels{"transformation"});
}
