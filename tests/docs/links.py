#!/usr/bin/env python3
"""Fails if a relative link of a Markdown file leads to no file or to no heading.

usage: links.py [ROOT]
"""

import re
import sys
from pathlib import Path
from urllib.parse import unquote

FENCE = re.compile(r"^ {0,3}(```|~~~).*?^ {0,3}\1[^\n]*$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"`[^`\n]*`")
LINK = re.compile(r"\]\(\s*<?([^)\s>]+)>?[^)]*\)|^ {0,3}\[[^\]]+\]:\s*<?(\S+?)>?\s*$", re.MULTILINE)
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*#*\s*$", re.MULTILINE)
SCHEME = re.compile(r"^[a-z][a-z0-9+.-]*:", re.IGNORECASE)


def prose(path):
    return FENCE.sub("", path.read_text())


def anchors(path):
    """The names by which headings are linked to: as GitHub forms them, the second of one name with -1 and so on."""
    seen, names = {}, set()
    for heading in HEADING.findall(prose(path)):
        text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).lower()
        name = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
        count = seen[name] = seen.get(name, -1) + 1
        names.add(f"{name}-{count}" if count else name)
    return names


def links(path):
    for match in LINK.finditer(CODE.sub("", prose(path))):
        target = match[1] or match[2]
        if not SCHEME.match(target):
            yield target


def broken(root):
    """A line for each link that leads nowhere, and how many relative links there are."""
    found, count = [], 0
    for path in sorted(root.rglob("*.md")):
        name = path.relative_to(root)
        if name.parts[0] in ("build", ".git"):
            continue
        for target in links(path):
            count += 1
            place, _, anchor = unquote(target).partition("#")
            file = (root / place.lstrip("/")) if place.startswith("/") else (path.parent / place) if place else path
            if not file.exists():
                found.append(f"{name}: {target}: there is no such file")
            elif anchor and file.suffix == ".md" and anchor not in anchors(file):
                found.append(f"{name}: {target}: there is no such heading")
    return found, count


def main():
    root = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent.parent
    found, count = broken(root)
    for line in found:
        print(f"links.py: {line}", file=sys.stderr)
    if count == 0:
        print(f"links.py: no relative link below {root}", file=sys.stderr)
        return 1
    print(f"{count} relative links")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
