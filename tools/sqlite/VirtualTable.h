#pragma once

#include <string>
#include <string_view>

namespace sqlite {

/// The module of a virtual table, from its CREATE statement in the schema: "fts5" for
/// `CREATE VIRTUAL TABLE notes USING fts5(text)`. Empty for any other statement.
std::string moduleOf(std::string_view createStatement);

} // namespace sqlite
