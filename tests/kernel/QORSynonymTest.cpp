#include <qor/QORSynonym.h>

#include <qor/QORDesignPackage.h>

#include "Graph.h"

#include <gtest/gtest.h>

#include <memory>

TEST(QORSynonym, TheModelObjectIsItsParent) {
    QORDesignPackage object;
    auto* const synonym = named<QORSynonym>("s");
    EXPECT_TRUE(synonym->addModelObject(&object));
    EXPECT_EQ(&object, synonym->getParent());
    EXPECT_EQ(1, synonym->getParentCount());
    EXPECT_TRUE(synonym->isReferenced());
    EXPECT_FALSE(synonym->QORModelObject::isReferenced());
    EXPECT_FALSE(synonym->recursiveDelete());
    EXPECT_EQ(&object, synonym->removeAggregationAssembly());
    EXPECT_EQ(0, object.getSynonymCount());
    EXPECT_TRUE(synonym->recursiveDelete());
    delete synonym;
}

TEST(QORSynonym, ASynonymMayHaveSynonyms) {
    Graph graph;
    auto* const object = new QORDesignPackage;
    auto* const synonym = graph.mortal<QORSynonym>("s");
    object->addSynonym(synonym);
    synonym->addSynonym(graph.mortal<QORSynonym>("t"));
    EXPECT_FALSE(synonym->recursiveDelete());
    EXPECT_EQ(1, synonym->getSynonymCount());
    delete object;
    EXPECT_EQ((Labels{"t", "s"}), graph.deaths);
}

TEST(QORSynonym, EqualityIsThatOfTheModelObjectLayerAmongSynonyms) {
    QORSynonym a;
    QORSynonym b;
    EXPECT_TRUE(a == b);
    a.setComment("c");
    EXPECT_TRUE(a == b);
    a.setStereotype("s");
    EXPECT_FALSE(a == b);
    QORDesignPackage package;
    EXPECT_FALSE(b.equals(package));
    EXPECT_TRUE(b.QORModelObject::finalEquals(package));
}

TEST(QORSynonym, TranscodeMakesACollidingNameUnique) {
    Recoding recode("UTF-7", "UTF-8");
    QORDesignPackage object;
    object.addSynonym(named<QORSynonym>("+AEE-"));
    object.addSynonym(named<QORSynonym>("A"));
    recode(object);
    EXPECT_STREQ("A", object.getSynonym(0)->getName().chars);
    EXPECT_STREQ("A/1", object.getSynonym(1)->getName().chars);
    EXPECT_EQ(2, recode.converted);
}
