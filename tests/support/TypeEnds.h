#pragma once

#include "Expectations.h"

#include <qor/QORAliasType.h>
#include <qor/QORArgument.h>
#include <qor/QORAttribute.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDerivedType.h>
#include <qor/QOREnumeratedTypeMap.h>
#include <qor/QORMappingModel.h>
#include <qor/QORModel.h>
#include <qor/QOROperation.h>
#include <qor/QORTypeValue.h>

/// Links every end that all types have, the owners included.
inline void linkTypeEnds(Graph& graph, QORType& type, Owners owners) {
    linkBase(graph, type);
    ASSERT_TRUE(type.addArgument(graph.mortal<QORArgument>("argument")));
    ASSERT_TRUE(type.addOperation(graph.mortal<QOROperation>("operation")));
    ASSERT_TRUE(type.addAliasType(graph.mortal<QORAliasType>("alias")));
    ASSERT_TRUE(type.addFeature(graph.mortal<QORAttribute>("feature")));
    ASSERT_TRUE(type.addExpressionNode(graph.mortal<QORConstantNode>("node")));
    linkOwner(graph, owners, "model", type, &QORType::addModel);
    linkFurtherOwner(graph, owners, "mappingModel", type, &QORType::addMappingModel);
}

/// Links every end that all derived types have, the owners of types included.
inline void linkDerivedTypeEnds(Graph& graph, QORDerivedType& type, Owners owners) {
    linkTypeEnds(graph, type, owners);
    ASSERT_TRUE(type.addDerivedType(graph.mortal<QORDerivedType>("derived")));
    ASSERT_TRUE(type.addDerivedFromConcreteType(graph.mortal<QORDerivedType>("concrete")));
    ASSERT_TRUE(type.addTypeValue(graph.mortal<QORTypeValue>("value")));
    ASSERT_TRUE(type.addSourceOfEnumeratedTypeMap(graph.mortal<QOREnumeratedTypeMap>("sourceMap")));
    ASSERT_TRUE(type.addDestinationOfEnumeratedTypeMap(graph.mortal<QOREnumeratedTypeMap>("destinationMap")));
}

/// Gives the type a value that outlives it.
inline QORTypeValue* valueOf(Graph& graph, QORDerivedType& type, char const* name, char const* value = "",
                             short position = 0) {
    auto* const made = graph.make<QORTypeValue>(name);
    made->setValue(value);
    made->setPosition(position);
    EXPECT_TRUE(type.addTypeValue(made));
    return made;
}
