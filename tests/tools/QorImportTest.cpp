#include "RunProgram.h"
#include "Sqlite.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <vector>

#include <linux/capability.h>

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr char const* schema = "CREATE TABLE customer(id INTEGER NOT NULL, name VARCHAR(40) DEFAULT 'x');"
                               "CREATE TABLE invoice(id INTEGER NOT NULL, total NUMERIC(10,2));";

ProgramResult qor(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), QOR_TOOL);
    return runProgram(arguments);
}

ProgramResult import(std::string const& path) {
    return qor({"import", path});
}

/// One line on the error stream, nothing on the other, and the exit code of errors.
void expectError(ProgramResult const& result, std::string const& problem) {
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("qor: "));
    EXPECT_THAT(result.err, HasSubstr(problem));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1);
}

class QorImport : public testing::Test {
protected:
    std::string database(std::string const& name = "shop.sqlite", std::string const& sql = schema) {
        return makeDatabase(folder.file(name), sql);
    }

    TemporaryFolder folder;
};

// ---- what it prints ----------------------------------------------------------------------------------

TEST_F(QorImport, PrintsTheModelAsATree) {
    std::string const path = database();
    ProgramResult const result = import(path);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith("Model \"shop\"\n  DatabaseCatalog \"shop\" systemType=\"SQLite\""));
    EXPECT_THAT(
        result.out,
        HasSubstr(
            "\n    DatabaseSchema \"main\"\n"
            "  DesignPackage \"shop\"\n"
            "    Class \"customer\" nativeType=\"TABLE\" physicalName=\"customer\" cppClassType=ENTITY\n"
            "      Attribute \"id\" physicalName=\"id\" position=1 type->\"INTEGER\"\n"
            "      Attribute \"name\" physicalName=\"name\" position=2 initialValue=\"'x'\""
            " optional=true type->\"VARCHAR(40)\"\n"
            "    Class \"invoice\""));
    EXPECT_THAT(result.out,
                HasSubstr("\n  DerivedType \"NUMERIC(10,2)\" dataType=\"SQL_NUMERIC\" length=10 scale=2"
                          " nativeDataType=\"NUMERIC(10,2)\"\n"));
    EXPECT_THAT(result.out, HasSubstr("\n  MetadataOrigin "));
    EXPECT_THAT(result.out, HasSubstr(" source=\"" + path + "\" toolName=\"SQLite\""));
}

TEST_F(QorImport, StatisticsTakeTheTreesPlace) {
    std::string const path = database();
    char const* const statistics = " 4  Attribute\n"
                                   " 3  BaseType\n"
                                   " 2  Class\n"
                                   " 1  DatabaseCatalog\n"
                                   " 1  DatabaseSchema\n"
                                   " 3  DerivedType\n"
                                   " 1  DesignPackage\n"
                                   " 1  MetadataOrigin\n"
                                   " 1  Model\n"
                                   "17  in all\n";
    for (auto const& arguments : {std::vector<std::string>{"import", "--stats", path},
                                  std::vector<std::string>{"import", path, "--stats"}}) {
        ProgramResult const result = qor(arguments);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, statistics);
        EXPECT_EQ(result.err, "");
    }
}

TEST_F(QorImport, NamesInUtf8Pass) {
    ProgramResult const result =
        import(database("größe 樹.sqlite", "CREATE TABLE \"Kühlraum\"(\"température\" REAL, \"樹\" TEXT)"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, StartsWith("Model \"größe 樹\"\n"));
    EXPECT_THAT(result.out, HasSubstr("Class \"Kühlraum\""));
    EXPECT_THAT(result.out, HasSubstr("Attribute \"température\""));
    EXPECT_THAT(result.out, HasSubstr("Attribute \"樹\""));
}

TEST_F(QorImport, NameWithALineBreakKeepsItsObjectOnOneLine) {
    ProgramResult const result = import(database("x.sqlite", "CREATE TABLE \"a\nb\"(\"c\"\"d\")"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("Class \"a\\nb\""));
    EXPECT_THAT(result.out, HasSubstr("Attribute \"c\\\"d\""));
}

TEST_F(QorImport, OutputIsTheSameEachTimeAndWhateverTheOrderOfCreation) {
    std::vector<std::string> statements;
    for (int i = 0; i < 60; ++i) {
        statements.push_back("CREATE TABLE t" + std::to_string(i) + "(a INT" + std::to_string(i % 7) +
                             ", b VARCHAR(" + std::to_string(i % 11) + "));");
    }
    std::string const path = folder.file("order.sqlite");
    std::string first;
    std::mt19937 random(7);
    for (int round = 0; round < 4; ++round) {
        std::filesystem::remove(path);
        std::string sql;
        for (std::string const& statement : statements) {
            sql += statement;
        }
        makeDatabase(path, sql);
        ProgramResult const result = import(path);
        EXPECT_EQ(result.exitCode, 0);
        first = round == 0 ? result.out : first;
        EXPECT_EQ(result.out, first);
        EXPECT_EQ(import(path).out, first);
        std::shuffle(statements.begin(), statements.end(), random);
    }
}

TEST_F(QorImport, EmptyFileGivesAModelWithoutTables) {
    ProgramResult const result = import(folder.write("empty.sqlite", ""));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith("Model \"empty\"\n"));
    EXPECT_THAT(result.out, testing::Not(HasSubstr("Class")));
}

/// The names of the classes and, below each, of their attributes, in the order of the output.
std::map<std::string, std::vector<std::string>> tablesIn(std::string const& tree) {
    std::map<std::string, std::vector<std::string>> tables;
    std::string current;
    std::istringstream lines(tree);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string className;
        std::string name;
        words >> className >> name;
        name = name.size() > 2 ? name.substr(1, name.size() - 2) : "";
        if (className == "Class") {
            current = name;
            tables[current];
        } else if (className == "Attribute") {
            tables[current].push_back(name);
        }
    }
    return tables;
}

std::map<std::string, std::vector<std::string>> tablesOf(std::string const& path) {
    std::map<std::string, std::vector<std::string>> tables;
    sqlite3* handle = nullptr;
    sqlite3_open_v2(("file:" + path + "?mode=ro&immutable=1").c_str(), &handle,
                    SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    auto const add = [](void* into, int, char** values, char**) {
        (*static_cast<decltype(tables)*>(into))[values[0]].emplace_back(values[1]);
        return 0;
    };
    sqlite3_exec(
        handle,
        "SELECT s.name, c.name FROM sqlite_schema s, pragma_table_xinfo(s.name) c WHERE s.type='table'"
        " AND substr(s.name, 1, 7) <> 'sqlite_' ORDER BY s.name, c.cid",
        add, &tables, nullptr);
    sqlite3_close(handle);
    return tables;
}

TEST_F(QorImport, AllTablesAndColumnsOfARealDatabaseAreThere) {
    std::string const path = QOR_SOURCE_DIR "/../shared/data/chinook.sqlite";
    if (!std::filesystem::exists(path)) {
        GTEST_SKIP() << "no " << path;
    }
    ProgramResult const result = import(path);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    auto const tables = tablesIn(result.out);
    EXPECT_EQ(tables.size(), 11u);
    EXPECT_EQ(tables, tablesOf(std::filesystem::canonical(path).string()));
}

TEST_F(QorImport, AllTablesAndColumnsOfTheSampleAreThere) {
    std::string const path = database("orchard.sqlite", contentOf(QOR_SOURCE_DIR "/samples/orchard.sql"));
    auto const tables = tablesIn(import(path).out);
    EXPECT_EQ(tables.size(), 10u);
    EXPECT_EQ(tables, tablesOf(path));
}

// ---- files that it can't read ------------------------------------------------------------------------

TEST_F(QorImport, MissingFileIsNamed) {
    std::string const path = folder.file("missing.sqlite");
    ProgramResult const result = import(path);
    expectError(result, "qor: " + path + ": No such file or directory\n");
    EXPECT_FALSE(std::filesystem::exists(path)); // and not made
}

TEST_F(QorImport, EmptyPathIsNoFile) {
    expectError(import(""), "No such file or directory");
}

TEST_F(QorImport, FolderIsRefused) {
    expectError(import(folder.path.string()), ": is a directory\n");
}

TEST_F(QorImport, WhatIsNoRegularFileIsRefused) {
    expectError(import("/dev/null"), ": is not a regular file\n");
    std::string const pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    expectError(import(pipe), ": is not a regular file\n");
}

/// Even root needs the right to read then.
void giveUpPrivileges() {
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
    prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
}

TEST_F(QorImport, FileWithoutTheRightToReadIsRefused) {
    std::string const path = database();
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    expectError(runProgram({QOR_TOOL, "import", path}, giveUpPrivileges), ": Permission denied\n");
}

TEST_F(QorImport, TextIsNoDatabase) {
    expectError(import(folder.write("x.sql", "CREATE TABLE t(a);\n")), ": is not an SQLite database");
    expectError(import(folder.write("short", "SQLite")), ": is not an SQLite database");
}

TEST_F(QorImport, FileOfBytesOfChanceIsRefused) {
    std::mt19937 random(3);
    for (std::size_t const size : {1u, 15u, 16u, 99u, 100u, 512u, 4096u, 100000u}) {
        std::string bytes(size, '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
        expectError(import(folder.write("random", bytes)),
                    ": is not an SQLite database, or is an encrypted one\n");
    }
}

TEST_F(QorImport, FileThatLooksEncryptedIsRefused) {
    std::string bytes = contentOf(database());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(bytes[i] ^ static_cast<char>(i * 31 + 7));
    }
    expectError(import(folder.write("secret.sqlite", bytes)),
                ": is not an SQLite database, or is an encrypted one\n");
}

TEST_F(QorImport, FileWithAllButTheFirstBytesEncryptedIsRefused) {
    std::string bytes = contentOf(database());
    for (std::size_t i = 16; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(bytes[i] ^ static_cast<char>(i * 31 + 7));
    }
    expectError(import(folder.write("secret.sqlite", bytes)), "secret.sqlite: is ");
}

std::vector<std::size_t> lengthsBelow(std::size_t size) {
    std::vector<std::size_t> lengths{1,   15,  16,  17,       50,       99,        100,
                                     101, 511, 512, size - 1, size - 2, size - 512};
    for (std::size_t length = 1024; length < size; length += 1024) {
        lengths.insert(lengths.end(), {length - 1, length, length + 1});
    }
    lengths.erase(
        std::remove_if(lengths.begin(), lengths.end(), [&](std::size_t length) { return length >= size; }),
        lengths.end());
    return lengths;
}

std::string withManyTables() {
    std::string sql;
    for (int i = 0; i < 40; ++i) {
        sql += "CREATE TABLE table_number_" + std::to_string(i) +
               "(a VARCHAR(40) NOT NULL, b INTEGER DEFAULT 7);";
    }
    return sql;
}

TEST_F(QorImport, CutOffCopyGivesAnErrorAtEveryLength) {
    std::string const bytes =
        contentOf(database("whole.sqlite", "PRAGMA page_size=1024;" + withManyTables()));
    ASSERT_GT(bytes.size(), 20u * 1024);
    for (std::size_t const length : lengthsBelow(bytes.size())) {
        SCOPED_TRACE(length);
        expectError(import(folder.write("cut.sqlite", bytes.substr(0, length))), "cut.sqlite: is ");
    }
}

/// Writers of long ago didn't keep the number of pages in the header.
TEST_F(QorImport, CutOffCopyGivesAnErrorEvenIfTheHeaderDoesNotTellTheSize) {
    std::string const rows = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400)"
                             " INSERT INTO customer SELECT i, 'a name of some length' FROM n";
    std::string bytes =
        contentOf(database("whole.sqlite", "PRAGMA page_size=1024;" + std::string(schema) + rows));
    ASSERT_GT(bytes.size(), 10u * 1024);
    bytes.replace(28, 4, 4, '\0');
    bytes.replace(92, 4, 4, '\0');
    EXPECT_EQ(import(folder.write("old.sqlite", bytes)).exitCode, 0);
    for (std::size_t const length : lengthsBelow(bytes.size())) {
        SCOPED_TRACE(length);
        expectError(import(folder.write("cut.sqlite", bytes.substr(0, length))), "cut.sqlite: is ");
    }
}

TEST_F(QorImport, SchemaThatCountsATableTooFewIsDamaged) {
    std::string bytes = contentOf(database());
    constexpr std::size_t lowByteOfCellCount = 104;
    ASSERT_EQ(bytes[lowByteOfCellCount], 2);
    bytes[lowByteOfCellCount] = 1;
    expectError(import(folder.write("damaged.sqlite", bytes)), "damaged.sqlite: is damaged: ");
}

TEST_F(QorImport, DamagedSchemaGivesAnErrorAndNoPartOfTheTree) {
    std::string const whole =
        contentOf(database("whole.sqlite", "PRAGMA page_size=1024;" + withManyTables()));
    for (std::size_t page = 0; page < 6; ++page) {
        std::string bytes = whole;
        std::size_t const start = page == 0 ? 100 : page * 1024;
        bytes.replace(start, (page + 1) * 1024 - start, (page + 1) * 1024 - start, '\0');
        ProgramResult const result = import(folder.write("damaged.sqlite", bytes));
        // Pages that hold rows of a table aren't needed; a tree is then whole.
        if (result.exitCode == 0) {
            EXPECT_EQ(tablesIn(result.out).size(), 40u) << page;
            EXPECT_GT(page, 0u);
        } else {
            expectError(result, "damaged.sqlite: is damaged: ");
        }
    }
}

TEST_F(QorImport, WhateverByteIsWrongGivesATreeOrOneLineOfError) {
    std::string const whole = contentOf(database("whole.sqlite", "PRAGMA page_size=512;" + withManyTables()));
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        std::string bytes = whole;
        for (int i = 0; i < 1 + round % 5; ++i) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        ProgramResult const result = import(folder.write("damaged.sqlite", bytes));
        if (result.exitCode == 0) {
            EXPECT_THAT(result.out, StartsWith("Model \"damaged\""));
            EXPECT_EQ(result.err, "");
        } else {
            expectError(result, "damaged.sqlite: ");
        }
    }
}

TEST_F(QorImport, MalformedStatementInTheSchemaIsAnError) {
    std::string const path =
        database("odd.sqlite", std::string(schema) + "PRAGMA writable_schema=ON;"
                                                     "UPDATE sqlite_schema SET sql='CREATE TABLE customer(' "
                                                     "WHERE name='customer'");
    expectError(import(path), ": is damaged: malformed database schema (customer)");
}

TEST_F(QorImport, DatabaseLockedByAWriterIsReportedAsSuch) {
    std::string const path = database();
    Sqlite writer(path);
    writer.run("PRAGMA cache_size=1; BEGIN EXCLUSIVE; INSERT INTO customer VALUES(1, 'y')");
    ASSERT_FALSE(contentOf(path + "-journal").empty());
    expectError(import(path), ": is locked by another program\n");
}

TEST_F(QorImport, InterruptedChangeIsReportedAsSuch) {
    std::string const path = database();
    std::string const interrupted = folder.file("interrupted.sqlite");
    Sqlite writer(path);
    // More than the cache holds, so that a part is in the file already and the journal is needed to undo it.
    writer.run(
        "PRAGMA cache_size=1; BEGIN; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE "
        "i < 2000) INSERT INTO customer SELECT i, 'a name of some length' FROM n; UPDATE customer SET id = "
        "0");
    folder.write("interrupted.sqlite", contentOf(path));
    folder.write("interrupted.sqlite-journal", contentOf(path + "-journal"));
    expectError(import(interrupted), ": contains an interrupted change");
}

TEST_F(QorImport, PathWithALineBreakStillGivesOneLine) {
    expectError(import(folder.file("a\nb")), "a b: No such file or directory\n");
}

// ---- arguments ---------------------------------------------------------------------------------------

TEST_F(QorImport, UnknownOptionsAndVerbsAreNamed) {
    std::string const path = database();
    expectError(qor({"import", "--frobnicate", path}), "--frobnicate");
    expectError(qor({"--frobnicate"}), "--frobnicate");
    expectError(qor({"frobnicate"}), "frobnicate");
    expectError(qor({"import", path, "another"}), "another");
}

TEST_F(QorImport, MissingArgumentsAreErrors) {
    expectError(qor({}), "no verb given");
    expectError(qor({"import"}), "SOURCE is required");
}

TEST_F(QorImport, VersionIsOneLine) {
    ProgramResult const result = qor({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, MatchesRegex("qor [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(result.err, "");
}

TEST_F(QorImport, HelpTellsTheVerbsAndTheVerbsHelpHasAnExample) {
    ProgramResult const help = qor({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_THAT(help.out, HasSubstr("import "));
    ProgramResult const verbHelp = qor({"import", "--help"});
    EXPECT_EQ(verbHelp.exitCode, 0);
    EXPECT_EQ(verbHelp.err, "");
    EXPECT_THAT(verbHelp.out, HasSubstr("--stats"));
    EXPECT_THAT(verbHelp.out, HasSubstr("Example:\n  qor import orchard.sqlite"));
}

TEST_F(QorImport, OutputThatCannotBeWrittenIsAnError) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full";
    }
    ProgramResult const result = runProgram({QOR_TOOL, "import", database()},
                                            [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); });
    expectError(result, "standard output: can't be written\n");
}

} // namespace
