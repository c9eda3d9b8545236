#include "ModelTestSupport.h"

#include <qor/QORClass.h>
#include <qor/QORDependency.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORRealization.h>

namespace {

void link(Graph& graph, QORDependency& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "package", object, &QORModelElement::addDesignPackage);
    ASSERT_TRUE(object.addSupplierClass(hung<QORClass>(graph, "supplier")));
    ASSERT_TRUE(object.addClientClass(hung<QORClass>(graph, "client")));
}

} // namespace

TEST(QORDependency, IsARelationshipThatEqualsByWhatAModelObjectHolds) {
    graph::expectConcrete<QORDependency>(QORElementType::DEPENDENCY, 40, "Dependency",
                                         QORRelationship::getStaticMetaClass());
    expectClassesUnequal<QORDependency, QORRealization>();
    expectAttribute<QORDependency>(&QORDependency::getPhysicalName, &QORDependency::setPhysicalName, "", "A");
}

TEST(QORDependency, CopiesHaveNoLinks) {
    expectCopiesUnlinked<QORDependency>(link);
}

TEST(QORDependency, EachEndCountsAsAReference) {
    expectEndCounts<QORDependency, QORClass>(&QORDependency::addClientClass);
    expectEndCounts<QORDependency, QORClass>(&QORDependency::addSupplierClass);
}

TEST(QORDependency, IsTakenApartInOrder) {
    expectTakenApart<QORDependency>(link, {"client", "supplier", "package", "base", "synonym", "note"},
                                    {"note", "synonym", "base", "client", "supplier"});
    expectIsolationFreesFarEnds<QORDependency>(link);
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
