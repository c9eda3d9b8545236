#include "sqlite/SqlWriter.h"

#include "database/SqlTokens.h"
#include "database/Writable.h"
#include "sqlite/Names.h"
#include "sqlite/Requirements.h"
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

class Writer {
public:
    Writer(database::Writable const& toWrite, std::ostream& stream)
        : structure(toWrite.structure), omissions(toWrite.omissions), out(stream),
          native(toWrite.structure.origin.system == "SQLite") {}

    void run() {
        for (database::Omission const& omission : omissions) {
            tell(omission);
        }
        nameTables();
        collect();
        out << "BEGIN;\n";
        writeTables();
        for (database::Index const& index : structure.indexes) {
            writeIndex(index);
        }
        for (std::size_t i = 0; i < structure.tables.size(); ++i) {
            bool const isView = structure.tables[i].kind != TableKind::TABLE;
            if (isView && !structure.tables[i].statement.empty()) {
                writeView(i);
            }
        }
        for (database::Trigger const& trigger : structure.triggers) {
            writeTrigger(trigger);
        }
        remarkOthers();
        out << "COMMIT;\n";
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

    void nameTables() {
        for (Table const& table : structure.tables) {
            names.push_back(uniqueName(table.name, table.schema));
            if (table.schema >= 0) {
                std::string const& schema = structure.schemas[static_cast<std::size_t>(table.schema)].name;
                qualified[{schema, table.name}] = names.back();
            }
            if (names.back() != table.name) {
                std::string const schema =
                    table.schema < 0
                        ? ""
                        : " of schema " + structure.schemas[static_cast<std::size_t>(table.schema)].name;
                remark("table " + table.name + schema + " is called " + names.back());
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

    /// In the words that all omissions are told in.
    void tell(database::Omission const& omission) {
        database::Omissions told;
        database::leaveOut(omission, out, told);
    }

    /// Each line becomes a comment.
    void remark(std::string const& text) {
        out << "-- ";
        for (char const character : text) {
            out << character << (character == '\n' ? "-- " : "");
        }
        out << '\n';
    }

    void leftOut(std::string const& what, std::string const& why) {
        remark("left out: " + what + ", " + why);
    }

    /// Tells of the extras of another system that have no place here.
    void remarkExtras(std::string const& what, Extras const& extras, std::set<std::string> const& said) {
        for (Extra const& extra : extras) {
            if (!native && !said.count(extra.name)) {
                leftOut(extra.name + " " + extra.value + " of " + what, "which SQLite doesn't have");
            }
        }
    }

    /// An expression or statement as SQLite takes it; empty if it doesn't.
    std::string expression(std::string const& sql) const {
        return native ? sql : translateSql(withoutSchemas(sql)).value_or("");
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
        parts.clear();
        Key const* const columnKey = keyInColumn(number);
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            bool const isKey = columnKey && columnKey->columns[0] == static_cast<int>(i);
            parts.push_back(columnText(table, table.columns[i]) + (isKey ? primaryKeyText(*columnKey) : ""));
        }
        for (Key const* key : keysOf[number]) {
            if (key != columnKey) {
                parts.push_back(keyText(*key));
            }
        }
        for (database::Check const* check : checksOf[number]) {
            addCheck(check->name, expression(check->expression), check->expression);
        }
        for (Column const& column : table.columns) {
            addTypeChecks(column);
        }
        out << "CREATE TABLE " << quoteName(names[number]) << " (\n";
        for (std::size_t i = 0; i < parts.size(); ++i) {
            out << "    " << parts[i] << (i + 1 < parts.size() ? ",\n" : "\n");
        }
        out << ")" << tableOptions(table) << ";\n";
        for (std::string const& text : pending) {
            remark(text);
        }
        pending.clear();
    }

    void writeTableRemarks(Table const& table) {
        if (!table.comment.empty()) {
            remark(table.name + ": " + table.comment);
        }
        remarkExtras("table " + table.name, table.extras, {});
        for (int const parent : table.parents) {
            leftOut("that table " + table.name + " inherits from " + names[static_cast<std::size_t>(parent)],
                    "which SQLite doesn't have");
        }
        for (Column const& column : table.columns) {
            std::string const name = table.name + "." + column.name;
            if (!column.comment.empty()) {
                remark(name + ": " + column.comment);
            }
            remarkExtras("column " + name, column.extras, {"generated"});
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
        std::string const text = expression(column.defaultValue);
        if (text.empty()) {
            pending.push_back("left out: that " + table.name + "." + column.name + " is computed from " +
                              column.defaultValue + ", which SQLite may not understand");
            return "";
        }
        bool const stored = valueOf(column.extras, "generated") == "STORED";
        return " GENERATED ALWAYS AS (" + text + ")" + (stored ? " STORED" : " VIRTUAL");
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
        std::string const text = expression(value);
        if (text.empty()) {
            pending.push_back("left out: default " + value + " of " + table.name + "." + column.name +
                              ", which SQLite may not understand");
            return "";
        }
        return name + (isPlainValue(database::tokenize(text)) ? text : "(" + text + ")");
    }

    /// The values of an enumeration and the conditions of a domain go with each column of that type.
    void addTypeChecks(Column const& column) {
        Type const* type = typeOf(column);
        while (type && !native) {
            if (type->kind == TypeKind::ENUMERATION) {
                std::string values;
                for (std::string const& value : type->values) {
                    values += (values.empty() ? "" : ", ") + quoteText(value);
                }
                parts.push_back("CHECK (" + quoteName(column.name) + " IN (" + values + "))");
            }
            auto const known = domainChecks.find(static_cast<int>(type - structure.types.data()));
            if (known != domainChecks.end()) {
                for (database::Check const* check : known->second) {
                    addCheck("", translateDomainCheck(check->expression, column.name).value_or(""),
                             check->expression);
                }
            }
            type = type->base < 0 ? nullptr : &structure.types[static_cast<std::size_t>(type->base)];
        }
    }

    void addCheck(std::string const& name, std::string const& text, std::string const& original) {
        if (text.empty()) {
            pending.push_back("left out: check " + original + ", which SQLite may not understand");
        } else {
            parts.push_back(leading(constraintName(name)) + "CHECK (" + text + ")");
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
        remarkExtrasLater("key of " + names[static_cast<std::size_t>(key.table)], key.extras, {});
        return leading(constraintName(key.name)) +
               (key.kind == KeyKind::PRIMARY ? "PRIMARY KEY (" : "UNIQUE (") + columns + ")" +
               conflictText(key.extras);
    }

    void remarkExtrasLater(std::string const& what, Extras const& extras, std::set<std::string> const& said) {
        for (Extra const& extra : extras) {
            if (!native && !said.count(extra.name)) {
                pending.push_back("left out: " + extra.name + " " + extra.value + " of the " + what);
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
        remarkExtrasLater("foreign key of " + names[static_cast<std::size_t>(key.table)], key.extras,
                          {"references", "match", "deferrable"});
        return text;
    }

    // ---- indexes, views, triggers --------------------------------------------------------------------

    /// Empty if SQLite may not understand it.
    std::string memberText(database::Index const& index, database::IndexMember const& member) const {
        std::string text =
            member.column < 0 ? expression(member.expression) : columnNames(index.table, {member.column});
        if (std::string const collation = valueOf(member.extras, "collation"); native && !collation.empty()) {
            text += " COLLATE " + quoteName(collation);
        }
        return text.empty() || !member.descending ? text : text + " DESC";
    }

    void writeIndex(database::Index const& index) {
        Table const& table = structure.tables[static_cast<std::size_t>(index.table)];
        if (table.kind != TableKind::TABLE) {
            leftOut("index " + index.name + " of " + table.name, "since SQLite's views have none");
            return;
        }
        std::string members;
        for (database::IndexMember const& member : index.members) {
            std::string const text = memberText(index, member);
            if (text.empty()) {
                leftOut("index " + index.name, "since SQLite may not understand " + member.expression);
                return;
            }
            members += (members.empty() ? "" : ", ") + text;
            remarkExtras("index " + index.name, member.extras, {});
        }
        std::string const* const where = findExtra(index.extras, "where");
        std::string const condition = where ? expression(*where) : "";
        if (where && condition.empty()) {
            leftOut("index " + index.name, "since SQLite may not understand " + *where);
            return;
        }
        bool const isTree = valueOf(index.extras, "method") == "btree";
        remarkExtras("index " + index.name, index.extras,
                     isTree ? std::set<std::string>{"where", "method"} : std::set<std::string>{"where"});
        out << (index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ")
            << quoteName(
                   native ? index.name
                          : uniqueName(index.name.empty() ? table.name + "_index" : index.name, table.schema))
            << " ON " << quoteName(names[static_cast<std::size_t>(index.table)]) << " (" << members << ")";
        out << (where ? " WHERE " + condition : "") << ";\n";
    }

    void writeView(std::size_t number) {
        Table const& view = structure.tables[number];
        if (!view.comment.empty()) {
            remark(view.name + ": " + view.comment);
        }
        std::string const statement = expression(view.statement);
        if (statement.empty()) {
            leftOut("view " + view.name, "since SQLite may not understand " + view.statement);
            return;
        }
        if (view.kind == TableKind::MATERIALIZED_VIEW) {
            remark("view " + view.name + " kept its rows");
        }
        out << "CREATE VIEW " << quoteName(names[number]);
        if (!view.columns.empty() && (!native || findExtra(view.extras, "columns"))) {
            std::vector<std::string> columns;
            for (Column const& column : view.columns) {
                columns.push_back(column.name);
            }
            out << " (" << quoteNames(columns) << ")";
        }
        out << " AS " << statement << ";\n";
    }

    void writeTrigger(database::Trigger const& trigger) {
        if (native) {
            out << trigger.statement << ";\n";
        } else {
            leftOut("trigger " + trigger.name + " of " + names[static_cast<std::size_t>(trigger.table)],
                    "which is in the language of another system");
        }
    }

    void remarkOthers() {
        for (Type const& type : structure.types) {
            if (type.kind == TypeKind::COMPOSITE || type.kind == TypeKind::RANGE) {
                leftOut("type " + type.name, "which SQLite doesn't have");
            }
        }
        for (database::Routine const& routine : structure.routines) {
            leftOut((routine.procedure ? "procedure " : "function ") + routine.name,
                    "which SQLite doesn't have");
        }
        for (database::Sequence const& sequence : structure.sequences) {
            leftOut("sequence " + sequence.name, "which SQLite doesn't have");
        }
    }

    Structure const& structure;
    database::Omissions const& omissions;
    std::ostream& out;
    bool const native;
    std::vector<std::string> names;                                       ///< of the tables
    std::map<std::pair<std::string, std::string>, std::string> qualified; ///< the same by schema and table
    std::set<std::string> taken; ///< names of tables and indexes in lower case
    std::vector<std::vector<Key const*>> keysOf;
    std::vector<std::vector<database::Check const*>> checksOf;
    std::map<int, std::vector<database::Check const*>> domainChecks;
    std::vector<std::string> parts;   ///< of the table that is being written
    std::vector<std::string> pending; ///< remarks that go behind it
};

} // namespace

void writeSqliteSql(Structure const& structure, std::ostream& out) {
    database::Rules rules;
    rules.emptyNames = structure.origin.system == "SQLite";
    rules.ignoreCase = true;
    database::Writable writable = database::writable(structure, rules);
    meetRequirements(writable);
    Writer(writable, out).run();
}

} // namespace sqlite
