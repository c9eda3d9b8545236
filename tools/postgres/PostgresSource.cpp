#include "postgres/PostgresSource.h"

#include "database/StructureGraph.h"
#include "postgres/Connection.h"
#include "postgres/PostgresUrl.h"
#include "postgres/StructureReader.h"

namespace postgres {
namespace {

kit::Graph load(std::string const& url, kit::Loading const& loading) {
    Connection connection(url);
    return database::graphOf(readStructure(connection), loading);
}

} // namespace

kit::SourceKind postgresSource() {
    return {"PostgreSQL database",
            "a URL such as postgresql://user@host/name",
            [](kit::SourceHint const& hint) { return isPostgresUrl(hint.name); },
            load,
            [](std::string const&) { return std::vector<std::string>(); },
            [](std::string const& address) { return withoutPassword(address); }};
}

} // namespace postgres
