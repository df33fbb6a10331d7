#!/usr/bin/env bash
# Runs clang-tidy over the sources as the release preset compiles them; a finding is a failure.
#   scripts/tidy.sh [FILE.cpp...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

command -v clang-tidy >/dev/null || { echo "clang-tidy is not installed" >&2; exit 2; }

cmake --preset release >/dev/null

if (($#)); then
    files=("$@")
else
    mapfile -t files < <(git ls-files --cached --others --exclude-standard -- \
        fuzzylogic/'*.cpp' tests/'*.cpp' bench/'*.cpp' examples/'*.cpp' ':!tests/package')
fi
# What clang-tidy counts in the system's headers and then does not show says nothing.
printf '%s\0' "${files[@]}" |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet --warnings-as-errors='*' -p build/release \
        2> >(grep -vE '^[0-9]+ warnings? (generated|treated as error)' >&2)
