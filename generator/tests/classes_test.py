"""Tests of the class tables and of what is rendered from them.

good/ is a repository in miniature: tables, one exception unit and the files that must come of them. After a wanted
change of the rendering, run `python3 generator/generate.py generator/tests/good` and review what it changed.
bad/ holds what is wrong in a case, laid over the good tables, and the error that this must give.
"""

import contextlib
import io
import shutil
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "generator"))

import classes  # noqa: E402
import enumerations  # noqa: E402
import generate  # noqa: E402
import render_tests  # noqa: E402

GOOD = Path(__file__).resolve().parent / "good"
BAD = Path(__file__).resolve().parent / "bad"


def files_below(root):
    return {str(p.relative_to(root)): p.read_bytes() for p in sorted(root.rglob("*")) if p.is_file()}


class TreeTest(unittest.TestCase):
    """A test on a copy of the good tree."""

    def setUp(self):
        self.root = self.good_tree()

    def good_tree(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        root = Path(folder.name) / "tree"
        shutil.copytree(GOOD, root)
        return root

    def generate(self, root, *options):
        """Runs the generator; gives the exit code and what it wrote to both streams."""
        out, errors = io.StringIO(), io.StringIO()
        with mock.patch("sys.argv", ["generate.py", *options, str(root)]):
            with contextlib.redirect_stdout(out), contextlib.redirect_stderr(errors):
                code = generate.main()
        return code, out.getvalue(), errors.getvalue()


class GoodTablesTest(TreeTest):
    def test_rendering_gives_the_files_that_are_kept(self):
        kept = {path: data.decode() for path, data in files_below(GOOD).items() if "generated/" in path}
        made = generate.contents(GOOD)
        self.assertEqual(sorted(made), sorted(kept))
        for path, text in made.items():
            with self.subTest(path):
                self.assertEqual(text, kept[path])

    def test_everything_is_written_where_nothing_stands(self):
        expected = files_below(self.root)
        shutil.rmtree(self.root / "generated")
        shutil.rmtree(self.root / "tests")
        code, _, errors = self.generate(self.root)
        self.assertEqual((code, errors), (0, ""))
        self.assertEqual(files_below(self.root), expected)

    def test_a_file_that_is_up_to_date_is_not_written_again(self):
        code, out, _ = self.generate(self.root)
        self.assertEqual(code, 0)
        self.assertIn(" 0 written, 0 removed", out)

    def test_a_file_that_no_table_gives_is_removed(self):
        for path in ("generated/qor/QORLid.h", "tests/generated/LinkEnds9Test.cpp"):
            (self.root / path).write_text("// of an old table\n")
        code, out, _ = self.generate(self.root)
        self.assertEqual(code, 0)
        self.assertIn(" 0 written, 2 removed", out)
        self.assertEqual(files_below(self.root), files_below(GOOD))

    def test_check_accepts_what_is_up_to_date(self):
        self.assertEqual(self.generate(self.root, "--check"), (0, "", ""))

    def test_check_names_each_file_that_differs_and_repairs_none(self):
        (self.root / "generated/qor/QORBox.h").write_text("// edited\n")
        (self.root / "generated/model/QORShelf.cpp").unlink()
        (self.root / "tests/generated/LidTest.cpp").write_text("// of an old table\n")
        before = files_below(self.root)
        code, _, errors = self.generate(self.root, "--check")
        self.assertEqual(code, 1)
        self.assertEqual(
            sorted(errors.splitlines()),
            [
                "generate.py: generated/model/QORShelf.cpp is out of date",
                "generate.py: generated/qor/QORBox.h is out of date",
                "generate.py: tests/generated/LidTest.cpp is out of date",
            ],
        )
        self.assertEqual(files_below(self.root), before)

    def test_the_order_in_which_files_are_read_does_not_matter(self):
        (self.root / "diagram").mkdir()
        (self.root / "model/QORVase.toml").rename(self.root / "diagram/QORVase.toml")
        moved = generate.contents(self.root)
        source = moved.pop("generated/diagram/QORVase.cpp")
        expected = generate.contents(GOOD)
        self.assertEqual(source, expected.pop("generated/model/QORVase.cpp"))
        self.assertEqual(moved, expected)


class BadTablesTest(TreeTest):
    def test_each_case_is_refused_with_file_entry_and_reason_and_nothing_is_written(self):
        cases = sorted(path for path in BAD.iterdir() if path.is_dir())
        self.assertGreater(len(cases), 0)
        for case in cases:
            with self.subTest(case.name):
                self.check_case(case)

    def check_case(self, case):
        root = self.good_tree()
        shutil.copytree(case, root, dirs_exist_ok=True, ignore=shutil.ignore_patterns("expected"))
        # Files that a run would write and remove if it came to that.
        (root / "generated/qor/QORBox.h").unlink()
        (root / "generated/qor/QORShelf.h").write_text("// edited\n")
        (root / "generated/qor/QORLid.h").write_text("// of an old table\n")
        before = files_below(root)
        for options in ((), ("--check",)):
            code, out, errors = self.generate(root, *options)
            expected = (case / "expected").read_text()
            self.assertEqual(errors.replace(f"{root}/", ""), f"generate.py: {expected}")
            self.assertTrue(errors.startswith(f"generate.py: {root}/"))
            self.assertEqual((code, out), (2, ""))
            self.assertEqual(files_below(root), before)


class ManyEndsTest(TreeTest):
    """An object has one bit for each of its ends."""

    def link_vases_with_fluids(self, count):
        """Adds ends to two classes that have one end each from their base."""
        path = self.root / "meta/enumerations.toml"
        texts = [f'"{cls}{n}"' for n in range(count) for cls in ("VASE__FLUID", "FLUID__VASE")]
        table = path.read_text()
        path.write_text(table.replace('"BOX__CARRIES__BOX"]', f'"BOX__CARRIES__BOX", {", ".join(texts)}]'))
        self.assertNotEqual(path.read_text(), table)
        self.add_ends("QORVase", "fluid", "QORFluid.vase", "ref", [4 + 2 * n for n in range(count)])
        self.add_ends("QORFluid", "vase", "QORVase.fluid", "back-ref", [5 + 2 * n for n in range(count)])

    def add_ends(self, cls, role, far, kind, numbers):
        path = self.root / f"model/{cls}.toml"
        roles = [f'"{role}{n}"' for n in range(len(numbers))]
        table = path.read_text() + f"fields = [{', '.join(roles)}]\n"
        for n, number in enumerate(numbers):
            table += f'\n[[link]]\nid = {number}\nrole = "{role}{n}"\nkind = "{kind}"\nfar = "{far}{n}"\ndoc = "One."\n'
        path.write_text(table)

    def test_a_class_may_have_as_many_ends_as_there_are_bits(self):
        self.link_vases_with_fluids(classes.MAXIMAL_ENDS - 1)
        self.assertEqual(self.generate(self.root)[0], 0)
        metamodel = (self.root / "generated/kernel/QORMetamodel.cpp").read_text()
        self.assertIn("0x3fffffffffffffff", metamodel)

    def test_one_more_is_refused_in_one_line_and_nothing_is_written(self):
        self.link_vases_with_fluids(classes.MAXIMAL_ENDS)
        before = files_below(self.root)
        expected = (f"generate.py: {self.root}/model/QORFluid.toml: class: has 63 link ends with those of its bases; "
                    "62 is the limit\n")
        self.assertEqual(self.generate(self.root), (2, "", expected))
        self.assertEqual(files_below(self.root), before)


class RepositoryTest(unittest.TestCase):
    """The tables that this repository really uses."""

    @classmethod
    def setUpClass(cls):
        cls.model = classes.load(ROOT, enumerations.load(ROOT / "meta" / "enumerations.toml"))

    def numbers_without_entry(self, enumeration, entries):
        used = {entry.id for entry in entries}
        texts = self.model.enumerations[enumeration]
        return [text for number, text in enumerate(texts) if text and number not in used]

    def test_each_number_belongs_to_an_entry(self):
        attributes = [a for c in self.model.classes for a in c.attributes]
        self.assertEqual(self.numbers_without_entry("QORElementType", self.model.classes), [])
        self.assertEqual(self.numbers_without_entry("QORAssociationType", self.model.links), [])
        # These two have numbers for callers to store, and no record.
        self.assertEqual(self.numbers_without_entry("QORAttributeType", attributes),
                         ["OBJECT__ELEMENT_TYPE", "CONFIGURATION_FORMAT__FORMAT_TYPE"])

    def test_each_class_attribute_and_end_has_its_test(self):
        files = render_tests.render(self.model)
        tests = [line for text in files.values() for line in text.splitlines() if line.startswith("TEST(")]
        attributes = sum(len(c.attributes) for c in self.model.classes)
        self.assertEqual(len(tests), len(self.model.classes) + attributes + len(self.model.links))
        self.assertEqual(len(set(tests)), len(tests))

    def test_the_bits_of_ends_reach_up_to_the_first_one_with_another_use(self):
        recipe = (ROOT / "kernel/QORRecipe.h").read_text()
        self.assertIn(f"spare = std::uint64_t{{1}} << {classes.MAXIMAL_ENDS};", recipe)
        self.assertIn(f"lookAtEnds = std::uint64_t{{1}} << {classes.MAXIMAL_ENDS + 1};", recipe)

    def test_an_attribute_is_tested_on_a_class_that_takes_its_values(self):
        formats = self.model.by_name["QORFormat"]
        format_type = next(a for a in formats.attributes if a.name == "formatType")
        self.assertEqual(render_tests.concrete(self.model, formats).name, "QORConfigurationFormat")
        self.assertEqual(render_tests.settable(self.model, formats, format_type).name, "QORFileFormat")

    def test_a_record_is_made_after_those_of_its_bases_and_else_by_name(self):
        order = [c.name for c in render_tests.subclasses_in_order(self.model)["QORRelationship"]]
        self.assertEqual(
            order,
            ["QORAssociation", "QORDependency", "QORGeneralization", "QORRealization", "QORSQLViewAssociation"],
        )


if __name__ == "__main__":
    unittest.main()
