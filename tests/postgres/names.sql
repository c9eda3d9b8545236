-- Names that SQL or something on the way could trip over, wherever one can stand. For PostgreSQL 15, run by a user who
-- may do everything.
SET client_min_messages = error;
CREATE SCHEMA "a.b"; CREATE SCHEMA "sel""ect"; SET search_path = "a.b";
CREATE TABLE "T'1"("c;d" int GENERATED ALWAYS AS IDENTITY, "E$f" text, "--" int, "/*" int, PRIMARY KEY ("c;d"));
CREATE INDEX "I;x" ON "T'1" (lower("E$f")); ALTER INDEX "I;x" ALTER COLUMN 1 SET STATISTICS 4; COMMENT ON INDEX "I;x" IS E'a;\nb -- c';
CREATE TABLE "P'"(a int, b int) PARTITION BY LIST (a); CREATE TABLE "P;1" PARTITION OF "P'" FOR VALUES IN (1); CREATE INDEX "PI'" ON "P'" (b);
COMMENT ON SEQUENCE "T'1_c;d_seq" IS 'x''y';
CREATE TEXT SEARCH CONFIGURATION "conf'x" (COPY = simple); CREATE TABLE d(t text, v tsvector GENERATED ALWAYS AS (to_tsvector('"a.b"."conf''x"'::regconfig, t)) STORED);
CREATE PUBLICATION "pu'b" FOR TABLE "T'1" ("c;d", "--") WHERE ("c;d" > 1); CREATE PUBLICATION "p 2" FOR TABLES IN SCHEMA "sel""ect";
CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NULL; END'; CREATE TRIGGER "tr'" AFTER INSERT ON "P'" FOR EACH ROW EXECUTE FUNCTION f(); ALTER TABLE "P;1" DISABLE TRIGGER "tr'";
CREATE FOREIGN DATA WRAPPER "w'"; CREATE SERVER "s'" FOREIGN DATA WRAPPER "w'"; CREATE USER MAPPING FOR PUBLIC SERVER "s'";
CREATE STATISTICS "sel""ect"."st'" ON a, b FROM "P'";
CREATE OPERATOR "sel""ect".-| (FUNCTION = int4pl, LEFTARG = int, RIGHTARG = int); CREATE FUNCTION usesop(int) RETURNS int LANGUAGE sql BEGIN ATOMIC SELECT $1 OPERATOR("sel""ect".-|) 2; END;
CREATE TABLE "uses op"(a int CHECK (a OPERATOR("sel""ect".-|) 2 > 1), b int DEFAULT usesop(3));
CREATE COLLATION "c'" (locale = 'C'); CREATE TYPE "comp'" AS ("a'b" int, b "T'1", c text COLLATE "c'"); COMMENT ON COLUMN "comp'"."a'b" IS 'q';
CREATE TYPE "r'" AS RANGE (SUBTYPE = text, COLLATION = "c'"); CREATE DOMAIN "d'" AS "comp'" DEFAULT ROW(1, NULL, '--');
CREATE AGGREGATE "ag'"(int) (SFUNC = int4pl, STYPE = int, INITCOND = '0'); COMMENT ON AGGREGATE "ag'"(int) IS 'a';
CREATE ACCESS METHOD "a'm" TYPE INDEX HANDLER bthandler;
