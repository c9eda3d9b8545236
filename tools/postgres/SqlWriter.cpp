#include "postgres/SqlWriter.h"

#include "database/Enumerations.h"
#include "database/Records.h"
#include "postgres/ArrayCasts.h"
#include "postgres/Extras.h"
#include "postgres/ForeignTypes.h"
#include "postgres/SqlComments.h"
#include "postgres/SqlNames.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace postgres {
using namespace database;

void SqlWriter::begin() {
    findLateDefaults();
    writeSettings();
    writeSchemas();
    writeCatalogExtras(Moment::FIRST);
    writeCatalogExtras(Moment::NEVER);
}

void SqlWriter::writeTables() {
    writeObjects();
}

void SqlWriter::writeReferences() {
    writeForeignKeys();
    writeAlterations();
    writeTableExtras();
}

void SqlWriter::end() {
    writeCatalogExtras(Moment::BEHIND_TRIGGERS);
    writeComments();
    writeExtensionNeeds();
    writeCatalogExtras(Moment::LAST);
}

void SqlWriter::statement(std::string const& text) {
    database::SqlWriter::statement(withCommentEnded(text));
}

void SqlWriter::comment(std::string const& kind, std::string const& name, std::string const& text) {
    if (!text.empty()) {
        statement("COMMENT ON " + kind + " " + name + " IS " + quoteText(text));
    }
}

/// The server has printed it, and must read it as it meant it.
void OwnWriter::statement(std::string const& text) {
    SqlWriter::statement(keepArrayCasts(text));
}

void TranslatedWriter::tellOmissions(Omissions ForeignStructure::*which) {
    for (Omission const& omission : translated.*which) {
        leftOut(omission);
    }
}

void TranslatedWriter::tellOmissionsOfTable(int table) {
    for (Omission const& omission : at(translated.ofTables, table)) {
        leftOut(omission);
    }
}

// ---- the database as a whole -------------------------------------------------------------------------

/// The bodies of functions aren't looked at, so that they may name what comes later.
void SqlWriter::writeSettings() {
    writeComment("The structure of " + structure.catalog.name + ", for PostgreSQL", out);
    out << "SET client_encoding = 'UTF8';\nSET standard_conforming_strings = on;\n"
           "SET check_function_bodies = off;\nSET client_min_messages = warning;\n";
    statement("SET search_path = ''");
    out << '\n';
}

void SqlWriter::writeSchemas() {
    for (Schema const& schema : structure.schemas) {
        if (!has(schema, extra::extension)) {
            statement("CREATE SCHEMA IF NOT EXISTS " + quoteName(schema.name));
        }
    }
}

/// What stands for itself in the catalog and is made at that moment.
void SqlWriter::writeCatalogExtras(Moment moment) {
    for (Extra const& extra : structure.catalog.extras) {
        if (moment == Moment::NEVER && kindOf(extra).moment == Moment::NEVER) {
            leftOut({extra.name + " " + extra.value, "its statement wasn't read", ""});
        }
    }
    if (moment == Moment::NEVER) {
        tellOmissions(&ForeignStructure::ofDatabase);
        return;
    }
    for (Extra const* const extra : extrasOf(structure.catalog.extras, moment)) {
        statement(extra->value);
    }
}

// ---- names -------------------------------------------------------------------------------------------

std::string SqlWriter::quoted(std::string const& name) const {
    return quoteName(name);
}

std::string SqlWriter::tableName(int table) const {
    return qualified(at(structure.tables, table).schema, at(structure.tables, table).name);
}

std::string SqlWriter::schemaName(int schema) const {
    return schema < 0 ? "" : at(structure.schemas, schema).name;
}

std::string SqlWriter::qualified(int schema, std::string const& name) const {
    return (schema < 0 ? "" : quoteName(schemaName(schema)) + ".") + quoteName(name);
}

std::string SqlWriter::typeName(int index) const {
    if (index < 0) {
        return "text";
    }
    Type const& type = at(structure.types, index);
    if (type.kind != TypeKind::BUILT_IN || type.schema >= 0) {
        return qualified(type.schema, type.name);
    }
    return type.declaration.empty() ? translatedType(type) : type.declaration;
}

bool SqlWriter::isPartition(Table const& table) {
    return has(table, extra::partitionBound);
}

bool SqlWriter::isPartitioned(int table) const {
    return has(at(structure.tables, table), extra::partitionBy);
}

/// An index that isn't valid is, unless it is one of a partitioned table, what a failure left. No statement
/// makes such.
bool SqlWriter::isWritten(Index const& index) const {
    return !has(index, extra::notValid) || isPartitioned(index.table);
}

/// Keys and indexes of these are put together once the tables are.
bool SqlWriter::isInPartitions(int table) const {
    return isPartitioned(table) || isPartition(at(structure.tables, table));
}

/// True for what a table has from its parents alone. A partition is made by itself and becomes one later.
bool SqlWriter::isInherited(int table, Named const& thing) const {
    return valueOf(thing.extras, extra::inherited) == "true" && !isPartition(at(structure.tables, table));
}

// ---- indexes -----------------------------------------------------------------------------------------

/// One of a partitioned table becomes valid once each partition has its part.
void SqlWriter::writeIndexes() {
    for (Index const& index : structure.indexes) {
        if (!isWritten(index)) {
            leftOut({"index " + index.name, "it isn't valid", indexText(index)});
            continue;
        }
        statement(indexText(index));
        for (std::size_t i = 0; i < index.members.size(); ++i) {
            std::string const target = valueOf(index.members[i].extras, extra::statistics);
            if (!target.empty() && !index.name.empty()) {
                statement("ALTER INDEX " + qualified(at(structure.tables, index.table).schema, index.name) +
                          " ALTER COLUMN " + std::to_string(i + 1) + " SET STATISTICS " + target);
            }
        }
    }
    writeParts();
    tellOmissions(&ForeignStructure::ofIndexes);
}

/// What the indexes of partitions are parts of.
void SqlWriter::writeParts() {
    auto const attach = [this](Named const& thing, int table) {
        if (has(thing, extra::partOf) && !thing.name.empty()) {
            statement("ALTER INDEX " + valueOf(thing.extras, extra::partOf) + " ATTACH PARTITION " +
                      qualified(at(structure.tables, table).schema, thing.name));
        }
    };
    for (Key const& key : structure.keys) {
        attach(key, key.table);
    }
    for (Index const& index : structure.indexes) {
        if (isWritten(index)) {
            attach(index, index.table);
        }
    }
}

std::string SqlWriter::indexText(Index const& index) {
    std::string members;
    for (IndexMember const& member : index.members) {
        members += (members.empty() ? "" : ", ") + memberText(index, member);
    }
    std::string const space = valueOf(index.extras, extra::tablespace);
    std::string const method = valueOf(index.extras, extra::method);
    return indexStart(index, index.name.empty() ? "" : quoteName(index.name)) +
           (isPartitioned(index.table) ? "ONLY " : "") + tableName(index.table) +
           (method.empty() ? "" : " USING " + quoteName(method)) + " (" + members + ")" +
           clause(index.extras, extra::include, " INCLUDE (", ")") +
           (has(index, extra::nullsNotDistinct) ? " NULLS NOT DISTINCT" : "") +
           clause(index.extras, extra::with, " WITH (", ")") +
           (space.empty() ? "" : " TABLESPACE " + quoteName(space)) +
           clause(index.extras, extra::where, " WHERE ");
}

std::string SqlWriter::memberText(Index const& index, IndexMember const& member) {
    std::string text = member.column >= 0
                           ? quoteName(at(at(structure.tables, index.table).columns, member.column).name)
                           : "(" + member.expression + ")";
    text += clause(member.extras, extra::collation, " COLLATE ") +
            clause(member.extras, extra::opclass, " ") +
            clause(member.extras, extra::opclassOptions, " (", ")");
    return text + (member.descending ? " DESC" : "") + clause(member.extras, extra::nulls, " NULLS ");
}

// ---- foreign keys ------------------------------------------------------------------------------------

/// A foreign key of a partition comes with that of the partitioned table and bears its name. One of another
/// name is made before, from the lowest partitions on, and so becomes part of it.
void SqlWriter::writeForeignKeys() {
    std::vector<std::pair<int, Key const*>> named;
    for (Key const& key : structure.keys) {
        if (key.kind == KeyKind::FOREIGN && has(key, extra::inherited) && !isNamedByParent(key)) {
            named.emplace_back(-depthOf(key.table), &key);
        }
    }
    std::stable_sort(named.begin(), named.end(),
                     [](auto const& a, auto const& b) { return a.first < b.first; });
    for (auto const& entry : named) {
        writeForeignKey(*entry.second);
    }
    for (Key const& key : structure.keys) {
        if (key.kind == KeyKind::FOREIGN && !has(key, extra::inherited)) {
            writeForeignKey(key);
        }
    }
    tellOmissions(&ForeignStructure::ofForeignKeys);
}

bool SqlWriter::isNamedByParent(Key const& key) const {
    std::vector<int> const& parents = at(structure.tables, key.table).parents;
    if (parents.empty()) {
        return true;
    }
    auto const& keys = at(keysOfTable, parents.front());
    return std::any_of(keys.begin(), keys.end(), [&](Key const* other) { return other->name == key.name; });
}

/// How many tables a partition is under; a graph that goes in a circle is left after one round.
int SqlWriter::depthOf(int table) const {
    int depth = 0;
    while (!at(structure.tables, table).parents.empty() &&
           depth < static_cast<int>(structure.tables.size())) {
        table = at(structure.tables, table).parents.front();
        ++depth;
    }
    return depth;
}

void SqlWriter::writeForeignKey(Key const& key) {
    if (key.referredColumns.empty() && !has(key, extra::references)) {
        leftOut(
            {"foreign key " + key.name + " of " + tableName(key.table), "what it refers to is unknown", ""});
        return;
    }
    statement(std::string("ALTER TABLE ") + (isPartitioned(key.table) ? "" : "ONLY ") + tableName(key.table) +
              " ADD " + keyText(key));
}

// ---- triggers and extensions -------------------------------------------------------------------------

void SqlWriter::writeTriggers() {
    for (Trigger const& trigger : structure.triggers) {
        statement(trigger.statement);
        std::string const enabled = valueOf(trigger.extras, extra::enabled);
        if (!enabled.empty()) {
            statement("ALTER TABLE " + tableName(trigger.table) +
                      (enabled == "NO" ? " DISABLE" : " ENABLE " + enabled) + " TRIGGER " +
                      quoteName(trigger.name));
        }
    }
    for (Table const& table : structure.tables) {
        for (Extra const& extra : table.extras) {
            if (beginsWith(extra.name, prefix::trigger)) {
                statement(extra.value);
            }
        }
    }
    for (Key const& key : structure.keys) {
        if (has(key, extra::enabled)) {
            leftOut({"state of the triggers of the key " + key.name + " of " + tableName(key.table),
                     "only a superuser may set it: enabled " + valueOf(key.extras, extra::enabled), ""});
        }
    }
    tellOmissions(&ForeignStructure::ofTriggers);
}

/// The extensions with which a thing goes when they are dropped.
void SqlWriter::writeExtensionNeeds() {
    auto const writeOne = [this](Named const& thing) {
        if (has(thing, extra::dependsOnExtension)) {
            statement(valueOf(thing.extras, extra::dependsOnExtension));
        }
    };
    auto const write = [&](auto const& things) { std::for_each(things.begin(), things.end(), writeOne); };
    write(structure.tables);
    write(structure.keys);
    for (Index const& index : structure.indexes) {
        if (isWritten(index)) {
            writeOne(index);
        }
    }
    write(structure.triggers);
    write(structure.routines);
}

} // namespace postgres
