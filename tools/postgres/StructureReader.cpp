#include "postgres/StructureReader.h"

#include "kit/ToolError.h"
#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

#include <cstdlib>
#include <utility>

namespace postgres {

namespace {

using database::Schema;

constexpr char const* originSql = R"sql(
    SELECT current_database() AS name, getdatabaseencoding() AS encoding,
        shobj_description(oid, 'pg_database') AS comment
    FROM pg_database
    WHERE datname = current_database())sql";

struct OriginRow : Query {
    using Query::Query;
    Text name{*this, "name"};
    Text encoding{*this, "encoding"};
    Text comment{*this, "comment"};
};

constexpr char const* schemaSql = R"sql(
    SELECT n.oid AS oid, n.nspname AS name, {comment} AS comment,
        (SELECT x.extname FROM pg_depend AS d JOIN pg_extension AS x ON x.oid = d.refobjid
            WHERE d.classid = 'pg_namespace'::regclass AND d.objid = n.oid AND d.deptype = 'e') AS extension
    FROM pg_namespace AS n
    WHERE n.nspname !~ '^pg_' AND n.nspname <> 'information_schema'
    ORDER BY n.oid)sql";

struct SchemaRow : Query {
    using Query::Query;
    Number oid{*this, "oid"};
    Text name{*this, "name"};
    Text comment{*this, "comment"};
    Text extension{*this, "extension"};
};

} // namespace

database::Structure readStructure(Connection& connection) {
    return CatalogReader(connection).run();
}

database::Structure CatalogReader::run() {
    readOrigin();
    readSchemas();
    readTypes();
    readEnumerationValues();
    readTypeExtras();
    readTables();
    readParents();
    readColumns();
    readConstraints();
    readIndexes();
    readIndexMembers();
    readTriggers();
    readRoutines();
    readArguments();
    readSequences();
    readTableExtras();
    readCatalogExtras();
    return std::move(structure);
}

void CatalogReader::readOrigin() {
    OriginRow row(connection, originSql);
    row.next();
    structure.catalog.name = row.name;
    structure.catalog.comment = row.comment;
    structure.origin.system = "PostgreSQL";
    structure.origin.version = connection.version();
    structure.origin.source = connection.source();
    structure.origin.encoding = row.encoding;
    structure.origin.formatName = "PostgreSQL database";
    structure.origin.formatVersion = std::to_string(connection.versionNumber() / 10000);
}

/// A schema that belongs to an extension can have tables of its users as well, so it is told of.
void CatalogReader::readSchemas() {
    SchemaRow row(connection, filled(schemaSql, {{"comment", commentOn("pg_namespace", "n.oid")}}));
    while (row.next()) {
        schemas.emplace(row.oid, static_cast<int>(structure.schemas.size()));
        Schema schema;
        schema.name = row.name;
        schema.comment = row.comment;
        addExtra(schema.extras, extra::extension, row.extension);
        structure.schemas.push_back(std::move(schema));
    }
}

void CatalogReader::checkUnchanged(bool holds) const {
    if (!holds) {
        throw kit::ToolError(connection.source(), "the structure changed while it was read; try again");
    }
}

int CatalogReader::schemaOf(Oid oid) const {
    auto const found = schemas.find(oid);
    return found == schemas.end() ? -1 : found->second;
}

int CatalogReader::tableOf(Oid oid) const {
    auto const found = tables.find(oid);
    return found == tables.end() ? -1 : found->second;
}

int CatalogReader::columnOf(int table, int number) const {
    auto const& known = columnsByNumber[static_cast<std::size_t>(table)];
    bool const isKnown = number > 0 && static_cast<std::size_t>(number) < known.size();
    return isKnown ? known[static_cast<std::size_t>(number)] : -1;
}

std::vector<int> CatalogReader::columnsOf(int table, std::string const& numbers) const {
    std::vector<int> columns;
    for (int const number : numbersIn(numbers)) {
        columns.push_back(columnOf(table, number));
    }
    return columns;
}

void addExtra(database::Extras& extras, std::string_view name, std::string value) {
    if (!value.empty()) {
        extras.push_back({std::string(name), std::move(value)});
    }
}

void addFlag(database::Extras& extras, std::string_view name, bool holds) {
    addExtra(extras, name, holds ? "true" : "");
}

char const* inheritance(bool isInherited, bool isLocal) {
    return !isInherited ? "" : isLocal ? "and own" : "true";
}

std::vector<int> numbersIn(std::string const& text) {
    std::vector<int> numbers;
    char const* rest = text.c_str();
    while (*rest) {
        char* end = nullptr;
        long const number = std::strtol(rest, &end, 10);
        if (end == rest) {
            ++rest;
            continue;
        }
        numbers.push_back(static_cast<int>(number));
        rest = end;
    }
    return numbers;
}

} // namespace postgres
