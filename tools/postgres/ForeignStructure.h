#pragma once

#include "database/Dialect.h"
#include "database/Omission.h"
#include "database/Structure.h"

#include <vector>

namespace postgres {

/// A structure of another system as one of PostgreSQL, and what had to be left out, by the places where it
/// would stand. Whatever the structure still holds, PostgreSQL takes.
struct ForeignStructure {
    database::Structure structure;
    database::Omissions ofDatabase;
    std::vector<database::Omissions> ofTables; ///< those of each table's columns and constraints
    database::Omissions ofObjects;             ///< types, whole tables, views, sequences and routines
    database::Omissions ofIndexes;
    database::Omissions ofForeignKeys;
    database::Omissions ofTriggers;
};

/// `habits` are those of the system that the structure comes from.
ForeignStructure translateStructure(database::Structure const& structure, database::Habits const& habits);

} // namespace postgres
