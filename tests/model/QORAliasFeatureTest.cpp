#include "ModelTestSupport.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORAliasFeature.h>
#include <qor/QORAttribute.h>

TEST(QORAliasFeature, IsAFeature) {
    graph::expectConcrete<QORAliasFeature>(QORElementType::ALIAS_FEATURE, 102, "AliasFeature",
                                           QORFeature::getStaticMetaClass());
    expectClassesUnequal<QORAliasFeature, QORAttribute>();
}

TEST(QORAliasFeature, ComparesAndTakesOverPositionAndPhysicalName) {
    expectAttribute<QORAliasFeature>(&QORAliasFeature::getPosition, &QORAliasFeature::setPosition, short{0},
                                     short{-3});
    expectAttribute<QORAliasFeature>(&QORAliasFeature::getPhysicalName, &QORAliasFeature::setPhysicalName, "",
                                     "A");
}

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
