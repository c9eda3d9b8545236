#include "RunProgram.h"

#include <gmock/gmock.h>
#include <regex>
#include <set>
#include <sstream>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;

using Words = std::vector<std::string>;

/// What bash offers for the last of the words.
Words offered(Words words, std::string const& folder = "/") {
    words.insert(words.begin(), {"/usr/bin/env", "bash", "-c",
                                 "source \"$1\"; cd \"$2\"; shift 2\n"
                                 "COMP_WORDS=(" QOR_TOOL " \"$@\"); COMP_CWORD=$#\n"
                                 "_qor; printf '%s\\n' \"${COMPREPLY[@]}\"",
                                 "bash", QOR_SOURCE_DIR "/completions/qor.bash", folder});
    ProgramResult const result = runProgram(words);
    EXPECT_EQ(result.err, "");
    std::istringstream lines(result.out);
    Words found;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) {
            found.push_back(line);
        }
    }
    return found;
}

/// The options that a verb's help lists, in their long form; of the program itself without a verb.
Words optionsOf(Words arguments) {
    arguments.insert(arguments.begin(), QOR_TOOL);
    arguments.push_back("--help");
    std::string const help = runProgram(arguments).out;
    std::regex const option("\n  (?:-[a-z],)?(--[a-z]+)");
    Words found;
    for (std::sregex_iterator match(help.begin(), help.end(), option), end; match != end; ++match) {
        found.push_back((*match)[1]);
    }
    return found;
}

Words verbs() {
    std::string const help = runProgram({QOR_TOOL, "--help"}).out;
    std::regex const verb("\n  ([a-z]+) ");
    std::size_t const begin = help.find("Verbs:");
    std::string const list = help.substr(begin, help.find("\n\n", begin) - begin);
    Words found;
    for (std::sregex_iterator match(list.begin(), list.end(), verb), end; match != end; ++match) {
        found.push_back((*match)[1]);
    }
    return found;
}

TEST(Completion, EachVerbOfTheHelpIsOffered) {
    Words const known = verbs();
    EXPECT_THAT(known, IsSupersetOf({"import", "diff"}));
    Words expected = known;
    expected.insert(expected.end(), {"--help", "--version"});
    EXPECT_THAT(offered({""}), testing::UnorderedElementsAreArray(expected));
    EXPECT_THAT(offered({"ex"}), ElementsAre("export"));
}

TEST(Completion, EachOptionOfTheHelpIsOfferedAndNoOther) {
    EXPECT_THAT(offered({"--"}), testing::UnorderedElementsAreArray(optionsOf({})));
    for (std::string const& verb : verbs()) {
        Words const known = optionsOf({verb});
        EXPECT_THAT(known, IsSupersetOf({"--help", "--quiet"})) << verb;
        EXPECT_THAT(offered({verb, "--"}), testing::UnorderedElementsAreArray(known)) << verb;
        EXPECT_THAT(offered({verb, "--quiet", "x.json", "--"}), testing::UnorderedElementsAreArray(known));
    }
}

TEST(Completion, EachOptionOfTheHelpStandsInTheDocumentation) {
    std::string const page = contentOf(QOR_SOURCE_DIR "/docs/qor.md");
    for (std::string const& verb : verbs()) {
        std::size_t const begin = page.find("\n## qor " + verb + " ");
        ASSERT_NE(begin, std::string::npos) << verb;
        std::string const chapter = page.substr(begin, page.find("\n## ", begin + 1) - begin);
        for (std::string const& option : optionsOf({verb})) {
            if (option != "--help") { // which all verbs have
                EXPECT_THAT(chapter, testing::HasSubstr(option)) << verb;
            }
        }
    }
}

/// Expects the program to take each of the words offered, and to refuse another one.
void expectValues(Words const& command, Words const& values) {
    Words completed = command;
    completed.push_back("");
    EXPECT_THAT(offered(completed), testing::UnorderedElementsAreArray(values));
    Words run = command;
    run.insert(run.begin(), QOR_TOOL);
    run.push_back("");
    for (std::string const& value : values) {
        run.back() = value;
        EXPECT_THAT(runProgram(run).err, Not(testing::HasSubstr(command.back()))) << value;
    }
}

TEST(Completion, FormatsAreThoseThatTheProgramTakes) {
    expectValues({"export", "none.json", "--format"}, {"json", "dot", "markdown", "sql"});
    expectValues({"export", "none.json", "--format", "sql", "--dialect"}, {"sqlite", "postgresql"});
    expectValues({"diff", "none.json", "none.json", "--format"}, {"text", "json"});
}

TEST(Completion, EncodingsAreOffered) {
    EXPECT_THAT(offered({"recode", "--from", "UTF-1"}), Contains("UTF-16"));
    EXPECT_THAT(offered({"recode", "--to", "ISO-8859-1"}), Contains("ISO-8859-15"));
}

TEST(Completion, FilesAreOfferedWhereOneIsDue) {
    TemporaryFolder const folder;
    folder.write("a b.json", "");
    folder.write("shop.sqlite", "");
    std::string const path = folder.path.string();
    EXPECT_THAT(offered({"show", ""}, path), UnorderedElementsAre("a b.json", "shop.sqlite"));
    EXPECT_THAT(offered({"diff", "x", "sh"}, path), ElementsAre("shop.sqlite"));
    EXPECT_THAT(offered({"import", "x", "-o", "a"}, path), ElementsAre("a b.json"));
    EXPECT_THAT(offered({"recode", "--output", "a"}, path), ElementsAre("a b.json"));
    EXPECT_THAT(offered({"diff", "--renames", ""}, path), Contains("shop.sqlite"));
    EXPECT_THAT(offered({"show", "--path", ""}, path), IsEmpty());
}

} // namespace
