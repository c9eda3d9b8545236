#include "database/Enumerations.h"
#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

namespace postgres {
namespace {

using database::Argument;
using database::ArgumentMode;
using database::Routine;

constexpr database::TwoWay<ArgumentMode, char, 5> modeLetters{{{ArgumentMode::IN, 'i'},
                                                               {ArgumentMode::OUT, 'o'},
                                                               {ArgumentMode::IN_OUT, 'b'},
                                                               {ArgumentMode::VARIADIC, 'v'},
                                                               {ArgumentMode::RESULT_COLUMN, 't'}}};

/// The server prints the statements of functions and procedures, but not that of an aggregate.
constexpr char const* aggregateStatement = R"sql((
    SELECT format('CREATE AGGREGATE %I.%I(%s) (%s)', n.nspname, p.proname,
        coalesce(nullif(pg_get_function_arguments(p.oid), ''), '*'),
        concat_ws(', ',
            'SFUNC = ' || g.aggtransfn,
            'STYPE = ' || format_type(g.aggtranstype, NULL),
            'SSPACE = ' || nullif(g.aggtransspace, 0),
            'FINALFUNC = ' || nullif(g.aggfinalfn::text, '-'),
            CASE WHEN g.aggfinalextra THEN 'FINALFUNC_EXTRA' END,
            'FINALFUNC_MODIFY = ' || CASE WHEN g.aggfinalfn <> 0 THEN
                CASE g.aggfinalmodify WHEN 's' THEN 'SHAREABLE' WHEN 'w' THEN 'READ_WRITE' ELSE 'READ_ONLY' END END,
            'COMBINEFUNC = ' || nullif(g.aggcombinefn::text, '-'),
            'SERIALFUNC = ' || nullif(g.aggserialfn::text, '-'),
            'DESERIALFUNC = ' || nullif(g.aggdeserialfn::text, '-'),
            'INITCOND = ' || quote_literal(g.agginitval),
            'MSFUNC = ' || nullif(g.aggmtransfn::text, '-'),
            'MINVFUNC = ' || nullif(g.aggminvtransfn::text, '-'),
            'MSTYPE = ' || CASE WHEN g.aggmtranstype <> 0 THEN format_type(g.aggmtranstype, NULL) END,
            'MSSPACE = ' || nullif(g.aggmtransspace, 0),
            'MFINALFUNC = ' || nullif(g.aggmfinalfn::text, '-'),
            CASE WHEN g.aggmfinalextra THEN 'MFINALFUNC_EXTRA' END,
            'MFINALFUNC_MODIFY = ' || CASE WHEN g.aggmfinalfn <> 0 THEN
                CASE g.aggmfinalmodify WHEN 's' THEN 'SHAREABLE' WHEN 'w' THEN 'READ_WRITE' ELSE 'READ_ONLY' END END,
            'MINITCOND = ' || quote_literal(g.aggminitval),
            'SORTOP = ' || CASE WHEN g.aggsortop <> 0 THEN
                (SELECT format('OPERATOR(%I.%s)', s.nspname, o.oprname)
                    FROM pg_operator AS o JOIN pg_namespace AS s ON s.oid = o.oprnamespace
                    WHERE o.oid = g.aggsortop) END,
            'PARALLEL = ' || CASE p.proparallel WHEN 's' THEN 'SAFE' WHEN 'r' THEN 'RESTRICTED' END,
            CASE WHEN g.aggkind = 'h' THEN 'HYPOTHETICAL' END))
    FROM pg_aggregate AS g, pg_namespace AS n
    WHERE g.aggfnoid = p.oid AND n.oid = p.pronamespace))sql";

constexpr char const* routineSql = R"sql(
    SELECT p.oid AS oid, p.proname AS name, p.pronamespace AS schema, p.prokind AS kind, {comment} AS comment,
        CASE WHEN p.prokind = 'a' THEN {aggregate} ELSE pg_get_functiondef(p.oid) END AS statement,
        l.lanname AS language, p.provolatile AS volatility, p.proisstrict AS strict,
        p.prosecdef AS security_definer, p.proretset AS set_of, {type_columns},
        {needed_extensions} AS needed_extensions
    FROM pg_proc AS p JOIN pg_language AS l ON l.oid = p.prolang
        LEFT JOIN pg_type AS t ON t.oid = p.prorettype AND p.prokind <> 'p'
    WHERE {is_own}
        AND NOT EXISTS (SELECT 1 FROM pg_depend AS i
            WHERE i.classid = 'pg_proc'::regclass AND i.objid = p.oid AND i.deptype = 'i')
    ORDER BY p.oid)sql";

std::string routineQuery() {
    return filled(routineSql,
                  {{"comment", commentOn("pg_proc", "p.oid")},
                   {"aggregate", aggregateStatement},
                   {"type_columns", typeColumns("t.oid", "-1", "t")},
                   {"needed_extensions",
                    neededExtensions("pg_proc", "p.oid", "'ALTER ROUTINE ' || p.oid::regprocedure")},
                   {"is_own", isOwn("pg_proc", "p.oid", "p.pronamespace")}});
}

struct RoutineRow : Query {
    using Query::Query;
    Number oid{*this, "oid"};
    Text name{*this, "name"};
    Number schema{*this, "schema"};
    Letter kind{*this, "kind"};
    Text comment{*this, "comment"};
    Text statement{*this, "statement"};
    Text language{*this, "language"};
    Letter volatility{*this, "volatility"};
    Flag isStrict{*this, "strict"};
    Flag isSecurityDefiner{*this, "security_definer"};
    Flag returnsSet{*this, "set_of"};
    TypeFields returnType{*this};
    Text neededExtensions{*this, "needed_extensions"};
};

char const* volatilityText(char letter) {
    return letter == 'v' ? "" : letter == 'i' ? "IMMUTABLE" : "STABLE";
}

Routine routineOf(RoutineRow const& row, int schema, int returnType) {
    bool const isAggregate = row.kind == 'a';
    Routine routine;
    routine.name = row.name;
    routine.schema = schema;
    routine.procedure = row.kind == 'p';
    routine.comment = row.comment;
    routine.statement = row.statement;
    routine.statement.erase(routine.statement.find_last_not_of(" \n;") + 1);
    routine.returnType = returnType;
    addExtra(routine.extras, extra::kind, isAggregate ? "AGGREGATE" : row.kind == 'w' ? "WINDOW" : "");
    if (!isAggregate) {
        addExtra(routine.extras, extra::language, row.language);
    }
    if (!isAggregate && !routine.procedure) {
        addExtra(routine.extras, extra::volatility, volatilityText(row.volatility));
    }
    addFlag(routine.extras, extra::strict, row.isStrict);
    addFlag(routine.extras, extra::securityDefiner, row.isSecurityDefiner);
    addFlag(routine.extras, extra::setOf, row.returnsSet);
    addExtra(routine.extras, extra::dependsOnExtension, row.neededExtensions);
    return routine;
}

constexpr char const* argumentSql = R"sql(
    SELECT p.oid AS routine, a.name AS name, a.mode AS mode,
        pg_get_function_arg_default(p.oid, a.n::int) AS default_value, {type_columns}
    FROM pg_proc AS p
        CROSS JOIN LATERAL unnest(coalesce(p.proallargtypes, p.proargtypes::oid[]), p.proargmodes, p.proargnames)
            WITH ORDINALITY AS a(type, mode, name, n)
        JOIN pg_type AS t ON t.oid = a.type
    WHERE {is_own}
    ORDER BY p.oid, a.n)sql";

std::string argumentQuery() {
    return filled(argumentSql, {{"type_columns", typeColumns("t.oid", "-1", "t")},
                                {"is_own", isOwn("pg_proc", "p.oid", "p.pronamespace")}});
}

struct ArgumentRow : Query {
    using Query::Query;
    Number routine{*this, "routine"};
    Text name{*this, "name"};
    Letter mode{*this, "mode"};
    Text defaultValue{*this, "default_value"};
    TypeFields type{*this};
};

} // namespace

void CatalogReader::readRoutines() {
    RoutineRow row(connection, routineQuery());
    while (row.next()) {
        checkUnchanged(!row.statement.isNull());
        routines.emplace(row.oid, static_cast<int>(structure.routines.size()));
        structure.routines.push_back(routineOf(row, schemaOf(row.schema), typeOf(row.returnType)));
    }
}

void CatalogReader::readArguments() {
    ArgumentRow row(connection, argumentQuery());
    while (row.next()) {
        auto const routine = routines.find(row.routine);
        if (routine == routines.end()) {
            continue;
        }
        Argument argument;
        argument.name = row.name;
        argument.mode = modeLetters.valueOf(row.mode);
        argument.defaultValue = row.defaultValue;
        argument.type = typeOf(row.type);
        structure.routines[static_cast<std::size_t>(routine->second)].arguments.push_back(
            std::move(argument));
    }
}

} // namespace postgres
