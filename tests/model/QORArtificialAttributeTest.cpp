#include "ModelTestSupport.h"

#include <qor/QORArtificialAttribute.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORClass.h>
#include <qor/QORIndexMember.h>

TEST(QORArtificialAttribute, IsAnAttributeButEqualsNone) {
    graph::expectConcrete<QORArtificialAttribute>(QORElementType::ARTIFICIAL_ATTRIBUTE, 57,
                                                  "ArtificialAttribute", QORAttribute::getStaticMetaClass());
    expectClassesUnequal<QORArtificialAttribute, QORAttribute>();
}

TEST(QORArtificialAttribute, ComparesAndTakesOverWhatAnAttributeHolds) {
    using Class = QORArtificialAttribute;
    expectAttribute<Class>(&Class::getExtraConstraint, &Class::setExtraConstraint, "", "A");
    expectAttribute<Class>(&Class::getCppContainment, &Class::setCppContainment,
                           QORContainmentType::UNSPECIFIED, QORContainmentType::BY_REFERENCE);
    expectAttribute<Class>(&Class::getPosition, &Class::setPosition, short{0}, short{1});
}

TEST(QORArtificialAttribute, HasTheOwnersOfAnAttribute) {
    Graph graph;
    auto* const attribute = graph.make<QORArtificialAttribute>("A");
    auto* const owner = graph.make<QORClass>();
    auto* const role = graph.make<QORAssociationRole>();
    ASSERT_TRUE(owner->addAttribute(attribute) && role->addQualifierAttribute(attribute));
    ASSERT_TRUE(role->addQualifierAttribute(graph.make<QORAttribute>("B")));
    expectNameRefused(*attribute, "B", "AssociationRole", "Attribute");
    expectLeaves(*attribute, {role, owner});
}

TEST(QORArtificialAttribute, DeletedWithTwoOwnersItTakesAllApart) {
    Graph graph;
    auto* const attribute = new QORArtificialAttribute;
    auto* const owner = graph.make<QORClass>();
    auto* const role = graph.make<QORAssociationRole>();
    ASSERT_TRUE(owner->addAttribute(attribute) && role->addQualifierAttribute(attribute));
    ASSERT_TRUE(attribute->addIndexMember(graph.mortal<QORIndexMember>("index member")));
    delete attribute; // this layer leaves the role, the one below the class
    EXPECT_EQ(graph.deaths, Labels{"index member"});
    EXPECT_FALSE(owner->isReferenced());
    EXPECT_FALSE(role->isReferenced());
}

TEST(QORArtificialAttribute, TextsAreReencodedEachOnItsOwn) {
    using Class = QORArtificialAttribute;
    expectTextsRecoded<Class>({{&Class::getExtraConstraint, &Class::setExtraConstraint},
                               {&Class::getInitialValue, &Class::setInitialValue}});
}
