#include "postgres/CatalogQueries.h"

namespace postgres {
namespace {

/// An option of a statement whose value is a function, nothing without one.
std::string functionOption(std::string const& option, std::string const& column) {
    return "', " + option + " = ' || nullif(x." + column + "::regproc::text, '-')";
}

std::string parsers() {
    return "SELECT 'text search parser ' || q, format('CREATE TEXT SEARCH PARSER %s (START = %s, GETTOKEN = "
           "%s,"
           " END = %s, LEXTYPES = %s', q, x.prsstart, x.prstoken, x.prsend, x.prslextype) || coalesce(" +
           functionOption("HEADLINE", "prsheadline") + ", '') || ')'" +
           commentStatement("TEXT SEARCH PARSER", "q", "pg_ts_parser", "x.oid") + " FROM pg_ts_parser AS x" +
           qualifiedName("prs") + " WHERE " + isMade("pg_ts_parser", "x.oid");
}

std::string templates() {
    return "SELECT 'text search template ' || q, format('CREATE TEXT SEARCH TEMPLATE %s (LEXIZE = %s', q,"
           " x.tmpllexize) || coalesce(" +
           functionOption("INIT", "tmplinit") + ", '') || ')'" +
           commentStatement("TEXT SEARCH TEMPLATE", "q", "pg_ts_template", "x.oid") +
           " FROM pg_ts_template AS x" + qualifiedName("tmpl") + " WHERE " +
           isMade("pg_ts_template", "x.oid");
}

/// The catalogue keeps the options as SQL writes them.
std::string dictionaries() {
    return "SELECT 'text search dictionary ' || q, format('CREATE TEXT SEARCH DICTIONARY %s (TEMPLATE = "
           "%I.%I',"
           " q, k.nspname, t.tmplname) || coalesce(', ' || x.dictinitoption, '') || ')'" +
           commentStatement("TEXT SEARCH DICTIONARY", "q", "pg_ts_dict", "x.oid") +
           " FROM pg_ts_dict AS x JOIN pg_ts_template AS t ON t.oid = x.dicttemplate"
           " JOIN pg_namespace AS k ON k.oid = t.tmplnamespace" +
           qualifiedName("dict") + " WHERE " + isMade("pg_ts_dict", "x.oid");
}

/// A word of each kind goes through its dictionaries in their order.
std::string configurations() {
    std::string const mappings =
        "(SELECT string_agg(format(E';\\nALTER TEXT SEARCH CONFIGURATION %s ADD MAPPING FOR %I WITH %s', q,"
        " w.alias, w.dictionaries), '' ORDER BY w.tokid) FROM (SELECT t.tokid, t.alias,"
        " string_agg(format('%I.%I', k.nspname, d.dictname), ', ' ORDER BY m.mapseqno) AS dictionaries"
        " FROM pg_ts_config_map AS m JOIN ts_token_type(x.cfgparser) AS t ON t.tokid = m.maptokentype"
        " JOIN pg_ts_dict AS d ON d.oid = m.mapdict JOIN pg_namespace AS k ON k.oid = d.dictnamespace"
        " WHERE m.mapcfg = x.oid GROUP BY t.tokid, t.alias) AS w)";
    return "SELECT 'text search configuration ' || q, format('CREATE TEXT SEARCH CONFIGURATION %s"
           " (PARSER = %I.%I)', q, o.nspname, p.prsname) || coalesce(" +
           mappings + ", '')" + commentStatement("TEXT SEARCH CONFIGURATION", "q", "pg_ts_config", "x.oid") +
           " FROM pg_ts_config AS x JOIN pg_ts_parser AS p ON p.oid = x.cfgparser"
           " JOIN pg_namespace AS o ON o.oid = p.prsnamespace" +
           qualifiedName("cfg") + " WHERE " + isMade("pg_ts_config", "x.oid");
}

} // namespace

std::vector<std::string> textSearchQueries() {
    return {parsers(), templates(), dictionaries(), configurations()};
}

} // namespace postgres
