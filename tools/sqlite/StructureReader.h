#pragma once

#include "database/Structure.h"

namespace sqlite {

class Database;

/// Reads the structure of a database: tables with their columns, types, keys and checks, indexes, views and
/// triggers. SQLite's own tables are omitted. Throws kit::ToolError if the database is
/// damaged.
database::Structure readStructure(Database& database);

} // namespace sqlite
