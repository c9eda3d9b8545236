#!/usr/bin/env python3
"""Checks that the sources include each other along the layers, and draws the layers as docs/layers.dot and .svg.

usage: layers.py [--write] [ROOT]

Without --write, nothing is written: fails where an include goes against the layers, or where the drawing isn't what the
sources give. With --write, writes layers.dot and has Graphviz make layers.svg of it.
"""

import argparse
import html
import re
import subprocess
import sys
from pathlib import Path

# From the bottom up. A part may include itself and the rows below its own, not its neighbours in a row.
LAYERS = (
    ("foundation",),
    ("enumerations",),
    ("kernel",),
    ("meta",),
    ("model",),
    ("olap", "mapping", "report", "directory", "diagram"),
    ("generated",),
    ("tools/kit",),
    ("tools/exchange", "tools/database", "tools/diff"),
    ("tools/documents", "tools/sqlite", "tools/postgres"),
    ("tools/qor",),
)
ROW = {part: row for row, parts in enumerate(LAYERS) for part in parts}

FOLDERS = ("foundation", "kernel", "meta", "model", "olap", "mapping", "report", "directory", "diagram", "generated", "tools")
PUBLIC = ("foundation/qor/", "kernel/qor/", "meta/qor/", "generated/qor/")
# They number what the enumerations of the tables number.
ENUMERATIONS_BY_HAND = ("meta/qor/QORMetaAttributeType.h", "meta/qor/QORMetaLinkType.h")

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*[<"]([^>"]+)[>"]', re.MULTILINE)


class Sources:
    """The files of a tree, the part of the system that each belongs to, and what they include."""

    def __init__(self, root):
        self.root = root
        paths = [path for folder in FOLDERS for path in (root / folder).rglob("*") if path.suffix in (".h", ".cpp")]
        self.files = sorted(path.relative_to(root).as_posix() for path in paths)
        self.folder_of_class = {path.stem: path.parent.name for path in root.glob("*/QOR*.toml")}
        self.by_include = {name: file for file in self.files for name in self.spellings(file)}

    def part(self, file):
        folder, name = file.split("/", 1)
        if folder == "tools":
            return "tools/" + name.split("/")[0]
        if file in ENUMERATIONS_BY_HAND:
            return "enumerations"
        if folder != "generated":
            return folder
        if not name.startswith("qor/") or name == "qor/QOR.h":
            return "generated"  # the classes' members and the tables of all classes: they know everything
        stem = Path(name).stem
        if stem.endswith("ByPosition"):
            return "kernel"  # a container like others; the class is only declared
        return self.folder_of_class.get(stem, "enumerations")

    @staticmethod
    def spellings(file):
        """How an include may name a file, apart from a neighbour's bare name."""
        if file.startswith(PUBLIC):
            return [file, "qor/" + file.rsplit("/", 1)[1]]
        return [file, file.removeprefix("tools/")]

    def includes(self):
        """The file and the file that it includes, for each include of a file of this system."""
        for file in self.files:
            neighbours = file.rsplit("/", 1)[0] + "/"
            for name in INCLUDE.findall((self.root / file).read_text()):
                target = self.by_include.get(neighbours + name) or self.by_include.get(name)
                if target:
                    yield file, target


def survey(sources):
    """The pairs of parts of which one includes the other, and what is wrong with single includes."""
    edges, wrong = set(), []
    for file, target in sources.includes():
        part, far = sources.part(file), sources.part(target)
        missing = [each for each in (part, far) if each not in ROW]
        if missing:
            wrong.append(f"{file}: {missing[0]} stands in no layer; give it a row in docs/layers.py")
        elif part.startswith("tools/") and not far.startswith("tools/") and not target.startswith(PUBLIC):
            wrong.append(f"{file}: {target} is no public header")
        elif part == far:
            continue
        elif ROW[part] <= ROW[far]:
            wrong.append(f"{file}: {part} must not include {far}, as it does by {target}")
        else:
            edges.add((part, far))
    return edges, sorted(set(wrong))


def reduced(edges):
    """The edges that no way over other parts stands for."""

    def reaches(start, end):
        return any(far == end or reaches(far, end) for near, far in edges if near == start)

    return {(a, b) for a, b in edges if not any(near == a and far != b and reaches(far, b) for near, far in edges)}


def drawing(edges):
    lines = [
        "// Written by docs/layers.py from the includes of the sources. Do not edit.",
        "digraph layers {",
        "    rankdir=TB; ranksep=0.35; nodesep=0.3;",
        '    node [shape=box, style="rounded,filled", fillcolor="#eef3f8", color="#4a6785", fontname="Helvetica"];',
        '    edge [color="#4a6785", arrowsize=0.7];',
    ]
    for parts in reversed(LAYERS):
        lines.append("    {rank=same; " + " ".join(f'"{part}";' for part in sorted(parts)) + "}")
    lines += [f'    "{near}" -> "{far}";' for near, far in sorted(reduced(edges))]
    return "\n".join(lines + ["}", ""])


def shows(svg, edges):
    """Whether an SVG text, of whatever version of Graphviz, shows exactly these edges."""
    titles = {html.unescape(title) for title in re.findall(r"<title>(.*?)</title>", svg)}
    drawn = {tuple(title.split("->")) for title in titles if "->" in title}
    return drawn == reduced(edges)


def main():
    parser = argparse.ArgumentParser(description="Checks and draws the layers of the sources.")
    parser.add_argument("--write", action="store_true", help="write docs/layers.dot and docs/layers.svg")
    parser.add_argument("root", nargs="?", type=Path, default=Path(__file__).resolve().parent.parent)
    arguments = parser.parse_args()
    dot, svg = arguments.root / "docs/layers.dot", arguments.root / "docs/layers.svg"
    edges, wrong = survey(Sources(arguments.root))
    if arguments.write and not wrong:
        dot.write_text(drawing(edges))
        subprocess.run(["dot", "-Tsvg", "-o", svg, dot], check=True)
    if not wrong:
        if not dot.exists() or dot.read_text() != drawing(edges):
            wrong.append("docs/layers.dot is out of date; run docs/layers.py --write")
        elif not svg.exists() or not shows(svg.read_text(), edges):
            wrong.append("docs/layers.svg doesn't show docs/layers.dot; run docs/layers.py --write")
    for line in wrong:
        print(f"layers.py: {line}", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
