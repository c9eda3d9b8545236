#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

namespace postgres {
namespace {

using database::Index;
using database::IndexMember;

/// The server puts everything but the call of a function in parentheses.
std::string withoutParentheses(std::string const& expression) {
    bool const isEnclosed = !expression.empty() && expression.front() == '(';
    return isEnclosed ? expression.substr(1, expression.size() - 2) : expression;
}

constexpr char const* indexSql = R"sql(
    SELECT i.indexrelid AS oid, c.relname AS name, i.indrelid AS table, i.indisunique AS unique,
        i.indisclustered AS clustered, NOT i.indisvalid AS not_valid, m.amname AS method,
        pg_get_expr(i.indpred, i.indrelid) AS condition, {options} AS options,
        (SELECT spcname FROM pg_tablespace AS s WHERE s.oid = c.reltablespace) AS tablespace,
        {comment} AS comment, i.indisreplident AS replica_identity, {include} AS include,
        {nulls_not_distinct} AS nulls_not_distinct, {part_of} AS part_of,
        {needed_extensions} AS needed_extensions
    FROM pg_index AS i JOIN pg_class AS c ON c.oid = i.indexrelid JOIN pg_am AS m ON m.oid = c.relam
        LEFT JOIN pg_constraint AS n ON n.conindid = i.indexrelid AND n.contype IN ('p', 'u', 'x')
    WHERE n.oid IS NULL
    ORDER BY i.indexrelid)sql";

std::string indexQuery(bool since15) {
    return filled(indexSql, {{"options", optionsText("c.reloptions")},
                             {"comment", commentOn("pg_class", "c.oid")},
                             {"include", includedColumns()},
                             {"nulls_not_distinct", since15 ? "i.indnullsnotdistinct" : "false"},
                             {"part_of", partitionedIndex("c.oid")},
                             {"needed_extensions",
                              neededExtensions("pg_class", "c.oid", "'ALTER INDEX ' || c.oid::regclass")}});
}

struct IndexRow : Query {
    using Query::Query;
    Number oid{*this, "oid"};
    Text name{*this, "name"};
    Number table{*this, "table"};
    Flag isUnique{*this, "unique"};
    Flag isClustered{*this, "clustered"};
    Flag isNotValid{*this, "not_valid"};
    Text method{*this, "method"};
    Text condition{*this, "condition"};
    Text options{*this, "options"};
    Text tablespace{*this, "tablespace"};
    Text comment{*this, "comment"};
    Flag isReplicaIdentity{*this, "replica_identity"};
    Text include{*this, "include"};
    Flag nullsAreNotDistinct{*this, "nulls_not_distinct"};
    Text partOf{*this, "part_of"};
    Text neededExtensions{*this, "needed_extensions"};
};

Index indexOf(IndexRow const& row, int table) {
    Index index;
    index.name = row.name;
    index.table = table;
    index.unique = row.isUnique;
    index.clustered = row.isClustered;
    index.comment = row.comment;
    std::string const method = row.method;
    addExtra(index.extras, extra::method, method == "btree" ? "" : method);
    addExtra(index.extras, extra::include, row.include);
    addFlag(index.extras, extra::nullsNotDistinct, row.nullsAreNotDistinct);
    addExtra(index.extras, extra::with, row.options);
    addExtra(index.extras, extra::tablespace, row.tablespace);
    addExtra(index.extras, extra::where, row.condition);
    addFlag(index.extras, extra::notValid, row.isNotValid);
    addFlag(index.extras, extra::replicaIdentity, row.isReplicaIdentity);
    addExtra(index.extras, extra::partOf, row.partOf);
    addExtra(index.extras, extra::dependsOnExtension, row.neededExtensions);
    return index;
}

/// An operator class or a collation is told of if the statement that makes the index needs it. That statement
/// takes time, so it is only looked at where nothing else tells.
constexpr char const* memberSql = R"sql(
    SELECT i.indexrelid AS index, k.number AS column,
        CASE WHEN k.number = 0 THEN pg_get_indexdef(i.indexrelid, k.n::int, false) END AS expression,
        m.amname = 'btree' AND i.indoption[k.n - 1] & 1 = 1 AS descending,
        CASE WHEN m.amname = 'btree' AND i.indoption[k.n - 1] & 3 = 2 THEN 'FIRST'
            WHEN m.amname = 'btree' AND i.indoption[k.n - 1] & 3 = 1 THEN 'LAST' END AS nulls,
        CASE WHEN NOT o.opcdefault OR z.attoptions IS NOT NULL
                OR (o.opcintype IS DISTINCT FROM a.atttypid
                    AND (a.atttypid = 'varchar'::regtype AND o.opcintype = 'text'::regtype) IS NOT TRUE
                    AND position(' ' || quote_ident(o.opcname) IN x.text) > 0)
            THEN quote_ident(p.nspname) || '.' || quote_ident(o.opcname) END AS operator_class,
        {class_options} AS class_options,
        CASE WHEN l.oid <> coalesce(a.attcollation, 100) AND position(' COLLATE ' IN x.text) > 0
            THEN quote_ident(q.nspname) || '.' || quote_ident(l.collname) END AS collation,
        CASE WHEN z.attstattarget >= 0 THEN z.attstattarget END AS statistics
    FROM pg_index AS i JOIN pg_class AS c ON c.oid = i.indexrelid JOIN pg_am AS m ON m.oid = c.relam
        CROSS JOIN LATERAL unnest(i.indkey::int2[]) WITH ORDINALITY AS k(number, n)
        JOIN pg_opclass AS o ON o.oid = i.indclass[k.n - 1]
        JOIN pg_namespace AS p ON p.oid = o.opcnamespace
        LEFT JOIN pg_attribute AS a ON a.attrelid = i.indrelid AND a.attnum = k.number AND k.number <> 0
        LEFT JOIN pg_attribute AS z ON z.attrelid = i.indexrelid AND z.attnum = k.n
        LEFT JOIN pg_collation AS l ON l.oid = i.indcollation[k.n - 1]
        LEFT JOIN pg_namespace AS q ON q.oid = l.collnamespace
        CROSS JOIN LATERAL (SELECT pg_get_indexdef(i.indexrelid) AS text) AS x
        LEFT JOIN pg_constraint AS n ON n.conindid = i.indexrelid AND n.contype IN ('p', 'u', 'x')
    WHERE k.n <= i.indnkeyatts AND n.oid IS NULL AND c.relnamespace <> 'pg_catalog'::regnamespace
        AND c.relnamespace <> 'pg_toast'::regnamespace
    ORDER BY i.indexrelid, k.n)sql";

constexpr char const* classOptions = R"sql(
    (SELECT string_agg(quote_ident(option_name) || '=' || quote_literal(option_value), ', ')
        FROM pg_options_to_table(z.attoptions)))sql";

struct MemberRow : Query {
    using Query::Query;
    Number index{*this, "index"};
    Number column{*this, "column"};
    Text expression{*this, "expression"};
    Flag isDescending{*this, "descending"};
    Text nulls{*this, "nulls"};
    Text operatorClass{*this, "operator_class"};
    Text classOptions{*this, "class_options"};
    Text collation{*this, "collation"};
    Text statistics{*this, "statistics"};
};

} // namespace

void CatalogReader::readIndexes() {
    IndexRow row(connection, indexQuery(since(150000)));
    while (row.next()) {
        int const table = tableOf(row.table);
        if (table >= 0) {
            indexes.emplace(row.oid, static_cast<int>(structure.indexes.size()));
            structure.indexes.push_back(indexOf(row, table));
        }
    }
}

void CatalogReader::readIndexMembers() {
    MemberRow row(connection, filled(memberSql, {{"class_options", since(130000) ? classOptions : "NULL"}}));
    while (row.next()) {
        auto const index = indexes.find(row.index);
        if (index == indexes.end()) {
            continue;
        }
        Index& owner = structure.indexes[static_cast<std::size_t>(index->second)];
        IndexMember member;
        auto const number = static_cast<int>(row.column);
        member.column = number == 0 ? -1 : columnOf(owner.table, number);
        member.expression = withoutParentheses(row.expression);
        member.descending = row.isDescending;
        addExtra(member.extras, extra::collation, row.collation);
        addExtra(member.extras, extra::opclass, row.operatorClass);
        addExtra(member.extras, extra::opclassOptions, row.classOptions);
        addExtra(member.extras, extra::nulls, row.nulls);
        addExtra(member.extras, extra::statistics, row.statistics);
        owner.members.push_back(std::move(member));
    }
}

} // namespace postgres
