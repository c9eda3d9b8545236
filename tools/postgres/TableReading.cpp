#include "postgres/CatalogReader.h"

#include <algorithm>

namespace postgres {
namespace {

using database::Column;
using database::Sequence;
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

/// Options of a foreign thing as SQL writes them; what may be a password isn't read.
std::string foreignOptions(std::string const& options) {
    return "(SELECT string_agg(quote_ident(option_name) || ' ' || quote_literal(option_value), ', ')"
           " FROM pg_options_to_table(" +
           options + ") WHERE option_name !~* 'pass|pwd|secret|token|key')";
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
            foreignOptions("f.ftoptions") +
            " FROM pg_foreign_table AS f WHERE f.ftrelid = c.oid)"
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
        addExtra(table.extras, "row security", row.flag(16) ? "FORCED" : row.flag(15) ? "ENABLED" : "");
        addExtra(table.extras, "of", row.text(17));
        addExtra(table.extras, "server", row.text(18));
        addExtra(table.extras, "options", row.text(19));
        tables.emplace(row.number(0), static_cast<int>(structure.tables.size()));
        structure.tables.push_back(std::move(table));
    }
    columnsByNumber.resize(structure.tables.size());
}

/// A parent that belongs to an extension has no record, only its name.
void CatalogReader::readParents() {
    Query row(connection, "SELECT i.inhrelid, i.inhparent, i.inhparent::regclass FROM pg_inherits AS i"
                          " JOIN pg_class AS c ON c.oid = i.inhrelid WHERE c.relkind IN ('r', 'p', 'f')"
                          " ORDER BY i.inhrelid, i.inhseqno");
    while (row.next()) {
        int const child = tableOf(row.number(0));
        if (child < 0) {
            continue;
        }
        Table& table = structure.tables[static_cast<std::size_t>(child)];
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

/// What belongs to a table and has no record of its own: an extra holds the SQL that makes it.
void CatalogReader::readTableExtras() {
    std::string const exclusions =
        "SELECT n.conrelid, 'exclusion ' || n.conname, format('ALTER TABLE %s ADD CONSTRAINT %I %s', r,"
        " n.conname, pg_get_constraintdef(n.oid)) ||"
        " CASE WHEN d IS NULL THEN '' ELSE format(E';\\nCOMMENT ON CONSTRAINT %I ON %s IS %L', n.conname, r, "
        "d) END"
        " FROM pg_constraint AS n, LATERAL (SELECT n.conrelid::regclass AS r, " +
        commentOn("pg_constraint", "n.oid") +
        " AS d) AS x WHERE n.contype = 'x'"
        " AND n.conparentid = 0 ORDER BY n.oid";
    std::string const policies =
        "SELECT p.polrelid, 'policy ' || p.polname, concat_ws(' ', format('CREATE POLICY %I ON %s', "
        "p.polname, r),"
        " CASE WHEN NOT p.polpermissive THEN 'AS RESTRICTIVE' END, 'FOR ' || CASE p.polcmd WHEN 'r' THEN "
        "'SELECT'"
        " WHEN 'a' THEN 'INSERT' WHEN 'w' THEN 'UPDATE' WHEN 'd' THEN 'DELETE' ELSE 'ALL' END,"
        " 'TO ' || (SELECT string_agg(CASE g WHEN 0 THEN 'PUBLIC' ELSE quote_ident(pg_get_userbyid(g)) END, "
        "', ')"
        " FROM unnest(p.polroles) AS g), 'USING (' || pg_get_expr(p.polqual, p.polrelid) || ')',"
        " 'WITH CHECK (' || pg_get_expr(p.polwithcheck, p.polrelid) || ')') ||"
        " CASE WHEN d IS NULL THEN '' ELSE format(E';\\nCOMMENT ON POLICY %I ON %s IS %L', p.polname, r, d) "
        "END"
        " FROM pg_policy AS p, LATERAL (SELECT p.polrelid::regclass AS r, " +
        commentOn("pg_policy", "p.oid") + " AS d) AS x ORDER BY p.oid";
    std::string const rules =
        "SELECT w.ev_class, 'rule ' || w.rulename, rtrim(pg_get_ruledef(w.oid), ';') ||"
        " CASE WHEN w.ev_enabled = 'O' THEN '' ELSE format(E';\\nALTER TABLE %s %s RULE %I', r, CASE "
        "w.ev_enabled"
        " WHEN 'D' THEN 'DISABLE' WHEN 'R' THEN 'ENABLE REPLICA' ELSE 'ENABLE ALWAYS' END, w.rulename) END ||"
        " CASE WHEN d IS NULL THEN '' ELSE format(E';\\nCOMMENT ON RULE %I ON %s IS %L', w.rulename, r, d) "
        "END"
        " FROM pg_rewrite AS w, LATERAL (SELECT w.ev_class::regclass AS r, " +
        commentOn("pg_rewrite", "w.oid") + " AS d) AS x WHERE w.rulename <> '_RETURN' ORDER BY w.oid";
    std::string const statistics =
        "SELECT s.stxrelid, 'statistics ' || s.stxname, pg_get_statisticsobjdef(s.oid) ||"
        " CASE WHEN s.stxstattarget >= 0 THEN format(E';\\nALTER STATISTICS %s SET STATISTICS %s', q,"
        " s.stxstattarget) ELSE '' END ||"
        " CASE WHEN d IS NULL THEN '' ELSE format(E';\\nCOMMENT ON STATISTICS %s IS %L', q, d) END"
        " FROM pg_statistic_ext AS s JOIN pg_namespace AS n ON n.oid = s.stxnamespace,"
        " LATERAL (SELECT format('%I.%I', n.nspname, s.stxname) AS q, " +
        commentOn("pg_statistic_ext", "s.oid") + " AS d) AS x ORDER BY s.oid";
    for (std::string const& sql : {exclusions, policies, rules, statistics}) {
        Query row(connection, sql);
        while (row.next()) {
            int const table = tableOf(row.number(0));
            if (table >= 0) {
                addExtra(structure.tables[static_cast<std::size_t>(table)].extras, row.text(1), row.text(2));
            }
        }
    }
}

/// What isn't as CREATE SEQUENCE would have it by itself. A sequence that an identity column made is part of
/// it.
void CatalogReader::readSequences() {
    Query row(connection,
              "SELECT c.relname, c.relnamespace, x.*, e.refobjid, e.refobjsubid, e.deptype = 'i', " +
                  commentOn("pg_class", "c.oid") +
                  ", CASE WHEN e.deptype = 'i' AND (c.relname <> o.relname || '_' || oa.attname || '_seq'"
                  " OR c.relnamespace <> o.relnamespace)"
                  " THEN format('SEQUENCE NAME %s', c.oid::regclass) END"
                  ", CASE WHEN e.deptype = 'a' THEN format('%s.%I', o.oid::regclass, oa.attname) END"
                  ", c.relpersistence = 'u'"
                  " FROM pg_class AS c JOIN pg_sequence AS s ON s.seqrelid = c.oid"
                  " LEFT JOIN pg_depend AS e ON e.classid = 'pg_class'::regclass AND e.objid = c.oid"
                  " AND e.refclassid = 'pg_class'::regclass AND e.refobjsubid > 0 AND e.deptype IN ('a', 'i')"
                  " LEFT JOIN pg_class AS o ON o.oid = e.refobjid"
                  " LEFT JOIN pg_attribute AS oa ON oa.attrelid = o.oid AND oa.attnum = e.refobjsubid,"
                  " LATERAL (SELECT CASE s.seqtypid WHEN 21 THEN 32767 WHEN 23 THEN 2147483647"
                  "   ELSE 9223372036854775807 END AS highest) AS h,"
                  " LATERAL (SELECT CASE WHEN s.seqincrement > 0 THEN 1 ELSE -highest - 1 END AS lower,"
                  "   CASE WHEN s.seqincrement > 0 THEN highest ELSE -1 END AS upper) AS b,"
                  " LATERAL (SELECT CASE WHEN s.seqtypid <> 20 THEN format_type(s.seqtypid, NULL) END,"
                  "   nullif(s.seqstart, CASE WHEN s.seqincrement > 0 THEN s.seqmin ELSE s.seqmax END),"
                  "   nullif(s.seqincrement, 1), nullif(s.seqmin, lower), nullif(s.seqmax, upper),"
                  "   nullif(s.seqcache, 1), CASE WHEN s.seqcycle THEN 'true' END) AS x"
                  " WHERE" +
                  isOwn("pg_class", "c.oid", "c.relnamespace") + "ORDER BY c.oid");
    constexpr std::pair<char const*, char const*> options[] = {
        {"type", "AS"},          {"start", "START WITH"}, {"increment", "INCREMENT BY"},
        {"minimum", "MINVALUE"}, {"maximum", "MAXVALUE"}, {"cache", "CACHE"},
        {"cycle", "CYCLE"}};
    constexpr int firstOption = 2;
    while (row.next()) {
        Sequence sequence;
        std::string words = row.text(13);
        for (int i = 0; i < static_cast<int>(std::size(options)); ++i) {
            auto const& [name, keyword] = options[i];
            std::string const value = row.text(firstOption + i);
            addExtra(sequence.extras, name, value);
            if (!value.empty() && i > 0) {
                words.append(words.empty() ? "" : " ")
                    .append(keyword)
                    .append(value == "true" ? "" : " " + value);
            }
        }
        int const table = tableOf(row.number(9));
        if (row.flag(11)) {
            int const column = table < 0 ? -1 : columnOf(table, static_cast<int>(row.number(10)));
            if (column >= 0) {
                addExtra(structure.tables[static_cast<std::size_t>(table)]
                             .columns[static_cast<std::size_t>(column)]
                             .extras,
                         "identity sequence", words);
            }
            continue;
        }
        sequence.name = row.text(0);
        sequence.schema = schemaOf(row.number(1));
        sequence.comment = row.text(12);
        addExtra(sequence.extras, "owned by", row.text(14));
        addFlag(sequence.extras, "unlogged", row.flag(15));
        structure.sequences.push_back(std::move(sequence));
    }
}

} // namespace postgres
