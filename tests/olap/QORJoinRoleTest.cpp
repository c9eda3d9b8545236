#include "GraphTestSupport.h"

#include <qor/QORClass.h>
#include <qor/QORJoin.h>
#include <qor/QORJoinRole.h>

namespace {

using Role = QORJoinRole;

void linkEnds(Graph& graph, Role& role, Owners owners) {
    linkBase(graph, role);
    ASSERT_TRUE(role.addClassifier(graph.mortal<QORClass>("classifier")));
    linkOwner(graph, owners, "join", role, &Role::addJoin);
}

} // namespace

TEST(QORJoinRole, StartsLeftAndWithMultiplicityZeroWhateverTheRecordSays) {
    Role const role;
    EXPECT_TRUE(role.getLeft());
    EXPECT_EQ(role.getMultiplicity(), "0");
    EXPECT_EQ(recordedDefault(QORAttributeType::JOIN_ROLE__MULTIPLICITY), "MUL_UNSPECIFIED");
}

TEST(QORJoinRole, ANewNameTakesItToTheEndOfItsJoin) {
    Graph graph;
    auto* const join = graph.make<QORJoin>();
    auto* const first = graph.make<Role>("A");
    auto* const second = graph.make<Role>("B");
    ASSERT_TRUE(join->addJoinRole(first) && second->addJoin(join));
    first->setName("B");
    EXPECT_EQ(first->getName(), "B");
    EXPECT_EQ(first->getJoin(), join);
    EXPECT_EQ(join->getJoinRole(0), second);
    EXPECT_EQ(join->getJoinRole(1), first);
}

TEST(QORJoinRole, ItsJoinIsItsOnlyParent) {
    Graph graph;
    auto* const role = graph.make<Role>();
    auto* const classifier = graph.make<QORClass>();
    ASSERT_TRUE(role->addClassifier(classifier));
    EXPECT_EQ(classifier->getAssociatedJoinRole(0), role);
    EXPECT_EQ(role->getParent(), nullptr);
    EXPECT_EQ(role->removeAggregationAssembly(), nullptr);
    auto* const join = graph.make<QORJoin>();
    ASSERT_TRUE(join->addJoinRole(role));
    EXPECT_EQ(role->getParent(), join);
    EXPECT_EQ(role->getParentCount(), 1);
    EXPECT_EQ(role->removeAggregationAssembly(), join);
    EXPECT_EQ(role->getParentCount(), 0);
    EXPECT_EQ(role->getClassifier(), classifier);
}

TEST(QORJoinRole, IsTakenApartInOrder) {
    expectTakenApart<Role>(linkEnds, {"join", "classifier", "base"}, {"base", "classifier"});
}

TEST(QORJoinRole, EachEndCountsAsAReference) {
    expectEndCounts<Role, QORJoin>(&Role::addJoin);
    expectEndCounts<Role, QORClassifier, QORClass>(&Role::addClassifier);
}

TEST(QORJoinRole, ComparesItsAttributes) {
    Role role;
    role.setLeft(false);
    role.setMultiplicity("1..n");
    Role other(role);
    EXPECT_EQ(other, role);
    other.setLeft(true);
    EXPECT_NE(other, role);
    other = role;
    other.setMultiplicity("0");
    EXPECT_NE(other, role);
    other.setFrom(role);
    EXPECT_EQ(other, role);
}

TEST(QORJoinRole, ReencodesItsTexts) {
    expectTextsRecoded<Role>(
        {{&Role::getMultiplicity, &Role::setMultiplicity}, {&Role::getPhysicalName, &Role::setPhysicalName}});
}
