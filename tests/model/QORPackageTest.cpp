#include "Expectations.h"

#include <qor/QORDatabaseSchema.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORPackage.h>

namespace {

/// A package is abstract: a database schema has all that it has, and one end more, which stays empty here.
void link(Graph& graph, QORDatabaseSchema& object, Owners owners) {
    linkLayers(graph, object);
    linkOwnerMade<QORDesignPackage>(graph, owners, "parent", object, &QORPackage::addParentPackage);
    ASSERT_TRUE(object.addChildPackage(graph.mortal<QORDesignPackage>("b")));
    ASSERT_TRUE(object.addChildPackage(graph.mortal<QORDatabaseSchema>("c")));
    ASSERT_TRUE(object.addChildPackage(graph.mortal<QORDatabaseSchema>("a")));
}

} // namespace

TEST(QORPackage, ChildrenOfTwoClassesMayShareAName) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>("root");
    auto* const design = graph.make<QORDesignPackage>("A");
    auto* const schema = graph.make<QORDatabaseSchema>("A");
    auto* const again = graph.make<QORDesignPackage>("A");
    EXPECT_TRUE(parent->addChildPackage(schema));
    EXPECT_TRUE(parent->addChildPackage(design));
    EXPECT_FALSE(parent->addChildPackage(again));
    EXPECT_FALSE(again->addParentPackage(parent));
    EXPECT_EQ(again->getParentPackage(), nullptr);
    ASSERT_EQ(parent->getChildPackageCount(), 2);
    EXPECT_EQ(parent->getChildPackage(0), design); // of one name, the lower element type goes first
    EXPECT_EQ(parent->getChildPackage(1), schema);
}

TEST(QORPackage, ChildrenAreSortedByName) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>();
    for (char const* const name : {"b", "c", "a"})
        ASSERT_TRUE(parent->addChildPackage(graph.make<QORDatabaseSchema>(name)));
    ASSERT_TRUE(parent->addChildPackage(graph.make<QORDesignPackage>("bb")));
    EXPECT_EQ(namesOf(farObjectsOf(*parent)), (Labels{"a", "b", "bb", "c"}));
}

TEST(QORPackage, LeavesItsParentPackage) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>();
    auto* const child = graph.make<QORDesignPackage>();
    ASSERT_TRUE(parent->addChildPackage(child));
    expectLeaves(*child, {parent});
    EXPECT_EQ(parent->getChildPackageCount(), 0);
}

TEST(QORPackage, IsTakenApartInOrder) {
    expectTakenApart<QORDatabaseSchema>(link, {"parent", "a", "b", "c", "base", "synonym", "note"},
                                        {"note", "synonym", "base", "a", "b", "c"});
}

TEST(QORPackage, ReachesSynonymsBeforeChildPackages) {
    expectChildrenReached<QORDatabaseSchema>(link, {"note", "synonym", "a", "b", "c"});
}

TEST(QORPackage, DeletingTheRootDeletesTheWholeTree) {
    Graph graph;
    auto* const root = graph.mortal<QORDesignPackage>("root");
    auto* const middle = graph.mortal<QORDatabaseSchema>("middle");
    ASSERT_TRUE(root->addChildPackage(middle));
    ASSERT_TRUE(middle->addChildPackage(graph.mortal<QORDesignPackage>("leaf")));
    delete root;
    EXPECT_EQ(graph.deaths, (Labels{"root", "leaf", "middle"}));
}

TEST(QORPackage, ANameIsRefusedOnlyForASiblingOfTheSameClass) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>();
    auto* const design = graph.make<QORDesignPackage>("B");
    ASSERT_TRUE(parent->addChildPackage(design));
    ASSERT_TRUE(parent->addChildPackage(graph.make<QORDesignPackage>("A")));
    ASSERT_TRUE(parent->addChildPackage(graph.make<QORDatabaseSchema>("C")));
    expectNameRefused(*design, "A", "Package", "Package");
    EXPECT_EQ(parent->getChildPackage(1), design);
    design->setName("C");
    EXPECT_EQ(design->getParentPackage(), parent);
    EXPECT_EQ(namesOf(farObjectsOf(*parent)), (Labels{"A", "C", "C"}));
}

TEST(QORPackage, ARenamedChildTakesItsNewPlace) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>();
    auto* const child = graph.make<QORDesignPackage>("a");
    ASSERT_TRUE(parent->addChildPackage(child));
    ASSERT_TRUE(parent->addChildPackage(graph.make<QORDesignPackage>("b")));
    child->setName("c");
    EXPECT_EQ(parent->getChildPackage(1), child);
    EXPECT_EQ(child->getParentPackage(), parent);
    child->setName("c");
    EXPECT_EQ(parent->getChildPackage(1), child);
}

TEST(QORPackage, WithoutParentAnyNameIsTaken) {
    QORDesignPackage package;
    package.setName("A");
    EXPECT_EQ(package.getName(), "A");
}

TEST(QORPackage, ASiblingWhoseNameCollidesAfterReencodingGetsANumber) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>();
    auto* const first = graph.make<QORDesignPackage>("+AGE-+AHg-"); // another form of the next one's name
    auto* const second = graph.make<QORDesignPackage>("+AGE-x");
    auto* const other = graph.make<QORDatabaseSchema>("+AGE-x");
    ASSERT_TRUE(parent->addChildPackage(first) && parent->addChildPackage(second) &&
                parent->addChildPackage(other));
    Recoding recode("UTF-7", "UTF-8");
    recode(*parent);
    EXPECT_EQ(recode.errors, 0);
    EXPECT_EQ(first->getName(), "ax");
    EXPECT_EQ(second->getName(), "ax/1");
    EXPECT_EQ(other->getName(), "ax");
    EXPECT_EQ(second->getParentPackage(), parent);
    EXPECT_EQ(namesOf(farObjectsOf(*parent)), (Labels{"ax", "ax", "ax/1"}));
}

TEST(QORPackage, EachChildIsReencodedOnceThoughItsNewNameMovesIt) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>();
    ASSERT_TRUE(parent->addChildPackage(graph.mortal<QORDesignPackage>("first", "+AHo-"))); // z
    ASSERT_TRUE(parent->addChildPackage(graph.mortal<QORDesignPackage>("second", "b")));
    ASSERT_TRUE(parent->addChildPackage(graph.mortal<QORDesignPackage>("third", "c")));
    Recoding recode("UTF-7", "UTF-8");
    recode(*parent);
    EXPECT_EQ(graph.recodings, (Labels{"first", "second", "third"}));
    EXPECT_EQ(recode.converted, 3);
    EXPECT_EQ(namesOf(farObjectsOf(*parent)), (Labels{"b", "c", "z"}));
}
