#include "TypeEnds.h"

#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>

namespace {

void linkEnds(Graph& graph, QORPropertyType& type, Owners owners) {
    linkDerivedTypeEnds(graph, type, owners);
    ASSERT_TRUE(type.addInstanciatedPropertyValue(graph.mortal<QORPropertyValue>("propertyValue")));
    linkFurtherOwner(graph, owners, "scope", type, &QORPropertyType::addPropertyElementTypeScope);
}

} // namespace

TEST(QORPropertyType, AUsersOneShowsItsNameAndGroup) {
    QORPropertyType type;
    EXPECT_EQ(type.getFullName(), "");
    type.setName("P");
    EXPECT_EQ(type.getFullName(), "P");
    EXPECT_EQ(type.getDisplayName(), "P");
    type.setGroup("G");
    EXPECT_EQ(type.getFullName(), "P(G)");
    EXPECT_EQ(type.getDisplayName(), "P(G)");
    type.setDataType("SQL_CHAR");
    EXPECT_EQ(type.getDisplayName(), "P(G)");
}

TEST(QORPropertyType, AnyOtherUsageGoesBeforeTheNameAndTheGroupPlaysNoPart) {
    QORPropertyType type;
    type.setName("P");
    type.setGroup("G");
    for (char const* const usage : {"U", "USERS", "USE", "user", "PROPERTY_USAGE_USER"}) {
        type.setUsage(usage);
        EXPECT_EQ(type.getFullName(), QORString(usage) + ".P");
        EXPECT_EQ(type.getDisplayName(), QORString(usage) + ".P");
    }
    type.setUsage("");
    EXPECT_EQ(type.getFullName(), "P");
    EXPECT_EQ(type.getDisplayName(), "P");
}

TEST(QORPropertyType, TheScopeIsTheFirstOfThreeParents) {
    Graph graph;
    auto* const scope = graph.make<QORPropertyElementTypeScope>();
    auto* const model = graph.make<QORModel>();
    auto* const mappingModel = graph.make<QORMappingModel>();
    auto* const type = graph.make<QORPropertyType>();
    EXPECT_EQ(type->getParent(), nullptr);
    EXPECT_EQ(type->removeAggregationAssembly(), nullptr);
    ASSERT_TRUE(type->addMappingModel(mappingModel));
    EXPECT_EQ(type->getParent(), mappingModel);
    ASSERT_TRUE(type->addModel(model));
    EXPECT_EQ(type->getParent(), model);
    ASSERT_TRUE(scope->addPropertyType(type));
    EXPECT_EQ(type->getParent(), scope);
    EXPECT_EQ(type->getParentCount(), 3);
    EXPECT_EQ(type->removeAggregationAssembly(), scope);
    EXPECT_EQ(type->getPropertyElementTypeScope(), nullptr);
    EXPECT_EQ(type->removeAggregationAssembly(), model);
    EXPECT_EQ(type->removeAggregationAssembly(), mappingModel);
    EXPECT_EQ(type->getParentCount(), 0);
}

TEST(QORPropertyType, ANewNameMovesItInItsScopeAlone) {
    Graph graph;
    auto* const scope = graph.make<QORPropertyElementTypeScope>();
    auto* const model = graph.make<QORModel>();
    auto* const first = graph.make<QORPropertyType>("A");
    auto* const second = graph.make<QORPropertyType>("B");
    for (QORPropertyType* const each : {first, second})
        ASSERT_TRUE(scope->addPropertyType(each) && model->addType(each));
    first->setName("C");
    EXPECT_EQ(scope->getPropertyType(0), second);
    EXPECT_EQ(model->getType(0), first);
    second->setName("C");
    EXPECT_EQ(second->getName(), "C");
    EXPECT_EQ(scope->getPropertyTypeCount(), 2);
}

TEST(QORPropertyType, WithoutScopeANewNameMovesItInItsModel) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const first = graph.make<QORPropertyType>("A");
    auto* const second = graph.make<QORPropertyType>("B");
    ASSERT_TRUE(model->addType(first) && model->addType(second));
    first->setName("C");
    EXPECT_EQ(model->getType(0), second);
    EXPECT_EQ(model->getType(1), first);
}

TEST(QORPropertyType, IsTakenApartInOrder) {
    expectTakenApart<QORPropertyType>(linkEnds,
                                      {"scope", "propertyValue", "concrete", "value", "sourceMap",
                                       "destinationMap", "derived", "model", "mappingModel", "argument",
                                       "operation", "alias", "feature", "node", "base"},
                                      {"base", "argument", "operation", "alias", "feature", "node", "derived",
                                       "concrete", "sourceMap", "destinationMap", "propertyValue"},
                                      {"value"});
}

TEST(QORPropertyType, ACopyHasCopiesOfTheValuesOnly) {
    Graph graph;
    auto* const type = graph.make<QORPropertyType>("P");
    linkEnds(graph, *type, Owners::ALL);
    type->setPosition(3);
    type->setUsage("U");
    type->setGroup("G");
    type->setInitialValue("I");
    QORPropertyType const copy(*type);
    EXPECT_EQ(copy.getPosition(), 3);
    EXPECT_EQ(copy.getUsage(), "U");
    EXPECT_EQ(copy.getGroup(), "G");
    EXPECT_EQ(copy.getInitialValue(), "I");
    EXPECT_EQ(copy.getTypeValueCount(), 1);
    EXPECT_NE(copy.getTypeValue(0), type->getTypeValue(0));
    EXPECT_EQ(copy.getParentCount(), 0);
    EXPECT_EQ(copy.getInstanciatedPropertyValueCount(), 0);
    EXPECT_EQ(copy, *type);
}

TEST(QORPropertyType, OwnsItsTypeValuesAndNotThePropertyValues) {
    Graph graph;
    auto* const type = graph.make<QORPropertyType>();
    auto* const value = valueOf(graph, *type, "A");
    ASSERT_TRUE(type->addInstanciatedPropertyValue(graph.make<QORPropertyValue>()));
    EXPECT_EQ(walkOf(*type), (Objects{type, value}));
}
