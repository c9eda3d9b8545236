#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sqlite {

/// A name as it can stand in SQL: in quotation marks where it is no plain word, or a keyword.
std::string quoteName(std::string_view name);

/// Names with commas between, each quoted if needed.
std::string quoteNames(std::vector<std::string> const& names);

/// A text as a literal.
std::string quoteText(std::string_view text);

} // namespace sqlite
