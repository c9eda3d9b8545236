#pragma once

#include <iosfwd>

class QORObject;

namespace exchange {

/// The name of the format in its files, and the version written.
constexpr char const* formatName = "qor-graph";
constexpr int formatVersion = 1;

/// Writes an object and all that can be reached from it over links of any kind as JSON (see
/// docs/exchange-format.md). Equal graphs produce equal bytes. Throws kit::ToolError for a graph that reading
/// couldn't restore.
void writeJson(QORObject& root, std::ostream& out);

} // namespace exchange
