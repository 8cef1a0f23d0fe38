#!/usr/bin/env bash
# Whole-process comparison: `vantel render` to PNG against rsvg-convert drawing
# the equivalent plain SVG, at 1920x1080 and 3840x2160, plus peak memory.
# usage: bench/compare_rsvg.sh [BUILD_DIR]   (needs hyperfine and librsvg2-bin)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build}
vantel=$(cd "$build" && pwd)/apps/vantel/vantel
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for factor in 1 2; do
  doc=$work/doc-$factor.aspectratio
  /usr/bin/python3 "$here/scale_document.py" "$here/../examples/sample.aspectratio" "$doc" "$factor"
  /usr/bin/python3 "$here/overlay_to_svg.py" "$doc" "$work/doc-$factor.svg"
  label=$([ "$factor" = 1 ] && echo 1920x1080 || echo 3840x2160)
  echo "== $label"
  hyperfine --warmup 3 --runs 20 -N \
    -n "vantel render $label" "$vantel render $doc -o $work/vantel-$factor.png" \
    -n "rsvg-convert $label" "rsvg-convert $work/doc-$factor.svg -o $work/rsvg-$factor.png"
  for tool in "$vantel render $doc -o $work/vantel-$factor.png" \
              "rsvg-convert $work/doc-$factor.svg -o $work/rsvg-$factor.png"; do
    rss=$( { /usr/bin/time -f '%M' $tool; } 2>&1 | tail -1 )
    echo "peak memory ${rss} KiB: ${tool%% *}"
  done
done
