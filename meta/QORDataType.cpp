#include <qor/QORDataType.h>

#include <cstring>
#include <strings.h>

char const* const QorDataTypeName[45][2] = {
    {"undefined", "undefined"},
    {"SQL_BINARY", "binary"},
    {"SQL_CHAR", "char"},
    {"SQL_INTEGER", "int"},
    {"SQL_NUMERIC", "numeric"},
    {"SQL_DOUBLE", "double"},
    {"SQL_REAL", "real"},
    {"SQL_SMALLINT", "smallint"},
    {"SQL_TINYINT", "tinyint"},
    {"SQL_VARBINARY", "varbinary"},
    {"SQL_VARCHAR", "varchar"},
    {"SQL_LONGVARBINARY", "longvarbinary"},
    {"SQL_LONGVARCHAR", "longvarchar"},
    {"SQL_TIMESTAMP", "timestamp"},
    {"SQL_TIME", "time"},
    {"SQL_DATE", "date"},
    {"AUTOINCREMENT", "autoincrement"},
    {"SQL_BIGINT", "bigint"},
    {"SQL_BLOB", "blob"},
    {"SQL_BOOLEAN", "boolean"},
    {"SQL_CLOB", "clob"},
    {"SQL_NCHAR", "nchar"},
    {"SQL_NVARCHAR", "nvarchar"},
    {"SQL_NLONGVARCHAR", "nlongvarchar"},
    {"SQL_NCLOB", "nclob"},
    {"SQL_DATALINK", "datalink"},
    {"SQL_DECIMAL", "decimal"},
    {"SQL_FLOAT", "float"},
    {"SQL_INTERVAL_MONTH", "interval month"},
    {"SQL_INTERVAL_YEAR", "interval year"},
    {"SQL_INTERVAL_YEAR_TO_MONTH", "interval year to month"},
    {"SQL_INTERVAL_DAY", "interval day"},
    {"SQL_INTERVAL_HOUR", "interval hour"},
    {"SQL_INTERVAL_MINUTE", "interval minute"},
    {"SQL_INTERVAL_SECOND", "interval second"},
    {"SQL_INTERVAL_DAY_TO_HOUR", "interval day to hour"},
    {"SQL_INTERVAL_DAY_TO_MINUTE", "interval day to minute"},
    {"SQL_INTERVAL_DAY_TO_SECOND", "interval day to second"},
    {"SQL_INTERVAL_HOUR_TO_MINUTE", "interval hour to minute"},
    {"SQL_INTERVAL_HOUR_TO_SECOND", "interval hour to second"},
    {"SQL_INTERVAL_MINUTE_TO_SECOND", "interval minute to second"},
    {"SQL_REF", "ref"},
    {"SQL_TIME_WITH_TIME_ZONE", "time with time zone"},
    {"SQL_TIMESTAMP_WITH_TIME_ZONE", "timestamp with time zone"},
    {nullptr, nullptr},
};

char const* const QorDataTypeToLogicalArray[45][2] = {
    {"undefined", "undefined"},
    {"SQL_BINARY", "binary"},
    {"SQL_CHAR", "char"},
    {"SQL_INTEGER", "int"},
    {"SQL_NUMERIC", "number"},
    {"SQL_DOUBLE", "number"},
    {"SQL_REAL", "number"},
    {"SQL_SMALLINT", "int"},
    {"SQL_TINYINT", "int"},
    {"SQL_VARBINARY", "binary"},
    {"SQL_VARCHAR", "text"},
    {"SQL_LONGVARBINARY", "binary"},
    {"SQL_LONGVARCHAR", "text"},
    {"SQL_TIMESTAMP", "datetime"},
    {"SQL_TIME", "datetime"},
    {"SQL_DATE", "datetime"},
    {"AUTOINCREMENT", "int"},
    {"SQL_BIGINT", "int"},
    {"SQL_BLOB", "binary"},
    {"SQL_BOOLEAN", "boolean"},
    {"SQL_CLOB", "text"},
    {"SQL_NCHAR", "char"},
    {"SQL_NVARCHAR", "text"},
    {"SQL_NLONGVARCHAR", "text"},
    {"SQL_NCLOB", "text"},
    {"SQL_DATALINK", "text"},
    {"SQL_DECIMAL", "number"},
    {"SQL_FLOAT", "number"},
    {"SQL_INTERVAL_MONTH", "datetime"},
    {"SQL_INTERVAL_YEAR", "datetime"},
    {"SQL_INTERVAL_YEAR_TO_MONTH", "datetime"},
    {"SQL_INTERVAL_DAY", "datetime"},
    {"SQL_INTERVAL_HOUR", "datetime"},
    {"SQL_INTERVAL_MINUTE", "datetime"},
    {"SQL_INTERVAL_SECOND", "datetime"},
    {"SQL_INTERVAL_DAY_TO_HOUR", "datetime"},
    {"SQL_INTERVAL_DAY_TO_MINUTE", "datetime"},
    {"SQL_INTERVAL_DAY_TO_SECOND", "datetime"},
    {"SQL_INTERVAL_HOUR_TO_MINUTE", "datetime"},
    {"SQL_INTERVAL_HOUR_TO_SECOND", "datetime"},
    {"SQL_INTERVAL_MINUTE_TO_SECOND", "datetime"},
    {"SQL_REF", "undefined"},
    {"SQL_TIME_WITH_TIME_ZONE", "datetime"},
    {"SQL_TIMESTAMP_WITH_TIME_ZONE", "datetime"},
    {nullptr, nullptr},
};

char const* const QorSQL99ToOldDataTypeArray[45][2] = {
    {"undefined", "undefined"},
    {"SQL_BINARY", "SQL_BINARY"},
    {"SQL_CHAR", "SQL_CHAR"},
    {"SQL_INTEGER", "SQL_INTEGER"},
    {"SQL_NUMERIC", "SQL_NUMERIC"},
    {"SQL_DOUBLE", "SQL_DOUBLE"},
    {"SQL_REAL", "SQL_REAL"},
    {"SQL_SMALLINT", "SQL_SMALLINT"},
    {"SQL_TINYINT", "SQL_TINYINT"},
    {"SQL_VARBINARY", "SQL_VARBINARY"},
    {"SQL_VARCHAR", "SQL_VARCHAR"},
    {"SQL_LONGVARBINARY", "SQL_LONGVARBINARY"},
    {"SQL_LONGVARCHAR", "SQL_LONGVARCHAR"},
    {"SQL_TIMESTAMP", "SQL_TIMESTAMP"},
    {"SQL_TIME", "SQL_TIME"},
    {"SQL_DATE", "SQL_DATE"},
    {"AUTOINCREMENT", "AUTOINCREMENT"},
    {"SQL_BIGINT", "SQL_INTEGER"},
    {"SQL_BLOB", "SQL_LONGVARBINARY"},
    {"SQL_BOOLEAN", "SQL_BOOLEAN"},
    {"SQL_CLOB", "SQL_LONGVARCHAR"},
    {"SQL_NCHAR", "SQL_CHAR"},
    {"SQL_NVARCHAR", "SQL_VARCHAR"},
    {"SQL_NLONGVARCHAR", "SQL_LONGVARCHAR"},
    {"SQL_NCLOB", "SQL_LONGVARCHAR"},
    {"SQL_DATALINK", "SQL_VARCHAR"},
    {"SQL_DECIMAL", "SQL_NUMERIC"},
    {"SQL_FLOAT", "SQL_DOUBLE"},
    {"SQL_INTERVAL_MONTH", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_YEAR", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_YEAR_TO_MONTH", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_DAY", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_HOUR", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_MINUTE", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_SECOND", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_DAY_TO_HOUR", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_DAY_TO_MINUTE", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_DAY_TO_SECOND", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_HOUR_TO_MINUTE", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_HOUR_TO_SECOND", "SQL_TIMESTAMP"},
    {"SQL_INTERVAL_MINUTE_TO_SECOND", "SQL_TIMESTAMP"},
    {"SQL_REF", "undefined"},
    {"SQL_TIME_WITH_TIME_ZONE", "SQL_TIME"},
    {"SQL_TIMESTAMP_WITH_TIME_ZONE", "SQL_TIMESTAMP"},
    {nullptr, nullptr},
};

char const* const QorLogicalToDataTypeArray[11][2] = {
    {"undefined", "undefined"},
    {"char", "SQL_CHAR"},
    {"date", "SQL_DATE"},
    {"time", "SQL_TIME"},
    {"datetime", "SQL_TIMESTAMP"},
    {"int", "SQL_INTEGER"},
    {"number", "SQL_NUMERIC"},
    {"binary", "SQL_LONGVARBINARY"},
    {"text", "SQL_LONGVARCHAR"},
    {"boolean", "SQL_BOOLEAN"},
    {nullptr, nullptr},
};

namespace {

using Row = char const* const[2];

char const* secondByFirst(Row const* row, char const* text) {
    for (; (*row)[0]; ++row) {
        if (std::strcmp((*row)[0], text) == 0)
            return (*row)[1];
    }
    return nullptr;
}

template <std::size_t count>
bool contains(char const* const (&texts)[count], char const* text) {
    for (char const* each : texts) {
        if (std::strcmp(each, text) == 0)
            return true;
    }
    return false;
}

} // namespace

char const* getDefaultDataType(QORString const& logical) {
    return secondByFirst(QorLogicalToDataTypeArray, logical.chars);
}

char const* getDataTypeName(QORString const& dataType) {
    return secondByFirst(QorDataTypeName, dataType.chars);
}

char const* getDataTypeByName(QORString const& name) {
    for (Row const* row = QorDataTypeName; (*row)[0]; ++row) {
        if (strcasecmp((*row)[1], name.chars) == 0)
            return (*row)[0];
    }
    return "undefined";
}

char const* getDefaultLogicalName(QORString const& dataType) {
    return secondByFirst(QorDataTypeToLogicalArray, dataType.chars);
}

char const* getOldDataType(QORString const& dataType) {
    char const* const old = secondByFirst(QorSQL99ToOldDataTypeArray, dataType.chars);
    return old ? old : dataType.chars;
}

bool isNumeric(QORString const& dataType) {
    static char const* const numeric[] = {"SQL_INTEGER", "SQL_NUMERIC",  "SQL_DOUBLE",
                                          "SQL_REAL",    "SQL_DECIMAL",  "SQL_FLOAT",
                                          "SQL_BIGINT",  "SQL_SMALLINT", "SQL_TINYINT"};
    return contains(numeric, dataType.chars);
}

bool isString(QORString const& dataType) {
    static char const* const strings[] = {"SQL_CHAR",  "SQL_VARCHAR",      "SQL_NVARCHAR",
                                          "SQL_NCHAR", "SQL_NLONGVARCHAR", "SQL_CLOB",
                                          "SQL_NCLOB", "SQL_LONGVARCHAR"};
    return contains(strings, dataType.chars);
}
