#pragma once

#include "kit/Graph.h"

#include <string>
#include <vector>

namespace qorprogram {

class Session;

/// What the help says of that which a verb reads.
constexpr char const* sourceHelp = "A graph in JSON, an SQLite database, or the URL of a PostgreSQL\n"
                                   "database such as postgresql://user@host/name; it is never written";

/// Reads what a verb works on: a graph in JSON, known by its first character or by the ending ".json" of its
/// name, or the structure of a PostgreSQL database, given by its URL, or else that of an SQLite database.
/// What the reader has to say of its objects goes to `session`. Throws kit::ToolError.
kit::Graph loadSource(std::string const& source, Session& session);

/// The files that a source consists of or may consist of, whether they are there or not. Throws
/// kit::ToolError for an address that is that of no source.
std::vector<std::string> filesOfSource(std::string const& source);

/// What may be shown of an address of any scheme, that of a source or not.
std::string shownAddress(std::string const& address);

} // namespace qorprogram
