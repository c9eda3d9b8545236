#include "postgres/ArrayCasts.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace postgres {
namespace {

constexpr std::string_view arrayStart = "(ARRAY[";

bool isNameCharacter(char character) {
    char const lower = static_cast<char>(character | 32);
    return (lower >= 'a' && lower <= 'z') || (character >= '0' && character <= '9') || character == '_' ||
           character == '$' || static_cast<unsigned char>(character) >= 0x80;
}

/// Goes over SQL as far as literals, quoted names and comments are concerned.
class Walk {
public:
    explicit Walk(std::string_view toWalk) : sql(toWalk) {}

    /// The position behind what begins at one, which is the next one unless something is quoted there.
    std::size_t next(std::size_t at) const {
        std::string_view const rest = sql.substr(at);
        if (rest.front() == '\'' || rest.front() == '"') {
            bool const escapes = rest.front() == '\'' && at > 0 && (sql[at - 1] | 32) == 'e' &&
                                 (at < 2 || !isNameCharacter(sql[at - 2]));
            return behindQuotes(at, escapes);
        }
        if (rest.substr(0, 2) == "--") {
            return std::min(sql.find('\n', at), sql.size());
        }
        if (rest.substr(0, 2) == "/*") {
            return behind("*/", at + 2);
        }
        bool const isDollar = rest.front() == '$' && (at == 0 || !isNameCharacter(sql[at - 1]));
        return isDollar ? behindDollars(at) : at + 1;
    }

private:
    std::size_t behind(std::string_view mark, std::size_t from) const {
        auto const found = sql.find(mark, from);
        return found == std::string_view::npos ? sql.size() : found + mark.size();
    }

    /// A doubled quotation mark begins again at once, which comes to the same.
    std::size_t behindQuotes(std::size_t at, bool escapes) const {
        for (std::size_t i = at + 1; i < sql.size(); ++i) {
            if (escapes && sql[i] == '\\') {
                ++i;
            } else if (sql[i] == sql[at]) {
                return i + 1;
            }
        }
        return sql.size();
    }

    std::size_t behindDollars(std::size_t at) const {
        auto const end = sql.find('$', at + 1);
        bool const isTag = end != std::string_view::npos &&
                           std::all_of(sql.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                                       sql.begin() + static_cast<std::ptrdiff_t>(end), isNameCharacter);
        return isTag ? behind(sql.substr(at, end + 1 - at), end + 1) : at + 1;
    }

    std::string_view sql;
};

/// An array's elements and the position of the bracket behind them; the text's end if there is none.
struct Elements {
    std::vector<std::string_view> texts;
    std::size_t end = 0;
};

Elements elementsFrom(std::string_view sql, std::size_t start) {
    Elements result;
    Walk const walk(sql);
    int depth = 0;
    std::size_t first = start;
    std::size_t at = start;
    for (; at < sql.size() && depth >= 0; at = depth < 0 ? at : walk.next(at)) {
        depth += sql[at] == '(' || sql[at] == '[' ? 1 : sql[at] == ')' || sql[at] == ']' ? -1 : 0;
        if ((sql[at] == ',' && depth == 0) || depth < 0) {
            result.texts.push_back(sql.substr(first, at - first));
            first = at + 1;
        }
    }
    result.end = at;
    return result;
}

/// The type that an element is of, as far as its text says: a cast, or a number that fits an integer.
std::string_view typeOf(std::string_view element) {
    element.remove_prefix(std::min(element.find_first_not_of(' '), element.size()));
    constexpr std::size_t longestInteger = 9;
    bool const isInteger = element.find_first_not_of("0123456789") == std::string_view::npos;
    if (isInteger && !element.empty() && element.size() <= longestInteger) {
        return "integer";
    }
    Walk const walk(element);
    std::string_view type;
    int depth = 0;
    for (std::size_t at = 0; at < element.size(); at = walk.next(at)) {
        depth += element[at] == '(' ? 1 : element[at] == ')' ? -1 : 0;
        if (depth == 0 && element.substr(at, 2) == "::") {
            type = element.substr(at + 2);
        }
    }
    return type;
}

/// The type of an array of elements that are all of one, nothing otherwise.
std::string_view commonType(std::vector<std::string_view> const& elements) {
    std::string_view const type = elements.empty() ? "" : typeOf(elements.front());
    bool const isCommon = std::all_of(elements.begin(), elements.end(),
                                      [&](std::string_view element) { return typeOf(element) == type; });
    return isCommon ? type : "";
}

} // namespace

std::string keepArrayCasts(std::string_view sql) {
    Walk const walk(sql);
    std::string result;
    std::vector<std::pair<std::size_t, std::string>> insertions;
    for (std::size_t at = sql.find(arrayStart) == std::string_view::npos ? sql.size() : 0; at < sql.size();
         at = walk.next(at)) {
        if (sql.substr(at, arrayStart.size()) != arrayStart) {
            continue;
        }
        Elements const elements = elementsFrom(sql, at + arrayStart.size());
        std::string_view const type = commonType(elements.texts);
        if (!type.empty() && sql.substr(elements.end, 4) == "])::") {
            insertions.emplace_back(elements.end + 1, "::" + std::string(type) + "[]");
        }
    }
    std::sort(insertions.begin(), insertions.end());
    std::size_t done = 0;
    for (auto const& [at, text] : insertions) {
        result.append(sql.substr(done, at - done)).append(text);
        done = at;
    }
    return result.append(sql.substr(done));
}

} // namespace postgres
