#!/usr/bin/env python3
"""Checks the includes of the files under fuzzylogic/.

  check_layers.py [ROOT]        checks the repository (or ROOT), prints each fault as file:line
  check_layers.py --self-test   plants faults in a temporary tree and sees each one found

Rules:
  - a layer includes its own files and those of lower layers, never of a higher one;
  - no files include each other in a circle;
  - nothing in the library includes the umbrella header;
  - own files are included as "fuzzylogic/<layer>/<file>";
  - a public header includes no header of a detail/ folder, as those are not installed.
"""

import re
import sys
import tempfile
from pathlib import Path

TOP = "fuzzylogic"
LAYERS = ["framework", "common", "vocabulary", "engine", "model", "interfaces", "language"]
UMBRELLA = f"{TOP}/FuzzyLogic.h"
SUFFIXES = {".h", ".inc", ".cpp"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]*)[>"]')


def layer_of(name):
    """The layer's rank for 'fuzzylogic/engine/FuzzySet.h', None for a file outside the layers."""
    parts = name.split("/")
    return LAYERS.index(parts[1]) if len(parts) > 2 and parts[1] in LAYERS else None


def is_public_header(name):
    return name.endswith(".h") and "detail" not in name.split("/")


def read_includes(root):
    """Maps each file's name to its includes: (line, opening quote, target)."""
    files = {}
    for path in sorted((root / TOP).rglob("*")):
        if path.suffix in SUFFIXES:
            lines = path.read_text(encoding="utf-8").splitlines()
            found = ((number, INCLUDE.match(line)) for number, line in enumerate(lines, 1))
            name = path.relative_to(root).as_posix()
            files[name] = [(number, *match.groups()) for number, match in found if match]
    return files


def check_include(name, quote, target):
    """The fault of one include, or None."""
    parts = target.split("/")
    if quote == "<":
        return f'write "{target}": own files stand in quotes' if parts[0] == TOP else None
    if parts[0] != TOP or "." in parts or ".." in parts:
        return f'"{target}": own files are included by their full path, "{TOP}/<layer>/<file>"'
    if name == UMBRELLA:
        rank = len(LAYERS)
    else:
        rank = layer_of(name)
        if target == UMBRELLA:
            return "the umbrella header is for applications only"
    target_rank = layer_of(target)
    if target_rank is None:
        return f'"{target}" belongs to no layer'
    if rank is not None and target_rank > rank:
        return f'{LAYERS[rank]} must not include "{target}" of the higher layer {LAYERS[target_rank]}'
    if is_public_header(name) and not is_public_header(target):
        return f'a public header must not include "{target}", which is not installed'
    return None


def find_cycles(files):
    """Yields (name, line, circle) for each include that closes a circle."""
    done, path = set(), []

    def visit(name):
        path.append(name)
        for line, _, target in files[name]:
            if target in path:
                yield name, line, path[path.index(target):] + [target]
            elif target in files and target not in done:
                yield from visit(target)
        done.add(path.pop())

    for name in files:
        if name not in done:
            yield from visit(name)


def check(root):
    """All faults below root, as text lines."""
    files = read_includes(root)
    if not files:
        return [f"{TOP}/: no sources found"]
    faults = []
    for name, includes in files.items():
        if layer_of(name) is None and name != UMBRELLA:
            faults.append(f"{name}:1: belongs to no layer ({', '.join(LAYERS)})")
        for line, quote, target in includes:
            fault = check_include(name, quote, target)
            if fault:
                faults.append(f"{name}:{line}: {fault}")
    for name, line, circle in find_cycles(files):
        faults.append(f"{name}:{line}: includes in a circle: {' -> '.join(circle)}")
    return faults


SOUND_TREE = {
    "FuzzyLogic.h": ["<vector>", '"fuzzylogic/engine/Set.h"', '"fuzzylogic/language/Parser.h"'],
    "framework/Text.h": ["<string>"],
    "engine/Set.h": ['"fuzzylogic/framework/Text.h"'],
    "engine/Set.cpp": ['"fuzzylogic/engine/Set.h"', '"fuzzylogic/engine/detail/Walk.h"'],
    "engine/detail/Walk.h": ['"fuzzylogic/engine/Set.h"'],
    "language/Parser.h": ['"fuzzylogic/engine/Set.h"'],
}

# Each case: the planted files and the start of every fault they must bring.
PLANTED = [
    ({}, []),
    ({"engine/Set.h": ["<vector>", '"fuzzylogic/model/Variable.h"'], "model/Variable.h": []},
     ["fuzzylogic/engine/Set.h:2: engine must not include"]),
    ({"framework/Text.cpp": ['"fuzzylogic/language/Parser.h"']},
     ["fuzzylogic/framework/Text.cpp:1: framework must not include"]),
    ({"engine/A.h": ['"fuzzylogic/engine/B.h"'], "engine/B.h": ["", '"fuzzylogic/engine/C.h"'],
      "engine/C.h": ['"fuzzylogic/engine/A.h"']},
     ["fuzzylogic/engine/C.h:1: includes in a circle: fuzzylogic/engine/A.h -> fuzzylogic/engine/B.h"]),
    ({"engine/A.h": ['"fuzzylogic/engine/A.h"']}, ["fuzzylogic/engine/A.h:1: includes in a circle"]),
    ({"language/Reader.cpp": ['"fuzzylogic/FuzzyLogic.h"']},
     ["fuzzylogic/language/Reader.cpp:1: the umbrella"]),
    ({"engine/A.cpp": ['"Set.h"']}, ['fuzzylogic/engine/A.cpp:1: "Set.h": own files']),
    ({"engine/A.cpp": ['"engine/Set.h"']}, ['fuzzylogic/engine/A.cpp:1: "engine/Set.h": own files']),
    ({"engine/A.cpp": ['"fuzzylogic/engine/../model/Set.h"']},
     ['fuzzylogic/engine/A.cpp:1: "fuzzylogic/engine/../model/Set.h": own files']),
    ({"engine/A.cpp": ["<fuzzylogic/engine/Set.h>"]}, ["fuzzylogic/engine/A.cpp:1: write "]),
    ({"engine/A.h": ['"fuzzylogic/engine/detail/Walk.h"']},
     ["fuzzylogic/engine/A.h:1: a public header must not include"]),
    ({"FuzzyLogic.h": ['"fuzzylogic/engine/detail/Walk.h"']},
     ["fuzzylogic/FuzzyLogic.h:1: a public header must not include"]),
    ({"extra/A.h": []}, ["fuzzylogic/extra/A.h:1: belongs to no layer"]),
    ({"A.h": []}, ["fuzzylogic/A.h:1: belongs to no layer"]),
]


def self_test():
    """True when every planted fault is found, and nothing else."""
    sound = True
    for planted, expected in PLANTED:
        with tempfile.TemporaryDirectory() as directory:
            root = Path(directory)
            for name, includes in (SOUND_TREE | planted).items():
                path = root / TOP / name
                path.parent.mkdir(parents=True, exist_ok=True)
                text = "\n".join(target and f"#include {target}" for target in includes)
                path.write_text(text, encoding="utf-8")
            faults = check(root)
        if len(faults) != len(expected) or not all(map(str.startswith, faults, expected)):
            print(f"planted {planted}\n  expected {expected}\n  found {faults}", file=sys.stderr)
            sound = False
    return sound


def main(arguments):
    if arguments == ["--self-test"]:
        if not self_test():
            return 1
        print(f"check_layers: self-test of {len(PLANTED)} trees passed")
        return 0
    root = Path(arguments[0]) if arguments else Path(__file__).resolve().parent.parent
    faults = check(root)
    for fault in faults:
        print(fault, file=sys.stderr)
    print(f"check_layers: faults: {len(faults)}" if faults else "check_layers: includes are in order")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
