#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

#include <algorithm>
#include <tuple>

namespace postgres {
namespace {

/// The server prints a constraint without what is only said of its index.
constexpr char const* exclusionSql = R"sql(
    SELECT n.conrelid AS table, n.conname AS name,
        format('ALTER TABLE %s ADD CONSTRAINT %I %s', r, n.conname, pg_get_constraintdef(n.oid))
        || coalesce((SELECT format(E';\nALTER INDEX %s SET TABLESPACE %I', i, s.spcname)
            FROM pg_class AS c JOIN pg_tablespace AS s ON s.oid = c.reltablespace WHERE c.oid = n.conindid), '')
        || coalesce((SELECT string_agg(
                format(E';\nALTER INDEX %s ALTER COLUMN %s SET STATISTICS %s', i, a.attnum, a.attstattarget),
                '' ORDER BY a.attnum)
            FROM pg_attribute AS a WHERE a.attrelid = n.conindid AND a.attstattarget >= 0), '')
        || (SELECT CASE WHEN g.indisclustered
                THEN format(E';\nALTER TABLE %s CLUSTER ON %I', r, n.conname) ELSE '' END
            FROM pg_index AS g WHERE g.indexrelid = n.conindid)
        || coalesce(E';\n' || {needed_extensions}, '')
        {comment}{index_comment} AS statement
    FROM pg_constraint AS n,
        LATERAL (SELECT n.conrelid::regclass AS r, n.conindid::regclass AS i) AS x
    WHERE n.contype = 'x' AND n.conparentid = 0)sql";

std::string exclusions() {
    return filled(
        exclusionSql,
        {{"needed_extensions", neededExtensions("pg_class", "n.conindid", "'ALTER INDEX ' || i")},
         {"comment",
          commentBehind("format('CONSTRAINT %I ON %s', n.conname, r)", commentOn("pg_constraint", "n.oid"))},
         {"index_comment", commentBehind("format('INDEX %s', i)", commentOn("pg_class", "n.conindid"))}});
}

constexpr char const* policySql = R"sql(
    SELECT p.polrelid AS table, p.polname AS name,
        concat_ws(' ', format('CREATE POLICY %I ON %s', p.polname, r),
            CASE WHEN NOT p.polpermissive THEN 'AS RESTRICTIVE' END,
            'FOR ' || CASE p.polcmd WHEN 'r' THEN 'SELECT' WHEN 'a' THEN 'INSERT' WHEN 'w' THEN 'UPDATE'
                WHEN 'd' THEN 'DELETE' ELSE 'ALL' END,
            'TO ' || (SELECT string_agg(
                    CASE g WHEN 0 THEN 'PUBLIC' ELSE quote_ident(pg_get_userbyid(g)) END, ', ')
                FROM unnest(p.polroles) AS g),
            'USING (' || pg_get_expr(p.polqual, p.polrelid) || ')',
            'WITH CHECK (' || pg_get_expr(p.polwithcheck, p.polrelid) || ')')
        {comment} AS statement
    FROM pg_policy AS p, LATERAL (SELECT p.polrelid::regclass AS r) AS x)sql";

std::string policies() {
    return filled(policySql, {{"comment", commentBehind("format('POLICY %I ON %s', p.polname, r)",
                                                        commentOn("pg_policy", "p.oid"))}});
}

/// The rule that makes a view is part of it, but can have a comment of its own.
constexpr char const* ruleSql = R"sql(
    SELECT w.ev_class AS table, w.rulename AS name,
        concat_ws(E';\n',
            CASE WHEN w.rulename <> '_RETURN' THEN rtrim(pg_get_ruledef(w.oid), ';') END,
            CASE WHEN w.ev_enabled <> 'O' THEN format('ALTER TABLE %s %s RULE %I', r,
                CASE w.ev_enabled WHEN 'D' THEN 'DISABLE' WHEN 'R' THEN 'ENABLE REPLICA'
                    ELSE 'ENABLE ALWAYS' END, w.rulename) END,
            format('COMMENT ON RULE %I ON %s IS ', w.rulename, r) || quote_literal({comment})) AS statement
    FROM pg_rewrite AS w, LATERAL (SELECT w.ev_class::regclass AS r) AS x)sql";

std::string rules() {
    return filled(ruleSql, {{"comment", commentOn("pg_rewrite", "w.oid")}});
}

/// Those of one name can be in several schemas.
constexpr char const* statisticsSql = R"sql(
    SELECT s.stxrelid AS table,
        CASE WHEN s.stxnamespace <> c.relnamespace THEN quote_ident(n.nspname) || '.' ELSE '' END || s.stxname
            AS name,
        pg_get_statisticsobjdef(s.oid) || {target} {comment} AS statement
    FROM pg_statistic_ext AS s JOIN pg_namespace AS n ON n.oid = s.stxnamespace
        JOIN pg_class AS c ON c.oid = s.stxrelid,
        LATERAL (SELECT format('%I.%I', n.nspname, s.stxname) AS q) AS x)sql";

constexpr char const* statisticsTarget = R"sql(
    CASE WHEN s.stxstattarget >= 0
        THEN format(E';\nALTER STATISTICS %s SET STATISTICS %s', q, s.stxstattarget) ELSE '' END)sql";

std::string statistics(bool hasTarget) {
    return filled(statisticsSql,
                  {{"target", hasTarget ? statisticsTarget : "''"},
                   {"comment", commentBehind("'STATISTICS ' || q", commentOn("pg_statistic_ext", "s.oid"))}});
}

/// A trigger that a partition has from its partitioned table is only told of where it is on when that one's
/// is off, or the like, or has a comment of its own.
constexpr char const* partitionTriggerSql = R"sql(
    WITH RECURSIVE up AS (
        SELECT oid AS part, tgparentid AS above FROM pg_trigger WHERE tgparentid <> 0
        UNION ALL SELECT up.part, t.tgparentid FROM up JOIN pg_trigger AS t ON t.oid = up.above
        WHERE t.tgparentid <> 0)
    SELECT p.tgrelid AS table, p.tgname AS name,
        concat_ws(E';\n',
            CASE WHEN p.tgenabled <> t.tgenabled THEN format('ALTER TABLE ONLY %s %s TRIGGER %I', r,
                CASE p.tgenabled WHEN 'D' THEN 'DISABLE' WHEN 'R' THEN 'ENABLE REPLICA'
                    WHEN 'A' THEN 'ENABLE ALWAYS' ELSE 'ENABLE' END, p.tgname) END,
            format('COMMENT ON TRIGGER %I ON %s IS ', p.tgname, r) || quote_literal({comment})) AS statement
    FROM up JOIN pg_trigger AS p ON p.oid = up.part
        JOIN pg_trigger AS t ON t.oid = up.above AND t.tgparentid = 0,
        LATERAL (SELECT p.tgrelid::regclass AS r) AS x
    WHERE NOT p.tgisinternal)sql";

std::string triggersOfPartitions() {
    return filled(partitionTriggerSql, {{"comment", commentOn("pg_trigger", "p.oid")}});
}

struct TableExtraRow : Query {
    using Query::Query;
    Number table{*this, "table"};
    Text name{*this, "name"};
    Text statement{*this, "statement"};
};

} // namespace

/// What belongs to a table and has no record of its own: an extra holds the SQL that makes it.
void CatalogReader::readTableExtras() {
    std::vector<ExtraQuery> queries = {{prefix::exclusion, exclusions()},
                                       {prefix::policy, policies()},
                                       {prefix::rule, rules()},
                                       {prefix::statistics, statistics(since(130000))}};
    if (since(130000)) {
        queries.push_back({prefix::trigger, triggersOfPartitions()});
    }
    for (ExtraQuery const& query : queries) {
        std::vector<std::tuple<std::string, std::string, int>> found;
        for (TableExtraRow row(connection, query.sql); row.next();) {
            found.emplace_back(row.name, row.statement, tableOf(row.table));
        }
        std::sort(found.begin(), found.end());
        for (auto const& [name, statement, table] : found) {
            if (table >= 0) {
                addExtra(structure.tables[static_cast<std::size_t>(table)].extras,
                         std::string(query.prefix) + name, statement);
            }
        }
    }
}

} // namespace postgres
