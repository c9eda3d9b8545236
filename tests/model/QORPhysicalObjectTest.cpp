#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORNote.h>
#include <qor/QORPhysicalObject.h>
#include <qor/QORPhysicalRelationship.h>

namespace {

using Object = QORPhysicalObject;

void linkEnds(Graph& graph, Object& object, Owners owners) {
    linkBase(graph, object);
    ASSERT_TRUE(object.addDestinationOfPhysicalRelationship(graph.mortal<QORPhysicalRelationship>("in")));
    ASSERT_TRUE(object.addModelObject(graph.mortal<QORClass>("modelObject")));
    ASSERT_TRUE(object.addSourceOfPhysicalRelationship(graph.mortal<QORPhysicalRelationship>("out")));
    linkOwner(graph, owners, "target", object, &Object::addPhysicalTarget);
}

} // namespace

TEST(QORPhysicalObject, ShowsItsKindWhateverItsName) {
    Object object;
    EXPECT_EQ(object.getObjectType(), QORPhysicalObjectType::UNDEFINED);
    EXPECT_EQ(object.getDisplayName(), "UNDEFINED");
    object.setName("O");
    EXPECT_EQ(object.getDisplayName(), "UNDEFINED");
    for (int kind = 0; kind <= 8; ++kind) {
        object.setObjectType(static_cast<QORPhysicalObjectType>(kind));
        EXPECT_EQ(object.getDisplayName(), getPhysicalObjectTypeName(object.getObjectType()));
    }
    EXPECT_EQ(object.getDisplayName(), "ALL_CONSTRAINT");
}

TEST(QORPhysicalObject, ShowsNothingWhenItsKindIsUnknown) {
    Object object;
    QORString text("NO_SUCH_KIND");
    object.getMetaClass()->getMetaAttributeByDisplayName("objectType")->setValue(&object, text);
    EXPECT_EQ(object.getObjectType(), -1);
    EXPECT_EQ(object.getDisplayName(), QORString());
}

TEST(QORPhysicalObject, IsTakenApartInOrder) {
    expectTakenApart<Object>(linkEnds, {"target", "in", "modelObject", "out", "base"},
                             {"base", "out", "in", "modelObject"});
}

TEST(QORPhysicalObject, RecursiveDeleteDeletesWhatStartsHereAndFreesWhatEndsHere) {
    Graph graph;
    auto* const object = graph.make<Object>();
    auto* const other = graph.make<Object>();
    auto* const out = graph.mortal<QORPhysicalRelationship>("out");
    auto* const in = graph.make<QORPhysicalRelationship>();
    ASSERT_TRUE(object->addSourceOfPhysicalRelationship(out) && out->addDestinationPhysicalObject(other) &&
                other->addSourceOfPhysicalRelationship(in) && in->addDestinationPhysicalObject(object));
    EXPECT_TRUE(object->recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"out"});
    EXPECT_EQ(in->getDestinationPhysicalObject(), nullptr);
    EXPECT_EQ(in->getSourcePhysicalObject(), other);
    EXPECT_EQ(other->getDestinationOfPhysicalRelationshipCount(), 0);
}

TEST(QORPhysicalObject, ReencodesNotesBeforeTheRelationshipsThatStartHere) {
    Graph graph;
    auto* const object = graph.make<Object>(inUtf8);
    ASSERT_TRUE(
        object->addSourceOfPhysicalRelationship(graph.mortal<QORPhysicalRelationship>("out", inUtf8)) &&
        object->addDestinationOfPhysicalRelationship(graph.mortal<QORPhysicalRelationship>("in")) &&
        object->addNote(graph.mortal<QORNote>("note")));
    Recoding recode;
    recode(*object);
    EXPECT_EQ(graph.recodings, (Labels{"note", "out"}));
    EXPECT_EQ(object->getName(), inLatin1);
    EXPECT_EQ(object->getSourceOfPhysicalRelationship(0)->getName(), inLatin1);
}

TEST(QORPhysicalObject, IsWalkedWithTheRelationshipsThatStartHere) {
    Graph graph;
    auto* const object = graph.make<Object>();
    auto* const note = graph.make<QORNote>();
    auto* const out = graph.make<QORPhysicalRelationship>();
    ASSERT_TRUE(object->addSourceOfPhysicalRelationship(out) && object->addNote(note) &&
                object->addDestinationOfPhysicalRelationship(graph.make<QORPhysicalRelationship>()) &&
                object->addModelObject(graph.make<QORClass>()));
    EXPECT_EQ(walkOf(*object), (Objects{object, note, out}));
}
