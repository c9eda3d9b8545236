#!/usr/bin/env python3
"""Writes generated/ and tests/generated/ from the tables: meta/enumerations.toml and <folder>/QORX.toml of each class.
The version comes from CMakeLists.txt.

usage: generate.py [--check] [ROOT]

With --check, writes nothing and fails when a file in these folders isn't what the tables give.
Nothing at all is written when a table is wrong: the error names the file, the entry and the reason.
"""

import argparse
import sys
from pathlib import Path

import classes
import enumerations
import render
import render_tests
import version

FOLDERS = ("generated", "tests/generated")
PUBLIC = ("foundation/qor", "kernel/qor", "meta/qor")


def contents(root) -> dict:
    """What each generated file must hold, by its path below the root."""
    table = enumerations.load(root / "meta/enumerations.toml")
    files = enumerations.render(table)
    model = classes.load(root, table)
    files |= version.render(version.load(root / "CMakeLists.txt"))
    public = {path.name for folder in PUBLIC for path in (root / folder).glob("*.h")}
    public |= {Path(path).name for path in files if path.startswith("generated/qor/")}
    return files | render.render(model, public) | render_tests.render(model)


def main():
    parser = argparse.ArgumentParser(description="Writes generated/ and tests/generated/ from the tables.")
    parser.add_argument("--check", action="store_true", help="write nothing; fail if a file is out of date")
    parser.add_argument("root", nargs="?", type=Path, default=Path(__file__).resolve().parent.parent)
    arguments = parser.parse_args()
    root = arguments.root
    try:
        files = contents(root)
    except enumerations.TableError as error:
        print(f"generate.py: {error}", file=sys.stderr)
        return 2
    stale = [p for folder in FOLDERS for p in (root / folder).rglob("*.*") if str(p.relative_to(root)) not in files]
    changed = [p for p, text in files.items() if not (root / p).exists() or (root / p).read_text() != text]
    if arguments.check:
        for path in [str(p.relative_to(root)) for p in stale] + changed:
            print(f"generate.py: {path} is out of date", file=sys.stderr)
        return 1 if stale or changed else 0
    for path in stale:
        path.unlink()
    for path in changed:
        (root / path).parent.mkdir(parents=True, exist_ok=True)
        (root / path).write_text(files[path])
    print(f"generate.py: {len(files)} files, {len(changed)} written, {len(stale)} removed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
