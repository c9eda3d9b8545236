#include "postgres/StructureReader.h"

#include "Describe.h"
#include "PostgresServer.h"
#include "postgres/Connection.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace {

using database::Structure;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

using Lines = std::vector<std::string>;

Structure structureOf(std::string const& sql, std::string const& options = "") {
    PostgresServer& server = PostgresServer::instance();
    postgres::Connection connection(server.url(server.makeDatabase(sql, options)));
    return postgres::readStructure(connection);
}

/// The lines that describe the structure which some SQL makes, those that begin with one of the words.
Lines read(std::string const& sql, Lines const& words) {
    Lines lines = describe(structureOf(sql));
    auto const isOther = [&](std::string const& line) {
        return std::none_of(words.begin(), words.end(), [&](std::string const& word) {
            return line.compare(0, word.size() + 1, word + " ") == 0;
        });
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), isOther), lines.end());
    return lines;
}

TEST(PostgresStructureReader, AnEmptyDatabaseHasOneSchema) {
    Structure const structure = structureOf("");
    EXPECT_THAT(
        describe(structure),
        ElementsAre(StartsWith("catalog {extension plpgsql=CREATE EXTENSION IF NOT EXISTS plpgsql SCHEMA "
                               "pg_catalog VERSION '"),
                    "schema public -- standard public schema"));
}

TEST(PostgresStructureReader, TellsWhereItComesFrom) {
    PostgresServer& server = PostgresServer::instance();
    std::string const name = server.makeDatabase();
    server.run(name, "COMMENT ON DATABASE " + name + " IS 'A sample'");
    postgres::Connection connection(server.url(name));
    Structure const structure = postgres::readStructure(connection);
    EXPECT_EQ(structure.catalog.name, name);
    EXPECT_EQ(structure.catalog.comment, "A sample");
    EXPECT_EQ(structure.origin.system, "PostgreSQL");
    EXPECT_EQ(structure.origin.version, connection.version());
    EXPECT_EQ(structure.origin.source, server.shownUrl(name));
    EXPECT_EQ(structure.origin.encoding, "UTF8");
    EXPECT_EQ(structure.origin.formatName, "PostgreSQL database");
    EXPECT_EQ(structure.origin.formatVersion, std::to_string(connection.versionNumber() / 10000));
}

TEST(PostgresStructureReader, TextsComeInUtf8WhateverTheDatabaseIsEncodedIn) {
    Structure const structure =
        structureOf("CREATE TABLE \"Größe\"(a int); COMMENT ON TABLE \"Größe\" IS 'é'",
                    "ENCODING 'LATIN1' LOCALE 'C' TEMPLATE template0");
    EXPECT_EQ(structure.origin.encoding, "LATIN1");
    ASSERT_EQ(structure.tables.size(), 1u);
    EXPECT_EQ(structure.tables[0].name, "Größe");
    EXPECT_EQ(structure.tables[0].comment, "é");
}

TEST(PostgresStructureReader, ReadsSchemas) {
    EXPECT_THAT(
        read("CREATE SCHEMA a; COMMENT ON SCHEMA a IS 'first'; CREATE SCHEMA \"B c\"; DROP SCHEMA public",
             {"schema"}),
        ElementsAre("schema B c", "schema a -- first"));
}

// ---- types -------------------------------------------------------------------------------------------

TEST(PostgresStructureReader, ReadsOneTypeForEachSpelling) {
    EXPECT_THAT(
        read("CREATE TABLE t(a varchar(40), b varchar(20), c varchar(40), d text, e char, f numeric, g "
             "numeric(12,3),"
             " h numeric(5,-2), i int[], j timestamptz(3), k time, l interval year to month, m interval(4), "
             "n bit(5),"
             " o varbit(7), p uuid, q \"char\", r double precision, s bool)",
             {"type"}),
        ElementsAre(
            "type built-in \"char\" [\"char\"] SQL_CHAR 0 0",
            "type built-in bit varying(7) [bit varying(7)] SQL_VARBINARY 7 0",
            "type built-in bit(5) [bit(5)] SQL_BINARY 5 0", "type built-in boolean [boolean] SQL_BOOLEAN 0 0",
            "type built-in character varying(20) [character varying(20)] SQL_VARCHAR 20 0",
            "type built-in character varying(40) [character varying(40)] SQL_VARCHAR 40 0",
            "type built-in character(1) [character(1)] SQL_CHAR 1 0",
            "type built-in double precision [double precision] SQL_DOUBLE 0 0",
            "type built-in integer[] [integer[]] undefined 0 0",
            "type built-in interval year to month [interval year to month] SQL_INTERVAL_YEAR_TO_MONTH 0 0",
            "type built-in interval(4) [interval(4)] SQL_INTERVAL_DAY_TO_SECOND 0 4",
            "type built-in numeric [numeric] SQL_NUMERIC 0 0",
            "type built-in numeric(12,3) [numeric(12,3)] SQL_NUMERIC 12 3",
            "type built-in numeric(5,-2) [numeric(5,-2)] SQL_NUMERIC 5 -2",
            "type built-in text [text] SQL_LONGVARCHAR 0 0",
            "type built-in time without time zone [time without time zone] SQL_TIME 0 0",
            "type built-in timestamp(3) with time zone [timestamp(3) with time zone] "
            "SQL_TIMESTAMP_WITH_TIME_ZONE 0 3",
            "type built-in uuid [uuid] SQL_CHAR 0 0"));
}

TEST(PostgresStructureReader, ReadsEnumerationsInTheirOrder) {
    EXPECT_THAT(
        read(
            "CREATE TYPE mood AS ENUM ('sad', 'Öde', 'it''s'); ALTER TYPE mood ADD VALUE 'glad' BEFORE 'Öde';"
            "COMMENT ON TYPE mood IS 'How'",
            {"type"}),
        ElementsAre(
            "type enumeration public.mood [public.mood] SQL_VARCHAR 0 0 'sad' 'glad' 'Öde' 'it's' -- How"));
}

TEST(PostgresStructureReader, ReadsDomainsWithTheirChecks) {
    EXPECT_THAT(
        read("CREATE DOMAIN price AS numeric(8,2) DEFAULT 1 NOT NULL CONSTRAINT above CHECK (VALUE > 0);"
             "CREATE DOMAIN low AS price CHECK (VALUE < 9);"
             "CREATE DOMAIN word AS text COLLATE \"C\";"
             "ALTER DOMAIN word ADD CONSTRAINT later CHECK (VALUE <> '') NOT VALID;"
             "COMMENT ON DOMAIN price IS 'In euro'; COMMENT ON CONSTRAINT above ON DOMAIN price IS 'Never "
             "free'",
             {"type domain", "check"}),
        ElementsAre("check public.low low_check: ((VALUE)::numeric < (9)::numeric)",
                    "check public.price above: (VALUE > (0)::numeric) -- Never free",
                    "check public.word later: (VALUE <> ''::text) {not valid=true}",
                    "type domain public.low [public.low] SQL_NUMERIC 8 2 on public.price DEFAULT 1",
                    "type domain public.price [public.price] SQL_NUMERIC 8 2 on numeric(8,2) NOT NULL "
                    "DEFAULT 1 -- In euro",
                    "type domain public.word [public.word] SQL_LONGVARCHAR 0 0 on text "
                    "{collation=pg_catalog.\"C\"}"));
}

TEST(PostgresStructureReader, ReadsCompositeAndRangeTypes) {
    EXPECT_THAT(
        read("CREATE TYPE place AS (\"Quai\" text COLLATE \"C\", gone int, n numeric(4,1));"
             "ALTER TYPE place DROP ATTRIBUTE gone; COMMENT ON COLUMN place.n IS 'number';"
             "CREATE TYPE span AS RANGE (subtype = float8, subtype_diff = float8mi);"
             "CREATE TYPE words AS RANGE (subtype = text, subtype_opclass = text_pattern_ops, collation = "
             "\"C\");"
             "CREATE TABLE t(a place, b span[], c span_multirange)",
             {"type composite", "type range", "column"}),
        ElementsAre(
            "column public.t.a #0 public.place", "column public.t.b #1 public.span[]",
            "column public.t.c #2 public.span_multirange",
            "type composite public.place [public.place] undefined 0 0"
            " {attributes=\"Quai\" text COLLATE pg_catalog.\"C\", n numeric(4,1)} {comment on n=number}",
            HasSubstr("public.span [public.span] undefined 0 0 {range=SUBTYPE = double precision, "
                      "SUBTYPE_DIFF = float8mi"),
            HasSubstr("{range=SUBTYPE = text, SUBTYPE_OPCLASS = pg_catalog.text_pattern_ops, COLLATION = "
                      "pg_catalog.\"C\"")));
}

// ---- tables ------------------------------------------------------------------------------------------

TEST(PostgresStructureReader, ReadsColumns) {
    EXPECT_THAT(
        read("CREATE TABLE t(a int NOT NULL, \"B b\" text DEFAULT 'it''s' COLLATE \"C\", gone int,"
             " c int GENERATED ALWAYS AS (a * 2) STORED, d int GENERATED BY DEFAULT AS IDENTITY,"
             " e bigint GENERATED ALWAYS AS IDENTITY (SEQUENCE NAME other START 7 INCREMENT -2 MAXVALUE 90 "
             "CYCLE));"
             "ALTER TABLE t DROP COLUMN gone, ALTER \"B b\" SET STORAGE EXTERNAL, ALTER \"B b\" SET "
             "STATISTICS 12,"
             " ALTER \"B b\" SET COMPRESSION pglz, ALTER a SET (n_distinct = 4, n_distinct_inherited = -0.5);"
             "COMMENT ON COLUMN t.c IS 'Twice'",
             {"column", "sequence"}),
        ElementsAre(
            "column public.t.B b #1 text DEFAULT 'it''s'::text {collation=pg_catalog.\"C\"} "
            "{compression=pglz}"
            " {statistics=12} {storage=EXTERNAL}",
            "column public.t.a #0 integer NOT NULL {with=n_distinct=4, n_distinct_inherited=-0.5}",
            "column public.t.c #2 integer DEFAULT (a * 2) GENERATED {generated=STORED} -- Twice",
            "column public.t.d #3 integer NOT NULL {identity=BY DEFAULT}",
            "column public.t.e #4 bigint NOT NULL {identity sequence=SEQUENCE NAME public.other START WITH 7 "
            "INCREMENT BY -2 MAXVALUE 90 CYCLE} {identity=ALWAYS}"));
}

TEST(PostgresStructureReader, ReadsKindsOfTables) {
    EXPECT_THAT(
        read(
            "CREATE TABLE plain(a text) WITH (fillfactor = 70, toast.autovacuum_enabled = off); COMMENT ON "
            "TABLE plain IS 'p';"
            "CREATE UNLOGGED TABLE \"Quick\"(); CREATE TEMPORARY TABLE passing(a int);"
            "CREATE FOREIGN DATA WRAPPER w; CREATE SERVER s FOREIGN DATA WRAPPER w;"
            "CREATE FOREIGN TABLE far(a int OPTIONS (x 'y')) SERVER s OPTIONS (file 'a''b', password 'Hush');"
            "CREATE TYPE row AS (a int); CREATE TABLE typed OF row;"
            "ALTER TABLE plain REPLICA IDENTITY NOTHING, ENABLE ROW LEVEL SECURITY",
            {"table", "column public.far.a"}),
        ElementsAre("column public.far.a #0 integer {options=x 'y'}",
                    "table public.Quick [UNLOGGED TABLE] {unlogged=true}",
                    "table public.far [FOREIGN TABLE] {options=file 'a''b'} {server=s}",
                    "table public.plain [TABLE] {replica identity=NOTHING} {row security=ENABLED}"
                    " {with=fillfactor=70, toast.autovacuum_enabled=off} -- p",
                    "table public.typed [TABLE] {of=public.\"row\"}"));
}

TEST(PostgresStructureReader, ReadsInheritance) {
    EXPECT_THAT(
        read("CREATE TABLE a(x int CONSTRAINT up CHECK (x > 0)); CREATE TABLE b(y int, z int CHECK (z > 0));"
             "CREATE TABLE c(y int NOT NULL, w int) INHERITS (b, a)",
             {"table", "column public.c.x", "column public.c.y", "column public.c.w", "check"}),
        ElementsAre("check public.a up: (x > 0)", "check public.b b_z_check: (z > 0)",
                    "check public.c b_z_check: (z > 0) {inherited=true}",
                    "check public.c up: (x > 0) {inherited=true}", "column public.c.w #3 integer",
                    "column public.c.x #2 integer {inherited=true}",
                    "column public.c.y #0 integer NOT NULL {inherited=and own}", "table public.a [TABLE]",
                    "table public.b [TABLE]", "table public.c [TABLE] under public.b under public.a"));
}

TEST(PostgresStructureReader, ReadsPartitions) {
    EXPECT_THAT(
        read("CREATE TABLE p(a int PRIMARY KEY, b text) PARTITION BY RANGE (a);"
             "CREATE TABLE p1 PARTITION OF p FOR VALUES FROM (1) TO (9) PARTITION BY HASH (a);"
             "CREATE TABLE p2 PARTITION OF p DEFAULT; CREATE INDEX p_b ON p (b)",
             {"table", "primary", "index"}),
        ElementsAre(
            "index public.p p_b (b)", "index public.p1 p1_b_idx (b) {part of=public.p_b}",
            "index public.p2 p2_b_idx (b) {part of=public.p_b}", "primary public.p p_pkey (a)",
            "primary public.p1 p1_pkey (a) {part of=public.p_pkey}",
            "primary public.p2 p2_pkey (a) {part of=public.p_pkey}",
            "table public.p [PARTITIONED TABLE] {partition by=RANGE (a)}",
            "table public.p1 [PARTITIONED TABLE] under public.p {partition bound=FOR VALUES FROM (1) TO (9)}"
            " {partition by=HASH (a)}",
            "table public.p2 [PARTITION] under public.p {partition bound=DEFAULT}"));
}

// ---- constraints and indexes -------------------------------------------------------------------------

TEST(PostgresStructureReader, ReadsKeys) {
    EXPECT_THAT(read("CREATE TABLE a(x int, y int, z int, CONSTRAINT a_key PRIMARY KEY (y, x) INCLUDE (z) "
                     "WITH (fillfactor = 50),"
                     " UNIQUE NULLS NOT DISTINCT (z), UNIQUE (x, z) DEFERRABLE INITIALLY DEFERRED);"
                     "ALTER TABLE a CLUSTER ON a_key; COMMENT ON CONSTRAINT a_key ON a IS 'The key';"
                     "ALTER TABLE a REPLICA IDENTITY USING INDEX a_key",
                     {"primary", "unique", "index"}),
                ElementsAre("primary public.a a_key (y,x) {clustered=true} {include=z} {replica "
                            "identity=true} {with=fillfactor=50}"
                            " -- The key",
                            "unique public.a a_x_z_key (x,z) {deferrable=INITIALLY DEFERRED}",
                            "unique public.a a_z_key (z) {nulls not distinct=true}"));
}

TEST(PostgresStructureReader, ReadsForeignKeys) {
    EXPECT_THAT(
        read("CREATE TABLE a(gone int, x int, y int, PRIMARY KEY (x, y)); ALTER TABLE a DROP COLUMN gone;"
             "CREATE TABLE b(p int, q int, CONSTRAINT one FOREIGN KEY (q, p) REFERENCES a (x, y) MATCH FULL"
             " ON UPDATE CASCADE ON DELETE SET DEFAULT DEFERRABLE);"
             "ALTER TABLE b ADD CONSTRAINT two FOREIGN KEY (p, q) REFERENCES a ON UPDATE RESTRICT ON DELETE "
             "SET NULL (p)"
             " NOT VALID; COMMENT ON CONSTRAINT two ON b IS 'Second'",
             {"foreign"}),
        ElementsAre("foreign public.b one (q,p) -> public.a (x,y) ON UPDATE CASCADE ON DELETE SET DEFAULT"
                    " {deferrable=INITIALLY IMMEDIATE} {match=FULL}",
                    "foreign public.b two (p,q) -> public.a (x,y) ON UPDATE RESTRICT ON DELETE SET NULL"
                    " {not valid=true} {on delete columns=p} -- Second"));
}

TEST(PostgresStructureReader, ReadsForeignKeysOfPartitionsOnce) {
    EXPECT_THAT(read("CREATE TABLE p(a int PRIMARY KEY) PARTITION BY RANGE (a);"
                     "CREATE TABLE p1 PARTITION OF p FOR VALUES FROM (1) TO (9);"
                     "CREATE TABLE r(a int CONSTRAINT rp REFERENCES p) PARTITION BY RANGE (a);"
                     "CREATE TABLE r1 PARTITION OF r DEFAULT",
                     {"foreign"}),
                ElementsAre("foreign public.r rp (a) -> public.p (a) ON UPDATE NO ACTION ON DELETE NO ACTION",
                            "foreign public.r1 rp (a) -> public.p (a) ON UPDATE NO ACTION ON DELETE NO ACTION"
                            " {inherited=true}"));
}

TEST(PostgresStructureReader, ReadsChecksAndExclusions) {
    EXPECT_THAT(
        read("CREATE TABLE t(a int CHECK (a > 0), b int, c int4range, CONSTRAINT \"both\" CHECK (a < b) NO "
             "INHERIT,"
             " CONSTRAINT apart EXCLUDE USING gist (c WITH &&) WHERE (a > 1));"
             "ALTER TABLE t ADD CONSTRAINT later CHECK (b > 0) NOT VALID;"
             "COMMENT ON CONSTRAINT \"both\" ON t IS 'Less'; COMMENT ON CONSTRAINT apart ON t IS 'it''s'",
             {"check", "table", "index"}),
        ElementsAre(
            "check public.t both: (a < b) {no inherit=true} -- Less",
            "check public.t later: (b > 0) {not valid=true}", "check public.t t_a_check: (a > 0)",
            "table public.t [TABLE] {exclusion apart=ALTER TABLE public.t ADD CONSTRAINT apart EXCLUDE "
            "USING gist (c WITH &&) WHERE ((a > 1));\nCOMMENT ON CONSTRAINT apart ON public.t IS 'it''s'}"));
}

TEST(PostgresStructureReader, ReadsIndexes) {
    EXPECT_THAT(
        read(
            "CREATE TABLE t(a int, b text, c text COLLATE \"C\", d jsonb, e varchar(9));"
            "CREATE INDEX i1 ON t (a DESC, b NULLS FIRST, c DESC NULLS LAST);"
            "CREATE UNIQUE INDEX i2 ON t (lower(b), (a + 1)) INCLUDE (c, d) NULLS NOT DISTINCT WHERE a > 1;"
            "CREATE INDEX i3 ON t USING gin (d jsonb_path_ops) WITH (fastupdate = off);"
            "CREATE INDEX i4 ON t (b COLLATE \"C\" text_pattern_ops, c, e, lower(b) COLLATE \"POSIX\");"
            "CREATE INDEX i5 ON t USING hash (a); COMMENT ON INDEX i5 IS 'Fast'; ALTER TABLE t CLUSTER ON i1;"
            "CREATE INDEX i6 ON t USING gist (to_tsvector('simple', b) tsvector_ops (siglen = 100));"
            "CREATE MATERIALIZED VIEW m AS SELECT a FROM t; CREATE UNIQUE INDEX i7 ON m (a)",
            {"index"}),
        ElementsAre(
            "index public.m i7 UNIQUE (a)",
            "index public.t i1 CLUSTERED (a DESC, b {nulls=FIRST}, c DESC {nulls=LAST})",
            "index public.t i2 UNIQUE (lower(b), (a + 1)) {include=c, d} {nulls not distinct=true} {where=(a "
            "> 1)}",
            "index public.t i3 (d {opclass=pg_catalog.jsonb_path_ops}) {method=gin} {with=fastupdate=off}",
            "index public.t i4 (b {collation=pg_catalog.\"C\"} {opclass=pg_catalog.text_pattern_ops}, c, e, "
            "lower(b) {collation=pg_catalog.\"POSIX\"})",
            "index public.t i5 (a) {method=hash} -- Fast",
            "index public.t i6 (to_tsvector('simple'::regconfig, b) {opclass options=siglen='100'}"
            " {opclass=pg_catalog.tsvector_ops}) {method=gist}"));
}

// ---- views, triggers, routines, sequences ------------------------------------------------------------

TEST(PostgresStructureReader, ReadsViews) {
    EXPECT_THAT(
        read("CREATE TABLE t(a int, b text); CREATE VIEW v (x, \"Y\") WITH (security_barrier) AS SELECT a, b "
             "FROM t WHERE a > 1"
             " WITH LOCAL CHECK OPTION; COMMENT ON VIEW v IS 'Few'; COMMENT ON COLUMN v.x IS 'a of t';"
             "ALTER VIEW v ALTER x SET DEFAULT 5;"
             "CREATE MATERIALIZED VIEW m AS SELECT x FROM v WITH NO DATA; COMMENT ON MATERIALIZED VIEW m IS "
             "'Kept';"
             "CREATE RULE away AS ON DELETE TO v DO INSTEAD NOTHING",
             {"view", "materialized", "column public.v.x", "column public.v.Y"}),
        ElementsAre(
            "column public.v.Y #1 text", "column public.v.x #0 integer DEFAULT 5 -- a of t",
            "materialized public.m [MATERIALIZED VIEW] AS SELECT v.x\n   FROM public.v -- Kept",
            "view public.v [VIEW] AS SELECT t.a AS x,\n    t.b AS \"Y\"\n   FROM public.t\n  WHERE (t.a > 1)"
            " {rule away=CREATE RULE away AS\n    ON DELETE TO public.v DO INSTEAD NOTHING}"
            " {with=security_barrier=true, check_option=local} -- Few"));
}

TEST(PostgresStructureReader, ReadsTriggers) {
    EXPECT_THAT(
        read("CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NEW; END';"
             "CREATE TABLE t(a int) PARTITION BY LIST (a); CREATE TABLE t1 PARTITION OF t DEFAULT;"
             "CREATE TABLE s(a int); CREATE VIEW v AS SELECT 1 AS a;"
             "CREATE TRIGGER one AFTER INSERT OR DELETE ON t FOR EACH ROW EXECUTE FUNCTION f();"
             "CREATE TRIGGER two BEFORE UPDATE OF a ON s FOR EACH ROW WHEN (OLD.a > 1) EXECUTE FUNCTION f();"
             "CREATE TRIGGER three INSTEAD OF UPDATE ON v FOR EACH ROW EXECUTE FUNCTION f();"
             "CREATE TRIGGER four AFTER TRUNCATE ON s EXECUTE FUNCTION f(); ALTER TABLE s ENABLE ALWAYS "
             "TRIGGER four;"
             "CREATE CONSTRAINT TRIGGER five AFTER INSERT ON s DEFERRABLE FOR EACH ROW EXECUTE FUNCTION f();"
             "ALTER TABLE s DISABLE TRIGGER five; COMMENT ON TRIGGER five ON s IS 'Off'",
             {"trigger"}),
        ElementsAre("trigger public.s five AFTER INSERT: CREATE CONSTRAINT TRIGGER five AFTER INSERT ON "
                    "public.s DEFERRABLE "
                    "INITIALLY IMMEDIATE FOR EACH ROW EXECUTE FUNCTION public.f() {enabled=NO} -- Off",
                    "trigger public.s four AFTER: CREATE TRIGGER four AFTER TRUNCATE ON public.s FOR EACH "
                    "STATEMENT EXECUTE "
                    "FUNCTION public.f() {enabled=ALWAYS} {truncate=true}",
                    "trigger public.s two BEFORE UPDATE: CREATE TRIGGER two BEFORE UPDATE OF a ON public.s "
                    "FOR EACH ROW WHEN "
                    "((old.a > 1)) EXECUTE FUNCTION public.f()",
                    "trigger public.t one AFTER INSERT DELETE: CREATE TRIGGER one AFTER INSERT OR DELETE ON "
                    "public.t FOR EACH "
                    "ROW EXECUTE FUNCTION public.f()",
                    "trigger public.v three INSTEAD OF UPDATE: CREATE TRIGGER three INSTEAD OF UPDATE ON "
                    "public.v FOR EACH "
                    "ROW EXECUTE FUNCTION public.f()"));
}

TEST(PostgresStructureReader, ReadsRoutines) {
    EXPECT_THAT(
        read("CREATE FUNCTION f(a int, VARIADIC b text[]) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS "
             "'SELECT 1';"
             "CREATE FUNCTION f(x date DEFAULT CURRENT_DATE, OUT y int, INOUT z int DEFAULT 5) LANGUAGE sql "
             "AS 'SELECT 1, 2';"
             "CREATE FUNCTION g() RETURNS TABLE(n int, m text) LANGUAGE sql STABLE SECURITY DEFINER AS "
             "'SELECT 1, ''a''';"
             "CREATE PROCEDURE p(int) LANGUAGE sql AS ''; COMMENT ON PROCEDURE p(int) IS 'Does nothing';"
             "CREATE AGGREGATE total(int) (SFUNC = int4pl, STYPE = int, INITCOND = '0')",
             {"function", "procedure"}),
        ElementsAre(
            StartsWith(
                "function public.f(IN a integer, VARIADIC b text[]) returns integer: CREATE OR REPLACE "
                "FUNCTION "
                "public.f(a integer, VARIADIC b text[])\n RETURNS integer\n LANGUAGE sql\n IMMUTABLE STRICT\n"
                "AS $function$SELECT 1$function$ {language=sql} {strict=true} {volatility=IMMUTABLE}"),
            StartsWith(
                "function public.f(IN x date DEFAULT CURRENT_DATE, OUT y integer, INOUT z integer DEFAULT 5)"
                " returns record: "),
            "function public.g(COLUMN n integer, COLUMN m text) returns record: CREATE OR REPLACE FUNCTION "
            "public.g()\n"
            " RETURNS TABLE(n integer, m text)\n LANGUAGE sql\n STABLE SECURITY DEFINER\n"
            "AS $function$SELECT 1, 'a'$function$ {language=sql} {security definer=true} {set of=true}"
            " {volatility=STABLE}",
            "function public.total(IN  integer) returns integer: CREATE AGGREGATE public.total(integer)"
            " (SFUNC = int4pl, STYPE = integer, INITCOND = '0') {kind=AGGREGATE}",
            "procedure public.p(IN  integer) returns -: CREATE OR REPLACE PROCEDURE public.p(IN integer)\n"
            " LANGUAGE sql\nAS $procedure$$procedure$ {language=sql} -- Does nothing"));
}

TEST(PostgresStructureReader, ReadsSequences) {
    EXPECT_THAT(
        read("CREATE SEQUENCE plain; CREATE SEQUENCE \"Down\" AS smallint INCREMENT -5 START -3 MINVALUE "
             "-999 CACHE 4 CYCLE;"
             "COMMENT ON SEQUENCE plain IS 'Up'; CREATE TABLE t(a serial)",
             {"sequence", "column"}),
        ElementsAre("column public.t.a #0 integer NOT NULL DEFAULT nextval('public.t_a_seq'::regclass)",
                    "sequence public.Down {cache=4} {cycle=true} {increment=-5} {minimum=-999} {start=-3} "
                    "{type=smallint}",
                    "sequence public.plain -- Up",
                    "sequence public.t_a_seq {owned by=public.t.a} {type=integer}"));
}

// ---- what has no record of its own -------------------------------------------------------------------

TEST(PostgresStructureReader, KeepsWhatATableHasBeside) {
    EXPECT_THAT(
        read("CREATE TABLE t(a int, b name); CREATE STATISTICS st (ndistinct) ON a, b FROM t; COMMENT ON "
             "STATISTICS st IS 's';"
             "CREATE POLICY p ON t AS RESTRICTIVE FOR UPDATE TO keeper, PUBLIC USING (a > 1) WITH CHECK (a > "
             "2);"
             "CREATE RULE r AS ON UPDATE TO t DO ALSO NOTHING; ALTER TABLE t DISABLE RULE r, FORCE ROW LEVEL "
             "SECURITY,"
             " ENABLE ROW LEVEL SECURITY",
             {"table"}),
        ElementsAre(
            "table public.t [TABLE] {policy p=CREATE POLICY p ON public.t AS RESTRICTIVE FOR UPDATE TO "
            "PUBLIC USING "
            "((a > 1)) WITH CHECK ((a > 2))} {row security=FORCED} {rule r=CREATE RULE r AS\n    ON UPDATE "
            "TO "
            "public.t DO NOTHING;\nALTER TABLE public.t DISABLE RULE r} {statistics st=CREATE STATISTICS "
            "public.st (ndistinct) ON a, b FROM public.t;\nCOMMENT ON STATISTICS public.st IS 's'}"));
}

TEST(PostgresStructureReader, KeepsWhatTheDatabaseHasBeside) {
    Structure const structure = structureOf(
        "CREATE COLLATION c (provider = libc, locale = 'C'); CREATE FOREIGN DATA WRAPPER w OPTIONS (a 'b');"
        "CREATE SERVER s VERSION '3' FOREIGN DATA WRAPPER w OPTIONS (host 'h', password 'Hush');"
        "CREATE USER MAPPING FOR PUBLIC SERVER s OPTIONS (user 'u', password 'Hush');"
        "CREATE FUNCTION f(int, int) RETURNS bool LANGUAGE sql AS 'SELECT true'; COMMENT ON SERVER s IS "
        "'far';"
        "CREATE OPERATOR === (FUNCTION = f, LEFTARG = int, RIGHTARG = int, COMMUTATOR = ===);"
        "CREATE TYPE y AS (a int); CREATE CAST (y AS text) WITH INOUT AS ASSIGNMENT;"
        "CREATE FUNCTION e() RETURNS event_trigger LANGUAGE plpgsql AS 'BEGIN END';"
        "CREATE EVENT TRIGGER t ON ddl_command_end WHEN TAG IN ('DROP TABLE') EXECUTE FUNCTION e();"
        "CREATE TEXT SEARCH DICTIONARY d (TEMPLATE = simple); CREATE TEXT SEARCH CONFIGURATION g (COPY = "
        "simple);"
        "CREATE PUBLICATION p FOR ALL TABLES");
    auto const value = [&](char const* name) {
        std::string const* const found = findExtra(structure.catalog.extras, name);
        return found ? *found : "nothing";
    };
    EXPECT_EQ(value("collation public.c"),
              "CREATE COLLATION public.c (provider = libc, lc_collate = 'C', lc_ctype = 'C')");
    EXPECT_EQ(value("foreign data wrapper w"), "CREATE FOREIGN DATA WRAPPER w OPTIONS (a 'b')");
    EXPECT_EQ(value("server s"), "CREATE SERVER s VERSION '3' FOREIGN DATA WRAPPER w OPTIONS (host 'h');\n"
                                 "COMMENT ON SERVER s IS 'far'");
    EXPECT_EQ(value("operator public.===(integer,integer)"),
              "CREATE OPERATOR public.=== (FUNCTION = public.f, LEFTARG = integer, RIGHTARG = integer, "
              "COMMUTATOR = OPERATOR(public.===))");
    EXPECT_EQ(value("cast (public.y AS text)"), "CREATE CAST (public.y AS text) WITH INOUT AS ASSIGNMENT");
    EXPECT_EQ(
        value("event trigger t"),
        "CREATE EVENT TRIGGER t ON ddl_command_end WHEN TAG IN ('DROP TABLE') EXECUTE FUNCTION public.e()");
    EXPECT_EQ(value("text search dictionary public.d"),
              "CREATE TEXT SEARCH DICTIONARY public.d (TEMPLATE = pg_catalog.simple)");
    EXPECT_THAT(value("text search configuration public.g"),
                StartsWith("CREATE TEXT SEARCH CONFIGURATION public.g (PARSER = pg_catalog.\"default\");\n"
                           "ALTER TEXT SEARCH CONFIGURATION public.g ADD MAPPING FOR asciiword WITH "
                           "pg_catalog.simple;\n"));
    EXPECT_EQ(value("publication p"),
              "CREATE PUBLICATION p FOR ALL TABLES WITH (publish = 'insert, update, delete, truncate')");
    EXPECT_EQ(value("user mapping PUBLIC at s"), "CREATE USER MAPPING FOR PUBLIC SERVER s");
    for (std::string const& line : describe(structure)) {
        EXPECT_THAT(line, Not(HasSubstr("Hush")));
    }
}

TEST(PostgresStructureReader, LeavesOutWhatBelongsToAnExtension) {
    std::vector<std::string> const lines =
        describe(structureOf("CREATE SCHEMA x; CREATE EXTENSION hstore SCHEMA x; CREATE TABLE t(a x.hstore);"
                             "CREATE INDEX i ON t USING gin (a)"));
    EXPECT_THAT(lines, Contains(HasSubstr(
                           "{extension hstore=CREATE EXTENSION IF NOT EXISTS hstore SCHEMA x VERSION '")));
    EXPECT_THAT(lines, IsSupersetOf({"type built-in x.hstore [x.hstore] undefined 0 0",
                                     "column public.t.a #0 x.hstore", "index public.t i (a) {method=gin}"}));
    EXPECT_THAT(lines, Not(Contains(StartsWith("function"))));
}

/// What the sample has of each kind, by a count on the catalogue that the reader has no part in.
TEST(PostgresStructureReader, LeavesNothingOfTheSampleOut) {
    PostgresServer& server = PostgresServer::instance();
    std::string const name = server.makeDatabase(contentOf(QOR_SOURCE_DIR "/samples/harbour.sql"));
    postgres::Connection connection(server.url(name));
    Structure const structure = postgres::readStructure(connection);
    auto const counted = [&](std::string const& what) {
        return std::stoul(server.ask(name, "SELECT count(*) FROM " + what));
    };
    std::string const here = " IN ('harbour'::regnamespace, '\"Zoll\"'::regnamespace)";
    EXPECT_EQ(structure.tables.size(),
              counted("pg_class WHERE relkind IN ('r','p','v','m','f') AND relnamespace" + here));
    EXPECT_EQ(structure.indexes.size() +
                  counted("pg_constraint WHERE contype IN ('p','u','x') AND connamespace" + here),
              counted("pg_class WHERE relkind IN ('i','I') AND relnamespace" + here));
    EXPECT_EQ(structure.checks.size(), counted("pg_constraint WHERE contype = 'c' AND connamespace" + here));
    EXPECT_EQ(structure.routines.size() + 5 /* of the range type */,
              counted("pg_proc WHERE pronamespace" + here));
    EXPECT_EQ(structure.triggers.size(), counted("pg_trigger WHERE NOT tgisinternal AND tgparentid = 0"));
    std::size_t columns = 0;
    std::size_t comments = 0;
    for (database::Table const& table : structure.tables) {
        columns += table.columns.size();
    }
    for (std::string const& line : describe(structure)) {
        for (auto at = line.find(" -- "); at != std::string::npos; at = line.find(" -- ", at + 1)) {
            ++comments;
        }
        for (auto at = line.find("COMMENT ON"); at != std::string::npos;
             at = line.find("COMMENT ON", at + 1)) {
            ++comments;
        }
        comments += line.find("{comment on ") != std::string::npos;
    }
    EXPECT_EQ(
        columns,
        counted("pg_attribute JOIN pg_class c ON c.oid = attrelid WHERE attnum > 0 AND NOT attisdropped AND"
                " relkind IN ('r','p','v','m','f') AND relnamespace" +
                here));
    // A comment inside of a function's body and one on each extension and language aren't of these.
    EXPECT_EQ(comments - 1,
              counted("pg_description WHERE objoid >= 16384 AND classoid <> 'pg_extension'::regclass AND NOT"
                      " EXISTS (SELECT 1 FROM pg_depend d WHERE d.classid = classoid AND d.objid = objoid"
                      " AND d.deptype = 'e')") +
                  1 /* on the schema public, of lower number */);
}

} // namespace
