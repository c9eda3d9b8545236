#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Characters and texts. Only the letters of ASCII have a case, and the locale doesn't matter.
namespace kit {

/// Whether the character is a space, or an ASCII character from tab to carriage return.
inline bool isBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

inline bool isControl(char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
}

inline bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

inline char upperCase(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

inline char lowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// Whether the character is a letter of ASCII.
inline bool isLetter(char character) {
    return lowerCase(character) >= 'a' && lowerCase(character) <= 'z';
}

/// Whether the character is a part of a character beyond ASCII in UTF-8.
inline bool isBeyondAscii(char character) {
    return static_cast<unsigned char>(character) >= 0x80;
}

/// The value of a hexadecimal digit; -1 for any other character.
int hexDigit(char character);

std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

/// Whether both texts are equal except for the case of letters.
bool equalIgnoringCase(std::string_view left, std::string_view right);

/// The texts in their order with a text between them.
std::string joined(std::vector<std::string> const& texts, std::string_view between);

} // namespace kit
