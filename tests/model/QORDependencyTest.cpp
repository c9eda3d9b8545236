#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORDependency.h>

namespace {

void link(Graph& graph, QORDependency& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "package", object, &QORModelElement::addDesignPackage);
    ASSERT_TRUE(object.addSupplierClass(graph.mortal<QORClass>("supplier")));
    ASSERT_TRUE(object.addClientClass(graph.mortal<QORClass>("client")));
}

} // namespace

TEST(QORDependency, IsTakenApartInOrder) {
    expectTakenApart<QORDependency>(link, {"client", "supplier", "package", "base", "synonym", "note"},
                                    {"note", "synonym", "base", "client", "supplier"});
    expectChildrenReached<QORDependency>(link, {"note", "synonym"});
}

TEST(QORDependency, ShowsTheSupplierFirst) {
    Graph graph;
    auto* const dependency = graph.make<QORDependency>("dependency");
    auto* const supplier = graph.make<QORClass>("Y");
    EXPECT_EQ(dependency->getDisplayName(), "_");
    ASSERT_TRUE(dependency->addSupplierClass(supplier));
    EXPECT_EQ(dependency->getDisplayName(), "Y_");
    ASSERT_TRUE(dependency->addClientClass(graph.make<QORClass>("X")));
    EXPECT_EQ(dependency->getDisplayName(), "Y_X");
    ASSERT_TRUE(dependency->removeSupplierClass(supplier));
    EXPECT_EQ(dependency->getDisplayName(), "_X");
}

TEST(QORDependency, AClassMayDependOnItself) {
    Graph graph;
    auto* const dependency = graph.make<QORDependency>();
    auto* const owner = graph.make<QORClass>("A");
    EXPECT_TRUE(owner->addDependency(dependency));
    EXPECT_TRUE(owner->addSupplierOfDependency(dependency));
    EXPECT_FALSE(graph.make<QORClass>()->addDependency(dependency));
    EXPECT_EQ(dependency->getClientClass(), owner);
    EXPECT_EQ(dependency->getSupplierClass(), owner);
    EXPECT_EQ(dependency->getDisplayName(), "A_A");
}
