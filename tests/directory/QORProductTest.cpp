#include "Expectations.h"

#include <qor/QORDirectory.h>
#include <qor/QORNote.h>
#include <qor/QORProduct.h>
#include <qor/QORVersion.h>

TEST(QORProduct, IsRenamedOnlyInItsDirectoryWhenAParentProductHoldsItToo) {
    Graph graph;
    auto* const directory = graph.make<QORDirectory>();
    auto* const parent = graph.make<QORProduct>();
    auto* const product = graph.make<QORProduct>("a");
    auto* const sibling = graph.make<QORProduct>("m");
    for (QORProduct* each : {product, sibling}) {
        directory->addProduct(each);
        parent->addChildProduct(each);
    }
    product->setName("z");
    EXPECT_EQ(directory->getProduct(0), sibling);
    EXPECT_EQ(directory->getProduct(1), product);
    EXPECT_EQ(parent->getChildProduct(0), product);
    EXPECT_EQ(parent->getChildProduct(1), sibling);
    EXPECT_EQ(product->getParentProduct(), parent);
    product->setName("a");
}

TEST(QORProduct, ANameTakenInTheParentProductIsNoObstacleInTheDirectory) {
    Graph graph;
    auto* const directory = graph.make<QORDirectory>();
    auto* const parent = graph.make<QORProduct>();
    auto* const product = graph.make<QORProduct>("a");
    directory->addProduct(product);
    parent->addChildProduct(product);
    parent->addChildProduct(graph.make<QORProduct>("m"));
    product->setName("m");
    EXPECT_STREQ(product->getName().chars, "m");
    EXPECT_EQ(parent->getChildProductCount(), 2);
    product->setName("a");
}

TEST(QORProduct, LeavesItsDirectoryBeforeItsParentProduct) {
    Graph graph;
    auto* const directory = graph.make<QORDirectory>();
    auto* const parent = graph.make<QORProduct>();
    auto* const product = graph.make<QORProduct>();
    parent->addChildProduct(product);
    EXPECT_EQ(product->getParent(), parent);
    directory->addProduct(product);
    EXPECT_EQ(product->getParent(), directory);
    EXPECT_EQ(product->getParentCount(), 2);
    expectDeletionRefused(*product);
    EXPECT_EQ(product->removeAggregationAssembly(), directory);
    EXPECT_EQ(product->getParentCount(), 1);
    expectDeletionRefused(*product);
    EXPECT_EQ(product->removeAggregationAssembly(), parent);
    EXPECT_EQ(product->removeAggregationAssembly(), nullptr);
}

TEST(QORProduct, LeavesNoTraceInEitherOwner) {
    QORDirectory directory;
    QORProduct parent;
    auto* const product = new QORProduct;
    directory.addProduct(product);
    parent.addChildProduct(product);
    delete product;
    EXPECT_EQ(directory.getProductCount(), 0);
    EXPECT_EQ(parent.getChildProductCount(), 0);
}

TEST(QORProduct, DeletesReferencesThenVersionsThenChildrenThenAFreeDefaultVersion) {
    Graph graph;
    QORProduct product;
    product.addDefaultVersion(graph.mortal<QORVersion>("default"));
    for (char const* name : {"child b", "child a"})
        product.addChildProduct(graph.mortal<QORProduct>(name));
    for (char const* name : {"version b", "version a"})
        product.addVersion(graph.mortal<QORVersion>(name));
    product.addReferencedComponent(graph.mortal<QORProduct>("referenced"));
    product.addReferencedByComponent(graph.mortal<QORProduct>("referrer"));
    product.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(product.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "referrer", "referenced", "version a", "version b", "child a",
                                    "child b", "default"}));
}

TEST(QORProduct, LeavesADefaultVersionThatHasAProduct) {
    Graph graph;
    auto* const owner = graph.make<QORProduct>();
    auto* const version = graph.make<QORVersion>();
    owner->addVersion(version);
    auto* const product = new QORProduct;
    product->addDefaultVersion(version);
    delete product;
    EXPECT_EQ(version->getDefaultOfProduct(), nullptr);
    EXPECT_EQ(version->getProduct(), owner);
}

TEST(QORProduct, IsolatesInItsOwnOrder) {
    Graph graph;
    QORProduct product;
    product.addReferencedComponent(graph.mortal<QORProduct>("referenced"));
    product.addChildProduct(graph.mortal<QORProduct>("child"));
    product.addVersion(graph.mortal<QORVersion>("version"));
    product.addDefaultVersion(graph.mortal<QORVersion>("default"));
    product.addParentProduct(graph.mortal<QORProduct>("parent"));
    product.addDirectory(graph.mortal<QORDirectory>("directory"));
    EXPECT_EQ(product.isolate(true), &product);
    EXPECT_EQ(graph.deaths, (Labels{"directory", "parent", "default", "version", "child", "referenced"}));
}

TEST(QORProduct, ReencodesAndWalksVersionsThenChildren) {
    Graph graph;
    auto* const product = graph.make<QORProduct>();
    auto* const child = graph.mortal<QORProduct>("child");
    auto* const version = graph.mortal<QORVersion>("version");
    product->addChildProduct(child);
    product->addVersion(version);
    product->addDefaultVersion(graph.mortal<QORVersion>("default"));
    EXPECT_EQ(walkOf(*product), (Objects{product, version, child}));
    Recoding recode;
    recode(*product);
    EXPECT_EQ(graph.recodings, (Labels{"version", "child"}));
}
