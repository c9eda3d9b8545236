#include "sqlite/SqlWriter.h"

#include "database/Enumerations.h"
#include "database/SqlTokens.h"
#include "database/Writable.h"
#include "sqlite/Names.h"
#include "sqlite/Requirements.h"
#include "sqlite/Scratch.h"
#include "sqlite/Translation.h"

#include <qor/QORDataType.h>

#include <algorithm>
#include <map>
#include <ostream>
#include <set>
#include <unordered_map>

namespace sqlite {
namespace {

using database::Action;
using database::Column;
using database::Extra;
using database::Extras;
using database::findExtra;
using database::Key;
using database::KeyKind;
using database::Omission;
using database::Structure;
using database::Table;
using database::TableKind;
using database::Token;
using database::TokenKind;
using database::Type;
using database::TypeKind;

bool contains(std::string const& text, char const* part) {
    return text.find(part) != std::string::npos;
}

std::string valueOf(Extras const& extras, char const* name) {
    std::string const* const value = findExtra(extras, name);
    return value ? *value : "";
}

/// Whether the tokens are a value that can stand behind DEFAULT without parentheses.
bool isPlainValue(std::vector<Token> const& tokens) {
    if (tokens.size() == 1) {
        return tokens[0].kind != TokenKind::SYMBOL;
    }
    return tokens.size() == 2 && tokens[1].kind == TokenKind::NUMBER &&
           (tokens[0].isSymbol('-') || tokens[0].isSymbol('+'));
}

/// Whether a declared type can stand there without quotation marks: words, and numbers in parentheses at the
/// end.
bool isPlainType(std::string const& declared) {
    int parentheses = 0;
    for (Token const& token : database::tokenize(declared)) {
        bool const inside = parentheses == 1 && !token.isSymbol('(');
        bool const plain = token.kind == TokenKind::WORD && quoteName(token.text) == token.text;
        bool const keyword =
            token.kind == TokenKind::WORD && database::equalIgnoringCase(token.text, "DATETIME");
        parentheses += token.isSymbol('(') + token.isSymbol(')');
        bool const behind = parentheses > 2 || (parentheses == 2 && !token.isSymbol(')'));
        if (behind || (!inside && !token.isSymbol('(') && !plain && !keyword)) {
            return false;
        }
    }
    return parentheses == 0 || parentheses == 2;
}

/// What tells that something comes from a parent table; here it is the table's own.
constexpr char const* inherited = "inherited";

/// A part of a CREATE TABLE.
struct Part {
    std::string text;
    std::string plain;  ///< what stands for it if SQLite refuses it; empty for nothing
    std::string object; ///< how an omission calls it
};

class Writer {
public:
    Writer(database::Writable const& toWrite, std::ostream& stream)
        : structure(toWrite.structure), out(stream), native(toWrite.structure.origin.system == "SQLite") {
        for (database::Omission const& omission : toWrite.omissions) {
            database::leaveOut(omission, out, omissions);
        }
    }

    database::Omissions run() {
        nameTables();
        collect();
        writeSettings();
        out << "BEGIN;\n";
        remarkCatalog();
        writeTables();
        for (database::Index const& index : structure.indexes) {
            writeIndex(index);
        }
        writeViews();
        for (database::Trigger const& trigger : structure.triggers) {
            writeTrigger(trigger);
        }
        remarkOthers();
        writeNumbers();
        out << "COMMIT;\n";
        return std::move(omissions);
    }

private:
    // ---- preparation ---------------------------------------------------------------------------------

    /// SQLite has one schema, in which tables and indexes share their names, whatever the case of the
    /// letters.
    std::string uniqueName(std::string const& name, int schema) {
        std::string candidate = name;
        if (!taken.insert(database::lowerCase(candidate)).second) {
            candidate =
                (schema < 0 ? "" : structure.schemas[static_cast<std::size_t>(schema)].name + "_") + name;
            for (int i = 2; !taken.insert(database::lowerCase(candidate)).second; ++i) {
                candidate = name + "_" + std::to_string(i);
            }
        }
        return candidate;
    }

    std::string qualifiedName(Table const& table) const {
        return (table.schema < 0 ? ""
                                 : structure.schemas[static_cast<std::size_t>(table.schema)].name + ".") +
               table.name;
    }

    void nameTables() {
        for (Table const& table : structure.tables) {
            names.push_back(uniqueName(table.name, table.schema));
            if (table.schema >= 0) {
                std::string const& schema = structure.schemas[static_cast<std::size_t>(table.schema)].name;
                qualified[{schema, table.name}] = names.back();
            }
            if (names.back() != table.name) {
                leftOut("name of table " + qualifiedName(table),
                        "SQLite allows one table of this name, so it becomes " + names.back());
            }
        }
    }

    void collect() {
        keysOf.resize(structure.tables.size());
        checksOf.resize(structure.tables.size());
        for (Key const& key : structure.keys) {
            keysOf[static_cast<std::size_t>(key.table)].push_back(&key);
        }
        for (database::Check const& check : structure.checks) {
            if (check.table >= 0) {
                checksOf[static_cast<std::size_t>(check.table)].push_back(&check);
            } else {
                domainChecks[check.type].push_back(&check);
            }
        }
    }

    void remark(std::string const& text) { database::writeComment(text, out); }

    void leftOut(std::string const& what, std::string const& why, std::string const& original = "") {
        database::leaveOut({what, why, original}, out, omissions);
    }

    /// The same behind the table that is being written.
    void leftOutOfTable(std::string const& what, std::string const& why, std::string const& original = "") {
        pending.push_back({what, why, original});
    }

    /// SQLite has no comments. Those of its own structures are remarks of the reader.
    void remarkComment(std::string const& what, database::Named const& thing) {
        if (!thing.comment.empty() && native) {
            remark(what + ": " + thing.comment);
        } else if (!thing.comment.empty()) {
            leftOut("comment on " + what, "SQLite has no comments", thing.comment);
        }
    }

    /// Tells of the extras of another system that have no place here.
    void remarkExtras(std::string const& what, Extras const& extras, std::set<std::string> const& said) {
        for (Extra const& extra : extras) {
            if (!native && !said.count(extra.name) && extra.name != inherited) {
                database::leaveOut(database::omissionOf(extra, what, "SQLite"), out, omissions);
            }
        }
    }

    // ---- the database as a whole ---------------------------------------------------------------------

    /// What must be said before there is a table, and outside of a transaction.
    void writeSettings() {
        for (char const* const name : {"encoding", "auto_vacuum"}) {
            if (std::string const value = valueOf(structure.catalog.extras, name); native && !value.empty()) {
                out << "PRAGMA " << name << " = " << quoteText(value) << ";\n";
            }
        }
    }

    void writeNumbers() {
        for (char const* const name : {"user_version", "application_id"}) {
            std::string const value = valueOf(structure.catalog.extras, name);
            bool const isNumber =
                !value.empty() && value.find_first_not_of("-0123456789") == std::string::npos;
            if (native && isNumber) {
                out << "PRAGMA " << name << " = " << value << ";\n";
            }
        }
    }

    void remarkCatalog() {
        remarkComment("database " + structure.catalog.name, structure.catalog);
        remarkExtras("database " + structure.catalog.name, structure.catalog.extras, {});
        for (database::Schema const& schema : structure.schemas) {
            if (!native && structure.schemas.size() > 1) {
                leftOut("schema " + schema.name, "SQLite has one schema, which contains all tables");
            }
            remarkComment("schema " + schema.name, schema);
            remarkExtras("schema " + schema.name, schema.extras, {});
        }
    }

    /// An expression or statement as SQLite takes it, or what it has that SQLite may not have.
    Translation expression(std::string const& sql) const {
        if (native) {
            return {database::trimmedSql(sql), ""};
        }
        std::string const inSchema = withoutSchemas(sql);
        return inSchema.empty() && !sql.empty()
                   ? Translation{"", "it names a table that has another name in SQLite"}
                   : translateSql(inSchema);
    }

    /// Tables with their schema in front go without; empty if one of them has another name here.
    std::string withoutSchemas(std::string const& sql) const {
        std::vector<Token> const tokens = database::tokenize(sql);
        std::string result;
        char const* rest = sql.data();
        for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
            if (!tokens[i + 1].isSymbol('.')) {
                continue;
            }
            auto const known = qualified.find({tokens[i].name(), tokens[i + 2].name()});
            if (known != qualified.end()) {
                if (known->second != tokens[i + 2].name()) {
                    return "";
                }
                result.append(rest, tokens[i].text.data()).append(quoteName(known->second));
                i += 2;
                rest = tokens[i].text.data() + tokens[i].text.size();
            }
        }
        return result.append(rest, sql.data() + sql.size());
    }

    // ---- tables --------------------------------------------------------------------------------------

    void writeTables() {
        for (std::size_t i = 0; i < structure.tables.size(); ++i) {
            Table const& table = structure.tables[i];
            if (table.kind != TableKind::TABLE || contains(table.nativeKind, "SHADOW TABLE")) {
                continue; // shadow tables come with their virtual table
            }
            if (std::string const* statement = findExtra(table.extras, "statement"); statement && native) {
                out << *statement << ";\n";
            } else {
                writeTable(i);
            }
        }
    }

    void writeTable(std::size_t number) {
        Table const& table = structure.tables[number];
        writeTableRemarks(table);
        collectParts(number);
        std::string const text = tableText(number);
        if (!text.empty()) {
            out << text << ";\n";
        }
        for (Omission& omission : pending) {
            database::leaveOut(std::move(omission), out, omissions);
        }
        pending.clear();
    }

    /// The columns and constraints of a table, in order.
    void collectParts(std::size_t number) {
        Table const& table = structure.tables[number];
        parts.clear();
        Key const* const columnKey = keyInColumn(number);
        std::vector<Key const*> const before = keysBefore(number, columnKey);
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            bool const isKey = columnKey && columnKey->columns[0] == static_cast<int>(i);
            std::string text = columnText(table, table.columns[i]);
            for (Key const* key : before) {
                bool const isHere = key->columns[0] == static_cast<int>(i);
                text += isHere ? constraintName(key->name) + " UNIQUE" + conflictText(key->extras) : "";
            }
            parts.push_back({text + (isKey ? primaryKeyText(*columnKey) : ""),
                             quoteName(table.columns[i].name) + " " + typeText(table.columns[i]),
                             "what column " + table.name + "." + table.columns[i].name + " requires"});
        }
        for (Key const* key : keysOf[number]) {
            bool const isBefore = std::find(before.begin(), before.end(), key) != before.end();
            if (key != columnKey && !isBefore) {
                parts.push_back({keyText(*key), "", keyName(*key)});
            }
        }
        for (database::Check const* check : checksOf[number]) {
            addCheck(table, check->name, expression(check->expression), check->expression);
        }
        for (Column const& column : table.columns) {
            addTypeChecks(table, column);
        }
    }

    std::string keyName(Key const& key) const {
        return std::string(key.kind == KeyKind::FOREIGN   ? "foreign key "
                           : key.kind == KeyKind::PRIMARY ? "primary key "
                                                          : "unique key ") +
               (key.name.empty() ? "" : key.name + " ") + "of table " +
               names[static_cast<std::size_t>(key.table)];
    }

    /// The statement that makes a table; empty if there is none. What SQLite refuses of another system's
    /// table is left out of it.
    std::string tableText(std::size_t number) {
        std::string const all = tableText(number, parts);
        if (native || scratch.take(all).empty()) {
            return all;
        }
        std::vector<Part> kept;
        for (Part const& part : parts) {
            kept.push_back({part.plain, part.plain, part.object});
        }
        for (std::size_t i = 0; i < parts.size(); ++i) {
            kept[i].text = parts[i].text;
            if (std::string const problem = scratch.check(tableText(number, kept)); !problem.empty()) {
                kept[i].text = parts[i].plain;
                leftOutOfTable(parts[i].object, "SQLite says: " + problem, parts[i].text);
            }
        }
        std::string const text = tableText(number, kept);
        std::string const problem = scratch.take(text);
        if (!problem.empty()) {
            leftOutOfTable("table " + names[number], "SQLite says: " + problem, text);
            return "";
        }
        return text;
    }

    std::string tableText(std::size_t number, std::vector<Part> const& from) const {
        std::string text;
        for (Part const& part : from) {
            text += part.text.empty() ? "" : (text.empty() ? "    " : ",\n    ") + part.text;
        }
        return "CREATE TABLE " + quoteName(names[number]) + " (\n" + text + "\n)" +
               tableOptions(structure.tables[number]);
    }

    void writeTableRemarks(Table const& table) {
        remarkComment("table " + table.name, table);
        remarkExtras("table " + table.name, table.extras, {});
        for (int const parent : table.parents) {
            leftOut("that table " + table.name + " inherits from " + names[static_cast<std::size_t>(parent)],
                    "SQLite has no inheritance");
        }
        for (Column const& column : table.columns) {
            std::string const name = "column " + table.name + "." + column.name;
            remarkComment(name, column);
            remarkExtras(name, column.extras, {"generated"});
        }
        auto const number = static_cast<std::size_t>(&table - structure.tables.data());
        for (Key const* key : keysOf[number]) {
            remarkComment(keyName(*key), *key);
        }
        for (database::Check const* check : checksOf[number]) {
            remarkComment(
                "check " + (check->name.empty() ? "" : check->name + " ") + "of table " + table.name, *check);
            remarkExtras("check " + check->name + " of table " + table.name, check->extras, {});
        }
    }

    std::string tableOptions(Table const& table) const {
        std::string options;
        if (native && contains(table.nativeKind, "WITHOUT ROWID")) {
            options = " WITHOUT ROWID";
        }
        if (native && contains(table.nativeKind, "STRICT")) {
            options += options.empty() ? " STRICT" : ", STRICT";
        }
        return options;
    }

    /// The primary key that must stand with its column, or null.
    Key const* keyInColumn(std::size_t table) const {
        for (Key const* key : keysOf[table]) {
            bool const needed = findExtra(key->extras, "autoincrement") || findExtra(key->extras, "order");
            if (native && key->kind == KeyKind::PRIMARY && key->columns.size() == 1 && needed) {
                return key;
            }
        }
        return nullptr;
    }

    /// Those declared before a primary key that stands in its column are declared in columns too.
    std::vector<Key const*> keysBefore(std::size_t table, Key const* columnKey) const {
        std::vector<Key const*> result;
        auto const& keys = keysOf[table];
        auto const end = std::find(keys.begin(), keys.end(), columnKey);
        for (auto key = keys.begin(); columnKey && key != end; ++key) {
            bool const canStandThere = (*key)->kind == KeyKind::UNIQUE && (*key)->columns.size() == 1 &&
                                       (*key)->columns[0] <= columnKey->columns[0] &&
                                       !findExtra((*key)->extras, "columns");
            if (canStandThere) {
                result.push_back(*key);
            }
        }
        return result;
    }

    // ---- columns -------------------------------------------------------------------------------------

    Type const* typeOf(Column const& column) const {
        return column.type < 0 ? nullptr : &structure.types[static_cast<std::size_t>(column.type)];
    }

    std::string columnText(Table const& table, Column const& column) {
        std::string text = quoteName(column.name);
        if (std::string const type = typeText(column); !type.empty()) {
            text += " " + type;
        }
        if (std::string const collation = valueOf(column.extras, "collation"); native && !collation.empty()) {
            text += " COLLATE " + quoteName(collation);
        }
        Type const* const type = typeOf(column);
        bool const inDomain = type && type->kind == TypeKind::DOMAIN_TYPE;
        if (column.notNull || (inDomain && type->notNull)) {
            text += constraintName(valueOf(column.extras, "not null constraint")) + " NOT NULL" +
                    conflictText(column.extras);
        }
        if (column.generated) {
            return text + generatedText(table, column);
        }
        std::string const& value =
            column.defaultValue.empty() && inDomain ? type->defaultValue : column.defaultValue;
        return text + defaultText(table, column, value);
    }

    std::string typeText(Column const& column) const {
        Type const* type = typeOf(column);
        if (!type) {
            return "";
        }
        if (native) {
            return type->declaration.empty() || isPlainType(type->declaration) ? type->declaration
                                                                               : quoteName(type->declaration);
        }
        while (type->base >= 0 && type->kind == TypeKind::DOMAIN_TYPE) {
            type = &structure.types[static_cast<std::size_t>(type->base)];
        }
        return foreignTypeText(*type);
    }

    static std::string foreignTypeText(Type const& type) {
        if (type.kind == TypeKind::ENUMERATION || type.dataType == "SQL_LONGVARCHAR") {
            return "TEXT";
        }
        if (type.dataType == "SQL_INTEGER") {
            return "INTEGER"; // no other spelling makes a key of it that numbers the rows
        }
        char const* const known = getDataTypeName(type.dataType.c_str());
        if (type.dataType == "undefined" || !known) {
            return "";
        }
        std::string text = database::upperCase(known);
        if (type.length > 0) {
            text += "(" + std::to_string(type.length) + (type.scale ? "," + std::to_string(type.scale) : "") +
                    ")";
        }
        return isPlainType(text) ? text : quoteName(text);
    }

    std::string generatedText(Table const& table, Column const& column) {
        Translation const translation = expression(column.defaultValue);
        if (!translation.problem.empty()) {
            leftOutOfTable("that column " + table.name + "." + column.name + " is computed",
                           translation.problem, column.defaultValue);
            return "";
        }
        bool const stored = valueOf(column.extras, "generated") == "STORED";
        return " GENERATED ALWAYS AS (" + translation.text + ")" + (stored ? " STORED" : " VIRTUAL");
    }

    std::string defaultText(Table const& table, Column const& column, std::string const& value) {
        if (value.empty()) {
            return "";
        }
        std::string const name = constraintName(valueOf(column.extras, "default constraint")) + " DEFAULT ";
        std::string const lower = database::lowerCase(value);
        if (!native && (lower == "now()" || lower == "current_timestamp")) {
            return name + "CURRENT_TIMESTAMP";
        }
        Translation const translation = expression(value);
        if (!translation.problem.empty()) {
            leftOutOfTable("default of column " + table.name + "." + column.name, translation.problem, value);
            return "";
        }
        std::string const& text = translation.text;
        return name + (isPlainValue(database::tokenize(text)) ? text : "(" + text + ")");
    }

    /// The values of an enumeration and the conditions of a domain go with each column of that type.
    void addTypeChecks(Table const& table, Column const& column) {
        Type const* type = typeOf(column);
        while (type && !native) {
            if (type->kind == TypeKind::ENUMERATION) {
                std::string values;
                for (std::string const& value : type->values) {
                    values += (values.empty() ? "" : ", ") + quoteText(value);
                }
                parts.push_back({"CHECK (" + quoteName(column.name) + " IN (" + values + "))", "",
                                 "values of type " + type->name});
            }
            auto const known = domainChecks.find(static_cast<int>(type - structure.types.data()));
            if (known != domainChecks.end()) {
                for (database::Check const* check : known->second) {
                    addCheck(table, "", translateDomainCheck(check->expression, column.name),
                             check->expression);
                }
            }
            type = type->base < 0 ? nullptr : &structure.types[static_cast<std::size_t>(type->base)];
        }
    }

    void addCheck(Table const& table, std::string const& name, Translation const& translation,
                  std::string const& original) {
        std::string const what = "check " + (name.empty() ? "" : name + " ") + "of table " + table.name;
        if (!translation.problem.empty()) {
            leftOutOfTable(what, translation.problem, original);
        } else {
            parts.push_back({leading(constraintName(name)) + "CHECK (" + translation.text + ")", "", what});
        }
    }

    // ---- keys ----------------------------------------------------------------------------------------

    /// With a blank in front, as it stands behind something else.
    static std::string constraintName(std::string const& name) {
        return name.empty() ? "" : " CONSTRAINT " + quoteName(name);
    }

    /// With a blank behind instead.
    static std::string leading(std::string const& text) { return text.empty() ? "" : text.substr(1) + " "; }

    std::string conflictText(Extras const& extras) const {
        std::string const action = valueOf(extras, "conflict");
        return action.empty() || !native ? "" : " ON CONFLICT " + action;
    }

    std::string primaryKeyText(Key const& key) const {
        std::string const order = valueOf(key.extras, "order");
        return constraintName(key.name) + " PRIMARY KEY" + (order.empty() ? "" : " " + order) +
               conflictText(key.extras) + (findExtra(key.extras, "autoincrement") ? " AUTOINCREMENT" : "");
    }

    std::string columnNames(int table, std::vector<int> const& columns) const {
        std::vector<std::string> result;
        for (int const column : columns) {
            result.push_back(structure.tables[static_cast<std::size_t>(table)]
                                 .columns[static_cast<std::size_t>(column)]
                                 .name);
        }
        return quoteNames(result);
    }

    std::string keyText(Key const& key) {
        std::string columns = columnNames(key.table, key.columns);
        if (key.kind == KeyKind::FOREIGN) {
            return leading(constraintName(key.name)) + "FOREIGN KEY (" + columns + ") REFERENCES " +
                   referenceText(key);
        }
        if (std::string const* members = findExtra(key.extras, "columns"); members && native) {
            columns = *members;
        }
        remarkExtrasLater(keyName(key), key.extras, {});
        return leading(constraintName(key.name)) +
               (key.kind == KeyKind::PRIMARY ? "PRIMARY KEY (" : "UNIQUE (") + columns + ")" +
               conflictText(key.extras);
    }

    void remarkExtrasLater(std::string const& what, Extras const& extras, std::set<std::string> const& said) {
        for (Extra const& extra : extras) {
            if (!native && !said.count(extra.name) && extra.name != inherited) {
                pending.push_back(database::omissionOf(extra, what, "SQLite"));
            }
        }
    }

    std::string referenceText(Key const& key) {
        std::string const* const missing = findExtra(key.extras, "references");
        std::string text = missing ? *missing
                                   : quoteName(names[static_cast<std::size_t>(key.referredTable)]) + "(" +
                                         columnNames(key.referredTable, key.referredColumns) + ")";
        if (std::string const* match = findExtra(key.extras, "match")) {
            text += " MATCH " + *match;
        }
        if (key.onDelete != Action::NO_ACTION) {
            text += std::string(" ON DELETE ") + textOf(key.onDelete);
        }
        if (key.onUpdate != Action::NO_ACTION) {
            text += std::string(" ON UPDATE ") + textOf(key.onUpdate);
        }
        if (std::string const* deferral = findExtra(key.extras, "deferrable")) {
            text += " DEFERRABLE " + *deferral;
        }
        remarkExtrasLater(keyName(key), key.extras, {"references", "match", "deferrable"});
        return text;
    }

    // ---- indexes, views, triggers --------------------------------------------------------------------

    Translation memberText(database::Index const& index, database::IndexMember const& member) const {
        Translation result = member.column < 0 ? expression(member.expression)
                                               : Translation{columnNames(index.table, {member.column}), ""};
        if (std::string const collation = valueOf(member.extras, "collation"); native && !collation.empty()) {
            result.text += " COLLATE " + quoteName(collation);
        }
        result.text += member.descending ? " DESC" : "";
        return result;
    }

    /// The members, and the condition of a partial index with its keyword.
    Translation indexText(database::Index const& index) const {
        Translation result;
        for (database::IndexMember const& member : index.members) {
            Translation const part = memberText(index, member);
            if (!part.problem.empty()) {
                return part;
            }
            result.text += (result.text.empty() ? "(" : ", ") + part.text;
        }
        result.text += ")";
        if (std::string const* const where = findExtra(index.extras, "where")) {
            Translation const condition = expression(*where);
            result.text += " WHERE " + condition.text;
            result.problem = condition.problem;
        }
        return result;
    }

    void writeIndex(database::Index const& index) {
        Table const& table = structure.tables[static_cast<std::size_t>(index.table)];
        std::string const what = "index " + index.name;
        if (table.kind != TableKind::TABLE) {
            leftOut(what + " of " + table.name, "SQLite's views have no indexes");
            return;
        }
        Translation const translation = indexText(index);
        if (!translation.problem.empty()) {
            leftOut(what, translation.problem, originalOf(index));
            return;
        }
        std::string const name = nameOf(index, table);
        std::string const text =
            std::string(index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + quoteName(name) + " ON " +
            quoteName(names[static_cast<std::size_t>(index.table)]) + " " + translation.text;
        if (!writeAccepted(what, text)) {
            return;
        }
        remarkComment(what, index);
        bool const isTree = valueOf(index.extras, "method") == "btree";
        remarkExtras(what, index.extras,
                     isTree ? std::set<std::string>{"where", "method"} : std::set<std::string>{"where"});
        for (database::IndexMember const& member : index.members) {
            remarkExtras(what, member.extras, {});
        }
    }

    /// In a model that was made by hand, more than one index can have a name, or none.
    std::string nameOf(database::Index const& index, Table const& table) {
        if (native && taken.insert(database::lowerCase(index.name)).second) {
            return index.name;
        }
        std::string const name =
            uniqueName(index.name.empty() ? table.name + "_index" : index.name, table.schema);
        if (native) {
            leftOut("name of index " + index.name + " of " + table.name,
                    "another index has it, so it becomes " + name);
        }
        return name;
    }

    static std::string originalOf(database::Index const& index) {
        std::string text;
        for (database::IndexMember const& member : index.members) {
            text += (text.empty() || member.expression.empty() ? "" : ", ") + member.expression;
        }
        std::string const where = valueOf(index.extras, "where");
        return where.empty() ? text : text + " WHERE " + where;
    }

    /// Writes a statement, unless it is of another system and SQLite refuses it.
    bool writeAccepted(std::string const& what, std::string const& text) {
        std::string const problem = native ? "" : scratch.take(text);
        if (!problem.empty()) {
            leftOut(what, "SQLite says: " + problem, text);
            return false;
        }
        out << text << ";\n";
        return true;
    }

    /// A view of another system must come behind those that it uses, since SQLite looks at it at once.
    void writeViews() {
        std::vector<std::size_t> waiting;
        for (std::size_t i = 0; i < structure.tables.size(); ++i) {
            bool const isView = structure.tables[i].kind != TableKind::TABLE;
            if (isView && !structure.tables[i].statement.empty()) {
                waiting.push_back(i);
            }
        }
        for (bool goesOn = !native; goesOn;) {
            goesOn = false;
            std::vector<std::size_t> later;
            for (std::size_t const number : waiting) {
                bool const isWritten = writeViewIfUsable(number);
                goesOn = goesOn || isWritten;
                if (!isWritten) {
                    later.push_back(number);
                }
            }
            waiting = later;
        }
        for (std::size_t const number : waiting) {
            native ? writeView(number) : leaveOutView(number);
        }
    }

    void writeView(std::size_t number) {
        remarkComment("view " + structure.tables[number].name, structure.tables[number]);
        out << viewText(number, expression(structure.tables[number].statement).text) << ";\n";
    }

    bool writeViewIfUsable(std::size_t number) {
        Table const& view = structure.tables[number];
        Translation const translation = expression(view.statement);
        std::string const text = viewText(number, translation.text);
        if (!translation.problem.empty() || !scratch.takeView(text, names[number]).empty()) {
            return false;
        }
        std::string const what = "view " + view.name;
        remarkComment(what, view);
        remarkExtras(what, view.extras, {"columns"});
        if (view.kind == TableKind::MATERIALIZED_VIEW) {
            leftOut("that " + what + " keeps its rows", "SQLite's views don't");
        }
        for (Column const& column : view.columns) {
            remarkComment("column " + view.name + "." + column.name, column);
        }
        out << text << ";\n";
        return true;
    }

    void leaveOutView(std::size_t number) {
        Table const& view = structure.tables[number];
        Translation const translation = expression(view.statement);
        std::string const problem =
            translation.problem.empty()
                ? "SQLite says: " + scratch.takeView(viewText(number, translation.text), names[number])
                : translation.problem;
        leftOut("view " + view.name, problem, view.statement);
    }

    std::string viewText(std::size_t number, std::string const& statement) const {
        Table const& view = structure.tables[number];
        std::string text = "CREATE VIEW " + quoteName(names[number]);
        if (!view.columns.empty() && (!native || findExtra(view.extras, "columns"))) {
            std::vector<std::string> columns;
            for (Column const& column : view.columns) {
                columns.push_back(column.name);
            }
            text += " (" + quoteNames(columns) + ")";
        }
        return text + " AS " + statement;
    }

    void writeTrigger(database::Trigger const& trigger) {
        std::string const what =
            "trigger " + trigger.name + " of " + names[static_cast<std::size_t>(trigger.table)];
        if (native) {
            remarkComment(what, trigger);
            out << trigger.statement << ";\n";
        } else {
            leftOut(what, "it is in the language of another system", trigger.statement);
        }
    }

    void remarkOthers() {
        for (Type const& type : structure.types) {
            if (type.kind == TypeKind::COMPOSITE || type.kind == TypeKind::RANGE) {
                leftOut("type " + type.name, "SQLite has no such types");
            }
            remarkComment("type " + type.name, type);
        }
        for (database::Routine const& routine : structure.routines) {
            leftOut((routine.procedure ? "procedure " : "function ") + routine.name,
                    "SQLite has neither functions nor procedures of its own", routine.statement);
        }
        for (database::Sequence const& sequence : structure.sequences) {
            leftOut("sequence " + sequence.name, "SQLite has no sequences");
        }
    }

    Structure const& structure;
    std::ostream& out;
    bool const native;
    std::vector<std::string> names;                                       ///< of the tables
    std::map<std::pair<std::string, std::string>, std::string> qualified; ///< the same by schema and table
    std::set<std::string> taken; ///< names of tables and indexes in lower case
    std::vector<std::vector<Key const*>> keysOf;
    std::vector<std::vector<database::Check const*>> checksOf;
    std::map<int, std::vector<database::Check const*>> domainChecks;
    std::vector<Part> parts;     ///< of the table that is being written
    database::Omissions pending; ///< of that table, to be told behind it
    database::Omissions omissions;
    Scratch scratch;
};

} // namespace

database::Omissions writeSqliteSql(Structure const& structure, std::ostream& out) {
    bool const isOwn = structure.origin.system == "SQLite";
    database::Rules rules;
    rules.emptyNames = isOwn;
    rules.ignoreCase = true;
    rules.brackets = isOwn;
    database::Writable whole = database::writable(structure, rules);
    if (isOwn) {
        meetRequirements(whole);
    }
    return Writer(whole, out).run();
}

} // namespace sqlite
