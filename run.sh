#!/usr/bin/env bash
# Builds the air quality example and runs it on its own data.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

scripts/install_packages.sh

cmake --preset release
cmake --build --preset release --target air_quality

picture=build/air_quality.svg
build/release/examples/air_quality/air_quality \
    examples/air_quality/air_quality.fzy examples/air_quality/airquality.csv "$picture"
echo "The picture is in $picture"
