"""usage: coverage.py <gcovr's report as JSON> <source folder> <list> [--write]

Compares the hand-written lines and branches of the library that no test reaches with a list in which each has a reason.
The list names them by file and text, so that an edit elsewhere in the file doesn't touch it:

    foundation/QORPool.cpp: branch: if (area == MAP_FAILED)
        The reason, for all entries above it up to the last reason.

Fails if something isn't listed and if something listed is reached, but for what is reached by chance: its reason begins
with "By chance:". With --write the list keeps its reasons, loses what is reached and gets what is new with an empty
reason, which no run accepts.
"""

import collections
import json
import pathlib
import re
import sys

ENTRY = re.compile(r"^(\S+): (line|branch): (.*)$")
CHANCE = "By chance:"
HEAD = "# What no test reaches, each entry with its reason below it; see .ci/coverage.py for the form."


def missed(report, source):
    """Lines that aren't reached, lines of which a branch isn't taken, and how many of each there are."""
    found = collections.Counter()
    figures = collections.Counter()
    for entry in report["files"]:
        path = entry["file"]
        text = (source / path).read_text().splitlines()
        for line in entry["lines"]:
            if line.get("gcovr/noncode"):
                continue
            content = " ".join(text[line["line_number"] - 1].split())
            figures["lines"] += 1
            if line["count"] == 0:
                found[(path, "line", content)] += 1
                continue
            taken = sum(branch["count"] > 0 for branch in line["branches"])
            figures["lines reached"] += 1
            figures["branches"] += len(line["branches"])
            figures["branches taken"] += taken
            if taken < len(line["branches"]):
                found[(path, "branch", content)] += 1
    return found, figures


def listed(path):
    """The entries, and the reason of each."""
    known = collections.Counter()
    reasons = {}
    waiting = []
    for line in path.read_text().splitlines() if path.exists() else []:
        entry = ENTRY.match(line)
        if entry:
            known[entry.groups()] += 1
            waiting.append(entry.groups())
        elif line.startswith("    "):
            for key in waiting:
                reasons[key] = line.strip()
            waiting = []
    return known, reasons


def write(path, known, found, reasons):
    """Whoever adds a reason to one entry of a block splits it; entries of one file and reason come together again."""
    chance = collections.Counter({key: count for key, count in known.items() if is_chance(key, reasons)})
    blocks = {}
    for key in sorted((found | chance).elements()):
        blocks.setdefault((key[0], reasons.get(key, "")), []).append("{}: {}: {}".format(*key))
    texts = ["\n".join(entries) + "\n    " + reason for (_, reason), entries in blocks.items()]
    path.write_text("\n\n".join([HEAD] + texts) + "\n")


def is_chance(key, reasons):
    return reasons.get(key, "").startswith(CHANCE)


def main(report_path, source, list_path, *options):
    found, figures = missed(json.loads(pathlib.Path(report_path).read_text()), pathlib.Path(source))
    list_path = pathlib.Path(list_path)
    known, reasons = listed(list_path)
    if not figures["lines"] or not figures["branches"]:
        sys.exit("the report holds nothing of the library")
    for reached, all_of in (("lines reached", "lines"), ("branches taken", "branches")):
        print(f"{figures[reached]} of {figures[all_of]} {reached} ({100 * figures[reached] / figures[all_of]:.2f}%)")
    if "--write" in options:
        write(list_path, known, found, reasons)
        known, reasons = listed(list_path)
    stale = (key for key in (known - found).elements() if not is_chance(key, reasons))
    problems = ["not reached and not listed: {}: {}: {}".format(*key) for key in (found - known).elements()]
    problems += ["listed and yet reached: {}: {}: {}".format(*key) for key in stale]
    problems += ["without a reason: {}: {}: {}".format(*key) for key in known if not reasons.get(key)]
    print("\n".join(sorted(problems)) or f"{sum(found.values())} lines aren't reached wholly, each listed with its reason")
    if problems:
        print(f"Test them, or list them in {list_path} with the reason why no test can reach them.")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
