#pragma once

#include "database/Structure.h"

#include <optional>
#include <string>

namespace database {

/// An index as JSON on one line, its columns by name, for places that can have no object.
std::string writeIndexText(Index const& index, Table const& table);

/// Reads the index of a table back, without its number. Returns nothing if the text isn't one, or names a
/// column that doesn't exist.
std::optional<Index> readIndexText(std::string const& text, Table const& table);

} // namespace database
