#pragma once

#include <qor/QORExport.h>
#include <qor/QORString.h>

/// Pairs of SQL data type and its name in SQL, such as "SQL_VARCHAR" and "varchar"; closed by a pair of
/// nulls.
extern QOR_API char const* const QorDataTypeName[45][2];

/// Pairs of SQL data type and logical type, such as "SQL_VARCHAR" and "text"; closed by a pair of nulls.
/// This is no inverse of QorLogicalToDataTypeArray: several data types share a logical one.
extern QOR_API char const* const QorDataTypeToLogicalArray[45][2];

/// Pairs of SQL data type and the nearest one of the older set of types, such as "SQL_BIGINT" and
/// "SQL_INTEGER"; closed by a pair of nulls.
extern QOR_API char const* const QorSQL99ToOldDataTypeArray[45][2];

/// Pairs of logical type and the SQL data type that stands for it by default; closed by a pair of nulls.
extern QOR_API char const* const QorLogicalToDataTypeArray[11][2];

/// Returns the SQL data type that stands for a logical type, or null for an unknown one; case counts.
QOR_API char const* getDefaultDataType(QORString const& logical);

/// Returns the name in SQL of a data type, or null for an unknown one; case counts.
QOR_API char const* getDataTypeName(QORString const& dataType);

/// Returns the data type with a name in SQL, or "undefined" for an unknown one. Case doesn't count here, as
/// SQL itself is written either way.
QOR_API char const* getDataTypeByName(QORString const& name);

/// Returns the logical type of a data type, or null for an unknown one; case counts.
QOR_API char const* getDefaultLogicalName(QORString const& dataType);

/// Returns the older data type that a data type maps to; case counts. For an unknown one it returns the
/// argument's own characters, which live no longer than the argument.
QOR_API char const* getOldDataType(QORString const& dataType);

/// Tells whether a data type is an exact or approximate number. "AUTOINCREMENT" isn't one.
QOR_API bool isNumeric(QORString const& dataType);

/// Tells whether a data type holds characters. "SQL_DATALINK" isn't one.
QOR_API bool isString(QORString const& dataType);
