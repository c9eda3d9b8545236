#include <qor/QORParameterizedTextLiteral.h>

#include <climits>
#include <map>
#include <memory>
#include <string>

namespace {

struct ParameterSet {
    QORString text;
    std::map<int, QORString> values;
};

/// A place of the form {digits}; `size` is 0 if there is none.
struct Placeholder {
    int index;
    int size;
};

Placeholder placeholderAt(char const* text) {
    int index = 0;
    int size = 1;
    for (; text[size] >= '0' && text[size] <= '9'; ++size) {
        int const digit = text[size] - '0';
        if (index > (INT_MAX - digit) / 10) {
            return {0, 0};
        }
        index = index * 10 + digit;
    }
    return size > 1 && text[size] == '}' ? Placeholder{index, size + 1} : Placeholder{0, 0};
}

std::string filled(ParameterSet const& parameters) {
    std::string result;
    char const* rest = parameters.text.chars;
    while (char const* brace = std::strchr(rest, '{')) {
        result.append(rest, brace);
        Placeholder const place = placeholderAt(brace);
        auto const value = place.size == 0 ? parameters.values.end() : parameters.values.find(place.index);
        if (value == parameters.values.end()) {
            result += '{';
            rest = brace + 1;
        } else {
            result += value->second.chars;
            rest = brace + place.size;
        }
    }
    return result += rest;
}

} // namespace

QORParameterizedTextLiteral::QORParameterizedTextLiteral(QORString const& literalId,
                                                         QORString const& literalText)
    : id(literalId), text(literalText) {}

QORParameterizedTextLiteral::~QORParameterizedTextLiteral() = default;

void QORParameterizedTextLiteral::update(QORString const& newText, QORDOMElement const*) {
    text = newText;
}

void* QORParameterizedTextLiteral::prapareForParameters() const {
    return new ParameterSet{text, {}};
}

void QORParameterizedTextLiteral::setParameterValue(void* handle, int index, QORString const& value) const {
    if (handle == nullptr || index < 0) {
        return;
    }
    QORString copy(value);
    static_cast<ParameterSet*>(handle)->values[index].swap(copy);
}

QORString QORParameterizedTextLiteral::createParametrizedText(void* handle) const {
    if (handle == nullptr) {
        return text;
    }
    std::unique_ptr<ParameterSet> const parameters(static_cast<ParameterSet*>(handle));
    return QORString(filled(*parameters).c_str());
}

void QORParameterizedTextLiteral::discardParameters(void* handle) const noexcept {
    delete static_cast<ParameterSet*>(handle);
}
