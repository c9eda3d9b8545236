#include "sqlite/VirtualTable.h"

#include <gtest/gtest.h>

namespace {

using sqlite::moduleOf;

TEST(VirtualTable, ModuleStandsBehindUsing) {
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE notes USING fts5(text)"), "fts5");
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE notes using fts4"), "fts4");
}

TEST(VirtualTable, NameMayBeQuotedAndHoldAnything) {
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE \"a \"\" using b\" USING rtree(id)"), "rtree");
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE [x using y] USING [my module](id)"), "my module");
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE 'using' USING \"fts5\"(id)"), "fts5");
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE Größe USING fts5(id)"), "fts5");
}

TEST(VirtualTable, CommentsAndLineBreaksDoNotCount) {
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE t -- using that\n /* using this */ USING\n\tfts5(a)"), "fts5");
}

TEST(VirtualTable, OtherStatementsHaveNoModule) {
    EXPECT_EQ(moduleOf("CREATE TABLE t(a)"), "");
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE t"), "");
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE t USING"), "");
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE \"t"), "");
    EXPECT_EQ(moduleOf("CREATE VIRTUAL TABLE t /* never ends"), "");
    EXPECT_EQ(moduleOf(""), "");
}

} // namespace
