#!/usr/bin/env bash
# Checks everything: the structure of the sources, then all tests, once optimized and once under the sanitizers;
# then what several threads may do, under the thread sanitizer.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

scripts/install_packages.sh

scripts/check_layers.py --self-test
scripts/check_layers.py

for preset in release sanitize thread; do
    echo "== $preset"
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    # Thousands of passed cases would bury the failed ones and the summary.
    ctest --preset "$preset" --parallel "$(nproc)" | grep -vE '^ +Start +[0-9]+:|\.\. +Passed '
done
