#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"

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
constexpr char const* extensions =
    "WITH RECURSIVE needs AS (SELECT oid, 0 AS rank FROM pg_extension UNION SELECT d.objid, n.rank + 1"
    "   FROM needs AS n JOIN pg_depend AS d ON d.refobjid = n.oid AND d.refclassid = 'pg_extension'::regclass"
    "   AND d.classid = 'pg_extension'::regclass)"
    " SELECT 'extension ' || x.extname, format('CREATE EXTENSION IF NOT EXISTS %I SCHEMA %I VERSION %L', "
    "x.extname, n.nspname, x.extversion) || CASE WHEN c IS DISTINCT FROM a.comment"
    "   THEN format(E';\\nCOMMENT ON EXTENSION %I IS %s', x.extname, coalesce(quote_literal(c), 'NULL'))"
    "   ELSE '' END FROM pg_extension AS x JOIN pg_namespace AS n ON n.oid = x.extnamespace"
    " LEFT JOIN pg_available_extensions AS a ON a.name = x.extname,"
    " LATERAL (SELECT obj_description(x.oid, 'pg_extension') AS c) AS d"
    " ORDER BY (SELECT max(rank) FROM needs WHERE needs.oid = x.oid), x.extname";

/// `locale` is the name of the column that holds the locale of other providers than the C library.
std::string collations(std::string const& locale) {
    return "SELECT 'collation ' || q, format('CREATE COLLATION %s (provider = %s, %s%s)', q,"
           " CASE c.collprovider WHEN 'i' THEN 'icu' WHEN 'b' THEN 'builtin' ELSE 'libc' END,"
           " CASE WHEN " +
           locale + " IS NOT NULL THEN 'locale = ' || quote_literal(" + locale +
           ") ELSE format('lc_collate = %L, lc_ctype = %L', c.collcollate, c.collctype) END,"
           " CASE WHEN c.collisdeterministic THEN '' ELSE ', deterministic = false' END)" +
           commentStatement("COLLATION", "q", "pg_collation", "c.oid") +
           " FROM pg_collation AS c JOIN pg_namespace AS n ON n.oid = c.collnamespace,"
           " LATERAL (SELECT format('%I.%I', n.nspname, c.collname) AS q) AS x WHERE " +
           isMade("pg_collation", "c.oid");
}

std::string foreignDataWrappers() {
    return "SELECT 'foreign data wrapper ' || w.fdwname, format('CREATE FOREIGN DATA WRAPPER %I', w.fdwname) "
           "||"
           " coalesce(' HANDLER ' || nullif(w.fdwhandler::regproc::text, '-'), '') ||"
           " coalesce(' VALIDATOR ' || nullif(w.fdwvalidator::regproc::text, '-'), '') || " +
           optionsClause("w.fdwoptions") +
           commentStatement("FOREIGN DATA WRAPPER", "quote_ident(w.fdwname)", "pg_foreign_data_wrapper",
                            "w.oid") +
           " FROM pg_foreign_data_wrapper AS w WHERE " + isMade("pg_foreign_data_wrapper", "w.oid");
}

std::string servers() {
    return "SELECT 'server ' || s.srvname, format('CREATE SERVER %I', s.srvname) ||"
           " coalesce(' TYPE ' || quote_literal(s.srvtype), '') ||"
           " coalesce(' VERSION ' || quote_literal(s.srvversion), '') ||"
           " format(' FOREIGN DATA WRAPPER %I', w.fdwname) || " +
           optionsClause("s.srvoptions") +
           commentStatement("SERVER", "quote_ident(s.srvname)", "pg_foreign_server", "s.oid") +
           " FROM pg_foreign_server AS s JOIN pg_foreign_data_wrapper AS w ON w.oid = s.srvfdw WHERE " +
           isMade("pg_foreign_server", "s.oid");
}

std::string casts() {
    return "SELECT 'cast ' || q, 'CREATE CAST ' || q || CASE c.castmethod WHEN 'i' THEN ' WITH INOUT'"
           " WHEN 'b' THEN ' WITHOUT FUNCTION' ELSE ' WITH FUNCTION ' || c.castfunc::regprocedure END ||"
           " CASE c.castcontext WHEN 'a' THEN ' AS ASSIGNMENT' WHEN 'i' THEN ' AS IMPLICIT' ELSE '' END" +
           commentStatement("CAST", "q", "pg_cast", "c.oid") +
           " FROM pg_cast AS c, LATERAL (SELECT format('(%s AS %s)', format_type(c.castsource, NULL),"
           " format_type(c.casttarget, NULL)) AS q) AS x WHERE " +
           isMade("pg_cast", "c.oid");
}

std::string eventTriggers() {
    return "SELECT 'event trigger ' || e.evtname, format('CREATE EVENT TRIGGER %I ON %s', e.evtname, "
           "e.evtevent) ||"
           " coalesce(' WHEN TAG IN (' || (SELECT string_agg(quote_literal(g), ', ') FROM unnest(e.evttags) "
           "AS g)"
           " || ')', '') || format(' EXECUTE FUNCTION %s()', e.evtfoid::regproc) ||"
           " CASE e.evtenabled WHEN 'O' THEN '' ELSE format(E';\\nALTER EVENT TRIGGER %I %s', e.evtname,"
           " CASE e.evtenabled WHEN 'D' THEN 'DISABLE' WHEN 'R' THEN 'ENABLE REPLICA' ELSE 'ENABLE ALWAYS' "
           "END) END" +
           commentStatement("EVENT TRIGGER", "quote_ident(e.evtname)", "pg_event_trigger", "e.oid") +
           " FROM pg_event_trigger AS e WHERE " + isMade("pg_event_trigger", "e.oid");
}

std::string languages() {
    return "SELECT 'language ' || x.lanname, format('CREATE %sLANGUAGE %I HANDLER %s',"
           " CASE WHEN x.lanpltrusted THEN 'TRUSTED ' END, x.lanname, x.lanplcallfoid::regproc) ||"
           " coalesce(' INLINE ' || nullif(x.laninline::regproc::text, '-'), '') ||"
           " coalesce(' VALIDATOR ' || nullif(x.lanvalidator::regproc::text, '-'), '')" +
           commentStatement("LANGUAGE", "quote_ident(x.lanname)", "pg_language", "x.oid") +
           " FROM pg_language AS x WHERE " + isMade("pg_language", "x.oid");
}

std::string accessMethods() {
    return "SELECT 'access method ' || x.amname, format('CREATE ACCESS METHOD %I TYPE %s HANDLER %s', "
           "x.amname,"
           " CASE x.amtype WHEN 't' THEN 'TABLE' ELSE 'INDEX' END, x.amhandler)" +
           commentStatement("ACCESS METHOD", "quote_ident(x.amname)", "pg_am", "x.oid") +
           " FROM pg_am AS x WHERE " + isMade("pg_am", "x.oid");
}

std::string conversions() {
    return "SELECT 'conversion ' || q, format('CREATE %sCONVERSION %s FOR %L TO %L FROM %s',"
           " CASE WHEN x.condefault THEN 'DEFAULT ' END, q, pg_encoding_to_char(x.conforencoding),"
           " pg_encoding_to_char(x.contoencoding), x.conproc)" +
           commentStatement("CONVERSION", "q", "pg_conversion", "x.oid") + " FROM pg_conversion AS x" +
           qualifiedName("con") + " WHERE " + isMade("pg_conversion", "x.oid");
}

std::string transforms() {
    return "SELECT 'transform ' || q, format('CREATE TRANSFORM %s (%s)', q, concat_ws(', ',"
           " 'FROM SQL WITH FUNCTION ' || CASE WHEN x.trffromsql <> 0 THEN x.trffromsql::regprocedure END,"
           " 'TO SQL WITH FUNCTION ' || CASE WHEN x.trftosql <> 0 THEN x.trftosql::regprocedure END))" +
           commentStatement("TRANSFORM", "q", "pg_transform", "x.oid") +
           " FROM pg_transform AS x JOIN pg_language AS l ON l.oid = x.trflang, LATERAL (SELECT"
           " format('FOR %s LANGUAGE %I', format_type(x.trftype, NULL), l.lanname) AS q) AS z WHERE " +
           isMade("pg_transform", "x.oid");
}

/// Whose they are and no more: their options are names and passwords.
constexpr char const* userMappings =
    "SELECT format('user mapping %s at %s', u, x.srvname), format('CREATE USER MAPPING FOR %s SERVER %I', u,"
    " x.srvname) FROM pg_user_mappings AS x, LATERAL (SELECT CASE x.umuser WHEN 0 THEN 'PUBLIC'"
    " ELSE quote_ident(x.usename) END AS u) AS y";

/// What a publication is for, before version 15 whole tables and everything alone.
std::string publicationObjects(bool hasParts) {
    std::string const parts =
        " || CASE WHEN r.prattrs IS NULL THEN '' ELSE (SELECT format(' (%s)', "
        "string_agg(quote_ident(a.attname),"
        " ', ' ORDER BY u.n)) FROM unnest(r.prattrs::int2[]) WITH ORDINALITY AS u(number, n)"
        " JOIN pg_attribute AS a ON a.attrelid = r.prrelid AND a.attnum = u.number) END"
        " || coalesce(' WHERE (' || pg_get_expr(r.prqual, r.prrelid) || ')', '')";
    std::string const schemas =
        " UNION ALL SELECT 2, format('TABLES IN SCHEMA %I', n.nspname) FROM pg_publication_namespace AS s"
        " JOIN pg_namespace AS n ON n.oid = s.pnnspid WHERE s.pnpubid = x.oid";
    return "CASE WHEN x.puballtables THEN ' FOR ALL TABLES' ELSE (SELECT ' FOR ' || string_agg(w, ', ' ORDER "
           "BY"
           " k, w) FROM (SELECT 1 AS k, format('TABLE ONLY %s', r.prrelid::regclass)" +
           (hasParts ? parts : "") + " AS w FROM pg_publication_rel AS r WHERE r.prpubid = x.oid" +
           (hasParts ? schemas : "") + ") AS o) END";
}

std::string publications(bool hasParts, bool hasRoot) {
    return "SELECT 'publication ' || x.pubname, format('CREATE PUBLICATION %I', x.pubname) || coalesce(" +
           publicationObjects(hasParts) +
           ", '') || format(' WITH (publish = %L', concat_ws(', ', CASE WHEN x.pubinsert THEN 'insert' END,"
           " CASE WHEN x.pubupdate THEN 'update' END, CASE WHEN x.pubdelete THEN 'delete' END,"
           " CASE WHEN x.pubtruncate THEN 'truncate' END))" +
           (hasRoot ? " || CASE WHEN x.pubviaroot THEN ', publish_via_partition_root = true' ELSE '' END"
                    : "") +
           " || ')'" + commentStatement("PUBLICATION", "quote_ident(x.pubname)", "pg_publication", "x.oid") +
           " FROM pg_publication AS x WHERE " + isMade("pg_publication", "x.oid");
}

/// Types that the server made beside others, and that have no record: of rows, of arrays and of ranges'
/// ranges.
std::string typeComments() {
    return "SELECT 'comment on type ' || q, format('COMMENT ON TYPE %s IS %L', q, d.description)"
           " FROM pg_description AS d JOIN pg_type AS t ON t.oid = d.objoid,"
           " LATERAL (SELECT format_type(t.oid, NULL) AS q) AS x WHERE d.classoid = 'pg_type'::regclass"
           " AND (t.typtype = 'm' OR EXISTS (SELECT 1 FROM pg_type AS e WHERE e.typarray = t.oid) OR EXISTS"
           " (SELECT 1 FROM pg_class AS c WHERE c.oid = t.typrelid AND c.relkind <> 'c')) AND" +
           isOwn("pg_type", "t.oid", "t.typnamespace");
}

/// These can't be made again: the one needs a connection, of which nothing is read, the other a provider.
constexpr char const* subscriptions =
    "SELECT 'subscription ' || s.subname, 'PUBLICATION ' || array_to_string(s.subpublications, ', ')"
    " FROM pg_subscription AS s JOIN pg_database AS d ON d.oid = s.subdbid WHERE d.datname = "
    "current_database()";
constexpr char const* securityLabels =
    "SELECT format('security label of %s on %s %s', provider, objtype, objname), quote_literal(label)"
    " FROM pg_seclabels WHERE objtype NOT IN ('role', 'tablespace')"
    " AND (objtype <> 'database' OR objname = quote_ident(current_database()))";

} // namespace

std::string isMade(std::string const& catalogue, std::string const& oid) {
    return oid + " >= 16384 AND NOT EXISTS (SELECT 1 FROM pg_depend AS member WHERE member.classid = '" +
           catalogue + "'::regclass AND member.objid = " + oid + " AND member.deptype IN ('e', 'i'))";
}

std::string commentStatement(std::string const& kind, std::string const& name, std::string const& catalogue,
                             std::string const& oid) {
    return " || coalesce(E';\\nCOMMENT ON " + kind + " ' || " + name + " || ' IS ' || quote_literal(" +
           commentOn(catalogue, oid) + "), '')";
}

std::string qualifiedName(std::string const& prefix) {
    return " JOIN pg_namespace AS n ON n.oid = x." + prefix +
           "namespace CROSS JOIN LATERAL (SELECT format('%I.%I', n.nspname, x." + prefix + "name) AS q) AS y";
}

void CatalogReader::readCatalogExtras() {
    std::string const locale = since(170000)   ? "c.colllocale"
                               : since(150000) ? "c.colliculocale"
                                               : "NULL::text";
    for (Query row(connection, extensions); row.next();) {
        addExtra(structure.catalog.extras, row.text(0), row.text(1));
    }
    std::vector<std::string> queries = {collations(locale),
                                        languages(),
                                        accessMethods(),
                                        foreignDataWrappers(),
                                        servers(),
                                        userMappings,
                                        casts(),
                                        conversions(),
                                        transforms(),
                                        eventTriggers(),
                                        publications(since(150000), since(130000)),
                                        typeComments(),
                                        subscriptions,
                                        securityLabels};
    for (auto const& more : {textSearchQueries(), operatorQueries()}) {
        queries.insert(queries.end(), more.begin(), more.end());
    }
    for (std::string const& sql : queries) {
        Extras& extras = structure.catalog.extras;
        auto const first = static_cast<std::ptrdiff_t>(extras.size());
        for (Query row(connection, sql); row.next();) {
            addExtra(extras, row.text(0), row.text(1));
        }
        std::sort(extras.begin() + first, extras.end(),
                  [](Extra const& a, Extra const& b) { return a.name < b.name; });
    }
}

} // namespace postgres
