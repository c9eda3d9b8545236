#include "qor/SafeText.h"

#include "kit/Text.h"
#include "qor/Sources.h"

#include <algorithm>
#include <array>
#include <optional>

namespace qorprogram {
namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::string_view blanks = " \t\r\n\v\f";
constexpr std::string_view stars = "***";

struct Span {
    std::size_t begin;
    std::size_t end;
};

bool isOneOf(char character, std::string_view characters) {
    return characters.find(character) != npos;
}

bool isLetterOrDigit(char character) {
    return kit::isLetter(character) || kit::isDigit(character);
}

/// The character that a percent sign and two digits stand for at a place.
std::optional<char> decodedAt(std::string_view text, std::size_t place) {
    if (place + 2 >= text.size() || text[place] != '%') {
        return std::nullopt;
    }
    int const high = kit::hexDigit(text[place + 1]);
    int const low = kit::hexDigit(text[place + 2]);
    return high < 0 || low < 0 ? std::nullopt : std::optional(static_cast<char>(high * 16 + low));
}

/// How long a character is at a place, plain, behind a backslash or two, or with a percent sign; 0 if another
/// one stands there.
std::size_t lengthAt(std::string_view text, std::size_t place, char character) {
    std::size_t end = place;
    while (end < text.size() && end < place + 2 && text[end] == '\\') {
        ++end;
    }
    if (end < text.size() && text[end] == character) {
        return end + 1 - place;
    }
    return decodedAt(text, end) == character ? end + 3 - place : 0;
}

/// The first `://` from a place on.
std::optional<Span> findSeparator(std::string_view text, std::size_t from) {
    for (std::size_t begin = from; begin < text.size(); ++begin) {
        std::size_t end = begin;
        bool isHere = true;
        for (char const character : {':', '/', '/'}) {
            std::size_t const length = lengthAt(text, end, character);
            isHere = isHere && length > 0;
            end += length;
        }
        if (isHere) {
            return Span{begin, end};
        }
    }
    return std::nullopt;
}

bool isOfScheme(char character) {
    return isLetterOrDigit(character) || isOneOf(character, "+.-_:%\\");
}

std::size_t schemeBegin(std::string_view text, std::size_t separator) {
    while (separator > 0 && isOfScheme(text[separator - 1])) {
        --separator;
    }
    return separator;
}

/// Behind the last `@`, or 0 if there is none.
std::size_t behindLastAt(std::string_view text) {
    std::size_t const plain = text.rfind('@');
    std::size_t const encoded = text.rfind("%40");
    return std::max(plain == npos ? 0 : plain + 1, encoded == npos ? 0 : encoded + 3);
}

/// Where a word ends, without the punctuation of the sentence that it stands in.
std::size_t wordEnd(std::string_view text, std::size_t from) {
    std::size_t end = std::min(text.find_first_of(" \t\r\n\v\f\"'`<>|", from), text.size());
    while (end > from && isOneOf(text[end - 1], ":,;.)")) {
        --end;
    }
    return end;
}

bool isSecretName(std::string const& name) {
    constexpr std::array<char const*, 5> parts = {"password", "passwd", "passphrase", "pwd", "secret"};
    bool const endsWithPass = name.size() >= 4 && name.compare(name.size() - 4, 4, "pass") == 0;
    return endsWithPass ||
           std::any_of(parts.begin(), parts.end(), [&](char const* part) { return name.find(part) != npos; });
}

/// Where the name before an equals sign stands.
Span nameBefore(std::string_view text, std::size_t equals) {
    while (equals > 0 && (isOneOf(text[equals - 1], blanks) || isOneOf(text[equals - 1], ":\"'\\"))) {
        --equals;
    }
    std::size_t begin = equals;
    while (begin > 0 && (isLetterOrDigit(text[begin - 1]) || isOneOf(text[begin - 1], "_-%"))) {
        --begin;
    }
    return {begin, equals};
}

/// A name in lower case and without percent signs.
std::string plainName(std::string_view name) {
    std::string plain;
    for (std::size_t i = 0; i < name.size(); ++i) {
        auto const decoded = decodedAt(name, i);
        plain += kit::lowerCase(decoded.value_or(name[i]));
        i += decoded ? 2 : 0;
    }
    return plain;
}

/// Behind the quotation mark that closes the one at a place, or the end of the text. One behind a backslash
/// doesn't, nor does a double one.
std::size_t quotationEnd(std::string_view text, std::size_t open) {
    for (std::size_t i = open + 1; i < text.size(); ++i) {
        if (text[i] != text[open] || text[i - 1] == '\\') {
            continue;
        }
        if (i + 1 == text.size() || text[i + 1] != text[open]) {
            return i + 1;
        }
        ++i;
    }
    return text.size();
}

std::size_t valueEnd(std::string_view text, std::size_t begin) {
    if (begin < text.size() && isOneOf(text[begin], "'\"")) {
        return quotationEnd(text, begin);
    }
    std::size_t end = begin;
    while (end < text.size() && !isOneOf(text[end], blanks)) {
        end += text[end] == '\\' ? 2 : 1;
    }
    end = std::min(end, text.size());
    while (end > begin && isOneOf(text[end - 1], ":,;)\"'")) {
        --end;
    }
    return end;
}

/// The name of a secret, and the value behind its equals sign.
struct Setting {
    Span name;
    Span value;
};

/// The first one whose equals sign stands at a place or behind it.
std::optional<Setting> findSetting(std::string_view text, std::size_t from) {
    for (std::size_t place = from; place < text.size(); ++place) {
        std::size_t const length = lengthAt(text, place, '=');
        if (length == 0) {
            continue;
        }
        Span const name = nameBefore(text, place);
        if (isSecretName(plainName(text.substr(name.begin, name.end - name.begin)))) {
            std::size_t const begin = std::min(text.find_first_not_of(blanks, place + length), text.size());
            return Setting{name, {begin, valueEnd(text, begin)}};
        }
    }
    return std::nullopt;
}

std::string withoutAddresses(std::string_view text) {
    std::string result;
    std::size_t done = 0;
    std::size_t const lastAt = behindLastAt(text);
    while (auto const separator = findSeparator(text, done)) {
        std::size_t const begin = std::max(done, schemeBegin(text, separator->begin));
        std::size_t const end = wordEnd(text, std::max(separator->end, lastAt));
        result.append(text.substr(done, begin - done));
        result += shownAddress(std::string(text.substr(begin, end - begin)));
        done = end;
    }
    return result.append(text.substr(done));
}

std::string withoutValues(std::string_view text) {
    std::string result;
    std::size_t done = 0;
    while (auto const setting = findSetting(text, done)) {
        Span const value = setting->value;
        result.append(text.substr(done, value.begin - done));
        result.append(value.end > value.begin ? stars : "");
        done = value.end;
    }
    return result.append(text.substr(done));
}

/// A piece of an argument from before its first secret on, and how it is shown.
struct Hidden {
    std::size_t begin;
    std::size_t length;
    std::string shown;
};

std::optional<Hidden> hiddenAddress(std::string_view argument) {
    auto const separator = findSeparator(argument, 0);
    if (!separator) {
        return std::nullopt;
    }
    std::size_t const begin = schemeBegin(argument, separator->begin);
    return Hidden{begin, npos, shownAddress(std::string(argument.substr(begin)))};
}

std::optional<Hidden> hiddenValue(std::string_view argument) {
    auto const setting = findSetting(argument, 0);
    if (!setting) {
        return std::nullopt;
    }
    std::size_t const begin = setting->name.begin;
    return Hidden{begin, npos,
                  std::string(argument.substr(begin, setting->value.begin - begin)).append(stars)};
}

/// A colon and an `@` behind it can be a user and a password whose scheme has been forgotten.
std::optional<Hidden> hiddenUser(std::string_view argument) {
    std::size_t const colon = argument.find(':');
    std::size_t const at = argument.rfind('@');
    if (colon == npos || at == npos || at < colon) {
        return std::nullopt;
    }
    std::size_t const before = argument.substr(0, colon).find_last_of("=/ ");
    std::size_t const begin = before == npos ? 0 : before + 1;
    return Hidden{begin, at + 1 - begin, std::string(argument.substr(begin, colon + 1 - begin)) + "***@"};
}

/// The one that begins first. A password that looks like the beginning of something else isn't cut there.
std::optional<Hidden> hiddenPiece(std::string_view argument) {
    std::optional<Hidden> first = hiddenAddress(argument);
    if (auto const value = hiddenValue(argument); value && (!first || value->begin < first->begin)) {
        first = value;
    }
    auto user = hiddenUser(argument);
    if (!user || (first && first->begin <= user->begin)) {
        return first;
    }
    if (first) {
        user->length = npos;
    }
    return user;
}

std::string onOneLine(std::string text) {
    for (char& character : text) {
        auto const code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7f) {
            character = ' ';
        }
    }
    return text;
}

void replaceAll(std::string& text, std::string const& piece, std::string const& other) {
    for (auto found = text.find(piece); found != npos; found = text.find(piece, found + other.size())) {
        text.replace(found, piece.size(), other);
    }
}

} // namespace

bool isAddress(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    auto const separator = findSeparator(text, 0);
    return separator && schemeBegin(text, separator->begin) == 0;
}

std::string withoutSecrets(std::string_view text) {
    return withoutValues(withoutAddresses(text));
}

SafeText::SafeText(int argc, char const* const* argv) {
    for (int i = 1; i < argc; ++i) {
        std::string const argument = argv[i];
        if (auto const piece = hiddenPiece(argument)) {
            pieces.emplace_back(argument.substr(piece->begin, piece->length), piece->shown);
        }
    }
    std::sort(pieces.begin(), pieces.end(),
              [](auto const& a, auto const& b) { return a.first.size() > b.first.size(); });
}

std::string SafeText::operator()(std::string message) const {
    for (auto const& [piece, shown] : pieces) {
        replaceAll(message, piece, shown);
    }
    return onOneLine(withoutSecrets(message));
}

} // namespace qorprogram
