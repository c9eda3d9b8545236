#pragma once

#include <iosfwd>

namespace exchange {

/// Whether a text is a graph in the exchange format, as far as its name for itself.
bool isGraphText(std::istream& in);

} // namespace exchange
