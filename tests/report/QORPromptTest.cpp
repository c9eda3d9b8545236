#include "GraphObservers.h"

#include <qor/QORPrompt.h>
#include <qor/QORPromptAnswer.h>
#include <qor/QORReport.h>

using namespace graph;

TEST(QORPrompt, IsAClassifier) {
    expectConcrete<QORPrompt>(QORElementType::PROMPT, 148, "Prompt", QORClassifier::getStaticMetaClass());
}

TEST(QORPrompt, StartsWithoutAQuestionForASingleAnswer) {
    QORPrompt prompt;
    EXPECT_STREQ(prompt.getQuestion().chars, "");
    EXPECT_FALSE(prompt.getMultipleSelection());
}

TEST(QORPrompt, OwnsItsAnswersAsFeatures) {
    Journal journal;
    auto* const prompt = watched<QORPrompt>(journal, "prompt");
    for (char const* name : {"yes", "no"}) {
        auto* const answer = watched<QORPromptAnswer>(journal, name);
        answer->setName(name);
        EXPECT_TRUE(prompt->addFeature(answer));
    }
    EXPECT_EQ(walkOf(*prompt), (Objects{prompt, prompt->getFeature(0), prompt->getFeature(1)}));
    delete prompt;
    EXPECT_EQ(journal.deaths, (Labels{"prompt", "no", "yes"}));
}

TEST(QORPrompt, BelongsToItsReport) {
    Held<QORReport> report;
    Held<QORPrompt> prompt("prompt");
    report->addClassifier(prompt);
    EXPECT_EQ(prompt->getParent(), report.get());
    expectDeletionRefused(*prompt);
    EXPECT_EQ(prompt->removeAggregationAssembly(), report.get());
}

TEST(QORPrompt, ReencodesItsQuestionThenAnswers) {
    Journal journal;
    Watched<QORPrompt> prompt(journal, "prompt");
    prompt.QORPrompt::setName(rawText);
    prompt.setQuestion(rawText);
    prompt.addFeature(watched<QORPromptAnswer>(journal, "answer"));
    prompt.onSetName = [&] { EXPECT_STREQ(prompt.getQuestion().chars, recodedText); };
    Recoding recode;
    recode(prompt);
    EXPECT_EQ(journal.namings, Labels{"prompt"});
    EXPECT_EQ(journal.recodings, (Labels{"prompt", "answer"}));
}

TEST(QORPrompt, ComparesAndCopiesItsAttributes) {
    expectCompared<QORPrompt>([](auto& prompt) { prompt.setQuestion("x"); });
    expectCompared<QORPrompt>([](auto& prompt) { prompt.setMultipleSelection(true); });
    expectCompared<QORPrompt>([](auto& prompt) { prompt.setStereotype("x"); });
    expectNotCompared<QORPrompt>([](auto& prompt) { prompt.addFeature(new QORPromptAnswer); });
    QORPrompt source;
    source.setQuestion("q");
    source.setMultipleSelection(true);
    source.addFeature(new QORPromptAnswer);
    QORPrompt const copy(source);
    EXPECT_TRUE(copy.equals(source));
    EXPECT_EQ(copy.getFeatureCount(), 0);
    QORPrompt target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
}
