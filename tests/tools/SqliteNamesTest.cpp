#include "sqlite/Names.h"

#include <gtest/gtest.h>

namespace {

TEST(SqliteNames, PlainWordsStayAndAllElseIsQuoted) {
    EXPECT_EQ(sqlite::quoteName("customer_2"), "customer_2");
    EXPECT_EQ(sqlite::quoteName("_x"), "_x");
    EXPECT_EQ(sqlite::quoteName("select"), "\"select\"");
    EXPECT_EQ(sqlite::quoteName("Order"), "\"Order\"");
    EXPECT_EQ(sqlite::quoteName("2nd"), "\"2nd\"");
    EXPECT_EQ(sqlite::quoteName("a b"), "\"a b\"");
    EXPECT_EQ(sqlite::quoteName("a\"b"), "\"a\"\"b\"");
    EXPECT_EQ(sqlite::quoteName("Größe"), "\"Größe\"");
    EXPECT_EQ(sqlite::quoteName(""), "\"\"");
}

TEST(SqliteNames, ListsHaveCommas) {
    EXPECT_EQ(sqlite::quoteNames({}), "");
    EXPECT_EQ(sqlite::quoteNames({"a", "b c"}), "a, \"b c\"");
}

TEST(SqliteNames, TypesOfWordsAndNumbersStay) {
    for (char const* plain :
         {"", "INTEGER", "VARCHAR(40)", "DECIMAL(9, -1)", "DATETIME", "UNSIGNED BIG INT"}) {
        EXPECT_EQ(sqlite::quoteType(plain), plain);
    }
    EXPECT_EQ(sqlite::quoteType("a(1) b"), "\"a(1) b\"");
    EXPECT_EQ(sqlite::quoteType("a(1"), "\"a(1\"");
    EXPECT_EQ(sqlite::quoteType("int[]"), "\"int[]\"");
    EXPECT_EQ(sqlite::quoteType("primary"), "\"primary\"");
}

TEST(SqliteNames, TextsAreLiterals) {
    EXPECT_EQ(sqlite::quoteText("it's"), "'it''s'");
    EXPECT_EQ(sqlite::quoteText(""), "''");
}

} // namespace
