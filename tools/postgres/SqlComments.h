#pragma once

#include "database/Structure.h"

#include <string>

namespace postgres {

/// SQL behind which more can stand: what may be a comment in its last line ends there.
std::string withCommentEnded(std::string const& sql);

/// The same for all expressions of a structure. Those that the server prints have no comments, but a graph
/// can come from anywhere.
database::Structure withCommentsEnded(database::Structure structure);

} // namespace postgres
