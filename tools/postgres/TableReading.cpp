#include "postgres/CatalogReader.h"

#include <algorithm>

namespace postgres {
namespace {

using database::Column;
using database::Table;
using database::TableKind;

std::string nativeKindOf(char kind, bool unlogged, bool partition) {
    switch (kind) {
    case 'p':
        return "PARTITIONED TABLE";
    case 'f':
        return "FOREIGN TABLE";
    case 'v':
        return "VIEW";
    case 'm':
        return "MATERIALIZED VIEW";
    default:
        return std::string(unlogged ? "UNLOGGED TABLE" : partition ? "PARTITION" : "TABLE");
    }
}

/// The SELECT of a view, without the blanks before it and the semicolon behind it.
std::string trimmed(std::string const& statement) {
    auto const first = statement.find_first_not_of(" \n\t");
    auto const last = statement.find_last_not_of(" \n\t;");
    return first == std::string::npos ? "" : statement.substr(first, last - first + 1);
}

char const* storageName(char letter) {
    return letter == 'p' ? "PLAIN" : letter == 'e' ? "EXTERNAL" : letter == 'm' ? "MAIN" : "EXTENDED";
}

char const* replicaIdentity(char letter) {
    return letter == 'n' ? "NOTHING" : letter == 'f' ? "FULL" : "";
}

/// Each of the two can be said without the other.
char const* rowSecurity(bool enabled, bool forced) {
    return enabled ? (forced ? "FORCED" : "ENABLED") : forced ? "FORCED, NOT ENABLED" : "";
}

} // namespace

void CatalogReader::readTables() {
    Query row(
        connection,
        "SELECT c.oid, c.relname, c.relnamespace, c.relkind, c.relpersistence = 'u', c.relispartition, " +
            commentOn("pg_class", "c.oid") + ", " + optionsText("c.reloptions") +
            ", (SELECT string_agg('toast.' || w, ', ') FROM pg_class AS o, unnest(o.reloptions) AS w"
            "   WHERE o.oid = c.reltoastrelid)"
            ", (SELECT spcname FROM pg_tablespace AS s WHERE s.oid = c.reltablespace)"
            ", (SELECT amname FROM pg_am AS m WHERE m.oid = c.relam AND m.amname <> 'heap')"
            ", CASE WHEN c.relkind = 'p' THEN pg_get_partkeydef(c.oid) END"
            ", pg_get_expr(c.relpartbound, c.oid)"
            ", CASE WHEN c.relkind IN ('v', 'm') THEN pg_get_viewdef(c.oid) END"
            ", CASE WHEN c.relkind IN ('r', 'p', 'm') THEN c.relreplident END, c.relrowsecurity, "
            "c.relforcerowsecurity"
            ", CASE WHEN c.reloftype <> 0 THEN format_type(c.reloftype, NULL) END"
            ", (SELECT s.srvname FROM pg_foreign_table AS f JOIN pg_foreign_server AS s ON s.oid = f.ftserver"
            "   WHERE f.ftrelid = c.oid)"
            ", (SELECT " +
            foreignOptions("f.ftoptions") + " FROM pg_foreign_table AS f WHERE f.ftrelid = c.oid), " +
            neededExtensions("pg_class", "c.oid", "'ALTER MATERIALIZED VIEW ' || c.oid::regclass") +
            " FROM pg_class AS c WHERE c.relkind IN ('r', 'p', 'f', 'v', 'm') AND" +
            isOwn("pg_class", "c.oid", "c.relnamespace") + "ORDER BY c.oid");
    while (row.next()) {
        Table table;
        char const kind = *row.text(3);
        table.name = row.text(1);
        table.schema = schemaOf(row.number(2));
        table.kind = kind == 'v'   ? TableKind::VIEW
                     : kind == 'm' ? TableKind::MATERIALIZED_VIEW
                                   : TableKind::TABLE;
        table.nativeKind = nativeKindOf(kind, row.flag(4), row.flag(5));
        table.comment = row.text(6);
        table.statement = trimmed(row.text(13));
        checkUnchanged(table.kind == TableKind::TABLE || !table.statement.empty());
        std::string const toast = row.text(8);
        std::string options = row.text(7);
        options += (options.empty() || toast.empty() ? "" : ", ") + toast;
        addExtra(table.extras, "with", options);
        addExtra(table.extras, "tablespace", row.text(9));
        addExtra(table.extras, "access method", row.text(10));
        addFlag(table.extras, "unlogged", row.flag(4));
        addExtra(table.extras, "partition by", row.text(11));
        addExtra(table.extras, "partition bound", row.text(12));
        addExtra(table.extras, "replica identity", replicaIdentity(*row.text(14)));
        addExtra(table.extras, "row security", rowSecurity(row.flag(15), row.flag(16)));
        addExtra(table.extras, "of", row.text(17));
        addExtra(table.extras, "server", row.text(18));
        addExtra(table.extras, "options", row.text(19));
        addExtra(table.extras, "depends on extension", row.text(20));
        tables.emplace(row.number(0), static_cast<int>(structure.tables.size()));
        structure.tables.push_back(std::move(table));
    }
    columnsByNumber.resize(structure.tables.size());
}

/// A parent that belongs to an extension has no record, only its name.
void CatalogReader::readParents() {
    Query row(connection, std::string("SELECT i.inhrelid, i.inhparent, i.inhparent::regclass, ") +
                              (since(140000) ? "i.inhdetachpending" : "false") +
                              " FROM pg_inherits AS i"
                              " JOIN pg_class AS c ON c.oid = i.inhrelid WHERE c.relkind IN ('r', 'p', 'f')"
                              " ORDER BY i.inhrelid, i.inhseqno");
    while (row.next()) {
        int const child = tableOf(row.number(0));
        if (child < 0) {
            continue;
        }
        Table& table = structure.tables[static_cast<std::size_t>(child)];
        addFlag(table.extras, "detach pending", row.flag(3));
        int const parent = tableOf(row.number(1));
        if (parent >= 0) {
            table.parents.push_back(parent);
        } else {
            addExtra(table.extras, "inherits", row.text(2));
        }
    }
}

void CatalogReader::readColumns() {
    Query row(
        connection,
        "SELECT a.attrelid, a.attnum, a.attname, " + typeColumns("a.atttypid", "a.atttypmod", "t") +
            ", a.attnotnull, pg_get_expr(d.adbin, d.adrelid), a.attgenerated, a.attidentity"
            ", CASE WHEN a.attcollation <> t.typcollation THEN (SELECT quote_ident(k.nspname) || '.' ||"
            "   quote_ident(l.collname) FROM pg_collation AS l JOIN pg_namespace AS k"
            "   ON k.oid = l.collnamespace WHERE l.oid = a.attcollation) END"
            ", CASE WHEN a.attstorage <> t.typstorage THEN a.attstorage END, " +
            (since(140000) ? "nullif(a.attcompression, '')" : "NULL") +
            ", CASE WHEN a.attstattarget >= 0 THEN a.attstattarget END, " + optionsText("a.attoptions") +
            ", " + foreignOptions("a.attfdwoptions") +
            ", n.description, a.attinhcount > 0 AND NOT c.relispartition, a.attislocal"
            " FROM pg_attribute AS a JOIN pg_class AS c ON c.oid = a.attrelid"
            " JOIN pg_type AS t ON t.oid = a.atttypid"
            " LEFT JOIN pg_attrdef AS d ON d.adrelid = a.attrelid AND d.adnum = a.attnum"
            " LEFT JOIN pg_description AS n ON n.classoid = 'pg_class'::regclass AND n.objoid = a.attrelid"
            "   AND n.objsubid = a.attnum"
            " WHERE a.attnum > 0 AND NOT a.attisdropped AND c.relkind IN ('r', 'p', 'f', 'v', 'm')"
            " ORDER BY a.attrelid, a.attnum");
    while (row.next()) {
        int const owner = tableOf(row.number(0));
        if (owner < 0) {
            continue;
        }
        Column column;
        column.name = row.text(2);
        column.type = typeOf(row, 3);
        column.notNull = row.flag(9);
        column.defaultValue = row.text(10);
        column.generated = *row.text(11) != 0;
        column.comment = row.text(19);
        char const identity = *row.text(12);
        addExtra(column.extras, "generated",
                 !column.generated      ? ""
                 : *row.text(11) == 'v' ? "VIRTUAL"
                                        : "STORED");
        addExtra(column.extras, "identity", !identity ? "" : identity == 'a' ? "ALWAYS" : "BY DEFAULT");
        addExtra(column.extras, "collation", row.text(13));
        addExtra(column.extras, "storage", row.isNull(14) ? "" : storageName(*row.text(14)));
        addExtra(column.extras, "compression", row.isNull(15) ? "" : *row.text(15) == 'l' ? "lz4" : "pglz");
        addExtra(column.extras, "statistics", row.text(16));
        addExtra(column.extras, "with", row.text(17));
        addExtra(column.extras, "options", row.text(18));
        addExtra(column.extras, "inherited", !row.flag(20) ? "" : row.flag(21) ? "and own" : "true");

        auto& numbers = columnsByNumber[static_cast<std::size_t>(owner)];
        auto& columns = structure.tables[static_cast<std::size_t>(owner)].columns;
        numbers.resize(static_cast<std::size_t>(row.number(1)) + 1, -1);
        numbers.back() = static_cast<int>(columns.size());
        columns.push_back(std::move(column));
    }
}

} // namespace postgres
