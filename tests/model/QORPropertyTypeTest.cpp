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

TEST(QORPropertyType, StartsAsAUsersOneWhateverTheRecordSays) {
    QORPropertyType const type;
    EXPECT_EQ(type.getUsage(), "USER");
    EXPECT_EQ(recordedDefault(QORAttributeType::PROPERTY_TYPE__USAGE), "PROPERTY_USAGE_USER");
    EXPECT_EQ(type.getGroup(), "");
    EXPECT_EQ(type.getPosition(), 0);
}

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

TEST(QORPropertyType, RecursiveDeleteUnderAScopeChangesNothing) {
    Graph graph;
    auto* const type = graph.make<QORPropertyType>();
    ASSERT_TRUE(graph.make<QORPropertyElementTypeScope>()->addPropertyType(type) &&
                type->addFeature(graph.mortal<QORAttribute>("feature")));
    EXPECT_FALSE(type->recursiveDelete());
    EXPECT_EQ(type->getFeatureCount(), 1);
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

TEST(QORPropertyType, ItsOwnEndsCountAsReferences) {
    expectEndCounts<QORPropertyType, QORPropertyElementTypeScope>(
        &QORPropertyType::addPropertyElementTypeScope);
    expectEndCounts<QORPropertyType, QORPropertyValue>(&QORPropertyType::addInstanciatedPropertyValue);
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

TEST(QORPropertyType, ComparesItsAttributesAndThoseOfADerivedType) {
    QORPropertyType type;
    type.setName("P");
    QORPropertyType other(type);
    other.setPosition(1);
    EXPECT_NE(type, other);
    other = type;
    other.setUsage("U");
    EXPECT_NE(type, other);
    other = type;
    other.setGroup("G");
    EXPECT_NE(type, other);
    other = type;
    other.setUpperBound("B");
    EXPECT_NE(type, other);
    other.setFrom(type);
    EXPECT_EQ(type, other);
    QORDerivedType derived;
    derived.setName("P");
    EXPECT_FALSE(type.equals(derived));
    EXPECT_FALSE(derived.equals(type));
}

TEST(QORPropertyType, ReencodesItsTexts) {
    using Type = QORPropertyType;
    expectTextsRecoded<Type>({{&Type::getUsage, &Type::setUsage},
                              {&Type::getGroup, &Type::setGroup},
                              {&Type::getInitialValue, &Type::setInitialValue},
                              {&Type::getDataType, &Type::setDataType}});
}

TEST(QORPropertyType, OwnsItsTypeValuesAndNotThePropertyValues) {
    Graph graph;
    auto* const type = graph.make<QORPropertyType>();
    auto* const value = valueOf(graph, *type, "A");
    ASSERT_TRUE(type->addInstanciatedPropertyValue(graph.make<QORPropertyValue>()));
    EXPECT_EQ(walkOf(*type), (std::vector<QORObject*>{type, value}));
}
