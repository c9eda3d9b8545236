#pragma once

#include "kit/Graph.h"

#include <iosfwd>
#include <string>

namespace exchange {

/// Reads a graph from JSON (see docs/exchange-format.md), object by object as the text comes in. Messages
/// name the text by `subject`. Throws kit::ToolError, with the line and what is wrong there, for anything
/// that violates the format or that the objects refuse.
kit::Graph readJson(std::istream& in, std::string const& subject);

/// The same from a file.
kit::Graph readJsonFile(std::string const& path);

} // namespace exchange
