#pragma once

#include "database/Structure.h"

#include <iosfwd>

namespace sqlite {

/// Writes SQL that makes the same structure in an empty SQLite database: what an object needs stands before
/// it. Types of another system become those of SQLite that hold the same, and schemas a part of the names
/// where they must. What can't be written, such as the triggers of another system, stands there as a comment
/// that says so.
void writeSqliteSql(database::Structure const& structure, std::ostream& out);

} // namespace sqlite
