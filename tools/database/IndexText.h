#pragma once

#include "database/Structure.h"

#include <optional>
#include <string>

namespace database {

/// An index as JSON on one line, its columns by name, for where there can be no object.
std::string writeIndexText(Index const& index, Table const& table);

/// The index of a table again, without its number; nothing if the text isn't one, or names a column that
/// there isn't.
std::optional<Index> readIndexText(std::string const& text, Table const& table);

} // namespace database
