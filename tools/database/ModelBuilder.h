#pragma once

#include "database/Structure.h"

#include <memory>

class QORModel;

namespace database {

/// Makes a model of a structure; docs/import.md describes the objects. Throws kit::ToolError, which
/// names the source of the database, if the structure has two objects where only one may be, or refers to
/// something that it doesn't have.
std::unique_ptr<QORModel> buildModel(Structure const& structure);

/// The group of the user properties that hold the extras.
constexpr char const* extrasGroup = "database";

} // namespace database
