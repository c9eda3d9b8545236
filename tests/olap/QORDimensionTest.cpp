#include "Expectations.h"

#include <qor/QORCubeDimensionAssociation.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORDimension.h>
#include <qor/QORDimensionAttribute.h>
#include <qor/QORFilter.h>
#include <qor/QORHierarchy.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORJoin.h>
#include <qor/QORLevel.h>
#include <qor/QORLevelKey.h>
#include <qor/QORNote.h>

namespace {

using Dimension = QORDimension;

void linkEnds(Graph& graph, Dimension& dimension, Owners owners) {
    linkBase(graph, dimension);
    ASSERT_TRUE(dimension.addFeature(graph.mortal<QORDimensionAttribute>("feature")));
    ASSERT_TRUE(dimension.addDefaultHierarchy(graph.mortal<QORHierarchy>("defaultHierarchy")));
    ASSERT_TRUE(dimension.addHierarchy(graph.mortal<QORHierarchy>("hierarchy")));
    ASSERT_TRUE(dimension.addLevel(graph.mortal<QORLevel>("level")));
    ASSERT_TRUE(dimension.addCubeDimensionAssociation(graph.mortal<QORCubeDimensionAssociation>("cube")));
    ASSERT_TRUE(dimension.addJoin(graph.mortal<QORJoin>("join")));
    linkOwner(graph, owners, "package", dimension, &Dimension::addDesignPackage);
}

} // namespace

TEST(QORDimension, RemovesAllHierarchies) {
    Graph graph;
    auto* const dimension = graph.make<Dimension>();
    auto* const kept = graph.make<QORHierarchy>("B");
    ASSERT_TRUE(dimension->addHierarchy(graph.mortal<QORHierarchy>("C")) && dimension->addHierarchy(kept) &&
                kept->addNote(graph.make<QORNote>()) &&
                dimension->addHierarchy(graph.mortal<QORHierarchy>("A")));
    dimension->removeHierarchys();
    EXPECT_EQ(graph.deaths, (Labels{"A", "C"}));
    EXPECT_EQ(kept->getDimension(), nullptr);
    EXPECT_EQ(dimension->getHierarchyCount(), 0);
    dimension->removeHierarchys();
}

TEST(QORDimension, IsTakenApartInOrder) {
    expectTakenApart<Dimension>(
        linkEnds, {"defaultHierarchy", "hierarchy", "level", "cube", "join", "feature", "package", "base"},
        {"base", "feature", "hierarchy", "level", "defaultHierarchy", "cube", "join"});
}

TEST(QORDimension, DeletesItsDefaultHierarchyOnceWithItsHierarchies) {
    Graph graph;
    auto* const dimension = new Dimension;
    auto* const first = graph.mortal<QORHierarchy>("A");
    auto* const second = graph.mortal<QORHierarchy>("B");
    ASSERT_TRUE(dimension->addHierarchy(second) && dimension->addHierarchy(first) &&
                dimension->addDefaultHierarchy(first));
    delete dimension;
    EXPECT_EQ(graph.deaths, (Labels{"A", "B"}));
}

TEST(QORDimension, LeavesADefaultHierarchyToItsOwner) {
    Graph graph;
    auto* const dimension = new Dimension;
    auto* const owner = graph.make<Dimension>();
    auto* const hierarchy = graph.make<QORHierarchy>();
    ASSERT_TRUE(owner->addHierarchy(hierarchy) && dimension->addDefaultHierarchy(hierarchy));
    delete dimension;
    EXPECT_EQ(hierarchy->getDefaultOfDimension(), nullptr);
    EXPECT_EQ(hierarchy->getDimension(), owner);
}

TEST(QORDimension, DeletesItsLevelsWithTheirKeysAlthoughReferenced) {
    Graph graph;
    auto* const dimension = graph.make<Dimension>();
    auto* const level = new QORLevel;
    auto* const step = graph.make<QORHierarchyLevelAssociation>();
    ASSERT_TRUE(dimension->addLevel(level) && level->addLevelKey(graph.mortal<QORLevelKey>("key")) &&
                level->addHierarchyLevelAssociation(step) && step->addNote(graph.make<QORNote>()));
    EXPECT_FALSE(level->recursiveDelete());
    EXPECT_TRUE(dimension->recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"key"});
    EXPECT_EQ(step->getLevel(), nullptr);
    EXPECT_EQ(dimension->getLevelCount(), 0);
}

TEST(QORDimension, UsesTheNameAndOwnersOfAClassifier) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const dimension = graph.make<Dimension>("D");
    ASSERT_TRUE(package->addModelElement(dimension) && package->addModelElement(graph.make<Dimension>("E")) &&
                package->addModelElement(graph.make<QORFilter>("F")));
    expectNameRefused(*dimension, "E", "DesignPackage", "ModelElement");
    dimension->setName("F");
    EXPECT_EQ(dimension->getName(), "F");
    EXPECT_EQ(dimension->getParent(), package);
    EXPECT_EQ(dimension->getParentCount(), 1);
    EXPECT_EQ(dimension->removeAggregationAssembly(), package);
}

TEST(QORDimension, ReencodesFeaturesThenHierarchiesThenLevels) {
    Graph graph;
    auto* const dimension = graph.make<Dimension>(inUtf8);
    ASSERT_TRUE(dimension->addLevel(graph.mortal<QORLevel>("first level", inUtf8)) &&
                dimension->addLevel(graph.mortal<QORLevel>("second level", "\xC4")) &&
                dimension->addHierarchy(graph.mortal<QORHierarchy>("first hierarchy", inUtf8)) &&
                dimension->addHierarchy(graph.mortal<QORHierarchy>("second hierarchy", "\xC4")) &&
                dimension->addFeature(graph.mortal<QORDimensionAttribute>("feature", inUtf8)) &&
                dimension->addNote(graph.mortal<QORNote>("note")) &&
                dimension->addDefaultHierarchy(graph.mortal<QORHierarchy>("default")));
    Recoding recode;
    recode(*dimension);
    EXPECT_EQ(graph.recodings, (Labels{"note", "feature", "first hierarchy", "second hierarchy",
                                       "first level", "second level"}));
    EXPECT_EQ(dimension->getHierarchy(1)->getName(), inLatin1);
    EXPECT_EQ(dimension->getLevel(1)->getName(), inLatin1);
}

TEST(QORDimension, IsWalkedFeaturesThenHierarchiesThenLevels) {
    Graph graph;
    auto* const dimension = graph.make<Dimension>();
    auto* const level = graph.make<QORLevel>();
    auto* const otherLevel = graph.make<QORLevel>("A");
    auto* const hierarchy = graph.make<QORHierarchy>();
    auto* const step = graph.make<QORHierarchyLevelAssociation>();
    auto* const feature = graph.make<QORDimensionAttribute>();
    auto* const note = graph.make<QORNote>();
    ASSERT_TRUE(dimension->addLevel(otherLevel) && dimension->addLevel(level) &&
                dimension->addHierarchy(hierarchy) && dimension->addFeature(feature) &&
                dimension->addNote(note) && hierarchy->addHierarchyLevelAssociation(step) &&
                step->addLevel(level) && dimension->addDefaultHierarchy(graph.make<QORHierarchy>()));
    EXPECT_EQ(walkOf(*dimension), (Objects{dimension, note, feature, hierarchy, step, level, otherLevel}));
}
