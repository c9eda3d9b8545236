#include "Describe.h"
#include "PostgresServer.h"
#include "RunProgram.h"
#include "database/ModelBuilder.h"
#include "diff/GraphDiff.h"
#include "postgres/Connection.h"
#include "postgres/StructureReader.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <qor/QORModel.h>
#include <regex>
#include <sstream>

namespace {

using testing::HasSubstr;
using testing::Not;

PostgresServer& server() {
    return PostgresServer::instance();
}

std::string succeed(std::vector<std::string> const& command) {
    ProgramResult const result = runProgram(command);
    EXPECT_EQ(result.exitCode, 0) << command[0] << " " << command[1] << "\n" << result.out << result.err;
    return result.out;
}

std::string qor(std::vector<std::string> command) {
    command.insert(command.begin(), QOR_TOOL);
    return succeed(command);
}

/// What PostgreSQL's own program writes of a database, without the lines that differ each time.
std::string dumpOf(std::string const& name) {
    std::istringstream lines(
        succeed({PostgresServer::program("pg_dump"), "-s", "-O", "-x", server().url(name)}));
    std::string dump;
    for (std::string line; std::getline(lines, line);) {
        bool const differs = line.find("restrict ") == 1 || line.find("restrict ") == 3;
        dump += differs ? "" : line + "\n";
    }
    return dump;
}

/// Exports a database by way of the exchange format, loads the SQL into a second one as people do, and
/// compares the two by PostgreSQL's own means and by `qor diff`. Returns the SQL.
std::string expectSameDatabase(std::string const& first) {
    TemporaryFolder const folder;
    std::string const graph = folder.file("first.json");
    std::string const sql = folder.file("first.sql");
    qor({"import", server().url(first), "-o", graph});
    qor({"export", graph, "--format", "sql", "-o", sql});
    std::string const second = server().makeDatabase("", "TEMPLATE template0");
    succeed({PostgresServer::program("psql"), "-q", "-X", "-v", "ON_ERROR_STOP=1", "-f", sql,
             server().url(second)});
    EXPECT_EQ(dumpOf(first), dumpOf(second));
    qor({"diff", server().url(first), server().url(second)});
    return contentOf(sql);
}

std::string source(std::string const& name) {
    return contentOf(std::string(QOR_SOURCE_DIR "/tests/postgres/") + name);
}

TEST(PostgresRoundTrip, KeepsAllThatATableCanHave) {
    expectSameDatabase(server().makeDatabase(source("tables.sql")));
}

TEST(PostgresRoundTrip, KeepsAllThatADatabaseCanHave) {
    expectSameDatabase(server().makeDatabase(source("catalog.sql")));
}

TEST(PostgresRoundTrip, KeepsFormsOfAllKinds) {
    expectSameDatabase(server().makeDatabase(source("forms.sql")));
}

TEST(PostgresRoundTrip, KeepsOddNames) {
    expectSameDatabase(server().makeDatabase(source("names.sql")));
}

TEST(PostgresRoundTrip, KeepsWhatUsesExtensions) {
    std::string const sql = expectSameDatabase(server().makeDatabase(source("extensions.sql")));
    EXPECT_THAT(sql, Not(HasSubstr("CREATE FUNCTION")));
    EXPECT_THAT(sql, Not(HasSubstr("CREATE OPERATOR")));
}

/// A view for each query of the benchmark. A type of another system stands in one of them.
TEST(PostgresRoundTrip, KeepsTheViewsOfABenchmark) {
    std::string const folder = QOR_SOURCE_DIR "/../shared/data/tpch";
    if (!std::filesystem::exists(folder)) {
        GTEST_SKIP() << "no " << folder;
    }
    std::string sql = contentOf(folder + "/schema.sql");
    std::string const queries =
        std::regex_replace(contentOf(folder + "/queries.sql"), std::regex("AS STRING\\)"), "AS text)");
    sql += std::regex_replace(queries, std::regex("-- query ([0-9]+)\n"), "CREATE VIEW q$1 AS\n");
    std::string const first = server().makeDatabase(sql);
    EXPECT_EQ(server().ask(first, "SELECT count(*) FROM pg_views WHERE schemaname = 'public'"), "22\n");
    expectSameDatabase(first);
}

TEST(PostgresRoundTrip, KeepsTheTablesOfCubes) {
    std::string const file = QOR_SOURCE_DIR "/../shared/data/cubes/foodmart.sql";
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << "no " << file;
    }
    expectSameDatabase(server().makeDatabase(contentOf(file)));
}

std::unique_ptr<QORModel> modelOf(std::string const& name) {
    postgres::Connection connection(server().url(name));
    return database::buildModel(postgres::readStructure(connection));
}

/// Each line of a file changes the database.
TEST(PostgresRoundTrip, SeesEachChange) {
    std::string const catalog = source("catalog.sql");
    std::string const sql =
        source("tables.sql") + std::regex_replace(catalog, std::regex("CREATE SCHEMA s;"), "");
    std::string const name = server().makeDatabase(sql);
    std::unique_ptr<QORModel> before = modelOf(name);
    std::istringstream lines(source("changes.sql"));
    int changes = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, 2, "--") == 0) {
            continue;
        }
        SCOPED_TRACE(line);
        ASSERT_NO_THROW(
            server().run(name, std::regex_replace(line, std::regex("DATABASE @"), "DATABASE " + name)));
        std::unique_ptr<QORModel> after = modelOf(name);
        EXPECT_FALSE(diff::compare(*before, *after).none());
        before = std::move(after);
        ++changes;
    }
    EXPECT_GT(changes, 200);
    expectSameDatabase(name);
}

} // namespace
