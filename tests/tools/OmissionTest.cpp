#include "database/Omission.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

using database::Omissions;

std::string commentOf(std::string const& text) {
    std::ostringstream out;
    database::writeComment(text, out);
    return out.str();
}

TEST(Omission, EveryLineOfACommentIsOne) {
    EXPECT_EQ(commentOf("a"), "-- a\n");
    EXPECT_EQ(commentOf("a\nDROP TABLE b\rDROP TABLE c\r\nd\n"),
              "-- a\n-- DROP TABLE b\n-- DROP TABLE c\n-- \n-- d\n-- \n");
    EXPECT_EQ(commentOf(""), "-- \n");
}

TEST(Omission, IsToldWithTheOriginalAndKept) {
    std::ostringstream out;
    Omissions list;
    database::leaveOut({"view v", "no such function", "SELECT 1\nFROM t"}, out, list);
    database::leaveOut({"sequence s", "no sequences", ""}, out, list);
    EXPECT_EQ(out.str(), "-- left out: view v: no such function\n-- SELECT 1\n-- FROM t\n"
                         "-- left out: sequence s: no sequences\n");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(database::textOf(list[1]), "left out: sequence s: no sequences");
}

TEST(Omission, ShortValuesOfExtrasStandInTheLine) {
    auto const textOf = [](database::Extra const& extra) {
        return database::textOf(database::omissionOf(extra, "table t", "SQLite"));
    };
    EXPECT_EQ(textOf({"fillfactor", "70"}), "left out: fillfactor 70 of table t: SQLite doesn't have it");
    EXPECT_EQ(textOf({"unlogged", "true"}), "left out: unlogged of table t: SQLite doesn't have it");
    EXPECT_EQ(textOf({"rule r", std::string(50, 'x')}),
              "left out: rule r of table t: SQLite doesn't have it");
    EXPECT_EQ(database::omissionOf({"rule r", "a\nb"}, "t", "SQLite").original, "a\nb");
}

} // namespace
