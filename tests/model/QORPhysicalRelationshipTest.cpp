#include "Expectations.h"

#include <qor/QORNote.h>
#include <qor/QORPhysicalObject.h>
#include <qor/QORPhysicalRelationship.h>

namespace {

using Relationship = QORPhysicalRelationship;

void linkEnds(Graph& graph, Relationship& relationship, Owners owners) {
    ASSERT_TRUE(relationship.addDestinationPhysicalObject(graph.mortal<QORPhysicalObject>("destination")));
    linkOwner(graph, owners, "source", relationship, &Relationship::addSourcePhysicalObject);
}

QORPhysicalObject* objectOf(Graph& graph, char const* name, QORPhysicalObjectType kind) {
    auto* const object = graph.make<QORPhysicalObject>(name);
    object->setObjectType(kind);
    return object;
}

} // namespace

TEST(QORPhysicalRelationship, ShowsNamesAndKindsOfBothEnds) {
    Graph graph;
    auto* const relationship = graph.make<Relationship>("R");
    EXPECT_EQ(relationship->getDisplayName(), "_to_");
    auto* const source = objectOf(graph, "", QORPhysicalObjectType::DB2_DATABASE);
    ASSERT_TRUE(relationship->addSourcePhysicalObject(source));
    EXPECT_EQ(relationship->getDisplayName(), "DB2_DATABASE_to_");
    auto* const destination = objectOf(graph, "T", QORPhysicalObjectType::DB2_TABLE_SPACE);
    ASSERT_TRUE(relationship->addDestinationPhysicalObject(destination));
    EXPECT_EQ(relationship->getDisplayName(), "DB2_DATABASE_to_T_DB2_TABLE_SPACE");
    source->setName("S");
    EXPECT_EQ(relationship->getDisplayName(), "S_DB2_DATABASE_to_T_DB2_TABLE_SPACE");
    ASSERT_TRUE(relationship->removeSourcePhysicalObject(source));
    EXPECT_EQ(relationship->getDisplayName(), "_to_T_DB2_TABLE_SPACE");
    destination->setName("");
    EXPECT_EQ(relationship->getDisplayName(), "_to_DB2_TABLE_SPACE");
}

TEST(QORPhysicalRelationship, IsNoElement) {
    Relationship const relationship;
    EXPECT_FALSE(relationship.isInstanceOf(QORElementType::ELEMENT));
    EXPECT_TRUE(relationship.isInstanceOf(QORElementType::OBJECT));
    EXPECT_EQ(static_cast<int>(relationship.getElementType()), 56);
}

TEST(QORPhysicalRelationship, MayLeadBackToItsSource) {
    Graph graph;
    auto* const object = new QORPhysicalObject;
    auto* const relationship = graph.mortal<Relationship>("relationship");
    ASSERT_TRUE(relationship->addSourcePhysicalObject(object) &&
                relationship->addDestinationPhysicalObject(object) &&
                object->addNote(graph.mortal<QORNote>("note")));
    delete object;
    EXPECT_EQ(graph.deaths, (Labels{"note", "relationship"}));
}

TEST(QORPhysicalRelationship, IsTakenApartInOrder) {
    expectTakenApart<Relationship>(linkEnds, {"destination", "source"}, {"destination"});
}
