#pragma once

#include "database/Structure.h"

#include <iosfwd>

namespace postgres {

/// Writes SQL that makes the same structure in an empty PostgreSQL database: what an object needs stands
/// before it. Types of another system become those of PostgreSQL that hold the same. What can't be written,
/// such as the triggers of another system, stands there as a comment that says so.
void writePostgresSql(database::Structure const& structure, std::ostream& out);

} // namespace postgres
