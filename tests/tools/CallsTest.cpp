#include "sqlite/Calls.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Calls, FunctionsAreNamesBeforeAParenthesis) {
    EXPECT_THAT(sqlite::callsIn("f(a) + \"g h\"(b) - [i](c) + (d) * e").functions,
                ElementsAre("f", "g h", "i"));
    EXPECT_THAT(sqlite::callsIn("first(a) > 'f(a)' -- f(a)\n AND last (b)").functions,
                ElementsAre("first", "last"));
    EXPECT_THAT(sqlite::callsIn("SELECT * FROM rows_of(1) JOIN t ON (a)").functions, ElementsAre("rows_of"));
}

TEST(Calls, KeywordsTypesAndTablesAreNoFunctions) {
    for (char const* const sql :
         {"a IN (1) AND (b) OR NOT (c)", "CAST(a AS decimal(9, 2))", "CAST(a AS \"my type\" (3))",
          "INSERT INTO t(a) VALUES (1)", "INSERT INTO \"t\" (a) SELECT (1) WHERE (2)",
          "WITH q(a) AS (SELECT 1) SELECT a FROM q",
          "WITH q(a) AS NOT MATERIALIZED (SELECT 1) SELECT (a) FROM q", "EXISTS (SELECT 1) LIMIT (1)",
          "CASE WHEN (a) THEN (b) ELSE (c) END", "a BETWEEN (b) AND (c) UNION SELECT (1)"}) {
        EXPECT_THAT(sqlite::callsIn(sql).functions, IsEmpty()) << sql;
    }
}

TEST(Calls, RegexpIsAFunctionBetweenOperands) {
    for (char const* const sql : {"a REGEXP 'x'", "f.b NOT REGEXP c", "(a) REGEXP (b)"}) {
        EXPECT_THAT(sqlite::callsIn(sql).functions, ElementsAre("regexp")) << sql;
    }
    for (char const* const sql : {"SELECT regexp, a FROM t", "t.regexp > 1", "\"REGEXP\"", "SELECT regexp"}) {
        EXPECT_THAT(sqlite::callsIn(sql).functions, IsEmpty()) << sql;
    }
}

TEST(Calls, AggregatesAreKnownByWhatStandsBehindThem) {
    sqlite::Calls const calls =
        sqlite::callsIn("SELECT a(DISTINCT b), c(d) FILTER (WHERE e), f(g) OVER w, h(i)");
    EXPECT_THAT(calls.functions, ElementsAre("a", "c", "f", "h"));
    EXPECT_THAT(calls.aggregates, ElementsAre("a", "c", "f"));
}

TEST(Calls, CollationsStandBehindTheirWord) {
    EXPECT_THAT(sqlite::callsIn("a COLLATE german, b collate \"two words\" DESC").collations,
                ElementsAre("german", "two words"));
    EXPECT_THAT(sqlite::callsIn("a COLLATE").collations, IsEmpty());
}

} // namespace
