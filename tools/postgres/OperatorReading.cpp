#include "postgres/CatalogQueries.h"

namespace postgres {
namespace {

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
           isMade("pg_operator", "o.oid");
}

/// The operators and functions of an operator class, or those that a family has besides its classes. `owner`
/// is the catalogue of `x`, which is the one or the other, and `family` an expression.
std::string members(std::string const& owner, std::string const& family) {
    std::string const ofOwner = ".oid AND d.refclassid = '" + owner + "'::regclass AND d.refobjid = x.oid";
    return "(SELECT string_agg(w, ', ' ORDER BY k, s, w) FROM (SELECT 1 AS k, o.amopstrategy AS s,"
           " format('OPERATOR %s %s', o.amopstrategy, o.amopopr::regoperator) || coalesce((SELECT"
           "   format(' FOR ORDER BY %I.%I', n.nspname, f.opfname) FROM pg_opfamily AS f JOIN pg_namespace "
           "AS n"
           "   ON n.oid = f.opfnamespace WHERE f.oid = o.amopsortfamily), '') AS w"
           " FROM pg_amop AS o JOIN pg_depend AS d ON d.classid = 'pg_amop'::regclass AND d.objid = o" +
           ofOwner + " WHERE o.amopfamily = " + family +
           " UNION ALL SELECT 2, p.amprocnum, format('FUNCTION %s (%s, %s) %s', p.amprocnum,"
           " format_type(p.amproclefttype, NULL), format_type(p.amprocrighttype, NULL), "
           "p.amproc::regprocedure)"
           " FROM pg_amproc AS p JOIN pg_depend AS d ON d.classid = 'pg_amproc'::regclass AND d.objid = p" +
           ofOwner + " WHERE p.amprocfamily = " + family + ") AS m)";
}

/// The name by which statements call an operator class or a family.
std::string const ofMethod = "format('%s USING %I', q, m.amname)";

std::string families() {
    return "SELECT 'operator family ' || r, 'CREATE OPERATOR FAMILY ' || r" +
           commentStatement("OPERATOR FAMILY", "r", "pg_opfamily", "x.oid") +
           " FROM pg_opfamily AS x JOIN pg_am AS m ON m.oid = x.opfmethod" + qualifiedName("opf") +
           " CROSS JOIN LATERAL (SELECT " + ofMethod + " AS r) AS z WHERE " + isMade("pg_opfamily", "x.oid");
}

/// One without any member needs a type to store, which its own type is as good as.
std::string classes() {
    return "SELECT 'operator class ' || " + ofMethod +
           ", format('CREATE OPERATOR CLASS %s %sFOR TYPE %s USING %I FAMILY %I.%I AS %s', q,"
           " CASE WHEN x.opcdefault THEN 'DEFAULT ' END, format_type(x.opcintype, NULL), m.amname, h.nspname,"
           " f.opfname, concat_ws(', ', v.list, CASE WHEN x.opckeytype <> 0 OR v.list IS NULL THEN 'STORAGE "
           "' ||"
           " format_type(coalesce(nullif(x.opckeytype, 0), x.opcintype), NULL) END))" +
           commentStatement("OPERATOR CLASS", ofMethod, "pg_opclass", "x.oid") +
           " FROM pg_opclass AS x JOIN pg_am AS m ON m.oid = x.opcmethod"
           " JOIN pg_opfamily AS f ON f.oid = x.opcfamily JOIN pg_namespace AS h ON h.oid = f.opfnamespace" +
           qualifiedName("opc") + " CROSS JOIN LATERAL (SELECT " + members("pg_opclass", "x.opcfamily") +
           " AS list) AS v WHERE " + isMade("pg_opclass", "x.oid");
}

std::string membersOfFamilies() {
    return "SELECT 'members of operator family ' || r, format('ALTER OPERATOR FAMILY %s ADD %s', r, v.list)"
           " FROM pg_opfamily AS x JOIN pg_am AS m ON m.oid = x.opfmethod" +
           qualifiedName("opf") + " CROSS JOIN LATERAL (SELECT " + ofMethod +
           " AS r) AS z CROSS JOIN LATERAL (SELECT " + members("pg_opfamily", "x.oid") +
           " AS list) AS v WHERE v.list IS NOT NULL AND " + isMade("pg_opfamily", "x.oid");
}

} // namespace

std::vector<std::string> operatorQueries() {
    return {operators(), families(), classes(), membersOfFamilies()};
}

} // namespace postgres
