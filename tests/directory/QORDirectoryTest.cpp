#include "Graph.h"

#include <qor/QORDirectory.h>
#include <qor/QORModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QORNote.h>
#include <qor/QORProduct.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORVersion.h>

TEST(QORDirectory, DeletesProductsThenScopes) {
    Graph graph;
    QORDirectory directory;
    directory.addPropertyElementTypeScope(graph.mortal<QORPropertyElementTypeScope>("scope"));
    for (char const* name : {"b", "a"})
        directory.addProduct(graph.mortal<QORProduct>(name));
    directory.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(directory.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "a", "b", "scope"}));
    EXPECT_FALSE(directory.isReferenced());
}

TEST(QORDirectory, TakesTheWholeTreeWithIt) {
    Graph graph;
    auto* const directory = graph.mortal<QORDirectory>("directory");
    auto* const product = graph.mortal<QORProduct>("product");
    auto* const version = graph.mortal<QORVersion>("version");
    auto* const format = graph.mortal<QORModelFormat>("format");
    format->addModel(graph.mortal<QORModel>("model"));
    version->addFormat(format);
    version->addDefaultFormat(format);
    version->addOriginalFormat(format);
    product->addVersion(version);
    product->addDefaultVersion(version);
    directory->addProduct(product);
    delete directory;
    EXPECT_EQ(graph.deaths, (Labels{"directory", "model", "format", "version", "product"}));
}

TEST(QORDirectory, LeavesAProductThatHasAnotherOwner) {
    Graph graph;
    auto* const owner = graph.make<QORProduct>();
    auto* const product = graph.make<QORProduct>();
    owner->addChildProduct(product);
    auto* const directory = new QORDirectory;
    directory->addProduct(product);
    EXPECT_EQ(product->getParent(), directory);
    delete directory;
    EXPECT_EQ(product->getDirectory(), nullptr);
    EXPECT_EQ(product->getParent(), owner);
}

TEST(QORDirectory, IsolatesProductsThenScopes) {
    Graph graph;
    QORDirectory directory;
    directory.addNote(graph.mortal<QORNote>("note"));
    directory.addPropertyElementTypeScope(graph.mortal<QORPropertyElementTypeScope>("scope"));
    directory.addProduct(graph.mortal<QORProduct>("product"));
    EXPECT_EQ(directory.isolate(true), &directory);
    EXPECT_EQ(graph.deaths, (Labels{"product", "scope", "note"}));
}

TEST(QORDirectory, ReencodesProductsThenScopes) {
    Graph graph;
    QORDirectory directory;
    directory.setAuthor(inUtf8);
    directory.addPropertyElementTypeScope(graph.mortal<QORPropertyElementTypeScope>("scope"));
    for (char const* name : {"b", "a"})
        directory.addProduct(graph.mortal<QORProduct>(name));
    Recoding recode;
    recode(directory);
    EXPECT_EQ(graph.recodings, (Labels{"a", "b", "scope"}));
    EXPECT_STREQ(directory.getAuthor().chars, inLatin1);
}

TEST(QORDirectory, KeepsProductsApartThatCollideAfterReencoding) {
    QORDirectory directory;
    auto* const stays = named<QORProduct>(inLatin1); // no valid text in UTF-8
    auto* const alsoTaken = named<QORProduct>("\xE9/1");
    auto* const moves = named<QORProduct>(inUtf8);
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
