#pragma once

#include "database/Structure.h"

namespace postgres {

class Connection;

/// Reads the whole structure of the database, one query for each kind of thing. What belongs to the system or
/// to an extension is left out; the extension itself is an extra of the catalog. docs/import.md tells what
/// becomes of what. Throws kit::ToolError.
database::Structure readStructure(Connection& connection);

} // namespace postgres
