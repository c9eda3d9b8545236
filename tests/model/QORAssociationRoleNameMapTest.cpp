#include "ModelTestSupport.h"

#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>
#include <qor/QORForeignKey.h>

namespace {

void link(Graph& graph, QORAssociationRoleNameMap& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "foreign key", object, &QORAssociationRoleNameMap::addForeignKey);
    ASSERT_TRUE(object.addSourceAttribute(hung<QORAttribute>(graph, "source")));
    ASSERT_TRUE(object.addDestinationAttribute(hung<QORAttribute>(graph, "destination")));
}

} // namespace

TEST(QORAssociationRoleNameMap, IsAModelObject) {
    graph::expectConcrete<QORAssociationRoleNameMap>(QORElementType::ASSOCIATION_ROLE_NAME_MAP, 19,
                                                     "AssociationRoleNameMap",
                                                     QORModelObject::getStaticMetaClass());
}

TEST(QORAssociationRoleNameMap, ComparesAndTakesOverWhatAModelObjectHolds) {
    using Class = QORAssociationRoleNameMap;
    expectAttribute<Class>(&Class::getPhysicalName, &Class::setPhysicalName, "", "A");
    Graph graph;
    auto* const map = graph.make<Class>();
    ASSERT_TRUE(map->addSourceAttribute(graph.make<QORAttribute>("A")));
    EXPECT_TRUE(map->equals(Class()));
}

TEST(QORAssociationRoleNameMap, CopiesHaveNoLinks) {
    expectCopiesUnlinked<QORAssociationRoleNameMap>(link);
}

TEST(QORAssociationRoleNameMap, ShowsSourceToDestination) {
    Graph graph;
    auto* const map = graph.make<QORAssociationRoleNameMap>("map");
    auto* const source = graph.make<QORAttribute>("s");
    auto* const destination = graph.make<QORAttribute>("d");
    EXPECT_EQ(map->getDisplayName(), "_to_");
    ASSERT_TRUE(map->addDestinationAttribute(destination));
    EXPECT_EQ(map->getDisplayName(), "_to_d");
    ASSERT_TRUE(map->addSourceAttribute(source));
    EXPECT_EQ(map->getDisplayName(), "s_to_d");
    ASSERT_TRUE(map->removeDestinationAttribute(destination));
    EXPECT_EQ(map->getDisplayName(), "s_to_");
}

TEST(QORAssociationRoleNameMap, ItsForeignKeyIsItsParent) {
    Graph graph;
    auto* const map = graph.make<QORAssociationRoleNameMap>();
    auto* const key = graph.make<QORForeignKey>();
    ASSERT_TRUE(key->addAssociationRoleNameMap(map));
    expectLeaves(*map, {key});
    EXPECT_FALSE(key->isReferenced());
}

TEST(QORAssociationRoleNameMap, EachEndCountsAsAReference) {
    using Class = QORAssociationRoleNameMap;
    expectEndCounts<Class, QORForeignKey>(&Class::addForeignKey);
    expectEndCounts<Class, QORAttribute>(&Class::addDestinationAttribute);
    expectEndCounts<Class, QORAttribute>(&Class::addSourceAttribute);
}

TEST(QORAssociationRoleNameMap, IsTakenApartInOrder) {
    expectTakenApart<QORAssociationRoleNameMap>(
        link, {"foreign key", "destination", "source", "base", "synonym", "note"},
        {"note", "synonym", "base", "destination", "source"});
    expectIsolationFreesFarEnds<QORAssociationRoleNameMap>(link);
}

TEST(QORAssociationRoleNameMap, ReachesWhatAModelObjectReaches) {
    expectChildrenReached<QORAssociationRoleNameMap>(link, {"note", "synonym"});
}

TEST(QORAssociationRoleNameMap, OneAttributeMayBeSourceAndDestination) {
    Graph graph;
    auto* const map = graph.make<QORAssociationRoleNameMap>();
    auto* const attribute = graph.make<QORAttribute>("a");
    EXPECT_TRUE(map->addSourceAttribute(attribute));
    EXPECT_TRUE(map->addDestinationAttribute(attribute));
    EXPECT_FALSE(map->addSourceAttribute(graph.make<QORAttribute>()));
    EXPECT_EQ(map->getDisplayName(), "a_to_a");
}

TEST(QORAssociationRoleNameMap, MayShareItsNameInAForeignKey) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>();
    auto* const map = graph.make<QORAssociationRoleNameMap>("A");
    ASSERT_TRUE(key->addAssociationRoleNameMap(map));
    ASSERT_TRUE(key->addAssociationRoleNameMap(graph.make<QORAssociationRoleNameMap>("B")));
    map->setName("B");
    EXPECT_EQ(map->getName(), "B");
    EXPECT_EQ(map->getForeignKey(), key);
    EXPECT_EQ(key->getAssociationRoleNameMapCount(), 2);
}
