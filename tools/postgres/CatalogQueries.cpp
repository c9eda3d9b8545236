#include "postgres/CatalogQueries.h"

#include <cstddef>
#include <stdexcept>

namespace postgres {
namespace {

using Fillings = std::initializer_list<std::pair<std::string_view, std::string>>;

std::string const& fillingOf(Fillings fillings, std::string_view name) {
    for (auto const& filling : fillings) {
        if (filling.first == name) {
            return filling.second;
        }
    }
    throw std::logic_error("no filling for {" + std::string(name) + "}");
}

} // namespace

std::string filled(std::string_view text, Fillings fillings) {
    for (auto const& filling : fillings) {
        if (text.find("{" + std::string(filling.first) + "}") == std::string_view::npos) {
            throw std::logic_error("no place for {" + std::string(filling.first) + "}");
        }
    }
    std::string result;
    for (std::size_t open = text.find('{'); open != std::string_view::npos; open = text.find('{')) {
        std::size_t const close = text.find('}', open);
        result.append(text.substr(0, open));
        result.append(fillingOf(fillings, text.substr(open + 1, close - open - 1)));
        text.remove_prefix(close == std::string_view::npos ? text.size() : close + 1);
    }
    return result.append(text);
}

std::string typeColumns(std::string const& oid, std::string const& modifier, std::string const& type) {
    return filled(R"sql({oid} AS type_oid, {modifier} AS type_modifier,
        format_type({oid}, {modifier}) AS type_declaration,
        CASE WHEN {type}.typnamespace = 'pg_catalog'::regnamespace THEN {type}.typname END AS type_system_name,
        {type}.typcategory AS type_category)sql",
                  {{"oid", oid}, {"modifier", modifier}, {"type", type}});
}

std::string isOwn(std::string const& catalogue, std::string const& oid, std::string const& namespaceOid) {
    return filled(R"sql(EXISTS (SELECT 1 FROM pg_namespace AS own
            WHERE own.oid = {namespace} AND own.nspname !~ '^pg_' AND own.nspname <> 'information_schema')
        AND NOT EXISTS (SELECT 1 FROM pg_depend AS member
            WHERE member.classid = '{catalogue}'::regclass AND member.objid = {oid} AND member.deptype = 'e'))sql",
                  {{"namespace", namespaceOid}, {"catalogue", catalogue}, {"oid", oid}});
}

std::string isMade(std::string const& catalogue, std::string const& oid) {
    return filled(R"sql({oid} >= 16384 AND NOT EXISTS (SELECT 1 FROM pg_depend AS member
            WHERE member.classid = '{catalogue}'::regclass AND member.objid = {oid}
            AND member.deptype IN ('e', 'i')))sql",
                  {{"catalogue", catalogue}, {"oid", oid}});
}

std::string optionsText(std::string const& options) {
    return filled(R"sql((SELECT string_agg(quote_ident(option_name) || '=' ||
            CASE WHEN option_value ~ '^[a-z0-9_.-]+$' THEN option_value ELSE quote_literal(option_value) END, ', ')
        FROM pg_options_to_table({options}) WHERE option_name <> 'pg_attver'))sql",
                  {{"options", options}});
}

std::string foreignOptions(std::string const& options) {
    return filled(
        R"sql((SELECT string_agg(quote_ident(option_name) || ' ' || quote_literal(option_value), ', ')
        FROM pg_options_to_table({options})
        WHERE option_name !~* 'pass|pwd|secret|token|key|credential'
            AND option_value !~* '(pass|pwd|secret|token|key|credential)[a-z_]*\s*[=:]'
            AND option_value !~ '://[^/?]*:[^/?]*@'))sql",
        {{"options", options}});
}

std::string commentOn(std::string const& catalogue, std::string const& oid, std::string const& part) {
    return filled(R"sql((SELECT description FROM pg_description
        WHERE classoid = '{catalogue}'::regclass AND objoid = {oid} AND objsubid = {part}))sql",
                  {{"catalogue", catalogue}, {"oid", oid}, {"part", part}});
}

std::string commentBehind(std::string const& thing, std::string const& comment) {
    return filled(
        R"sql( || coalesce(E';\nCOMMENT ON ' || {thing} || ' IS ' || quote_literal({comment}), ''))sql",
        {{"thing", thing}, {"comment", comment}});
}

std::string commentStatement(std::string const& kind, std::string const& name, std::string const& catalogue,
                             std::string const& oid) {
    return commentBehind("'" + kind + " ' || " + name, commentOn(catalogue, oid));
}

std::string neededExtensions(std::string const& catalogue, std::string const& oid,
                             std::string const& alteration) {
    return filled(R"sql((SELECT string_agg({alteration} || ' DEPENDS ON EXTENSION ' || quote_ident(x.extname),
            E';\n' ORDER BY x.extname)
        FROM pg_depend AS d JOIN pg_extension AS x ON x.oid = d.refobjid
        WHERE d.refclassid = 'pg_extension'::regclass AND d.deptype = 'x' AND d.objsubid = 0
            AND d.classid = '{catalogue}'::regclass AND d.objid = {oid}))sql",
                  {{"alteration", alteration}, {"catalogue", catalogue}, {"oid", oid}});
}

std::string otherCollation(std::string const& collation, std::string const& ofType) {
    return filled(R"sql(CASE WHEN {collation} <> {type} THEN
            (SELECT quote_ident(k.nspname) || '.' || quote_ident(l.collname)
            FROM pg_collation AS l JOIN pg_namespace AS k ON k.oid = l.collnamespace
            WHERE l.oid = {collation}) END)sql",
                  {{"collation", collation}, {"type", ofType}});
}

std::string columnNames(std::string const& table, std::string const& numbers) {
    return filled(R"sql((SELECT string_agg(quote_ident(a.attname), ', ' ORDER BY u.n)
            FROM unnest({numbers}) WITH ORDINALITY AS u(number, n)
                JOIN pg_attribute AS a ON a.attrelid = {table} AND a.attnum = u.number))sql",
                  {{"table", table}, {"numbers", numbers}});
}

std::string includedColumns() {
    return columnNames("i.indrelid", "(i.indkey::int2[])[i.indnkeyatts:i.indnatts - 1]");
}

std::string partitionedIndex(std::string const& oid) {
    return "(SELECT h.inhparent::regclass FROM pg_inherits AS h WHERE h.inhrelid = " + oid + ")";
}

std::string qualifiedName(std::string const& prefix) {
    return filled(R"sql(JOIN pg_namespace AS n ON n.oid = x.{prefix}namespace
        CROSS JOIN LATERAL (SELECT format('%I.%I', n.nspname, x.{prefix}name) AS q) AS y)sql",
                  {{"prefix", prefix}});
}

} // namespace postgres
