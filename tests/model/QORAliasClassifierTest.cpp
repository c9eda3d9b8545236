#include "ModelTestSupport.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORClass.h>
#include <qor/QORDataAttribute.h>
#include <qor/QORReport.h>

TEST(QORAliasClassifier, IsAClassifier) {
    graph::expectConcrete<QORAliasClassifier>(QORElementType::ALIAS_CLASSIFIER, 101, "AliasClassifier",
                                              QORClassifier::getStaticMetaClass());
    expectClassesUnequal<QORAliasClassifier, QORClass>();
}

TEST(QORAliasClassifier, ComparesAndTakesOverWhatAModelObjectHolds) {
    expectAttribute<QORAliasClassifier>(&QORAliasClassifier::getPhysicalName,
                                        &QORAliasClassifier::setPhysicalName, "", "A");
    graph::expectNotCompared<QORAliasClassifier>([](QORAliasClassifier& alias) { alias.setComment("A"); });
}

TEST(QORAliasClassifier, FeaturesDoNotCountForEquality) {
    Graph graph;
    auto* const alias = graph.make<QORAliasClassifier>();
    ASSERT_TRUE(alias->addFeature(graph.make<QORDataAttribute>()));
    EXPECT_TRUE(alias->equals(QORAliasClassifier()));
}

TEST(QORAliasClassifier, HasAReportAsParentAndReencodesItsFeatures) {
    Graph graph;
    auto* const alias = graph.make<QORAliasClassifier>(inUtf8);
    auto* const report = graph.make<QORReport>();
    auto* const feature = graph.make<QORDataAttribute>(inUtf8);
    ASSERT_TRUE(report->addClassifier(alias) && alias->addFeature(feature));
    expectParent(*alias, report, 1);
    Recoding recode;
    recode(*alias);
    EXPECT_EQ(alias->getName(), inLatin1);
    EXPECT_EQ(feature->getName(), inLatin1);
    EXPECT_EQ(recode.converted, 2);
}
