#include "sqlite/Companions.h"

#include "TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::IsSupersetOf;

TEST(SqliteCompanions, LieBesideTheFileAndBesideWhatALinkLeadsTo) {
    TemporaryFolder const folder;
    std::filesystem::create_directory(folder.file("sub"));
    std::string const file = std::filesystem::canonical(folder.path).string() + "/sub/x";
    folder.write("sub/x", "");
    std::filesystem::create_symlink("sub/x", folder.file("link"));
    std::string const link = folder.file("link");
    EXPECT_THAT(sqlite::filesOf(link),
                IsSupersetOf({link, link + "-wal", file + "-wal", file + "-shm", file + "-journal"}));
    EXPECT_THAT(sqlite::filesOf(folder.file("none")), Contains(folder.file("none-journal")));
}

} // namespace
