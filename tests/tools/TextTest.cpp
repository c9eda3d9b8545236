#include "kit/Text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// The characters for which a function is true.
std::string those(bool (*is)(char)) {
    std::string found;
    for (int character = 0; character < 256; ++character) {
        if (is(static_cast<char>(character))) {
            found += static_cast<char>(character);
        }
    }
    return found;
}

TEST(Text, CharactersAreOfTheirClassesWhateverTheLocale) {
    EXPECT_EQ(those(kit::isBlank), "\t\n\v\f\r ");
    EXPECT_EQ(those(kit::isDigit), "0123456789");
    EXPECT_EQ(those(kit::isLetter), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(those(kit::isControl).size(), 33u);
    EXPECT_EQ(those(kit::isControl).back(), '\x7f');
    EXPECT_EQ(those(kit::isBeyondAscii).size(), 128u);
    EXPECT_EQ(those(kit::isBeyondAscii).front(), '\x80');
}

TEST(Text, HexadecimalDigitHasItsValue) {
    std::string const digits = "0123456789abcdef";
    for (int character = 0; character < 256; ++character) {
        auto const place = digits.find(kit::lowerCase(static_cast<char>(character)));
        int const value = place == std::string::npos ? -1 : static_cast<int>(place);
        EXPECT_EQ(kit::hexDigit(static_cast<char>(character)), value) << character;
    }
}

TEST(Text, OnlyLettersOfAsciiHaveACase) {
    EXPECT_EQ(kit::upperCase("aé1[z{"), "Aé1[Z{");
    EXPECT_EQ(kit::lowerCase("AÉ1[Z@"), "aÉ1[z@");
    EXPECT_TRUE(kit::equalIgnoringCase("aB_1", "Ab_1"));
    EXPECT_FALSE(kit::equalIgnoringCase("ab", "abc"));
    EXPECT_FALSE(kit::equalIgnoringCase("@", "`"));
    EXPECT_FALSE(kit::equalIgnoringCase("ä", "Ä"));
}

TEST(Text, TextsAreJoinedWithOneBetweenThem) {
    EXPECT_EQ(kit::joined({}, ", "), "");
    EXPECT_EQ(kit::joined({"a"}, ", "), "a");
    EXPECT_EQ(kit::joined({"a", "", "b"}, ", "), "a, , b");
    EXPECT_EQ(kit::joined({"", "a"}, "/"), "/a");
}

} // namespace
