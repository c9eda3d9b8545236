#include "sqlite/SqlWriter.h"

#include "DescribeStructure.h"
#include "EveryRecord.h"
#include "Sqlite.h"
#include "TemporaryFolder.h"
#include "database/ModelBuilder.h"
#include "database/ModelReader.h"
#include "exchange/JsonWriter.h"
#include "qor/Dialects.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/SqliteDialect.h"
#include "sqlite/StructureReader.h"

#include <qor/QORModel.h>

#include <gmock/gmock.h>
#include <sstream>

namespace {

using testing::HasSubstr;

database::Structure structureOf(std::string const& path) {
    sqlite::Database file(path);
    database::Structure structure = sqlite::readStructure(file);
    structure.origin.source = "the same place";
    return structure;
}

std::string sqlOf(database::Structure const& structure) {
    std::ostringstream out;
    qorprogram::dialects().write(structure, sqlite::sqliteDialect(), out);
    return out.str();
}

std::string jsonOf(database::Structure const& structure) {
    std::ostringstream out;
    exchange::writeJson(*database::buildModel(structure), out);
    return out.str();
}

/// Both databases have the file name "shop.sqlite", after which the model is named.
void expectRoundTrip(std::string const& path) {
    database::Structure structure = structureOf(path);
    structure.catalog.name = "shop";
    database::Structure const fromModel = database::readModel(*database::buildModel(structure));
    std::string const sql = sqlOf(fromModel);
    TemporaryFolder const folder;
    database::Structure again;
    ASSERT_NO_THROW(again = structureOf(makeDatabase(folder.file("shop.sqlite"), sql))) << sql;
    again.origin.version = structure.origin.version;
    EXPECT_EQ(describe(again), describe(structure)) << sql;
    EXPECT_EQ(jsonOf(again), jsonOf(structure));
    EXPECT_EQ(sqlOf(database::readModel(*database::buildModel(again))), sql);
}

void expectRoundTripOfSql(std::string const& sql) {
    TemporaryFolder const folder;
    expectRoundTrip(makeDatabase(folder.file("shop.sqlite"), sql));
}

TEST(SqliteSqlWriter, SampleComesBackTheSame) {
    expectRoundTripOfSql(contentOf(QOR_SOURCE_DIR "/samples/orchard.sql"));
}

TEST(SqliteSqlWriter, KnownDatabaseComesBackTheSame) {
    std::string const path = QOR_SOURCE_DIR "/../shared/data/chinook.sqlite";
    if (!std::filesystem::exists(path)) {
        GTEST_SKIP() << "no " << path;
    }
    expectRoundTrip(path);
}

TEST(SqliteSqlWriter, EmptyDatabaseComesBackEmpty) {
    expectRoundTripOfSql("VACUUM");
}

TEST(SqliteSqlWriter, KeysOfAllKindsComeBack) {
    expectRoundTripOfSql(
        "CREATE TABLE a(x INTEGER PRIMARY KEY AUTOINCREMENT, y UNIQUE ON CONFLICT REPLACE);"
        "CREATE TABLE b(x INTEGER CONSTRAINT \"n n\" PRIMARY KEY DESC ON CONFLICT FAIL, UNIQUE (x, x));"
        "CREATE TABLE c(x, y, PRIMARY KEY (x COLLATE NOCASE, y DESC) ON CONFLICT IGNORE, UNIQUE (y, x)) "
        "WITHOUT ROWID;"
        "CREATE TABLE d(x INT PRIMARY KEY, y TEXT, z ANY) STRICT, WITHOUT ROWID; CREATE TABLE e(z ANY) "
        "STRICT;"
        "CREATE TABLE f(p PRIMARY KEY, a REFERENCES f, b REFERENCES gone, c REFERENCES gone(\"a b\") MATCH "
        "FULL,"
        " d REFERENCES g(q) DEFERRABLE INITIALLY DEFERRED, FOREIGN KEY (d, c) REFERENCES c ON DELETE SET "
        "NULL ON UPDATE"
        " SET DEFAULT, FOREIGN KEY (c, d) REFERENCES c(y, x));"
        "CREATE TABLE g(q REFERENCES f(p) ON UPDATE CASCADE ON DELETE RESTRICT)");
}

TEST(SqliteSqlWriter, ColumnsOfAllKindsComeBack) {
    expectRoundTripOfSql(
        "CREATE TABLE t(a TEXT CONSTRAINT d DEFAULT 'it''s' CONSTRAINT n NOT NULL ON CONFLICT IGNORE COLLATE "
        "nocase,"
        " b INT GENERATED ALWAYS AS (a || ')') STORED, c AS (b+1), d DEFAULT (1 + 2), e DEFAULT -1.5e3, f "
        "DEFAULT x'00',"
        " g NULL DEFAULT CURRENT_DATE, h DEFAULT TRUE, i DEFAULT (datetime('now')), j DEFAULT NULL, k "
        "DEFAULT abc,"
        " l DEFAULT \"q\"\"r\", m DEFAULT +7, n DEFAULT (-(1)), o DEFAULT ('a' || 'b'), p UNSIGNED BIG INT,"
        " q DOUBLE PRECISION NOT NULL DEFAULT 0, r DECIMAL ( 10 , 2 ), s \"my type\", u [order], v "
        "VARCHAR(255),"
        " w CHECK (w > 0 -- less\n AND w < 9), x \"a\"\"b\", y NUMERIC(+5, -2), z national character "
        "varying(3))");
}

TEST(SqliteSqlWriter, IndexesViewsAndTriggersComeBack) {
    expectRoundTripOfSql(
        "CREATE TABLE t(a, \"b c\", d); CREATE UNIQUE INDEX \"i i\" ON t(\"b c\" DESC, a COLLATE NOCASE, "
        "lower(d) DESC,"
        " a || 'x'); CREATE INDEX j ON t(d) WHERE d > 'WHERE' AND a IS NOT NULL;"
        "CREATE VIEW v AS SELECT * FROM t; CREATE VIEW \"w w\"(\"x y\", z) AS SELECT a, d FROM v -- end\n;"
        "CREATE VIEW broken AS SELECT nix FROM nobody; CREATE VIEW deep AS WITH q AS (SELECT 1 AS n UNION "
        "SELECT 2)"
        " SELECT n FROM q;"
        "CREATE TRIGGER \"r r\" UPDATE OF a, \"b c\" ON t WHEN NEW.a > 1 BEGIN SELECT ';'; UPDATE t SET d = "
        "1; END;"
        "CREATE TRIGGER s INSTEAD OF DELETE ON v BEGIN SELECT 1; END");
}

TEST(SqliteSqlWriter, NastyNamesComeBack) {
    expectRoundTripOfSql(
        "CREATE TABLE \"a.b/c\"(\"select\" INTEGER PRIMARY KEY, \"q\"\"uote\" TEXT, [in [brackets], "
        "`tick``s`, 'text''s',"
        " \"größe\", \"\" CHECK (\"\" > 0), \"a,b\" UNIQUE, \"(\", \"--\", \"1st\", \"line\nbreak\", "
        "\"SELECT_\","
        " FOREIGN KEY (\"a,b\", \"(\") REFERENCES \"A.B/C\"(\"--\", \"SELECT\"));"
        "CREATE TABLE \"table\"(\"index\" REFERENCES \"order\"(\"by\")); CREATE TABLE \"order\"(\"by\" "
        "UNIQUE);"
        "CREATE TABLE \"\"(a); CREATE TABLE \" \"(a); CREATE TABLE \"x]y\"(a); CREATE TABLE \"樹\"(\"😀\");"
        "CREATE INDEX \"i x\" ON \"a.b/c\"(\"q\"\"uote\", [in [brackets]); CREATE INDEX \"where\" ON "
        "\"table\"(\"index\");"
        "CREATE VIEW \"view\" AS SELECT \"index\" FROM \"table\"");
}

TEST(SqliteSqlWriter, VirtualTablesComeBack) {
    if (!sqlite3_compileoption_used("ENABLE_FTS5")) {
        GTEST_SKIP() << "this SQLite has no FTS5";
    }
    expectRoundTripOfSql(
        "CREATE VIRTUAL TABLE notes USING fts5(title, body, tokenize='porter'); CREATE TABLE t(a)");
}

TEST(SqliteSqlWriter, SettingsOfTheFileComeBack) {
    expectRoundTripOfSql("PRAGMA encoding = 'UTF-16be'; PRAGMA auto_vacuum = FULL; CREATE TABLE t(a); PRAGMA "
                         "user_version = 42; PRAGMA application_id = -3");
}

TEST(SqliteSqlWriter, CommentsInDefaultsAndConditionsComeBack) {
    expectRoundTripOfSql(
        "CREATE TABLE t(a DEFAULT (1 + 2 -- three\n), b DEFAULT (3 /* four */), c DEFAULT ('--' || "
        "'/*' -- end\n || 'x'), d CHECK (d -- less\n > 0 /* than */), e AS (a -- first\n)"
        ", f DEFAULT -- none\n 7 -- seven\n, g DEFAULT /* x */ 'y' /* z */);"
        "CREATE INDEX i ON t(a, -- b\n b) WHERE c -- is\n > 1 -- there\n");
}

/// The order tells the names of the indexes that come with keys, the numbers of foreign keys, and which check
/// fails first.
TEST(SqliteSqlWriter, OrderOfKeysAndChecksComesBack) {
    TemporaryFolder const folder;
    std::string const sql =
        "CREATE TABLE z(c UNIQUE, b INTEGER UNIQUE PRIMARY KEY DESC, a CHECK (a > 3) UNIQUE, CHECK (a > 2), "
        "CHECK (a "
        "> 1), UNIQUE (c, a), UNIQUE (a, c), CONSTRAINT x CHECK (1), CONSTRAINT w CHECK (2));"
        "CREATE TABLE y(b REFERENCES z(c), a REFERENCES z(b), FOREIGN KEY (b, a) REFERENCES z(a, c), FOREIGN "
        "KEY (a) "
        "REFERENCES y, UNIQUE (b), PRIMARY KEY (a))";
    std::string const path = makeDatabase(folder.file("shop.sqlite"), sql);
    expectRoundTrip(path);
    std::string const again = makeDatabase(
        folder.file("again.sqlite"), sqlOf(database::readModel(*database::buildModel(structureOf(path)))));
    for (char const* const query :
         {"SELECT m.name || l.name || i.seqno || i.name FROM sqlite_schema AS m, pragma_index_list(m.name) "
          "AS l,"
          " pragma_index_info(l.name) AS i ORDER BY m.name, l.name, i.seqno",
          "SELECT m.name || f.id || f.seq || f.\"from\" || f.\"table\" FROM sqlite_schema AS m,"
          " pragma_foreign_key_list(m.name) AS f ORDER BY m.name, f.id, f.seq"}) {
        EXPECT_EQ(Sqlite(path).ask(query), Sqlite(again).ask(query));
    }
}

TEST(SqliteSqlWriter, WidestTableComesBack) {
    std::string sql = "CREATE TABLE wide(c0 PRIMARY KEY";
    for (int i = 1; i < 2000; ++i) {
        sql += ", c" + std::to_string(i) + " INT REFERENCES wide";
    }
    expectRoundTripOfSql(sql + ")");
}

// ---- what comes from another system ------------------------------------------------------------------

class ForeignStructure : public testing::Test {
protected:
    ForeignStructure() {
        all.origin.system = "PostgreSQL";
        all.schemas.resize(1);
        all.schemas[0].name = "public";
    }

    int addType(char const* declaration, char const* dataType, int length = 0, int scale = 0) {
        database::Type type;
        type.name = type.declaration = declaration;
        type.dataType = dataType;
        type.length = length;
        type.scale = scale;
        all.types.push_back(type);
        return static_cast<int>(all.types.size()) - 1;
    }

    database::Column& addColumn(char const* name, int type) {
        if (all.tables.empty()) {
            addTable("t", 0);
        }
        all.tables.back().columns.emplace_back();
        all.tables.back().columns.back().name = name;
        all.tables.back().columns.back().type = type;
        return all.tables.back().columns.back();
    }

    void addTable(char const* name, int schema) {
        all.tables.emplace_back();
        all.tables.back().name = name;
        all.tables.back().schema = schema;
        all.tables.back().nativeKind = "TABLE";
    }

    void addCheck(char const* expression) {
        database::Check check;
        check.table = 0;
        check.expression = expression;
        all.checks.push_back(check);
    }

    /// The SQL, once SQLite has taken it.
    std::string sql() {
        std::string const text = sqlOf(all);
        EXPECT_NO_THROW(Sqlite(folder.file("taken.sqlite")).run(text)) << text;
        return text;
    }

    database::Structure all;
    TemporaryFolder folder;
};

TEST_F(ForeignStructure, TypesGoByWhatTheyHold) {
    addColumn("a", addType("integer", "SQL_INTEGER"));
    addColumn("b", addType("character varying(40)", "SQL_VARCHAR", 40));
    addColumn("c", addType("numeric(10,2)", "SQL_NUMERIC", 10, 2));
    addColumn("d", addType("text", "SQL_LONGVARCHAR"));
    addColumn("e", addType("timestamp without time zone", "SQL_TIMESTAMP"));
    addColumn("f", addType("inet", "undefined"));
    std::string const text = sql();
    EXPECT_THAT(text, HasSubstr("(\n    a INTEGER,\n    b VARCHAR(40),\n    c NUMERIC(10,2),\n    d TEXT,\n"
                                "    e TIMESTAMP,\n    f\n);"));
}

TEST_F(ForeignStructure, EnumerationsAndDomainsBecomeConditions) {
    int const grade = addType("grade", "SQL_VARCHAR");
    all.types.back().kind = database::TypeKind::ENUMERATION;
    all.types.back().values = {"good", "it's"};
    int const base = addType("text", "SQL_LONGVARCHAR");
    int const mail = addType("mail", "SQL_LONGVARCHAR");
    all.types.back().kind = database::TypeKind::DOMAIN_TYPE;
    all.types.back().base = base;
    all.types.back().notNull = true;
    all.types.back().defaultValue = "'a@b'::text";
    addColumn("g", grade);
    addColumn("m", mail);
    database::Check check;
    check.type = mail;
    check.expression = "(VALUE ~~ '%@%'::text)";
    all.checks.push_back(check);
    check.expression = "(length((VALUE)::text) > 2)";
    all.checks.push_back(check);
    std::string const text = sql();
    EXPECT_THAT(
        text,
        HasSubstr("    g TEXT,\n    m TEXT NOT NULL DEFAULT 'a@b',\n    CHECK (g IN ('good', 'it''s')),\n"
                  "    CHECK ((length((m)) > 2))\n"));
    EXPECT_THAT(text, HasSubstr("-- left out: check of table t: SQLite isn't known to have ~\n"
                                "-- (VALUE ~~ '%@%'::text)\n"));
}

TEST_F(ForeignStructure, ExpressionsAreTranslatedOrLeftOut) {
    int const integer = addType("integer", "SQL_INTEGER");
    addColumn("id", integer).defaultValue = "nextval('t_id_seq'::regclass)";
    addColumn("at", integer).defaultValue = "now()";
    addColumn("s", integer).defaultValue = "'new'::character varying";
    addCheck("((s)::text = ANY ((ARRAY['new'::character varying, 'old'::character varying])::text[]))");
    addCheck("(s ~ '^a'::text)");
    std::string const text = sql();
    EXPECT_THAT(
        text,
        HasSubstr("    id INTEGER,\n    at INTEGER DEFAULT CURRENT_TIMESTAMP,\n    s INTEGER DEFAULT 'new',\n"
                  "    CHECK (((s) IN ('new', 'old')))\n"));
    EXPECT_THAT(text, HasSubstr("-- left out: default of column t.id: SQLite isn't known to have nextval\n"
                                "-- nextval('t_id_seq'::regclass)\n"));
    EXPECT_THAT(text, HasSubstr("-- left out: check of table t: SQLite isn't known to have ~\n"
                                "-- (s ~ '^a'::text)\n"));
}

TEST_F(ForeignStructure, TablesOfSeveralSchemasGetNamesOfTheirOwn) {
    all.schemas.resize(2);
    all.schemas[1].name = "stock";
    int const integer = addType("integer", "SQL_INTEGER");
    addTable("item", 0);
    addColumn("id", integer);
    addTable("ITEM", 1);
    addColumn("no", integer);
    addTable("v", 1);
    addColumn("no", integer);
    all.tables.back().kind = database::TableKind::VIEW;
    all.tables.back().statement =
        " SELECT \"ITEM\".no FROM stock.\"ITEM\", public.item WHERE \"ITEM\".no = item.id;";
    std::string const text = sql();
    EXPECT_THAT(text,
                HasSubstr("-- left out: name of table stock.ITEM: SQLite allows one table of this name, so "
                          "it becomes stock_ITEM\n"));
    EXPECT_THAT(text, HasSubstr("CREATE TABLE stock_ITEM (\n    \"no\" INTEGER\n"));
    EXPECT_THAT(text, HasSubstr("-- left out: view v: it names a table that has another name in SQLite\n"));
}

TEST_F(ForeignStructure, ViewsGoByTheirMeaning) {
    int const integer = addType("integer", "SQL_INTEGER");
    addTable("item", 0);
    addColumn("id", integer);
    addTable("v", 0);
    addColumn("n", integer);
    all.tables.back().kind = database::TableKind::VIEW;
    all.tables.back().statement = "SELECT count(*) AS count FROM public.item WHERE item.id::bigint > 1;";
    addTable("w", 0);
    all.tables.back().kind = database::TableKind::VIEW;
    all.tables.back().statement = "SELECT generate_series(1, 3)";
    std::string const text = sql();
    EXPECT_THAT(text,
                HasSubstr("CREATE VIEW v (n) AS SELECT count(*) AS count FROM item WHERE item.id > 1;\n"));
    EXPECT_THAT(text, HasSubstr("-- left out: view w: SQLite isn't known to have generate_series\n-- "
                                "SELECT generate_series(1, 3)\n"));
}

TEST_F(ForeignStructure, WhatSqliteHasNotIsToldInComments) {
    all = everyRecord();
    std::string const text = sql();
    for (char const* told :
         {"-- left out: comment on table customer: SQLite has no comments\n-- those who buy\n",
          "-- left out: comment on column customer.name: SQLite has no comments\n-- as on the invoice\n",
          "-- left out: comment on index by_name: SQLite has no comments\n-- quick\n",
          "-- left out: storage extended of column customer.name: SQLite doesn't have it\n",
          "-- left out: fillfactor 70 of table customer: SQLite doesn't have it\n",
          "-- left out: that table special inherits from stock_customer: SQLite has no inheritance\n",
          "-- left out: schema stock: ", "-- left out: trigger b of customer: ", "-- left out: function f: ",
          "-- left out: procedure g: ", "-- left out: sequence numbers: ", "-- left out: type span: ",
          "-- left out: index kept_index of kept: ", "-- left out: nulls FIRST of index by_name: "}) {
        EXPECT_THAT(text, HasSubstr(told));
    }
    EXPECT_THAT(
        text,
        HasSubstr("CREATE UNIQUE INDEX by_name ON customer (mark DESC, lower(name), id) WHERE id > 5;\n"));
    EXPECT_THAT(text,
                HasSubstr("REFERENCES stock_customer(b, a) MATCH FULL ON DELETE CASCADE ON UPDATE SET NULL"
                          " DEFERRABLE INITIALLY IMMEDIATE"));
    EXPECT_THAT(text, HasSubstr("FOREIGN KEY (x) REFERENCES nowhere(id)"));
    EXPECT_THAT(text, HasSubstr("shout VARCHAR(40) GENERATED ALWAYS AS (upper(name)) STORED"));
}

TEST_F(ForeignStructure, WhatSqliteRefusesIsLeftOutWithItsReason) {
    int const integer = addType("integer", "SQL_INTEGER");
    addColumn("a", integer).defaultValue = "b";
    addColumn("b", integer).defaultValue = "7";
    addCheck("a AT TIME ZONE b > 1");
    addCheck("b > 1");
    addTable("v", 0);
    addColumn("n", integer);
    all.tables.back().kind = database::TableKind::VIEW;
    all.tables.back().statement = "SELECT DISTINCT ON (a) a FROM public.t";
    addTable("w", 0);
    addColumn("n", integer);
    all.tables.back().kind = database::TableKind::VIEW;
    all.tables.back().statement = "SELECT n FROM public.x";
    addTable("x", 0);
    addColumn("n", integer);
    all.tables.back().kind = database::TableKind::VIEW;
    all.tables.back().statement = "SELECT a FROM public.t";
    std::string const text = sql();
    EXPECT_THAT(text, HasSubstr("-- left out: check of table t: SQLite says: near \"AT\": syntax error\n"));
    EXPECT_THAT(text, HasSubstr("    b INTEGER DEFAULT 7,\n    CHECK (b > 1)\n);"));
    EXPECT_THAT(text, HasSubstr("-- left out: view v: SQLite says: near \"ON\": syntax error\n"));
    EXPECT_LT(text.find("CREATE VIEW x"), text.find("CREATE VIEW w"));
}

TEST_F(ForeignStructure, OmissionsAreReturnedAsTheyAreToldInTheSql) {
    all = everyRecord();
    std::ostringstream out;
    database::Omissions const omissions = qorprogram::dialects().write(all, sqlite::sqliteDialect(), out);
    ASSERT_GT(omissions.size(), 10u);
    std::size_t last = 0;
    for (database::Omission const& omission : omissions) {
        std::size_t const found = out.str().find("-- " + database::textOf(omission) + "\n", last);
        ASSERT_NE(found, std::string::npos) << database::textOf(omission);
        last = found;
    }
}

TEST_F(ForeignStructure, LineBreaksStayInTheirComment) {
    addColumn("a", -1).comment = "one\nDROP TABLE t;";
    EXPECT_THAT(sql(), HasSubstr("SQLite has no comments\n-- one\n-- DROP TABLE t;\n"));
}

} // namespace
