"""Tests of how many files a new attribute and a new link change: what belongs to others must stay as it is."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "generator"))

import classes  # noqa: E402
from classes_test import files_below  # noqa: E402

# What the generator reads and writes.
FOLDERS = (*classes.FOLDERS, "foundation/qor", "meta", "generated", "tests/generated")
# The files that may change, the edited tables included.
ATTRIBUTE_LIMIT = 8
TEXT_ATTRIBUTE_LIMIT = ATTRIBUTE_LIMIT + 1  # the descriptions hold where a class's texts lie
LINK_LIMIT = 12

ATTRIBUTE = """
[[attribute]]
id = {id}
name = "{name}"
type = "{type}"
default = "{default}"
doc = "For a test."
"""
LINK = """
[[link]]
id = {id}
role = "{role}"
kind = "{kind}"
far = "{far}"
{container}doc = "For a test."
"""
TREE = 'container = "QORPtrLinkTree"\n'


class GrowthTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        for each in FOLDERS:
            shutil.copytree(ROOT / each, self.root / each)
        shutil.copy(ROOT / "CMakeLists.txt", self.root)
        self.before = files_below(self.root)

    def add_text(self, enumeration, text):
        """Adds a text at the end of an enumeration; returns its number."""
        path = self.root / "meta/enumerations.toml"
        head, rest = path.read_text().split(f'name = "{enumeration}"', 1)
        texts, tail = rest.split("]", 1)
        path.write_text(f'{head}name = "{enumeration}"{texts}    "{text}",\n]{tail}')
        return texts.split("texts = [")[1].count('"') // 2

    def add_entry(self, cls, name, entry):
        """Adds an attribute or a link at the end of a class's table."""
        path = next(self.root.glob(f"*/{cls}.toml"))
        table = path.read_text()
        if "fields = [" in table:
            head, rest = table.split("fields = [", 1)
            listed, tail = rest.split("]", 1)
            table = f'{head}fields = [{listed.rstrip().rstrip(",")}, "{name}"]{tail}'
        else:
            head, *rest = table.split("\n\n", 1)
            table = "\n\n".join([f'{head.rstrip()}\nfields = ["{name}"]', *rest])
        path.write_text(table + entry)

    def add_attribute(self, cls, text, name, kind, default):
        number = self.add_text("QORAttributeType", text)
        self.add_entry(cls, name, ATTRIBUTE.format(id=number, name=name, type=kind, default=default))

    def add_link(self, near, far):
        """Adds a link between two ends, each a class, a text, a role, a kind and the lines of its container."""
        for (cls, text, role, kind, container), other in ((near, far), (far, near)):
            number = self.add_text("QORAssociationType", text)
            self.add_entry(cls, role, LINK.format(id=number, role=role, kind=kind, far=f"{other[0]}.{other[2]}",
                                                  container=container))

    def changed_files(self):
        """The files that differ after a run of the generator."""
        run = subprocess.run([sys.executable, "-B", ROOT / "generator/generate.py", self.root],
                             capture_output=True, text=True, check=False)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        after = files_below(self.root)
        return sorted(path for path in self.before.keys() | after.keys() if self.before.get(path) != after.get(path))

    def assert_changed(self, limit, *expected):
        changed = self.changed_files()
        for path in expected:
            self.assertIn(path, changed)
        self.assertLessEqual(len(changed), limit, "\n".join(changed))

    def test_the_copy_is_up_to_date(self):
        self.assertEqual(self.changed_files(), [])

    def test_a_new_number(self):
        self.add_attribute("QORIndex", "INDEX__TEST_NUMBER", "testNumber", "short", "0")
        self.assert_changed(ATTRIBUTE_LIMIT, "generated/qor/QORIndex.h", "generated/qor/QORAttributeType.h")

    def test_a_new_number_that_most_classes_inherit(self):
        self.add_attribute("QORElement", "ELEMENT__TEST_NUMBER", "testNumber", "short", "0")
        self.assert_changed(ATTRIBUTE_LIMIT, "generated/qor/QORElement.h")

    def test_a_new_text(self):
        self.add_attribute("QORIndex", "INDEX__TEST_TEXT", "testText", "QORString", "")
        self.assert_changed(TEXT_ATTRIBUTE_LIMIT, "generated/qor/QORIndex.h", "generated/kernel/QORMetamodel.cpp")

    def test_a_new_reference(self):
        self.add_link(("QORIndex", "INDEX__TEST__TRIGGER", "testTrigger", "ref", ""),
                      ("QORTrigger", "TRIGGER__TEST__INDEX", "testIndex", "back-ref", TREE))
        self.assert_changed(LINK_LIMIT, "generated/qor/QORIndex.h", "generated/qor/QORTrigger.h")

    def test_a_new_reference_that_most_classes_inherit(self):
        self.add_link(("QORElement", "ELEMENT__TEST__TRIGGER", "testTrigger", "ref", ""),
                      ("QORTrigger", "TRIGGER__TEST__ELEMENT", "testElement", "back-ref", TREE))
        self.assert_changed(LINK_LIMIT, "generated/qor/QORElement.h", "generated/qor/QORTrigger.h")

    def test_a_new_child(self):
        self.add_link(("QORIndex", "INDEX__TEST__STORED_PROCEDURE", "testStoredProcedure", "child", TREE),
                      ("QORStoredProcedure", "STORED_PROCEDURE__TEST__INDEX", "testIndex", "parent", ""))
        self.assert_changed(LINK_LIMIT, "generated/qor/QORIndex.h", "generated/qor/QORStoredProcedure.h")


if __name__ == "__main__":
    unittest.main()
