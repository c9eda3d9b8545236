#include "database/SqlText.h"

#include "database/SqlTokens.h"

#include <algorithm>
#include <array>
#include <istream>

namespace database {
namespace {

/// How a statement begins: its first word, and what the second one must be, if that alone shows that it is no
/// sentence.
struct Beginning {
    char const* first;
    std::array<char const*, 4> second;
};

constexpr std::array<char const*, 32> objects = {
    "TABLE",     "VIEW",       "INDEX",     "UNIQUE",     "SCHEMA",    "DATABASE",     "TYPE",
    "DOMAIN",    "FUNCTION",   "TRIGGER",   "SEQUENCE",   "EXTENSION", "PROCEDURE",    "TEMP",
    "VIRTUAL",   "TEMPORARY",  "AGGREGATE", "OPERATOR",   "TEXT",      "MATERIALIZED", "OR",
    "ROLE",      "USER",       "SERVER",    "FOREIGN",    "POLICY",    "RULE",         "CAST",
    "COLLATION", "STATISTICS", "UNLOGGED",  "PUBLICATION"};

constexpr std::array<Beginning, 16> beginnings = {{{"BEGIN", {";", "TRANSACTION", "WORK", "IMMEDIATE"}},
                                                   {"START", {"TRANSACTION"}},
                                                   {"COMMIT", {";", "TRANSACTION", "WORK"}},
                                                   {"PRAGMA", {}},
                                                   {"SET", {}},
                                                   {"SELECT", {}},
                                                   {"WITH", {}},
                                                   {"INSERT", {"INTO", "OR"}},
                                                   {"REPLACE", {"INTO"}},
                                                   {"UPDATE", {}},
                                                   {"DELETE", {"FROM"}},
                                                   {"COMMENT", {"ON"}},
                                                   {"GRANT", {}},
                                                   {"REVOKE", {}},
                                                   {"COPY", {}},
                                                   {"\\", {"restrict", "connect", "set", "echo"}}}};

bool isWord(Token const& token, char const* word) {
    return token.is(word) || token.text == word;
}

template <class Words>
bool isOneOf(Words const& words, Token const& token) {
    return std::any_of(words.begin(), words.end(),
                       [&](char const* word) { return word && isWord(token, word); });
}

bool beginsStatement(std::vector<Token> const& tokens) {
    Token const& first = tokens[0];
    Token const& second = tokens[1];
    if (first.is("CREATE") || first.is("ALTER") || first.is("DROP")) {
        return isOneOf(objects, second);
    }
    return std::any_of(beginnings.begin(), beginnings.end(), [&](Beginning const& beginning) {
        return isWord(first, beginning.first) && (!beginning.second[0] || isOneOf(beginning.second, second));
    });
}

} // namespace

bool isSqlText(std::istream& in) {
    constexpr std::size_t enough = 65536;
    std::string start(enough, '\0');
    in.read(start.data(), enough);
    start.resize(static_cast<std::size_t>(in.gcount()));
    std::vector<Token> const tokens = tokenize(start);
    if (tokens.empty()) {
        return start.find_first_not_of(" \t\r\n") != std::string::npos; // comments alone
    }
    bool const isEnded =
        start.size() == enough ||
        std::any_of(tokens.begin(), tokens.end(), [](Token const& token) { return token.isSymbol(';'); });
    return tokens.size() > 1 && isEnded && beginsStatement(tokens);
}

} // namespace database
