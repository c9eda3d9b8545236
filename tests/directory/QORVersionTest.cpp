#include "Graph.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORDataMovementFormat.h>
#include <qor/QORFileFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORModelFormat.h>
#include <qor/QORNote.h>
#include <qor/QORProduct.h>
#include <qor/QORVersion.h>

TEST(QORVersion, IsTheSuccessorOfItsPredecessors) {
    Graph graph;
    auto* const base = graph.make<QORVersion>();
    auto* const left = graph.make<QORVersion>();
    auto* const right = graph.make<QORVersion>();
    auto* const merged = graph.make<QORVersion>();
    EXPECT_TRUE(left->addPredecessorVersion(base));
    EXPECT_TRUE(base->addSuccessorVersion(right));
    EXPECT_TRUE(merged->addPredecessorVersion(left));
    EXPECT_TRUE(merged->addPredecessorVersion(right));
    EXPECT_EQ(base->getSuccessorVersionCount(), 2);
    EXPECT_EQ(base->getPredecessorVersionCount(), 0);
    EXPECT_EQ(merged->getPredecessorVersionCount(), 2);
    EXPECT_EQ(right->getPredecessorVersion(0), base);
    EXPECT_FALSE(merged->addPredecessorVersion(left));
    EXPECT_FALSE(left->addSuccessorVersion(merged));
    auto const [low, high] = byAddress(left, right);
    EXPECT_EQ(merged->getPredecessorVersion(0), low);
    EXPECT_EQ(merged->getPredecessorVersion(1), high);
}

TEST(QORVersion, CanBeAPredecessorOfItsPredecessorButNotOfItself) {
    Graph graph;
    auto* const one = graph.make<QORVersion>();
    auto* const two = graph.make<QORVersion>();
    EXPECT_TRUE(one->addPredecessorVersion(two));
    EXPECT_TRUE(two->addPredecessorVersion(one));
    for (QORVersion* version : {one, two}) {
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
    Graph graph;
    auto* const product = graph.make<QORProduct>();
    auto* const kept = graph.make<QORVersion>();
    product->addVersion(kept);
    auto* const version = graph.mortal<QORVersion>("version");
    version->addPredecessorVersion(kept);
    version->addPredecessorVersion(graph.mortal<QORVersion>("predecessor"));
    version->addSuccessorVersion(graph.mortal<QORVersion>("successor"));
    delete version;
    EXPECT_EQ(graph.deaths, (Labels{"version", "predecessor", "successor"}));
    EXPECT_EQ(kept->getSuccessorVersionCount(), 0);
    EXPECT_EQ(kept->getProduct(), product);
}

TEST(QORVersion, EndsACycleOnlyWithTheLastOfItsLinks) {
    Graph graph;
    auto* const one = graph.mortal<QORVersion>("one");
    auto* const two = graph.mortal<QORVersion>("two");
    one->addPredecessorVersion(two);
    one->addSuccessorVersion(two);
    one->addPredecessorVersion(graph.mortal<QORVersion>("free"));
    delete one;
    EXPECT_EQ(graph.deaths, (Labels{"one", "free", "two"}));
}

TEST(QORVersion, IsTakenOutOfALargerCycle) {
    Graph graph;
    auto* const a = graph.make<QORVersion>();
    auto* const b = graph.make<QORVersion>();
    auto* const c = new QORVersion;
    a->addSuccessorVersion(b);
    b->addSuccessorVersion(c);
    c->addSuccessorVersion(a);
    delete c;
    EXPECT_EQ(a->getPredecessorVersionCount(), 0);
    EXPECT_EQ(a->getSuccessorVersion(0), b);
    EXPECT_EQ(b->getSuccessorVersionCount(), 0);
}

TEST(QORVersion, SortsItsFormatsByClassAndThenByName) {
    Graph graph;
    auto* const version = graph.make<QORVersion>();
    auto* const configuration = graph.make<QORConfigurationFormat>("a");
    auto* const mapping = graph.make<QORMappingFormat>("b");
    auto* const movement = graph.make<QORDataMovementFormat>("a");
    auto* const modelZ = graph.make<QORModelFormat>("z");
    auto* const modelA = graph.make<QORModelFormat>("a");
    auto* const file = graph.make<QORFileFormat>("zz");
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
    Graph graph;
    QORVersion version;
    auto const add = [&](QORFormat* format, char const* name) {
        format->setName(name);
        ASSERT_TRUE(version.addFormat(format));
    };
    add(graph.mortal<QORFileFormat>("file"), "same");
    add(graph.mortal<QORModelFormat>("other"), "other");
    add(graph.mortal<QORModelFormat>("model"), "same");
    add(graph.mortal<QORMappingFormat>("mapping"), "same");
    EXPECT_TRUE(version.removeFormat("same", nullptr));
    EXPECT_EQ(graph.deaths, Labels{"file"});
    int cursor = 0;
    while (version.removeFormat("same", &cursor)) {
    }
    EXPECT_EQ(graph.deaths, (Labels{"file", "model", "mapping"}));
    EXPECT_FALSE(version.removeFormat("same", nullptr));
    EXPECT_EQ(version.getFormatCount(), 1);
}

TEST(QORVersion, DeletesInItsOwnOrder) {
    Graph graph;
    QORVersion version;
    version.addSuccessorVersion(graph.mortal<QORVersion>("successor"));
    version.addPredecessorVersion(graph.mortal<QORVersion>("predecessor"));
    version.addOriginalFormat(graph.mortal<QORFileFormat>("original"));
    version.addDefaultFormat(graph.mortal<QORFileFormat>("default"));
    version.addDefaultOfProduct(graph.mortal<QORProduct>("product"));
    version.addFormat(graph.mortal<QORModelFormat>("model format"));
    version.addFormat(graph.mortal<QORFileFormat>("file format"));
    version.addReferencedComponent(graph.mortal<QORProduct>("referenced"));
    version.addReferencedByComponent(graph.mortal<QORProduct>("referrer"));
    version.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(version.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "referrer", "referenced", "file format", "model format",
                                    "product", "default", "original", "predecessor", "successor"}));
    EXPECT_FALSE(version.isReferenced());
}

TEST(QORVersion, IsolatesInItsOwnOrder) {
    Graph graph;
    QORVersion version;
    version.addReferencedComponent(graph.mortal<QORProduct>("referenced"));
    version.addReferencedByComponent(graph.mortal<QORProduct>("referrer"));
    version.addSuccessorVersion(graph.mortal<QORVersion>("successor"));
    version.addPredecessorVersion(graph.mortal<QORVersion>("predecessor"));
    version.addFormat(graph.mortal<QORFileFormat>("format"));
    version.addOriginalFormat(graph.mortal<QORFileFormat>("original"));
    version.addDefaultFormat(graph.mortal<QORFileFormat>("default"));
    version.addDefaultOfProduct(graph.mortal<QORProduct>("default of"));
    version.addProduct(graph.mortal<QORProduct>("product"));
    EXPECT_EQ(version.isolate(true), &version);
    EXPECT_EQ(graph.deaths, (Labels{"product", "default of", "default", "original", "format", "predecessor",
                                    "successor", "referrer", "referenced"}));
}

TEST(QORVersion, ReencodesAndWalksItsFormatsOnly) {
    Graph graph;
    auto* const version = graph.make<QORVersion>();
    auto* const model = graph.mortal<QORModelFormat>("model");
    auto* const file = graph.mortal<QORFileFormat>("file");
    version->addFormat(model);
    version->addFormat(file);
    version->addOriginalFormat(graph.mortal<QORFileFormat>("original"));
    version->addSuccessorVersion(graph.mortal<QORVersion>("successor"));
    EXPECT_EQ(walkOf(*version), (Objects{version, file, model}));
    Recoding recode;
    recode(*version);
    EXPECT_EQ(graph.recodings, (Labels{"file", "model"}));
}

TEST(QORVersion, KeepsFormatsApartThatCollideAfterReencoding) {
    QORVersion version;
    auto* const stays = named<QORFileFormat>(inLatin1); // no valid text in UTF-8
    auto* const moves = named<QORFileFormat>(inUtf8);
    auto* const other = named<QORModelFormat>(inUtf8);
    version.addFormat(stays);
    version.addFormat(moves);
    version.addFormat(other);
    Recoding recode;
    recode(version);
    EXPECT_STREQ(stays->getName().chars, inLatin1);
    EXPECT_STREQ(moves->getName().chars, "\xE9/1");
    EXPECT_STREQ(other->getName().chars, inLatin1);
}
