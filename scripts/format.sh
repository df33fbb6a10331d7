#!/usr/bin/env bash
# Formats the sources in place, or with --check only tells which are not formatted.
#   scripts/format.sh [--check] [FILE...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mode=(-i)
if [[ ${1:-} == --check ]]; then
    mode=(--dry-run --Werror)
    shift
fi

command -v clang-format >/dev/null || { echo "clang-format is not installed" >&2; exit 2; }

if (($#)); then
    files=("$@")
else
    # New files count too, unless they are ignored.
    mapfile -t files < <(git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp')
fi
((${#files[@]} == 0)) || clang-format "${mode[@]}" "${files[@]}"
