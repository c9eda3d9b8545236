#include "kit/OutputFile.h"

#include "Sqlite.h"
#include "TemporaryFolder.h"
#include "kit/ToolError.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <ostream>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using testing::HasSubstr;

using Paths = std::vector<std::string>;

bool beginsWithNew(std::istream& in) {
    std::string word;
    return in >> word && word == "new";
}

constexpr kit::FileKind news = {"a text of news", beginsWithNew};

void writeNew(std::ostream& out) {
    out << "new text";
}

void writeTo(std::string const& path, Paths const& sources = {},
             std::function<void(std::ostream&)> const& write = writeNew) {
    std::ostringstream standard;
    kit::Output(path, news, sources, standard).write(write);
}

std::string problemWith(std::string const& path, Paths const& sources = {},
                        std::function<void(std::ostream&)> const& write = writeNew) {
    try {
        writeTo(path, sources, write);
    } catch (kit::ToolError const& error) {
        return error.what();
    }
    return "";
}

/// What is refused when nothing has been read yet.
std::string refusalOf(std::string const& path, Paths const& sources = {}) {
    std::ostringstream standard;
    try {
        kit::Output(path, news, sources, standard);
    } catch (kit::ToolError const& error) {
        return error.what();
    }
    return "";
}

struct stat statusOf(std::string const& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status;
}

class OutputFile : public testing::Test {
protected:
    std::size_t fileCount() const {
        auto const files = std::filesystem::directory_iterator(folder.path);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    /// Runs a part of a test in a process of its own, which must end well.
    template <class Part>
    void inChild(Part part) const {
        pid_t const child = fork();
        if (child == 0) {
            part();
            _exit(testing::Test::HasFailure() ? 1 : 0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }

    TemporaryFolder folder;
};

// ---- a file is written whole or not at all ----------------------------------------------------------------

TEST_F(OutputFile, NewFileHasTheRightsThatThisProcessGives) {
    mode_t const before = umask(027);
    writeTo(folder.file("x"));
    umask(before);
    EXPECT_EQ(contentOf(folder.file("x")), "new text");
    EXPECT_EQ(statusOf(folder.file("x")).st_mode & 0777, 0640u);
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(OutputFile, ReplacedFileKeepsItsRightsAndItsOwner) {
    std::string const path = folder.write("x", "new but old");
    constexpr uid_t somebody = 12345;
    bool const isRoot = geteuid() == 0;
    ASSERT_EQ(chown(path.c_str(), isRoot ? somebody : geteuid(), isRoot ? somebody : getegid()), 0);
    ASSERT_EQ(chmod(path.c_str(), 0614), 0);
    writeTo(path);
    EXPECT_EQ(contentOf(path), "new text");
    EXPECT_EQ(statusOf(path).st_mode & 0777, 0614u);
    EXPECT_EQ(statusOf(path).st_uid, isRoot ? somebody : geteuid());
    EXPECT_EQ(statusOf(path).st_gid, isRoot ? somebody : getegid());
}

TEST_F(OutputFile, FileOfTheLongestNameCanBeWritten) {
    writeTo(folder.file(std::string(255, 'x')));
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(OutputFile, FailureLeavesTheOldFileAlone) {
    std::string const path = folder.write("x", "new but old");
    EXPECT_THROW(writeTo(path, {},
                         [](std::ostream& out) {
                             out << "half";
                             throw std::runtime_error("no");
                         }),
                 std::runtime_error);
    EXPECT_EQ(contentOf(path), "new but old");
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(OutputFile, LinkStaysALinkAndWhatItLeadsToIsWritten) {
    std::string const old = folder.write("old", "new but old");
    std::filesystem::create_directory(folder.file("sub"));
    std::filesystem::create_symlink("../old", folder.file("sub/link"));
    std::filesystem::create_symlink("later", folder.file("dangling"));
    writeTo(folder.file("sub/link"));
    writeTo(folder.file("dangling"));
    EXPECT_EQ(contentOf(old), "new text");
    EXPECT_EQ(contentOf(folder.file("later")), "new text");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("sub/link")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("dangling")));
}

TEST_F(OutputFile, RingOfLinksIsRefused) {
    std::filesystem::create_symlink("b", folder.file("a"));
    std::filesystem::create_symlink("a", folder.file("b"));
    EXPECT_THAT(refusalOf(folder.file("a")),
                HasSubstr("can't be written: Too many levels of symbolic links"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("a")));
}

TEST_F(OutputFile, WhatCannotBeWrittenIsTold) {
    EXPECT_THAT(refusalOf(folder.path.string()), HasSubstr("can't be written: Is a directory"));
    EXPECT_THAT(problemWith(folder.file("none/x")), HasSubstr("none/x: can't be written: No such file"));
    EXPECT_THAT(problemWith(folder.write("x", "new") + "/"), HasSubstr("can't be written: Not a directory"));
    EXPECT_THAT(problemWith(folder.file("y/")), HasSubstr("y/: can't be written: "));
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(OutputFile, NeitherAFolderNorAFileThatMayNotBeWrittenIs) {
    std::string const path = folder.write("x", "new but old");
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    ASSERT_EQ(chmod(folder.path.c_str(), 0555), 0);
    inChild([&] {
        if (geteuid() == 0) { // who may write everything
            ASSERT_EQ(setegid(12345), 0);
            ASSERT_EQ(seteuid(12345), 0);
        }
        EXPECT_THAT(refusalOf(path), HasSubstr("x: can't be written: Permission denied"));
        EXPECT_THAT(problemWith(folder.file("y")), HasSubstr("y: can't be written: Permission denied"));
    });
    ASSERT_EQ(chmod(folder.path.c_str(), 0755), 0);
    EXPECT_EQ(contentOf(path), "new but old");
    EXPECT_EQ(fileCount(), 1u);
}

// ---- what isn't an ordinary file --------------------------------------------------------------------------

TEST_F(OutputFile, DeviceIsWrittenWhereItIs) {
    writeTo("/dev/null");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_THAT(problemWith("/dev/full"), HasSubstr("/dev/full: can't be written: No space left"));
}

TEST_F(OutputFile, PipeIsWrittenWhereItIs) {
    std::string const path = folder.file("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::string text;
    std::thread reader([&] { text = contentOf(path); });
    writeTo(path);
    reader.join();
    EXPECT_EQ(text, "new text");
    EXPECT_TRUE(std::filesystem::is_fifo(path));
}

TEST_F(OutputFile, PathOfAnOpenFileIsWrittenAtItsPlaceInThere) {
    std::string const path = folder.write("log", "before ");
    int const file = open(path.c_str(), O_WRONLY | O_APPEND);
    for (std::string const start : {"/dev/fd/", "/proc/self/fd/"}) {
        writeTo(start + std::to_string(file));
    }
    std::filesystem::create_symlink("/dev/fd/" + std::to_string(file), folder.file("link"));
    writeTo(folder.file("link"));
    close(file);
    EXPECT_EQ(contentOf(path), "before new textnew textnew text");
    EXPECT_EQ(fileCount(), 2u);
}

TEST_F(OutputFile, NoPathMeansTheStreamAndNothingGoesThereBeforeAllIsWritten) {
    for (char const* path : {"", "-"}) {
        std::ostringstream out;
        kit::Output const output(path, news, {}, out);
        output.write(writeNew);
        EXPECT_EQ(out.str(), "new text");
        EXPECT_THROW(output.write([](std::ostream& text) {
            text << "half";
            throw std::runtime_error("no");
        }),
                     std::runtime_error);
        EXPECT_EQ(out.str(), "new text");
    }
}

TEST_F(OutputFile, TextThatMemoryHasNoRoomForIsNotWrittenInPart) {
    std::ostringstream out;
    auto const run = [&] {
        kit::Output("", news, {}, out).write([](std::ostream& text) {
            text << "half of it";
            text.setstate(std::ios::badbit); // as a stream does that finds no memory
        });
    };
    EXPECT_THROW(run(), std::ios_base::failure);
    EXPECT_EQ(out.str(), "");
}

// ---- a file of another kind is never replaced -------------------------------------------------------------

TEST_F(OutputFile, FileOfItsKindOrAnEmptyOneIsReplaced) {
    for (char const* content : {"new", "new\nlong text", ""}) {
        std::string const path = folder.write("x", content);
        EXPECT_EQ(problemWith(path), "");
        EXPECT_EQ(contentOf(path), "new text");
    }
}

TEST_F(OutputFile, FileOfAnotherKindIsRefusedAndStays) {
    std::string const binary("new\0x", 5);
    for (std::string const& content : {std::string("old"), std::string(" "), std::string("newer"), binary,
                                       "new " + std::string(100000, 'x') + binary}) {
        std::string const path = folder.write("x", content);
        EXPECT_THAT(refusalOf(path), HasSubstr("x: isn't a text of news, so it isn't replaced"));
        EXPECT_TRUE(contentOf(path) == content);
    }
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(OutputFile, DatabaseThatComesUpInBetweenStays) {
    std::string const path = folder.file("x");
    EXPECT_THAT(problemWith(path, {},
                            [&](std::ostream& out) {
                                writeNew(out);
                                makeDatabase(path, "CREATE TABLE a(b)");
                            }),
                HasSubstr("x: isn't a text of news"));
    std::string const database = contentOf(path);
    EXPECT_THAT(database, testing::StartsWith("SQLite format 3"));
    std::string const other = folder.write("y", "new but old");
    EXPECT_THAT(problemWith(other, {},
                            [&](std::ostream& out) {
                                writeNew(out);
                                std::filesystem::copy_file(path, other,
                                                           std::filesystem::copy_options::overwrite_existing);
                            }),
                HasSubstr("y: isn't a text of news"));
    EXPECT_TRUE(contentOf(other) == database);
    EXPECT_EQ(fileCount(), 2u);
}

TEST_F(OutputFile, FolderOrLinkThatComesUpInBetweenStays) {
    EXPECT_THAT(problemWith(folder.file("x"), {},
                            [&](std::ostream&) { std::filesystem::create_directory(folder.file("x")); }),
                HasSubstr("x: can't be written: Is a directory"));
    EXPECT_THAT(problemWith(folder.file("y"), {},
                            [&](std::ostream&) { std::filesystem::create_symlink("x", folder.file("y")); }),
                HasSubstr("y: can't be written: "));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("y")));
    EXPECT_EQ(fileCount(), 2u);
}

// ---- a source is never written ----------------------------------------------------------------------------

TEST_F(OutputFile, SourceIsRefusedByWhateverPath) {
    std::string const source = folder.write("source", "new but a source");
    std::filesystem::create_directory(folder.file("sub"));
    std::filesystem::create_hard_link(source, folder.file("hard"));
    std::filesystem::create_symlink("source", folder.file("soft"));
    std::filesystem::create_symlink("soft", folder.file("softer"));
    std::filesystem::create_directory_symlink(".", folder.file("here"));
    std::string const path = folder.path.string();
    int const file = open(source.c_str(), O_RDWR);
    std::string const number = std::to_string(file);
    for (std::string const& other :
         {source, path + "/./source", path + "//source", path + "/sub/../source", path + "/hard",
          path + "/soft", path + "/softer", path + "/here/here/source", "/dev/fd/" + number,
          "/proc/self/fd/" + number, "/proc/" + std::to_string(getpid()) + "/fd/" + number}) {
        for (auto const& [output, input] : {std::pair(other, source), std::pair(source, other)}) {
            EXPECT_THAT(refusalOf(output, {"none", input}), HasSubstr(", which must not be written"))
                << output << " " << input;
        }
    }
    close(file);
    EXPECT_EQ(contentOf(source), "new but a source");
    EXPECT_EQ(refusalOf(source, {"none"}), "");
}

TEST_F(OutputFile, SourceThatIsNotThereYetIsRefusedTheSame) {
    std::filesystem::create_symlink("later", folder.file("link"));
    std::filesystem::create_directory_symlink(".", folder.file("here"));
    for (char const* const output : {"later", "link", "here/later", "./here//later", "here/link"}) {
        for (char const* const input : {"later", "link", "here/later"}) {
            EXPECT_THAT(refusalOf(folder.file(output), {folder.file(input)}),
                        HasSubstr("must not be written"))
                << output << " " << input;
        }
    }
    EXPECT_EQ(refusalOf(folder.file("later"), {folder.file("latest"), folder.file("none/later")}), "");
}

TEST_F(OutputFile, SourceThatComesToTheOutputsPlaceStays) {
    std::string const source = folder.write("source", "new but a source");
    std::string const path = folder.file("x");
    EXPECT_THAT(
        problemWith(path, {source}, [&](std::ostream&) { std::filesystem::create_hard_link(source, path); }),
        HasSubstr("is the same file as"));
    EXPECT_EQ(contentOf(source), "new but a source");
    EXPECT_EQ(contentOf(path), "new but a source");
}

TEST_F(OutputFile, StandardOutputThatIsASourceIsRefused) {
    std::string const source = folder.write("source", "new but a source");
    inChild([&] {
        dup2(open(source.c_str(), O_WRONLY | O_APPEND), STDOUT_FILENO);
        for (char const* path : {"", "-", "/dev/stdout", "/dev/fd/1"}) {
            EXPECT_THAT(refusalOf(path, {source}), HasSubstr("must not be written")) << path;
            EXPECT_EQ(refusalOf(path, {"none"}), "") << path;
        }
    });
    EXPECT_EQ(contentOf(source), "new but a source");
}

/// A terminal is read and written by the same path.
TEST_F(OutputFile, DeviceMayBeASourceToo) {
    EXPECT_EQ(problemWith("/dev/null", {"/dev/null"}), "");
}

} // namespace
