#include "Expectations.h"

#include <qor/QORCubeDimensionAssociation.h>
#include <qor/QORDimension.h>
#include <qor/QORHierarchy.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORHierarchyLevelAssociationByPosition.h>
#include <qor/QORLevel.h>
#include <qor/QORNote.h>

namespace {

using Hierarchy = QORHierarchy;
using Step = QORHierarchyLevelAssociation;

void linkEnds(Graph& graph, Hierarchy& hierarchy, Owners owners) {
    linkBase(graph, hierarchy);
    ASSERT_TRUE(hierarchy.addDefaultOfDimension(graph.mortal<QORDimension>("defaultOf")));
    ASSERT_TRUE(hierarchy.addTopHierarchyLevelAssociation(graph.mortal<Step>("top")));
    ASSERT_TRUE(hierarchy.addHierarchyLevelAssociation(graph.mortal<Step>("step")));
    ASSERT_TRUE(hierarchy.addCubeDimensionAssociation(graph.mortal<QORCubeDimensionAssociation>("cube")));
    ASSERT_TRUE(hierarchy.addBottomHierarchyLevelAssociation(graph.mortal<Step>("bottom")));
    linkOwner(graph, owners, "dimension", hierarchy, &Hierarchy::addDimension);
}

Step* stepOf(Graph& graph, Hierarchy& hierarchy, char const* name, short position = 0) {
    auto* const step = graph.make<Step>(name);
    step->setPosition(position);
    EXPECT_TRUE(hierarchy.addHierarchyLevelAssociation(step));
    return step;
}

} // namespace

TEST(QORHierarchy, TheDimensionItIsTheDefaultOfIsNoParent) {
    Graph graph;
    auto* const hierarchy = graph.make<Hierarchy>();
    ASSERT_TRUE(hierarchy->addDefaultOfDimension(graph.make<QORDimension>()));
    EXPECT_EQ(hierarchy->getParent(), nullptr);
    EXPECT_EQ(hierarchy->removeAggregationAssembly(), nullptr);
    auto* const dimension = graph.make<QORDimension>();
    ASSERT_TRUE(hierarchy->addDimension(dimension));
    EXPECT_EQ(hierarchy->getParent(), dimension);
    EXPECT_EQ(hierarchy->getParentCount(), 1);
    EXPECT_EQ(hierarchy->removeAggregationAssembly(), dimension);
    EXPECT_NE(hierarchy->getDefaultOfDimension(), nullptr);
}

TEST(QORHierarchy, KeepsItsStepsInTheOrderOfAddingAndReadsThemByPosition) {
    Graph graph;
    auto* const hierarchy = graph.make<Hierarchy>();
    auto* const last = stepOf(graph, *hierarchy, "A", 3);
    auto* const second = stepOf(graph, *hierarchy, "C", 1);
    auto* const first = stepOf(graph, *hierarchy, "B", 1);
    EXPECT_EQ(listOf(3, [&](int i) { return hierarchy->getHierarchyLevelAssociation(i); }),
              (std::vector<Step*>{last, second, first}));
    QORHierarchyLevelAssociationByPosition view;
    ASSERT_TRUE(view.add(graph.make<Step>(), false, nullptr));
    hierarchy->getHierarchyLevelAssociationByPosition(view);
    EXPECT_EQ(listOf(view), (Objects{first, second, last}));
    Hierarchy().getHierarchyLevelAssociationByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORHierarchy, IsTakenApartInOrder) {
    expectTakenApart<Hierarchy>(linkEnds, {"dimension", "defaultOf", "top", "step", "cube", "bottom", "base"},
                                {"base", "step", "defaultOf", "top", "cube", "bottom"});
}

TEST(QORHierarchy, AFreeDefaultHierarchyTakesAnUnreferencedDimensionWithIt) {
    Graph graph;
    auto* const hierarchy = graph.make<Hierarchy>();
    ASSERT_TRUE(hierarchy->addDefaultOfDimension(graph.mortal<QORDimension>("dimension")));
    EXPECT_TRUE(hierarchy->recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"dimension"});
    EXPECT_EQ(hierarchy->getDefaultOfDimension(), nullptr);
    auto* const kept = graph.make<QORDimension>();
    ASSERT_TRUE(hierarchy->addDefaultOfDimension(kept) && kept->addLevel(graph.make<QORLevel>()));
    EXPECT_TRUE(hierarchy->recursiveDelete());
    EXPECT_EQ(kept->getDefaultHierarchy(), nullptr);
}

TEST(QORHierarchy, DeletesItsStepsThatAreTopOrBottomOnce) {
    Graph graph;
    auto* const hierarchy = new Hierarchy;
    auto* const step = graph.mortal<Step>("step");
    ASSERT_TRUE(hierarchy->addHierarchyLevelAssociation(step) &&
                hierarchy->addTopHierarchyLevelAssociation(step) &&
                hierarchy->addBottomHierarchyLevelAssociation(step) &&
                hierarchy->addHierarchyLevelAssociation(graph.mortal<Step>("second")));
    delete hierarchy;
    EXPECT_EQ(graph.deaths, (Labels{"step", "second"}));
}

TEST(QORHierarchy, ReencodesNotesBeforeStepsAndEachStepOnce) {
    Graph graph;
    auto* const hierarchy = graph.make<Hierarchy>(inUtf8);
    ASSERT_TRUE(hierarchy->addHierarchyLevelAssociation(graph.mortal<Step>("first", inUtf8)) &&
                hierarchy->addHierarchyLevelAssociation(graph.mortal<Step>("second", inUtf8)) &&
                hierarchy->addTopHierarchyLevelAssociation(graph.mortal<Step>("top")) &&
                hierarchy->addNote(graph.mortal<QORNote>("note")));
    Recoding recode;
    recode(*hierarchy);
    EXPECT_EQ(graph.recodings, (Labels{"note", "first", "second"}));
    EXPECT_EQ(recode.converted, 4);
    EXPECT_EQ(hierarchy->getName(), inLatin1);
}

TEST(QORHierarchy, IsWalkedWithNotesBeforeStepsAndReachesNoLevel) {
    Graph graph;
    auto* const hierarchy = graph.make<Hierarchy>();
    auto* const first = stepOf(graph, *hierarchy, "B");
    auto* const second = stepOf(graph, *hierarchy, "A");
    auto* const note = graph.make<QORNote>();
    ASSERT_TRUE(hierarchy->addNote(note) && first->addLevel(graph.make<QORLevel>()) &&
                hierarchy->addTopHierarchyLevelAssociation(graph.make<Step>()));
    EXPECT_EQ(walkOf(*hierarchy), (Objects{hierarchy, note, first, second}));
}
