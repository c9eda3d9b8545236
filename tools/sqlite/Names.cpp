#include "sqlite/Names.h"

#include "database/SqlTokens.h"
#include "kit/Text.h"

#include <algorithm>

#include <sqlite3.h>

namespace sqlite {
namespace {

bool isPlainWord(std::string_view name) {
    auto const isLetter = [](char c) { return kit::isLetter(c) || c == '_'; };
    auto const isPart = [&](char c) { return isLetter(c) || kit::isDigit(c); };
    return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), isPart) &&
           !sqlite3_keyword_check(name.data(), static_cast<int>(name.size()));
}

/// In marks, those inside doubled.
std::string inMarks(std::string_view text, char mark) {
    std::string result(1, mark);
    for (char const character : text) {
        result.append(character == mark ? 2 : 1, character);
    }
    return result + mark;
}

bool isPlainType(std::string const& declared) {
    using database::Token;
    using database::TokenKind;
    int parentheses = 0;
    for (Token const& token : database::tokenize(declared)) {
        bool const inside = parentheses == 1 && !token.isSymbol('(');
        bool const plain = token.kind == TokenKind::WORD && quoteName(token.text) == token.text;
        bool const keyword =
            token.kind == TokenKind::WORD && database::equalIgnoringCase(token.text, "DATETIME");
        parentheses += token.isSymbol('(') + token.isSymbol(')');
        bool const behind = parentheses > 2 || (parentheses == 2 && !token.isSymbol(')'));
        if (behind || (!inside && !token.isSymbol('(') && !plain && !keyword)) {
            return false;
        }
    }
    return parentheses == 0 || parentheses == 2;
}

} // namespace

std::string quoteName(std::string_view name) {
    return isPlainWord(name) ? std::string(name) : inMarks(name, '"');
}

std::string quoteNames(std::vector<std::string> const& names) {
    std::string result;
    for (std::string const& name : names) {
        result += (result.empty() ? "" : ", ") + quoteName(name);
    }
    return result;
}

std::string quoteType(std::string const& declared) {
    return isPlainType(declared) ? declared : quoteName(declared);
}

std::string quoteText(std::string_view text) {
    return inMarks(text, '\'');
}

} // namespace sqlite
