#include "database/Enumerations.h"
#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

namespace postgres {
namespace {

using database::Table;
using database::TableKind;

/// Partitioned and foreign tables are tables as well.
constexpr database::TwoWay<TableKind, char, 3> kindLetters{
    {{TableKind::TABLE, 'r'}, {TableKind::VIEW, 'v'}, {TableKind::MATERIALIZED_VIEW, 'm'}}};

std::string nativeKindOf(char kind, bool unlogged, bool partition) {
    switch (kind) {
    case 'p':
        return "PARTITIONED TABLE";
    case 'f':
        return "FOREIGN TABLE";
    case 'r':
        return unlogged ? "UNLOGGED TABLE" : partition ? "PARTITION" : "TABLE";
    default:
        return database::nativeKindOf(kindLetters.valueOf(kind));
    }
}

/// The SELECT of a view, without the blanks before it and the semicolon behind it.
std::string trimmed(std::string const& statement) {
    auto const first = statement.find_first_not_of(" \n\t");
    auto const last = statement.find_last_not_of(" \n\t;");
    return first == std::string::npos ? "" : statement.substr(first, last - first + 1);
}

char const* replicaIdentity(char letter) {
    return letter == 'n' ? "NOTHING" : letter == 'f' ? "FULL" : "";
}

/// Each of the two can be said without the other.
char const* rowSecurity(bool enabled, bool forced) {
    return enabled ? (forced ? "FORCED" : "ENABLED") : forced ? "FORCED, NOT ENABLED" : "";
}

constexpr char const* tableSql = R"sql(
    SELECT c.oid AS oid, c.relname AS name, c.relnamespace AS schema, c.relkind AS kind,
        c.relpersistence = 'u' AS unlogged, c.relispartition AS partition, {comment} AS comment,
        {options} AS options,
        (SELECT string_agg('toast.' || w, ', ') FROM pg_class AS o, unnest(o.reloptions) AS w
            WHERE o.oid = c.reltoastrelid) AS toast_options,
        (SELECT spcname FROM pg_tablespace AS s WHERE s.oid = c.reltablespace) AS tablespace,
        (SELECT amname FROM pg_am AS m WHERE m.oid = c.relam AND m.amname <> 'heap') AS access_method,
        CASE WHEN c.relkind = 'p' THEN pg_get_partkeydef(c.oid) END AS partition_key,
        pg_get_expr(c.relpartbound, c.oid) AS partition_bound,
        CASE WHEN c.relkind IN ('v', 'm') THEN pg_get_viewdef(c.oid) END AS statement,
        CASE WHEN c.relkind IN ('r', 'p', 'm') THEN c.relreplident END AS replica_identity,
        c.relrowsecurity AS row_security, c.relforcerowsecurity AS forced_row_security,
        CASE WHEN c.reloftype <> 0 THEN format_type(c.reloftype, NULL) END AS of_type,
        (SELECT s.srvname FROM pg_foreign_table AS f JOIN pg_foreign_server AS s ON s.oid = f.ftserver
            WHERE f.ftrelid = c.oid) AS server,
        (SELECT {foreign_options} FROM pg_foreign_table AS f WHERE f.ftrelid = c.oid) AS foreign_options,
        {needed_extensions} AS needed_extensions
    FROM pg_class AS c
    WHERE c.relkind IN ('r', 'p', 'f', 'v', 'm') AND {is_own}
    ORDER BY c.oid)sql";

std::string tableQuery() {
    return filled(tableSql,
                  {{"comment", commentOn("pg_class", "c.oid")},
                   {"options", optionsText("c.reloptions")},
                   {"foreign_options", foreignOptions("f.ftoptions")},
                   {"needed_extensions",
                    neededExtensions("pg_class", "c.oid", "'ALTER MATERIALIZED VIEW ' || c.oid::regclass")},
                   {"is_own", isOwn("pg_class", "c.oid", "c.relnamespace")}});
}

struct TableRow : Query {
    using Query::Query;
    Number oid{*this, "oid"};
    Text name{*this, "name"};
    Number schema{*this, "schema"};
    Letter kind{*this, "kind"};
    Flag isUnlogged{*this, "unlogged"};
    Flag isPartition{*this, "partition"};
    Text comment{*this, "comment"};
    Text options{*this, "options"};
    Text toastOptions{*this, "toast_options"};
    Text tablespace{*this, "tablespace"};
    Text accessMethod{*this, "access_method"};
    Text partitionKey{*this, "partition_key"};
    Text partitionBound{*this, "partition_bound"};
    Text statement{*this, "statement"};
    Letter replicaIdentity{*this, "replica_identity"};
    Flag hasRowSecurity{*this, "row_security"};
    Flag hasForcedRowSecurity{*this, "forced_row_security"};
    Text ofType{*this, "of_type"};
    Text server{*this, "server"};
    Text foreignOptions{*this, "foreign_options"};
    Text neededExtensions{*this, "needed_extensions"};
};

std::string optionsOf(TableRow const& row) {
    std::string const options = row.options;
    std::string const toast = row.toastOptions;
    return options + (options.empty() || toast.empty() ? "" : ", ") + toast;
}

Table tableOfRow(TableRow const& row, int schema) {
    Table table;
    table.name = row.name;
    table.schema = schema;
    table.kind = kindLetters.valueOf(row.kind);
    table.nativeKind = nativeKindOf(row.kind, row.isUnlogged, row.isPartition);
    table.comment = row.comment;
    table.statement = trimmed(row.statement);
    addExtra(table.extras, extra::with, optionsOf(row));
    addExtra(table.extras, extra::tablespace, row.tablespace);
    addExtra(table.extras, extra::accessMethod, row.accessMethod);
    addFlag(table.extras, extra::unlogged, row.isUnlogged);
    addExtra(table.extras, extra::partitionBy, row.partitionKey);
    addExtra(table.extras, extra::partitionBound, row.partitionBound);
    addExtra(table.extras, extra::replicaIdentity, replicaIdentity(row.replicaIdentity));
    addExtra(table.extras, extra::rowSecurity, rowSecurity(row.hasRowSecurity, row.hasForcedRowSecurity));
    addExtra(table.extras, extra::of, row.ofType);
    addExtra(table.extras, extra::server, row.server);
    addExtra(table.extras, extra::options, row.foreignOptions);
    addExtra(table.extras, extra::dependsOnExtension, row.neededExtensions);
    return table;
}

constexpr char const* parentSql = R"sql(
    SELECT i.inhrelid AS child, i.inhparent AS parent, i.inhparent::regclass AS parent_name,
        {detach_pending} AS detach_pending
    FROM pg_inherits AS i JOIN pg_class AS c ON c.oid = i.inhrelid
    WHERE c.relkind IN ('r', 'p', 'f')
    ORDER BY i.inhrelid, i.inhseqno)sql";

struct ParentRow : Query {
    using Query::Query;
    Number child{*this, "child"};
    Number parent{*this, "parent"};
    Text parentName{*this, "parent_name"};
    Flag isDetaching{*this, "detach_pending"};
};

} // namespace

void CatalogReader::readTables() {
    TableRow row(connection, tableQuery());
    while (row.next()) {
        Table table = tableOfRow(row, schemaOf(row.schema));
        checkUnchanged(table.kind == TableKind::TABLE || !table.statement.empty());
        tables.emplace(row.oid, static_cast<int>(structure.tables.size()));
        structure.tables.push_back(std::move(table));
    }
    columnsByNumber.resize(structure.tables.size());
}

/// A parent that belongs to an extension has no record, only its name.
void CatalogReader::readParents() {
    char const* const detaching = since(140000) ? "i.inhdetachpending" : "false";
    ParentRow row(connection, filled(parentSql, {{"detach_pending", detaching}}));
    while (row.next()) {
        int const child = tableOf(row.child);
        if (child < 0) {
            continue;
        }
        Table& table = structure.tables[static_cast<std::size_t>(child)];
        addFlag(table.extras, extra::detachPending, row.isDetaching);
        int const parent = tableOf(row.parent);
        if (parent >= 0) {
            table.parents.push_back(parent);
        } else {
            addExtra(table.extras, extra::inherits, row.parentName);
        }
    }
}

} // namespace postgres
