#include "qor/Sources.h"

#include "database/ModelBuilder.h"
#include "exchange/JsonReader.h"
#include "kit/ToolError.h"
#include "postgres/Connection.h"
#include "postgres/PostgresUrl.h"
#include "postgres/StructureReader.h"
#include "qor/SafeText.h"
#include "qor/Session.h"
#include "sqlite/Companions.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

#include <qor/QORModel.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ext/stdio_filebuf.h>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace qorprogram {
namespace {

using Files = std::vector<std::string>;

bool isJson(std::string const& path) {
    std::filesystem::path const file(path);
    if (file.extension() == ".json") {
        return true;
    }
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) {
        return false;
    }
    char first = 0;
    std::ifstream(path, std::ios::binary) >> first;
    return first == '{';
}

kit::Graph loadGraph(std::string const& path, Session&) {
    return exchange::readJsonFile(path);
}

/// Reads the descriptor itself, which may be a socket. std::cin would read it character by character.
kit::Graph loadStandardInput(std::string const&, Session&) {
    constexpr char const* subject = "the standard input";
    int const descriptor = dup(STDIN_FILENO);
    if (descriptor < 0) {
        throw kit::ToolError(subject, std::string("can't be read: ") + std::strerror(errno));
    }
    __gnu_cxx::stdio_filebuf<char> buffer(descriptor, std::ios::in | std::ios::binary);
    std::istream in(&buffer);
    return exchange::readJson(in, subject);
}

/// Builds the model first, so that a structure that can't be built has no remarks.
kit::Graph modelOf(database::Structure const& structure, Session& session) {
    kit::Graph graph;
    graph.adoptTree(database::buildModel(structure).release());
    for (database::Remark const& remark : structure.remarks) {
        session.remark(structure.origin.source + ": " + remark.object + ": " + remark.text);
    }
    return graph;
}

kit::Graph loadPostgres(std::string const& url, Session& session) {
    postgres::Connection connection(url);
    return modelOf(postgres::readStructure(connection), session);
}

/// A path can look like an address too.
kit::Graph loadSqlite(std::string const& path, Session& session) {
    sqlite::Database file(path);
    database::Structure structure = sqlite::readStructure(file);
    structure.origin.source = withoutSecrets(structure.origin.source);
    structure.catalog.name = withoutSecrets(structure.catalog.name);
    return modelOf(structure, session);
}

struct SourceKind {
    bool (*recognises)(std::string const& source);
    kit::Graph (*load)(std::string const& source, Session& session);
    Files (*filesOf)(std::string const& source);
    std::string (*shown)(std::string const& address); ///< null for a kind that is no address
};

/// The first that recognises a source reads it. A further kind is one more line.
std::array<SourceKind, 4> const kinds = {
    {{isStandardInput, loadStandardInput, [](std::string const&) { return Files{"/dev/stdin"}; }, nullptr},
     {[](std::string const& source) { return postgres::isPostgresUrl(source); }, loadPostgres,
      [](std::string const&) { return Files(); },
      [](std::string const& address) { return postgres::withoutPassword(address); }},
     {isJson, loadGraph, [](std::string const& path) { return Files{path}; }, nullptr},
     {[](std::string const&) { return true; }, loadSqlite, sqlite::filesOf, nullptr}}};

SourceKind const& kindOf(std::string const& source) {
    auto const known = std::find_if(kinds.begin(), kinds.end(),
                                    [&](SourceKind const& kind) { return kind.recognises(source); });
    if (!known->shown && isAddress(source)) {
        throw kit::ToolError(shownAddress(source),
                             "addresses of this scheme aren't supported; a file of that name "
                             "needs ./ in front");
    }
    return *known;
}

} // namespace

bool isStandardInput(std::string const& source) {
    return source == "-";
}

kit::Graph loadSource(std::string const& source, Session& session) {
    return kindOf(source).load(source, session);
}

Files filesOfSource(std::string const& source) {
    return kindOf(source).filesOf(source);
}

/// The scheme of one that isn't known ends where it says so, which may be spelled in more than one way.
std::string shownAddress(std::string const& address) {
    for (SourceKind const& kind : kinds) {
        if (kind.shown && kind.recognises(address)) {
            return kind.shown(address);
        }
    }
    return address.substr(0, address.find_first_of(":%\\")) + "://***";
}

} // namespace qorprogram
