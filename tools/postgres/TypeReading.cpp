#include "database/Enumerations.h"
#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

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

constexpr char const* typeSql = R"sql(
    SELECT t.oid AS oid, t.typname AS name, t.typnamespace AS schema, t.typtype AS kind,
        format_type(t.oid, NULL) AS declaration, t.typcategory AS category, t.typnotnull AS not_null,
        pg_get_expr(t.typdefaultbin, 0) AS default_value, {comment} AS comment, {collation} AS collation,
        {base_columns}
    FROM pg_type AS t LEFT JOIN pg_type AS b ON b.oid = t.typbasetype
    WHERE {is_own}
        AND (t.typtype IN ('d', 'e', 'r')
            OR (t.typtype = 'c' AND EXISTS
                (SELECT 1 FROM pg_class AS c WHERE c.oid = t.typrelid AND c.relkind = 'c'))
            OR (t.typtype = 'b' AND t.typcategory <> 'A')
            OR (t.typtype = 'p' AND NOT t.typisdefined))
    ORDER BY t.oid)sql";

std::string typeQuery() {
    return filled(typeSql, {{"comment", commentOn("pg_type", "t.oid")},
                            {"collation", otherCollation("t.typcollation", "b.typcollation")},
                            {"base_columns", typeColumns("b.oid", "t.typtypmod", "b")},
                            {"is_own", isOwn("pg_type", "t.oid", "t.typnamespace")}});
}

struct TypeRow : Query {
    using Query::Query;
    Number oid{*this, "oid"};
    Text name{*this, "name"};
    Number schema{*this, "schema"};
    Letter kind{*this, "kind"};
    Text declaration{*this, "declaration"};
    Letter category{*this, "category"};
    Flag isNotNull{*this, "not_null"};
    Text defaultValue{*this, "default_value"};
    Text comment{*this, "comment"};
    Text collation{*this, "collation"};
    TypeFields base{*this};
};

struct ValueRow : Query {
    using Query::Query;
    Number type{*this, "type"};
    Text label{*this, "label"};
};

/// What a query tells of each type becomes its extra.
struct TypeExtraRow : Query {
    using Query::Query;
    Number type{*this, "type"};
    Text name{*this, "name"}; ///< stands behind the prefix in the name of the extra
    Text value{*this, "value"};
};

constexpr char const* attributeSql = R"sql(
    SELECT c.reltype AS type, '' AS name,
        string_agg(quote_ident(a.attname) || ' ' || format_type(a.atttypid, a.atttypmod)
            || coalesce(' COLLATE ' || {collation}, ''), ', ' ORDER BY a.attnum) AS value
    FROM pg_class AS c JOIN pg_attribute AS a ON a.attrelid = c.oid JOIN pg_type AS t ON t.oid = a.atttypid
    WHERE c.relkind = 'c' AND a.attnum > 0 AND NOT a.attisdropped
    GROUP BY c.reltype)sql";

constexpr char const* attributeCommentSql = R"sql(
    SELECT c.reltype AS type, a.attname AS name, d.description AS value
    FROM pg_class AS c JOIN pg_attribute AS a ON a.attrelid = c.oid
        JOIN pg_description AS d ON d.classoid = 'pg_class'::regclass AND d.objoid = c.oid
            AND d.objsubid = a.attnum
    WHERE c.relkind = 'c'
    ORDER BY c.oid, a.attnum)sql";

/// An operator class of the users is named although it is the default, so that it is made first.
constexpr char const* rangeSql = R"sql(
    SELECT r.rngtypid AS type, '' AS name,
        concat_ws(', ',
            'SUBTYPE = ' || format_type(r.rngsubtype, NULL),
            CASE WHEN NOT o.opcdefault OR n.nspname <> 'pg_catalog'
                THEN 'SUBTYPE_OPCLASS = ' || quote_ident(n.nspname) || '.' || quote_ident(o.opcname) END,
            'COLLATION = ' || {collation},
            'CANONICAL = ' || nullif(r.rngcanonical::text, '-'),
            'SUBTYPE_DIFF = ' || nullif(r.rngsubdiff::text, '-'),
            'MULTIRANGE_TYPE_NAME = ' || {multirange}) AS value
    FROM pg_range AS r JOIN pg_type AS s ON s.oid = r.rngsubtype JOIN pg_opclass AS o ON o.oid = r.rngsubopc
        JOIN pg_namespace AS n ON n.oid = o.opcnamespace
    ORDER BY r.rngtypid)sql";

constexpr char const* baseTypeSql = R"sql(
    SELECT t.oid AS type, '' AS name,
        concat_ws(', ',
            format('INPUT = %s, OUTPUT = %s', t.typinput, t.typoutput),
            'RECEIVE = ' || nullif(t.typreceive::text, '-'),
            'SEND = ' || nullif(t.typsend::text, '-'),
            'TYPMOD_IN = ' || nullif(t.typmodin::text, '-'),
            'TYPMOD_OUT = ' || nullif(t.typmodout::text, '-'),
            'ANALYZE = ' || nullif(t.typanalyze::text, '-'),
            'SUBSCRIPT = ' || {subscript},
            'INTERNALLENGTH = ' || CASE WHEN t.typlen < 0 THEN 'VARIABLE' ELSE t.typlen::text END,
            CASE WHEN t.typbyval THEN 'PASSEDBYVALUE' END,
            'ALIGNMENT = ' ||
                CASE t.typalign WHEN 'c' THEN 'char' WHEN 's' THEN 'int2' WHEN 'd' THEN 'double' ELSE 'int4' END,
            'STORAGE = ' || CASE t.typstorage
                WHEN 'p' THEN 'plain' WHEN 'e' THEN 'external' WHEN 'm' THEN 'main' ELSE 'extended' END,
            'CATEGORY = ' || quote_literal(nullif(t.typcategory, 'U')::text),
            CASE WHEN t.typispreferred THEN 'PREFERRED = true' END,
            'DEFAULT = ' || quote_literal(t.typdefault),
            'ELEMENT = ' || CASE WHEN t.typelem <> 0 THEN format_type(t.typelem, NULL) END,
            'DELIMITER = ' || quote_literal(nullif(t.typdelim, ',')::text),
            CASE WHEN t.typcollation <> 0 THEN 'COLLATABLE = true' END) AS value
    FROM pg_type AS t
    WHERE t.typtype = 'b' AND t.oid >= 16384
    ORDER BY t.oid)sql";

constexpr database::TwoWay<TypeKind, char, 5> kindLetters{{{TypeKind::BUILT_IN, 'b'},
                                                           {TypeKind::DOMAIN_TYPE, 'd'},
                                                           {TypeKind::ENUMERATION, 'e'},
                                                           {TypeKind::COMPOSITE, 'c'},
                                                           {TypeKind::RANGE, 'r'}}};

} // namespace

void describeType(Type& type, std::string const& systemName, char category, std::int64_t modifier) {
    type.dataType = dataTypeOf(systemName, type.declaration, category);
    unpackModifier(type, systemName, modifier);
}

int CatalogReader::typeOf(TypeFields const& fields) {
    if (fields.oid.isNull()) {
        return -1;
    }
    auto const own = ownTypes.find(fields.oid);
    if (own != ownTypes.end()) {
        return own->second;
    }
    auto const next = static_cast<int>(structure.types.size());
    auto const [known, isNew] =
        spelledTypes.emplace(std::pair(Oid(fields.oid), std::int64_t(fields.modifier)), next);
    if (isNew) {
        Type type;
        type.declaration = fields.declaration;
        type.name = type.declaration;
        describeType(type, fields.systemName, fields.category, fields.modifier);
        structure.types.push_back(std::move(type));
    }
    return known->second;
}

/// Those that come with a table, an array or a range are left out.
void CatalogReader::readTypes() {
    TypeRow row(connection, typeQuery());
    while (row.next()) {
        Type type;
        type.name = row.name;
        type.schema = schemaOf(row.schema);
        type.kind = kindLetters.valueOf(row.kind);
        type.declaration = row.declaration;
        type.notNull = row.isNotNull;
        type.defaultValue = row.defaultValue;
        type.comment = row.comment;
        addExtra(type.extras, extra::collation, row.collation);
        addFlag(type.extras, extra::shell, row.kind == 'p');
        type.base = typeOf(row.base);
        if (type.base >= 0) {
            Type const& base = structure.types[static_cast<std::size_t>(type.base)];
            type.dataType = base.dataType;
            type.length = base.length;
            type.scale = base.scale;
        } else {
            describeType(type, "", row.category, -1);
        }
        ownTypes.emplace(row.oid, static_cast<int>(structure.types.size()));
        structure.types.push_back(std::move(type));
    }
}

void CatalogReader::readEnumerationValues() {
    ValueRow row(
        connection,
        "SELECT enumtypid AS type, enumlabel AS label FROM pg_enum ORDER BY enumtypid, enumsortorder");
    while (row.next()) {
        auto const type = ownTypes.find(row.type);
        if (type != ownTypes.end()) {
            structure.types[static_cast<std::size_t>(type->second)].values.emplace_back(row.label);
        }
    }
}

/// What a composite type, a range and a type made of functions consist of stands in extras, as SQL writes it.
void CatalogReader::readTypeExtras() {
    bool const since14 = since(140000);
    addToTypes(extra::attributes,
               filled(attributeSql, {{"collation", otherCollation("a.attcollation", "t.typcollation")}}));
    addToTypes(prefix::commentOn, attributeCommentSql);
    addToTypes(extra::range,
               filled(rangeSql, {{"collation", otherCollation("r.rngcollation", "s.typcollation")},
                                 {"multirange", since14 ? "format_type(r.rngmultitypid, NULL)" : "NULL"}}));
    addToTypes(extra::base,
               filled(baseTypeSql, {{"subscript", since14 ? "nullif(t.typsubscript::text, '-')" : "NULL"}}));
}

void CatalogReader::addToTypes(std::string const& prefix, std::string const& sql) {
    TypeExtraRow row(connection, sql);
    while (row.next()) {
        auto const type = ownTypes.find(row.type);
        if (type != ownTypes.end()) {
            addExtra(structure.types[static_cast<std::size_t>(type->second)].extras,
                     prefix + std::string(row.name), row.value);
        }
    }
}

} // namespace postgres
