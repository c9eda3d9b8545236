#include "kit/JsonText.h"

#include <cstdio>

namespace kit {
namespace {

struct Lead {
    std::size_t length; ///< 0 if no character starts like this
    unsigned char low;  ///< bounds of the second byte
    unsigned char high;
};

Lead leadOf(unsigned char byte) {
    if (byte < 0x80) {
        return {1, 0, 0};
    }
    if (byte < 0xc2 || byte > 0xf4) {
        return {0, 0, 0};
    }
    if (byte < 0xe0) {
        return {2, 0x80, 0xbf};
    }
    if (byte < 0xf0) {
        unsigned char const low = byte == 0xe0 ? 0xa0 : 0x80;
        unsigned char const high = byte == 0xed ? 0x9f : 0xbf;
        return {3, low, high};
    }
    unsigned char const low = byte == 0xf0 ? 0x90 : 0x80;
    unsigned char const high = byte == 0xf4 ? 0x8f : 0xbf;
    return {4, low, high};
}

std::string hexadecimal(std::string_view bytes) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (char const character : bytes) {
        auto const byte = static_cast<unsigned char>(character);
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

bool lies(std::string_view text, std::size_t place, unsigned char low, unsigned char high) {
    auto const byte = static_cast<unsigned char>(text[place]);
    return low <= byte && byte <= high;
}

void appendEscaped(std::string& json, unsigned char control) {
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(control));
    json += escape;
}

} // namespace

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        Lead const lead = leadOf(static_cast<unsigned char>(text[i]));
        if (lead.length == 0 || text.size() - i < lead.length) {
            return false;
        }
        if (lead.length > 1 && !lies(text, i + 1, lead.low, lead.high)) {
            return false;
        }
        for (std::size_t next = 2; next < lead.length; ++next) {
            if (!lies(text, i + next, 0x80, 0xbf)) {
                return false;
            }
        }
        i += lead.length;
    }
    return true;
}

std::string jsonString(std::string_view text) {
    std::string json = "\"";
    for (char const character : text) {
        auto const code = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            json += '\\';
            json += character;
        } else if (character == '\n') {
            json += "\\n";
        } else if (character == '\t') {
            json += "\\t";
        } else if (code < 0x20) {
            appendEscaped(json, code);
        } else {
            json += character;
        }
    }
    return json += '"';
}

std::string jsonValue(std::string_view text) {
    return isUtf8(text) ? jsonString(text) : "{\"hex\": \"" + hexadecimal(text) + "\"}";
}

std::string printable(std::string_view text) {
    bool const wellFormed = isUtf8(text);
    std::string result(text);
    for (char& character : result) {
        auto const code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7f) {
            character = ' ';
        } else if (code > 0x7f && !wellFormed) {
            character = '?';
        }
    }
    return result;
}

} // namespace kit
