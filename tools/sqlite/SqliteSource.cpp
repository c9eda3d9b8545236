#include "sqlite/SqliteSource.h"

#include "database/StructureGraph.h"
#include "sqlite/Companions.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

namespace sqlite {
namespace {

/// A path can look like an address too.
kit::Graph load(std::string const& path, kit::Loading const& loading) {
    Database file(path);
    database::Structure structure = readStructure(file);
    structure.origin.source = loading.withoutSecrets(structure.origin.source);
    structure.catalog.name = loading.withoutSecrets(structure.catalog.name);
    return database::graphOf(structure, loading);
}

} // namespace

kit::SourceKind sqliteSource() {
    return {"SQLite database", "any other file", [](kit::SourceHint const&) { return true; }, load, filesOf};
}

} // namespace sqlite
