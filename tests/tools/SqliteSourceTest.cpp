#include "sqlite/SqliteSource.h"

#include "Sqlite.h"
#include "TemporaryFolder.h"
#include "kit/ToolError.h"

#include <gmock/gmock.h>
#include <qor/QORModel.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Loaded {
    kit::Graph graph;
    std::vector<std::string> remarks;
};

Loaded load(std::string const& path) {
    Loaded loaded;
    loaded.graph =
        sqlite::sqliteSource().load(path, {[&](std::string const& line) { loaded.remarks.push_back(line); },
                                           [](std::string_view) { return std::string("shown"); }});
    return loaded;
}

TEST(SqliteSource, IsWhateverNothingElseIs) {
    EXPECT_TRUE(sqlite::sqliteSource().recognises({"a", ""}));
    EXPECT_EQ(sqlite::sqliteSource().shown, nullptr);
}

TEST(SqliteSource, PathIsShownWithoutSecretsAndRemarksAreTold) {
    TemporaryFolder const folder;
    Loaded const fine = load(makeDatabase(folder.file("a.sqlite"), "CREATE TABLE t(a)"));
    EXPECT_STREQ(static_cast<QORModel&>(fine.graph.root()).getName().chars, "shown");
    EXPECT_THAT(fine.remarks, IsEmpty());
    Loaded const odd = load(makeDatabase(folder.file("b.sqlite"), "CREATE TABLE t(a);"
                                                                  "CREATE VIEW v AS SELECT * FROM t;"
                                                                  "DROP TABLE t"));
    EXPECT_THAT(odd.remarks, ElementsAre(HasSubstr("shown: view v: ")));
}

TEST(SqliteSource, FileThatIsNoDatabaseIsRefused) {
    TemporaryFolder const folder;
    EXPECT_THROW(load(folder.write("a", "text")), kit::ToolError);
    EXPECT_THROW(load(folder.file("none")), kit::ToolError);
}

} // namespace
