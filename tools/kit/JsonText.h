#pragma once

#include <string>
#include <string_view>

namespace kit {

/// Whether a text is well-formed UTF-8.
bool isUtf8(std::string_view text);

/// A well-formed text as a JSON string; only what must be escaped is.
std::string jsonString(std::string_view text);

/// Any text as JSON: a string, or `{"hex": "..."}` with its bytes if it isn't well-formed UTF-8.
std::string jsonValue(std::string_view text);

/// A text on one line for people to read: control characters become blanks, and bytes beyond ASCII question
/// marks if the text isn't well-formed UTF-8.
std::string printable(std::string_view text);

} // namespace kit
