#include "Expectations.h"

#include <qor/QORPrompt.h>
#include <qor/QORPromptAnswer.h>

TEST(QORPromptAnswer, IsNamedAsAFeatureOfItsPrompt) {
    expectNamedAndOwned<QORPrompt, QORPromptAnswer>(&QORClassifier::addFeature, "Classifier", "Feature");
}
