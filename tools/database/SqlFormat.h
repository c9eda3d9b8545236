#pragma once

#include "database/Dialect.h"
#include "kit/Format.h"

namespace database {

/// The SQL that creates a database, in one of these dialects, which must live as long as the format. Only a
/// model becomes SQL.
kit::Format sqlFormat(Dialects const& dialects);

} // namespace database
