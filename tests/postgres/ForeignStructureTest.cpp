#include "postgres/ForeignStructure.h"

#include "../tools/Sqlite.h"
#include "PostgresServer.h"
#include "TemporaryFolder.h"
#include "postgres/Connection.h"
#include "postgres/PostgresDialect.h"
#include "postgres/StructureReader.h"
#include "qor/Dialects.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <random>
#include <sstream>

namespace {

using database::Omission;
using database::Omissions;
using database::Structure;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Statements = std::vector<std::string>;

PostgresServer& server() {
    return PostgresServer::instance();
}

/// The structure of a database that is made by those of the statements which SQLite takes.
Structure structureOf(Statements const& statements) {
    TemporaryFolder const folder;
    {
        Sqlite file(folder.file("shop.sqlite"));
        for (std::string const& statement : statements) {
            file.tries(statement);
        }
    }
    sqlite::Database file(folder.file("shop.sqlite"));
    return sqlite::readStructure(file);
}

/// A structure in PostgreSQL, and what was left out.
struct Taken {
    Structure structure;
    Omissions omissions;
    std::string sql;
};

Taken take(Structure const& structure) {
    Taken taken;
    std::ostringstream out;
    taken.omissions = qorprogram::dialects().write(structure, postgres::postgresDialect(), out);
    taken.sql = out.str();
    std::string const name = server().makeDatabase();
    server().run(name, taken.sql);
    postgres::Connection connection(server().url(name));
    taken.structure = postgres::readStructure(connection);
    return taken;
}

std::vector<std::string> linesOf(Omissions const& omissions) {
    std::vector<std::string> lines;
    for (Omission const& omission : omissions) {
        lines.push_back(omission.object + ": " + omission.reason);
    }
    return lines;
}

/// How many things of a kind there are. What is left out counts, and each is told in the SQL.
std::ptrdiff_t leftOut(Taken const& taken, std::string const& kind) {
    return std::count_if(taken.omissions.begin(), taken.omissions.end(), [&](Omission const& omission) {
        EXPECT_THAT(taken.sql, HasSubstr("-- " + database::textOf(omission) + "\n"));
        return omission.object.compare(0, kind.size(), kind) == 0;
    });
}

std::ptrdiff_t tablesIn(Structure const& structure, database::TableKind kind) {
    return std::count_if(structure.tables.begin(), structure.tables.end(),
                         [&](database::Table const& table) { return table.kind == kind; });
}

/// Whether a table is one that PostgreSQL can have, with all that belongs to it.
bool isOrdinary(Structure const& structure, int table) {
    std::string const& kind = structure.tables[static_cast<std::size_t>(table)].nativeKind;
    return kind.find("VIRTUAL") == std::string::npos && kind.find("SHADOW") == std::string::npos;
}

std::ptrdiff_t keysIn(Structure const& structure, database::KeyKind kind) {
    return std::count_if(structure.keys.begin(), structure.keys.end(), [&](database::Key const& key) {
        return key.kind == kind && isOrdinary(structure, key.table);
    });
}

/// Of the tables, since views have none; a default of NULL is none.
std::ptrdiff_t columnsIn(Structure const& structure, bool generated) {
    std::ptrdiff_t count = 0;
    for (database::Table const& table : structure.tables) {
        for (database::Column const& column : table.columns) {
            bool const has = generated ? column.generated
                                       : !column.generated && !column.defaultValue.empty() &&
                                             column.defaultValue != "NULL";
            count += table.kind == database::TableKind::TABLE && has;
        }
    }
    return count;
}

/// Everything is there again or told to be left out.
void expectAccounted(Structure const& structure, Taken const& taken) {
    using database::KeyKind;
    using database::TableKind;
    Structure const& made = taken.structure;
    EXPECT_EQ(tablesIn(made, TableKind::TABLE) + leftOut(taken, "table "),
              tablesIn(structure, TableKind::TABLE));
    EXPECT_EQ(tablesIn(made, TableKind::VIEW) + leftOut(taken, "view "),
              tablesIn(structure, TableKind::VIEW));
    EXPECT_EQ(keysIn(made, KeyKind::PRIMARY) + leftOut(taken, "primary key "),
              keysIn(structure, KeyKind::PRIMARY));
    EXPECT_EQ(keysIn(made, KeyKind::UNIQUE) + leftOut(taken, "unique key "),
              keysIn(structure, KeyKind::UNIQUE));
    EXPECT_EQ(keysIn(made, KeyKind::FOREIGN) + leftOut(taken, "foreign key "),
              keysIn(structure, KeyKind::FOREIGN));
    EXPECT_EQ(static_cast<std::ptrdiff_t>(made.checks.size()) + leftOut(taken, "check "),
              static_cast<std::ptrdiff_t>(structure.checks.size()));
    EXPECT_EQ(static_cast<std::ptrdiff_t>(made.indexes.size()) + leftOut(taken, "index "),
              static_cast<std::ptrdiff_t>(structure.indexes.size()));
    EXPECT_EQ(columnsIn(made, false) + leftOut(taken, "default of column "), columnsIn(structure, false));
    EXPECT_EQ(columnsIn(made, true) + leftOut(taken, "that column "), columnsIn(structure, true));
    EXPECT_EQ(leftOut(taken, "trigger "), static_cast<std::ptrdiff_t>(structure.triggers.size()));
}

// ---- databases made by hand --------------------------------------------------------------------------

TEST(ForeignStructure, NamesInBracketsAreNamesEverywhere) {
    Structure const structure =
        structureOf({"CREATE TABLE [order list](id INTEGER PRIMARY KEY, [unit price] REAL DEFAULT 0, `full "
                     "name` TEXT DEFAULT "
                     "[no one], CHECK ([unit price] >= 0 AND \"full name\" <> \"nobody\"))",
                     "CREATE INDEX [by name] ON [order list](lower([full name])) WHERE [unit price] > 1",
                     "CREATE VIEW [all orders] AS SELECT [o].[id], [unit price] * 2 AS [double price] FROM "
                     "[order list] AS [o] "
                     "ORDER BY [double price] DESC"});
    Taken const taken = take(structure);
    EXPECT_THAT(taken.omissions, IsEmpty()) << taken.sql;
    expectAccounted(structure, taken);
}

TEST(ForeignStructure, ColumnsThatReferToOthersTakeTheirTypes) {
    Structure const structure = structureOf({"CREATE TABLE a(id TEXT PRIMARY KEY, n NUMERIC UNIQUE, u)",
                                             "CREATE TABLE b(a INTEGER REFERENCES a DEFAULT 5, "
                                             "n VARCHAR(9) REFERENCES a(n))",
                                             "CREATE TABLE c(a REAL UNIQUE REFERENCES a, CHECK (a > 1))",
                                             "CREATE TABLE d(a BLOB REFERENCES c(a), u REFERENCES a(u), "
                                             "g REFERENCES gone)"});
    Taken const taken = take(structure);
    EXPECT_THAT(
        linesOf(taken.omissions),
        UnorderedElementsAre("type of column b.a: it is text, like what the column refers to",
                             "type of column b.n: it is numeric, like what the column refers to",
                             "type of column c.a: it is text, like what the column refers to",
                             "type of column d.a: it is text, like what the column refers to",
                             "check of table c: it compares text with an integer, which PostgreSQL doesn't",
                             "foreign key of table d: the columns that it refers to aren't unique",
                             "foreign key of table d: the table that it refers to doesn't exist"));
    EXPECT_THAT(taken.sql, HasSubstr("a text DEFAULT '5'"));
    expectAccounted(structure, taken);
}

TEST(ForeignStructure, RowsNumberedBySqliteAreNumberedAgain) {
    Taken const taken = take(structureOf(
        {"CREATE TABLE a(id INTEGER PRIMARY KEY, b)", "CREATE TABLE b(id INTEGER PRIMARY KEY AUTOINCREMENT)",
         "CREATE TABLE c(id INT PRIMARY KEY)", "CREATE TABLE d(id INTEGER PRIMARY KEY) WITHOUT ROWID",
         "CREATE TABLE a_id_seq(x)", "CREATE VIEW v AS SELECT rowid, b FROM a"}));
    auto const identityOf = [&](std::string const& table) {
        return server().ask("postgres", "SELECT 1") +
               (taken.sql.find("CREATE TABLE main." + table +
                               " (\n    id integer GENERATED "
                               "BY DEFAULT AS IDENTITY") != std::string::npos
                    ? "numbered"
                    : "");
    };
    EXPECT_EQ(identityOf("a"), "1\nnumbered");
    EXPECT_EQ(identityOf("b"), "1\nnumbered");
    EXPECT_EQ(identityOf("c"), "1\n");
    EXPECT_EQ(identityOf("d"), "1\n");
    EXPECT_THAT(taken.sql, HasSubstr("SELECT a.id AS id, a.b AS b FROM main.a AS a"));
}

TEST(ForeignStructure, WhatHasNoEqualIsToldStatementByStatement) {
    Structure const structure = structureOf(
        {"CREATE TABLE t(a INTEGER, b TEXT COLLATE NOCASE, c DATE DEFAULT (date('now', '-1 day')), d AS "
         "(json_extract(b, '$.x')), e DEFAULT (printf('%d', 1)), CHECK (b GLOB 'a*' AND typeof(a) = "
         "'integer'))",
         "CREATE INDEX i ON t(b COLLATE NOCASE, julianday(c))",
         "CREATE VIEW v AS SELECT last_insert_rowid() AS n", "CREATE VIEW w AS SELECT a FROM t WHERE a = b",
         "CREATE VIEW x AS SELECT a, b FROM t GROUP BY a", "CREATE VIEW y AS SELECT n FROM v",
         "CREATE VIRTUAL TABLE f USING fts5(b)",
         "CREATE VIEW z AS WITH RECURSIVE q(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM q) SELECT n FROM q",
         "CREATE TRIGGER r AFTER INSERT ON t BEGIN SELECT 1; END", "PRAGMA user_version = 3"});
    Taken const taken = take(structure);
    for (char const* const line :
         {"collation NOCASE of column t.b: PostgreSQL doesn't have it",
          "default of column t.c: a date function has modifiers",
          "that column t.d is computed: the function json_extract has no known equivalent in PostgreSQL",
          "default of column t.e: the function printf has no known equivalent in PostgreSQL",
          "check of table t: the function typeof has no known equivalent in PostgreSQL",
          "index i: the function julianday has no known equivalent in PostgreSQL",
          "view v: the function last_insert_rowid has no known equivalent in PostgreSQL",
          "view w: it compares an integer with text, which PostgreSQL doesn't",
          "view x: it isn't grouped by the column b", "view y: v is left out", "view z: it is recursive",
          "table f: PostgreSQL has no virtual tables",
          "trigger r of t: it is in the language of another system",
          "user_version 3 of the database: PostgreSQL doesn't have it"}) {
        EXPECT_THAT(linesOf(taken.omissions), Contains(line));
    }
    expectAccounted(structure, taken);
}

/// A column as a text that is the same in both systems if the values are.
std::string inSqlite(std::string const& column) {
    return "CASE typeof(" + column + ") WHEN 'real' THEN printf('%g', " + column +
           ") WHEN 'null' THEN '-' WHEN 'blob' THEN hex(" + column + ") ELSE " + column + " END";
}

std::string inPostgres(std::string const& column, std::string const& type) {
    std::string const text = type == "bytea\n"     ? "upper(encode(" + column + ", 'hex'))"
                             : type == "numeric\n" ? "trim_scale(" + column + ")::text"
                             : type == "boolean\n" ? column + "::integer::text"
                                                   : column + "::text";
    return "coalesce(" + text + ", '-')";
}

/// The values of all columns of a view, sorted, in SQLite and in PostgreSQL.
std::pair<std::vector<std::string>, std::vector<std::string>> valuesOf(std::string const& view, Sqlite& file,
                                                                       std::string const& name) {
    std::size_t const count = file.ask("SELECT name FROM pragma_table_info('" + view + "')").size();
    std::string names;
    for (std::size_t i = 0; i < count; ++i) {
        names += (i == 0 ? "c" : ", c") + std::to_string(i);
    }
    std::string const with = "WITH q(" + names + ") AS (SELECT * FROM main." + view + ") SELECT ";
    std::vector<std::string> ours;
    std::vector<std::string> theirs;
    for (std::size_t i = 0; i < count; ++i) {
        std::string const column = "c" + std::to_string(i);
        auto const values = file.ask(with + inSqlite(column) + " FROM q");
        ours.insert(ours.end(), values.begin(), values.end());
        std::string const type = server().ask(name, with + "pg_typeof(" + column + ") FROM q LIMIT 1");
        std::istringstream lines(server().ask(name, with + inPostgres(column, type) + " FROM q"));
        for (std::string line; std::getline(lines, line);) {
            theirs.push_back(line);
        }
    }
    std::sort(ours.begin(), ours.end());
    std::sort(theirs.begin(), theirs.end());
    return {ours, theirs};
}

/// Views of the tables p and s.
Statements const selects = {
    "SELECT id, name || '-' || id, coalesce(name, 'none'), ifnull(price, 0) FROM p",
    "SELECT id FROM p WHERE on_sale AND price",
    "SELECT id, CASE WHEN price > 2 THEN 'dear' WHEN price IS NULL THEN 'free' ELSE 'cheap' END AS c "
    "FROM p",
    "SELECT id FROM p WHERE name LIKE 'A%' OR name LIKE '50\\%' ESCAPE '\\'",
    "SELECT id FROM p WHERE name GLOB '[a-z]*' OR name GLOB '?0%'",
    "SELECT id, strftime('%Y/%m', since), date(since) FROM p WHERE since >= '2024-01-01'",
    "SELECT p.id, total(n), count(*), count(n), max(n) FROM p LEFT JOIN s ON s.p = p.id GROUP BY p.id",
    "SELECT p.id, p.name FROM p, s WHERE p.id = s.p AND n IN (SELECT 7 UNION SELECT 2)",
    "SELECT id, n / 2, n % 3, 7 / n FROM p JOIN s ON p.id = s.p",
    "SELECT id, substr(name, 2, 3), length(name), upper(name), replace(name, 'p', 'q'), instr(name, 'p') "
    "FROM p",
    "SELECT id FROM p WHERE name IS NOT 'pear' AND NOT (price IS 10)",
    "SELECT id, iif(on_sale, 'y', 'n'), nullif(on_sale, 0), abs(price), trim(name, 'Ar') FROM p",
    "SELECT id FROM p ORDER BY price DESC LIMIT 2 OFFSET 1",
    "SELECT id FROM p ORDER BY price LIMIT 1, 2",
    "SELECT row_number() OVER (ORDER BY id DESC), id FROM p",
    "WITH big(i) AS (SELECT id FROM p WHERE price > 1) SELECT i, (SELECT count(*) FROM s WHERE s.p = i) "
    "FROM big",
    "SELECT DISTINCT on_sale FROM p UNION ALL SELECT n FROM s WHERE n > 2",
    "SELECT on_sale, group_concat(id), sum(id > 1) FROM p GROUP BY 1 HAVING count(*) > 1",
    "SELECT id, x'4142', \"plain text\" FROM p WHERE id BETWEEN 2 AND 3 AND 1 <> 2",
    "SELECT * FROM s NATURAL JOIN (SELECT id AS p FROM p)",
    "SELECT id & 1, id | 8, id << 2, ~id, -id, +id FROM p"};

/// What is written of a view yields the same rows in both systems.
TEST(ForeignStructure, ViewsYieldTheSameRows) {
    Statements const rows = {
        "INSERT INTO p VALUES (1, 'Apple', 2.5, 1, '2023-05-01'), (2, 'pear', NULL, 0, NULL), (3, "
        "'50%', 10, 1, '2024-12-31'), (4, NULL, -1.5, 0, '2024-02-29')",
        "INSERT INTO s VALUES (1, 7), (1, 0), (3, 2), (9, 4)"};
    Statements statements = {
        "CREATE TABLE p(id INTEGER PRIMARY KEY, name TEXT, price DECIMAL(8,2), on_sale INTEGER, "
        "since DATE)",
        "CREATE TABLE s(p INTEGER, n INTEGER)"};
    for (std::size_t i = 0; i < selects.size(); ++i) {
        statements.push_back("CREATE VIEW v" + std::to_string(i) + " AS " + selects[i]);
    }
    std::ostringstream out;
    EXPECT_THAT(
        linesOf(qorprogram::dialects().write(structureOf(statements), postgres::postgresDialect(), out)),
        IsEmpty());
    std::string const name = server().makeDatabase(out.str());
    Sqlite file(":memory:");
    for (std::string const& statement : statements) {
        file.run(statement);
    }
    for (std::string const& statement : rows) {
        file.run(statement);
        server().run(name, "SET search_path = main; " + statement);
    }
    for (std::size_t i = 0; i < selects.size(); ++i) {
        auto const [ours, theirs] = valuesOf("v" + std::to_string(i), file, name);
        EXPECT_EQ(ours, theirs) << selects[i];
    }
}

/// As many as a stack has no room for.
TEST(ForeignStructure, DepthEndsNothing) {
    Structure structure = structureOf({"CREATE TABLE t(a INTEGER)"});
    auto const addView = [&](std::string const& name, std::string const& statement) {
        database::Table view;
        view.name = name;
        view.kind = database::TableKind::VIEW;
        view.schema = 0;
        view.columns.resize(1);
        view.columns[0].name = "a";
        view.statement = statement;
        structure.tables.push_back(view);
    };
    int const count = 20000;
    for (int i = count; i > 0; --i) { // the first one needs all others
        addView("v" + std::to_string(i), "SELECT a FROM " + (i == 1 ? "t" : "v" + std::to_string(i - 1)));
    }
    addView("p", "SELECT " + std::string(100000, '(') + "a" + std::string(100000, ')') + " FROM t");
    std::string nots;
    for (int i = 0; i < 100000; ++i) {
        nots += "NOT ";
    }
    addView("n", "SELECT " + nots + "a FROM t");
    addView("m", "SELECT " + std::string(100000, '~') + "a FROM t");
    addView("c", "SELECT a FROM c");
    postgres::ForeignStructure const foreign = postgres::translateStructure(structure, {});
    EXPECT_EQ(foreign.structure.tables.size(), static_cast<std::size_t>(count) + 1);
    EXPECT_THAT(linesOf(foreign.ofObjects),
                UnorderedElementsAre("view p: it is nested too deeply", "view n: it is nested too deeply",
                                     "view m: it is nested too deeply", "view c: c is left out"));
}

// ---- databases made at random ------------------------------------------------------------------------

Statements const literals = {"0",
                             "1",
                             "-5",
                             "3.25",
                             "1e3",
                             "0x1F",
                             "99999999999",
                             "9999999999999999999",
                             "'abc'",
                             "'it''s'",
                             "''",
                             "NULL",
                             "TRUE",
                             "'2020-02-29'",
                             "'2021-02-29'",
                             "'12:30'",
                             "'5'",
                             "x'00ff'",
                             "CURRENT_DATE",
                             "CURRENT_TIMESTAMP",
                             "\"some text\"",
                             "'a\\b'",
                             "'2020-01-01 10:00:00'",
                             "'now'",
                             "'much longer than ten'",
                             "-2.50",
                             "datetime('now')"};

Statements const types = {"INTEGER",
                          "INT",
                          "BIGINT",
                          "SMALLINT",
                          "REAL",
                          "DOUBLE",
                          "DECIMAL(8,2)",
                          "NUMERIC",
                          "TEXT",
                          "VARCHAR(10)",
                          "CHAR(3)",
                          "BLOB",
                          "BOOLEAN",
                          "DATE",
                          "DATETIME",
                          "TIME",
                          "",
                          "JSON",
                          "UUID",
                          "DECIMAL(5,9)",
                          "MONEY",
                          "\"odd type\"",
                          "VARCHAR(99999999)",
                          "DECIMAL(2000,3)",
                          "TIMESTAMP WITH TIME ZONE"};

/// Expressions of the operands a and b.
Statements const forms = {"a > 0",
                          "a IS NULL",
                          "length(a) > 2",
                          "a LIKE 'x%'",
                          "a NOT LIKE b",
                          "a = a",
                          "a = b",
                          "a <> b",
                          "a + 1",
                          "a * b",
                          "a || '-' || b",
                          "coalesce(a, b)",
                          "ifnull(a, 0)",
                          "CASE WHEN a > 1 THEN 'a' ELSE b END",
                          "CASE a WHEN b THEN 1 END",
                          "lower(a)",
                          "substr(a, 1, 2)",
                          "substr(a, -1)",
                          "strftime('%Y-%m', a)",
                          "date(a)",
                          "a > '2020-01-01'",
                          "a IN ('a', 'b')",
                          "a NOT IN (1, 2, b)",
                          "a BETWEEN 1 AND b",
                          "round(a, 2)",
                          "NOT a",
                          "a AND b",
                          "a OR b",
                          "CAST(a AS TEXT)",
                          "CAST(a AS INTEGER)",
                          "CAST(a AS DATE)",
                          "a GLOB 'x*'",
                          "a GLOB '[^b]?.'",
                          "abs(a)",
                          "a / b",
                          "a % 2",
                          "iif(a, 1, b)",
                          "nullif(a, b)",
                          "datetime(a)",
                          "a < CURRENT_DATE",
                          "a <= datetime('now')",
                          "a IS NOT b",
                          "max(a, b)",
                          "-a",
                          "(a > 1) + 1",
                          "hex(a)",
                          "a & b",
                          "a << 2",
                          "~a",
                          "a == b",
                          "a COLLATE NOCASE",
                          "a IS DISTINCT FROM b",
                          "json_extract(a, '$.x')",
                          "a -> '$.x'",
                          "printf('%s', a)",
                          "typeof(a)",
                          "trim(a, b)",
                          "replace(a, 'x', b)",
                          "instr(a, 'x')",
                          "a IS TRUE",
                          "a NOTNULL",
                          "unicode(a)",
                          "likely(a)",
                          "(a)",
                          "a COLLATE BINARY = b"};

/// Statements of SQLite that often make sense and always are plausible.
class Chance {
public:
    explicit Chance(unsigned seed) : random(seed) {}

    Statements database() {
        int const count = 1 + below(4);
        for (int i = 0; i < count; ++i) {
            addTable();
        }
        for (int i = below(5); i > 0; --i) {
            addIndex();
        }
        for (int i = 1 + below(6); i > 0; --i) {
            addView();
        }
        return std::move(statements);
    }

private:
    struct Made {
        std::string name;
        std::vector<std::string> columns;
    };

    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    bool oneIn(int limit) { return below(limit) == 0; }
    std::string const& of(std::vector<std::string> const& texts) {
        return texts[static_cast<std::size_t>(below(static_cast<int>(texts.size())))];
    }

    std::string quoted(std::string const& name) {
        switch (below(3)) {
        case 0:
            return "[" + name + "]";
        case 1:
            return "`" + name + "`";
        default:
            return "\"" + name + "\"";
        }
    }

    std::string literal() { return of(literals); }

    std::string operand(std::vector<std::string> const& columns) {
        return columns.empty() || oneIn(4) ? literal() : of(columns);
    }

    /// `a` and `b` in it become expressions.
    std::string expression(std::vector<std::string> const& columns, int depth) {
        if (depth == 0 || oneIn(5)) {
            return operand(columns);
        }
        std::string result;
        std::string const& form = of(forms);
        for (std::size_t i = 0; i < form.size(); ++i) {
            bool const isAlone =
                (i == 0 || !std::isalnum(static_cast<unsigned char>(form[i - 1]))) &&
                form[i - (i > 0)] != '\'' && form[i - (i > 0)] != '[' && form[i - (i > 0)] != '^' &&
                (i + 1 == form.size() || !std::isalnum(static_cast<unsigned char>(form[i + 1])));
            bool const isPlace =
                isAlone && (form[i] == 'a' || form[i] == 'b') && (i == 0 || form[i - 1] != '\'');
            result += isPlace ? expression(columns, depth - 1) : std::string(1, form[i]);
        }
        return result;
    }

    std::string column(std::string const& name, std::vector<std::string> const& all, bool& hasKey) {
        std::string text = name + " " + of(types);
        if (!hasKey && oneIn(4)) {
            text = name + (oneIn(2) ? " INTEGER PRIMARY KEY" : " TEXT PRIMARY KEY");
            hasKey = true;
        }
        text += oneIn(4) ? " NOT NULL" : "";
        text += oneIn(9) ? " UNIQUE" : "";
        text += oneIn(9) ? " COLLATE " + of({"NOCASE", "RTRIM", "BINARY"}) : "";
        if (oneIn(3)) {
            text += " DEFAULT " + (oneIn(2) ? literal() : "(" + expression({}, 2) + " -- so\n)");
        } else if (oneIn(7)) {
            text += " AS (" + expression(all, 2) + ")" + (oneIn(2) ? " STORED" : "");
        }
        text += oneIn(4) ? " CHECK (" + expression(all, 3) + ")" : "";
        if (!tables.empty() && oneIn(5)) {
            Made const& other = tables[static_cast<std::size_t>(below(static_cast<int>(tables.size())))];
            text += " REFERENCES " + other.name + (oneIn(2) ? "" : "(" + of(other.columns) + ")") +
                    of({"", " ON DELETE CASCADE", " ON UPDATE SET NULL", " MATCH FULL",
                        " DEFERRABLE INITIALLY DEFERRED"});
        }
        return text;
    }

    void addTable() {
        std::vector<std::string> names = {"a",
                                          "b",
                                          "id",
                                          "name",
                                          "order",
                                          "select",
                                          "two words",
                                          "größe",
                                          "xmin",
                                          "amount",
                                          std::string(70, 'k')};
        std::shuffle(names.begin(), names.end(), random);
        names.resize(1 + static_cast<std::size_t>(below(6)));
        Made made{
            quoted(of({"t", "T_key", "order", "x y", "t_id_seq", "Übel"}) + std::to_string(tables.size())),
            {}};
        for (std::string const& name : names) {
            made.columns.push_back(quoted(name));
        }
        std::string text;
        bool hasKey = false;
        for (std::string const& name : made.columns) {
            text += (text.empty() ? "" : ", ") + column(name, made.columns, hasKey);
        }
        text += oneIn(3) ? ", CONSTRAINT t_key UNIQUE (" + of(made.columns) + ")" : "";
        text += !hasKey && oneIn(2) ? ", CONSTRAINT pk PRIMARY KEY (" + of(made.columns) + ")" : "";
        text += oneIn(3) ? ", CONSTRAINT ck CHECK (" + expression(made.columns, 3) + ")" : "";
        statements.push_back("CREATE TABLE " + made.name + " (" + text + ")");
        tables.push_back(made);
    }

    Made const& someTable() {
        return tables[static_cast<std::size_t>(below(static_cast<int>(tables.size())))];
    }

    void addIndex() {
        Made const& table = someTable();
        statements.push_back(std::string("CREATE ") + (oneIn(3) ? "UNIQUE " : "") + "INDEX i" +
                             std::to_string(statements.size()) + " ON " + table.name + "(" +
                             (oneIn(2) ? of(table.columns) : expression(table.columns, 2)) +
                             of({"", " DESC", " COLLATE NOCASE"}) + ")" +
                             (oneIn(2) ? "" : " WHERE " + expression(table.columns, 2)));
    }

    std::string select(std::size_t count) {
        Made const& first = someTable();
        std::vector<std::string> columns = first.columns;
        std::string from = first.name + " AS x";
        if (oneIn(3)) {
            Made const& second = someTable();
            from += of({", ", " JOIN ", " LEFT JOIN ", " CROSS JOIN "}) + second.name + " y";
            columns.clear();
            for (std::string const& name : first.columns) {
                columns.push_back("x." + name);
            }
            from += from.find(" JOIN ") != std::string::npos && from.find("CROSS") == std::string::npos
                        ? " ON " + of(columns) + " = y." + of(second.columns)
                        : "";
        }
        bool const isGrouped = oneIn(3);
        std::string const group = of(columns);
        std::string items;
        for (std::size_t i = 0; i < count; ++i) {
            std::string const of1 = of(columns);
            std::string const item =
                !isGrouped ? expression(columns, 2)
                : oneIn(3) ? group
                           : of({"count(*)", "sum(" + of1 + ")", "max(" + of1 + ")", "avg(" + of1 + ")",
                                 "total(" + of1 + ")", "group_concat(" + of1 + ")",
                                 "count(DISTINCT " + of1 + ")", of1});
            items += (i == 0 ? "" : ", ") + item + " AS k" + std::to_string(i);
        }
        return std::string("SELECT ") + (oneIn(6) ? "DISTINCT " : "") + items + " FROM " + from +
               (oneIn(2) ? " WHERE " + expression(columns, 2) : "") + (isGrouped ? " GROUP BY " + group : "");
    }

    void addView() {
        std::size_t const count = 1 + static_cast<std::size_t>(below(3));
        std::string const name = "v" + std::to_string(statements.size());
        std::string text = oneIn(8) ? "SELECT * FROM " + someTable().name : select(count);
        text += oneIn(8) ? of({" UNION ", " UNION ALL ", " EXCEPT "}) + select(count) : "";
        text += oneIn(3) ? of({" ORDER BY 1", " ORDER BY k0 DESC", " ORDER BY lower(k0)", " LIMIT 3"}) : "";
        statements.push_back("CREATE VIEW " + name + " AS " + text);
        Made made{name, {}};
        for (std::size_t i = 0; i < count; ++i) {
            made.columns.push_back("k" + std::to_string(i));
        }
        tables.push_back(made);
    }

    std::mt19937 random;
    std::vector<Made> tables;
    Statements statements;
};

/// What the server says against the SQL of a database; empty if it takes all.
std::string problemOf(Statements const& statements, std::string const& name) {
    std::ostringstream out;
    qorprogram::dialects().write(structureOf(statements), postgres::postgresDialect(), out);
    try {
        server().run(name, "BEGIN;" + out.str() + "ROLLBACK;");
        return "";
    } catch (std::runtime_error const& error) {
        server().run(name, "ROLLBACK");
        return error.what();
    }
}

/// The fewest statements that still make a problem.
std::string shrunk(Statements statements, std::string const& name) {
    for (std::size_t i = statements.size(); i-- > 0;) {
        Statements fewer = statements;
        fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
        statements = problemOf(fewer, name).empty() ? statements : fewer;
    }
    std::string text;
    for (std::string const& statement : statements) {
        text += statement + ";\n";
    }
    return text;
}

/// QOR_RANDOM_SEED and QOR_RANDOM_DATABASES choose other ones, and more.
unsigned numberFrom(char const* variable, unsigned usual) {
    char const* const value = std::getenv(variable);
    return value ? static_cast<unsigned>(std::atoi(value)) : usual;
}

TEST(ForeignStructure, AllThatIsWrittenOfARandomDatabaseLoads) {
    std::string const name = server().makeDatabase();
    unsigned const seed = numberFrom("QOR_RANDOM_SEED", 1);
    unsigned const count = numberFrom("QOR_RANDOM_DATABASES", 60);
    std::size_t views = 0;
    for (unsigned i = seed; i < seed + count; ++i) {
        Statements const statements = Chance(i).database();
        std::string const problem = problemOf(statements, name);
        ASSERT_EQ(problem, "") << "seed " << i << "\n" << shrunk(statements, name);
        std::ostringstream out;
        qorprogram::dialects().write(structureOf(statements), postgres::postgresDialect(), out);
        views += out.str().find("\nCREATE VIEW ") != std::string::npos;
    }
    EXPECT_GT(views, count / 4); // or nothing would be tried
}

TEST(ForeignStructure, NothingOfARandomDatabaseIsLostSilently) {
    for (unsigned i = 1000; i < 1012; ++i) {
        SCOPED_TRACE(i);
        Structure const structure = structureOf(Chance(i).database());
        expectAccounted(structure, take(structure));
    }
}

} // namespace
