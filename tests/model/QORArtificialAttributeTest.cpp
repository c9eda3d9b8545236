#include "Expectations.h"

#include <qor/QORArtificialAttribute.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORClass.h>
#include <qor/QORIndexMember.h>

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
