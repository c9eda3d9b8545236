#include "GraphObservers.h"

#include <qor/QORDirectory.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORNote.h>
#include <qor/QORProduct.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORProduct, IsAComponent) {
    expectConcrete<QORProduct>(QORElementType::PRODUCT, 30, "Product", QORComponent::getStaticMetaClass());
}

TEST(QORProduct, StartsGenericAndCheckedIn) {
    QORProduct product;
    EXPECT_EQ(product.getProductType(), QORProductType::GENERIC);
    EXPECT_EQ(static_cast<int>(product.getProductType()), 5);
    EXPECT_EQ(product.getState(), QORVersionStateType::CHECKED_IN);
    EXPECT_EQ(static_cast<int>(product.getState()), 0);
    QORMetaClass const* const metaClass = QORProduct::getStaticMetaClass();
    EXPECT_STREQ(metaClass->getMetaAttributeByDisplayName("productType")->getDefaultValue().chars, "GENERIC");
    EXPECT_STREQ(metaClass->getMetaAttributeByDisplayName("state")->getDefaultValue().chars, "CHECKED_IN");
    EXPECT_FALSE(product.isReferenced());
}

TEST(QORProduct, IsReferencedThroughEachOfItsLinks) {
    using P = QORProduct;
    expectReferencedThrough<P, QORDirectory>(&P::addDirectory, &P::removeDirectory);
    expectReferencedThrough<P, QORProduct>(&P::addParentProduct, &P::removeParentProduct);
    expectReferencedThrough<P, QORProduct>(&P::addChildProduct, &P::removeChildProduct);
    expectReferencedThrough<P, QORVersion>(&P::addDefaultVersion, &P::removeDefaultVersion);
    expectReferencedThrough<P, QORVersion>(&P::addVersion, &P::removeVersion);
    expectReferencedThrough<P, QORProduct>(&QORComponent::addReferencedComponent,
                                           &QORComponent::removeReferencedComponent);
}

TEST(QORProduct, RefusesATakenNameInItsDirectory) {
    QORDirectory directory;
    auto* const product = named<QORProduct>("product");
    directory.addProduct(product);
    directory.addProduct(named<QORProduct>("taken"));
    expectNameRefused(*product, "taken", "Directory", "Product");
    EXPECT_EQ(directory.getProduct(0), product);
    product->setName("zebra");
    EXPECT_EQ(directory.getProduct(1), product);
}

TEST(QORProduct, RefusesATakenNameInItsParentProduct) {
    QORProduct parent;
    auto* const product = named<QORProduct>("product");
    parent.addChildProduct(product);
    parent.addChildProduct(named<QORProduct>("taken"));
    expectNameRefused(*product, "taken", "Product", "Product");
    EXPECT_EQ(parent.getChildProductCount(), 2);
}

TEST(QORProduct, IsRenamedOnlyInItsDirectoryWhenAParentProductHoldsItToo) {
    Held<QORDirectory> directory;
    Held<QORProduct> parent;
    Held<QORProduct> product("a");
    Held<QORProduct> sibling("m");
    for (QORProduct* each : {product.get(), sibling.get()}) {
        directory->addProduct(each);
        parent->addChildProduct(each);
    }
    product->setName("z");
    EXPECT_EQ(directory->getProduct(0), sibling.get());
    EXPECT_EQ(directory->getProduct(1), product.get());
    EXPECT_EQ(parent->getChildProduct(0), product.get());
    EXPECT_EQ(parent->getChildProduct(1), sibling.get());
    EXPECT_EQ(product->getParentProduct(), parent.get());
    product->setName("a");
}

TEST(QORProduct, ANameTakenInTheParentProductIsNoObstacleInTheDirectory) {
    Held<QORDirectory> directory;
    Held<QORProduct> parent;
    Held<QORProduct> product("a");
    Held<QORProduct> sibling("m");
    directory->addProduct(product);
    parent->addChildProduct(product);
    parent->addChildProduct(sibling);
    product->setName("m");
    EXPECT_STREQ(product->getName().chars, "m");
    EXPECT_EQ(parent->getChildProductCount(), 2);
    product->setName("a");
}

TEST(QORProduct, LeavesItsDirectoryBeforeItsParentProduct) {
    Held<QORDirectory> directory;
    Held<QORProduct> parent;
    Held<QORProduct> product;
    parent->addChildProduct(product);
    EXPECT_EQ(product->getParent(), parent.get());
    directory->addProduct(product);
    EXPECT_EQ(product->getParent(), directory.get());
    EXPECT_EQ(product->getParentCount(), 2);
    expectDeletionRefused(*product);
    EXPECT_EQ(product->removeAggregationAssembly(), directory.get());
    EXPECT_EQ(product->getParentCount(), 1);
    expectDeletionRefused(*product);
    EXPECT_EQ(product->removeAggregationAssembly(), parent.get());
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

TEST(QORProduct, TakesAnyVersionAsItsDefaultOne) {
    Held<QORProduct> product;
    Held<QORProduct> other;
    Held<QORVersion> version;
    EXPECT_TRUE(product->addDefaultVersion(version));
    EXPECT_EQ(product->getVersionCount(), 0);
    EXPECT_EQ(version->getProduct(), nullptr);
    EXPECT_EQ(version->getDefaultOfProduct(), product.get());
    EXPECT_FALSE(other->addDefaultVersion(version));
    EXPECT_TRUE(other->addVersion(version));
    EXPECT_EQ(version->getDefaultOfProduct(), product.get());
    EXPECT_EQ(other->getDefaultVersion(), nullptr);
}

TEST(QORProduct, DeletesReferencesThenVersionsThenChildrenThenAFreeDefaultVersion) {
    Journal journal;
    QORProduct product;
    product.addDefaultVersion(watched<QORVersion>(journal, "default"));
    for (char const* name : {"child b", "child a"}) {
        auto* const child = watched<QORProduct>(journal, name);
        child->setName(name);
        product.addChildProduct(child);
    }
    for (char const* name : {"version b", "version a"}) {
        auto* const version = watched<QORVersion>(journal, name);
        version->setName(name);
        product.addVersion(version);
    }
    product.addReferencedComponent(watched<QORProduct>(journal, "referenced"));
    product.addReferencedByComponent(watched<QORProduct>(journal, "referrer"));
    product.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(product.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "referrer", "referenced", "version a", "version b", "child a",
                                      "child b", "default"}));
}

TEST(QORProduct, RefusalToBeDeletedChangesNothing) {
    Held<QORDirectory> directory;
    Held<QORProduct> product;
    Held<QORVersion> version;
    Held<QORProduct> referenced;
    product->addVersion(version);
    product->addReferencedComponent(referenced);
    directory->addProduct(product);
    expectDeletionRefused(*product);
    EXPECT_EQ(version->getProduct(), product.get());
    EXPECT_EQ(referenced->getReferencedByComponent(0), product.get());
}

TEST(QORProduct, LeavesADefaultVersionThatHasAProduct) {
    Held<QORProduct> owner;
    Held<QORVersion> version;
    owner->addVersion(version);
    auto* const product = new QORProduct;
    product->addDefaultVersion(version);
    delete product;
    EXPECT_EQ(version->getDefaultOfProduct(), nullptr);
    EXPECT_EQ(version->getProduct(), owner.get());
}

TEST(QORProduct, IsolatesInItsOwnOrder) {
    Journal journal;
    QORProduct product;
    product.addReferencedComponent(watched<QORProduct>(journal, "referenced"));
    product.addChildProduct(watched<QORProduct>(journal, "child"));
    product.addVersion(watched<QORVersion>(journal, "version"));
    product.addDefaultVersion(watched<QORVersion>(journal, "default"));
    product.addParentProduct(watched<QORProduct>(journal, "parent"));
    product.addDirectory(watched<QORDirectory>(journal, "directory"));
    EXPECT_EQ(product.isolate(true), &product);
    EXPECT_EQ(journal.deaths, (Labels{"directory", "parent", "default", "version", "child", "referenced"}));
}

TEST(QORProduct, ReencodesAndWalksVersionsThenChildren) {
    Journal journal;
    Held<QORProduct> product;
    Held<Watched<QORProduct>> child(journal, "child");
    Held<Watched<QORVersion>> version(journal, "version");
    Held<Watched<QORVersion>> defaultVersion(journal, "default");
    product->addChildProduct(child);
    product->addVersion(version);
    product->addDefaultVersion(defaultVersion);
    EXPECT_EQ(walkOf(*product), (Objects{product, version, child}));
    Recoding recode;
    recode(*product);
    EXPECT_EQ(journal.recodings, (Labels{"version", "child"}));
}

TEST(QORProduct, ComparesAndCopiesItsAttributes) {
    expectCompared<QORProduct>([](auto& each) { each.setProductType(QORProductType::GUIDE); });
    expectCompared<QORProduct>([](auto& each) { each.setState(QORVersionStateType::LOCKED); });
    expectNotCompared<QORProduct>([](auto& each) { each.addVersion(new QORVersion); });
    QORProduct source;
    source.setName("n");
    source.setProductType(QORProductType::CONFIGURATION);
    source.setState(QORVersionStateType::CHECKED_OUT);
    source.addVersion(new QORVersion);
    QORProduct const copy(source);
    EXPECT_TRUE(copy.equals(source));
    EXPECT_FALSE(copy.isReferenced());
    QORProduct target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
    EXPECT_FALSE(target.isReferenced());
}
