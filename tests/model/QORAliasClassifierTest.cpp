#include "Expectations.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORDataAttribute.h>
#include <qor/QORReport.h>

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
