#include "GraphObservers.h"

#include <qor/QORDirectory.h>
#include <qor/QORModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QORNote.h>
#include <qor/QORProduct.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORDirectory, IsARepositoryObject) {
    expectConcrete<QORDirectory>(QORElementType::DIRECTORY, 28, "Directory",
                                 QORRepositoryObject::getStaticMetaClass());
}

TEST(QORDirectory, HasNoOwner) {
    QORDirectory directory;
    directory.setName("d");
    EXPECT_EQ(directory.getParent(), nullptr);
    EXPECT_EQ(directory.getParentCount(), 0);
    EXPECT_EQ(directory.removeAggregationAssembly(), nullptr);
}

TEST(QORDirectory, IsReferencedThroughEachOfItsLinks) {
    using D = QORDirectory;
    expectReferencedThrough<D, QORProduct>(&D::addProduct, &D::removeProduct);
    expectReferencedThrough<D, QORPropertyElementTypeScope>(&D::addPropertyElementTypeScope,
                                                            &D::removePropertyElementTypeScope);
}

TEST(QORDirectory, HoldsProductsOfDifferentNames) {
    QORDirectory directory;
    EXPECT_TRUE(directory.addProduct(named<QORProduct>("b")));
    EXPECT_TRUE(directory.addProduct(named<QORProduct>("a")));
    QORProduct other;
    other.setName("a");
    EXPECT_FALSE(directory.addProduct(&other));
    EXPECT_EQ(other.getDirectory(), nullptr);
    EXPECT_STREQ(directory.getProduct(0)->getName().chars, "a");
    EXPECT_TRUE(directory.removeProduct("a", nullptr));
    EXPECT_TRUE(directory.addProduct(&other));
    EXPECT_TRUE(directory.removeProduct(&other));
}

TEST(QORDirectory, DeletesProductsThenScopes) {
    Journal journal;
    QORDirectory directory;
    directory.addPropertyElementTypeScope(watched<QORPropertyElementTypeScope>(journal, "scope"));
    for (char const* name : {"b", "a"}) {
        auto* const product = watched<QORProduct>(journal, name);
        product->setName(name);
        directory.addProduct(product);
    }
    directory.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(directory.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "a", "b", "scope"}));
    EXPECT_FALSE(directory.isReferenced());
}

TEST(QORDirectory, TakesTheWholeTreeWithIt) {
    Journal journal;
    auto* const directory = watched<QORDirectory>(journal, "directory");
    auto* const product = watched<QORProduct>(journal, "product");
    auto* const version = watched<QORVersion>(journal, "version");
    auto* const format = watched<QORModelFormat>(journal, "format");
    auto* const model = watched<QORModel>(journal, "model");
    format->addModel(model);
    version->addFormat(format);
    version->addDefaultFormat(format);
    version->addOriginalFormat(format);
    product->addVersion(version);
    product->addDefaultVersion(version);
    directory->addProduct(product);
    delete directory;
    EXPECT_EQ(journal.deaths, (Labels{"directory", "model", "format", "version", "product"}));
}

TEST(QORDirectory, LeavesAProductThatHasAnotherOwner) {
    Held<QORProduct> owner;
    Held<QORProduct> product;
    owner->addChildProduct(product);
    auto* const directory = new QORDirectory;
    directory->addProduct(product);
    EXPECT_EQ(product->getParent(), directory);
    delete directory;
    EXPECT_EQ(product->getDirectory(), nullptr);
    EXPECT_EQ(product->getParent(), owner.get());
}

TEST(QORDirectory, IsolatesProductsThenScopes) {
    Journal journal;
    QORDirectory directory;
    directory.addNote(watched<QORNote>(journal, "note"));
    directory.addPropertyElementTypeScope(watched<QORPropertyElementTypeScope>(journal, "scope"));
    directory.addProduct(watched<QORProduct>(journal, "product"));
    EXPECT_EQ(directory.isolate(true), &directory);
    EXPECT_EQ(journal.deaths, (Labels{"product", "scope", "note"}));
}

TEST(QORDirectory, ReencodesProductsThenScopes) {
    Journal journal;
    QORDirectory directory;
    directory.setAuthor(rawText);
    directory.addPropertyElementTypeScope(watched<QORPropertyElementTypeScope>(journal, "scope"));
    for (char const* name : {"b", "a"}) {
        auto* const product = watched<QORProduct>(journal, name);
        product->setName(name);
        directory.addProduct(product);
    }
    Recoding recode;
    recode(directory);
    EXPECT_EQ(journal.recodings, (Labels{"a", "b", "scope"}));
    EXPECT_STREQ(directory.getAuthor().chars, recodedText);
}

TEST(QORDirectory, KeepsProductsApartThatCollideAfterReencoding) {
    QORDirectory directory;
    auto* const stays = named<QORProduct>(recodedText); // no valid text in UTF-8
    auto* const alsoTaken = named<QORProduct>("\xE9/1");
    auto* const moves = named<QORProduct>(rawText);
    directory.addProduct(stays);
    directory.addProduct(alsoTaken);
    directory.addProduct(moves);
    Recoding recode;
    recode(directory);
    EXPECT_STREQ(moves->getName().chars, "\xE9/2");
    EXPECT_EQ(directory.getProduct(0), stays);
    EXPECT_EQ(directory.getProduct(1), alsoTaken);
    EXPECT_EQ(directory.getProduct(2), moves);
    EXPECT_EQ(recode.errors, 2);
}

TEST(QORDirectory, WalksDownIntoTheModels) {
    QORDirectory directory;
    auto* const scope = new QORPropertyElementTypeScope;
    auto* const productB = named<QORProduct>("b");
    auto* const productA = named<QORProduct>("a");
    auto* const nested = new QORProduct;
    auto* const version = new QORVersion;
    auto* const format = new QORModelFormat;
    auto* const model = new QORModel;
    directory.addPropertyElementTypeScope(scope);
    directory.addProduct(productB);
    directory.addProduct(productA);
    productA->addChildProduct(nested);
    productA->addVersion(version);
    version->addFormat(format);
    format->addModel(model);
    EXPECT_EQ(walkOf(directory),
              (Objects{&directory, productA, version, format, model, nested, productB, scope}));
}

TEST(QORDirectory, ComparesAndSetsAsARepositoryObject) {
    expectCompared<QORDirectory>([](auto& directory) { directory.setAuthor("x"); });
    expectNotCompared<QORDirectory>([](auto& directory) { directory.addProduct(new QORProduct); });
    QORDirectory source;
    source.setName("n");
    source.setModifier("m");
    source.addProduct(new QORProduct);
    QORDirectory target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
    EXPECT_EQ(target.getProductCount(), 0);
    EXPECT_EQ(QORDirectory(source).getProductCount(), 0);
}
