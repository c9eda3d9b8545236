#include "postgres/CatalogQueries.h"
#include "postgres/Extras.h"

namespace postgres {
namespace {

constexpr char const* parserSql = R"sql(
    SELECT q AS name,
        format('CREATE TEXT SEARCH PARSER %s (START = %s, GETTOKEN = %s, END = %s, LEXTYPES = %s', q,
            x.prsstart, x.prstoken, x.prsend, x.prslextype)
        || coalesce(', HEADLINE = ' || nullif(x.prsheadline::regproc::text, '-'), '') || ')'
        {comment} AS statement
    FROM pg_ts_parser AS x {qualified_name}
    WHERE {is_made})sql";

std::string parsers() {
    return filled(parserSql,
                  {{"comment", commentStatement("TEXT SEARCH PARSER", "q", "pg_ts_parser", "x.oid")},
                   {"qualified_name", qualifiedName("prs")},
                   {"is_made", isMade("pg_ts_parser", "x.oid")}});
}

constexpr char const* templateSql = R"sql(
    SELECT q AS name,
        format('CREATE TEXT SEARCH TEMPLATE %s (LEXIZE = %s', q, x.tmpllexize)
        || coalesce(', INIT = ' || nullif(x.tmplinit::regproc::text, '-'), '') || ')'
        {comment} AS statement
    FROM pg_ts_template AS x {qualified_name}
    WHERE {is_made})sql";

std::string templates() {
    return filled(templateSql,
                  {{"comment", commentStatement("TEXT SEARCH TEMPLATE", "q", "pg_ts_template", "x.oid")},
                   {"qualified_name", qualifiedName("tmpl")},
                   {"is_made", isMade("pg_ts_template", "x.oid")}});
}

/// The catalogue keeps the options as SQL writes them.
constexpr char const* dictionarySql = R"sql(
    SELECT q AS name,
        format('CREATE TEXT SEARCH DICTIONARY %s (TEMPLATE = %I.%I', q, k.nspname, t.tmplname)
        || coalesce(', ' || x.dictinitoption, '') || ')'
        {comment} AS statement
    FROM pg_ts_dict AS x JOIN pg_ts_template AS t ON t.oid = x.dicttemplate
        JOIN pg_namespace AS k ON k.oid = t.tmplnamespace {qualified_name}
    WHERE {is_made})sql";

std::string dictionaries() {
    return filled(dictionarySql,
                  {{"comment", commentStatement("TEXT SEARCH DICTIONARY", "q", "pg_ts_dict", "x.oid")},
                   {"qualified_name", qualifiedName("dict")},
                   {"is_made", isMade("pg_ts_dict", "x.oid")}});
}

/// A word of each kind goes through its dictionaries in their order.
constexpr char const* configurationSql = R"sql(
    SELECT q AS name,
        format('CREATE TEXT SEARCH CONFIGURATION %s (PARSER = %I.%I)', q, o.nspname, p.prsname)
        || coalesce((SELECT string_agg(
                format(E';\nALTER TEXT SEARCH CONFIGURATION %s ADD MAPPING FOR %I WITH %s', q, w.alias,
                    w.dictionaries), '' ORDER BY w.tokid)
            FROM (SELECT t.tokid, t.alias,
                    string_agg(format('%I.%I', k.nspname, d.dictname), ', ' ORDER BY m.mapseqno) AS dictionaries
                FROM pg_ts_config_map AS m JOIN ts_token_type(x.cfgparser) AS t ON t.tokid = m.maptokentype
                    JOIN pg_ts_dict AS d ON d.oid = m.mapdict
                    JOIN pg_namespace AS k ON k.oid = d.dictnamespace
                WHERE m.mapcfg = x.oid
                GROUP BY t.tokid, t.alias) AS w), '')
        {comment} AS statement
    FROM pg_ts_config AS x JOIN pg_ts_parser AS p ON p.oid = x.cfgparser
        JOIN pg_namespace AS o ON o.oid = p.prsnamespace {qualified_name}
    WHERE {is_made})sql";

std::string configurations() {
    return filled(configurationSql,
                  {{"comment", commentStatement("TEXT SEARCH CONFIGURATION", "q", "pg_ts_config", "x.oid")},
                   {"qualified_name", qualifiedName("cfg")},
                   {"is_made", isMade("pg_ts_config", "x.oid")}});
}

} // namespace

std::vector<ExtraQuery> textSearchQueries() {
    return {{prefix::textSearchParser, parsers()},
            {prefix::textSearchTemplate, templates()},
            {prefix::textSearchDictionary, dictionaries()},
            {prefix::textSearchConfiguration, configurations()}};
}

} // namespace postgres
