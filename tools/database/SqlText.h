#pragma once

#include <iosfwd>

namespace database {

/// Whether a text is SQL: it begins with a statement, or holds nothing but comments.
bool isSqlText(std::istream& in);

} // namespace database
