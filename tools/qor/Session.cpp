#include "qor/Session.h"

#include "database/ModelBuilder.h"
#include "exchange/JsonReader.h"
#include "kit/OneLine.h"
#include "postgres/Connection.h"
#include "postgres/PostgresUrl.h"
#include "postgres/StructureReader.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

#include <qor/QORModel.h>

#include <filesystem>
#include <fstream>
#include <ostream>

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

kit::Graph loadSource(std::string const& source, Session const& session) {
    if (!postgres::isPostgresUrl(source) && isJson(source)) {
        return exchange::readJsonFile(source);
    }
    database::Structure const structure = readDatabase(source);
    kit::Graph graph;
    graph.adoptTree(database::buildModel(structure).release());
    for (database::Remark const& remark : structure.remarks) {
        session.remark(structure.origin.source + ": " + remark.object + ": " + remark.text);
    }
    return graph;
}

void Session::remark(std::string const& text) const {
    if (!quiet) {
        err << "qor: " << kit::onOneLine(text) << '\n';
    }
}

} // namespace qorprogram
