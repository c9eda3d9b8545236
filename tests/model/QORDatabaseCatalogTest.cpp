#include "ModelTestSupport.h"

#include <qor/QORDatabaseCatalog.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDesignPackage.h>

TEST(QORDatabaseCatalog, IsADataPackage) {
    graph::expectConcrete<QORDatabaseCatalog>(QORElementType::DATABASE_CATALOG, 74, "DatabaseCatalog",
                                              QORDataPackage::getStaticMetaClass());
    expectClassesUnequal<QORDatabaseCatalog, QORDatabaseSchema>();
}

TEST(QORDatabaseCatalog, VersionsStartUnknownAndAllAttributesCountForEquality) {
    using Catalog = QORDatabaseCatalog;
    expectAttribute<Catalog>(&Catalog::getSystemType, &Catalog::setSystemType, "", "A");
    expectAttribute<Catalog>(&Catalog::getNativeVersion, &Catalog::setNativeVersion, "", "1.2");
    expectAttribute<Catalog>(&Catalog::getMajorVersion, &Catalog::setMajorVersion, short{-1}, short{9});
    expectAttribute<Catalog>(&Catalog::getMinorVersion, &Catalog::setMinorVersion, short{-1}, short{0});
    expectAttribute<Catalog>(&Catalog::getTertiaryVersion, &Catalog::setTertiaryVersion, short{-1}, short{2});
    expectAttribute<Catalog>(&Catalog::getDirection, &Catalog::setDirection,
                             QORDirectionType::SOURCE_DESTINATION, QORDirectionType::SOURCE);
}

TEST(QORDatabaseCatalog, TextsAreReencodedEachOnItsOwn) {
    expectTextsRecoded<QORDatabaseCatalog>(
        {{&QORDatabaseCatalog::getSystemType, &QORDatabaseCatalog::setSystemType},
         {&QORDatabaseCatalog::getNativeVersion, &QORDatabaseCatalog::setNativeVersion}});
}

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
