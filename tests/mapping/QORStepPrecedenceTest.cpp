#include "GraphObservers.h"

#include <qor/QORNote.h>
#include <qor/QORStepPrecedence.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>

using namespace graph;

TEST(QORStepPrecedence, IsAMappingObject) {
    expectConcrete<QORStepPrecedence>(QORElementType::STEP_PRECEDENCE, 145, "StepPrecedence",
                                      QORMappingObject::getStaticMetaClass());
}

TEST(QORStepPrecedence, StartsOfUnknownKind) {
    QORStepPrecedence edge;
    EXPECT_STREQ(edge.getOperation().chars, "");
    EXPECT_STREQ(edge.getOperationDescription().chars, "");
    EXPECT_EQ(edge.getType(), QORStepPrecedenceType::UNKNOWN);
}

TEST(QORStepPrecedence, IsReferencedThroughEachOfItsLinks) {
    using P = QORStepPrecedence;
    expectReferencedThrough<P, QORTransformationActivity>(&P::addTransformationActivity,
                                                          &P::removeTransformationActivity);
    expectReferencedThrough<P, QORTransformationStep>(&P::addSourceTransformationStep,
                                                      &P::removeSourceTransformationStep);
    expectReferencedThrough<P, QORTransformationStep>(&P::addDestinationTransformationStep,
                                                      &P::removeDestinationTransformationStep);
}

TEST(QORStepPrecedence, SharesItsNameWithSiblings) {
    QORTransformationActivity activity;
    auto* const edge = named<QORStepPrecedence>("edge");
    EXPECT_TRUE(activity.addStepPrecedence(named<QORStepPrecedence>("same")));
    EXPECT_TRUE(activity.addStepPrecedence(edge));
    edge->setName("same");
    EXPECT_STREQ(edge->getName().chars, "same");
    EXPECT_EQ(edge->getTransformationActivity(), &activity);
    EXPECT_EQ(activity.getStepPrecedenceCount(), 2);
}

TEST(QORStepPrecedence, BelongsToItsActivity) {
    Held<QORTransformationActivity> activity;
    Held<QORStepPrecedence> edge;
    Held<QORTransformationStep> step;
    edge->addSourceTransformationStep(step);
    EXPECT_EQ(edge->getParent(), nullptr);
    activity->addStepPrecedence(edge);
    EXPECT_EQ(edge->getParent(), activity.get());
    EXPECT_EQ(edge->getParentCount(), 1);
    expectDeletionRefused(*edge);
    EXPECT_EQ(edge->getSourceTransformationStepCount(), 1);
    EXPECT_EQ(edge->removeAggregationAssembly(), activity.get());
    EXPECT_EQ(edge->removeAggregationAssembly(), nullptr);
}

TEST(QORStepPrecedence, CanLeadBackToItsOwnStep) {
    Held<QORStepPrecedence> edge;
    Held<QORTransformationStep> step;
    EXPECT_TRUE(edge->addSourceTransformationStep(step));
    EXPECT_TRUE(edge->addDestinationTransformationStep(step));
    EXPECT_EQ(step->getSourceOfStepPrecedence(0), edge.get());
    EXPECT_EQ(step->getDestinationOfStepPrecedence(0), edge.get());
    EXPECT_FALSE(step->addSourceOfStepPrecedence(edge));
}

TEST(QORStepPrecedence, DeletesFreeSourcesThenFreeDestinations) {
    Journal journal;
    QORStepPrecedence edge;
    edge.addDestinationTransformationStep(watched<QORTransformationStep>(journal, "destination"));
    edge.addSourceTransformationStep(watched<QORTransformationStep>(journal, "source"));
    edge.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(edge.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "source", "destination"}));
}

TEST(QORStepPrecedence, IsolatesInItsOwnOrder) {
    Journal journal;
    QORStepPrecedence edge;
    edge.addDestinationTransformationStep(watched<QORTransformationStep>(journal, "destination"));
    edge.addSourceTransformationStep(watched<QORTransformationStep>(journal, "source"));
    edge.addTransformationActivity(watched<QORTransformationActivity>(journal, "activity"));
    EXPECT_EQ(edge.isolate(true), &edge);
    EXPECT_EQ(journal.deaths, (Labels{"activity", "source", "destination"}));
}

TEST(QORStepPrecedence, ReencodesItsTextsAndWalksNoStep) {
    Held<QORStepPrecedence> edge(rawText);
    Held<QORTransformationStep> step(rawText);
    edge->setOperation(rawText);
    edge->setOperationDescription(rawText);
    edge->addSourceTransformationStep(step);
    EXPECT_EQ(walkOf(*edge), Objects{edge});
    Recoding recode;
    recode(*edge);
    EXPECT_STREQ(edge->getOperation().chars, recodedText);
    EXPECT_STREQ(edge->getOperationDescription().chars, recodedText);
    EXPECT_STREQ(edge->getName().chars, recodedText);
    EXPECT_STREQ(step->getName().chars, rawText);
}

TEST(QORStepPrecedence, ComparesAndCopiesItsAttributes) {
    expectCompared<QORStepPrecedence>([](auto& edge) { edge.setOperation("x"); });
    expectCompared<QORStepPrecedence>([](auto& edge) { edge.setOperationDescription("x"); });
    expectCompared<QORStepPrecedence>(
        [](auto& edge) { edge.setType(static_cast<QORStepPrecedenceType>(-1)); });
    QORStepPrecedence source;
    source.setOperation("o");
    source.setOperationDescription("d");
    source.setType(static_cast<QORStepPrecedenceType>(-1));
    QORStepPrecedence assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
    EXPECT_TRUE(QORStepPrecedence(source).equals(source));
}
