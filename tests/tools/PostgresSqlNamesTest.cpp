#include "postgres/SqlNames.h"

#include <gmock/gmock.h>

namespace {

using postgres::forEachName;
using postgres::quoteName;
using postgres::quoteText;
using testing::ElementsAre;

TEST(PostgresSqlNames, PlainNamesStandWithoutQuotationMarks) {
    EXPECT_EQ(quoteName("ship"), "ship");
    EXPECT_EQ(quoteName("_ship_2"), "_ship_2");
    EXPECT_EQ(quoteName("name"), "name");
}

TEST(PostgresSqlNames, OtherNamesAreQuoted) {
    EXPECT_EQ(quoteName("Ship"), "\"Ship\"");
    EXPECT_EQ(quoteName("2nd"), "\"2nd\"");
    EXPECT_EQ(quoteName("a b"), "\"a b\"");
    EXPECT_EQ(quoteName("Küste"), "\"Küste\"");
    EXPECT_EQ(quoteName("küste"), "\"küste\"");
    EXPECT_EQ(quoteName("a\"b"), "\"a\"\"b\"");
    EXPECT_EQ(quoteName("a.b"), "\"a.b\"");
    EXPECT_EQ(quoteName(""), "\"\"");
}

TEST(PostgresSqlNames, KeywordsAreQuoted) {
    for (char const* const keyword : {"all", "select", "user", "between", "left", "xmltable", "with"}) {
        EXPECT_EQ(quoteName(keyword), '"' + std::string(keyword) + '"');
    }
}

TEST(PostgresSqlNames, TextsAreQuoted) {
    EXPECT_EQ(quoteText(""), "''");
    EXPECT_EQ(quoteText("it's"), "'it''s'");
    EXPECT_EQ(quoteText("a\\b\n\"c\""), "'a\\b\n\"c\"'");
}

std::vector<std::string> namesIn(std::string_view sql) {
    std::vector<std::string> names;
    forEachName(sql, [&](std::vector<std::string> const& parts) {
        std::string name;
        for (std::string const& part : parts) {
            name += (name.empty() ? "" : "|") + part;
        }
        names.push_back(name);
    });
    return names;
}

TEST(PostgresSqlNames, AreFoundInStatements) {
    EXPECT_THAT(namesIn("a.b(c) + \"D e\".\"f\"\"g\".h"), ElementsAre("a|b", "c", "D e|f\"g|h"));
    EXPECT_THAT(namesIn("nextval('harbour.seq'::regclass)"),
                ElementsAre("nextval", "harbour|seq", "regclass"));
    EXPECT_THAT(namesIn("küste.größe"), ElementsAre("küste|größe"));
}

TEST(PostgresSqlNames, NumbersAndSignsAreNone) {
    EXPECT_THAT(namesIn(""), ElementsAre());
    EXPECT_THAT(namesIn("1e5 + 0x1F - .5 . , a."), ElementsAre("a"));
    EXPECT_THAT(namesIn("\"open"), ElementsAre("open"));
    EXPECT_THAT(namesIn("\""), ElementsAre(""));
}

TEST(PostgresSqlNames, AnOperatorIsTheLastPartOfAName) {
    std::vector<std::vector<std::string>> found;
    forEachName("OPERATOR(s.<=) s.f(\"S t\".@-(a)) b.* 1.5 c.",
                [&](auto const& parts) { found.push_back(parts); });
    EXPECT_THAT(found, ElementsAre(ElementsAre("OPERATOR"), ElementsAre("s", "<="), ElementsAre("s", "f"),
                                   ElementsAre("S t", "@-"), ElementsAre("a"), ElementsAre("b", "*"),
                                   ElementsAre("c")));
}

} // namespace
