#pragma once

#include "kit/SourceKind.h"

namespace postgres {

/// A database of a PostgreSQL server.
kit::SourceKind postgresSource();

} // namespace postgres
