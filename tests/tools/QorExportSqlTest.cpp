#include "RunProgram.h"
#include "Sqlite.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class QorExportSql : public testing::Test {
protected:
    static ProgramResult qor(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), QOR_TOOL);
        return runProgram(arguments);
    }

    static void expectError(ProgramResult const& result, std::string const& problem) {
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, StartsWith("qor: "));
        EXPECT_THAT(result.err, HasSubstr(problem));
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }

    /// A graph of one object.
    std::string graphOf(std::string const& object) const {
        return folder.write("graph.json",
                            "{\"format\": \"qor-graph\", \"version\": 1, \"objects\": [{\"number\": 1, " +
                                object + "}], \"links\": []}");
    }

    TemporaryFolder folder;
    std::string const database =
        makeDatabase(folder.file("shop.sqlite"), "CREATE TABLE item(id INTEGER PRIMARY KEY, \"no\""
                                                 " VARCHAR(9) NOT NULL UNIQUE);"
                                                 "CREATE VIEW v AS SELECT id FROM item");
};

TEST_F(QorExportSql, DatabaseIsMadeAgain) {
    ProgramResult const result = qor({"export", database, "--format", "sql"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    std::filesystem::create_directory(folder.path / "again");
    std::string const again = makeDatabase(folder.file("again/shop.sqlite"), result.out);
    EXPECT_EQ(qor({"export", again, "--format", "sql"}).out, result.out);
    ProgramResult const difference = qor({"diff", database, again});
    EXPECT_EQ(difference.exitCode, 0) << difference.out;
}

TEST_F(QorExportSql, JsonOnTheWayChangesNothing) {
    std::string const json = folder.file("shop.json");
    EXPECT_EQ(qor({"import", database, "-o", json}).exitCode, 0);
    ProgramResult const result = qor({"export", json, "--format", "sql"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, qor({"export", database, "--format", "sql"}).out);
}

TEST_F(QorExportSql, DialectCanBeThatOfTheOtherSystem) {
    ProgramResult const result = qor({"export", database, "--format", "sql", "--dialect", "postgresql"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("varchar(9)"));
    EXPECT_THAT(result.out, Not(HasSubstr("VARCHAR(9)")));
}

TEST_F(QorExportSql, WhatIsLeftOutIsToldInTheSqlAndOnALineEach) {
    std::string const own = makeDatabase(
        folder.file("own.sqlite"), "CREATE TABLE t(a CHECK (json_valid(a)));"
                                   "CREATE TRIGGER \"two\nlines\" AFTER INSERT ON t BEGIN SELECT 1; END");
    std::vector<std::string> const arguments = {"export", own, "--format", "sql", "--dialect", "postgresql"};
    ProgramResult const result = qor(arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "qor: left out: check of table t: the function json_valid has no known equivalent in "
              "PostgreSQL\nqor: left out: trigger two lines of t: it is in the language of another "
              "system\n");
    EXPECT_THAT(result.out, HasSubstr("-- left out: check of table t: the function json_valid has no known "
                                      "equivalent in PostgreSQL\n-- json_valid(a)\n"));
    EXPECT_THAT(result.out,
                HasSubstr("-- left out: trigger two\n-- lines of t: it is in the language of another "
                          "system\n-- CREATE TRIGGER \"two\n-- lines\" AFTER INSERT"));
    std::vector<std::string> quiet = arguments;
    quiet.push_back("--quiet");
    EXPECT_EQ(qor(quiet).err, "");
    EXPECT_EQ(qor(quiet).out, result.out);
}

TEST_F(QorExportSql, SettingsOfTheFileAreInTheSqlAndInTheDifference) {
    std::filesystem::create_directory(folder.path / "other");
    std::string const other =
        makeDatabase(folder.file("other/shop.sqlite"),
                     "PRAGMA encoding = 'UTF-16le'; CREATE TABLE item(id INTEGER PRIMARY KEY, "
                     "\"no\" VARCHAR(9) NOT NULL UNIQUE); CREATE VIEW v AS SELECT id FROM item;"
                     "PRAGMA user_version = 9; PRAGMA application_id = 5");
    ProgramResult const difference = qor({"diff", database, other});
    EXPECT_EQ(difference.exitCode, 1);
    for (char const* const name : {"user_version", "application_id", "encoding"}) {
        EXPECT_THAT(difference.out, HasSubstr(name));
    }
    std::string const sql = qor({"export", other, "--format", "sql"}).out;
    EXPECT_THAT(sql, StartsWith("PRAGMA encoding = 'UTF-16le';\nBEGIN;\n"));
    EXPECT_THAT(sql, HasSubstr("PRAGMA user_version = 9;\nPRAGMA application_id = 5;\nCOMMIT;\n"));
}

TEST_F(QorExportSql, UnknownDialectIsNamed) {
    expectError(qor({"export", database, "--format", "sql", "--dialect", "klingon"}), "klingon");
}

TEST_F(QorExportSql, DialectGoesWithSqlAlone) {
    expectError(qor({"export", database, "--format", "dot", "--dialect", "sqlite"}),
                "--dialect: is only for --format sql\n");
}

TEST_F(QorExportSql, ModelOfNoKnownSystemNeedsADialect) {
    std::string const json = graphOf("\"class\": \"Model\", \"attributes\": {\"name\": \"m\"}");
    expectError(qor({"export", json, "--format", "sql"}),
                json + ": comes from no known system, so --dialect must name one");
    for (char const* dialect : {"sqlite", "postgresql"}) {
        ProgramResult const result = qor({"export", json, "--format", "sql", "--dialect", dialect});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_NE(result.out, "");
    }
}

TEST_F(QorExportSql, WhatIsNoModelIsRefused) {
    expectError(qor({"export", graphOf("\"class\": \"Class\""), "--format", "sql", "--dialect", "sqlite"}),
                "its root isn't a model");
}

TEST_F(QorExportSql, FailedExportLeavesTheFileAsItWas) {
    std::string const output = folder.write("out.sql", "-- as it was\n");
    expectError(qor({"export", folder.file("missing.sqlite"), "--format", "sql", "-o", output}),
                "missing.sqlite");
    EXPECT_EQ(contentOf(output), "-- as it was\n");
}

} // namespace
