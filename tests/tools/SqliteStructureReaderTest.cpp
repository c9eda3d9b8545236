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
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
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
                    "index \"k\" | main.t | 0 | 0 | <(a)>{}, | comment  | {}"));
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
    std::string const sql = "CREATE TABLE t(a INT); CREATE VIEW a AS SELECT nosuchfunction(a) FROM t;"
                            "CREATE VIEW v AS SELECT a FROM t; CREATE VIEW w AS SELECT a FROM gone";
    EXPECT_THAT(linesOf("column main.", sql),
                ElementsAre("column main.t#0 \"a\" | -.INT<INT> | 0 |  | 0 | comment  | {}",
                            "column main.v#0 \"a\" | -.INT<INT> | 0 |  | 0 | comment  | {}"));
    std::string const unknown = "comment The columns are unknown: SQLite can't tell those of this view.";
    for (char const* name : {"a", "w"}) {
        auto const lines = linesOf(std::string("table \"") + name, sql);
        ASSERT_THAT(lines, testing::SizeIs(1));
        EXPECT_THAT(lines[0], testing::HasSubstr(unknown));
    }
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

/// SQLite tells the keys by pragmas too, though without names: both ways must give the same.
TEST(SqliteStructureReader, KeysAreThoseThatThePragmasTell) {
    TemporaryFolder const folder;
    sqlite::Database file(
        makeDatabase(folder.file("o.sqlite"), contentOf(QOR_SOURCE_DIR "/samples/orchard.sql")));
    auto const structure = sqlite::readStructure(file);
    std::vector<std::string> told;
    sqlite::Query rows(
        file,
        "SELECT t.name, f.\"table\", group_concat(f.\"from\" || '>' || ifnull(f.\"to\", '')), f.on_delete"
        " FROM sqlite_schema AS t JOIN pragma_foreign_key_list(t.name) AS f WHERE t.type = 'table'"
        " GROUP BY t.name, f.id");
    while (rows.next()) {
        told.push_back(std::string(rows.text(0)) + " " + rows.text(1) + " " + rows.text(2) + " " +
                       rows.text(3));
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
