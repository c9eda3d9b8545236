#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORCube.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORDimension.h>
#include <qor/QORJoin.h>
#include <qor/QORJoinRole.h>
#include <qor/QORMeasure.h>
#include <qor/QORNote.h>

#include <functional>

namespace {

using Join = QORJoin;

void linkEnds(Graph& graph, Join& join, Owners owners) {
    linkBase(graph, join);
    ASSERT_TRUE(join.addFeature(graph.mortal<QORMeasure>("feature")));
    ASSERT_TRUE(join.addJoinRole(graph.mortal<QORJoinRole>("role")));
    ASSERT_TRUE(join.addCube(graph.mortal<QORCube>("cube")));
    ASSERT_TRUE(join.addDimension(graph.mortal<QORDimension>("dimension")));
    linkOwner(graph, owners, "package", join, &Join::addDesignPackage);
}

} // namespace

TEST(QORJoin, KeepsItsRolesInTheOrderOfAddingAndTheOthersInThatOfATree) {
    Graph graph;
    auto* const join = graph.make<Join>();
    std::vector<QORJoinRole*> roles;
    for (char const* const name : {"C", "A", "B"}) {
        roles.push_back(graph.make<QORJoinRole>(name));
        ASSERT_TRUE(join->addJoinRole(roles.back()));
        ASSERT_TRUE(join->addCube(graph.make<QORCube>(name)) &&
                    join->addDimension(graph.make<QORDimension>(name)));
    }
    EXPECT_EQ(listOf(3, [&](int i) { return join->getJoinRole(i); }), roles);
    for (int i = 1; i < 3; ++i) {
        EXPECT_TRUE(std::less<QORObject*>()(join->getCube(i - 1), join->getCube(i)));
        EXPECT_TRUE(std::less<QORObject*>()(join->getDimension(i - 1), join->getDimension(i)));
    }
}

TEST(QORJoin, MayShareItsNameInAPackage) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const join = graph.make<Join>("A");
    ASSERT_TRUE(package->addModelElement(join) && package->addModelElement(graph.make<Join>("B")));
    join->setName("B");
    EXPECT_EQ(join->getName(), "B");
    EXPECT_EQ(join->getParent(), package);
    EXPECT_EQ(join->getParentCount(), 1);
    EXPECT_EQ(join->removeAggregationAssembly(), package);
}

TEST(QORJoin, IsTakenApartInOrder) {
    expectTakenApart<Join>(linkEnds, {"role", "cube", "dimension", "feature", "package", "base"},
                           {"base", "feature", "role", "cube", "dimension"});
}

TEST(QORJoin, DeletesItsRolesAndNotTheClassifiersThatOthersReferTo) {
    Graph graph;
    auto* const join = new Join;
    auto* const role = new QORJoinRole;
    auto* const classifier = graph.make<QORClass>();
    ASSERT_TRUE(join->addJoinRole(role) && role->addClassifier(classifier) &&
                role->addNote(graph.mortal<QORNote>("note")) && classifier->addNote(graph.make<QORNote>()));
    delete join;
    EXPECT_EQ(graph.deaths, Labels{"note"});
    EXPECT_EQ(classifier->getAssociatedJoinRoleCount(), 0);
}

TEST(QORJoin, ReencodesFeaturesBeforeRolesAndEachRoleOnce) {
    Graph graph;
    auto* const join = graph.make<Join>(inUtf8);
    ASSERT_TRUE(join->addJoinRole(graph.mortal<QORJoinRole>("first", inUtf8)) &&
                join->addJoinRole(graph.mortal<QORJoinRole>("second", inUtf8)) &&
                join->addFeature(graph.mortal<QORMeasure>("feature", inUtf8)) &&
                join->addNote(graph.mortal<QORNote>("note")) && join->addCube(graph.mortal<QORCube>("cube")));
    Recoding recode;
    recode(*join);
    EXPECT_EQ(graph.recodings, (Labels{"note", "feature", "first", "second"}));
    EXPECT_EQ(join->getName(), inLatin1);
    EXPECT_EQ(join->getJoinRole(0)->getName(), inLatin1);
    EXPECT_EQ(join->getJoinRole(1)->getName(), inLatin1);
}

TEST(QORJoin, IsWalkedFeaturesBeforeRoles) {
    Graph graph;
    auto* const join = graph.make<Join>();
    auto* const first = graph.make<QORJoinRole>("B");
    auto* const second = graph.make<QORJoinRole>("A");
    auto* const feature = graph.make<QORMeasure>();
    auto* const note = graph.make<QORNote>();
    ASSERT_TRUE(join->addJoinRole(first) && join->addJoinRole(second) && join->addFeature(feature) &&
                join->addNote(note) && join->addCube(graph.make<QORCube>()) &&
                join->addDimension(graph.make<QORDimension>()));
    EXPECT_EQ(walkOf(*join), (Objects{join, note, feature, first, second}));
}
