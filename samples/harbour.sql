-- Berths, calls and cargo of an invented harbour. UTF-8; for PostgreSQL 15 with the extensions of its contrib package.
-- createdb harbour && psql -v ON_ERROR_STOP=1 -f samples/harbour.sql harbour
BEGIN;
SET client_min_messages = warning;

CREATE SCHEMA harbour;
COMMENT ON SCHEMA harbour IS 'Ships, berths and what lies on the quay';
CREATE SCHEMA "Zoll";
CREATE EXTENSION hstore SCHEMA public;
CREATE EXTENSION btree_gist SCHEMA public;

-- ---- types ----------------------------------------------------------------------------------------------------
CREATE TYPE harbour.ship_kind AS ENUM ('freighter', 'tanker', 'ferry', 'Küstenwache', 'it''s a tug');
COMMENT ON TYPE harbour.ship_kind IS 'What a ship is built for';
CREATE COLLATION harbour.by_code (provider = libc, locale = 'C');
COMMENT ON COLLATION harbour.by_code IS 'Byte by byte';
CREATE DOMAIN harbour.metres AS numeric(6,2) DEFAULT 0 NOT NULL
    CONSTRAINT metres_positive CHECK (VALUE >= 0) CONSTRAINT metres_sane CHECK (VALUE < 1000);
COMMENT ON DOMAIN harbour.metres IS 'A length';
COMMENT ON CONSTRAINT metres_sane ON DOMAIN harbour.metres IS 'No ship is longer';
CREATE DOMAIN harbour.code AS varchar(12) COLLATE "C" CHECK (VALUE ~ '^[A-Z0-9-]+$');
CREATE DOMAIN harbour.draught AS harbour.metres CHECK (VALUE < 30);
CREATE TYPE harbour.place AS (quay text COLLATE "C", number integer, "Länge" numeric(6,2));
COMMENT ON TYPE harbour.place IS 'Where something lies';
COMMENT ON COLUMN harbour.place.number IS 'Counted from the light';
CREATE FUNCTION harbour.draught_gap(a double precision, b double precision) RETURNS double precision
    LANGUAGE sql IMMUTABLE STRICT AS 'SELECT a - b';
CREATE TYPE harbour.depth_range AS RANGE (subtype = double precision, subtype_diff = harbour.draught_gap);
COMMENT ON TYPE harbour.depth_range IS 'Water below the keel';

-- ---- functions that tables need -------------------------------------------------------------------------------
CREATE SEQUENCE harbour.call_number AS integer START WITH 1000 INCREMENT BY 5 MINVALUE 10 MAXVALUE 99999 CACHE 3 CYCLE;
COMMENT ON SEQUENCE harbour.call_number IS 'Numbers of port calls';
CREATE FUNCTION harbour.next_code(prefix text DEFAULT 'H-', OUT code text) LANGUAGE plpgsql AS $function$
BEGIN
    -- A body with a quotation mark ' and a $ sign.
    code := prefix || nextval('harbour.call_number');
END
$function$;
COMMENT ON FUNCTION harbour.next_code(text) IS 'A new code';
CREATE FUNCTION harbour.is_valid_imo(number integer) RETURNS boolean LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE
    AS 'SELECT number BETWEEN 1000000 AND 9999999';

-- ---- tables ---------------------------------------------------------------------------------------------------
CREATE TABLE harbour.country (
    code char(2) PRIMARY KEY,
    name varchar(60) NOT NULL,
    attributes public.hstore
);
COMMENT ON TABLE harbour.country IS 'Flags';

CREATE TABLE harbour.ship (
    ship_id   bigint GENERATED ALWAYS AS IDENTITY (START WITH 500 INCREMENT BY 10) CONSTRAINT ship_key PRIMARY KEY,
    imo       integer CONSTRAINT ship_imo CHECK (harbour.is_valid_imo(imo)),
    code      text NOT NULL DEFAULT harbour.next_code('S-'),
    name      varchar(80) COLLATE "C" NOT NULL,
    kind      harbour.ship_kind NOT NULL DEFAULT 'freighter',
    kinds_before harbour.ship_kind[],
    country   char(2) DEFAULT 'DE',
    length    harbour.metres,
    draught   harbour.draught,
    beam      numeric(6,2),
    area      numeric GENERATED ALWAYS AS (beam * 2) STORED,
    home      harbour.place,
    depth     harbour.depth_range,
    callsign  harbour.code,
    built     date,
    seen      timestamp(3) with time zone DEFAULT CURRENT_TIMESTAMP,
    stay      interval day to second(2),
    flags     bit(4) DEFAULT B'0101',
    picture   bytea,
    papers    jsonb NOT NULL DEFAULT '{}',
    "select"  text[] DEFAULT ARRAY['a''b', 'c'],
    CONSTRAINT ship_name_per_country UNIQUE NULLS NOT DISTINCT (country, name) INCLUDE (built) WITH (fillfactor = 80),
    CONSTRAINT ship_size CHECK (length > 0 AND beam > 0) NO INHERIT,
    CONSTRAINT ship_country FOREIGN KEY (country) REFERENCES harbour.country (code) MATCH FULL
        ON UPDATE CASCADE ON DELETE SET DEFAULT DEFERRABLE INITIALLY DEFERRED
) WITH (fillfactor = 70, autovacuum_enabled = false, toast.autovacuum_enabled = false);
COMMENT ON TABLE harbour.ship IS 'A ship, known by its IMO number''s last digits';
COMMENT ON COLUMN harbour.ship.name IS 'As painted on the bow';
COMMENT ON CONSTRAINT ship_key ON harbour.ship IS 'The number that the office gives';
COMMENT ON CONSTRAINT ship_imo ON harbour.ship IS 'Seven digits';
ALTER TABLE harbour.ship ALTER COLUMN picture SET STORAGE EXTERNAL, ALTER COLUMN papers SET STATISTICS 500,
    ALTER COLUMN papers SET COMPRESSION pglz, ALTER COLUMN country SET (n_distinct = 50);

CREATE TABLE harbour.tanker (
    cargo varchar(40),
    imo   integer NOT NULL DEFAULT 9000001,
    CONSTRAINT tanker_key PRIMARY KEY (ship_id)
) INHERITS (harbour.ship);
ALTER TABLE harbour.tanker ALTER COLUMN kind SET DEFAULT 'tanker';

CREATE TABLE harbour.berth (
    quay    varchar(20) NOT NULL,
    number  smallint NOT NULL,
    berth_id serial,
    depth   double precision,
    taken   tstzrange,
    parent_quay varchar(20),
    parent_number smallint,
    CONSTRAINT berth_key PRIMARY KEY (quay, number),
    CONSTRAINT berth_id_once UNIQUE (berth_id) DEFERRABLE,
    CONSTRAINT berth_no_overlap EXCLUDE USING gist (quay WITH =, taken WITH &&) WHERE (taken IS NOT NULL),
    CONSTRAINT berth_parent FOREIGN KEY (parent_quay, parent_number) REFERENCES harbour.berth (quay, number)
        ON DELETE SET NULL (parent_number)
);
COMMENT ON CONSTRAINT berth_no_overlap ON harbour.berth IS 'One ship at a time';
COMMENT ON COLUMN harbour.berth.depth IS 'At low water';

CREATE TABLE harbour.call (
    call_id integer NOT NULL DEFAULT nextval('harbour.call_number'),
    arrived date NOT NULL,
    ship_id bigint NOT NULL,
    quay    varchar(20),
    number  smallint,
    pilot   text,
    CONSTRAINT call_key PRIMARY KEY (call_id, arrived),
    CONSTRAINT call_ship FOREIGN KEY (ship_id) REFERENCES harbour.ship (ship_id) ON DELETE CASCADE,
    CONSTRAINT call_after_founding CHECK (arrived > '1871-01-01')
) PARTITION BY RANGE (arrived);
COMMENT ON TABLE harbour.call IS 'A visit of a ship';
CREATE TABLE harbour.call_old PARTITION OF harbour.call FOR VALUES FROM (MINVALUE) TO ('2020-01-01');
CREATE TABLE harbour.call_2020s PARTITION OF harbour.call (pilot DEFAULT 'nobody')
    FOR VALUES FROM ('2020-01-01') TO ('2030-01-01') PARTITION BY HASH (call_id);
CREATE TABLE harbour.call_2020s_0 PARTITION OF harbour.call_2020s FOR VALUES WITH (MODULUS 2, REMAINDER 0);
CREATE TABLE harbour.call_2020s_1 PARTITION OF harbour.call_2020s FOR VALUES WITH (MODULUS 2, REMAINDER 1);
CREATE INDEX call_by_ship ON harbour.call (ship_id, arrived DESC);
ALTER TABLE harbour.call ADD CONSTRAINT call_berth FOREIGN KEY (quay, number) REFERENCES harbour.berth (quay, number)
    ON UPDATE RESTRICT NOT DEFERRABLE;

CREATE TABLE harbour.watch (
    minute integer,
    note   text,
    CONSTRAINT watch_hash CHECK (minute >= 0)
) PARTITION BY LIST (lower(note));
CREATE TABLE harbour.watch_fog PARTITION OF harbour.watch FOR VALUES IN ('fog', 'o''clock', NULL);
CREATE TABLE harbour.watch_rest PARTITION OF harbour.watch DEFAULT;

CREATE UNLOGGED TABLE "Zoll"."Erklärung" (
    "Nummer"   uuid PRIMARY KEY DEFAULT gen_random_uuid(),
    "call"     integer,
    arrived    date,
    "Wert €"   money,
    old_value  numeric(12,4),
    who        name DEFAULT CURRENT_USER,
    text_de    text COLLATE harbour.by_code,
    CONSTRAINT "Anlauf" FOREIGN KEY ("call", arrived) REFERENCES harbour.call (call_id, arrived)
);
ALTER TABLE "Zoll"."Erklärung" ADD CONSTRAINT positive CHECK (old_value > 0) NOT VALID;
ALTER TABLE "Zoll"."Erklärung" ADD FOREIGN KEY ("call", arrived) REFERENCES harbour.call_old (call_id, arrived) NOT VALID;
COMMENT ON COLUMN "Zoll"."Erklärung"."Wert €" IS 'Backslash \ and quote '' and
a second line';
ALTER TABLE "Zoll"."Erklärung" ENABLE ROW LEVEL SECURITY;
ALTER TABLE "Zoll"."Erklärung" FORCE ROW LEVEL SECURITY;
CREATE POLICY own_only ON "Zoll"."Erklärung" AS RESTRICTIVE FOR SELECT TO PUBLIC USING (who = CURRENT_USER);
CREATE POLICY may_write ON "Zoll"."Erklärung" FOR INSERT WITH CHECK (old_value IS NOT NULL);
COMMENT ON POLICY own_only ON "Zoll"."Erklärung" IS 'Nobody reads another''s papers';
ALTER TABLE "Zoll"."Erklärung" REPLICA IDENTITY FULL;

CREATE FOREIGN DATA WRAPPER paper OPTIONS (note 'no handler');
CREATE SERVER archive TYPE 'shelf' VERSION '2' FOREIGN DATA WRAPPER paper OPTIONS (room 'B 12', password 'drawer');
CREATE FOREIGN TABLE "Zoll".ledger (page integer OPTIONS (margin '2 cm') NOT NULL, line text)
    SERVER archive OPTIONS (volume 'III');

CREATE TABLE harbour.place_log OF harbour.place (number WITH OPTIONS NOT NULL DEFAULT 1, PRIMARY KEY (number));

-- ---- indexes --------------------------------------------------------------------------------------------------
CREATE INDEX ship_by_name ON harbour.ship (lower(name), (length + draught) DESC NULLS LAST, built NULLS FIRST);
CREATE UNIQUE INDEX ship_callsign ON harbour.ship (callsign COLLATE "POSIX" text_pattern_ops)
    INCLUDE (name, kind) WITH (fillfactor = 60) WHERE callsign IS NOT NULL;
CREATE INDEX ship_papers ON harbour.ship USING gin (papers jsonb_path_ops);
CREATE INDEX ship_built ON harbour.ship USING brin (built) WITH (pages_per_range = 32);
CREATE INDEX berth_by_depth ON harbour.berth (depth DESC, quay);
COMMENT ON INDEX harbour.berth_by_depth IS 'Deepest first';
ALTER TABLE harbour.berth CLUSTER ON berth_by_depth;
CREATE STATISTICS harbour.ship_sizes (dependencies, ndistinct) ON length, beam FROM harbour.ship;
COMMENT ON STATISTICS harbour.ship_sizes IS 'Long ships are wide';

-- ---- views ----------------------------------------------------------------------------------------------------
CREATE VIEW harbour.present (ship, place, "seit wann") WITH (security_barrier) AS
    SELECT s.name, c.quay || ' ' || c.number, c.arrived
    FROM harbour.call c JOIN harbour.ship s USING (ship_id)
    WHERE c.arrived > CURRENT_DATE - 3 ORDER BY 1;
COMMENT ON VIEW harbour.present IS 'Who is in port';
COMMENT ON COLUMN harbour.present."seit wann" IS 'Day of arrival';
CREATE VIEW "Zoll".present_ferries AS SELECT ship, "seit wann" FROM harbour.present WHERE ship LIKE 'F%'
    WITH CASCADED CHECK OPTION;
CREATE MATERIALIZED VIEW harbour.calls_per_quay AS
    SELECT quay, count(*) AS calls, max(arrived) AS latest FROM harbour.call GROUP BY quay HAVING count(*) > 0
    WITH NO DATA;
CREATE UNIQUE INDEX calls_per_quay_key ON harbour.calls_per_quay (quay);
COMMENT ON MATERIALIZED VIEW harbour.calls_per_quay IS 'Made anew each night';
CREATE RULE no_ferry_leaves AS ON DELETE TO "Zoll".present_ferries DO INSTEAD NOTHING;
COMMENT ON RULE no_ferry_leaves ON "Zoll".present_ferries IS 'They come back';
ALTER VIEW "Zoll".present_ferries ALTER COLUMN ship SET DEFAULT 'Fähre';

-- ---- functions, procedures, aggregates ------------------------------------------------------------------------
CREATE FUNCTION harbour.ships_of(flag char, VARIADIC kinds harbour.ship_kind[]) RETURNS SETOF harbour.ship
    LANGUAGE sql STABLE SECURITY DEFINER SET search_path = harbour AS
    'SELECT * FROM harbour.ship WHERE country = flag AND kind = ANY (kinds)';
CREATE FUNCTION harbour.ships_of(flag char) RETURNS TABLE (name text, length numeric) LANGUAGE sql
    BEGIN ATOMIC
        SELECT ship.name, ship.length FROM harbour.ship WHERE ship.country = flag;
    END;
CREATE FUNCTION harbour.latest(harbour.calls_per_quay) RETURNS date LANGUAGE sql AS 'SELECT $1.latest';
CREATE PROCEDURE harbour.leave(INOUT number integer, at date DEFAULT CURRENT_DATE) LANGUAGE plpgsql AS $$
BEGIN
    DELETE FROM harbour.call WHERE call_id = number AND arrived <= at;
END $$;
COMMENT ON PROCEDURE harbour.leave(integer, date) IS 'The ship is gone';
CREATE AGGREGATE harbour.longest(harbour.metres) (SFUNC = numeric_larger, STYPE = numeric, INITCOND = '0');
COMMENT ON AGGREGATE harbour.longest(harbour.metres) IS 'Greatest length';
CREATE OPERATOR harbour.<-> (FUNCTION = harbour.draught_gap, LEFTARG = double precision, RIGHTARG = double precision);
CREATE CAST (harbour.place AS text) WITH INOUT;

-- ---- triggers -------------------------------------------------------------------------------------------------
CREATE FUNCTION harbour.note_change() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NEW; END';
CREATE TRIGGER ship_changed BEFORE INSERT OR UPDATE OF name, length ON harbour.ship
    FOR EACH ROW WHEN (NEW.imo IS NOT NULL) EXECUTE FUNCTION harbour.note_change('ship');
COMMENT ON TRIGGER ship_changed ON harbour.ship IS 'Keeps a diary';
CREATE TRIGGER call_made AFTER INSERT ON harbour.call FOR EACH ROW EXECUTE FUNCTION harbour.note_change();
CREATE TRIGGER country_emptied AFTER TRUNCATE OR DELETE ON harbour.country
    FOR EACH STATEMENT EXECUTE FUNCTION harbour.note_change();
ALTER TABLE harbour.country DISABLE TRIGGER country_emptied;
CREATE TRIGGER present_written INSTEAD OF UPDATE ON harbour.present
    FOR EACH ROW EXECUTE FUNCTION harbour.note_change();
CREATE CONSTRAINT TRIGGER berth_checked AFTER UPDATE ON harbour.berth DEFERRABLE INITIALLY DEFERRED
    FOR EACH ROW EXECUTE FUNCTION harbour.note_change();

COMMIT;
