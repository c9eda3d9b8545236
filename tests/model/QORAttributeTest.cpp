#include "Expectations.h"

#include <qor/QORAliasClassifier.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORClassMap.h>
#include <qor/QORGeneralization.h>
#include <qor/QORGrouping.h>
#include <qor/QORIndexMember.h>

namespace {

void link(Graph& graph, QORAttribute& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "role", object, &QORAttribute::addQualifierOfAssociationRole);
    if (owners == Owners::ALL)
        linkOwnerMade<QORClass>(graph, owners, "class", object, &QORFeature::addClassifier);
    ASSERT_TRUE(object.addType(graph.mortal<QORBaseType>("type")));
    ASSERT_TRUE(object.addDestinationOfClassMap(graph.mortal<QORClassMap>("destination class map")));
    ASSERT_TRUE(object.addSourceOfClassMap(graph.mortal<QORClassMap>("source class map")));
    ASSERT_TRUE(object.addKey(graph.mortal<QORCandidateKey>("key")));
    ASSERT_TRUE(object.addDiscriminatorOfGeneralization(graph.mortal<QORGeneralization>("generalization")));
    ASSERT_TRUE(object.addGrouping(graph.mortal<QORGrouping>("grouping")));
    ASSERT_TRUE(object.addIndexMember(graph.mortal<QORIndexMember>("index member")));
    ASSERT_TRUE(
        object.addSourceOfAssociationRoleNameMap(graph.mortal<QORAssociationRoleNameMap>("source name map")));
    ASSERT_TRUE(object.addDestinationOfAssociationRoleNameMap(
        graph.mortal<QORAssociationRoleNameMap>("destination name map")));
}

} // namespace

TEST(QORAttribute, ItsRoleGoesBeforeItsClass) {
    Graph graph;
    auto* const attribute = graph.make<QORAttribute>();
    auto* const role = graph.make<QORAssociationRole>();
    auto* const owner = graph.make<QORClass>();
    ASSERT_TRUE(owner->addAttribute(attribute));
    expectParent(*attribute, owner, 1);
    ASSERT_TRUE(role->addQualifierAttribute(attribute));
    expectLeaves(*attribute, {role, owner});
    EXPECT_EQ(role->getQualifierAttributeCount(), 0);
    EXPECT_EQ(owner->getAttributeCount(), 0);
}

TEST(QORAttribute, IsTakenApartInOrder) {
    expectTakenApart<QORAttribute>(
        link,
        {"role", "destination name map", "source name map", "index member", "grouping", "generalization",
         "key", "source class map", "destination class map", "type", "class", "base", "synonym", "note"},
        {"note", "synonym", "base", "type", "destination name map", "source name map", "index member",
         "grouping", "generalization", "key", "source class map", "destination class map"});
}

TEST(QORAttribute, ReachesWhatAModelObjectReaches) {
    expectChildrenReached<QORAttribute>(link, {"note", "synonym"});
}

TEST(QORAttribute, DeletedWithTwoOwnersItDeletesWhatAFeatureDeletesAndUnlinksTheRest) {
    Graph graph;
    auto* const attribute = new QORAttribute;
    link(graph, *attribute, Owners::NONE);
    Objects const left{attribute->getIndexMember(0), attribute->getKey(0), attribute->getSourceOfClassMap(0)};
    auto* const role = graph.make<QORAssociationRole>();
    auto* const owner = graph.make<QORClass>();
    ASSERT_TRUE(role->addQualifierAttribute(attribute) && owner->addAttribute(attribute));
    delete attribute;
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base", "type"}));
    for (QORObject const* const each : left)
        EXPECT_FALSE(each->isReferenced());
    EXPECT_FALSE(role->isReferenced());
    EXPECT_FALSE(owner->isReferenced());
}

TEST(QORAttribute, WithTwoOwnersItDiesWithTheSecondOne) {
    Graph graph;
    auto* const attribute = graph.mortal<QORAttribute>("attribute");
    auto* const role = new QORAssociationRole;
    auto* const owner = new QORClass;
    ASSERT_TRUE(role->addQualifierAttribute(attribute) && owner->addAttribute(attribute));
    EXPECT_FALSE(attribute->recursiveDelete());
    delete owner;
    EXPECT_EQ(graph.deaths, Labels());
    expectParent(*attribute, role, 1);
    delete role;
    EXPECT_EQ(graph.deaths, Labels{"attribute"});
}

TEST(QORAttribute, ATakenNameIsRefusedByTheRoleOrElseByTheClassifier) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const role = graph.make<QORAssociationRole>();
    auto* const attribute = graph.make<QORAttribute>("A");
    ASSERT_TRUE(owner->addAttribute(attribute) && owner->addAttribute(graph.make<QORAttribute>("B")));
    expectNameRefused(*attribute, "B", "Classifier", "Feature");
    EXPECT_EQ(owner->getAttribute(0), attribute);

    ASSERT_TRUE(role->addQualifierAttribute(attribute));
    ASSERT_TRUE(role->addQualifierAttribute(graph.make<QORAttribute>("C")));
    expectNameRefused(*attribute, "C", "AssociationRole", "Attribute");
    EXPECT_EQ(role->getQualifierAttribute(0), attribute);
    EXPECT_EQ(owner->getAttribute(0), attribute);
}

TEST(QORAttribute, InARoleItsClassIsNotAskedForAName) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const role = graph.make<QORAssociationRole>();
    auto* const attribute = graph.make<QORAttribute>("A");
    ASSERT_TRUE(owner->addAttribute(attribute) && owner->addAttribute(graph.make<QORAttribute>("C")));
    ASSERT_TRUE(role->addQualifierAttribute(attribute));
    ASSERT_TRUE(role->addQualifierAttribute(graph.make<QORAttribute>("B")));
    attribute->setName("C");
    EXPECT_EQ(attribute->getName(), "C");
    EXPECT_EQ(role->getQualifierAttribute(1), attribute);
    EXPECT_EQ(owner->getAttribute(0), attribute); // where it was
    EXPECT_TRUE(owner->removeAttribute(attribute));
    EXPECT_EQ(owner->getAttributeCount(), 1);
    EXPECT_NE(owner->getAttribute(0), attribute);
}

TEST(QORAttribute, ItsAssociatedClassIsItsClassifier) {
    Graph graph;
    auto* const attribute = graph.make<QORAttribute>();
    auto* const owner = graph.make<QORClass>();
    EXPECT_EQ(attribute->getAssociatedClass(), nullptr);
    EXPECT_FALSE(attribute->removeAssociatedClass());
    EXPECT_TRUE(attribute->addAssociatedClass(owner));
    EXPECT_FALSE(attribute->addAssociatedClass(graph.make<QORClass>()));
    EXPECT_EQ(attribute->getAssociatedClass(), owner);
    EXPECT_EQ(attribute->getClassifier(), owner);
    EXPECT_EQ(owner->getFeature(0), attribute);
    EXPECT_FALSE(attribute->removeAssociatedClass(graph.make<QORClass>()));
    EXPECT_TRUE(attribute->removeAssociatedClass(owner));
    EXPECT_EQ(attribute->getClassifier(), nullptr);
}

TEST(QORAttribute, RemovingItsAssociatedClassDeletesAClassThatIsLeftWithoutReference) {
    Graph graph;
    auto* const attribute = graph.make<QORAttribute>();
    ASSERT_TRUE(attribute->addAssociatedClass(graph.mortal<QORClass>("class")));
    EXPECT_TRUE(attribute->removeAssociatedClass());
    EXPECT_EQ(graph.deaths, Labels{"class"});
    EXPECT_EQ(attribute->getClassifier(), nullptr);
}

TEST(QORAttribute, ItsAssociatedClassIsTakenForOneWithoutATest) {
    Graph graph;
    auto* const attribute = graph.make<QORAttribute>();
    auto* const classifier = graph.make<QORAliasClassifier>();
    ASSERT_TRUE(attribute->addClassifier(classifier));
    EXPECT_EQ(static_cast<void*>(attribute->getAssociatedClass()),
              static_cast<void*>(static_cast<QORObject*>(classifier)));
}
