#!/usr/bin/env python3
"""Checks that no engine is named outside its folder: tools/X is the folder of an engine if it has a file *Dialect.cpp.

usage: engines.py [ROOT]

An engine may be named in comments, in the lists of sources and dialects, one line each with its include, and in the
examples of help texts.
"""

import re
import sys
from pathlib import Path

COMMENT = re.compile(r"""("(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])+')|//[^\n]*|/\*.*?\*/""", re.DOTALL)
LISTS = {"tools/qor/Sources.cpp": "Source", "tools/qor/Dialects.cpp": "Dialect"}
EXAMPLE = re.compile(r'".*\bqor [a-z]+ .*"')


def engines(root):
    return sorted({path.parent.name for path in root.glob("tools/*/?*Dialect.cpp")})


def without_comments(text):
    return COMMENT.sub(lambda match: match[1] or "\n" * match[0].count("\n"), text)


def is_allowed(file, line):
    if file in LISTS:
        kind = LISTS[file]
        return re.fullmatch(rf'#include "\w+/\w+{kind}\.h"|\s*&?\w+::\w+{kind}\(\),', line)
    return file.startswith("tools/qor/") and EXAMPLE.search(line)


def survey(root):
    """What is wrong, a line each."""
    wrong = []
    names = engines(root)
    files = [path for path in (root / "tools").rglob("*") if path.suffix in (".h", ".cpp")]
    for path in sorted([*files, *root.glob("completions/*")]):
        file = path.relative_to(root).as_posix()
        lines = without_comments(path.read_text()).split("\n")
        for name in names:
            if file.startswith(f"tools/{name}/"):
                continue
            for number, line in enumerate(lines, 1):
                if name in line.lower() and not is_allowed(file, line):
                    wrong.append(f"{file}:{number}: names the engine {name}: {line.strip()}")
    return wrong if names else ["no engine found"]


def main():
    root = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent.parent
    wrong = survey(root)
    for line in wrong:
        print(f"engines.py: {line}", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
