#include "postgres/CatalogReader.h"

namespace postgres {
namespace {

using database::Action;
using database::Check;
using database::Index;
using database::IndexMember;
using database::Key;
using database::KeyKind;
using database::Trigger;
using database::TriggerTime;

Action actionOf(char letter) {
    return letter == 'r'   ? Action::RESTRICT
           : letter == 'c' ? Action::CASCADE
           : letter == 'n' ? Action::SET_NULL
           : letter == 'd' ? Action::SET_DEFAULT
                           : Action::NO_ACTION;
}

/// The names of columns whose numbers an expression gives as an array.
std::string columnNames(std::string const& table, std::string const& numbers) {
    return "(SELECT string_agg(quote_ident(a.attname), ', ' ORDER BY u.n) FROM unnest(" + numbers +
           ") WITH ORDINALITY AS u(number, n) JOIN pg_attribute AS a ON a.attrelid = " + table +
           " AND a.attnum = u.number)";
}

/// The server puts everything but the call of a function in parentheses.
std::string withoutParentheses(std::string const& expression) {
    bool const isEnclosed = !expression.empty() && expression.front() == '(';
    return isEnclosed ? expression.substr(1, expression.size() - 2) : expression;
}

/// The columns of a key's or an index's index that are only stored in it.
constexpr char const* storedColumns = "(i.indkey::int2[])[i.indnkeyatts:i.indnatts - 1]";

/// The index of a partitioned table that an index of a partition is a part of.
std::string partitionedIndex(std::string const& oid) {
    return "(SELECT h.inhparent::regclass FROM pg_inherits AS h WHERE h.inhrelid = " + oid + ")";
}

/// Its columns are those by which `readKey`, `readCheck` and `readReference` go.
std::string constraintQuery(bool since15) {
    return "SELECT n.contype, n.conrelid, n.contypid, n.conname, " + commentOn("pg_constraint", "n.oid") +
           ", CASE WHEN n.contype = 'c' THEN pg_get_expr(n.conbin, n.conrelid) END"
           ", n.conkey, n.confrelid, n.confkey, n.confupdtype, n.confdeltype, n.confmatchtype"
           ", CASE WHEN n.condeferred THEN 'INITIALLY DEFERRED' WHEN n.condeferrable"
           "   THEN 'INITIALLY IMMEDIATE' END"
           ", NOT n.convalidated, n.connoinherit AND n.contype = 'c'"
           ", CASE WHEN r.relispartition THEN n.conparentid <> 0 AND n.contype <> 'c'"
           "   ELSE n.coninhcount > 0 END, n.conislocal"
           ", CASE WHEN EXISTS (SELECT 1 FROM pg_depend AS e WHERE e.classid = 'pg_class'::regclass"
           "   AND e.objid = n.confrelid AND e.deptype = 'e')"
           "   THEN substring(pg_get_constraintdef(n.oid) FROM 'REFERENCES (.*?[)])') END, " +
           (since15 ? columnNames("n.conrelid", "n.confdelsetcols") : "NULL") + ", " +
           columnNames("i.indrelid", storedColumns) + ", " + optionsText("ic.reloptions") +
           ", (SELECT spcname FROM pg_tablespace AS s WHERE s.oid = ic.reltablespace), i.indisclustered"
           ", i.indisreplident, " +
           (since15 ? "i.indnullsnotdistinct" : "false") + ", " + commentOn("pg_class", "ic.oid") + ", " +
           partitionedIndex("ic.oid") + ", " +
           neededExtensions("pg_class", "ic.oid", "'ALTER INDEX ' || ic.oid::regclass") +
           ", (SELECT string_agg(DISTINCT CASE g.tgenabled WHEN 'D' THEN 'NO' WHEN 'R' THEN 'REPLICA' ELSE "
           "'ALWAYS'"
           "   END, ', ') FROM pg_trigger AS g WHERE g.tgconstraint = n.oid AND g.tgisinternal"
           "   AND g.tgenabled <> 'O')"
           " FROM pg_constraint AS n LEFT JOIN pg_class AS r ON r.oid = n.conrelid"
           " LEFT JOIN pg_constraint AS p ON p.oid = n.conparentid AND n.conparentid <> 0"
           " LEFT JOIN pg_index AS i ON i.indexrelid = n.conindid AND n.contype IN ('p', 'u')"
           " LEFT JOIN pg_class AS ic ON ic.oid = i.indexrelid"
           " WHERE n.contype IN ('c', 'f', 'p', 'u') AND p.conrelid IS DISTINCT FROM n.conrelid"
           " ORDER BY n.oid";
}

std::string indexQuery(bool since15) {
    return "SELECT i.indexrelid, c.relname, i.indrelid, i.indisunique, i.indisclustered, NOT i.indisvalid, "
           "m.amname, "
           "pg_get_expr(i.indpred, i.indrelid), " +
           optionsText("c.reloptions") +
           ", (SELECT spcname FROM pg_tablespace AS s WHERE s.oid = c.reltablespace), " +
           commentOn("pg_class", "c.oid") + ", i.indisreplident, " +
           columnNames("i.indrelid", storedColumns) + ", " + (since15 ? "i.indnullsnotdistinct" : "false") +
           ", " + partitionedIndex("c.oid") + ", " +
           neededExtensions("pg_class", "c.oid", "'ALTER INDEX ' || c.oid::regclass") +
           " FROM pg_index AS i JOIN pg_class AS c ON c.oid = i.indexrelid JOIN pg_am AS m ON m.oid = "
           "c.relam"
           " LEFT JOIN pg_constraint AS n ON n.conindid = i.indexrelid AND n.contype IN ('p', 'u', 'x')"
           " WHERE n.oid IS NULL ORDER BY i.indexrelid";
}

/// An operator class or a collation is told of if the statement that makes the index needs it. That statement
/// takes time, so it is only looked at where nothing else tells.
std::string memberQuery(bool hasOptions) {
    return "SELECT i.indexrelid, k.number, CASE WHEN k.number = 0"
           "   THEN pg_get_indexdef(i.indexrelid, k.n::int, false) END"
           ", m.amname = 'btree' AND i.indoption[k.n - 1] & 1 = 1"
           ", CASE WHEN m.amname = 'btree' AND i.indoption[k.n - 1] & 3 = 2 THEN 'FIRST'"
           "   WHEN m.amname = 'btree' AND i.indoption[k.n - 1] & 3 = 1 THEN 'LAST' END"
           ", CASE WHEN NOT o.opcdefault OR z.attoptions IS NOT NULL OR (o.opcintype IS DISTINCT FROM "
           "a.atttypid"
           "   AND (a.atttypid = 'varchar'::regtype AND o.opcintype = 'text'::regtype) IS NOT TRUE"
           "   AND position(' ' || quote_ident(o.opcname) IN x.text) > 0)"
           "   THEN quote_ident(p.nspname) || '.' || quote_ident(o.opcname) END" +
           std::string(hasOptions ? ", (SELECT string_agg(quote_ident(option_name) || '=' ||"
                                    " quote_literal(option_value), ', ')"
                                    " FROM pg_options_to_table(z.attoptions))"
                                  : ", NULL") +
           ", CASE WHEN l.oid <> coalesce(a.attcollation, 100)"
           "   AND position(' COLLATE ' IN x.text) > 0"
           "   THEN quote_ident(q.nspname) || '.' || quote_ident(l.collname) END"
           ", CASE WHEN z.attstattarget >= 0 THEN z.attstattarget END"
           " FROM pg_index AS i JOIN pg_class AS c ON c.oid = i.indexrelid JOIN pg_am AS m ON m.oid = "
           "c.relam"
           " CROSS JOIN LATERAL unnest(i.indkey::int2[]) WITH ORDINALITY AS k(number, n)"
           " JOIN pg_opclass AS o ON o.oid = i.indclass[k.n - 1]"
           " JOIN pg_namespace AS p ON p.oid = o.opcnamespace"
           " LEFT JOIN pg_attribute AS a ON a.attrelid = i.indrelid AND a.attnum = k.number AND k.number <> "
           "0"
           " LEFT JOIN pg_attribute AS z ON z.attrelid = i.indexrelid AND z.attnum = k.n"
           " LEFT JOIN pg_collation AS l ON l.oid = i.indcollation[k.n - 1]"
           " LEFT JOIN pg_namespace AS q ON q.oid = l.collnamespace"
           " CROSS JOIN LATERAL (SELECT pg_get_indexdef(i.indexrelid) AS text) AS x"
           " LEFT JOIN pg_constraint AS n ON n.conindid = i.indexrelid AND n.contype IN ('p', 'u', 'x')"
           " WHERE k.n <= i.indnkeyatts AND n.oid IS NULL AND c.relnamespace <> 'pg_catalog'::regnamespace"
           " AND c.relnamespace <> 'pg_toast'::regnamespace ORDER BY i.indexrelid, k.n";
}

std::string triggerQuery(bool hasParents) {
    return "SELECT t.tgrelid, t.tgname, t.tgtype, pg_get_triggerdef(t.oid), t.tgenabled, " +
           commentOn("pg_trigger", "t.oid") + ", " + commentOn("pg_constraint", "nullif(t.tgconstraint, 0)") +
           ", " +
           neededExtensions("pg_trigger", "t.oid",
                            "format('ALTER TRIGGER %I ON %s', t.tgname, t.tgrelid::regclass)") +
           " FROM pg_trigger AS t WHERE NOT t.tgisinternal" + (hasParents ? " AND t.tgparentid = 0" : "") +
           " ORDER BY t.oid";
}

} // namespace

/// A foreign key that refers to a partitioned table has further rows for each partition, which aren't read.
void CatalogReader::readConstraints() {
    Query row(connection, constraintQuery(since(150000)));
    while (row.next()) {
        int const table = tableOf(row.number(1));
        auto const type = ownTypes.find(row.number(2));
        if (*row.text(0) != 'c' && table >= 0) {
            readKey(row, table);
        } else if (table >= 0 || type != ownTypes.end()) {
            readCheck(row, table, table < 0 ? type->second : -1);
        }
    }
}

void CatalogReader::readCheck(Query const& row, int table, int type) {
    Check check;
    check.name = row.text(3);
    check.comment = row.text(4);
    check.table = table;
    check.type = type;
    check.expression = row.text(5);
    addFlag(check.extras, "not valid", row.flag(13));
    addFlag(check.extras, "no inherit", row.flag(14));
    addExtra(check.extras, "inherited", !row.flag(15) ? "" : row.flag(16) ? "and own" : "true");
    structure.checks.push_back(std::move(check));
}

void CatalogReader::readKey(Query const& row, int table) {
    Key key;
    key.kind = *row.text(0) == 'p'   ? KeyKind::PRIMARY
               : *row.text(0) == 'u' ? KeyKind::UNIQUE
                                     : KeyKind::FOREIGN;
    key.name = row.text(3);
    key.comment = row.text(4);
    key.table = table;
    key.columns = columnsOf(table, row.text(6));
    addExtra(key.extras, "deferrable", row.text(12));
    if (key.kind == KeyKind::FOREIGN) {
        addFlag(key.extras, "inherited", row.flag(15));
        readReference(row, key);
    } else {
        addExtra(key.extras, "include", row.text(19));
        addExtra(key.extras, "with", row.text(20));
        addExtra(key.extras, "tablespace", row.text(21));
        addFlag(key.extras, "clustered", row.flag(22));
        addFlag(key.extras, "replica identity", row.flag(23));
        addFlag(key.extras, "nulls not distinct", row.flag(24));
        addExtra(key.extras, "comment on index", row.text(25));
        addExtra(key.extras, "part of", row.text(26));
        addExtra(key.extras, "depends on extension", row.text(27));
    }
    addExtra(key.extras, "enabled", row.text(28));
    structure.keys.push_back(std::move(key));
}

void CatalogReader::readReference(Query const& row, Key& key) {
    key.referredTable = tableOf(row.number(7));
    if (key.referredTable >= 0) {
        key.referredColumns = columnsOf(key.referredTable, row.text(8));
    } else {
        addExtra(key.extras, "references", row.text(17));
    }
    key.onUpdate = actionOf(*row.text(9));
    key.onDelete = actionOf(*row.text(10));
    char const match = *row.text(11);
    addExtra(key.extras, "match", match == 'f' ? "FULL" : match == 'p' ? "PARTIAL" : "");
    addExtra(key.extras, "on delete columns", row.text(18));
    addFlag(key.extras, "not valid", row.flag(13));
}

void CatalogReader::readIndexes() {
    Query row(connection, indexQuery(since(150000)));
    while (row.next()) {
        int const table = tableOf(row.number(2));
        if (table < 0) {
            continue;
        }
        Index index;
        index.name = row.text(1);
        index.table = table;
        index.unique = row.flag(3);
        index.clustered = row.flag(4);
        index.comment = row.text(10);
        std::string const method = row.text(6);
        addExtra(index.extras, "method", method == "btree" ? "" : method);
        addExtra(index.extras, "include", row.text(12));
        addFlag(index.extras, "nulls not distinct", row.flag(13));
        addExtra(index.extras, "with", row.text(8));
        addExtra(index.extras, "tablespace", row.text(9));
        addExtra(index.extras, "where", row.text(7));
        addFlag(index.extras, "not valid", row.flag(5));
        addFlag(index.extras, "replica identity", row.flag(11));
        addExtra(index.extras, "part of", row.text(14));
        addExtra(index.extras, "depends on extension", row.text(15));
        indexes.emplace(row.number(0), static_cast<int>(structure.indexes.size()));
        structure.indexes.push_back(std::move(index));
    }
}

void CatalogReader::readIndexMembers() {
    Query row(connection, memberQuery(since(130000)));
    while (row.next()) {
        auto const index = indexes.find(row.number(0));
        if (index == indexes.end()) {
            continue;
        }
        Index& owner = structure.indexes[static_cast<std::size_t>(index->second)];
        IndexMember member;
        auto const number = static_cast<int>(row.number(1));
        member.column = number == 0 ? -1 : columnOf(owner.table, number);
        member.expression = withoutParentheses(row.text(2));
        member.descending = row.flag(3);
        addExtra(member.extras, "collation", row.text(7));
        addExtra(member.extras, "opclass", row.text(5));
        addExtra(member.extras, "opclass options", row.text(6));
        addExtra(member.extras, "nulls", row.text(4));
        addExtra(member.extras, "statistics", row.text(8));
        owner.members.push_back(std::move(member));
    }
}

/// What a partition has from its partitioned table is left out: that table's trigger makes it.
void CatalogReader::readTriggers() {
    constexpr unsigned before = 2;
    constexpr unsigned onInsert = 4;
    constexpr unsigned onDelete = 8;
    constexpr unsigned onUpdate = 16;
    constexpr unsigned onTruncate = 32;
    constexpr unsigned insteadOf = 64;
    Query row(connection, triggerQuery(since(130000)));
    while (row.next()) {
        auto const bits = static_cast<unsigned>(row.number(2));
        Trigger trigger;
        trigger.table = tableOf(row.number(0));
        if (trigger.table < 0) {
            continue;
        }
        trigger.name = row.text(1);
        trigger.comment = row.text(5);
        trigger.time = bits & before      ? TriggerTime::BEFORE
                       : bits & insteadOf ? TriggerTime::INSTEAD_OF
                                          : TriggerTime::AFTER;
        trigger.onInsert = bits & onInsert;
        trigger.onUpdate = bits & onUpdate;
        trigger.onDelete = bits & onDelete;
        trigger.statement = row.text(3);
        checkUnchanged(!row.isNull(3));
        char const enabled = *row.text(4);
        addFlag(trigger.extras, "truncate", bits & onTruncate);
        addExtra(trigger.extras, "enabled",
                 enabled == 'D'   ? "NO"
                 : enabled == 'R' ? "REPLICA"
                 : enabled == 'A' ? "ALWAYS"
                                  : "");
        addExtra(trigger.extras, "comment on constraint", row.text(6));
        addExtra(trigger.extras, "depends on extension", row.text(7));
        structure.triggers.push_back(std::move(trigger));
    }
}

} // namespace postgres
