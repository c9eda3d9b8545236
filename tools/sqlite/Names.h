#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sqlite {

/// A name as SQL: in quotation marks if it is a keyword or isn't a plain word.
std::string quoteName(std::string_view name);

/// Names separated by commas, each quoted if needed.
std::string quoteNames(std::vector<std::string> const& names);

/// A declared type as SQL: in quotation marks unless it consists of words, and of numbers in parentheses at
/// the end.
std::string quoteType(std::string const& declared);

/// A text as a literal.
std::string quoteText(std::string_view text);

} // namespace sqlite
