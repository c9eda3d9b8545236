#include "sqlite/StructureReader.h"

#include "database/SqlTokens.h"
#include "kit/ToolError.h"
#include "sqlite/CreateStatements.h"
#include "sqlite/DeclaredType.h"
#include "sqlite/Extras.h"
#include "sqlite/Names.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/Surroundings.h"
#include "sqlite/VirtualTable.h"

#include <algorithm>
#include <filesystem>
#include <unordered_map>

namespace sqlite {
namespace {

using database::Column;
using database::Index;
using database::IndexMember;
using database::Key;
using database::KeyKind;
using database::Structure;
using database::Table;
using database::TableKind;
using database::Trigger;

/// How a generated column and one that only a virtual table's own queries see are told by the database.
enum Hidden { ORDINARY = 0, HIDDEN = 1, GENERATED_VIRTUAL = 2, GENERATED_STORED = 3 };

/// The tables of the database, without SQLite's own, with what kind of table each is. `closed` is a virtual
/// table whose module isn't there, so that nothing but its name is known. `kinds` is materialized since each
/// use of the list makes it anew.
std::string const withTables = R"sql(
    WITH kinds AS MATERIALIZED
        (SELECT name, type, wr, strict FROM pragma_table_list WHERE schema = 'main'),
    tables AS (SELECT s.name, s.sql, k.type, k.wr, k.strict, k.type = 'virtual' AND NOT EXISTS
            (SELECT 1 FROM pragma_module_list AS m WHERE m.name = qor_module_of(s.sql) COLLATE NOCASE) AS closed
        FROM main.sqlite_schema AS s LEFT JOIN kinds AS k ON k.name = s.name
        WHERE s.type = 'table' AND s.name NOT LIKE 'sqlite\_%' ESCAPE '\'))sql";

std::string const tablesQuery = withTables + R"sql(
    SELECT name AS name, type AS kind, wr AS without_rowid, strict AS strict, closed AS closed, sql AS statement
    FROM tables ORDER BY name)sql";

/// Of a column `c` in a pragma's list.
std::string const columnFields = R"sql(c.name AS name, c.type AS type, c."notnull" AS not_null,
    c.dflt_value AS default_value, c.hidden AS hidden)sql";

std::string const columnsQuery = withTables + "SELECT t.name AS owner, " + columnFields + R"sql(
    FROM tables AS t JOIN pragma_table_xinfo(t.name, 'main') AS c
    WHERE t.closed IS NOT 1 ORDER BY t.name, c.cid)sql";

constexpr char const* viewsQuery = R"sql(
    SELECT name AS name, sql AS statement FROM main.sqlite_schema WHERE type = 'view' ORDER BY name)sql";

std::string const viewColumnsQuery = "SELECT t.name AS owner, " + columnFields + R"sql(
    FROM main.sqlite_schema AS t JOIN pragma_table_xinfo(t.name, 'main') AS c
    WHERE t.type = 'view' ORDER BY t.name, c.cid)sql";

/// Those that a constraint brings along have no statement.
constexpr char const* indexesQuery = R"sql(
    SELECT name AS name, tbl_name AS owner, sql AS statement FROM main.sqlite_schema
    WHERE type = 'index' AND sql IS NOT NULL ORDER BY tbl_name, name)sql";

constexpr char const* triggersQuery = R"sql(
    SELECT name AS name, tbl_name AS owner, sql AS statement FROM main.sqlite_schema
    WHERE type = 'trigger' ORDER BY tbl_name, name)sql";

struct TableRow : Query {
    using Query::Query;
    Text name{*this, "name"};
    Text kind{*this, "kind"};
    Number isWithoutRowid{*this, "without_rowid"};
    Number isStrict{*this, "strict"};
    Number isClosed{*this, "closed"};
    Text statement{*this, "statement"};
};

struct ColumnRow : Query {
    using Query::Query;
    Text owner{*this, "owner"};
    Text name{*this, "name"};
    Text type{*this, "type"};
    Number isNotNull{*this, "not_null"};
    Text defaultValue{*this, "default_value"};
    Number hidden{*this, "hidden"};
};

struct ViewRow : Query {
    using Query::Query;
    Text name{*this, "name"};
    Text statement{*this, "statement"};
};

/// Of an index or a trigger.
struct PartRow : Query {
    using Query::Query;
    Text name{*this, "name"};
    Text owner{*this, "owner"};
    Text statement{*this, "statement"};
};

std::string kindOf(std::string const& type, bool withoutRowid, bool strict) {
    std::string kind = type == "virtual" ? "VIRTUAL TABLE" : type == "shadow" ? "SHADOW TABLE" : "TABLE";
    kind += withoutRowid ? " WITHOUT ROWID" : "";
    kind += strict ? " STRICT" : "";
    return kind;
}

/// An order that doesn't depend on how the statement was written.
void sortByName(database::Extras& extras) {
    std::sort(extras.begin(), extras.end(), [](auto const& a, auto const& b) { return a.name < b.name; });
}

class Reader {
public:
    explicit Reader(Database& toRead) : source(toRead), surroundings(toRead) {}

    Structure run() {
        readOrigin();
        readSettings();
        readTables();
        readColumnsOfAll(columnsQuery, TableKind::TABLE);
        readViews();
        readStatements();
        readIndexes();
        readTriggers();
        return std::move(structure);
    }

private:
    [[noreturn]] void fail(std::string const& problem) const {
        throw kit::ToolError(source.path(), "is damaged: " + problem);
    }

    void readOrigin() {
        Query encoding(source, "PRAGMA main.encoding");
        encoding.next();
        structure.catalog.name = std::filesystem::path(source.path()).stem().string();
        structure.origin = {"SQLite",          source.writerVersion(),
                            source.path(),     Text(encoding, "encoding"),
                            "SQLite database", "3"};
        structure.schemas.emplace_back();
        structure.schemas.back().name = "main";
        structure.keepsKeyOrder = true; // it numbers the indexes of the keys and rules what fails first
    }

    /// What else an application finds in an empty database; 0 and UTF-8 are what every database begins with.
    void readSettings() {
        for (char const* const name : {extra::userVersion, extra::applicationId}) {
            std::string const value = setting(name);
            if (value != "0") {
                structure.catalog.extras.push_back({name, value});
            }
        }
        if (structure.origin.encoding != "UTF-8") {
            structure.catalog.extras.push_back({extra::encoding, structure.origin.encoding});
        }
        std::string const vacuum = setting(extra::autoVacuum);
        if (vacuum != "0") {
            structure.catalog.extras.push_back({extra::autoVacuum, vacuum == "1" ? "FULL" : "INCREMENTAL"});
        }
    }

    /// A number that the file keeps.
    std::string setting(std::string const& name) {
        Query row(source, "PRAGMA main." + name);
        return row.next() ? std::string(Text(row, name.c_str())) : "0";
    }

    /// A remark is the comment of its object, since SQLite has no comments of its own.
    void remark(database::Named& object, std::string const& called, std::string const& text) {
        if (!text.empty()) {
            object.comment += (object.comment.empty() ? "" : " ") + text;
            structure.remarks.push_back({called, text});
        }
    }

    // ---- tables, views and their columns -------------------------------------------------------------

    /// SQLite's names are equal whatever the case of their letters.
    int addTable(Table const& table) {
        int const number = static_cast<int>(structure.tables.size());
        if (!tables.emplace(database::lowerCase(table.name), number).second) {
            fail("more than one " + table.name);
        }
        structure.tables.push_back(table);
        columns.emplace_back();
        return number;
    }

    void readTables() {
        TableRow row(source, tablesQuery);
        while (row.next()) {
            Table table;
            table.name = row.name;
            table.schema = 0;
            std::string const type = row.kind;
            table.nativeKind = kindOf(type, row.isWithoutRowid, row.isStrict);
            std::string const statement = row.statement;
            if (type == "virtual") {
                table.extras = {{extra::module, moduleOf(statement)}, {extra::statement, statement}};
            }
            if (row.isClosed) {
                remark(table, "table " + table.name,
                       "The columns are unknown: the module of this virtual table isn't available.");
            }
            int const number = addTable(table);
            if (type != "virtual") {
                statements.emplace_back(number, statement);
            }
        }
    }

    /// With one query for all tables or views; one that can't be used must not hide the others.
    void readColumnsOfAll(std::string const& sql, TableKind kind) {
        try {
            readColumns(sql);
        } catch (QueryError const&) {
            for (std::size_t i = 0; i < structure.tables.size(); ++i) {
                if (structure.tables[i].kind == kind && structure.tables[i].comment.empty()) {
                    readColumnsOf(i);
                }
            }
        }
    }

    void readColumnsOf(std::size_t number) {
        structure.tables[number].columns.clear();
        columns[number].clear();
        try {
            std::string const name = quoteText(structure.tables[number].name);
            readColumns("SELECT " + name + " AS owner, " + columnFields + " FROM pragma_table_xinfo(" + name +
                        ", 'main') AS c");
        } catch (QueryError const& error) {
            Table& table = structure.tables[number];
            remark(table, (table.kind == TableKind::VIEW ? "view " : "table ") + table.name,
                   "The columns are unknown: " + error.problem + ".");
        }
    }

    void readColumns(std::string const& sql) {
        ColumnRow row(source, sql);
        while (row.next()) {
            if (row.hidden != HIDDEN) {
                readColumn(row);
            }
        }
    }

    void readColumn(ColumnRow const& row) {
        int const number = tableOf(row.owner);
        Table& owner = structure.tables[static_cast<std::size_t>(number)];
        Column column;
        column.name = row.name;
        column.type = typeOf(row.type);
        column.notNull = row.isNotNull;
        column.defaultValue = database::trimmedSql(std::string(row.defaultValue));
        column.generated = row.hidden == GENERATED_VIRTUAL || row.hidden == GENERATED_STORED;
        columns[static_cast<std::size_t>(number)].emplace(database::lowerCase(column.name),
                                                          static_cast<int>(owner.columns.size()));
        owner.columns.push_back(column);
    }

    int tableOf(std::string const& name) const {
        auto const known = tables.find(database::lowerCase(name));
        if (known == tables.end()) {
            fail("no table " + name);
        }
        return known->second;
    }

    /// Each spelling of a type is one type.
    int typeOf(std::string const& declared) {
        auto const [known, isNew] = types.emplace(declared, static_cast<int>(structure.types.size()));
        if (isNew) {
            DeclaredType const read = readDeclaredType(declared);
            database::Type type;
            type.name = declared.empty() ? read.dataType : declared;
            type.declaration = declared;
            type.dataType = read.dataType;
            type.length = read.length;
            type.scale = read.scale;
            structure.types.push_back(type);
        }
        return known->second;
    }

    void readViews() {
        std::size_t const first = structure.tables.size();
        addViews();
        std::vector<std::string> missing;
        for (std::size_t i = first; i < structure.tables.size(); ++i) {
            missing.push_back(surroundings.missingIn(structure.tables[i].statement));
        }
        for (std::size_t i = first; i < structure.tables.size(); ++i) {
            surroundings.completeFor(structure.tables[i].statement);
        }
        readColumnsOfAll(viewColumnsQuery, TableKind::VIEW);
        for (std::size_t i = first; i < structure.tables.size(); ++i) {
            Table& view = structure.tables[i];
            remark(view, "view " + view.name, missing[i - first]);
        }
    }

    void addViews() {
        ViewRow row(source, viewsQuery);
        while (row.next()) {
            Table view;
            view.name = row.name;
            view.schema = 0;
            view.kind = TableKind::VIEW;
            view.nativeKind = "VIEW";
            ViewText const text = readCreateView(std::string(row.statement));
            view.statement = text.select;
            if (text.named) {
                view.extras = {{extra::columns, "named"}};
            }
            addTable(view);
        }
    }

    // ---- what the statements of the tables tell ------------------------------------------------------

    void readStatements() {
        std::vector<TableText> texts;
        for (auto const& [number, statement] : statements) {
            texts.push_back(readCreateTable(statement));
            addColumnTexts(number, texts.back());
        }
        for (std::size_t i = 0; i < statements.size(); ++i) {
            for (CheckText const& text : texts[i].checks) {
                database::Check check;
                check.name = text.name;
                check.table = statements[i].first;
                check.expression = text.expression;
                remark(check,
                       "check " + (check.name.empty() ? "" : check.name + " ") + "of " + nameOf(check.table),
                       surroundings.missingIn(check.expression));
                structure.checks.push_back(check);
            }
            addKeys(statements[i].first, texts[i], false);
        }
        for (std::size_t i = 0; i < statements.size(); ++i) {
            addKeys(statements[i].first, texts[i], true);
        }
    }

    void addColumnTexts(int number, TableText const& text) {
        Table& table = structure.tables[static_cast<std::size_t>(number)];
        if (text.columns.size() != table.columns.size()) {
            fail("the statement of table " + table.name + " names other columns than the table has");
        }
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            table.columns[i].extras = text.columns[i].extras;
            sortByName(table.columns[i].extras);
            if (table.columns[i].generated) {
                table.columns[i].defaultValue = text.columns[i].generated;
            }
            remarkColumn(table, table.columns[i]);
        }
    }

    void remarkColumn(Table const& table, Column& column) {
        std::string const called = "column " + table.name + "." + column.name;
        remark(column, called, surroundings.missingIn(column.defaultValue));
        if (std::string const* const collation = findExtra(column.extras, extra::collation)) {
            remark(column, called, surroundings.missingCollation(*collation));
        }
    }

    std::string nameOf(int table) const { return structure.tables[static_cast<std::size_t>(table)].name; }

    /// Foreign keys come after all the keys that they can refer to.
    void addKeys(int number, TableText const& text, bool foreign) {
        for (KeyText const& from : text.keys) {
            if ((from.kind == KeyKind::FOREIGN) != foreign) {
                continue;
            }
            Key key;
            key.kind = from.kind;
            key.name = from.name;
            key.table = number;
            key.onUpdate = from.onUpdate;
            key.onDelete = from.onDelete;
            key.extras = from.extras;
            for (std::string const& column : from.columns) {
                key.columns.push_back(columnOf(number, column));
                if (key.columns.back() < 0) {
                    fail("table " + nameOf(number) + " has no column " + column);
                }
            }
            if (foreign) {
                addReference(from, key);
            } else if (key.kind == KeyKind::PRIMARY) {
                primaryKeys[number] = key.columns;
            }
            sortByName(key.extras);
            if (std::string const* const members = findExtra(key.extras, extra::columns)) {
                remark(key, "key of " + nameOf(number), surroundings.missingIn(*members));
            }
            structure.keys.push_back(key);
        }
    }

    /// -1 for none.
    int columnOf(int table, std::string const& name) const {
        auto const& known = columns[static_cast<std::size_t>(table)];
        auto const found = known.find(database::lowerCase(name));
        return found == known.end() ? -1 : found->second;
    }

    /// SQLite lets a foreign key refer to what isn't there, or to a view.
    void addReference(KeyText const& from, Key& key) const {
        auto const known = tables.find(database::lowerCase(from.referredTable));
        if (known != tables.end() &&
            structure.tables[static_cast<std::size_t>(known->second)].kind == TableKind::TABLE) {
            key.referredTable = known->second;
            key.referredColumns = referredColumns(from, known->second);
        }
        if (key.referredColumns.size() != key.columns.size()) {
            key.referredColumns.clear();
            std::string const names = quoteNames(from.referredColumns);
            key.extras.push_back({extra::references,
                                  quoteName(from.referredTable) + (names.empty() ? "" : "(" + names + ")")});
        }
    }

    /// Those that aren't there are left out.
    std::vector<int> referredColumns(KeyText const& from, int table) const {
        std::vector<int> result;
        for (std::string const& name : from.referredColumns) {
            if (int const column = columnOf(table, name); column >= 0) {
                result.push_back(column);
            }
        }
        auto const primary = primaryKeys.find(table);
        return from.referredColumns.empty() && primary != primaryKeys.end() ? primary->second : result;
    }

    // ---- indexes and triggers ------------------------------------------------------------------------

    void readIndexes() {
        PartRow row(source, indexesQuery);
        while (row.next()) {
            Index index;
            index.name = row.name;
            index.table = tableOf(row.owner);
            std::string const statement = row.statement;
            auto const words = database::tokenize(statement);
            index.unique = words.size() > 1 && words[1].is("UNIQUE");
            IndexText const text = readCreateIndex(statement);
            for (MemberText const& member : text.members) {
                index.members.push_back(memberOf(index.table, member));
            }
            if (!text.where.empty()) {
                index.extras.push_back({extra::where, text.where});
            }
            remark(index, "index " + index.name, surroundings.missingIn(text.all));
            structure.indexes.push_back(index);
        }
    }

    IndexMember memberOf(int table, MemberText const& from) const {
        IndexMember member;
        member.column = from.column.empty() ? -1 : columnOf(table, from.column);
        if (member.column < 0) {
            member.expression = from.expression;
        }
        member.descending = from.descending;
        if (!from.collation.empty()) {
            member.extras.push_back({extra::collation, from.collation});
        }
        return member;
    }

    void readTriggers() {
        PartRow row(source, triggersQuery);
        while (row.next()) {
            Trigger trigger;
            trigger.name = row.name;
            trigger.table = tableOf(row.owner);
            trigger.statement = row.statement;
            TriggerText const text = readCreateTrigger(trigger.statement);
            trigger.time = text.time;
            trigger.onInsert = text.onInsert;
            trigger.onUpdate = text.onUpdate;
            trigger.onDelete = text.onDelete;
            remark(trigger, "trigger " + trigger.name, surroundings.missingIn(text.body));
            if (!text.columns.empty()) {
                trigger.extras.push_back({extra::columns, quoteNames(text.columns)});
            }
            structure.triggers.push_back(trigger);
        }
    }

    Database& source;
    Surroundings surroundings;
    Structure structure;
    std::unordered_map<std::string, int> tables;               ///< by their names in lower case
    std::vector<std::unordered_map<std::string, int>> columns; ///< of each table, likewise
    std::unordered_map<std::string, int> types;
    std::unordered_map<int, std::vector<int>> primaryKeys;
    std::vector<std::pair<int, std::string>> statements; ///< of the ordinary tables
};

} // namespace

Structure readStructure(Database& database) {
    return Reader(database).run();
}

} // namespace sqlite
