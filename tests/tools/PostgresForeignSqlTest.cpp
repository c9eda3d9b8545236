#include "postgres/ForeignSql.h"

#include <gtest/gtest.h>

namespace {

using postgres::Kind;
using postgres::Scope;
using postgres::Source;
using postgres::SqlTranslator;
using postgres::Untranslatable;

/// A table with a column of each kind, called by the first letter of its type.
Source sourceOf(std::string const& name) {
    Source source;
    source.name = source.text = name;
    char const* const types[][2] = {{"i", "integer"},   {"n", "numeric"}, {"r", "real"},
                                    {"t", "text"},      {"b", "boolean"}, {"d", "date"},
                                    {"s", "timestamp"}, {"x", "bytea"},   {"o", "interval"}};
    for (auto const& [column, type] : types) {
        source.columns.push_back({column, column, type, postgres::kindOf(type), false, false});
    }
    source.primaryKey = {0};
    source.rowNumber = 0;
    return source;
}

Source find(std::string const& name) {
    if (name != "p" && name != "q") {
        throw Untranslatable("there is no table " + name);
    }
    return sourceOf(name);
}

/// The expression in PostgreSQL's words, or why there is none.
std::string expressionOf(std::string const& sql) {
    Scope scope;
    scope.sources.push_back(sourceOf(""));
    try {
        return SqlTranslator(database::tokenize(sql), scope, find).expression().text;
    } catch (Untranslatable const& problem) {
        return std::string("problem: ") + problem.what();
    }
}

std::string selectOf(std::string const& sql) {
    Scope scope;
    try {
        return SqlTranslator(database::tokenize(sql), scope, find).selection({}).text;
    } catch (Untranslatable const& problem) {
        return std::string("problem: ") + problem.what();
    }
}

void expectExpressions(std::vector<std::pair<std::string, std::string>> const& pairs) {
    for (auto const& [sql, text] : pairs) {
        EXPECT_EQ(expressionOf(sql), text) << sql;
    }
}

TEST(PostgresForeignSql, OperatorsBindAsInSqlite) {
    expectExpressions({{"i + 2 * n - 1", "((i + (2 * n)) - 1)"},
                       {"NOT i = 1 AND b OR t <> 'x'", "(((NOT (i = 1)) AND b) OR (t <> 'x'))"},
                       {"i == 1 IS NULL", "((i = 1) IS NULL)"},
                       {"-i || t", "(((-i))::text || t)"},
                       {"i < 2 = b", "((i < 2) = b)"},
                       {"i & 3 > 1", "(((i)::bigint & (3)::bigint) > 1)"},
                       {"i BETWEEN 1 AND 2 AND b", "(((i >= 1 AND i <= 2)) AND b)"}});
}

TEST(PostgresForeignSql, DivisionByZeroIsNull) {
    expectExpressions(
        {{"i / 2", "(i / 2)"}, {"i / n", "(i / NULLIF(n, 0))"}, {"i % i", "(i % NULLIF(i, 0))"}});
}

TEST(PostgresForeignSql, NumbersAndTruthValuesStandForEachOther) {
    expectExpressions({{"i AND NOT n", "((i <> 0) AND (NOT (n <> 0)))"},
                       {"b = 1", "((b)::integer = 1)"},
                       {"(i > 1) + TRUE", "(((i > 1))::integer + (true)::integer)"},
                       {"b IS TRUE", "(b IS TRUE)"}});
}

TEST(PostgresForeignSql, NamesOfAllKindsAreColumnsAndTheRestIsText) {
    expectExpressions({{"[i] + `n` + \"r\" + I", "(((i + n) + r) + i)"},
                       {"t = \"no column\"", "(t = 'no column')"},
                       {"rowid + _rowid_ + oid", "((i + i) + i)"},
                       {"[no column]", "problem: it is unknown what no column is"}});
}

TEST(PostgresForeignSql, WhatDoesNotCompareIsRefused) {
    for (char const* const sql : {"i = t",
                                  "i = x",
                                  "t > 1",
                                  "d = i",
                                  "b = t",
                                  "x = t",
                                  "o = o",
                                  "i = 'a'",
                                  "d > 'today'",
                                  "d = '2021-02-29'",
                                  "s < '2020-01-01 25:00'",
                                  "b = 'true'",
                                  "i IN (1, t)",
                                  "CASE WHEN b THEN i ELSE t END",
                                  "coalesce(i, 'x')",
                                  "t + 1",
                                  "d - d",
                                  "t AND b",
                                  "-t",
                                  "x || t",
                                  "n % 2",
                                  "(i, n) = (1, 2)",
                                  "i IN ()"}) {
        EXPECT_EQ(expressionOf(sql).substr(0, 9), "problem: ") << sql << " gives " << expressionOf(sql);
    }
    expectExpressions({{"d >= '2020-02-29' AND s < '2020-01-01 10:00:00'",
                        "((d >= '2020-02-29') AND (s < '2020-01-01 10:00:00'))"},
                       {"i = '12' AND d < s AND i < r", "(((i = '12') AND (d < s)) AND (i < r))"}});
}

TEST(PostgresForeignSql, PatternsKeepTheirMeaning) {
    expectExpressions({{"t LIKE 'a\\%'", "(t ILIKE 'a\\%' ESCAPE '')"},
                       {"t NOT LIKE '10#%%' ESCAPE '#'", "(t NOT ILIKE '10#%%' ESCAPE '#')"},
                       {"t GLOB '*.[a-c]?+'", "(t ~ '^.*\\.[a-c].\\+$')"},
                       {"t NOT GLOB 'x'", "(t !~ '^x$')"}});
    for (char const* const sql :
         {"t LIKE 'ä'", "t LIKE t", "t GLOB '[a'", "t GLOB '[[:x:]]'", "t REGEXP 'a'", "t MATCH 'a'"}) {
        EXPECT_EQ(expressionOf(sql).substr(0, 9), "problem: ") << sql;
    }
}

TEST(PostgresForeignSql, FunctionsAreTranslatedByATable) {
    expectExpressions({{"ifnull(t, 'x')", "coalesce(t, 'x')"},
                       {"iif(b, 1, n)", "(CASE WHEN b THEN 1 ELSE n END)"},
                       {"substr(t, 2)", "substr(t, 2)"},
                       {"trim(t, 'x')", "btrim(t, ('x')::text)"},
                       {"instr(t, 'x')", "strpos(t, ('x')::text)"},
                       {"length(x)", "octet_length(x)"},
                       {"round(n, 2)", "round((n)::numeric, 2)"},
                       {"hex(x)", "upper(encode(x, 'hex'))"},
                       {"strftime('%Y-%m', d)", "to_char(d, 'YYYY-MM')"},
                       {"CAST(n AS INTEGER)", "(trunc(n))::bigint"},
                       {"d = date('now')", "(d = (CURRENT_TIMESTAMP AT TIME ZONE 'UTC')::date)"}});
    for (char const* const sql : {"substr(t, -1)",
                                  "strftime('%s', d)",
                                  "strftime('%Y', t)",
                                  "date(t)",
                                  "date('now', '+1 day')",
                                  "max(i, n)",
                                  "printf('%d', i)",
                                  "json_extract(t, '$')",
                                  "t -> '$'",
                                  "typeof(i)",
                                  "changes()",
                                  "last_insert_rowid()",
                                  "count(*)",
                                  "row_number() OVER ()",
                                  "CAST(t AS INTEGER)",
                                  "CAST(t AS DATE)",
                                  "t COLLATE NOCASE",
                                  "own(i)",
                                  "?1",
                                  "RAISE(IGNORE)"}) {
        EXPECT_EQ(expressionOf(sql).substr(0, 9), "problem: ") << sql;
    }
}

TEST(PostgresForeignSql, JoinsStarsAndOrdersAreWrittenOut) {
    EXPECT_EQ(
        selectOf("SELECT a.i, count(*) n FROM p a, q JOIN q AS r ON a.i = r.i GROUP BY a.i ORDER BY n DESC"),
        "SELECT a.i AS i, count(*) AS n FROM p AS a CROSS JOIN q AS q JOIN q AS r ON (a.i = r.i) GROUP BY "
        "a.i "
        "ORDER BY 2 DESC NULLS LAST");
    EXPECT_EQ(
        selectOf("SELECT i FROM p LEFT JOIN (SELECT i AS j FROM q) ON i = j WHERE j IS NULL LIMIT 1, 2"),
        "SELECT p.i AS i FROM p AS p LEFT JOIN (SELECT q.i AS j FROM q AS q) AS subquery_2 ON (p.i = "
        "subquery_2.j) WHERE (subquery_2.j IS NULL) LIMIT 2 OFFSET 1");
    EXPECT_EQ(
        selectOf("WITH w(a) AS (SELECT i FROM p) SELECT a FROM w UNION SELECT NULL ORDER BY a"),
        "WITH w AS (SELECT p.i AS a FROM p AS p) SELECT w.a AS a FROM w AS w UNION SELECT NULL::bigint AS a "
        "ORDER BY 1 NULLS FIRST");
    EXPECT_EQ(selectOf("SELECT i, t FROM p GROUP BY i").substr(0, 14), "SELECT p.i AS ");
}

TEST(PostgresForeignSql, StatementsThatPostgresqlRefusesAreRefused) {
    for (char const* const sql : {"SELECT t, i FROM p GROUP BY t",
                                  "SELECT i, count(*) FROM p",
                                  "SELECT i FROM p, q",
                                  "SELECT i FROM none",
                                  "SELECT i FROM p UNION SELECT t FROM p",
                                  "SELECT i FROM p UNION SELECT i, t FROM p",
                                  "SELECT DISTINCT i FROM p ORDER BY t",
                                  "SELECT i FROM p UNION SELECT i FROM q ORDER BY t",
                                  "SELECT i FROM p LIMIT -1",
                                  "VALUES (1)",
                                  "SELECT * FROM json_each('[]')",
                                  "SELECT sum(count(i)) FROM p",
                                  "SELECT i FROM p WHERE count(*) > 1",
                                  "SELECT (SELECT i, t FROM p)",
                                  "SELECT i FROM p GROUP BY 'x'",
                                  "SELECT i FROM p a JOIN q a",
                                  "WITH RECURSIVE w AS (SELECT 1) SELECT * FROM w",
                                  "DELETE FROM p",
                                  "",
                                  "SELECT",
                                  "SELECT i FROM p FULL JOIN q USING (i)",
                                  "SELECT sum(t) FROM p",
                                  "SELECT count(*), row_number() OVER (ORDER BY i) FROM p",
                                  "SELECT max(b || t) FROM p"}) {
        EXPECT_EQ(selectOf(sql).substr(0, 9), "problem: ") << sql << " gives " << selectOf(sql);
    }
}

/// As many levels as a stack has no room for, of each kind that is nested.
TEST(PostgresForeignSql, DepthIsRefused) {
    auto const repeated = [](std::string const& text) {
        std::string result;
        for (int i = 0; i < 20000; ++i) {
            result += text;
        }
        return result;
    };
    for (std::string const& sql :
         {repeated("(") + "i" + repeated(")"), repeated("NOT ") + "b", repeated("- ") + "i",
          repeated("~") + "i", repeated("CASE WHEN ") + "b" + repeated(" THEN 1 END"),
          repeated("abs(") + "i" + repeated(")"), repeated("(SELECT ") + "i" + repeated(")"),
          repeated("i IN (") + "1" + repeated(")"), repeated("CAST(") + "i" + repeated(" AS TEXT)")}) {
        EXPECT_EQ(expressionOf(sql), "problem: it is nested too deeply") << sql.substr(0, 20);
    }
    EXPECT_EQ(selectOf(repeated("SELECT * FROM (") + "SELECT i FROM p" + repeated(")")),
              "problem: it is nested too deeply");
    EXPECT_EQ(expressionOf(std::string(40, '(') + "i" + std::string(40, ')')), "i");
}

/// Nothing that is cut off or damaged does harm.
TEST(PostgresForeignSql, AnyPartOfAStatementIsReadOrRefused) {
    std::string const sql =
        "WITH w(a) AS (SELECT i FROM p) SELECT DISTINCT a, CASE WHEN a > 1 THEN 'x' ELSE NULL END AS c, "
        "sum(a) FILTER (WHERE a) OVER (PARTITION BY c ORDER BY a), CAST(a AS TEXT) FROM w LEFT JOIN p USING "
        "(i) "
        "WHERE a NOT IN (SELECT 1) AND NOT EXISTS (SELECT * FROM q) GROUP BY 1 HAVING count(*) > 1 ORDER BY "
        "1 "
        "DESC NULLS LAST LIMIT 1 OFFSET 2";
    auto const tokens = database::tokenize(sql);
    for (std::size_t start = 0; start < tokens.size(); ++start) {
        for (std::size_t end = start; end < tokens.size(); ++end) {
            std::string const part(database::textBetween(tokens[start], tokens[end]));
            EXPECT_NE(selectOf(part), "") << part;
            EXPECT_NE(expressionOf(part), "") << part;
        }
    }
}

TEST(PostgresForeignTypes, LiteralsMustFitTheirType) {
    EXPECT_TRUE(postgres::fits("varchar(3)", "größ") == false && postgres::fits("varchar(4)", "größ"));
    EXPECT_TRUE(postgres::fits("smallint", "-32767"));
    EXPECT_FALSE(postgres::fits("smallint", "32768"));
    EXPECT_FALSE(postgres::fits("integer", "1.5"));
    EXPECT_TRUE(postgres::fits("numeric(4,1)", "999.9"));
    EXPECT_FALSE(postgres::fits("numeric(4,1)", "999.99"));
    EXPECT_FALSE(postgres::fits("numeric(4,1)", "1000"));
    EXPECT_TRUE(postgres::isValueOf(Kind::DATE, "2000-02-29"));
    EXPECT_FALSE(postgres::isValueOf(Kind::DATE, "1900-02-29"));
    EXPECT_FALSE(postgres::isValueOf(Kind::DATE, "now"));
    EXPECT_TRUE(postgres::isValueOf(Kind::TIMESTAMP, "2000-02-29T10:00:00.5"));
    EXPECT_FALSE(postgres::isValueOf(Kind::TIMESTAMP, "2000-02-29 10"));
    EXPECT_FALSE(postgres::isValueOf(Kind::NUMERIC, "1e5"));
}

} // namespace
