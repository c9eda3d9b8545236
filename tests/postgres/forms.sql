-- Forms of types, partitions, triggers, rules, views, functions and defaults. For PostgreSQL 15, run by a user who may do
-- everything.
SET client_min_messages = error;
CREATE SCHEMA s; CREATE SCHEMA o; SET search_path = s;
CREATE FUNCTION trg() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NEW; END';
-- partitions of all kinds
CREATE TYPE col AS ENUM ('r', 'g', 'b''x');
CREATE TABLE pe(c col, d timestamptz, n numeric(5,-2), t text COLLATE "C", g int GENERATED ALWAYS AS (1 + 1) STORED, gone int) PARTITION BY LIST (c);
ALTER TABLE pe DROP COLUMN gone;
CREATE TABLE o.pe1 PARTITION OF pe FOR VALUES IN ('r', 'b''x') WITH (fillfactor = 44);
CREATE TABLE pe2(t text COLLATE "C", g int GENERATED ALWAYS AS (1 + 1) STORED, x int, n numeric(5,-2), d timestamptz, c col); ALTER TABLE pe2 DROP COLUMN x; ALTER TABLE pe ATTACH PARTITION pe2 FOR VALUES IN ('g');
CREATE UNLOGGED TABLE pe3 PARTITION OF pe DEFAULT;
CREATE TABLE pr(a int, b timestamptz, c text) PARTITION BY RANGE (a, (date_trunc('day', b AT TIME ZONE 'UTC')), c COLLATE "POSIX" text_pattern_ops);
CREATE TABLE pr1 PARTITION OF pr FOR VALUES FROM (MINVALUE, MINVALUE, MINVALUE) TO (3, '2020-01-01', 'x''y');
CREATE TABLE pr2 PARTITION OF pr FOR VALUES FROM (3, '2020-01-01', 'x''y') TO (MAXVALUE, MAXVALUE, MAXVALUE) PARTITION BY HASH (c, a);
CREATE TABLE pr21 PARTITION OF pr2 FOR VALUES WITH (MODULUS 3, REMAINDER 2);
CREATE INDEX ON pr (c, a DESC); CREATE INDEX pr21_own ON pr21 (c, a DESC); CREATE UNIQUE INDEX ON pr21 (c);
CREATE STATISTICS pst ON a, c FROM pr; CREATE STATISTICS pst2 ON (a+1), c FROM pr21;
CREATE TABLE ref(c text, a int, CONSTRAINT k UNIQUE (c, a)) PARTITION BY HASH (c); CREATE TABLE ref0 PARTITION OF ref FOR VALUES WITH (MODULUS 2, REMAINDER 0); CREATE TABLE ref1 PARTITION OF ref FOR VALUES WITH (MODULUS 2, REMAINDER 1);
ALTER TABLE pr ADD CONSTRAINT fkr FOREIGN KEY (c, a) REFERENCES ref (c, a) ON UPDATE CASCADE DEFERRABLE; CREATE TABLE reff(c text, a int, FOREIGN KEY (c, a) REFERENCES ref1 (c, a));
CREATE TABLE selfp(id int PRIMARY KEY, up int REFERENCES selfp) PARTITION BY RANGE (id); CREATE TABLE selfp1 PARTITION OF selfp FOR VALUES FROM (1) TO (9);
CREATE UNIQUE INDEX uq_no_con ON pe2 (c, t); 
-- triggers
CREATE TABLE tt(a int, b int UNIQUE, c text); CREATE TABLE tr(a int REFERENCES tt (b));
CREATE TRIGGER a1 AFTER UPDATE ON tt REFERENCING OLD TABLE AS "old t" NEW TABLE AS n FOR EACH STATEMENT EXECUTE FUNCTION trg('x', 'y''z');
CREATE TRIGGER a2 BEFORE UPDATE OF a, c ON tt FOR EACH ROW WHEN (OLD.* IS DISTINCT FROM NEW.*) EXECUTE FUNCTION trg();
CREATE CONSTRAINT TRIGGER a3 AFTER INSERT ON tt FROM tr DEFERRABLE INITIALLY DEFERRED FOR EACH ROW EXECUTE FUNCTION trg();
CREATE VIEW vv(x, "y z") AS SELECT a, b FROM tt WHERE a > 1 WITH LOCAL CHECK OPTION; CREATE TRIGGER a4 INSTEAD OF INSERT OR DELETE ON vv FOR EACH ROW EXECUTE FUNCTION trg();
CREATE RECURSIVE VIEW rv(n) AS VALUES (1) UNION ALL SELECT n + 1 FROM rv WHERE n < 10;
CREATE RULE ru AS ON UPDATE TO vv WHERE NEW.x > 3 DO INSTEAD (INSERT INTO tt VALUES (1, 2, 'a;b'); DELETE FROM tt WHERE c = 'x;y'; UPDATE tt SET a = NEW.x WHERE b = OLD."y z"); CREATE RULE ru2 AS ON UPDATE TO vv DO INSTEAD NOTHING; CREATE RULE ru3 AS ON DELETE TO tt DO INSTEAD SELECT 1;
CREATE VIEW many AS SELECT DISTINCT ON (t.a) t.*, u.a AS ua, row_number() OVER w, count(*) FILTER (WHERE t.a > 1) OVER (PARTITION BY t.b ROWS BETWEEN 1 PRECEDING AND CURRENT ROW) AS f, EXTRACT(year FROM now()) AS e, CASE t.a WHEN 1 THEN 'one' ELSE 'x' END AS ca, ARRAY(SELECT 1) AS ar, (t).c AS cc, 'a' LIKE 'b' ESCAPE 'c' AS l, t.a BETWEEN SYMMETRIC 3 AND 1 AS bs, (1, 2) < (3, 4) AS ro, XMLELEMENT(NAME q, XMLATTRIBUTES(t.c AS w), 'x') AS xe, INTERVAL '1 day 2:03' AS i, t.c COLLATE "C" < 'q' AS co, NULLIF(1, 2) AS nu, COALESCE(t.a, 2) AS coa
 FROM tt AS t LEFT JOIN tr AS u USING (a) WINDOW w AS (ORDER BY t.c) ORDER BY t.a, u.a LIMIT 3 OFFSET 1;
CREATE VIEW j AS SELECT * FROM tt JOIN tr USING (a) AS ju NATURAL JOIN (VALUES (1, 'x')) AS v(a, d), LATERAL generate_series(1, tt.b) WITH ORDINALITY AS gs(g, o1), ROWS FROM (unnest(ARRAY[1]), unnest(ARRAY['a'])) AS rf(p, q), XMLTABLE($$/a$$ PASSING xmlparse(document $$<a>1</a>$$) COLUMNS id int PATH $$b$$ DEFAULT 3, o FOR ORDINALITY) AS xt;
CREATE VIEW gs AS SELECT a, b, GROUPING(a, b), sum(a), string_agg(c, ',' ORDER BY c DESC NULLS LAST), percentile_cont(0.5) WITHIN GROUP (ORDER BY a) FROM tt GROUP BY GROUPING SETS ((a, b), ROLLUP (a), CUBE (b)) HAVING sum(a) > 1;
CREATE VIEW wi AS WITH RECURSIVE t(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM t) SEARCH DEPTH FIRST BY n SET o CYCLE n SET c USING p, m AS MATERIALIZED (SELECT 1 AS q) SELECT n, c, q FROM t, m ORDER BY n FETCH FIRST 3 ROWS WITH TIES;
-- functions
CREATE FUNCTION f1(a int, b text DEFAULT 'x''y', VARIADIC c int[] DEFAULT '{}') RETURNS TABLE(x int, "y z" text) LANGUAGE sql STABLE STRICT PARALLEL RESTRICTED COST 7 ROWS 9 SET search_path = s, "$user", o SET work_mem = '2MB' AS $$ SELECT 1, 'x$y' $$;
CREATE FUNCTION f2(INOUT a anyelement, OUT b anyarray, INOUT c int DEFAULT 3) LANGUAGE plpgsql AS $f$ BEGIN b := ARRAY[a]; END $f$;
CREATE FUNCTION f3(tt) RETURNS int LANGUAGE sql IMMUTABLE RETURN 3; CREATE FUNCTION f3(tt[]) RETURNS SETOF record LANGUAGE sql AS 'SELECT 1, 2';
CREATE PROCEDURE p1(a int, INOUT b text, OUT c int) LANGUAGE plpgsql SECURITY DEFINER AS 'BEGIN c := 1; END'; COMMENT ON PROCEDURE p1(int, text) IS 'pr'; CREATE PROCEDURE p1(VARIADIC a text[]) LANGUAGE sql BEGIN ATOMIC DELETE FROM tt; INSERT INTO tt VALUES (1, 2, '3') ON CONFLICT (b) DO UPDATE SET c = excluded.c RETURNING a; END; COMMENT ON PROCEDURE p1(text[]) IS 'var';
CREATE FUNCTION agf(int, tt) RETURNS int LANGUAGE sql AS 'SELECT 1'; CREATE AGGREGATE ag(tt) (SFUNC = agf, STYPE = int); CREATE VIEW agv AS SELECT ag(tt.*) FROM tt; COMMENT ON AGGREGATE ag(tt) IS 'ag';
CREATE FUNCTION of_view() RETURNS SETOF vv LANGUAGE sql BEGIN ATOMIC SELECT * FROM vv; END; CREATE TABLE of_row(a vv, b many[], c tt DEFAULT ROW(1, 2, 'x'));
-- columns
CREATE TABLE types(a interval day to second(3), b bit varying(7), c "char", d name, e timestamp(0), f time(2) with time zone, g varchar, h char, i numeric, j numeric(3), k numeric(5,-2), l int[3][3], m oid, n regclass, o xml, p jsonb, q tsvector, r int4multirange, s pg_lsn, t money, u float(10), v inet);
CREATE DOMAIN o.d AS numeric(5,1)[] CHECK (VALUE[1] > 0); CREATE DOMAIN o.dd AS o.d NOT NULL DEFAULT ARRAY[1.5]; CREATE TABLE usesd(a o.dd, b o.dd[], c o.d);
CREATE TABLE ser(a serial, b bigserial, c smallserial); CREATE SEQUENCE o.q; ALTER TABLE ser ADD d int DEFAULT nextval('o.q'), ADD e int DEFAULT nextval(('o.q'::text)::regclass), ADD f int DEFAULT nextval('s.ser_a_seq'); ALTER SEQUENCE ser_b_seq OWNED BY NONE; ALTER SEQUENCE ser_c_seq OWNED BY ser.d; ALTER TABLE ser ALTER a TYPE bigint;
CREATE TABLE bs(a text DEFAULT E'a\\b\n\t''', b bytea DEFAULT '\x00ff', c text[] DEFAULT '{"a,b",NULL}', d timestamptz DEFAULT '2020-01-01 00:00+01', e interval DEFAULT '1 mon -2 days', f float8 DEFAULT 'NaN', g float4 DEFAULT 0.1, h numeric DEFAULT 1e30, i json DEFAULT '{"a": 1}', j date DEFAULT CURRENT_DATE + 3, k text DEFAULT current_user, l bit(3) DEFAULT B'101', m text DEFAULT U&'\00e9'); COMMENT ON TABLE bs IS E'back\\slash \'q\' \u00e9';
CREATE TABLE wo(a int) WITH (user_catalog_table = true, vacuum_truncate = false, autovacuum_vacuum_cost_delay = 2.5, log_autovacuum_min_duration = 100);
CREATE TABLE mp1(a int DEFAULT 1, b int); CREATE TABLE mp2(b int, a int DEFAULT 1); CREATE TABLE mp() INHERITS (mp1, mp2);
CREATE TABLE mpn() INHERITS (mp1); ALTER TABLE mpn ALTER a SET NOT NULL; CREATE TABLE mpn2() INHERITS (mpn); ALTER TABLE mpn2 ADD CONSTRAINT ck CHECK (a > 2); ALTER TABLE mpn ADD CONSTRAINT ck CHECK (a > 2); ALTER TABLE ONLY mp1 ADD CONSTRAINT ni CHECK (a > 3) NO INHERIT; ALTER TABLE mp1 ADD CONSTRAINT nv CHECK (b > 3) NOT VALID; ALTER TABLE mpn2 NO INHERIT mpn; ALTER TABLE mpn2 INHERIT mpn;
CREATE TABLE gp(a int, b int GENERATED ALWAYS AS (a * 2) STORED); CREATE TABLE gc(c int) INHERITS (gp);
CREATE POLICY po ON tt FOR ALL USING (EXISTS (SELECT 1 FROM tr WHERE tr.a = tt.a)) WITH CHECK (c <> 'x;y'); 
CREATE FUNCTION evf() RETURNS event_trigger LANGUAGE plpgsql AS 'BEGIN END'; CREATE EVENT TRIGGER etr ON table_rewrite EXECUTE FUNCTION evf();
CREATE FUNCTION cf(tt, int, bool) RETURNS text LANGUAGE sql AS 'SELECT $$x$$'; CREATE CAST (tt AS text) WITH FUNCTION cf(tt, int, bool) AS ASSIGNMENT; CREATE CAST (o.d AS text) WITH INOUT; CREATE FUNCTION opf(tt, tt) RETURNS bool LANGUAGE sql AS 'SELECT true'; CREATE OPERATOR o.=== (FUNCTION = opf, LEFTARG = tt, RIGHTARG = tt, COMMUTATOR = OPERATOR(o.===), NEGATOR = OPERATOR(o.!==)); 
CREATE MATERIALIZED VIEW mm AS SELECT * FROM many WITH NO DATA; CREATE FUNCTION of_mm(mm) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT 1'; CREATE MATERIALIZED VIEW mm2 AS SELECT of_mm(mm) FROM mm WITH NO DATA; CREATE STATISTICS mst ON a, b FROM mm;
CREATE INDEX ix1 ON tt ((c || 'x') COLLATE "C" text_pattern_ops DESC NULLS LAST, (a + b), lower(c) COLLATE "POSIX") INCLUDE (b) WHERE c IS NOT NULL AND a IN (1, 2); CREATE INDEX ix2 ON tt USING gin (to_tsvector('english', c)) WITH (fastupdate = off); CREATE INDEX ix3 ON tt USING spgist (c); CREATE INDEX ix4 ON types (f, g varchar_pattern_ops, h bpchar_pattern_ops, d);
CREATE UNIQUE INDEX ix5 ON tt (a) NULLS NOT DISTINCT;
