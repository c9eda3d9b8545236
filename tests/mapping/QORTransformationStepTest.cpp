#include "GraphObservers.h"

#include <qor/QORNote.h>
#include <qor/QORStepPrecedence.h>
#include <qor/QORTransformation.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>
#include <qor/QORTransformationTask.h>

using namespace graph;

TEST(QORTransformationStep, IsAMappingObject) {
    expectConcrete<QORTransformationStep>(QORElementType::TRANSFORMATION_STEP, 136, "TransformationStep",
                                          QORMappingObject::getStaticMetaClass());
}

TEST(QORTransformationStep, IsReferencedThroughEachOfItsLinks) {
    using S = QORTransformationStep;
    expectReferencedThrough<S, QORTransformationTask>(&S::addTransformationTask,
                                                      &S::removeTransformationTask);
    expectReferencedThrough<S, QORTransformationActivity>(&S::addTransformationActivity,
                                                          &S::removeTransformationActivity);
    expectReferencedThrough<S, QORTransformation>(&S::addTransformation, &S::removeTransformation);
    expectReferencedThrough<S, QORStepPrecedence>(&S::addSourceOfStepPrecedence,
                                                  &S::removeSourceOfStepPrecedence);
    expectReferencedThrough<S, QORStepPrecedence>(&S::addDestinationOfStepPrecedence,
                                                  &S::removeDestinationOfStepPrecedence);
}

TEST(QORTransformationStep, RefusesATakenNameInItsActivity) {
    QORTransformationActivity activity;
    auto* const step = named<QORTransformationStep>("step");
    activity.addTransformationStep(step);
    activity.addTransformationStep(named<QORTransformationStep>("taken"));
    expectNameRefused(*step, "taken", "TransformationActivity", "TransformationStep");
    step->setName("zebra");
    EXPECT_EQ(activity.getTransformationStep(1), step);
}

TEST(QORTransformationStep, BelongsToItsActivityAndNotToItsTask) {
    Held<QORTransformationActivity> activity;
    Held<QORTransformationTask> task;
    Held<QORTransformationStep> step;
    Held<QORTransformation> transformation;
    step->addTransformationTask(task);
    EXPECT_EQ(step->getParent(), nullptr);
    EXPECT_EQ(step->getParentCount(), 0);
    EXPECT_EQ(step->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(step->getTransformationTask(), task.get());
    step->addTransformation(transformation);
    step->addTransformationActivity(activity);
    EXPECT_EQ(step->getParent(), activity.get());
    expectDeletionRefused(*step);
    EXPECT_EQ(step->getTransformation(), transformation.get());
    EXPECT_EQ(step->getTransformationTask(), task.get());
}

TEST(QORTransformationStep, DeletesItsTransformationThenFreeTaskAndPrecedences) {
    Journal journal;
    QORTransformationStep step;
    step.addDestinationOfStepPrecedence(watched<QORStepPrecedence>(journal, "incoming"));
    step.addSourceOfStepPrecedence(watched<QORStepPrecedence>(journal, "outgoing"));
    auto* const both = watched<QORStepPrecedence>(journal, "loop");
    step.addSourceOfStepPrecedence(both);
    Held<QORTransformationStep> neighbour;
    Held<QORStepPrecedence> shared;
    step.addDestinationOfStepPrecedence(shared);
    neighbour->addSourceOfStepPrecedence(shared);
    step.addTransformationTask(watched<QORTransformationTask>(journal, "task"));
    step.addTransformation(watched<QORTransformation>(journal, "transformation"));
    step.addNote(watched<QORNote>(journal, "note"));
    both->addDestinationTransformationStep(&step);
    step.removeDestinationOfStepPrecedence(both);
    EXPECT_TRUE(step.recursiveDelete());
    ASSERT_EQ(journal.deaths.size(), 6U);
    EXPECT_EQ(Labels(journal.deaths.begin(), journal.deaths.begin() + 3),
              (Labels{"note", "transformation", "task"}));
    EXPECT_EQ(journal.deaths.back(), "incoming");
    EXPECT_EQ(shared->getDestinationTransformationStepCount(), 0);
    EXPECT_EQ(shared->getSourceTransformationStep(0), neighbour.get());
}

TEST(QORTransformationStep, SparesAPrecedenceToItselfUntilItsSecondEndIsTakenApart) {
    Journal journal;
    QORTransformationStep step;
    step.addDestinationOfStepPrecedence(watched<QORStepPrecedence>(journal, "incoming"));
    auto* const loop = watched<QORStepPrecedence>(journal, "loop");
    step.addSourceOfStepPrecedence(loop);
    step.addDestinationOfStepPrecedence(loop);
    auto* const outgoing = watched<QORStepPrecedence>(journal, "outgoing");
    step.addSourceOfStepPrecedence(outgoing);
    EXPECT_TRUE(step.recursiveDelete());
    ASSERT_EQ(journal.deaths.size(), 3U);
    EXPECT_EQ(journal.deaths.front(), "outgoing");
}

TEST(QORTransformationStep, LosesItsTaskWhenThatIsDeleted) {
    Held<QORTransformationActivity> activity;
    Held<QORTransformationStep> step;
    activity->addTransformationStep(step);
    auto* const task = new QORTransformationTask;
    step->addTransformationTask(task);
    delete task;
    EXPECT_EQ(step->getTransformationTask(), nullptr);
    EXPECT_EQ(step->getTransformationActivity(), activity.get());
}

TEST(QORTransformationStep, GoesWithItsTaskWhenNothingElseRefersToIt) {
    Journal journal;
    auto* const task = new QORTransformationTask;
    task->addTransformationStep(watched<QORTransformationStep>(journal, "step"));
    delete task;
    EXPECT_EQ(journal.deaths, Labels{"step"});
}

TEST(QORTransformationStep, IsolatesInItsOwnOrder) {
    Journal journal;
    QORTransformationStep step;
    step.addDestinationOfStepPrecedence(watched<QORStepPrecedence>(journal, "incoming"));
    step.addSourceOfStepPrecedence(watched<QORStepPrecedence>(journal, "outgoing"));
    step.addTransformation(watched<QORTransformation>(journal, "transformation"));
    step.addTransformationActivity(watched<QORTransformationActivity>(journal, "activity"));
    step.addTransformationTask(watched<QORTransformationTask>(journal, "task"));
    EXPECT_EQ(step.isolate(true), &step);
    EXPECT_EQ(journal.deaths, (Labels{"task", "activity", "transformation", "outgoing", "incoming"}));
}

TEST(QORTransformationStep, ReencodesAndWalksItsTransformationOnly) {
    Journal journal;
    Held<QORTransformationStep> step;
    Held<Watched<QORTransformationTask>> task(journal, "task");
    Held<Watched<QORStepPrecedence>> edge(journal, "edge");
    Held<Watched<QORTransformation>> transformation(journal, "transformation");
    step->addTransformationTask(task);
    step->addSourceOfStepPrecedence(edge);
    step->addTransformation(transformation);
    EXPECT_EQ(walkOf(*step), (Objects{step, transformation}));
    Recoding recode;
    recode(*step);
    EXPECT_EQ(journal.recodings, Labels{"transformation"});
}

TEST(QORTransformationStep, ComparesAsAnElement) {
    expectCompared<QORTransformationStep>([](auto& step) { step.setName("x"); });
    expectNotCompared<QORTransformationStep>(
        [](auto& step) { step.addTransformation(new QORTransformation); });
}
