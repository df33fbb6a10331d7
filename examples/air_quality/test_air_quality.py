#!/usr/bin/env python3
"""Runs the air quality example on its own data and on faulty input.

  test_air_quality.py PROGRAM
"""

import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

HERE = Path(__file__).parent
DEFINITION = (HERE / "air_quality.fzy").read_text(encoding="utf-8")
DATA = (HERE / "airquality.csv").read_text(encoding="utf-8")
DAY = re.compile(r"^\w{3} [ \d]\d +(\S+) +(\S+) +(\S+) +(\S+) +(\S+) +\d\.\d\d  .* -> \w+$")


def changed(text, old, new):
    assert text.count(old) == 1, f"{old!r} stands {text.count(old)} times in the text"
    return text.replace(old, new)


def ranks(values):
    return [sum(w < v for w in values) + (sum(w == v for w in values) + 1) / 2 for v in values]


def correlation(a, b):
    mean_a, mean_b = sum(a) / len(a), sum(b) / len(b)
    products = sum((x - mean_a) * (y - mean_b) for x, y in zip(a, b))
    squares = sum((x - mean_a) ** 2 for x in a) * sum((y - mean_b) ** 2 for y in b)
    return products / squares**0.5


# A term by an expression, which leaves sets in its variable that are no terms; and a variable that
# no rule names, before the others.
EXPRESSION = changed(DEFINITION, "(s 81 92)", "very [not warm and not mild]")
ANOTHER = "(deffuzzy rain (range 0 100) (values (term none (z 0 1)) (term some not none)))\n"

# Runs that are to agree to the letter.
MIN_MAX = [("--methods", "min-max"), ("--model", "interface"),
           ("--model", "interface", "--methods", "min-max")]
MODELS = [("--model", "class"), ("--model", "interface")]

# What is wrong, the definition text, the data, the message.
FAULTS = [
    ("an empty definition", "", DATA, "d.fzy:1: the text ends without the variable temperature"),
    ("an unclosed definition", DEFINITION.rstrip()[:-1], DATA,
     "d.fzy:37: Parsing Error, .* at line 37"),
    ("an unknown word", changed(DEFINITION, "(s 81 92)", "very torrid"), DATA,
     "d.fzy:15: Parsing Error, Invalid item in fuzzy expression: torrid"),
    ("a shape backwards", changed(DEFINITION, "(s 81 92)", "(s 92 81)"), DATA, "d.fzy:15: .*92"),
    ("an unknown shape", changed(DEFINITION, "(s 81 92)", "(q 81 92)"), DATA,
     "d.fzy:15: .*Unknown function"),
    ("a missing variable", DEFINITION.replace("deffuzzy wind", "deffuzzy gale"), DATA,
     "d.fzy:38: the text ends without the variable wind"),
    ("a missing term", changed(DEFINITION, "term hot", "term torrid"), DATA,
     "d.fzy:15: the variable temperature, which ends here, lacks the term hot, which the rules name"),
    ("a reserved word", changed(DEFINITION, "term calm", "term very"), DATA, "d.fzy:19: .*very"),
    ("an empty range", changed(DEFINITION, "range 0 25", "range 25 25"), DATA,
     "d.fzy:21: the variable wind, which ends here, has an empty range"),
    ("a term twice", changed(DEFINITION, "term hot", "term mild (s 1 2)) (term hot"), DATA,
     "d.fzy:15: .*the term mild is defined twice"),
    ("a variable twice", changed(DEFINITION, "deffuzzy solar", "deffuzzy wind"), DATA,
     "d.fzy:26: .*the variable wind is defined twice"),
    ("empty data", DEFINITION, "",
     'd.csv:1: expected the header "ozone,solar.r,wind,temp,month,day"'),
    ("no header", DEFINITION, DATA.partition("\n")[2], "d.csv:1: expected the header"),
    ("no days", DEFINITION, DATA.partition("\n")[0], "d.csv:1: there are no days below the header"),
    ("a missing column", DEFINITION, changed(DATA, "18,313,11.5,62,5,4", "18,313,11.5,62,5"),
     "d.csv:5: expected 6 columns, found 5"),
    ("an empty line", DEFINITION, changed(DATA, "\n18,313,11.5,62,5,4", "\n"),
     "d.csv:5: expected 6 columns, found 1"),
    ("a word", DEFINITION, changed(DATA, "18,313,11.5,62,5,4", "18,sunny,11.5,62,5,4"),
     'd.csv:5: solar.r is not a number: "sunny"'),
    ("half a number", DEFINITION, changed(DATA, "18,313,11.5,62,5,4", "18,313,11.5mph,62,5,4"),
     'd.csv:5: wind is not a number: "11.5mph"'),
    ("not a number", DEFINITION, changed(DATA, "18,313,11.5,62,5,4", "nan,313,11.5,62,5,4"),
     'd.csv:5: ozone is not a number: "nan"'),
    ("a month too many", DEFINITION, changed(DATA, "18,313,11.5,62,5,4", "18,313,11.5,62,13,4"),
     "d.csv:5: there is no month 13"),
    ("a day too many", DEFINITION, changed(DATA, "18,313,11.5,62,5,4", "18,313,11.5,62,6,31"),
     "d.csv:5: there is no day 31 in month 6"),
    ("a day twice", DEFINITION, changed(DATA, "18,313,11.5,62,5,4", "18,313,11.5,62,5,3"),
     "d.csv:5: the day does not come after that of the line before"),
    ("another unit", DEFINITION, changed(DATA, "18,313,11.5,62,5,4", "18,313,11.5,16.7,5,4"),
     "d.csv:5: the reading lies outside the range of temperature: 16.7"),
]


class AirQuality(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def run_on(self, definition, data, *options):
        (self.folder / "d.fzy").write_text(definition, encoding="utf-8")
        (self.folder / "d.csv").write_text(data, encoding="utf-8")
        return self.run_with("d.fzy", "d.csv", "p.svg", *options)

    def run_with(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], cwd=self.folder, capture_output=True,
                              encoding="utf-8", timeout=60, check=False)

    def days(self, output):
        """The columns of each day, numbers or None."""
        found = filter(None, map(DAY.match, output.splitlines()))
        return [[None if x == "-" else float(x) for x in day.groups()] for day in found]

    def check_refused(self, result, message):
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stdout, "")
        told, *advice = result.stderr.splitlines()
        place = re.match(r"d\.fzy:\d+:\d+: |", told)[0]
        self.assertRegex(re.sub(r"\A(d\.fzy:\d+):\d+:", r"\1:", told), r"\A" + message)
        self.assertLessEqual(len(advice), 1)
        self.assertTrue(all(place and line.startswith(place + "advice: ") for line in advice))
        left = {path.name for path in self.folder.iterdir()}
        self.assertLessEqual(left, {"d.fzy", "d.csv"})

    def check_figures(self, result):
        """Of the summary, by the lines above it."""
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        days = self.days(result.stdout)
        self.assertEqual(len(days), 153)
        complete = [day for day in days if None not in day]
        self.assertEqual(len(complete), 111)
        inferred = [day[3] for day in complete]
        measured = [day[4] for day in complete]

        error = re.search(r"mean absolute error +(\S+) ppb", result.stdout)[1]
        expected = sum(abs(x - y) for x, y in zip(inferred, measured)) / len(complete)
        self.assertAlmostEqual(float(error), expected, delta=0.1)
        measured = ranks(measured)
        rank, alone = re.search(r"rank correlation +(\S+) +\((\S+) ", result.stdout).groups()
        self.assertAlmostEqual(float(rank), correlation(ranks(inferred), measured), delta=0.002)
        temperature = ranks([day[0] for day in complete])
        self.assertAlmostEqual(float(alone), correlation(temperature, measured), delta=0.0005)
        self.assertGreater(float(rank), float(alone))

    def test_figures_follow_from_the_lines(self):
        for options in MODELS:
            with self.subTest(options):
                self.check_figures(self.run_on(DEFINITION, DATA, *options))

    def test_models_agree(self):
        additive = self.run_on(DEFINITION, DATA)
        self.assertEqual(self.run_on(DEFINITION, DATA, "--methods", "additive", "--model",
                                     "class").stdout, additive.stdout)
        for definition in (DEFINITION, EXPRESSION, ANOTHER + DEFINITION):
            results = []
            for options in MIN_MAX:
                result = self.run_on(definition, DATA, "--write", "e.fzy", *options)
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                results.append((result.stdout, (self.folder / "p.svg").read_bytes(),
                                (self.folder / "e.fzy").read_bytes()))
            self.assertEqual(results, results[:1] * len(results))
            self.assertNotEqual(results[0][0], additive.stdout)

    def test_readme_quotes_the_output(self):
        readme = (HERE / "README.md").read_text(encoding="utf-8")
        quotes = re.findall(r"```text\n(.*?)```", readme, re.S)
        self.assertEqual(len(quotes), len(MODELS))
        for quoted, options in zip(quotes, MODELS):
            output = self.run_on(DEFINITION, DATA, *options).stdout
            for line in quoted.splitlines():
                if line != "...":
                    self.assertIn(line + "\n", output)

    def test_picture_shows_terms_and_season(self):
        for options in MODELS:
            self.run_on(EXPRESSION, DATA, *options)
            picture = ElementTree.parse(self.folder / "p.svg").getroot()
            texts = list(picture.iter("{http://www.w3.org/2000/svg}text"))
            terms = [element.text for element in texts if "label" in element.get("class")]
            self.assertEqual(terms, re.findall(r"\(term (\w+)", EXPRESSION))
            names = {"temperature, °F", "solar, Langley", "May", "September"}
            self.assertLessEqual(names, {element.text for element in texts})
            dots = list(picture.iter("{http://www.w3.org/2000/svg}circle"))
            self.assertEqual(len(dots), 153 - 37 + 1)  # the measured days, and one in the legend

    def test_rewritten_definition_gives_the_same(self):
        for definition in (DEFINITION, EXPRESSION):
            for options in MODELS:
                output = self.run_on(definition, DATA, "--write", "e.fzy", *options).stdout
                rewritten = (self.folder / "e.fzy").read_text(encoding="utf-8")
                self.assertNotEqual(rewritten, definition)
                again = self.run_with("e.fzy", "d.csv", "p.svg", "--write", "f.fzy", *options)
                self.assertEqual(again.stdout, output)
                self.assertEqual((self.folder / "f.fzy").read_text(encoding="utf-8"), rewritten)

    def test_stored_form_takes_the_place_of_the_text(self):
        for options in (*MODELS, *MIN_MAX):
            with self.subTest(options):
                first = self.run_on(EXPRESSION, DATA, "--store", "a.form", *options)
                picture = (self.folder / "p.svg").read_bytes()
                form = (self.folder / "a.form").read_text(encoding="utf-8")
                self.assertEqual(self.run_on(form, DATA, "--store", "b.form", *options).stdout,
                                 first.stdout)
                self.assertEqual((self.folder / "p.svg").read_bytes(), picture)
                self.assertEqual((self.folder / "b.form").read_text(encoding="utf-8"), form)
                for name in ("a.form", "b.form", "p.svg"):
                    (self.folder / name).unlink()
                self.check_refused(self.run_on(changed(form, "Threshold = 0.05\n  Parser",
                                                       "Threshold = none\n  Parser"), DATA, *options),
                                   r"d.fzy:\d: Stored form, line \d, \w+.Threshold: expected a number")

    def test_missing_readings(self):
        data = DATA.partition("\n")[0] + "\r\nNA,NA,NA,NA,5,1\r\nNA,NA,14,95,5,3\r\n"
        for options in MODELS:
            output = self.run_on(DEFINITION, data, *options).stdout
            self.assertRegex(output, r"May  1 +- +- +- +- +- +no rule fired\n")
            self.assertRegex(output,
                             r"May  3 +95 +14.0 +- +\d+\.\d +- +1.00  hot, windy -> elevated\n")
            self.assertRegex(output, r"1 of 2 days inferred by \d+ rules, 0 of them complete")
            self.assertRegex(output, r"rank correlation +- ")

    def test_faults(self):
        for what, definition, data, message in FAULTS:
            with self.subTest(what):
                first, second = (self.run_on(definition, data, *options) for options in MODELS)
                self.check_refused(first, message)
                self.check_refused(second, message)
                self.assertEqual(second.stderr, first.stderr)

    def test_arguments(self):
        self.run_on(DEFINITION, DATA)
        (self.folder / "p.svg").unlink()
        faults = [
            (("none.fzy", "d.csv", "p.svg"), "none.fzy: cannot be opened"),
            (("d.fzy", "none.csv", "p.svg"), "none.csv: cannot be opened"),
            (("d.fzy", ".", "p.svg"), ".: is a directory"),
            (("d.fzy", "d.csv", "none/p.svg"), "none/p.svg: cannot be written"),
            (("d.fzy", "d.csv", "/dev/null"), "/dev/null: is not a regular file"),
            (("d.fzy", "d.csv", "d.csv"), "d.csv: is read"),
            (("d.fzy", "d.csv", "p.svg", "more"), "air_quality: "),
            (("--model", "other"), "air_quality: --model: other"),
            (("--methods", "other"), "air_quality: --methods: other"),
            (("--model", "interface", "--methods", "additive"),
             "air_quality: --methods additive: the interface model always infers by min-max"),
        ]
        for arguments, message in faults:
            with self.subTest(message):
                self.check_refused(self.run_with(*arguments), message)

    def test_help(self):
        result = self.run_with("--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        for name in ("definition", "data", "picture", "--write", "--model", "--methods"):
            self.assertIn(name, result.stdout)


if __name__ == "__main__":
    PROGRAM = str(Path(sys.argv.pop(1)).resolve())
    unittest.main()
