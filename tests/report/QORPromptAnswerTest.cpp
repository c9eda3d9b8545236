#include "GraphObservers.h"

#include <qor/QORCondition.h>
#include <qor/QORPrompt.h>
#include <qor/QORPromptAnswer.h>

using namespace graph;

TEST(QORPromptAnswer, IsAStructuralFeature) {
    expectConcrete<QORPromptAnswer>(QORElementType::PROMPT_ANSWER, 149, "PromptAnswer",
                                    QORStructuralFeature::getStaticMetaClass());
}

TEST(QORPromptAnswer, IsNamedAsAFeatureOfItsPrompt) {
    QORPrompt prompt;
    auto* const answer = named<QORPromptAnswer>("answer");
    prompt.addFeature(answer);
    prompt.addFeature(named<QORPromptAnswer>("taken"));
    EXPECT_EQ(answer->getParent(), &prompt);
    expectDeletionRefused(*answer);
    expectNameRefused(*answer, "taken", "Classifier", "Feature");
}

TEST(QORPromptAnswer, ComparesAsAStructuralFeatureOfItsOwnKind) {
    expectCompared<QORPromptAnswer>([](auto& answer) { answer.setInitialValue("x"); });
    QORPromptAnswer const answer;
    EXPECT_FALSE(answer.equals(QORCondition()));
    QORPromptAnswer source;
    source.setInitialValue("i");
    source.setOptional(true);
    QORPromptAnswer target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
}
