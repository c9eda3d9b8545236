#include "postgres/StructureReader.h"

#include "kit/ToolError.h"
#include "postgres/CatalogReader.h"

#include <cstdlib>
#include <utility>

namespace postgres {

using database::Schema;

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
    Query row(connection,
              "SELECT current_database(), getdatabaseencoding(), shobj_description(oid, 'pg_database')"
              " FROM pg_database WHERE datname = current_database()");
    row.next();
    structure.catalog.name = row.text(0);
    structure.catalog.comment = row.text(2);
    structure.origin.system = "PostgreSQL";
    structure.origin.version = connection.version();
    structure.origin.source = connection.source();
    structure.origin.encoding = row.text(1);
    structure.origin.formatName = "PostgreSQL database";
    structure.origin.formatVersion = std::to_string(connection.versionNumber() / 10000);
}

/// A schema that belongs to an extension can have tables of its users as well, so it is told of.
void CatalogReader::readSchemas() {
    Query row(connection,
              "SELECT n.oid, n.nspname, " + commentOn("pg_namespace", "n.oid") +
                  ", (SELECT x.extname FROM pg_depend AS d JOIN pg_extension AS x ON x.oid = d.refobjid"
                  "   WHERE d.classid = 'pg_namespace'::regclass AND d.objid = n.oid AND d.deptype = 'e')"
                  " FROM pg_namespace AS n"
                  " WHERE n.nspname !~ '^pg_' AND n.nspname <> 'information_schema' ORDER BY n.oid");
    while (row.next()) {
        schemas.emplace(row.number(0), static_cast<int>(structure.schemas.size()));
        Schema schema;
        schema.name = row.text(1);
        schema.comment = row.text(2);
        addExtra(schema.extras, "extension", row.text(3));
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

std::string isOwn(std::string const& catalogue, std::string const& oid, std::string const& namespaceOid) {
    return " EXISTS (SELECT 1 FROM pg_namespace AS own WHERE own.oid = " + namespaceOid +
           " AND own.nspname !~ '^pg_' AND own.nspname <> 'information_schema')"
           " AND NOT EXISTS (SELECT 1 FROM pg_depend AS member WHERE member.classid = '" +
           catalogue + "'::regclass AND member.objid = " + oid + " AND member.deptype = 'e') ";
}

std::string optionsText(std::string const& options) {
    return "(SELECT string_agg(quote_ident(option_name) || '=' || CASE WHEN option_value ~ '^[a-z0-9_.-]+$'"
           " THEN option_value ELSE quote_literal(option_value) END, ', ') FROM pg_options_to_table(" +
           options + ") WHERE option_name <> 'pg_attver')";
}

std::string foreignOptions(std::string const& options) {
    return "(SELECT string_agg(quote_ident(option_name) || ' ' || quote_literal(option_value), ', ')"
           " FROM pg_options_to_table(" +
           options +
           ") WHERE option_name !~* 'pass|pwd|secret|token|key|credential'"
           " AND option_value !~* '(pass|pwd|secret|token|key|credential)[a-z_]*\\s*[=:]'"
           " AND option_value !~ '://[^/?]*:[^/?]*@')";
}

std::string commentOn(std::string const& catalogue, std::string const& oid, std::string const& part) {
    return "(SELECT description FROM pg_description WHERE classoid = '" + catalogue +
           "'::regclass AND objoid = " + oid + " AND objsubid = " + part + ")";
}

std::string neededExtensions(std::string const& catalogue, std::string const& oid,
                             std::string const& alteration) {
    return "(SELECT string_agg(" + alteration +
           " || ' DEPENDS ON EXTENSION ' || quote_ident(x.extname), E';\\n' ORDER BY x.extname) FROM "
           "pg_depend AS d"
           " JOIN pg_extension AS x ON x.oid = d.refobjid WHERE d.refclassid = 'pg_extension'::regclass"
           " AND d.deptype = 'x' AND d.objsubid = 0 AND d.classid = '" +
           catalogue + "'::regclass AND d.objid = " + oid + ")";
}

void addExtra(database::Extras& extras, char const* name, std::string value) {
    if (!value.empty()) {
        extras.push_back({name, std::move(value)});
    }
}

void addFlag(database::Extras& extras, char const* name, bool holds) {
    addExtra(extras, name, holds ? "true" : "");
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
