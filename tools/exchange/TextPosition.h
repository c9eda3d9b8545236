#pragma once

#include <cstddef>

namespace exchange {

/// A position in a text: the line, and the character in it, both from 1 on.
struct TextPosition {
    std::size_t line = 0; ///< 0: unknown
    std::size_t column = 0;
};

} // namespace exchange
