#include "Expectations.h"

#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORGrouping.h>
#include <qor/QORGroupingByPosition.h>

namespace {

void link(Graph& graph, QORGrouping& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "class", object, &QORGrouping::addAssociatedClass);
    linkFurtherOwner(graph, owners, "parent", object, &QORGrouping::addParentGrouping);
    ASSERT_TRUE(object.addChildGrouping(graph.mortal<QORGrouping>("child b")));
    ASSERT_TRUE(object.addChildGrouping(graph.mortal<QORGrouping>("child a")));
    ASSERT_TRUE(object.addLeafAttribute(graph.mortal<QORAttribute>("attribute")));
    ASSERT_TRUE(object.addLeafAssociationRole(graph.mortal<QORAssociationRole>("role")));
}

QORString shown(QORGroupingType type, char const* multiplicity) {
    QORGrouping grouping;
    grouping.setName("grouping");
    grouping.setGroupingType(type);
    grouping.setMultiplicity(multiplicity);
    return grouping.getDisplayName();
}

/// An attribute that shows something else than its name.
class Titled : public QORAttribute {
public:
    QORString getDisplayName() const override { return "title"; }
};

} // namespace

TEST(QORGrouping, ItsClassGoesBeforeItsParent) {
    Graph graph;
    auto* const grouping = graph.make<QORGrouping>();
    auto* const owner = graph.make<QORClass>();
    auto* const parent = graph.make<QORGrouping>();
    ASSERT_TRUE(parent->addChildGrouping(grouping));
    expectParent(*grouping, parent, 1);
    ASSERT_TRUE(owner->addGrouping(grouping));
    expectLeaves(*grouping, {owner, parent});
    EXPECT_FALSE(owner->isReferenced());
    EXPECT_FALSE(parent->isReferenced());
}

TEST(QORGrouping, IsTakenApartInOrder) {
    expectTakenApart<QORGrouping>(
        link, {"class", "parent", "role", "attribute", "child b", "child a", "base", "synonym", "note"},
        {"note", "synonym", "base", "child b", "child a", "role", "attribute"});
}

TEST(QORGrouping, ReachesItsChildrenInTheirOrder) {
    expectChildrenReached<QORGrouping>(link, {"note", "synonym", "child b", "child a"});
}

TEST(QORGrouping, DeletedWithTwoOwnersItLeavesItsChildrenUnlinked) {
    Graph graph;
    auto* const grouping = new QORGrouping;
    link(graph, *grouping, Owners::NONE);
    Objects const left{grouping->getChildGrouping(0), grouping->getChildGrouping(1),
                       grouping->getLeafAssociationRole(), grouping->getLeafAttribute()};
    auto* const owner = graph.make<QORClass>();
    auto* const parent = graph.make<QORGrouping>();
    ASSERT_TRUE(owner->addGrouping(grouping) && parent->addChildGrouping(grouping));
    delete grouping;
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base"}));
    for (QORObject const* const each : left)
        EXPECT_FALSE(each->isReferenced());
    EXPECT_FALSE(owner->isReferenced());
    EXPECT_FALSE(parent->isReferenced());
}

TEST(QORGrouping, DeletingTheRootDeletesTheTree) {
    Graph graph;
    auto* const owner = new QORClass;
    auto* const root = graph.mortal<QORGrouping>("root");
    auto* const middle = graph.mortal<QORGrouping>("middle");
    ASSERT_TRUE(owner->addGrouping(root) && root->addChildGrouping(middle) &&
                middle->addChildGrouping(graph.mortal<QORGrouping>("leaf")));
    delete owner;
    EXPECT_EQ(graph.deaths, (Labels{"leaf", "middle", "root"}));
}

TEST(QORGrouping, ANamedChildGoesToTheEndUnlessItHasAClass) {
    Graph graph;
    auto* const parent = graph.make<QORGrouping>();
    auto* const owner = graph.make<QORClass>();
    auto* const first = graph.make<QORGrouping>("A");
    auto* const second = graph.make<QORGrouping>("A");
    ASSERT_TRUE(parent->addChildGrouping(first) && parent->addChildGrouping(second));
    first->setName("A");
    EXPECT_EQ(parent->getChildGrouping(1), first);
    EXPECT_EQ(first->getParentGrouping(), parent);
    ASSERT_TRUE(owner->addGrouping(second));
    second->setName("B");
    EXPECT_EQ(second->getName(), "B");
    EXPECT_EQ(parent->getChildGrouping(0), second);
    EXPECT_EQ(owner->getGrouping(), second);
    expectParent(*second, owner, 2);
}

TEST(QORGrouping, ChildrenComeByPosition) {
    expectSortedByPosition<QORGrouping, QORGrouping, QORGroupingByPosition>(
        &QORGrouping::addChildGrouping, &QORGrouping::getChildGroupingByPosition);
}

TEST(QORGrouping, ShowsItsType) {
    EXPECT_EQ(shown(QORGroupingType::SEQUENCE, "1"), "(,)");
    EXPECT_EQ(shown(QORGroupingType::OR, "1"), "(|)");
    EXPECT_EQ(shown(QORGroupingType::ALL, "1"), "(&)");
    EXPECT_EQ(shown(QORGroupingType::LEAF, "1"), "");
    EXPECT_EQ(shown(static_cast<QORGroupingType>(7), "0..1"), "?");
    EXPECT_EQ(shown(static_cast<QORGroupingType>(-1), "0..1"), "?");
}

TEST(QORGrouping, ShowsItsMultiplicity) {
    EXPECT_EQ(shown(QORGroupingType::OR, "0..1"), "(|)?");
    EXPECT_EQ(shown(QORGroupingType::OR, "0..*"), "(|)*");
    EXPECT_EQ(shown(QORGroupingType::OR, "1..*"), "(|)+");
    EXPECT_EQ(shown(QORGroupingType::OR, "2..3"), "(|){2..3}");
    EXPECT_EQ(shown(QORGroupingType::OR, ""), "(|){}");
    EXPECT_EQ(shown(QORGroupingType::OR, "1 "), "(|){1 }");
    EXPECT_EQ(shown(QORGroupingType::SEQUENCE, "0..*"), "(,)*");
    EXPECT_EQ(shown(QORGroupingType::ALL, "1..*"), "(&)+");
    EXPECT_EQ(QORGrouping().getDisplayName(), "{0}");
}

TEST(QORGrouping, ChildrenAreNotShown) {
    Graph graph;
    auto* const grouping = graph.make<QORGrouping>();
    grouping->setGroupingType(QORGroupingType::ALL);
    ASSERT_TRUE(grouping->addChildGrouping(graph.make<QORGrouping>("A")));
    EXPECT_EQ(grouping->getDisplayName(), "(&){0}");
}

TEST(QORGrouping, ALeafShowsItsRoleOrElseItsAttribute) {
    Graph graph;
    auto* const grouping = graph.make<QORGrouping>();
    auto* const role = graph.make<QORAssociationRole>("role");
    auto* const other = graph.make<QORAssociationRole>();
    auto* const association = graph.make<QORAssociation>();
    grouping->setMultiplicity("0..*");
    ASSERT_TRUE(grouping->addLeafAttribute(graph.make<Titled>("attribute")));
    EXPECT_EQ(grouping->getDisplayName(), "title*");
    ASSERT_TRUE(grouping->addLeafAssociationRole(role));
    EXPECT_EQ(grouping->getDisplayName(), "*"); // a role without class and association shows nothing
    ASSERT_TRUE(association->addAssociationRole(role) && association->addAssociationRole(other) &&
                other->addAssociatedClass(graph.make<QORClass>("A")));
    EXPECT_EQ(grouping->getDisplayName(), "from_A*");
    grouping->setGroupingType(QORGroupingType::SEQUENCE);
    EXPECT_EQ(grouping->getDisplayName(), "(,)*");
}
