#pragma once

#include "database/Dialect.h"

namespace sqlite {

/// SQL for SQLite. Types of another system become those of SQLite that hold the same, and schemas become a
/// part of the names where necessary.
database::Dialect const& sqliteDialect();

} // namespace sqlite
