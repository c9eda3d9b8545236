#include "sqlite/Scratch.h"

#include <gmock/gmock.h>

namespace {

using sqlite::Scratch;
using testing::HasSubstr;

TEST(SqliteScratch, TakenStatementStaysAndARefusedOneLeavesNothing) {
    Scratch scratch;
    EXPECT_EQ(scratch.take("CREATE TABLE t(a)"), "");
    EXPECT_THAT(scratch.take("CREATE TABLE t(a)"), HasSubstr("already exists"));
    EXPECT_THAT(scratch.take("CREATE TABLE u(a); CREATE TABLE u(a)"), HasSubstr("already exists"));
    EXPECT_EQ(scratch.take("CREATE TABLE u(a)"), "");
}

TEST(SqliteScratch, CheckedStatementLeavesNothing) {
    Scratch scratch;
    EXPECT_EQ(scratch.check("CREATE TABLE t(a)"), "");
    EXPECT_EQ(scratch.check("CREATE TABLE t(a)"), "");
    EXPECT_NE(scratch.check("CREATE TABLE t(a"), "");
}

TEST(SqliteScratch, ViewThatCannotBeReadIsRefused) {
    Scratch scratch;
    EXPECT_EQ(scratch.takeView("CREATE VIEW v AS SELECT 1", "v"), "");
    EXPECT_THAT(scratch.takeView("CREATE VIEW w AS SELECT * FROM missing", "w"), HasSubstr("missing"));
    EXPECT_EQ(scratch.take("CREATE TABLE w(a)"), "");
}

TEST(SqliteScratch, ProblemIsFoundWithoutRunningTheStatement) {
    Scratch scratch;
    EXPECT_EQ(scratch.problem("CREATE TABLE t(a)"), "");
    EXPECT_EQ(scratch.problem("CREATE TABLE t(a)"), "");
    EXPECT_THAT(scratch.problem("CREATE TABLE t(a DEFAULT)"), HasSubstr("syntax error"));
    EXPECT_EQ(scratch.problem("CREATE TABLE t(a); DROP TABLE t"), "more than one statement");
    EXPECT_EQ(scratch.problem("CREATE TABLE t(a); -- and no more"), "");
}

TEST(SqliteScratch, WhatTheApplicationMayProvideIsNoProblem) {
    Scratch scratch;
    EXPECT_EQ(scratch.problem("SELECT no_function(1)"), "");
    EXPECT_EQ(scratch.problem("SELECT 1 ORDER BY 'a' COLLATE no_collation"), "");
}

TEST(SqliteScratch, NeededTableIsThereForOneStatementOnly) {
    Scratch scratch;
    EXPECT_EQ(scratch.problem("CREATE TABLE t(a)", "CREATE INDEX i ON t(a + 1)"), "");
    EXPECT_THAT(scratch.problem("CREATE TABLE t(a)", "CREATE INDEX i ON t(b + 1)"), HasSubstr("b"));
    EXPECT_THAT(scratch.problem("CREATE INDEX i ON t(a)"), HasSubstr("no such table"));
}

} // namespace
