#!/bin/bash
# ASC framing decision lists drawn by `vantel render` and `vantel thumbnail`:
# each area's line starts exactly at the edge the file gives (at the recorded
# size and desqueezed), SVG and PDF show the same lines to librsvg and
# poppler, a list is a page of a PDF of several, a thumbnail shows every
# layer's colour, and a list with errors is refused with its first error and
# no output.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
export HERE
SAMPLE="$SOURCE_DIR/tests/data/fdl/A65_effective-area_wdesqueeze.fdl"  # fractional anchors, squeeze 0.9

# Just inside each edge of the framing (green) and effective (blue) areas the
# line's colour; just outside the framing, not green. PNG scaled to the file's
# canvas by its own size, so the same check serves every size.
edges_are_exact() { # NAME PNG
  "$PYTHON" - "$SAMPLE" "$2" <<'PY' || fail "$1: lines are not where the list puts them"
import json, math, os, sys
sys.path.insert(0, os.environ["HERE"])
from pngread import Image
canvas = json.load(open(sys.argv[1]))["contexts"][0]["canvases"][0]
image = Image(sys.argv[2])
sx, sy = image.width / canvas["dimensions"]["width"], image.height / canvas["dimensions"]["height"]
GREEN, BLUE = (0, 204, 102), (0, 102, 204)
def colour(x, y):
    r, g, b, a = image.rgba(x, y)
    return (r, g, b) if a > 200 else None
def near(got, want):
    return got is not None and all(abs(p - q) <= 40 for p, q in zip(got, want))
def check(anchor, size, want, outside):
    left, top = anchor["x"] * sx, anchor["y"] * sy
    right, bottom = left + size["width"] * sx, top + size["height"] * sy
    mid_x, mid_y = int((left + right) / 2), int((top + bottom) / 2)
    inside = [(math.ceil(left), mid_y), (math.floor(right) - 1, mid_y),
              (mid_x, math.ceil(top)), (mid_x, math.floor(bottom) - 1)]
    beyond = [(math.floor(left) - 1, mid_y), (math.ceil(right), mid_y),
              (mid_x, math.floor(top) - 1), (mid_x, math.ceil(bottom))]
    for x, y in inside:
        assert near(colour(x, y), want), (x, y, image.rgba(x, y), want)
    for x, y in beyond if outside else []:
        assert not near(colour(x, y), want), (x, y, image.rgba(x, y))
decision = canvas["framing_decisions"][0]
check(decision["anchor_point"], decision["dimensions"], GREEN, True)
check(canvas["effective_anchor_point"], canvas["effective_dimensions"], BLUE, False)
PY
}

size_is() { # PNG WIDTH HEIGHT
  "$PYTHON" -c 'import os, sys; sys.path.insert(0, os.environ["HERE"]); from pngread import Image
i = Image(sys.argv[1]); sys.exit((i.width, i.height) != (int(sys.argv[2]), int(sys.argv[3])))' "$@" ||
    fail "$1 is not $2 x $3"
}

expect_exit 0 "render" "$VANTEL" render "$SAMPLE" -o "$WORK/recorded.png"
size_is "$WORK/recorded.png" 6560 3100
edges_are_exact "recorded size" "$WORK/recorded.png"
expect_exit 0 "render --desqueeze" "$VANTEL" render "$SAMPLE" --desqueeze -o "$WORK/desqueezed.png"
size_is "$WORK/desqueezed.png" 5904 3100
edges_are_exact "desqueezed" "$WORK/desqueezed.png"

expect_exit 0 "render svg" "$VANTEL" render "$SAMPLE" --width 1640 -o "$WORK/chart.svg"
grep -q 'stroke-dasharray' "$WORK/chart.svg" || fail "svg: the protection line is not dashed"
rsvg-convert "$WORK/chart.svg" -o "$WORK/from-svg.png" || fail "rsvg-convert refused the SVG"
edges_are_exact "svg" "$WORK/from-svg.png"
expect_exit 0 "render pdf" "$VANTEL" render "$SAMPLE" --width 1640 -o "$WORK/chart.pdf"
pdftoppm -png -r 72 -singlefile "$WORK/chart.pdf" "$WORK/from-pdf" || fail "pdftoppm refused the PDF"
edges_are_exact "pdf" "$WORK/from-pdf.png"

expect_exit 0 "pdf pages" "$VANTEL" render "$SAMPLE" "$EXAMPLES/sample.aspectratio" -o "$WORK/pages.pdf"
pdfinfo "$WORK/pages.pdf" | grep -qE '^Pages: +2$' || fail "a list and an overlay are not two pages"

expect_exit 0 "thumbnail" "$VANTEL" thumbnail -s 256 "$SAMPLE" "$WORK/thumb"
"$PYTHON" - "$WORK/thumb" <<'PY' || fail "thumbnail lacks a layer colour"
import os, sys
sys.path.insert(0, os.environ["HERE"])
from pngread import Image
data = Image(sys.argv[1]).rgba_bytes()
seen = {tuple(data[i:i + 3]) for i in range(0, len(data), 4) if data[i + 3] == 255}
for layer in [(128, 128, 128), (0, 102, 204), (255, 153, 0), (0, 204, 102)]:
    assert layer in seen, layer
PY

"$PYTHON" - "$SAMPLE" "$WORK/broken.fdl" <<'PY'
import json, sys
fdl = json.load(open(sys.argv[1]))
fdl["contexts"][0]["canvases"][0]["dimensions"]["height"] = -1
json.dump(fdl, open(sys.argv[2], "w"))
PY
expect_exit 1 "broken list" "$VANTEL" render "$WORK/broken.fdl" -o "$WORK/broken.png"
expect_one_error_line "broken list" "$WORK/broken.fdl" 'error: contexts\[0\]\.canvases\[0\]\.dimensions\.height: '
[ ! -e "$WORK/broken.png" ] || fail "broken list: an output was written"
expect_exit 1 "unknown decision" "$VANTEL" render "$SAMPLE" --decision nope -o "$WORK/nope.png"
expect_one_error_line "unknown decision" "$SAMPLE" 'no framing decision "nope"'
finish
