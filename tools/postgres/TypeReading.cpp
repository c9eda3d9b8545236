#include "postgres/CatalogReader.h"

#include <algorithm>
#include <string_view>

namespace postgres {
namespace {

using database::Type;
using database::TypeKind;

struct Entry {
    std::string_view systemName;
    char const* dataType;
};

constexpr Entry dataTypes[] = {
    {"bit", "SQL_BINARY"},
    {"bool", "SQL_BOOLEAN"},
    {"bpchar", "SQL_CHAR"},
    {"bytea", "SQL_LONGVARBINARY"},
    {"char", "SQL_CHAR"},
    {"cidr", "SQL_VARCHAR"},
    {"date", "SQL_DATE"},
    {"float4", "SQL_REAL"},
    {"float8", "SQL_DOUBLE"},
    {"inet", "SQL_VARCHAR"},
    {"int2", "SQL_SMALLINT"},
    {"int4", "SQL_INTEGER"},
    {"int8", "SQL_BIGINT"},
    {"json", "SQL_LONGVARCHAR"},
    {"jsonb", "SQL_LONGVARCHAR"},
    {"macaddr", "SQL_VARCHAR"},
    {"macaddr8", "SQL_VARCHAR"},
    {"money", "SQL_DECIMAL"},
    {"name", "SQL_VARCHAR"},
    {"numeric", "SQL_NUMERIC"},
    {"oid", "SQL_BIGINT"},
    {"text", "SQL_LONGVARCHAR"},
    {"time", "SQL_TIME"},
    {"timestamp", "SQL_TIMESTAMP"},
    {"timestamptz", "SQL_TIMESTAMP_WITH_TIME_ZONE"},
    {"timetz", "SQL_TIME_WITH_TIME_ZONE"},
    {"uuid", "SQL_CHAR"},
    {"varbit", "SQL_VARBINARY"},
    {"varchar", "SQL_VARCHAR"},
    {"xml", "SQL_LONGVARCHAR"},
};

/// "interval day to second(3)" is SQL_INTERVAL_DAY_TO_SECOND; one of all fields counts as that too.
std::string intervalType(std::string declaration) {
    declaration = declaration.substr(0, declaration.find('('));
    if (declaration == "interval") {
        return "SQL_INTERVAL_DAY_TO_SECOND";
    }
    std::transform(declaration.begin(), declaration.end(), declaration.begin(), [](char character) {
        return character == ' ' ? '_' : static_cast<char>(character - 'a' + 'A');
    });
    return "SQL_" + declaration;
}

std::string dataTypeOf(std::string_view systemName, std::string const& declaration, char category) {
    if (systemName == "interval") {
        return intervalType(declaration);
    }
    auto const* const found =
        std::find_if(std::begin(dataTypes), std::end(dataTypes),
                     [&](Entry const& entry) { return entry.systemName == systemName; });
    if (found != std::end(dataTypes)) {
        return found->dataType;
    }
    return category == 'S' ? "SQL_LONGVARCHAR" : category == 'E' ? "SQL_VARCHAR" : "undefined";
}

/// How the server packs what stands in parentheses behind a type.
void unpackModifier(Type& type, std::string_view systemName, std::int64_t modifier) {
    constexpr std::int64_t header = 4;
    if (modifier < 0) {
        return;
    }
    if (systemName == "varchar" || systemName == "bpchar") {
        type.length = static_cast<int>(modifier - header);
    } else if (systemName == "numeric") {
        type.length = static_cast<int>((modifier - header) >> 16 & 0xffff);
        type.scale = static_cast<int>(((modifier - header) & 0x7ff) ^ 1024) - 1024;
    } else if (systemName == "bit" || systemName == "varbit") {
        type.length = static_cast<int>(modifier);
    } else if (systemName == "interval") {
        type.scale = (modifier & 0xffff) == 0xffff ? 0 : static_cast<int>(modifier & 0xffff);
    } else if (systemName.substr(0, 4) == "time") {
        type.scale = static_cast<int>(modifier);
    }
}

/// An operator class of the users is named although it is the default, so that it is made first.
std::string rangeParts(bool hasMultiranges) {
    return "SELECT r.rngtypid, 'range', concat_ws(', ', 'SUBTYPE = ' || format_type(r.rngsubtype, NULL),"
           " CASE WHEN NOT o.opcdefault OR n.nspname <> 'pg_catalog' THEN 'SUBTYPE_OPCLASS = ' || "
           "quote_ident(n.nspname) || '.' ||"
           " quote_ident(o.opcname) END,"
           " CASE WHEN r.rngcollation <> s.typcollation THEN (SELECT 'COLLATION = ' || "
           "quote_ident(k.nspname) "
           "|| '.' ||"
           " quote_ident(l.collname) FROM pg_collation AS l JOIN pg_namespace AS k ON k.oid = l.collnamespace"
           " WHERE l.oid = r.rngcollation) END,"
           " 'CANONICAL = ' || nullif(r.rngcanonical::text, '-'),"
           " 'SUBTYPE_DIFF = ' || nullif(r.rngsubdiff::text, '-')" +
           std::string(hasMultiranges ? ", 'MULTIRANGE_TYPE_NAME = ' || format_type(r.rngmultitypid, NULL)"
                                      : "") +
           ") FROM pg_range AS r JOIN pg_type AS s ON s.oid = r.rngsubtype JOIN pg_opclass AS o ON o.oid = "
           "r.rngsubopc"
           " JOIN pg_namespace AS n ON n.oid = o.opcnamespace ORDER BY r.rngtypid";
}

/// A function of a type, as an option of its statement.
std::string typeFunction(char const* option, char const* column) {
    return std::string(", '") + option + " = ' || nullif(t." + column + "::text, '-')";
}

std::string baseTypeParts(bool hasSubscripts) {
    return "SELECT t.oid, 'base', concat_ws(', ', format('INPUT = %s, OUTPUT = %s', t.typinput, "
           "t.typoutput)" +
           typeFunction("RECEIVE", "typreceive") + typeFunction("SEND", "typsend") +
           typeFunction("TYPMOD_IN", "typmodin") + typeFunction("TYPMOD_OUT", "typmodout") +
           typeFunction("ANALYZE", "typanalyze") +
           (hasSubscripts ? typeFunction("SUBSCRIPT", "typsubscript") : "") +
           ", 'INTERNALLENGTH = ' || CASE WHEN t.typlen < 0 THEN 'VARIABLE' ELSE t.typlen::text END,"
           " CASE WHEN t.typbyval THEN 'PASSEDBYVALUE' END,"
           " 'ALIGNMENT = ' || CASE t.typalign WHEN 'c' THEN 'char' WHEN 's' THEN 'int2' WHEN 'd' THEN "
           "'double'"
           " ELSE 'int4' END,"
           " 'STORAGE = ' || CASE t.typstorage WHEN 'p' THEN 'plain' WHEN 'e' THEN 'external' WHEN 'm' THEN"
           " 'main' ELSE 'extended' END, 'CATEGORY = ' || quote_literal(nullif(t.typcategory, 'U')::text),"
           " CASE WHEN t.typispreferred THEN 'PREFERRED = true' END, 'DEFAULT = ' || "
           "quote_literal(t.typdefault),"
           " 'ELEMENT = ' || CASE WHEN t.typelem <> 0 THEN format_type(t.typelem, NULL) END,"
           " 'DELIMITER = ' || quote_literal(nullif(t.typdelim, ',')::text),"
           " CASE WHEN t.typcollation <> 0 THEN 'COLLATABLE = true' END)"
           " FROM pg_type AS t WHERE t.typtype = 'b' AND t.oid >= 16384 ORDER BY t.oid";
}

TypeKind kindOf(char letter) {
    return letter == 'd'   ? TypeKind::DOMAIN_TYPE
           : letter == 'e' ? TypeKind::ENUMERATION
           : letter == 'c' ? TypeKind::COMPOSITE
           : letter == 'r' ? TypeKind::RANGE
                           : TypeKind::BUILT_IN;
}

} // namespace

void describeType(Type& type, std::string const& systemName, char category, std::int64_t modifier) {
    type.dataType = dataTypeOf(systemName, type.declaration, category);
    unpackModifier(type, systemName, modifier);
}

std::string typeColumns(std::string const& oid, std::string const& modifier, std::string const& type) {
    return oid + ", " + modifier + ", format_type(" + oid + ", " + modifier + "), CASE WHEN " + type +
           ".typnamespace = 'pg_catalog'::regnamespace THEN " + type + ".typname END, " + type +
           ".typcategory, " + type + ".typtype";
}

int CatalogReader::typeOf(Query const& row, int column) {
    if (row.isNull(column)) {
        return -1;
    }
    auto const own = ownTypes.find(row.number(column));
    if (own != ownTypes.end()) {
        return own->second;
    }
    auto const next = static_cast<int>(structure.types.size());
    auto const [known, isNew] =
        spelledTypes.emplace(std::pair(row.number(column), row.number(column + 1)), next);
    if (isNew) {
        Type type;
        type.declaration = row.text(column + 2);
        type.name = type.declaration;
        describeType(type, row.text(column + 3), *row.text(column + 4), row.number(column + 1));
        structure.types.push_back(std::move(type));
    }
    return known->second;
}

/// Those that come with a table, an array or a range are left out.
void CatalogReader::readTypes() {
    Query row(
        connection,
        "SELECT t.oid, t.typname, t.typnamespace, t.typtype, format_type(t.oid, NULL), t.typcategory, "
        "t.typnotnull, pg_get_expr(t.typdefaultbin, 0), " +
            commentOn("pg_type", "t.oid") +
            ", CASE WHEN t.typtype = 'd' AND t.typcollation <> b.typcollation THEN (SELECT"
            " quote_ident(k.nspname) || '.' || quote_ident(l.collname) FROM pg_collation AS l"
            " JOIN pg_namespace AS k ON k.oid = l.collnamespace WHERE l.oid = t.typcollation) END, " +
            typeColumns("b.oid", "t.typtypmod", "b") +
            " FROM pg_type AS t LEFT JOIN pg_type AS b ON b.oid = t.typbasetype"
            " WHERE" +
            isOwn("pg_type", "t.oid", "t.typnamespace") +
            "AND (t.typtype IN ('d', 'e', 'r') OR (t.typtype = 'c' AND EXISTS"
            " (SELECT 1 FROM pg_class AS c WHERE c.oid = t.typrelid AND c.relkind = 'c'))"
            " OR (t.typtype = 'b' AND t.typcategory <> 'A') OR (t.typtype = 'p' AND NOT t.typisdefined))"
            " ORDER BY t.oid");
    while (row.next()) {
        Type type;
        type.name = row.text(1);
        type.schema = schemaOf(row.number(2));
        type.kind = kindOf(*row.text(3));
        type.declaration = row.text(4);
        type.notNull = row.flag(6);
        type.defaultValue = row.text(7);
        type.comment = row.text(8);
        addExtra(type.extras, "collation", row.text(9));
        addFlag(type.extras, "shell", *row.text(3) == 'p');
        type.base = typeOf(row, 10);
        if (type.base >= 0) {
            Type const& base = structure.types[static_cast<std::size_t>(type.base)];
            type.dataType = base.dataType;
            type.length = base.length;
            type.scale = base.scale;
        } else {
            describeType(type, "", *row.text(5), -1);
        }
        ownTypes.emplace(row.number(0), static_cast<int>(structure.types.size()));
        structure.types.push_back(std::move(type));
    }
}

void CatalogReader::readEnumerationValues() {
    Query row(connection, "SELECT enumtypid, enumlabel FROM pg_enum ORDER BY enumtypid, enumsortorder");
    while (row.next()) {
        auto const type = ownTypes.find(row.number(0));
        if (type != ownTypes.end()) {
            structure.types[static_cast<std::size_t>(type->second)].values.emplace_back(row.text(1));
        }
    }
}

/// What a composite type, a range and a type made of functions consist of stands in extras, as SQL writes it.
void CatalogReader::readTypeExtras() {
    std::string const collation = "coalesce((SELECT ' COLLATE ' || quote_ident(n.nspname) || '.' ||"
                                  " quote_ident(l.collname) FROM pg_collation AS l JOIN pg_namespace AS n"
                                  " ON n.oid = l.collnamespace WHERE l.oid = a.attcollation"
                                  " AND a.attcollation <> t.typcollation), '')";
    std::string const attributes =
        "SELECT c.reltype, 'attributes', string_agg(quote_ident(a.attname) || ' ' ||"
        " format_type(a.atttypid, a.atttypmod) || " +
        collation +
        ", ', ' ORDER BY a.attnum) FROM pg_class AS c JOIN pg_attribute AS a ON a.attrelid = c.oid"
        " JOIN pg_type AS t ON t.oid = a.atttypid"
        " WHERE c.relkind = 'c' AND a.attnum > 0 AND NOT a.attisdropped GROUP BY c.reltype";
    std::string const comments =
        "SELECT c.reltype, 'comment on ' || a.attname, d.description FROM pg_class AS c"
        " JOIN pg_attribute AS a ON a.attrelid = c.oid JOIN pg_description AS d"
        " ON d.classoid = 'pg_class'::regclass AND d.objoid = c.oid"
        " AND d.objsubid = a.attnum WHERE c.relkind = 'c' ORDER BY c.oid, a.attnum";
    for (std::string const& sql :
         {attributes, comments, rangeParts(since(140000)), baseTypeParts(since(140000))}) {
        Query row(connection, sql);
        while (row.next()) {
            auto const type = ownTypes.find(row.number(0));
            if (type != ownTypes.end()) {
                addExtra(structure.types[static_cast<std::size_t>(type->second)].extras, row.text(1),
                         row.text(2));
            }
        }
    }
}

} // namespace postgres
