#pragma once

#include "database/Structure.h"

namespace sqlite {

class Database;

/// Reads what a database is made of: tables with their columns, types, keys and checks, indexes, views and
/// triggers. SQLite's own tables are omitted. Throws kit::ToolError when the database turns out to be
/// damaged.
database::Structure readStructure(Database& database);

} // namespace sqlite
