#include <qor/QORDataType.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

namespace {

int const dataTypeCount = 44;
int const logicalTypeCount = 10;

std::string inOtherCase(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::isupper(static_cast<unsigned char>(c)) ? std::tolower(c)
                                                                          : std::toupper(c));
    return text;
}

std::set<std::string> dataTypesFor(bool (*predicate)(QORString const&)) {
    std::set<std::string> found;
    for (int i = 0; i < dataTypeCount; ++i) {
        if (predicate(QORString(QorDataTypeName[i][0])))
            found.insert(QorDataTypeName[i][0]);
    }
    return found;
}

} // namespace

TEST(QORDataType, TablesAreClosedByAPairOfNulls) {
    for (auto const* table : {QorDataTypeName, QorDataTypeToLogicalArray, QorSQL99ToOldDataTypeArray}) {
        for (int i = 0; i < dataTypeCount; ++i)
            ASSERT_TRUE(table[i][0] && table[i][1]) << i;
        EXPECT_EQ(table[dataTypeCount][0], nullptr);
        EXPECT_EQ(table[dataTypeCount][1], nullptr);
    }
    for (int i = 0; i < logicalTypeCount; ++i)
        ASSERT_TRUE(QorLogicalToDataTypeArray[i][0] && QorLogicalToDataTypeArray[i][1]) << i;
    EXPECT_EQ(QorLogicalToDataTypeArray[logicalTypeCount][0], nullptr);
    EXPECT_EQ(QorLogicalToDataTypeArray[logicalTypeCount][1], nullptr);
}

TEST(QORDataType, TablesByDataTypeHaveTheSameKeysInTheSameOrder) {
    for (int i = 0; i < dataTypeCount; ++i) {
        EXPECT_STREQ(QorDataTypeToLogicalArray[i][0], QorDataTypeName[i][0]) << i;
        EXPECT_STREQ(QorSQL99ToOldDataTypeArray[i][0], QorDataTypeName[i][0]) << i;
    }
    EXPECT_STREQ(QorDataTypeName[0][0], "undefined");
    EXPECT_STREQ(QorDataTypeName[16][0], "AUTOINCREMENT");
    EXPECT_STREQ(QorDataTypeName[43][0], "SQL_TIMESTAMP_WITH_TIME_ZONE");
}

TEST(QORDataType, EveryKeyFindsItsRow) {
    for (int i = 0; i < dataTypeCount; ++i) {
        QORString const dataType(QorDataTypeName[i][0]);
        EXPECT_EQ(getDataTypeName(dataType), QorDataTypeName[i][1]);
        EXPECT_EQ(getDataTypeByName(QORString(QorDataTypeName[i][1])), QorDataTypeName[i][0]);
        EXPECT_EQ(getDefaultLogicalName(dataType), QorDataTypeToLogicalArray[i][1]);
        EXPECT_EQ(getOldDataType(dataType), QorSQL99ToOldDataTypeArray[i][1]);
    }
    for (int i = 0; i < logicalTypeCount; ++i)
        EXPECT_EQ(getDefaultDataType(QORString(QorLogicalToDataTypeArray[i][0])),
                  QorLogicalToDataTypeArray[i][1]);
}

TEST(QORDataType, GivesNameLogicalAndOldTypeOfADataType) {
    struct Row {
        char const* dataType;
        char const* name;
        char const* logical;
        char const* old;
    };
    Row const rows[] = {
        {"SQL_NUMERIC", "numeric", "number", "SQL_NUMERIC"},
        {"SQL_TINYINT", "tinyint", "int", "SQL_TINYINT"},
        {"AUTOINCREMENT", "autoincrement", "int", "AUTOINCREMENT"},
        {"SQL_BIGINT", "bigint", "int", "SQL_INTEGER"},
        {"SQL_BLOB", "blob", "binary", "SQL_LONGVARBINARY"},
        {"SQL_NCHAR", "nchar", "char", "SQL_CHAR"},
        {"SQL_DATALINK", "datalink", "text", "SQL_VARCHAR"},
        {"SQL_DECIMAL", "decimal", "number", "SQL_NUMERIC"},
        {"SQL_INTERVAL_DAY_TO_SECOND", "interval day to second", "datetime", "SQL_TIMESTAMP"},
        {"SQL_REF", "ref", "undefined", "undefined"},
        {"SQL_TIME_WITH_TIME_ZONE", "time with time zone", "datetime", "SQL_TIME"},
    };
    for (Row const& row : rows) {
        QORString const dataType(row.dataType);
        EXPECT_STREQ(getDataTypeName(dataType), row.name);
        EXPECT_STREQ(getDefaultLogicalName(dataType), row.logical);
        EXPECT_STREQ(getOldDataType(dataType), row.old);
    }
}

TEST(QORDataType, OnlyTheSearchByNameIgnoresCase) {
    EXPECT_STREQ(getDataTypeByName(QORString("VarChar")), "SQL_VARCHAR");
    EXPECT_STREQ(getDataTypeByName(QORString("INTERVAL YEAR TO MONTH")), "SQL_INTERVAL_YEAR_TO_MONTH");
    EXPECT_EQ(getDataTypeName(QORString("sql_varchar")), nullptr);
    for (int i = 0; i < dataTypeCount; ++i) {
        QORString const dataType(inOtherCase(QorDataTypeName[i][0]).c_str());
        EXPECT_EQ(getDataTypeByName(QORString(inOtherCase(QorDataTypeName[i][1]).c_str())),
                  QorDataTypeName[i][0]);
        EXPECT_EQ(getDataTypeName(dataType), nullptr);
        EXPECT_EQ(getDefaultLogicalName(dataType), nullptr);
        EXPECT_EQ(getOldDataType(dataType), dataType.chars);
    }
    for (int i = 0; i < logicalTypeCount; ++i)
        EXPECT_EQ(getDefaultDataType(QORString(inOtherCase(QorLogicalToDataTypeArray[i][0]).c_str())),
                  nullptr);
}

TEST(QORDataType, UnknownTextGivesNullUndefinedOrItself) {
    for (char const* text : {"", "nonsense", "SQL_VARCHAR ", "SQL_VARCHA", "SQL_VARCHAR2"}) {
        QORString const unknown(text);
        EXPECT_EQ(getDefaultDataType(unknown), nullptr) << text;
        EXPECT_EQ(getDataTypeName(unknown), nullptr) << text;
        EXPECT_STREQ(getDataTypeByName(unknown), "undefined") << text;
        EXPECT_EQ(getDefaultLogicalName(unknown), nullptr) << text;
        EXPECT_EQ(getOldDataType(unknown), unknown.chars) << text;
        EXPECT_FALSE(isNumeric(unknown)) << text;
        EXPECT_FALSE(isString(unknown)) << text;
    }
}

TEST(QORDataType, LogicalAndDataTypesAreNoInverses) {
    EXPECT_STREQ(getDefaultDataType(QORString("date")), "SQL_DATE");
    EXPECT_STREQ(getDefaultLogicalName(QORString("SQL_DATE")), "datetime");
    EXPECT_STREQ(getDefaultDataType(QORString("time")), "SQL_TIME");
    EXPECT_STREQ(getDefaultLogicalName(QORString("SQL_TIME")), "datetime");
    EXPECT_STREQ(getDefaultDataType(QORString("number")), "SQL_NUMERIC");
    EXPECT_STREQ(getDefaultDataType(QORString("binary")), "SQL_LONGVARBINARY");
    EXPECT_STREQ(getDefaultDataType(QORString("text")), "SQL_LONGVARCHAR");
}

TEST(QORDataType, NumericAreTheNumbersWithoutAutoincrement) {
    std::set<std::string> const expected = {"SQL_INTEGER", "SQL_NUMERIC",  "SQL_DOUBLE",
                                            "SQL_REAL",    "SQL_DECIMAL",  "SQL_FLOAT",
                                            "SQL_BIGINT",  "SQL_SMALLINT", "SQL_TINYINT"};
    EXPECT_EQ(dataTypesFor(isNumeric), expected);
    EXPECT_FALSE(isNumeric(QORString("sql_integer")));
}

TEST(QORDataType, StringsAreTheCharacterTypesWithoutDatalink) {
    std::set<std::string> const expected = {"SQL_CHAR",  "SQL_VARCHAR",      "SQL_NVARCHAR",
                                            "SQL_NCHAR", "SQL_NLONGVARCHAR", "SQL_CLOB",
                                            "SQL_NCLOB", "SQL_LONGVARCHAR"};
    EXPECT_EQ(dataTypesFor(isString), expected);
    EXPECT_FALSE(isString(QORString("sql_char")));
}
