#include "qor/Program.h"

#include "RunProgram.h"
#include "Sqlite.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <regex>
#include <sys/resource.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Words = std::vector<std::string>;

/// One line on the standard error, nothing on the other one, the exit code of errors.
void expectError(ProgramResult const& result, std::string const& problem) {
    EXPECT_EQ(result.exitCode, qorprogram::failure);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, AllOf(StartsWith("qor: "), HasSubstr(problem)));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_TRUE(!result.err.empty() && result.err.back() == '\n');
}

std::size_t fileCount(TemporaryFolder const& folder) {
    auto const files = std::filesystem::directory_iterator(folder.path);
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// Runs each verb on a source, those that write with a file to write, and expects it to fail and to leave
/// nothing.
void expectRefusal(TemporaryFolder const& folder, std::string const& source, std::string const& problem) {
    std::size_t const files = fileCount(folder);
    std::string const out = folder.file("out");
    for (Words const& command :
         {Words{"import", source, "-o", out}, Words{"show", source},
          Words{"export", source, "--format", "markdown", "-o", out}, Words{"diff", source, source},
          Words{"recode", source, "--from", "UTF-8", "--to", "UTF-16", "-o", out}}) {
        SCOPED_TRACE(command.front());
        Words whole = command;
        whole.insert(whole.begin(), QOR_TOOL);
        expectError(runProgram(whole), problem);
    }
    EXPECT_EQ(fileCount(folder), files);
}

// ---- graphs in JSON ---------------------------------------------------------------------------------------

struct Mistake {
    char const* name;
    std::string text;
    char const* problem; ///< behind the name of the file
};

constexpr char const* start = "{\n\"format\": \"qor-graph\",\n\"version\": 1,\n\"objects\": [\n";

/// A file with objects from line 5 on, the end of the objects in the line behind them, and then links.
std::string file(std::string const& objects, std::string const& links = "") {
    return start + objects + "\n],\n\"links\": [\n" + links + "\n]\n}\n";
}

std::string const two = "{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": \"m\"}},\n"
                        "{\"number\": 2, \"class\": \"DesignPackage\", \"attributes\": {\"name\": \"p\"}}";
std::string const twins =
    two + ",\n{\"number\": 3, \"class\": \"DesignPackage\", \"attributes\": {\"name\": \"p\"}}";

std::string one(std::string const& attributes) {
    return file("{\"number\": 1, \"class\": \"Model\", \"attributes\": {\n" + attributes + "}}");
}

std::vector<Mistake> const mistakes = {
    {"nothing", "", "line 1: the text is truncated"},
    {"blanks", " \n ", "line 2: the text is truncated"},
    {"cut off", file(two).substr(0, 100), "line 5: the text is truncated"},
    {"cut off in a word", file(two).substr(0, 140), "line 6: the text is truncated"},
    {"trailing text", file(two) + "x", "line 12: there is text after the graph"},
    {"second document", file(two) + file(two), "line 12: there is text after the graph"},
    {"no JSON", "number,class\n", "line 1: this isn't JSON"},
    {"another format", "{\n\"format\": \"other\"}", "line 2: \"format\" must be"},
    {"a later version", "{\"format\": \"qor-graph\",\n\"version\": 2}",
     "line 2: \"version\" isn't supported"},
    {"unknown key", "{\n\"from\": 1}", "line 2: \"from\" isn't a key here"},
    {"key twice", "{\"format\": \"qor-graph\",\n\"format\": \"qor-graph\"}",
     "line 2: \"format\" is repeated"},
    {"missing key", file("{\"number\": 1}"), "line 5: \"class\" is missing"},
    {"no objects", file(""), "the graph has no object"},
    {"unknown class", file(two + ",\n{\"number\": 3, \"class\": \"Klass\"}"),
     "line 7: \"Klass\" isn't a class"},
    {"abstract class", file("{\"number\": 1, \"class\": \"Package\"}"),
     "line 5: \"Package\" is a class without"},
    {"unknown attribute", one("\"nmae\": \"x\""), "line 6: Model has no attribute \"nmae\""},
    {"attribute twice", one("\"name\": \"x\",\n\"name\": \"x\""),
     "line 7: the attribute \"name\" is repeated"},
    {"number for a text", one("\"name\": 7"), "line 6: \"name\" takes a text"},
    {"text for a number", one("\"id\": \"7\""), "line 6: \"id\" takes a whole number"},
    {"too large a number", one("\"id\": 99999999999999999999"), "line 6: 99999999999999999999 isn't a whole"},
    {"fraction", one("\"id\": 1.5"), "line 6: 1.5 isn't a whole number"},
    {"list for a text", one("\"name\": [\"x\"]"), "line 6: [ isn't allowed here"},
    {"null", one("\"name\": null"), "line 6: null isn't allowed here"},
    {"NUL in a text", one("\"name\": \"a\\u0000b\""), "line 6: the text of \"name\" holds a NUL"},
    {"invalid UTF-8", one("\"name\": \"\xe9\""), "line 6: this isn't JSON"},
    {"half a pair", one("\"name\": \"\\ud800\""), "line 6: this isn't JSON"},
    {"bad bytes", one("\"name\": {\"hex\": \"E9\"}"), "line 6: \"hex\" must be pairs"},
    {"object apart", file(two), "line 6: no links lead from the first object to the object 2"},
    {"number twice", file(two + ",\n{\"number\": 2, \"class\": \"Model\"}"),
     "line 7: the number 2 is used twice"},
    {"number 0", file("{\"number\": 0, \"class\": \"Model\"}"), "line 5: expected the number of an object"},
    {"link from nowhere", file(two, "{\"from\": 9, \"role\": \"type\", \"to\": [1]}"),
     "line 9: no object has the number 9"},
    {"link to nowhere", file(two, "{\"from\": 1, \"role\": \"childPackage\",\n\"to\": [9]}"),
     "line 10: no object has the number 9"},
    {"unknown role", file(two, "{\"from\": 1, \"role\": \"child\", \"to\": [2]}"),
     "line 9: Model has no role \"child\""},
    {"wrong end", file(two, "{\"from\": 2, \"role\": \"parentPackage\", \"to\": [1]}"),
     "must be at its other end"},
    {"wrong class", file(two, "{\"from\": 1, \"role\": \"type\", \"to\": [2]}"), "accepts no DesignPackage"},
    {"with itself", file(two, "{\"from\": 2, \"role\": \"childPackage\", \"to\": [2]}"),
     "linked with itself"},
    {"name taken", file(twins, "{\"from\": 1, \"role\": \"childPackage\", \"to\": [2,\n3]}"),
     "line 11: the link \"childPackage\" to the object 3 is refused"},
    {"link twice", file(two, "{\"from\": 1, \"role\": \"childPackage\", \"to\": [2, 2]}"),
     "is refused: an end is already linked"},
    {"too deep", start + std::string(1000000, '['), "line 5: [ isn't allowed here"},
    {"deep where nothing is read", "{\"x\": " + std::string(1000000, '['), "line 1: \"x\" isn't a key here"},
};

TEST(Program, MistakeInAGraphIsToldWithFileAndLine) {
    for (Mistake const& mistake : mistakes) {
        SCOPED_TRACE(mistake.name);
        TemporaryFolder const folder;
        std::string const path = folder.write("x.json", mistake.text);
        expectRefusal(folder, path, "x.json: ");
        ProgramResult result = runProgram({QOR_TOOL, "show", path});
        result.err = std::regex_replace(result.err, std::regex(", column [0-9]+:"), ":");
        expectError(result, mistake.problem);
    }
}

TEST(Program, MistakeIsToldWithItsColumnAndItsObject) {
    TemporaryFolder const folder;
    std::string const path = folder.write("x.json", file("{\"number\": 3, \"class\": \"Klass\"}"));
    expectError(runProgram({QOR_TOOL, "show", path}),
                "x.json: line 5, column 24: \"Klass\" isn't a class, in object 3\n");
}

TEST(Program, MessageShowsNoControlCharactersOfAFile) {
    TemporaryFolder const folder;
    std::string const path = folder.write("a\nb\x1b[2J.json", one("\"a\\n\\u001b[2J\": 1"));
    ProgramResult const result = runProgram({QOR_TOOL, "show", path});
    expectError(result, "line 6");
    EXPECT_EQ(result.err.find('\x1b'), std::string::npos);
}

// ---- databases --------------------------------------------------------------------------------------------

TEST(Program, FileThatIsNoDatabaseIsRefused) {
    TemporaryFolder const folder;
    std::string const database =
        contentOf(makeDatabase(folder.file("x.sqlite"), "CREATE TABLE a(b); CREATE TABLE c(d)"));
    std::string noise(20000, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i) {
        noise[i] = static_cast<char>(i * i * 31 + i / 7 * 13 + 1);
    }
    expectRefusal(folder, folder.write("noise.sqlite", noise), "noise.sqlite: ");
    // What an encrypted database looks like: the size of one, and no byte of it known.
    expectRefusal(folder, folder.write("secret.sqlite", noise.substr(0, database.size())), "encrypted");
    expectRefusal(folder, folder.write("cut.sqlite", database.substr(0, database.size() - 1000)),
                  "is truncated");
    std::string damaged = database;
    std::fill(damaged.begin() + 100, damaged.begin() + 4000, '\x55');
    expectRefusal(folder, folder.write("damaged.sqlite", damaged), "damaged.sqlite: ");
    expectRefusal(folder, folder.file("none.sqlite"), "none.sqlite: No such file or directory");
    expectRefusal(folder, folder.path.string(), "is a directory");
}

// ---- arguments, streams, and the limits of the system ---------------------------------------------------

TEST(Program, WrongArgumentsAreRefused) {
    expectError(runProgram({QOR_TOOL}), "no verb given; see qor --help");
    expectError(runProgram({QOR_TOOL, "frob"}), "frob: no such verb or option");
    expectError(runProgram({QOR_TOOL, "--frob"}), "--frob: no such verb or option");
    expectError(runProgram({QOR_TOOL, "show"}), "show: FILE is required");
    expectError(runProgram({QOR_TOOL, "show", "a", "b"}), "show: ");
    expectError(runProgram({QOR_TOOL, "show", "a", "--frob"}), "show: ");
    expectError(runProgram({QOR_TOOL, "show", ""}), "No such file or directory");
    expectError(runProgram({QOR_TOOL, "import", "a", "-o", ""}), "import: --output: names no file");
    expectError(runProgram({QOR_TOOL, "import", "a", "--stats", "-o", "b"}), " excludes --");
}

TEST(Program, HelpOnWhatThereIsNotIsAnError) {
    for (char const* request : {"--help", "-h", "--version"}) {
        expectError(runProgram({QOR_TOOL, "frob", request}), "frob: no such verb or option");
        expectError(runProgram({QOR_TOOL, request, "frob"}), "frob: no such verb or option");
        expectError(runProgram({QOR_TOOL, "--frob", request}), "--frob: no such verb or option");
    }
    for (Words const& command : {Words{"show", "--frob", "--help"},
                                 {"show", "--help", "--frob"},
                                 {"show", "a", "b", "--help"},
                                 {"--help", "show", "--frob"},
                                 {"show", "--version"},
                                 {"diff", "a", "b", "c", "-h"}}) {
        Words whole = command;
        whole.insert(whole.begin(), QOR_TOOL);
        expectError(runProgram(whole),
                    "is unexpected; see qor " + std::string(whole[1] == "diff" ? "diff" : "show"));
    }
    expectError(runProgram({QOR_TOOL, "frob", "show", "--help"}), "frob: no such verb or option");
    expectError(runProgram({QOR_TOOL, "help"}), "help: no such verb or option");
    expectError(runProgram({QOR_TOOL, ""}), "\"\": no such verb or option");
    expectError(runProgram({QOR_TOOL, "show", "a", ""}), "show: \"\" is unexpected");
    expectError(runProgram({QOR_TOOL, "diff", "--format", "xml", "--help"}), "xml");
}

TEST(Program, HelpLeavesOutWhatIsMissing) {
    for (Words const& command : {Words{"show", "--help"},
                                 {"show", "--help", "x"},
                                 {"show", "x", "--help"},
                                 {"--help", "show"},
                                 {"export", "x", "--quiet", "-h"}}) {
        Words whole = command;
        whole.insert(whole.begin(), QOR_TOOL);
        ProgramResult const result = runProgram(whole);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_THAT(result.out, HasSubstr("--quiet"));
    }
}

TEST(Program, HelpAndVersionGoToTheStandardOutput) {
    for (Words const& command : {Words{"--help"}, Words{"--version"}, Words{"diff", "--help"}}) {
        Words whole = command;
        whole.insert(whole.begin(), QOR_TOOL);
        ProgramResult const result = runProgram(whole);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_THAT(result.out, HasSubstr("qor "));
    }
}

class ProgramStreams : public testing::Test {
protected:
    /// Runs the program through a shell, "qor" being its name.
    ProgramResult shell(std::string const& command) const {
        return runProgram({"/usr/bin/env", "bash", "-c",
                           "qor() { " QOR_TOOL " \"$@\"; }; cd '" + folder.path.string() + "'; " + command});
    }

    TemporaryFolder folder;
    std::string source =
        folder.write("x.json", file(two, "{\"from\": 1, \"role\": \"childPackage\", \"to\": [2]}"));
};

TEST_F(ProgramStreams, OutputThatCannotBeWrittenIsAnError) {
    for (char const* arguments : {"show x.json", "import x.json -o -", "diff x.json x.json --format json",
                                  "export x.json --format dot", "--help", "show --help", "--version"}) {
        SCOPED_TRACE(arguments);
        expectError(shell(std::string("qor ") + arguments + " >/dev/full"),
                    "standard output: can't be written");
        expectError(shell(std::string("qor ") + arguments + " >&-"), "standard output: can't be written");
    }
}

TEST_F(ProgramStreams, ClosedStreamIsNotTakenForAFile) {
    ProgramResult const result =
        shell("qor recode x.json --from UTF-8 --to UTF-8 -o y.json 0<&- 1>&- 2>&-; echo $?");
    EXPECT_EQ(result.out, "0\n");
    EXPECT_EQ(contentOf(folder.file("y.json")), shell("qor import x.json -o -").out);
}

TEST_F(ProgramStreams, FileThatGrowsTooLargeIsAnErrorAndGoes) {
    std::string objects = "{\"number\": 1, \"class\": \"Model\"}";
    for (int i = 2; i < 200; ++i) {
        objects += ",\n{\"number\": " + std::to_string(i) +
                   ", \"class\": \"Note\", \"attributes\": {\"value\": \"" + std::string(100, 'x') + "\"}}";
    }
    std::string links = "{\"from\": 1, \"role\": \"note\", \"to\": [2";
    for (int i = 3; i < 200; ++i) {
        links += ", " + std::to_string(i);
    }
    folder.write("large.json", file(objects, links + "]}"));
    EXPECT_EQ(shell("qor import large.json -o small.json").exitCode, 0);
    std::size_t const files = fileCount(folder);
    expectError(shell("ulimit -f 4; qor import large.json -o y.json"),
                "y.json: can't be written: File too large");
    EXPECT_EQ(fileCount(folder), files);
}

} // namespace
