#include "GraphTestSupport.h"

#include <qor/QORBaseType.h>
#include <qor/QORDimensionAttribute.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelAttribute.h>
#include <qor/QORLevelKey.h>

namespace {

using Attribute = QORLevelAttribute;

void linkEnds(Graph& graph, Attribute& attribute, Owners owners) {
    linkBase(graph, attribute);
    ASSERT_TRUE(attribute.addType(graph.mortal<QORBaseType>("type")));
    ASSERT_TRUE(attribute.addLevelKey(graph.mortal<QORLevelKey>("key")));
    ASSERT_TRUE(attribute.addDimensionAttribute(graph.mortal<QORDimensionAttribute>("dimensionAttribute")));
    ASSERT_TRUE(attribute.addDefaultOfLevel(graph.mortal<QORLevel>("defaultOf")));
    if (owners == Owners::ALL) {
        ASSERT_TRUE(attribute.addClassifier(graph.mortal<QORLevel>("level")));
    } else if (owners == Owners::ONE) {
        ASSERT_TRUE(attribute.addClassifier(graph.make<QORLevel>()));
    }
}

} // namespace

TEST(QORLevelAttribute, IsAFeatureOfItsLevel) {
    Graph graph;
    auto* const level = graph.make<QORLevel>();
    auto* const attribute = graph.make<Attribute>("A");
    ASSERT_TRUE(level->addFeature(attribute) && level->addFeature(graph.make<Attribute>("B")));
    expectNameRefused(*attribute, "B", "Classifier", "Feature");
    ASSERT_TRUE(attribute->addDefaultOfLevel(level));
    EXPECT_EQ(attribute->getParent(), level);
    EXPECT_EQ(attribute->getParentCount(), 1);
    EXPECT_EQ(attribute->removeAggregationAssembly(), level);
    EXPECT_EQ(attribute->getParent(), nullptr);
    EXPECT_EQ(attribute->getDefaultOfLevel(), level);
}

TEST(QORLevelAttribute, IsTakenApartInOrder) {
    expectTakenApart<Attribute>(linkEnds, {"key", "dimensionAttribute", "defaultOf", "type", "level", "base"},
                                {"base", "type", "key", "dimensionAttribute", "defaultOf"});
}

TEST(QORLevelAttribute, EachEndCountsAsAReference) {
    expectEndCounts<Attribute, QORLevelKey>(&Attribute::addLevelKey);
    expectEndCounts<Attribute, QORDimensionAttribute>(&Attribute::addDimensionAttribute);
    expectEndCounts<Attribute, QORLevel>(&Attribute::addDefaultOfLevel);
}

TEST(QORLevelAttribute, ComparesWhatAStructuralFeatureHas) {
    Attribute attribute;
    attribute.setInitialValue("I");
    attribute.setOptional(true);
    Attribute other(attribute);
    EXPECT_EQ(other, attribute);
    other.setInitialValue("");
    EXPECT_NE(other, attribute);
    other = attribute;
    other.setOptional(false);
    EXPECT_NE(other, attribute);
    other.setFrom(attribute);
    EXPECT_EQ(other, attribute);
    EXPECT_FALSE(Attribute().equals(QORDimensionAttribute()));
}

TEST(QORLevelAttribute, ReencodesItsTexts) {
    expectTextsRecoded<Attribute>({{&Attribute::getInitialValue, &Attribute::setInitialValue},
                                   {&Attribute::getPhysicalName, &Attribute::setPhysicalName}});
}
