#include "sqlite/DeclaredType.h"

#include "database/SqlTokens.h"

#include <qor/QORDataType.h>

#include <algorithm>
#include <limits>
#include <string>

namespace sqlite {
namespace {

struct Entry {
    std::string_view text;
    char const* dataType;
};

/// Spellings beside those that SQL's own names of the data types cover.
constexpr Entry synonyms[] = {
    {"ANY", "undefined"},
    {"BIG INT", "SQL_BIGINT"},
    {"BINARY LARGE OBJECT", "SQL_BLOB"},
    {"BINARY VARYING", "SQL_VARBINARY"},
    {"BIT", "SQL_BOOLEAN"},
    {"BOOL", "SQL_BOOLEAN"},
    {"CHAR LARGE OBJECT", "SQL_CLOB"},
    {"CHAR VARYING", "SQL_VARCHAR"},
    {"CHARACTER LARGE OBJECT", "SQL_CLOB"},
    {"CHARACTER VARYING", "SQL_VARCHAR"},
    {"CHARACTER", "SQL_CHAR"},
    {"DATETIME", "SQL_TIMESTAMP"},
    {"DEC", "SQL_DECIMAL"},
    {"DOUBLE PRECISION", "SQL_DOUBLE"},
    {"INT1", "SQL_TINYINT"},
    {"INT2", "SQL_SMALLINT"},
    {"INT4", "SQL_INTEGER"},
    {"INT8", "SQL_BIGINT"},
    {"INTEGER", "SQL_INTEGER"},
    {"JSON", "SQL_LONGVARCHAR"},
    {"LONG VARBINARY", "SQL_LONGVARBINARY"},
    {"LONG VARCHAR", "SQL_LONGVARCHAR"},
    {"MONEY", "SQL_DECIMAL"},
    {"NATIONAL CHAR VARYING", "SQL_NVARCHAR"},
    {"NATIONAL CHAR", "SQL_NCHAR"},
    {"NATIONAL CHARACTER LARGE OBJECT", "SQL_NCLOB"},
    {"NATIONAL CHARACTER VARYING", "SQL_NVARCHAR"},
    {"NATIONAL CHARACTER", "SQL_NCHAR"},
    {"NATIONAL VARCHAR", "SQL_NVARCHAR"},
    {"NATIVE CHARACTER", "SQL_NCHAR"},
    {"NTEXT", "SQL_NLONGVARCHAR"},
    {"NUMBER", "SQL_NUMERIC"},
    {"NVARCHAR2", "SQL_NVARCHAR"},
    {"TEXT", "SQL_LONGVARCHAR"},
    {"TIME WITHOUT TIME ZONE", "SQL_TIME"},
    {"TIMESTAMP WITHOUT TIME ZONE", "SQL_TIMESTAMP"},
    {"TIMESTAMPTZ", "SQL_TIMESTAMP_WITH_TIME_ZONE"},
    {"TIMETZ", "SQL_TIME_WITH_TIME_ZONE"},
    {"UUID", "SQL_CHAR"},
    {"VARCHAR2", "SQL_VARCHAR"},
    {"VARYING CHARACTER", "SQL_VARCHAR"},
    {"XML", "SQL_LONGVARCHAR"},
};

/// A name that contains one of these has the affinity of the first one that it contains. The data type is the
/// one that this affinity holds with the least loss.
constexpr Entry affinities[] = {
    {"INT", "SQL_INTEGER"}, {"CHAR", "SQL_VARCHAR"}, {"CLOB", "SQL_CLOB"},   {"TEXT", "SQL_LONGVARCHAR"},
    {"BLOB", "SQL_BLOB"},   {"REAL", "SQL_DOUBLE"},  {"FLOA", "SQL_DOUBLE"}, {"DOUB", "SQL_DOUBLE"},
};

constexpr char const* undefined = "undefined";
constexpr char const* numericAffinity = "SQL_NUMERIC";

bool isSign(std::string_view word) {
    return word == "UNSIGNED" || word == "SIGNED" || word == "ZEROFILL";
}

void appendWord(std::string& name, std::string& word) {
    if (!word.empty() && !isSign(word)) {
        name.append(name.empty() ? "" : " ").append(word);
    }
    word.clear();
}

/// The words of the type in upper case with a blank between them, without the text in parentheses and without
/// words for the sign.
std::string nameOf(std::string_view declared) {
    std::string name;
    std::string word;
    int depth = 0;
    for (char const character : database::upperCase(declared)) {
        bool const opens = character == '(';
        bool const closes = character == ')';
        depth += opens - closes;
        if (opens || closes || database::isBlank(character)) {
            appendWord(name, word);
        } else if (depth <= 0) {
            word += character;
        }
    }
    appendWord(name, word);
    return name;
}

/// The number at the beginning of a text, after blanks; 0 if there is none, and the nearest int if it is too
/// large.
int leadingNumber(std::string_view text) {
    while (!text.empty() && database::isBlank(text.front())) {
        text.remove_prefix(1);
    }
    bool const negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    constexpr int highest = std::numeric_limits<int>::max();
    int number = 0;
    for (; !text.empty() && kit::isDigit(text.front()); text.remove_prefix(1)) {
        int const digit = text.front() - '0';
        number = number > (highest - digit) / 10 ? highest : number * 10 + digit;
    }
    return negative ? -number : number;
}

char const* dataTypeOf(std::string const& name) {
    for (Entry const& synonym : synonyms) {
        if (synonym.text == name) {
            return synonym.dataType;
        }
    }
    char const* const known = getDataTypeByName(name.c_str());
    if (std::string_view(known) != undefined) {
        return known;
    }
    for (Entry const& affinity : affinities) {
        if (name.find(affinity.text) != std::string::npos) {
            return affinity.dataType;
        }
    }
    return numericAffinity;
}

} // namespace

DeclaredType readDeclaredType(std::string_view declared) {
    if (std::all_of(declared.begin(), declared.end(), database::isBlank)) {
        return {undefined, 0, 0};
    }
    DeclaredType type{dataTypeOf(nameOf(declared)), 0, 0};
    auto const open = declared.find('(');
    if (open == std::string_view::npos) {
        return type;
    }
    std::string_view const numbers = declared.substr(open + 1, declared.find(')', open) - open - 1);
    type.length = leadingNumber(numbers);
    auto const comma = numbers.find(',');
    if (comma != std::string_view::npos) {
        type.scale = leadingNumber(numbers.substr(comma + 1));
    }
    return type;
}

} // namespace sqlite
