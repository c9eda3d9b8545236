#include "ModelTestSupport.h"

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
    ASSERT_TRUE(object.addGrouping(hung<QORGrouping>(graph, "grouping")));
    ASSERT_TRUE(object.addQualifierAttribute(hung<QORAttribute>(graph, "b qualifier")));
    ASSERT_TRUE(object.addQualifierAttribute(hung<QORAttribute>(graph, "a qualifier")));
    ASSERT_TRUE(object.addAssociatedClass(hung<QORClass>(graph, "class")));
    ASSERT_TRUE(object.addForeignKey(hung<QORForeignKey>(graph, "foreign key")));
}

/// A role at a class, in an association if there is one.
QORAssociationRole* roleAt(Graph& graph, QORAssociation* association, QORClass* owner) {
    auto* const role = graph.make<QORAssociationRole>("role");
    EXPECT_TRUE(!association || association->addAssociationRole(role));
    EXPECT_TRUE(!owner || role->addAssociatedClass(owner));
    return role;
}

} // namespace

TEST(QORAssociationRole, IsAModelObject) {
    graph::expectConcrete<QORAssociationRole>(QORElementType::ASSOCIATION_ROLE, 18, "AssociationRole",
                                              QORModelObject::getStaticMetaClass());
}

TEST(QORAssociationRole, AttributesHaveTheirFirstValuesAndCountForEquality) {
    using Class = QORAssociationRole;
    expectAttribute<Class>(&Class::getSource, &Class::setSource, false, true);
    expectAttribute<Class>(&Class::getMultiplicity, &Class::setMultiplicity, "0", "1..*");
    expectAttribute<Class>(&Class::getNavigable, &Class::setNavigable, true, false);
    expectAttribute<Class>(&Class::getOrdered, &Class::setOrdered, false, true);
    expectAttribute<Class>(&Class::getExtraConstraint, &Class::setExtraConstraint, "", "A");
    expectAttribute<Class>(&Class::getCppScope, &Class::setCppScope, QORVisibilityType::PUBLIC,
                           QORVisibilityType::PRIVATE);
    expectAttribute<Class>(&Class::getCppContainment, &Class::setCppContainment,
                           QORContainmentType::UNSPECIFIED, QORContainmentType::BY_REFERENCE);
    expectAttribute<Class>(&Class::getCppStatic, &Class::setCppStatic, false, true);
    expectAttribute<Class>(&Class::getCppFriend, &Class::setCppFriend, false, true);
    expectAttribute<Class>(&Class::getPosition, &Class::setPosition, short{0}, short{1});
    expectAttribute<Class>(&Class::getOnInsert, &Class::setOnInsert, QORReferentialActionType::UNSPECIFIED,
                           QORReferentialActionType::NONE);
    expectAttribute<Class>(&Class::getOnUpdate, &Class::setOnUpdate, QORReferentialActionType::UNSPECIFIED,
                           QORReferentialActionType::RESTRICT);
    expectAttribute<Class>(&Class::getOnDelete, &Class::setOnDelete, QORReferentialActionType::UNSPECIFIED,
                           QORReferentialActionType::CASCADE);
    EXPECT_EQ(static_cast<int>(QORReferentialActionType::UNSPECIFIED), 0);
}

TEST(QORAssociationRole, TheRecordedDefaultOfTheMultiplicityIsNotTheFirstValue) {
    EXPECT_EQ(recordedDefault(QORAttributeType::ASSOCIATION_ROLE__MULTIPLICITY), "MUL_UNSPECIFIED");
    EXPECT_EQ(QORAssociationRole().getMultiplicity(), "0");
}

TEST(QORAssociationRole, TextsAreReencodedEachOnItsOwn) {
    using Class = QORAssociationRole;
    expectTextsRecoded<Class>({{&Class::getMultiplicity, &Class::setMultiplicity},
                               {&Class::getExtraConstraint, &Class::setExtraConstraint}});
}

TEST(QORAssociationRole, CopiesHaveNoLinks) {
    expectCopiesUnlinked<QORAssociationRole>(link);
}

TEST(QORAssociationRole, ItsAssociationIsItsParent) {
    Graph graph;
    auto* const role = graph.make<QORAssociationRole>();
    auto* const association = graph.make<QORAssociation>();
    ASSERT_TRUE(role->addAssociatedClass(graph.make<QORClass>()));
    expectParent(*role, nullptr, 0);
    ASSERT_TRUE(role->addAssociation(association));
    EXPECT_FALSE(graph.make<QORAssociation>()->addAssociationRole(role));
    expectLeaves(*role, {association});
    EXPECT_FALSE(association->isReferenced());
}

TEST(QORAssociationRole, EachEndCountsAsAReference) {
    using Class = QORAssociationRole;
    expectEndCounts<Class, QORAssociation>(&Class::addAssociation);
    expectEndCounts<Class, QORForeignKey>(&Class::addForeignKey);
    expectEndCounts<Class, QORClass>(&Class::addAssociatedClass);
    expectEndCounts<Class, QORAttribute>(&Class::addQualifierAttribute);
    expectEndCounts<Class, QORGrouping>(&Class::addGrouping);
}

TEST(QORAssociationRole, IsTakenApartInOrder) {
    expectTakenApart<QORAssociationRole>(
        link,
        {"association", "foreign key", "class", "a qualifier", "b qualifier", "grouping", "base", "synonym",
         "note"},
        {"note", "synonym", "base", "a qualifier", "b qualifier", "foreign key", "class", "grouping"});
    expectIsolationFreesFarEnds<QORAssociationRole>(link);
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

TEST(QORAssociationRole, QualifierNamesAreTakenOnce) {
    Graph graph;
    auto* const role = graph.make<QORAssociationRole>();
    auto* const other = graph.make<QORAttribute>("A");
    ASSERT_TRUE(role->addQualifierAttribute(graph.make<QORAttribute>("A")));
    EXPECT_FALSE(role->addQualifierAttribute(other));
    EXPECT_FALSE(other->isReferenced());
    EXPECT_EQ(role->getQualifierAttributeCount(), 1);
}

TEST(QORAssociationRole, QualifiersComeByPosition) {
    expectSortedByPosition<QORAssociationRole, QORAttribute, QORAttributeByPosition>(
        &QORAssociationRole::addQualifierAttribute, &QORAssociationRole::getQualifierAttributeByPosition);
}

TEST(QORAssociationRole, RefusesASecondForeignKeyAndClass) {
    Graph graph;
    auto* const role = graph.make<QORAssociationRole>();
    auto* const key = graph.make<QORForeignKey>();
    auto* const otherKey = graph.make<QORForeignKey>();
    auto* const otherClass = graph.make<QORClass>();
    ASSERT_TRUE(role->addForeignKey(key) && role->addAssociatedClass(graph.make<QORClass>()));
    EXPECT_FALSE(role->addForeignKey(otherKey));
    EXPECT_FALSE(graph.make<QORAssociationRole>()->addForeignKey(key));
    EXPECT_FALSE(role->addAssociatedClass(otherClass));
    EXPECT_EQ(role->getForeignKey(), key);
    EXPECT_FALSE(otherKey->isReferenced());
    EXPECT_FALSE(otherClass->isReferenced());
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

TEST(QORAssociationRole, MayShareItsNameAndBeNamedWithoutAssociation) {
    Graph graph;
    auto* const association = graph.make<QORAssociation>();
    auto* const role = graph.make<QORAssociationRole>();
    role->setName("A");
    EXPECT_EQ(role->getName(), "A");
    ASSERT_TRUE(association->addAssociationRole(role));
    ASSERT_TRUE(association->addAssociationRole(graph.make<QORAssociationRole>("B")));
    role->setName("B");
    EXPECT_EQ(role->getName(), "B");
    EXPECT_EQ(role->getAssociation(), association);
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
