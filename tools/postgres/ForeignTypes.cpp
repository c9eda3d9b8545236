#include "postgres/ForeignTypes.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <map>
#include <regex>

namespace postgres {
namespace {

constexpr int longestText = 10485760;
constexpr int mostDigits = 1000;

std::string inParentheses(int length, int scale) {
    return "(" + std::to_string(length) + (scale > 0 ? "," + std::to_string(scale) : "") + ")";
}

std::string numericType(database::Type const& type) {
    bool const isPossible =
        type.length > 0 && type.length <= mostDigits && type.scale >= 0 && type.scale <= type.length;
    return "numeric" + (isPossible ? inParentheses(type.length, type.scale) : "");
}

bool beginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool matches(std::string_view text, char const* pattern) {
    constexpr std::size_t longest = 80; // no value is longer, and each character takes room on the stack
    return text.size() <= longest && std::regex_match(text.begin(), text.end(), std::regex(pattern));
}

int numberAt(std::string_view text, std::size_t position, std::size_t length) {
    return std::atoi(std::string(text.substr(position, length)).c_str());
}

bool isDate(std::string_view text) {
    if (!matches(text, "\\d{4}-\\d{2}-\\d{2}")) {
        return false;
    }
    int const year = numberAt(text, 0, 4);
    int const month = numberAt(text, 5, 2);
    int const day = numberAt(text, 8, 2);
    bool const isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    int const days[] = {31, isLeap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return year > 0 && month >= 1 && month <= 12 && day >= 1 && day <= days[month - 1];
}

bool isTime(std::string_view text) {
    return matches(text, "([01]\\d|2[0-3]):[0-5]\\d(:[0-5]\\d(\\.\\d{1,6})?)?");
}

bool isTimestamp(std::string_view text) {
    bool const hasTime = text.size() > 11 && (text[10] == ' ' || text[10] == 'T');
    return isDate(text.substr(0, 10)) && (text.size() == 10 || (hasTime && isTime(text.substr(11))));
}

/// The number in the parentheses of a type; 0 without one.
int lengthOf(std::string_view type) {
    std::size_t const open = type.find('(');
    return open == std::string_view::npos ? 0 : numberAt(type, open + 1, type.size());
}

/// In characters of UTF-8.
std::size_t charactersIn(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char character) {
        return (static_cast<unsigned char>(character) & 0xc0) != 0x80;
    }));
}

bool fitsInteger(std::string_view type, std::string_view value) {
    long long const limit = type == "smallint"  ? std::numeric_limits<short>::max()
                            : type == "integer" ? std::numeric_limits<int>::max()
                                                : std::numeric_limits<long long>::max();
    if (!matches(value, "[-+]?\\d{1,18}")) {
        return false;
    }
    return std::llabs(std::atoll(std::string(value).c_str())) <= limit;
}

/// Whether the digits in front of the point have room.
bool fitsNumeric(std::string_view type, std::string_view value) {
    if (!matches(value, "[-+]?\\d*\\.?\\d*")) {
        return false;
    }
    int const length = lengthOf(type);
    std::size_t const comma = type.find(',');
    int const scale = comma == std::string_view::npos ? 0 : numberAt(type, comma + 1, type.size());
    value.remove_prefix(std::min(value.find_first_not_of("+-0"), value.size()));
    std::size_t const point = std::min(value.find('.'), value.size());
    auto const digits = static_cast<int>(point);
    bool const isRounded = value.size() > point + 1 + static_cast<std::size_t>(scale);
    return length == 0 || digits + isRounded <= length - scale;
}

} // namespace

std::string translatedType(database::Type const& type) {
    static std::map<std::string, char const*> const translations = {
        {"SQL_BIGINT", "bigint"},
        {"SQL_BINARY", "bytea"},
        {"SQL_BLOB", "bytea"},
        {"SQL_BOOLEAN", "boolean"},
        {"SQL_DATE", "date"},
        {"SQL_DOUBLE", "double precision"},
        {"SQL_FLOAT", "double precision"},
        {"SQL_INTEGER", "integer"},
        {"SQL_LONGVARBINARY", "bytea"},
        {"SQL_REAL", "real"},
        {"SQL_SMALLINT", "smallint"},
        {"SQL_TIME", "time"},
        {"SQL_TIMESTAMP", "timestamp"},
        {"SQL_TIMESTAMP_WITH_TIME_ZONE", "timestamp with time zone"},
        {"SQL_TIME_WITH_TIME_ZONE", "time with time zone"},
        {"SQL_TINYINT", "smallint"},
        {"SQL_VARBINARY", "bytea"},
    };
    std::string const& name = type.dataType;
    auto const found = translations.find(name);
    if (found != translations.end()) {
        return found->second;
    }
    if (name == "SQL_NUMERIC" || name == "SQL_DECIMAL") {
        return numericType(type);
    }
    bool const isFixed = name == "SQL_CHAR" || name == "SQL_NCHAR";
    bool const isShort = type.length > 0 && type.length <= longestText;
    if ((isFixed || name == "SQL_VARCHAR" || name == "SQL_NVARCHAR") && isShort) {
        return (isFixed ? "char" : "varchar") + inParentheses(type.length, 0);
    }
    if (beginsWith(name, "SQL_INTERVAL_")) {
        std::string fields = name.substr(4);
        std::replace(fields.begin(), fields.end(), '_', ' ');
        return fields;
    }
    return "text";
}

Kind kindOf(std::string_view type) {
    static std::map<std::string_view, Kind> const kinds = {
        {"boolean", Kind::BOOLEAN}, {"smallint", Kind::INTEGER},   {"integer", Kind::INTEGER},
        {"bigint", Kind::INTEGER},  {"real", Kind::DOUBLE},        {"double precision", Kind::DOUBLE},
        {"bytea", Kind::BYTES},     {"date", Kind::DATE},          {"time", Kind::TIME},
        {"text", Kind::TEXT},       {"timestamp", Kind::TIMESTAMP}};
    auto const known = kinds.find(type);
    if (known != kinds.end()) {
        return known->second;
    }
    return beginsWith(type, "numeric")                                 ? Kind::NUMERIC
           : beginsWith(type, "varchar(") || beginsWith(type, "char(") ? Kind::TEXT
                                                                       : Kind::OTHER;
}

char const* nameOf(Kind kind) {
    constexpr char const* names[] = {
        "a literal", "boolean", "an integer", "numeric",     "double precision", "text",
        "bytea",     "a date",  "a time",     "a timestamp", "a type of its own"};
    return names[static_cast<int>(kind)];
}

bool isNumber(Kind kind) {
    return kind == Kind::INTEGER || kind == Kind::NUMERIC || kind == Kind::DOUBLE;
}

bool isValueOf(Kind kind, std::string_view text) {
    switch (kind) {
    case Kind::TEXT:
    case Kind::LITERAL:
        return true;
    case Kind::INTEGER:
        return matches(text, "-?\\d{1,4}"); // of the smallest type
    case Kind::NUMERIC:
    case Kind::DOUBLE:
        return matches(text, "-?\\d{1,30}(\\.\\d{1,30})?");
    case Kind::DATE:
        return isDate(text);
    case Kind::TIME:
        return isTime(text);
    case Kind::TIMESTAMP:
        return isTimestamp(text);
    default:
        return false;
    }
}

bool fits(std::string_view type, std::string_view value) {
    switch (kindOf(type)) {
    case Kind::INTEGER:
        return fitsInteger(type, value);
    case Kind::NUMERIC:
        return fitsNumeric(type, value);
    case Kind::TEXT:
        return lengthOf(type) == 0 || charactersIn(value) <= static_cast<std::size_t>(lengthOf(type));
    default:
        return true;
    }
}

} // namespace postgres
