#include "Expectations.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORForeignKey.h>
#include <qor/QORGeneralization.h>

namespace {

void link(Graph& graph, QORGeneralization& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "package", object, &QORModelElement::addDesignPackage);
    ASSERT_TRUE(object.addDiscriminatorAttribute(graph.mortal<QORAttribute>("discriminator")));
    ASSERT_TRUE(object.addSubtypeClass(graph.mortal<QORClass>("subtype b")));
    ASSERT_TRUE(object.addSubtypeClass(graph.mortal<QORClass>("subtype a")));
    ASSERT_TRUE(object.addSupertypeClass(graph.mortal<QORClass>("supertype b")));
    ASSERT_TRUE(object.addSupertypeClass(graph.mortal<QORClass>("supertype a")));
    ASSERT_TRUE(object.addForeignKey(graph.mortal<QORForeignKey>("foreign key")));
}

} // namespace

TEST(QORGeneralization, IsTakenApartInOrder) {
    Labels const own{"foreign key", "supertype b", "supertype a", "subtype b", "subtype a", "discriminator"};
    Labels isolated = own;
    for (char const* const label : {"package", "base", "synonym", "note"})
        isolated.emplace_back(label);
    Labels deleted{"note", "synonym", "base"};
    deleted.insert(deleted.end(), own.begin(), own.end());
    expectTakenApart<QORGeneralization>(link, isolated, deleted);
}

TEST(QORGeneralization, ReachesNoClass) {
    expectChildrenReached<QORGeneralization>(link, {"note", "synonym"});
}

TEST(QORGeneralization, ShowsSupertypesAndTheOnlySubtypeOfAnOnlySupertype) {
    Graph graph;
    auto* const generalization = graph.make<QORGeneralization>("generalization");
    auto* const a = graph.make<QORClass>("A");
    auto* const b = graph.make<QORClass>("B");
    auto* const c = graph.make<QORClass>("C");
    auto* const d = graph.make<QORClass>("D");
    EXPECT_EQ(generalization->getDisplayName(), "");
    ASSERT_TRUE(generalization->addSubtypeClass(c));
    EXPECT_EQ(generalization->getDisplayName(), "");
    ASSERT_TRUE(generalization->addSupertypeClass(b));
    EXPECT_EQ(generalization->getDisplayName(), "B_subtypedto_C");
    ASSERT_TRUE(generalization->addSupertypeClass(a));
    EXPECT_EQ(generalization->getDisplayName(), "B_A"); // in the order of their coming
    ASSERT_TRUE(generalization->removeSupertypeClass(b));
    EXPECT_EQ(generalization->getDisplayName(), "A_subtypedto_C");
    ASSERT_TRUE(generalization->addSubtypeClass(d));
    EXPECT_EQ(generalization->getDisplayName(), "A");
    generalization->isolate(false);
    ASSERT_TRUE(generalization->addSupertypeClass(a));
    EXPECT_EQ(generalization->getDisplayName(), "A");
}

TEST(QORGeneralization, RemovesAllClassesOfASide) {
    Graph graph;
    auto* const generalization = graph.make<QORGeneralization>();
    auto* const held = graph.make<QORClass>();
    ASSERT_TRUE(held->addFeature(graph.make<QORAttribute>()));
    ASSERT_TRUE(generalization->addSupertypeClass(graph.mortal<QORClass>("super")));
    ASSERT_TRUE(generalization->addSupertypeClass(held));
    ASSERT_TRUE(generalization->addSubtypeClass(graph.mortal<QORClass>("sub")));
    generalization->removeSupertypeClasss();
    EXPECT_EQ(graph.deaths, Labels{"super"});
    EXPECT_EQ(held->getSupertypeOfGeneralizationCount(), 0);
    generalization->removeSubtypeClasss();
    EXPECT_EQ(graph.deaths, (Labels{"super", "sub"}));
    EXPECT_FALSE(generalization->isReferenced());
}

TEST(QORGeneralization, AClassStandsOnceOnEachSide) {
    Graph graph;
    auto* const generalization = graph.make<QORGeneralization>();
    auto* const a = graph.make<QORClass>("A");
    EXPECT_TRUE(generalization->addSupertypeClass(a));
    EXPECT_FALSE(generalization->addSupertypeClass(a));
    EXPECT_FALSE(a->addSupertypeOfGeneralization(generalization));
    EXPECT_TRUE(a->addSubtypeOfGeneralization(generalization));
    EXPECT_EQ(generalization->getSupertypeClassCount(), 1);
    EXPECT_EQ(a->getSupertypeOfGeneralizationCount(), 1);
    EXPECT_EQ(generalization->getDisplayName(), "A_subtypedto_A");
}
