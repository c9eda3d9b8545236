#include "postgres/ForeignSql.h"

#include "postgres/SqlNames.h"

#include <algorithm>

namespace postgres {
namespace {

std::string pairOf(Value const& left, Value const& right) {
    return std::string(nameOf(left.kind)) + " with " + nameOf(right.kind);
}

/// A literal takes the kind of what it is compared with, if it is a value of that kind.
void adapt(Value& literal, Value const& other) {
    if (!literal.isNull && !isValueOf(other.kind, *literal.literal)) {
        throw Untranslatable("it compares '" + *literal.literal + "' with " + nameOf(other.kind));
    }
}

bool isLiteral(Value const& value) {
    return value.isNull || (value.literal && value.kind == Kind::LITERAL);
}

/// A text that stands for a moment becomes that moment beside one.
void useMoment(Value& value, Value const& other) {
    bool const isMoment =
        other.kind == Kind::DATE || other.kind == Kind::TIME || other.kind == Kind::TIMESTAMP;
    if (isMoment && !value.moment.empty()) {
        value.text = value.moment;
        value.kind = value.momentKind;
        value.moment.clear();
    }
}

bool areComparable(Kind left, Kind right) {
    auto const isDay = [](Kind kind) { return kind == Kind::DATE || kind == Kind::TIMESTAMP; };
    return (isNumber(left) && isNumber(right)) || (isDay(left) && isDay(right)) ||
           (left == right && left != Kind::OTHER);
}

bool isTrue(std::string const& text) {
    return text == "1" || text == "true";
}

/// A number's own spelling, if a value is one.
bool isNumeral(Value const& value) {
    return isNumber(value.kind) && value.literal.has_value();
}

Value literalAsColumn(Value const& value, std::string const& type, Kind kind) {
    Value result = value;
    bool const isNumeralOfText = kind == Kind::INTEGER && isValueOf(Kind::NUMERIC, *value.literal);
    if (value.kind == Kind::LITERAL && !isNumeralOfText && !isValueOf(kind, *value.literal)) {
        throw Untranslatable("'" + *value.literal + "' isn't a value of the type " + type);
    }
    if (!fits(type, *value.literal)) {
        throw Untranslatable(*value.literal + " doesn't fit the type " + type);
    }
    if (value.kind != Kind::LITERAL && kind == Kind::TEXT) {
        result.text = quoteText(*value.literal);
    }
    return result;
}

} // namespace

Value combined(std::string const& text, Kind kind, std::vector<Value> const& parts) {
    constexpr std::size_t longest = 1000000;
    if (text.size() > longest) {
        throw Untranslatable("it becomes too long");
    }
    Value result;
    result.text = text;
    result.kind = kind;
    for (Value const& part : parts) {
        result.isImmutable = result.isImmutable && part.isImmutable;
        result.hasAggregate = result.hasAggregate || part.hasAggregate;
        result.ungrouped = result.ungrouped.empty() ? part.ungrouped : result.ungrouped;
    }
    return result;
}

Value asCondition(Value const& value) {
    if (value.kind == Kind::BOOLEAN) {
        return value;
    }
    if (value.isNull) {
        return combined("NULL::boolean", Kind::BOOLEAN, {value});
    }
    if (isNumber(value.kind)) {
        return combined("(" + value.text + " <> 0)", Kind::BOOLEAN, {value});
    }
    throw Untranslatable(std::string("it takes ") + nameOf(value.kind) + " for a condition");
}

Value asNumber(Value const& value) {
    if (isNumber(value.kind)) {
        return value;
    }
    if (value.kind == Kind::BOOLEAN) {
        return combined("(" + value.text + ")::integer", Kind::INTEGER, {value});
    }
    if (value.isNull) {
        return combined("NULL::integer", Kind::INTEGER, {value});
    }
    throw Untranslatable(std::string("it takes ") + nameOf(value.kind) + " for a number");
}

Value asText(Value const& value) {
    if (value.kind == Kind::TEXT) {
        return value;
    }
    if (isLiteral(value) || value.kind == Kind::INTEGER) {
        return combined("(" + value.text + ")::text", Kind::TEXT, {value});
    }
    throw Untranslatable(std::string("it takes ") + nameOf(value.kind) + " for a text");
}

void makeComparable(Value& left, Value& right) {
    useMoment(left, right);
    useMoment(right, left);
    if (left.kind == Kind::BOOLEAN && isNumber(right.kind)) {
        left = asNumber(left);
    }
    if (right.kind == Kind::BOOLEAN && isNumber(left.kind)) {
        right = asNumber(right);
    }
    if (isLiteral(left) && isLiteral(right)) {
        left = asText(left);
        right = asText(right);
    } else if (isLiteral(left)) {
        adapt(left, right);
    } else if (isLiteral(right)) {
        adapt(right, left);
    } else if (!areComparable(left.kind, right.kind)) {
        throw Untranslatable("it compares " + pairOf(left, right) + ", which PostgreSQL doesn't");
    }
}

Value asColumn(Value const& value, std::string const& type) {
    Kind const kind = kindOf(type);
    if (value.isNull) {
        return value;
    }
    if (kind == Kind::BOOLEAN && value.literal && value.kind == Kind::INTEGER) {
        if (*value.literal != "0" && *value.literal != "1") {
            throw Untranslatable(*value.literal + " isn't a truth value");
        }
        return combined(isTrue(*value.literal) ? "true" : "false", Kind::BOOLEAN, {value});
    }
    Value own = value;
    useMoment(own, combined("", kind, {}));
    if (isLiteral(own) || (isNumeral(own) && (isNumber(kind) || kind == Kind::TEXT))) {
        return literalAsColumn(own, type, kind);
    }
    if (own.kind == Kind::BOOLEAN && isNumber(kind)) {
        return asNumber(own);
    }
    if (kind == Kind::TEXT) {
        return asText(own);
    }
    if (kind == Kind::OTHER || !areComparable(own.kind, kind)) {
        throw Untranslatable(std::string("it is ") + nameOf(own.kind) + ", and the column is " + type);
    }
    return own;
}

} // namespace postgres
