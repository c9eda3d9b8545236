#include "kit/JsonText.h"

#include <gmock/gmock.h>

namespace {

using kit::isUtf8;
using kit::jsonString;
using kit::jsonValue;
using kit::printable;

TEST(JsonText, WellFormedTextsAreToldFromOthers) {
    for (char const* const text : {"", "a", "\xc2\x80", "é", "\xe0\xa0\x80", "€", "\xed\x9f\xbf",
                                   "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"}) {
        EXPECT_TRUE(isUtf8(text)) << text;
    }
    for (char const* const text :
         {"\x80", "\xc1\xbf", "\xc3", "\xc3(", "\xe0\x9f\xbf", "\xed\xa0\x80", "\xe2\x82", "\xe2\x82(",
          "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80"}) {
        EXPECT_FALSE(isUtf8(text)) << text;
    }
}

TEST(JsonText, AStringEscapesWhatItMust) {
    EXPECT_EQ(jsonString("a\"b\\c\nd\te\x01/é"), "\"a\\\"b\\\\c\\nd\\te\\u0001/é\"");
}

TEST(JsonText, AValueOfAnotherEncodingIsItsBytes) {
    EXPECT_EQ(jsonValue("é"), "\"é\"");
    EXPECT_EQ(jsonValue("a\xe9"), "{\"hex\": \"61e9\"}");
}

TEST(JsonText, APrintableTextStaysOnItsLine) {
    EXPECT_EQ(printable("a\nb\x7f"
                        "é"),
              "a b é");
    EXPECT_EQ(printable("a\xe9"), "a?");
}

} // namespace
