#include "postgres/SqlWriter.h"

#include "database/Records.h"
#include "postgres/Extras.h"
#include "postgres/SqlNames.h"

#include <algorithm>

namespace postgres {
using namespace database;

std::string SqlWriter::tableStatement(Table const& table, int index, bool isBare) {
    std::string const type = valueOf(table.extras, extra::of);
    std::vector<std::string> const parts = tableParts(table, index, isBare);
    std::string text = std::string("CREATE ") + (has(table, extra::unlogged) ? "UNLOGGED " : "") +
                       (has(table, extra::server) ? "FOREIGN " : "") + "TABLE " + tableName(index);
    text += type.empty() ? "" : " OF " + type;
    text += type.empty() || !parts.empty() ? " " + partsText(parts) : "";
    std::string parents = valueOf(table.extras, extra::inherits);
    for (int const parent : table.parents) {
        parents += (parents.empty() ? "" : ", ") + tableName(parent);
    }
    text += parents.empty() || isPartition(table) ? "" : " INHERITS (" + parents + ")";
    return text + clause(table.extras, extra::partitionBy, " PARTITION BY ") +
           (has(table, extra::server) ? serverText(table) : storageText(table));
}

std::string SqlWriter::serverText(Table const& table) {
    return " SERVER " + quoteName(valueOf(table.extras, extra::server)) +
           clause(table.extras, extra::options, " OPTIONS (", ")");
}

/// How a table or a materialized view is stored.
std::string SqlWriter::storageText(Table const& table) {
    std::string const method = has(table, extra::accessMethod)
                                   ? " USING " + quoteName(valueOf(table.extras, extra::accessMethod))
                                   : "";
    std::string const space = has(table, extra::tablespace)
                                  ? " TABLESPACE " + quoteName(valueOf(table.extras, extra::tablespace))
                                  : "";
    return method + clause(table.extras, extra::with, " WITH (", ")") + space;
}

/// The columns and constraints.
std::vector<std::string> SqlWriter::tableParts(Table const& table, int index, bool isBare) {
    std::vector<std::string> parts;
    auto const add = [&](bool isHere, std::string const& part) {
        if (isHere && !part.empty()) {
            parts.push_back(part);
        }
    };
    for (Column const& column : table.columns) {
        add(!isInherited(index, column), columnText(table, column, isBare));
    }
    for (Key const* const key : at(keysOfTable, index)) {
        add(key->kind != KeyKind::FOREIGN && !isInPartitions(index), keyText(*key));
    }
    for (Check const* const check : at(checksOfTable, index)) {
        add(!isBare && !has(*check, extra::notValid) && !isInherited(index, *check), checkText(*check));
    }
    return parts;
}

/// The defaults and checks of a table that has been made without.
std::string SqlWriter::restOfTable(int index) {
    Table const& table = at(structure.tables, index);
    std::string text;
    for (Column const& column : table.columns) {
        bool const isSet = !column.defaultValue.empty() && !column.generated && !isInherited(index, column);
        text += isSet ? restOfDefault(index, column) : "";
    }
    for (Check const* const check : at(checksOfTable, index)) {
        if (!has(*check, extra::notValid) && !isInherited(index, *check)) {
            text += ";\nALTER TABLE " + tableName(index) + " ADD " + checkText(*check);
        }
    }
    return text.empty() ? "" : text.substr(2);
}

/// Tables that inherit the column had nothing to inherit yet.
std::string SqlWriter::restOfDefault(int table, Column const& column) {
    std::string text = ";\nALTER TABLE ONLY " + tableName(table) + " ALTER COLUMN " + quoteName(column.name) +
                       " SET DEFAULT " + column.defaultValue;
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& heir = structure.tables[i];
        bool const isHeir = std::find(heir.parents.begin(), heir.parents.end(), table) != heir.parents.end();
        for (Column const& inherited : heir.columns) {
            bool const isSame = inherited.name == column.name && isInherited(static_cast<int>(i), inherited);
            if (isHeir && isSame && !inherited.defaultValue.empty()) {
                text += restOfDefault(static_cast<int>(i), inherited);
            }
        }
    }
    return text;
}

std::string SqlWriter::columnText(Table const& table, Column const& column, bool isBare) {
    Extras const& extras = column.extras;
    std::string text = quoteName(column.name);
    if (has(table, extra::of)) {
        bool const isChanged = column.notNull || !column.defaultValue.empty();
        if (!isChanged) {
            return "";
        }
        text += " WITH OPTIONS";
    } else {
        text += " " + typeName(column.type) + clause(extras, extra::options, " OPTIONS (", ")") +
                clause(extras, extra::collation, " COLLATE ");
    }
    if (column.generated) {
        text += " GENERATED ALWAYS AS (" + column.defaultValue + ") ";
        text += valueOf(extras, extra::generated) == "VIRTUAL" ? "VIRTUAL" : "STORED";
    } else if (has(column, extra::identity)) {
        text += identityText(column);
    } else if (!column.defaultValue.empty() && !isBare && !isLateDefault(table, column)) {
        text += " DEFAULT " + column.defaultValue;
    }
    return text + (column.notNull ? " NOT NULL" : "");
}

std::string SqlWriter::identityText(Column const& column) {
    return clause(column.extras, extra::identity, " GENERATED ", " AS IDENTITY") +
           clause(column.extras, extra::identitySequence, " (", ")");
}

std::string SqlWriter::keyText(Key const& key) {
    return database::SqlWriter::keyText(key) + clause(key.extras, extra::deferrable, " DEFERRABLE ") +
           (has(key, extra::notValid) ? " NOT VALID" : "");
}

std::string SqlWriter::keyColumns(Key const& key) {
    return (has(key, extra::nullsNotDistinct) ? "NULLS NOT DISTINCT " : "") +
           columnNames(key.table, key.columns);
}

std::string SqlWriter::keyOptions(Key const& key) {
    std::string const space = valueOf(key.extras, extra::tablespace);
    return clause(key.extras, extra::include, " INCLUDE (", ")") +
           clause(key.extras, extra::with, " WITH (", ")") +
           (space.empty() ? "" : " USING INDEX TABLESPACE " + quoteName(space));
}

std::string SqlWriter::referenceText(Key const& key) {
    return database::SqlWriter::referenceText(key) + clause(key.extras, extra::onDeleteColumns, " (", ")");
}

std::string SqlWriter::checkText(Check const& check) {
    return database::SqlWriter::checkText(check.name, check.expression) +
           (has(check, extra::noInherit) ? " NO INHERIT" : "") +
           (has(check, extra::notValid) ? " NOT VALID" : "");
}

/// A view of the same columns and no rows, which needs nothing but their types.
std::string SqlWriter::emptyView(Table const& table) {
    std::string columns;
    for (Column const& column : table.columns) {
        columns += (columns.empty() ? " NULL::" : ", NULL::") + typeName(column.type) +
                   clause(column.extras, extra::collation, " COLLATE ") + " AS " + quoteName(column.name);
    }
    return "CREATE VIEW " + qualified(table.schema, table.name) + " AS SELECT" + columns;
}

/// The names of the columns follow from the statement.
std::string SqlWriter::viewStatement(Table const& table) {
    bool const stored = table.kind == TableKind::MATERIALIZED_VIEW;
    return std::string("CREATE ") + (stored ? "MATERIALIZED " : "") + "VIEW " +
           qualified(table.schema, table.name) + storageText(table) + " AS\n" + table.statement +
           (stored ? "\n WITH NO DATA" : "");
}

} // namespace postgres
