#!/usr/bin/env python3
"""Reads the definition texts in a document by the program that draws them.

  check_documented_texts.py PROGRAM DOCUMENT

The first word behind the fence says what must become of a block; others are options of the program.
  fuzzy          it is read
  fuzzy-same     it is read, and its terms have the same curve in pairs
  fuzzy-error    it is refused
  fuzzy-warning  it is read, and something in it was hardly meant
A ```text block behind one of the last two has what is told, without the name of the file.
In a table of what is written and of advice, each row is such a text, or the body of a term, and is refused
with this advice.
A block that starts with a term stands for a part of the document's first block, behind the terms there.
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

BLOCK = re.compile(r"^```(fuzzy(?:-same|-error|-warning)?)(.*)\n((?:.*\n)*?)```\n(?:\n```text\n((?:.*\n)*?)```)?", re.M)
ADVICE = re.compile(r"^\| Written \| Advice \|\n.*\n((?:\|.*\n)*)", re.M)
ROW = re.compile(r"^\| `(.*)` \| (.*) \|$", re.M)
CURVE = re.compile(r'd="(.*?)" class="term')


def within(first, text):
    """A term behind the terms of the first block, or any other text as it is."""
    return first[:-2] + "\n" + text + "))" if text.startswith("(term") else text


def fault_of(program, kind, options, text, message, terms, folder):
    """What is wrong with a block, or nothing."""
    file, picture = Path(folder, "text.fzy"), Path(folder, "text.svg")
    file.write_text(text, encoding="utf-8")
    picture.unlink(missing_ok=True)
    result = subprocess.run([program, *options.split(), file, picture], capture_output=True,
                            encoding="utf-8", timeout=60, check=False)
    told = re.sub(f"^{re.escape(str(file))}:", "", result.stderr, flags=re.M)
    if kind in ("fuzzy-error", "fuzzy-warning"):
        refused = result.returncode == 2 and not picture.exists()
        if refused != (kind == "fuzzy-error") or not re.match(r"\d+:\d+: ", told):
            return "is not told of as it should be: " + result.stderr
        return None if message in (None, told) else "is told of otherwise: " + told
    if result.returncode != 0 or result.stderr:
        return result.stderr
    curves = CURVE.findall(picture.read_text(encoding="utf-8"))[-terms:]
    differ = kind == "fuzzy-same" and curves[0::2] != curves[1::2]
    return "has pairs that differ" if differ else None


def advice_on(program, text, folder):
    """The advice that a text is refused with, or all that is told."""
    file = Path(folder, "advised.fzy")
    file.write_text(text, encoding="utf-8")
    result = subprocess.run([program, file, Path(folder, "advised.svg")], capture_output=True,
                            encoding="utf-8", timeout=60, check=False)
    told = re.search(r": advice: (.*)\n\Z", result.stderr)
    return told[1] if told and result.returncode == 2 else result.stderr


def main(program, document):
    page = Path(document).read_text(encoding="utf-8")
    faults = [f"no file {link}" for link in re.findall(r"\]\(([^)#:]+)\)", page)
              if not Path(document).parent.joinpath(link).exists()]
    first = BLOCK.search(page)[3].rstrip()
    with tempfile.TemporaryDirectory() as folder:
        for block in BLOCK.finditer(page):
            kind, options, text, message = block.groups()
            whole = within(first, text)
            fault = fault_of(program, kind, options, whole, message, text.count("(term"), folder)
            if fault:
                faults.append(f"{document}:{page.count(chr(10), 0, block.start()) + 1}: {fault}")
        for text, advice in ROW.findall("".join(ADVICE.findall(page))):
            body = text if text.startswith(("(term", "(deffuzzy")) else f"(term x {text})"
            told = advice_on(program, within(first, body), folder)
            if told != advice:
                faults.append(f"{document}: {text} gets other advice: {told}")
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
