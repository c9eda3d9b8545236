"""Checks the prose of the repository: the spelling of documents and comments, and the phrases of documents.

    python3 .ci/prose.py

docs/words.txt lists words that the dictionary lacks, docs/phrases.txt the phrases that no document may have.
Code isn't prose: it skips fenced and indented blocks, texts in backticks or quotation marks, the targets of
links, and identifiers.
"""

import bisect
import pathlib
import re
import subprocess
import sys

HAND_WRITTEN = re.compile(
    r"^(foundation|kernel|meta|model|olap|mapping|report|directory|diagram|tools|tests|benchmarks|fuzz)/")
SOURCES = (".h", ".cpp")
SCRIPTS = (".sh", ".py", ".cmake", "CMakeLists.txt")
WORD = re.compile(r"[A-Za-z](?:[A-Za-z']*[A-Za-z])?")
# Words with a digit, an underscore, a capital or a sign such as a dot within, escapes, and options.
IDENTIFIER = re.compile(
    r"[@%$\\-]{0,2}\w*(?:[\d_]|\w[.:/\\@=+#~]+\w|[a-z][A-Z]|[A-Z]{2})[\w.:/\\@=+#~-]*(?:'s)?"
    r"|\\.|(?<!\w)--?[a-z][\w-]*")


def blanked(match):
    return re.sub(r"[^\n]", " ", match.group(0))


def without_code(text):
    """Replaces code by blanks, so that every place stays the same."""
    for code in (r"`[^`]*`", r"\]\([^)\s]*\)", r"<!--.*?-->", r"\b[a-z]+://\S+", r'"[^"\n]*"', r"\bU\+[0-9A-F]+"):
        text = re.sub(code, blanked, text, flags=re.DOTALL)
    return text


def document(text):
    text = re.sub(r"^```.*?^```$", blanked, text, flags=re.DOTALL | re.MULTILINE)
    text = re.sub(r"^    .*$", blanked, text, flags=re.MULTILINE)
    return without_code(text)


def comments(text, mark):
    """The text with all but its comments replaced by blanks."""
    literal = r'"(?:[^"\\\n]|\\.)*"'
    if mark == "//":
        literal = r'R"(?P<end>\w*)\((?s:.*?)\)(?P=end)"|' + literal + r"|'(?:[^'\\\n]|\\.)'"
    pattern = re.compile(rf"(?P<literal>{literal})|(?P<comment>{mark}(?! namespace )[^\n]*)")
    kept = []
    end = 0
    for match in pattern.finditer(text):
        if match.lastgroup == "comment":
            kept.append(re.sub(r"[^\n]", " ", text[end:match.start()]) + match.group(0))
            end = match.end()
    return without_code("".join(kept) + re.sub(r"[^\n]", " ", text[end:]))


def misspelt(words):
    """Those of the words that neither the dictionary nor docs/words.txt has."""
    aspell = ["aspell", "list", "--lang=en_GB-ise", "--encoding=utf-8", "--ignore=2", "--mode=none"]
    found = subprocess.run(aspell, input="\n".join(words), capture_output=True, text=True, check=True).stdout.split()
    known = {word.lower() for word in pathlib.Path("docs/words.txt").read_text().split("\n")}
    return {word for word in found if re.sub("'s$", "", word.lower()) not in known}


class Text:
    def __init__(self, path, prose):
        self.path = path
        self.prose = prose
        self.ends = [match.start() for match in re.finditer("\n", prose)]

    def place(self, offset):
        return f"{self.path}:{bisect.bisect_left(self.ends, offset) + 1}"

    def words(self):
        spoken = IDENTIFIER.sub(blanked, self.prose)
        return [(match.group(0), match.start()) for match in WORD.finditer(spoken)]


def texts():
    names = subprocess.run(["git", "ls-files"], capture_output=True, text=True, check=True).stdout.split("\n")
    for name in filter(None, names):
        path = pathlib.Path(name)
        if not path.is_file():
            continue
        if name.endswith(".md"):
            yield Text(name, document(path.read_text()))
        elif name.endswith(SOURCES) and HAND_WRITTEN.match(name) and not name.startswith("tests/generated/"):
            yield Text(name, comments(path.read_text(), "//"))
        elif name.endswith(SCRIPTS) or name in (".ci/run", ".ci/setup", "check", "demo"):
            yield Text(name, comments(path.read_text(), "#"))


def refused_phrases():
    """The pattern of each phrase of docs/phrases.txt, and what to write instead."""
    for line in pathlib.Path("docs/phrases.txt").read_text().split("\n"):
        if line and not line.startswith("#"):
            phrase, instead = line.split("=")
            yield re.compile(r"\b" + r"\s+".join(phrase.split()) + r"\b", re.IGNORECASE), instead.strip()


def phrases(text, refused):
    for pattern, instead in refused:
        for match in pattern.finditer(text.prose):
            said = " ".join(match.group(0).split())
            yield f"{text.place(match.start())}: \"{said}\": write {instead}"


def main():
    checked = list(texts())
    unknown = misspelt(sorted({word for text in checked for word, _ in text.words()}))
    refused = list(refused_phrases())
    problems = []
    for text in checked:
        problems += [f"{text.place(offset)}: {word} is misspelt, or missing in docs/words.txt"
                     for word, offset in text.words() if word in unknown]
        if text.path.endswith(".md"):
            problems += phrases(text, refused)
    print("\n".join(problems + [f"{len(checked)} texts, {len(problems)} problems"]))
    return 1 if problems or not checked else 0


sys.exit(main())
