#include "kit/Draft.h"

#include "TemporaryFolder.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <ostream>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

class Draft : public testing::Test {
protected:
    std::size_t fileCount() const {
        auto const files = std::filesystem::directory_iterator(folder.path);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    void write(std::string const& name, std::string const& text = "text") const {
        kit::Draft draft(folder.file(name));
        draft.write([&](std::ostream& out) { out << text; });
        draft.place([&] { return std::filesystem::exists(folder.file(name)); });
    }

    /// A process that has written a half of its draft and waits to be killed.
    pid_t halfDone() const {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        pid_t const child = fork();
        if (child == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            for (int const each : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
                signal(each, SIG_DFL); // a process in the background inherits some of them as ignored
            kit::Draft draft(folder.file("half"));
            draft.write([&](std::ostream& out) {
                out << "half" << std::flush;
                if (::write(ready[1], "x", 1) == 1) {
                    for (;;) {
                        pause();
                    }
                }
            });
            _exit(1);
        }
        char byte = 0;
        EXPECT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
        close(ready[1]);
        return child;
    }

    TemporaryFolder folder;
};

int end(pid_t child, int signal) {
    kill(child, signal);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) ? WTERMSIG(status) : -1;
}

TEST_F(Draft, TakesItsPlaceOnlyWhenToldSo) {
    {
        kit::Draft draft(folder.file("x"));
        draft.write([](std::ostream& out) { out << "text"; });
        EXPECT_FALSE(std::filesystem::exists(folder.file("x")));
        EXPECT_EQ(fileCount(), 1u);
    }
    EXPECT_EQ(fileCount(), 0u);
    write("x");
    EXPECT_EQ(contentOf(folder.file("x")), "text");
    write("x", "other");
    EXPECT_EQ(contentOf(folder.file("x")), "other");
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(Draft, PathWithoutFolderLiesInTheCurrentOne) {
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path);
    kit::Draft draft("x");
    EXPECT_EQ(fileCount(), 1u);
    draft.place([] { return false; });
    std::filesystem::current_path(before);
    EXPECT_TRUE(std::filesystem::exists(folder.file("x")));
}

TEST_F(Draft, WhatComesToThePlaceMeanwhileIsLookedAtAgain) {
    kit::Draft draft(folder.file("x"));
    int looks = 0;
    draft.place([&] {
        if (++looks == 1) {
            folder.write("x", "somebody else's");
            return false; // since it was not there when it was looked for
        }
        return true;
    });
    EXPECT_EQ(looks, 2);
    kit::Draft refused(folder.file("x"));
    EXPECT_THROW(refused.place([]() -> bool { throw std::runtime_error("no"); }), std::runtime_error);
}

TEST_F(Draft, FailuresOfTheSystemAreThrown) {
    EXPECT_THROW(kit::Draft(folder.file("none/x")), std::system_error);
    kit::Draft draft(folder.file("x"));
    std::filesystem::create_directories(folder.file("x/y"));
    EXPECT_THROW(draft.place([] { return true; }), std::system_error);
}

// ---- how a process ends -----------------------------------------------------------------------------------

TEST_F(Draft, SignalThatEndsTheProgramLeavesNothing) {
    for (int const signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        EXPECT_EQ(end(halfDone(), signal), signal);
        EXPECT_EQ(fileCount(), 0u) << signal;
    }
}

TEST_F(Draft, SignalsAreLeftAsTheyWere) {
    std::signal(SIGINT, SIG_IGN);
    {
        kit::Draft const draft(folder.file("x"));
        std::raise(SIGINT); // ignored, here as elsewhere
        EXPECT_EQ(fileCount(), 1u);
    }
    EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_IGN);
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
}

TEST_F(Draft, WhatAKilledProcessLeavesGoesWithTheNextDraftInTheFolder) {
    EXPECT_EQ(end(halfDone(), SIGKILL), SIGKILL);
    EXPECT_EQ(end(halfDone(), SIGKILL), SIGKILL);
    EXPECT_EQ(fileCount(), 1u); // the second has removed what was left of the first
    write("x");
    EXPECT_EQ(fileCount(), 1u);
    EXPECT_EQ(contentOf(folder.file("x")), "text");
}

TEST_F(Draft, WhatALivingProcessWritesStays) {
    pid_t const alive = halfDone();
    EXPECT_EQ(fileCount(), 1u);
    write("x");
    EXPECT_EQ(fileCount(), 2u);
    EXPECT_EQ(end(alive, SIGTERM), SIGTERM);
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(Draft, OtherFilesStay) {
    for (char const* name : {".qor-draft-", ".qor-draft-1234567", "qor-draft-123456", ".qor-123456", "x"}) {
        folder.write(name, "");
    }
    std::filesystem::create_directory(folder.file(".qor-draft-folder"));
    std::filesystem::create_symlink("x", folder.file(".qor-draft-link00"));
    std::size_t const files = fileCount();
    write("x");
    EXPECT_EQ(fileCount(), files);
    if (geteuid() == 0) {
        std::string const others = folder.write(".qor-draft-123456", "");
        ASSERT_EQ(chown(others.c_str(), 12345, 12345), 0);
        write("x");
        EXPECT_TRUE(std::filesystem::exists(others));
    }
    folder.write(".qor-draft-abcdef", "");
    write("x");
    EXPECT_FALSE(std::filesystem::exists(folder.file(".qor-draft-abcdef")));
}

/// Many processes that begin, are killed and end in one folder don't remove each other's drafts.
TEST_F(Draft, ManyWritersDoNotHinderEachOther) {
    std::vector<pid_t> children;
    for (int writer = 0; writer < 6; ++writer) {
        children.push_back(fork());
        if (children.back() == 0) {
            for (int i = 0; i < 30; ++i) {
                write("x" + std::to_string(writer));
            }
            _exit(0);
        }
    }
    for (pid_t const child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(fileCount(), 6u);
}

} // namespace
