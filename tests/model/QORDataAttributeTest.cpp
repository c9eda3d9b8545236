#include "ModelTestSupport.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORAttribute.h>
#include <qor/QORDataAttribute.h>

TEST(QORDataAttribute, IsAStructuralFeature) {
    graph::expectConcrete<QORDataAttribute>(QORElementType::DATA_ATTRIBUTE, 105, "DataAttribute",
                                            QORStructuralFeature::getStaticMetaClass());
    expectClassesUnequal<QORDataAttribute, QORAttribute>();
}

TEST(QORDataAttribute, TheUsageIsTheDefaultAtFirstAndCountsForEquality) {
    expectAttribute<QORDataAttribute>(&QORDataAttribute::getUsage, &QORDataAttribute::setUsage,
                                      QORAttributeUsageType::DEFAULT, QORAttributeUsageType::MEASURE);
}

TEST(QORDataAttribute, ItsClassifierIsItsParent) {
    Graph graph;
    auto* const attribute = graph.make<QORDataAttribute>("A");
    auto* const classifier = graph.make<QORAliasClassifier>();
    ASSERT_TRUE(classifier->addFeature(attribute));
    ASSERT_TRUE(classifier->addFeature(graph.make<QORAttribute>("B")));
    expectNameRefused(*attribute, "B", "Classifier", "Feature");
    expectLeaves(*attribute, {classifier});
}
