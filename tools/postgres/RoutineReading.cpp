#include "postgres/CatalogReader.h"

namespace postgres {
namespace {

using database::Argument;
using database::ArgumentMode;
using database::Routine;

ArgumentMode modeOf(char letter) {
    return letter == 'o'   ? ArgumentMode::OUT
           : letter == 'b' ? ArgumentMode::IN_OUT
           : letter == 'v' ? ArgumentMode::VARIADIC
           : letter == 't' ? ArgumentMode::RESULT_COLUMN
                           : ArgumentMode::IN;
}

/// The server prints the statements of functions and procedures, but not that of an aggregate.
std::string aggregateStatement() {
    return "(SELECT format('CREATE AGGREGATE %I.%I(%s) (%s)', n.nspname, p.proname,"
           " coalesce(nullif(pg_get_function_arguments(p.oid), ''), '*'), concat_ws(', ',"
           " 'SFUNC = ' || g.aggtransfn, 'STYPE = ' || format_type(g.aggtranstype, NULL),"
           " 'SSPACE = ' || nullif(g.aggtransspace, 0), 'FINALFUNC = ' || nullif(g.aggfinalfn::text, '-'),"
           " CASE WHEN g.aggfinalextra THEN 'FINALFUNC_EXTRA' END,"
           " 'FINALFUNC_MODIFY = ' || CASE WHEN g.aggfinalfn <> 0 THEN CASE g.aggfinalmodify WHEN 's' THEN "
           "'SHAREABLE'"
           "   WHEN 'w' THEN 'READ_WRITE' ELSE 'READ_ONLY' END END,"
           " 'COMBINEFUNC = ' || nullif(g.aggcombinefn::text, '-'),"
           " 'SERIALFUNC = ' || nullif(g.aggserialfn::text, '-'),"
           " 'DESERIALFUNC = ' || nullif(g.aggdeserialfn::text, '-'),"
           " 'INITCOND = ' || quote_literal(g.agginitval), 'MSFUNC = ' || nullif(g.aggmtransfn::text, '-'),"
           " 'MINVFUNC = ' || nullif(g.aggminvtransfn::text, '-'),"
           " 'MSTYPE = ' || CASE WHEN g.aggmtranstype <> 0 THEN format_type(g.aggmtranstype, NULL) END,"
           " 'MSSPACE = ' || nullif(g.aggmtransspace, 0), 'MFINALFUNC = ' || nullif(g.aggmfinalfn::text, "
           "'-'),"
           " CASE WHEN g.aggmfinalextra THEN 'MFINALFUNC_EXTRA' END,"
           " 'MFINALFUNC_MODIFY = ' || CASE WHEN g.aggmfinalfn <> 0 THEN CASE g.aggmfinalmodify WHEN 's' "
           "THEN "
           "'SHAREABLE' WHEN 'w' THEN 'READ_WRITE' ELSE 'READ_ONLY' END END,"
           " 'MINITCOND = ' || quote_literal(g.aggminitval),"
           " 'SORTOP = ' || CASE WHEN g.aggsortop <> 0 THEN (SELECT format('OPERATOR(%I.%s)', s.nspname, "
           "o.oprname)"
           "   FROM pg_operator AS o JOIN pg_namespace AS s ON s.oid = o.oprnamespace WHERE o.oid = "
           "g.aggsortop) END,"
           " 'PARALLEL = ' || CASE p.proparallel WHEN 's' THEN 'SAFE' WHEN 'r' THEN 'RESTRICTED' END,"
           " CASE WHEN g.aggkind = 'h' THEN 'HYPOTHETICAL' END))"
           " FROM pg_aggregate AS g, pg_namespace AS n WHERE g.aggfnoid = p.oid AND n.oid = p.pronamespace)";
}

} // namespace

void CatalogReader::readRoutines() {
    Query row(connection,
              "SELECT p.oid, p.proname, p.pronamespace, p.prokind, " + commentOn("pg_proc", "p.oid") +
                  ", CASE WHEN p.prokind = 'a' THEN " + aggregateStatement() +
                  " ELSE pg_get_functiondef(p.oid) END, l.lanname, p.provolatile, p.proisstrict, p.prosecdef,"
                  " p.proretset, " +
                  typeColumns("t.oid", "-1", "t") + ", " +
                  neededExtensions("pg_proc", "p.oid", "'ALTER ROUTINE ' || p.oid::regprocedure") +
                  " FROM pg_proc AS p JOIN pg_language AS l ON l.oid = p.prolang"
                  " LEFT JOIN pg_type AS t ON t.oid = p.prorettype AND p.prokind <> 'p'"
                  " WHERE" +
                  isOwn("pg_proc", "p.oid", "p.pronamespace") +
                  "AND NOT EXISTS (SELECT 1 FROM pg_depend AS i WHERE i.classid = 'pg_proc'::regclass"
                  " AND i.objid = p.oid AND i.deptype = 'i') ORDER BY p.oid");
    while (row.next()) {
        Routine routine;
        char const kind = *row.text(3);
        char const volatility = *row.text(7);
        routine.name = row.text(1);
        routine.schema = schemaOf(row.number(2));
        routine.procedure = kind == 'p';
        routine.comment = row.text(4);
        routine.statement = row.text(5);
        checkUnchanged(!row.isNull(5));
        routine.statement.erase(routine.statement.find_last_not_of(" \n;") + 1);
        addExtra(routine.extras, "kind", kind == 'a' ? "AGGREGATE" : kind == 'w' ? "WINDOW" : "");
        addExtra(routine.extras, "language", kind == 'a' ? "" : row.text(6));
        addExtra(routine.extras, "volatility",
                 kind == 'a' || kind == 'p' || volatility == 'v' ? ""
                 : volatility == 'i'                             ? "IMMUTABLE"
                                                                 : "STABLE");
        addFlag(routine.extras, "strict", row.flag(8));
        addFlag(routine.extras, "security definer", row.flag(9));
        addFlag(routine.extras, "set of", row.flag(10));
        routine.returnType = typeOf(row, 11);
        addExtra(routine.extras, "depends on extension", row.text(17));
        routines.emplace(row.number(0), static_cast<int>(structure.routines.size()));
        structure.routines.push_back(std::move(routine));
    }
}

void CatalogReader::readArguments() {
    Query row(
        connection,
        "SELECT p.oid, a.name, a.mode, pg_get_function_arg_default(p.oid, a.n::int), " +
            typeColumns("t.oid", "-1", "t") +
            " FROM pg_proc AS p CROSS JOIN LATERAL unnest(coalesce(p.proallargtypes, p.proargtypes::oid[]),"
            " p.proargmodes, p.proargnames) WITH ORDINALITY AS a(type, mode, name, n)"
            " JOIN pg_type AS t ON t.oid = a.type WHERE" +
            isOwn("pg_proc", "p.oid", "p.pronamespace") + "ORDER BY p.oid, a.n");
    while (row.next()) {
        auto const routine = routines.find(row.number(0));
        if (routine == routines.end()) {
            continue;
        }
        Argument argument;
        argument.name = row.text(1);
        argument.mode = modeOf(*row.text(2));
        argument.defaultValue = row.text(3);
        argument.type = typeOf(row, 4);
        structure.routines[static_cast<std::size_t>(routine->second)].arguments.push_back(
            std::move(argument));
    }
}

} // namespace postgres
