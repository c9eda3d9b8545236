#include "Expectations.h"

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

TEST(QORJoinRole, ANewNameTakesItToTheEndOfItsJoin) {
    expectNewNameMovesToEnd(&QORJoin::addJoinRole, &QORJoin::getJoinRole);
}

TEST(QORJoinRole, IsTakenApartInOrder) {
    expectTakenApart<Role>(linkEnds, {"join", "classifier", "base"}, {"base", "classifier"});
}
