#include "kit/Text.h"

#include <algorithm>

namespace kit {

int hexDigit(char character) {
    char const lower = lowerCase(character);
    return isDigit(lower) ? lower - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string upperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return upperCase(c); });
    return result;
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return lowerCase(c); });
    return result;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

std::string joined(std::vector<std::string> const& texts, std::string_view between) {
    std::string result;
    for (std::string const& text : texts) {
        result.append(&text == &texts.front() ? "" : between).append(text);
    }
    return result;
}

} // namespace kit
