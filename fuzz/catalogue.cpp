// Texts as the catalogue of a server prints them, and addresses of servers, given to all that takes them
// apart.

#include "Bytes.h"
#include "Require.h"

#include "database/IndexText.h"
#include "database/SelectClauses.h"
#include "database/SqlTokens.h"
#include "postgres/CatalogReader.h"
#include "postgres/PostgresUrl.h"
#include "postgres/SqlNames.h"
#include "postgres/StatementOrder.h"
#include "qor/SafeText.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace {

using database::Token;
using database::TokenKind;
using Parts = std::vector<std::string>;

void checkTokens(std::string_view text) {
    std::vector<Token> const tokens = database::tokenize(text);
    char const* end = text.data();
    for (Token const& token : tokens) {
        require(!token.text.empty(), "a token has a text");
        require(token.text.data() >= end, "tokens stand in order and apart");
        std::string_view const between(end, static_cast<std::size_t>(token.text.data() - end));
        require(database::tokenize(between).empty(), "between tokens there are blanks and comments alone");
        end = token.text.data() + token.text.size();
        require(token.name().size() <= token.text.size(), "a name is no longer than its token");
    }
    require(end <= text.data() + text.size(), "tokens end with the text");
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].isSymbol('(')) {
            std::size_t const closing = database::closingParenthesis(tokens, i);
            require(closing >= i && closing < tokens.size(), "a parenthesis is closed behind its opening");
        }
    }
}

void checkSelect(std::string const& text) {
    auto const clauses = database::splitSelect(text);
    if (!clauses)
        return;
    for (std::string const& clause : {clauses->where, clauses->groupBy, clauses->having, clauses->orderBy})
        require(text.find(clause) != std::string::npos, "a clause is a part of the statement");
}

void checkNames(std::string const& schema, std::string const& name) {
    for (std::string const& each : {schema, name}) {
        std::string const quoted = postgres::quoteName(each);
        std::vector<Token> const tokens = database::tokenize(quoted);
        require(tokens.size() == 1 && tokens[0].name() == each, "a quoted name is one token of that name");
        std::string const literal = postgres::quoteText(each);
        std::vector<Token> const texts = database::tokenize(literal);
        require(texts.size() == 1 && texts[0].kind == TokenKind::STRING && texts[0].name() == each,
                "a quoted text is one string of that text");
    }
    std::string const both = postgres::quoteName(schema) + "." + postgres::quoteName(name);
    std::vector<Parts> found;
    postgres::forEachName(both, [&](Parts const& parts) { found.push_back(parts); });
    require(found == std::vector<Parts>{{schema, name}}, "a name with its schema is found as its two parts");
}

/// Each line makes something: its schema, a blank, its name, a blank, the statement.
void checkOrder(std::string const& text) {
    std::vector<postgres::Creation> creations;
    for (std::size_t begin = 0; begin < text.size() && creations.size() < 50;) {
        std::size_t const end = std::min(text.find('\n', begin), text.size());
        std::string const line = text.substr(begin, end - begin);
        std::size_t const first = std::min(line.find(' '), line.size());
        std::size_t const second = std::min(line.find(' ', first + 1), line.size());
        postgres::Creation creation;
        creation.schema = line.substr(0, first);
        creation.name = first < line.size() ? line.substr(first + 1, second - first - 1) : "";
        creation.statement = second < line.size() ? line.substr(second + 1) : line;
        creations.push_back(creation);
        begin = end + 1;
    }
    for (bool anySchema : {false, true}) {
        std::vector<std::size_t> order = postgres::orderByNeeds(creations, anySchema);
        std::sort(order.begin(), order.end());
        require(order.size() == creations.size(), "as many statements are ordered as there are");
        for (std::size_t i = 0; i < order.size(); ++i)
            require(order[i] == i, "each statement stands in the order once");
    }
}

void checkIndex(std::string const& text) {
    database::Table table;
    for (char const* name : {"id", "a", "name"}) {
        table.columns.emplace_back();
        table.columns.back().name = name;
    }
    auto const index = database::readIndexText(text, table);
    if (!index)
        return;
    std::string const written = database::writeIndexText(*index, table);
    auto const again = database::readIndexText(written, table);
    require(again && database::writeIndexText(*again, table) == written,
            "an index that is written reads as the same");
}

void checkType(std::string const& text, char category, std::int64_t modifier) {
    database::Type type;
    type.declaration = text;
    postgres::describeType(type, text.substr(0, text.find_first_of(" (")), category, modifier);
    require(!type.dataType.empty(), "each type stands for something");
    require(postgres::numbersIn(text).size() <= text.size(), "a number takes a character at least");
}

void checkHidden(std::string const& url, std::string const& secret) {
    require(postgres::withoutPassword(url).find(secret) == std::string::npos,
            "no secret is shown of an address");
    for (std::string const& argument : {url, "-o" + url, "--source=" + url}) {
        char const* const arguments[] = {"qor", argument.c_str()};
        qorprogram::SafeText const safe(2, arguments);
        require(safe("cannot read " + argument + ": no").find(secret) == std::string::npos,
                "no secret is shown in a message");
    }
}

void checkUrl(std::string const& before, std::string const& behind) {
    std::string const secret = "qS3cr3tZ";
    if ((before + behind).find("S3cr3t") != std::string::npos)
        return;
    for (char const* scheme : {"postgresql://", "POSTGRES://"}) {
        checkHidden(scheme + before + ":" + secret + "@" + behind, secret);
        checkHidden(scheme + before + "password=" + secret + behind, secret);
        checkHidden(scheme + before + "?password=" + secret + "&" + behind, secret);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Bytes bytes(data, size);
    std::size_t const cut = bytes.below(64);
    auto const category = static_cast<char>(bytes.byte());
    auto const modifier = static_cast<std::int64_t>(bytes.byte()) << bytes.below(32);
    std::string text = bytes.rest();
    text.erase(std::remove(text.begin(), text.end(), '\0'), text.end()); // the catalogue has none
    std::string const before = text.substr(0, cut);
    std::string const behind = text.substr(before.size());
    checkTokens(text);
    checkSelect(text);
    checkNames(before, behind);
    checkOrder(text);
    checkIndex(text);
    checkType(text, category, modifier - 1);
    checkUrl(before, behind);
    return 0;
}
