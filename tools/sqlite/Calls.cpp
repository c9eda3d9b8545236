#include "sqlite/Calls.h"

#include "database/SqlTokens.h"

#include <vector>

namespace sqlite {
namespace {

using database::Token;
using database::TokenKind;

/// Words that can have a parenthesis behind them without being called. `upper` is in upper case.
bool opensNoCall(std::string const& upper) {
    static std::set<std::string> const words = {
        "ALL",      "AND",   "AS",           "BETWEEN",   "BY",        "CASE",   "CAST",   "CHECK",
        "CONFLICT", "CROSS", "DEFAULT",      "DISTINCT",  "ELSE",      "ESCAPE", "EXCEPT", "EXISTS",
        "FILTER",   "FROM",  "HAVING",       "IN",        "INTERSECT", "IS",     "ISNULL", "JOIN",
        "LIMIT",    "MATCH", "MATERIALIZED", "NOT",       "NOTNULL",   "OFFSET", "ON",     "OR",
        "OVER",     "RAISE", "REGEXP",       "RETURNING", "SELECT",    "SET",    "THEN",   "UNION",
        "UNIQUE",   "USING", "VALUES",       "WHEN",      "WHERE",     "WITH"};
    return words.count(upper) > 0;
}

class Finder {
public:
    explicit Finder(std::string_view sql) : tokens(database::tokenize(sql)) {}

    Calls run() {
        for (position = 0; position < tokens.size(); ++position) {
            if (at(position, "COLLATE") && position + 1 < tokens.size()) {
                calls.collations.insert(tokens[position + 1].name());
            } else if (isMatching()) {
                calls.functions.insert("regexp");
            } else if (isCall()) {
                addCall();
            }
        }
        return std::move(calls);
    }

private:
    bool at(std::size_t index, std::string_view keyword) const {
        return index < tokens.size() && tokens[index].is(keyword);
    }
    bool symbolAt(std::size_t index, char symbol) const {
        return index < tokens.size() && tokens[index].isSymbol(symbol);
    }
    bool isName(std::size_t index) const {
        return tokens[index].kind == TokenKind::WORD || tokens[index].kind == TokenKind::QUOTED_NAME;
    }

    /// REGEXP between two operands; elsewhere the word is a name.
    bool isMatching() const {
        if (!at(position, "REGEXP") || position == 0 || position + 1 >= tokens.size()) {
            return false;
        }
        Token const& before = tokens[position - 1];
        bool const isOperand = before.kind != TokenKind::SYMBOL || before.isSymbol(')');
        bool const isKeyword = before.kind == TokenKind::WORD &&
                               opensNoCall(database::upperCase(before.text)) && !before.is("NOT");
        return isOperand && !isKeyword && !symbolAt(position + 1, ',') && !symbolAt(position + 1, ')');
    }

    bool isCall() const {
        if (!isName(position) || !symbolAt(position + 1, '(')) {
            return false;
        }
        bool const isWord = tokens[position].kind == TokenKind::WORD;
        if (isWord && opensNoCall(database::upperCase(tokens[position].text))) {
            return false;
        }
        return !namesColumns() && !isTypeOfCast() && !isCommonTable();
    }

    /// Behind INTO and the like a table stands, and its columns in parentheses.
    bool namesColumns() const {
        return position > 0 &&
               (at(position - 1, "INTO") || at(position - 1, "TABLE") || at(position - 1, "REFERENCES") ||
                symbolAt(position - 1, '.') || at(position - 1, "OVER") || at(position - 1, "VIEW"));
    }

    /// The words between AS and the parenthesis are those of a type.
    bool isTypeOfCast() const {
        std::size_t start = position;
        while (start > 0 && isName(start) && !tokens[start].is("AS")) {
            --start;
        }
        return start < position && tokens[start].is("AS");
    }

    /// `WITH name (columns) AS (...)`.
    bool isCommonTable() const {
        std::size_t const behind = database::closingParenthesis(tokens, position + 1) + 1;
        return at(behind, "AS") &&
               (symbolAt(behind + 1, '(') || at(behind + 1, "MATERIALIZED") || at(behind + 1, "NOT"));
    }

    void addCall() {
        std::string const name = tokens[position].name();
        std::size_t const behind = database::closingParenthesis(tokens, position + 1) + 1;
        calls.functions.insert(name);
        if (at(position + 2, "DISTINCT") || at(behind, "OVER") || at(behind, "FILTER")) {
            calls.aggregates.insert(name);
        }
    }

    std::vector<Token> const tokens;
    std::size_t position = 0;
    Calls calls;
};

} // namespace

Calls callsIn(std::string_view sql) {
    return Finder(sql).run();
}

} // namespace sqlite
