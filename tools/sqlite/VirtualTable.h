#pragma once

#include <string>
#include <string_view>

namespace sqlite {

/// The module of a virtual table, by the statement that made it as the schema keeps it: "fts5" for
/// `CREATE VIRTUAL TABLE notes USING fts5(text)`. Empty for any other statement.
std::string moduleOf(std::string_view createStatement);

} // namespace sqlite
