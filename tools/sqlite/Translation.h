#pragma once

#include <string>
#include <string_view>

namespace sqlite {

/// An expression or a SELECT as SQLite's SQL, or the part of it that SQLite isn't known to
/// have.
struct Translation {
    std::string text;
    std::string problem; ///< empty if there is none
};

/// Translates an expression or a SELECT of another system: casts written with colons are omitted, and lists
/// of values are written with IN.
Translation translateSql(std::string_view sql);

/// The same with a name in place of the word VALUE, which means the value in the condition of a domain.
Translation translateDomainCheck(std::string_view sql, std::string_view column);

} // namespace sqlite
