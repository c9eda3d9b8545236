#include "database/SqlText.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

bool isSql(std::string const& text) {
    std::istringstream in(text);
    return database::isSqlText(in);
}

TEST(SqlText, BeginsWithAStatementOrHoldsCommentsAlone) {
    for (char const* text :
         {"BEGIN;\nCOMMIT;\n", "-- a dump\n\nSET client_encoding = 'UTF8';\n", "create table a(b);",
          "/* x */ CREATE UNIQUE INDEX i ON t(a);", "PRAGMA foreign_keys=OFF;\nBEGIN TRANSACTION;",
          "INSERT INTO a VALUES(1);", "DELETE FROM a;", "COMMENT ON TABLE a IS 'b';",
          "\\restrict x\n\nSET a = 1;", "SELECT pg_catalog.set_config('search_path', '', false);",
          "-- nothing to do\n", "/* nothing */"}) {
        EXPECT_TRUE(isSql(text)) << text;
    }
    EXPECT_TRUE(isSql("INSERT INTO a VALUES('" + std::string(100000, 'x') + "');"));
    EXPECT_TRUE(isSql(std::string(100000, '-') + "\nSELECT 1;"));
}

TEST(SqlText, IsNoOtherText) {
    for (char const* text :
         {"", " \n", "x", "CREATE", "CREATE TABLE", "Create a backup; then go on", "Begin here;", "SELECT 1",
          "Delete this file;", "Comment: none;", "# x\n", "{\"a\": 1}", "digraph {a;}",
          "#include <x>\nint a;", "\\documentclass{article};", "a,b;\n1,2;\n"}) {
        EXPECT_FALSE(isSql(text)) << text;
    }
}

} // namespace
