#pragma once

#include "database/Structure.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

/// Tells all that a structure holds, a line for each record, sorted: records refer to each other by name, so
/// that structures whose records stand in another order give the same lines.
class DescribeStructure {
public:
    explicit DescribeStructure(database::Structure const& toTell) : structure(toTell) {}

    std::vector<std::string> lines() {
        database::Origin const& origin = structure.origin;
        add("catalog", structure.catalog,
            {origin.system, origin.version, origin.source, origin.encoding, origin.formatName,
             origin.formatVersion});
        for (auto const& schema : structure.schemas) {
            add("schema", schema, {});
        }
        for (auto const& type : structure.types) {
            describe(type);
        }
        for (std::size_t i = 0; i < structure.tables.size(); ++i) {
            describeTable(static_cast<int>(i));
        }
        for (auto const& key : structure.keys) {
            describe(key);
        }
        for (auto const& check : structure.checks) {
            add("check", check, {table(check.table), type(check.type), check.expression});
        }
        for (auto const& index : structure.indexes) {
            describe(index);
        }
        for (auto const& trigger : structure.triggers) {
            add("trigger", trigger,
                {table(trigger.table), number(static_cast<int>(trigger.time)), number(trigger.onInsert),
                 number(trigger.onUpdate), number(trigger.onDelete), trigger.statement});
        }
        for (auto const& routine : structure.routines) {
            describe(routine);
        }
        for (auto const& sequence : structure.sequences) {
            add("sequence", sequence, {schema(sequence.schema)});
        }
        std::sort(result.begin(), result.end());
        return result;
    }

private:
    static std::string number(int value) { return std::to_string(value); }

    static std::string extras(database::Extras const& extras) {
        std::string text = "{";
        for (auto const& extra : extras) {
            text += extra.name + "=" + extra.value + ";";
        }
        return text + "}";
    }

    void add(std::string const& kind, database::Named const& record, std::vector<std::string> const& rest) {
        std::string line = kind + " \"" + record.name + "\"";
        for (auto const& text : rest) {
            line += " | " + text;
        }
        result.push_back(line + " | comment " + record.comment + " | " + extras(record.extras));
    }

    std::string schema(int index) const {
        return index < 0 ? "-" : structure.schemas.at(static_cast<std::size_t>(index)).name;
    }

    std::string type(int index) const {
        if (index < 0) {
            return "-";
        }
        auto const& record = structure.types.at(static_cast<std::size_t>(index));
        return schema(record.schema) + "." + record.name + "<" + record.declaration + ">";
    }

    std::string table(int index) const {
        if (index < 0) {
            return "-";
        }
        auto const& record = structure.tables.at(static_cast<std::size_t>(index));
        return schema(record.schema) + "." + record.name;
    }

    std::string columns(int ofTable, std::vector<int> const& indexes) const {
        std::string text = "(";
        for (int const index : indexes) {
            auto const& record = structure.tables.at(static_cast<std::size_t>(ofTable));
            text += record.columns.at(static_cast<std::size_t>(index)).name + ",";
        }
        return text + ")";
    }

    void describe(database::Type const& record) {
        std::string values;
        for (auto const& value : record.values) {
            values += value + ",";
        }
        add("type", record,
            {schema(record.schema), number(static_cast<int>(record.kind)), record.declaration,
             record.dataType, number(record.length), number(record.scale), values, type(record.base),
             number(record.notNull), record.defaultValue});
    }

    void describeTable(int index) {
        auto const& record = structure.tables.at(static_cast<std::size_t>(index));
        std::string parents;
        for (int const parent : record.parents) {
            parents += table(parent) + ",";
        }
        add("table", record,
            {schema(record.schema), number(static_cast<int>(record.kind)), record.nativeKind,
             record.statement, parents, number(static_cast<int>(record.columns.size()))});
        for (std::size_t i = 0; i < record.columns.size(); ++i) {
            auto const& column = record.columns[i];
            add("column " + table(index) + "#" + number(static_cast<int>(i)), column,
                {type(column.type), number(column.notNull), column.defaultValue, number(column.generated)});
        }
    }

    void describe(database::Key const& record) {
        add("key", record,
            {table(record.table), number(static_cast<int>(record.kind)),
             columns(record.table, record.columns), table(record.referredTable),
             columns(record.referredTable, record.referredColumns), number(static_cast<int>(record.onUpdate)),
             number(static_cast<int>(record.onDelete))});
    }

    void describe(database::Index const& record) {
        std::string members;
        for (auto const& member : record.members) {
            members +=
                member.column < 0 ? "<" + member.expression + ">" : columns(record.table, {member.column});
            members += (member.descending ? " down" : "") + extras(member.extras) + ",";
        }
        add("index", record, {table(record.table), number(record.unique), number(record.clustered), members});
    }

    void describe(database::Routine const& record) {
        std::string arguments;
        for (auto const& argument : record.arguments) {
            arguments += argument.name + " " + number(static_cast<int>(argument.mode)) + " " +
                         type(argument.type) + " " + argument.defaultValue + " " + argument.comment +
                         extras(argument.extras) + ",";
        }
        add("routine", record,
            {schema(record.schema), number(record.procedure), arguments, type(record.returnType),
             record.statement});
    }

    database::Structure const& structure;
    std::vector<std::string> result;
};

inline std::vector<std::string> describe(database::Structure const& structure) {
    return DescribeStructure(structure).lines();
}
