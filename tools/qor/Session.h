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

    /// Writes a line for the user, unless remarks aren't wanted.
    void remark(std::string const& text) const;
};

/// What the help says of that which a verb reads.
constexpr char const* sourceHelp = "A graph in JSON, an SQLite database, or the URL of a PostgreSQL\n"
                                   "database such as postgresql://user@host/name; it is only read";

/// What the help says of --quiet.
constexpr char const* quietHelp = "No progress and no remarks beside the result";

/// Reads what a verb works on: a graph in JSON, known by its first character or by the ending ".json" of its
/// name, or the structure of a PostgreSQL database, given by its URL, or else that of an SQLite database.
/// What the reader has to say of its objects goes to `session`. Throws kit::ToolError.
kit::Graph loadSource(std::string const& source, Session const& session);

} // namespace qorprogram
