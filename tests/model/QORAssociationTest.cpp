#include "Expectations.h"

#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAssociationRoleByPosition.h>
#include <qor/QORClass.h>

namespace {

void link(Graph& graph, QORAssociation& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "package", object, &QORModelElement::addDesignPackage);
    ASSERT_TRUE(object.addAssociationRole(graph.mortal<QORAssociationRole>("role b")));
    ASSERT_TRUE(object.addAssociationRole(graph.mortal<QORAssociationRole>("role a")));
    ASSERT_TRUE(object.addAssociatedClass(graph.mortal<QORClass>("class")));
}

/// An association of two classes A and B, with a role at each.
class QORAssociationOfTwo : public testing::Test {
protected:
    QORAssociationOfTwo() {
        EXPECT_TRUE(association->addAssociationRole(atA) && association->addAssociationRole(atB));
        EXPECT_TRUE(atA->addAssociatedClass(a) && atB->addAssociatedClass(b));
    }

    QORString named(char const* role0, char const* role1, bool source1) {
        atA->QORObject::setName(role0); // without moving it in its association
        atB->QORObject::setName(role1);
        atB->setSource(source1);
        return association->getDisplayName();
    }

    Graph graph;
    QORAssociation* const association = graph.make<QORAssociation>("association");
    QORClass* const a = graph.make<QORClass>("A");
    QORClass* const b = graph.make<QORClass>("B");
    QORAssociationRole* const atA = graph.make<QORAssociationRole>();
    QORAssociationRole* const atB = graph.make<QORAssociationRole>();
};

/// A class that shows something else than its name.
class Titled : public QORClass {
public:
    QORString getDisplayName() const override { return "title"; }
};

/// The display name of an association with a role for each of the classes; a null makes a role without class.
QORString nameOf(Graph& graph, std::vector<QORClass*> const& classes) {
    auto* const association = graph.make<QORAssociation>();
    for (QORClass* const each : classes) {
        auto* const role = graph.make<QORAssociationRole>("role");
        EXPECT_TRUE(association->addAssociationRole(role));
        EXPECT_TRUE(!each || role->addAssociatedClass(each));
    }
    return association->getDisplayName();
}

} // namespace

TEST(QORAssociation, IsTakenApartInOrder) {
    expectTakenApart<QORAssociation>(link,
                                     {"class", "role b", "role a", "package", "base", "synonym", "note"},
                                     {"note", "synonym", "base", "role b", "role a", "class"});
}

TEST(QORAssociation, ReachesItsRolesInTheirOrder) {
    expectChildrenReached<QORAssociation>(link, {"note", "synonym", "role b", "role a"});
}

TEST(QORAssociation, PairsWithOneClass) {
    Graph graph;
    auto* const association = graph.make<QORAssociation>();
    auto* const owner = graph.make<QORClass>();
    auto* const other = graph.make<QORClass>();
    ASSERT_TRUE(association->addAssociatedClass(owner));
    EXPECT_EQ(owner->getAssociation(), association);
    EXPECT_FALSE(association->addAssociatedClass(other));
    EXPECT_FALSE(graph.make<QORAssociation>()->addAssociatedClass(owner));
    EXPECT_FALSE(other->isReferenced());
    EXPECT_EQ(association->getAssociatedClass(), owner);
}

TEST(QORAssociation, HoldsRolesInTheOrderOfTheirComing) {
    Graph graph;
    auto* const association = graph.make<QORAssociation>();
    auto* const first = graph.make<QORAssociationRole>("A");
    auto* const second = graph.make<QORAssociationRole>("A");
    EXPECT_TRUE(second->addAssociation(association));
    EXPECT_TRUE(association->addAssociationRole(first));
    EXPECT_FALSE(association->addAssociationRole(first));
    EXPECT_EQ(association->getAssociationRole(0), second);
    EXPECT_EQ(association->getAssociationRole(1), first);
    EXPECT_EQ(association->getAssociationRoleCount(), 2);
}

TEST(QORAssociation, RolesComeByPosition) {
    expectSortedByPosition<QORAssociation, QORAssociationRole, QORAssociationRoleByPosition>(
        &QORAssociation::addAssociationRole, &QORAssociation::getAssociationRoleByPosition);
}

TEST_F(QORAssociationOfTwo, OfUnnamedRolesTheSecondGoesFirstIfItIsTheSource) {
    EXPECT_EQ(named("", "", false), "A_B");
    EXPECT_EQ(named("", "", true), "B_A");
}

TEST_F(QORAssociationOfTwo, OfNamedRolesTheSecondGoesFirstIfItIsTheSource) {
    EXPECT_EQ(named("x", "y", false), "A_y_B");
    EXPECT_EQ(named("x", "y", true), "B_x_A");
}

TEST_F(QORAssociationOfTwo, TheOnlyNamedRoleGoesSecond) {
    EXPECT_EQ(named("x", "", false), "B_x_A");
    EXPECT_EQ(named("x", "", true), "B_x_A");
    EXPECT_EQ(named("", "owns", false), "A_owns_B");
    EXPECT_EQ(named("", "owns", true), "A_owns_B");
}

TEST_F(QORAssociationOfTwo, WhetherTheFirstRoleIsTheSourceDoesNotCount) {
    atA->setSource(true);
    EXPECT_EQ(named("", "", false), "A_B");
    EXPECT_EQ(named("", "", true), "B_A");
    EXPECT_EQ(named("x", "y", false), "A_y_B");
    EXPECT_EQ(named("x", "", false), "B_x_A");
}

TEST_F(QORAssociationOfTwo, ARoleWithoutClassLeavesTheOtherClass) {
    ASSERT_TRUE(atA->removeAssociatedClass(a));
    EXPECT_EQ(named("x", "y", true), "B");
    ASSERT_TRUE(atB->removeAssociatedClass(b));
    EXPECT_EQ(named("x", "y", true), "");
}

TEST_F(QORAssociationOfTwo, BothRolesMayStandAtOneClass) {
    ASSERT_TRUE(atB->removeAssociatedClass(b) && atB->addAssociatedClass(a));
    EXPECT_EQ(named("", "x", false), "A_x_A");
}

TEST(QORAssociation, OtherNumbersOfRolesGiveTheSortedClasses) {
    Graph graph;
    auto* const a = graph.make<QORClass>("A");
    auto* const b = graph.make<QORClass>("B");
    auto* const c = graph.make<QORClass>("C");
    EXPECT_EQ(nameOf(graph, {}), "");
    EXPECT_EQ(nameOf(graph, {b}), "B");
    EXPECT_EQ(nameOf(graph, {c, a, b}), "A_B_C");
    EXPECT_EQ(nameOf(graph, {a, a, b}), "A_B");
    EXPECT_EQ(nameOf(graph, {c, nullptr, a}), "A_C");
    EXPECT_EQ(nameOf(graph, {nullptr, nullptr, nullptr}), "");
    EXPECT_EQ(nameOf(graph, {b, a, a, b}), "A_B");
}

TEST(QORAssociation, ANamesakeOfAClassStaysOut) {
    Graph graph;
    EXPECT_EQ(
        nameOf(graph, {graph.make<QORClass>("A"), graph.make<QORClass>("B"), graph.make<QORClass>("A")}),
        "A_B");
}

TEST(QORAssociation, ItsDisplayNameIsMadeOfNamesAndNotOfDisplayNames) {
    Graph graph;
    auto* const titled = graph.make<Titled>("T");
    auto* const a = graph.make<QORClass>("A");
    EXPECT_EQ(titled->getDisplayName(), "title");
    EXPECT_EQ(nameOf(graph, {titled}), "T");
    EXPECT_EQ(nameOf(graph, {titled, a}), "T_role_A");
    EXPECT_EQ(nameOf(graph, {titled, a, a}), "A_T");
}
