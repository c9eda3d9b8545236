#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

namespace postgres {
namespace {

using database::Trigger;
using database::TriggerTime;

/// The bits of pg_trigger.tgtype.
enum Bits : unsigned {
    BEFORE = 2,
    ON_INSERT = 4,
    ON_DELETE = 8,
    ON_UPDATE = 16,
    ON_TRUNCATE = 32,
    INSTEAD_OF = 64
};

constexpr char const* triggerSql = R"sql(
    SELECT t.tgrelid AS table, t.tgname AS name, t.tgtype AS bits, pg_get_triggerdef(t.oid) AS statement,
        t.tgenabled AS enabled, {comment} AS comment, {constraint_comment} AS constraint_comment,
        {needed_extensions} AS needed_extensions
    FROM pg_trigger AS t
    WHERE NOT t.tgisinternal AND {is_no_part}
    ORDER BY t.oid)sql";

std::string triggerQuery(bool hasParents) {
    return filled(triggerSql,
                  {{"comment", commentOn("pg_trigger", "t.oid")},
                   {"constraint_comment", commentOn("pg_constraint", "nullif(t.tgconstraint, 0)")},
                   {"needed_extensions",
                    neededExtensions("pg_trigger", "t.oid",
                                     "format('ALTER TRIGGER %I ON %s', t.tgname, t.tgrelid::regclass)")},
                   {"is_no_part", hasParents ? "t.tgparentid = 0" : "true"}});
}

struct TriggerRow : Query {
    using Query::Query;
    Number table{*this, "table"};
    Text name{*this, "name"};
    Number bits{*this, "bits"};
    Text statement{*this, "statement"};
    Letter enabled{*this, "enabled"};
    Text comment{*this, "comment"};
    Text constraintComment{*this, "constraint_comment"};
    Text neededExtensions{*this, "needed_extensions"};
};

char const* enabledText(char letter) {
    return letter == 'D' ? "NO" : letter == 'R' ? "REPLICA" : letter == 'A' ? "ALWAYS" : "";
}

Trigger triggerOf(TriggerRow const& row, int table) {
    auto const bits = static_cast<unsigned>(row.bits);
    Trigger trigger;
    trigger.table = table;
    trigger.name = row.name;
    trigger.comment = row.comment;
    trigger.time = bits & BEFORE       ? TriggerTime::BEFORE
                   : bits & INSTEAD_OF ? TriggerTime::INSTEAD_OF
                                       : TriggerTime::AFTER;
    trigger.onInsert = bits & ON_INSERT;
    trigger.onUpdate = bits & ON_UPDATE;
    trigger.onDelete = bits & ON_DELETE;
    trigger.statement = row.statement;
    addFlag(trigger.extras, extra::truncate, bits & ON_TRUNCATE);
    addExtra(trigger.extras, extra::enabled, enabledText(row.enabled));
    addExtra(trigger.extras, extra::commentOnConstraint, row.constraintComment);
    addExtra(trigger.extras, extra::dependsOnExtension, row.neededExtensions);
    return trigger;
}

} // namespace

/// What a partition has from its partitioned table is left out: that table's trigger makes it.
void CatalogReader::readTriggers() {
    TriggerRow row(connection, triggerQuery(since(130000)));
    while (row.next()) {
        int const table = tableOf(row.table);
        if (table >= 0) {
            checkUnchanged(!row.statement.isNull());
            structure.triggers.push_back(triggerOf(row, table));
        }
    }
}

} // namespace postgres
