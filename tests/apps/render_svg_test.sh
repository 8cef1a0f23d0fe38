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
# property list; the translucent background shows the holes go through it,
# scaled down (every path under a transform) and at its own size.
render_both sample "$EXAMPLES/sample.aspectratio"
render_both portrait "$EXAMPLES/portrait-binary.aspectratio"
render_both translucent "$EXAMPLES/sample.aspectratio" --background 'rgba(51,102,153,0.5)' --width 960
render_both translucent-full "$EXAMPLES/sample.aspectratio" --background 'rgba(51,102,153,0.5)'
grep -q '<mask' "$WORK/sample.svg" || fail "sample: clearing guides drew no mask"
! grep -q '<image' "$WORK/sample.svg" || fail "sample: an embedded bitmap"

for name in sample portrait translucent; do
  rsvg-convert "$WORK/$name.svg" -o "$WORK/$name.rsvg.png" || fail "$name: rsvg-convert refused it"
  expect_same_picture "$name, librsvg" "$WORK/$name.png" "$WORK/$name.rsvg.png"
done
chromium_screenshot "$WORK/sample.svg" "$WORK/sample.chromium.png" 1920 1080
expect_same_picture "sample, Chromium" "$WORK/sample.png" "$WORK/sample.chromium.png"
# Chromium versions differ in where they place the edges of thin strokes in
# a masked group under a transform, so it sees the picture at its own size.
chromium_screenshot "$WORK/translucent-full.svg" "$WORK/translucent.chromium.png" 1920 1080
expect_same_picture "translucent, Chromium" "$WORK/translucent-full.png" "$WORK/translucent.chromium.png"

# GUIDES clearing guides of varied ratios and translucent fills on a small
# canvas.
write_clearing_guides() { # DOCUMENT GUIDES
  "$PYTHON" - "$@" <<'PY'
import plistlib, sys
path, count = sys.argv[1], int(sys.argv[2])
# Colours from small palettes, each stored once: the file of 60,000 guides
# stays well under the reading limit.
strokes = [{"red": r / 2, "green": 0.5, "blue": 1.0, "alpha": 1.0} for r in range(3)]
fills = [{"red": 1.0, "green": g / 10, "blue": 0.0, "alpha": 0.5} for g in range(11)]
ratios = [{"id": "6B1F5E0C-3C7A-4E53-9B1D-2F6A0C8E4D11", "width": float(1 + i % 7), "height": float(1 + i % 5),
           "weight": 1.0, "color": strokes[i % 3], "fillColor": fills[i % 11]} for i in range(count)]
with open(path, "wb") as f:
    plistlib.dump({"size": {"width": 160.0, "height": 120.0, "margin": 4.0}, "ratios": ratios}, f,
                  fmt=plistlib.FMT_BINARY)
PY
}

svg_depth() { # SVG
  "$PYTHON" -c 'import sys, xml.etree.ElementTree as ET
depth = deepest = 0
for event, _ in ET.iterparse(sys.argv[1], events=("start", "end")):
    depth += 1 if event == "start" else -1
    deepest = max(deepest, depth)
print(deepest)' "$1"
}

# Each clear cuts everything before it, yet the file stays a few levels deep:
# XML readers refuse 256 levels, and a nesting per guide overflows the stack.
write_clearing_guides "$WORK/clears.aspectratio" 300
render_both clears "$WORK/clears.aspectratio"
xmllint --noout "$WORK/clears.svg" || fail "clears: xmllint refused the SVG"
depth=$(svg_depth "$WORK/clears.svg")
[ "$depth" -le 4 ] || fail "clears: elements nested $depth deep"
rsvg-convert "$WORK/clears.svg" -o "$WORK/clears.rsvg.png" || fail "clears: rsvg-convert refused it"
expect_same_picture "300 clearing guides, librsvg" "$WORK/clears.png" "$WORK/clears.rsvg.png"
write_clearing_guides "$WORK/many.aspectratio" 60000
"$VANTEL" render "$WORK/many.aspectratio" -o "$WORK/many.svg" || fail "60,000 clearing guides: no SVG"
[ "$(svg_depth "$WORK/many.svg")" -le 4 ] || fail "60,000 clearing guides: nested deeper than 4"

HOME="$WORK" inkscape --query-all "$WORK/sample.svg" >"$WORK/query" 2>"$WORK/inkscape.err" ||
  fail "inkscape --query-all: $(cat "$WORK/inkscape.err")"
grep -q '^svg[^,]*,0,0,1920,1080$' "$WORK/query" || fail "inkscape: no 1920 x 1080 root in $(head -3 "$WORK/query")"

# Standard output holds the document alone; --out-dir names it .svg.
"$VANTEL" render - -o - --format svg <"$EXAMPLES/sample.aspectratio" >"$WORK/stdout.svg" || fail "stdout"
cmp -s "$WORK/stdout.svg" "$WORK/sample.svg" || fail "-o - differs from the file"
"$VANTEL" render "$EXAMPLES/sample.aspectratio" --out-dir "$WORK/dir" --format SVG >/dev/null || fail "--out-dir"
[ -s "$WORK/dir/sample.svg" ] || fail "--out-dir wrote no sample.svg"
finish
