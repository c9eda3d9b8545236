#include "GraphObservers.h"

#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORTransformation.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>
#include <qor/QORTransformationTask.h>

using namespace graph;

TEST(QORTransformationTask, IsAMappingObject) {
    expectConcrete<QORTransformationTask>(QORElementType::TRANSFORMATION_TASK, 137, "TransformationTask",
                                          QORMappingObject::getStaticMetaClass());
}

TEST(QORTransformationTask, IsReferencedThroughEachOfItsLinks) {
    using T = QORTransformationTask;
    expectReferencedThrough<T, QORDesignPackage>(&T::addDesignPackage, &T::removeDesignPackage);
    expectReferencedThrough<T, QORTransformation>(&T::addTransformation, &T::removeTransformation);
    expectReferencedThrough<T, QORTransformationStep>(&T::addTransformationStep,
                                                      &T::removeTransformationStep);
}

TEST(QORTransformationTask, RefusesATakenNameInItsPackage) {
    QORDesignPackage package;
    auto* const task = named<QORTransformationTask>("task");
    EXPECT_TRUE(package.addTransformationTask(task));
    EXPECT_TRUE(package.addTransformationTask(named<QORTransformationTask>("taken")));
    expectNameRefused(*task, "taken", "DesignPackage", "TransformationTask");
    task->setName("b");
    EXPECT_EQ(package.getTransformationTask(0), task);
}

TEST(QORTransformationTask, BelongsToItsPackageAndNotToItsSteps) {
    Held<QORDesignPackage> package;
    Held<QORTransformationTask> task;
    Held<QORTransformationStep> step;
    Held<QORTransformation> transformation;
    task->addTransformation(transformation);
    task->addTransformationStep(step);
    EXPECT_EQ(task->getParent(), nullptr);
    EXPECT_EQ(step->getParent(), nullptr);
    package->addTransformationTask(task);
    EXPECT_EQ(task->getParent(), package.get());
    EXPECT_EQ(task->getParentCount(), 1);
    expectDeletionRefused(*task);
    EXPECT_EQ(task->getTransformationCount(), 1);
    EXPECT_EQ(task->getTransformationStepCount(), 1);
    EXPECT_EQ(task->removeAggregationAssembly(), package.get());
    EXPECT_EQ(task->removeAggregationAssembly(), nullptr);
}

TEST(QORTransformationTask, HasAStepToItself) {
    Held<QORTransformationTask> one;
    Held<QORTransformationTask> two;
    Held<QORTransformationStep> step;
    EXPECT_TRUE(one->addTransformationStep(step));
    EXPECT_FALSE(two->addTransformationStep(step));
    EXPECT_EQ(step->getTransformationTask(), one.get());
    EXPECT_EQ(two->getTransformationStepCount(), 0);
}

TEST(QORTransformationTask, DeletesItsTransformationsThenFreeSteps) {
    Journal journal;
    Held<QORTransformationActivity> activity;
    Held<QORTransformationStep> kept;
    activity->addTransformationStep(kept);
    QORTransformationTask task;
    task.addTransformationStep(kept);
    task.addTransformationStep(watched<QORTransformationStep>(journal, "step"));
    for (char const* name : {"b", "a"}) {
        auto* const transformation = watched<QORTransformation>(journal, name);
        transformation->setName(name);
        task.addTransformation(transformation);
    }
    task.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(task.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "a", "b", "step"}));
    EXPECT_EQ(kept->getTransformationTask(), nullptr);
    EXPECT_EQ(kept->getTransformationActivity(), activity.get());
}

TEST(QORTransformationTask, IsolatesPackageTransformationsAndSteps) {
    Journal journal;
    QORTransformationTask task;
    task.addTransformationStep(watched<QORTransformationStep>(journal, "step"));
    task.addTransformation(watched<QORTransformation>(journal, "transformation"));
    task.addDesignPackage(watched<QORDesignPackage>(journal, "package"));
    EXPECT_EQ(task.isolate(true), &task);
    EXPECT_EQ(journal.deaths, (Labels{"package", "transformation", "step"}));
}

TEST(QORTransformationTask, ReencodesAndWalksTransformationsOnly) {
    Journal journal;
    Held<QORTransformationTask> task;
    Held<Watched<QORTransformationStep>> step(journal, "step");
    Held<Watched<QORTransformation>> transformation(journal, "transformation");
    task->addTransformationStep(step);
    task->addTransformation(transformation);
    EXPECT_EQ(walkOf(*task), (Objects{task, transformation}));
    Recoding recode;
    recode(*task);
    EXPECT_EQ(journal.recodings, Labels{"transformation"});
}

TEST(QORTransformationTask, ComparesAsAnElement) {
    expectCompared<QORTransformationTask>([](auto& task) { task.setName("x"); });
    expectNotCompared<QORTransformationTask>(
        [](auto& task) { task.addTransformation(new QORTransformation); });
}
