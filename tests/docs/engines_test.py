"""What engines.py refuses in a small tree of sources."""

import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import engines

GOOD = {
    "tools/lamp/LampDialect.cpp": 'char const* name = "lamp";\n',
    "tools/database/Dialect.cpp": "",
    "tools/qor/Sources.cpp": '#include "lamp/LampSource.h"\n        lamp::lampSource(),\n',
    "tools/qor/Dialects.cpp": '#include "lamp/LampDialect.h"\n        &lamp::lampDialect(),\n',
    "tools/qor/ShowVerb.cpp": '    "\\nExample:\\n  qor show orchard.lamp"\n',
    "tools/kit/Graph.cpp": "// as Lamp does\n/* and lamps\n do */ int x = '\"'; // lamp\n",
    "completions/qor.bash": "words='a b'\n",
}


class Engines(unittest.TestCase):
    def survey(self, files):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            for name, text in {**GOOD, **files}.items():
                path = root / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            return engines.survey(root)

    def wrong(self, name, text):
        return self.survey({name: text})

    def test_folder_of_the_engine_comments_lists_and_examples_may_name_it(self):
        self.assertEqual(self.survey({}), [])

    def test_code_and_texts_elsewhere_must_not_name_it(self):
        self.assertEqual(
            self.wrong("tools/kit/Graph.cpp", "// lamp\nbool isLamp;\n"),
            ["tools/kit/Graph.cpp:2: names the engine lamp: bool isLamp;"],
        )
        for text in ('x == "LAMP"', '#include "lamp/LampSource.h"', '"// lamp"', "/* */ lamp::x();"):
            self.assertEqual(len(self.wrong("tools/database/Dialect.cpp", text)), 1, text)

    def test_another_engine_must_not_name_it(self):
        wrong = self.wrong("tools/candle/CandleDialect.cpp", "char const* other = \"lamp\";\n")
        self.assertEqual(len(wrong), 1)

    def test_lists_hold_one_line_for_each_and_its_include(self):
        for text in ("lamp::load(source);", "lamp::lampSource(), lamp::lampSource(),", '#include "lamp/LampReader.h"'):
            self.assertEqual(len(self.wrong("tools/qor/Sources.cpp", text)), 1, text)

    def test_help_without_an_example_and_completion_must_not_name_it(self):
        self.assertEqual(len(self.wrong("tools/qor/ShowVerb.cpp", '"a lamp or a graph"')), 1)
        self.assertEqual(len(self.wrong("completions/qor.bash", "words='lamp'\n")), 1)

    def test_a_tree_without_engines_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(engines.survey(Path(folder)), ["no engine found"])


if __name__ == "__main__":
    unittest.main()
