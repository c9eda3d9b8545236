#include "kit/FileIdentity.h"

#include "TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using kit::followLinks;
using kit::identityOf;

class FileIdentity : public testing::Test {
protected:
    TemporaryFolder folder;
    std::string file = folder.write("file", "text");
};

TEST_F(FileIdentity, IsThatOfTheFileWhateverThePath) {
    std::filesystem::create_hard_link(file, folder.file("hard"));
    std::filesystem::create_symlink("hard", folder.file("soft"));
    ASSERT_TRUE(identityOf(file));
    EXPECT_EQ(identityOf(folder.file("hard")), identityOf(file));
    EXPECT_EQ(identityOf(folder.file("soft")), identityOf(file));
    folder.write("other", "text");
    EXPECT_FALSE(identityOf(folder.file("other")) == identityOf(file));
    int const descriptor = open(file.c_str(), O_RDONLY);
    EXPECT_EQ(identityOf(descriptor), identityOf(file));
    close(descriptor);
    EXPECT_FALSE(identityOf(descriptor));
}

TEST_F(FileIdentity, OfAFileThatIsNotThereIsItsFolderAndItsName) {
    std::filesystem::create_symlink("later", folder.file("link"));
    ASSERT_TRUE(identityOf(folder.file("later")));
    EXPECT_EQ(identityOf(folder.file("link")), identityOf(folder.file("later")));
    EXPECT_EQ(identityOf(folder.file("../" + folder.path.filename().string() + "/later")),
              identityOf(folder.file("later")));
    EXPECT_FALSE(identityOf(folder.file("latest")) == identityOf(folder.file("later")));
    EXPECT_FALSE(identityOf(folder.path.string()) == identityOf(folder.file("later")));
    EXPECT_FALSE(identityOf(folder.file("none/later")));
}

TEST_F(FileIdentity, OfAPipeIsItsOwnAndOfADeviceThereIsNone) {
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_TRUE(identityOf(folder.file("pipe")));
    EXPECT_FALSE(identityOf("/dev/null"));
}

TEST_F(FileIdentity, LinksAreFollowedToWhereTheyEnd) {
    std::filesystem::create_directory(folder.file("sub"));
    std::filesystem::create_symlink("../sub/later", folder.file("sub/link"));
    EXPECT_EQ(followLinks(file).path, file);
    EXPECT_EQ(followLinks(folder.file("sub/link")).path, folder.file("sub/../sub/later"));
    EXPECT_FALSE(followLinks(folder.file("sub/link")).isOpenFile);
}

TEST_F(FileIdentity, PathOfAnOpenFileLeadsToItsDescriptor) {
    int const descriptor = open(file.c_str(), O_RDONLY);
    std::string const number = std::to_string(descriptor);
    EXPECT_TRUE(followLinks("/dev/fd/" + number).isOpenFile);
    EXPECT_EQ(kit::descriptorOf("/dev/fd/" + number), descriptor);
    EXPECT_EQ(kit::descriptorOf("/proc/thread-self/fd/" + number), descriptor);
    EXPECT_EQ(kit::descriptorOf("/dev/stdout"), STDOUT_FILENO);
    EXPECT_EQ(kit::descriptorOf(file), -1);
    EXPECT_EQ(kit::descriptorOf("/proc/self/exe"), -1);
    EXPECT_EQ(kit::descriptorOf("/proc/self/cwd"), -1);
    close(descriptor);
    EXPECT_EQ(kit::descriptorOf("/dev/fd/" + number), -1);
}

} // namespace
