#pragma once

#include "database/Dialect.h"

namespace postgres {

/// SQL for PostgreSQL. Types of another system become those of PostgreSQL that hold the same.
database::Dialect const& postgresDialect();

} // namespace postgres
