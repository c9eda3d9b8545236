#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sqlite {

/// An expression or a SELECT of another system as SQLite takes it: casts written with colons are left out,
/// and lists of values are written with IN. Nothing if there is something in it, such as a function, of which
/// it isn't known that SQLite has it.
std::optional<std::string> translateSql(std::string_view sql);

/// The same with a name in place of the word VALUE, which stands for the value in the condition of a domain.
std::optional<std::string> translateDomainCheck(std::string_view sql, std::string_view column);

} // namespace sqlite
