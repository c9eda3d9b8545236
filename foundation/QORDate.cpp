#include <qor/QORDate.h>

#include <qor/QORString.h>

#include <cstring>
#include <type_traits>

static_assert(std::is_trivially_copyable<QORDate>::value, "dates are copied byte for byte");

namespace {

constexpr char unsetText[] = "00:00:00 ";
constexpr char form[] = "00:00:00 0000-00-00";
constexpr int formLength = sizeof form - 1;

bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool hasForm(char const* text) {
    for (int i = 0; i < formLength; ++i) {
        if (form[i] == '0' ? !isDigit(text[i]) : text[i] != form[i]) {
            return false;
        }
    }
    return true;
}

int number(char const* digits, int count) {
    int value = 0;
    for (int i = 0; i < count; ++i) {
        value = value * 10 + (digits[i] - '0');
    }
    return value;
}

int daysOfMonth(int year, int month) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool const leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : days[month - 1];
}

bool exists(char const* text) {
    int const month = number(text + 14, 2);
    int const day = number(text + 17, 2);
    return number(text, 2) < 24 && number(text + 3, 2) < 60 && number(text + 6, 2) < 60 && month >= 1 &&
           month <= 12 && day >= 1 && day <= daysOfMonth(number(text + 9, 4), month);
}

} // namespace

QORDate::QORDate() noexcept {
    unset();
}

void QORDate::setDate(QORString& newText) noexcept {
    setDate(static_cast<QORString const&>(newText));
}

void QORDate::setDate(QORString const& newText) noexcept {
    static_assert(sizeof text == sizeof form, "the text fits exactly");
    char const* first = newText.chars;
    char const* last = first + newText.length;
    while (first != last && isBlank(*first)) {
        ++first;
    }
    while (first != last && isBlank(last[-1])) {
        --last;
    }
    if (last - first != formLength || !hasForm(first) || !exists(first)) {
        unset();
        return;
    }
    std::memcpy(text, first, formLength);
    text[formLength] = '\0';
}

bool QORDate::isSet() const noexcept {
    return text[sizeof unsetText - 1] != '\0';
}

void QORDate::unset() noexcept {
    std::memset(text, 0, sizeof text);
    std::memcpy(text, unsetText, sizeof unsetText);
}
