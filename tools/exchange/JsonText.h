#pragma once

#include <string>
#include <string_view>

namespace exchange {

/// Whether a text is well-formed UTF-8.
bool isUtf8(std::string_view text);

/// A well-formed text as a JSON string; only what must be escaped is.
std::string jsonString(std::string_view text);

} // namespace exchange
