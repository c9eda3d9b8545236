#!/usr/bin/env python3
"""Prints SQL for a large made-up database: tables with columns, keys, foreign keys, checks and indexes, and views and
triggers on some of them.

    benchmarks/make-database.py sqlite 5000 | sqlite3 large.sqlite
    benchmarks/make-database.py postgresql 5000 | psql -q large
"""
import sys

TYPES = ["VARCHAR(40)", "DECIMAL(10,2)", "DATE", "TEXT", "SMALLINT", "VARCHAR(80)", "BIGINT"]


def table(number):
    """Each refers to the one before it and to one far away, so that the foreign keys make one web of them all."""
    columns = ["id INTEGER NOT NULL"]
    columns.append("previous_id INTEGER NOT NULL" if number else "previous_id INTEGER")
    columns.append("far_id INTEGER")
    columns += [f"c{i} {TYPES[(number + i) % len(TYPES)]}" + (" NOT NULL" if i % 2 else "") for i in range(7)]
    constraints = [
        f"CONSTRAINT t{number}_key PRIMARY KEY (id)",
        f"CONSTRAINT t{number}_pair UNIQUE (previous_id, c0)",
        f"CONSTRAINT t{number}_sign CHECK (id > 0)",
    ]
    for column, far in (("previous_id", max(number - 1, 0)), ("far_id", number // 2)):
        constraints.append(f"CONSTRAINT t{number}_{column} FOREIGN KEY ({column}) REFERENCES t{far} (id)"
                           " ON DELETE CASCADE")
    return f"CREATE TABLE t{number} (\n    " + ",\n    ".join(columns + constraints) + "\n);\n"


def indexes(number):
    return (f"CREATE INDEX t{number}_far ON t{number} (far_id, c1 DESC);\n"
            f"CREATE UNIQUE INDEX t{number}_some ON t{number} (c2) WHERE c2 IS NOT NULL;\n")


def view(number):
    return (f"CREATE VIEW v{number} AS SELECT a.id, b.c0 FROM t{number} a JOIN t{number // 2} b ON b.id = a.far_id"
            " WHERE a.c1 IS NOT NULL ORDER BY a.id;\n")


def trigger(number, dialect):
    if dialect == "sqlite":
        return f"CREATE TRIGGER r{number} AFTER INSERT ON t{number} BEGIN SELECT 1; END;\n"
    return f"CREATE TRIGGER r{number} AFTER INSERT ON t{number} FOR EACH ROW EXECUTE FUNCTION nothing();\n"


def main():
    if len(sys.argv) != 3 or sys.argv[1] not in ("sqlite", "postgresql") or not sys.argv[2].isdigit():
        sys.exit("usage: make-database.py sqlite|postgresql TABLES")
    dialect, count = sys.argv[1], int(sys.argv[2])
    out = sys.stdout.write
    if dialect == "sqlite":
        out("BEGIN;\n")
    else: # In one transaction it would hold more locks than a server allows.
        out("CREATE FUNCTION nothing() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NEW; END';\n")
    for number in range(count):
        out(table(number))
        out(indexes(number))
        if number % 10 == 0:
            out(view(number))
            out(trigger(number, dialect))
    if dialect == "sqlite":
        out("COMMIT;\n")


main()
