#include "ModelTestSupport.h"

#include <qor/QORAssociation.h>
#include <qor/QORDependency.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGeneralization.h>
#include <qor/QORRealization.h>
#include <qor/QORSQLViewAssociation.h>

namespace {

/// The relationships of a design package.
template <class Class>
class QORRelationshipOf : public testing::Test {};

using Classes =
    testing::Types<QORAssociation, QORGeneralization, QORDependency, QORRealization, QORSQLViewAssociation>;
TYPED_TEST_SUITE(QORRelationshipOf, Classes);

} // namespace

TEST(QORRelationship, IsAbstractAndAModelElement) {
    graph::expectAbstract<QORRelationship>(QORElementType::RELATIONSHIP, 15, "Relationship",
                                           QORModelElement::getStaticMetaClass());
}

TYPED_TEST(QORRelationshipOf, ItsDesignPackageIsItsParent) {
    Graph graph;
    auto* const relationship = graph.make<TypeParam>();
    auto* const package = graph.make<QORDesignPackage>();
    ASSERT_TRUE(package->addModelElement(relationship));
    EXPECT_TRUE(relationship->isInstanceOf(QORElementType::RELATIONSHIP));
    expectLeaves(*relationship, {package});
    EXPECT_EQ(package->getModelElementCount(), 0);
}

TYPED_TEST(QORRelationshipOf, SharesItsNameWithOthersOfItsClass) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const relationship = graph.make<TypeParam>("A");
    ASSERT_TRUE(package->addModelElement(relationship));
    EXPECT_TRUE(package->addModelElement(graph.make<TypeParam>("A")));
    EXPECT_TRUE(package->addModelElement(graph.make<TypeParam>("B")));
    EXPECT_FALSE(package->addModelElement(relationship));
    relationship->setName("B");
    EXPECT_EQ(relationship->getName(), "B");
    EXPECT_EQ(package->getModelElementCount(), 3);
    EXPECT_EQ(package->getModelElement(0)->getName(), "A");
    EXPECT_EQ(package->getModelElement(2)->getName(), "B");
}

TYPED_TEST(QORRelationshipOf, IsReencodedAndDeletedWithItsPackage) {
    Graph graph;
    auto* const package = new QORDesignPackage;
    auto* const relationship = graph.mortal<TypeParam>("relationship", inUtf8);
    ASSERT_TRUE(package->addModelElement(relationship));
    Recoding recode;
    recode(*package);
    EXPECT_EQ(relationship->getName(), inLatin1);
    EXPECT_FALSE(relationship->recursiveDelete());
    delete package;
    EXPECT_EQ(graph.deaths, Labels{"relationship"});
}
