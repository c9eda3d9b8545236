#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

#include <algorithm>
#include <cstddef>

namespace postgres {
namespace {

using database::Extra;
using database::Extras;

/// What stands behind OPTIONS, with that word.
std::string optionsClause(std::string const& options) {
    return "coalesce(' OPTIONS (' || " + foreignOptions(options) + " || ')', '')";
}

/// The comment that an extension brings along comes with it. What an extension needs is one before it.
constexpr char const* extensions = R"sql(
    WITH RECURSIVE needs AS (
        SELECT oid, 0 AS rank FROM pg_extension
        UNION SELECT d.objid, n.rank + 1
        FROM needs AS n JOIN pg_depend AS d ON d.refobjid = n.oid AND d.refclassid = 'pg_extension'::regclass
            AND d.classid = 'pg_extension'::regclass)
    SELECT x.extname AS name,
        format('CREATE EXTENSION IF NOT EXISTS %I SCHEMA %I VERSION %L', x.extname, n.nspname, x.extversion)
        || CASE WHEN c IS DISTINCT FROM a.comment
            THEN format(E';\nCOMMENT ON EXTENSION %I IS %s', x.extname, coalesce(quote_literal(c), 'NULL'))
            ELSE '' END AS statement
    FROM pg_extension AS x JOIN pg_namespace AS n ON n.oid = x.extnamespace
        LEFT JOIN pg_available_extensions AS a ON a.name = x.extname,
        LATERAL (SELECT obj_description(x.oid, 'pg_extension') AS c) AS d
    ORDER BY (SELECT max(rank) FROM needs WHERE needs.oid = x.oid), x.extname)sql";

constexpr char const* collationSql = R"sql(
    SELECT q AS name,
        format('CREATE COLLATION %s (provider = %s, %s%s)', q,
            CASE c.collprovider WHEN 'i' THEN 'icu' WHEN 'b' THEN 'builtin' ELSE 'libc' END,
            CASE WHEN {locale} IS NOT NULL THEN 'locale = ' || quote_literal({locale})
                ELSE format('lc_collate = %L, lc_ctype = %L', c.collcollate, c.collctype) END,
            CASE WHEN c.collisdeterministic THEN '' ELSE ', deterministic = false' END)
        {comment} AS statement
    FROM pg_collation AS c JOIN pg_namespace AS n ON n.oid = c.collnamespace,
        LATERAL (SELECT format('%I.%I', n.nspname, c.collname) AS q) AS x
    WHERE {is_made})sql";

/// `locale` is the name of the column that holds the locale of other providers than the C library.
std::string collations(std::string const& locale) {
    return filled(collationSql, {{"locale", locale},
                                 {"comment", commentStatement("COLLATION", "q", "pg_collation", "c.oid")},
                                 {"is_made", isMade("pg_collation", "c.oid")}});
}

constexpr char const* wrapperSql = R"sql(
    SELECT w.fdwname AS name,
        format('CREATE FOREIGN DATA WRAPPER %I', w.fdwname)
        || coalesce(' HANDLER ' || nullif(w.fdwhandler::regproc::text, '-'), '')
        || coalesce(' VALIDATOR ' || nullif(w.fdwvalidator::regproc::text, '-'), '')
        || {options} {comment} AS statement
    FROM pg_foreign_data_wrapper AS w
    WHERE {is_made})sql";

std::string foreignDataWrappers() {
    return filled(wrapperSql, {{"options", optionsClause("w.fdwoptions")},
                               {"comment", commentStatement("FOREIGN DATA WRAPPER", "quote_ident(w.fdwname)",
                                                            "pg_foreign_data_wrapper", "w.oid")},
                               {"is_made", isMade("pg_foreign_data_wrapper", "w.oid")}});
}

constexpr char const* serverSql = R"sql(
    SELECT s.srvname AS name,
        format('CREATE SERVER %I', s.srvname)
        || coalesce(' TYPE ' || quote_literal(s.srvtype), '')
        || coalesce(' VERSION ' || quote_literal(s.srvversion), '')
        || format(' FOREIGN DATA WRAPPER %I', w.fdwname)
        || {options} {comment} AS statement
    FROM pg_foreign_server AS s JOIN pg_foreign_data_wrapper AS w ON w.oid = s.srvfdw
    WHERE {is_made})sql";

std::string servers() {
    return filled(serverSql, {{"options", optionsClause("s.srvoptions")},
                              {"comment", commentStatement("SERVER", "quote_ident(s.srvname)",
                                                           "pg_foreign_server", "s.oid")},
                              {"is_made", isMade("pg_foreign_server", "s.oid")}});
}

constexpr char const* castSql = R"sql(
    SELECT q AS name,
        'CREATE CAST ' || q
        || CASE c.castmethod WHEN 'i' THEN ' WITH INOUT' WHEN 'b' THEN ' WITHOUT FUNCTION'
            ELSE ' WITH FUNCTION ' || c.castfunc::regprocedure END
        || CASE c.castcontext WHEN 'a' THEN ' AS ASSIGNMENT' WHEN 'i' THEN ' AS IMPLICIT' ELSE '' END
        {comment} AS statement
    FROM pg_cast AS c,
        LATERAL (SELECT format('(%s AS %s)', format_type(c.castsource, NULL), format_type(c.casttarget, NULL))
            AS q) AS x
    WHERE {is_made})sql";

std::string casts() {
    return filled(castSql, {{"comment", commentStatement("CAST", "q", "pg_cast", "c.oid")},
                            {"is_made", isMade("pg_cast", "c.oid")}});
}

constexpr char const* eventTriggerSql = R"sql(
    SELECT e.evtname AS name,
        format('CREATE EVENT TRIGGER %I ON %s', e.evtname, e.evtevent)
        || coalesce(' WHEN TAG IN (' || (SELECT string_agg(quote_literal(g), ', ') FROM unnest(e.evttags) AS g)
            || ')', '')
        || format(' EXECUTE FUNCTION %s()', e.evtfoid::regproc)
        || CASE e.evtenabled WHEN 'O' THEN '' ELSE format(E';\nALTER EVENT TRIGGER %I %s', e.evtname,
            CASE e.evtenabled WHEN 'D' THEN 'DISABLE' WHEN 'R' THEN 'ENABLE REPLICA' ELSE 'ENABLE ALWAYS' END) END
        {comment} AS statement
    FROM pg_event_trigger AS e
    WHERE {is_made})sql";

std::string eventTriggers() {
    return filled(eventTriggerSql, {{"comment", commentStatement("EVENT TRIGGER", "quote_ident(e.evtname)",
                                                                 "pg_event_trigger", "e.oid")},
                                    {"is_made", isMade("pg_event_trigger", "e.oid")}});
}

constexpr char const* languageSql = R"sql(
    SELECT x.lanname AS name,
        format('CREATE %sLANGUAGE %I HANDLER %s', CASE WHEN x.lanpltrusted THEN 'TRUSTED ' END, x.lanname,
            x.lanplcallfoid::regproc)
        || coalesce(' INLINE ' || nullif(x.laninline::regproc::text, '-'), '')
        || coalesce(' VALIDATOR ' || nullif(x.lanvalidator::regproc::text, '-'), '')
        {comment} AS statement
    FROM pg_language AS x
    WHERE {is_made})sql";

std::string languages() {
    return filled(languageSql, {{"comment", commentStatement("LANGUAGE", "quote_ident(x.lanname)",
                                                             "pg_language", "x.oid")},
                                {"is_made", isMade("pg_language", "x.oid")}});
}

constexpr char const* accessMethodSql = R"sql(
    SELECT x.amname AS name,
        format('CREATE ACCESS METHOD %I TYPE %s HANDLER %s', x.amname,
            CASE x.amtype WHEN 't' THEN 'TABLE' ELSE 'INDEX' END, x.amhandler)
        {comment} AS statement
    FROM pg_am AS x
    WHERE {is_made})sql";

std::string accessMethods() {
    return filled(accessMethodSql,
                  {{"comment", commentStatement("ACCESS METHOD", "quote_ident(x.amname)", "pg_am", "x.oid")},
                   {"is_made", isMade("pg_am", "x.oid")}});
}

constexpr char const* conversionSql = R"sql(
    SELECT q AS name,
        format('CREATE %sCONVERSION %s FOR %L TO %L FROM %s', CASE WHEN x.condefault THEN 'DEFAULT ' END, q,
            pg_encoding_to_char(x.conforencoding), pg_encoding_to_char(x.contoencoding), x.conproc)
        {comment} AS statement
    FROM pg_conversion AS x {qualified_name}
    WHERE {is_made})sql";

std::string conversions() {
    return filled(conversionSql, {{"comment", commentStatement("CONVERSION", "q", "pg_conversion", "x.oid")},
                                  {"qualified_name", qualifiedName("con")},
                                  {"is_made", isMade("pg_conversion", "x.oid")}});
}

constexpr char const* transformSql = R"sql(
    SELECT q AS name,
        format('CREATE TRANSFORM %s (%s)', q, concat_ws(', ',
            'FROM SQL WITH FUNCTION ' || CASE WHEN x.trffromsql <> 0 THEN x.trffromsql::regprocedure END,
            'TO SQL WITH FUNCTION ' || CASE WHEN x.trftosql <> 0 THEN x.trftosql::regprocedure END))
        {comment} AS statement
    FROM pg_transform AS x JOIN pg_language AS l ON l.oid = x.trflang,
        LATERAL (SELECT format('FOR %s LANGUAGE %I', format_type(x.trftype, NULL), l.lanname) AS q) AS z
    WHERE {is_made})sql";

std::string transforms() {
    return filled(transformSql, {{"comment", commentStatement("TRANSFORM", "q", "pg_transform", "x.oid")},
                                 {"is_made", isMade("pg_transform", "x.oid")}});
}

/// Whose they are and no more: their options are names and passwords.
constexpr char const* userMappings = R"sql(
    SELECT format('%s at %s', u, x.srvname) AS name,
        format('CREATE USER MAPPING FOR %s SERVER %I', u, x.srvname) AS statement
    FROM pg_user_mappings AS x,
        LATERAL (SELECT CASE x.umuser WHEN 0 THEN 'PUBLIC' ELSE quote_ident(x.usename) END AS u) AS y)sql";

constexpr char const* publicationSql = R"sql(
    SELECT x.pubname AS name,
        format('CREATE PUBLICATION %I', x.pubname)
        || coalesce(CASE WHEN x.puballtables THEN ' FOR ALL TABLES' ELSE
            (SELECT ' FOR ' || string_agg(w, ', ' ORDER BY k, w)
            FROM (SELECT 1 AS k, format('TABLE ONLY %s', r.prrelid::regclass) || {parts} AS w
                FROM pg_publication_rel AS r WHERE r.prpubid = x.oid {schemas}) AS o) END, '')
        || format(' WITH (publish = %L', concat_ws(', ',
            CASE WHEN x.pubinsert THEN 'insert' END, CASE WHEN x.pubupdate THEN 'update' END,
            CASE WHEN x.pubdelete THEN 'delete' END, CASE WHEN x.pubtruncate THEN 'truncate' END))
        || CASE WHEN {via_root} THEN ', publish_via_partition_root = true' ELSE '' END || ')'
        {comment} AS statement
    FROM pg_publication AS x
    WHERE {is_made})sql";

constexpr char const* publishedParts = R"sql(
    CASE WHEN r.prattrs IS NULL THEN '' ELSE
        (SELECT format(' (%s)', string_agg(quote_ident(a.attname), ', ' ORDER BY u.n))
        FROM unnest(r.prattrs::int2[]) WITH ORDINALITY AS u(number, n)
            JOIN pg_attribute AS a ON a.attrelid = r.prrelid AND a.attnum = u.number) END
    || coalesce(' WHERE (' || pg_get_expr(r.prqual, r.prrelid) || ')', ''))sql";

constexpr char const* publishedSchemas = R"sql(
    UNION ALL SELECT 2, format('TABLES IN SCHEMA %I', n.nspname)
    FROM pg_publication_namespace AS s JOIN pg_namespace AS n ON n.oid = s.pnnspid WHERE s.pnpubid = x.oid)sql";

/// Before version 15, a publication is for whole tables and for everything alone.
std::string publications(bool hasParts, bool hasRoot) {
    return filled(publicationSql, {{"parts", hasParts ? publishedParts : "''"},
                                   {"schemas", hasParts ? publishedSchemas : ""},
                                   {"via_root", hasRoot ? "x.pubviaroot" : "false"},
                                   {"comment", commentStatement("PUBLICATION", "quote_ident(x.pubname)",
                                                                "pg_publication", "x.oid")},
                                   {"is_made", isMade("pg_publication", "x.oid")}});
}

/// Types that the server made beside others, and that have no record: of rows, of arrays and of ranges'
/// ranges.
constexpr char const* typeCommentSql = R"sql(
    SELECT q AS name, format('COMMENT ON TYPE %s IS %L', q, d.description) AS statement
    FROM pg_description AS d JOIN pg_type AS t ON t.oid = d.objoid,
        LATERAL (SELECT format_type(t.oid, NULL) AS q) AS x
    WHERE d.classoid = 'pg_type'::regclass
        AND (t.typtype = 'm'
            OR EXISTS (SELECT 1 FROM pg_type AS e WHERE e.typarray = t.oid)
            OR EXISTS (SELECT 1 FROM pg_class AS c WHERE c.oid = t.typrelid AND c.relkind <> 'c'))
        AND {is_own})sql";

std::string typeComments() {
    return filled(typeCommentSql, {{"is_own", isOwn("pg_type", "t.oid", "t.typnamespace")}});
}

/// These can't be made again: the one needs a connection, of which nothing is read, the other a provider.
constexpr char const* subscriptions = R"sql(
    SELECT s.subname AS name, 'PUBLICATION ' || array_to_string(s.subpublications, ', ') AS statement
    FROM pg_subscription AS s JOIN pg_database AS d ON d.oid = s.subdbid
    WHERE d.datname = current_database())sql";

constexpr char const* securityLabels = R"sql(
    SELECT format('%s on %s %s', provider, objtype, objname) AS name, quote_literal(label) AS statement
    FROM pg_seclabels
    WHERE objtype NOT IN ('role', 'tablespace')
        AND (objtype <> 'database' OR objname = quote_ident(current_database())))sql";

struct ThingRow : Query {
    using Query::Query;
    Text name{*this, "name"};
    Text statement{*this, "statement"};
};

} // namespace

void CatalogReader::readCatalogExtras() {
    std::string const locale = since(170000)   ? "c.colllocale"
                               : since(150000) ? "c.colliculocale"
                                               : "NULL::text";
    addToCatalog({prefix::extension, extensions});
    std::vector<ExtraQuery> queries = {{prefix::collation, collations(locale)},
                                       {prefix::language, languages()},
                                       {prefix::accessMethod, accessMethods()},
                                       {prefix::foreignDataWrapper, foreignDataWrappers()},
                                       {prefix::server, servers()},
                                       {prefix::userMapping, userMappings},
                                       {prefix::cast, casts()},
                                       {prefix::conversion, conversions()},
                                       {prefix::transform, transforms()},
                                       {prefix::eventTrigger, eventTriggers()},
                                       {prefix::publication, publications(since(150000), since(130000))},
                                       {prefix::commentOnType, typeComments()},
                                       {prefix::subscription, subscriptions},
                                       {prefix::securityLabel, securityLabels}};
    for (auto const& more : {textSearchQueries(), operatorQueries()}) {
        queries.insert(queries.end(), more.begin(), more.end());
    }
    Extras& extras = structure.catalog.extras;
    for (ExtraQuery const& query : queries) {
        auto const first = static_cast<std::ptrdiff_t>(extras.size());
        addToCatalog(query);
        std::sort(extras.begin() + first, extras.end(),
                  [](Extra const& a, Extra const& b) { return a.name < b.name; });
    }
}

void CatalogReader::addToCatalog(ExtraQuery const& query) {
    for (ThingRow row(connection, query.sql); row.next();) {
        addExtra(structure.catalog.extras, std::string(query.prefix) + std::string(row.name), row.statement);
    }
}

} // namespace postgres
