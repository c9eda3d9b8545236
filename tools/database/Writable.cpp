#include "database/Writable.h"

#include "database/Extras.h"
#include "database/SqlTokens.h"
#include "kit/JsonText.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace database {
namespace {

constexpr char const* notUtf8 = "it isn't UTF-8; qor recode converts to UTF-8";
constexpr char const* notWhole = "the expression is empty or incomplete";

std::string named(std::string const& kind, std::string const& name) {
    return name.empty() ? kind + " without a name" : kind + " " + name;
}

bool isOwnType(Type const& type) {
    return type.kind != TypeKind::BUILT_IN || type.schema >= 0;
}

/// What types have in common that can be compared with each other.
std::string familyOf(std::string const& dataType) {
    static std::set<std::string> const numbers = {"SQL_BIGINT",  "SQL_INTEGER", "SQL_SMALLINT",
                                                  "SQL_TINYINT", "SQL_NUMERIC", "SQL_DECIMAL",
                                                  "SQL_REAL",    "SQL_FLOAT",   "SQL_DOUBLE"};
    static std::set<std::string> const bytes = {"SQL_BINARY", "SQL_BLOB", "SQL_LONGVARBINARY",
                                                "SQL_VARBINARY"};
    static std::set<std::string> const times = {"SQL_DATE", "SQL_TIMESTAMP", "SQL_TIMESTAMP_WITH_TIME_ZONE"};
    static std::set<std::string> const others = {"SQL_BOOLEAN", "SQL_TIME", "SQL_TIME_WITH_TIME_ZONE"};
    return numbers.count(dataType)  ? "number"
           : bytes.count(dataType)  ? "bytes"
           : times.count(dataType)  ? "time"
           : others.count(dataType) ? dataType
                                    : "text";
}

bool isClosed(Token const& token) {
    char const first = token.text.front();
    if (token.kind == TokenKind::QUOTED_NAME) {
        char const mark = first == '[' ? ']' : first;
        return token.text.size() > 1 && token.text.back() == mark &&
               (mark == ']' || std::count(token.text.begin(), token.text.end(), mark) % 2 == 0);
    }
    if (token.kind != TokenKind::STRING) {
        return first != '[' || token.text.back() == ']';
    }
    bool const hasEscapes = first == 'e' || first == 'E';
    char const mark = first == '$' ? '$' : '\'';
    return token.text.size() > 1 && token.text.back() == mark &&
           (hasEscapes || mark == '$' || std::count(token.text.begin(), token.text.end(), mark) % 2 == 0);
}

/// Whether all comments of what stands behind the last token are closed; one to the end of the line is, since
/// writers leave it out or end the line.
bool endsItsComments(std::string_view behind) {
    for (;;) {
        std::size_t const line = behind.find("--");
        std::size_t const block = behind.find("/*");
        if (line == behind.npos && block == behind.npos) {
            return true;
        }
        std::size_t const end = line < block ? behind.find('\n', line) : behind.find("*/", block + 2);
        if (end == behind.npos) {
            return line < block;
        }
        behind.remove_prefix(end + (line < block ? 1 : 2));
    }
}

/// Whether a text stays within itself: all that it opens it closes, and it ends no statement and begins no
/// comment that would take along what stands behind it.
bool isWhole(std::string const& sql, Brackets brackets) {
    std::vector<Token> const tokens = tokenize(sql, brackets);
    int depth = 0;
    for (Token const& token : tokens) {
        depth += token.isSymbol('(') - token.isSymbol(')');
        if (depth < 0 || token.isSymbol(';') || !isClosed(token)) {
            return false;
        }
    }
    if (tokens.empty() || depth != 0) {
        return false;
    }
    std::string_view const last = tokens.back().text;
    std::string const behind = sql.substr(static_cast<std::size_t>(last.data() - sql.data()) + last.size());
    return endsItsComments(behind);
}

/// Takes out of a vector what isn't kept. The answer has the new index of each element; -1 for those that
/// went.
template <class Record, class Keep>
std::vector<int> filter(std::vector<Record>& records, Keep const& keep) {
    std::vector<int> moved(records.size(), -1);
    std::vector<Record> kept;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (keep(records[i])) {
            moved[i] = static_cast<int>(kept.size());
            kept.push_back(std::move(records[i]));
        }
    }
    records.swap(kept);
    return moved;
}

int movedTo(std::vector<int> const& moved, int index) {
    return index < 0 ? -1 : moved[static_cast<std::size_t>(index)];
}

class Completing {
public:
    Completing(Structure const& given, Rules const& toFollow) : result{given, {}}, rules(toFollow) {}

    Writable run() {
        completeTexts();
        completeSchemas();
        completeTypes();
        completeTables();
        completeSequences();
        completeParents();
        completeKeys();
        completeForeignKeys();
        completeChecks();
        completeIndexes();
        completeOthers();
        return std::move(result);
    }

private:
    using Relation = std::pair<int, std::string>; ///< by schema and name

    bool omit(std::string what, std::string why, std::string original = "") {
        for (std::string* text : {&what, &original}) {
            *text = kit::isUtf8(*text) ? *text : kit::printable(*text);
        }
        result.omissions.push_back({std::move(what), std::move(why), std::move(original)});
        return false;
    }

    /// What isn't UTF-8 can't stand in a statement of those that are strict. Names that a thing needs are
    /// looked at later.
    void completeTexts() {
        if (!rules.utf8) {
            return;
        }
        completeName(structure.catalog, "database");
        for (Schema& schema : structure.schemas) {
            completeName(schema, "schema");
        }
        forEachNamed([this](Named& thing, char const* kind) {
            if (!kit::isUtf8(thing.comment)) {
                omit("comment on " + named(kind, thing.name), notUtf8);
                thing.comment.clear();
            }
        });
        for (Key& each : structure.keys) {
            completeName(each, "key");
        }
        for (Check& each : structure.checks) {
            completeName(each, "check");
        }
        for (Index& each : structure.indexes) {
            completeName(each, "index");
        }
    }

    void completeName(Named& thing, char const* kind) {
        if (!kit::isUtf8(thing.name)) {
            omit("name of " + named(kind, thing.name), notUtf8);
            thing.name.clear();
        }
    }

    template <class Look>
    void forEachNamed(Look const& look) {
        auto const all = [&](auto& records, char const* kind) {
            for (Named& record : records) {
                look(record, kind);
            }
        };
        look(structure.catalog, "database");
        all(structure.schemas, "schema");
        all(structure.types, "type");
        all(structure.tables, "table");
        for (Table& each : structure.tables) {
            all(each.columns, "column");
        }
        all(structure.keys, "key");
        all(structure.checks, "check");
        all(structure.indexes, "index");
        all(structure.sequences, "sequence");
    }

    /// What is wrong with a name; empty for a fine one.
    std::string problemOf(std::string const& name) const {
        if (name.empty()) {
            return rules.emptyNames ? "" : "it needs one";
        }
        return rules.utf8 && !kit::isUtf8(name) ? notUtf8 : "";
    }

    std::string key(std::string const& name) const { return rules.ignoreCase ? lowerCase(name) : name; }
    Table& table(int index) { return structure.tables[static_cast<std::size_t>(index)]; }
    Column const& column(int ofTable, int index) {
        return table(ofTable).columns[static_cast<std::size_t>(index)];
    }

    /// Schemas of one name are one; without a name it is the one that the rules say.
    void completeSchemas() {
        if (rules.defaultSchema.empty()) {
            return;
        }
        std::map<std::string, int> known;
        std::vector<int> moved;
        std::vector<Schema> kept;
        for (Schema& schema : structure.schemas) {
            if (schema.name.empty()) {
                schema.name = rules.defaultSchema;
            }
            auto const [place, isNew] = known.emplace(schema.name, static_cast<int>(kept.size()));
            moved.push_back(place->second);
            if (isNew) {
                kept.push_back(schema);
            }
        }
        structure.schemas.swap(kept);
        for (Type& type : structure.types) {
            if (isOwnType(type)) {
                settle(type.schema, known, moved);
            }
        }
        for (Table& each : structure.tables) {
            settle(each.schema, known, moved);
        }
        for (Sequence& sequence : structure.sequences) {
            settle(sequence.schema, known, moved);
        }
        for (Routine& routine : structure.routines) {
            settle(routine.schema, known, moved);
        }
    }

    void settle(int& schema, std::map<std::string, int>& known, std::vector<int> const& moved) {
        if (schema >= 0) {
            schema = movedTo(moved, schema);
            return;
        }
        auto const [place, isNew] =
            known.emplace(rules.defaultSchema, static_cast<int>(structure.schemas.size()));
        if (isNew) {
            structure.schemas.emplace_back().name = rules.defaultSchema;
        }
        schema = place->second;
    }

    bool isFree(int schema, std::string const& name) { return relations.emplace(schema, name).second; }

    void completeTypes() {
        for (Type& type : structure.types) {
            if (type.kind == TypeKind::BUILT_IN && rules.comparesTypes) {
                type.schema = -1; // it goes by what it holds
            }
        }
        std::vector<int> const moved =
            filter(structure.types, [this](Type const& type) { return isWritable(type); });
        for (Type& type : structure.types) {
            type.base = movedTo(moved, type.base);
            completeDomain(type);
        }
        moveTypes(moved);
    }

    bool isWritable(Type const& type) {
        if (!isOwnType(type) || !rules.strict) {
            return true;
        }
        if (std::string const problem = problemOf(type.name); !problem.empty()) {
            return omit(named("type", type.name), problem);
        }
        if (!std::all_of(type.values.begin(), type.values.end(), kit::isUtf8)) {
            return omit("type " + type.name, "not all of its values are UTF-8; qor recode converts to UTF-8");
        }
        if (std::set<std::string>(type.values.begin(), type.values.end()).size() != type.values.size()) {
            return omit("type " + type.name, "it has a duplicate value");
        }
        if (type.kind == TypeKind::RANGE && !findExtra(type.extras, extra::range)) {
            return omit("type " + type.name, "a range needs a subtype");
        }
        return types.emplace(type.schema, type.name).second ||
               omit("type " + type.name, "its name is already taken");
    }

    void completeDomain(Type& type) {
        if (type.kind == TypeKind::DOMAIN_TYPE && type.base < 0 && rules.typesNeeded) {
            omit("base of type " + type.name, "it is unknown, so text is used instead");
        }
        if (!type.defaultValue.empty() && !isWhole(type.defaultValue, brackets)) {
            omit("default of type " + type.name, notWhole, type.defaultValue);
            type.defaultValue.clear();
        }
    }

    void moveTypes(std::vector<int> const& moved) {
        for (Table& each : structure.tables) {
            for (Column& one : each.columns) {
                if (one.type >= 0 && movedTo(moved, one.type) < 0) {
                    omit("the type of column " + one.name + " of " + each.name, "that type is left out");
                }
                one.type = movedTo(moved, one.type);
            }
        }
        for (Routine& routine : structure.routines) {
            routine.returnType = movedTo(moved, routine.returnType);
            for (Argument& argument : routine.arguments) {
                argument.type = movedTo(moved, argument.type);
            }
        }
        for (Check& check : structure.checks) {
            if (check.type >= 0) {
                check.type = movedTo(moved, check.type);
            }
        }
    }

    void completeTables() {
        for (Table& each : structure.tables) {
            completeColumns(each);
        }
        tables = filter(structure.tables, [this](Table const& each) {
            std::string const what = named(each.kind == TableKind::TABLE ? "table" : "view", each.name);
            if (std::string const problem = problemOf(each.name); !problem.empty()) {
                return omit(what, problem);
            }
            std::vector<Token> const query = tokenize(each.statement);
            if (each.kind != TableKind::TABLE &&
                (query.empty() || !std::all_of(query.begin(), query.end(), isClosed))) {
                return omit(what, "its query is unknown");
            }
            bool const isTold = findExtra(each.extras, extra::statement) != nullptr;
            if (each.kind == TableKind::TABLE && each.columns.empty() && !rules.emptyTables && !isTold) {
                return omit(what, "it has no columns");
            }
            // Without schemas a taken name gets another one.
            return !rules.strict ||
                   (isFree(each.schema, each.name) && types.emplace(each.schema, each.name).second) ||
                   omit(what, "its name is already taken");
        });
    }

    void completeColumns(Table& each) {
        std::set<std::string> taken;
        columns.push_back(filter(each.columns, [&](Column const& one) {
            std::string const what = named("column", one.name) + " of " + each.name;
            if (std::string const problem = problemOf(one.name); !problem.empty()) {
                return omit(what, problem);
            }
            return taken.insert(key(one.name)).second || omit(what, "its name is already taken");
        }));
        for (Column& one : each.columns) {
            completeIdentity(one, each.name);
            if (one.type < 0 && rules.typesNeeded && each.kind == TableKind::TABLE) {
                omit("type of column " + one.name + " of " + each.name,
                     "it is unknown, so text is used instead");
            }
            if ((one.generated || !one.defaultValue.empty()) && !isWhole(one.defaultValue, brackets)) {
                omit((one.generated ? "that column " : "default of column ") + one.name + " of " + each.name +
                         (one.generated ? " is computed" : ""),
                     notWhole, one.defaultValue);
                one.generated = false;
                one.defaultValue.clear();
            }
        }
    }

    bool isCountable(Column const& one) const {
        static std::set<std::string> const countable = {"SQL_SMALLINT", "SQL_INTEGER", "SQL_BIGINT"};
        return one.type >= 0 &&
               countable.count(structure.types[static_cast<std::size_t>(one.type)].dataType) > 0;
    }

    /// Only whole numbers are counted up.
    void completeIdentity(Column& one, std::string const& of) {
        if (!findExtra(one.extras, extra::identity) || isCountable(one)) {
            return;
        }
        omit("identity of column " + one.name + " of " + of, "its type isn't an integer type");
        auto const isIdentity = [](Extra const& extra) {
            return extra.name == "identity" || extra.name == "identity sequence";
        };
        one.extras.erase(std::remove_if(one.extras.begin(), one.extras.end(), isIdentity), one.extras.end());
    }

    void completeSequences() {
        filter(structure.sequences, [this](Sequence const& sequence) {
            if (std::string const problem = problemOf(sequence.name); !problem.empty()) {
                return omit(named("sequence", sequence.name), problem);
            }
            return !rules.strict || isFree(sequence.schema, sequence.name) ||
                   omit("sequence " + sequence.name, "its name is already taken");
        });
    }

    /// Parents in a circle lose the one that closes it.
    void completeParents() {
        for (std::size_t i = 0; i < structure.tables.size(); ++i) {
            Table& each = structure.tables[i];
            std::vector<int> kept;
            for (int const given : each.parents) {
                int const parent = movedTo(tables, given);
                bool const isPlain =
                    each.kind == TableKind::TABLE && parent >= 0 && table(parent).kind == TableKind::TABLE;
                bool const isTwice = std::find(kept.begin(), kept.end(), parent) != kept.end();
                if (isPlain && !isTwice && parent != static_cast<int>(i) && fits(each, table(parent))) {
                    kept.push_back(parent);
                } else {
                    omit("that " + each.name + " inherits from another table",
                         "it can't inherit from that one");
                }
            }
            each.parents.swap(kept);
        }
        for (std::size_t i = 0; i < structure.tables.size(); ++i) {
            cutCircle(static_cast<int>(i));
        }
    }

    /// Whether columns of one name are of one type.
    static bool fits(Table const& child, Table const& parent) {
        std::map<std::string, int> types;
        for (Column const& one : parent.columns) {
            types.emplace(one.name, one.type);
        }
        return std::all_of(child.columns.begin(), child.columns.end(), [&](Column const& one) {
            auto const known = types.find(one.name);
            return known == types.end() || known->second == one.type;
        });
    }

    void cutCircle(int start) {
        if (settled.count(start)) {
            return;
        }
        struct Step {
            int table;
            std::size_t next;
        };
        std::vector<Step> way{{start, 0}};
        std::set<int> onWay{start};
        while (!way.empty()) {
            Step& step = way.back();
            std::vector<int>& parents = table(step.table).parents;
            if (step.next == parents.size()) {
                settled.insert(step.table);
                onWay.erase(step.table);
                way.pop_back();
            } else if (onWay.count(parents[step.next])) {
                omit("that " + table(step.table).name + " inherits from " + table(parents[step.next]).name,
                     "that one inherits from it");
                parents.erase(parents.begin() + static_cast<std::ptrdiff_t>(step.next));
            } else if (int const parent = parents[step.next++]; !settled.count(parent)) {
                onWay.insert(parent);
                way.push_back({parent, 0});
            }
        }
    }

    /// The new places of columns; false if one has none or comes twice.
    bool move(int ofTable, std::vector<int>& places) {
        std::set<int> met;
        for (int& place : places) {
            place = movedTo(columns[static_cast<std::size_t>(ofTable)], place);
            if (place < 0 || (!met.insert(place).second && rules.strict)) {
                return false;
            }
        }
        return !places.empty();
    }

    static std::string kindOf(Key const& record) {
        return record.kind == KeyKind::FOREIGN   ? "foreign key"
               : record.kind == KeyKind::PRIMARY ? "primary key"
                                                 : "unique key";
    }

    void completeKeys() {
        std::set<int> withPrimary;
        std::set<std::pair<int, std::string>> taken;
        filter(structure.keys, [&](Key& record) {
            std::string const what = named(kindOf(record), record.name) + " of " + givenName(record.table);
            int const to = movedTo(tables, record.table);
            if (to < 0 || table(to).kind != TableKind::TABLE) {
                return omit(what, "there is no such table");
            }
            if (!move(record.table, record.columns)) {
                return omit(what, "a column is missing or duplicate");
            }
            record.table = to;
            if (record.kind == KeyKind::PRIMARY && !withPrimary.insert(to).second) {
                return omit(what, "the table already has one");
            }
            if (record.kind == KeyKind::FOREIGN) {
                return completeReference(record, what);
            }
            std::set<int> const set(record.columns.begin(), record.columns.end());
            unique[to].insert(set);
            keepName(record, table(to), taken, true, what);
            return true;
        });
        constraints = std::move(taken);
    }

    /// A name that another one has is left away where names must differ.
    void keepName(Named& record, Table const& of, std::set<std::pair<int, std::string>>& taken,
                  bool isRelation, std::string const& what) {
        if (record.name.empty() || !rules.strict) {
            return;
        }
        int const number = static_cast<int>(&of - structure.tables.data());
        bool const isNew = taken.emplace(number, record.name).second;
        if (!isNew || (isRelation && !isFree(of.schema, record.name))) {
            omit("the name of " + what, "it is taken");
            record.name.clear();
        }
    }

    bool completeReference(Key& record, std::string const& what) {
        bool const isTold = findExtra(record.extras, extra::references) != nullptr;
        int const target = movedTo(tables, record.referredTable);
        if (isTold) {
            record.referredTable = target;
            record.referredColumns.clear();
            return true;
        }
        if (target < 0 || (rules.strict && table(target).kind != TableKind::TABLE)) {
            return omit(what, "it refers to no table");
        }
        bool const isComplete = move(record.referredTable, record.referredColumns) &&
                                record.referredColumns.size() == record.columns.size();
        record.referredTable = target;
        return isComplete || omit(what, "the columns that it refers to are unknown");
    }

    void completeForeignKeys() {
        addUniqueIndexes();
        std::set<std::pair<int, std::string>> taken = constraints;
        filter(structure.keys, [&](Key& record) {
            if (record.kind != KeyKind::FOREIGN) {
                return true;
            }
            std::string const what = named(kindOf(record), record.name) + " of " + table(record.table).name;
            if (rules.strict && record.referredTable >= 0 && !record.referredColumns.empty()) {
                std::set<int> const referred(record.referredColumns.begin(), record.referredColumns.end());
                if (!unique[record.referredTable].count(referred)) {
                    return omit(what, "the columns that it refers to aren't a key");
                }
                if (!comparable(record)) {
                    return omit(what, "the types of its columns aren't comparable");
                }
            }
            keepName(record, table(record.table), taken, false, what);
            return true;
        });
        constraints = std::move(taken);
    }

    /// They can be referred to as well.
    void addUniqueIndexes() {
        for (Index const& index : structure.indexes) {
            std::set<int> set;
            for (IndexMember const& member : index.members) {
                set.insert(movedTo(columns[static_cast<std::size_t>(index.table)], member.column));
            }
            if (index.unique && !set.count(-1) && !findExtra(index.extras, extra::where)) {
                unique[movedTo(tables, index.table)].insert(set);
            }
        }
    }

    Type const* plainTypeOf(Column const& one) const {
        Type const* type = one.type < 0 ? nullptr : &structure.types[static_cast<std::size_t>(one.type)];
        while (type && type->kind == TypeKind::DOMAIN_TYPE && type->base >= 0) {
            type = &structure.types[static_cast<std::size_t>(type->base)];
        }
        return type;
    }

    bool comparable(Key const& record) {
        for (std::size_t i = 0; i < record.columns.size(); ++i) {
            Type const* const near = plainTypeOf(column(record.table, record.columns[i]));
            Type const* const far = plainTypeOf(column(record.referredTable, record.referredColumns[i]));
            bool const isPlain = (!near || !isOwnType(*near)) && (!far || !isOwnType(*far));
            bool const isKnown = rules.comparesTypes || !near || !far;
            bool const differs = !isPlain ? near != far
                                          : isKnown && familyOf(near ? near->dataType : "") !=
                                                           familyOf(far ? far->dataType : "");
            if (differs) {
                return false;
            }
        }
        return true;
    }

    void completeChecks() {
        std::set<std::pair<int, std::string>>& taken = constraints;
        filter(structure.checks, [&](Check& check) {
            bool const ofTable = check.table >= 0;
            std::string const what =
                named("check", check.name) + (ofTable ? " of " + givenName(check.table) : "");
            check.table = movedTo(tables, check.table);
            if (ofTable ? check.table < 0 || table(check.table).kind != TableKind::TABLE : check.type < 0) {
                return omit(what, "there is no such table or type");
            }
            if (!isWhole(check.expression, brackets)) {
                return omit(what, notWhole, check.expression);
            }
            if (ofTable) {
                keepName(check, table(check.table), taken, false, what);
            }
            return true;
        });
    }

    void completeIndexes() {
        filter(structure.indexes, [&](Index& index) {
            std::string const what = named("index", index.name) + " of " + givenName(index.table);
            int const to = movedTo(tables, index.table);
            if (to < 0 || (rules.strict && table(to).kind == TableKind::VIEW)) {
                return omit(what, "there is no such table");
            }
            bool areThere = !index.members.empty();
            for (IndexMember& member : index.members) {
                member.column = movedTo(columns[static_cast<std::size_t>(index.table)], member.column);
                areThere = areThere && (member.column >= 0 || isWhole(member.expression, brackets));
            }
            index.table = to;
            if (!areThere) {
                return omit(what, "a column or expression of it is missing");
            }
            std::string const* const where = findExtra(index.extras, extra::where);
            if (where && !isWhole(*where, brackets)) {
                return omit(what, notWhole, *where);
            }
            std::set<std::pair<int, std::string>> none;
            keepName(index, table(to), none, true, what);
            return true;
        });
    }

    void completeOthers() {
        filter(structure.triggers, [&](Trigger& trigger) {
            std::string const what = named("trigger", trigger.name) + " of " + givenName(trigger.table);
            trigger.table = movedTo(tables, trigger.table);
            if (trigger.table < 0) {
                return omit(what, "there is no such table");
            }
            return !tokenize(trigger.statement).empty() || omit(what, "its statement is unknown");
        });
        filter(structure.routines, [&](Routine const& routine) {
            return !tokenize(routine.statement).empty() ||
                   omit(named(routine.procedure ? "procedure" : "function", routine.name),
                        "its statement is unknown");
        });
    }

    /// The name of a table as it was given.
    std::string const& givenName(int index) const { return names[static_cast<std::size_t>(index)]; }

    static std::vector<std::string> namesOf(Structure const& structure) {
        std::vector<std::string> all;
        for (Table const& each : structure.tables) {
            all.push_back(each.name);
        }
        return all;
    }

    Writable result;
    Structure& structure = result.structure;
    Rules const& rules;
    Brackets const brackets = rules.brackets ? Brackets::NAME : Brackets::VALUES;
    std::vector<std::string> const names = namesOf(structure); ///< of the tables, those left out among them
    std::vector<int> tables;               ///< where the tables have gone; -1 for those left out
    std::vector<std::vector<int>> columns; ///< likewise those of each table, by the table's old place
    std::set<Relation> relations;          ///< tables, views, sequences, keys and indexes
    std::set<Relation> types;              ///< and those of the rows of tables and views
    std::set<std::pair<int, std::string>> constraints;
    std::map<int, std::set<std::set<int>>> unique;
    std::set<int> settled; ///< tables whose parents form no circle
};

} // namespace

Writable writable(Structure const& structure, Rules const& rules) {
    return Completing(structure, rules).run();
}

} // namespace database
