// A text converted between two encodings, and what must hold of every conversion.

#include "Bytes.h"
#include "Require.h"

#include <qor/QOREncodingConverter.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <memory>

namespace {

using Converter = std::unique_ptr<QOREncodingConverter>;

char const* const encodings[] = {
    "UTF-8",      "ISO-8859-1",  "CP1252",          "KOI8-R",    "ASCII",  "UTF-16",     "UTF-16LE",
    "UTF-16BE",   "UTF-32",      "UTF-7",           "SHIFT_JIS", "EUC-JP", "BIG5",       "GB18030",
    "EUC-KR",     "ISO-2022-JP", "ISO-2022-KR",     "EBCDIC-US", "IBM037", "HZ",         "CP1255",
    "BIG5-HKSCS", "TCVN",        "ISO-2022-CN-EXT", "UCS-4",     "IBM930", "UTF-7-IMAP", "UTF-8//TRANSLIT"};

bool isOfName(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) || std::strchr("-_.:/()", character);
}

Converter converter(Bytes& bytes) {
    std::size_t const which = bytes.below(std::size(encodings) + 1);
    if (which < std::size(encodings))
        return Converter(QOREncodingConverter::create(encodings[which]));
    std::string const bytesOfName = bytes.text(bytes.below(20));
    char const* const name = bytesOfName.c_str();
    Converter made(QOREncodingConverter::create(name));
    require(!made || std::all_of(name, name + std::strlen(name), isOfName),
            "what is no name has no converter");
    return made;
}

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

/// Bytes of the UTF-8 character that a text begins with; 0 if it begins with none.
std::size_t characterLength(unsigned char const* text, std::size_t left) {
    unsigned char const first = text[0];
    std::size_t const length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || length > left || !std::all_of(text + 1, text + length, isContinuation))
        return 0;
    bool const overlong = (first == 0xE0 && text[1] < 0xA0) || (first == 0xF0 && text[1] < 0x90);
    bool const surrogate = first == 0xED && text[1] >= 0xA0;
    bool const tooLarge = first == 0xF4 && text[1] >= 0x90;
    return overlong || surrogate || tooLarge ? 0 : length;
}

bool isUtf8(QORString const& text) {
    auto const* const bytes = reinterpret_cast<unsigned char const*>(text.chars);
    auto const count = static_cast<std::size_t>(text.length);
    for (std::size_t at = 0; at < count;) {
        std::size_t const length = characterLength(bytes + at, count - at);
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

bool isOneOf(QOREncodingConverter const& converter, std::initializer_list<char const*> names) {
    return std::any_of(names.begin(), names.end(),
                       [&](char const* name) { return std::strcmp(converter.getName(), name) == 0; });
}

struct Conversion {
    QORString text;
    bool failed;
};

Conversion convert(QORString const& text, QOREncodingConverter& from, QOREncodingConverter& to) {
    int first = 5;
    int errors = 7;
    Conversion const result{convertEncoding(text, &from, &to, first, errors), errors == 8};
    require(errors == 7 || errors == 8, "one error is counted once");
    require(first == (result.failed ? 5 : 6), "a conversion is counted, unless it failed");
    require(!result.failed || result.text == text, "what can't be converted stays");
    require(std::strlen(result.text.chars) == static_cast<std::size_t>(result.text.length), "no NUL arises");
    return result;
}

/// What is converted reads the same as before; a character may be written in another way.
void requireSameCharacters(QORString const& text, QOREncodingConverter& from, QORString const& result,
                           QOREncodingConverter& to) {
    Converter const utf8(QOREncodingConverter::create("UTF-8"));
    Conversion const meant = convert(text, from, *utf8);
    Conversion const read = convert(result, to, *utf8);
    require(!meant.failed && !read.failed && meant.text == read.text, "the same characters are read");
    require(isUtf8(read.text), "what is read is valid UTF-8");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Bytes bytes(data, size);
    Converter const from = converter(bytes);
    Converter const to = converter(bytes);
    QORString const text(bytes.rest().c_str());

    int first = 0;
    int errors = 0;
    if (!from || !to) {
        require(convertEncoding(text, from.get(), to.get(), first, errors) == text, "no encoding, no change");
        require(first == 0 && errors == 0, "no encoding, no count");
        return 0;
    }

    Conversion const result = convert(text, *from, *to);
    Conversion const again = convert(text, *from, *to);
    require(again.text == result.text && again.failed == result.failed, "a converter remembers nothing");
    if (isUnchangedByEncoding(text, from.get(), to.get(), first)) {
        require(first == 1, "what stays the same is counted");
        require(!result.failed && result.text == text, "what is said to stay the same does");
    } else {
        require(first == 0, "what isn't known to stay the same isn't counted");
    }
    if (!result.failed)
        requireSameCharacters(text, *from, result.text, *to);

    if (isOneOf(*from, {"UTF-8"}))
        require(isUtf8(text) || result.failed, "invalid UTF-8 isn't converted");
    if (isOneOf(*to, {"UTF-8"}))
        require(result.failed || isUtf8(result.text), "the result is valid UTF-8");
    if (isOneOf(*from, {"UTF-8"}) && isOneOf(*to, {"UTF-8"}))
        require(result.failed != isUtf8(text) && result.text == text, "UTF-8 stays what it is");
    if (isOneOf(*from, {"ISO-8859-1"}) && isOneOf(*to, {"UTF-8"}))
        require(!result.failed, "every byte is a character of ISO-8859-1");
    // One byte for one character, and back.
    if (isOneOf(*from, {"UTF-8", "ISO-8859-1", "CP1252", "KOI8-R", "ASCII"}) &&
        isOneOf(*to, {"UTF-8", "ISO-8859-1", "CP1252", "KOI8-R", "ASCII"}) && !result.failed) {
        Conversion const back = convert(result.text, *to, *from);
        require(!back.failed && back.text == text, "the way back leads to the text");
    }
    return 0;
}
