#include "database/SelectClauses.h"

#include "database/SqlTokens.h"

namespace database {
namespace {

struct ClauseWords {
    std::string_view word;
    std::string_view next;              ///< the word behind it, if it takes two
    std::string SelectClauses::*member; ///< null for a clause that only ends the one before
};

constexpr ClauseWords clauseWords[] = {
    {"WHERE", "", &SelectClauses::where},
    {"GROUP", "BY", &SelectClauses::groupBy},
    {"HAVING", "", &SelectClauses::having},
    {"ORDER", "BY", &SelectClauses::orderBy},
    {"WINDOW", "", nullptr},
    {"LIMIT", "", nullptr},
    {"OFFSET", "", nullptr},
    {"FETCH", "", nullptr},
    {"FOR", "", nullptr},
};

using Tokens = std::vector<Token>;

/// The clause that begins at a token, or null. Behind a dot stands a column's name.
ClauseWords const* clauseAt(Tokens const& tokens, std::size_t position) {
    if (position > 0 && tokens[position - 1].isSymbol('.')) {
        return nullptr;
    }
    for (ClauseWords const& clause : clauseWords) {
        bool const follows =
            clause.next.empty() || (position + 1 < tokens.size() && tokens[position + 1].is(clause.next));
        if (follows && tokens[position].is(clause.word)) {
            return &clause;
        }
    }
    return nullptr;
}

bool combines(Token const& token) {
    return token.is("UNION") || token.is("INTERSECT") || token.is("EXCEPT");
}

} // namespace

std::optional<SelectClauses> splitSelect(std::string_view statement) {
    Tokens const tokens = tokenize(statement);
    if (tokens.empty() || !tokens[0].is("SELECT")) {
        return std::nullopt;
    }
    SelectClauses clauses;
    if (tokens.size() > 1 && (tokens[1].is("DISTINCT") || tokens[1].is("ALL"))) {
        clauses.quantifier = upperCase(tokens[1].text);
    }
    std::string* current = nullptr;
    std::size_t start = 0;
    std::size_t end = tokens.size();
    while (end > 1 && tokens[end - 1].isSymbol(';')) {
        --end;
    }
    auto const finish = [&](std::size_t position) {
        if (current && position > start) {
            *current = textBetween(tokens[start], tokens[position - 1]);
        }
    };
    for (std::size_t i = 1; i < end; ++i) {
        if (tokens[i].isSymbol('(')) {
            i = closingParenthesis(tokens, i);
        } else if (combines(tokens[i])) {
            return std::nullopt;
        } else if (ClauseWords const* clause = clauseAt(tokens, i)) {
            finish(i);
            current = clause->member ? &(clauses.*clause->member) : nullptr;
            i += clause->next.empty() ? 0 : 1;
            start = i + 1;
        }
    }
    finish(end);
    return clauses;
}

} // namespace database
