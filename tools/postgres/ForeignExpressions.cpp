#include "postgres/ForeignSql.h"

#include "kit/Text.h"
#include "postgres/SqlNames.h"

#include <algorithm>
#include <cctype>

namespace postgres {
namespace {

using database::Token;
using database::TokenKind;

bool isAscii(std::string const& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

/// A pattern of GLOB as a regular expression; nothing if its brackets are odd.
std::optional<std::string> patternOfGlob(std::string const& glob) {
    std::string pattern = "^";
    for (std::size_t i = 0; i < glob.size(); ++i) {
        char const character = glob[i];
        if (character == '*') {
            pattern += ".*";
        } else if (character == '?') {
            pattern += '.';
        } else if (character == '[') {
            std::size_t const end = glob.find(']', i + 2);
            std::string const set = end == std::string::npos ? "" : glob.substr(i, end + 1 - i);
            if (set.empty() || set.find_first_of("\\:.=", 1) != std::string::npos ||
                set.find('[', 1) != std::string::npos) {
                return std::nullopt;
            }
            pattern += set;
            i = end;
        } else {
            bool const isPlain = kit::isLetter(character) || kit::isDigit(character) || character == ' ' ||
                                 kit::isBeyondAscii(character);
            pattern += isPlain ? "" : "\\";
            pattern += character;
        }
    }
    return pattern + "$";
}

bool isPlainInteger(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

std::vector<SqlTranslator::Tokens> splitAtCommas(SqlTranslator::Tokens const& tokens) {
    std::vector<SqlTranslator::Tokens> parts;
    int depth = 0;
    for (Token const& token : tokens) {
        depth += token.isSymbol('(') - token.isSymbol(')');
        if (parts.empty() || (depth == 0 && token.isSymbol(','))) {
            parts.emplace_back();
        }
        if (depth != 0 || !token.isSymbol(',')) {
            parts.back().push_back(token);
        }
    }
    return parts;
}

// ---- tokens ------------------------------------------------------------------------------------------

Token SqlTranslator::peek(std::size_t ahead) const {
    return position + ahead < tokens.size() ? tokens[position + ahead] : Token{TokenKind::SYMBOL, {}};
}

bool SqlTranslator::take(std::string_view keyword) {
    bool const stands = at(keyword);
    position += stands;
    return stands;
}

bool SqlTranslator::takeSymbol(char symbol) {
    bool const stands = atSymbol(symbol);
    position += stands;
    return stands;
}

bool SqlTranslator::atPair(std::string_view pair) const {
    return atSymbol(pair[0]) && atSymbol(pair[1], 1) && peek().text.data() + 1 == peek(1).text.data();
}

bool SqlTranslator::takePair(std::string_view pair) {
    bool const stands = atPair(pair);
    position += stands ? 2 : 0;
    return stands;
}

void SqlTranslator::require(bool holds, char const* what) const {
    if (!holds) {
        fail(what);
    }
}

SqlTranslator::Tokens SqlTranslator::inside() {
    require(atSymbol('('), "it can't be parsed");
    std::size_t const close = database::closingParenthesis(tokens, position);
    require(tokens[close].isSymbol(')'), "it can't be parsed");
    Tokens const result(tokens.begin() + static_cast<std::ptrdiff_t>(position) + 1,
                        tokens.begin() + static_cast<std::ptrdiff_t>(close));
    position = close + 1;
    return result;
}

Value SqlTranslator::part(Tokens const& someTokens) {
    return SqlTranslator(someTokens, scope, find).expression();
}

SqlTranslator::Level::Level(Scope& in) : scope(in) {
    constexpr int deepest = 200;
    if (++scope.depth > deepest) {
        throw Untranslatable("it is nested too deeply");
    }
}

// ---- operators ---------------------------------------------------------------------------------------

Value SqlTranslator::expression() {
    require(!tokens.empty(), "it is empty");
    Value const value = disjunction();
    if (!atEnd()) {
        fail("it can't be parsed at " + std::string(peek().text));
    }
    return value;
}

Value SqlTranslator::disjunction() {
    Value left = conjunction();
    while (take("OR")) {
        Value const right = asCondition(conjunction());
        left = asCondition(left);
        left = combined("(" + left.text + " OR " + right.text + ")", Kind::BOOLEAN, {left, right});
    }
    return left;
}

Value SqlTranslator::conjunction() {
    Value left = negation();
    while (take("AND")) {
        Value const right = asCondition(negation());
        left = asCondition(left);
        left = combined("(" + left.text + " AND " + right.text + ")", Kind::BOOLEAN, {left, right});
    }
    return left;
}

Value SqlTranslator::negation() {
    Level const level(scope);
    if (!at("NOT") || at("EXISTS", 1)) {
        return comparison();
    }
    take("NOT");
    Value const value = asCondition(negation());
    return combined("(NOT " + value.text + ")", Kind::BOOLEAN, {value});
}

Value SqlTranslator::comparison() {
    Value left = order();
    for (bool goesOn = true; goesOn;) {
        left = furtherComparison(left, goesOn);
    }
    return left;
}

Value SqlTranslator::furtherComparison(Value left, bool& goesOn) {
    bool const isUnequal = atPair("<>") || atPair("!=");
    if (isUnequal || atSymbol('=')) {
        position += isUnequal || atPair("==") ? 2 : 1;
        Value right = order();
        makeComparable(left, right);
        return combined("(" + left.text + (isUnequal ? " <> " : " = ") + right.text + ")", Kind::BOOLEAN,
                        {left, right});
    }
    if (take("IS")) {
        return identity(left);
    }
    if (take("ISNULL")) {
        return nullTest(left, false);
    }
    if (take("NOTNULL")) {
        return nullTest(left, true);
    }
    bool const isNot = at("NOT");
    position += isNot;
    if (isNot && take("NULL")) {
        return nullTest(left, true);
    }
    if (take("BETWEEN")) {
        return betweenTest(left, isNot);
    }
    if (take("IN")) {
        return membership(left, isNot);
    }
    if (take("LIKE")) {
        return patternTest(left, isNot);
    }
    if (take("GLOB")) {
        return globTest(left, isNot);
    }
    require(!isNot, "it can't be parsed at NOT");
    goesOn = false;
    return left;
}

Value SqlTranslator::nullTest(Value const& left, bool isNot) {
    return combined("(" + left.text + (isNot ? " IS NOT NULL)" : " IS NULL)"), Kind::BOOLEAN, {left});
}

/// IS compares as = does, but takes NULL for a value.
Value SqlTranslator::identity(Value const& before) {
    bool isNot = take("NOT");
    if (take("NULL")) {
        return nullTest(before, isNot);
    }
    if (at("DISTINCT") && at("FROM", 1)) {
        position += 2;
        isNot = !isNot;
    } else if (at("TRUE") || at("FALSE")) {
        std::string const word = database::upperCase(peek().text);
        ++position;
        Value const left = asCondition(before);
        return combined("(" + left.text + (isNot ? " IS NOT " : " IS ") + word + ")", Kind::BOOLEAN, {left});
    }
    Value left = before;
    Value right = order();
    makeComparable(left, right);
    return combined("(" + left.text + (isNot ? " IS DISTINCT FROM " : " IS NOT DISTINCT FROM ") + right.text +
                        ")",
                    Kind::BOOLEAN, {left, right});
}

Value SqlTranslator::betweenTest(Value const& left, bool isNot) {
    Value from = left;
    Value low = order();
    makeComparable(from, low);
    require(take("AND"), "it can't be parsed at BETWEEN");
    Value to = left;
    Value high = order();
    makeComparable(to, high);
    return combined("(" + std::string(isNot ? "NOT " : "") + "(" + from.text + " >= " + low.text + " AND " +
                        to.text + " <= " + high.text + "))",
                    Kind::BOOLEAN, {left, low, high});
}

Value SqlTranslator::membership(Value const& left, bool isNot) {
    Tokens const list = inside();
    require(!list.empty(), "PostgreSQL allows no empty list after IN");
    std::string const word = isNot ? " NOT IN (" : " IN (";
    if (list.front().is("SELECT") || list.front().is("WITH")) {
        Value of = left;
        Scope within;
        within.outer = &scope;
        within.depth = scope.depth;
        within.commonTables = scope.commonTables;
        Selection const selection = SqlTranslator(list, within, find).selection({});
        require(selection.columns.size() == 1, "the list after IN has several columns");
        Value member = combined("", selection.columns[0].kind, {});
        makeComparable(of, member);
        require(member.text.empty(), "a subquery in it has values of another type");
        Value value = combined("(" + of.text + word + selection.text + "))", Kind::BOOLEAN, {of});
        value.isImmutable = false;
        value.ungrouped = within.namesOuter ? "one that a subquery names" : value.ungrouped;
        return value;
    }
    std::string text;
    Value of = left;
    std::vector<Value> values;
    for (Tokens const& tokensOfMember : splitAtCommas(list)) {
        Value member = part(tokensOfMember);
        Value const before = of;
        makeComparable(of, member);
        require(values.empty() || of.text == before.text, "the members of a list are of several types");
        text += (text.empty() ? "" : ", ") + member.text;
        values.push_back(member);
    }
    values.push_back(of);
    return combined("(" + of.text + word + text + "))", Kind::BOOLEAN, values);
}

/// LIKE ignores the case of ASCII letters and has no backslash.
Value SqlTranslator::patternTest(Value const& left, bool isNot) {
    Value const of = asText(left);
    Value const pattern = order();
    require(pattern.literal && pattern.kind == Kind::LITERAL && isAscii(*pattern.literal),
            "the pattern after LIKE isn't a text in ASCII");
    std::string escape = "''";
    if (take("ESCAPE")) {
        Value const character = order();
        require(character.literal && character.literal->size() == 1, "ESCAPE isn't a single character");
        escape = character.text;
        require(pattern.literal->empty() || pattern.literal->back() != character.literal->front(),
                "the pattern after LIKE ends with its escape character");
    }
    return combined("(" + of.text + (isNot ? " NOT ILIKE " : " ILIKE ") + pattern.text + " ESCAPE " + escape +
                        ")",
                    Kind::BOOLEAN, {of});
}

Value SqlTranslator::globTest(Value const& left, bool isNot) {
    Value const of = asText(left);
    Value const glob = order();
    auto const pattern =
        glob.literal && glob.kind == Kind::LITERAL ? patternOfGlob(*glob.literal) : std::nullopt;
    require(pattern.has_value(), "the pattern after GLOB has no equivalent in PostgreSQL");
    return combined("(" + of.text + (isNot ? " !~ " : " ~ ") + quoteText(*pattern) + ")", Kind::BOOLEAN,
                    {of});
}

Value SqlTranslator::order() {
    Value left = bits();
    for (;;) {
        bool const isOrder = (atSymbol('<') || atSymbol('>')) && !atPair("<>");
        if (!isOrder) {
            return left;
        }
        std::string symbol(peek().text);
        symbol += atPair("<=") || atPair(">=") ? "=" : "";
        position += symbol.size();
        Value right = bits();
        makeComparable(left, right);
        require(left.kind != Kind::BYTES || right.kind == Kind::BYTES, "it compares bytes");
        left =
            combined("(" + left.text + " " + symbol + " " + right.text + ")", Kind::BOOLEAN, {left, right});
    }
}

Value SqlTranslator::bits() {
    Value left = sum();
    for (;;) {
        bool const isShift = atPair("<<") || atPair(">>");
        bool const isBits = (atSymbol('&') || atSymbol('|')) && !atPair("||");
        if (!isShift && !isBits) {
            return left;
        }
        std::string const symbol = isShift ? std::string(2, peek().text[0]) : std::string(peek().text);
        position += symbol.size();
        Value const right = asNumber(sum());
        left = asNumber(left);
        require(left.kind == Kind::INTEGER && right.kind == Kind::INTEGER,
                "it applies a bit operator to a fraction");
        left = combined("((" + left.text + ")::bigint " + symbol + " (" + right.text +
                            (isShift ? ")::integer)" : ")::bigint)"),
                        Kind::INTEGER, {left, right});
    }
}

Value SqlTranslator::sum() {
    Value left = product();
    while (atSymbol('+') || (atSymbol('-') && !atPair("->"))) {
        std::string const symbol(peek().text);
        ++position;
        Value const right = asNumber(product());
        left = asNumber(left);
        left = combined("(" + left.text + " " + symbol + " " + right.text + ")",
                        std::max(left.kind, right.kind), {left, right});
    }
    return left;
}

/// Where the other system has NULL for a division by zero, PostgreSQL has an error.
Value SqlTranslator::product() {
    Value left = concatenation();
    while (atSymbol('*') || atSymbol('/') || atSymbol('%')) {
        std::string const symbol(peek().text);
        ++position;
        Value const right = asNumber(concatenation());
        left = asNumber(left);
        bool const isRest = symbol == "%";
        require(!isRest || (left.kind == Kind::INTEGER && right.kind == Kind::INTEGER),
                "it computes the remainder of a fraction");
        bool const isSafe = symbol == "*" || (right.literal && right.text.find_first_of("123456789") == 0);
        left = combined("(" + left.text + " " + symbol + " " +
                            (isSafe ? right.text : "NULLIF(" + right.text + ", 0)") + ")",
                        std::max(left.kind, right.kind), {left, right});
    }
    return left;
}

Value SqlTranslator::concatenation() {
    Value left = collated();
    for (;;) {
        if (atPair("->")) {
            fail("the operator -> for JSON has no equivalent in PostgreSQL");
        }
        if (!takePair("||")) {
            return left;
        }
        Value const right = asText(collated());
        left = asText(left);
        left = combined("(" + left.text + " || " + right.text + ")", Kind::TEXT, {left, right});
    }
}

/// BINARY is how everything is compared that says nothing else.
Value SqlTranslator::collated() {
    Value const value = sign();
    while (take("COLLATE")) {
        std::string const collation = peek().name();
        ++position;
        require(database::equalIgnoringCase(collation, "BINARY"),
                "PostgreSQL has no collation equivalent to NOCASE and the like");
    }
    return value;
}

Value SqlTranslator::sign() {
    Level const level(scope);
    if (takeSymbol('+')) {
        return sign();
    }
    if (takeSymbol('~')) {
        Value const value = asNumber(sign());
        require(value.kind == Kind::INTEGER, "it applies a bit operator to a fraction");
        return combined("(~ (" + value.text + ")::bigint)", Kind::INTEGER, {value});
    }
    if (!takeSymbol('-')) {
        return operand();
    }
    Value const value = asNumber(sign());
    Value result = combined("(-" + value.text + ")", value.kind, {value});
    if (value.literal && value.literal->front() != '-') {
        result.literal = "-" + *value.literal;
        result.text = "(" + *result.literal + ")";
    }
    return result;
}

// ---- operands ----------------------------------------------------------------------------------------

Value SqlTranslator::operand() {
    Token const token = peek();
    require(!atEnd(), "it ends too early");
    switch (token.kind) {
    case TokenKind::NUMBER:
        return number();
    case TokenKind::STRING:
        return text();
    case TokenKind::QUOTED_NAME:
        return name();
    case TokenKind::SYMBOL:
        require(token.isSymbol('('), "it has an unknown symbol");
        return parenthesis();
    case TokenKind::WORD:
        break;
    }
    if (take("NULL")) {
        Value value;
        value.text = "NULL";
        value.kind = Kind::LITERAL;
        value.isNull = true;
        return value;
    }
    if (take("CASE")) {
        return caseDistinction();
    }
    if (at("CAST") && atSymbol('(', 1)) {
        return cast();
    }
    if (at("EXISTS") || at("NOT")) {
        bool const isNot = take("NOT");
        require(take("EXISTS"), "it can't be parsed at NOT");
        Value const value = subquery(true);
        return isNot ? combined("(NOT " + value.text + ")", Kind::BOOLEAN, {value}) : value;
    }
    return name();
}

Value SqlTranslator::number() {
    std::string digits(peek().text);
    ++position;
    bool const isHexadecimal = digits.size() > 2 && (digits[1] == 'x' || digits[1] == 'X');
    if (isHexadecimal) {
        require(digits.size() <= 17, "a number in it has too many digits");
        digits = std::to_string(std::strtoll(digits.c_str(), nullptr, 16));
    }
    require(digits.find_first_not_of("0123456789.eE+-") == std::string::npos,
            "a number in it can't be parsed");
    bool const isInteger = isPlainInteger(digits);
    bool const isPower = digits.find_first_of("eE") != std::string::npos;
    Value value;
    value.kind = isInteger && digits.size() <= 18 ? Kind::INTEGER : Kind::NUMERIC;
    value.text = digits;
    if (!isPower) {
        value.literal = digits;
    }
    return value;
}

Value SqlTranslator::text() {
    Token const token = peek();
    ++position;
    Value value;
    if (token.text.front() == '\'') {
        value.literal = token.name();
        value.kind = Kind::LITERAL;
        value.text = quoteText(*value.literal);
        return value;
    }
    bool const isBytes = token.text.front() == 'x' || token.text.front() == 'X';
    require(isBytes && token.text.size() >= 3, "a text in it can't be parsed");
    std::string const digits(token.text.substr(2, token.text.size() - 3));
    bool const isWhole =
        digits.size() % 2 == 0 && digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    require(isWhole, "a text in it can't be parsed");
    value.kind = Kind::BYTES;
    value.text = "'\\x" + digits + "'::bytea";
    return value;
}

Value SqlTranslator::parenthesis() {
    if (at("SELECT", 1) || at("WITH", 1) || at("VALUES", 1)) {
        return subquery(false);
    }
    Tokens const tokensInside = inside();
    require(splitAtCommas(tokensInside).size() == 1, "it has a row of several values");
    return part(tokensInside);
}

Value SqlTranslator::subquery(bool isExists) {
    Scope within;
    within.outer = &scope;
    within.depth = scope.depth;
    within.commonTables = scope.commonTables;
    Selection const selection = SqlTranslator(inside(), within, find).selection({});
    require(isExists || selection.columns.size() == 1, "a subquery in it has several columns");
    Value value;
    value.text = (isExists ? "EXISTS (" : "(") + selection.text + ")";
    value.kind = isExists ? Kind::BOOLEAN : selection.columns[0].kind;
    value.isImmutable = false;
    value.ungrouped = within.namesOuter ? "one that a subquery names" : "";
    return value;
}

Value SqlTranslator::caseDistinction() {
    std::optional<Value> base;
    if (!at("WHEN")) {
        base = disjunction();
    }
    std::string text = "CASE";
    std::vector<Value> conditions;
    std::vector<Value> results;
    while (take("WHEN")) {
        Value condition = disjunction();
        if (base) {
            Value compared = *base;
            makeComparable(compared, condition);
            condition = combined("(" + compared.text + " = " + condition.text + ")", Kind::BOOLEAN,
                                 {compared, condition});
        }
        conditions.push_back(asCondition(condition));
        require(take("THEN"), "it can't be parsed at CASE");
        results.push_back(disjunction());
    }
    bool const hasElse = take("ELSE");
    if (hasElse) {
        results.push_back(disjunction());
    }
    require(!conditions.empty() && take("END"), "it can't be parsed at CASE");
    Value result = choice("case", results);
    for (std::size_t i = 0; i < results.size(); ++i) {
        text += i < conditions.size() ? " WHEN " + conditions[i].text + " THEN " : " ELSE ";
        text += results[i].text;
    }
    conditions.insert(conditions.end(), results.begin(), results.end());
    return combined("(" + text + " END)", result.kind, conditions);
}

/// Only to what PostgreSQL converts in the same way.
Value SqlTranslator::cast() {
    ++position;
    Tokens const whole = inside();
    auto const as =
        std::find_if(whole.rbegin(), whole.rend(), [](Token const& token) { return token.is("AS"); });
    require(as != whole.rend() && as != whole.rbegin(), "it can't be parsed at CAST");
    Value const value = part(Tokens(whole.begin(), as.base() - 1));
    std::string const type = database::upperCase(as.base()->name());
    if (type == "TEXT" || type == "VARCHAR" || type == "CHAR") {
        return asText(value);
    }
    if (type == "INTEGER" || type == "INT" || type == "BIGINT" || type == "SMALLINT") {
        Value const from = asNumber(value);
        return combined(from.kind == Kind::INTEGER ? from.text : "(trunc(" + from.text + "))::bigint",
                        Kind::INTEGER, {from});
    }
    if (type == "REAL" || type == "DOUBLE" || type == "FLOAT") {
        Value const from = asNumber(value);
        return combined("(" + from.text + ")::double precision", Kind::DOUBLE, {from});
    }
    fail("the cast to " + type + " has no equivalent in PostgreSQL");
}

// ---- names -------------------------------------------------------------------------------------------

/// A column, a function, or a keyword that is a value.
Value SqlTranslator::name() {
    Token const token = peek();
    bool const isQuoted = token.kind == TokenKind::QUOTED_NAME;
    ++position;
    if (atSymbol('(')) {
        return function(token.name());
    }
    if (takeSymbol('.')) {
        std::string table = token.name();
        std::string columnName = peek().name();
        ++position;
        if (takeSymbol('.')) {
            table = columnName;
            columnName = peek().name();
            ++position;
        }
        return columnOf(table, columnName);
    }
    std::string const word = database::upperCase(token.text);
    if (!isQuoted && word.compare(0, 8, "CURRENT_") == 0) {
        return currentMoment(word);
    }
    if (!isQuoted && (word == "TRUE" || word == "FALSE")) {
        Value value;
        value.kind = Kind::BOOLEAN;
        value.text = database::lowerCase(word);
        return value;
    }
    return column(token.name(), isQuoted && token.text.front() == '"');
}

Value SqlTranslator::currentMoment(std::string const& word) {
    bool const isDate = word == "CURRENT_DATE";
    bool const isTime = word == "CURRENT_TIME";
    require(isDate || isTime || word == "CURRENT_TIMESTAMP", "it has an unknown keyword");
    std::string const now = "(CURRENT_TIMESTAMP AT TIME ZONE 'UTC')";
    Value value;
    value.kind = Kind::TEXT;
    value.isImmutable = false;
    value.text = "to_char(" + now + ", '" +
                 (isDate   ? "YYYY-MM-DD"
                  : isTime ? "HH24:MI:SS"
                           : "YYYY-MM-DD HH24:MI:SS") +
                 "')";
    value.moment = isDate ? now + "::date" : isTime ? now + "::time(0)" : "date_trunc('second', " + now + ")";
    value.momentKind = isDate ? Kind::DATE : isTime ? Kind::TIME : Kind::TIMESTAMP;
    return value;
}

/// The column that numbers the rows goes by several names, unless a column has that name.
SourceColumn const* SqlTranslator::rowNumberOf(Source const& source, std::string const& named) const {
    std::string const lower = database::lowerCase(named);
    bool const isRowid = lower == "rowid" || lower == "oid" || lower == "_rowid_";
    return isRowid && source.rowNumber >= 0 ? &source.columns[static_cast<std::size_t>(source.rowNumber)]
                                            : nullptr;
}

bool SqlTranslator::isGroupedByKey(Source const& source, Scope const& owner) const {
    auto const& grouped = owner.grouped;
    return !source.primaryKey.empty() &&
           std::all_of(source.primaryKey.begin(), source.primaryKey.end(), [&](int key) {
               std::string const text =
                   source.text + "." + source.columns[static_cast<std::size_t>(key)].text;
               return std::find(grouped.begin(), grouped.end(), text) != grouped.end();
           });
}

Value SqlTranslator::columnValue(Source const& source, SourceColumn const& from, Scope& owner) {
    Value value;
    value.text = (source.text.empty() ? "" : source.text + ".") + from.text;
    value.kind = from.kind;
    bool const isGrouped =
        std::find(owner.grouped.begin(), owner.grouped.end(), value.text) != owner.grouped.end();
    if (&owner == &scope && !isGrouped && !isGroupedByKey(source, owner)) {
        value.ungrouped = from.name;
    }
    if (from.isGenerated) {
        value.isImmutable = false; // one generated column can't be made of another
    }
    return value;
}

std::optional<Value> SqlTranslator::columnIn(Scope& owner, std::string const& named) {
    std::optional<Value> found;
    for (Source const& source : owner.sources) {
        SourceColumn const* match = nullptr;
        for (SourceColumn const& candidate : source.columns) {
            if (!candidate.isHidden && database::equalIgnoringCase(candidate.name, named)) {
                match = &candidate;
            }
        }
        match = match ? match : rowNumberOf(source, named);
        if (match) {
            require(!found, "a column in it exists in several tables");
            found = columnValue(source, *match, owner);
        }
    }
    return found;
}

Value SqlTranslator::column(std::string const& named, bool mayBeText) {
    for (Scope* at = &scope; at; at = at->outer) {
        if (auto const value = columnIn(*at, named)) {
            for (Scope* inner = &scope; inner != at; inner = inner->outer) {
                inner->namesOuter = true;
            }
            return *value;
        }
        auto const alias = at->aliases.find(database::lowerCase(named));
        if (at == &scope && alias != at->aliases.end()) {
            Tokens const aliased = alias->second;
            at->aliases.erase(alias); // which may name itself
            Value const value = part(aliased);
            at->aliases.emplace(database::lowerCase(named), aliased);
            return value;
        }
    }
    if (!mayBeText) {
        fail("it is unknown what " + named + " is");
    }
    Value value;
    value.literal = named;
    value.kind = Kind::LITERAL;
    value.text = quoteText(named);
    return value;
}

Value SqlTranslator::columnOf(std::string const& table, std::string const& named) {
    for (Scope* at = &scope; at; at = at->outer) {
        for (Source const& source : at->sources) {
            if (!database::equalIgnoringCase(source.name, table)) {
                continue;
            }
            for (Scope* inner = &scope; inner != at; inner = inner->outer) {
                inner->namesOuter = true;
            }
            for (SourceColumn const& candidate : source.columns) {
                if (database::equalIgnoringCase(candidate.name, named)) {
                    return columnValue(source, candidate, *at);
                }
            }
            if (SourceColumn const* number = rowNumberOf(source, named)) {
                return columnValue(source, *number, *at);
            }
        }
    }
    fail("it is unknown what " + table + "." + named + " is");
}

} // namespace postgres
