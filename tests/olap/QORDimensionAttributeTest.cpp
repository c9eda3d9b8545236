#include "Expectations.h"

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

TEST(QORDimensionAttribute, IsAFeatureOfItsDimension) {
    expectNamedAndOwned<QORDimension, Attribute>(&QORClassifier::addFeature, "Classifier", "Feature");
}

TEST(QORDimensionAttribute, IsTakenApartInOrder) {
    expectTakenApart<Attribute>(linkEnds,
                                {"described", "levelAttribute", "describing", "type", "dimension", "base"},
                                {"base", "type", "described", "levelAttribute", "describing"});
}
