#include "qor/Session.h"

#include "database/ModelBuilder.h"
#include "exchange/JsonReader.h"
#include "postgres/Connection.h"
#include "postgres/PostgresUrl.h"
#include "postgres/StructureReader.h"
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

database::Structure readDatabase(std::string const& source) {
    if (postgres::isPostgresUrl(source)) {
        postgres::Connection connection(source);
        return postgres::readStructure(connection);
    }
    sqlite::Database file(source);
    return sqlite::readStructure(file);
}

} // namespace

kit::Graph loadSource(std::string const& source) {
    if (!postgres::isPostgresUrl(source) && isJson(source)) {
        return exchange::readJsonFile(source);
    }
    kit::Graph graph;
    graph.adoptTree(database::buildModel(readDatabase(source)).release());
    return graph;
}

} // namespace qorprogram
