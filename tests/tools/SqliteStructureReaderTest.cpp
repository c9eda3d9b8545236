#include "sqlite/StructureReader.h"

#include "DescribeStructure.h"
#include "Sqlite.h"
#include "TemporaryFolder.h"
#include "database/ModelBuilder.h"
#include "kit/ToolError.h"
#include "kit/Verify.h"
#include "sqlite/SqliteDatabase.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORDatabaseCatalog.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>

#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::unique_ptr<QORModel> importFile(std::string const& path) {
    sqlite::Database file(path);
    return database::buildModel(sqlite::readStructure(file));
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
        if (dynamic_cast<QORClass*>(package->getModelElement(i))) {
            names.emplace_back(package->getModelElement(i)->getName().chars);
        }
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

TEST(SqliteStructureReader, ModelTellsWhereItComesFrom) {
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

TEST(SqliteStructureReader, CatalogHoldsTheSchemaThatListsTheTables) {
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

TEST(SqliteStructureReader, TablesAreEntitiesOfTheDesignPackage) {
    auto const model = importSql("CREATE TABLE customer(id INTEGER); CREATE TABLE \"Größe\"(x)");
    EXPECT_THAT(tableNamesOf(*model), ElementsAre("Größe", "customer"));
    QORClass const* table = tableOf(*model, "Größe");
    EXPECT_STREQ(table->getPhysicalName().chars, "Größe");
    EXPECT_EQ(table->getCppClassType(), QORClassCategoryType::ENTITY);
}

TEST(SqliteStructureReader, ColumnsKeepOrderAndWhatIsDeclaredOfThem) {
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

TEST(SqliteStructureReader, EachDeclaredTypeIsOneSharedTypeDerivedFromThatOfItsDataType) {
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

TEST(SqliteStructureReader, ColumnWithoutDeclaredTypeIsUndefined) {
    auto const model = importSql("CREATE TABLE t(a)");
    auto const* type = dynamic_cast<QORDerivedType*>(columnOf(*model, "t", "a")->getType());
    ASSERT_TRUE(type);
    EXPECT_STREQ(type->getName().chars, "undefined");
    EXPECT_STREQ(type->getDataType().chars, "undefined");
    EXPECT_STREQ(type->getNativeDataType().chars, "");
}

TEST(SqliteStructureReader, SqlitesOwnTablesAreLeftOutAndOnlyThose) {
    auto const model = importSql("CREATE TABLE t(a INTEGER PRIMARY KEY AUTOINCREMENT, b UNIQUE);"
                                 "CREATE TABLE sqliteX(a); CREATE INDEX i ON t(b); INSERT INTO t VALUES(1,1);"
                                 "CREATE VIEW v AS SELECT a FROM t; ANALYZE");
    EXPECT_THAT(tableNamesOf(*model), ElementsAre("sqliteX", "t"));
}

TEST(SqliteStructureReader, GeneratedColumnsAreDerived) {
    auto const model = importSql("CREATE TABLE t(a INT, b INT AS (a + 1), c AS (a * 2) STORED, d)");
    EXPECT_THAT(columnNamesOf(*tableOf(*model, "t")), ElementsAre("a", "b", "c", "d"));
    EXPECT_FALSE(columnOf(*model, "t", "a")->getCppDerived());
    EXPECT_TRUE(columnOf(*model, "t", "b")->getCppDerived());
    EXPECT_TRUE(columnOf(*model, "t", "c")->getCppDerived());
    EXPECT_FALSE(columnOf(*model, "t", "d")->getCppDerived());
}

TEST(SqliteStructureReader, KindOfTableIsKept) {
    auto const model = importSql("CREATE TABLE plain(a); CREATE TABLE keyed(a PRIMARY KEY, b) WITHOUT ROWID;"
                                 "CREATE TABLE strict(a INT, b ANY) STRICT");
    EXPECT_STREQ(tableOf(*model, "plain")->getNativeType().chars, "TABLE");
    EXPECT_STREQ(tableOf(*model, "keyed")->getNativeType().chars, "TABLE WITHOUT ROWID");
    EXPECT_STREQ(tableOf(*model, "strict")->getNativeType().chars, "TABLE STRICT");
    EXPECT_THAT(columnNamesOf(*tableOf(*model, "keyed")), ElementsAre("a", "b"));
    EXPECT_FALSE(columnOf(*model, "keyed", "a")->getOptional()); // such a table's key can't be NULL
}

TEST(SqliteStructureReader, VirtualTableIsATableWithoutItsHiddenColumns) {
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

TEST(SqliteStructureReader, VirtualTableOfAnUnknownModuleHasNoColumnsAndDisturbsNoOther) {
    auto const model =
        importSql("CREATE TABLE t(a); PRAGMA writable_schema=ON; INSERT INTO sqlite_schema"
                  " VALUES('table', 'aaa', 'aaa', 0, 'CREATE VIRTUAL TABLE aaa USING nobody(x)')");
    EXPECT_THAT(tableNamesOf(*model), ElementsAre("aaa", "t"));
    EXPECT_EQ(tableOf(*model, "aaa")->getFeatureCount(), 0);
    EXPECT_GT(tableOf(*model, "aaa")->getComment().length, 0);
    EXPECT_EQ(tableOf(*model, "t")->getFeatureCount(), 1);
    EXPECT_EQ(tableOf(*model, "t")->getComment().length, 0);
}

TEST(SqliteStructureReader, TextsOfADatabaseInUtf16AreUtf8) {
    auto const model =
        importSql("PRAGMA encoding='UTF-16le'; CREATE TABLE \"Größe\"(\"樹\" VARCHAR(3) DEFAULT 'é')");
    EXPECT_STREQ(model->getMetadataOrigin()->getEncoding().chars, "UTF-16le");
    ASSERT_TRUE(tableOf(*model, "Größe"));
    ASSERT_TRUE(columnOf(*model, "Größe", "樹"));
    EXPECT_STREQ(columnOf(*model, "Größe", "樹")->getInitialValue().chars, "'é'");
}

TEST(SqliteStructureReader, EmptyFileIsADatabaseWithoutTables) {
    TemporaryFolder const folder;
    auto const model = importFile(folder.write("empty.sqlite", ""));
    EXPECT_THAT(tableNamesOf(*model), IsEmpty());
    EXPECT_STREQ(model->getMetadataOrigin()->getToolVersion().chars, "");
    EXPECT_EQ(packageOf<QORDatabaseCatalog>(*model)->getMajorVersion(), -1);
}

TEST(SqliteStructureReader, LinksOfTheModelAreSound) {
    auto const model = importSql(contentOf(QOR_SOURCE_DIR "/samples/orchard.sql"));
    EXPECT_THAT(tableNamesOf(*model), testing::SizeIs(10));
    EXPECT_THAT(kit::verify(*model), IsEmpty());
}

TEST(SqliteStructureReader, ManyTablesAndTheWidestOneAreRead) {
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

// ---- keys, checks, indexes, views and triggers -------------------------------------------------------

/// The structure of a new database, a line for each record.
std::vector<std::string> linesOf(std::string const& sql) {
    TemporaryFolder const folder;
    sqlite::Database file(makeDatabase(folder.file("shop.sqlite"), sql));
    return describe(sqlite::readStructure(file));
}

std::vector<std::string> linesOf(std::string const& kind, std::string const& sql) {
    std::vector<std::string> lines;
    for (std::string const& line : linesOf(sql)) {
        if (line.compare(0, kind.size(), kind) == 0) {
            lines.push_back(line);
        }
    }
    return lines;
}

TEST(SqliteStructureReader, KeysHaveTheOrderOfTheirColumnsAndTheirNames) {
    EXPECT_THAT(
        linesOf(
            "key",
            "CREATE TABLE t(a, b, c UNIQUE, CONSTRAINT p PRIMARY KEY (b, A), CONSTRAINT u UNIQUE (c, a))"),
        ElementsAre("key \"\" | main.t | 1 | (c,) | - | () | 0 | 0 | comment  | {}",
                    "key \"p\" | main.t | 0 | (b,a,) | - | () | 0 | 0 | comment  | {}",
                    "key \"u\" | main.t | 1 | (c,a,) | - | () | 0 | 0 | comment  | {}"));
}

TEST(SqliteStructureReader, WhatKeysSayBesideTheirColumnsIsKept) {
    EXPECT_THAT(
        linesOf("key", "CREATE TABLE a(x INTEGER PRIMARY KEY AUTOINCREMENT, y UNIQUE ON CONFLICT REPLACE);"
                       "CREATE TABLE b(x INTEGER CONSTRAINT n PRIMARY KEY DESC ON CONFLICT FAIL);"
                       "CREATE TABLE c(x, y, PRIMARY KEY (x COLLATE NOCASE, y DESC) ON CONFLICT IGNORE);"
                       "CREATE TABLE d(x INTEGER, PRIMARY KEY (x AUTOINCREMENT))"),
        ElementsAre(
            "key \"\" | main.a | 0 | (x,) | - | () | 0 | 0 | comment  | {autoincrement=true;}",
            "key \"\" | main.a | 1 | (y,) | - | () | 0 | 0 | comment  | {conflict=REPLACE;}",
            "key \"\" | main.c | 0 | (x,y,) | - | () | 0 | 0 | comment  | "
            "{columns=x COLLATE NOCASE, y DESC;conflict=IGNORE;}",
            "key \"\" | main.d | 0 | (x,) | - | () | 0 | 0 | comment  | {autoincrement=true;}",
            "key \"n\" | main.b | 0 | (x,) | - | () | 0 | 0 | comment  | {conflict=FAIL;order=DESC;}"));
}

TEST(SqliteStructureReader, ForeignKeysHaveActionsDeferralAndMatch) {
    EXPECT_THAT(
        linesOf(
            "key \"f",
            "CREATE TABLE p(i PRIMARY KEY, j, k, UNIQUE (j, k));"
            "CREATE TABLE c(a CONSTRAINT f1 REFERENCES P(I) ON DELETE SET NULL ON UPDATE CASCADE NOT NULL,"
            " b, CONSTRAINT f2 FOREIGN KEY (b, a) REFERENCES p(j, k) MATCH full ON DELETE SET DEFAULT"
            " DEFERRABLE INITIALLY DEFERRED CONSTRAINT f3 FOREIGN KEY (B) REFERENCES p ON UPDATE RESTRICT"
            " DEFERRABLE, CONSTRAINT f4 FOREIGN KEY (a) REFERENCES c(b) ON DELETE NO ACTION MATCH SIMPLE NOT"
            " DEFERRABLE INITIALLY IMMEDIATE)"),
        ElementsAre("key \"f1\" | main.c | 2 | (a,) | main.p | (i,) | 2 | 3 | comment  | {}",
                    "key \"f2\" | main.c | 2 | (b,a,) | main.p | (j,k,) | 0 | 4 | comment  | "
                    "{deferrable=INITIALLY DEFERRED;match=FULL;}",
                    "key \"f3\" | main.c | 2 | (b,) | main.p | (i,) | 1 | 0 | comment  | "
                    "{deferrable=INITIALLY IMMEDIATE;}",
                    "key \"f4\" | main.c | 2 | (a,) | main.c | (b,) | 0 | 0 | comment  | {}"));
}

TEST(SqliteStructureReader, ForeignKeysMayReferToAnything) {
    EXPECT_THAT(
        linesOf("key", "CREATE TABLE c(a REFERENCES \"no where\", b REFERENCES gone(x), d REFERENCES v(z),"
                       " e REFERENCES c(nix), f REFERENCES c); CREATE VIEW v AS SELECT 1 AS z"),
        ElementsAre("key \"\" | main.c | 2 | (a,) | - | () | 0 | 0 | comment  | {references=\"no where\";}",
                    "key \"\" | main.c | 2 | (b,) | - | () | 0 | 0 | comment  | {references=gone(x);}",
                    "key \"\" | main.c | 2 | (d,) | - | () | 0 | 0 | comment  | {references=v(z);}",
                    "key \"\" | main.c | 2 | (e,) | main.c | () | 0 | 0 | comment  | {references=c(nix);}",
                    "key \"\" | main.c | 2 | (f,) | main.c | () | 0 | 0 | comment  | {references=c;}"));
}

TEST(SqliteStructureReader, CyclicForeignKeysAreRead) {
    auto const model = importSql("CREATE TABLE a(i PRIMARY KEY, b REFERENCES b, s REFERENCES a);"
                                 "CREATE TABLE b(i PRIMARY KEY, a REFERENCES a)");
    EXPECT_THAT(kit::verify(*model), IsEmpty());
    EXPECT_EQ(tableOf(*model, "a")->getPrimaryCandidateKey()->getForeignKeyCount(), 2);
    EXPECT_EQ(tableOf(*model, "b")->getPrimaryCandidateKey()->getForeignKeyCount(), 1);
}

TEST(SqliteStructureReader, ChecksAreReadWhereverTheyStand) {
    EXPECT_THAT(
        linesOf("check",
                "CREATE TABLE t(a CHECK (a > ')') CONSTRAINT c CHECK(a IN (1, 2)), b DEFAULT (1) CHECK (b),"
                " CONSTRAINT \"x y\" CHECK (a /* ) */ < b) CHECK (length(\"b\") > 0))"),
        ElementsAre("check \"\" | main.t | - | a > ')' | comment  | {}",
                    "check \"\" | main.t | - | b | comment  | {}",
                    "check \"\" | main.t | - | length(\"b\") > 0 | comment  | {}",
                    "check \"c\" | main.t | - | a IN (1, 2) | comment  | {}",
                    "check \"x y\" | main.t | - | a /* ) */ < b | comment  | {}"));
}

TEST(SqliteStructureReader, ColumnsHaveCollationsAndExpressions) {
    EXPECT_THAT(
        linesOf(
            "column",
            "CREATE TABLE t(a TEXT COLLATE nocase CONSTRAINT d DEFAULT 'x' CONSTRAINT n NOT NULL ON CONFLICT"
            " IGNORE, b INT GENERATED ALWAYS AS (a || ')') STORED, c AS (b+1), d DEFAULT (1 + 2),"
            " e DEFAULT -1, f DEFAULT x'00', g NULL DEFAULT CURRENT_DATE)"),
        ElementsAre("column main.t#0 \"a\" | -.TEXT<TEXT> | 1 | 'x' | 0 | comment  | "
                    "{collation=nocase;conflict=IGNORE;default constraint=d;not null constraint=n;}",
                    "column main.t#1 \"b\" | -.INT<INT> | 0 | a || ')' | 1 | comment  | {generated=STORED;}",
                    "column main.t#2 \"c\" | -.undefined<> | 0 | b+1 | 1 | comment  | {generated=VIRTUAL;}",
                    "column main.t#3 \"d\" | -.undefined<> | 0 | 1 + 2 | 0 | comment  | {}",
                    "column main.t#4 \"e\" | -.undefined<> | 0 | -1 | 0 | comment  | {}",
                    "column main.t#5 \"f\" | -.undefined<> | 0 | x'00' | 0 | comment  | {}",
                    "column main.t#6 \"g\" | -.undefined<> | 0 | CURRENT_DATE | 0 | comment  | {}"));
}

TEST(SqliteStructureReader, IndexesHaveMembersInOrderAndAreThoseOfNoConstraint) {
    EXPECT_THAT(
        linesOf(
            "index",
            "CREATE TABLE t(a UNIQUE, \"b,c\", \"on\"); CREATE UNIQUE INDEX i ON t(\"b,c\" DESC, A COLLATE"
            " NOCASE ASC, a || 'x' DESC, lower(a)); CREATE INDEX j ON t(\"on\") WHERE \"on\" > (1) ;"
            "CREATE INDEX k ON t((a))"),
        ElementsAre("index \"i\" | main.t | 1 | 0 | (b,c,) down{},(a,){collation=NOCASE;},<a || 'x'> down{},"
                    "<lower(a)>{}, | comment  | {}",
                    "index \"j\" | main.t | 0 | 0 | (on,){}, | comment  | {where=\"on\" > (1);}",
                    "index \"k\" | main.t | 0 | 0 | (a,){}, | comment  | {}"));
}

TEST(SqliteStructureReader, ViewsHaveTheirStatementAndTheTypesOfTheirColumns) {
    std::string const sql =
        "CREATE TABLE t(a VARCHAR(9), b INT); CREATE VIEW v AS SELECT a, b + 1 AS c FROM t;"
        "CREATE VIEW w(\"x y\") AS /* all */ SELECT a FROM t WHERE b";
    EXPECT_THAT(linesOf("column main.v", sql),
                ElementsAre("column main.v#0 \"a\" | -.VARCHAR(9)<VARCHAR(9)> | 0 |  | 0 | comment  | {}",
                            "column main.v#1 \"c\" | -.undefined<> | 0 |  | 0 | comment  | {}"));
    EXPECT_THAT(linesOf("table \"w", sql),
                ElementsAre("table \"w\" | main | 1 | VIEW | SELECT a FROM t WHERE b |  | 1 | "
                            "comment  | {columns=named;}"));
}

TEST(SqliteStructureReader, ViewThatCannotBeUsedHidesNoOther) {
    std::string const sql = "CREATE TABLE t(a INT); CREATE VIEW a AS SELECT count(a, a) FROM t;"
                            "CREATE VIEW v AS SELECT a FROM t; CREATE VIEW w AS SELECT a FROM gone";
    EXPECT_THAT(linesOf("column main.", sql),
                ElementsAre("column main.t#0 \"a\" | -.INT<INT> | 0 |  | 0 | comment  | {}",
                            "column main.v#0 \"a\" | -.INT<INT> | 0 |  | 0 | comment  | {}"));
    EXPECT_THAT(
        linesOf("table \"a", sql),
        ElementsAre(HasSubstr("comment The columns are unknown: wrong number of arguments to function "
                              "count().")));
    EXPECT_THAT(linesOf("table \"w", sql),
                ElementsAre(HasSubstr("comment The columns are unknown: no such table: main.gone.")));
}

// ---- what SQLite has by itself, and what only an application has -------------------------------------

/// A database with what is refused while the database is written: the statement of one of its things is
/// replaced.
std::string tampered(std::string const& sql, std::string const& name, std::string const& statement) {
    return sql + "; PRAGMA writable_schema=ON; UPDATE sqlite_schema SET sql = '" + statement +
           "' WHERE name = '" + name + "'";
}

std::vector<std::string> remarksOn(std::string const& sql) {
    TemporaryFolder const folder;
    sqlite::Database file(makeDatabase(folder.file("shop.sqlite"), sql));
    std::vector<std::string> lines;
    for (database::Remark const& remark : sqlite::readStructure(file).remarks) {
        lines.push_back(remark.object + ": " + remark.text);
    }
    return lines;
}

/// Every function of one row that SQLite has, in each place where a schema can call it. What SQLite refuses
/// to write isn't read.
TEST(SqliteStructureReader, AllFunctionsOfSqliteCanBeUsedInASchema) {
    TemporaryFolder const folder;
    std::string const path = makeDatabase(folder.file("all.sqlite"), "CREATE TABLE plain(a)");
    {
        Sqlite all(path);
        std::vector<std::string> const calls =
            all.ask("SELECT DISTINCT name || '(' || CASE narg WHEN 0 THEN '' WHEN 1 THEN 'a' WHEN 2 THEN 'a, "
                    "a' WHEN 3 THEN"
                    " 'a, a, a' ELSE 'a, a' END || ')' FROM pragma_function_list WHERE type = 's' AND name "
                    "NOT LIKE 'fts%'");
        ASSERT_GT(calls.size(), 50u);
        int written = 0;
        for (std::size_t i = 0; i < calls.size(); ++i) {
            std::string const number = std::to_string(i);
            for (std::string const& statement :
                 {"CREATE TABLE g" + number + "(a, b AS (" + calls[i] + "))",
                  "CREATE TABLE c" + number + "(a CHECK (" + calls[i] + "))",
                  "CREATE TABLE d" + number + "(a DEFAULT (" + calls[i] + "))",
                  "CREATE INDEX i" + number + " ON plain(" + calls[i] + ")",
                  "CREATE INDEX p" + number + " ON plain(a) WHERE " + calls[i],
                  "CREATE VIEW v" + number + " AS SELECT " + calls[i] + " AS b FROM plain"}) {
                written += all.tries(statement);
            }
        }
        EXPECT_GT(written, 300);
    }
    sqlite::Database file(path);
    database::Structure const structure = sqlite::readStructure(file);
    for (database::Remark const& remark : structure.remarks) {
        EXPECT_THAT(remark.text, testing::StartsWith("The columns are unknown: ")) << remark.object;
    }
    EXPECT_LT(structure.remarks.size(), 20u); // views that SQLite itself can't use
}

TEST(SqliteStructureReader, JsonDatesAndModulesOfSqliteAreNoDamage) {
    EXPECT_THAT(
        remarksOn("CREATE TABLE t(a, b AS (json_extract(a, '$.x')) STORED, c AS (a ->> '$.y'), CHECK "
                  "(json_valid(a)), CHECK (printf('%d', a) > date(a)));"
                  "CREATE INDEX i ON t(json_extract(a, '$.x')) WHERE json_type(a) = 'null';"
                  "CREATE VIEW v AS SELECT * FROM t, json_each(t.a), pragma_table_info('t');"
                  "CREATE VIEW w AS SELECT load_file, 1 FROM (SELECT group_concat(a) OVER () AS load_file "
                  "FROM t);"
                  "CREATE VIRTUAL TABLE f USING fts5(a, tokenize='trigram');"
                  "CREATE VIRTUAL TABLE g USING fts4(a, tokenize=porter);"
                  "CREATE VIRTUAL TABLE h USING rtree(id, x, y);"
                  "CREATE TRIGGER r AFTER INSERT ON t BEGIN INSERT INTO t(a) VALUES (json_object()); END"),
        IsEmpty());
}

TEST(SqliteStructureReader, WhatOnlyTheApplicationHasIsARemarkOnItsObject) {
    std::string const of = ", which SQLite doesn't have by itself.";
    std::string const table = "CREATE TABLE t(a, b COLLATE NOCASE); CREATE INDEX i ON t(a)";
    EXPECT_THAT(
        remarksOn(tampered(table, "t",
                           "CREATE TABLE t(a AS (own(b)), b COLLATE german, CHECK (a REGEXP b),"
                           " CONSTRAINT c CHECK (\"two words\"(a) > [x y](b COLLATE french)))")),
        ElementsAre("column t.a: Needs the function own" + of, "column t.b: Needs the collation german" + of,
                    "check of t: Needs the function regexp" + of,
                    "check c of t: Needs the function two words, the function x y, the collation french" +
                        of));
    EXPECT_THAT(
        remarksOn(tampered(table, "i", "CREATE INDEX i ON t(own(a), b COLLATE german) WHERE other(b)")),
        ElementsAre("index i: Needs the function other, the function own, the collation german" + of));
    EXPECT_THAT(
        remarksOn(tampered("CREATE TABLE t(a DEFAULT 1, b, UNIQUE (b COLLATE NOCASE))", "t",
                           "CREATE TABLE t(a DEFAULT (own(1)), b, UNIQUE (b COLLATE german))")),
        ElementsAre("column t.a: Needs the function own" + of, "key of t: Needs the collation german" + of));
    EXPECT_THAT(
        remarksOn(table + "; CREATE TRIGGER r AFTER INSERT ON t BEGIN INSERT INTO t(a) VALUES (own(1)); END"),
        ElementsAre("trigger r: Needs the function own" + of));
}

TEST(SqliteStructureReader, ViewThatCallsTheApplicationHasItsColumns) {
    std::string const sql =
        "CREATE TABLE t(a INT); CREATE VIEW v AS WITH q(x, y) AS (SELECT own(a), many(a) FILTER (WHERE a) "
        "OVER "
        "(ORDER BY a COLLATE german) FROM t) SELECT x, y, CAST(x AS varchar(9)) AS z FROM q WHERE x REGEXP y";
    EXPECT_THAT(linesOf("column main.v", sql), testing::SizeIs(3));
    EXPECT_THAT(remarksOn(sql),
                ElementsAre("view v: Needs the function many, the function own, the function regexp, "
                            "the collation german, which SQLite doesn't have by itself."));
}

/// Counted otherwise, since SQLite looks at the number of arguments while it reads the schema.
TEST(SqliteStructureReader, FunctionOfTheApplicationCanHaveANameOfSqlites) {
    EXPECT_THAT(
        remarksOn(tampered("CREATE TABLE t(a); CREATE INDEX i ON t(a)", "i",
                           "CREATE INDEX i ON t(substr(a), upper(a, 1))")),
        ElementsAre("index i: Needs the function substr, the function upper, which SQLite doesn't have by "
                    "itself."));
}

TEST(SqliteStructureReader, TokenizerOfTheApplicationHidesTheColumnsOfItsTableAlone) {
    std::string const sql = tampered("CREATE VIRTUAL TABLE f USING fts5(a); CREATE TABLE t(a)", "f",
                                     "CREATE VIRTUAL TABLE f USING fts5(a, tokenize=german)");
    EXPECT_THAT(remarksOn(sql), ElementsAre("table f: The columns are unknown: no such tokenizer: german."));
    EXPECT_THAT(linesOf("column main.t", sql), testing::SizeIs(1));
}

TEST(SqliteStructureReader, CheckOfAnOldFileRunsNothingOfItsSchema) {
    TemporaryFolder const folder;
    std::string const path =
        makeDatabase(folder.file("old.sqlite"),
                     tampered("CREATE TABLE t(a, b); INSERT INTO t VALUES (1, 2)", "t",
                              "CREATE TABLE t(a CHECK (own(a)), b CHECK (abs(-9223372036854775808)))"));
    std::string bytes = contentOf(path);
    bytes[95] = static_cast<char>(bytes[95] + 1); // as a writer does that doesn't keep the number of pages
    folder.write("old.sqlite", bytes);
    sqlite::Database file(path);
    EXPECT_EQ(sqlite::readStructure(file).tables.size(), 1u);
}

TEST(SqliteStructureReader, SettingsOfTheFileBelongToTheCatalog) {
    auto const extrasOf = [](std::string const& sql) {
        std::string text;
        TemporaryFolder const folder;
        sqlite::Database file(makeDatabase(folder.file("shop.sqlite"), sql));
        for (database::Extra const& extra : sqlite::readStructure(file).catalog.extras) {
            text += extra.name + "=" + extra.value + ";";
        }
        return text;
    };
    EXPECT_EQ(extrasOf("CREATE TABLE t(a)"), "");
    EXPECT_EQ(
        extrasOf(
            "PRAGMA encoding = 'UTF-16le'; PRAGMA auto_vacuum = 2; CREATE TABLE t(a); PRAGMA user_version "
            "= -7; PRAGMA application_id = 252006673"),
        "user_version=-7;application_id=252006673;encoding=UTF-16le;auto_vacuum=INCREMENTAL;");
}

TEST(SqliteStructureReader, ColumnInParenthesesIsAColumn) {
    std::string const sql = "CREATE TABLE t(a, b, PRIMARY KEY ((a)), UNIQUE (((b) COLLATE nocase) DESC));"
                            "CREATE INDEX i ON t((b COLLATE rtrim))";
    EXPECT_THAT(linesOf("key", sql), testing::SizeIs(2));
    EXPECT_THAT(linesOf("index", sql), ElementsAre(HasSubstr("(b,){collation=rtrim;}")));
}

TEST(SqliteStructureReader, TriggersHaveTimeEventAndStatement) {
    std::string const base = "CREATE TABLE t(a, b); CREATE VIEW v AS SELECT a FROM t;";
    std::string const body = " BEGIN SELECT 1; END";
    EXPECT_THAT(
        linesOf("trigger", base + "CREATE TRIGGER a AFTER DELETE ON t" + body +
                               "; CREATE TRIGGER b UPDATE OF a, \"b\" ON t WHEN NEW.a > 1" + body +
                               "; CREATE TEMP TRIGGER x BEFORE INSERT ON t" + body +
                               "; CREATE TRIGGER IF NOT EXISTS c INSTEAD OF INSERT ON v" + body),
        ElementsAre("trigger \"a\" | main.t | 1 | 0 | 0 | 1 | CREATE TRIGGER a AFTER DELETE ON t" + body +
                        " | comment  | {}",
                    "trigger \"b\" | main.t | 0 | 0 | 1 | 0 | CREATE TRIGGER b UPDATE OF a, \"b\" ON t WHEN "
                    "NEW.a > 1" +
                        body + " | comment  | {columns=a, b;}",
                    "trigger \"c\" | main.v | 2 | 1 | 0 | 0 | CREATE TRIGGER c INSTEAD OF INSERT ON v" +
                        body + " | comment  | {}"));
}

TEST(SqliteStructureReader, NastyNamesAreTakenAsTheyAre) {
    auto const model =
        importSql("CREATE TABLE \"a.b/c\"(\"select\" INTEGER PRIMARY KEY, \"q\"\"uote\" TEXT, [in [brackets],"
                  " `tick``s`, 'text''s', \"größe\", \"\" CHECK (\"\" > 0), \"a,b\" UNIQUE, \"(\", \"--\","
                  " FOREIGN KEY (\"a,b\", \"(\") REFERENCES \"A.B/C\"(\"--\", \"SELECT\"));"
                  "CREATE INDEX \"i x\" ON \"a.b/c\"(\"q\"\"uote\", [in [brackets])");
    EXPECT_THAT(kit::verify(*model), IsEmpty());
    QORClass const* table = tableOf(*model, "a.b/c");
    ASSERT_TRUE(table);
    EXPECT_THAT(columnNamesOf(*table), ElementsAre("select", "q\"uote", "in [brackets", "tick`s", "text's",
                                                   "größe", "", "a,b", "(", "--"));
    EXPECT_EQ(table->getKeyCount(), 3);
    EXPECT_EQ(table->getIndexCount(), 1);
    EXPECT_EQ(table->getAssociatedBusinessRuleCount(), 1);
}

TEST(SqliteStructureReader, AQueryHasItsColumnsByName) {
    TemporaryFolder const folder;
    sqlite::Database file(makeDatabase(folder.file("q.sqlite"), "CREATE TABLE t(a)"));
    sqlite::Query rows(file, "SELECT 7 AS number, NULL AS letter UNION ALL SELECT 8, 'é'");
    sqlite::Number const number(rows, "number");
    sqlite::Number const numberOfText(rows, "letter");
    sqlite::Text const text(rows, "letter");
    EXPECT_THROW(sqlite::Text(rows, "other"), std::logic_error);
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(number, 7);
    EXPECT_EQ(numberOfText, 0);
    EXPECT_EQ(std::string(text), "");
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(number, 8);
    EXPECT_EQ(std::string(text), "é");
    EXPECT_FALSE(rows.next());
}

/// SQLite tells the keys by pragmas too, though without names: both ways must give the same.
TEST(SqliteStructureReader, KeysAreThoseThatThePragmasTell) {
    TemporaryFolder const folder;
    sqlite::Database file(
        makeDatabase(folder.file("o.sqlite"), contentOf(QOR_SOURCE_DIR "/samples/orchard.sql")));
    auto const structure = sqlite::readStructure(file);
    std::vector<std::string> told;
    sqlite::Query rows(file, R"(
        SELECT t.name AS name, f."table" AS far, group_concat(f."from" || '>' || ifnull(f."to", '')) AS columns,
            f.on_delete AS action
        FROM sqlite_schema AS t JOIN pragma_foreign_key_list(t.name) AS f
        WHERE t.type = 'table' GROUP BY t.name, f.id)");
    sqlite::Text const name(rows, "name");
    sqlite::Text const far(rows, "far");
    sqlite::Text const columns(rows, "columns");
    sqlite::Text const action(rows, "action");
    while (rows.next()) {
        told.push_back(std::string(name) + " " + std::string(far) + " " + std::string(columns) + " " +
                       std::string(action));
    }
    char const* const actions[] = {"NO ACTION", "RESTRICT", "CASCADE", "SET NULL", "SET DEFAULT"};
    std::vector<std::string> read;
    for (auto const& key : structure.keys) {
        if (key.kind != database::KeyKind::FOREIGN) {
            continue;
        }
        auto const& table = structure.tables[static_cast<std::size_t>(key.table)];
        auto const& referred = structure.tables[static_cast<std::size_t>(key.referredTable)];
        std::string pairs;
        for (std::size_t i = 0; i < key.columns.size(); ++i) {
            pairs += (i ? "," : "") + table.columns[static_cast<std::size_t>(key.columns[i])].name + ">" +
                     referred.columns[static_cast<std::size_t>(key.referredColumns[i])].name;
        }
        read.push_back(table.name + " " + referred.name + " " + pairs + " " +
                       actions[static_cast<int>(key.onDelete)]);
    }
    EXPECT_THAT(read, testing::Not(IsEmpty()));
    EXPECT_THAT(read, testing::UnorderedElementsAreArray(told));
}

TEST(SqliteStructureReader, SchemaThatWasTamperedWithIsOneError) {
    TemporaryFolder const folder;
    char const* const tampered[] = {
        "UPDATE sqlite_schema SET tbl_name = 'nobody' WHERE type = 'trigger'",
        "UPDATE sqlite_schema SET sql = 'CREATE TRIGGER' WHERE type = 'trigger'",
        "UPDATE sqlite_schema SET sql = 'CREATE TABLE t(a, a)' WHERE name = 't'",
        "UPDATE sqlite_schema SET sql = 'CREATE INDEX i ON t(nix)' WHERE name = 'i'",
        "UPDATE sqlite_schema SET sql = 'CREATE TABLE t(a, FOREIGN KEY (x) REFERENCES t)' WHERE name = 't'",
        "UPDATE sqlite_schema SET name = 'u' WHERE name = 't'",
        "INSERT INTO sqlite_schema SELECT * FROM sqlite_schema WHERE name = 't'",
        "UPDATE sqlite_schema SET sql = NULL WHERE name = 't'",
        "UPDATE sqlite_schema SET type = 'view' WHERE name = 't'",
        "UPDATE sqlite_schema SET sql = 'CREATE VIEW v AS' WHERE name = 'v'",
    };
    int refused = 0;
    for (std::size_t i = 0; i < std::size(tampered); ++i) {
        std::string const path =
            makeDatabase(folder.file(std::to_string(i)),
                         "CREATE TABLE t(a, b); CREATE INDEX i ON t(a); CREATE VIEW v AS SELECT 1;"
                         "CREATE TRIGGER r DELETE ON t BEGIN SELECT 1; END; PRAGMA writable_schema=ON;" +
                             std::string(tampered[i]));
        try {
            EXPECT_THAT(kit::verify(*importFile(path)), IsEmpty()) << tampered[i];
        } catch (kit::ToolError const& error) {
            ++refused;
            EXPECT_EQ(std::string(error.what()).find(path + ": "), 0u) << error.what();
            EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos) << error.what();
        }
    }
    EXPECT_GE(refused, 7);
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
