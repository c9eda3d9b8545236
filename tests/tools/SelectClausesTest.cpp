#include "database/SelectClauses.h"

#include <gtest/gtest.h>

namespace {

using database::SelectClauses;
using database::splitSelect;

TEST(SelectClauses, EachClauseGoesWithoutItsKeyword) {
    auto const clauses = splitSelect("select all a, b from t where a > 1 and (b is null)\n group  by a, b"
                                     " having sum(a) > 2 order by a desc, b limit 5;");
    ASSERT_TRUE(clauses);
    EXPECT_EQ(clauses->quantifier, "ALL");
    EXPECT_EQ(clauses->where, "a > 1 and (b is null)");
    EXPECT_EQ(clauses->groupBy, "a, b");
    EXPECT_EQ(clauses->having, "sum(a) > 2");
    EXPECT_EQ(clauses->orderBy, "a desc, b");
}

TEST(SelectClauses, WhatItHasNotIsEmpty) {
    auto const clauses = splitSelect("SELECT 1");
    ASSERT_TRUE(clauses);
    EXPECT_EQ(clauses->quantifier + clauses->where + clauses->groupBy + clauses->having + clauses->orderBy,
              "");
    EXPECT_EQ(splitSelect("SELECT DISTINCT a FROM t")->quantifier, "DISTINCT");
}

TEST(SelectClauses, KeywordsInTextsNamesCommentsAndParenthesesBeginNoClause) {
    auto const clauses =
        splitSelect("SELECT (SELECT a FROM u WHERE b ORDER BY c), ' WHERE x', \"where\" -- WHERE y\n"
                    " FROM t WHERE t.order IS DISTINCT FROM 'GROUP BY z' AND t.limit = 1");
    ASSERT_TRUE(clauses);
    EXPECT_EQ(clauses->where, "t.order IS DISTINCT FROM 'GROUP BY z' AND t.limit = 1");
    EXPECT_EQ(clauses->groupBy, "");
    EXPECT_EQ(clauses->orderBy, "");
}

TEST(SelectClauses, SemicolonsAtTheEndBelongToNoClause) {
    EXPECT_EQ(splitSelect("SELECT a FROM t WHERE b = 1;")->where, "b = 1");
    EXPECT_EQ(splitSelect("SELECT a FROM t ORDER BY a ; ;")->orderBy, "a");
}

TEST(SelectClauses, OnlyOnePlainSelectIsSplit) {
    EXPECT_FALSE(splitSelect("SELECT a FROM t WHERE b UNION SELECT c FROM u"));
    EXPECT_FALSE(splitSelect("WITH q AS (SELECT 1) SELECT * FROM q WHERE 1"));
    EXPECT_FALSE(splitSelect("VALUES (1)"));
    EXPECT_FALSE(splitSelect(""));
    EXPECT_TRUE(splitSelect("SELECT (SELECT 1 UNION SELECT 2)"));
}

TEST(SelectClauses, UnfinishedStatementsAreNoTrouble) {
    for (char const* sql :
         {"SELECT", "SELECT a FROM t WHERE", "SELECT a ORDER BY", "SELECT (", "SELECT a GROUP"}) {
        auto const clauses = splitSelect(sql);
        ASSERT_TRUE(clauses) << sql;
        EXPECT_EQ(clauses->where + clauses->orderBy, "") << sql;
    }
}

} // namespace
