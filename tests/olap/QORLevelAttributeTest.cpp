#include "Expectations.h"

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
    expectNamedAndOwned<QORLevel, Attribute>(&QORClassifier::addFeature, "Classifier", "Feature");
}

TEST(QORLevelAttribute, IsTakenApartInOrder) {
    expectTakenApart<Attribute>(linkEnds, {"key", "dimensionAttribute", "defaultOf", "type", "level", "base"},
                                {"base", "type", "key", "dimensionAttribute", "defaultOf"});
}
