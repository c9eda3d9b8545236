#pragma once

#include "database/Structure.h"
#include "kit/SourceKind.h"

namespace database {

/// The model of a structure that has been read, as a graph. The reader's remarks go to `loading`, after the
/// model has been built: a structure that can't be built has none. Throws kit::ToolError.
kit::Graph graphOf(Structure const& structure, kit::Loading const& loading);

} // namespace database
