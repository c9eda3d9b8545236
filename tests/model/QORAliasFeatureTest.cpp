#include "Expectations.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORAliasFeature.h>

TEST(QORAliasFeature, IsOwnedAndReencodedLikeAFeature) {
    Graph graph;
    auto* const classifier = graph.make<QORAliasClassifier>();
    auto* const feature = graph.make<QORAliasFeature>(inUtf8);
    ASSERT_TRUE(classifier->addFeature(feature));
    expectParent(*feature, classifier, 1);
    Recoding recode;
    recode(*feature);
    EXPECT_EQ(feature->getName(), inLatin1);
    EXPECT_EQ(recode.converted, 1);
    EXPECT_EQ(classifier->getFeature(0), feature);
}
