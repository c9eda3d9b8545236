#include "Expectations.h"

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

TEST(QORFilter, BelongsToADesignPackageAndNotToACube) {
    Graph graph;
    auto* const filter = graph.make<Filter>();
    ASSERT_TRUE(filter->addCube(graph.make<QORCube>()));
    expectParent(*filter, nullptr, 0);
    expectNamedAndOwned<QORDesignPackage, Filter>(&QORDesignPackage::addModelElement, "DesignPackage",
                                                  "ModelElement");
}

TEST(QORFilter, IsTakenApartInOrder) {
    expectTakenApart<Filter>(linkEnds, {"cube", "feature", "package", "base"}, {"base", "feature", "cube"});
}

TEST(QORFilter, OwnsItsFeaturesAndNotItsCubes) {
    Graph graph;
    auto* const filter = graph.make<Filter>();
    auto* const feature = graph.make<QORMeasure>();
    ASSERT_TRUE(filter->addFeature(feature) && filter->addCube(graph.make<QORCube>()));
    EXPECT_EQ(walkOf(*filter), (Objects{filter, feature}));
}
