#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORPropertyValueByPosition.h>
#include <qor/QORSortedPropertyValuesLinkTree.h>

namespace {

void linkEnds(Graph& graph, QORPropertyValue& value, Owners owners) {
    ASSERT_TRUE(value.addPropertyType(graph.mortal<QORPropertyType>("type")));
    if (owners == Owners::ALL) {
        ASSERT_TRUE(value.addElement(graph.mortal<QORClass>("owner")));
    } else if (owners == Owners::ONE) {
        ASSERT_TRUE(value.addElement(graph.make<QORClass>()));
    }
}

void expectSetNameThrowsOne(QORPropertyValue& value) {
    QORString const before = value.getName();
    for (QORString const& name : {QORString(), QORString("N"), before}) {
        try {
            value.setName(name);
            ADD_FAILURE() << "nothing thrown";
        } catch (int thrown) {
            EXPECT_EQ(thrown, 1);
        }
        EXPECT_EQ(value.getName(), before);
    }
}

QORPropertyValue* valueOf(Graph& graph, QORElement& element, QORPropertyType* type, short position = 0) {
    auto* const value = graph.make<QORPropertyValue>();
    value->setPosition(position);
    EXPECT_TRUE(element.addPropertyValue(value));
    if (type) {
        EXPECT_TRUE(value->addPropertyType(type));
    }
    return value;
}

} // namespace

TEST(QORPropertyValue, WithoutTypeItHasNoName) {
    QORPropertyValue const value;
    EXPECT_EQ(&value.getName(), &emptyString);
    EXPECT_EQ(value.getDisplayName(), "");
}

TEST(QORPropertyValue, TakesItsNamesFromItsType) {
    Graph graph;
    auto* const type = graph.make<QORPropertyType>("P");
    type->setGroup("G");
    auto* const value = graph.make<QORPropertyValue>();
    ASSERT_TRUE(value->addPropertyType(type));
    EXPECT_EQ(&value->getName(), &type->getName());
    EXPECT_EQ(value->getDisplayName(), "P(G)");
    type->setName("Q");
    type->setUsage("U");
    EXPECT_EQ(value->getName(), "Q");
    EXPECT_EQ(value->getDisplayName(), "U.Q");
    ASSERT_TRUE(value->removePropertyType(type));
    EXPECT_EQ(value->getName(), "");
    EXPECT_EQ(value->getDisplayName(), "");
}

TEST(QORPropertyValue, RefusesANameInEveryState) {
    Graph graph;
    auto* const value = graph.make<QORPropertyValue>();
    expectSetNameThrowsOne(*value);
    ASSERT_TRUE(value->addPropertyType(graph.make<QORPropertyType>("P")));
    expectSetNameThrowsOne(*value);
    auto* const element = graph.make<QORClass>();
    ASSERT_TRUE(element->addPropertyValue(value));
    expectSetNameThrowsOne(*value);
    EXPECT_EQ(value->getElement(), element);
    ASSERT_TRUE(value->removePropertyType(value->getPropertyType()));
    expectSetNameThrowsOne(*value);
}

TEST(QORPropertyValue, IsFoundInItsElementByTheNameOfItsType) {
    Graph graph;
    auto* const element = graph.make<QORClass>();
    auto* const value = graph.mortal<QORPropertyValue>("value");
    ASSERT_TRUE(element->addPropertyValue(graph.make<QORPropertyValue>()) &&
                element->addPropertyValue(value) && value->addPropertyType(graph.make<QORPropertyType>("P")));
    EXPECT_FALSE(element->removePropertyValue("Q", nullptr));
    EXPECT_TRUE(element->removePropertyValue("P", nullptr));
    EXPECT_EQ(value->getElement(), nullptr);
    EXPECT_EQ(element->getPropertyValueCount(), 1);
    EXPECT_EQ(graph.deaths, Labels()); // its type refers to it
}

TEST(QORPropertyValue, SortedViewsChangeWhenATypeGetsANewName) {
    Graph graph;
    auto* const element = graph.make<QORClass>();
    auto* const typeA = graph.make<QORPropertyType>("A");
    auto* const typeB = graph.make<QORPropertyType>("B");
    auto* const b = valueOf(graph, *element, typeB, 1);
    auto* const a = valueOf(graph, *element, typeA, 2);
    QORSortedPropertyValuesLinkTree view;
    element->getSortedPropertyValues(view);
    EXPECT_EQ(listOf(view), (Objects{a, b}));
    typeA->setName("C");
    element->getSortedPropertyValues(view);
    EXPECT_EQ(listOf(view), (Objects{b, a}));
    QORPropertyValueByPosition byPosition;
    b->setPosition(2);
    element->getPropertyValueByPosition(byPosition);
    EXPECT_EQ(listOf(byPosition), (Objects{b, a}));
    typeA->setName("A");
    element->getPropertyValueByPosition(byPosition);
    EXPECT_EQ(listOf(byPosition), (Objects{a, b}));
}

TEST(QORPropertyValue, IsTakenApartInOrder) {
    expectTakenApart<QORPropertyValue>(linkEnds, {"type", "owner"}, {"type"});
}

TEST(QORPropertyValue, ComparesValuePositionAndTheNameOfItsType) {
    Graph graph;
    auto* const value = graph.make<QORPropertyValue>();
    value->setValue("v");
    value->setPosition(1);
    QORPropertyValue copy(*value);
    EXPECT_EQ(copy.getValue(), "v");
    EXPECT_EQ(copy.getPosition(), 1);
    EXPECT_EQ(copy, *value);
    copy.setValue("w");
    EXPECT_NE(copy, *value);
    copy.setFrom(*value);
    copy.setPosition(2);
    EXPECT_NE(copy, *value);
    copy = *value;
    EXPECT_EQ(copy, *value);
    ASSERT_TRUE(value->addPropertyType(graph.make<QORPropertyType>("P")));
    EXPECT_NE(copy, *value);
    auto* const other = graph.make<QORPropertyValue>();
    *other = *value;
    EXPECT_EQ(other->getPropertyType(), nullptr);
    ASSERT_TRUE(other->addPropertyType(graph.make<QORPropertyType>("P")));
    EXPECT_EQ(*other, *value);
}

TEST(QORPropertyValue, ReencodesItsValueAndNeverANameThatIsItsTypes) {
    Graph graph;
    auto* const element = graph.make<QORClass>();
    auto* const value = graph.make<QORPropertyValue>();
    auto* const type = graph.make<QORPropertyType>(inUtf8);
    value->setValue(inUtf8);
    ASSERT_TRUE(value->addPropertyType(type) && element->addPropertyValue(value));
    Recoding recode;
    recode(*element);
    EXPECT_EQ(value->getValue(), inLatin1);
    EXPECT_EQ(type->getName(), inUtf8);
    EXPECT_EQ(recode.converted, 1 + (element->getCppMultiplicity().length ? 1 : 0));
    value->setValue(notInLatin1);
    recode(*value);
    EXPECT_EQ(value->getValue(), notInLatin1);
    EXPECT_EQ(recode.errors, 1);
}
