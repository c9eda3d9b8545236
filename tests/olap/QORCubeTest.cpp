#include "Expectations.h"

#include <qor/QORAggregationRule.h>
#include <qor/QORCube.h>
#include <qor/QORCubeDimensionAssociation.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORDimension.h>
#include <qor/QORFilter.h>
#include <qor/QORJoin.h>
#include <qor/QORLevelAttribute.h>
#include <qor/QORMeasure.h>
#include <qor/QORNote.h>

namespace {

using Cube = QORCube;

void linkEnds(Graph& graph, Cube& cube, Owners owners) {
    linkBase(graph, cube);
    ASSERT_TRUE(cube.addFeature(graph.mortal<QORMeasure>("feature")));
    ASSERT_TRUE(cube.addFilter(graph.mortal<QORFilter>("filter")));
    ASSERT_TRUE(cube.addJoin(graph.mortal<QORJoin>("join")));
    ASSERT_TRUE(cube.addCubeDimensionAssociation(graph.mortal<QORCubeDimensionAssociation>("association")));
    linkOwner(graph, owners, "package", cube, &Cube::addDesignPackage);
}

} // namespace

TEST(QORCube, TakesAnyFeature) {
    Graph graph;
    auto* const cube = graph.make<Cube>();
    EXPECT_TRUE(cube->addFeature(graph.make<QORMeasure>("A")));
    EXPECT_TRUE(cube->addFeature(graph.make<QORLevelAttribute>("B")));
    EXPECT_FALSE(cube->addFeature(graph.make<QORLevelAttribute>("A")));
    EXPECT_EQ(cube->getFeatureCount(), 2);
}

TEST(QORCube, SharesFiltersAndJoinsWithOtherCubes) {
    Graph graph;
    auto* const cube = graph.make<Cube>();
    auto* const filter = graph.make<QORFilter>();
    auto* const join = graph.make<QORJoin>();
    EXPECT_TRUE(cube->addFilter(filter) && filter->addCube(graph.make<Cube>()));
    EXPECT_TRUE(cube->addJoin(join) && join->addCube(graph.make<Cube>()));
    EXPECT_FALSE(filter->addCube(cube));
    EXPECT_FALSE(cube->addJoin(join));
    EXPECT_EQ(filter->getCubeCount(), 2);
    EXPECT_EQ(join->getCubeCount(), 2);
    EXPECT_EQ(filter->getParent(), nullptr);
    EXPECT_TRUE(join->removeCube(cube));
    EXPECT_EQ(cube->getJoinCount(), 0);
}

TEST(QORCube, IsTakenApartInOrder) {
    expectTakenApart<Cube>(linkEnds, {"filter", "join", "association", "feature", "package", "base"},
                           {"base", "feature", "association", "filter", "join"});
}

TEST(QORCube, DeletesItsAssociationsAndTheDimensionsThatNothingElseRefersTo) {
    Graph graph;
    auto* const cube = graph.make<Cube>();
    auto const associate = [&](char const* label, QORDimension* dimension) {
        auto* const association = graph.mortal<QORCubeDimensionAssociation>(label);
        EXPECT_TRUE(cube->addCubeDimensionAssociation(association) && association->addDimension(dimension));
    };
    auto* const kept = graph.make<QORDimension>();
    ASSERT_TRUE(kept->addNote(graph.make<QORNote>()));
    associate("with kept", kept);
    EXPECT_TRUE(cube->recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"with kept"});
    EXPECT_EQ(kept->getCubeDimensionAssociationCount(), 0);
    associate("with last", graph.mortal<QORDimension>("last"));
    EXPECT_TRUE(cube->recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"with kept", "last", "with last"}));
}

TEST(QORCube, BelongsToADesignPackage) {
    expectNamedAndOwned<QORDesignPackage, Cube>(&QORDesignPackage::addModelElement, "DesignPackage",
                                                "ModelElement");
}

TEST(QORCube, ReencodesFeaturesBeforeAssociations) {
    Graph graph;
    auto* const cube = graph.make<Cube>(inUtf8);
    ASSERT_TRUE(
        cube->addCubeDimensionAssociation(graph.mortal<QORCubeDimensionAssociation>("association", inUtf8)) &&
        cube->addFeature(graph.mortal<QORMeasure>("feature", inUtf8)) &&
        cube->addNote(graph.mortal<QORNote>("note")) && cube->addFilter(graph.mortal<QORFilter>("filter")) &&
        cube->addJoin(graph.mortal<QORJoin>("join")));
    Recoding recode;
    recode(*cube);
    EXPECT_EQ(graph.recodings, (Labels{"note", "feature", "association"}));
    EXPECT_EQ(recode.converted, 4);
    EXPECT_EQ(cube->getCubeDimensionAssociation(0)->getName(), inLatin1);
}

TEST(QORCube, IsWalkedFeaturesBeforeAssociations) {
    Graph graph;
    auto* const cube = graph.make<Cube>();
    auto* const association = graph.make<QORCubeDimensionAssociation>();
    auto* const measure = graph.make<QORMeasure>();
    auto* const rule = graph.make<QORAggregationRule>();
    auto* const note = graph.make<QORNote>();
    ASSERT_TRUE(cube->addCubeDimensionAssociation(association) && cube->addFeature(measure) &&
                measure->addAggregationRule(rule) && association->addAggregationRule(rule) &&
                cube->addNote(note) && cube->addJoin(graph.make<QORJoin>()) &&
                cube->addFilter(graph.make<QORFilter>()));
    EXPECT_EQ(walkOf(*cube), (Objects{cube, note, measure, rule, association}));
}
