// What the verbs may write, and what they never do.

#include "RunProgram.h"
#include "Sqlite.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <sys/stat.h>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

using Words = std::vector<std::string>;

void expectRefusal(ProgramResult const& result, std::string const& problem) {
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, testing::AllOf(StartsWith("qor: "), HasSubstr(problem)));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

class QorOutput : public testing::Test {
protected:
    /// Runs the program through a shell in the folder, "qor" being its name; it mustn't wait for anything.
    ProgramResult shell(std::string const& command) const {
        return runProgram(
            {"/usr/bin/env", "bash", "-c",
             "qor() { timeout 60 " QOR_TOOL " \"$@\"; }; cd '" + folder.path.string() + "'; " + command});
    }

    static Words writersOf(std::string const& source, std::string const& output) {
        return {"qor import " + source + " -o " + output,
                "qor export " + source + " --format json -o " + output,
                "qor export " + source + " --format dot -o " + output,
                "qor export " + source + " --format markdown -o " + output,
                "qor export " + source + " --format sql -o " + output,
                "qor recode " + source + " --from UTF-8 --to UTF-8 -o " + output};
    }

    std::size_t fileCount() const {
        auto const files = std::filesystem::directory_iterator(folder.path);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    TemporaryFolder folder;
    std::string database = makeDatabase(folder.file("a.sqlite"), "CREATE TABLE t(x)");
    std::string graph = folder.file("a.json");
    bool made = shell("qor import a.sqlite -o a.json").exitCode == 0;
};

TEST_F(QorOutput, SourceIsNeverWrittenByWhateverPath) {
    ASSERT_TRUE(made);
    for (std::string const source : {"a.sqlite", "a.json"}) {
        std::string const before = contentOf(folder.file(source));
        shell("ln " + source + " hard; ln -s " + source + " soft; ln -s . here");
        std::size_t const files = fileCount();
        for (std::string const& output :
             {source, "./" + source, ".//" + source, "here/here/" + source, std::string("hard"),
              std::string("soft"), folder.file(source), "/proc/self/cwd/" + source}) {
            for (std::string const& command : writersOf(source, output)) {
                SCOPED_TRACE(command);
                expectRefusal(shell(command), ", which must not be written");
            }
        }
        expectRefusal(shell("qor import soft -o hard"),
                      "hard: is the same file as soft, which must not be written");
        EXPECT_TRUE(contentOf(folder.file(source)) == before);
        EXPECT_EQ(fileCount(), files);
        shell("rm hard soft here");
    }
}

TEST_F(QorOutput, FilesThatBelongToADatabaseAreNeverWritten) {
    shell("mkdir sub; ln -s ../a.sqlite sub/b.sqlite");
    std::size_t const files = fileCount();
    for (std::string const suffix : {"-wal", "-shm", "-journal"}) {
        for (std::string const& command : writersOf("a.sqlite", "./a.sqlite" + suffix)) {
            expectRefusal(shell(command), ", which must not be written");
        }
        expectRefusal(shell("qor import sub/b.sqlite -o a.sqlite" + suffix), ", which must not be written");
        expectRefusal(shell("qor import sub/b.sqlite -o sub/b.sqlite" + suffix),
                      ", which must not be written");
    }
    EXPECT_EQ(fileCount(), files);
}

TEST_F(QorOutput, StandardOutputThatIsASourceIsRefused) {
    folder.write("renames", "# none\n");
    for (std::string const source : {"a.sqlite", "a.json", "renames"}) {
        std::string const before = contentOf(folder.file(source));
        for (std::string const& redirection :
             {" >>" + source, " 1<>" + source, " -o /dev/stdout >>" + source}) {
            for (std::string const command :
                 {"qor import a.sqlite", "qor import a.json", "qor export a.sqlite --format sql",
                  "qor export a.json --format json", "qor recode a.json --from UTF-8 --to UTF-8"}) {
                if (command.find(source) != std::string::npos) {
                    expectRefusal(shell(command + redirection), ", which must not be written");
                }
            }
        }
        for (std::string const command : {"qor show a.sqlite", "qor show a.json --stats",
                                          "qor diff a.sqlite a.json --format json --renames renames"}) {
            if (command.find(source) != std::string::npos) {
                expectRefusal(shell(command + " >>" + source), "standard output: is the same file as " +
                                                                   source + ", which must not be written");
            }
        }
        EXPECT_TRUE(contentOf(folder.file(source)) == before);
    }
}

TEST_F(QorOutput, SourceThatIsTheStandardInputIsNeverWritten) {
    std::string const before = contentOf(graph);
    expectRefusal(shell("qor import /dev/stdin -o a.json <a.json"), ", which must not be written");
    expectRefusal(shell("qor import /dev/stdin <a.json >>a.json"), ", which must not be written");
    EXPECT_TRUE(contentOf(graph) == before);
}

TEST_F(QorOutput, IsRefusedBeforeAnythingIsRead) {
    ASSERT_EQ(mkfifo(folder.file("pipe.json").c_str(), 0600), 0); // which nobody writes into
    for (std::string const& command : writersOf("pipe.json", "a.sqlite")) {
        expectRefusal(shell(command), "a.sqlite: isn't ");
    }
    for (std::string const& command : writersOf("pipe.json", "./pipe.json")) {
        expectRefusal(shell(command), "./pipe.json: is the same file as pipe.json");
    }
    expectRefusal(shell("qor diff pipe.json mysql://x"),
                  "mysql://***: addresses of this scheme aren't supported");
}

TEST_F(QorOutput, OnlyAFileOfTheSameKindIsReplaced) {
    std::string const binary("\x7f"
                             "ELF\0\1",
                             6);
    std::map<std::string, std::string> files = {{"database", contentOf(database)},
                                                {"notes", "Buy milk.\n"},
                                                {"script", "#!/bin/sh\n# x\n"},
                                                {"data", "{\"format\": \"other\"}"},
                                                {"binary", binary}};
    Words const formats = {"json", "dot", "markdown", "sql"};
    for (std::string const& format : formats) {
        files[format] = shell("qor export a.sqlite --format " + format).out;
    }
    for (auto const& [name, content] : files) {
        for (std::string const& format : formats) {
            SCOPED_TRACE(name + " " + format);
            std::string const path = folder.write("out", content);
            ProgramResult const result = shell("qor export a.json -o out --format " + format);
            if (name == format) {
                EXPECT_EQ(result.exitCode, 0) << result.err;
            } else {
                expectRefusal(result, "out: isn't ");
                EXPECT_TRUE(contentOf(path) == content);
            }
        }
    }
    for (std::string const& format : formats) {
        folder.write("out", "");
        EXPECT_EQ(shell("qor export a.json -o out --format " + format).exitCode, 0);
        EXPECT_EQ(contentOf(folder.file("out")), files[format]);
    }
}

TEST_F(QorOutput, DevicesAndPipesCanBeWritten) {
    std::string const expected = contentOf(graph);
    for (std::string const command :
         {"qor import a.sqlite -o /dev/stdout", "qor import a.sqlite -o /dev/stdout | cat",
          "qor import a.sqlite -o - | cat", "qor import a.sqlite -o >(cat) | cat",
          "mkfifo p; cat p & qor import a.sqlite -o p; wait", "qor import a.sqlite -o /dev/fd/3 3>&1",
          "qor import a.sqlite -o /dev/null; cat a.json"}) {
        ProgramResult const result = shell(command);
        EXPECT_EQ(result.out, expected) << command;
        EXPECT_EQ(result.err, "") << command;
    }
    shell("printf 'log\\n' >log; { qor import a.sqlite -o /dev/stdout; echo end; } >>log");
    EXPECT_EQ(contentOf(folder.file("log")), "log\n" + expected + "end\n");
}

TEST_F(QorOutput, WhatAKilledRunHasLeftGoesWithTheNextOne) {
    folder.write(".qor-draft-a1B2c3", "half");
    ASSERT_EQ(shell("qor import a.sqlite -o b.json").exitCode, 0);
    EXPECT_FALSE(std::filesystem::exists(folder.file(".qor-draft-a1B2c3")));
    EXPECT_EQ(contentOf(folder.file("b.json")), contentOf(graph));
}

} // namespace
