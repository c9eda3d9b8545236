#include "postgres/ForeignSql.h"

#include "postgres/SqlNames.h"

#include <algorithm>
#include <set>

namespace postgres {
namespace {

using database::Token;
using database::TokenKind;
using Tokens = SqlTranslator::Tokens;

constexpr std::size_t longestName = 63;

/// The position of the first of some keywords that stands in no parentheses, from a position on.
std::size_t findClause(Tokens const& tokens, std::size_t start, std::vector<std::string_view> const& words) {
    int depth = 0;
    for (std::size_t i = start; i < tokens.size(); ++i) {
        depth += tokens[i].isSymbol('(') - tokens[i].isSymbol(')');
        bool const isWord =
            std::any_of(words.begin(), words.end(), [&](auto word) { return tokens[i].is(word); });
        bool const isOfIdentity = i > 1 && tokens[i].is("FROM") && tokens[i - 1].is("DISTINCT") &&
                                  (tokens[i - 2].is("IS") || tokens[i - 2].is("NOT"));
        bool const isName = i > 0 && tokens[i - 1].isSymbol('.');
        if (depth == 0 && isWord && !isOfIdentity && !isName) {
            return i;
        }
    }
    return tokens.size();
}

Tokens slice(Tokens const& tokens, std::size_t start, std::size_t end) {
    start = std::min(start, end);
    return Tokens(tokens.begin() + static_cast<std::ptrdiff_t>(start),
                  tokens.begin() + static_cast<std::ptrdiff_t>(end));
}

/// The tokens between a clause's keywords, of which there are `words`, and the next clause.
Tokens clauseOf(Tokens const& tokens, std::string_view first, std::size_t words) {
    static std::vector<std::string_view> const all = {"FROM",   "WHERE", "GROUP", "HAVING",
                                                      "WINDOW", "ORDER", "LIMIT"};
    std::size_t const start = findClause(tokens, 0, {first});
    return start == tokens.size() ? Tokens()
                                  : slice(tokens, start + words, findClause(tokens, start + 1, all));
}

bool endsSource(Token const& token) {
    static std::set<std::string> const words = {"ON",    "USING", "JOIN",    "LEFT",    "RIGHT", "FULL",
                                                "INNER", "CROSS", "NATURAL", "INDEXED", "NOT",   "OUTER"};
    return token.kind == TokenKind::WORD && words.count(database::upperCase(token.text)) > 0;
}

bool isName(Token const& token) {
    return token.kind == TokenKind::WORD || token.kind == TokenKind::QUOTED_NAME ||
           (token.kind == TokenKind::STRING && token.text.front() == '\'');
}

/// The name under which a column of a result can be had.
std::string printable(std::string const& name, std::size_t number) {
    bool const isPossible = !name.empty() && name.size() <= longestName;
    return quoteName(isPossible ? name : "column_" + std::to_string(number + 1));
}

char const* typeOf(Kind kind) {
    constexpr char const* types[] = {"text", "boolean", "bigint", "numeric", "double precision",
                                     "text", "bytea",   "date",   "time",    "timestamp",
                                     ""};
    return types[static_cast<int>(kind)];
}

} // namespace

Selection SqlTranslator::selection(std::vector<std::string> const& names) {
    Level const level(scope);
    while (!tokens.empty() && tokens.back().isSymbol(';')) {
        tokens.pop_back();
    }
    std::map<std::string, Source> known =
        scope.commonTables ? *scope.commonTables : std::map<std::string, Source>();
    std::string with;
    commonTables(known, with);
    tokens.erase(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(position));
    position = 0;
    std::size_t const orderAt = findClause(tokens, 0, {"ORDER"});
    std::size_t const limitAt = findClause(tokens, 0, {"LIMIT"});
    Tokens const order = orderAt < tokens.size() ? slice(tokens, orderAt + 2, limitAt) : Tokens();
    Tokens const limits = limitAt < tokens.size() ? slice(tokens, limitAt + 1, tokens.size()) : Tokens();
    tokens = slice(tokens, 0, std::min(orderAt, limitAt));
    std::vector<std::string> operators;
    std::vector<Core> parts;
    for (Tokens const& some : cores(operators)) {
        Scope within;
        within.outer = scope.outer;
        within.depth = scope.depth;
        within.commonTables = &known;
        parts.push_back(core(within, some, operators.empty() ? order : Tokens(), !operators.empty()));
        scope.namesOuter = scope.namesOuter || within.namesOuter;
    }
    unify(parts);
    Selection result = written(parts, operators, names);
    result.text = with + result.text;
    if (!operators.empty() && !order.empty()) {
        result.text += " ORDER BY " + ordering(order, parts[0].items, false, true);
    }
    result.text += limits.empty() ? "" : SqlTranslator(limits, scope, find).limit();
    return result;
}

void SqlTranslator::commonTables(std::map<std::string, Source>& known, std::string& text) {
    if (!take("WITH")) {
        return;
    }
    require(!at("RECURSIVE"), "it is recursive");
    do {
        Source made;
        made.name = peek().name();
        made.text = quoteName(made.name);
        ++position;
        std::vector<std::string> names;
        if (atSymbol('(')) {
            for (Tokens const& part : splitAtCommas(inside())) {
                names.push_back(part.empty() ? "" : part.front().name());
            }
        }
        require(take("AS"), "it can't be parsed at WITH");
        take("NOT");
        take("MATERIALIZED");
        Scope within;
        within.depth = scope.depth + 1;
        within.commonTables = &known;
        Selection const selection = SqlTranslator(inside(), within, find).selection(names);
        made.columns = selection.columns;
        require(made.name.size() <= longestName, "a name in it is too long");
        require(known.emplace(database::lowerCase(made.name), made).second, "a name in it is ambiguous");
        text += (text.empty() ? "WITH " : ", ") + made.text + " AS (" + selection.text + ")";
    } while (takeSymbol(','));
    text += " ";
}

/// The statements between UNION and the like, and these words.
std::vector<Tokens> SqlTranslator::cores(std::vector<std::string>& operators) {
    std::vector<Tokens> result;
    std::size_t start = 0;
    while (start <= tokens.size()) {
        std::size_t end = findClause(tokens, start, {"UNION", "INTERSECT", "EXCEPT"});
        result.push_back(slice(tokens, start, end));
        if (end == tokens.size()) {
            break;
        }
        std::string word = database::upperCase(tokens[end].text);
        bool const isAll = end + 1 < tokens.size() && tokens[end + 1].is("ALL");
        operators.push_back(isAll ? word + " ALL" : word);
        start = end + 1 + isAll;
    }
    bool const areAlike = std::all_of(operators.begin(), operators.end(),
                                      [&](std::string const& word) { return word.substr(0, 5) == "UNION"; });
    require(areAlike || operators.size() == 1, "PostgreSQL evaluates INTERSECT before the others");
    return result;
}

SqlTranslator::Core SqlTranslator::core(Scope& within, Tokens const& some, Tokens const& order,
                                        bool isCompound) {
    require(!some.empty() && some[0].is("SELECT"), "it isn't a plain SELECT");
    require(findClause(some, 0, {"WINDOW"}) == some.size(), "it has a WINDOW clause");
    SqlTranslator(clauseOf(some, "FROM", 1), within, find).from();
    Core result;
    static std::vector<std::string_view> const ends = {"FROM", "WHERE", "GROUP", "HAVING"};
    std::size_t start = 1;
    if (some.size() > 1 && (some[1].is("DISTINCT") || some[1].is("ALL"))) {
        result.isDistinct = some[1].is("DISTINCT");
        start = 2;
    }
    result.items = SqlTranslator(slice(some, start, findClause(some, 0, ends)), within, find).items();
    if (!within.text.empty()) {
        result.tail = " FROM " + within.text;
    }
    if (Tokens const where = clauseOf(some, "WHERE", 1); !where.empty()) {
        result.tail += " WHERE " + asCondition(SqlTranslator(where, within, find).expression()).text;
    }
    if (Tokens const group = clauseOf(some, "GROUP", 2); !group.empty()) {
        result.tail += SqlTranslator(group, within, find).grouping(group, result.items);
    }
    coreValues(within, result, clauseOf(some, "HAVING", 1), order, isCompound);
    return result;
}

/// What can have aggregates. Beside these only that may stand by which the rows are grouped.
void SqlTranslator::coreValues(Scope& within, Core& result, Tokens const& having, Tokens const& order,
                               bool isCompound) {
    within.takesAggregates = true;
    bool isGrouped = !within.grouped.empty() || !having.empty();
    std::vector<Value> values;
    for (Item& item : result.items) {
        item.value = item.isKnown ? item.value : SqlTranslator(item.tokens, within, find).expression();
        values.push_back(item.value);
    }
    if (!having.empty()) {
        values.push_back(asCondition(SqlTranslator(having, within, find).expression()));
        result.tail += " HAVING " + values.back().text;
    }
    for (Value const& value : values) {
        isGrouped = isGrouped || value.hasAggregate;
    }
    for (Value const& value : values) {
        require(!isGrouped || value.ungrouped.empty(),
                ("it isn't grouped by the column " + value.ungrouped).c_str());
    }
    if (!order.empty()) {
        require(!isGrouped || !within.grouped.empty(), "it orders a single row");
        result.tail +=
            " ORDER BY " +
            SqlTranslator({}, within, find).ordering(order, result.items, result.isDistinct, isCompound);
    }
}

// ---- sources -----------------------------------------------------------------------------------------

void SqlTranslator::from() {
    if (tokens.empty()) {
        return;
    }
    source("", false, true);
    while (!atEnd()) {
        if (takeSymbol(',')) {
            source(" CROSS JOIN ", false, true);
            continue;
        }
        bool const isNatural = take("NATURAL");
        std::string const word = database::upperCase(peek().text);
        bool const isOuter = word == "LEFT" || word == "RIGHT" || word == "FULL";
        bool const isInner = word == "INNER" || word == "CROSS";
        position += isOuter || isInner;
        take("OUTER");
        require(take("JOIN"), "its FROM isn't understood");
        source(isOuter ? " " + word + " JOIN " : " JOIN ", isNatural, !isOuter || word == "LEFT");
    }
}

void SqlTranslator::source(std::string const& joining, bool isNatural, bool mayMerge) {
    std::string text;
    Source right = parsedSource(text);
    for (Source const& other : scope.sources) {
        require(!database::equalIgnoringCase(other.name, right.name), "two tables in it have the same name");
    }
    std::vector<std::string> merging = isNatural ? commonNames(right) : std::vector<std::string>();
    if (take("USING")) {
        for (Tokens const& part : splitAtCommas(inside())) {
            merging.push_back(part.empty() ? "" : part.front().name());
        }
    }
    require(merging.empty() || mayMerge, "it joins by USING where both sides may be missing");
    std::string condition = merged(merging, right);
    scope.sources.push_back(right);
    if (!joining.empty() && take("ON")) {
        condition = asCondition(disjunction()).text;
    }
    bool const isOuter = joining != " JOIN " && joining != " CROSS JOIN ";
    if (joining.empty()) {
        scope.text = text;
    } else if (condition.empty() && !isOuter) {
        scope.text += " CROSS JOIN " + text;
    } else {
        scope.text += (joining == " CROSS JOIN " ? " JOIN " : joining) + text + " ON " +
                      (condition.empty() ? "true" : condition);
    }
}

Source SqlTranslator::parsedSource(std::string& text) {
    Source made;
    if (atSymbol('(')) {
        require(at("SELECT", 1) || at("WITH", 1), "it has parentheses in FROM");
        Scope within;
        within.depth = scope.depth + 1;
        within.commonTables = scope.commonTables;
        Selection const selection = SqlTranslator(inside(), within, find).selection({});
        made.columns = selection.columns;
        made.name = alias();
        made.name = made.name.empty() ? "subquery_" + std::to_string(scope.sources.size() + 1) : made.name;
        text = "(" + selection.text + ")";
    } else {
        std::string named = peek().name();
        require(isName(peek()), "its FROM isn't understood");
        ++position;
        if (takeSymbol('.')) {
            named = peek().name();
            ++position;
        }
        require(!atSymbol('('), "it reads the rows of a function");
        auto const* const known = scope.commonTables;
        auto const common = known ? known->find(database::lowerCase(named)) : decltype(known->end())();
        bool const isCommon = known && common != known->end();
        made = isCommon ? common->second : find(named);
        text = made.text;
        std::string const other = alias();
        made.name = other.empty() ? named : other;
        if (take("INDEXED")) {
            position += 2;
        } else if (at("NOT") && at("INDEXED", 1)) {
            position += 2;
        }
    }
    require(!made.name.empty() && made.name.size() <= longestName, "a name in it is too long");
    made.text = quoteName(made.name);
    text += " AS " + made.text;
    return made;
}

/// Empty if there is none.
std::string SqlTranslator::alias() {
    bool const isTold = take("AS");
    bool const stands = !atEnd() && isName(peek()) && (isTold || !endsSource(peek()));
    std::string const name = stands ? peek().name() : "";
    position += stands;
    return name;
}

std::vector<std::string> SqlTranslator::commonNames(Source const& right) const {
    std::vector<std::string> names;
    for (SourceColumn const& column : right.columns) {
        bool const isCommon =
            std::any_of(scope.sources.begin(), scope.sources.end(), [&](Source const& left) {
                return std::any_of(left.columns.begin(), left.columns.end(), [&](SourceColumn const& other) {
                    return !other.isHidden && database::equalIgnoringCase(other.name, column.name);
                });
            });
        if (isCommon) {
            names.push_back(column.name);
        }
    }
    return names;
}

/// The condition that columns of these names are equal. They can be named without a table, and then are those
/// of the left side.
std::string SqlTranslator::merged(std::vector<std::string> const& names, Source& right) {
    std::string condition;
    for (std::string const& named : names) {
        auto left = columnIn(scope, named);
        auto const match =
            std::find_if(right.columns.begin(), right.columns.end(), [&](SourceColumn const& column) {
                return database::equalIgnoringCase(column.name, named);
            });
        require(left && match != right.columns.end(), "a column after USING doesn't exist");
        Value other = columnValue(right, *match, scope);
        makeComparable(*left, other);
        match->isHidden = true;
        condition += (condition.empty() ? "" : " AND ") + left->text + " = " + other.text;
    }
    return condition.empty() ? "" : "(" + condition + ")";
}

// ---- items, groups and orders ------------------------------------------------------------------------

/// The columns of the result. Those that have names of their own can be named in the rest of the statement.
std::vector<SqlTranslator::Item> SqlTranslator::items() {
    std::vector<Item> result;
    for (Tokens part : splitAtCommas(tokens)) {
        require(!part.empty(), "it can't be parsed after SELECT");
        if (part.back().isSymbol('*') && (part.size() == 1 || part[part.size() - 2].isSymbol('.'))) {
            require(part.size() != 2, "it can't be parsed after SELECT");
            expandStar(part.size() == 1 ? "" : part[part.size() - 3].name(), result);
            continue;
        }
        Item item;
        item.name = part.back().kind == TokenKind::SYMBOL ? "" : part.back().name();
        bool const isTold = part.size() > 2 && part[part.size() - 2].is("AS");
        Token const& before = part[part.size() > 1 ? part.size() - 2 : 0];
        bool const isAlias =
            part.size() > 1 && isName(part.back()) && !part.back().is("END") &&
            (before.isSymbol(')') || before.kind == TokenKind::NUMBER ||
             before.kind == TokenKind::QUOTED_NAME || before.kind == TokenKind::STRING || before.is("END") ||
             (before.kind == TokenKind::WORD && part.size() == 2 && !before.is("NOT")) ||
             (before.kind == TokenKind::WORD && part.size() == 4 && part[1].isSymbol('.')));
        if (isTold || isAlias) {
            part.resize(part.size() - (isTold ? 2 : 1));
            scope.aliases.emplace(database::lowerCase(item.name), part);
        } else if (part.size() > 1 && !(part.size() == 3 && part[1].isSymbol('.'))) {
            item.name = std::string(database::textBetween(part.front(), part.back()));
        }
        item.tokens = part;
        result.push_back(item);
    }
    require(!result.empty(), "it can't be parsed after SELECT");
    return result;
}

/// Empty stands for all tables.
void SqlTranslator::expandStar(std::string const& table, std::vector<Item>& into) {
    std::size_t const before = into.size();
    for (Source const& from : scope.sources) {
        if (!table.empty() && !database::equalIgnoringCase(from.name, table)) {
            continue;
        }
        for (SourceColumn const& column : from.columns) {
            if (!column.isHidden || !table.empty()) {
                into.push_back({{}, column.name, columnValue(from, column, scope), true});
            }
        }
    }
    require(into.size() > before, "what its * stands for is unknown");
    require(scope.sources.size() < 100, "it has too many tables");
}

std::string SqlTranslator::grouping(Tokens const& clause, std::vector<Item> const& known) {
    std::string text;
    std::vector<std::string> grouped;
    for (Tokens part : splitAtCommas(clause)) {
        if (part.size() == 1 && part[0].kind == TokenKind::NUMBER) {
            auto const number = static_cast<std::size_t>(std::atoi(std::string(part[0].text).c_str()));
            require(number > 0 && number <= known.size() && !known[number - 1].isKnown,
                    "it is grouped by a column that doesn't exist");
            part = known[number - 1].tokens;
        }
        Value const value = SqlTranslator(part, scope, find).expression();
        require(!value.literal && !value.isNull, "it is grouped by a constant");
        grouped.push_back(value.text);
        text += (text.empty() ? " GROUP BY " : ", ") + value.text;
    }
    scope.grouped = grouped;
    return text;
}

std::string SqlTranslator::ordering(Tokens const& clause, std::vector<Item> const& known, bool isDistinct,
                                    bool isCompound) {
    std::string text;
    for (Tokens const& part : splitAtCommas(clause)) {
        text += (text.empty() ? "" : ", ") + orderingMember(part, known, isDistinct, isCompound);
    }
    return text;
}

/// NULL is the least of all values, where PostgreSQL takes it for the greatest.
std::string SqlTranslator::orderingMember(Tokens part, std::vector<Item> const& known, bool isDistinct,
                                          bool isCompound) {
    std::string nulls;
    if (part.size() > 2 && part[part.size() - 2].is("NULLS")) {
        nulls = database::upperCase(part.back().text);
        part.resize(part.size() - 2);
    }
    bool const isDescending = part.size() > 1 && part.back().is("DESC");
    if (isDescending || (part.size() > 1 && part.back().is("ASC"))) {
        part.pop_back();
    }
    nulls = nulls.empty() ? (isDescending ? "LAST" : "FIRST") : nulls;
    std::string const direction = std::string(isDescending ? " DESC" : "") + " NULLS " + nulls;
    require(!part.empty(), "its ORDER BY isn't understood");
    if (part.size() == 1 && part[0].kind == TokenKind::NUMBER) {
        auto const number = static_cast<std::size_t>(std::atoi(std::string(part[0].text).c_str()));
        require(number > 0 && number <= known.size(), "it is ordered by a column that doesn't exist");
        return std::to_string(number) + direction;
    }
    for (std::size_t i = 0; i < known.size() && part.size() == 1; ++i) {
        if (isName(part[0]) && database::equalIgnoringCase(known[i].name, part[0].name())) {
            return std::to_string(i + 1) + direction;
        }
    }
    require(!isCompound, "it is ordered by something that isn't one of its columns");
    Value const value = SqlTranslator(part, scope, find).expression();
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (known[i].value.text == value.text) {
            return std::to_string(i + 1) + direction;
        }
    }
    require(!isDistinct, "it is ordered by something that isn't one of its columns");
    require(!value.literal && !value.isNull, "it is ordered by a constant");
    bool const isGrouped = !scope.grouped.empty() || value.hasAggregate;
    bool const isAggregated =
        std::any_of(known.begin(), known.end(), [](Item const& item) { return item.value.hasAggregate; });
    require(!isGrouped || value.ungrouped.empty(), "it is ordered by a column that it isn't grouped by");
    require(!value.hasAggregate || isAggregated || !scope.grouped.empty(), "it orders a single row");
    return value.text + direction;
}

std::string SqlTranslator::limit() {
    auto const number = [this] {
        require(peek().kind == TokenKind::NUMBER &&
                    peek().text.find_first_not_of("0123456789") == std::string_view::npos &&
                    peek().text.size() <= 18,
                "its LIMIT isn't a number");
        std::string const digits(peek().text);
        ++position;
        return digits;
    };
    std::string count = number();
    std::string offset;
    if (take("OFFSET")) {
        offset = number();
    } else if (takeSymbol(',')) {
        offset = count;
        count = number();
    }
    require(atEnd(), "its LIMIT isn't understood");
    return " LIMIT " + count + (offset.empty() ? "" : " OFFSET " + offset);
}

// ---- the whole ---------------------------------------------------------------------------------------

/// Brings the columns of all parts to the same kinds, and gives literals a type.
void SqlTranslator::unify(std::vector<Core>& cores) {
    for (Core const& core : cores) {
        if (core.items.size() != cores[0].items.size()) {
            throw Untranslatable("its parts have different numbers of columns");
        }
    }
    for (std::size_t i = 0; i < cores[0].items.size(); ++i) {
        unifyColumn(cores, i);
    }
}

void SqlTranslator::unifyColumn(std::vector<Core>& cores, std::size_t number) {
    Kind kind = Kind::LITERAL;
    for (Core& core : cores) {
        Value& value = core.items[number].value;
        if (value.isNull) {
            continue;
        }
        value = value.kind == Kind::LITERAL ? asText(value) : value;
        bool const suits =
            kind == Kind::LITERAL || kind == value.kind || (isNumber(kind) && isNumber(value.kind));
        if (!suits || (cores.size() > 1 && value.kind == Kind::OTHER)) {
            throw Untranslatable("its parts have columns of different types");
        }
        kind = kind == Kind::LITERAL ? value.kind : std::max(kind, value.kind);
    }
    for (Core& core : cores) {
        Value& value = core.items[number].value;
        if (value.isNull) {
            value.text = std::string("NULL::") + typeOf(kind);
            value.isNull = false;
        }
        value.kind = kind == Kind::LITERAL ? Kind::TEXT : kind;
    }
}

Selection SqlTranslator::written(std::vector<Core> const& cores, std::vector<std::string> const& operators,
                                 std::vector<std::string> const& names) const {
    Selection result;
    require(names.empty() || names.size() == cores[0].items.size(), "its columns are unknown");
    std::set<std::string> taken;
    std::set<std::string> printed;
    for (std::size_t i = 0; i < cores.size(); ++i) {
        result.text += i == 0 ? "" : " " + operators[i - 1] + " ";
        result.text += cores[i].isDistinct ? "SELECT DISTINCT " : "SELECT ";
        for (std::size_t j = 0; j < cores[i].items.size(); ++j) {
            Item const& item = cores[i].items[j];
            if (i == 0) {
                std::string name = names.empty() ? item.name : names[j];
                for (int k = 1; !taken.insert(database::lowerCase(name)).second; ++k) {
                    name = item.name + ":" + std::to_string(k);
                }
                result.columns.push_back({name, printable(name, j), "", item.value.kind, false, false});
                require(printed.insert(result.columns[j].text).second,
                        "two of its columns have the same name");
            }
            result.text += (j == 0 ? "" : ", ") + item.value.text + " AS " + result.columns[j].text;
        }
        result.text += cores[i].tail;
    }
    return result;
}

} // namespace postgres
