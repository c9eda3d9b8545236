#include "Describe.h"

#include <algorithm>
#include <iterator>

using namespace database;

namespace {

template <class Record>
Record const& at(std::vector<Record> const& records, int index) {
    return records.at(static_cast<std::size_t>(index));
}

std::string textOf(Extras const& extras) {
    std::vector<std::string> texts;
    for (Extra const& extra : extras) {
        texts.push_back(" {" + extra.name + "=" + extra.value + "}");
    }
    std::sort(texts.begin(), texts.end());
    std::string text;
    for (std::string const& each : texts) {
        text += each;
    }
    return text;
}

std::string rest(Named const& thing) {
    return textOf(thing.extras) + (thing.comment.empty() ? "" : " -- " + thing.comment);
}

std::string word(bool holds, char const* text) {
    return holds ? std::string(" ") + text : "";
}

class Description {
public:
    explicit Description(Structure const& toDescribe) : structure(toDescribe) {}

    std::vector<std::string> run() {
        lines.push_back("catalog" + rest(structure.catalog));
        for (Schema const& schema : structure.schemas) {
            lines.push_back("schema " + schema.name + rest(schema));
        }
        for (Type const& type : structure.types) {
            add(type);
        }
        for (Table const& table : structure.tables) {
            add(table);
        }
        for (Key const& key : structure.keys) {
            add(key);
        }
        for (Check const& check : structure.checks) {
            std::string const owner = check.table >= 0 ? tableName(check.table) : typeName(check.type);
            lines.push_back("check " + owner + " " + check.name + ": " + check.expression + rest(check));
        }
        for (Index const& index : structure.indexes) {
            add(index);
        }
        for (Trigger const& trigger : structure.triggers) {
            add(trigger);
        }
        for (Routine const& routine : structure.routines) {
            add(routine);
        }
        for (Sequence const& sequence : structure.sequences) {
            lines.push_back("sequence " + qualified(sequence.schema, sequence.name) + rest(sequence));
        }
        std::sort(lines.begin(), lines.end());
        return std::move(lines);
    }

private:
    std::string qualified(int schema, std::string const& name) const {
        return schema < 0 ? name : at(structure.schemas, schema).name + "." + name;
    }
    std::string typeName(int type) const {
        return type < 0 ? "-" : qualified(at(structure.types, type).schema, at(structure.types, type).name);
    }
    std::string tableName(int table) const {
        return table < 0 ? "-"
                         : qualified(at(structure.tables, table).schema, at(structure.tables, table).name);
    }
    std::string columnNames(int table, std::vector<int> const& columns) const {
        std::string names;
        for (int const column : columns) {
            names += (names.empty() ? "" : ",") + at(at(structure.tables, table).columns, column).name;
        }
        return "(" + names + ")";
    }

    void add(Type const& type) {
        static char const* const kinds[] = {"built-in", "domain", "enumeration", "composite", "range"};
        std::string text = std::string("type ") + kinds[static_cast<int>(type.kind)] + " " +
                           qualified(type.schema, type.name) + " [" + type.declaration + "] " +
                           type.dataType + " " + std::to_string(type.length) + " " +
                           std::to_string(type.scale);
        for (std::string const& value : type.values) {
            text += " '" + value + "'";
        }
        lines.push_back(text + (type.base < 0 ? "" : " on " + typeName(type.base)) +
                        word(type.notNull, "NOT NULL") +
                        (type.defaultValue.empty() ? "" : " DEFAULT " + type.defaultValue) + rest(type));
    }

    void add(Table const& table) {
        std::string const name = qualified(table.schema, table.name);
        static char const* const kinds[] = {"table", "view", "materialized"};
        std::string text =
            std::string(kinds[static_cast<int>(table.kind)]) + " " + name + " [" + table.nativeKind + "]";
        for (int const parent : table.parents) {
            text += " under " + tableName(parent);
        }
        lines.push_back(text + (table.statement.empty() ? "" : " AS " + table.statement) + rest(table));
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            Column const& column = table.columns[i];
            lines.push_back("column " + name + "." + column.name + " #" + std::to_string(i) + " " +
                            typeName(column.type) + word(column.notNull, "NOT NULL") +
                            (column.defaultValue.empty() ? "" : " DEFAULT " + column.defaultValue) +
                            word(column.generated, "GENERATED") + rest(column));
        }
    }

    void add(Key const& key) {
        static char const* const kinds[] = {"primary", "unique", "foreign"};
        static char const* const actions[] = {"NO ACTION", "RESTRICT", "CASCADE", "SET NULL", "SET DEFAULT"};
        std::string text = std::string(kinds[static_cast<int>(key.kind)]) + " " + tableName(key.table) + " " +
                           key.name + " " + columnNames(key.table, key.columns);
        if (key.kind == KeyKind::FOREIGN) {
            text += " -> " + tableName(key.referredTable) + " " +
                    columnNames(key.referredTable, key.referredColumns) + " ON UPDATE " +
                    actions[static_cast<int>(key.onUpdate)] + " ON DELETE " +
                    actions[static_cast<int>(key.onDelete)];
        }
        lines.push_back(text + rest(key));
    }

    void add(Index const& index) {
        std::string text = "index " + tableName(index.table) + " " + index.name +
                           word(index.unique, "UNIQUE") + word(index.clustered, "CLUSTERED") + " (";
        for (IndexMember const& member : index.members) {
            text += (text.back() == '(' ? "" : ", ") +
                    (member.column < 0 ? member.expression
                                       : at(at(structure.tables, index.table).columns, member.column).name) +
                    word(member.descending, "DESC") + textOf(member.extras);
        }
        lines.push_back(text + ")" + rest(index));
    }

    void add(Trigger const& trigger) {
        static char const* const times[] = {"BEFORE", "AFTER", "INSTEAD OF"};
        lines.push_back("trigger " + tableName(trigger.table) + " " + trigger.name + " " +
                        times[static_cast<int>(trigger.time)] + word(trigger.onInsert, "INSERT") +
                        word(trigger.onUpdate, "UPDATE") + word(trigger.onDelete, "DELETE") + ": " +
                        trigger.statement + rest(trigger));
    }

    void add(Routine const& routine) {
        static char const* const modes[] = {"IN", "OUT", "INOUT", "VARIADIC", "COLUMN"};
        std::string text =
            (routine.procedure ? "procedure " : "function ") + qualified(routine.schema, routine.name) + "(";
        for (Argument const& argument : routine.arguments) {
            text += (text.back() == '(' ? "" : ", ") + std::string(modes[static_cast<int>(argument.mode)]) +
                    " " + argument.name + " " + typeName(argument.type) +
                    (argument.defaultValue.empty() ? "" : " DEFAULT " + argument.defaultValue) +
                    rest(argument);
        }
        lines.push_back(text + ") returns " + typeName(routine.returnType) + ": " + routine.statement +
                        rest(routine));
    }

    Structure const& structure;
    std::vector<std::string> lines;
};

} // namespace

std::vector<std::string> describe(Structure const& structure) {
    return Description(structure).run();
}

std::string differenceOf(std::vector<std::string> const& before, std::vector<std::string> const& after) {
    std::vector<std::string> lost;
    std::vector<std::string> gained;
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(lost));
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(gained));
    std::string text;
    for (std::string const& line : lost) {
        text += "- " + line + "\n";
    }
    for (std::string const& line : gained) {
        text += "+ " + line + "\n";
    }
    return text;
}
