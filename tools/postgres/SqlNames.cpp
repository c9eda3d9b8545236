#include "postgres/SqlNames.h"

#include "kit/Text.h"

#include <algorithm>

namespace postgres {
namespace {

/// Words that can't be the name of everything unless they are quoted, of all versions so far.
constexpr std::string_view keywords[] = {"all",
                                         "analyse",
                                         "analyze",
                                         "and",
                                         "any",
                                         "array",
                                         "as",
                                         "asc",
                                         "asymmetric",
                                         "authorization",
                                         "between",
                                         "bigint",
                                         "binary",
                                         "bit",
                                         "boolean",
                                         "both",
                                         "case",
                                         "cast",
                                         "char",
                                         "character",
                                         "check",
                                         "coalesce",
                                         "collate",
                                         "collation",
                                         "column",
                                         "concurrently",
                                         "constraint",
                                         "create",
                                         "cross",
                                         "current_catalog",
                                         "current_date",
                                         "current_role",
                                         "current_schema",
                                         "current_time",
                                         "current_timestamp",
                                         "current_user",
                                         "dec",
                                         "decimal",
                                         "default",
                                         "deferrable",
                                         "desc",
                                         "distinct",
                                         "do",
                                         "else",
                                         "end",
                                         "except",
                                         "exists",
                                         "extract",
                                         "false",
                                         "fetch",
                                         "float",
                                         "for",
                                         "foreign",
                                         "freeze",
                                         "from",
                                         "full",
                                         "grant",
                                         "greatest",
                                         "group",
                                         "grouping",
                                         "having",
                                         "ilike",
                                         "in",
                                         "initially",
                                         "inner",
                                         "inout",
                                         "int",
                                         "integer",
                                         "intersect",
                                         "interval",
                                         "into",
                                         "is",
                                         "isnull",
                                         "join",
                                         "json",
                                         "json_array",
                                         "json_arrayagg",
                                         "json_exists",
                                         "json_object",
                                         "json_objectagg",
                                         "json_query",
                                         "json_scalar",
                                         "json_serialize",
                                         "json_table",
                                         "json_value",
                                         "lateral",
                                         "leading",
                                         "least",
                                         "left",
                                         "like",
                                         "limit",
                                         "localtime",
                                         "localtimestamp",
                                         "merge_action",
                                         "national",
                                         "natural",
                                         "nchar",
                                         "none",
                                         "normalize",
                                         "not",
                                         "notnull",
                                         "null",
                                         "nullif",
                                         "numeric",
                                         "offset",
                                         "on",
                                         "only",
                                         "or",
                                         "order",
                                         "out",
                                         "outer",
                                         "overlaps",
                                         "overlay",
                                         "placing",
                                         "position",
                                         "precision",
                                         "primary",
                                         "real",
                                         "references",
                                         "returning",
                                         "right",
                                         "row",
                                         "select",
                                         "session_user",
                                         "setof",
                                         "similar",
                                         "smallint",
                                         "some",
                                         "substring",
                                         "symmetric",
                                         "system_user",
                                         "table",
                                         "tablesample",
                                         "then",
                                         "time",
                                         "timestamp",
                                         "to",
                                         "trailing",
                                         "treat",
                                         "trim",
                                         "true",
                                         "union",
                                         "unique",
                                         "user",
                                         "using",
                                         "values",
                                         "varchar",
                                         "variadic",
                                         "verbose",
                                         "when",
                                         "where",
                                         "window",
                                         "with",
                                         "xmlattributes",
                                         "xmlconcat",
                                         "xmlelement",
                                         "xmlexists",
                                         "xmlforest",
                                         "xmlnamespaces",
                                         "xmlparse",
                                         "xmlpi",
                                         "xmlroot",
                                         "xmlserialize",
                                         "xmltable"};

using kit::isDigit;

/// The server takes each byte of characters beyond ASCII for a letter.
bool isLetter(char character) {
    return kit::isLetter(character) || character == '_' || kit::isBeyondAscii(character);
}

bool isPlain(std::string_view name) {
    auto const isSmall = [](char character) {
        return (character >= 'a' && character <= 'z') || character == '_';
    };
    return !name.empty() && isSmall(name.front()) &&
           std::all_of(name.begin(), name.end(), [&](char c) { return isSmall(c) || isDigit(c); }) &&
           !std::binary_search(std::begin(keywords), std::end(keywords), name);
}

std::string quoted(std::string_view text, char mark) {
    std::string result(1, mark);
    for (char const character : text) {
        result.append(character == mark ? 2 : 1, character);
    }
    return result + mark;
}

/// Takes a name from the front of `sql`, of which the first character begins one.
std::string takePart(std::string_view& sql) {
    std::string part;
    if (sql.front() != '"') {
        while (!sql.empty() && (isLetter(sql.front()) || isDigit(sql.front()) || sql.front() == '$')) {
            part += sql.front();
            sql.remove_prefix(1);
        }
        return part;
    }
    for (sql.remove_prefix(1); !sql.empty(); sql.remove_prefix(1)) {
        if (sql.front() == '"') {
            sql.remove_prefix(1);
            if (sql.empty() || sql.front() != '"') {
                break;
            }
        }
        part += sql.front();
    }
    return part;
}

bool isOperator(char character) {
    return std::string_view("+-*/<>=~!@#%^&|`?").find(character) != std::string_view::npos;
}

/// Takes the name of an operator from the front of `sql`, of which the first character begins one.
std::string takeOperator(std::string_view& sql) {
    std::string part;
    while (!sql.empty() && isOperator(sql.front())) {
        part += sql.front();
        sql.remove_prefix(1);
    }
    return part;
}

bool beginsName(std::string_view sql) {
    return !sql.empty() && (isLetter(sql.front()) || sql.front() == '"');
}

} // namespace

std::string quoteName(std::string_view name) {
    return isPlain(name) ? std::string(name) : quoted(name, '"');
}

std::string quoteText(std::string_view text) {
    return quoted(text, '\'');
}

void forEachName(std::string_view sql, std::function<void(std::vector<std::string> const&)> const& take) {
    std::vector<std::string> parts;
    while (!sql.empty()) {
        if (!beginsName(sql)) {
            bool const isNumber = isDigit(sql.front());
            sql.remove_prefix(1);
            while (isNumber && !sql.empty() && (isDigit(sql.front()) || isLetter(sql.front()))) {
                sql.remove_prefix(1);
            }
            continue;
        }
        parts.assign(1, takePart(sql));
        while (!sql.empty() && sql.front() == '.' && beginsName(sql.substr(1))) {
            sql.remove_prefix(1);
            parts.push_back(takePart(sql));
        }
        if (sql.size() > 1 && sql.front() == '.' && isOperator(sql[1])) {
            sql.remove_prefix(1);
            parts.push_back(takeOperator(sql));
        }
        take(parts);
    }
}

} // namespace postgres
