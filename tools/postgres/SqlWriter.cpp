#include "postgres/SqlWriter.h"

#include "database/Enumerations.h"
#include "database/Writable.h"
#include "postgres/ArrayCasts.h"
#include "postgres/CatalogKinds.h"
#include "postgres/ForeignStructure.h"
#include "postgres/ForeignTypes.h"
#include "postgres/SqlNames.h"
#include "postgres/StatementOrder.h"

#include <algorithm>
#include <map>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <utility>

namespace postgres {
namespace {

using namespace database;

template <class Record>
Record const& at(std::vector<Record> const& records, int index) {
    return records[static_cast<std::size_t>(index)];
}

bool has(Named const& thing, char const* extra) {
    return findExtra(thing.extras, extra) != nullptr;
}

std::string valueOf(Extras const& extras, char const* name) {
    std::string const* const value = findExtra(extras, name);
    return value ? *value : "";
}

/// An extra between other words, nothing without it.
std::string clause(Extras const& extras, char const* name, char const* before, char const* behind = "") {
    std::string const value = valueOf(extras, name);
    return value.empty() ? "" : before + value + behind;
}

bool beginsWith(std::string const& text, std::string_view start) {
    return text.compare(0, start.size(), start) == 0;
}

/// SQL behind which more can stand: what may be a comment in its last line ends there.
std::string withCommentEnded(std::string const& sql) {
    auto const line = sql.rfind('\n');
    return sql.find("--", line == std::string::npos ? 0 : line) == std::string::npos ? sql : sql + "\n";
}

/// The same for all expressions of a database. Those that the server prints have no comments, but a graph can
/// come from anywhere.
Structure withCommentsEnded(Structure structure) {
    auto const end = [](std::string& sql) { sql = withCommentEnded(sql); };
    auto const endExtra = [](Extras& extras) {
        for (Extra& extra : extras) {
            extra.value = extra.name == "where" ? withCommentEnded(extra.value) : extra.value;
        }
    };
    for (Type& type : structure.types) {
        end(type.defaultValue);
    }
    for (Table& table : structure.tables) {
        std::for_each(table.columns.begin(), table.columns.end(),
                      [&](Column& column) { end(column.defaultValue); });
    }
    for (Check& check : structure.checks) {
        end(check.expression);
    }
    for (Index& index : structure.indexes) {
        endExtra(index.extras);
        std::for_each(index.members.begin(), index.members.end(),
                      [&](IndexMember& member) { end(member.expression); });
    }
    return structure;
}

std::string identityText(Column const& column) {
    return clause(column.extras, "identity", " GENERATED ", " AS IDENTITY") +
           clause(column.extras, "identity sequence", " (", ")");
}

/// Nothing for what holds where nothing is said.
std::string actionClause(char const* event, Action action) {
    return action == Action::NO_ACTION ? "" : std::string(event) + textOf(action);
}

/// The server has nothing to tell of options that weren't read, nor has a graph.
Omission secretsOf(std::string const& thing) {
    return {"options of " + thing, "they may be secret; whether any exist is unknown", ""};
}

/// A type of functions in C or of the server; empty if its statement isn't known.
std::string baseTypeStatement(Type const& type, std::string const& name) {
    std::string const parts = valueOf(type.extras, "base");
    if (has(type, "shell")) {
        return "CREATE TYPE " + name;
    }
    return beginsWith(parts, "INPUT = ") ? "CREATE TYPE " + name + " (" + parts + ")" : "";
}

/// What stands in the place of a statement.
Creation omitted(Omission omission) {
    Creation made;
    made.omission = std::move(omission);
    return made;
}

/// The schema and the name of what a statement makes.
std::pair<std::string, std::string> firstQualifiedName(std::string const& statement) {
    std::pair<std::string, std::string> result;
    forEachName(statement, [&](std::vector<std::string> const& parts) {
        if (parts.size() > 1 && result.second.empty()) {
            result = {parts[0], parts[1]};
        }
    });
    return result;
}

class Writer {
public:
    /// `translation` says what was left out of the structure of another system; null for one of PostgreSQL.
    Writer(Structure const& toWrite, ForeignStructure const* translation, std::ostream& stream)
        : structure(toWrite), translated(translation), out(stream) {}

    Omissions run() {
        groupByOwner();
        findLateDefaults();
        writeSettings();
        writeSchemas();
        writeCatalogExtras(Moment::FIRST);
        writeCatalogExtras(Moment::NEVER);
        writeObjects();
        writeIndexes();
        writeForeignKeys();
        writeAlterations();
        writeTableExtras();
        writeTriggers();
        writeCatalogExtras(Moment::BEHIND_TRIGGERS);
        writeComments();
        writeExtensionNeeds();
        writeCatalogExtras(Moment::LAST);
        return std::move(omissions);
    }

private:
    void groupByOwner();
    void findLateDefaults();
    void addLateDefaults(int table, std::string const& name);
    void writeSettings();
    void writeSchemas();
    void writeCatalogExtras(Moment moment);
    void writeObjects();
    void addTypes(std::vector<Creation>& creations);
    void addSequences(std::vector<Creation>& creations);
    void addCatalogExtras(std::vector<Creation>& creations, Moment moment);
    void addTables(std::vector<Creation>& creations);
    void addPartitions(std::vector<Creation>& creations);
    void addRoutines(std::vector<Creation>& creations);
    void writeIndexes();
    void writeParts();
    void writeForeignKeys();
    void writeForeignKey(Key const& key);
    bool isNamedByParent(Key const& key) const;
    int depthOf(int table) const;
    bool isLaterCheckOfParent(Table const& table, std::string const& name) const;
    void writeAlterations();
    void writeTableAlterations(int index);
    void writeIndexUse(int table, Named const& index, bool isClustered);
    void writeColumnAlterations(Table const& table);
    Column inheritedColumn(Table const& table, std::string const& name, std::size_t depth = 0) const;
    void writeTableExtras();
    void writeTriggers();
    void writeComments();
    void writeTypeComments();
    void writeTableComments();
    void writeExtensionNeeds();

    std::string typeStatement(Type const& type, int index, bool isBare = false);
    std::string restOfDomain(int index);
    std::string tableStatement(Table const& table, int index, bool isBare = false);
    std::string tableParts(Table const& table, int index, bool isBare);
    std::string restOfTable(int index);
    std::string restOfDefault(int table, Column const& column);
    std::string viewStatement(Table const& table);
    std::string emptyView(Table const& table);
    std::string columnText(Table const& table, Column const& column, bool isBare);
    bool isLateDefault(Table const& table, Column const& column) const {
        auto const index = static_cast<int>(&table - structure.tables.data());
        return !column.generated && !column.defaultValue.empty() &&
               lateDefaults.count({index, column.name}) > 0;
    }
    std::string keyText(Key const& key);
    std::string checkText(Check const& check);
    std::string indexText(Index const& index);
    std::string memberText(Index const& index, IndexMember const& member);

    std::string schemaName(int schema) const { return schema < 0 ? "" : at(structure.schemas, schema).name; }
    std::string qualified(int schema, std::string const& name) const {
        return (schema < 0 ? "" : quoteName(schemaName(schema)) + ".") + quoteName(name);
    }
    std::string tableName(int table) const {
        return qualified(at(structure.tables, table).schema, at(structure.tables, table).name);
    }
    std::string typeName(int type) const;
    std::string columnNames(int table, std::vector<int> const& columns) const;
    bool isPartition(Table const& table) const { return has(table, "partition bound"); }
    bool isPartitioned(int table) const { return has(at(structure.tables, table), "partition by"); }
    /// An index that isn't valid is, unless it is one of a partitioned table, what a failure left. No
    /// statement makes such.
    bool isWritten(Index const& index) const {
        return !has(index, "not valid") || isPartitioned(index.table);
    }
    /// Keys and indexes of these are put together once the tables are.
    bool isInPartitions(int table) const {
        return isPartitioned(table) || isPartition(at(structure.tables, table));
    }
    /// True for what a table has from its parents alone. A partition is made by itself and becomes one later.
    bool isInherited(int table, Named const& thing) const {
        return valueOf(thing.extras, "inherited") == "true" && !isPartition(at(structure.tables, table));
    }
    void statement(std::string const& text) {
        out << withCommentEnded(translated ? text : keepArrayCasts(text)) << ";\n";
    }
    void leftOut(Omission const& omission) { leaveOut(omission, out, omissions); }
    void tellOmissions(Omissions ForeignStructure::*which) {
        for (Omission const& omission : translated ? translated->*which : Omissions()) {
            leftOut(omission);
        }
    }
    void comment(std::string const& kind, std::string const& name, std::string const& text) {
        if (!text.empty()) {
            statement("COMMENT ON " + kind + " " + name + " IS " + quoteText(text));
        }
    }

    Structure const& structure;
    ForeignStructure const* const
        translated; ///< what was left out of the structure of another system, or null
    std::ostream& out;
    Omissions omissions;
    std::vector<std::vector<Key const*>> keysOfTable;
    std::vector<std::vector<Check const*>> checksOfTable;
    std::vector<std::vector<Check const*>> checksOfType;
    std::set<std::pair<int, std::string>> lateDefaults; ///< table and column; set once all tables are made
};

void Writer::groupByOwner() {
    keysOfTable.resize(structure.tables.size());
    checksOfTable.resize(structure.tables.size());
    checksOfType.resize(structure.types.size());
    for (Key const& key : structure.keys) {
        keysOfTable[static_cast<std::size_t>(key.table)].push_back(&key);
    }
    for (Check const& check : structure.checks) {
        auto& owners = check.table >= 0 ? checksOfTable : checksOfType;
        owners[static_cast<std::size_t>(check.table >= 0 ? check.table : check.type)].push_back(&check);
    }
}

/// No table can be made under parents that pass on different defaults of a column, but the default of a
/// parent can be changed afterwards.
void Writer::findLateDefaults() {
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

/// Those of all tables above one.
void Writer::addLateDefaults(int table, std::string const& name) {
    for (int const parent : at(structure.tables, table).parents) {
        if (lateDefaults.emplace(parent, name).second) {
            addLateDefaults(parent, name);
        }
    }
}

/// The bodies of functions aren't looked at, so that they may name what comes later.
void Writer::writeSettings() {
    writeComment("The structure of " + structure.catalog.name + ", for PostgreSQL", out);
    out << "SET client_encoding = 'UTF8';\nSET standard_conforming_strings = on;\n"
           "SET check_function_bodies = off;\nSET client_min_messages = warning;\n";
    statement("SET search_path = ''");
    out << '\n';
}

void Writer::writeSchemas() {
    for (Schema const& schema : structure.schemas) {
        if (!has(schema, "extension")) {
            statement("CREATE SCHEMA IF NOT EXISTS " + quoteName(schema.name));
        }
    }
}

/// What stands for itself in the catalog and is made at that moment.
void Writer::writeCatalogExtras(Moment moment) {
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

std::string Writer::typeName(int index) const {
    if (index < 0) {
        return "text";
    }
    Type const& type = at(structure.types, index);
    if (type.kind != TypeKind::BUILT_IN || type.schema >= 0) {
        return qualified(type.schema, type.name);
    }
    return type.declaration.empty() ? translatedType(type) : type.declaration;
}

std::string Writer::columnNames(int table, std::vector<int> const& columns) const {
    std::string names;
    for (int const column : columns) {
        names +=
            (names.empty() ? "" : ", ") + quoteName(at(at(structure.tables, table).columns, column).name);
    }
    return "(" + names + ")";
}

/// The types, sequences, tables, functions and views, each behind what it needs.
void Writer::writeObjects() {
    std::vector<Creation> creations;
    addCatalogExtras(creations, Moment::BEFORE_TYPES);
    addTypes(creations);
    addSequences(creations);
    addCatalogExtras(creations, Moment::BEHIND_TYPES);
    addTables(creations);
    addPartitions(creations);
    addRoutines(creations);
    // Tables come before functions and functions before views, unless one needs the other.
    std::stable_partition(creations.begin(), creations.end(), [](Creation const& creation) {
        return !beginsWith(creation.statement, "CREATE VIEW") &&
               !beginsWith(creation.statement, "CREATE MATERIALIZED");
    });
    splitCircles(creations, false);
    for (std::size_t const index : orderByNeeds(creations, false)) {
        Creation const& creation = creations[index];
        out << '\n';
        if (creation.omission) {
            leftOut(*creation.omission);
            continue;
        }
        statement(creation.statement);
        if (translated && creation.table >= 0) {
            for (Omission const& omission : at(translated->ofTables, creation.table)) {
                leftOut(omission);
            }
        }
    }
    out << '\n';
    tellOmissions(&ForeignStructure::ofObjects);
}

/// A type whose functions name it begins as a shell.
void Writer::addTypes(std::vector<Creation>& creations) {
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        Type const& type = structure.types[i];
        if (type.kind == TypeKind::BUILT_IN && type.schema < 0) {
            continue;
        }
        auto const index = static_cast<int>(i);
        Creation made = {schemaName(type.schema), type.name, typeStatement(type, index)};
        bool const hasShell =
            has(type, "base") || valueOf(type.extras, "range").find("CANONICAL = ") != std::string::npos;
        if (made.statement.empty()) {
            creations.push_back(omitted({"base type " + type.declaration, "its statement wasn't read", ""}));
            continue;
        }
        if (hasShell) {
            made.isLast = true;
            creations.insert(creations.begin(),
                             {"", "", "CREATE TYPE " + qualified(type.schema, type.name), 0});
        }
        if (type.kind == TypeKind::DOMAIN_TYPE) {
            made.bare = typeStatement(type, index, true);
            made.rest = restOfDomain(index);
        }
        creations.push_back(std::move(made));
    }
}

void Writer::addSequences(std::vector<Creation>& creations) {
    for (Sequence const& sequence : structure.sequences) {
        Extras const& extras = sequence.extras;
        creations.push_back(
            {schemaName(sequence.schema), sequence.name,
             (has(sequence, "unlogged") ? "CREATE UNLOGGED SEQUENCE " : "CREATE SEQUENCE ") +
                 qualified(sequence.schema, sequence.name) + clause(extras, "type", " AS ") +
                 clause(extras, "start", " START WITH ") + clause(extras, "increment", " INCREMENT BY ") +
                 clause(extras, "minimum", " MINVALUE ") + clause(extras, "maximum", " MAXVALUE ") +
                 clause(extras, "cache", " CACHE ") + (has(sequence, "cycle") ? " CYCLE" : "")});
    }
}

/// Comments stand behind and need nothing.
void Writer::addCatalogExtras(std::vector<Creation>& creations, Moment moment) {
    for (Extra const* const extra : extrasOf(structure.catalog.extras, moment)) {
        if (kindOf(*extra).hasSecrets) {
            creations.push_back(omitted(secretsOf(extra->name)));
        }
        Creation made = {"", "", extra->value, extra->value.find(";\nCOMMENT ON "), true};
        if (kindOf(*extra).inSchema) {
            std::tie(made.schema, made.name) = firstQualifiedName(extra->value);
        }
        creations.push_back(std::move(made));
    }
}

void Writer::addTables(std::vector<Creation>& creations) {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        auto const index = static_cast<int>(i);
        bool const isTable = table.kind == TableKind::TABLE;
        Creation made = {schemaName(table.schema), table.name,
                         isTable ? tableStatement(table, index) : viewStatement(table)};
        made.table = index;
        if (isTable) {
            made.bare = tableStatement(table, index, true);
            made.rest = restOfTable(index);
        } else if (table.kind == TableKind::VIEW) {
            made.bare = emptyView(table);
            made.rest = "CREATE OR REPLACE" + made.statement.substr(std::string("CREATE").size());
        }
        if (has(table, "server")) {
            creations.push_back(omitted(secretsOf("foreign table " + tableName(index))));
        }
        creations.push_back(std::move(made));
    }
}

/// Partitions have neither keys nor indexes when they become such, so that the server makes none by itself:
/// each is made as it is and then becomes a part of that of the partitioned table.
void Writer::addPartitions(std::vector<Creation>& creations) {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        std::string const parent =
            table.parents.empty() ? valueOf(table.extras, "inherits") : tableName(table.parents.front());
        if (isPartition(table) && !parent.empty()) {
            creations.push_back({"", "",
                                 "ALTER TABLE ONLY " + parent + " ATTACH PARTITION " +
                                     tableName(static_cast<int>(i)) + " " +
                                     valueOf(table.extras, "partition bound")});
            if (has(table, "detach pending")) {
                creations.push_back(omitted({"detaching of " + tableName(static_cast<int>(i)),
                                             "it isn't complete, from " + parent, ""}));
            }
        }
    }
    for (Key const& key : structure.keys) {
        if (key.kind != KeyKind::FOREIGN && isInPartitions(key.table)) {
            creations.push_back(
                {"", "", "ALTER TABLE ONLY " + tableName(key.table) + " ADD " + keyText(key)});
        }
    }
}

/// A body that is a text isn't looked at. One that is SQL can stand in a circle, and so gets an empty text
/// first.
void Writer::addRoutines(std::vector<Creation>& creations) {
    for (Routine const& routine : structure.routines) {
        std::string const& text = routine.statement;
        Creation made = {schemaName(routine.schema), routine.name, text, text.find("\nAS ")};
        auto const body = std::min(text.find("\nBEGIN ATOMIC"), text.find("\nRETURN "));
        if (made.lookedAt == std::string::npos && body != std::string::npos) {
            made.bare = text.substr(0, body) + "\nAS ''";
            made.rest = text;
        }
        creations.push_back(std::move(made));
    }
}

std::string Writer::typeStatement(Type const& type, int index, bool isBare) {
    std::string const name = qualified(type.schema, type.name);
    if (type.kind == TypeKind::ENUMERATION) {
        std::string values;
        for (std::string const& value : type.values) {
            values += (values.empty() ? "" : ", ") + quoteText(value);
        }
        return "CREATE TYPE " + name + " AS ENUM (" + values + ")";
    }
    if (type.kind == TypeKind::COMPOSITE) {
        return "CREATE TYPE " + name + " AS (" + valueOf(type.extras, "attributes") + ")";
    }
    if (type.kind == TypeKind::RANGE) {
        return "CREATE TYPE " + name + " AS RANGE (" + valueOf(type.extras, "range") + ")";
    }
    if (type.kind != TypeKind::DOMAIN_TYPE) {
        return baseTypeStatement(type, name);
    }
    std::string text = "CREATE DOMAIN " + name + " AS " + typeName(type.base) +
                       clause(type.extras, "collation", " COLLATE ") +
                       (type.defaultValue.empty() || isBare ? "" : " DEFAULT " + type.defaultValue) +
                       (type.notNull ? " NOT NULL" : "");
    for (Check const* const check : checksOfType[static_cast<std::size_t>(index)]) {
        text += has(*check, "not valid") || isBare ? "" : " " + checkText(*check);
    }
    return text;
}

std::string Writer::restOfDomain(int index) {
    Type const& type = at(structure.types, index);
    std::string const start = "ALTER DOMAIN " + typeName(index);
    std::string text = type.defaultValue.empty() ? "" : start + " SET DEFAULT " + type.defaultValue;
    for (Check const* const check : checksOfType[static_cast<std::size_t>(index)]) {
        if (!has(*check, "not valid")) {
            text += (text.empty() ? "" : ";\n") + start + " ADD " + checkText(*check);
        }
    }
    return text;
}

std::string Writer::checkText(Check const& check) {
    return (check.name.empty() ? "" : "CONSTRAINT " + quoteName(check.name) + " ") + "CHECK (" +
           check.expression + ")" + (has(check, "no inherit") ? " NO INHERIT" : "") +
           (has(check, "not valid") ? " NOT VALID" : "");
}

std::string Writer::tableStatement(Table const& table, int index, bool isBare) {
    bool const isForeignTable = has(table, "server");
    std::string const type = valueOf(table.extras, "of");
    std::string const parts = tableParts(table, index, isBare);
    std::string text = std::string("CREATE ") + (has(table, "unlogged") ? "UNLOGGED " : "") +
                       (isForeignTable ? "FOREIGN " : "") + "TABLE " + tableName(index);
    if (!type.empty()) {
        text += " OF " + type + (parts.empty() ? "" : " (" + parts + "\n)");
    } else {
        text += " (" + parts + (parts.empty() ? ")" : "\n)");
    }
    std::string parents = valueOf(table.extras, "inherits");
    for (int const parent : table.parents) {
        parents += (parents.empty() ? "" : ", ") + tableName(parent);
    }
    text += parents.empty() || isPartition(table) ? "" : " INHERITS (" + parents + ")";
    text += clause(table.extras, "partition by", " PARTITION BY ");
    if (isForeignTable) {
        return text + " SERVER " + quoteName(valueOf(table.extras, "server")) +
               clause(table.extras, "options", " OPTIONS (", ")");
    }
    if (has(table, "access method")) {
        text += " USING " + quoteName(valueOf(table.extras, "access method"));
    }
    text += clause(table.extras, "with", " WITH (", ")");
    return text +
           (has(table, "tablespace") ? " TABLESPACE " + quoteName(valueOf(table.extras, "tablespace")) : "");
}

/// The columns and constraints, one on each line.
std::string Writer::tableParts(Table const& table, int index, bool isBare) {
    std::string parts;
    auto const add = [&](std::string const& part) {
        parts += part.empty() ? "" : (parts.empty() ? "\n    " : ",\n    ") + part;
    };
    for (Column const& column : table.columns) {
        if (!isInherited(index, column)) {
            add(columnText(table, column, isBare));
        }
    }
    for (Key const* const key : keysOfTable[static_cast<std::size_t>(index)]) {
        add(key->kind == KeyKind::FOREIGN || isInPartitions(index) ? "" : keyText(*key));
    }
    for (Check const* const check : checksOfTable[static_cast<std::size_t>(index)]) {
        bool const isLater = isBare || has(*check, "not valid") || isInherited(index, *check);
        add(isLater ? "" : checkText(*check));
    }
    return parts;
}

/// The defaults and checks of a table that has been made without.
std::string Writer::restOfTable(int index) {
    Table const& table = at(structure.tables, index);
    std::string text;
    for (Column const& column : table.columns) {
        bool const isSet = !column.defaultValue.empty() && !column.generated && !isInherited(index, column);
        text += isSet ? restOfDefault(index, column) : "";
    }
    for (Check const* const check : checksOfTable[static_cast<std::size_t>(index)]) {
        if (!has(*check, "not valid") && !isInherited(index, *check)) {
            text += ";\nALTER TABLE " + tableName(index) + " ADD " + checkText(*check);
        }
    }
    return text.empty() ? "" : text.substr(2);
}

/// Tables that inherit the column had nothing to inherit yet.
std::string Writer::restOfDefault(int table, Column const& column) {
    std::string text = ";\nALTER TABLE ONLY " + tableName(table) + " ALTER COLUMN " + quoteName(column.name) +
                       " SET DEFAULT " + column.defaultValue;
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& heir = structure.tables[i];
        bool const isHeir = std::find(heir.parents.begin(), heir.parents.end(), table) != heir.parents.end();
        for (Column const& inherited : heir.columns) {
            bool const isSame = inherited.name == column.name && isInherited(static_cast<int>(i), inherited);
            if (isHeir && isSame && !inherited.defaultValue.empty()) {
                text += restOfDefault(static_cast<int>(i), inherited);
            }
        }
    }
    return text;
}

std::string Writer::columnText(Table const& table, Column const& column, bool isBare) {
    Extras const& extras = column.extras;
    std::string text = quoteName(column.name);
    if (has(table, "of")) {
        bool const isChanged = column.notNull || !column.defaultValue.empty();
        if (!isChanged) {
            return "";
        }
        text += " WITH OPTIONS";
    } else {
        text += " " + typeName(column.type) + clause(extras, "options", " OPTIONS (", ")") +
                clause(extras, "collation", " COLLATE ");
    }
    if (column.generated) {
        text += " GENERATED ALWAYS AS (" + column.defaultValue + ") ";
        text += valueOf(extras, "generated") == "VIRTUAL" ? "VIRTUAL" : "STORED";
    } else if (has(column, "identity")) {
        text += identityText(column);
    } else if (!column.defaultValue.empty() && !isBare && !isLateDefault(table, column)) {
        text += " DEFAULT " + column.defaultValue;
    }
    return text + (column.notNull ? " NOT NULL" : "");
}

std::string Writer::keyText(Key const& key) {
    std::string text = key.name.empty() ? "" : "CONSTRAINT " + quoteName(key.name) + " ";
    text += key.kind == KeyKind::PRIMARY  ? "PRIMARY KEY "
            : key.kind == KeyKind::UNIQUE ? "UNIQUE "
                                          : "FOREIGN KEY ";
    text += has(key, "nulls not distinct") ? "NULLS NOT DISTINCT " : "";
    text += columnNames(key.table, key.columns);
    if (key.kind != KeyKind::FOREIGN) {
        text += clause(key.extras, "include", " INCLUDE (", ")") + clause(key.extras, "with", " WITH (", ")");
        std::string const space = valueOf(key.extras, "tablespace");
        text += space.empty() ? "" : " USING INDEX TABLESPACE " + quoteName(space);
    } else {
        text += key.referredTable < 0 || key.referredColumns.empty()
                    ? clause(key.extras, "references", " REFERENCES ")
                    : " REFERENCES " + tableName(key.referredTable) + " " +
                          columnNames(key.referredTable, key.referredColumns);
        text += clause(key.extras, "match", " MATCH ") + actionClause(" ON UPDATE ", key.onUpdate) +
                actionClause(" ON DELETE ", key.onDelete) +
                clause(key.extras, "on delete columns", " (", ")");
    }
    return text + clause(key.extras, "deferrable", " DEFERRABLE ") +
           (has(key, "not valid") ? " NOT VALID" : "");
}

/// A view of the same columns and no rows, which needs nothing but their types.
std::string Writer::emptyView(Table const& table) {
    std::string columns;
    for (Column const& column : table.columns) {
        columns += (columns.empty() ? " NULL::" : ", NULL::") + typeName(column.type) +
                   clause(column.extras, "collation", " COLLATE ") + " AS " + quoteName(column.name);
    }
    return "CREATE VIEW " + qualified(table.schema, table.name) + " AS SELECT" + columns;
}

/// The names of the columns follow from the statement.
std::string Writer::viewStatement(Table const& table) {
    bool const stored = table.kind == TableKind::MATERIALIZED_VIEW;
    std::string text = std::string("CREATE ") + (stored ? "MATERIALIZED " : "") + "VIEW " +
                       qualified(table.schema, table.name);
    if (has(table, "access method")) {
        text += " USING " + quoteName(valueOf(table.extras, "access method"));
    }
    text += clause(table.extras, "with", " WITH (", ")");
    text += has(table, "tablespace") ? " TABLESPACE " + quoteName(valueOf(table.extras, "tablespace")) : "";
    return text + " AS\n" + table.statement + (stored ? "\n WITH NO DATA" : "");
}

/// One of a partitioned table becomes valid once each partition has its part.
void Writer::writeIndexes() {
    for (Index const& index : structure.indexes) {
        if (!isWritten(index)) {
            leftOut({"index " + index.name, "it isn't valid", indexText(index)});
            continue;
        }
        statement(indexText(index));
        for (std::size_t i = 0; i < index.members.size(); ++i) {
            std::string const target = valueOf(index.members[i].extras, "statistics");
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
void Writer::writeParts() {
    auto const attach = [this](Named const& thing, int table) {
        if (has(thing, "part of") && !thing.name.empty()) {
            statement("ALTER INDEX " + valueOf(thing.extras, "part of") + " ATTACH PARTITION " +
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

std::string Writer::indexText(Index const& index) {
    std::string members;
    for (IndexMember const& member : index.members) {
        members += (members.empty() ? "" : ", ") + memberText(index, member);
    }
    std::string const space = valueOf(index.extras, "tablespace");
    std::string const method = valueOf(index.extras, "method");
    return std::string("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX " +
           (index.name.empty() ? "" : quoteName(index.name) + " ") +
           (isPartitioned(index.table) ? "ON ONLY " : "ON ") + tableName(index.table) +
           (method.empty() ? "" : " USING " + quoteName(method)) + " (" + members + ")" +
           clause(index.extras, "include", " INCLUDE (", ")") +
           (has(index, "nulls not distinct") ? " NULLS NOT DISTINCT" : "") +
           clause(index.extras, "with", " WITH (", ")") +
           (space.empty() ? "" : " TABLESPACE " + quoteName(space)) +
           clause(index.extras, "where", " WHERE ");
}

std::string Writer::memberText(Index const& index, IndexMember const& member) {
    std::string text = member.column >= 0
                           ? quoteName(at(at(structure.tables, index.table).columns, member.column).name)
                           : "(" + member.expression + ")";
    text += clause(member.extras, "collation", " COLLATE ") + clause(member.extras, "opclass", " ") +
            clause(member.extras, "opclass options", " (", ")");
    return text + (member.descending ? " DESC" : "") + clause(member.extras, "nulls", " NULLS ");
}

/// A foreign key of a partition comes with that of the partitioned table and bears its name. One of another
/// name is made before, from the lowest partitions on, and so becomes part of it.
void Writer::writeForeignKeys() {
    std::vector<std::pair<int, Key const*>> named;
    for (Key const& key : structure.keys) {
        if (key.kind == KeyKind::FOREIGN && has(key, "inherited") && !isNamedByParent(key)) {
            named.emplace_back(-depthOf(key.table), &key);
        }
    }
    std::stable_sort(named.begin(), named.end(),
                     [](auto const& a, auto const& b) { return a.first < b.first; });
    for (auto const& entry : named) {
        writeForeignKey(*entry.second);
    }
    for (Key const& key : structure.keys) {
        if (key.kind == KeyKind::FOREIGN && !has(key, "inherited")) {
            writeForeignKey(key);
        }
    }
    tellOmissions(&ForeignStructure::ofForeignKeys);
}

bool Writer::isNamedByParent(Key const& key) const {
    std::vector<int> const& parents = at(structure.tables, key.table).parents;
    if (parents.empty()) {
        return true;
    }
    auto const& keys = keysOfTable[static_cast<std::size_t>(parents.front())];
    return std::any_of(keys.begin(), keys.end(), [&](Key const* other) { return other->name == key.name; });
}

/// How many tables a partition is under; a graph that goes in a circle is left after one round.
int Writer::depthOf(int table) const {
    int depth = 0;
    while (!at(structure.tables, table).parents.empty() &&
           depth < static_cast<int>(structure.tables.size())) {
        table = at(structure.tables, table).parents.front();
        ++depth;
    }
    return depth;
}

void Writer::writeForeignKey(Key const& key) {
    if (key.referredColumns.empty() && !has(key, "references")) {
        leftOut(
            {"foreign key " + key.name + " of " + tableName(key.table), "what it refers to is unknown", ""});
        return;
    }
    statement(std::string("ALTER TABLE ") + (isPartitioned(key.table) ? "" : "ONLY ") + tableName(key.table) +
              " ADD " + keyText(key));
}

/// True for a check that each partition gets when its partitioned table does.
bool Writer::isLaterCheckOfParent(Table const& table, std::string const& name) const {
    return std::any_of(table.parents.begin(), table.parents.end(), [&](int parent) {
        auto const& checks = checksOfTable[static_cast<std::size_t>(parent)];
        return std::any_of(checks.begin(), checks.end(), [&](Check const* check) {
            return check->name == name && has(*check, "not valid");
        });
    });
}

/// What can't be said where a thing is made.
void Writer::writeAlterations() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        writeTableAlterations(static_cast<int>(i));
    }
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        for (Check const* const check : checksOfType[i]) {
            if (has(*check, "not valid")) {
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
        if (has(sequence, "owned by")) {
            statement("ALTER SEQUENCE " + qualified(sequence.schema, sequence.name) + " OWNED BY " +
                      valueOf(sequence.extras, "owned by"));
        }
    }
}

void Writer::writeTableAlterations(int index) {
    Table const& table = at(structure.tables, index);
    writeColumnAlterations(table);
    for (Check const* const check : checksOfTable[static_cast<std::size_t>(index)]) {
        bool const comesWithParent =
            isInherited(index, *check) || (isPartition(table) && isLaterCheckOfParent(table, check->name));
        if (has(*check, "not valid") && !comesWithParent) {
            statement("ALTER TABLE " + tableName(index) + " ADD " + checkText(*check));
        }
    }
    for (Key const* const key : keysOfTable[static_cast<std::size_t>(index)]) {
        writeIndexUse(index, *key, has(*key, "clustered"));
    }
    if (has(table, "replica identity")) {
        statement("ALTER TABLE ONLY " + tableName(index) + " REPLICA IDENTITY " +
                  valueOf(table.extras, "replica identity"));
    }
}

/// What a table uses an index for, be it that of a key.
void Writer::writeIndexUse(int table, Named const& index, bool isClustered) {
    if (index.name.empty()) {
        return; // the server names it as it likes
    }
    if (isClustered) {
        statement("ALTER TABLE " + tableName(table) + " CLUSTER ON " + quoteName(index.name));
    }
    if (has(index, "replica identity")) {
        statement("ALTER TABLE ONLY " + tableName(table) + " REPLICA IDENTITY USING INDEX " +
                  quoteName(index.name));
    }
}

/// A column as the parents pass it on when the table is made: what is altered afterwards isn't yet there. A
/// graph in which tables inherit in a circle is left after one round.
Column Writer::inheritedColumn(Table const& table, std::string const& name, std::size_t depth) const {
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

/// A column that comes from a parent can differ from it in its default and in being required.
void Writer::writeColumnAlterations(Table const& table) {
    for (Column const& column : table.columns) {
        std::string const start = "ALTER TABLE ONLY " + qualified(table.schema, table.name) +
                                  " ALTER COLUMN " + quoteName(column.name) + " ";
        bool const isOfView = table.kind != TableKind::TABLE;
        bool const isOfParent = valueOf(column.extras, "inherited") == "true" && !isPartition(table);
        Column const made = isOfParent ? inheritedColumn(table, column.name) : column;
        bool const hasOwnDefault =
            isLateDefault(table, column) || (!column.generated && made.defaultValue != column.defaultValue);
        bool const hasOwnNotNull = column.notNull && !made.notNull;
        if (hasOwnDefault || (isOfView && !column.defaultValue.empty())) {
            statement(start +
                      (column.defaultValue.empty() ? "DROP DEFAULT" : "SET DEFAULT " + column.defaultValue));
        }
        if (hasOwnNotNull) {
            statement(start + "SET NOT NULL");
        }
        if (isOfParent && has(column, "identity")) {
            statement(start + "ADD" + identityText(column));
        }
        if (has(column, "identity changes")) {
            statement(valueOf(column.extras, "identity changes"));
        }
        std::pair<char const*, std::string> const settings[] = {{"storage", "SET STORAGE "},
                                                                {"compression", "SET COMPRESSION "},
                                                                {"statistics", "SET STATISTICS "}};
        for (auto const& [name, words] : settings) {
            if (has(column, name)) {
                statement(start + words + valueOf(column.extras, name));
            }
        }
        if (has(column, "with")) {
            statement(start + "SET (" + valueOf(column.extras, "with") + ")");
        }
    }
}

/// Exclusion constraints, policies, rules and statistics.
void Writer::writeTableExtras() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        for (Extra const& extra : table.extras) {
            bool const isStatement = beginsWith(extra.name, "exclusion ") ||
                                     beginsWith(extra.name, "policy ") || beginsWith(extra.name, "rule ") ||
                                     beginsWith(extra.name, "statistics ");
            if (isStatement) {
                statement(extra.value);
            }
        }
        std::string const security = valueOf(table.extras, "row security");
        std::string const start = "ALTER TABLE " + tableName(static_cast<int>(i));
        if (security == "ENABLED" || security == "FORCED") {
            statement(start + " ENABLE ROW LEVEL SECURITY");
        }
        if (beginsWith(security, "FORCED")) {
            statement(start + " FORCE ROW LEVEL SECURITY");
        }
    }
}

void Writer::writeTriggers() {
    for (Trigger const& trigger : structure.triggers) {
        statement(trigger.statement);
        std::string const enabled = valueOf(trigger.extras, "enabled");
        if (!enabled.empty()) {
            statement("ALTER TABLE " + tableName(trigger.table) +
                      (enabled == "NO" ? " DISABLE" : " ENABLE " + enabled) + " TRIGGER " +
                      quoteName(trigger.name));
        }
    }
    for (Table const& table : structure.tables) {
        for (Extra const& extra : table.extras) {
            if (beginsWith(extra.name, "trigger ")) {
                statement(extra.value);
            }
        }
    }
    for (Key const& key : structure.keys) {
        if (has(key, "enabled")) {
            leftOut({"state of the triggers of the key " + key.name + " of " + tableName(key.table),
                     "only a superuser may set it: enabled " + valueOf(key.extras, "enabled"), ""});
        }
    }
    tellOmissions(&ForeignStructure::ofTriggers);
}

/// The extensions with which a thing goes when they are dropped.
void Writer::writeExtensionNeeds() {
    auto const writeOne = [this](Named const& thing) {
        if (has(thing, "depends on extension")) {
            statement(valueOf(thing.extras, "depends on extension"));
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

/// The types by which one function is told from others of its name.
std::string signatureOf(Structure const& structure, Routine const& routine,
                        std::string const& (*typeText)(Type const&)) {
    std::string types;
    for (Argument const& argument : routine.arguments) {
        bool const isResult = argument.mode == ArgumentMode::RESULT_COLUMN;
        if (isResult || (argument.mode == ArgumentMode::OUT && !routine.procedure)) {
            continue;
        }
        types += types.empty() ? "" : ", ";
        types += argument.mode == ArgumentMode::OUT ? "OUT " : "";
        types += argument.mode == ArgumentMode::VARIADIC ? "VARIADIC " : "";
        types += argument.type < 0 ? "unknown" : typeText(at(structure.types, argument.type));
    }
    return "(" + types + ")";
}

void Writer::writeComments() {
    if (!structure.catalog.comment.empty()) {
        statement("DO " +
                  quoteText("BEGIN EXECUTE format('COMMENT ON DATABASE %I IS %L', current_database(), " +
                            quoteText(structure.catalog.comment) + "); END"));
    }
    for (Schema const& schema : structure.schemas) {
        if (!has(schema, "extension")) {
            comment("SCHEMA", quoteName(schema.name), schema.comment);
        }
        if (schema.name == "public" && schema.comment.empty() && !translated) {
            statement("COMMENT ON SCHEMA public IS NULL");
        }
    }
    writeTypeComments();
    writeTableComments();
    for (Sequence const& sequence : structure.sequences) {
        comment("SEQUENCE", qualified(sequence.schema, sequence.name), sequence.comment);
    }
    for (Routine const& routine : structure.routines) {
        comment("ROUTINE",
                qualified(routine.schema, routine.name) +
                    signatureOf(structure, routine,
                                [](Type const& type) -> std::string const& { return type.declaration; }),
                routine.comment);
    }
}

void Writer::writeTypeComments() {
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        Type const& type = structure.types[i];
        if (type.kind == TypeKind::BUILT_IN && type.schema < 0) {
            continue; // the system's own
        }
        std::string const name = typeName(static_cast<int>(i));
        bool const isDomain = type.kind == TypeKind::DOMAIN_TYPE;
        comment(isDomain ? "DOMAIN" : "TYPE", name, type.comment);
        for (Check const* const check : checksOfType[i]) {
            comment("CONSTRAINT", quoteName(check->name) + " ON DOMAIN " + name,
                    check->name.empty() ? "" : check->comment);
        }
        constexpr std::string_view ofAttribute = "comment on ";
        for (Extra const& extra : type.extras) {
            if (beginsWith(extra.name, ofAttribute)) {
                comment("COLUMN", name + "." + quoteName(extra.name.substr(ofAttribute.size())), extra.value);
            }
        }
    }
}

void Writer::writeTableComments() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        std::string const name = tableName(static_cast<int>(i));
        comment(table.kind == TableKind::VIEW                ? "VIEW"
                : table.kind == TableKind::MATERIALIZED_VIEW ? "MATERIALIZED VIEW"
                : has(table, "server")                       ? "FOREIGN TABLE"
                                                             : "TABLE",
                name, table.comment);
        for (Column const& column : table.columns) {
            comment("COLUMN", name + "." + quoteName(column.name), column.comment);
        }
        for (Key const* const key : keysOfTable[i]) {
            comment("CONSTRAINT", quoteName(key->name) + " ON " + name,
                    key->name.empty() ? "" : key->comment);
            comment("INDEX", qualified(table.schema, key->name),
                    key->name.empty() ? "" : valueOf(key->extras, "comment on index"));
        }
        for (Check const* const check : checksOfTable[i]) {
            comment("CONSTRAINT", quoteName(check->name) + " ON " + name,
                    check->name.empty() ? "" : check->comment);
        }
    }
    for (Index const& index : structure.indexes) {
        comment("INDEX", qualified(at(structure.tables, index.table).schema, index.name),
                isWritten(index) && !index.name.empty() ? index.comment : "");
    }
    for (Trigger const& trigger : structure.triggers) {
        std::string const name = quoteName(trigger.name) + " ON " + tableName(trigger.table);
        comment("TRIGGER", name, trigger.comment);
        comment("CONSTRAINT", name, valueOf(trigger.extras, "comment on constraint"));
    }
}

} // namespace

Omissions writePostgresSql(Structure const& structure, std::ostream& out) {
    bool const isOwn = structure.origin.system == "PostgreSQL";
    Rules rules;
    rules.emptyTables = true;
    rules.strict = isOwn; // what other systems have is made to fit
    rules.typesNeeded = structure.origin.system != "SQLite";
    rules.comparesTypes = !isOwn;
    rules.utf8 = true;
    rules.brackets = structure.origin.system == "SQLite";
    rules.defaultSchema = "public";
    Writable const whole = writable(isOwn ? withCommentsEnded(structure) : structure, rules);
    Omissions omissions;
    for (Omission const& omission : whole.omissions) {
        leaveOut(omission, out, omissions);
    }
    std::optional<ForeignStructure> const foreign =
        isOwn ? std::nullopt : std::optional(translateStructure(whole.structure));
    Omissions const ofWriter =
        Writer(foreign ? foreign->structure : whole.structure, foreign ? &*foreign : nullptr, out).run();
    omissions.insert(omissions.end(), ofWriter.begin(), ofWriter.end());
    return omissions;
}

} // namespace postgres
