#pragma once

#include "kit/Graph.h"

#include <iosfwd>
#include <string>

namespace qorprogram {

/// What the verbs share: where their results and their remarks go, and the exit code.
struct Session {
    std::ostream& out;
    std::ostream& err;
    bool quiet = false; ///< no remarks, but errors all the same
    int exitCode = 0;
};

/// Reads what a verb works on: a graph in JSON, known by its first character or by the ending ".json" of its
/// name, or the structure of a PostgreSQL database, given by its URL, or else that of an SQLite database.
/// Throws kit::ToolError.
kit::Graph loadSource(std::string const& source);

} // namespace qorprogram
