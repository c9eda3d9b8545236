#pragma once

#include "kit/Text.h"

#include <string>
#include <string_view>
#include <vector>

namespace database {

enum class TokenKind {
    WORD,        ///< a keyword or a name without quotation marks
    QUOTED_NAME, ///< in double quotation marks, backticks or square brackets
    STRING,      ///< in apostrophes or between dollar signs, with its prefix, as in X'00'
    NUMBER,
    SYMBOL, ///< anything else: one character, or a cast's "::"
};

/// A piece of SQL text, which lives as long as the text.
struct Token {
    TokenKind kind;
    std::string_view text; ///< as written

    /// Whether this is that keyword, whatever the case; `upper` is in upper case.
    bool is(std::string_view upper) const;
    bool isSymbol(char character) const {
        return kind == TokenKind::SYMBOL && text.size() == 1 && text[0] == character;
    }
    /// The name that a word, a quoted name or a plain string means, without quotation marks.
    std::string name() const;
};

/// The contents of square brackets.
enum class Brackets {
    NAME,  ///< a name, up to the first closing one
    VALUES ///< the elements of an array or a place in it, which may hold texts and brackets; one SYMBOL
};

/// Cuts SQL text into tokens as SQLite and PostgreSQL do. Blanks and comments are omitted. Whatever isn't
/// closed reaches to the end of the text.
std::vector<Token> tokenize(std::string_view sql, Brackets brackets = Brackets::NAME);

/// The text from one token to another, both included; they must be of the same text.
std::string_view textBetween(Token const& first, Token const& last);

/// The text from its first token to its last: without comments at its ends, so that text appended to it isn't
/// part of one.
std::string trimmedSql(std::string_view sql);

/// The position of the token that closes the parenthesis at `open`, or that of the last token if none does.
std::size_t closingParenthesis(std::vector<Token> const& tokens, std::size_t open);

// SQL distinguishes these as `kit` does.
using kit::equalIgnoringCase;
using kit::isBlank;
using kit::lowerCase;
using kit::upperCase;

} // namespace database
