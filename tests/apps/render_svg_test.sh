#!/bin/bash
# `vantel render` to SVG shows the picture the PNG shows: librsvg and
# Chromium rasterise it to (nearly) the command's own pixels, Inkscape reads
# it, and standard output carries the file and nothing else.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

# Mean absolute difference below 1 of 255 and at most 0.5 % of pixels off by
# more than 16: antialiasing of edges may differ between rasterisers, the
# picture may not.
expect_same_picture() { # NAME EXPECTED.png ACTUAL.png
  local result
  result=$("$PYTHON" "$SOURCE_DIR/bench/png_difference.py" "$2" "$3" 16) || { fail "$1: $result"; return; }
  echo "$1: $result"
  "$PYTHON" - "$result" <<'PY' || fail "$1: $result"
import re, sys
mean, share = map(float, re.findall(r"([0-9.]+)(?: of 255|% of pixels)", sys.argv[1]))
sys.exit(0 if mean < 1 and share <= 0.5 else 1)
PY
}

render_both() { # NAME DOCUMENT OPTIONS...
  local name=$1 document=$2
  shift 2
  "$VANTEL" render "$document" -o "$WORK/$name.png" "$@" || fail "$name: PNG"
  "$VANTEL" render "$document" -o "$WORK/$name.svg" "$@" || fail "$name: SVG"
}

chromium_screenshot() { # SVG PNG WIDTH HEIGHT
  chromium --headless --no-sandbox --disable-gpu --disable-background-networking --disable-component-update \
    --disable-sync --no-first-run --hide-scrollbars --force-device-scale-factor=1 \
    --default-background-color=00000000 --user-data-dir="$WORK/chromium" \
    --window-size="$3,$4" --screenshot="$2" "$(file_uri "$1")" >"$WORK/chromium.log" 2>&1 ||
    fail "chromium: $(tail -3 "$WORK/chromium.log")"
}

# The sample clears beneath its guides; the portrait one is a binary
# property list; the translucent background shows the holes go through it.
render_both sample "$EXAMPLES/sample.aspectratio"
render_both portrait "$EXAMPLES/portrait-binary.aspectratio"
render_both translucent "$EXAMPLES/sample.aspectratio" --background 'rgba(0.2,0.4,0.6,0.5)' --width 960
grep -q '<mask' "$WORK/sample.svg" || fail "sample: clearing guides drew no mask"
! grep -q '<image' "$WORK/sample.svg" || fail "sample: an embedded bitmap"

for name in sample portrait translucent; do
  rsvg-convert "$WORK/$name.svg" -o "$WORK/$name.rsvg.png" || fail "$name: rsvg-convert refused it"
  expect_same_picture "$name, librsvg" "$WORK/$name.png" "$WORK/$name.rsvg.png"
done
chromium_screenshot "$WORK/sample.svg" "$WORK/sample.chromium.png" 1920 1080
expect_same_picture "sample, Chromium" "$WORK/sample.png" "$WORK/sample.chromium.png"
chromium_screenshot "$WORK/translucent.svg" "$WORK/translucent.chromium.png" 960 540
expect_same_picture "translucent, Chromium" "$WORK/translucent.png" "$WORK/translucent.chromium.png"

HOME="$WORK" inkscape --query-all "$WORK/sample.svg" >"$WORK/query" 2>"$WORK/inkscape.err" ||
  fail "inkscape --query-all: $(cat "$WORK/inkscape.err")"
grep -q '^svg[^,]*,0,0,1920,1080$' "$WORK/query" || fail "inkscape: no 1920 x 1080 root in $(head -3 "$WORK/query")"

# Standard output holds the document alone; --out-dir names it .svg.
"$VANTEL" render - -o - --format svg <"$EXAMPLES/sample.aspectratio" >"$WORK/stdout.svg" || fail "stdout"
cmp -s "$WORK/stdout.svg" "$WORK/sample.svg" || fail "-o - differs from the file"
"$VANTEL" render "$EXAMPLES/sample.aspectratio" --out-dir "$WORK/dir" --format SVG >/dev/null || fail "--out-dir"
[ -s "$WORK/dir/sample.svg" ] || fail "--out-dir wrote no sample.svg"
finish
