#include <qor/QOREncodingConverter.h>

#include "AllocationControl.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using Converter = std::unique_ptr<QOREncodingConverter>;

Converter converter(char const* name) {
    return Converter(QOREncodingConverter::create(name));
}

/// Converts one text and expects the counters to tell success.
std::string converted(char const* from, char const* to, std::string const& text) {
    Converter const source = converter(from);
    Converter const target = converter(to);
    EXPECT_NE(source, nullptr) << from;
    EXPECT_NE(target, nullptr) << to;
    int first = 10;
    int errors = 20;
    QORString const result =
        convertEncoding(QORString(text.c_str()), source.get(), target.get(), first, errors);
    EXPECT_EQ(first, 11) << from << " to " << to;
    EXPECT_EQ(errors, 20) << from << " to " << to;
    return result.chars;
}

/// Expects the text to be refused and given unchanged.
void expectRefused(char const* from, char const* to, std::string const& text) {
    Converter const source = converter(from);
    Converter const target = converter(to);
    ASSERT_NE(source, nullptr) << from;
    ASSERT_NE(target, nullptr) << to;
    for (int round = 0; round < 2; ++round) {
        int first = 10;
        int errors = 20;
        QORString const result =
            convertEncoding(QORString(text.c_str()), source.get(), target.get(), first, errors);
        EXPECT_EQ(first, 10) << from << " to " << to;
        EXPECT_EQ(errors, 21) << from << " to " << to;
        EXPECT_EQ(std::string(result.chars), text);
    }
}

std::string allLatin1() {
    std::string text;
    for (int code = 1; code < 256; ++code) {
        text += static_cast<char>(code);
    }
    return text;
}

} // namespace

TEST(QOREncodingConverter, KnowsTheEncodingsOfTheCLibrary) {
    for (char const* name :
         {"UTF-8", "utf8", "ISO-8859-1", "iso-8859-1", "Latin1", "ISO-8859-15", "windows-1252", "cp1252",
          "ASCII", "SHIFT_JIS", "EUC-JP", "KOI8-R", "UTF-16", "UTF-32", "IBM037"}) {
        Converter const made = converter(name);
        ASSERT_NE(made, nullptr) << name;
        EXPECT_STREQ(made->getName(), name);
    }
}

TEST(QOREncodingConverter, UnknownNamesGiveNull) {
    for (char const* name : {"", "NO-SUCH-ENCODING", "ASCII//TRANSLIT", "ASCII//IGNORE", "UTF-8//IGNORE"}) {
        EXPECT_EQ(converter(name), nullptr) << name;
    }
    EXPECT_EQ(QOREncodingConverter::create(nullptr), nullptr);
    EXPECT_NE(converter("KOI8-R//"), nullptr) << "an empty suffix changes nothing";
}

// The C library takes all of these: for the encoding of the locale, or for what is left without the odd
// signs.
TEST(QOREncodingConverter, WhatIsNoNameGivesNull) {
    for (char const* name : {"/",
                             "//",
                             "///",
                             "/UTF-8",
                             "//UTF-8",
                             ",",
                             ",,",
                             " ",
                             ".",
                             "-",
                             "_",
                             ":",
                             "(",
                             "+",
                             "\x01",
                             "\x1B",
                             "\xFF",
                             "UTF-8,",
                             "UTF-8,IGNORE",
                             "KOI8-R//,",
                             "UTF-8 ",
                             " UTF-8",
                             "UTF-8\n",
                             "\tUTF-8",
                             "UTF\xFF-8",
                             "KOI 8-R",
                             "KOI8-R*",
                             "@KOI8-R",
                             "KOI8-R()",
                             "K(OI8-R",
                             "\xC3\xA9KOI8-R",
                             "KOI8-R\x7F",
                             "UTF-8//TRANSLIT//IGNORE",
                             "UTF-8///",
                             "UTF-8//x"}) {
        EXPECT_EQ(converter(name), nullptr) << name;
    }
    for (char const* name : {"ISO_8859-1:1987", "T.61-8BIT", "ISO-10646/UCS2/", "NF_Z_62-010_(1973)"}) {
        EXPECT_NE(converter(name), nullptr) << name;
    }
}

TEST(QOREncodingConverter, AVeryLongNameGivesNull) {
    for (char const filling : {'A', '8', '/', ',', ' ', '\xFF'}) {
        EXPECT_EQ(converter(("UTF-8" + std::string(1 << 20, filling)).c_str()), nullptr) << filling;
    }
}

TEST(ConvertEncoding, ConvertsBetweenLatin1AndUtf8) {
    EXPECT_EQ(converted("ISO-8859-1", "UTF-8",
                        "Stra\xDF"
                        "e \xE4\xF6\xFC"),
              "Stra\xC3\x9F"
              "e \xC3\xA4\xC3\xB6\xC3\xBC");
    EXPECT_EQ(converted("UTF-8", "ISO-8859-1",
                        "Stra\xC3\x9F"
                        "e"),
              "Stra\xDF"
              "e");
    std::string const utf8 = converted("latin1", "utf-8", allLatin1());
    EXPECT_EQ(utf8.size(), 127U + 2 * 128U);
    EXPECT_EQ(converted("UTF8", "L1", utf8), allLatin1());
    EXPECT_EQ(converted("ISO-8859-1", "ISO-8859-1", allLatin1()), allLatin1());
}

TEST(ConvertEncoding, OwnPathsAgreeWithTheCLibrary) {
    // This alias names the same encoding but takes the C library's way.
    std::string const byLibrary = converted("ISO_8859-1:1987", "UTF-8", allLatin1());
    EXPECT_EQ(byLibrary, converted("ISO-8859-1", "UTF-8", allLatin1()));
    EXPECT_EQ(converted("UTF-8", "ISO_8859-1:1987", byLibrary), allLatin1());
    EXPECT_EQ(converted("ISO-8859-1", "ISO_8859-1:1987", allLatin1()), allLatin1());
}

TEST(ConvertEncoding, ConvertsThroughOtherEncodings) {
    EXPECT_EQ(converted("windows-1252", "UTF-8", "\x80 20"), "\xE2\x82\xAC 20");
    EXPECT_EQ(converted("UTF-8", "ISO-8859-15", "\xE2\x82\xAC"), "\xA4");
    EXPECT_EQ(converted("cp1252", "ISO-8859-15", "\x80"), "\xA4");
    EXPECT_EQ(converted("SHIFT_JIS", "EUC-JP", "\x93\xFA\x96\x7B"), "\xC6\xFC\xCB\xDC");
    EXPECT_EQ(converted("UTF-8", "KOI8-R", "\xD0\x9F"), "\xF0");
    EXPECT_EQ(converted("IBM037", "UTF-8", "\xC1\xC2\xF1"), "AB1");
    EXPECT_EQ(converted("UTF-8", "IBM037", "AB1"), "\xC1\xC2\xF1");
}

TEST(ConvertEncoding, StatefulEncodingsStartAnewForEachText) {
    Converter const source = converter("UTF-8");
    Converter const target = converter("ISO-2022-JP");
    ASSERT_NE(target, nullptr);
    int first = 0;
    int errors = 0;
    for (int round = 1; round <= 3; ++round) {
        QORString const there = convertEncoding("\xE6\x97\xA5", source.get(), target.get(), first, errors);
        EXPECT_STREQ(there.chars, "\x1B$BF|\x1B(B");
        QORString const back = convertEncoding(there, target.get(), source.get(), first, errors);
        EXPECT_STREQ(back.chars, "\xE6\x97\xA5");
        EXPECT_EQ(first, 2 * round);
        // A text that ends in the middle of a character must not disturb the next one.
        convertEncoding("\x1B$BF", target.get(), source.get(), first, errors);
        EXPECT_EQ(errors, round);
        int later = 0;
        QORString const next = convertEncoding("ab\x1B$BF|\x1B(B", target.get(), source.get(), later, errors);
        EXPECT_STREQ(next.chars, "ab\xE6\x97\xA5");
    }
}

TEST(ConvertEncoding, CharactersHeldBackByTheDecoderAreGiven) {
    // The last letter may combine with a mark that follows.
    EXPECT_EQ(converted("CP1258", "UTF-8",
                        "\xE4"
                        "a"),
              "\xC3\xA4"
              "a");
    EXPECT_EQ(converted("CP1255", "UTF-8", "\xE9"), "\xD7\x99");
}

TEST(ConvertEncoding, PlainAsciiIsGivenUnchangedAndCounted) {
    std::string const text = "plain text, longer than a machine word";
    for (char const* from : {"UTF-8", "ISO-8859-1", "ASCII", "cp1252", "EUC-JP"}) {
        for (char const* to : {"UTF-8", "ISO-8859-1", "ASCII", "cp1252", "EUC-JP"}) {
            EXPECT_EQ(converted(from, to, text), text);
        }
    }
}

TEST(ConvertEncoding, AsciiIsConvertedIfAnEncodingDiffersFromIt) {
    EXPECT_EQ(converted("UTF-8", "UTF-7", "a~b"), "a+AH4-b");
    EXPECT_EQ(converted("UTF-7", "UTF-8", "a+AH4-b"), "a~b");
    EXPECT_EQ(converted("IBM037", "ISO-8859-1", "\x81"), "a");
    EXPECT_EQ(converted("ISO-2022-JP", "UTF-8", "a\x1B$BF|\x1B(Bb"), "a\xE6\x97\xA5"
                                                                     "b");
    EXPECT_EQ(converted("UTF-8", "ISO-8859-1", "\x0E\x0F\x1B"), "\x0E\x0F\x1B");
    EXPECT_EQ(converted("UTF-8", "ISO-8859-1", "a\x0E"), "a\x0E");
    EXPECT_EQ(converted("UTF-8", "ISO-8859-1", "a\x0F"), "a\x0F");
}

TEST(ConvertEncoding, FindsANonAsciiByteAtAnyPlace) {
    for (std::size_t size = 1; size < 30; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            std::string text(size, 'a');
            text[place] = '\xE4';
            std::string expected(size, 'a');
            expected.replace(place, 1, "\xC3\xA4");
            ASSERT_EQ(converted("ISO-8859-1", "UTF-8", text), expected);
        }
    }
}

TEST(ConvertEncoding, EmptyTextIsConvertedToNothing) {
    for (char const* to : {"UTF-8", "ISO-8859-1", "UTF-16", "ISO-2022-KR"}) {
        EXPECT_EQ(converted("UTF-8", to, ""), "");
    }
}

TEST(ConvertEncoding, InvalidTextsAreRefused) {
    for (char const* text : {"\x80", "a\xC3", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80",
                             "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80",
                             "\xC3(", "\xE2\x82", "\xF0\x9F\x98", "\xFF", "text\xE4"}) {
        expectRefused("UTF-8", "UTF-8", text);
        expectRefused("UTF-8", "ISO-8859-1", text);
        expectRefused("UTF-8", "UTF-7", text);
    }
    expectRefused("ASCII", "UTF-8", "\xE4");
    expectRefused("SHIFT_JIS", "UTF-8", "\x93");
    expectRefused("EUC-JP", "SHIFT_JIS", "\xC6");
}

TEST(ConvertEncoding, ValidUtf8PassesUnchanged) {
    for (char const* text : {"\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                             "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF",
                             "a\xE2\x82\xAC"
                             "b"}) {
        EXPECT_EQ(converted("UTF-8", "utf8", text), text);
    }
}

TEST(ConvertEncoding, CharactersThatTheTargetLacksAreRefused) {
    expectRefused("UTF-8", "ISO-8859-1", "\xE2\x82\xAC");
    expectRefused("UTF-8", "ISO-8859-1", "\xC4\x80");
    expectRefused("UTF-8", "ASCII", "caf\xC3\xA9");
    expectRefused("ISO-8859-1", "ASCII", "caf\xE9");
    expectRefused("cp1252", "ISO-8859-1", "\x80");
}

TEST(ConvertEncoding, CharactersAreNotDroppedSilently) {
    std::string const tagged = "a\xF3\xA0\x81\x81"
                               "b";
    expectRefused("UTF-8", "ASCII", tagged);
    expectRefused("UTF-8", "cp1252", tagged);
    expectRefused("UTF-8", "ISO-8859-1", tagged);
    EXPECT_EQ(converted("GB18030", "UTF-8", converted("UTF-8", "GB18030", tagged)), tagged);
}

TEST(ConvertEncoding, CharactersThatTheTargetUnderstandsOtherwiseAreRefused) {
    for (char const* from : {"UTF-8", "ISO-8859-1", "ASCII", "cp1252"}) {
        expectRefused(from, "ISO-2022-JP", "a\x1B$BF|\x1B(B");
        expectRefused(from, "ISO-2022-JP", "\x1B");
        expectRefused(from, "ISO-2022-KR",
                      "a\x0E"
                      "b\x0F");
        expectRefused(from, "ISO-2022-CN", "\x0E");
        expectRefused(from, "IBM930", "a\x0E");
        expectRefused(from, "IBM930", "~"); // which it writes as an overline
    }
    EXPECT_EQ(converted("UTF-8", "UTF-7", "1+1"), "1+-1");
    EXPECT_EQ(converted("UTF-8", "ISO-2022-JP", "a\x01~\\"), "a\x01~\\");
}

TEST(ConvertEncoding, AMarkThatTheTargetMergesWithItsLetterIsRefused) {
    expectRefused("UTF-8", "CP1258", "a\xCC\x81");
    EXPECT_EQ(converted("UTF-8", "CP1258", "\xC3\xA1"), "\xE1");
}

TEST(ConvertEncoding, CodesBeyondUnicodeAreRefused) {
    expectRefused("UCS-4BE", "UTF-8", "\x01\x02\x03\x04");
    expectRefused("UCS-4LE", "UCS-4BE", "\x04\x03\x02\x01");
}

TEST(ConvertEncoding, ResultsThatHoldANulAreRefused) {
    expectRefused("UTF-8", "UTF-16", "text");
    expectRefused("UTF-8", "UTF-16LE", "t");
    expectRefused("UTF-8", "UTF-32", "text");
    expectRefused("ISO-8859-1", "UCS-4", "\xE4");
}

TEST(ConvertEncoding, NullConverterPassesTheTextUncounted) {
    Converter const utf8 = converter("UTF-8");
    int first = 1;
    int errors = 2;
    QORString const text("\xE4\xFF");
    EXPECT_STREQ(convertEncoding(text, nullptr, utf8.get(), first, errors).chars, text.chars);
    EXPECT_STREQ(convertEncoding(text, utf8.get(), nullptr, first, errors).chars, text.chars);
    EXPECT_STREQ(convertEncoding(text, nullptr, nullptr, first, errors).chars, text.chars);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(errors, 2);
}

TEST(ConvertEncoding, LongTextsGrowTheResult) {
    std::string latin1;
    std::string utf8;
    for (int i = 0; i < 20000; ++i) {
        latin1 += "\xE4";
        utf8 += "\xC3\xA4";
    }
    EXPECT_EQ(converted("ISO-8859-1", "UTF-8", latin1), utf8);
    EXPECT_EQ(converted("cp1252", "UTF-8", latin1), utf8);
    EXPECT_EQ(converted("UTF-8", "cp1252", utf8), latin1);
    std::string const utf7 = converted("UTF-8", "UTF-7", utf8);
    EXPECT_GT(utf7.size(), utf8.size());
    EXPECT_EQ(converted("UTF-7", "UTF-8", utf7), utf8);
}

TEST(ConvertEncoding, TheSameConverterMayBeBothSides) {
    Converter const only = converter("cp1252");
    int first = 0;
    int errors = 0;
    EXPECT_STREQ(convertEncoding("\x80\xE4", only.get(), only.get(), first, errors).chars, "\x80\xE4");
    convertEncoding("\x81", only.get(), only.get(), first, errors);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(errors, 1);
}

TEST(ConvertEncoding, FailedAllocationsLoseNothingAndCountNothing) {
    QORString const text("a text with \xE4 that is longer than a short one");
    QORString const lacking("a text with \x80 that is longer than a short one");
    Converter const from = converter("cp1252");
    for (char const* name : {"UTF-8", "ISO-8859-1", "ISO-8859-2"}) {
        Converter const to = converter(name);
        int first = 0;
        int errors = 0;
        long const before = liveAllocations();
        auto const verify = [&] {
            EXPECT_EQ(liveAllocations(), before);
            EXPECT_EQ(first, 0);
            EXPECT_EQ(errors, 0);
        };
        EXPECT_GE(
            failEachAllocation([&] { convertEncoding(text, from.get(), to.get(), first, errors); }, verify),
            2);
        EXPECT_EQ(first, 1);
        first = 0;
        if (std::string(name) != "UTF-8") {
            EXPECT_GE(failEachAllocation(
                          [&] { convertEncoding(lacking, from.get(), to.get(), first, errors); }, verify),
                      2);
            EXPECT_EQ(errors, 1);
        }
        EXPECT_EQ(liveAllocations(), before);
    }
}

TEST(QOREncodingConverter, FailedCreationLosesNoMemory) {
    long const before = liveAllocations();
    auto const nothingLost = [&] { EXPECT_EQ(liveAllocations(), before); };
    for (char const* name : {"UTF-8", "cp1252", "a-name-that-is-long-and-that-nobody-knows"}) {
        EXPECT_GE(failEachAllocation([&] { converter(name); }, nothingLost), 1);
        nothingLost();
    }
}
