#pragma once

#include "database/Writable.h"

namespace sqlite {

/// Removes from a structure what SQLite refuses because of the structure itself, and adds it to the
/// omissions: expressions, queries and triggers that it can't parse or that name missing columns,
/// and clauses that the table doesn't allow. SQLite itself checks them. A function, module or
/// collation that it doesn't know is kept: the application to which the database belongs may provide it.
void meetRequirements(database::Writable& writable);

} // namespace sqlite
