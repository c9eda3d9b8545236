"""Tests of the version that the generator takes over from CMakeLists.txt."""

import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "generator"))

import version  # noqa: E402
from enumerations import TableError  # noqa: E402


class VersionTest(unittest.TestCase):
    def load(self, text):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "CMakeLists.txt"
            path.write_text(text)
            return version.load(path)

    def test_is_that_of_the_project_and_not_of_anything_else(self):
        text = "cmake_minimum_required(VERSION 3.25.1)\nproject(A\n    VERSION 12.0.34\n    LANGUAGES CXX)\nf(VERSION 7.8.9 )\n"
        self.assertEqual(self.load(text), (12, 0, 34))

    def test_is_needed_in_three_numbers(self):
        for text in ("", "project(A LANGUAGES CXX)\n", "project(A VERSION 5.2 LANGUAGES CXX)\n",
                     "project(A LANGUAGES CXX)\nset(x VERSION 1.2.3 )\n"):
            with self.assertRaisesRegex(TableError, "needs VERSION and three numbers"):
                self.load(text)
        with self.assertRaisesRegex(TableError, "needs VERSION"):
            version.load(Path("/nonexistent/CMakeLists.txt"))

    def test_has_two_digits_for_minor_and_patch(self):
        self.assertEqual(self.load("project(A VERSION 5.99.99 LANGUAGES CXX)\n"), (5, 99, 99))
        for text in ("5.100.0", "5.0.100"):
            with self.assertRaisesRegex(TableError, "two digits"):
                self.load(f"project(A VERSION {text} LANGUAGES CXX)\n")

    def test_number_and_text_follow_from_it(self):
        header = version.render((6, 7, 8))["generated/qor/QORLibraryVersion.h"]
        for line in ("QOR_VERSION_MAJOR 6", "QOR_VERSION_MINOR 7", "QOR_VERSION_PATCH 8", "QOR_VERSION 60708",
                     'QOR_VERSION_STRING "6.7.8"'):
            self.assertIn(f"#define {line}\n", header)


if __name__ == "__main__":
    unittest.main()
