#include "EveryKind.h"
#include "RunProgram.h"
#include "Sqlite.h"
#include "exchange/JsonWriter.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char const* schema = "CREATE TABLE customer(id INTEGER NOT NULL, name VARCHAR(40) DEFAULT 'a|b');"
                               "CREATE TABLE invoice(id INTEGER NOT NULL, total NUMERIC(10,2));";

constexpr char const* oldGraph = "{\"format\": \"qor-graph\", \"version\": 0}";

ProgramResult qor(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), QOR_TOOL);
    return runProgram(arguments);
}

bool isInstalled(std::vector<std::string> command) {
    command.insert(command.begin(), "/usr/bin/env");
    return runProgram(command).exitCode == 0;
}

class QorVerbs : public testing::Test {
protected:
    std::string database(std::string const& name = "shop.sqlite", std::string const& sql = schema) {
        std::filesystem::create_directories(std::filesystem::path(folder.file(name)).parent_path());
        return makeDatabase(folder.file(name), sql);
    }

    std::string json() {
        std::string const path = folder.file("shop.json");
        EXPECT_EQ(qor({"import", database(), "-o", path}).exitCode, 0);
        return path;
    }

    std::size_t fileCount() const {
        auto const files = std::filesystem::directory_iterator(folder.path);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    TemporaryFolder folder;
};

void expectSuccess(ProgramResult const& result) {
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
}

void expectError(ProgramResult const& result, std::string const& problem) {
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, AllOf(StartsWith("qor: "), HasSubstr(problem)));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

/// What a shell prints for a command that names the program qor by QOR.
ProgramResult shell(std::string const& command) {
    return runProgram({"/bin/sh", "-c", "QOR='" QOR_TOOL "'; " + command});
}

// ---- import, and what all verbs share -------------------------------------------------------------------

TEST_F(QorVerbs, DashIsAGraphOnTheStandardInput) {
    std::string const graph = json();
    ProgramResult const shown = qor({"show", graph});
    for (std::string const& command :
         {"$QOR show - < " + graph, "cat " + graph + " | $QOR show -", "$QOR show /dev/stdin < " + graph}) {
        ProgramResult const result = shell(command);
        expectSuccess(result);
        EXPECT_EQ(result.out, shown.out) << command;
    }
    expectSuccess(shell("$QOR diff - " + graph + " < " + graph));
    expectSuccess(shell("$QOR diff " + folder.file("shop.sqlite") + " - < " + graph));
}

TEST_F(QorVerbs, StandardInputThatIsNoGraphIsAnError) {
    expectError(shell("$QOR show - < /dev/null"), "the standard input: ");
    expectError(shell("$QOR show - <&-"), "the standard input: ");
    expectError(shell("$QOR show - < " + database()), "the standard input: line 1");
    expectError(shell("$QOR diff - - < /dev/null"), "the standard input can be read only once");
}

TEST_F(QorVerbs, OutputNeverReplacesTheFileOnTheStandardInput) {
    std::string const graph = json();
    std::string const before = contentOf(graph);
    expectError(shell("$QOR import - -o " + graph + " < " + graph), graph);
    EXPECT_EQ(contentOf(graph), before);
}

TEST_F(QorVerbs, ImportKeepsTheGraphAsJsonThatEachVerbReads) {
    std::string const path = json();
    EXPECT_THAT(contentOf(path), StartsWith("{\n\"format\": \"qor-graph\""));
    ProgramResult const fromDatabase = qor({"import", folder.file("shop.sqlite")});
    ProgramResult const fromJson = qor({"import", path});
    expectSuccess(fromJson);
    EXPECT_EQ(fromJson.out, fromDatabase.out);
    ProgramResult const again = qor({"import", path, "-o", "-"});
    expectSuccess(again);
    EXPECT_EQ(again.out, contentOf(path));
}

TEST_F(QorVerbs, JsonIsKnownByItsFirstCharacterOrItsEnding) {
    std::string const other = folder.write("graph.txt", "\n " + contentOf(json()));
    expectSuccess(qor({"show", other}));
    expectError(qor({"show", folder.write("bad.json", "SQLite format 3")}),
                "bad.json: line 1, column 1: this isn't JSON");
    expectError(qor({"show", folder.file("none.json")}), "none.json: can't be read: No such file");
}

TEST_F(QorVerbs, MistakeInJsonIsToldWithItsLine) {
    std::string text = contentOf(json());
    text.replace(text.find("\"DesignPackage\""), 15, "\"DesignPakage\"");
    expectError(qor({"show", folder.write("x.json", text)}),
                "x.json: line 8, column 24: \"DesignPakage\" isn't a class, in object 4");
}

TEST_F(QorVerbs, FailureLeavesTheOldFileAndNothingBesideIt) {
    std::string const source = json();
    std::string const old = folder.write("old.json", oldGraph);
    std::string const bad = folder.write("bad.json", "{");
    std::size_t const files = fileCount();
    expectError(qor({"import", bad, "-o", old}), "bad.json");
    EXPECT_EQ(contentOf(old), oldGraph);
    expectError(qor({"export", source, "--format", "dot", "-o", folder.file("none/x")}), "can't be written");
    EXPECT_EQ(fileCount(), files);
    // A full device is no ordinary file: it is written where it is.
    expectError(qor({"import", source, "-o", "/dev/full"}), "/dev/full: can't be written");
}

TEST_F(QorVerbs, ReplacedFileKeepsItsRights) {
    std::string const source = json();
    std::string const old = folder.write("old.json", oldGraph);
    ASSERT_EQ(chmod(old.c_str(), 0640), 0);
    expectSuccess(qor({"import", source, "-o", old}));
    EXPECT_EQ(contentOf(old), contentOf(source));
    struct stat status;
    ASSERT_EQ(stat(old.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST_F(QorVerbs, HelpOfEachVerbHasAnExample) {
    for (char const* verb : {"import", "show", "export", "diff", "recode"}) {
        ProgramResult const result = qor({verb, "--help"});
        expectSuccess(result);
        EXPECT_THAT(result.out, HasSubstr(std::string("\nExample:\n  qor ") + verb + " "));
        EXPECT_THAT(result.out, HasSubstr("--quiet"));
    }
}

// ---- the exchange format's schema -----------------------------------------------------------------------

std::string everyKindAsJson() {
    EveryKind const every;
    every.graph.root().setName("\xe9"); // so that bytes occur too
    std::ostringstream out;
    exchange::writeJson(every.graph.root(), out);
    return out.str();
}

/// Says whether the schema in docs/ takes a file; 0 if it does.
int validate(std::string const& path) {
    return runProgram({"/usr/bin/python3", "-c",
                       "import json, jsonschema, sys\n"
                       "validator = jsonschema.Draft202012Validator(json.load(open(sys.argv[1])))\n"
                       "sys.exit(0 if validator.is_valid(json.load(open(sys.argv[2]))) else 7)\n",
                       QOR_SOURCE_DIR "/docs/exchange.schema.json", path})
        .exitCode;
}

TEST_F(QorVerbs, WrittenFileFollowsTheSchema) {
    std::string const text = everyKindAsJson();
    auto const document = nlohmann::json::parse(text);
    auto const rules = nlohmann::json::parse(contentOf(QOR_SOURCE_DIR "/docs/exchange.schema.json"));
    // The keys are compared here, so that something is checked where Python has no validator.
    for (auto const& [list, rule] : {std::pair("objects", "object"), std::pair("links", "links")}) {
        ASSERT_FALSE(document[list].empty());
        for (auto const& item : document[list]) {
            for (auto const& key : rules["$defs"][rule]["required"]) {
                EXPECT_TRUE(item.contains(key)) << item;
            }
            for (auto const& [key, value] : item.items()) {
                EXPECT_TRUE(rules["$defs"][rule]["properties"].contains(key)) << key;
            }
        }
    }
    if (runProgram({"/usr/bin/python3", "-c", "import jsonschema"}).exitCode != 0) {
        GTEST_SKIP() << "python3-jsonschema is missing";
    }
    EXPECT_EQ(validate(folder.write("good.json", text)), 0);
    std::string bad = text;
    bad.replace(bad.find("\"class\""), 7, "\"klass\"");
    EXPECT_EQ(validate(folder.write("bad.json", bad)), 7);
}

// ---- show -----------------------------------------------------------------------------------------------

TEST_F(QorVerbs, ShowPrintsTheTreeOrStatisticsOfAnyPart) {
    std::string const path = json();
    EXPECT_EQ(qor({"show", path}).out, qor({"import", path}).out);
    EXPECT_EQ(qor({"show", "--tree", path}).out, qor({"import", path}).out);
    EXPECT_EQ(qor({"show", "--stats", path}).out, qor({"import", "--stats", path}).out);
    ProgramResult const part = qor({"show", path, "--path", "DesignPackage:shop/invoice"});
    expectSuccess(part);
    EXPECT_EQ(part.out,
              "Class \"invoice\" nativeType=\"TABLE\" physicalName=\"invoice\" cppClassType=ENTITY\n"
              "  Attribute \"id\" physicalName=\"id\" position=1 type->\"INTEGER\"\n"
              "  Attribute \"total\" physicalName=\"total\" position=2 optional=true"
              " type->\"NUMERIC(10,2)\"\n");
    EXPECT_EQ(qor({"show", path, "--stats", "--path", "DesignPackage:shop/invoice"}).out,
              "2  Attribute\n1  Class\n3  in all\n");
}

TEST_F(QorVerbs, ShowRefusesAPathThatNamesNoObjectOrSeveral) {
    std::string const path = json();
    expectError(qor({"show", path, "--path", "nobody"}), "no object at nobody: there is no nobody");
    expectError(qor({"show", path, "--path", "shop"}),
                "more than one object at shop, such as DatabaseCatalog:shop and DesignPackage:shop");
    EXPECT_EQ(qor({"show", path, "--path", "shop/invoice"}).out,
              qor({"show", path, "--path", "DesignPackage:shop/invoice"}).out);
    expectError(qor({"show", path, "--path", "DesignPackage:shop/invoice/tax"}),
                "no object at DesignPackage:shop/invoice/tax: DesignPackage:shop/invoice has no tax");
    expectError(qor({"show", path, "--tree", "--stats"}), "excludes");
}

// ---- export ---------------------------------------------------------------------------------------------

TEST_F(QorVerbs, ExportedJsonIsThatOfImport) {
    std::string const path = json();
    ProgramResult const result = qor({"export", path, "--format", "json"});
    expectSuccess(result);
    EXPECT_EQ(result.out, contentOf(path));
    expectError(qor({"export", path, "--format", "xml"}), "xml isn't a format");
    expectError(qor({"export", path}), "--format is required");
}

TEST_F(QorVerbs, MarkdownListsKeysAndIndexes) {
    std::string const path =
        database("keys.sqlite", "CREATE TABLE a(x INTEGER, y INTEGER, z TEXT CONSTRAINT z_once UNIQUE,"
                                " PRIMARY KEY(y, x));"
                                "CREATE TABLE b(p INTEGER, q INTEGER,"
                                " CONSTRAINT to_a FOREIGN KEY(q, p) REFERENCES a(y, x));"
                                "CREATE UNIQUE INDEX b_by_q ON b(q, p + 1); CREATE INDEX b_by_p ON b(p);");
    ProgramResult const result = qor({"export", path, "--format", "markdown"});
    expectSuccess(result);
    EXPECT_THAT(result.out, HasSubstr("\n\n- Primary key: y, x\n- Unique key z\\_once: z\n\n## b\n"));
    EXPECT_THAT(result.out, HasSubstr("\n\n- Foreign key to\\_a: q, p to a (y, x)\n- Index b\\_by\\_p: p\n"
                                      "- Unique index b\\_by\\_q: q, an expression\n"));
}

TEST_F(QorVerbs, MarkdownHasATableForEachClass) {
    ProgramResult const result = qor({"export", json(), "--format", "markdown"});
    expectSuccess(result);
    EXPECT_EQ(result.out,
              "# shop\n\n## customer\n\n"
              "| Column | Type | Optional | Default | Comment |\n| --- | --- | --- | --- | --- |\n"
              "| id | INTEGER | no |  |  |\n| name | VARCHAR\\(40\\) | yes | 'a\\|b' |  |\n\n"
              "## invoice\n\n"
              "| Column | Type | Optional | Default | Comment |\n| --- | --- | --- | --- | --- |\n"
              "| id | INTEGER | no |  |  |\n| total | NUMERIC\\(10,2\\) | yes |  |  |\n");
}

TEST_F(QorVerbs, DotHasABoxForEachClassInTheFramesOfItsPackages) {
    ProgramResult const result = qor({"export", json(), "--format", "dot"});
    expectSuccess(result);
    EXPECT_THAT(result.out,
                HasSubstr("subgraph cluster_3 {\nlabel=\"shop\";\n"
                          "n4 [label=\"{customer|id : INTEGER\\lname : VARCHAR(40)\\l}\"];\n"
                          "n7 [label=\"{invoice|id : INTEGER\\ltotal : NUMERIC(10,2)\\l}\"];\n}\n"));
}

TEST_F(QorVerbs, DotHasAnArrowForEachKindOfRelation) {
    std::string const path = folder.write(
        "x.json", "{\"format\": \"qor-graph\", \"version\": 1, \"objects\": ["
                  "{\"number\": 1, \"class\": \"DesignPackage\", \"attributes\": {\"name\": \"a\\\"b\\\\\"}},"
                  "{\"number\": 2, \"class\": \"Class\", \"attributes\": {\"name\": \"one {\\n}\"}},"
                  "{\"number\": 3, \"class\": \"Class\", \"attributes\": {\"name\": \"two\"}},"
                  "{\"number\": 4, \"class\": \"Generalization\", \"attributes\": {\"name\": \"is a\"}},"
                  "{\"number\": 5, \"class\": \"Dependency\"},"
                  "{\"number\": 6, \"class\": \"ForeignKey\", \"attributes\": {\"name\": \"fk\"}},"
                  "{\"number\": 7, \"class\": \"CandidateKey\"},"
                  "{\"number\": 8, \"class\": \"Association\"},"
                  "{\"number\": 9, \"class\": \"AssociationRole\"},"
                  "{\"number\": 10, \"class\": \"AssociationRole\"}], \"links\": ["
                  "{\"from\": 1, \"role\": \"modelElement\", \"to\": [2, 3, 4, 5, 8]},"
                  "{\"from\": 3, \"role\": \"supertypeOfGeneralization\", \"to\": [4]},"
                  "{\"from\": 4, \"role\": \"subtypeClass\", \"to\": [2]},"
                  "{\"from\": 2, \"role\": \"dependency\", \"to\": [5]},"
                  "{\"from\": 3, \"role\": \"supplierOfDependency\", \"to\": [5]},"
                  "{\"from\": 2, \"role\": \"key\", \"to\": [6]},"
                  "{\"from\": 3, \"role\": \"key\", \"to\": [7]},"
                  "{\"from\": 6, \"role\": \"candidateKey\", \"to\": [7]},"
                  "{\"from\": 8, \"role\": \"associationRole\", \"to\": [9, 10]},"
                  "{\"from\": 2, \"role\": \"associationRole\", \"to\": [9]},"
                  "{\"from\": 3, \"role\": \"associationRole\", \"to\": [10]}]}");
    ProgramResult const result = qor({"export", path, "--format", "dot"});
    expectSuccess(result);
    EXPECT_THAT(result.out, HasSubstr("label=\"a\\\"b\\\\\";\n"));
    std::size_t const box = result.out.find(" [label=\"{one \\{ \\}|}\"];");
    std::size_t const other = result.out.find(" [label=\"{two|}\"];");
    ASSERT_NE(box, std::string::npos) << result.out;
    ASSERT_NE(other, std::string::npos) << result.out;
    auto const nodeBefore = [&](std::size_t place) {
        std::size_t const line = result.out.rfind('\n', place) + 1;
        return result.out.substr(line, place - line);
    };
    std::string const arrow = nodeBefore(box) + " -> " + nodeBefore(other);
    EXPECT_THAT(result.out, HasSubstr(arrow + " [label=\"is a\", arrowhead=empty];\n"));
    EXPECT_THAT(result.out, HasSubstr(arrow + " [label=\"\", arrowhead=vee, style=dashed];\n"));
    EXPECT_THAT(result.out, HasSubstr(arrow + " [label=\"fk\", arrowhead=normal];\n"));
    EXPECT_THAT(result.out, HasSubstr(arrow + " [label=\"\", dir=none];\n"));
    if (isInstalled({"dot", "-V"})) {
        std::string const drawing = folder.write("x.dot", result.out);
        ProgramResult const drawn = runProgram({"/usr/bin/env", "dot", "-Tsvg", drawing});
        EXPECT_EQ(drawn.exitCode, 0) << drawn.err;
        EXPECT_THAT(drawn.out, HasSubstr("</svg>"));
    }
}

// ---- diff -----------------------------------------------------------------------------------------------

TEST_F(QorVerbs, DiffTellsByItsExitCode) {
    std::string const path = json();
    ProgramResult const same = qor({"diff", path, folder.file("shop.sqlite")});
    expectSuccess(same);
    EXPECT_EQ(same.out, "");
    std::string const other = database("new/shop.sqlite", "CREATE TABLE customer(id INTEGER NOT NULL)");
    ProgramResult const different = qor({"diff", path, other});
    EXPECT_EQ(different.exitCode, 1);
    EXPECT_EQ(different.err, "");
    EXPECT_THAT(different.out, HasSubstr("Class DesignPackage:shop/customer\n  - Attribute name  ("));
    EXPECT_THAT(different.out, HasSubstr(" removed, 0 renamed, 0 moved, "));
    EXPECT_THAT(different.out, Not(HasSubstr("MetadataOrigin")));
    EXPECT_THAT(qor({"diff", "--origin", path, other}).out, HasSubstr("  ~ MetadataOrigin:: source "));
    ProgramResult const quiet = qor({"diff", "--quiet", path, other});
    EXPECT_EQ(quiet.exitCode, 1);
    EXPECT_EQ(quiet.out, "");
    expectError(qor({"diff", path, folder.file("none.json")}), "none.json");
    expectError(qor({"diff", path, path, "--format", "xml"}), "xml");
}

TEST_F(QorVerbs, DiffOfSourcesWithOtherNamesRemarksThat) {
    std::string const path = json();
    std::string const other = database("new/store.sqlite");
    ProgramResult const result = qor({"diff", path, other});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "qor: the graphs are named \"shop\" and \"store\"; this doesn't count as a difference\n");
    expectSuccess(qor({"diff", path, other, "--quiet"}));
    std::string const third = database("third/store.sqlite", "CREATE TABLE customer(id INTEGER NOT NULL)");
    EXPECT_THAT(qor({"diff", path, third}).out, HasSubstr("- Class DesignPackage:shop/invoice\n"));
}

TEST_F(QorVerbs, DiffAsJsonIsJson) {
    std::string const path = json();
    ProgramResult const result =
        qor({"diff", path, database("new/shop.sqlite", "CREATE TABLE x(y)"), "--format", "json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(nlohmann::json::parse(result.out)["added"][0]["path"], "DesignPackage:shop/x");
    ProgramResult const same = qor({"diff", path, path, "--format", "json"});
    EXPECT_EQ(same.exitCode, 0);
    EXPECT_EQ(nlohmann::json::parse(same.out)["same"], true);
}

TEST_F(QorVerbs, DiffTakesRenamesFromAFile) {
    std::string const path = json();
    std::string const other =
        database("new/shop.sqlite", "CREATE TABLE client(id INTEGER NOT NULL, name VARCHAR(40)"
                                    " DEFAULT 'a|b')");
    std::string const renames = folder.write(
        "renames", "# before\tafter\n\nDesignPackage:shop/customer\tDesignPackage:shop/client\n");
    ProgramResult const result = qor({"diff", path, other, "--renames", renames});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, HasSubstr("Class DesignPackage:shop/client\n  > is renamed from customer\n"));
    EXPECT_THAT(result.out, HasSubstr("\n0 added, "));
    EXPECT_EQ(qor({"diff", path, other, "--rename", "customer=client"}).out, result.out);
    EXPECT_EQ(qor({"diff", "--rename", "customer=client", path, other}).out, result.out);
    expectError(qor({"diff", path, other, "--rename", "customer"}), "--rename customer: must be two paths");
    expectError(qor({"diff", path, other, "--rename", "a=b=c"}), "--rename a=b=c: must be two paths");
    expectError(qor({"diff", path, other, "--rename", "a\\=b=c"}), "no object at a=b");
    expectError(qor({"diff", path, other, "--renames", folder.write("bad", "#\none\n")}),
                "bad: line 2: must be two paths");
    expectError(qor({"diff", path, other, "--renames", folder.write("bad", "no\tbody\n")}),
                "no object at no");
    expectError(qor({"diff", path, other, "--renames", folder.file("none")}), "none: can't be read");
}

// ---- recode ---------------------------------------------------------------------------------------------

TEST_F(QorVerbs, RecodeConvertsAndCounts) {
    std::string const path = folder.write(
        "x.json",
        "{\"format\": \"qor-graph\", \"version\": 1, \"objects\": ["
        "{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": \"\xc3\xa9\"}},"
        "{\"number\": 2, \"class\": \"DesignPackage\", \"attributes\": {\"name\": \"\xe2\x82\xac\"}}],"
        "\"links\": [{\"from\": 1, \"role\": \"childPackage\", \"to\": [2]}]}");
    std::string const recoded = folder.file("recoded.json");
    expectError(
        qor({"recode", path, "--from", "UTF-8", "--to", "ISO-8859-1", "-o", recoded}),
        "x.json: 1 of 2 texts can't be converted from UTF-8 to ISO-8859-1, the first at \xe2\x82\xac, "
        "name; --force keeps them as they are");
    EXPECT_FALSE(std::filesystem::exists(recoded));
    ProgramResult const result =
        qor({"recode", path, "--from", "UTF-8", "--to", "ISO-8859-1", "--force", "-o", recoded});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "converted 1, unchanged 0, failed 1\n");
    EXPECT_THAT(contentOf(recoded), HasSubstr("\"name\": {\"hex\": \"e9\"}"));
    EXPECT_THAT(contentOf(recoded), HasSubstr("\"name\": \"\xe2\x82\xac\""));
    ProgramResult const back = qor({"recode", recoded, "--from", "ISO-8859-1", "--to", "UTF-8", "--quiet"});
    expectSuccess(back);
    EXPECT_THAT(back.out, HasSubstr("\"name\": \"\xc3\xa9\""));
}

TEST_F(QorVerbs, RecodeRefusesAnUnknownEncoding) {
    std::string const path = json();
    expectError(qor({"recode", path, "--from", "UTF-8", "--to", "none"}), "none: is an unknown encoding");
    expectError(qor({"recode", path, "--to", "UTF-8"}), "--from is required");
}

} // namespace
