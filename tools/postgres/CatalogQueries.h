#pragma once

#include <string>
#include <vector>

namespace postgres {

/// Queries for what belongs to the database as a whole, each with two columns: the name of the extra, and its
/// value, which is the SQL that makes the thing and comments on it.
std::vector<std::string> operatorQueries();
std::vector<std::string> textSearchQueries();

/// The condition that an object is none of the system's and belongs to no extension.
std::string isMade(std::string const& catalogue, std::string const& oid);

/// A further statement that comments on what the first one made; `name` is an expression.
std::string commentStatement(std::string const& kind, std::string const& name, std::string const& catalogue,
                             std::string const& oid);

/// The joins that add the qualified name `q` to row `x` of a catalogue; the names of the catalogue's columns
/// begin with `prefix`.
std::string qualifiedName(std::string const& prefix);

} // namespace postgres
