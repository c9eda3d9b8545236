"""usage: coverage.py <gcovr's report as JSON> <source folder> <list> [--write]

Compares the hand-written lines and branches of the library that no test reaches with a list in which each has a reason.
The list names them by file and text, so that an edit elsewhere in the file doesn't touch it:

    foundation/QORPool.cpp: branch: if (area == MAP_FAILED)
        The reason, for all entries above it up to the last reason.

Fails if something isn't listed and if something listed is reached. With --write the list keeps its reasons, loses what
is reached and gets what is new with an empty reason, which no run accepts.
"""

import collections
import json
import pathlib
import re
import sys

ENTRY = re.compile(r"^(\S+): (line|branch): (.*)$")


def is_judged(path):
    """Hand-written sources; generated ones and tests have other checks."""
    return path.split("/")[0] in ("foundation", "kernel", "meta", "model", "olap", "mapping", "report", "directory",
                                  "diagram")


def missed(report, source):
    found = collections.Counter()
    figures = [0, 0, 0, 0]
    for entry in report["files"]:
        path = entry["file"]
        if not is_judged(path):
            continue
        text = (source / path).read_text().splitlines()
        for line in entry["lines"]:
            if line.get("gcovr/noncode"):
                continue
            content = " ".join(text[line["line_number"] - 1].split())
            figures[1] += 1
            figures[0] += line["count"] > 0
            if line["count"] == 0:
                found[(path, "line", content)] += 1
                continue
            branches = line["branches"]
            figures[3] += len(branches)
            taken = sum(branch["count"] > 0 for branch in branches)
            figures[2] += taken
            if taken < len(branches):
                found[(path, "branch", content)] += 1
    return found, figures


def listed(path):
    """The entries with their reasons."""
    known = collections.Counter()
    reasons = {}
    waiting = []
    for line in path.read_text().splitlines():
        entry = ENTRY.match(line)
        if entry:
            known[entry.groups()] += 1
            waiting.append(entry.groups())
        elif line.startswith("    ") and line.strip():
            for key in waiting:
                reasons[key] = line.strip()
            waiting = []
    return known, reasons


def write(path, found, reasons):
    head = path.read_text().split("\n\n")[0] if path.exists() else "# What no test reaches, each entry with its reason below it; see .ci/coverage.py for the form."
    by_reason = {}
    for key in sorted(found.elements()):
        by_reason.setdefault((key[0], reasons.get(key, "")), []).append(key)
    blocks = ["\n".join("{}: {}: {}".format(*key) for key in keys) + "\n    " + reason
              for (_, reason), keys in by_reason.items()]
    path.write_text("\n\n".join([head] + blocks) + "\n")


def main(report_path, source, list_path, *options):
    found, figures = missed(json.loads(pathlib.Path(report_path).read_text()), pathlib.Path(source))
    list_path = pathlib.Path(list_path)
    known, reasons = listed(list_path) if list_path.exists() else (collections.Counter(), {})
    if figures[1] == 0 or figures[3] == 0:
        sys.exit("the report holds nothing of the library")
    print(f"lines {figures[0]} of {figures[1]} ({100 * figures[0] / figures[1]:.2f}%), "
          f"branches {figures[2]} of {figures[3]} ({100 * figures[2] / figures[3]:.2f}%)")
    if "--write" in options:
        write(list_path, found, reasons)
        return 0
    problems = ["not reached and not listed: {}: {}: {}".format(*key) for key in (found - known).elements()]
    problems += ["listed and yet reached: {}: {}: {}".format(*key) for key in (known - found).elements()]
    problems += ["without a reason: {}: {}: {}".format(*key) for key in known if not reasons.get(key)]
    print("\n".join(sorted(problems)) or f"{sum(found.values())} lines aren't reached wholly, each listed with its reason")
    if problems:
        print(f"Test them, or list them in {list_path} with the reason why no test can reach them.")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
