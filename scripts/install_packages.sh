#!/usr/bin/env bash
# Installs what building and testing need and this machine lacks. Ends with status 2 where it may not install.
set -euo pipefail

cxx=${CXX:-g++}

has_program() { command -v "$1" >/dev/null; }
has_header() {
    printf '#if !__has_include(<%s>)\n#error missing\n#endif\n' "$1" |
        "$cxx" -x c++ -E - >/dev/null 2>&1
}

# What is there is asked for by its use, not by its package: it may have come another way.
missing=()
has_program "$cxx" || missing+=(g++)
has_program cmake || missing+=(cmake)
has_program ninja || missing+=(ninja-build)
has_program python3 || missing+=(python3)
has_header gtest/gtest.h || missing+=(libgtest-dev)
has_header gmock/gmock.h || missing+=(libgmock-dev)
has_header benchmark/benchmark.h || missing+=(libbenchmark-dev)
has_header CLI/CLI.hpp || missing+=(libcli11-dev)

((${#missing[@]})) || exit 0

refuse() {
    echo "These packages are missing: ${missing[*]}" >&2
    echo "$1 Please install them by hand." >&2
    exit 2
}

has_program apt-get || refuse "There is no apt-get here."
as_root=()
if ((EUID != 0)); then
    { has_program sudo && sudo -n true 2>/dev/null; } || refuse "Installing them needs root."
    as_root=(sudo -n)
fi

echo "Installing ${missing[*]}"
"${as_root[@]}" apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends \
    -o DPkg::Lock::Timeout=120 -o Dpkg::Use-Pty=0 "${missing[@]}"
