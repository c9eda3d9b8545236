#pragma once

#include "database/Omission.h"
#include "database/Structure.h"

#include <iosfwd>

namespace postgres {

/// Writes SQL that creates the same structure in an empty PostgreSQL database: each object comes after those
/// that it needs. Types of another system become those of PostgreSQL that hold the same. What can't be
/// written, such as the triggers of another system, is reported in a comment at its place and returned.
/// PostgreSQL accepts all that is written of another system's structure.
database::Omissions writePostgresSql(database::Structure const& structure, std::ostream& out);

} // namespace postgres
