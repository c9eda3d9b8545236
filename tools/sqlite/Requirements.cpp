#include "sqlite/Requirements.h"

#include "database/SqlTokens.h"
#include "sqlite/Extras.h"
#include "sqlite/Names.h"
#include "sqlite/Scratch.h"

#include <algorithm>
#include <optional>
#include <set>

namespace sqlite {
namespace {

using database::Column;
using database::equalIgnoringCase;
using database::Extras;
using database::Key;
using database::KeyKind;
using database::Omission;
using database::Structure;
using database::Table;
using database::TableKind;
using database::Token;

template <class Records, class Keep>
void keepIf(Records& records, Keep const& keep) {
    auto const goes = [&](auto& record) { return !keep(record); };
    records.erase(std::remove_if(records.begin(), records.end(), goes), records.end());
}

class Requirements {
public:
    explicit Requirements(database::Writable& writable)
        : structure(writable.structure), omissions(writable.omissions) {}

    void meet() {
        for (Table& table : structure.tables) {
            if (table.kind == TableKind::TABLE && !findExtra(table.extras, extra::statement)) {
                meetColumns(table);
            }
        }
        keepIf(structure.keys, [this](Key& key) { return meetKey(key); });
        for (Table& table : structure.tables) {
            meetOptions(table);
        }
        keepIf(structure.checks, [this](database::Check const& check) { return takesCheck(check); });
        keepIf(structure.indexes, [this](database::Index const& index) { return takesIndex(index); });
        meetViews();
        keepIf(structure.triggers,
               [this](database::Trigger const& trigger) { return takesTrigger(trigger); });
    }

private:
    bool omit(std::string object, std::string const& reason, std::string original = "") {
        omissions.push_back({std::move(object), reason, std::move(original)});
        return false;
    }

    bool accepts(std::string const& problem, std::string const& object, std::string const& original) {
        return problem.empty() || omit(object, "SQLite says: " + problem, original);
    }

    Table& tableAt(int index) { return structure.tables[static_cast<std::size_t>(index)]; }

    /// An expression as it will be written.
    static std::string written(std::string const& sql) { return database::trimmedSql(sql); }

    /// A table of the same columns, with only their names, and `more`.
    static std::string skeleton(Table const& table, std::string const& more,
                                Column const* without = nullptr) {
        std::string parts;
        for (Column const& column : table.columns) {
            if (&column != without) {
                parts += (parts.empty() ? "" : ", ") + quoteName(column.name);
            }
        }
        parts += more.empty() || parts.empty() ? more : ", " + more;
        return "CREATE TABLE " + quoteName(table.name) + "(" + parts + ")";
    }

    void meetColumns(Table& table) {
        for (Column& column : table.columns) {
            std::string const name = "column " + table.name + "." + column.name;
            bool const isTaken =
                column.defaultValue.empty() ||
                (column.generated ? takesComputation(table, column, name) : takesDefault(column, name));
            if (!isTaken) {
                column.generated = false;
                column.defaultValue.clear();
            }
        }
        bool const areComputed = std::all_of(table.columns.begin(), table.columns.end(),
                                             [](Column const& column) { return column.generated; });
        if (areComputed && !table.columns.empty()) {
            Column& first = table.columns.front();
            omit("that column " + table.name + "." + first.name + " is computed",
                 "SQLite requires a column that isn't", first.defaultValue);
            first.generated = false;
            first.defaultValue.clear();
        }
    }

    bool takesComputation(Table const& table, Column const& column, std::string const& name) {
        std::string const part = quoteName(column.name) + " AS (" + written(column.defaultValue) + ")";
        std::string const sql = table.columns.size() > 1 ? skeleton(table, part, &column)
                                                         : "CREATE TABLE t(\"another column\", " + part + ")";
        return accepts(scratch.problem(sql), "that " + name + " is computed", column.defaultValue);
    }

    /// A plain value has no parentheses; in parentheses, a name would be that of a column.
    bool takesDefault(Column const& column, std::string const& name) {
        std::string const value = written(column.defaultValue);
        bool const isPlain = database::tokenize(value).size() < 3 &&
                             scratch.problem("CREATE TABLE t(a DEFAULT " + value + ")").empty();
        return isPlain || accepts(scratch.problem("CREATE TABLE t(a DEFAULT (" + value + "))"),
                                  "default of " + name, column.defaultValue);
    }

    // ---- keys ----------------------------------------------------------------------------------------

    bool meetKey(Key& key) {
        Table const& table = tableAt(key.table);
        std::string const name = (key.kind == KeyKind::FOREIGN ? "foreign key of " : "key of ") + table.name;
        bool const hasComputed = std::any_of(key.columns.begin(), key.columns.end(), [&](int column) {
            return table.columns[static_cast<std::size_t>(column)].generated;
        });
        if (key.kind == KeyKind::PRIMARY && hasComputed) {
            return omit(name, "a column of a primary key must not be computed");
        }
        std::string const list = columnNames(table, key);
        auto const drop = [&](char const* extra, std::string const& part) {
            std::string const* const value = findExtra(key.extras, extra);
            std::string const text = value ? *value : "";
            if (value && !accepts(scratch.problem(skeleton(table, part + text + closing(extra))),
                                  std::string(extra) + " of " + name, text)) {
                erase(key.extras, extra);
            }
        };
        if (key.kind == KeyKind::FOREIGN) {
            drop("match", "FOREIGN KEY (" + list + ") REFERENCES t MATCH ");
            drop("deferrable", "FOREIGN KEY (" + list + ") REFERENCES t DEFERRABLE ");
            std::string const* const told = findExtra(key.extras, extra::references);
            return !told ||
                   accepts(scratch.problem(skeleton(table, "FOREIGN KEY (" + list + ") REFERENCES " + *told)),
                           name, *told);
        }
        drop("columns", "UNIQUE (");
        drop("conflict", "UNIQUE (" + list + ") ON CONFLICT ");
        meetColumnKey(table, key, name);
        return true;
    }

    static char const* closing(std::string const& extra) { return extra == "columns" ? ")" : ""; }

    static void erase(Extras& extras, std::string const& name) {
        keepIf(extras, [&](database::Extra const& extra) { return extra.name != name; });
    }

    static std::string columnNames(Table const& table, Key const& key) {
        std::vector<std::string> names;
        for (int const column : key.columns) {
            names.push_back(table.columns[static_cast<std::size_t>(column)].name);
        }
        return quoteNames(names);
    }

    /// A primary key that is declared with its column. Only a plain INTEGER has AUTOINCREMENT.
    void meetColumnKey(Table const& table, Key& key, std::string const& name) {
        std::string const* const order = findExtra(key.extras, extra::order);
        if (order && !equalIgnoringCase(*order, "ASC") && !equalIgnoringCase(*order, "DESC")) {
            omit("order of " + name, "it is neither ASC nor DESC", *order);
            erase(key.extras, "order");
        }
        if (!findExtra(key.extras, extra::autoincrement)) {
            return;
        }
        Column const& column = table.columns[static_cast<std::size_t>(key.columns.front())];
        bool const isInteger =
            column.type >= 0 &&
            equalIgnoringCase(structure.types[static_cast<std::size_t>(column.type)].declaration, "INTEGER");
        bool const isPlain = key.kind == KeyKind::PRIMARY && key.columns.size() == 1 &&
                             (!order || !equalIgnoringCase(*order, "DESC"));
        if (!isInteger || !isPlain || hasOption(table, "WITHOUT ROWID")) {
            omit("autoincrement of " + name, "only an INTEGER that is a primary key has AUTOINCREMENT");
            erase(key.extras, "autoincrement");
        }
    }

    // ---- tables --------------------------------------------------------------------------------------

    static bool hasOption(Table const& table, char const* option) {
        return table.nativeKind.find(option) != std::string::npos;
    }

    void meetOptions(Table& table) {
        if (hasOption(table, "WITHOUT ROWID") && !hasPrimaryKey(table)) {
            dropOption(table, "WITHOUT ROWID", "it has no primary key");
        }
        if (hasOption(table, "STRICT") && !hasStrictTypes(table)) {
            dropOption(table, "STRICT", "the types of some of its columns aren't allowed then");
        }
    }

    void dropOption(Table& table, std::string const& option, std::string const& reason) {
        table.nativeKind.erase(table.nativeKind.find(option), option.size());
        omit("that table " + table.name + " is " + option, reason);
    }

    bool hasPrimaryKey(Table const& table) const {
        auto const number = static_cast<int>(&table - structure.tables.data());
        return std::any_of(structure.keys.begin(), structure.keys.end(), [number](Key const& key) {
            return key.table == number && key.kind == KeyKind::PRIMARY;
        });
    }

    bool hasStrictTypes(Table const& table) const {
        static std::set<std::string> const types = {"INT", "INTEGER", "REAL", "TEXT", "BLOB", "ANY"};
        return std::all_of(table.columns.begin(), table.columns.end(), [this](Column const& column) {
            return column.type >= 0 &&
                   types.count(database::upperCase(
                       structure.types[static_cast<std::size_t>(column.type)].declaration)) > 0;
        });
    }

    bool takesCheck(database::Check const& check) {
        if (check.table < 0) {
            return true;
        }
        Table const& table = tableAt(check.table);
        return accepts(scratch.problem(skeleton(table, "CHECK (" + written(check.expression) + ")")),
                       "check " + check.name + " of " + table.name, check.expression);
    }

    // ---- indexes, views, triggers --------------------------------------------------------------------

    bool takesIndex(database::Index const& index) {
        std::string const* const where = findExtra(index.extras, extra::where);
        bool const isPlain =
            std::all_of(index.members.begin(), index.members.end(),
                        [](database::IndexMember const& member) { return member.column >= 0; });
        if (isPlain && !where) {
            return true;
        }
        Table const& table = tableAt(index.table);
        std::string members;
        for (database::IndexMember const& member : index.members) {
            members +=
                (members.empty() ? "" : ", ") +
                (member.column >= 0 ? quoteName(table.columns[static_cast<std::size_t>(member.column)].name)
                                    : written(member.expression));
        }
        std::string const sql = "CREATE INDEX \"an index\" ON " + quoteName(table.name) + "(" + members +
                                ")" + (where ? " WHERE " + written(*where) : "");
        return accepts(scratch.problem(skeleton(table, ""), sql), "index " + index.name, sql);
    }

    /// Removes the query of a view that SQLite can't read.
    void meetViews() {
        for (Table& table : structure.tables) {
            if (table.kind == TableKind::TABLE) {
                continue;
            }
            std::string const problem = scratch.problem("CREATE VIEW v AS " + table.statement);
            if (!accepts(problem, "view " + table.name, table.statement)) {
                table.statement.clear();
            }
        }
    }

    /// The statement of a trigger must name the table of the trigger.
    bool takesTrigger(database::Trigger const& trigger) {
        Table const& table = tableAt(trigger.table);
        std::string const name = quoteName(table.name);
        std::string const needed =
            table.kind == TableKind::TABLE ? skeleton(table, "") : "CREATE VIEW " + name + " AS SELECT 1";
        return accepts(scratch.problem(needed, trigger.statement),
                       "trigger " + trigger.name + " of " + table.name, trigger.statement);
    }

    Structure& structure;
    std::vector<Omission>& omissions;
    Scratch scratch;
};

} // namespace

void meetRequirements(database::Writable& writable) {
    Requirements(writable).meet();
}

} // namespace sqlite
