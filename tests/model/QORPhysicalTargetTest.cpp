#include "GraphTestSupport.h"

#include <qor/QORModel.h>
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

TEST(QORPhysicalTarget, AModelRefusesATakenName) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const first = graph.make<Target>("A");
    auto* const second = graph.make<Target>("B");
    ASSERT_TRUE(model->addPhysicalTarget(first) && second->addModel(model));
    EXPECT_FALSE(model->addPhysicalTarget(graph.make<Target>("B")));
    expectNameRefused(*first, "B", "Model", "PhysicalTarget");
    EXPECT_EQ(model->getPhysicalTarget(0), first);
    first->setName("C");
    EXPECT_EQ(model->getPhysicalTarget(0), second);
    EXPECT_EQ(model->getPhysicalTarget(1), first);
}

TEST(QORPhysicalTarget, ItsModelIsItsOnlyParent) {
    Graph graph;
    auto* const target = graph.make<Target>();
    EXPECT_EQ(target->removeAggregationAssembly(), nullptr);
    auto* const model = graph.make<QORModel>();
    ASSERT_TRUE(target->addModel(model));
    EXPECT_EQ(target->getParent(), model);
    EXPECT_EQ(target->getParentCount(), 1);
    EXPECT_EQ(target->removeAggregationAssembly(), model);
    EXPECT_EQ(model->getPhysicalTargetCount(), 0);
}

TEST(QORPhysicalTarget, IsTakenApartInOrder) {
    expectTakenApart<Target>(linkEnds, {"model", "object", "base"}, {"base", "object"});
}

TEST(QORPhysicalTarget, EachEndCountsAsAReference) {
    expectEndCounts<Target, QORModel>(&Target::addModel);
    expectEndCounts<Target, QORPhysicalObject>(&Target::addPhysicalObject);
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

TEST(QORPhysicalTarget, ComparesItsType) {
    Target target;
    target.setTargetType(QORPhysicalTargetType::NCR);
    Target other(target);
    EXPECT_EQ(other, target);
    other.setTargetType(QORPhysicalTargetType::ORACLE);
    EXPECT_NE(other, target);
    other.setFrom(target);
    EXPECT_EQ(other, target);
    other.setStereotype("s");
    EXPECT_NE(other, target);
}

TEST(QORPhysicalTarget, ReencodesNotesBeforeObjects) {
    Graph graph;
    auto* const target = graph.make<Target>(inUtf8);
    ASSERT_TRUE(target->addPhysicalObject(graph.mortal<QORPhysicalObject>("object", inUtf8)) &&
                target->addNote(graph.mortal<QORNote>("note")));
    Recoding recode;
    recode(*target);
    EXPECT_EQ(graph.transcodes, (Labels{"note", "object"}));
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
    EXPECT_EQ(walkOf(*target), (std::vector<QORObject*>{target, note, object, relationship}));
}
