#include "Expectations.h"

#include <qor/QORPrompt.h>
#include <qor/QORPromptAnswer.h>
#include <qor/QORReport.h>

TEST(QORPrompt, OwnsItsAnswersAsFeatures) {
    Graph graph;
    auto* const prompt = graph.mortal<QORPrompt>("prompt");
    for (char const* name : {"yes", "no"}) {
        auto* const answer = graph.mortal<QORPromptAnswer>(name);
        EXPECT_TRUE(prompt->addFeature(answer));
    }
    EXPECT_EQ(walkOf(*prompt), (Objects{prompt, prompt->getFeature(0), prompt->getFeature(1)}));
    delete prompt;
    EXPECT_EQ(graph.deaths, (Labels{"prompt", "no", "yes"}));
}

TEST(QORPrompt, BelongsToItsReport) {
    Graph graph;
    auto* const report = graph.make<QORReport>();
    auto* const prompt = graph.make<QORPrompt>("prompt");
    report->addClassifier(prompt);
    EXPECT_EQ(prompt->getParent(), report);
    expectDeletionRefused(*prompt);
    EXPECT_EQ(prompt->removeAggregationAssembly(), report);
}

TEST(QORPrompt, ReencodesItsQuestionThenAnswers) {
    Graph graph;
    Mortal<QORPrompt> prompt(graph, "prompt");
    prompt.QORPrompt::setName(inUtf8);
    prompt.setQuestion(inUtf8);
    prompt.addFeature(graph.mortal<QORPromptAnswer>("answer"));
    prompt.onSetName = [&] { EXPECT_STREQ(prompt.getQuestion().chars, inLatin1); };
    Recoding recode;
    recode(prompt);
    EXPECT_EQ(graph.namings, (Labels{"prompt", "answer"}));
    EXPECT_EQ(graph.recodings, (Labels{"prompt", "answer"}));
}
