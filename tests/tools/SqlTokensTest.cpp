#include "database/SqlTokens.h"

#include <gmock/gmock.h>

namespace {

using database::TokenKind;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> textsOf(std::string const& sql) {
    std::vector<std::string> texts;
    for (database::Token const& token : database::tokenize(sql)) {
        texts.emplace_back(token.text);
    }
    return texts;
}

database::Token only(std::string_view sql) {
    auto const tokens = database::tokenize(sql);
    EXPECT_EQ(tokens.size(), 1u) << sql;
    return tokens.at(0);
}

TEST(SqlTokens, BlanksAndCommentsAreLeftOut) {
    EXPECT_THAT(textsOf(" a --b 'c\n /* d \" */e/**/\t"), ElementsAre("a", "e"));
    EXPECT_THAT(textsOf(""), IsEmpty());
    EXPECT_THAT(textsOf("-- a"), IsEmpty());
    EXPECT_THAT(textsOf("/* a"), IsEmpty());
    EXPECT_THAT(textsOf("/*"), IsEmpty());
}

TEST(SqlTokens, QuotedNamesAreOneTokenOfTheirName) {
    EXPECT_THAT(textsOf("\"a b\" `c,d` [e)f] 'g--h'"), ElementsAre("\"a b\"", "`c,d`", "[e)f]", "'g--h'"));
    EXPECT_EQ(only("\"a\"\"b\"").name(), "a\"b");
    EXPECT_EQ(only("`a``b`").name(), "a`b");
    EXPECT_EQ(only("[a\"b]").name(), "a\"b");
    EXPECT_EQ(only("'it''s'").name(), "it's");
    EXPECT_EQ(only("\"\"").name(), "");
    EXPECT_EQ(only("Größe").name(), "Größe");
    EXPECT_EQ(only("\"a\"").kind, TokenKind::QUOTED_NAME);
    EXPECT_EQ(only("'a'").kind, TokenKind::STRING);
}

TEST(SqlTokens, StringsKnowTheirPrefixesAndDollarSigns) {
    EXPECT_THAT(textsOf("x'00' E'a\\'b' $$it's$$ $tag$a $$ b$tag$ X 'y'"),
                ElementsAre("x'00'", "E'a\\'b'", "$$it's$$", "$tag$a $$ b$tag$", "X", "'y'"));
    EXPECT_THAT(textsOf("$1,$2"), ElementsAre("$1", ",", "$2"));
    EXPECT_THAT(textsOf("$1$2 $1$"), ElementsAre("$1", "$2", "$1", "$")); // a tag begins with no digit
    EXPECT_THAT(textsOf("n'a\\' b"), ElementsAre("n'a\\'", "b")); // a backslash means something in E'' alone
    EXPECT_EQ(only("$$a$$").kind, TokenKind::STRING);
}

TEST(SqlTokens, NumbersAndSymbols) {
    EXPECT_THAT(textsOf("1.5e-3+.5-2"), ElementsAre("1.5e-3", "+", ".5", "-", "2"));
    EXPECT_THAT(textsOf("a.b::int>=(c)"), ElementsAre("a", ".", "b", "::", "int", ">", "=", "(", "c", ")"));
    EXPECT_EQ(only("12").kind, TokenKind::NUMBER);
}

TEST(SqlTokens, WhatIsNotClosedReachesToTheEnd) {
    EXPECT_THAT(textsOf("'a b"), ElementsAre("'a b"));
    EXPECT_THAT(textsOf("\"a''"), ElementsAre("\"a''"));
    EXPECT_THAT(textsOf("[a"), ElementsAre("[a"));
    EXPECT_THAT(textsOf("$a$b"), ElementsAre("$a$b"));
    EXPECT_THAT(textsOf("E'\\"), ElementsAre("E'\\"));
    EXPECT_EQ(only("\"a").name(), "a");
    auto const tokens = database::tokenize("(a (b)");
    EXPECT_EQ(database::closingParenthesis(tokens, 0), tokens.size() - 1);
}

TEST(SqlTokens, ParenthesesInTextsDoNotCount) {
    auto const tokens = database::tokenize("f(a, ')', \")\", (b)) c");
    EXPECT_EQ(tokens[database::closingParenthesis(tokens, 1) + 1].text, "c");
    EXPECT_EQ(database::textBetween(tokens[2], tokens[4]), "a, ')'");
}

TEST(SqlTokens, KeywordsGoByLettersWhateverTheirCase) {
    EXPECT_TRUE(only("SeLecT").is("SELECT"));
    EXPECT_FALSE(only("\"SELECT\"").is("SELECT"));
    EXPECT_TRUE(database::equalIgnoringCase("aB_1", "Ab_1"));
    EXPECT_FALSE(database::equalIgnoringCase("ab", "abc"));
    EXPECT_FALSE(database::equalIgnoringCase("ä", "Ä"));
    EXPECT_EQ(database::upperCase("aé1"), "Aé1");
    EXPECT_EQ(database::lowerCase("AÉ1"), "aÉ1");
}

} // namespace
