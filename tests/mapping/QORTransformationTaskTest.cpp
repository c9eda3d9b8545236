#include "Graph.h"

#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORTransformation.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>
#include <qor/QORTransformationTask.h>

TEST(QORTransformationTask, DeletesItsTransformationsThenFreeSteps) {
    Graph graph;
    auto* const activity = graph.make<QORTransformationActivity>();
    auto* const kept = graph.make<QORTransformationStep>();
    activity->addTransformationStep(kept);
    QORTransformationTask task;
    task.addTransformationStep(kept);
    task.addTransformationStep(graph.mortal<QORTransformationStep>("step"));
    for (char const* name : {"b", "a"})
        task.addTransformation(graph.mortal<QORTransformation>(name));
    task.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(task.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "a", "b", "step"}));
    EXPECT_EQ(kept->getTransformationTask(), nullptr);
    EXPECT_EQ(kept->getTransformationActivity(), activity);
}

TEST(QORTransformationTask, IsolatesPackageTransformationsAndSteps) {
    Graph graph;
    QORTransformationTask task;
    task.addTransformationStep(graph.mortal<QORTransformationStep>("step"));
    task.addTransformation(graph.mortal<QORTransformation>("transformation"));
    task.addDesignPackage(graph.mortal<QORDesignPackage>("package"));
    EXPECT_EQ(task.isolate(true), &task);
    EXPECT_EQ(graph.deaths, (Labels{"package", "transformation", "step"}));
}

TEST(QORTransformationTask, ReencodesAndWalksTransformationsOnly) {
    Graph graph;
    auto* const task = graph.make<QORTransformationTask>();
    auto* const transformation = graph.mortal<QORTransformation>("transformation");
    task->addTransformationStep(graph.mortal<QORTransformationStep>("step"));
    task->addTransformation(transformation);
    EXPECT_EQ(walkOf(*task), (Objects{task, transformation}));
    Recoding recode;
    recode(*task);
    EXPECT_EQ(graph.recodings, Labels{"transformation"});
}
