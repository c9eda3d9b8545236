#pragma once

#include "database/Dialect.h"

namespace qorprogram {

/// All dialects of SQL that structures can be written in.
database::Dialects const& dialects();

} // namespace qorprogram
