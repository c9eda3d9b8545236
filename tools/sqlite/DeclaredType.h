#pragma once

#include <string_view>

namespace sqlite {

/// What a column's declared type, such as "VARCHAR(40)", stands for.
struct DeclaredType {
    char const* dataType; ///< a key of QorDataTypeName, such as "SQL_VARCHAR"; lives for ever
    int length;           ///< the first number in parentheses, 0 without one
    int scale;            ///< the second one, likewise
};

/// Reads a declared type. What is well known goes by its name, whatever the case and the blanks. Every other
/// name follows the affinity that SQLite assigns to it. A column without a declared type, or declared as ANY,
/// holds anything: that is "undefined".
DeclaredType readDeclaredType(std::string_view declared);

} // namespace sqlite
