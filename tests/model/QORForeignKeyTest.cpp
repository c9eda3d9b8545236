#include "Expectations.h"

#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORForeignKey.h>
#include <qor/QORGeneralization.h>
#include <qor/QORIndex.h>
#include <qor/QORKeyMap.h>
#include <qor/QORNote.h>

namespace {

void linkEnds(Graph& graph, QORForeignKey& key, Owners owners) {
    linkBase(graph, key);
    ASSERT_TRUE(key.addAssociationRole(graph.mortal<QORAssociationRole>("role")));
    ASSERT_TRUE(key.addCandidateKey(graph.mortal<QORCandidateKey>("candidateKey")));
    ASSERT_TRUE(key.addGeneralization(graph.mortal<QORGeneralization>("generalization")));
    ASSERT_TRUE(key.addAssociationRoleNameMap(graph.mortal<QORAssociationRoleNameMap>("nameMap")));
    ASSERT_TRUE(key.addIndex(graph.mortal<QORIndex>("index")));
    ASSERT_TRUE(key.addDestinationOfKeyMap(graph.mortal<QORKeyMap>("keyMap")));
    ASSERT_TRUE(key.addAttribute(graph.mortal<QORAttribute>("attribute")));
    linkOwner(graph, owners, "owner", key, &QORKey::addAssociatedClass);
}

} // namespace

TEST(QORForeignKey, ShowsTheAssociationOfItsRole) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>("K");
    auto* const role = graph.make<QORAssociationRole>("R");
    auto* const association = graph.make<QORAssociation>("A");
    ASSERT_TRUE(key->addAssociationRole(role) && association->addAssociationRole(role));
    EXPECT_EQ(key->getDisplayName(), "fk_A");
}

TEST(QORForeignKey, ShowsTheDisplayNameOfAnUnnamedAssociation) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>();
    auto* const role = graph.make<QORAssociationRole>();
    auto* const otherRole = graph.make<QORAssociationRole>();
    auto* const association = graph.make<QORAssociation>();
    ASSERT_TRUE(key->addAssociationRole(role) && association->addAssociationRole(role) &&
                association->addAssociationRole(otherRole));
    ASSERT_TRUE(role->addAssociatedClass(graph.make<QORClass>("C")) &&
                otherRole->addAssociatedClass(graph.make<QORClass>("D")));
    ASSERT_NE(association->getDisplayName(), "");
    EXPECT_EQ(key->getDisplayName(), QORString("fk_") + association->getDisplayName());
}

TEST(QORForeignKey, ARoleWithoutAssociationShowsFkAloneWhateverTheGeneralization) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>();
    ASSERT_TRUE(key->addAssociationRole(graph.make<QORAssociationRole>("R")));
    EXPECT_EQ(key->getDisplayName(), "fk");
    ASSERT_TRUE(key->addGeneralization(graph.make<QORGeneralization>("G")));
    EXPECT_EQ(key->getDisplayName(), "fk");
}

TEST(QORForeignKey, ShowsTheGeneralizationAndTheClassOfTheAttribute) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>();
    auto* const attribute = graph.make<QORAttribute>("X");
    ASSERT_TRUE(key->addGeneralization(graph.make<QORGeneralization>("G")));
    EXPECT_EQ(key->getDisplayName(), "fk_G");
    ASSERT_TRUE(key->addAttribute(attribute));
    EXPECT_EQ(key->getDisplayName(), "fk_G");
    ASSERT_TRUE(graph.make<QORClass>("C")->addAttribute(attribute));
    EXPECT_EQ(key->getDisplayName(), "fk_G_C");
}

TEST(QORForeignKey, TheAttributeShownIsTheFirstOfTheTreeWhateverItsPosition) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>();
    ASSERT_TRUE(key->addGeneralization(graph.make<QORGeneralization>("G")));
    char const* const classes[] = {"C", "D"};
    for (char const* const name : classes) {
        auto* const attribute = graph.make<QORAttribute>("X");
        ASSERT_TRUE(key->addAttribute(attribute));
        ASSERT_TRUE(graph.make<QORClass>(name)->addAttribute(attribute));
    }
    key->getAttribute(0)->setPosition(2);
    key->getAttribute(1)->setPosition(1);
    EXPECT_EQ(key->getDisplayName(),
              QORString("fk_G_") + key->getAttribute(0)->getAssociatedClass()->getName());
}

TEST(QORForeignKey, ShowsTheDisplayNameOfAnUnnamedGeneralization) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>();
    auto* const generalization = graph.make<QORGeneralization>();
    ASSERT_TRUE(generalization->addSupertypeClass(graph.make<QORClass>("Super")) &&
                generalization->addSubtypeClass(graph.make<QORClass>("Sub")));
    ASSERT_TRUE(key->addGeneralization(generalization));
    EXPECT_EQ(key->getDisplayName(), "fk_Super_subtypedto_Sub");
}

TEST(QORForeignKey, AKeyAloneShowsFk) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>("K");
    EXPECT_EQ(key->getDisplayName(), "fk");
    auto* const attribute = graph.make<QORAttribute>("X");
    ASSERT_TRUE(key->addAttribute(attribute) && graph.make<QORClass>("C")->addKey(key) &&
                graph.make<QORClass>("D")->addAttribute(attribute) &&
                key->addCandidateKey(graph.make<QORCandidateKey>("P")));
    EXPECT_EQ(key->getDisplayName(), "fk");
}

TEST(QORForeignKey, IsTakenApartInOrder) {
    expectTakenApart<QORForeignKey>(
        linkEnds,
        {"role", "candidateKey", "generalization", "nameMap", "index", "owner", "keyMap", "attribute",
         "base"},
        {"base", "index", "keyMap", "attribute", "nameMap", "role", "candidateKey", "generalization"});
}

TEST(QORForeignKey, NameMapsDieWithTheirKeyAlthoughReferenced) {
    Graph graph;
    auto* const key = new QORForeignKey;
    auto* const map = new QORAssociationRoleNameMap;
    auto* const attribute = graph.make<QORAttribute>();
    ASSERT_TRUE(key->addAssociationRoleNameMap(map) && map->addSourceAttribute(attribute) &&
                attribute->addNote(graph.make<QORNote>()));
    ASSERT_TRUE(map->addNote(graph.mortal<QORNote>("note")));
    delete key;
    EXPECT_EQ(graph.deaths, Labels{"note"});
    EXPECT_EQ(attribute->getSourceOfAssociationRoleNameMapCount(), 0);
}

TEST(QORForeignKey, ReencodesNotesBeforeNameMaps) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>(inUtf8);
    ASSERT_TRUE(key->addAssociationRoleNameMap(graph.mortal<QORAssociationRoleNameMap>("nameMap", inUtf8)) &&
                key->addNote(graph.mortal<QORNote>("note")) &&
                key->addAttribute(graph.mortal<QORAttribute>("attribute")));
    Recoding recode;
    recode(*key);
    EXPECT_EQ(graph.recodings, (Labels{"note", "nameMap"}));
    EXPECT_EQ(key->getName(), inLatin1);
    EXPECT_EQ(key->getAssociationRoleNameMap(0)->getName(), inLatin1);
    EXPECT_EQ(recode.converted, 3);
}

TEST(QORForeignKey, IsWalkedWithNotesBeforeNameMaps) {
    Graph graph;
    auto* const key = graph.make<QORForeignKey>();
    auto* const note = graph.make<QORNote>();
    ASSERT_TRUE(key->addAssociationRoleNameMap(graph.make<QORAssociationRoleNameMap>()) &&
                key->addAssociationRoleNameMap(graph.make<QORAssociationRoleNameMap>()) &&
                key->addNote(note) && key->addAttribute(graph.make<QORAttribute>()));
    EXPECT_EQ(walkOf(*key),
              (Objects{key, note, key->getAssociationRoleNameMap(0), key->getAssociationRoleNameMap(1)}));
}
