#include "sqlite/Translation.h"

#include "database/SqlTokens.h"
#include "sqlite/Names.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace sqlite {
namespace {

using database::Token;
using database::TokenKind;
using Tokens = std::vector<Token>;

/// Functions that mean the same, or nearly, wherever there are such.
std::set<std::string> const functions = {
    "ABS", "AVG",    "CAST", "COALESCE", "COUNT", "LENGTH",     "LOWER", "LTRIM", "MAX",  "MIN",
    "MOD", "NULLIF", "RANK", "REPLACE",  "ROUND", "ROW_NUMBER", "RTRIM", "SUM",   "TRIM", "UPPER"};

/// Words behind which a parenthesis opens no arguments.
std::set<std::string> const keywords = {
    "ALL",    "AND",  "AS",     "BETWEEN", "BY",        "CASE",  "CHECK",  "DISTINCT", "ELSE",  "EXCEPT",
    "EXISTS", "FROM", "HAVING", "IN",      "INTERSECT", "IS",    "JOIN",   "LIKE",     "NOT",   "ON",
    "OR",     "OVER", "SELECT", "THEN",    "UNION",     "USING", "VALUES", "WHEN",     "WHERE", "WITH"};

/// Words that begin what SQLite hasn't.
std::set<std::string> const unknown = {
    "ANY",      "ARRAY",       "SOME",      "SIMILAR",        "ILIKE",        "INTERVAL",    "OVERLAPS",
    "EXTRACT",  "LATERAL",     "FETCH",     "ROWS",           "ROW",          "CUBE",        "ROLLUP",
    "GROUPING", "TABLESAMPLE", "LOCALTIME", "LOCALTIMESTAMP", "CURRENT_USER", "SESSION_USER"};

class Translator {
public:
    explicit Translator(std::string_view sql) : tokens(database::tokenize(sql, database::Brackets::VALUES)) {
        while (!tokens.empty() && tokens.back().isSymbol(';')) {
            tokens.pop_back();
        }
    }

    Translation run() {
        for (position = 0; position < tokens.size(); ++position) {
            std::size_t const start = position;
            if (!translateToken()) {
                return {"", "SQLite isn't known to have " + std::string(tokens[start].text)};
            }
        }
        return {result, ""};
    }

private:
    bool isAt(std::size_t index, std::string_view keyword) const {
        return index < tokens.size() && tokens[index].is(keyword);
    }
    bool isSymbolAt(std::size_t index, char symbol) const {
        return index < tokens.size() && tokens[index].isSymbol(symbol);
    }

    /// Keeps blanks as they were, and puts none where there was none.
    void append(std::string_view text) {
        bool const blank =
            position > 0 && tokens[position].text.data() >
                                tokens[position - 1].text.data() + tokens[position - 1].text.size();
        result += (blank && !result.empty() ? " " : "") + std::string(text);
    }

    bool translateToken() {
        Token const& token = tokens[position];
        if (token.text == "::") {
            return skipCast();
        }
        if (token.isSymbol('=') && isAt(position + 1, "ANY")) {
            return translateList();
        }
        if (!isKnown(token)) {
            return false;
        }
        append(token.text);
        return true;
    }

    bool isKnown(Token const& token) const {
        switch (token.kind) {
        case TokenKind::STRING:
            return token.text.front() == '\'';
        case TokenKind::QUOTED_NAME:
            return token.text.front() == '"';
        case TokenKind::NUMBER:
            return true;
        case TokenKind::SYMBOL:
            return std::string_view("~@#^?:$[").find(token.text.front()) == std::string_view::npos;
        case TokenKind::WORD:
            break;
        }
        std::string const word = database::upperCase(token.text);
        bool const called = isSymbolAt(position + 1, '(');
        return !unknown.count(word) && (!called || functions.count(word) || keywords.count(word));
    }

    /// A literal is what SQLite makes of it anyway, and what only gets wider stays as it is. Any other cast
    /// makes another value.
    bool skipCast() {
        static std::set<std::string> const wider = {"TEXT", "CHARACTER", "VARCHAR", "BPCHAR",
                                                    "NAME", "BIGINT",    "NUMERIC", "DOUBLE"};
        bool const isLiteral = position > 0 && (tokens[position - 1].kind == TokenKind::STRING ||
                                                tokens[position - 1].kind == TokenKind::NUMBER);
        bool const isWider =
            position + 1 < tokens.size() && wider.count(database::upperCase(tokens[position + 1].text));
        bool const isOwn = isSymbolAt(position + 2, '.'); // of the database, such as an enumeration
        if ((!isLiteral && !isWider && !isOwn) || isAt(position + 1, "INTERVAL") ||
            isAt(position + 1, "REGCLASS")) {
            return false;
        }
        skipType();
        return true;
    }

    /// Goes to the last token of a type behind "::".
    void skipType() {
        ++position;
        while (isSymbolAt(position + 1, '.')) {
            position += 2;
        }
        static std::set<std::string> const further = {"VARYING", "PRECISION", "WITH",
                                                      "WITHOUT", "TIME",      "ZONE"};
        while (position + 1 < tokens.size() && tokens[position + 1].kind == TokenKind::WORD &&
               further.count(database::upperCase(tokens[position + 1].text))) {
            ++position;
        }
        if (isSymbolAt(position + 1, '(')) {
            position = database::closingParenthesis(tokens, position + 1);
        }
        while (isAtBrackets(position + 1)) {
            ++position;
        }
    }

    bool isAtBrackets(std::size_t index) const { return index < tokens.size() && tokens[index].text == "[]"; }

    /// `= ANY (ARRAY['a', 'b'])`, in which the array can stand in parentheses with a cast behind.
    bool translateList() {
        std::size_t const open = position + 2;
        if (!isSymbolAt(open, '(')) {
            return false;
        }
        std::size_t array = open + 1;
        array += isSymbolAt(array, '(');
        if (!isAt(array, "ARRAY") || array + 1 >= tokens.size() || tokens[array + 1].text.front() != '[') {
            return false;
        }
        std::string_view const brackets = tokens[array + 1].text;
        if (brackets.size() < 2 || brackets.back() != ']') {
            return false;
        }
        Translation const values = Translator(brackets.substr(1, brackets.size() - 2)).run();
        if (!values.problem.empty()) {
            return false;
        }
        result += " IN (" + values.text + ")";
        position = database::closingParenthesis(tokens, open);
        return true;
    }

    Tokens tokens;
    std::size_t position = 0;
    std::string result;
};

} // namespace

Translation translateSql(std::string_view sql) {
    return Translator(sql).run();
}

Translation translateDomainCheck(std::string_view sql, std::string_view column) {
    std::string replaced;
    char const* rest = sql.data();
    for (Token const& token : database::tokenize(sql, database::Brackets::VALUES)) {
        if (token.is("VALUE")) {
            replaced.append(rest, token.text.data()).append(quoteName(column));
            rest = token.text.data() + token.text.size();
        }
    }
    replaced.append(rest, sql.data() + sql.size());
    return translateSql(replaced);
}

} // namespace sqlite
