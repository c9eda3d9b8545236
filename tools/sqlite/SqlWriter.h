#pragma once

#include "database/Omission.h"
#include "database/Structure.h"

#include <iosfwd>

namespace sqlite {

/// Writes SQL that makes the same structure in an empty SQLite database: what an object needs stands before
/// it. Types of another system become those of SQLite that hold the same, and schemas a part of the names
/// where they must. What can't be written, such as the triggers of another system, is reported in a comment
/// at its place and returned. Of another system's structure only that is written which SQLite accepts.
database::Omissions writeSqliteSql(database::Structure const& structure, std::ostream& out);

} // namespace sqlite
