#pragma once

#include <iosfwd>

namespace database {

/// Whether a text is SQL: it begins with a statement, or contains only comments.
bool isSqlText(std::istream& in);

} // namespace database
