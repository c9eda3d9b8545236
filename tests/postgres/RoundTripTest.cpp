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

/// The scripts of extensions, run as a user's own: types, operators and operator classes as they are in use.
TEST(PostgresRoundTrip, KeepsWhatExtensionsAreMadeOf) {
    std::string folder = server().ask("postgres", "SELECT setting FROM pg_config WHERE name = 'SHAREDIR'");
    folder = folder.substr(0, folder.find('\n')) + "/extension/";
    for (auto const& [script, library] : {std::pair("hstore--1.4.sql", "hstore"),
                                          {"ltree--1.1.sql", "ltree"},
                                          {"pg_trgm--1.3.sql", "pg_trgm"},
                                          {"btree_gist--1.2.sql", "btree_gist"}}) {
        SCOPED_TRACE(script);
        std::string sql =
            std::regex_replace(contentOf(folder + script), std::regex("(^|\n)\\\\[^\n]*"), "\n");
        sql = std::regex_replace(sql, std::regex("MODULE_PATHNAME"), std::string("$$libdir/") + library);
        std::string const name = server().makeDatabase(sql);
        EXPECT_NE(server().ask(name, "SELECT count(*) FROM pg_opclass WHERE oid >= 16384"), "0\n");
        expectSameDatabase(name);
    }
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

/// The statements that change a database, one in each line of a file.
std::vector<std::string> changesOf(std::string const& name) {
    std::istringstream lines(source("changes.sql"));
    std::vector<std::string> changes;
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, 2, "--") != 0) {
            changes.push_back(std::regex_replace(line, std::regex("DATABASE @"), "DATABASE " + name));
        }
    }
    return changes;
}

/// Makes the comments that are new, each with a text of its own, takes them out of the changes and returns
/// the texts.
std::vector<std::string> makeComments(std::string const& name, std::vector<std::string>& changes) {
    std::vector<std::string> texts;
    std::vector<std::string> others;
    for (std::string const& change : changes) {
        auto const end = change.rfind("'new'");
        if (end == std::string::npos) {
            others.push_back(change);
            continue;
        }
        texts.push_back("comment-" + std::to_string(texts.size()) + "-");
        EXPECT_NO_THROW(server().run(name, change.substr(0, end) + "'" + texts.back() + "'")) << change;
    }
    changes = others;
    return texts;
}

TEST(PostgresRoundTrip, SeesEachChange) {
    std::string const catalog = source("catalog.sql");
    std::string const sql = source("tables.sql") +
                            std::regex_replace(catalog, std::regex("CREATE SCHEMA s;"), "") +
                            "ALTER EVENT TRIGGER ev2 DISABLE; ALTER EVENT TRIGGER ev DISABLE";
    std::string const name = server().makeDatabase(sql);
    std::vector<std::string> changes = changesOf(name);
    std::unique_ptr<QORModel> before = modelOf(name);
    std::vector<std::string> const comments = makeComments(name, changes);
    EXPECT_GT(comments.size(), 55u);
    EXPECT_GT(changes.size(), 150u);
    std::unique_ptr<QORModel> after = modelOf(name);
    std::ostringstream shown;
    diff::Difference const difference = diff::compare(*before, *after);
    diff::printText(difference, false, shown);
    diff::printJson(difference, shown); // with texts of any length
    for (std::string const& comment : comments) {
        EXPECT_THAT(shown.str(), HasSubstr(comment));
    }
    for (std::string const& change : changes) {
        before = std::move(after);
        EXPECT_NO_THROW(server().run(name, change)) << change;
        after = modelOf(name);
        EXPECT_FALSE(diff::compare(*before, *after).none()) << change;
    }
    expectSameDatabase(name);
}

} // namespace
