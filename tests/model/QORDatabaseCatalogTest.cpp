#include "Expectations.h"

#include <qor/QORDatabaseCatalog.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDesignPackage.h>

TEST(QORDatabaseCatalog, OwnsSchemas) {
    Graph graph;
    auto* const catalog = new QORDatabaseCatalog;
    auto* const parent = graph.make<QORDesignPackage>();
    ASSERT_TRUE(parent->addChildPackage(catalog));
    ASSERT_TRUE(catalog->addChildPackage(graph.mortal<QORDatabaseSchema>("schema")));
    expectParent(*catalog, parent, 1);
    EXPECT_FALSE(catalog->recursiveDelete());
    delete catalog;
    EXPECT_EQ(graph.deaths, Labels{"schema"});
    EXPECT_EQ(parent->getChildPackageCount(), 0);
}
