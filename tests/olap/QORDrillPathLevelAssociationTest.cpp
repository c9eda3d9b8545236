#include "Expectations.h"

#include <qor/QORDrillPath.h>
#include <qor/QORDrillPathLevelAssociation.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelAssociation.h>

namespace {

using Step = QORDrillPathLevelAssociation;

void linkEnds(Graph& graph, Step& step, Owners owners) {
    linkBase(graph, step);
    ASSERT_TRUE(step.addLevel(graph.mortal<QORLevel>("level")));
    ASSERT_TRUE(step.addTopOfDrillPath(graph.mortal<QORDrillPath>("topOf")));
    ASSERT_TRUE(step.addBottomOfDrillPath(graph.mortal<QORDrillPath>("bottomOf")));
    ASSERT_TRUE(step.addLevelAssociation(graph.mortal<QORLevelAssociation>("levelAssociation")));
    linkOwner(graph, owners, "path", step, &Step::addDrillPath);
}

} // namespace

TEST(QORDrillPathLevelAssociation, ANewNameTakesItToTheEndOfItsDrillPath) {
    expectNewNameMovesToEnd(&QORDrillPath::addDrillPathLevelAssociation,
                            &QORDrillPath::getDrillPathLevelAssociation);
}

TEST(QORDrillPathLevelAssociation, IsTakenApartInOrder) {
    expectTakenApart<Step>(linkEnds, {"path", "level", "topOf", "bottomOf", "levelAssociation", "base"},
                           {"base", "level", "topOf", "bottomOf", "levelAssociation"});
}
