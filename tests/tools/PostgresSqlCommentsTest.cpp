#include "postgres/SqlComments.h"

#include <gtest/gtest.h>

namespace {

using postgres::withCommentEnded;

TEST(PostgresSqlComments, LastLineEndsIfItMayHoldAComment) {
    EXPECT_EQ(withCommentEnded("a"), "a");
    EXPECT_EQ(withCommentEnded("a -- b"), "a -- b\n");
    EXPECT_EQ(withCommentEnded("a -- b\n"), "a -- b\n");
    EXPECT_EQ(withCommentEnded("a -- b\nc"), "a -- b\nc");
    EXPECT_EQ(withCommentEnded("a\n--"), "a\n--\n");
    EXPECT_EQ(withCommentEnded(""), "");
}

TEST(PostgresSqlComments, AllExpressionsOfAStructureEnd) {
    std::string const open = "a -- b";
    std::string const ended = "a -- b\n";
    database::Structure structure;
    structure.types.resize(1);
    structure.types[0].defaultValue = open;
    structure.tables.resize(1);
    structure.tables[0].columns.resize(1);
    structure.tables[0].columns[0].defaultValue = open;
    structure.checks.resize(1);
    structure.checks[0].expression = open;
    structure.indexes.resize(1);
    structure.indexes[0].members.resize(1);
    structure.indexes[0].members[0].expression = open;
    structure.indexes[0].extras = {{"where", open}, {"with", open}};
    database::Structure const made = postgres::withCommentsEnded(structure);
    EXPECT_EQ(made.types[0].defaultValue, ended);
    EXPECT_EQ(made.tables[0].columns[0].defaultValue, ended);
    EXPECT_EQ(made.checks[0].expression, ended);
    EXPECT_EQ(made.indexes[0].members[0].expression, ended);
    EXPECT_EQ(made.indexes[0].extras[0].value, ended);
    EXPECT_EQ(made.indexes[0].extras[1].value, open);
}

} // namespace
