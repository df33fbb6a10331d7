#!/usr/bin/env python3
"""Stores and loads by the example in runs of their own, and holds the documents against them.

  test_stored_form.py PROGRAM DOCUMENT
"""

import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

README = Path(__file__).parent / "README.md"


def quotes(document, kind):
    return re.findall(rf"```{kind}\n(.*?)```", document.read_text(encoding="utf-8"), re.S)


class StoredForm(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.form = self.folder / "heating.form"
        self.stored = self.run_with("store", "heating.form")

    def run_with(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], cwd=self.folder, capture_output=True,
                              encoding="utf-8", timeout=60, check=False)

    def check_quotes(self, document, kind, text):
        """Every line of each quote stands in the text, in that order; "..." stands for others."""
        for quote in quotes(document, kind):
            lines = iter(text.splitlines())
            for line in quote.splitlines():
                if line != "...":
                    self.assertIn(line, lines)

    def test_nothing_changes(self):
        loaded = self.run_with("load", "heating.form")
        self.assertEqual((self.stored.returncode, loaded.returncode), (0, 0))
        self.assertEqual(loaded.stdout, self.stored.stdout)
        self.assertIn("the same to the last byte", loaded.stderr)
        self.check_quotes(README, "text", loaded.stdout)
        self.check_quotes(DOCUMENT, "form", self.form.read_text(encoding="utf-8"))

    def test_documented_faults(self):
        form = self.form.read_text(encoding="utf-8")
        faults = re.findall(r"^\| `((\w+) = [^`]*)`.*? \| (Stored form, .*) \|$",
                            DOCUMENT.read_text(encoding="utf-8"), re.M)
        self.assertEqual(len(faults), 5)
        for line, name, message in faults:
            name = {"Treshold": "Threshold"}.get(name, name)
            self.form.write_text(re.sub(rf"\b{name} = .*", line, form, count=1), encoding="utf-8")
            result = self.run_with("load", "heating.form")
            self.assertEqual((result.returncode, result.stdout, result.stderr),
                             (2, "", f"heating.form: {message}\n"))

    def test_files(self):
        for command in ("store", "load"):
            for file in (".", "none/heating.form"):
                result = self.run_with(command, file)
                self.assertEqual((result.returncode, result.stdout), (2, ""))
                self.assertRegex(result.stderr, r"\A\S+: Cannot (read|write) .*\n\Z")
        self.assertEqual([path.name for path in self.folder.iterdir()], ["heating.form"])


if __name__ == "__main__":
    DOCUMENT = Path(sys.argv.pop(2)).resolve()
    PROGRAM = str(Path(sys.argv.pop(1)).resolve())
    unittest.main()
