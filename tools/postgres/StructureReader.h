#pragma once

#include "database/Structure.h"

namespace postgres {

class Connection;

/// Reads the whole structure of the database, one query for each kind of object. Objects of the system or of
/// an extension are omitted; the extension itself is an extra of the catalog. docs/import.md describes the
/// objects. Throws kit::ToolError.
database::Structure readStructure(Connection& connection);

} // namespace postgres
