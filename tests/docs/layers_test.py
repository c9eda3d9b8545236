"""What docs/layers.py refuses in a small tree of sources."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent.parent / "docs"))
import layers

GOOD = {
    "foundation/qor/QORString.h": "",
    "kernel/QORRecipe.h": "#include <qor/QORString.h>\n#include <qor/QORElementType.h>\n",
    "generated/qor/QORElementType.h": "#include <qor/QORString.h>\n",
    "generated/qor/QORTypeValue.h": "#include <qor/QORString.h>\n",
    "generated/qor/QORTypeValueByPosition.h": "",
    "generated/model/QORTypeValue.cpp": '#include "kernel/QORRecipe.h"\n#include <qor/QORCube.h>\n',
    "generated/qor/QORCube.h": "#include <qor/QORTypeValue.h>\n",
    "model/QORTypeValue.toml": "",
    "olap/QORCube.toml": "",
    "tools/kit/Graph.h": "#include <qor/QORTypeValue.h>\n",
    "tools/database/Structure.h": '#include "kit/Graph.h"\n#include <vector>\n',
}


def write(root, files):
    for name, text in files.items():
        path = root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)


class Layers(unittest.TestCase):
    def survey(self, **files):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            write(root, {**GOOD, **files})
            return layers.survey(layers.Sources(root))

    def wrong(self, name, text):
        return self.survey(**{name: text})[1]

    def test_includes_along_the_layers_are_fine(self):
        edges, wrong = self.survey()
        self.assertEqual(wrong, [])
        self.assertIn(("kernel", "enumerations"), edges)
        self.assertIn(("generated", "olap"), edges)
        self.assertIn(("tools/database", "tools/kit"), edges)

    def test_an_include_of_a_higher_layer_is_refused(self):
        self.assertEqual(
            self.wrong("foundation/qor/QORDate.h", "#include <qor/QORTypeValue.h>\n"),
            ["foundation/qor/QORDate.h: foundation must not include model, as it does by generated/qor/QORTypeValue.h"],
        )

    def test_an_include_of_a_neighbour_in_the_row_is_refused(self):
        wrong = self.wrong("tools/diff/Matching.cpp", '#include "database/Structure.h"\n')
        self.assertEqual(len(wrong), 1)
        self.assertIn("tools/diff must not include tools/database", wrong[0])

    def test_the_library_must_not_include_a_tool(self):
        self.assertIn("olap must not include tools/kit", self.wrong("olap/QORCube.cpp", '#include "tools/kit/Graph.h"\n')[0])

    def test_a_tool_reads_public_headers_alone(self):
        self.assertEqual(
            self.wrong("tools/kit/Owners.cpp", '#include "kernel/QORRecipe.h"\n'),
            ["tools/kit/Owners.cpp: kernel/QORRecipe.h is no public header"],
        )

    def test_a_bare_name_is_that_of_a_neighbour(self):
        self.assertEqual(self.wrong("kernel/QORElement.cpp", '#include "QORRecipe.h"\n'), [])

    def test_a_part_without_a_row_is_named(self):
        self.assertIn("tools/new stands in no layer", self.wrong("tools/new/New.h", '#include "kit/Graph.h"\n')[0])

    def test_an_edge_is_drawn_unless_a_way_stands_for_it(self):
        edges = {("a", "b"), ("b", "c"), ("a", "c"), ("a", "d")}
        self.assertEqual(layers.reduced(edges), {("a", "b"), ("b", "c"), ("a", "d")})

    def test_a_picture_of_other_edges_is_seen(self):
        edges = {("tools/kit", "model")}
        self.assertTrue(layers.shows("<title>tools/kit&#45;&gt;model</title><title>model</title>", edges))
        self.assertFalse(layers.shows("<title>tools/kit&#45;&gt;meta</title>", edges))

    def test_the_program_wants_a_drawing_of_the_sources_as_they_are(self):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            write(root, GOOD)
            edges, _ = layers.survey(layers.Sources(root))
            self.assertIn("layers.dot is out of date", self.program(root))
            write(root, {"docs/layers.dot": layers.drawing(edges)})
            self.assertIn("layers.svg doesn't show", self.program(root))
            titles = "".join(f"<title>{a}&#45;&gt;{b}</title>" for a, b in layers.reduced(edges))
            write(root, {"docs/layers.svg": titles})
            self.assertEqual(self.program(root), "")
            write(root, {"tools/kit/Owners.cpp": "#include <qor/QORCube.h>\n"})
            self.assertIn("layers.dot is out of date", self.program(root))

    def program(self, root):
        """What the program says of a tree; nothing where it ends with 0."""
        run = subprocess.run([sys.executable, "-B", layers.__file__, root], capture_output=True, text=True)
        self.assertEqual(run.returncode == 0, run.stderr == "")
        return run.stderr


if __name__ == "__main__":
    unittest.main()
