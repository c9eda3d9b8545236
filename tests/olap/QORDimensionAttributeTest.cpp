#include "GraphTestSupport.h"

#include <qor/QORBaseType.h>
#include <qor/QORDimension.h>
#include <qor/QORDimensionAttribute.h>
#include <qor/QORLevelAttribute.h>

namespace {

using Attribute = QORDimensionAttribute;

void linkEnds(Graph& graph, Attribute& attribute, Owners owners) {
    linkBase(graph, attribute);
    ASSERT_TRUE(attribute.addType(graph.mortal<QORBaseType>("type")));
    ASSERT_TRUE(attribute.addDescriptiveOfDimensionAttribute(graph.mortal<Attribute>("described")));
    ASSERT_TRUE(attribute.addLevelAttribute(graph.mortal<QORLevelAttribute>("levelAttribute")));
    ASSERT_TRUE(attribute.addDescriptiveDimensionAttribute(graph.mortal<Attribute>("describing")));
    if (owners == Owners::ALL) {
        ASSERT_TRUE(attribute.addClassifier(graph.mortal<QORDimension>("dimension")));
    } else if (owners == Owners::ONE) {
        ASSERT_TRUE(attribute.addClassifier(graph.make<QORDimension>()));
    }
}

} // namespace

TEST(QORDimensionAttribute, StartsSortedAndShown) {
    Attribute const attribute;
    EXPECT_TRUE(attribute.getSort());
    EXPECT_FALSE(attribute.getHide());
    EXPECT_EQ(attribute.getOriginalName(), "");
}

TEST(QORDimensionAttribute, DescribesAtMostOneOther) {
    Graph graph;
    auto* const described = graph.make<Attribute>("A");
    auto* const describing = graph.make<Attribute>("B");
    EXPECT_TRUE(described->addDescriptiveDimensionAttribute(describing));
    EXPECT_EQ(describing->getDescriptiveOfDimensionAttribute(), described);
    EXPECT_FALSE(graph.make<Attribute>()->addDescriptiveDimensionAttribute(describing));
    EXPECT_TRUE(described->addDescriptiveOfDimensionAttribute(graph.make<Attribute>()));
    EXPECT_TRUE(described->addDescriptiveDimensionAttribute(graph.make<Attribute>()));
    EXPECT_EQ(described->getDescriptiveDimensionAttributeCount(), 2);
    EXPECT_EQ(describing->getParent(), nullptr);
}

TEST(QORDimensionAttribute, IsAFeatureOfItsDimension) {
    Graph graph;
    auto* const dimension = graph.make<QORDimension>();
    auto* const attribute = graph.make<Attribute>("A");
    ASSERT_TRUE(dimension->addFeature(attribute) && dimension->addFeature(graph.make<Attribute>("B")));
    expectNameRefused(*attribute, "B", "Classifier", "Feature");
    EXPECT_FALSE(attribute->recursiveDelete());
    EXPECT_EQ(attribute->getParent(), dimension);
    EXPECT_EQ(attribute->removeAggregationAssembly(), dimension);
    EXPECT_EQ(attribute->removeAggregationAssembly(), nullptr);
}

TEST(QORDimensionAttribute, IsTakenApartInOrder) {
    expectTakenApart<Attribute>(linkEnds,
                                {"described", "levelAttribute", "describing", "type", "dimension", "base"},
                                {"base", "type", "described", "levelAttribute", "describing"});
}

TEST(QORDimensionAttribute, EachEndCountsAsAReference) {
    expectEndCounts<Attribute, Attribute>(&Attribute::addDescriptiveOfDimensionAttribute);
    expectEndCounts<Attribute, QORLevelAttribute>(&Attribute::addLevelAttribute);
    expectEndCounts<Attribute, Attribute>(&Attribute::addDescriptiveDimensionAttribute);
}

TEST(QORDimensionAttribute, ComparesItsAttributes) {
    Attribute attribute;
    attribute.setSort(false);
    attribute.setHide(true);
    attribute.setOriginalName("O");
    attribute.setInitialValue("I");
    Attribute other(attribute);
    EXPECT_EQ(other, attribute);
    other.setSort(true);
    EXPECT_NE(other, attribute);
    other = attribute;
    other.setHide(false);
    EXPECT_NE(other, attribute);
    other = attribute;
    other.setOriginalName("");
    EXPECT_NE(other, attribute);
    other = attribute;
    other.setInitialValue("");
    EXPECT_NE(other, attribute);
    other.setFrom(attribute);
    EXPECT_EQ(other, attribute);
}

TEST(QORDimensionAttribute, ReencodesItsTexts) {
    expectTextsRecoded<Attribute>({{&Attribute::getOriginalName, &Attribute::setOriginalName},
                                   {&Attribute::getInitialValue, &Attribute::setInitialValue},
                                   {&Attribute::getPhysicalName, &Attribute::setPhysicalName}});
}
