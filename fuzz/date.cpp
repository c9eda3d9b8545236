// A text as a date, compared with a second reading of it.

#include "Bytes.h"
#include "Require.h"

#include <qor/QORDate.h>
#include <qor/QORString.h>

#include <algorithm>
#include <ctime>
#include <string>

namespace {

/// Whether the C library's calendar has that day: it moves one that doesn't exist.
bool dayExists(int year, int month, int day) {
    std::tm time = {};
    time.tm_year = year - 1900 + (year < 400 ? 400 : 0); // the calendar repeats itself
    time.tm_mon = month - 1;
    time.tm_mday = day;
    time.tm_hour = 12;
    std::tm const asked = time;
    return timegm(&time) != -1 && time.tm_mon == asked.tm_mon && time.tm_mday == asked.tm_mday;
}

bool isDate(std::string const& text) {
    std::string const form = "00:00:00 0000-00-00";
    bool const formed =
        std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char is, char wanted) {
            return wanted == '0' ? is >= '0' && is <= '9' : is == wanted;
        });
    auto const number = [&](std::size_t at, std::size_t count) { return std::stoi(text.substr(at, count)); };
    return formed && number(0, 2) < 24 && number(3, 2) < 60 && number(6, 2) < 60 &&
           dayExists(number(9, 4), number(14, 2), number(17, 2));
}

std::string trimmed(std::string const& text) {
    std::size_t const first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Bytes bytes(data, size);
    QORString text(bytes.rest().c_str());
    QORString const same(text);

    QORDate date;
    date.setDate(text);
    QORDate second;
    second.setDate(QORString("23:59:59 2000-02-29"));
    second.setDate(same);
    require(text == same, "the text stays");
    require(std::memcmp(&date, &second, sizeof date) == 0, "what was there before leaves no trace");

    std::string const wanted = trimmed(same.chars);
    require(date.isSet() == isDate(wanted), "what exists is taken, and nothing else");
    require(date.chars() == (date.isSet() ? wanted : std::string("00:00:00 ")), "a date holds its text");
    return 0;
}
