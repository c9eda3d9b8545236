#include "database/Enumerations.h"
#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

namespace postgres {
namespace {

using database::Action;
using database::Check;
using database::Key;
using database::KeyKind;
using database::TwoWay;

constexpr TwoWay<Action, char, 5> actionLetters{{{Action::NO_ACTION, 'a'},
                                                 {Action::RESTRICT, 'r'},
                                                 {Action::CASCADE, 'c'},
                                                 {Action::SET_NULL, 'n'},
                                                 {Action::SET_DEFAULT, 'd'}}};

constexpr TwoWay<KeyKind, char, 3> keyLetters{
    {{KeyKind::FOREIGN, 'f'}, {KeyKind::PRIMARY, 'p'}, {KeyKind::UNIQUE, 'u'}}};

constexpr char const* constraintSql = R"sql(
    SELECT n.contype AS kind, n.conrelid AS table, n.contypid AS type, n.conname AS name, {comment} AS comment,
        CASE WHEN n.contype = 'c' THEN pg_get_expr(n.conbin, n.conrelid) END AS expression,
        n.conkey AS columns, n.confrelid AS referred_table, n.confkey AS referred_columns,
        n.confupdtype AS on_update, n.confdeltype AS on_delete, n.confmatchtype AS match,
        CASE WHEN n.condeferred THEN 'INITIALLY DEFERRED' WHEN n.condeferrable THEN 'INITIALLY IMMEDIATE' END
            AS deferrable,
        NOT n.convalidated AS not_valid, n.connoinherit AND n.contype = 'c' AS no_inherit,
        CASE WHEN r.relispartition THEN n.conparentid <> 0 AND n.contype <> 'c' ELSE n.coninhcount > 0 END
            AS inherited,
        n.conislocal AS local,
        CASE WHEN EXISTS (SELECT 1 FROM pg_depend AS e
                WHERE e.classid = 'pg_class'::regclass AND e.objid = n.confrelid AND e.deptype = 'e')
            THEN substring(pg_get_constraintdef(n.oid) FROM 'REFERENCES (.*?[)])') END AS references,
        {on_delete_columns} AS on_delete_columns, {include} AS include, {options} AS options,
        (SELECT spcname FROM pg_tablespace AS s WHERE s.oid = ic.reltablespace) AS tablespace,
        i.indisclustered AS clustered, i.indisreplident AS replica_identity,
        {nulls_not_distinct} AS nulls_not_distinct, {index_comment} AS index_comment, {part_of} AS part_of,
        {needed_extensions} AS needed_extensions,
        (SELECT string_agg(DISTINCT
                CASE g.tgenabled WHEN 'D' THEN 'NO' WHEN 'R' THEN 'REPLICA' ELSE 'ALWAYS' END, ', ')
            FROM pg_trigger AS g WHERE g.tgconstraint = n.oid AND g.tgisinternal AND g.tgenabled <> 'O')
            AS enabled
    FROM pg_constraint AS n LEFT JOIN pg_class AS r ON r.oid = n.conrelid
        LEFT JOIN pg_constraint AS p ON p.oid = n.conparentid AND n.conparentid <> 0
        LEFT JOIN pg_index AS i ON i.indexrelid = n.conindid AND n.contype IN ('p', 'u')
        LEFT JOIN pg_class AS ic ON ic.oid = i.indexrelid
    WHERE n.contype IN ('c', 'f', 'p', 'u') AND p.conrelid IS DISTINCT FROM n.conrelid
    ORDER BY n.oid)sql";

std::string constraintQuery(bool since15) {
    return filled(constraintSql,
                  {{"comment", commentOn("pg_constraint", "n.oid")},
                   {"on_delete_columns", since15 ? columnNames("n.conrelid", "n.confdelsetcols") : "NULL"},
                   {"include", includedColumns()},
                   {"options", optionsText("ic.reloptions")},
                   {"nulls_not_distinct", since15 ? "i.indnullsnotdistinct" : "false"},
                   {"index_comment", commentOn("pg_class", "ic.oid")},
                   {"part_of", partitionedIndex("ic.oid")},
                   {"needed_extensions",
                    neededExtensions("pg_class", "ic.oid", "'ALTER INDEX ' || ic.oid::regclass")}});
}

} // namespace

struct ConstraintRow : Query {
    using Query::Query;
    Letter kind{*this, "kind"};
    Number table{*this, "table"};
    Number type{*this, "type"};
    Text name{*this, "name"};
    Text comment{*this, "comment"};
    Text expression{*this, "expression"};
    Text columns{*this, "columns"};
    Number referredTable{*this, "referred_table"};
    Text referredColumns{*this, "referred_columns"};
    Letter onUpdate{*this, "on_update"};
    Letter onDelete{*this, "on_delete"};
    Letter match{*this, "match"};
    Text deferrable{*this, "deferrable"};
    Flag isNotValid{*this, "not_valid"};
    Flag isNotForHeirs{*this, "no_inherit"};
    Flag isInherited{*this, "inherited"};
    Flag isLocal{*this, "local"};
    Text references{*this, "references"};
    Text onDeleteColumns{*this, "on_delete_columns"};
    Text include{*this, "include"};
    Text options{*this, "options"};
    Text tablespace{*this, "tablespace"};
    Flag isClustered{*this, "clustered"};
    Flag isReplicaIdentity{*this, "replica_identity"};
    Flag nullsAreNotDistinct{*this, "nulls_not_distinct"};
    Text indexComment{*this, "index_comment"};
    Text partOf{*this, "part_of"};
    Text neededExtensions{*this, "needed_extensions"};
    Text enabled{*this, "enabled"};
};

/// A foreign key that refers to a partitioned table has further rows for each partition, which aren't read.
void CatalogReader::readConstraints() {
    ConstraintRow row(connection, constraintQuery(since(150000)));
    while (row.next()) {
        int const table = tableOf(row.table);
        auto const type = ownTypes.find(row.type);
        if (row.kind != 'c' && table >= 0) {
            readKey(row, table);
        } else if (table >= 0 || type != ownTypes.end()) {
            readCheck(row, table, table < 0 ? type->second : -1);
        }
    }
}

void CatalogReader::readCheck(ConstraintRow const& row, int table, int type) {
    Check check;
    check.name = row.name;
    check.comment = row.comment;
    check.table = table;
    check.type = type;
    check.expression = row.expression;
    addFlag(check.extras, extra::notValid, row.isNotValid);
    addFlag(check.extras, extra::noInherit, row.isNotForHeirs);
    addExtra(check.extras, extra::inherited, inheritance(row.isInherited, row.isLocal));
    structure.checks.push_back(std::move(check));
}

void CatalogReader::readKey(ConstraintRow const& row, int table) {
    Key key;
    key.kind = keyLetters.valueOf(row.kind);
    key.name = row.name;
    key.comment = row.comment;
    key.table = table;
    key.columns = columnsOf(table, row.columns);
    addExtra(key.extras, extra::deferrable, row.deferrable);
    if (key.kind == KeyKind::FOREIGN) {
        addFlag(key.extras, extra::inherited, row.isInherited);
        readReference(row, key);
    } else {
        addExtra(key.extras, extra::include, row.include);
        addExtra(key.extras, extra::with, row.options);
        addExtra(key.extras, extra::tablespace, row.tablespace);
        addFlag(key.extras, extra::clustered, row.isClustered);
        addFlag(key.extras, extra::replicaIdentity, row.isReplicaIdentity);
        addFlag(key.extras, extra::nullsNotDistinct, row.nullsAreNotDistinct);
        addExtra(key.extras, extra::commentOnIndex, row.indexComment);
        addExtra(key.extras, extra::partOf, row.partOf);
        addExtra(key.extras, extra::dependsOnExtension, row.neededExtensions);
    }
    addExtra(key.extras, extra::enabled, row.enabled);
    structure.keys.push_back(std::move(key));
}

void CatalogReader::readReference(ConstraintRow const& row, Key& key) {
    key.referredTable = tableOf(row.referredTable);
    if (key.referredTable >= 0) {
        key.referredColumns = columnsOf(key.referredTable, row.referredColumns);
    } else {
        addExtra(key.extras, extra::references, row.references);
    }
    key.onUpdate = actionLetters.valueOf(row.onUpdate);
    key.onDelete = actionLetters.valueOf(row.onDelete);
    addExtra(key.extras, extra::match, row.match == 'f' ? "FULL" : row.match == 'p' ? "PARTIAL" : "");
    addExtra(key.extras, extra::onDeleteColumns, row.onDeleteColumns);
    addFlag(key.extras, extra::notValid, row.isNotValid);
}

} // namespace postgres
