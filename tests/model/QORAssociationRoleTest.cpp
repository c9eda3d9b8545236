#include "Expectations.h"

#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>
#include <qor/QORAttributeByPosition.h>
#include <qor/QORClass.h>
#include <qor/QORForeignKey.h>
#include <qor/QORGrouping.h>

namespace {

void link(Graph& graph, QORAssociationRole& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "association", object, &QORAssociationRole::addAssociation);
    ASSERT_TRUE(object.addGrouping(graph.mortal<QORGrouping>("grouping")));
    ASSERT_TRUE(object.addQualifierAttribute(graph.mortal<QORAttribute>("b qualifier")));
    ASSERT_TRUE(object.addQualifierAttribute(graph.mortal<QORAttribute>("a qualifier")));
    ASSERT_TRUE(object.addAssociatedClass(graph.mortal<QORClass>("class")));
    ASSERT_TRUE(object.addForeignKey(graph.mortal<QORForeignKey>("foreign key")));
}

/// A role at a class, in an association if there is one.
QORAssociationRole* roleAt(Graph& graph, QORAssociation* association, QORClass* owner) {
    auto* const role = graph.make<QORAssociationRole>("role");
    EXPECT_TRUE(!association || association->addAssociationRole(role));
    EXPECT_TRUE(!owner || role->addAssociatedClass(owner));
    return role;
}

} // namespace

TEST(QORAssociationRole, IsTakenApartInOrder) {
    expectTakenApart<QORAssociationRole>(
        link,
        {"association", "foreign key", "class", "a qualifier", "b qualifier", "grouping", "base", "synonym",
         "note"},
        {"note", "synonym", "base", "a qualifier", "b qualifier", "foreign key", "class", "grouping"});
}

TEST(QORAssociationRole, ReachesItsQualifiers) {
    expectChildrenReached<QORAssociationRole>(link, {"note", "synonym", "a qualifier", "b qualifier"});
}

TEST(QORAssociationRole, AQualifierThatIsAlsoAFeatureSurvives) {
    Graph graph;
    auto* const role = new QORAssociationRole;
    auto* const attribute = graph.make<QORAttribute>();
    auto* const owner = graph.make<QORClass>();
    ASSERT_TRUE(role->addQualifierAttribute(attribute) && owner->addAttribute(attribute));
    delete role;
    expectParent(*attribute, owner, 1);
}

TEST(QORAssociationRole, QualifiersComeByPosition) {
    expectSortedByPosition<QORAssociationRole, QORAttribute, QORAttributeByPosition>(
        &QORAssociationRole::addQualifierAttribute, &QORAssociationRole::getQualifierAttributeByPosition);
}

TEST(QORAssociationRole, ANamedRoleGoesToTheEndOfItsAssociation) {
    Graph graph;
    auto* const association = graph.make<QORAssociation>();
    auto* const first = graph.make<QORAssociationRole>("A");
    auto* const second = graph.make<QORAssociationRole>();
    ASSERT_TRUE(association->addAssociationRole(first) && association->addAssociationRole(second));
    first->setName("");
    EXPECT_EQ(association->getAssociationRole(1), first);
    EXPECT_EQ(first->getAssociation(), association);
    second->setName("B");
    EXPECT_EQ(association->getAssociationRole(1), second);
    Recoding recode;
    recode(*association);
    EXPECT_EQ(association->getAssociationRole(1), second);
    first->setName("B");
    second->setName("");
    recode(*association); // names the named one again
    EXPECT_EQ(association->getAssociationRole(0), second);
    EXPECT_EQ(association->getAssociationRole(1), first);
    EXPECT_EQ(association->getAssociationRoleCount(), 2);
}

TEST(QORAssociationRole, WithoutAssociationItShowsItsClass) {
    Graph graph;
    EXPECT_EQ(roleAt(graph, nullptr, graph.make<QORClass>("A"))->getDisplayName(), "A");
    EXPECT_EQ(roleAt(graph, nullptr, nullptr)->getDisplayName(), "");
}

TEST(QORAssociationRole, InAnAssociationItShowsTheOtherClasses) {
    Graph graph;
    auto* const association = graph.make<QORAssociation>();
    auto* const a = graph.make<QORClass>("A");
    auto* const b = graph.make<QORClass>("B");
    auto* const atA = roleAt(graph, association, a);
    EXPECT_EQ(atA->getDisplayName(), "from_");
    auto* const atB = roleAt(graph, association, b);
    EXPECT_EQ(atA->getDisplayName(), "from_B");
    EXPECT_EQ(atB->getDisplayName(), "from_A");
    auto* const atC = roleAt(graph, association, graph.make<QORClass>("C"));
    auto* const atNothing = roleAt(graph, association, nullptr);
    EXPECT_EQ(atA->getDisplayName(), "from_B_C");
    EXPECT_EQ(atC->getDisplayName(), "from_A_B");
    EXPECT_EQ(atNothing->getDisplayName(), "from_A_B_C");
}

TEST(QORAssociationRole, ShowsEachNameOnceAndItsOwnClassIfAnotherRoleStandsThere) {
    Graph graph;
    auto* const association = graph.make<QORAssociation>();
    auto* const a = graph.make<QORClass>("A");
    auto* const first = roleAt(graph, association, a);
    roleAt(graph, association, a);
    EXPECT_EQ(first->getDisplayName(), "from_A");
    roleAt(graph, association, graph.make<QORClass>("A"));
    EXPECT_EQ(first->getDisplayName(), "from_A");
}
