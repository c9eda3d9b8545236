#include "sqlite/SqlWriter.h"

#include "database/Enumerations.h"
#include "database/Records.h"
#include "database/SqlTokens.h"
#include "sqlite/Extras.h"
#include "sqlite/Names.h"

#include <ostream>

namespace sqlite {
namespace {

using database::at;
using database::Column;
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
using database::valueOf;

/// Whether the tokens are a value that can stand behind DEFAULT without parentheses.
bool isPlainValue(std::vector<Token> const& tokens) {
    if (tokens.size() == 1) {
        return tokens[0].kind != TokenKind::SYMBOL;
    }
    return tokens.size() == 2 && tokens[1].kind == TokenKind::NUMBER &&
           (tokens[0].isSymbol('-') || tokens[0].isSymbol('+'));
}

std::string originalOf(database::Index const& index) {
    std::string text;
    for (database::IndexMember const& member : index.members) {
        text += (text.empty() || member.expression.empty() ? "" : ", ") + member.expression;
    }
    std::string const where = valueOf(index.extras, extra::where);
    return where.empty() ? text : text + " WHERE " + where;
}

std::string checkName(std::string const& name, Table const& table) {
    return "check " + (name.empty() ? "" : name + " ") + "of table " + table.name;
}

} // namespace

SqlWriter::SqlWriter(Structure const& toWrite, std::ostream& stream) : database::SqlWriter(toWrite, stream) {}

void SqlWriter::begin() {
    nameTables();
    writeSettings();
    out << "BEGIN;\n";
    remarkCatalog();
}

void SqlWriter::end() {
    remarkOthers();
    writeNumbers();
    out << "COMMIT;\n";
}

// ---- names -------------------------------------------------------------------------------------------

std::string SqlWriter::quoted(std::string const& name) const {
    return quoteName(name);
}

std::string SqlWriter::tableName(int table) const {
    return quoteName(at(names, table));
}

/// SQLite has one schema, in which tables and indexes share their names, whatever the case of the letters.
std::string SqlWriter::uniqueName(std::string const& name, int schema) {
    std::string candidate = name;
    if (!taken.insert(database::lowerCase(candidate)).second) {
        candidate = (schema < 0 ? "" : at(structure.schemas, schema).name + "_") + name;
        for (int i = 2; !taken.insert(database::lowerCase(candidate)).second; ++i) {
            candidate = name + "_" + std::to_string(i);
        }
    }
    return candidate;
}

void SqlWriter::nameTables() {
    for (Table const& table : structure.tables) {
        names.push_back(uniqueName(table.name, table.schema));
        if (names.back() != table.name) {
            std::string const schema = table.schema < 0 ? "" : at(structure.schemas, table.schema).name + ".";
            leftOut("name of table " + schema + table.name,
                    "SQLite allows one table of this name, so it becomes " + names.back());
        }
    }
}

// ---- omissions ---------------------------------------------------------------------------------------

void SqlWriter::leftOut(std::string const& what, std::string const& why, std::string const& original) {
    leftOut({what, why, original});
}

void SqlWriter::leftOutOfTable(std::string const& what, std::string const& why, std::string const& original) {
    pending.push_back({what, why, original});
}

void SqlWriter::remarkExtras(std::string const& what, Extras const& extras,
                             std::set<std::string> const& said) {
    for (database::Omission const& omission : omissionsOf(what, extras, said)) {
        leftOut(omission);
    }
}

void SqlWriter::remarkExtrasLater(Key const& key, std::set<std::string> const& said) {
    for (database::Omission const& omission : omissionsOf(keyName(key), key.extras, said)) {
        pending.push_back(omission);
    }
}

void SqlWriter::remarkCatalog() {
    remarkComment("database " + structure.catalog.name, structure.catalog);
    remarkExtras("database " + structure.catalog.name, structure.catalog.extras);
    for (database::Schema const& schema : structure.schemas) {
        remarkSchema(schema);
    }
}

void SqlWriter::remarkSchema(database::Schema const& schema) {
    remarkComment("schema " + schema.name, schema);
    remarkExtras("schema " + schema.name, schema.extras);
}

void SqlWriter::remarkTable(int number) {
    Table const& table = at(structure.tables, number);
    remarkComment("table " + table.name, table);
    remarkExtras("table " + table.name, table.extras);
    for (int const parent : table.parents) {
        leftOut("that table " + table.name + " inherits from " + at(names, parent),
                "SQLite has no inheritance");
    }
    for (Column const& column : table.columns) {
        std::string const name = "column " + table.name + "." + column.name;
        remarkComment(name, column);
        remarkExtras(name, column.extras, {"generated"});
    }
    for (Key const* key : at(keysOfTable, number)) {
        remarkComment(keyName(*key), *key);
    }
    for (database::Check const* check : at(checksOfTable, number)) {
        remarkComment(checkName(check->name, table), *check);
        remarkExtras("check " + check->name + " of table " + table.name, check->extras);
    }
}

void SqlWriter::remarkOthers() {
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

// ---- tables ------------------------------------------------------------------------------------------

/// Shadow tables come with their virtual table.
void SqlWriter::writeTables() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        bool const isShadow = table.nativeKind.find("SHADOW TABLE") != std::string::npos;
        if (table.kind == TableKind::TABLE && !isShadow) {
            writeTable(static_cast<int>(i));
        }
    }
}

void SqlWriter::writeTable(int table) {
    remarkTable(table);
    collectParts(table);
    std::string const text = acceptedTable(table);
    if (!text.empty()) {
        statement(text);
    }
    for (database::Omission const& omission : pending) {
        leftOut(omission);
    }
    pending.clear();
}

std::string SqlWriter::tableText(int table, std::vector<Part> const& from) const {
    std::vector<std::string> texts;
    for (Part const& part : from) {
        texts.push_back(part.text);
    }
    return "CREATE TABLE " + tableName(table) + " " + partsText(texts) +
           tableOptions(at(structure.tables, table));
}

/// The columns and constraints of a table, in order.
void SqlWriter::collectParts(int number) {
    Table const& table = at(structure.tables, number);
    parts.clear();
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        Column const& column = table.columns[i];
        std::string const text = columnText(table, column) + keysInColumn(number, static_cast<int>(i));
        parts.push_back({text, quoteName(column.name) + " " + typeText(column),
                         "what column " + table.name + "." + column.name + " requires"});
    }
    for (Key const* key : at(keysOfTable, number)) {
        if (!standsInColumn(*key)) {
            parts.push_back({keyText(*key), "", keyName(*key)});
        }
    }
    for (database::Check const* check : at(checksOfTable, number)) {
        addCheck(table, check->name, expression(check->expression), check->expression);
    }
    for (Column const& column : table.columns) {
        addTypeChecks(table, column);
    }
}

// ---- columns -----------------------------------------------------------------------------------------

Type const* SqlWriter::typeOf(Column const& column) const {
    return column.type < 0 ? nullptr : &at(structure.types, column.type);
}

std::string SqlWriter::columnText(Table const& table, Column const& column) {
    std::string text = quoteName(column.name);
    if (std::string const type = typeText(column); !type.empty()) {
        text += " " + type;
    }
    text += collationText(column.extras);
    Type const* const type = typeOf(column);
    bool const inDomain = type && type->kind == TypeKind::DOMAIN_TYPE;
    if (column.notNull || (inDomain && type->notNull)) {
        text += " " + constraintName(valueOf(column.extras, extra::notNullConstraint)) + "NOT NULL" +
                conflictText(column.extras);
    }
    if (column.generated) {
        return text + generatedText(table, column);
    }
    std::string const& value =
        column.defaultValue.empty() && inDomain ? type->defaultValue : column.defaultValue;
    return text + defaultText(table, column, value);
}

std::string SqlWriter::generatedText(Table const& table, Column const& column) {
    Translation const translation = expression(column.defaultValue);
    if (!translation.problem.empty()) {
        leftOutOfTable("that column " + table.name + "." + column.name + " is computed", translation.problem,
                       column.defaultValue);
        return "";
    }
    bool const stored = valueOf(column.extras, extra::generated) == "STORED";
    return " GENERATED ALWAYS AS (" + translation.text + ")" + (stored ? " STORED" : " VIRTUAL");
}

std::string SqlWriter::defaultText(Table const& table, Column const& column, std::string const& value) {
    if (value.empty()) {
        return "";
    }
    Translation const translation = defaultExpression(value);
    if (!translation.problem.empty()) {
        leftOutOfTable("default of column " + table.name + "." + column.name, translation.problem, value);
        return "";
    }
    std::string const& text = translation.text;
    return " " + constraintName(valueOf(column.extras, extra::defaultConstraint)) + "DEFAULT " +
           (isPlainValue(database::tokenize(text)) ? text : "(" + text + ")");
}

void SqlWriter::addCheck(Table const& table, std::string const& name, Translation const& translation,
                         std::string const& original) {
    std::string const what = checkName(name, table);
    if (!translation.problem.empty()) {
        leftOutOfTable(what, translation.problem, original);
    } else {
        parts.push_back({checkText(name, translation.text), "", what});
    }
}

// ---- keys --------------------------------------------------------------------------------------------

std::string SqlWriter::keyName(Key const& key) const {
    return std::string(key.kind == KeyKind::FOREIGN   ? "foreign key "
                       : key.kind == KeyKind::PRIMARY ? "primary key "
                                                      : "unique key ") +
           (key.name.empty() ? "" : key.name + " ") + "of table " + at(names, key.table);
}

std::string SqlWriter::keyOptions(Key const& key) {
    remarkExtrasLater(key, {});
    return conflictText(key.extras);
}

std::string SqlWriter::referenceText(Key const& key) {
    std::string const* const missing = findExtra(key.extras, extra::references);
    std::string const target =
        missing ? *missing
                : tableName(key.referredTable) + columnNames(key.referredTable, key.referredColumns);
    remarkExtrasLater(key, {"references", "match", "deferrable"});
    std::string text = " REFERENCES " + target;
    if (std::string const* match = findExtra(key.extras, extra::match)) {
        text += " MATCH " + *match;
    }
    text += actionText(" ON DELETE ", key.onDelete) + actionText(" ON UPDATE ", key.onUpdate);
    if (std::string const* deferral = findExtra(key.extras, extra::deferrable)) {
        text += " DEFERRABLE " + *deferral;
    }
    return text;
}

// ---- indexes, views, triggers ------------------------------------------------------------------------

Translation SqlWriter::memberText(database::Index const& index, database::IndexMember const& member) const {
    std::vector<Column> const& columns = at(structure.tables, index.table).columns;
    Translation result = member.column < 0 ? expression(member.expression)
                                           : Translation{quoteName(at(columns, member.column).name), ""};
    result.text += collationText(member.extras);
    result.text += member.descending ? " DESC" : "";
    return result;
}

/// The members, and the condition of a partial index with its keyword.
Translation SqlWriter::indexText(database::Index const& index) const {
    Translation result;
    for (database::IndexMember const& member : index.members) {
        Translation const part = memberText(index, member);
        if (!part.problem.empty()) {
            return part;
        }
        result.text += (result.text.empty() ? "(" : ", ") + part.text;
    }
    result.text += ")";
    if (std::string const* const where = findExtra(index.extras, extra::where)) {
        Translation const condition = expression(*where);
        result.text += " WHERE " + condition.text;
        result.problem = condition.problem;
    }
    return result;
}

void SqlWriter::writeIndexes() {
    for (database::Index const& index : structure.indexes) {
        writeIndex(index);
    }
}

void SqlWriter::writeIndex(database::Index const& index) {
    Table const& table = at(structure.tables, index.table);
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
    std::string const text =
        indexStart(index, quoteName(nameOf(index))) + tableName(index.table) + " " + translation.text;
    if (!writeAccepted(what, text)) {
        return;
    }
    remarkComment(what, index);
    bool const isTree = valueOf(index.extras, extra::method) == "btree";
    remarkExtras(what, index.extras,
                 isTree ? std::set<std::string>{"where", "method"} : std::set<std::string>{"where"});
    for (database::IndexMember const& member : index.members) {
        remarkExtras(what, member.extras);
    }
}

std::string SqlWriter::viewText(int number, std::string const& statement) const {
    Table const& view = at(structure.tables, number);
    std::string text = "CREATE VIEW " + tableName(number);
    if (!view.columns.empty() && namesColumns(view)) {
        std::vector<std::string> columns;
        for (Column const& column : view.columns) {
            columns.push_back(column.name);
        }
        text += " (" + quoteNames(columns) + ")";
    }
    return text + " AS " + statement;
}

void SqlWriter::writeTriggers() {
    for (database::Trigger const& trigger : structure.triggers) {
        writeTrigger("trigger " + trigger.name + " of " + at(names, trigger.table), trigger);
    }
}

} // namespace sqlite
