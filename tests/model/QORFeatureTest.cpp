#include "ModelTestSupport.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORAliasFeature.h>
#include <qor/QORAttributeMap.h>
#include <qor/QORBaseType.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORModel.h>
#include <qor/QORSQLViewAttribute.h>

namespace {

/// A feature is abstract: an alias has nothing besides.
void link(Graph& graph, QORAliasFeature& object, Owners owners) {
    linkLayers(graph, object);
    linkOwnerMade<QORAliasClassifier>(graph, owners, "classifier", object, &QORFeature::addClassifier);
    ASSERT_TRUE(object.addSourceOfSQLViewAttribute(hung<QORSQLViewAttribute>(graph, "view attribute")));
    ASSERT_TRUE(object.addDestinationOfFeatureMap(hung<QORFeatureMap>(graph, "destination map")));
    ASSERT_TRUE(object.addSourceOfFeatureMap(hung<QORAttributeMap>(graph, "source map")));
    ASSERT_TRUE(object.addType(hung<QORBaseType>(graph, "type")));
}

} // namespace

TEST(QORFeature, IsAbstractAndAModelObject) {
    graph::expectAbstract<QORFeature>(QORElementType::FEATURE, 77, "Feature",
                                      QORModelObject::getStaticMetaClass());
}

TEST(QORFeature, ThePositionCountsForEqualityAndTheTypeDoesNot) {
    expectAttribute<QORAliasFeature>(&QORAliasFeature::getPosition, &QORAliasFeature::setPosition, short{0},
                                     short{3});
    Graph graph;
    auto* const typed = graph.make<QORAliasFeature>("A");
    auto* const untyped = graph.make<QORAliasFeature>("A");
    ASSERT_TRUE(typed->addType(graph.make<QORBaseType>()));
    EXPECT_TRUE(typed->equals(*untyped));
    EXPECT_TRUE(untyped->equals(*typed));
}

TEST(QORFeature, ACopyIsNotTyped) {
    expectCopiesUnlinked<QORAliasFeature>(link);
}

TEST(QORFeature, ItsClassifierIsItsParent) {
    Graph graph;
    auto* const feature = graph.make<QORAliasFeature>();
    auto* const classifier = graph.make<QORAliasClassifier>();
    ASSERT_TRUE(feature->addClassifier(classifier));
    expectLeaves(*feature, {classifier});
    EXPECT_EQ(classifier->getFeatureCount(), 0);
}

TEST(QORFeature, EachEndCountsAsAReference) {
    using Class = QORAliasFeature;
    expectEndCounts<Class, QORType, QORBaseType>(&QORFeature::addType);
    expectEndCounts<Class, QORClassifier, QORAliasClassifier>(&QORFeature::addClassifier);
    expectEndCounts<Class, QORFeatureMap>(&QORFeature::addSourceOfFeatureMap);
    expectEndCounts<Class, QORFeatureMap>(&QORFeature::addDestinationOfFeatureMap);
    expectEndCounts<Class, QORSQLViewAttribute>(&QORFeature::addSourceOfSQLViewAttribute);
}

TEST(QORFeature, IsTakenApartInOrder) {
    expectTakenApart<QORAliasFeature>(
        link,
        {"type", "classifier", "source map", "destination map", "view attribute", "base", "synonym", "note"},
        {"note", "synonym", "base", "type", "source map", "destination map", "view attribute"});
    expectIsolationFreesFarEnds<QORAliasFeature>(link);
}

TEST(QORFeature, ReachesWhatAModelObjectReaches) {
    expectChildrenReached<QORAliasFeature>(link, {"note", "synonym"});
}

TEST(QORFeature, ItsTypeDiesWithTheLastReference) {
    Graph graph;
    auto* const type = graph.mortal<QORBaseType>("type");
    auto* const first = new QORAliasFeature;
    auto* const second = new QORAliasFeature;
    ASSERT_TRUE(first->addType(type) && second->addType(type));
    delete first;
    EXPECT_EQ(graph.deaths, Labels());
    delete second;
    EXPECT_EQ(graph.deaths, Labels{"type"});
}

TEST(QORFeature, ATypeWithAnOwnerSurvives) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const type = graph.make<QORBaseType>();
    auto* const feature = new QORAliasFeature;
    ASSERT_TRUE(model->addType(type) && feature->addType(type));
    delete feature;
    EXPECT_EQ(type->getFeatureCount(), 0);
    EXPECT_EQ(model->getType(0), type);
}

TEST(QORFeature, ATakenNameIsRefused) {
    Graph graph;
    auto* const classifier = graph.make<QORAliasClassifier>();
    auto* const feature = graph.make<QORAliasFeature>("A");
    ASSERT_TRUE(classifier->addFeature(feature) && classifier->addFeature(graph.make<QORAliasFeature>("B")));
    expectNameRefused(*feature, "B", "Classifier", "Feature");
    EXPECT_EQ(classifier->getFeature(0), feature);
    feature->setName("C");
    EXPECT_EQ(classifier->getFeature(1), feature);
    EXPECT_EQ(feature->getClassifier(), classifier);
}

TEST(QORFeature, RefusesASecondClassifierAndType) {
    Graph graph;
    auto* const feature = graph.make<QORAliasFeature>();
    auto* const classifier = graph.make<QORAliasClassifier>();
    auto* const other = graph.make<QORAliasClassifier>();
    auto* const type = graph.make<QORBaseType>();
    auto* const otherType = graph.make<QORBaseType>();
    ASSERT_TRUE(feature->addClassifier(classifier) && feature->addType(type));
    EXPECT_FALSE(feature->addClassifier(other));
    EXPECT_FALSE(other->addFeature(feature));
    EXPECT_FALSE(feature->addType(otherType));
    EXPECT_FALSE(other->isReferenced());
    EXPECT_FALSE(otherType->isReferenced());
    EXPECT_EQ(feature->getClassifier(), classifier);
    EXPECT_EQ(feature->getType(), type);
}
