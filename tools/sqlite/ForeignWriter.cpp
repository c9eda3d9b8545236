#include "sqlite/ForeignWriter.h"

#include "database/Records.h"
#include "database/SqlTokens.h"
#include "sqlite/Names.h"

#include <qor/QORDataType.h>

#include <ostream>

namespace sqlite {
namespace {

using database::at;
using database::Column;
using database::Extra;
using database::Extras;
using database::Table;
using database::TableKind;
using database::Token;
using database::Type;
using database::TypeKind;

/// What tells that something comes from a parent table; here it is the table's own.
constexpr char const* inherited = "inherited";

std::string textOf(Type const& type) {
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
        text +=
            "(" + std::to_string(type.length) + (type.scale ? "," + std::to_string(type.scale) : "") + ")";
    }
    return quoteType(text);
}

} // namespace

// ---- the database as a whole -------------------------------------------------------------------------

void ForeignWriter::remarkSchema(database::Schema const& schema) {
    if (structure.schemas.size() > 1) {
        leftOut("schema " + schema.name, "SQLite has one schema, which contains all tables");
    }
    SqlWriter::remarkSchema(schema);
}

void ForeignWriter::remarkComment(std::string const& what, database::Named const& thing) {
    if (!thing.comment.empty()) {
        leftOut("comment on " + what, "SQLite has no comments", thing.comment);
    }
}

database::Omissions ForeignWriter::omissionsOf(std::string const& what, Extras const& extras,
                                               std::set<std::string> const& said) const {
    database::Omissions lacking;
    for (Extra const& extra : extras) {
        if (!said.count(extra.name) && extra.name != inherited) {
            lacking.push_back(database::omissionOf(extra, what, "SQLite"));
        }
    }
    return lacking;
}

Translation ForeignWriter::expression(std::string const& sql) const {
    std::string const inSchema = withoutSchemas(sql);
    return inSchema.empty() && !sql.empty()
               ? Translation{"", "it names a table that has another name in SQLite"}
               : translateSql(inSchema);
}

Translation ForeignWriter::defaultExpression(std::string const& sql) const {
    std::string const lower = database::lowerCase(sql);
    bool const isNow = lower == "now()" || lower == "current_timestamp";
    return isNow ? Translation{"CURRENT_TIMESTAMP", ""} : expression(sql);
}

/// Tables with their schema in front go without; empty if one of them has another name here.
std::string ForeignWriter::withoutSchemas(std::string const& sql) const {
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

// ---- tables ------------------------------------------------------------------------------------------

void ForeignWriter::writeTables() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        if (table.schema >= 0) {
            qualified[{at(structure.schemas, table.schema).name, table.name}] = names[i];
        }
    }
    SqlWriter::writeTables();
}

std::string ForeignWriter::acceptedTable(int table) {
    std::string const all = tableText(table, parts);
    if (scratch.take(all).empty()) {
        return all;
    }
    std::vector<Part> kept;
    for (Part const& part : parts) {
        kept.push_back({part.plain, part.plain, part.object});
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        kept[i].text = parts[i].text;
        if (std::string const problem = scratch.check(tableText(table, kept)); !problem.empty()) {
            kept[i].text = parts[i].plain;
            leftOutOfTable(parts[i].object, "SQLite says: " + problem, parts[i].text);
        }
    }
    std::string const text = tableText(table, kept);
    std::string const problem = scratch.take(text);
    if (!problem.empty()) {
        leftOutOfTable("table " + at(names, table), "SQLite says: " + problem, text);
        return "";
    }
    return text;
}

/// Domains count as what they are made of.
std::string ForeignWriter::typeText(Column const& column) const {
    Type const* type = typeOf(column);
    while (type && type->base >= 0 && type->kind == TypeKind::DOMAIN_TYPE) {
        type = &at(structure.types, type->base);
    }
    return type ? textOf(*type) : "";
}

/// The values of an enumeration and the conditions of a domain go with each column of that type.
void ForeignWriter::addTypeChecks(Table const& table, Column const& column) {
    Type const* type = typeOf(column);
    while (type) {
        if (type->kind == TypeKind::ENUMERATION) {
            std::string values;
            for (std::string const& value : type->values) {
                values += (values.empty() ? "" : ", ") + quoteText(value);
            }
            parts.push_back({"CHECK (" + quoteName(column.name) + " IN (" + values + "))", "",
                             "values of type " + type->name});
        }
        for (database::Check const* check : at(checksOfType, static_cast<int>(type - &structure.types[0]))) {
            addCheck(table, "", translateDomainCheck(check->expression, column.name), check->expression);
        }
        type = type->base < 0 ? nullptr : &at(structure.types, type->base);
    }
}

// ---- indexes, views, triggers ------------------------------------------------------------------------

std::string ForeignWriter::nameOf(database::Index const& index) {
    Table const& table = at(structure.tables, index.table);
    return uniqueName(index.name.empty() ? table.name + "_index" : index.name, table.schema);
}

bool ForeignWriter::namesColumns(Table const&) const {
    return true;
}

bool ForeignWriter::writeAccepted(std::string const& what, std::string const& text) {
    std::string const problem = scratch.take(text);
    if (!problem.empty()) {
        leftOut(what, "SQLite says: " + problem, text);
        return false;
    }
    statement(text);
    return true;
}

/// A view must come behind those that it uses, since SQLite looks at it at once.
void ForeignWriter::writeReferences() {
    std::vector<int> waiting;
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        bool const isView = structure.tables[i].kind != TableKind::TABLE;
        if (isView && !structure.tables[i].statement.empty()) {
            waiting.push_back(static_cast<int>(i));
        }
    }
    for (bool goesOn = true; goesOn;) {
        std::vector<int> later;
        for (int const number : waiting) {
            if (!writeViewIfUsable(number)) {
                later.push_back(number);
            }
        }
        goesOn = later.size() < waiting.size();
        waiting.swap(later);
    }
    for (int const number : waiting) {
        leaveOutView(number);
    }
}

bool ForeignWriter::writeViewIfUsable(int number) {
    Table const& view = at(structure.tables, number);
    Translation const translation = expression(view.statement);
    std::string const text = viewText(number, translation.text);
    if (!translation.problem.empty() || !scratch.takeView(text, at(names, number)).empty()) {
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
    statement(text);
    return true;
}

void ForeignWriter::leaveOutView(int number) {
    Table const& view = at(structure.tables, number);
    Translation const translation = expression(view.statement);
    std::string const problem =
        translation.problem.empty()
            ? "SQLite says: " + scratch.takeView(viewText(number, translation.text), at(names, number))
            : translation.problem;
    leftOut("view " + view.name, problem, view.statement);
}

void ForeignWriter::writeTrigger(std::string const& what, database::Trigger const& trigger) {
    leftOut(what, "it is in the language of another system", trigger.statement);
}

} // namespace sqlite
