#pragma once

#include "kit/Graph.h"

#include <string>
#include <vector>

namespace qorprogram {

class Session;

/// The help text for a verb's source.
constexpr char const* sourceHelp = "A graph in JSON, an SQLite database, or the URL of a PostgreSQL\n"
                                   "database such as postgresql://user@host/name; it is never written;\n"
                                   "- reads a graph in JSON from the standard input";

/// Reads what a verb works on: a graph in JSON, known by its first character or by the ending ".json" of its
/// name or read from the standard input for "-", or the structure of a PostgreSQL database, given by its URL,
/// or else that of an SQLite database.
/// The reader's remarks on objects go to `session`. Throws kit::ToolError.
kit::Graph loadSource(std::string const& source, Session& session);

/// Whether the source is the standard input, which can be read only once.
bool isStandardInput(std::string const& source);

/// The files that a source consists of or may consist of, whether they are there or not. Throws
/// kit::ToolError for an address that isn't that of a source.
std::vector<std::string> filesOfSource(std::string const& source);

/// An address of any scheme without its secrets, whether it is that of a source or not.
std::string shownAddress(std::string const& address);

} // namespace qorprogram
