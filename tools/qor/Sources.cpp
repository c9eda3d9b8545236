#include "qor/Sources.h"

#include "exchange/GraphSource.h"
#include "kit/SourceKind.h"
#include "kit/ToolError.h"
#include "postgres/PostgresSource.h"
#include "qor/SafeText.h"
#include "qor/Session.h"
#include "sqlite/SqliteSource.h"

#include <algorithm>

namespace qorprogram {
namespace {

/// The first that recognises a source reads it. A further kind is one more line.
std::vector<kit::SourceKind> const& kinds() {
    static std::vector<kit::SourceKind> const all = {
        postgres::postgresSource(),
        exchange::standardInputSource(),
        exchange::graphSource(),
        sqlite::sqliteSource(),
    };
    return all;
}

kit::SourceKind const& kindOf(std::string const& source) {
    kit::SourceHint const hint = kit::hintOf(source);
    auto const known = std::find_if(kinds().begin(), kinds().end(),
                                    [&](kit::SourceKind const& kind) { return kind.recognises(hint); });
    if (!known->shown && isAddress(source)) {
        throw kit::ToolError(shownAddress(source),
                             "addresses of this scheme aren't supported; a file of that name "
                             "needs ./ in front");
    }
    return *known;
}

} // namespace

std::string sourceHelp() {
    std::string help = "One of these sources, which is never written:";
    for (kit::SourceKind const& kind : kinds()) {
        help += std::string("\n") + kind.name + ": " + kind.knownBy;
    }
    return help;
}

bool isStandardInput(std::string const& source) {
    return exchange::isStandardInput(source);
}

kit::Graph loadSource(std::string const& source, Session& session) {
    return kindOf(source).load(source,
                               {[&](std::string const& line) { session.remark(line); }, withoutSecrets});
}

std::vector<std::string> filesOfSource(std::string const& source) {
    return kindOf(source).filesOf(source);
}

/// The scheme of one that isn't known ends where it says so, which may be spelled in more than one way.
std::string shownAddress(std::string const& address) {
    kit::SourceHint const hint{address, ""};
    for (kit::SourceKind const& kind : kinds()) {
        if (kind.shown && kind.recognises(hint)) {
            return kind.shown(address);
        }
    }
    return address.substr(0, address.find_first_of(":%\\")) + "://***";
}

} // namespace qorprogram
