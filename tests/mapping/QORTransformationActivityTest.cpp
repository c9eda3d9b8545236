#include "GraphObservers.h"

#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORStepPrecedence.h>
#include <qor/QORTransformation.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>

using namespace graph;

TEST(QORTransformationActivity, IsAMappingObject) {
    expectConcrete<QORTransformationActivity>(QORElementType::TRANSFORMATION_ACTIVITY, 135,
                                              "TransformationActivity",
                                              QORMappingObject::getStaticMetaClass());
}

TEST(QORTransformationActivity, IsReferencedThroughEachOfItsLinks) {
    using A = QORTransformationActivity;
    expectReferencedThrough<A, QORDesignPackage>(&A::addDesignPackage, &A::removeDesignPackage);
    expectReferencedThrough<A, QORTransformation>(&A::addTransformation, &A::removeTransformation);
    expectReferencedThrough<A, QORTransformationStep>(&A::addTransformationStep,
                                                      &A::removeTransformationStep);
    expectReferencedThrough<A, QORStepPrecedence>(&A::addStepPrecedence, &A::removeStepPrecedence);
}

TEST(QORTransformationActivity, RefusesATakenNameInItsPackage) {
    QORDesignPackage package;
    auto* const activity = named<QORTransformationActivity>("activity");
    package.addTransformationActivity(activity);
    package.addTransformationActivity(named<QORTransformationActivity>("taken"));
    expectNameRefused(*activity, "taken", "DesignPackage", "TransformationActivity");
    EXPECT_EQ(package.getTransformationActivityCount(), 2);
}

TEST(QORTransformationActivity, BelongsToItsPackage) {
    Held<QORDesignPackage> package;
    Held<QORTransformationActivity> activity;
    Held<QORTransformationStep> step;
    activity->addTransformationStep(step);
    package->addTransformationActivity(activity);
    EXPECT_EQ(activity->getParent(), package.get());
    EXPECT_EQ(activity->getParentCount(), 1);
    expectDeletionRefused(*activity);
    EXPECT_EQ(step->getTransformationActivity(), activity.get());
    EXPECT_EQ(activity->removeAggregationAssembly(), package.get());
    EXPECT_EQ(activity->removeAggregationAssembly(), nullptr);
}

TEST(QORTransformationActivity, DeletesTransformationThenStepsThenPrecedences) {
    Journal journal;
    QORTransformationActivity activity;
    auto* const edge = watched<QORStepPrecedence>(journal, "edge");
    activity.addStepPrecedence(edge);
    auto* const late = watched<QORTransformationStep>(journal, "b");
    late->setName("b");
    activity.addTransformationStep(late);
    auto* const early = watched<QORTransformationStep>(journal, "a");
    early->setName("a");
    activity.addTransformationStep(early);
    edge->addSourceTransformationStep(early);
    edge->addDestinationTransformationStep(late);
    activity.addTransformation(watched<QORTransformation>(journal, "transformation"));
    activity.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(activity.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "transformation", "a", "b", "edge"}));
    EXPECT_FALSE(activity.isReferenced());
}

TEST(QORTransformationActivity, IsolatesInItsOwnOrder) {
    Journal journal;
    QORTransformationActivity activity;
    activity.addStepPrecedence(watched<QORStepPrecedence>(journal, "edge"));
    activity.addTransformationStep(watched<QORTransformationStep>(journal, "step"));
    activity.addTransformation(watched<QORTransformation>(journal, "transformation"));
    activity.addDesignPackage(watched<QORDesignPackage>(journal, "package"));
    EXPECT_EQ(activity.isolate(true), &activity);
    EXPECT_EQ(journal.deaths, (Labels{"package", "transformation", "step", "edge"}));
}

TEST(QORTransformationActivity, ReencodesAndWalksInTheSameOrder) {
    Journal journal;
    QORTransformationActivity activity;
    auto* const edge = watched<QORStepPrecedence>(journal, "edge");
    auto* const stepB = watched<QORTransformationStep>(journal, "b");
    stepB->setName("b");
    auto* const stepA = watched<QORTransformationStep>(journal, "a");
    stepA->setName("a");
    auto* const transformation = watched<QORTransformation>(journal, "transformation");
    activity.addStepPrecedence(edge);
    activity.addTransformationStep(stepB);
    activity.addTransformationStep(stepA);
    activity.addTransformation(transformation);
    EXPECT_EQ(walkOf(activity), (Objects{&activity, transformation, stepA, stepB, edge}));
    Recoding recode;
    recode(activity);
    EXPECT_EQ(journal.recodings, (Labels{"transformation", "a", "b", "edge"}));
}

TEST(QORTransformationActivity, ReencodesEachStepOnceAndKeepsNamesApart) {
    QORTransformationActivity activity;
    auto* const stays = named<QORTransformationStep>(recodedText); // no valid text in UTF-8
    auto* const moves = named<QORTransformationStep>(rawText);
    activity.addTransformationStep(stays);
    activity.addTransformationStep(moves);
    Recoding recode;
    recode(activity);
    EXPECT_STREQ(moves->getName().chars, "\xE9/1");
    EXPECT_STREQ(stays->getName().chars, recodedText);
    EXPECT_EQ(activity.getTransformationStep(0), stays);
    EXPECT_EQ(activity.getTransformationStep(1), moves);
}

TEST(QORTransformationActivity, ComparesAsAnElement) {
    expectCompared<QORTransformationActivity>([](auto& each) { each.setNativeType("x"); });
    expectNotCompared<QORTransformationActivity>(
        [](auto& each) { each.addTransformationStep(new QORTransformationStep); });
}
