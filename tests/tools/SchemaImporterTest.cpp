#include "sqlite/SchemaImporter.h"

#include "Sqlite.h"
#include "TemporaryFolder.h"
#include "kit/ToolError.h"
#include "kit/Verify.h"
#include "sqlite/SqliteDatabase.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDatabaseCatalog.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>

#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::unique_ptr<QORModel> importFile(std::string const& path) {
    sqlite::Database database(path);
    return sqlite::importSchema(database);
}

/// The model of a new database "shop.sqlite".
std::unique_ptr<QORModel> importSql(std::string const& sql) {
    TemporaryFolder const folder;
    return importFile(makeDatabase(folder.file("shop.sqlite"), sql));
}

/// The first child package that is of a class.
template <class Class>
Class* packageOf(QORPackage const& package) {
    for (int i = 0; i < package.getChildPackageCount(); ++i) {
        if (auto* found = dynamic_cast<Class*>(package.getChildPackage(i))) {
            return found;
        }
    }
    return nullptr;
}

QORClass* tableOf(QORModel const& model, std::string const& name) {
    auto const* package = packageOf<QORDesignPackage>(model);
    for (int i = 0; i < package->getModelElementCount(); ++i) {
        if (name == package->getModelElement(i)->getName().chars) {
            return dynamic_cast<QORClass*>(package->getModelElement(i));
        }
    }
    return nullptr;
}

std::vector<std::string> tableNamesOf(QORModel const& model) {
    auto const* package = packageOf<QORDesignPackage>(model);
    std::vector<std::string> names;
    for (int i = 0; i < package->getModelElementCount(); ++i) {
        names.emplace_back(package->getModelElement(i)->getName().chars);
    }
    return names;
}

std::vector<std::string> columnNamesOf(QORClass const& table) {
    std::vector<std::string> names(static_cast<std::size_t>(table.getFeatureCount()));
    for (int i = 0; i < table.getFeatureCount(); ++i) {
        QORFeature const* feature = table.getFeature(i);
        names.at(static_cast<std::size_t>(feature->getPosition() - 1)) = feature->getName().chars;
    }
    return names;
}

QORAttribute* columnOf(QORModel const& model, char const* table, char const* column) {
    return tableOf(model, table)->getAttribute(column, nullptr);
}

TEST(SchemaImporter, ModelTellsWhereItComesFrom) {
    TemporaryFolder const folder;
    std::string const path = makeDatabase(folder.file("my.shop.sqlite"), "CREATE TABLE t(a)");
    auto const model = importFile(path);
    EXPECT_STREQ(model->getName().chars, "my.shop");
    QORMetadataOrigin const* origin = model->getMetadataOrigin();
    ASSERT_TRUE(origin);
    EXPECT_STREQ(origin->getToolName().chars, "SQLite");
    EXPECT_STREQ(origin->getToolVersion().chars, sqlite3_libversion());
    EXPECT_STREQ(origin->getSource().chars, path.c_str());
    EXPECT_STREQ(origin->getEncoding().chars, "UTF-8");
    EXPECT_STREQ(origin->getFormatName().chars, "SQLite database");
    EXPECT_STREQ(origin->getFormatVersion().chars, "3");
}

TEST(SchemaImporter, CatalogHoldsTheSchemaThatListsTheTables) {
    auto const model = importSql("CREATE TABLE b(x); CREATE TABLE a(y)");
    auto const* catalog = packageOf<QORDatabaseCatalog>(*model);
    ASSERT_TRUE(catalog);
    EXPECT_STREQ(catalog->getSystemType().chars, "SQLite");
    EXPECT_STREQ(catalog->getNativeVersion().chars, sqlite3_libversion());
    EXPECT_EQ(catalog->getMajorVersion(), SQLITE_VERSION_NUMBER / 1000000);
    EXPECT_EQ(catalog->getMinorVersion(), SQLITE_VERSION_NUMBER / 1000 % 1000);
    auto const* schema = packageOf<QORDatabaseSchema>(*catalog);
    ASSERT_TRUE(schema);
    EXPECT_STREQ(schema->getName().chars, "main");
    ASSERT_EQ(schema->getModelObjectCount(), 2);
    EXPECT_EQ(schema->getModelObject(0), tableOf(*model, "a"));
    EXPECT_EQ(schema->getModelObject(1), tableOf(*model, "b"));
}

TEST(SchemaImporter, TablesAreEntitiesOfTheDesignPackage) {
    auto const model = importSql("CREATE TABLE customer(id INTEGER); CREATE TABLE \"Größe\"(x)");
    EXPECT_THAT(tableNamesOf(*model), ElementsAre("Größe", "customer"));
    QORClass const* table = tableOf(*model, "Größe");
    EXPECT_STREQ(table->getPhysicalName().chars, "Größe");
    EXPECT_EQ(table->getCppClassType(), QORClassCategoryType::ENTITY);
}

TEST(SchemaImporter, ColumnsKeepOrderAndWhatIsDeclaredOfThem) {
    auto const model = importSql("CREATE TABLE t(z VARCHAR(40) NOT NULL, \"Prénom\" TEXT DEFAULT 'a ''b''',"
                                 " a INTEGER DEFAULT -1, y)");
    EXPECT_THAT(columnNamesOf(*tableOf(*model, "t")), ElementsAre("z", "Prénom", "a", "y"));
    EXPECT_FALSE(columnOf(*model, "t", "z")->getOptional());
    EXPECT_TRUE(columnOf(*model, "t", "a")->getOptional());
    EXPECT_STREQ(columnOf(*model, "t", "Prénom")->getPhysicalName().chars, "Prénom");
    EXPECT_STREQ(columnOf(*model, "t", "Prénom")->getInitialValue().chars, "'a ''b'''");
    EXPECT_STREQ(columnOf(*model, "t", "a")->getInitialValue().chars, "-1");
    EXPECT_STREQ(columnOf(*model, "t", "z")->getInitialValue().chars, "");
}

TEST(SchemaImporter, EachDeclaredTypeIsOneSharedTypeDerivedFromThatOfItsDataType) {
    auto const model =
        importSql("CREATE TABLE t(a VARCHAR(40), b NUMERIC(10,2)); CREATE TABLE u(c VARCHAR(40),"
                  " d VARCHAR(9))");
    auto const* type = dynamic_cast<QORDerivedType*>(columnOf(*model, "t", "a")->getType());
    ASSERT_TRUE(type);
    EXPECT_STREQ(type->getName().chars, "VARCHAR(40)");
    EXPECT_STREQ(type->getNativeDataType().chars, "VARCHAR(40)");
    EXPECT_STREQ(type->getDataType().chars, "SQL_VARCHAR");
    EXPECT_EQ(type->getLength(), 40);
    EXPECT_EQ(type->getScale(), 0);
    EXPECT_EQ(columnOf(*model, "u", "c")->getType(), type);

    auto const* other = dynamic_cast<QORDerivedType*>(columnOf(*model, "u", "d")->getType());
    ASSERT_TRUE(other);
    EXPECT_NE(other, type);
    auto const* base = dynamic_cast<QORBaseType*>(type->getDerivedFromConcreteType());
    ASSERT_TRUE(base);
    EXPECT_EQ(other->getDerivedFromConcreteType(), base);
    EXPECT_STREQ(base->getName().chars, "varchar");
    EXPECT_STREQ(base->getDataType().chars, "SQL_VARCHAR");

    EXPECT_EQ(columnOf(*model, "t", "b")->getType()->getLength(), 10);
    EXPECT_EQ(columnOf(*model, "t", "b")->getType()->getScale(), 2);
    EXPECT_EQ(model->getTypeCount(), 3 + 2);
}

TEST(SchemaImporter, ColumnWithoutDeclaredTypeIsUndefined) {
    auto const model = importSql("CREATE TABLE t(a)");
    auto const* type = dynamic_cast<QORDerivedType*>(columnOf(*model, "t", "a")->getType());
    ASSERT_TRUE(type);
    EXPECT_STREQ(type->getName().chars, "undefined");
    EXPECT_STREQ(type->getDataType().chars, "undefined");
    EXPECT_STREQ(type->getNativeDataType().chars, "");
}

TEST(SchemaImporter, SqlitesOwnTablesAreLeftOutAndOnlyThose) {
    auto const model = importSql("CREATE TABLE t(a INTEGER PRIMARY KEY AUTOINCREMENT, b UNIQUE);"
                                 "CREATE TABLE sqliteX(a); CREATE INDEX i ON t(b); INSERT INTO t VALUES(1,1);"
                                 "CREATE VIEW v AS SELECT a FROM t; ANALYZE");
    EXPECT_THAT(tableNamesOf(*model), ElementsAre("sqliteX", "t"));
}

TEST(SchemaImporter, GeneratedColumnsAreDerived) {
    auto const model = importSql("CREATE TABLE t(a INT, b INT AS (a + 1), c AS (a * 2) STORED, d)");
    EXPECT_THAT(columnNamesOf(*tableOf(*model, "t")), ElementsAre("a", "b", "c", "d"));
    EXPECT_FALSE(columnOf(*model, "t", "a")->getCppDerived());
    EXPECT_TRUE(columnOf(*model, "t", "b")->getCppDerived());
    EXPECT_TRUE(columnOf(*model, "t", "c")->getCppDerived());
    EXPECT_FALSE(columnOf(*model, "t", "d")->getCppDerived());
}

TEST(SchemaImporter, KindOfTableIsKept) {
    auto const model = importSql("CREATE TABLE plain(a); CREATE TABLE keyed(a PRIMARY KEY, b) WITHOUT ROWID;"
                                 "CREATE TABLE strict(a INT, b ANY) STRICT");
    EXPECT_STREQ(tableOf(*model, "plain")->getNativeType().chars, "TABLE");
    EXPECT_STREQ(tableOf(*model, "keyed")->getNativeType().chars, "TABLE WITHOUT ROWID");
    EXPECT_STREQ(tableOf(*model, "strict")->getNativeType().chars, "TABLE STRICT");
    EXPECT_THAT(columnNamesOf(*tableOf(*model, "keyed")), ElementsAre("a", "b"));
    EXPECT_FALSE(columnOf(*model, "keyed", "a")->getOptional()); // such a table's key can't be NULL
}

TEST(SchemaImporter, VirtualTableIsATableWithoutItsHiddenColumns) {
    if (!sqlite3_compileoption_used("ENABLE_FTS5")) {
        GTEST_SKIP() << "this SQLite has no FTS5";
    }
    auto const model = importSql("CREATE VIRTUAL TABLE notes USING fts5(title, body)");
    ASSERT_TRUE(tableOf(*model, "notes"));
    EXPECT_STREQ(tableOf(*model, "notes")->getNativeType().chars, "VIRTUAL TABLE");
    EXPECT_THAT(columnNamesOf(*tableOf(*model, "notes")), ElementsAre("title", "body"));
    ASSERT_TRUE(tableOf(*model, "notes_data"));
    EXPECT_STREQ(tableOf(*model, "notes_data")->getNativeType().chars, "SHADOW TABLE");
}

TEST(SchemaImporter, VirtualTableOfAnUnknownModuleHasNoColumnsAndDisturbsNoOther) {
    auto const model =
        importSql("CREATE TABLE t(a); PRAGMA writable_schema=ON; INSERT INTO sqlite_schema"
                  " VALUES('table', 'aaa', 'aaa', 0, 'CREATE VIRTUAL TABLE aaa USING nobody(x)')");
    EXPECT_THAT(tableNamesOf(*model), ElementsAre("aaa", "t"));
    EXPECT_EQ(tableOf(*model, "aaa")->getFeatureCount(), 0);
    EXPECT_GT(tableOf(*model, "aaa")->getComment().length, 0);
    EXPECT_EQ(tableOf(*model, "t")->getFeatureCount(), 1);
    EXPECT_EQ(tableOf(*model, "t")->getComment().length, 0);
}

TEST(SchemaImporter, TextsOfADatabaseInUtf16AreUtf8) {
    auto const model =
        importSql("PRAGMA encoding='UTF-16le'; CREATE TABLE \"Größe\"(\"樹\" VARCHAR(3) DEFAULT 'é')");
    EXPECT_STREQ(model->getMetadataOrigin()->getEncoding().chars, "UTF-16le");
    ASSERT_TRUE(tableOf(*model, "Größe"));
    ASSERT_TRUE(columnOf(*model, "Größe", "樹"));
    EXPECT_STREQ(columnOf(*model, "Größe", "樹")->getInitialValue().chars, "'é'");
}

TEST(SchemaImporter, EmptyFileIsADatabaseWithoutTables) {
    TemporaryFolder const folder;
    auto const model = importFile(folder.write("empty.sqlite", ""));
    EXPECT_THAT(tableNamesOf(*model), IsEmpty());
    EXPECT_STREQ(model->getMetadataOrigin()->getToolVersion().chars, "");
    EXPECT_EQ(packageOf<QORDatabaseCatalog>(*model)->getMajorVersion(), -1);
}

TEST(SchemaImporter, LinksOfTheModelAreSound) {
    auto const model = importSql(contentOf(QOR_SOURCE_DIR "/samples/orchard.sql"));
    EXPECT_THAT(tableNamesOf(*model), testing::SizeIs(10));
    EXPECT_THAT(kit::verify(*model), IsEmpty());
}

TEST(SchemaImporter, ManyTablesAndTheWidestOneAreRead) {
    std::string sql = "BEGIN; CREATE TABLE wide(c0";
    for (int i = 1; i < 2000; ++i) {
        sql += ",c" + std::to_string(i);
    }
    sql += ");";
    for (int i = 0; i < 500; ++i) {
        sql += "CREATE TABLE t" + std::to_string(i) + "(a INT, b TEXT);";
    }
    auto const model = importSql(sql + "COMMIT");
    EXPECT_THAT(tableNamesOf(*model), testing::SizeIs(501));
    EXPECT_EQ(columnOf(*model, "wide", "c1999")->getPosition(), 2000);
    EXPECT_THAT(columnNamesOf(*tableOf(*model, "t499")), ElementsAre("a", "b"));
}

TEST(SqliteDatabase, ChangesThatStillLieInTheWriteAheadLogAreRead) {
    TemporaryFolder const folder;
    std::string const path = folder.file("wal.sqlite");
    Sqlite writer(path);
    writer.run("PRAGMA journal_mode=WAL; CREATE TABLE late(a)");
    ASSERT_FALSE(contentOf(path + "-wal").empty());
    EXPECT_THAT(tableNamesOf(*importFile(path)), ElementsAre("late"));
}

TEST(SqliteDatabase, ReadingLeavesTheFileAndItsFolderAsTheyWere) {
    TemporaryFolder const folder;
    std::string const path =
        makeDatabase(folder.file("rest.sqlite"), "PRAGMA journal_mode=WAL; CREATE TABLE t(a)");
    std::string const before = contentOf(path);
    EXPECT_THAT(tableNamesOf(*importFile(path)), ElementsAre("t"));
    EXPECT_EQ(contentOf(path), before);
    auto const files = std::distance(std::filesystem::directory_iterator(folder.path), {});
    EXPECT_EQ(files, 1);
}

TEST(SqliteDatabase, PathIsTakenAsItIs) {
    TemporaryFolder const folder;
    for (char const* name : {"a b?mode=rwc", "100%41.sqlite", "#x", "file:y", "größe;&=+'\"\\"}) {
        std::string const path = makeDatabase(folder.file(name), "CREATE TABLE t(a)");
        EXPECT_THAT(tableNamesOf(*importFile(path)), ElementsAre("t")) << name;
    }
}

} // namespace
