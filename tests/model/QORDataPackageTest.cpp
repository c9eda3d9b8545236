#include "ModelTestSupport.h"

#include <qor/QORClass.h>
#include <qor/QORDataPackage.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOROlapSchema.h>

namespace {

/// A data package is abstract: a database schema has nothing besides.
void link(Graph& graph, QORDatabaseSchema& object, Owners owners) {
    linkLayers(graph, object);
    linkOwnerMade<QORDesignPackage>(graph, owners, "parent", object, &QORPackage::addParentPackage);
    ASSERT_TRUE(object.addModelObject(hung<QORClass>(graph, "second listed")));
    ASSERT_TRUE(object.addModelObject(hung<QORClass>(graph, "first listed")));
    ASSERT_TRUE(object.addChildPackage(hung<QORDatabaseSchema>(graph, "child")));
}

} // namespace

TEST(QORDataPackage, IsAbstractAndAPackage) {
    graph::expectAbstract<QORDataPackage>(QORElementType::DATA_PACKAGE, 141, "DataPackage",
                                          QORPackage::getStaticMetaClass());
}

TEST(QORDataPackage, DirectionIsBothAtFirstAndCountsForEquality) {
    expectAttribute<QORDatabaseSchema>(&QORDatabaseSchema::getDirection, &QORDatabaseSchema::setDirection,
                                       QORDirectionType::SOURCE_DESTINATION, QORDirectionType::DESTINATION);
}

TEST(QORDataPackage, CopiesListNothing) {
    expectCopiesUnlinked<QORDatabaseSchema>(link);
}

TEST(QORDataPackage, AListedObjectCountsAsAReference) {
    expectEndCounts<QORDatabaseSchema, QORModelObject, QORClass>(&QORDataPackage::addModelObject);
}

TEST(QORDataPackage, IsTakenApartInOrder) {
    expectTakenApart<QORDatabaseSchema>(
        link, {"second listed", "first listed", "parent", "child", "base", "synonym", "note"},
        {"note", "synonym", "base", "child", "second listed", "first listed"});
    expectIsolationFreesFarEnds<QORDatabaseSchema>(link);
}

TEST(QORDataPackage, DoesNotReachWhatItLists) {
    expectChildrenReached<QORDatabaseSchema>(link, {"note", "synonym", "child"});
}

TEST(QORDataPackage, AListedObjectWithAnOwnerSurvives) {
    Graph graph;
    auto* const home = graph.make<QORDesignPackage>();
    auto* const listed = graph.make<QORClass>();
    auto* const package = new QOROlapSchema;
    ASSERT_TRUE(home->addModelElement(listed) && package->addModelObject(listed));
    delete package;
    EXPECT_EQ(listed->getDataPackage(), nullptr);
    EXPECT_EQ(listed->getDesignPackage(), home);
}

TEST(QORDataPackage, AnObjectIsListedByOnePackageOnly) {
    Graph graph;
    auto* const package = graph.make<QORDatabaseSchema>();
    auto* const other = graph.make<QOROlapSchema>();
    auto* const listed = graph.make<QORClass>();
    ASSERT_TRUE(package->addModelObject(listed));
    EXPECT_FALSE(package->addModelObject(listed));
    EXPECT_FALSE(other->addModelObject(listed));
    EXPECT_FALSE(other->isReferenced());
    EXPECT_EQ(listed->getDataPackage(), package);
    EXPECT_EQ(listed->getParent(), nullptr);
}
