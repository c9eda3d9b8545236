#include "TypeEnds.h"

#include <qor/QORBusinessRule.h>
#include <qor/QORTypeValueMap.h>

namespace {

void linkEnds(Graph& graph, QORTypeValue& value, Owners owners) {
    linkBase(graph, value);
    ASSERT_TRUE(value.addSourceOfTypeValueMap(graph.mortal<QORTypeValueMap>("sourceMap")));
    ASSERT_TRUE(value.addDestinationOfTypeValueMap(graph.mortal<QORTypeValueMap>("destinationMap")));
    linkOwner(graph, owners, "type", value, &QORTypeValue::addDerivedType);
    linkFurtherOwner(graph, owners, "rule", value, &QORTypeValue::addBusinessRule);
}

QORTypeValue* valueOf(Graph& graph, QORBusinessRule& rule, char const* name, char const* value = "") {
    auto* const made = graph.make<QORTypeValue>(name);
    made->setValue(value);
    EXPECT_TRUE(rule.addTypeValue(made));
    return made;
}

template <class Owner>
std::vector<QORTypeValue*> valuesOf(Owner const& owner) {
    return listOf(owner.getTypeValueCount(), [&](int i) { return owner.getTypeValue(i); });
}

using Values = std::vector<QORTypeValue*>;

} // namespace

TEST(QORTypeValue, ShowsItsNameOrElseItsValue) {
    QORTypeValue value;
    EXPECT_EQ(value.getDisplayName(), "");
    value.setValue("V");
    EXPECT_EQ(value.getDisplayName(), "V");
    value.setName("N");
    EXPECT_EQ(value.getDisplayName(), "N");
}

TEST(QORTypeValue, ANewValueMovesAnUnnamedOneInItsType) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const a = valueOf(graph, *type, "", "a");
    auto* const b = valueOf(graph, *type, "", "b");
    ASSERT_EQ(valuesOf(*type), (Values{a, b}));
    a->setValue("c");
    EXPECT_EQ(a->getValue(), "c");
    EXPECT_EQ(valuesOf(*type), (Values{b, a}));
    EXPECT_EQ(a->getDerivedType(), type);
    EXPECT_TRUE(type->containsTypeValue(a));
    a->setValue("c");
    EXPECT_EQ(valuesOf(*type), (Values{b, a}));
}

TEST(QORTypeValue, AValueThatItsTypeHoldsUnnamedIsRefused) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const a = valueOf(graph, *type, "", "a");
    auto* const b = valueOf(graph, *type, "", "b");
    expectRefused([&] { a->setValue("b"); }, "DerivedType", "TypeValue");
    EXPECT_EQ(a->getValue(), "a");
    EXPECT_EQ(a->getDerivedType(), type);
    EXPECT_EQ(valuesOf(*type), (Values{a, b}));
    a->setValue("c");
    EXPECT_EQ(valuesOf(*type), (Values{b, a}));
}

TEST(QORTypeValue, NamedValuesOfOneTypeMayShareAValue) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const a = valueOf(graph, *type, "A", "v");
    auto* const b = valueOf(graph, *type, "B", "w");
    auto* const unnamed = valueOf(graph, *type, "", "v");
    b->setValue("v");
    EXPECT_EQ(b->getValue(), "v");
    EXPECT_EQ(valuesOf(*type), (Values{unnamed, a, b}));
}

TEST(QORTypeValue, ARuleDoesNotSeeANewValue) {
    Graph graph;
    auto* const rule = graph.make<QORBusinessRule>();
    auto* const a = valueOf(graph, *rule, "", "a");
    auto* const b = valueOf(graph, *rule, "", "b");
    auto* const c = valueOf(graph, *rule, "", "c");
    a->setValue("d");
    EXPECT_EQ(valuesOf(*rule), (Values{a, b, c}));
    a->setValue("b");
    EXPECT_EQ(a->getValue(), "b");
    EXPECT_EQ(a->getBusinessRule(), rule);
    EXPECT_EQ(valuesOf(*rule), (Values{a, b, c}));
    EXPECT_TRUE(rule->removeTypeValue(a));
    EXPECT_EQ(valuesOf(*rule), (Values{b, c}));
}

TEST(QORTypeValue, UnderBothOwnersANewValueMovesItInTheTypeAlone) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const rule = graph.make<QORBusinessRule>();
    auto* const a = valueOf(graph, *type, "", "a");
    auto* const b = valueOf(graph, *type, "", "b");
    ASSERT_TRUE(rule->addTypeValue(a) && rule->addTypeValue(b));
    a->setValue("c");
    EXPECT_EQ(valuesOf(*type), (Values{b, a}));
    EXPECT_EQ(valuesOf(*rule), (Values{a, b}));
}

TEST(QORTypeValue, AFreeValueTakesAnyText) {
    QORTypeValue value;
    value.setValue("a");
    value.setValue(value.getValue());
    EXPECT_EQ(value.getValue(), "a");
}

TEST(QORTypeValue, ATypeRefusesATakenName) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const a = valueOf(graph, *type, "A");
    auto* const b = valueOf(graph, *type, "B");
    auto* const c = valueOf(graph, *type, "C");
    expectNameRefused(*a, "C", "DerivedType", "TypeValue");
    EXPECT_EQ(valuesOf(*type), (Values{a, b, c}));
    a->setName("D");
    EXPECT_EQ(valuesOf(*type), (Values{b, c, a}));
    EXPECT_EQ(type->getTypeValue("D", nullptr), a);
    EXPECT_EQ(type->getTypeValue("A", nullptr), nullptr);
}

TEST(QORTypeValue, ATypeRefusesAnUnnamedValueOfATakenText) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const named = valueOf(graph, *type, "A", "v");
    valueOf(graph, *type, "", "v");
    expectNameRefused(*named, "", "DerivedType", "TypeValue");
}

TEST(QORTypeValue, ARuleRefusesATakenName) {
    Graph graph;
    auto* const rule = graph.make<QORBusinessRule>();
    auto* const a = valueOf(graph, *rule, "A");
    auto* const b = valueOf(graph, *rule, "B");
    expectNameRefused(*a, "B", "BusinessRule", "TypeValue");
    a->setName("C");
    EXPECT_EQ(valuesOf(*rule), (Values{b, a}));
}

TEST(QORTypeValue, UnderBothOwnersTheTypeAloneIsAskedForTheName) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const rule = graph.make<QORBusinessRule>();
    auto* const value = valueOf(graph, *rule, "A");
    valueOf(graph, *rule, "B");
    valueOf(graph, *type, "C");
    ASSERT_TRUE(type->addTypeValue(value));
    value->setName("B");
    EXPECT_EQ(value->getName(), "B");
    expectNameRefused(*value, "C", "DerivedType", "TypeValue");
    EXPECT_EQ(value->getBusinessRule(), rule);
}

TEST(QORTypeValue, TheTypeIsTheFirstOfTwoParents) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const rule = graph.make<QORBusinessRule>();
    auto* const value = graph.make<QORTypeValue>();
    EXPECT_EQ(value->getParent(), nullptr);
    ASSERT_TRUE(rule->addTypeValue(value));
    EXPECT_EQ(value->getParent(), rule);
    EXPECT_EQ(value->getParentCount(), 1);
    ASSERT_TRUE(type->addTypeValue(value));
    EXPECT_EQ(value->getParent(), type);
    EXPECT_EQ(value->getParentCount(), 2);
    EXPECT_EQ(value->removeAggregationAssembly(), type);
    EXPECT_EQ(value->getParent(), rule);
    EXPECT_EQ(value->removeAggregationAssembly(), rule);
    EXPECT_EQ(value->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(value->getParentCount(), 0);
}

TEST(QORTypeValue, AssignmentSetsTheValueAndMovesIt) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const a = valueOf(graph, *type, "", "a");
    auto* const b = valueOf(graph, *type, "", "b");
    QORTypeValue source;
    source.setValue("c");
    source.setPosition(4);
    source.setPhysicalName("P");
    *a = source;
    EXPECT_EQ(a->getValue(), "c");
    EXPECT_EQ(a->getPosition(), 4);
    EXPECT_EQ(a->getPhysicalName(), "P");
    EXPECT_EQ(a->getDerivedType(), type);
    EXPECT_EQ(valuesOf(*type), (Values{b, a}));
    EXPECT_EQ(*a, source);
}

TEST(QORTypeValue, AssignmentOfATakenValueIsRefusedOnceThePositionIsCopied) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const a = valueOf(graph, *type, "", "a");
    auto* const b = valueOf(graph, *type, "", "b", 6);
    expectRefused([&] { a->setFrom(*b); }, "DerivedType", "TypeValue");
    EXPECT_EQ(a->getValue(), "a");
    EXPECT_EQ(a->getPosition(), 6);
    EXPECT_EQ(a->getDerivedType(), type);
    EXPECT_EQ(valuesOf(*type), (Values{a, b}));
}

TEST(QORTypeValue, ACopyStandsAlone) {
    Graph graph;
    auto* const value = graph.make<QORTypeValue>("N");
    value->setValue("v");
    value->setPosition(2);
    linkEnds(graph, *value, Owners::ALL);
    QORTypeValue const copy(*value);
    EXPECT_EQ(copy.getName(), "N");
    EXPECT_EQ(copy.getValue(), "v");
    EXPECT_EQ(copy.getPosition(), 2);
    EXPECT_FALSE(copy.isReferenced());
}

TEST(QORTypeValue, ComparesPositionAndValue) {
    QORTypeValue value;
    QORTypeValue other;
    EXPECT_EQ(value, other);
    value.setPosition(1);
    EXPECT_NE(value, other);
    other.setPosition(1);
    value.setValue("v");
    EXPECT_NE(value, other);
    other.setValue("v");
    EXPECT_EQ(value, other);
    other.setName("N");
    EXPECT_NE(value, other);
}

TEST(QORTypeValue, IsTakenApartInOrder) {
    expectTakenApart<QORTypeValue>(linkEnds, {"type", "rule", "sourceMap", "destinationMap", "base"},
                                   {"base", "sourceMap", "destinationMap"});
}

TEST(QORTypeValue, AReencodedValueStaysWhereItIsInItsType) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const changing = valueOf(graph, *type, "", inUtf8);
    auto* const other = valueOf(graph, *type, "", "\xC5"); // between both forms of the first
    ASSERT_EQ(valuesOf(*type), (Values{changing, other}));
    Recoding recode;
    recode(*changing);
    EXPECT_EQ(changing->getValue(), inLatin1);
    EXPECT_EQ(valuesOf(*type), (Values{changing, other}));
}

TEST(QORTypeValue, AReencodedNameThatIsTakenGetsANumber) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const taken = valueOf(graph, *type, inLatin1);
    auto* const changing = valueOf(graph, *type, inUtf8);
    Recoding recode;
    recode(*type);
    EXPECT_EQ(taken->getName(), inLatin1);
    EXPECT_EQ(changing->getName(), QORString(inLatin1) + "/1");
    EXPECT_EQ(recode.errors, 1);
    EXPECT_EQ(valuesOf(*type), (Values{taken, changing}));
}
