"""What links.py finds and what it leaves alone."""

import tempfile
import unittest
from pathlib import Path

import links


class Links(unittest.TestCase):
    def broken(self, **files):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            for name, text in files.items():
                path = root / (name.replace("__", "/") + ".md")
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            return links.broken(root)

    def test_a_link_to_a_file_that_is_there_is_fine(self):
        self.assertEqual(self.broken(a="[b](docs/b.md)", docs__b="[a](../a.md)"), ([], 2))

    def test_a_link_to_no_file_is_found(self):
        self.assertEqual(self.broken(a="[b](b.md)")[0], ["a.md: b.md: there is no such file"])

    def test_a_reference_definition_is_a_link(self):
        self.assertEqual(self.broken(a="[text][b]\n\n[b]: b.md\n")[0], ["a.md: b.md: there is no such file"])

    def test_a_link_to_a_heading_is_fine(self):
        self.assertEqual(self.broken(a="[b](b.md#the-life-of-a-link)", b="## The life of a link\n"), ([], 1))

    def test_a_link_to_no_heading_is_found(self):
        self.assertEqual(self.broken(a="# Head\n[x](#tail)")[0], ["a.md: #tail: there is no such heading"])

    def test_the_second_heading_of_a_name_has_a_number(self):
        self.assertEqual(self.broken(a="# Same\n# Same\n[x](#same-1)")[0], [])

    def test_marks_and_code_in_a_heading_leave_their_text(self):
        self.assertEqual(self.broken(a="# `throw 1`, and why\n[x](#throw-1-and-why)")[0], [])

    def test_code_holds_no_links(self):
        self.assertEqual(self.broken(a="```\n[b](b.md)\n```\n`[c](c.md)`\n"), ([], 0))

    def test_an_address_is_no_relative_link(self):
        self.assertEqual(self.broken(a="[x](https://example.org/b.md) [y](mailto:a@b)"), ([], 0))

    def test_builds_are_left_alone(self):
        self.assertEqual(self.broken(build__a="[b](b.md)"), ([], 0))


if __name__ == "__main__":
    unittest.main()
