#include "postgres/SqlWriter.h"

#include "postgres/ForeignStructure.h"
#include "postgres/ForeignTypes.h"
#include "postgres/SqlNames.h"
#include "postgres/StatementOrder.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <unordered_map>

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

/// Nothing for what holds where nothing is said.
std::string actionClause(char const* event, Action action) {
    return action == Action::NO_ACTION ? "" : std::string(event) + textOf(action);
}

class Writer {
public:
    /// What was left out of the structure of another system, or null.
    Writer(Structure const& toWrite, ForeignStructure const* translation, std::ostream& stream)
        : structure(toWrite), translated(translation), out(stream) {}

    Omissions run() {
        groupByOwner();
        writeSettings();
        writeSchemas();
        writeCatalogExtras(true);
        writeObjects();
        writeIndexes();
        writePartitions();
        writeForeignKeys();
        writeAlterations();
        writeTableExtras();
        writeTriggers();
        writeCatalogExtras(false);
        writeComments();
        return std::move(omissions);
    }

private:
    void groupByOwner();
    void writeSettings();
    void writeSchemas();
    void writeCatalogExtras(bool first);
    void writeObjects();
    void writeIndexes();
    void writePartitions();
    void writeForeignKeys();
    void writeAlterations();
    void writeColumnAlterations(Table const& table);
    /// True if all columns of all parents are as told.
    template <class Condition>
    bool isSameInParents(Table const& table, Condition condition) const {
        return std::all_of(table.parents.begin(), table.parents.end(), [&](int parent) {
            auto const& columns = at(structure.tables, parent).columns;
            return std::all_of(columns.begin(), columns.end(), condition);
        });
    }
    void writeTableExtras();
    void writeTriggers();
    void writeComments();
    void writeTableComments();

    std::string typeStatement(Type const& type, int index);
    std::string tableStatement(Table const& table, int index);
    std::string tableParts(Table const& table, int index);
    std::string viewStatement(Table const& table);
    std::string columnText(Table const& table, Column const& column);
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
    /// Operators and casts need functions, and tables and views may need them.
    bool isAmongObjects(Extra const& extra) const {
        return (beginsWith(extra.name, "operator ") || beginsWith(extra.name, "cast ")) &&
               beginsWith(extra.value, "CREATE ");
    }
    bool isPartition(Table const& table) const { return has(table, "partition bound"); }
    /// True for what a table has from its parents alone. A partition is made by itself and becomes one later.
    bool isInherited(int table, Named const& thing) const {
        return valueOf(thing.extras, "inherited") == "true" && !isPartition(at(structure.tables, table));
    }
    void statement(std::string const& text) { out << text << ";\n"; }
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

/// What stands for itself in the catalog is made first, but for what needs the functions of the database.
void Writer::writeCatalogExtras(bool first) {
    for (Extra const& extra : structure.catalog.extras) {
        bool const isLate = beginsWith(extra.name, "event trigger ");
        if (isLate == first || isAmongObjects(extra)) {
            continue;
        }
        if (beginsWith(extra.value, "CREATE ")) {
            statement(extra.value);
        } else {
            leftOut({extra.name + " " + extra.value, "no statement for it has been read", ""});
        }
    }
    if (first) {
        tellOmissions(&ForeignStructure::ofDatabase);
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
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        Type const& type = structure.types[i];
        if (type.kind == TypeKind::BUILT_IN && type.schema >= 0) {
            leftOut({"base type " + type.declaration, "no statement for it has been read", ""});
        } else if (type.kind != TypeKind::BUILT_IN) {
            creations.push_back(
                {schemaName(type.schema), type.name, typeStatement(type, static_cast<int>(i))});
        }
    }
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
    for (Extra const& extra : structure.catalog.extras) {
        if (isAmongObjects(extra)) {
            creations.push_back({"", "", extra.value});
        }
    }
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        creations.push_back({schemaName(table.schema), table.name,
                             table.kind == TableKind::TABLE ? tableStatement(table, static_cast<int>(i))
                                                            : viewStatement(table),
                             std::string::npos, static_cast<int>(i)});
    }
    for (Routine const& routine : structure.routines) {
        std::string const& text = routine.statement;
        creations.push_back({schemaName(routine.schema), routine.name, text, text.find("\nAS "), -1});
    }
    // Tables come before functions and functions before views, unless one needs the other.
    std::stable_partition(creations.begin(), creations.end(), [](Creation const& creation) {
        return !beginsWith(creation.statement, "CREATE VIEW") &&
               !beginsWith(creation.statement, "CREATE MATERIALIZED");
    });
    for (std::size_t const index : orderByNeeds(creations, false)) {
        out << '\n' << creations[index].statement << ";\n";
        if (translated && creations[index].table >= 0) {
            for (Omission const& omission : at(translated->ofTables, creations[index].table)) {
                leftOut(omission);
            }
        }
    }
    out << '\n';
    tellOmissions(&ForeignStructure::ofObjects);
}

std::string Writer::typeStatement(Type const& type, int index) {
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
    std::string text = "CREATE DOMAIN " + name + " AS " + typeName(type.base) +
                       clause(type.extras, "collation", " COLLATE ") +
                       (type.defaultValue.empty() ? "" : " DEFAULT " + type.defaultValue) +
                       (type.notNull ? " NOT NULL" : "");
    for (Check const* const check : checksOfType[static_cast<std::size_t>(index)]) {
        text += has(*check, "not valid") ? "" : " " + checkText(*check);
    }
    return text;
}

std::string Writer::checkText(Check const& check) {
    return (check.name.empty() ? "" : "CONSTRAINT " + quoteName(check.name) + " ") + "CHECK (" +
           check.expression + ")" + (has(check, "no inherit") ? " NO INHERIT" : "") +
           (has(check, "not valid") ? " NOT VALID" : "");
}

std::string Writer::tableStatement(Table const& table, int index) {
    bool const isForeignTable = has(table, "server");
    std::string const type = valueOf(table.extras, "of");
    std::string const parts = tableParts(table, index);
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
std::string Writer::tableParts(Table const& table, int index) {
    std::string parts;
    auto const add = [&](std::string const& part) {
        parts += part.empty() ? "" : (parts.empty() ? "\n    " : ",\n    ") + part;
    };
    for (Column const& column : table.columns) {
        if (!isInherited(index, column)) {
            add(columnText(table, column));
        }
    }
    for (Key const* const key : keysOfTable[static_cast<std::size_t>(index)]) {
        add(key->kind == KeyKind::FOREIGN ? "" : keyText(*key));
    }
    for (Check const* const check : checksOfTable[static_cast<std::size_t>(index)]) {
        bool const isLater = has(*check, "not valid") || isInherited(index, *check);
        add(isLater ? "" : checkText(*check));
    }
    return parts;
}

std::string Writer::columnText(Table const& table, Column const& column) {
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
        text += clause(extras, "identity", " GENERATED ", " AS IDENTITY") +
                clause(extras, "identity sequence", " (", ")");
    } else if (!column.defaultValue.empty()) {
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

void Writer::writeIndexes() {
    for (Index const& index : structure.indexes) {
        statement(indexText(index));
    }
    tellOmissions(&ForeignStructure::ofIndexes);
}

std::string Writer::indexText(Index const& index) {
    std::string members;
    for (IndexMember const& member : index.members) {
        members += (members.empty() ? "" : ", ") + memberText(index, member);
    }
    std::string const space = valueOf(index.extras, "tablespace");
    return std::string("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX " + quoteName(index.name) +
           " ON " + tableName(index.table) + clause(index.extras, "method", " USING ") + " (" + members +
           ")" + clause(index.extras, "include", " INCLUDE (", ")") +
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

/// Their own keys and indexes are there already, so that they become part of those of the partitioned table.
void Writer::writePartitions() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        if (isPartition(table) && !table.parents.empty()) {
            statement("ALTER TABLE " + tableName(table.parents.front()) + " ATTACH PARTITION " +
                      tableName(static_cast<int>(i)) + " " + valueOf(table.extras, "partition bound"));
        }
    }
}

void Writer::writeForeignKeys() {
    for (Key const& key : structure.keys) {
        bool const isReferring = !key.referredColumns.empty() || has(key, "references");
        if (key.kind != KeyKind::FOREIGN || has(key, "inherited")) {
            continue;
        }
        if (isReferring) {
            bool const isPartitioned = has(at(structure.tables, key.table), "partition by");
            statement(std::string("ALTER TABLE ") + (isPartitioned ? "" : "ONLY ") + tableName(key.table) +
                      " ADD " + keyText(key));
        } else {
            leftOut({"foreign key " + key.name + " of " + tableName(key.table),
                     "it isn't known what it refers to", ""});
        }
    }
    tellOmissions(&ForeignStructure::ofForeignKeys);
}

/// What can't be said where a thing is made.
void Writer::writeAlterations() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        std::string const name = tableName(static_cast<int>(i));
        writeColumnAlterations(table);
        for (Check const* const check : checksOfTable[i]) {
            if (has(*check, "not valid") && !isInherited(static_cast<int>(i), *check)) {
                statement("ALTER TABLE " + name + " ADD " + checkText(*check));
            }
        }
        for (Key const* const key : keysOfTable[i]) {
            if (has(*key, "clustered")) {
                statement("ALTER TABLE " + name + " CLUSTER ON " + quoteName(key->name));
            }
            if (has(*key, "replica identity")) {
                statement("ALTER TABLE ONLY " + name + " REPLICA IDENTITY USING INDEX " +
                          quoteName(key->name));
            }
        }
        if (has(table, "replica identity")) {
            statement("ALTER TABLE ONLY " + name + " REPLICA IDENTITY " +
                      valueOf(table.extras, "replica identity"));
        }
    }
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        for (Check const* const check : checksOfType[i]) {
            if (has(*check, "not valid")) {
                statement("ALTER DOMAIN " + typeName(static_cast<int>(i)) + " ADD " + checkText(*check));
            }
        }
    }
    for (Index const& index : structure.indexes) {
        if (index.clustered) {
            statement("ALTER TABLE " + tableName(index.table) + " CLUSTER ON " + quoteName(index.name));
        }
        if (has(index, "replica identity")) {
            statement("ALTER TABLE ONLY " + tableName(index.table) + " REPLICA IDENTITY USING INDEX " +
                      quoteName(index.name));
        }
    }
    for (Sequence const& sequence : structure.sequences) {
        if (has(sequence, "owned by")) {
            statement("ALTER SEQUENCE " + qualified(sequence.schema, sequence.name) + " OWNED BY " +
                      valueOf(sequence.extras, "owned by"));
        }
    }
}

/// A column that comes from a parent can differ from it in its default and in being required.
void Writer::writeColumnAlterations(Table const& table) {
    for (Column const& column : table.columns) {
        std::string const start = "ALTER TABLE ONLY " + qualified(table.schema, table.name) +
                                  " ALTER COLUMN " + quoteName(column.name) + " ";
        bool const isOfView = table.kind != TableKind::TABLE;
        bool const isOfParent = valueOf(column.extras, "inherited") == "true" && !isPartition(table);
        bool const hasOwnDefault =
            isOfParent && !column.generated && !isSameInParents(table, [&](Column const& other) {
                return other.name != column.name || other.defaultValue == column.defaultValue;
            });
        bool const hasOwnNotNull =
            isOfParent && column.notNull && !isSameInParents(table, [&](Column const& other) {
                return other.name != column.name || other.notNull;
            });
        if (hasOwnDefault || (isOfView && !column.defaultValue.empty())) {
            statement(start +
                      (column.defaultValue.empty() ? "DROP DEFAULT" : "SET DEFAULT " + column.defaultValue));
        }
        if (hasOwnNotNull) {
            statement(start + "SET NOT NULL");
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
        if (!security.empty()) {
            statement(start + " ENABLE ROW LEVEL SECURITY");
        }
        if (security == "FORCED") {
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
    tellOmissions(&ForeignStructure::ofTriggers);
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
        types += typeText(at(structure.types, argument.type));
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
    }
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        Type const& type = structure.types[i];
        std::string const name = typeName(static_cast<int>(i));
        bool const isDomain = type.kind == TypeKind::DOMAIN_TYPE;
        comment(isDomain ? "DOMAIN" : "TYPE", name, type.comment);
        for (Check const* const check : checksOfType[i]) {
            comment("CONSTRAINT", quoteName(check->name) + " ON DOMAIN " + name, check->comment);
        }
        constexpr std::string_view ofAttribute = "comment on ";
        for (Extra const& extra : type.extras) {
            if (beginsWith(extra.name, ofAttribute)) {
                comment("COLUMN", name + "." + quoteName(extra.name.substr(ofAttribute.size())), extra.value);
            }
        }
    }
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
        }
        for (Check const* const check : checksOfTable[i]) {
            comment("CONSTRAINT", quoteName(check->name) + " ON " + name,
                    check->name.empty() ? "" : check->comment);
        }
    }
    for (Index const& index : structure.indexes) {
        comment("INDEX", qualified(at(structure.tables, index.table).schema, index.name), index.comment);
    }
    for (Trigger const& trigger : structure.triggers) {
        comment("TRIGGER", quoteName(trigger.name) + " ON " + tableName(trigger.table), trigger.comment);
    }
}

} // namespace

Omissions writePostgresSql(Structure const& structure, std::ostream& out) {
    if (structure.origin.system == "PostgreSQL") {
        return Writer(structure, nullptr, out).run();
    }
    ForeignStructure const foreign = translateStructure(structure);
    return Writer(foreign.structure, &foreign, out).run();
}

} // namespace postgres
