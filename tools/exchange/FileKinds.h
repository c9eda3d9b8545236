#pragma once

#include <iosfwd>

namespace exchange {

/// Whether a text is a graph in the exchange format: it names the format. The rest isn't read.
bool isGraphText(std::istream& in);

} // namespace exchange
