#include "Expectations.h"

#include <qor/QORNote.h>
#include <qor/QORPhysicalObject.h>
#include <qor/QORPhysicalRelationship.h>
#include <qor/QORPhysicalTarget.h>

namespace {

using Target = QORPhysicalTarget;

void linkEnds(Graph& graph, Target& target, Owners owners) {
    linkBase(graph, target);
    ASSERT_TRUE(target.addPhysicalObject(graph.mortal<QORPhysicalObject>("object")));
    linkOwner(graph, owners, "model", target, &Target::addModel);
}

} // namespace

TEST(QORPhysicalTarget, ShowsItsName) {
    Target target;
    EXPECT_EQ(target.getTargetType(), QORPhysicalTargetType::UNDEFINED);
    EXPECT_EQ(target.getDisplayName(), "");
    target.setName("T");
    target.setTargetType(QORPhysicalTargetType::ORACLE);
    EXPECT_EQ(target.getDisplayName(), "T");
}

TEST(QORPhysicalTarget, IsTakenApartInOrder) {
    expectTakenApart<Target>(linkEnds, {"model", "object", "base"}, {"base", "object"});
}

TEST(QORPhysicalTarget, DeletesItsObjectsWithTheirRelationships) {
    Graph graph;
    auto* const target = new Target;
    auto* const object = new QORPhysicalObject;
    auto* const relationship = graph.mortal<QORPhysicalRelationship>("relationship");
    auto* const other = graph.make<QORPhysicalObject>();
    ASSERT_TRUE(target->addPhysicalObject(object) && object->addSourceOfPhysicalRelationship(relationship) &&
                relationship->addDestinationPhysicalObject(other) && other->addNote(graph.make<QORNote>()));
    delete target;
    EXPECT_EQ(graph.deaths, Labels{"relationship"});
    EXPECT_EQ(other->getDestinationOfPhysicalRelationshipCount(), 0);
}

TEST(QORPhysicalTarget, ReencodesNotesBeforeObjects) {
    Graph graph;
    auto* const target = graph.make<Target>(inUtf8);
    ASSERT_TRUE(target->addPhysicalObject(graph.mortal<QORPhysicalObject>("object", inUtf8)) &&
                target->addNote(graph.mortal<QORNote>("note")));
    Recoding recode;
    recode(*target);
    EXPECT_EQ(graph.recodings, (Labels{"note", "object"}));
    EXPECT_EQ(target->getName(), inLatin1);
    EXPECT_EQ(target->getPhysicalObject(0)->getName(), inLatin1);
}

TEST(QORPhysicalTarget, IsWalkedDownToTheRelationships) {
    Graph graph;
    auto* const target = graph.make<Target>();
    auto* const note = graph.make<QORNote>();
    auto* const object = graph.make<QORPhysicalObject>();
    auto* const relationship = graph.make<QORPhysicalRelationship>();
    ASSERT_TRUE(target->addPhysicalObject(object) && target->addNote(note) &&
                object->addSourceOfPhysicalRelationship(relationship) &&
                relationship->addDestinationPhysicalObject(graph.make<QORPhysicalObject>()));
    EXPECT_EQ(walkOf(*target), (Objects{target, note, object, relationship}));
}
