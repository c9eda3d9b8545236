#pragma once

#include <string_view>

namespace sqlite {

/// The meaning of a column's declared type, such as "VARCHAR(40)".
struct DeclaredType {
    char const* dataType; ///< a key of QorDataTypeName, such as "SQL_VARCHAR"; never deleted
    int length;           ///< the first number in parentheses, 0 without one
    int scale;            ///< the second one, likewise
};

/// Reads a declared type. A well-known type is recognised by its name, whatever the case and the blanks.
/// Every other name follows the affinity that SQLite assigns to it. A column without a declared type, or
/// declared as ANY, may hold anything: its data type is "undefined".
DeclaredType readDeclaredType(std::string_view declared);

} // namespace sqlite
