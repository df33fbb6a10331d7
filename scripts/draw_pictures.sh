#!/usr/bin/env bash
# Draws docs/pictures/*.svg anew, or with --check only tells which of them differ from what would be drawn.
#   scripts/draw_pictures.sh [--check] [PROGRAM]
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

check=false
if [[ ${1:-} == --check ]]; then
    check=true
    shift
fi
program=${1:-$top/build/release/examples/draw_terms/draw_terms}

drawn=$(mktemp -d)
trap 'rm -r "$drawn"' EXIT
status=0
for text in "$top"/docs/pictures/*.fzy; do
    name=$(basename "$text" .fzy).svg
    picture=$top/docs/pictures/$name
    "$program" "$text" "$drawn/$name"
    if ! $check; then
        cp "$drawn/$name" "$picture"
    elif ! cmp "$drawn/$name" "$picture"; then
        status=1
    fi
done
# A picture whose text is gone would never be looked at again.
for picture in "$top"/docs/pictures/*.svg; do
    [[ -e ${picture%.svg}.fzy ]] || { echo "$picture has no text" >&2; status=1; }
done
exit $status
