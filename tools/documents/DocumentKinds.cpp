#include "documents/DocumentKinds.h"

#include "kit/Text.h"

#include <algorithm>
#include <array>
#include <istream>
#include <string>

namespace documents {
namespace {

bool isAlphanumeric(char character) {
    return kit::isLetter(character) || kit::isDigit(character);
}

/// The first characters of a text, by which its kind is recognised.
std::string startOf(std::istream& in) {
    std::string start(65536, '\0');
    in.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(in.gcount()));
    return start;
}

std::size_t behind(std::string const& text, char const* end, std::size_t from) {
    std::size_t const found = text.find(end, from);
    return found == std::string::npos ? text.size() : found + std::char_traits<char>::length(end);
}

std::size_t behindBlanks(std::string const& text, std::size_t place) {
    while (place < text.size() && kit::isBlank(text[place])) {
        ++place;
    }
    return place;
}

/// The position of the first character that is neither a blank nor in a comment of Graphviz.
std::size_t behindDotComments(std::string const& text, std::size_t place) {
    for (;;) {
        place = behindBlanks(text, place);
        if (text.compare(place, 2, "/*") == 0) {
            place = behind(text, "*/", place + 2);
        } else if (text.compare(place, 2, "//") == 0 || text.compare(place, 1, "#") == 0) {
            place = behind(text, "\n", place);
        } else {
            return place;
        }
    }
}

/// The word at a position, in lower case.
std::string wordAt(std::string const& text, std::size_t place) {
    std::string word;
    for (; place < text.size() && isAlphanumeric(text[place]); ++place) {
        word += kit::lowerCase(text[place]);
    }
    return word;
}

/// The end of a graph's name, which is a word or a text in quotation marks.
std::size_t behindName(std::string const& text, std::size_t place) {
    if (place < text.size() && text[place] == '"') {
        return behind(text, "\"", place + 1);
    }
    auto const isOfName = [](char character) {
        return isAlphanumeric(character) || character == '_' || character == '.' || character == '-' ||
               kit::isBeyondAscii(character);
    };
    while (place < text.size() && isOfName(text[place])) {
        ++place;
    }
    return place;
}

bool isHeading(std::string const& line) {
    std::size_t const marks = line.find_first_not_of('#');
    return marks != std::string::npos && 1 <= marks && marks <= 6 && line[marks] == ' ';
}

} // namespace

bool isDotText(std::istream& in) {
    std::string const text = startOf(in);
    std::size_t place = behindDotComments(text, 0);
    if (wordAt(text, place) == "strict") {
        place = behindDotComments(text, place + 6);
    }
    std::string const word = wordAt(text, place);
    if (word != "graph" && word != "digraph") {
        return false;
    }
    place = behindName(text, behindDotComments(text, place + word.size()));
    place = behindDotComments(text, place);
    return place < text.size() && text[place] == '{';
}

bool isMarkdownText(std::istream& in) {
    constexpr std::array<char const*, 6> others = {"#!", "{", "[{", "<?", "<!DOCTYPE", "%PDF"};
    std::string const text = startOf(in);
    std::size_t const start = behindBlanks(text, 0);
    bool const isOther = std::any_of(others.begin(), others.end(), [&](std::string const& other) {
        return text.compare(start, other.size(), other) == 0;
    });
    for (std::size_t line = 0; !isOther && line < text.size(); line = behind(text, "\n", line)) {
        if (isHeading(text.substr(line, text.find('\n', line) - line))) {
            return true;
        }
    }
    return false;
}

} // namespace documents
