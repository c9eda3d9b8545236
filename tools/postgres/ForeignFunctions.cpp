#include "postgres/ForeignSql.h"

#include "postgres/SqlNames.h"

#include <algorithm>
#include <map>
#include <set>

namespace postgres {
namespace {

using database::Token;

/// What a function of texts and numbers is called in PostgreSQL, the kinds of its arguments, one letter each
/// (t for text, i for an integer, p for a literal that counts from 1 on, n for any number), the number that
/// can be left out, and the kind of its result.
struct Equal {
    char const* name;
    std::string_view arguments;
    std::size_t optional;
    Kind result;
};

std::map<std::string, Equal> const& equals() {
    static std::map<std::string, Equal> const table = {
        {"lower", {"lower", "t", 0, Kind::TEXT}},       {"upper", {"upper", "t", 0, Kind::TEXT}},
        {"trim", {"btrim", "tt", 1, Kind::TEXT}},       {"ltrim", {"ltrim", "tt", 1, Kind::TEXT}},
        {"rtrim", {"rtrim", "tt", 1, Kind::TEXT}},      {"replace", {"replace", "ttt", 0, Kind::TEXT}},
        {"instr", {"strpos", "tt", 0, Kind::INTEGER}},  {"substr", {"substr", "tpp", 1, Kind::TEXT}},
        {"substring", {"substr", "tpp", 1, Kind::TEXT}}};
    return table;
}

std::set<std::string> const aggregates = {"count", "sum", "avg", "min", "max", "total", "group_concat"};
std::set<std::string> const windowFunctions = {"row_number", "rank", "dense_rank"};

std::string listOf(std::vector<Value> const& values) {
    std::string text;
    for (Value const& value : values) {
        text += (text.empty() ? "" : ", ") + value.text;
    }
    return text;
}

Value asPosition(Value const& value) {
    bool const isPosition = value.kind == Kind::INTEGER && value.literal && value.literal->front() != '-' &&
                            value.literal->size() < 10;
    if (!isPosition || *value.literal == "0") {
        throw Untranslatable("substr counts from a position that PostgreSQL counts differently");
    }
    return value;
}

/// The template of to_char for a format of strftime; nothing if that has something else.
std::optional<std::string> templateOf(std::string const& format) {
    static std::map<char, char const*> const fields = {{'Y', "YYYY"}, {'m', "MM"}, {'d', "DD"}, {'H', "HH24"},
                                                       {'M', "MI"},   {'S', "SS"}, {'j', "DDD"}};
    std::string result;
    for (std::size_t i = 0; i < format.size(); ++i) {
        auto const field =
            format[i] == '%' && i + 1 < format.size() ? fields.find(format[i + 1]) : fields.end();
        bool const isMark = std::string_view("-/:. ").find(format[i]) != std::string_view::npos;
        if (field == fields.end() && !isMark) {
            return std::nullopt;
        }
        result += isMark ? std::string(1, format[i]) : field->second;
        i += isMark ? 0 : 1;
    }
    return result;
}

} // namespace

Value SqlTranslator::function(std::string const& named) {
    std::string const lower = database::lowerCase(named);
    Tokens given = inside();
    bool const isDistinct = !given.empty() && given.front().is("DISTINCT");
    if (isDistinct) {
        given.erase(given.begin());
    }
    bool const isStar = given.size() == 1 && given.front().isSymbol('*');
    auto const arguments = isStar ? std::vector<Tokens>() : splitAtCommas(given);
    Value const value = called(lower, arguments, isDistinct, isStar);
    return withWindow(value, windowFunctions.count(lower) > 0);
}

/// min and max of several values are no aggregates.
Value SqlTranslator::called(std::string const& lower, std::vector<Tokens> const& arguments, bool isDistinct,
                            bool isStar) {
    bool const isExtreme = (lower == "min" || lower == "max") && arguments.size() > 1;
    if (aggregates.count(lower) && !isExtreme) {
        return aggregate(lower, arguments, isDistinct, isStar);
    }
    if (windowFunctions.count(lower) && arguments.empty()) {
        Value value;
        value.text = lower + "()";
        value.kind = Kind::INTEGER;
        return value;
    }
    require(!isDistinct && !isStar, "a function in it has unsupported arguments");
    std::vector<Value> values;
    for (Tokens const& argument : arguments) {
        values.push_back(part(argument));
    }
    return scalar(lower, values);
}

Value SqlTranslator::aggregate(std::string const& lower, std::vector<Tokens> const& arguments,
                               bool isDistinct, bool isStar) {
    require(scope.takesAggregates, "it has an aggregate where PostgreSQL allows none");
    std::vector<Value> values;
    scope.takesAggregates = false;
    bool const namedOuter = scope.namesOuter;
    scope.namesOuter = false;
    for (Tokens const& argument : arguments) {
        values.push_back(part(argument));
    }
    require(!scope.namesOuter, "an aggregate in it names an outer column");
    scope.namesOuter = namedOuter;
    Value result;
    if (isStar || arguments.empty()) {
        require(lower == "count", "an aggregate in it has no argument");
        result.text = "count(*)";
        result.kind = Kind::INTEGER;
    } else {
        result = aggregateOf(lower, values, isDistinct);
    }
    if (at("FILTER") && atSymbol('(', 1)) {
        ++position;
        Tokens condition = inside();
        require(!condition.empty() && condition.front().is("WHERE"), "it can't be parsed at FILTER");
        condition.erase(condition.begin());
        require(lower != "total", "total has no FILTER in PostgreSQL");
        result.text += " FILTER (WHERE " + asCondition(part(condition)).text + ")";
    }
    scope.takesAggregates = true;
    result.hasAggregate = true;
    result.ungrouped.clear();
    return result;
}

Value SqlTranslator::aggregateOf(std::string const& lower, std::vector<Value>& values, bool isDistinct) {
    std::string const distinct = isDistinct ? "DISTINCT " : "";
    if (lower == "group_concat") {
        require(values.size() < 3 && (!isDistinct || values.size() == 1),
                "group_concat has unsupported arguments");
        std::string const separator = values.size() == 2 ? asText(values[1]).text : "','";
        return combined("string_agg(" + distinct + asText(values[0]).text + ", " + separator + ")",
                        Kind::TEXT, {});
    }
    require(values.size() == 1, "an aggregate in it has unsupported arguments");
    if (lower == "count") {
        return combined("count(" + distinct + values[0].text + ")", Kind::INTEGER, {});
    }
    bool const isExtreme = lower == "min" || lower == "max";
    bool const isOrdered = isNumber(values[0].kind) || values[0].kind == Kind::TEXT ||
                           values[0].kind == Kind::DATE || values[0].kind == Kind::TIME ||
                           values[0].kind == Kind::TIMESTAMP;
    Value const of = isExtreme && isOrdered ? values[0] : asNumber(values[0]);
    std::string const text = distinct + of.text + ")";
    if (lower == "total") {
        return combined("coalesce(sum(" + text + ", 0)::double precision", Kind::DOUBLE, {});
    }
    if (lower == "avg") {
        return combined("avg(" + text, of.kind == Kind::DOUBLE ? Kind::DOUBLE : Kind::NUMERIC, {});
    }
    return combined(lower + "(" + text, of.kind, {});
}

/// What stands behind OVER; an aggregate over a window is a value of each row.
Value SqlTranslator::withWindow(Value value, bool needsWindow) {
    if (!take("OVER")) {
        require(!needsWindow, "a window function in it has no window");
        return value;
    }
    bool const mayAggregate = scope.takesAggregates;
    require(mayAggregate && scope.grouped.empty(), "it has a window where PostgreSQL allows none");
    require(value.text.find("coalesce(") != 0, "total has no window in PostgreSQL");
    scope.takesAggregates = false;
    std::string const text = SqlTranslator(inside(), scope, find).window();
    scope.takesAggregates = mayAggregate;
    Value result = combined(value.text + " OVER (" + text + ")", value.kind, {value});
    result.isImmutable = false;
    result.hasAggregate = false;
    result.ungrouped = text.empty() ? result.ungrouped : "that its window names";
    return result;
}

/// The clauses of a window, without a frame.
std::string SqlTranslator::window() {
    std::string text;
    while (!atEnd()) {
        bool const isPartition = at("PARTITION");
        require(isPartition || at("ORDER"), "it has a window with a frame");
        position += 2;
        Tokens members;
        int depth = 0;
        while (!atEnd() && (depth > 0 || !at("ORDER"))) {
            require(!at("ROWS") && !at("RANGE") && !at("GROUPS"), "it has a window with a frame");
            depth += atSymbol('(') - atSymbol(')');
            members.push_back(peek());
            ++position;
        }
        text += (text.empty() ? "" : " ") + (isPartition ? "PARTITION BY " + partition(members)
                                                         : "ORDER BY " + ordering(members, {}, false, false));
    }
    return text;
}

std::string SqlTranslator::partition(Tokens const& members) {
    std::vector<Value> keys;
    for (Tokens const& member : splitAtCommas(members)) {
        keys.push_back(part(member));
    }
    return listOf(keys);
}

// ---- functions of one row ----------------------------------------------------------------------------

Value SqlTranslator::scalar(std::string const& lower, std::vector<Value>& values) {
    static std::set<std::string> const choices = {"coalesce", "ifnull", "nullif", "iif"};
    static std::set<std::string> const dates = {"date", "time", "datetime", "strftime"};
    if (choices.count(lower)) {
        return choice(lower, values);
    }
    if (dates.count(lower)) {
        return dateFunction(lower, values);
    }
    if (lower == "abs" && values.size() == 1) {
        Value const value = asNumber(values[0]);
        return combined("abs(" + value.text + ")", value.kind, {value});
    }
    if (lower == "round" && (values.size() == 1 || values.size() == 2)) {
        Value const value = asNumber(values[0]);
        std::string const digits = values.size() == 2 ? asNumber(values[1]).text : "0";
        require(values.size() == 1 || values[1].literal, "round has an unknown number of digits");
        return combined("round((" + value.text + ")::numeric, " + digits + ")", Kind::NUMERIC, {value});
    }
    if (lower == "length" && values.size() == 1) {
        bool const isBytes = values[0].kind == Kind::BYTES;
        Value const value = isBytes ? values[0] : asText(values[0]);
        return combined((isBytes ? "octet_length(" : "length(") + value.text + ")", Kind::INTEGER, {value});
    }
    if (lower == "hex" && values.size() == 1 && values[0].kind == Kind::BYTES) {
        return combined("upper(encode(" + values[0].text + ", 'hex'))", Kind::TEXT, {values[0]});
    }
    bool const isHint = lower == "likely" || lower == "unlikely";
    if (isHint && values.size() == 1) {
        return values[0];
    }
    return textFunction(lower, values);
}

Value SqlTranslator::textFunction(std::string const& lower, std::vector<Value>& values) {
    auto const known = equals().find(lower);
    if (known == equals().end()) {
        fail("the function " + lower + " has no known equivalent in PostgreSQL");
    }
    Equal const& equal = known->second;
    bool const suits =
        values.size() <= equal.arguments.size() && values.size() + equal.optional >= equal.arguments.size();
    require(suits, "a function in it has unsupported arguments");
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = equal.arguments[i] == 't' ? asText(values[i]) : asPosition(values[i]);
    }
    return combined(std::string(equal.name) + "(" + listOf(values) + ")", equal.result, values);
}

/// Values of which one is taken: all are brought to the kind of the first that isn't a literal.
Value SqlTranslator::choice(std::string const& lower, std::vector<Value>& values) {
    std::vector<Value> conditions;
    if (lower == "iif") {
        require(values.size() == 3, "a function in it has unsupported arguments");
        conditions.push_back(asCondition(values[0]));
        values.erase(values.begin());
    }
    require(lower == "case" || values.size() >= 2, "a function in it has unsupported arguments");
    auto const isOwn = [](Value const& value) { return value.kind != Kind::LITERAL; };
    auto const own = std::find_if(values.begin(), values.end(), isOwn);
    Kind kind = Kind::TEXT;
    if (own == values.end()) {
        std::transform(values.begin(), values.end(), values.begin(), asText);
    } else {
        bool const areNumbers = std::any_of(values.begin(), values.end(),
                                            [](Value const& value) { return isNumber(value.kind); });
        for (Value& value : values) {
            value = areNumbers && value.kind == Kind::BOOLEAN ? asNumber(value) : value;
        }
        Value const measure = *own;
        kind = measure.kind;
        for (Value& value : values) {
            Value compared = measure;
            makeComparable(compared, value);
            require(compared.text == measure.text, "the values that it chooses from are of several types");
            require(value.kind == Kind::LITERAL || isNumber(kind) || value.kind == kind,
                    "the values that it chooses from are of several types");
            kind = isNumber(kind) && isNumber(value.kind) ? std::max(kind, value.kind) : kind;
        }
    }
    if (lower == "iif") {
        std::string const text = "CASE WHEN " + conditions[0].text + " THEN " + values[0].text + " ELSE " +
                                 values[1].text + " END";
        conditions.insert(conditions.end(), values.begin(), values.end());
        return combined("(" + text + ")", kind, conditions);
    }
    return combined((lower == "nullif" ? "nullif(" : "coalesce(") + listOf(values) + ")", kind, values);
}

/// Of moments that PostgreSQL knows as such, and of now.
Value SqlTranslator::dateFunction(std::string const& lower, std::vector<Value>& values) {
    bool const isFormat = lower == "strftime";
    require(values.size() == (isFormat ? 2 : 1), "a date function has modifiers");
    Value const& of = values.back();
    bool const isNow =
        of.literal && of.kind == Kind::LITERAL && database::equalIgnoringCase(*of.literal, "now");
    bool const isMoment = of.kind == Kind::DATE || of.kind == Kind::TIMESTAMP;
    require(isNow || isMoment, "a date function is called with something other than a date");
    if (isNow && !isFormat) {
        return currentMoment(lower == "date"   ? "CURRENT_DATE"
                             : lower == "time" ? "CURRENT_TIME"
                                               : "CURRENT_TIMESTAMP");
    }
    std::string const moment = isNow ? "(CURRENT_TIMESTAMP AT TIME ZONE 'UTC')" : of.text;
    if (isFormat) {
        auto const form = values[0].literal ? templateOf(*values[0].literal) : std::nullopt;
        require(form.has_value(), "strftime has a format that PostgreSQL lacks");
        Value value = combined("to_char(" + moment + ", " + quoteText(*form) + ")", Kind::TEXT, {of});
        value.isImmutable = false;
        return value;
    }
    Kind const kind = lower == "date" ? Kind::DATE : lower == "time" ? Kind::TIME : Kind::TIMESTAMP;
    require(kind != Kind::TIME || of.kind == Kind::TIMESTAMP, "time is called with a date");
    return combined("(" + moment + ")::" + (lower == "datetime" ? "timestamp" : lower), kind, {of});
}

} // namespace postgres
