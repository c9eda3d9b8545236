#include "postgres/SqlWriter.h"

#include "database/Records.h"
#include "postgres/Extras.h"
#include "postgres/SqlNames.h"

#include <string_view>

namespace postgres {
namespace {

using namespace database;

/// The types by which one function is told from others of its name.
std::string signatureOf(Structure const& structure, Routine const& routine,
                        std::string const& (*typeText)(Type const&)) {
    std::string types;
    for (Argument const& argument : routine.arguments) {
        bool const isResult = argument.mode == ArgumentMode::RESULT_COLUMN;
        if (isResult || (argument.mode == ArgumentMode::OUT && !routine.procedure)) {
            continue;
        }
        types += types.empty() ? "" : ", ";
        types += argument.mode == ArgumentMode::OUT ? "OUT " : "";
        types += argument.mode == ArgumentMode::VARIADIC ? "VARIADIC " : "";
        types += argument.type < 0 ? "unknown" : typeText(at(structure.types, argument.type));
    }
    return "(" + types + ")";
}

} // namespace

void SqlWriter::writeComments() {
    if (!structure.catalog.comment.empty()) {
        statement("DO " +
                  quoteText("BEGIN EXECUTE format('COMMENT ON DATABASE %I IS %L', current_database(), " +
                            quoteText(structure.catalog.comment) + "); END"));
    }
    for (Schema const& schema : structure.schemas) {
        writeSchemaComment(schema);
    }
    writeTypeComments();
    writeTableComments();
    for (Sequence const& sequence : structure.sequences) {
        comment("SEQUENCE", qualified(sequence.schema, sequence.name), sequence.comment);
    }
    for (Routine const& routine : structure.routines) {
        comment("ROUTINE",
                qualified(routine.schema, routine.name) +
                    signatureOf(structure, routine,
                                [](Type const& type) -> std::string const& { return type.declaration; }),
                routine.comment);
    }
}

void SqlWriter::writeSchemaComment(Schema const& schema) {
    if (!has(schema, extra::extension)) {
        comment("SCHEMA", quoteName(schema.name), schema.comment);
    }
}

/// A new database has a comment on this schema.
void OwnWriter::writeSchemaComment(Schema const& schema) {
    SqlWriter::writeSchemaComment(schema);
    if (schema.name == "public" && schema.comment.empty()) {
        statement("COMMENT ON SCHEMA public IS NULL");
    }
}

void SqlWriter::writeTypeComments() {
    for (std::size_t i = 0; i < structure.types.size(); ++i) {
        Type const& type = structure.types[i];
        if (type.kind == TypeKind::BUILT_IN && type.schema < 0) {
            continue; // the system's own
        }
        std::string const name = typeName(static_cast<int>(i));
        bool const isDomain = type.kind == TypeKind::DOMAIN_TYPE;
        comment(isDomain ? "DOMAIN" : "TYPE", name, type.comment);
        for (Check const* const check : checksOfType[i]) {
            comment("CONSTRAINT", quoteName(check->name) + " ON DOMAIN " + name,
                    check->name.empty() ? "" : check->comment);
        }
        constexpr std::string_view ofAttribute = "comment on ";
        for (Extra const& extra : type.extras) {
            if (beginsWith(extra.name, ofAttribute)) {
                comment("COLUMN", name + "." + quoteName(extra.name.substr(ofAttribute.size())), extra.value);
            }
        }
    }
}

void SqlWriter::writeTableComments() {
    for (std::size_t i = 0; i < structure.tables.size(); ++i) {
        Table const& table = structure.tables[i];
        std::string const name = tableName(static_cast<int>(i));
        comment(table.kind == TableKind::VIEW                ? "VIEW"
                : table.kind == TableKind::MATERIALIZED_VIEW ? "MATERIALIZED VIEW"
                : has(table, extra::server)                  ? "FOREIGN TABLE"
                                                             : "TABLE",
                name, table.comment);
        for (Column const& column : table.columns) {
            comment("COLUMN", name + "." + quoteName(column.name), column.comment);
        }
        writeConstraintComments(static_cast<int>(i));
    }
    for (Index const& index : structure.indexes) {
        comment("INDEX", qualified(at(structure.tables, index.table).schema, index.name),
                isWritten(index) && !index.name.empty() ? index.comment : "");
    }
    for (Trigger const& trigger : structure.triggers) {
        std::string const name = quoteName(trigger.name) + " ON " + tableName(trigger.table);
        comment("TRIGGER", name, trigger.comment);
        comment("CONSTRAINT", name, valueOf(trigger.extras, extra::commentOnConstraint));
    }
}

void SqlWriter::writeConstraintComments(int table) {
    for (Key const* const key : at(keysOfTable, table)) {
        comment("CONSTRAINT", quoteName(key->name) + " ON " + tableName(table),
                key->name.empty() ? "" : key->comment);
        comment("INDEX", qualified(at(structure.tables, table).schema, key->name),
                key->name.empty() ? "" : valueOf(key->extras, extra::commentOnIndex));
    }
    for (Check const* const check : at(checksOfTable, table)) {
        comment("CONSTRAINT", quoteName(check->name) + " ON " + tableName(table),
                check->name.empty() ? "" : check->comment);
    }
}

} // namespace postgres
