#include "GraphTestSupport.h"

#include <qor/QORCube.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORFilter.h>
#include <qor/QORMeasure.h>

namespace {

using Filter = QORFilter;

void linkEnds(Graph& graph, Filter& filter, Owners owners) {
    linkBase(graph, filter);
    ASSERT_TRUE(filter.addFeature(graph.mortal<QORMeasure>("feature")));
    ASSERT_TRUE(filter.addCube(graph.mortal<QORCube>("cube")));
    linkOwner(graph, owners, "package", filter, &Filter::addDesignPackage);
}

} // namespace

TEST(QORFilter, StartsShown) {
    Filter filter;
    EXPECT_FALSE(filter.getHide());
    filter.setHide(true);
    Filter other(filter);
    EXPECT_EQ(other, filter);
    other.setHide(false);
    EXPECT_NE(other, filter);
    other.setFrom(filter);
    EXPECT_EQ(other, filter);
}

TEST(QORFilter, BelongsToADesignPackageAndNotToACube) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const filter = graph.make<Filter>("A");
    ASSERT_TRUE(filter->addCube(graph.make<QORCube>()));
    EXPECT_EQ(filter->getParent(), nullptr);
    ASSERT_TRUE(package->addModelElement(filter) && package->addModelElement(graph.make<Filter>("B")));
    expectNameRefused(*filter, "B", "DesignPackage", "ModelElement");
    EXPECT_EQ(filter->removeAggregationAssembly(), package);
}

TEST(QORFilter, IsTakenApartInOrder) {
    expectTakenApart<Filter>(linkEnds, {"cube", "feature", "package", "base"}, {"base", "feature", "cube"});
}

TEST(QORFilter, ItsCubesCountAsReferences) {
    expectEndCounts<Filter, QORCube>(&Filter::addCube);
}

TEST(QORFilter, OwnsItsFeaturesAndNotItsCubes) {
    Graph graph;
    auto* const filter = graph.make<Filter>();
    auto* const feature = graph.make<QORMeasure>();
    ASSERT_TRUE(filter->addFeature(feature) && filter->addCube(graph.make<QORCube>()));
    EXPECT_EQ(walkOf(*filter), (std::vector<QORObject*>{filter, feature}));
}
