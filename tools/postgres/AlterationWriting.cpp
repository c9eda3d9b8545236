#include "postgres/SqlWriter.h"

#include "database/Records.h"
#include "postgres/Extras.h"
#include "postgres/SqlNames.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace postgres {
using namespace database;

namespace {

/// The extras of a column that set it, and the words that do.
constexpr std::pair<char const*, char const*> settings[] = {
    {"storage", "SET STORAGE "}, {"compression", "SET COMPRESSION "}, {"statistics", "SET STATISTICS "}};

} // namespace

/// No table can be made under parents that pass on different defaults of a column, but the default of a
/// parent can be changed afterwards.
void SqlWriter::findLateDefaults() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        for (Column const& column : table.columns) {
            std::set<std::string> defaults;
            bool const isPassedOn = table.parents.size() > 1 && isInherited(static_cast<int>(i), column);
            for (std::size_t parent = 0; isPassedOn && parent < table.parents.size(); ++parent) {
                Table only;
                only.parents = {table.parents[parent]};
                defaults.insert(inheritedColumn(only, column.name).defaultValue);
            }
            defaults.erase("");
            if (defaults.size() > 1) {
                addLateDefaults(static_cast<int>(i), column.name);
            }
        }
    }
}

bool SqlWriter::isLateDefault(Table const& table, Column const& column) const {
    auto const index = static_cast<int>(&table - structure.tables.data());
    return !column.generated && !column.defaultValue.empty() && lateDefaults.count({index, column.name}) > 0;
}

/// Those of all tables above one.
void SqlWriter::addLateDefaults(int table, std::string const& name) {
    for (int const parent : at(structure.tables, table).parents) {
        if (lateDefaults.emplace(parent, name).second) {
            addLateDefaults(parent, name);
        }
    }
}

/// True for a check that each partition gets when its partitioned table does.
bool SqlWriter::isLaterCheckOfParent(Table const& table, std::string const& name) const {
    return std::any_of(table.parents.begin(), table.parents.end(), [&](int parent) {
        auto const& checks = at(checksOfTable, parent);
        return std::any_of(checks.begin(), checks.end(), [&](Check const* check) {
            return check->name == name && has(*check, extra::notValid);
        });
    });
}

/// What can't be said where a thing is made.
void SqlWriter::writeAlterations() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        writeTableAlterations(static_cast<int>(i));
    }
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        for (Check const* const check : checksOfType[i]) {
            if (has(*check, extra::notValid)) {
                statement("ALTER DOMAIN " + typeName(static_cast<int>(i)) + " ADD " + checkText(*check));
            }
        }
    }
    for (Index const& index : structure.indexes) {
        if (isWritten(index)) {
            writeIndexUse(index.table, index, index.clustered);
        }
    }
    for (Sequence const& sequence : structure.sequences) {
        if (has(sequence, extra::ownedBy)) {
            statement("ALTER SEQUENCE " + qualified(sequence.schema, sequence.name) + " OWNED BY " +
                      valueOf(sequence.extras, extra::ownedBy));
        }
    }
}

void SqlWriter::writeTableAlterations(int index) {
    Table const& table = at(structure.tables, index);
    writeColumnAlterations(table);
    for (Check const* const check : at(checksOfTable, index)) {
        bool const comesWithParent =
            isInherited(index, *check) || (isPartition(table) && isLaterCheckOfParent(table, check->name));
        if (has(*check, extra::notValid) && !comesWithParent) {
            statement("ALTER TABLE " + tableName(index) + " ADD " + checkText(*check));
        }
    }
    for (Key const* const key : at(keysOfTable, index)) {
        writeIndexUse(index, *key, has(*key, extra::clustered));
    }
    if (has(table, extra::replicaIdentity)) {
        statement("ALTER TABLE ONLY " + tableName(index) + " REPLICA IDENTITY " +
                  valueOf(table.extras, extra::replicaIdentity));
    }
}

/// What a table uses an index for, be it that of a key.
void SqlWriter::writeIndexUse(int table, Named const& index, bool isClustered) {
    if (index.name.empty()) {
        return; // the server names it as it likes
    }
    if (isClustered) {
        statement("ALTER TABLE " + tableName(table) + " CLUSTER ON " + quoteName(index.name));
    }
    if (has(index, extra::replicaIdentity)) {
        statement("ALTER TABLE ONLY " + tableName(table) + " REPLICA IDENTITY USING INDEX " +
                  quoteName(index.name));
    }
}

/// A column as the parents pass it on when the table is made: what is altered afterwards isn't yet there. A
/// graph in which tables inherit in a circle is left after one round.
Column SqlWriter::inheritedColumn(Table const& table, std::string const& name, std::size_t depth) const {
    Column result;
    for (int const parent : table.parents) {
        Table const& from = at(structure.tables, parent);
        for (Column const& column : from.columns) {
            if (column.name != name) {
                continue;
            }
            bool const isPassedOn = isInherited(parent, column) && depth < structure.tables.size();
            Column const made = isPassedOn ? inheritedColumn(from, name, depth + 1) : column;
            bool const isLate = lateDefaults.count({parent, name}) > 0;
            result.notNull = result.notNull || made.notNull;
            result.defaultValue =
                result.defaultValue.empty() && !isLate ? made.defaultValue : result.defaultValue;
        }
    }
    return result;
}

void SqlWriter::writeColumnAlterations(Table const& table) {
    for (Column const& column : table.columns) {
        writeColumnAlterations(table, column);
    }
}

/// A column that comes from a parent can differ from it in its default and in being required.
void SqlWriter::writeColumnAlterations(Table const& table, Column const& column) {
    std::string const start = "ALTER TABLE ONLY " + qualified(table.schema, table.name) + " ALTER COLUMN " +
                              quoteName(column.name) + " ";
    bool const isOfView = table.kind != TableKind::TABLE;
    bool const isOfParent = valueOf(column.extras, extra::inherited) == "true" && !isPartition(table);
    Column const made = isOfParent ? inheritedColumn(table, column.name) : column;
    bool const hasOwnDefault =
        isLateDefault(table, column) || (!column.generated && made.defaultValue != column.defaultValue);
    if (hasOwnDefault || (isOfView && !column.defaultValue.empty())) {
        statement(start +
                  (column.defaultValue.empty() ? "DROP DEFAULT" : "SET DEFAULT " + column.defaultValue));
    }
    if (column.notNull && !made.notNull) {
        statement(start + "SET NOT NULL");
    }
    if (isOfParent && has(column, extra::identity)) {
        statement(start + "ADD" + identityText(column));
    }
    if (has(column, extra::identityChanges)) {
        statement(valueOf(column.extras, extra::identityChanges));
    }
    for (auto const& [name, words] : settings) {
        if (has(column, name)) {
            statement(start + words + valueOf(column.extras, name));
        }
    }
    if (has(column, extra::with)) {
        statement(start + "SET (" + valueOf(column.extras, extra::with) + ")");
    }
}

/// Exclusion constraints, policies, rules and statistics.
void SqlWriter::writeTableExtras() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        for (Extra const& extra : table.extras) {
            bool const isStatement =
                beginsWith(extra.name, prefix::exclusion) || beginsWith(extra.name, prefix::policy) ||
                beginsWith(extra.name, prefix::rule) || beginsWith(extra.name, prefix::statistics);
            if (isStatement) {
                statement(extra.value);
            }
        }
        std::string const security = valueOf(table.extras, extra::rowSecurity);
        std::string const start = "ALTER TABLE " + tableName(static_cast<int>(i));
        if (security == "ENABLED" || security == "FORCED") {
            statement(start + " ENABLE ROW LEVEL SECURITY");
        }
        if (beginsWith(security, "FORCED")) {
            statement(start + " FORCE ROW LEVEL SECURITY");
        }
    }
}

} // namespace postgres
