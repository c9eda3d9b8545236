#include "Expectations.h"

#include <qor/QORDesignPackage.h>
#include <qor/QORDimension.h>
#include <qor/QORDrillPathLevelAssociation.h>
#include <qor/QORHierarchy.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelAssociation.h>
#include <qor/QORLevelAttribute.h>
#include <qor/QORLevelKey.h>
#include <qor/QORNote.h>
#include <qor/QORReport.h>

namespace {

using Level = QORLevel;

void linkEnds(Graph& graph, Level& level, Owners owners) {
    linkBase(graph, level);
    ASSERT_TRUE(level.addFeature(graph.mortal<QORLevelAttribute>("feature")));
    ASSERT_TRUE(level.addLevelKey(graph.mortal<QORLevelKey>("key")));
    ASSERT_TRUE(level.addDefaultLevelAttribute(graph.mortal<QORLevelAttribute>("default")));
    ASSERT_TRUE(
        level.addHierarchyLevelAssociation(graph.mortal<QORHierarchyLevelAssociation>("hierarchy step")));
    ASSERT_TRUE(level.addParentOfLevelAssociation(graph.mortal<QORLevelAssociation>("down")));
    ASSERT_TRUE(level.addChildOfLevelAssociation(graph.mortal<QORLevelAssociation>("up")));
    ASSERT_TRUE(
        level.addDrillPathLevelAssociation(graph.mortal<QORDrillPathLevelAssociation>("drill path step")));
    linkOwner(graph, owners, "dimension", level, &Level::addDimension);
    linkFurtherOwner(graph, owners, "report", level, &Level::addReport);
    linkFurtherOwner(graph, owners, "package", level, &Level::addDesignPackage);
}

} // namespace

TEST(QORLevel, WithoutDimensionItsOtherOwnersAreAskedForTheName) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const level = graph.make<Level>("A");
    ASSERT_TRUE(package->addModelElement(level) && package->addModelElement(graph.make<Level>("B")));
    expectNameRefused(*level, "B", "DesignPackage", "ModelElement");
    auto* const dimension = graph.make<QORDimension>();
    ASSERT_TRUE(dimension->addLevel(level));
    level->setName("B");
    EXPECT_EQ(level->getName(), "B");
    EXPECT_EQ(level->getDesignPackage(), package);
}

TEST(QORLevel, TheDimensionIsTheFirstOfItsParents) {
    Graph graph;
    auto* const level = graph.make<Level>();
    auto* const dimension = graph.make<QORDimension>();
    auto* const report = graph.make<QORReport>();
    auto* const package = graph.make<QORDesignPackage>();
    ASSERT_TRUE(level->addDesignPackage(package));
    EXPECT_EQ(level->getParent(), package);
    ASSERT_TRUE(level->addReport(report));
    EXPECT_EQ(level->getParent(), report);
    ASSERT_TRUE(level->addDimension(dimension));
    EXPECT_EQ(level->getParent(), dimension);
    EXPECT_EQ(level->getParentCount(), 3);
    EXPECT_EQ(level->removeAggregationAssembly(), dimension);
    EXPECT_EQ(level->removeAggregationAssembly(), report);
    EXPECT_EQ(level->removeAggregationAssembly(), package);
    EXPECT_EQ(level->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(level->getParentCount(), 0);
}

TEST(QORLevel, IsTakenApartInOrder) {
    expectTakenApart<Level>(
        linkEnds,
        {"dimension", "key", "default", "hierarchy step", "down", "up", "drill path step", "report",
         "feature", "package", "base"},
        {"base", "feature", "key", "down", "default", "hierarchy step", "up", "drill path step"});
}

TEST(QORLevel, DeletesItsKeyAndTheAssociationsThatGoDownAndFreesThoseThatComeDown) {
    Graph graph;
    auto* const level = graph.make<Level>("L");
    auto* const above = graph.make<Level>("A");
    auto* const below = graph.make<Level>("B");
    auto* const down = graph.mortal<QORLevelAssociation>("down");
    auto* const up = graph.make<QORLevelAssociation>();
    ASSERT_TRUE(level->addLevelKey(graph.mortal<QORLevelKey>("key")) &&
                level->addParentOfLevelAssociation(down) && down->addChildLevel(below) &&
                above->addParentOfLevelAssociation(up) && up->addChildLevel(level) &&
                below->addNote(graph.make<QORNote>()));
    EXPECT_TRUE(level->recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"key", "down"}));
    EXPECT_EQ(up->getChildLevel(), nullptr);
    EXPECT_EQ(up->getParentLevel(), above);
    EXPECT_EQ(up->getDisplayName(), "A_");
    EXPECT_EQ(below->getChildOfLevelAssociationCount(), 0);
}

TEST(QORLevel, ItsDeletionFreesTheStepsOfHierarchies) {
    Graph graph;
    auto* const level = new Level;
    auto* const hierarchy = graph.make<QORHierarchy>("H");
    auto* const step = graph.make<QORHierarchyLevelAssociation>();
    ASSERT_TRUE(hierarchy->addHierarchyLevelAssociation(step) && step->addLevel(level) &&
                level->addHierarchyLevelAssociation(graph.mortal<QORHierarchyLevelAssociation>("free")));
    delete level;
    EXPECT_EQ(graph.deaths, Labels{"free"});
    EXPECT_EQ(step->getLevel(), nullptr);
    EXPECT_EQ(step->getHierarchy(), hierarchy);
    EXPECT_EQ(step->getDisplayName(), "H_");
}

TEST(QORLevel, KeepsTheAssociationsThatGoDownInTheOrderOfAdding) {
    Graph graph;
    auto* const level = graph.make<Level>();
    auto* const first = graph.make<QORLevelAssociation>("B");
    auto* const second = graph.make<QORLevelAssociation>("A");
    auto* const third = graph.make<QORLevelAssociation>("A");
    ASSERT_TRUE(level->addParentOfLevelAssociation(first) && second->addParentLevel(level) &&
                level->addParentOfLevelAssociation(third));
    EXPECT_FALSE(level->addParentOfLevelAssociation(first));
    EXPECT_EQ(listOf(3, [&](int i) { return level->getParentOfLevelAssociation(i); }),
              (std::vector<QORLevelAssociation*>{first, second, third}));
}

TEST(QORLevel, ReencodesFeaturesThenItsKeyThenTheAssociationsThatGoDown) {
    Graph graph;
    auto* const level = graph.make<Level>(inUtf8);
    ASSERT_TRUE(level->addParentOfLevelAssociation(graph.mortal<QORLevelAssociation>("first", inUtf8)) &&
                level->addParentOfLevelAssociation(graph.mortal<QORLevelAssociation>("second", inUtf8)) &&
                level->addChildOfLevelAssociation(graph.mortal<QORLevelAssociation>("up")) &&
                level->addLevelKey(graph.mortal<QORLevelKey>("key", inUtf8)) &&
                level->addDefaultLevelAttribute(graph.mortal<QORLevelAttribute>("default")) &&
                level->addFeature(graph.mortal<QORLevelAttribute>("feature", inUtf8)) &&
                level->addNote(graph.mortal<QORNote>("note")));
    Recoding recode;
    recode(*level);
    EXPECT_EQ(graph.recodings, (Labels{"note", "feature", "key", "first", "second"}));
    EXPECT_EQ(recode.converted, 6);
    EXPECT_EQ(level->getLevelKey()->getName(), inLatin1);
    EXPECT_EQ(level->getParentOfLevelAssociation(0)->getName(), inLatin1);
    EXPECT_EQ(level->getParentOfLevelAssociation(1)->getName(), inLatin1);
}

TEST(QORLevel, IsWalkedFeaturesThenItsKeyThenTheAssociationsThatGoDown) {
    Graph graph;
    auto* const level = graph.make<Level>();
    auto* const first = graph.make<QORLevelAssociation>("B");
    auto* const second = graph.make<QORLevelAssociation>("A");
    auto* const key = graph.make<QORLevelKey>();
    auto* const feature = graph.make<QORLevelAttribute>();
    auto* const note = graph.make<QORNote>();
    ASSERT_TRUE(level->addParentOfLevelAssociation(first) && level->addParentOfLevelAssociation(second) &&
                level->addChildOfLevelAssociation(graph.make<QORLevelAssociation>()) &&
                level->addLevelKey(key) && level->addFeature(feature) && level->addNote(note) &&
                first->addChildLevel(graph.make<Level>()) &&
                level->addDefaultLevelAttribute(graph.make<QORLevelAttribute>()));
    EXPECT_EQ(walkOf(*level), (Objects{level, note, feature, key, first, second}));
}
