#include "postgres/SqlWriter.h"

#include "database/Records.h"
#include "postgres/Extras.h"
#include "postgres/SqlNames.h"

#include <algorithm>
#include <ostream>
#include <string_view>
#include <tuple>
#include <utility>

namespace postgres {
namespace {

using namespace database;

/// The server has nothing to tell of options that weren't read, nor has a graph.
Omission secretsOf(std::string const& thing) {
    return {"options of " + thing, "they may be secret; whether any exist is unknown", ""};
}

/// A type of functions in C or of the server; empty if its statement isn't known.
std::string baseTypeStatement(Type const& type, std::string const& name) {
    std::string const parts = valueOf(type.extras, extra::base);
    if (has(type, extra::shell)) {
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

} // namespace

/// The types, sequences, tables, functions and views, each behind what it needs.
void SqlWriter::writeObjects() {
    Creations creations;
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
        if (creation.table >= 0) {
            tellOmissionsOfTable(creation.table);
        }
    }
    out << '\n';
    tellOmissions(&ForeignStructure::ofObjects);
}

/// A type whose functions name it begins as a shell.
void SqlWriter::addTypes(Creations& creations) {
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        Type const& type = structure.types[i];
        if (type.kind == TypeKind::BUILT_IN && type.schema < 0) {
            continue;
        }
        auto const index = static_cast<int>(i);
        Creation made = {schemaName(type.schema), type.name, typeStatement(type, index)};
        bool const hasShell = has(type, extra::base) ||
                              valueOf(type.extras, extra::range).find("CANONICAL = ") != std::string::npos;
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

void SqlWriter::addSequences(Creations& creations) {
    for (Sequence const& sequence : structure.sequences) {
        Extras const& extras = sequence.extras;
        creations.push_back(
            {schemaName(sequence.schema), sequence.name,
             (has(sequence, extra::unlogged) ? "CREATE UNLOGGED SEQUENCE " : "CREATE SEQUENCE ") +
                 qualified(sequence.schema, sequence.name) + clause(extras, extra::type, " AS ") +
                 clause(extras, extra::start, " START WITH ") +
                 clause(extras, extra::increment, " INCREMENT BY ") +
                 clause(extras, extra::minimum, " MINVALUE ") + clause(extras, extra::maximum, " MAXVALUE ") +
                 clause(extras, extra::cache, " CACHE ") + (has(sequence, extra::cycle) ? " CYCLE" : "")});
    }
}

/// Comments stand behind and need nothing.
void SqlWriter::addCatalogExtras(Creations& creations, Moment moment) {
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

void SqlWriter::addTables(Creations& creations) {
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
        if (has(table, extra::server)) {
            creations.push_back(omitted(secretsOf("foreign table " + tableName(index))));
        }
        creations.push_back(std::move(made));
    }
}

/// Partitions have neither keys nor indexes when they become such, so that the server makes none by itself:
/// each is made as it is and then becomes a part of that of the partitioned table.
void SqlWriter::addPartitions(Creations& creations) {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        std::string const parent =
            table.parents.empty() ? valueOf(table.extras, extra::inherits) : tableName(table.parents.front());
        if (isPartition(table) && !parent.empty()) {
            creations.push_back({"", "",
                                 "ALTER TABLE ONLY " + parent + " ATTACH PARTITION " +
                                     tableName(static_cast<int>(i)) + " " +
                                     valueOf(table.extras, extra::partitionBound)});
            if (has(table, extra::detachPending)) {
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
void SqlWriter::addRoutines(Creations& creations) {
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

std::string SqlWriter::typeStatement(Type const& type, int index, bool isBare) {
    std::string const name = qualified(type.schema, type.name);
    if (type.kind == TypeKind::ENUMERATION) {
        std::string values;
        for (std::string const& value : type.values) {
            values += (values.empty() ? "" : ", ") + quoteText(value);
        }
        return "CREATE TYPE " + name + " AS ENUM (" + values + ")";
    }
    if (type.kind == TypeKind::COMPOSITE) {
        return "CREATE TYPE " + name + " AS (" + valueOf(type.extras, extra::attributes) + ")";
    }
    if (type.kind == TypeKind::RANGE) {
        return "CREATE TYPE " + name + " AS RANGE (" + valueOf(type.extras, extra::range) + ")";
    }
    return type.kind == TypeKind::DOMAIN_TYPE ? domainStatement(type, index, isBare)
                                              : baseTypeStatement(type, name);
}

std::string SqlWriter::domainStatement(Type const& type, int index, bool isBare) {
    std::string text = "CREATE DOMAIN " + qualified(type.schema, type.name) + " AS " + typeName(type.base) +
                       clause(type.extras, extra::collation, " COLLATE ") +
                       (type.defaultValue.empty() || isBare ? "" : " DEFAULT " + type.defaultValue) +
                       (type.notNull ? " NOT NULL" : "");
    for (Check const* const check : at(checksOfType, index)) {
        text += has(*check, extra::notValid) || isBare ? "" : " " + checkText(*check);
    }
    return text;
}

std::string SqlWriter::restOfDomain(int index) {
    Type const& type = at(structure.types, index);
    std::string const start = "ALTER DOMAIN " + typeName(index);
    std::string text = type.defaultValue.empty() ? "" : start + " SET DEFAULT " + type.defaultValue;
    for (Check const* const check : at(checksOfType, index)) {
        if (!has(*check, extra::notValid)) {
            text += (text.empty() ? "" : ";\n") + start + " ADD " + checkText(*check);
        }
    }
    return text;
}

} // namespace postgres
