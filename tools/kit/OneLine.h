#pragma once

#include <string>

namespace kit {

/// A text with a blank in place of each control character: names can hold anything, and a message is one
/// line.
inline std::string onOneLine(std::string text) {
    for (char& character : text) {
        auto const code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7f) {
            character = ' ';
        }
    }
    return text;
}

} // namespace kit
