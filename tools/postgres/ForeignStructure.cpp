#include "postgres/ForeignStructure.h"

#include "database/SqlTokens.h"
#include "postgres/Extras.h"
#include "postgres/ForeignSql.h"
#include "postgres/SqlNames.h"

#include <algorithm>
#include <map>
#include <set>

namespace postgres {
namespace {

using namespace database;

constexpr std::size_t longestName = 63;
constexpr std::size_t mostColumns = 1600;
constexpr std::size_t mostKeyColumns = 32;

std::size_t number(int index) {
    return static_cast<std::size_t>(index);
}

std::string valueOf(Extras const& extras, char const* name) {
    std::string const* const value = findExtra(extras, name);
    return value ? *value : "";
}

std::string withName(std::string const& kind, std::string const& name) {
    return name.empty() ? kind : kind + " " + name;
}

/// A name of at most 63 bytes that ends with a whole character, and that no system column has.
std::string fitted(std::string name) {
    static std::set<std::string> const ofSystem = {"tableoid", "xmin", "cmin", "xmax", "cmax", "ctid"};
    if (name.empty() || ofSystem.count(name)) {
        return name + "_";
    }
    std::size_t length = std::min(name.size(), longestName);
    while (length < name.size() && length > 0 && (static_cast<unsigned char>(name[length]) & 0xc0) == 0x80) {
        --length;
    }
    name.resize(length);
    return name;
}

/// Names of which none comes twice.
class Names {
public:
    std::string unique(std::string const& wanted) {
        std::string name = fitted(wanted);
        for (int i = 2; !taken.insert(name).second; ++i) {
            std::string const tail = "_" + std::to_string(i);
            name = fitted(wanted).substr(0, longestName - tail.size()) + tail;
        }
        return name;
    }

    bool has(std::string const& name) const { return taken.count(name) > 0; }

private:
    std::set<std::string> taken;
};

/// Thrown where a view names another one that hasn't been translated yet.
struct NeededView {
    std::size_t index;
};

/// A column of a foreign key and the one that it refers to.
struct Pair {
    int table;
    int column;
    int referredTable;
    int referredColumn;
};

class Translation {
public:
    Translation(Structure const& toTranslate, Habits const& ofSystem) : from(toTranslate), habits(ofSystem) {}

    ForeignStructure run();

private:
    // ---- what there is
    void translateDatabase();
    void translateSchemas();
    void translateTables();
    void addTable(std::size_t index);
    void translateTypes();
    std::string typeOf(Column const& column) const;
    void alignReferences();
    bool alignPair(Pair const& pair);
    void setTypes();

    // ---- columns
    void translateColumns(std::size_t index);
    void translateDefault(std::size_t index, Column const& before, Column& column);
    void translateGenerated(std::size_t index, Column const& before, Column& column);
    void remarkColumn(std::size_t index, Column const& before);
    std::string sequenceName(std::size_t index, std::string const& wanted);
    void findRowNumbers();
    bool isRowNumber(Key const& key) const;

    // ---- keys, checks, indexes
    void translateKeys();
    void translateKey(Key const& before);
    void translateForeignKeys();
    std::string problemOf(Key const& key) const;
    bool isRepeated(Key const& key) const;
    bool isUnique(int table, std::vector<int> const& columns) const;
    void translateChecks();
    void translateIndexes();
    void translateIndex(Index const& before);
    IndexMember translateMember(Index const& index, IndexMember const& before);
    std::string constraintName(int table, std::string const& name, char const* kind, bool isRelation);

    // ---- views and the rest
    void translateViews();
    void translateView(std::size_t index);
    void remarkViewNames(Table const& before, Table const& view, std::vector<SourceColumn> const& columns);
    void leaveOutOthers();

    // ---- what all of these use
    Source sourceOf(std::size_t index, bool isForGenerated = false) const;
    Source found(std::string const& name);
    Value expressionOf(std::size_t index, std::string const& sql, bool isForGenerated = false);
    void leaveOut(std::size_t table, std::string const& object, std::string const& reason,
                  std::string const& original = "");
    void leaveOutExtras(Extras const& extras, std::set<std::string> const& kept, std::string const& object,
                        Omissions& into) const;
    std::string typeAt(int table, int column) const { return types[number(table)][number(column)]; }
    bool isThere(int table) const { return table >= 0 && tables[number(table)] >= 0; }
    Table& tableAt(std::size_t index) { return result.structure.tables[number(tables[index])]; }

    enum class State { WAITING, UNDER_WAY, DONE, LEFT_OUT };

    Structure const& from;
    Habits const habits; ///< of the system that the structure comes from
    ForeignStructure result;
    std::vector<int> tables; ///< the new number of each table, -1 for one that is left out
    std::vector<std::vector<std::string>> types; ///< of each column of each table, as PostgreSQL calls them
    std::vector<int> rowNumbers;                 ///< of each table the column that numbers its rows, or -1
    std::vector<State> views;                    ///< of each table
    std::vector<std::vector<SourceColumn>> viewColumns;
    std::vector<Names> constraintNames; ///< of each table
    Names relationNames;
    std::vector<std::string> viewNames;        ///< of each table
    std::vector<std::string> indexNames;       ///< of each index
    std::map<std::string, std::size_t> byName; ///< tables and views, in lower case
    FindSource const find = [this](std::string const& name) { return found(name); };
};

ForeignStructure Translation::run() {
    translateDatabase();
    translateSchemas();
    translateTables();
    alignReferences();
    setTypes();
    findRowNumbers();
    translateKeys();
    for (std::size_t i = 0; i < from.tables.size(); ++i) {
        if (tables[i] >= 0) {
            translateColumns(i);
        }
    }
    translateChecks();
    translateIndexes();
    translateForeignKeys();
    translateViews();
    leaveOutOthers();
    return std::move(result);
}

void Translation::leaveOut(std::size_t table, std::string const& object, std::string const& reason,
                           std::string const& original) {
    result.ofTables[number(tables[table])].push_back({object, reason, original});
}

void Translation::leaveOutExtras(Extras const& extras, std::set<std::string> const& kept,
                                 std::string const& object, Omissions& into) const {
    for (Extra const& extra : extras) {
        bool const isUsual = extra.name == extra::collation && equalIgnoringCase(extra.value, "BINARY");
        if (!kept.count(extra.name) && !isUsual) {
            into.push_back(omissionOf(extra, object, "PostgreSQL"));
        }
    }
}

// ---- the database, its schemas and types -------------------------------------------------------------

void Translation::translateDatabase() {
    result.structure.catalog.name = from.catalog.name;
    result.structure.catalog.comment = from.catalog.comment;
    result.structure.origin = from.origin;
    result.structure.origin.system = "PostgreSQL";
    leaveOutExtras(from.catalog.extras, {}, "the database", result.ofDatabase);
}

void Translation::translateSchemas() {
    Names names;
    for (Schema const& schema : from.schemas) {
        Schema made;
        made.name = names.unique(schema.name.compare(0, 3, "pg_") == 0 ? "_" + schema.name : schema.name);
        made.comment = schema.comment;
        leaveOutExtras(schema.extras, {}, "schema " + schema.name, result.ofDatabase);
        result.structure.schemas.push_back(made);
    }
    if (from.schemas.empty()) {
        result.structure.schemas.emplace_back();
        result.structure.schemas.back().name = "public";
    }
}

// ---- tables and the types of their columns -----------------------------------------------------------

void Translation::translateTables() {
    std::size_t const count = from.tables.size();
    tables.assign(count, -1);
    types.resize(count);
    rowNumbers.assign(count, -1);
    views.assign(count, State::WAITING);
    viewColumns.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        Table const& table = from.tables[i];
        byName.emplace(lowerCase(table.name), i);
        for (Column const& column : table.columns) {
            types[i].push_back(typeOf(column));
        }
        bool const isOrdinary = table.nativeKind.find("VIRTUAL") == std::string::npos &&
                                table.nativeKind.find("SHADOW") == std::string::npos;
        if (table.kind != TableKind::TABLE) {
            continue;
        }
        if (isOrdinary && table.columns.size() <= mostColumns) {
            addTable(i);
        } else {
            result.ofObjects.push_back({"table " + table.name,
                                        isOrdinary ? "PostgreSQL allows at most 1600 columns in a table"
                                                   : "PostgreSQL has no virtual tables",
                                        valueOf(table.extras, extra::statement)});
        }
    }
    constraintNames.resize(count);
}

void Translation::addTable(std::size_t index) {
    Table const& table = from.tables[index];
    Table made;
    made.name = relationNames.unique(table.name);
    made.comment = table.comment;
    made.schema = std::max(table.schema, 0);
    made.nativeKind = "TABLE";
    tables[index] = static_cast<int>(result.structure.tables.size());
    result.ofTables.emplace_back();
    Omissions& omissions = result.ofTables.back();
    std::string const called = "table " + table.name;
    if (made.name != table.name) {
        omissions.push_back({"name of " + called, "PostgreSQL's is " + made.name, ""});
    }
    if (table.nativeKind.find("WITHOUT ROWID") != std::string::npos) {
        omissions.push_back({"WITHOUT ROWID of " + called, "PostgreSQL has no such option", ""});
    }
    for (std::size_t i = 0; i < table.parents.size(); ++i) {
        omissions.push_back({"inheritance of " + called, "it belongs to another system", ""});
    }
    leaveOutExtras(table.extras, {}, called, omissions);
    result.structure.tables.push_back(made);
}

/// Domains count as what they are made of.
std::string Translation::typeOf(Column const& column) const {
    int type = column.type;
    for (std::size_t i = 0; i < from.types.size() && type >= 0; ++i) {
        Type const& record = from.types[number(type)];
        if (record.kind != TypeKind::DOMAIN_TYPE || record.base < 0) {
            break;
        }
        type = record.base;
    }
    return type < 0 ? "text" : translatedType(from.types[number(type)]);
}

/// PostgreSQL compares a foreign key with what it refers to, so that both must be of one type. Changing one
/// can ask for another change, as long as there is no circle.
void Translation::alignReferences() {
    std::vector<Pair> pairs;
    for (Key const& key : from.keys) {
        bool const isWhole = key.kind == KeyKind::FOREIGN && isThere(key.table) &&
                             isThere(key.referredTable) && key.columns.size() == key.referredColumns.size();
        for (std::size_t i = 0; isWhole && i < key.columns.size(); ++i) {
            pairs.push_back({key.table, key.columns[i], key.referredTable, key.referredColumns[i]});
        }
    }
    bool goesOn = true;
    for (std::size_t i = 0; goesOn && i < pairs.size() + 1; ++i) {
        goesOn = false;
        for (Pair const& pair : pairs) {
            goesOn = alignPair(pair) || goesOn;
        }
    }
}

bool Translation::alignPair(Pair const& pair) {
    std::string& type = types[number(pair.table)][number(pair.column)];
    std::string const& referred = types[number(pair.referredTable)][number(pair.referredColumn)];
    bool const areAlike = kindOf(type) == kindOf(referred) && kindOf(type) != Kind::OTHER;
    if (areAlike || type == referred) {
        return false;
    }
    type = referred;
    return true;
}

void Translation::setTypes() {
    std::map<std::string, int> known;
    for (std::size_t i = 0; i < from.tables.size(); ++i) {
        if (tables[i] < 0) {
            continue;
        }
        Names names;
        for (std::size_t j = 0; j < types[i].size(); ++j) {
            Column const& before = from.tables[i].columns[j];
            auto const [type, isNew] =
                known.emplace(types[i][j], static_cast<int>(result.structure.types.size()));
            if (isNew) {
                Type made;
                made.name = made.declaration = types[i][j];
                result.structure.types.push_back(made);
            }
            Column column;
            column.name = names.unique(before.name);
            column.comment = before.comment;
            column.notNull = before.notNull;
            column.type = type->second;
            tableAt(i).columns.push_back(column);
            std::string const called = "column " + from.tables[i].name + "." + before.name;
            if (column.name != before.name) {
                leaveOut(i, "name of " + called, "PostgreSQL's is " + column.name);
            }
            if (typeOf(before) != types[i][j]) {
                leaveOut(i, "type of " + called, "it is " + types[i][j] + ", like what the column refers to",
                         typeOf(before));
            }
        }
    }
}

// ---- columns -----------------------------------------------------------------------------------------

/// Some systems number the rows by a primary key that is declared as INTEGER alone.
bool Translation::isRowNumber(Key const& key) const {
    if (key.kind != KeyKind::PRIMARY || key.columns.size() != 1 || !isThere(key.table)) {
        return false;
    }
    if (findExtra(key.extras, extra::autoincrement)) {
        return true;
    }
    Table const& table = from.tables[number(key.table)];
    int const type = table.columns[number(key.columns[0])].type;
    return habits.integerKeysNumberRows && !findExtra(key.extras, extra::order) && type >= 0 &&
           table.nativeKind.find("WITHOUT ROWID") == std::string::npos &&
           equalIgnoringCase(from.types[number(type)].declaration, "INTEGER");
}

void Translation::findRowNumbers() {
    for (Key const& key : from.keys) {
        bool const isInteger = isRowNumber(key) && kindOf(typeAt(key.table, key.columns[0])) == Kind::INTEGER;
        Table const* const table = isInteger ? &from.tables[number(key.table)] : nullptr;
        if (table && !table->columns[number(key.columns[0])].generated) {
            rowNumbers[number(key.table)] = key.columns[0];
        }
    }
}

Source Translation::sourceOf(std::size_t index, bool isForGenerated) const {
    Source source;
    source.name = from.tables[index].name;
    Table const& made = result.structure.tables[number(tables[index])];
    for (std::size_t i = 0; i < made.columns.size(); ++i) {
        source.columns.push_back({from.tables[index].columns[i].name, quoteName(made.columns[i].name),
                                  types[index][i], kindOf(types[index][i]),
                                  isForGenerated && from.tables[index].columns[i].generated, false});
    }
    source.rowNumber = rowNumbers[index];
    return source;
}

/// An expression over the columns of one table.
Value Translation::expressionOf(std::size_t index, std::string const& sql, bool isForGenerated) {
    Scope scope;
    scope.sources.push_back(sourceOf(index, isForGenerated));
    FindSource const none = [](std::string const&) -> Source { throw Untranslatable("it has a subquery"); };
    return SqlTranslator(tokenize(sql), scope, none).expression();
}

void Translation::translateColumns(std::size_t index) {
    Table const& before = from.tables[index];
    for (std::size_t i = 0; i < before.columns.size(); ++i) {
        Column& column = tableAt(index).columns[i];
        remarkColumn(index, before.columns[i]);
        if (rowNumbers[index] == static_cast<int>(i)) {
            column.extras.push_back({extra::identity, "BY DEFAULT"});
            std::string const sequence = tableAt(index).name + "_" + column.name + "_seq";
            if (relationNames.has(sequence)) { // which the server could take before that other one is there
                column.extras.push_back(
                    {extra::identitySequence, "SEQUENCE NAME " + sequenceName(index, sequence)});
            }
            if (!before.columns[i].defaultValue.empty()) {
                leaveOut(index, "default of column " + before.name + "." + before.columns[i].name,
                         "the rows are numbered", before.columns[i].defaultValue);
            }
        } else if (before.columns[i].generated) {
            translateGenerated(index, before.columns[i], column);
        } else if (!before.columns[i].defaultValue.empty()) {
            translateDefault(index, before.columns[i], column);
        }
    }
}

std::string Translation::sequenceName(std::size_t index, std::string const& wanted) {
    Schema const& schema = result.structure.schemas[number(tableAt(index).schema)];
    return quoteName(schema.name) + "." + quoteName(relationNames.unique(wanted));
}

void Translation::remarkColumn(std::size_t index, Column const& before) {
    std::string const called = "column " + from.tables[index].name + "." + before.name;
    Omissions& omissions = result.ofTables[number(tables[index])];
    leaveOutExtras(before.extras, {extra::generated}, called, omissions);
}

/// A word alone is a text there.
void Translation::translateDefault(std::size_t index, Column const& before, Column& column) {
    std::string const& type = result.structure.types[number(column.type)].declaration;
    auto const tokens = tokenize(before.defaultValue);
    bool const isWord = tokens.size() == 1 && tokens[0].kind == TokenKind::WORD;
    std::string const word = isWord ? upperCase(tokens[0].text) : "";
    bool const isKeyword =
        word == "NULL" || word == "TRUE" || word == "FALSE" || word.compare(0, 8, "CURRENT_") == 0;
    bool const isName = tokens.size() == 1 && tokens[0].kind == TokenKind::QUOTED_NAME;
    std::string const sql =
        (isWord && !isKeyword) || isName ? quoteText(tokens[0].name()) : before.defaultValue;
    try {
        Scope scope;
        FindSource const none = [](std::string const&) -> Source {
            throw Untranslatable("it has a subquery");
        };
        column.defaultValue = asColumn(SqlTranslator(tokenize(sql), scope, none).expression(), type).text;
    } catch (Untranslatable const& problem) {
        leaveOut(index, "default of column " + from.tables[index].name + "." + before.name, problem.what(),
                 before.defaultValue);
    }
}

void Translation::translateGenerated(std::size_t index, Column const& before, Column& column) {
    std::string const& type = result.structure.types[number(column.type)].declaration;
    try {
        Value const value = asColumn(expressionOf(index, before.defaultValue, true), type);
        if (!value.isImmutable) {
            throw Untranslatable(
                "PostgreSQL computes columns only from immutable expressions on ordinary columns");
        }
        column.generated = true;
        column.defaultValue = value.text;
        column.extras.push_back({extra::generated, "STORED"});
    } catch (Untranslatable const& problem) {
        leaveOut(index, "that column " + from.tables[index].name + "." + before.name + " is computed",
                 problem.what(), before.defaultValue);
    }
}

// ---- keys and checks ---------------------------------------------------------------------------------

/// Constraints of a table have different names; a key's is that of its index as well.
std::string Translation::constraintName(int table, std::string const& name, char const* kind,
                                        bool isRelation) {
    std::string made = name.empty() ? from.tables[number(table)].name + "_" + kind : name;
    made = isRelation ? relationNames.unique(made) : made;
    return constraintNames[number(table)].unique(made);
}

void Translation::translateKeys() {
    for (Table const& table : from.tables) { // whose names no key may take
        viewNames.push_back(table.kind == TableKind::TABLE ? "" : relationNames.unique(table.name));
    }
    for (Index const& index : from.indexes) {
        indexNames.push_back(relationNames.unique(index.name));
    }
    for (Key const& key : from.keys) {
        if (key.kind != KeyKind::FOREIGN && isThere(key.table)) {
            translateKey(key);
        }
    }
}

void Translation::translateKey(Key const& before) {
    auto const table = number(before.table);
    std::string const called =
        withName(before.kind == KeyKind::PRIMARY ? "primary key" : "unique key", before.name) + " of table " +
        from.tables[table].name;
    std::set<int> const columns(before.columns.begin(), before.columns.end());
    if (before.columns.empty() || before.columns.size() > mostKeyColumns ||
        columns.size() != before.columns.size()) {
        leaveOut(table, called, "PostgreSQL allows 1 to 32 different columns");
        return;
    }
    if (isRepeated(before)) {
        leaveOut(table, called, "another key has the same columns");
        return;
    }
    Key key;
    key.kind = before.kind;
    key.comment = before.comment;
    key.table = tables[table];
    key.columns = before.columns;
    key.name =
        constraintName(before.table, before.name, before.kind == KeyKind::PRIMARY ? "pkey" : "key", true);
    if (!before.name.empty() && key.name != before.name) {
        leaveOut(table, "name of " + called, "PostgreSQL's is " + key.name);
    }
    leaveOutExtras(before.extras, {extra::autoincrement}, called, result.ofTables[number(key.table)]);
    result.structure.keys.push_back(key);
}

/// PostgreSQL keeps one of the keys of a table that have the same columns, and a primary one rather.
bool Translation::isRepeated(Key const& key) const {
    return key.kind == KeyKind::UNIQUE &&
           std::any_of(from.keys.begin(), from.keys.end(), [&](Key const& other) {
               bool const goesBefore =
                   other.kind == KeyKind::PRIMARY || (other.kind == KeyKind::UNIQUE && &other < &key);
               return goesBefore && other.table == key.table && other.columns == key.columns;
           });
}

bool Translation::isUnique(int table, std::vector<int> const& columns) const {
    std::set<int> const wanted(columns.begin(), columns.end());
    int const made = tables[number(table)];
    auto const isKey = [&](Key const& key) {
        return key.table == made && key.kind != KeyKind::FOREIGN &&
               std::set<int>(key.columns.begin(), key.columns.end()) == wanted;
    };
    auto const isIndex = [&](Index const& index) {
        std::set<int> members;
        for (IndexMember const& member : index.members) {
            members.insert(member.column);
        }
        return index.table == made && index.unique && index.members.size() == wanted.size() &&
               !findExtra(index.extras, extra::where) && members == wanted;
    };
    return std::any_of(result.structure.keys.begin(), result.structure.keys.end(), isKey) ||
           std::any_of(result.structure.indexes.begin(), result.structure.indexes.end(), isIndex);
}

/// Why PostgreSQL doesn't take a foreign key; empty if it does.
std::string Translation::problemOf(Key const& key) const {
    if (!isThere(key.referredTable)) {
        return "the table that it refers to doesn't exist";
    }
    std::set<int> const referred(key.referredColumns.begin(), key.referredColumns.end());
    if (key.columns.empty() || key.columns.size() != key.referredColumns.size() ||
        key.columns.size() > mostKeyColumns || referred.size() != key.referredColumns.size()) {
        return "the columns that it refers to don't exist, or their number differs";
    }
    if (!isUnique(key.referredTable, key.referredColumns)) {
        return "the columns that it refers to aren't unique";
    }
    for (std::size_t i = 0; i < key.columns.size(); ++i) {
        std::string const type = typeAt(key.table, key.columns[i]);
        std::string const other = typeAt(key.referredTable, key.referredColumns[i]);
        if (type != other && (kindOf(type) != kindOf(other) || kindOf(type) == Kind::OTHER)) {
            return "PostgreSQL doesn't compare " + type + " with " + other;
        }
        bool const isGenerated = result.structure.tables[number(tables[number(key.table)])]
                                     .columns[number(key.columns[i])]
                                     .generated;
        bool const changes = key.onUpdate == Action::CASCADE || key.onUpdate == Action::SET_NULL ||
                             key.onUpdate == Action::SET_DEFAULT || key.onDelete == Action::SET_NULL ||
                             key.onDelete == Action::SET_DEFAULT;
        if (isGenerated && changes) {
            return "it changes a generated column";
        }
    }
    return "";
}

void Translation::translateForeignKeys() {
    for (Key const& before : from.keys) {
        if (before.kind != KeyKind::FOREIGN || !isThere(before.table)) {
            continue;
        }
        std::string const called =
            withName("foreign key", before.name) + " of table " + from.tables[number(before.table)].name;
        std::string const problem = problemOf(before);
        if (!problem.empty()) {
            result.ofForeignKeys.push_back({called, problem, valueOf(before.extras, extra::references)});
            continue;
        }
        Key key = before;
        key.table = tables[number(before.table)];
        key.referredTable = tables[number(before.referredTable)];
        key.name = constraintName(before.table, before.name, "fkey", false);
        key.extras.clear();
        bool const isDeferred = valueOf(before.extras, extra::deferrable) == "INITIALLY DEFERRED";
        if (findExtra(before.extras, extra::deferrable)) {
            key.extras.push_back(
                {extra::deferrable, isDeferred ? "INITIALLY DEFERRED" : "INITIALLY IMMEDIATE"});
        }
        if (valueOf(before.extras, extra::match) == "FULL") {
            key.extras.push_back({extra::match, "FULL"});
            leaveOutExtras(before.extras, {extra::deferrable, extra::match}, called, result.ofForeignKeys);
        } else {
            leaveOutExtras(before.extras, {extra::deferrable}, called, result.ofForeignKeys);
        }
        if (!before.name.empty() && key.name != before.name) {
            result.ofForeignKeys.push_back({"name of " + called, "PostgreSQL's is " + key.name, ""});
        }
        result.structure.keys.push_back(key);
    }
}

void Translation::translateChecks() {
    for (Check const& before : from.checks) {
        if (!isThere(before.table)) {
            if (before.type >= 0) {
                result.ofObjects.push_back({"check of type " + from.types[number(before.type)].name,
                                            "types of another system aren't created", before.expression});
            }
            continue;
        }
        auto const table = number(before.table);
        std::string const called = withName("check", before.name) + " of table " + from.tables[table].name;
        try {
            Check check;
            check.expression = asCondition(expressionOf(table, before.expression)).text;
            check.table = tables[table];
            check.comment = before.comment;
            check.name = constraintName(before.table, before.name, "check", false);
            if (!before.name.empty() && check.name != before.name) {
                leaveOut(table, "name of " + called, "PostgreSQL's is " + check.name);
            }
            leaveOutExtras(before.extras, {}, called, result.ofTables[number(check.table)]);
            result.structure.checks.push_back(check);
        } catch (Untranslatable const& problem) {
            leaveOut(table, called, problem.what(), before.expression);
        }
    }
}

// ---- indexes -----------------------------------------------------------------------------------------

void Translation::translateIndexes() {
    for (Index const& index : from.indexes) {
        std::string const called = "index " + index.name;
        if (!isThere(index.table)) {
            result.ofIndexes.push_back({called, "its table doesn't exist, or is a view", ""});
            continue;
        }
        std::size_t const known = result.ofIndexes.size();
        try {
            translateIndex(index);
        } catch (Untranslatable const& problem) {
            result.ofIndexes.resize(known);
            result.ofIndexes.push_back({called, problem.what(), valueOf(index.extras, extra::where)});
        }
    }
}

void Translation::translateIndex(Index const& before) {
    Index index;
    index.name = indexNames[number(static_cast<int>(&before - from.indexes.data()))];
    index.comment = before.comment;
    index.table = tables[number(before.table)];
    index.unique = before.unique;
    std::string const called = "index " + before.name;
    if (before.members.empty() || before.members.size() > mostKeyColumns) {
        throw Untranslatable("PostgreSQL takes 1 to 32 columns");
    }
    for (IndexMember const& member : before.members) {
        index.members.push_back(translateMember(before, member));
        leaveOutExtras(member.extras, {}, called, result.ofIndexes);
    }
    if (std::string const* const where = findExtra(before.extras, extra::where)) {
        Value const condition = asCondition(expressionOf(number(before.table), *where));
        if (!condition.isImmutable) {
            throw Untranslatable("its condition isn't immutable");
        }
        index.extras.push_back({extra::where, condition.text});
    }
    leaveOutExtras(before.extras, {extra::where}, called, result.ofIndexes);
    if (index.name != before.name) {
        result.ofIndexes.push_back({"name of " + called, "PostgreSQL's is " + index.name, ""});
    }
    result.structure.indexes.push_back(index);
}

IndexMember Translation::translateMember(Index const& index, IndexMember const& before) {
    IndexMember member;
    member.column = before.column;
    member.descending = before.descending;
    if (before.column < 0) {
        Value const value = expressionOf(number(index.table), before.expression);
        if (!value.isImmutable || value.kind == Kind::LITERAL) {
            throw Untranslatable("its expression isn't immutable");
        }
        member.expression = value.text;
    }
    return member;
}

// ---- views -------------------------------------------------------------------------------------------

Source Translation::found(std::string const& name) {
    auto const known = byName.find(lowerCase(name));
    if (known == byName.end()) {
        throw Untranslatable("there is no table " + name);
    }
    std::size_t const index = known->second;
    Table const& table = from.tables[index];
    if (table.kind != TableKind::TABLE && views[index] == State::WAITING) {
        throw NeededView{index};
    }
    if (tables[index] < 0) {
        throw Untranslatable(name + " is left out");
    }
    Source source;
    if (table.kind == TableKind::TABLE) {
        source = sourceOf(index);
        for (Key const& key : result.structure.keys) {
            if (key.table == tables[index] && key.kind == KeyKind::PRIMARY) {
                source.primaryKey = key.columns;
            }
        }
    } else {
        source.name = name;
        source.columns = viewColumns[index];
    }
    Table const& made = result.structure.tables[number(tables[index])];
    source.text = quoteName(result.structure.schemas[number(made.schema)].name) + "." + quoteName(made.name);
    return source;
}

/// Each behind those that it names, without recursion: a chain of views can be long.
void Translation::translateViews() {
    for (std::size_t i = 0; i < from.tables.size(); ++i) {
        std::vector<std::size_t> way;
        if (from.tables[i].kind != TableKind::TABLE && views[i] == State::WAITING) {
            way.push_back(i);
        }
        while (!way.empty()) {
            try {
                translateView(way.back());
                way.pop_back();
            } catch (NeededView const& needed) {
                way.push_back(needed.index); // which isn't on the way, or it wouldn't be waiting
            }
        }
    }
}

void Translation::translateView(std::size_t index) {
    Table const& before = from.tables[index];
    views[index] = State::UNDER_WAY;
    try {
        if (before.columns.empty()) {
            throw Untranslatable("its columns are unknown");
        }
        std::vector<std::string> names;
        for (Column const& column : before.columns) {
            names.push_back(column.name);
        }
        Scope scope;
        Selection const selection = SqlTranslator(tokenize(before.statement), scope, find).selection(names);
        Table view;
        view.name = viewNames[index];
        view.comment = before.comment;
        view.schema = std::max(before.schema, 0);
        view.kind = before.kind;
        view.nativeKind = before.nativeKind;
        view.statement = selection.text;
        viewColumns[index] = selection.columns;
        tables[index] = static_cast<int>(result.structure.tables.size());
        result.structure.tables.push_back(view);
        result.ofTables.emplace_back();
        views[index] = State::DONE;
        leaveOutExtras(before.extras, {extra::columns}, "view " + before.name, result.ofObjects);
        remarkViewNames(before, view, selection.columns);
    } catch (Untranslatable const& problem) {
        views[index] = State::LEFT_OUT;
        result.ofObjects.push_back({"view " + before.name, problem.what(), before.statement});
    }
}

void Translation::remarkViewNames(Table const& before, Table const& view,
                                  std::vector<SourceColumn> const& columns) {
    std::string const called = "view " + before.name;
    if (view.name != before.name) {
        result.ofObjects.push_back({"name of " + called, "PostgreSQL's is " + view.name, ""});
    }
    for (SourceColumn const& column : columns) {
        if (column.text != quoteName(column.name)) {
            result.ofObjects.push_back(
                {"name of column " + before.name + "." + column.name, "PostgreSQL's is " + column.text, ""});
        }
    }
}

void Translation::leaveOutOthers() {
    for (Type const& type : from.types) {
        if (type.kind != TypeKind::BUILT_IN) {
            result.ofObjects.push_back({"type " + type.name, "types of another system aren't created", ""});
        }
    }
    for (Sequence const& sequence : from.sequences) {
        result.ofObjects.push_back(
            {"sequence " + sequence.name, "sequences of another system aren't created", ""});
    }
    for (Routine const& routine : from.routines) {
        result.ofObjects.push_back(
            {std::string(routine.procedure ? "procedure " : "function ") + routine.name,
             "it is in the language of another system", routine.statement});
    }
    for (Trigger const& trigger : from.triggers) {
        std::string const of =
            trigger.table >= 0 ? " of " + from.tables[number(trigger.table)].name : std::string();
        result.ofTriggers.push_back(
            {"trigger " + trigger.name + of, "it is in the language of another system", trigger.statement});
    }
}

} // namespace

ForeignStructure translateStructure(Structure const& structure, Habits const& habits) {
    return Translation(structure, habits).run();
}

} // namespace postgres
