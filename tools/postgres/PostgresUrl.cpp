#include "postgres/PostgresUrl.h"

#include "kit/Text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace postgres {
namespace {

constexpr std::string_view shortScheme = "postgres://";
constexpr std::string_view longScheme = "postgresql://";
constexpr auto npos = std::string_view::npos;

/// Parameters whose values are no secrets.
constexpr std::array<std::string_view, 27> harmless = {"application_name",
                                                       "channel_binding",
                                                       "client_encoding",
                                                       "connect_timeout",
                                                       "dbname",
                                                       "fallback_application_name",
                                                       "gssencmode",
                                                       "host",
                                                       "hostaddr",
                                                       "keepalives",
                                                       "keepalives_count",
                                                       "keepalives_idle",
                                                       "keepalives_interval",
                                                       "krbsrvname",
                                                       "port",
                                                       "service",
                                                       "ssl",
                                                       "ssl_max_protocol_version",
                                                       "ssl_min_protocol_version",
                                                       "sslcert",
                                                       "sslcrl",
                                                       "sslkey",
                                                       "sslmode",
                                                       "sslrootcert",
                                                       "target_session_attrs",
                                                       "tcp_user_timeout",
                                                       "user"};

bool beginsWith(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin(),
                                                     [](char a, char b) { return a == kit::lowerCase(b); });
}

std::size_t schemeLength(std::string_view text) {
    return beginsWith(text, longScheme)    ? longScheme.size()
           : beginsWith(text, shortScheme) ? shortScheme.size()
                                           : 0;
}

bool isBlankOrControl(char character) {
    return character == ' ' || kit::isControl(character);
}

/// The text with its percent signs decoded; nothing if one can't be.
std::optional<std::string> decoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        int const high = i + 2 < text.size() ? kit::hexDigit(text[i + 1]) : -1;
        int const low = high < 0 ? -1 : kit::hexDigit(text[i + 2]);
        if (low < 0 || (high == 0 && low == 0)) {
            return std::nullopt;
        }
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

/// Whether a piece holds none of these characters, neither plain nor encoded.
bool isFreeOf(std::string_view piece, std::string_view characters) {
    auto const plain = decoded(piece);
    return plain && plain->find_first_of(characters) == npos &&
           std::none_of(plain->begin(), plain->end(), isBlankOrControl);
}

bool isPort(std::string_view text) {
    constexpr std::size_t longest = 5;
    return text.size() <= longest && std::all_of(text.begin(), text.end(), kit::isDigit) &&
           (text.empty() || std::stoi(std::string(text)) <= 65535);
}

/// A name or an address, and a port if it has one.
bool isHost(std::string_view host) {
    if (!host.empty() && host.front() == '[') {
        auto const close = host.find(']');
        if (close == npos ||
            host.substr(1, close - 1).find_first_not_of("0123456789abcdefABCDEF:.%") != npos) {
            return false;
        }
        host.remove_prefix(close + 1);
        return host.empty() || (host.front() == ':' && isPort(host.substr(1)));
    }
    auto const colon = host.find(':');
    std::string_view const name = host.substr(0, colon);
    auto const path = decoded(name);
    bool const isFolder = path && !path->empty() && path->front() == '/';
    return isFreeOf(name, isFolder ? ":@?#[]=" : "/:@?#[]=") &&
           (colon == npos || isPort(host.substr(colon + 1)));
}

/// Calls `take` with each piece between separators until that returns false, and returns what it returned
/// last.
template <class Take>
bool eachPiece(std::string_view text, char separator, Take take) {
    for (;;) {
        auto const end = text.find(separator);
        if (!take(text.substr(0, end))) {
            return false;
        }
        if (end == npos) {
            return true;
        }
        text.remove_prefix(end + 1);
    }
}

/// The harmless parameters, with the question mark before them; nothing if the text is no list of parameters.
std::optional<std::string> harmlessParameters(std::string_view query) {
    std::string kept;
    bool const readable = eachPiece(query, '&', [&](std::string_view parameter) {
        auto const equals = parameter.find('=');
        auto const key = decoded(parameter.substr(0, equals));
        std::string_view const value = equals == npos ? parameter : parameter.substr(equals + 1);
        if (equals == npos || !key || value.find_first_of("@?#=") != npos) {
            return false;
        }
        if (std::find(harmless.begin(), harmless.end(), *key) == harmless.end()) {
            return true;
        }
        kept.append(kept.empty() ? "?" : "&").append(parameter);
        return isFreeOf(value, "@?#=&");
    });
    return readable ? std::optional(kept) : std::nullopt;
}

/// Whether the text before the `@` is a user, perhaps with a password.
bool isUser(std::string_view credentials) {
    return isFreeOf(credentials.substr(0, credentials.find(':')), ":/@?#[]=");
}

/// The address after the scheme, without its secrets; nothing if in doubt.
std::optional<std::string> shown(std::string_view rest) {
    auto const at = rest.find('@');
    if (rest.find_first_of("#\\\"'") != npos || (at != npos && rest.find_first_of("/?") < at)) {
        return std::nullopt;
    }
    if (at != npos) {
        if (!isUser(rest.substr(0, at)) || rest.find('@', at + 1) != npos) {
            return std::nullopt;
        }
        rest.remove_prefix(at + 1);
    }
    auto const question = rest.find('?');
    std::string_view const place = rest.substr(0, question);
    auto const slash = place.find('/');
    std::string_view const name = slash == npos ? "" : place.substr(slash + 1);
    if (!eachPiece(place.substr(0, slash), ',', isHost) || !isFreeOf(name, "/:@?#[]=")) {
        return std::nullopt;
    }
    if (question == npos) {
        return std::string(place);
    }
    auto const parameters = harmlessParameters(rest.substr(question + 1));
    return parameters ? std::optional(std::string(place) + *parameters) : std::nullopt;
}

} // namespace

bool isPostgresUrl(std::string_view text) {
    return schemeLength(text) != 0;
}

std::string withoutPassword(std::string_view url) {
    std::size_t const length = schemeLength(url);
    auto const rest = length ? shown(url.substr(length)) : std::nullopt;
    return rest ? std::string(longScheme) + *rest : std::string(hiddenUrl);
}

} // namespace postgres
