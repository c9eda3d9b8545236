#include "Expectations.h"

#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>

namespace {

void link(Graph& graph, QORAssociationRoleNameMap& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "foreign key", object, &QORAssociationRoleNameMap::addForeignKey);
    ASSERT_TRUE(object.addSourceAttribute(graph.mortal<QORAttribute>("source")));
    ASSERT_TRUE(object.addDestinationAttribute(graph.mortal<QORAttribute>("destination")));
}

} // namespace

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

TEST(QORAssociationRoleNameMap, IsTakenApartInOrder) {
    expectTakenApart<QORAssociationRoleNameMap>(
        link, {"foreign key", "destination", "source", "base", "synonym", "note"},
        {"note", "synonym", "base", "destination", "source"});
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
