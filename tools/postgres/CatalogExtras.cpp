#include "postgres/CatalogReader.h"

namespace postgres {
namespace {

/// The condition that an object is none of the system's and belongs to no extension.
std::string isMade(std::string const& catalogue, std::string const& oid) {
    return oid + " >= 16384 AND NOT EXISTS (SELECT 1 FROM pg_depend AS member WHERE member.classid = '" +
           catalogue + "'::regclass AND member.objid = " + oid + " AND member.deptype IN ('e', 'i'))";
}

/// A further statement that comments on what the first one made.
std::string commentStatement(std::string const& kind, std::string const& name, std::string const& catalogue,
                             std::string const& oid) {
    return " || coalesce(E';\\nCOMMENT ON " + kind + " ' || " + name + " || ' IS ' || quote_literal(" +
           commentOn(catalogue, oid) + "), '')";
}

std::string foreignOptions(std::string const& options) {
    return "(SELECT ' OPTIONS (' || string_agg(quote_ident(option_name) || ' ' || "
           "quote_literal(option_value), ', ')"
           " || ')' FROM pg_options_to_table(" +
           options + ") WHERE option_name !~* 'pass|pwd|secret|token|key')";
}

constexpr char const* extensions =
    "SELECT 'extension ' || x.extname, format('CREATE EXTENSION IF NOT EXISTS %I SCHEMA %I VERSION %L', "
    "x.extname,"
    " n.nspname, x.extversion) FROM pg_extension AS x JOIN pg_namespace AS n ON n.oid = x.extnamespace"
    " ORDER BY x.oid";

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
           isMade("pg_collation", "c.oid") + " ORDER BY c.oid";
}

std::string foreignDataWrappers() {
    return "SELECT 'foreign data wrapper ' || w.fdwname, format('CREATE FOREIGN DATA WRAPPER %I', w.fdwname) "
           "||"
           " coalesce(' HANDLER ' || nullif(w.fdwhandler::regproc::text, '-'), '') ||"
           " coalesce(' VALIDATOR ' || nullif(w.fdwvalidator::regproc::text, '-'), '') || coalesce(" +
           foreignOptions("w.fdwoptions") + ", '')" +
           commentStatement("FOREIGN DATA WRAPPER", "quote_ident(w.fdwname)", "pg_foreign_data_wrapper",
                            "w.oid") +
           " FROM pg_foreign_data_wrapper AS w WHERE " + isMade("pg_foreign_data_wrapper", "w.oid") +
           " ORDER BY w.oid";
}

std::string servers() {
    return "SELECT 'server ' || s.srvname, format('CREATE SERVER %I', s.srvname) ||"
           " coalesce(' TYPE ' || quote_literal(s.srvtype), '') ||"
           " coalesce(' VERSION ' || quote_literal(s.srvversion), '') ||"
           " format(' FOREIGN DATA WRAPPER %I', w.fdwname) || coalesce(" +
           foreignOptions("s.srvoptions") + ", '')" +
           commentStatement("SERVER", "quote_ident(s.srvname)", "pg_foreign_server", "s.oid") +
           " FROM pg_foreign_server AS s JOIN pg_foreign_data_wrapper AS w ON w.oid = s.srvfdw WHERE " +
           isMade("pg_foreign_server", "s.oid") + " ORDER BY s.oid";
}

std::string casts() {
    return "SELECT 'cast ' || q, 'CREATE CAST ' || q || CASE c.castmethod WHEN 'i' THEN ' WITH INOUT'"
           " WHEN 'b' THEN ' WITHOUT FUNCTION' ELSE ' WITH FUNCTION ' || c.castfunc::regprocedure END ||"
           " CASE c.castcontext WHEN 'a' THEN ' AS ASSIGNMENT' WHEN 'i' THEN ' AS IMPLICIT' ELSE '' END" +
           commentStatement("CAST", "q", "pg_cast", "c.oid") +
           " FROM pg_cast AS c, LATERAL (SELECT format('(%s AS %s)', format_type(c.castsource, NULL),"
           " format_type(c.casttarget, NULL)) AS q) AS x WHERE " +
           isMade("pg_cast", "c.oid") + " ORDER BY c.oid";
}

std::string operators() {
    return "SELECT 'operator ' || o.oid::regoperator, format('CREATE OPERATOR %I.%s (%s)', n.nspname, "
           "o.oprname,"
           " concat_ws(', ', 'FUNCTION = ' || o.oprcode,"
           " 'LEFTARG = ' || CASE WHEN o.oprleft <> 0 THEN format_type(o.oprleft, NULL) END,"
           " 'RIGHTARG = ' || format_type(o.oprright, NULL),"
           " 'COMMUTATOR = OPERATOR(' || (SELECT format('%I.%s)', m.nspname, c.oprname) FROM pg_operator AS c"
           "   JOIN pg_namespace AS m ON m.oid = c.oprnamespace WHERE c.oid = o.oprcom),"
           " 'NEGATOR = OPERATOR(' || (SELECT format('%I.%s)', m.nspname, c.oprname) FROM pg_operator AS c"
           "   JOIN pg_namespace AS m ON m.oid = c.oprnamespace WHERE c.oid = o.oprnegate),"
           " 'RESTRICT = ' || nullif(o.oprrest::text, '-'), 'JOIN = ' || nullif(o.oprjoin::text, '-'),"
           " CASE WHEN o.oprcanhash THEN 'HASHES' END, CASE WHEN o.oprcanmerge THEN 'MERGES' END))" +
           commentStatement("OPERATOR", "o.oid::regoperator", "pg_operator", "o.oid") +
           " FROM pg_operator AS o JOIN pg_namespace AS n ON n.oid = o.oprnamespace WHERE o.oprcode <> 0 "
           "AND " +
           isMade("pg_operator", "o.oid") + " ORDER BY o.oid";
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
           " FROM pg_event_trigger AS e WHERE " + isMade("pg_event_trigger", "e.oid") + " ORDER BY e.oid";
}

/// Things that are named and no more: all of a kind in one extra.
std::string named(std::string const& kind, std::string const& catalogue, std::string const& name) {
    return "SELECT '" + kind + "', string_agg(" + name + ", ', ' ORDER BY x.oid) FROM " + catalogue +
           " AS x WHERE " + isMade(catalogue, "x.oid");
}

std::string namedInSchema(std::string const& kind, std::string const& catalogue, std::string const& prefix) {
    return named(kind, catalogue,
                 "(SELECT quote_ident(n.nspname) FROM pg_namespace AS n WHERE n.oid = x." + prefix +
                     "namespace) || '.' || quote_ident(x." + prefix + "name)");
}

} // namespace

void CatalogReader::readCatalogExtras() {
    std::string const locale = since(170000)   ? "c.colllocale"
                               : since(150000) ? "c.colliculocale"
                                               : "NULL::text";
    std::string const queries[] = {
        extensions,
        collations(locale),
        foreignDataWrappers(),
        servers(),
        casts(),
        eventTriggers(),
        operators(),
        namedInSchema("operator classes", "pg_opclass", "opc"),
        namedInSchema("operator families", "pg_opfamily", "opf"),
        namedInSchema("conversions", "pg_conversion", "con"),
        namedInSchema("text search parsers", "pg_ts_parser", "prs"),
        namedInSchema("text search templates", "pg_ts_template", "tmpl"),
        namedInSchema("text search dictionaries", "pg_ts_dict", "dict"),
        namedInSchema("text search configurations", "pg_ts_config", "cfg"),
        named("languages", "pg_language", "quote_ident(x.lanname)"),
        named("access methods", "pg_am", "quote_ident(x.amname)"),
        named("publications", "pg_publication", "quote_ident(x.pubname)"),
        named("transforms", "pg_transform",
              "(SELECT format('%s in %I', format_type(x.trftype, NULL), l.lanname) FROM pg_language AS l"
              " WHERE l.oid = x.trflang)"),
    };
    for (std::string const& sql : queries) {
        Query row(connection, sql);
        while (row.next()) {
            addExtra(structure.catalog.extras, row.text(0), row.text(1));
        }
    }
}

} // namespace postgres
