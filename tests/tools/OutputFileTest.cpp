#include "kit/OutputFile.h"

#include "TemporaryFolder.h"
#include "kit/ToolError.h"

#include <csignal>
#include <gmock/gmock.h>
#include <ostream>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::HasSubstr;

class OutputFile : public testing::Test {
protected:
    std::size_t fileCount() const {
        auto const files = std::filesystem::directory_iterator(folder.path);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    TemporaryFolder folder;
};

void writeNew(std::ostream& out) {
    out << "new";
}

std::string problemWith(std::string const& path) {
    try {
        kit::writeFile(path, writeNew);
    } catch (kit::ToolError const& error) {
        return error.what();
    }
    return "";
}

mode_t modeOf(std::string const& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 0777;
}

TEST_F(OutputFile, NewFileHasTheRightsThatThisProcessGives) {
    mode_t const before = umask(027);
    kit::writeFile(folder.file("x"), writeNew);
    umask(before);
    EXPECT_EQ(contentOf(folder.file("x")), "new");
    EXPECT_EQ(modeOf(folder.file("x")), 0640u);
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(OutputFile, FileOfTheLongestNameCanBeWritten) {
    kit::writeFile(folder.file(std::string(255, 'x')), writeNew);
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(OutputFile, FailureLeavesTheOldFileAlone) {
    std::string const path = folder.write("x", "old");
    EXPECT_THROW(kit::writeFile(path,
                                [](std::ostream& out) {
                                    out << "half";
                                    throw std::runtime_error("no");
                                }),
                 std::runtime_error);
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(OutputFile, LinkStaysALinkAndWhatItLeadsToIsWritten) {
    std::string const old = folder.write("old", "old");
    std::filesystem::create_directory(folder.file("sub"));
    std::filesystem::create_symlink("../old", folder.file("sub/link"));
    std::filesystem::create_symlink("later", folder.file("dangling"));
    kit::writeFile(folder.file("sub/link"), writeNew);
    kit::writeFile(folder.file("dangling"), writeNew);
    EXPECT_EQ(contentOf(old), "new");
    EXPECT_EQ(contentOf(folder.file("later")), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("sub/link")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("dangling")));
}

TEST_F(OutputFile, DeviceIsWrittenWhereItIs) {
    kit::writeFile("/dev/null", writeNew);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_THAT(problemWith("/dev/full"), HasSubstr("/dev/full: can't be written: No space left"));
}

TEST_F(OutputFile, WhatCannotBeWrittenIsTold) {
    EXPECT_THAT(problemWith(folder.path.string()), HasSubstr("can't be written: Is a directory"));
    EXPECT_THAT(problemWith(folder.file("none/x")), HasSubstr("none/x: can't be written: No such file"));
}

TEST_F(OutputFile, SignalThatEndsTheProgramLeavesNothing) {
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        std::string const path = folder.file("x");
        pid_t const child = fork();
        if (child == 0) {
            kit::writeFile(path, [signal](std::ostream& out) {
                out << "half" << std::flush;
                std::raise(signal);
            });
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal);
        EXPECT_EQ(fileCount(), 0u);
    }
}

TEST_F(OutputFile, SignalsAreLeftAsTheyWere) {
    std::signal(SIGINT, SIG_IGN);
    kit::writeFile(folder.file("x"), [](std::ostream& out) {
        std::raise(SIGINT); // ignored, here as elsewhere
        out << "whole";
    });
    EXPECT_EQ(contentOf(folder.file("x")), "whole");
    EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_IGN);
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
}

TEST_F(OutputFile, NoPathMeansTheStreamAndNothingGoesThereBeforeAllIsWritten) {
    for (char const* path : {"", "-"}) {
        std::ostringstream out;
        kit::writeOutput(path, out, writeNew);
        EXPECT_EQ(out.str(), "new");
        EXPECT_THROW(kit::writeOutput(path, out,
                                      [](std::ostream& text) {
                                          text << "half";
                                          throw std::runtime_error("no");
                                      }),
                     std::runtime_error);
        EXPECT_EQ(out.str(), "new");
    }
}

} // namespace
