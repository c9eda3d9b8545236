#include "database/SqlWriter.h"
#include "database/Enumerations.h"

#include "database/Extras.h"
#include "database/Records.h"

#include <ostream>

namespace database {
namespace {

char const* keywordsOf(KeyKind kind) {
    return kind == KeyKind::PRIMARY ? "PRIMARY KEY " : kind == KeyKind::UNIQUE ? "UNIQUE " : "FOREIGN KEY ";
}

} // namespace

SqlWriter::SqlWriter(Structure const& toWrite, std::ostream& stream)
    : structure(toWrite), out(stream), keysOfTable(toWrite.tables.size()),
      checksOfTable(toWrite.tables.size()), checksOfType(toWrite.types.size()) {
    for (Key const& key : structure.keys) {
        keysOfTable[static_cast<std::size_t>(key.table)].push_back(&key);
    }
    for (Check const& check : structure.checks) {
        auto& owners = check.table >= 0 ? checksOfTable : checksOfType;
        owners[static_cast<std::size_t>(check.table >= 0 ? check.table : check.type)].push_back(&check);
    }
}

Omissions SqlWriter::run(Omissions const& known) {
    for (Omission const& omission : known) {
        leftOut(omission);
    }
    begin();
    writeTables();
    writeIndexes();
    writeReferences();
    writeTriggers();
    end();
    return std::move(omissions);
}

// ---- names -------------------------------------------------------------------------------------------

std::string SqlWriter::tableName(int table) const {
    return quoted(at(structure.tables, table).name);
}

std::string SqlWriter::columnNames(int table, std::vector<int> const& columns) const {
    std::string names;
    for (int const column : columns) {
        names += (names.empty() ? "" : ", ") + quoted(at(at(structure.tables, table).columns, column).name);
    }
    return "(" + names + ")";
}

std::string SqlWriter::constraintName(std::string const& name) const {
    return name.empty() ? "" : "CONSTRAINT " + quoted(name) + " ";
}

// ---- parts of statements -----------------------------------------------------------------------------

std::string SqlWriter::keyText(Key const& key) {
    std::string const text = constraintName(key.name) + keywordsOf(key.kind) + keyColumns(key);
    return text + (key.kind == KeyKind::FOREIGN ? referenceText(key) : keyOptions(key));
}

std::string SqlWriter::keyColumns(Key const& key) {
    return columnNames(key.table, key.columns);
}

std::string SqlWriter::keyOptions(Key const&) {
    return "";
}

std::string SqlWriter::referenceText(Key const& key) {
    std::string const target = key.referredTable < 0 || key.referredColumns.empty()
                                   ? clause(key.extras, extra::references, " REFERENCES ")
                                   : " REFERENCES " + tableName(key.referredTable) + " " +
                                         columnNames(key.referredTable, key.referredColumns);
    return target + clause(key.extras, extra::match, " MATCH ") + actionText(" ON UPDATE ", key.onUpdate) +
           actionText(" ON DELETE ", key.onDelete);
}

std::string SqlWriter::actionText(char const* event, Action action) {
    return action == Action::NO_ACTION ? "" : std::string(event) + textOf(action);
}

std::string SqlWriter::checkText(std::string const& name, std::string const& expression) const {
    return constraintName(name) + "CHECK (" + expression + ")";
}

std::string SqlWriter::partsText(std::vector<std::string> const& parts) {
    std::string text;
    for (std::string const& part : parts) {
        text += part.empty() ? "" : (text.empty() ? "\n    " : ",\n    ") + part;
    }
    return text.empty() ? "()" : "(" + text + "\n)";
}

std::string SqlWriter::indexStart(Index const& index, std::string const& quotedName) {
    return std::string("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX " +
           (quotedName.empty() ? "" : quotedName + " ") + "ON ";
}

// ---- output ------------------------------------------------------------------------------------------

void SqlWriter::statement(std::string const& text) {
    out << text << ";\n";
}

void SqlWriter::leftOut(Omission const& omission) {
    leaveOut(omission, out, omissions);
}

} // namespace database
