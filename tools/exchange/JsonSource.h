#pragma once

#include "exchange/TextPosition.h"

#include <cstddef>
#include <istream>
#include <iterator>

namespace exchange {

/// The characters of a stream for a parser of JSON, with their positions.
class JsonSource {
public:
    explicit JsonSource(std::istream& stream) : buffer(*stream.rdbuf()) {}

    bool atEnd() { return buffer.sgetc() == std::char_traits<char>::eof(); }
    char peek() { return std::char_traits<char>::to_char_type(buffer.sgetc()); }

    void next() {
        char const character = std::char_traits<char>::to_char_type(buffer.sbumpc());
        if (last == '\n') {
            ++position.line;
            position.column = 0;
        }
        position.column += (static_cast<unsigned char>(character) & 0xc0) != 0x80; // not within UTF-8
        last = character;
        follow(character);
    }

    /// The position of the last character that was read.
    TextPosition here() const { return {position.line, position.column ? position.column : 1}; }
    /// The beginning of the last text, number, word or opening bracket that was read.
    TextPosition tokenBegin() const { return token; }

private:
    void follow(char character) {
        if (inText) {
            inText = escaped || character != '"';
            escaped = !escaped && character == '\\';
            return;
        }
        bool const begins = character == '"' || character == '{' || character == '[';
        bool const separates = character == ',' || character == ':' || character == '}' || character == ']' ||
                               static_cast<unsigned char>(character) <= ' ';
        if (begins || (!separates && !inWord)) {
            token = position;
        }
        inText = character == '"';
        inWord = !begins && !separates;
    }

    std::streambuf& buffer;
    TextPosition position{1, 0};
    TextPosition token{1, 1};
    char last = ' ';
    bool inText = false;
    bool escaped = false;
    bool inWord = false; ///< in a number, or in true, false or null
};

/// An input iterator over a source, as the parser requires; one without a source is the end.
class JsonCharacter {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = char const*;
    using reference = char;

    explicit JsonCharacter(JsonSource* from = nullptr) : source(from) {}

    char operator*() const { return source->peek(); }
    JsonCharacter& operator++() {
        source->next();
        return *this;
    }
    JsonCharacter operator++(int) {
        JsonCharacter const before = *this;
        source->next();
        return before;
    }
    bool operator==(JsonCharacter const& other) const { return ended() == other.ended(); }
    bool operator!=(JsonCharacter const& other) const { return !(*this == other); }

private:
    bool ended() const { return !source || source->atEnd(); }

    JsonSource* source;
};

} // namespace exchange
