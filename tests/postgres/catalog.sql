-- What a database can have besides tables, each of it at least once. For PostgreSQL 15, run by a user who may do
-- everything.
SET client_min_messages = error;
CREATE SCHEMA s; SET search_path = s;

-- ---- types of functions, ranges of them -----------------------------------------------------------------------
CREATE TYPE alone; COMMENT ON TYPE alone IS 'a shell';
CREATE TYPE tx;
CREATE FUNCTION tx_in(cstring) RETURNS tx LANGUAGE internal IMMUTABLE STRICT AS 'textin';
CREATE FUNCTION tx_out(tx) RETURNS cstring LANGUAGE internal IMMUTABLE STRICT AS 'textout';
CREATE FUNCTION tx_recv(internal) RETURNS tx LANGUAGE internal STABLE STRICT AS 'textrecv';
CREATE FUNCTION tx_send(tx) RETURNS bytea LANGUAGE internal STABLE STRICT AS 'textsend';
CREATE TYPE tx (INPUT = tx_in, OUTPUT = tx_out, RECEIVE = tx_recv, SEND = tx_send, INTERNALLENGTH = VARIABLE,
    STORAGE = extended, CATEGORY = 'S', PREFERRED = true, DEFAULT = 'it''s', DELIMITER = ';', COLLATABLE = true);
COMMENT ON TYPE tx IS 'a text';
CREATE TYPE i4;
CREATE FUNCTION i4_in(cstring) RETURNS i4 LANGUAGE internal IMMUTABLE STRICT AS 'int4in';
CREATE FUNCTION i4_out(i4) RETURNS cstring LANGUAGE internal IMMUTABLE STRICT AS 'int4out';
CREATE TYPE i4 (INPUT = i4_in, OUTPUT = i4_out, INTERNALLENGTH = 4, PASSEDBYVALUE, ALIGNMENT = int4);

-- ---- operators, their classes and families --------------------------------------------------------------------
CREATE FUNCTION i4_lt(i4, i4) RETURNS bool LANGUAGE internal IMMUTABLE STRICT AS 'int4lt';
CREATE FUNCTION i4_le(i4, i4) RETURNS bool LANGUAGE internal IMMUTABLE STRICT AS 'int4le';
CREATE FUNCTION i4_eq(i4, i4) RETURNS bool LANGUAGE internal IMMUTABLE STRICT AS 'int4eq';
CREATE FUNCTION i4_ge(i4, i4) RETURNS bool LANGUAGE internal IMMUTABLE STRICT AS 'int4ge';
CREATE FUNCTION i4_gt(i4, i4) RETURNS bool LANGUAGE internal IMMUTABLE STRICT AS 'int4gt';
CREATE FUNCTION i4_cmp(i4, i4) RETURNS int LANGUAGE internal IMMUTABLE STRICT AS 'btint4cmp';
CREATE FUNCTION i4_hash(i4) RETURNS int LANGUAGE internal IMMUTABLE STRICT AS 'hashint4';
CREATE FUNCTION i4_dist(i4, i4) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT 1.0::float8';
CREATE FUNCTION i4_int4_cmp(i4, int) RETURNS int LANGUAGE internal IMMUTABLE STRICT AS 'btint4cmp';
CREATE FUNCTION i4_int4_lt(i4, int) RETURNS bool LANGUAGE internal IMMUTABLE STRICT AS 'int4lt';
CREATE OPERATOR < (FUNCTION = i4_lt, LEFTARG = i4, RIGHTARG = i4, COMMUTATOR = >, NEGATOR = >=, RESTRICT = scalarltsel,
    JOIN = scalarltjoinsel);
CREATE OPERATOR <= (FUNCTION = i4_le, LEFTARG = i4, RIGHTARG = i4, COMMUTATOR = >=, NEGATOR = >);
CREATE OPERATOR = (FUNCTION = i4_eq, LEFTARG = i4, RIGHTARG = i4, COMMUTATOR = =, HASHES, MERGES);
CREATE OPERATOR >= (FUNCTION = i4_ge, LEFTARG = i4, RIGHTARG = i4, COMMUTATOR = <=, NEGATOR = <);
CREATE OPERATOR > (FUNCTION = i4_gt, LEFTARG = i4, RIGHTARG = i4, COMMUTATOR = <, NEGATOR = <=);
CREATE OPERATOR < (FUNCTION = i4_int4_lt, LEFTARG = i4, RIGHTARG = int);
CREATE OPERATOR <-> (FUNCTION = i4_dist, LEFTARG = i4, RIGHTARG = i4);
CREATE OPERATOR ~! (FUNCTION = i4_hash, RIGHTARG = i4); COMMENT ON OPERATOR ~! (NONE, i4) IS 'prefix';
CREATE OPERATOR CLASS i4_ops DEFAULT FOR TYPE i4 USING btree AS
    OPERATOR 1 <, OPERATOR 2 <=, OPERATOR 3 =, OPERATOR 4 >=, OPERATOR 5 >, FUNCTION 1 i4_cmp(i4, i4);
CREATE OPERATOR FAMILY "Fam 2" USING btree; COMMENT ON OPERATOR FAMILY "Fam 2" USING btree IS 'family';
CREATE OPERATOR CLASS "Other ops" FOR TYPE i4 USING btree FAMILY "Fam 2" AS
    OPERATOR 1 >, OPERATOR 2 >=, OPERATOR 3 =, OPERATOR 4 <=, OPERATOR 5 <, FUNCTION 1 i4_cmp(i4, i4);
COMMENT ON OPERATOR CLASS "Other ops" USING btree IS 'class';
ALTER OPERATOR FAMILY "Fam 2" USING btree ADD OPERATOR 1 < (i4, int), FUNCTION 1 (i4, int) i4_int4_cmp(i4, int);
CREATE OPERATOR CLASS i4_hash_ops DEFAULT FOR TYPE i4 USING hash AS OPERATOR 1 =, FUNCTION 1 i4_hash(i4);
CREATE FUNCTION g_cons(internal, i4, smallint, oid, internal) RETURNS bool LANGUAGE internal AS 'gist_point_consistent';
CREATE FUNCTION g_union(internal, internal) RETURNS point LANGUAGE internal AS 'gist_box_union';
CREATE FUNCTION g_pen(internal, internal, internal) RETURNS internal LANGUAGE internal AS 'gist_box_penalty';
CREATE FUNCTION g_split(internal, internal) RETURNS internal LANGUAGE internal AS 'gist_box_picksplit';
CREATE FUNCTION g_same(point, point, internal) RETURNS internal LANGUAGE internal AS 'gist_box_same';
CREATE OPERATOR CLASS i4_gist FOR TYPE i4 USING gist AS OPERATOR 1 =, OPERATOR 15 <-> FOR ORDER BY float_ops,
    FUNCTION 1 g_cons(internal, i4, smallint, oid, internal), FUNCTION 2 g_union(internal, internal),
    FUNCTION 5 g_pen(internal, internal, internal), FUNCTION 6 g_split(internal, internal),
    FUNCTION 7 g_same(point, point, internal), STORAGE point;
CREATE OPERATOR FAMILY lonely USING hash;
CREATE OPERATOR CLASS public.int_ops FOR TYPE int USING btree AS
    OPERATOR 1 <, OPERATOR 2 <=, OPERATOR 3 =, OPERATOR 4 >=, OPERATOR 5 >, FUNCTION 1 btint4cmp(int, int);
CREATE TYPE i4r AS RANGE (SUBTYPE = i4, MULTIRANGE_TYPE_NAME = i4mr); COMMENT ON TYPE i4mr IS 'many';
CREATE TYPE canr;
CREATE FUNCTION canon(canr) RETURNS canr LANGUAGE internal IMMUTABLE STRICT AS 'int4range_canonical';
CREATE FUNCTION canr_diff(int, int) RETURNS float8 LANGUAGE internal IMMUTABLE STRICT AS 'int4range_subdiff';
CREATE TYPE canr AS RANGE (SUBTYPE = int, CANONICAL = canon, SUBTYPE_DIFF = canr_diff);
CREATE TABLE keyed(a i4 PRIMARY KEY, b tx DEFAULT 'q', c i4r, d canr, e i4mr, f i4[], g tx COLLATE "C", CHECK (a < a))
    PARTITION BY RANGE (a);
CREATE INDEX keyed_i ON keyed (a "Other ops");
CREATE VIEW keyed_v AS SELECT a, count(*) FROM keyed GROUP BY a ORDER BY a;
CREATE FUNCTION i4_uses(i4) RETURNS bool LANGUAGE sql BEGIN ATOMIC SELECT $1 < 3; END;

-- ---- text search ----------------------------------------------------------------------------------------------
CREATE FUNCTION ts_start(internal, int) RETURNS internal LANGUAGE internal AS 'prsd_start';
CREATE TEXT SEARCH PARSER "P q" (START = ts_start, GETTOKEN = prsd_nexttoken, END = prsd_end, LEXTYPES = prsd_lextype,
    HEADLINE = prsd_headline);
CREATE TEXT SEARCH TEMPLATE tmpl (INIT = dsimple_init, LEXIZE = dsimple_lexize);
CREATE TEXT SEARCH DICTIONARY dict (TEMPLATE = tmpl, STOPWORDS = 'english', ACCEPT = 'false');
CREATE TEXT SEARCH DICTIONARY a_dict (TEMPLATE = pg_catalog.simple);
CREATE TEXT SEARCH DICTIONARY tmpl (TEMPLATE = tmpl);
CREATE TEXT SEARCH CONFIGURATION tmpl (PARSER = "P q");
CREATE TEXT SEARCH CONFIGURATION conf (PARSER = "P q");
ALTER TEXT SEARCH CONFIGURATION conf ADD MAPPING FOR asciiword, word WITH dict, a_dict, simple;
ALTER TEXT SEARCH CONFIGURATION conf ADD MAPPING FOR email WITH a_dict;
CREATE TEXT SEARCH CONFIGURATION empty (PARSER = pg_catalog."default");
COMMENT ON TEXT SEARCH PARSER "P q" IS 'p'; COMMENT ON TEXT SEARCH TEMPLATE tmpl IS 't''';
COMMENT ON TEXT SEARCH DICTIONARY dict IS 'd'; COMMENT ON TEXT SEARCH CONFIGURATION conf IS 'c';
CREATE FUNCTION find(text) RETURNS tsvector LANGUAGE sql IMMUTABLE BEGIN ATOMIC SELECT to_tsvector('s.conf'::regconfig, $1); END;
CREATE TABLE texts(t text, v tsvector GENERATED ALWAYS AS (to_tsvector('s.conf'::regconfig, t)) STORED,
    w tsvector DEFAULT to_tsvector('s.conf', 'x'), x tsvector DEFAULT find('y'));
CREATE INDEX texts_i ON texts USING gin (to_tsvector('s.conf'::regconfig, t));

-- ---- casts, conversions, languages, transforms, access methods, collations ------------------------------------
CREATE CAST (i4 AS int) WITHOUT FUNCTION AS IMPLICIT; COMMENT ON CAST (i4 AS int) IS 'free';
CREATE FUNCTION to_bool(i4) RETURNS bool LANGUAGE sql IMMUTABLE AS 'SELECT true';
CREATE CAST (i4 AS bool) WITH FUNCTION to_bool(i4) AS ASSIGNMENT;
CREATE DEFAULT CONVERSION conv FOR 'LATIN1' TO 'UTF8' FROM iso8859_1_to_utf8; COMMENT ON CONVERSION conv IS 'co';
CREATE CONVERSION "C 2" FOR 'UTF8' TO 'LATIN1' FROM utf8_to_iso8859_1;
CREATE TRUSTED LANGUAGE "pl 2" HANDLER plpgsql_call_handler INLINE plpgsql_inline_handler VALIDATOR plpgsql_validator;
COMMENT ON LANGUAGE "pl 2" IS 'la';
CREATE FUNCTION my_handler() RETURNS language_handler LANGUAGE c AS '$libdir/plpgsql', 'plpgsql_call_handler';
CREATE LANGUAGE pl3 HANDLER my_handler;
CREATE FUNCTION f2() RETURNS int LANGUAGE "pl 2" AS 'BEGIN RETURN 1; END'; CREATE TABLE uses_f2(a int DEFAULT f2());
CREATE TRANSFORM FOR i4 LANGUAGE "pl 2" (FROM SQL WITH FUNCTION prsd_lextype(internal));
COMMENT ON TRANSFORM FOR i4 LANGUAGE "pl 2" IS 'tr';
CREATE FUNCTION rec(internal) RETURNS i4 LANGUAGE internal STABLE AS 'int4recv';
CREATE TRANSFORM FOR i4 LANGUAGE plpgsql (FROM SQL WITH FUNCTION prsd_lextype(internal), TO SQL WITH FUNCTION rec(internal));
CREATE FUNCTION f3(i4) RETURNS int TRANSFORM FOR TYPE i4 LANGUAGE plpgsql AS 'BEGIN RETURN 1; END';
CREATE ACCESS METHOD "Heap 2" TYPE TABLE HANDLER heap_tableam_handler; COMMENT ON ACCESS METHOD "Heap 2" IS 'am';
CREATE FUNCTION amh(internal) RETURNS index_am_handler LANGUAGE internal AS 'hashhandler';
CREATE ACCESS METHOD "Hash 3" TYPE INDEX HANDLER amh;
CREATE OPERATOR CLASS h3_ops DEFAULT FOR TYPE int USING "Hash 3" AS OPERATOR 1 =, FUNCTION 1 hashint4(int);
CREATE TABLE h2(a int) USING "Heap 2"; CREATE INDEX h2_i ON h2 USING "Hash 3" (a);
CREATE MATERIALIZED VIEW h2_m USING "Heap 2" AS SELECT a FROM h2 WITH NO DATA;
CREATE COLLATION coll (provider = icu, locale = 'de-u-co-phonebk', deterministic = false); COMMENT ON COLLATION coll IS 'phone';
CREATE COLLATION coll2 (lc_collate = 'C', lc_ctype = 'POSIX');

-- ---- aggregates -----------------------------------------------------------------------------------------------
CREATE AGGREGATE agg1(int) (SFUNC = int4pl, STYPE = int, SSPACE = 88, INITCOND = '0', SORTOP = <, COMBINEFUNC = int4pl,
    PARALLEL = SAFE, MSFUNC = int4pl, MINVFUNC = int4mi, MSTYPE = int, MSSPACE = 99, MINITCOND = '0', MFINALFUNC = int4up,
    MFINALFUNC_MODIFY = READ_WRITE);
COMMENT ON AGGREGATE agg1(int) IS 'moves';
CREATE AGGREGATE agg2(float8 ORDER BY anyelement) (SFUNC = ordered_set_transition, STYPE = internal,
    FINALFUNC = percentile_disc_final, FINALFUNC_EXTRA);
COMMENT ON AGGREGATE agg2(float8 ORDER BY anyelement) IS 'ordered';
CREATE AGGREGATE agg3(VARIADIC "any" ORDER BY VARIADIC "any") (SFUNC = ordered_set_transition_multi, STYPE = internal,
    FINALFUNC = rank_final, FINALFUNC_EXTRA, HYPOTHETICAL);
COMMENT ON AGGREGATE agg3(VARIADIC "any" ORDER BY VARIADIC "any") IS 'hypothetical';
CREATE AGGREGATE agg4(*) (SFUNC = int8inc, STYPE = int8, INITCOND = '0'); COMMENT ON AGGREGATE agg4(*) IS 'star';
CREATE FUNCTION i4_larger(i4, i4) RETURNS i4 LANGUAGE internal IMMUTABLE STRICT AS 'int4larger';
CREATE AGGREGATE agg5(i4) (SFUNC = i4_larger, STYPE = i4, SORTOP = >);

-- ---- publications and event triggers --------------------------------------------------------------------------
CREATE TABLE t1(a int PRIMARY KEY, b text, c int); CREATE TABLE t2(a int); CREATE TABLE t3(a int) PARTITION BY LIST (a);
CREATE PUBLICATION p_all FOR ALL TABLES WITH (publish = 'insert, truncate');
CREATE PUBLICATION p_none WITH (publish = ''); COMMENT ON PUBLICATION p_none IS 'nothing';
CREATE PUBLICATION "P t" FOR TABLE t1 (a, c) WHERE (a > 3), ONLY t2, TABLE t3 WITH (publish_via_partition_root = true);
CREATE PUBLICATION p_schema FOR TABLES IN SCHEMA s, public, TABLE t2;
CREATE FUNCTION ev() RETURNS event_trigger LANGUAGE plpgsql AS 'BEGIN RAISE EXCEPTION ''no''; END';
CREATE EVENT TRIGGER ev ON ddl_command_end WHEN TAG IN ('COMMENT', 'CREATE PUBLICATION') EXECUTE FUNCTION ev();
COMMENT ON EVENT TRIGGER ev IS 'ev';
CREATE EVENT TRIGGER ev2 ON sql_drop EXECUTE FUNCTION ev(); ALTER EVENT TRIGGER ev2 ENABLE ALWAYS;
