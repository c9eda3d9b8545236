#pragma once

#include "database/Structure.h"

#include <memory>

class QORModel;

namespace database {

/// Makes a model of a structure; docs/import.md tells what becomes of what. Throws kit::ToolError, which
/// calls the database by its source, if the structure has two things of one name where there can be one, or
/// refers to something that it doesn't have.
std::unique_ptr<QORModel> buildModel(Structure const& structure);

/// The group of the user properties that hold the extras.
constexpr char const* extrasGroup = "database";

} // namespace database
