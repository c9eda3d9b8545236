#include "GraphObservers.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORDataMovementFormat.h>
#include <qor/QORFileFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORModelFormat.h>
#include <qor/QORNote.h>
#include <qor/QORProduct.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORVersion, IsAComponent) {
    expectConcrete<QORVersion>(QORElementType::VERSION, 31, "Version", QORComponent::getStaticMetaClass());
}

TEST(QORVersion, IsReferencedThroughEachOfItsLinks) {
    using V = QORVersion;
    expectReferencedThrough<V, QORProduct>(&V::addProduct, &V::removeProduct);
    expectReferencedThrough<V, QORProduct>(&V::addDefaultOfProduct, &V::removeDefaultOfProduct);
    expectReferencedThrough<V, QORFileFormat>(&V::addDefaultFormat, &V::removeDefaultFormat);
    expectReferencedThrough<V, QORFileFormat>(&V::addOriginalFormat, &V::removeOriginalFormat);
    expectReferencedThrough<V, QORFileFormat>(&V::addFormat, &V::removeFormat);
    expectReferencedThrough<V, QORVersion>(&V::addPredecessorVersion, &V::removePredecessorVersion);
    expectReferencedThrough<V, QORVersion>(&V::addSuccessorVersion, &V::removeSuccessorVersion);
    expectReferencedThrough<V, QORProduct>(&QORComponent::addReferencedByComponent,
                                           &QORComponent::removeReferencedByComponent);
}

TEST(QORVersion, RefusesATakenNameInItsProduct) {
    QORProduct product;
    auto* const version = named<QORVersion>("1");
    product.addVersion(version);
    product.addVersion(named<QORVersion>("2"));
    expectNameRefused(*version, "2", "Product", "Version");
    version->setName("3");
    EXPECT_EQ(product.getVersion(1), version);
}

TEST(QORVersion, BelongsToItsProduct) {
    Held<QORProduct> product;
    Held<QORProduct> other;
    Held<QORVersion> version;
    Held<QORFileFormat> format;
    version->addFormat(format);
    other->addDefaultVersion(version);
    EXPECT_EQ(version->getParent(), nullptr);
    product->addVersion(version);
    EXPECT_EQ(version->getParent(), product.get());
    EXPECT_EQ(version->getParentCount(), 1);
    expectDeletionRefused(*version);
    EXPECT_EQ(format->getVersion(), version.get());
    EXPECT_EQ(version->removeAggregationAssembly(), product.get());
    EXPECT_EQ(version->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(other->getDefaultVersion(), version.get());
}

TEST(QORVersion, IsTheSuccessorOfItsPredecessors) {
    Held<QORVersion> base;
    Held<QORVersion> left;
    Held<QORVersion> right;
    Held<QORVersion> merged;
    EXPECT_TRUE(left->addPredecessorVersion(base));
    EXPECT_TRUE(base->addSuccessorVersion(right));
    EXPECT_TRUE(merged->addPredecessorVersion(left));
    EXPECT_TRUE(merged->addPredecessorVersion(right));
    EXPECT_EQ(base->getSuccessorVersionCount(), 2);
    EXPECT_EQ(base->getPredecessorVersionCount(), 0);
    EXPECT_EQ(merged->getPredecessorVersionCount(), 2);
    EXPECT_EQ(right->getPredecessorVersion(0), base.get());
    EXPECT_FALSE(merged->addPredecessorVersion(left));
    EXPECT_FALSE(left->addSuccessorVersion(merged));
    auto const [low, high] = byAddress(left.get(), right.get());
    EXPECT_EQ(merged->getPredecessorVersion(0), low);
    EXPECT_EQ(merged->getPredecessorVersion(1), high);
}

TEST(QORVersion, CanBeAPredecessorOfItsPredecessorButNotOfItself) {
    Held<QORVersion> one;
    Held<QORVersion> two;
    EXPECT_TRUE(one->addPredecessorVersion(two));
    EXPECT_TRUE(two->addPredecessorVersion(one));
    for (QORVersion* version : {one.get(), two.get()}) {
        EXPECT_EQ(version->getPredecessorVersionCount(), 1);
        EXPECT_EQ(version->getSuccessorVersionCount(), 1);
        EXPECT_EQ(walkOf(*version), Objects{version});
        Recoding recode;
        recode(*version);
        EXPECT_FALSE(version->addPredecessorVersion(version));
        EXPECT_EQ(version->getPredecessorVersionCount(), 1);
    }
}

TEST(QORVersion, TakesFreeNeighboursWithItAndLeavesThoseOfAProduct) {
    Journal journal;
    Held<QORProduct> product;
    Held<QORVersion> kept;
    product->addVersion(kept);
    auto* const version = watched<QORVersion>(journal, "version");
    version->addPredecessorVersion(kept);
    version->addPredecessorVersion(watched<QORVersion>(journal, "predecessor"));
    version->addSuccessorVersion(watched<QORVersion>(journal, "successor"));
    delete version;
    EXPECT_EQ(journal.deaths, (Labels{"version", "predecessor", "successor"}));
    EXPECT_EQ(kept->getSuccessorVersionCount(), 0);
    EXPECT_EQ(kept->getProduct(), product.get());
}

TEST(QORVersion, EndsACycleOnlyWithTheLastOfItsLinks) {
    Journal journal;
    auto* const one = watched<QORVersion>(journal, "one");
    auto* const two = watched<QORVersion>(journal, "two");
    auto* const free = watched<QORVersion>(journal, "free");
    one->addPredecessorVersion(two);
    one->addSuccessorVersion(two);
    one->addPredecessorVersion(free);
    delete one;
    EXPECT_EQ(journal.deaths, (Labels{"one", "free", "two"}));
}

TEST(QORVersion, IsTakenOutOfALargerCycle) {
    Held<QORVersion> a;
    Held<QORVersion> b;
    auto* const c = new QORVersion;
    a->addSuccessorVersion(b);
    b->addSuccessorVersion(c);
    c->addSuccessorVersion(a);
    delete c;
    EXPECT_EQ(a->getPredecessorVersionCount(), 0);
    EXPECT_EQ(a->getSuccessorVersion(0), b.get());
    EXPECT_EQ(b->getSuccessorVersionCount(), 0);
}

TEST(QORVersion, TakesAnyFormatAsDefaultAndOriginal) {
    Held<QORVersion> version;
    Held<QORVersion> other;
    Held<QORFileFormat> format;
    EXPECT_TRUE(version->addDefaultFormat(format));
    EXPECT_EQ(version->getFormatCount(), 0);
    EXPECT_EQ(format->getVersion(), nullptr);
    EXPECT_FALSE(other->addDefaultFormat(format));
    EXPECT_TRUE(other->addOriginalFormat(format));
    EXPECT_FALSE(version->addOriginalFormat(format));
    EXPECT_TRUE(other->addFormat(format));
    EXPECT_EQ(format->getDefaultOfVersion(), version.get());
    EXPECT_EQ(format->getOriginalOfVersion(), other.get());
}

TEST(QORVersion, SortsItsFormatsByClassAndThenByName) {
    Held<QORVersion> version;
    Held<QORConfigurationFormat> configuration("a");
    Held<QORMappingFormat> mapping("b");
    Held<QORDataMovementFormat> movement("a");
    Held<QORModelFormat> modelZ("z");
    Held<QORModelFormat> modelA("a");
    Held<QORFileFormat> file("zz");
    Objects const inOrder{file, modelA, modelZ, movement, mapping, configuration};
    for (QORFormat* format : std::vector<QORFormat*>{configuration, mapping, movement, modelZ, modelA, file})
        EXPECT_TRUE(version->addFormat(format));
    Objects held;
    for (int i = 0; i < version->getFormatCount(); ++i)
        held.push_back(version->getFormat(i));
    EXPECT_EQ(held, inOrder);
}

TEST(QORVersion, HoldsFormatsOfOneNameAsLongAsTheirClassesDiffer) {
    QORVersion version;
    EXPECT_TRUE(version.addFormat(named<QORFileFormat>("same")));
    EXPECT_TRUE(version.addFormat(named<QORModelFormat>("same")));
    EXPECT_TRUE(version.addFormat(named<QORMappingFormat>("same")));
    EXPECT_TRUE(version.addFormat(named<QORDataMovementFormat>("same")));
    QORFileFormat other;
    other.setName("same");
    EXPECT_FALSE(version.addFormat(&other));
    EXPECT_EQ(version.getFormatCount(), 4);
    EXPECT_EQ(other.getVersion(), nullptr);
}

TEST(QORVersion, TakesFormatsOutByNameOneAfterTheOther) {
    Journal journal;
    QORVersion version;
    auto const add = [&](QORFormat* format, char const* name) {
        format->setName(name);
        ASSERT_TRUE(version.addFormat(format));
    };
    add(watched<QORFileFormat>(journal, "file"), "same");
    add(watched<QORModelFormat>(journal, "other"), "other");
    add(watched<QORModelFormat>(journal, "model"), "same");
    add(watched<QORMappingFormat>(journal, "mapping"), "same");
    EXPECT_TRUE(version.removeFormat("same", nullptr));
    EXPECT_EQ(journal.deaths, Labels{"file"});
    int cursor = 0;
    while (version.removeFormat("same", &cursor)) {
    }
    EXPECT_EQ(journal.deaths, (Labels{"file", "model", "mapping"}));
    EXPECT_FALSE(version.removeFormat("same", nullptr));
    EXPECT_EQ(version.getFormatCount(), 1);
}

TEST(QORVersion, DeletesInItsOwnOrder) {
    Journal journal;
    QORVersion version;
    version.addSuccessorVersion(watched<QORVersion>(journal, "successor"));
    version.addPredecessorVersion(watched<QORVersion>(journal, "predecessor"));
    version.addOriginalFormat(watched<QORFileFormat>(journal, "original"));
    version.addDefaultFormat(watched<QORFileFormat>(journal, "default"));
    version.addDefaultOfProduct(watched<QORProduct>(journal, "product"));
    version.addFormat(watched<QORModelFormat>(journal, "model format"));
    version.addFormat(watched<QORFileFormat>(journal, "file format"));
    version.addReferencedComponent(watched<QORProduct>(journal, "referenced"));
    version.addReferencedByComponent(watched<QORProduct>(journal, "referrer"));
    version.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(version.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "referrer", "referenced", "file format", "model format",
                                      "product", "default", "original", "predecessor", "successor"}));
    EXPECT_FALSE(version.isReferenced());
}

TEST(QORVersion, IsolatesInItsOwnOrder) {
    Journal journal;
    QORVersion version;
    version.addReferencedComponent(watched<QORProduct>(journal, "referenced"));
    version.addReferencedByComponent(watched<QORProduct>(journal, "referrer"));
    version.addSuccessorVersion(watched<QORVersion>(journal, "successor"));
    version.addPredecessorVersion(watched<QORVersion>(journal, "predecessor"));
    version.addFormat(watched<QORFileFormat>(journal, "format"));
    version.addOriginalFormat(watched<QORFileFormat>(journal, "original"));
    version.addDefaultFormat(watched<QORFileFormat>(journal, "default"));
    version.addDefaultOfProduct(watched<QORProduct>(journal, "default of"));
    version.addProduct(watched<QORProduct>(journal, "product"));
    EXPECT_EQ(version.isolate(true), &version);
    EXPECT_EQ(journal.deaths, (Labels{"product", "default of", "default", "original", "format", "predecessor",
                                      "successor", "referrer", "referenced"}));
}

TEST(QORVersion, ReencodesAndWalksItsFormatsOnly) {
    Journal journal;
    Held<QORVersion> version;
    Held<Watched<QORModelFormat>> model(journal, "model");
    Held<Watched<QORFileFormat>> file(journal, "file");
    Held<Watched<QORFileFormat>> original(journal, "original");
    Held<Watched<QORVersion>> successor(journal, "successor");
    version->addFormat(model);
    version->addFormat(file);
    version->addOriginalFormat(original);
    version->addSuccessorVersion(successor);
    EXPECT_EQ(walkOf(*version), (Objects{version, file, model}));
    Recoding recode;
    recode(*version);
    EXPECT_EQ(journal.recodings, (Labels{"file", "model"}));
}

TEST(QORVersion, KeepsFormatsApartThatCollideAfterReencoding) {
    QORVersion version;
    auto* const stays = named<QORFileFormat>(recodedText); // no valid text in UTF-8
    auto* const moves = named<QORFileFormat>(rawText);
    auto* const other = named<QORModelFormat>(rawText);
    version.addFormat(stays);
    version.addFormat(moves);
    version.addFormat(other);
    Recoding recode;
    recode(version);
    EXPECT_STREQ(stays->getName().chars, recodedText);
    EXPECT_STREQ(moves->getName().chars, "\xE9/1");
    EXPECT_STREQ(other->getName().chars, recodedText);
}

TEST(QORVersion, ComparesAndSetsAsARepositoryObject) {
    expectCompared<QORVersion>([](auto& version) { version.setAuthor("x"); });
    expectNotCompared<QORVersion>([](auto& version) { version.addFormat(new QORFileFormat); });
    QORVersion source;
    source.setName("n");
    source.setAuthor("a");
    source.addFormat(new QORFileFormat);
    QORVersion target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
    EXPECT_EQ(target.getFormatCount(), 0);
    EXPECT_EQ(QORVersion(source).getFormatCount(), 0);
}
