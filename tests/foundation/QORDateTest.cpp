#include <qor/QORDate.h>
#include <qor/QORString.h>

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

namespace {

static_assert(std::is_trivially_copyable<QORDate>::value, "copied byte for byte");

QORDate dateOf(char const* text) {
    QORDate date;
    date.setDate(QORString(text));
    return date;
}

void expectUnset(char const* text) {
    QORDate date = dateOf("01:02:03 2004-05-06");
    ASSERT_TRUE(date.isSet());
    date.setDate(QORString(text));
    EXPECT_FALSE(date.isSet()) << '"' << text << '"';
    EXPECT_STREQ(date.chars(), "00:00:00 ") << '"' << text << '"';
}

} // namespace

TEST(QORDate, DefaultIsUnset) {
    QORDate const date;
    EXPECT_FALSE(date.isSet());
    EXPECT_STREQ(date.chars(), "00:00:00 ");
}

TEST(QORDate, TextLivesInTheObject) {
    QORDate const date = dateOf("10:35:49 2007-06-12");
    char const* const object = reinterpret_cast<char const*>(&date);
    EXPECT_GE(date.chars(), object);
    EXPECT_LE(date.chars() + std::strlen(date.chars()) + 1, object + sizeof date);
}

TEST(QORDate, TakesTheTextThatItGives) {
    QORDate const date = dateOf("10:35:49 2007-06-12");
    EXPECT_TRUE(date.isSet());
    EXPECT_STREQ(date.chars(), "10:35:49 2007-06-12");
    QORString text(date.chars());
    QORDate again;
    again.setDate(text);
    EXPECT_STREQ(again.chars(), date.chars());
    EXPECT_STREQ(text.chars, "10:35:49 2007-06-12");
}

TEST(QORDate, TextOfAnUnsetDateMakesADateUnset) {
    expectUnset("00:00:00 ");
    expectUnset("00:00:00");
    expectUnset("");
}

TEST(QORDate, BlanksAroundTheTextAreIgnored) {
    EXPECT_STREQ(dateOf("  23:59:59 1999-12-31 ").chars(), "23:59:59 1999-12-31");
    EXPECT_STREQ(dateOf("\t00:00:00 2000-01-01\t").chars(), "00:00:00 2000-01-01");
    expectUnset("   00:00:00   ");
    expectUnset("    ");
}

TEST(QORDate, LeapDaysExistInLeapYearsOnly) {
    EXPECT_TRUE(dateOf("00:00:00 2024-02-29").isSet());
    EXPECT_TRUE(dateOf("00:00:00 2000-02-29").isSet());
    EXPECT_TRUE(dateOf("00:00:00 2400-02-29").isSet());
    expectUnset("00:00:00 2023-02-29");
    expectUnset("00:00:00 1900-02-29");
    expectUnset("00:00:00 2024-02-30");
}

TEST(QORDate, LastDayOfEveryMonthExistsAndTheNextDoesNot) {
    int const days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) {
        QORString const head = QORString("12:00:00 2001-") + (month < 10 ? "0" : "") + month + "-";
        EXPECT_TRUE(dateOf((head + days[month - 1]).chars).isSet()) << month;
        expectUnset((head + (days[month - 1] + 1)).chars);
    }
}

TEST(QORDate, ImpossibleDatesAndTimesLeaveTheDateUnset) {
    for (char const* text :
         {"24:00:00 2007-06-12", "00:60:00 2007-06-12", "00:00:60 2007-06-12", "10:35:49 2007-13-12",
          "10:35:49 2007-00-12", "10:35:49 2007-06-00", "10:35:49 2007-06-31", "99:99:99 9999-99-99"}) {
        expectUnset(text);
    }
}

TEST(QORDate, TextsThatAreNoDateLeaveTheDateUnset) {
    for (char const* text :
         {"nonsense", "10:35:49", "2007-06-12", "2007-06-12 10:35:49", "10:35:49 2007-06-1",
          "10:35:49 2007-06-123", "1:35:49 2007-06-12", "10:35:49  2007-06-12", "10:35:49T2007-06-12",
          "10.35.49 2007-06-12", "10:35:49 2007/06/12", "10:35:4x 2007-06-12", "-1:35:49 2007-06-12",
          "+1:35:49 2007-06-12", "10:35:49 2007-06-12 x", "10:35:49 2007-06-12\n", "12:34:56 "}) {
        expectUnset(text);
    }
}

TEST(QORDate, IsCopiedByteForByte) {
    QORDate const date = dateOf("10:35:49 2007-06-12");
    QORDate copy(date);
    EXPECT_EQ(std::memcmp(&copy, &date, sizeof date), 0);
    QORDate assigned = dateOf("00:00:01 1970-01-01");
    EXPECT_EQ(&(assigned = date), &assigned);
    EXPECT_STREQ(assigned.chars(), date.chars());
    QORDate& self = assigned;
    assigned = self;
    EXPECT_STREQ(assigned.chars(), date.chars());
    QORDate bytes;
    std::memcpy(static_cast<void*>(&bytes), &date, sizeof date);
    EXPECT_STREQ(bytes.chars(), date.chars());
}

TEST(QORDate, UnsetDatesAreEqualInEveryByte) {
    QORDate const fresh;
    QORDate used = dateOf("10:35:49 2007-06-12");
    used.setDate(QORString("00:00:00 "));
    EXPECT_EQ(std::memcmp(&used, &fresh, sizeof fresh), 0);
}
