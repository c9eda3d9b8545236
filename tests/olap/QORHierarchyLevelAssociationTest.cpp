#include "Expectations.h"

#include <qor/QORHierarchy.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelAssociation.h>

namespace {

using Step = QORHierarchyLevelAssociation;

void linkEnds(Graph& graph, Step& step, Owners owners) {
    linkBase(graph, step);
    ASSERT_TRUE(step.addLevel(graph.mortal<QORLevel>("level")));
    ASSERT_TRUE(step.addTopOfHierarchy(graph.mortal<QORHierarchy>("topOf")));
    ASSERT_TRUE(step.addBottomOfHierarchy(graph.mortal<QORHierarchy>("bottomOf")));
    ASSERT_TRUE(step.addLevelAssociation(graph.mortal<QORLevelAssociation>("levelAssociation")));
    linkOwner(graph, owners, "hierarchy", step, &Step::addHierarchy);
}

} // namespace

TEST(QORHierarchyLevelAssociation, ANewNameTakesItToTheEndOfItsHierarchy) {
    expectNewNameMovesToEnd(&QORHierarchy::addHierarchyLevelAssociation,
                            &QORHierarchy::getHierarchyLevelAssociation);
}

TEST(QORHierarchyLevelAssociation, IsTakenApartInOrder) {
    expectTakenApart<Step>(linkEnds, {"hierarchy", "level", "topOf", "bottomOf", "levelAssociation", "base"},
                           {"base", "level", "topOf", "bottomOf", "levelAssociation"});
}
