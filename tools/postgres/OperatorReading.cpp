#include "postgres/CatalogQueries.h"
#include "postgres/Extras.h"

namespace postgres {
namespace {

constexpr char const* operatorSql = R"sql(
    SELECT o.oid::regoperator AS name,
        format('CREATE OPERATOR %I.%s (%s)', n.nspname, o.oprname, concat_ws(', ',
            'FUNCTION = ' || o.oprcode,
            'LEFTARG = ' || CASE WHEN o.oprleft <> 0 THEN format_type(o.oprleft, NULL) END,
            'RIGHTARG = ' || format_type(o.oprright, NULL),
            'COMMUTATOR = OPERATOR(' || (SELECT format('%I.%s)', m.nspname, c.oprname)
                FROM pg_operator AS c JOIN pg_namespace AS m ON m.oid = c.oprnamespace WHERE c.oid = o.oprcom),
            'NEGATOR = OPERATOR(' || (SELECT format('%I.%s)', m.nspname, c.oprname)
                FROM pg_operator AS c JOIN pg_namespace AS m ON m.oid = c.oprnamespace WHERE c.oid = o.oprnegate),
            'RESTRICT = ' || nullif(o.oprrest::text, '-'),
            'JOIN = ' || nullif(o.oprjoin::text, '-'),
            CASE WHEN o.oprcanhash THEN 'HASHES' END,
            CASE WHEN o.oprcanmerge THEN 'MERGES' END)) {comment} AS statement
    FROM pg_operator AS o JOIN pg_namespace AS n ON n.oid = o.oprnamespace
    WHERE o.oprcode <> 0 AND {is_made})sql";

std::string operators() {
    return filled(operatorSql,
                  {{"comment", commentStatement("OPERATOR", "o.oid::regoperator", "pg_operator", "o.oid")},
                   {"is_made", isMade("pg_operator", "o.oid")}});
}

/// The operators and functions of an operator class, or those that a family has besides its classes. `owner`
/// is the catalogue of `x`, which is the one or the other, and `family` an expression.
constexpr char const* memberSql = R"sql((
    SELECT string_agg(w, ', ' ORDER BY k, s, w) FROM (
        SELECT 1 AS k, o.amopstrategy AS s,
            format('OPERATOR %s %s', o.amopstrategy, o.amopopr::regoperator)
            || coalesce((SELECT format(' FOR ORDER BY %I.%I', n.nspname, f.opfname)
                FROM pg_opfamily AS f JOIN pg_namespace AS n ON n.oid = f.opfnamespace
                WHERE f.oid = o.amopsortfamily), '') AS w
        FROM pg_amop AS o JOIN pg_depend AS d ON d.classid = 'pg_amop'::regclass AND d.objid = o.oid
            AND d.refclassid = '{owner}'::regclass AND d.refobjid = x.oid
        WHERE o.amopfamily = {family}
        UNION ALL
        SELECT 2, p.amprocnum,
            format('FUNCTION %s (%s, %s) %s', p.amprocnum, format_type(p.amproclefttype, NULL),
                format_type(p.amprocrighttype, NULL), p.amproc::regprocedure)
        FROM pg_amproc AS p JOIN pg_depend AS d ON d.classid = 'pg_amproc'::regclass AND d.objid = p.oid
            AND d.refclassid = '{owner}'::regclass AND d.refobjid = x.oid
        WHERE p.amprocfamily = {family}) AS m))sql";

std::string members(std::string const& owner, std::string const& family) {
    return filled(memberSql, {{"owner", owner}, {"family", family}});
}

/// The name by which statements call an operator class or a family.
std::string const ofMethod = "format('%s USING %I', q, m.amname)";

constexpr char const* familySql = R"sql(
    SELECT r AS name, 'CREATE OPERATOR FAMILY ' || r {comment} AS statement
    FROM pg_opfamily AS x JOIN pg_am AS m ON m.oid = x.opfmethod {qualified_name}
        CROSS JOIN LATERAL (SELECT {of_method} AS r) AS z
    WHERE {is_made})sql";

std::string families() {
    return filled(familySql, {{"comment", commentStatement("OPERATOR FAMILY", "r", "pg_opfamily", "x.oid")},
                              {"qualified_name", qualifiedName("opf")},
                              {"of_method", ofMethod},
                              {"is_made", isMade("pg_opfamily", "x.oid")}});
}

/// One without any member needs a type to store, which its own type is as good as.
constexpr char const* classSql = R"sql(
    SELECT {of_method} AS name,
        format('CREATE OPERATOR CLASS %s %sFOR TYPE %s USING %I FAMILY %I.%I AS %s', q,
            CASE WHEN x.opcdefault THEN 'DEFAULT ' END, format_type(x.opcintype, NULL), m.amname, h.nspname,
            f.opfname,
            concat_ws(', ', v.list, CASE WHEN x.opckeytype <> 0 OR v.list IS NULL
                THEN 'STORAGE ' || format_type(coalesce(nullif(x.opckeytype, 0), x.opcintype), NULL) END))
        {comment} AS statement
    FROM pg_opclass AS x JOIN pg_am AS m ON m.oid = x.opcmethod
        JOIN pg_opfamily AS f ON f.oid = x.opcfamily JOIN pg_namespace AS h ON h.oid = f.opfnamespace
        {qualified_name}
        CROSS JOIN LATERAL (SELECT {members} AS list) AS v
    WHERE {is_made})sql";

std::string classes() {
    return filled(classSql, {{"of_method", ofMethod},
                             {"comment", commentStatement("OPERATOR CLASS", ofMethod, "pg_opclass", "x.oid")},
                             {"qualified_name", qualifiedName("opc")},
                             {"members", members("pg_opclass", "x.opcfamily")},
                             {"is_made", isMade("pg_opclass", "x.oid")}});
}

constexpr char const* familyMemberSql = R"sql(
    SELECT r AS name, format('ALTER OPERATOR FAMILY %s ADD %s', r, v.list) AS statement
    FROM pg_opfamily AS x JOIN pg_am AS m ON m.oid = x.opfmethod {qualified_name}
        CROSS JOIN LATERAL (SELECT {of_method} AS r) AS z
        CROSS JOIN LATERAL (SELECT {members} AS list) AS v
    WHERE v.list IS NOT NULL AND {is_made})sql";

std::string membersOfFamilies() {
    return filled(familyMemberSql, {{"qualified_name", qualifiedName("opf")},
                                    {"of_method", ofMethod},
                                    {"members", members("pg_opfamily", "x.oid")},
                                    {"is_made", isMade("pg_opfamily", "x.oid")}});
}

} // namespace

std::vector<ExtraQuery> operatorQueries() {
    return {{prefix::operatorItself, operators()},
            {prefix::operatorFamily, families()},
            {prefix::operatorClass, classes()},
            {prefix::membersOfOperatorFamily, membersOfFamilies()}};
}

} // namespace postgres
