#include "sqlite/DeclaredType.h"

#include <qor/QORDataType.h>

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

std::string dataTypeOf(char const* declared) {
    return sqlite::readDeclaredType(declared).dataType;
}

TEST(DeclaredType, WellKnownNamesGoByTheirName) {
    EXPECT_EQ(dataTypeOf("VARCHAR(40)"), "SQL_VARCHAR");
    EXPECT_EQ(dataTypeOf("INTEGER"), "SQL_INTEGER");
    EXPECT_EQ(dataTypeOf("INT"), "SQL_INTEGER");
    EXPECT_EQ(dataTypeOf("BIGINT"), "SQL_BIGINT");
    EXPECT_EQ(dataTypeOf("SMALLINT"), "SQL_SMALLINT");
    EXPECT_EQ(dataTypeOf("TINYINT"), "SQL_TINYINT");
    EXPECT_EQ(dataTypeOf("CHAR(3)"), "SQL_CHAR");
    EXPECT_EQ(dataTypeOf("NVARCHAR(160)"), "SQL_NVARCHAR");
    EXPECT_EQ(dataTypeOf("TEXT"), "SQL_LONGVARCHAR");
    EXPECT_EQ(dataTypeOf("CLOB"), "SQL_CLOB");
    EXPECT_EQ(dataTypeOf("BLOB"), "SQL_BLOB");
    EXPECT_EQ(dataTypeOf("REAL"), "SQL_REAL");
    EXPECT_EQ(dataTypeOf("DOUBLE"), "SQL_DOUBLE");
    EXPECT_EQ(dataTypeOf("FLOAT"), "SQL_FLOAT");
    EXPECT_EQ(dataTypeOf("NUMERIC(10,2)"), "SQL_NUMERIC");
    EXPECT_EQ(dataTypeOf("DECIMAL(10,5)"), "SQL_DECIMAL");
    EXPECT_EQ(dataTypeOf("BOOLEAN"), "SQL_BOOLEAN");
    EXPECT_EQ(dataTypeOf("DATE"), "SQL_DATE");
    EXPECT_EQ(dataTypeOf("TIME"), "SQL_TIME");
    EXPECT_EQ(dataTypeOf("DATETIME"), "SQL_TIMESTAMP");
    EXPECT_EQ(dataTypeOf("TIMESTAMP"), "SQL_TIMESTAMP");
}

TEST(DeclaredType, NamesOfSeveralWordsAreKnownWithTheirArgumentsInTheMiddle) {
    EXPECT_EQ(dataTypeOf("DOUBLE PRECISION"), "SQL_DOUBLE");
    EXPECT_EQ(dataTypeOf("VARYING CHARACTER(255)"), "SQL_VARCHAR");
    EXPECT_EQ(dataTypeOf("NATIVE CHARACTER(70)"), "SQL_NCHAR");
    EXPECT_EQ(dataTypeOf("TIMESTAMP(6) WITH TIME ZONE"), "SQL_TIMESTAMP_WITH_TIME_ZONE");
    EXPECT_EQ(dataTypeOf("INTERVAL YEAR(2) TO MONTH"), "SQL_INTERVAL_YEAR_TO_MONTH");
}

TEST(DeclaredType, CaseBlanksAndTheSignDoNotCount) {
    EXPECT_EQ(dataTypeOf("VarChar (40)"), "SQL_VARCHAR");
    EXPECT_EQ(dataTypeOf("  double \t precision "), "SQL_DOUBLE");
    EXPECT_EQ(dataTypeOf("UNSIGNED BIG INT"), "SQL_BIGINT");
    EXPECT_EQ(dataTypeOf("SMALLINT UNSIGNED"), "SQL_SMALLINT");
}

TEST(DeclaredType, OtherNamesGoByTheAffinityThatSqliteGivesThem) {
    EXPECT_EQ(dataTypeOf("MEDIUMINT"), "SQL_INTEGER");
    EXPECT_EQ(dataTypeOf("CHARINT"), "SQL_INTEGER");        // INT is asked for first
    EXPECT_EQ(dataTypeOf("FLOATING POINT"), "SQL_INTEGER"); // for the INT in POINT
    EXPECT_EQ(dataTypeOf("MY_CHARS"), "SQL_VARCHAR");
    EXPECT_EQ(dataTypeOf("LONGTEXT"), "SQL_LONGVARCHAR");
    EXPECT_EQ(dataTypeOf("MEDIUMBLOB"), "SQL_BLOB");
    EXPECT_EQ(dataTypeOf("FLOAT8"), "SQL_DOUBLE");
    EXPECT_EQ(dataTypeOf("STRING"), "SQL_NUMERIC");
    EXPECT_EQ(dataTypeOf("UNSIGNED"), "SQL_NUMERIC");
}

TEST(DeclaredType, ColumnsThatHoldAnythingAreUndefined) {
    EXPECT_EQ(dataTypeOf(""), "undefined");
    EXPECT_EQ(dataTypeOf("  "), "undefined");
    EXPECT_EQ(dataTypeOf("ANY"), "undefined");
}

TEST(DeclaredType, LengthAndScaleAreTheNumbersInParentheses) {
    auto const length = [](char const* declared) { return sqlite::readDeclaredType(declared).length; };
    auto const scale = [](char const* declared) { return sqlite::readDeclaredType(declared).scale; };
    EXPECT_EQ(length("VARCHAR(40)"), 40);
    EXPECT_EQ(scale("VARCHAR(40)"), 0);
    EXPECT_EQ(length("NUMERIC(10,2)"), 10);
    EXPECT_EQ(scale("NUMERIC(10,2)"), 2);
    EXPECT_EQ(length("DECIMAL ( 9 , -3 )"), 9);
    EXPECT_EQ(scale("DECIMAL ( 9 , -3 )"), -3);
    EXPECT_EQ(length("TEXT"), 0);
    EXPECT_EQ(length("VARCHAR(MAX)"), 0);
    EXPECT_EQ(length("VARCHAR("), 0);
    EXPECT_EQ(length("VARCHAR(12"), 12);
    EXPECT_EQ(length("VARCHAR(2147483647)"), std::numeric_limits<int>::max());
    EXPECT_EQ(length("VARCHAR(2147483648)"), std::numeric_limits<int>::max());
    EXPECT_EQ(length("VARCHAR(2147483646)"), std::numeric_limits<int>::max() - 1);
    EXPECT_EQ(length("VARCHAR(99999999999999999999)"), std::numeric_limits<int>::max());
}

TEST(DeclaredType, EveryDataTypeIsReadBackFromItsOwnName) {
    for (int i = 1; QorDataTypeName[i][0]; ++i) {
        EXPECT_EQ(dataTypeOf(QorDataTypeName[i][1]), QorDataTypeName[i][0]);
    }
}

} // namespace
