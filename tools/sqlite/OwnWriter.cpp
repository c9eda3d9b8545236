#include "sqlite/OwnWriter.h"

#include "database/Records.h"
#include "database/SqlTokens.h"
#include "sqlite/Extras.h"
#include "sqlite/Names.h"

#include <algorithm>
#include <ostream>

namespace sqlite {
namespace {

using database::at;
using database::Extras;
using database::findExtra;
using database::Key;
using database::KeyKind;
using database::Table;
using database::valueOf;

bool contains(std::string const& text, char const* part) {
    return text.find(part) != std::string::npos;
}

} // namespace

// ---- the database as a whole -------------------------------------------------------------------------

/// What must be said before there is a table, and outside of a transaction.
void OwnWriter::writeSettings() {
    for (char const* const name : {"encoding", "auto_vacuum"}) {
        if (std::string const value = valueOf(structure.catalog.extras, name); !value.empty()) {
            statement(std::string("PRAGMA ") + name + " = " + quoteText(value));
        }
    }
}

void OwnWriter::writeNumbers() {
    for (char const* const name : {"user_version", "application_id"}) {
        std::string const value = valueOf(structure.catalog.extras, name);
        if (!value.empty() && value.find_first_not_of("-0123456789") == std::string::npos) {
            statement(std::string("PRAGMA ") + name + " = " + value);
        }
    }
}

/// The comments are remarks of the reader.
void OwnWriter::remarkComment(std::string const& what, database::Named const& thing) {
    if (!thing.comment.empty()) {
        database::writeComment(what + ": " + thing.comment, out);
    }
}

database::Omissions OwnWriter::omissionsOf(std::string const&, Extras const&,
                                           std::set<std::string> const&) const {
    return {};
}

Translation OwnWriter::expression(std::string const& sql) const {
    return {database::trimmedSql(sql), ""};
}

// ---- tables ------------------------------------------------------------------------------------------

/// A virtual table has a statement of its own.
void OwnWriter::writeTable(int table) {
    if (std::string const* const whole = findExtra(at(structure.tables, table).extras, extra::statement)) {
        statement(*whole);
    } else {
        SqlWriter::writeTable(table);
    }
}

std::string OwnWriter::acceptedTable(int table) {
    return tableText(table, parts);
}

std::string OwnWriter::tableOptions(Table const& table) const {
    std::string const options = contains(table.nativeKind, "WITHOUT ROWID") ? " WITHOUT ROWID" : "";
    return contains(table.nativeKind, "STRICT") ? options + (options.empty() ? " STRICT" : ", STRICT")
                                                : options;
}

std::string OwnWriter::typeText(database::Column const& column) const {
    database::Type const* const type = typeOf(column);
    return type ? quoteType(type->declaration) : "";
}

std::string OwnWriter::collationText(Extras const& extras) const {
    std::string const collation = valueOf(extras, extra::collation);
    return collation.empty() ? "" : " COLLATE " + quoteName(collation);
}

std::string OwnWriter::conflictText(Extras const& extras) const {
    return database::clause(extras, extra::conflict, " ON CONFLICT ");
}

// ---- keys --------------------------------------------------------------------------------------------

/// The primary key that must stand with its column, or null.
Key const* OwnWriter::columnKeyOf(int table) const {
    for (Key const* key : at(keysOfTable, table)) {
        bool const needed = has(*key, extra::autoincrement) || has(*key, extra::order);
        if (key->kind == KeyKind::PRIMARY && key->columns.size() == 1 && needed) {
            return key;
        }
    }
    return nullptr;
}

/// Keys declared before a primary key that stands in its column are declared in columns too.
bool OwnWriter::standsInColumn(Key const& key) const {
    Key const* const columnKey = columnKeyOf(key.table);
    if (!columnKey || &key == columnKey) {
        return columnKey != nullptr;
    }
    auto const& keys = at(keysOfTable, key.table);
    bool const isBefore =
        std::find(keys.begin(), keys.end(), &key) < std::find(keys.begin(), keys.end(), columnKey);
    return isBefore && key.kind == KeyKind::UNIQUE && key.columns.size() == 1 &&
           key.columns[0] <= columnKey->columns[0] && !has(key, extra::columns);
}

std::string OwnWriter::keysInColumn(int table, int column) const {
    std::string text;
    for (Key const* key : at(keysOfTable, table)) {
        if (key->columns[0] == column && standsInColumn(*key)) {
            text +=
                " " + constraintName(key->name) +
                (key->kind == KeyKind::PRIMARY ? primaryKeyText(*key) : "UNIQUE" + conflictText(key->extras));
        }
    }
    return text;
}

std::string OwnWriter::primaryKeyText(Key const& key) const {
    return "PRIMARY KEY" + database::clause(key.extras, extra::order, " ") + conflictText(key.extras) +
           (has(key, extra::autoincrement) ? " AUTOINCREMENT" : "");
}

/// Those of a primary or unique key may have collations and an order.
std::string OwnWriter::keyColumns(Key const& key) {
    std::string const* const members = findExtra(key.extras, extra::columns);
    return members && key.kind != KeyKind::FOREIGN ? "(" + *members + ")" : SqlWriter::keyColumns(key);
}

// ---- indexes, views, triggers ------------------------------------------------------------------------

/// In a model that was made by hand, more than one index can have a name, or none.
std::string OwnWriter::nameOf(database::Index const& index) {
    if (taken.insert(database::lowerCase(index.name)).second) {
        return index.name;
    }
    Table const& table = at(structure.tables, index.table);
    std::string const name =
        uniqueName(index.name.empty() ? table.name + "_index" : index.name, table.schema);
    leftOut("name of index " + index.name + " of " + table.name,
            "another index has it, so it becomes " + name);
    return name;
}

bool OwnWriter::namesColumns(Table const& view) const {
    return has(view, extra::columns);
}

bool OwnWriter::writeAccepted(std::string const&, std::string const& text) {
    statement(text);
    return true;
}

void OwnWriter::writeReferences() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& view = structure.tables[i];
        if (view.kind != database::TableKind::TABLE && !view.statement.empty()) {
            remarkComment("view " + view.name, view);
            statement(viewText(static_cast<int>(i), expression(view.statement).text));
        }
    }
}

void OwnWriter::writeTrigger(std::string const& what, database::Trigger const& trigger) {
    remarkComment(what, trigger);
    statement(trigger.statement);
}

} // namespace sqlite
