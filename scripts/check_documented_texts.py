#!/usr/bin/env python3
"""Reads the definition texts in a document by the program that draws them.

  check_documented_texts.py PROGRAM DOCUMENT

The first word behind the fence says what must become of a block; others are options of the program.
  fuzzy        it is read
  fuzzy-same   it is read, and its terms have the same curve in pairs
  fuzzy-error  it is refused in one line that names file and line; a ```text block behind it has the message
A block that starts with a term stands for a part of the document's first block, behind the terms there.
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

BLOCK = re.compile(r"^```(fuzzy(?:-same|-error)?)(.*)\n((?:.*\n)*?)```\n(?:\n```text\n(.*)\n```)?", re.M)
CURVE = re.compile(r'd="(.*?)" class="term')


def fault_of(program, kind, options, text, message, terms, folder):
    """What is wrong with a block, or nothing."""
    file, picture = Path(folder, "text.fzy"), Path(folder, "text.svg")
    file.write_text(text, encoding="utf-8")
    picture.unlink(missing_ok=True)
    result = subprocess.run([program, *options.split(), file, picture], capture_output=True,
                            encoding="utf-8", timeout=60, check=False)
    if kind == "fuzzy-error":
        told = re.fullmatch(re.escape(str(file)) + r":\d+: (.*)\n", result.stderr)
        if result.returncode != 2 or not told or picture.exists():
            return "is not refused as it should be: " + result.stderr
        return None if message in (None, told[1]) else "is refused otherwise: " + told[1]
    if result.returncode != 0:
        return result.stderr
    curves = CURVE.findall(picture.read_text(encoding="utf-8"))[-terms:]
    differ = kind == "fuzzy-same" and curves[0::2] != curves[1::2]
    return "has pairs that differ" if differ else None


def main(program, document):
    page = Path(document).read_text(encoding="utf-8")
    faults = [f"no file {link}" for link in re.findall(r"\]\(([^)#:]+)\)", page)
              if not Path(document).parent.joinpath(link).exists()]
    first = BLOCK.search(page)[3].rstrip()
    with tempfile.TemporaryDirectory() as folder:
        for block in BLOCK.finditer(page):
            kind, options, text, message = block.groups()
            whole = first[:-2] + "\n" + text + "))" if text.startswith("(term") else text
            fault = fault_of(program, kind, options, whole, message, text.count("(term"), folder)
            if fault:
                faults.append(f"{document}:{page.count(chr(10), 0, block.start()) + 1}: {fault}")
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
