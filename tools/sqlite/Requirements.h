#pragma once

#include "database/Writable.h"

namespace sqlite {

/// Leaves out of a structure what SQLite refuses for a reason that lies in the structure itself, and adds
/// that to the omissions: expressions, queries and triggers that it can't read or that name columns which
/// aren't there, and clauses that don't go with the table. SQLite itself is asked. A function, module or
/// collation that it doesn't know is no reason: the program whose database it is may bring it along.
void meetRequirements(database::Writable& writable);

} // namespace sqlite
