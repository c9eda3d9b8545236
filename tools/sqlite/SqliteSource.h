#pragma once

#include "kit/SourceKind.h"

namespace sqlite {

/// An SQLite database file. It recognises everything, since it reports best why a file is no database: it
/// must be the last kind that is asked.
kit::SourceKind sqliteSource();

} // namespace sqlite
