#pragma once

#include "database/Omission.h"
#include "database/Structure.h"

#include <iosfwd>

namespace postgres {

/// Writes SQL that makes the same structure in an empty PostgreSQL database: what an object needs stands
/// before it. Types of another system become those of PostgreSQL that hold the same. What can't be written,
/// such as the triggers of another system, is told in a comment at its place and returned. PostgreSQL takes
/// all that is written of another system's structure.
database::Omissions writePostgresSql(database::Structure const& structure, std::ostream& out);

} // namespace postgres
