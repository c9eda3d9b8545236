#pragma once

#include "database/Omission.h"
#include "database/Structure.h"

#include <iosfwd>

namespace sqlite {

/// Writes SQL that creates the same structure in an empty SQLite database: each object comes after those that
/// it needs. Types of another system become those of SQLite that hold the same, and schemas become a part of
/// the names where necessary. What can't be written, such as the triggers of another system, is reported in a
/// comment at its place and returned. Of another system's structure it writes only what SQLite accepts.
database::Omissions writeSqliteSql(database::Structure const& structure, std::ostream& out);

} // namespace sqlite
