#include "sqlite/Translation.h"

#include <gtest/gtest.h>
#include <optional>

namespace {

/// Nothing if there is a problem.
std::optional<std::string> translateSql(std::string_view sql) {
    sqlite::Translation const translation = sqlite::translateSql(sql);
    return translation.problem.empty() ? std::optional(translation.text) : std::nullopt;
}

TEST(Translation, CastsAreLeftOut) {
    EXPECT_EQ(translateSql("'a'::character varying(3) || b::text"), "'a' || b");
    EXPECT_EQ(translateSql("(a)::double precision > (1)::numeric(10,2)"), "(a) > (1)");
    EXPECT_EQ(translateSql("'2020-02-01'::timestamp without time zone < a"), "'2020-02-01' < a");
    EXPECT_EQ(translateSql("a::sales.grade = 'x'::sales.\"big grade\""), "a = 'x'");
    EXPECT_EQ(translateSql("a::text[] IS NULL"), "a IS NULL");
}

TEST(Translation, ListsAreWrittenWithIn) {
    EXPECT_EQ(translateSql("a = ANY (ARRAY['x'::text, 'y'::text]) AND b"), "a IN ('x', 'y') AND b");
    EXPECT_EQ(translateSql("a = ANY ((ARRAY[1, 2])::bigint[])"), "a IN (1, 2)");
    EXPECT_EQ(translateSql("a = ANY (b)"), std::nullopt);
    EXPECT_EQ(translateSql("a = ANY"), std::nullopt);
}

TEST(Translation, WhatSqliteMayNotHaveIsRefused) {
    for (char const* sql :
         {"a ~ 'x'", "nextval('s')", "ARRAY[1]", "$1", "E'\\n'", "$$x$$", "extract(year from a)",
          "a ILIKE 'x'", "f(a)", "a ? 'b'", "a -> 'b' @> c", "`a`", "[a]"}) {
        EXPECT_EQ(translateSql(sql), std::nullopt) << sql;
    }
}

TEST(Translation, CastsThatMakeAnotherValueAreRefused) {
    for (char const* sql : {"a::date", "a::timestamp without time zone", "(a / b)::integer", "a::boolean",
                            "'1 day'::interval", "'t'::regclass"}) {
        EXPECT_EQ(translateSql(sql), std::nullopt) << sql;
    }
    EXPECT_EQ(sqlite::translateSql("f(a)").problem, "SQLite isn't known to have f");
}

TEST(Translation, TheRestStaysAsItIs) {
    for (char const* sql :
         {"a + 1 > -2", "coalesce(a, lower(\"b c\"))", "a IN (1, 2) AND (b BETWEEN 'x;' AND 'y')",
          "SELECT count(*) AS n FROM t AS u WHERE EXISTS (SELECT 1)", "CASE WHEN (a) THEN 1 END", "f", ""}) {
        EXPECT_EQ(translateSql(sql), sql);
    }
    EXPECT_EQ(translateSql(" SELECT 1;"), "SELECT 1");
}

TEST(Translation, ValueOfADomainIsTheColumn) {
    EXPECT_EQ(sqlite::translateDomainCheck("(VALUE > 0) AND 'VALUE' <> \"VALUE\"", "a b").text,
              "(\"a b\" > 0) AND 'VALUE' <> \"VALUE\"");
}

} // namespace
