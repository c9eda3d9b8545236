#include "database/SqlTokens.h"

#include <algorithm>

namespace database {
namespace {

using kit::isDigit;

bool startsName(char character) {
    return kit::isLetter(character) || character == '_' || kit::isBeyondAscii(character);
}

bool continuesName(char character) {
    return startsName(character) || isDigit(character) || character == '$';
}

class Scanner {
public:
    Scanner(std::string_view sql, Brackets toUse) : text(sql), brackets(toUse) {}

    std::vector<Token> run() {
        std::vector<Token> tokens;
        while (skipBlanks()) {
            std::size_t const start = position;
            TokenKind const kind = scan();
            tokens.push_back({kind, text.substr(start, position - start)});
        }
        return tokens;
    }

private:
    char at(std::size_t index) const { return index < text.size() ? text[index] : '\0'; }

    /// False at the end.
    bool skipBlanks() {
        for (;;) {
            if (position >= text.size()) {
                return false;
            }
            if (isBlank(text[position])) {
                ++position;
            } else if (text.substr(position, 2) == "--") {
                position = std::min(text.find('\n', position), text.size());
            } else if (text.substr(position, 2) == "/*") {
                position = std::min(text.find("*/", position + 2), text.size() - 2) + 2;
            } else {
                return true;
            }
        }
    }

    TokenKind scan() {
        char const first = text[position];
        switch (first) {
        case '\'':
            skipQuoted('\'', false);
            return TokenKind::STRING;
        case '"':
        case '`':
            skipQuoted(first, false);
            return TokenKind::QUOTED_NAME;
        case '[':
            if (brackets == Brackets::VALUES) {
                skipValues();
                return TokenKind::SYMBOL;
            }
            position = std::min(text.find(']', position), text.size() - 1) + 1;
            return TokenKind::QUOTED_NAME;
        case '$':
            return scanDollar();
        default:
            break;
        }
        if (startsName(first)) {
            return scanWord();
        }
        if (isDigit(first) || (first == '.' && isDigit(at(position + 1)))) {
            return scanNumber();
        }
        position += text.substr(position, 2) == "::" ? 2 : 1;
        return TokenKind::SYMBOL;
    }

    /// To the bracket that closes this one.
    void skipValues() {
        int depth = 0;
        do {
            char const character = text[position];
            if (character == '\'' || character == '"') {
                skipQuoted(character,
                           character == '\'' && position > 0 && upperCase(text[position - 1]) == 'E');
                continue;
            }
            depth += (character == '[') - (character == ']');
            ++position;
        } while (depth > 0 && position < text.size());
    }

    /// A quotation mark within the text is doubled.
    void skipQuoted(char mark, bool backslashes) {
        for (++position; position < text.size(); ++position) {
            if (backslashes && text[position] == '\\') {
                ++position;
            } else if (text[position] == mark) {
                ++position;
                if (at(position) != mark) {
                    return;
                }
            }
        }
        position = text.size();
    }

    TokenKind scanWord() {
        std::size_t const start = position;
        while (continuesName(at(position))) {
            ++position;
        }
        std::size_t const length = position - start;
        char const letter = upperCase(text[start]);
        if (at(position) != '\'' || length != 1 ||
            std::string_view("XBEN").find(letter) == std::string_view::npos) {
            return TokenKind::WORD;
        }
        skipQuoted('\'', letter == 'E');
        return TokenKind::STRING;
    }

    TokenKind scanNumber() {
        while (continuesName(at(position)) || at(position) == '.' ||
               ((at(position) == '+' || at(position) == '-') && upperCase(text[position - 1]) == 'E')) {
            ++position;
        }
        return TokenKind::NUMBER;
    }

    /// A string between equal tags such as $body$, or else a parameter.
    TokenKind scanDollar() {
        std::size_t end = position + 1;
        while (continuesName(at(end)) && at(end) != '$') {
            ++end;
        }
        if (at(end) != '$' || isDigit(at(position + 1))) {
            position = end;
            return TokenKind::SYMBOL;
        }
        std::string_view const tag = text.substr(position, end + 1 - position);
        std::size_t const closing = text.find(tag, end + 1);
        position = closing == std::string_view::npos ? text.size() : closing + tag.size();
        return TokenKind::STRING;
    }

    std::string_view text;
    Brackets brackets;
    std::size_t position = 0;
};

} // namespace

bool Token::is(std::string_view wanted) const {
    return kind == TokenKind::WORD && equalIgnoringCase(text, wanted);
}

std::string Token::name() const {
    bool const quoted = kind == TokenKind::QUOTED_NAME || (kind == TokenKind::STRING && text[0] == '\'');
    if (!quoted) {
        return std::string(text);
    }
    char const mark = text[0] == '[' ? ']' : text[0];
    std::string result;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == mark) {
            ++i;
            if (i >= text.size()) {
                break;
            }
        }
        result += text[i];
    }
    return result;
}

std::vector<Token> tokenize(std::string_view sql, Brackets brackets) {
    return Scanner(sql, brackets).run();
}

std::string_view textBetween(Token const& first, Token const& last) {
    char const* const end = last.text.data() + last.text.size();
    return {first.text.data(), static_cast<std::size_t>(end - first.text.data())};
}

std::string trimmedSql(std::string_view sql) {
    std::vector<Token> const tokens = tokenize(sql);
    return tokens.empty() ? "" : std::string(textBetween(tokens.front(), tokens.back()));
}

std::size_t closingParenthesis(std::vector<Token> const& tokens, std::size_t open) {
    int depth = 0;
    for (std::size_t i = open; i < tokens.size(); ++i) {
        depth += tokens[i].isSymbol('(') - tokens[i].isSymbol(')');
        if (depth == 0) {
            return i;
        }
    }
    return tokens.size() - 1;
}

} // namespace database
