#include "kit/Progress.h"

#include "RunOnTerminal.h"
#include "RunProgram.h"
#include "Sqlite.h"

#include <chrono>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char const* begin = "{\"format\": \"qor-graph\", \"version\": 1, \"objects\": [{\"number\": 1, "
                              "\"class\": \"Model\", \"attributes\": {\"name\": \"m\"}}";
constexpr char const* rest = "], \"links\": []}\n";

/// A source that takes its time.
class SlowSource {
public:
    SlowSource() : path(folder.file("slow.json")) {
        mkfifo(path.c_str(), 0600);
        writer = std::thread([this] {
            std::ofstream out(path);
            out << begin << std::flush;
            std::this_thread::sleep_for(std::chrono::milliseconds(1800));
            out << rest;
        });
    }
    ~SlowSource() { writer.join(); }

    TemporaryFolder folder;
    std::string path;
    std::thread writer;
};

std::string lastLine(std::string const& text) {
    return text.substr(text.rfind("\x1b[K") + 3);
}

TEST(Progress, LongWorkIsShownOnATerminalAndTheLineGoesAgain) {
    SlowSource const source;
    std::string const shown = runOnTerminal({QOR_TOOL, "show", "--stats", source.path});
    EXPECT_THAT(shown, HasSubstr("\r\x1b[Kreading, 1 objects ..."));
    EXPECT_EQ(lastLine(shown), "1  Model\r\n1  in all\r\n");
}

TEST(Progress, QuietShowsNone) {
    SlowSource const source;
    std::string const shown = runOnTerminal({QOR_TOOL, "show", "--stats", "--quiet", source.path});
    EXPECT_EQ(shown, "1  Model\r\n1  in all\r\n");
}

TEST(Progress, FileOrPipeIsShownNone) {
    SlowSource const source;
    ProgramResult const result = runProgram({QOR_TOOL, "show", "--stats", source.path});
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "1  Model\n1  in all\n");
}

TEST(Progress, ShortWorkIsNotShown) {
    TemporaryFolder const folder;
    std::string const path = folder.write("x.json", std::string(begin) + rest);
    auto const start = std::chrono::steady_clock::now();
    std::string const good = runOnTerminal({QOR_TOOL, "show", "--stats", path});
    std::string const bad = runOnTerminal({QOR_TOOL, "show", folder.file("none.json")});
    if (std::chrono::steady_clock::now() - start > std::chrono::seconds(1)) {
        GTEST_SKIP() << "this machine is too slow for short work";
    }
    EXPECT_EQ(good, "1  Model\r\n1  in all\r\n");
    EXPECT_EQ(bad, "qor: " + folder.file("none.json") + ": can't be read: No such file or directory\r\n");
}

// ---- colours, which a terminal alone has too
// ---------------------------------------------------------------

TEST(Terminal, DifferenceHasColorsOnATerminalThatWantsThem) {
    TemporaryFolder const folder;
    std::string const one = makeDatabase(folder.file("one.sqlite"), "CREATE TABLE a(b)");
    std::string const two = makeDatabase(folder.file("two.sqlite"), "CREATE TABLE a(c)");
    auto const shown = [&](std::vector<std::string> const& settings) {
        std::vector<std::string> command{"/usr/bin/env"};
        command.insert(command.end(), settings.begin(), settings.end());
        command.insert(command.end(), {QOR_TOOL, "diff", one, two});
        return runOnTerminal(command);
    };
    EXPECT_THAT(shown({"-u", "NO_COLOR", "TERM=xterm"}),
                AllOf(HasSubstr("\x1b[32m+ Attribute c"), HasSubstr("\x1b[31m- Attribute b")));
    EXPECT_THAT(shown({"NO_COLOR=", "TERM=xterm"}), HasSubstr("\x1b["));
    EXPECT_THAT(shown({"NO_COLOR=1", "TERM=xterm"}),
                AllOf(HasSubstr("+ Attribute c"), Not(HasSubstr("\x1b"))));
    EXPECT_THAT(shown({"-u", "NO_COLOR", "TERM=dumb"}), Not(HasSubstr("\x1b")));
    EXPECT_THAT(runProgram({"/usr/bin/env", "TERM=xterm", QOR_TOOL, "diff", one, two}).out,
                AllOf(HasSubstr("+ Attribute c"), Not(HasSubstr("\x1b"))));
}

} // namespace
