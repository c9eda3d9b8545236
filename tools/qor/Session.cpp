#include "qor/Session.h"

#include "database/ModelBuilder.h"
#include "exchange/JsonReader.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

#include <qor/QORModel.h>

#include <filesystem>
#include <fstream>

namespace qorprogram {
namespace {

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

} // namespace

kit::Graph loadSource(std::string const& path) {
    if (isJson(path)) {
        return exchange::readJsonFile(path);
    }
    sqlite::Database file(path);
    kit::Graph graph;
    graph.adoptTree(database::buildModel(sqlite::readStructure(file)).release());
    return graph;
}

} // namespace qorprogram
