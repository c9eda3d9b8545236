#pragma once

#include "database/Structure.h"

#include <string>
#include <string_view>

namespace postgres {

/// The kinds of types between which PostgreSQL compares and converts by itself, as far as types of other
/// systems become such.
enum class Kind { LITERAL, BOOLEAN, INTEGER, NUMERIC, DOUBLE, TEXT, BYTES, DATE, TIME, TIMESTAMP, OTHER };

/// The type of PostgreSQL that holds what a type of another system does, such as "varchar(40)".
std::string translatedType(database::Type const& type);

/// The kind of a type as `translatedType` calls it.
Kind kindOf(std::string_view type);

/// How a message calls a kind.
char const* nameOf(Kind kind);

bool isNumber(Kind kind);

/// Whether PostgreSQL reads a text as a value of a kind, and as the same one as other systems do.
bool isValueOf(Kind kind, std::string_view text);

/// Whether a text, or a number as SQL writes it, fits a type such as "varchar(3)", "smallint" or
/// "numeric(4,1)".
bool fits(std::string_view type, std::string_view value);

} // namespace postgres
