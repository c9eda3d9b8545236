#include "postgres/SqlWriter.h"

#include "Describe.h"
#include "PostgresServer.h"
#include "RunProgram.h"
#include "database/ModelBuilder.h"
#include "database/ModelReader.h"
#include "postgres/Connection.h"
#include "postgres/PostgresDialect.h"
#include "postgres/SqlNames.h"
#include "postgres/StructureReader.h"
#include "qor/Dialects.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

#include <gmock/gmock.h>
#include <qor/QORModel.h>
#include <sqlite3.h>
#include <sstream>

namespace {

using database::Structure;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

PostgresServer& server() {
    return PostgresServer::instance();
}

Structure readFrom(std::string const& name) {
    postgres::Connection connection(server().url(name));
    return postgres::readStructure(connection);
}

std::string sqlOf(Structure const& structure) {
    std::ostringstream out;
    qorprogram::dialects().write(structure, postgres::postgresDialect(), out);
    return out.str();
}

/// What PostgreSQL's own program writes of a database, without the lines that differ each time.
std::string dumpOf(std::string const& name) {
    ProgramResult const result =
        runProgram({PostgresServer::program("pg_dump"), "-s", "-O", "-x", server().url(name)});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    std::istringstream lines(result.out);
    std::string dump;
    for (std::string line; std::getline(lines, line);) {
        bool const differs =
            line.compare(0, 10, "\\restrict ") == 0 || line.compare(0, 12, "\\unrestrict ") == 0;
        dump += differs ? "" : line + "\n";
    }
    return dump;
}

/// Makes a database by some SQL, a second one by what is written of it, and compares the two, also by what
/// PostgreSQL itself says of them.
void expectSameAgain(std::string const& sql) {
    std::string const first = server().makeDatabase(sql);
    Structure const structure = readFrom(first);
    std::string const second = server().makeDatabase(sqlOf(structure));
    EXPECT_EQ(differenceOf(describe(structure), describe(readFrom(second))), "");
    EXPECT_EQ(dumpOf(first), dumpOf(second));
}

/// The same by way of a model.
void expectSameByModel(std::string const& sql) {
    Structure const structure = readFrom(server().makeDatabase(sql));
    std::unique_ptr<QORModel> const model = database::buildModel(structure);
    Structure const again = database::readModel(*model);
    EXPECT_EQ(differenceOf(describe(structure), describe(again)), "");
    EXPECT_EQ(again.origin.source, structure.origin.source);
    std::string const copy = server().makeDatabase(sqlOf(again));
    EXPECT_EQ(differenceOf(describe(structure), describe(readFrom(copy))), "");
}

std::string harbour() {
    return contentOf(QOR_SOURCE_DIR "/samples/harbour.sql");
}

/// The sample but for the password of a server, which isn't read.
std::string harbourWithoutPassword() {
    std::string sql = harbour();
    std::string const secret = ", password 'drawer'";
    sql.erase(sql.find(secret), secret.size());
    return sql;
}

TEST(PostgresSqlWriter, MakesTheSampleAgain) {
    expectSameAgain(harbourWithoutPassword());
}

TEST(PostgresSqlWriter, MakesTheSampleAgainByWayOfAModel) {
    expectSameByModel(harbour());
}

TEST(PostgresSqlWriter, WritesNoPassword) {
    Structure const structure = readFrom(server().makeDatabase(harbour()));
    EXPECT_THAT(sqlOf(structure), Not(HasSubstr("drawer")));
    EXPECT_THAT(sqlOf(structure), Not(HasSubstr(PostgresServer::password)));
}

/// Two schemas that hold things of the same names.
constexpr char const* twins = R"(
    CREATE SCHEMA a; CREATE SCHEMA "A";
    DO $do$
    DECLARE s text;
    BEGIN
        FOREACH s IN ARRAY ARRAY['a', '"A"'] LOOP
            EXECUTE replace($sql$
                CREATE TYPE @.kind AS ENUM ('x', 'y');
                CREATE DOMAIN @.word AS text CONSTRAINT c CHECK (VALUE <> '');
                CREATE DOMAIN @.word2 AS text CONSTRAINT c CHECK (VALUE <> '');
                CREATE TYPE @.pair AS (one int, two text);
                CREATE SEQUENCE @.counter;
                CREATE FUNCTION @.f(int) RETURNS int LANGUAGE sql AS 'SELECT 1';
                CREATE FUNCTION @.f(text) RETURNS int LANGUAGE sql AS 'SELECT 2';
                CREATE FUNCTION @.f(int, int) RETURNS int LANGUAGE sql AS 'SELECT 3';
                CREATE FUNCTION @.t() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NEW; END';
                CREATE TABLE @.t(a int DEFAULT @.f(1) CONSTRAINT k PRIMARY KEY, b @.kind, c @.word, d @.pair,
                    CONSTRAINT c CHECK (a > 1), CONSTRAINT u UNIQUE (b));
                CREATE TABLE @.s(a int CONSTRAINT fk REFERENCES @.t, b int CONSTRAINT fk2 REFERENCES @.t,
                    CONSTRAINT c CHECK (a > 1));
                CREATE INDEX i ON @.s (a);
                CREATE VIEW @.v AS SELECT a, b FROM @.t;
                CREATE TRIGGER tr BEFORE INSERT ON @.t FOR EACH ROW EXECUTE FUNCTION @.t();
                CREATE TRIGGER tr BEFORE INSERT ON @.s FOR EACH ROW EXECUTE FUNCTION @.t();
                CREATE TABLE @.self(a int PRIMARY KEY, b int REFERENCES @.self, c int REFERENCES @.self);
            $sql$, '@', s);
        END LOOP;
    END $do$)";

TEST(PostgresSqlWriter, TellsThingsOfOneNameApart) {
    expectSameAgain(twins);
    expectSameByModel(twins);
}

/// Names that SQL or something on the way could trip over.
constexpr char const* names = R"(
    SET check_function_bodies = off;
    CREATE SCHEMA "s.t"; CREATE SCHEMA " ";
    CREATE TABLE "s.t"."a.b"("c.d" int PRIMARY KEY, "e""f" text, "g'h" text DEFAULT 'i''j', "k\l" int, " " int,
        "order" int, "n
l" int, "%s" int, "ÄÖ" int, "/" int, "12" int, "$1" int, "--" int, "a,b" int);
    CREATE TABLE " "."user"("select" int REFERENCES "s.t"."a.b", UNIQUE ("select"), CHECK ("select" > 1));
    CREATE TABLE "s.t"."ein Name der so lang ist wie Namen in dieser Datenbank sein ""dür"(a int);
    CREATE INDEX "i""1" ON "s.t"."a.b" ("e""f", "--", ("k\l" + "a,b"));
    CREATE VIEW " ".v AS SELECT "c.d" AS "x.y", "e""f" AS "select" FROM "s.t"."a.b";
    CREATE TYPE "s.t"."enum ""x""" AS ENUM ('a,b', 'c"d', ' ', 'e''f', 'ü');
    CREATE TABLE " "."t"(a "s.t"."enum ""x""" DEFAULT 'a,b', b "s.t"."enum ""x"""[], c "s.t"."a.b");
    CREATE TYPE "s.t"."c ""x""" AS ("a b" int, "c""d" "s.t"."enum ""x""");
    CREATE FUNCTION " "."f.g"("a b" int, "c""d" "s.t"."a.b") RETURNS SETOF " "."t" LANGUAGE sql AS 'SELECT NULL, NULL, NULL';
    COMMENT ON FUNCTION " "."f.g"(int, "s.t"."a.b") IS 'it''s';
    COMMENT ON TABLE "s.t"."a.b" IS E'a\tb\\c\n''d''  ';
    COMMENT ON COLUMN "s.t"."a.b"."e""f" IS '-- $$ /* ';)";

TEST(PostgresSqlWriter, TakesNamesOfAllKinds) {
    expectSameAgain(names);
    expectSameByModel(names);
}

/// What can only be made before or after something else.
constexpr char const* needs = R"(
    CREATE TABLE z(a int PRIMARY KEY, b text);
    CREATE FUNCTION of_table(z) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT $1.a';
    CREATE TABLE y(a int DEFAULT of_table(ROW(1, 'x')), b z, c z[], d int CHECK (of_table(b) > 0));
    CREATE VIEW b_view AS SELECT z.a, z.b, count(*) AS n FROM z, y GROUP BY z.a;
    CREATE VIEW a_view AS SELECT a, of_table(NULL) AS f FROM b_view;
    CREATE FUNCTION of_view() RETURNS SETOF a_view LANGUAGE sql BEGIN ATOMIC SELECT * FROM a_view; END;
    CREATE VIEW c_view AS SELECT * FROM of_view();
    CREATE MATERIALIZED VIEW m AS SELECT * FROM c_view WITH NO DATA;
    CREATE VIEW of_m AS SELECT a FROM m;
    CREATE DOMAIN positive AS int;
    CREATE FUNCTION is_positive(int) RETURNS bool LANGUAGE sql IMMUTABLE AS 'SELECT $1 > 0';
    ALTER DOMAIN positive ADD CHECK (is_positive(VALUE));
    CREATE TYPE late AS ENUM ('a');
    CREATE TYPE early AS (a int);
    ALTER TYPE early ADD ATTRIBUTE b late;
    CREATE FUNCTION plus(early, early) RETURNS bool LANGUAGE sql IMMUTABLE AS 'SELECT true';
    CREATE OPERATOR @+ (FUNCTION = plus, LEFTARG = early, RIGHTARG = early, COMMUTATOR = @+);
    CREATE TABLE x(a early, CHECK (a OPERATOR(public.@+) a));
    CREATE VIEW d_view AS SELECT a OPERATOR(public.@+) a AS q FROM x;
    CREATE SEQUENCE q; CREATE TABLE w(a int DEFAULT nextval('q')); ALTER SEQUENCE q OWNED BY w.a;
    CREATE TABLE child(c int, CONSTRAINT ck CHECK (c > 0)) INHERITS (z, w);
    ALTER TABLE child ALTER a SET DEFAULT 7;
    CREATE TABLE grandchild(CHECK (c < 9)) INHERITS (child); ALTER TABLE grandchild ALTER c SET NOT NULL,
        ALTER b SET STORAGE MAIN, ALTER a DROP DEFAULT;
    CREATE AGGREGATE early_agg(int, text) (SFUNC = agg_step, STYPE = int[], FINALFUNC = agg_end, INITCOND = '{}');
)";

/// The functions of the aggregate come first, where SQL needs them.
std::string const aggregateFunctions =
    "CREATE FUNCTION agg_step(int[], int, text) RETURNS int[] LANGUAGE sql IMMUTABLE AS 'SELECT $1 || $2';"
    "CREATE FUNCTION agg_end(int[]) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT 1';";

TEST(PostgresSqlWriter, PutsFirstWhatIsNeeded) {
    expectSameAgain(aggregateFunctions + needs);
    expectSameByModel(aggregateFunctions + needs);
}

/// PostgreSQL's own program gives up on these.
TEST(PostgresSqlWriter, MakesFunctionsThatNeedEachOther) {
    std::string const sql = "CREATE FUNCTION a(int) RETURNS int LANGUAGE sql RETURN 1;"
                            "CREATE FUNCTION b(int) RETURNS int LANGUAGE sql BEGIN ATOMIC SELECT a($1); END;"
                            "CREATE OR REPLACE FUNCTION a(int) RETURNS int LANGUAGE sql RETURN b($1) + 1";
    Structure const structure = readFrom(server().makeDatabase(sql));
    Structure const again = readFrom(server().makeDatabase(sqlOf(structure)));
    EXPECT_EQ(differenceOf(describe(structure), describe(again)), "");
}

TEST(PostgresSqlWriter, MakesPartitionsAgain) {
    constexpr char const* sql = R"(
        CREATE TABLE up(id int PRIMARY KEY);
        CREATE TABLE p(a int NOT NULL, gone int, b text DEFAULT 'p', c int REFERENCES up CHECK (c > 0), PRIMARY KEY (a))
            PARTITION BY RANGE (a);
        ALTER TABLE p DROP COLUMN gone;
        CREATE TABLE p1(c int CONSTRAINT p_c_check CHECK (c > 0), b text DEFAULT 'own', a int NOT NULL UNIQUE);
        ALTER TABLE p ATTACH PARTITION p1 FOR VALUES FROM (1) TO (5);
        CREATE TABLE p2 PARTITION OF p FOR VALUES FROM (5) TO (9) PARTITION BY RANGE (a);
        CREATE TABLE p21 PARTITION OF p2 FOR VALUES FROM (5) TO (7);
        CREATE INDEX own ON p21 (b);
        CREATE INDEX p_b ON p (b) WHERE b <> 'x';
        CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NEW; END';
        CREATE TRIGGER t AFTER INSERT ON p FOR EACH ROW EXECUTE FUNCTION f();
        CREATE TRIGGER own AFTER INSERT ON p21 FOR EACH ROW EXECUTE FUNCTION f();
        CREATE TABLE down(a int REFERENCES p) PARTITION BY HASH (a);
        CREATE TABLE down0 PARTITION OF down FOR VALUES WITH (MODULUS 1, REMAINDER 0);)";
    expectSameAgain(sql);
    expectSameByModel(sql);
}

TEST(PostgresSqlWriter, LeavesTheSchemaOfAnExtensionToThat) {
    Structure const structure =
        readFrom(server().makeDatabase("CREATE SCHEMA x; CREATE EXTENSION hstore; ALTER EXTENSION hstore ADD "
                                       "SCHEMA x; CREATE TABLE x.t(a int)"));
    EXPECT_THAT(describe(structure), Contains("schema x {extension=hstore}"));
    EXPECT_THAT(sqlOf(structure), HasSubstr("CREATE TABLE x.t"));
    EXPECT_THAT(sqlOf(structure), Not(HasSubstr("EXISTS x")));
}

/// Neither can be made again by a statement: what fails halfway, what needs a connection or a provider.
TEST(PostgresSqlWriter, SaysWhatItLeavesOut) {
    std::string const name = server().makeDatabase(R"(
        CREATE TABLE t(a int PRIMARY KEY, b int REFERENCES t); INSERT INTO t VALUES (1), (2);
        ALTER TABLE t DISABLE TRIGGER ALL;
        CREATE SUBSCRIPTION sub CONNECTION 'dbname=x password=Hush' PUBLICATION p1, p2
            WITH (connect = false, enabled = false, slot_name = NONE);
        INSERT INTO pg_seclabel SELECT 't'::regclass, 'pg_class'::regclass, 0, 'guard', 'secret place';
        CREATE FOREIGN DATA WRAPPER w; CREATE SERVER far FOREIGN DATA WRAPPER w OPTIONS (host 'h', password 'Hush',
            connection 'host=h PassWord = Hush', address 'https://me:Hush@h/d', "API_Key" 'Hush', page 'http://h/a@b:c');
        CREATE FOREIGN TABLE shelf(a int OPTIONS (secret_note 'Hush')) SERVER far OPTIONS (url 'x://:Hush@h');
        CREATE USER MAPPING FOR PUBLIC SERVER far OPTIONS (user 'Hush'))");
    EXPECT_THROW(server().run(name, "CREATE UNIQUE INDEX CONCURRENTLY broken ON t ((1))"),
                 std::runtime_error);
    server().run(name, "COMMENT ON INDEX broken IS 'failed'; ALTER TABLE t CLUSTER ON t_pkey");
    std::string const sql = sqlOf(readFrom(name));
    for (char const* const line :
         {"index broken: it isn't valid\n-- CREATE UNIQUE INDEX broken ON public.t ((1))",
          "state of the triggers of the key t_b_fkey of public.t: only a superuser may set it: enabled NO",
          "subscription sub PUBLICATION p1, p2: its statement wasn't read",
          "security label of guard on table public.t 'secret place': its statement wasn't read",
          "options of server far: they may be secret; whether any exist is unknown",
          "options of foreign table public.shelf: they may be secret; whether any exist is unknown",
          "options of user mapping PUBLIC at far: they may be secret; whether any exist is unknown"}) {
        EXPECT_THAT(sql, HasSubstr(std::string("-- left out: ") + line + "\n"));
    }
    EXPECT_THAT(sql, Not(HasSubstr("Hush")));
    EXPECT_THAT(sql, HasSubstr("OPTIONS (host 'h', page 'http://h/a@b:c')"));
    EXPECT_NO_THROW(server().makeDatabase(sql));
}

/// The server prints no comments, but a graph that was made by hand can have them.
TEST(PostgresSqlWriter, EndsCommentsWithinExpressions) {
    Structure structure = readFrom(server().makeDatabase(
        "CREATE DOMAIN d AS int DEFAULT 1 CHECK (VALUE > 0);"
        "CREATE TABLE t(a int DEFAULT 1, b int GENERATED ALWAYS AS (a + 1) STORED, c d, CHECK (a > 0));"
        "CREATE INDEX i ON t ((a + 1), b) WHERE a > 1; CREATE VIEW v AS SELECT a FROM t"));
    std::vector<std::string> const expected = describe(structure);
    for (database::Column& column : structure.tables[0].columns) {
        column.defaultValue += column.defaultValue.empty() ? "" : " -- one";
    }
    structure.tables[1].statement += " -- two";
    structure.types.front().defaultValue += "--";
    for (database::Check& check : structure.checks) {
        check.expression += " -- three";
    }
    structure.indexes[0].members[0].expression += " -- four";
    structure.indexes[0].extras[0].value += " -- five";
    EXPECT_EQ(differenceOf(expected, describe(readFrom(server().makeDatabase(sqlOf(structure))))), "");
}

/// A carriage return ends a comment for the server.
TEST(PostgresSqlWriter, LeavesOutALineWithAllKindsOfEnds) {
    Structure structure;
    structure.origin.system = "PostgreSQL";
    structure.catalog.extras.push_back({"a\rCREATE TABLE t(a int);\r\nb", "c\n\rd"});
    std::string const name = server().makeDatabase(sqlOf(structure));
    EXPECT_EQ(server().ask(name, "SELECT count(*) FROM pg_tables WHERE tablename = 't'"), "0\n");
}

TEST(PostgresSqlWriter, KnowsTheKeywordsOfTheServer) {
    std::istringstream words(
        server().ask("postgres", "SELECT word FROM pg_get_keywords() WHERE catcode <> 'U'"));
    int count = 0;
    for (std::string word; std::getline(words, word); ++count) {
        EXPECT_EQ(postgres::quoteName(word), '"' + word + '"');
    }
    EXPECT_GT(count, 100);
}

TEST(PostgresSqlWriter, QuotesAsTheServerDoes) {
    for (std::string const name :
         {"a", "_a1", "a$", "A", "1a", "ä", "a b", "a\"b", "select", "name", "type"}) {
        std::string const asked =
            server().ask("postgres", "SELECT quote_ident(" + postgres::quoteText(name) + ")");
        EXPECT_EQ(postgres::quoteName(name) + "\n", asked);
    }
}

// ---- structures of another system --------------------------------------------------------------------

Structure readSqlite(std::string const& sql) {
    TemporaryFolder const folder;
    std::string const path = folder.file("shop.sqlite");
    sqlite3* handle = nullptr;
    sqlite3_open(path.c_str(), &handle);
    EXPECT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(handle);
    sqlite3_close(handle);
    sqlite::Database database(path);
    return sqlite::readStructure(database);
}

TEST(PostgresSqlWriter, TakesASqliteDatabaseOver) {
    Structure const structure = readSqlite(contentOf(QOR_SOURCE_DIR "/samples/orchard.sql"));
    std::string const sql = sqlOf(structure);
    Structure const taken = readFrom(server().makeDatabase(sql));
    EXPECT_EQ(taken.tables.size(), structure.tables.size());
    EXPECT_EQ(taken.keys.size(), structure.keys.size());
    EXPECT_EQ(taken.checks.size(), structure.checks.size());
    EXPECT_EQ(taken.indexes.size(), structure.indexes.size());
    EXPECT_THAT(sql, HasSubstr("-- left out: trigger harvest_fills_room of harvest: it is in the language of "
                               "another system\n-- CREATE TRIGGER harvest_fills_room"));
}

TEST(PostgresSqlWriter, TranslatesTypesAndDefaults) {
    std::string const sql =
        sqlOf(readSqlite("CREATE TABLE t(id INTEGER PRIMARY KEY AUTOINCREMENT, a VARCHAR(10) DEFAULT 'x', b "
                         "TEXT DEFAULT (lower('X')), c BLOB,"
                         " d DECIMAL(8,3) DEFAULT -1.5, e BOOLEAN DEFAULT 1, f DOUBLE, g TIMESTAMP DEFAULT "
                         "CURRENT_TIMESTAMP, h,"
                         " i CHAR(3), j BIGINT, k REAL, l NUMERIC, m INT GENERATED ALWAYS AS (j * 2))"));
    std::vector<std::string> const lines = describe(readFrom(server().makeDatabase(sql)));
    for (char const* const column :
         {"id #0 integer NOT NULL {identity=BY DEFAULT}",
          "a #1 character varying(10) DEFAULT 'x'::character varying", "b #2 text DEFAULT lower('X'::text)",
          "c #3 bytea", "d #4 numeric(8,3) DEFAULT '-1.5'::numeric", "e #5 boolean DEFAULT true",
          "g #7 timestamp without time zone DEFAULT date_trunc('second'::text, (CURRENT_TIMESTAMP AT TIME "
          "ZONE 'UTC'::text))",
          "h #8 text", "i #9 character(3)", "j #10 bigint", "l #12 numeric"}) {
        EXPECT_THAT(lines, Contains(std::string("column main.t.") + column));
    }
    EXPECT_THAT(lines, Contains(StartsWith("column main.t.m #13 integer DEFAULT (j * 2) GENERATED")));
}

TEST(PostgresSqlWriter, AnEmptyStructureIsAnEmptyDatabase) {
    EXPECT_NO_THROW(server().makeDatabase(sqlOf(Structure())));
}

} // namespace
