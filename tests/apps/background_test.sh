#!/bin/bash
# --background COLOR and --flatten [COLOR] on render and thumbnail take CSS
# colours: each form reaches the canvas corner pixel, every form `info
# --colors` writes is read back as the same colour, and text that is not a
# colour is bad usage (exit 2) quoting the text on one line, nothing written.
# --flatten leaves no transparent pixel, not even in the holes of guides
# that clear what is beneath.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
SAMPLE="$EXAMPLES/sample.aspectratio"
export HERE

pixels_are() { # PNG X Y R G B A [X Y R G B A...] (half-transparent pixels round through premultiplied storage)
  "$PYTHON" - "$@" <<'PY' || fail "$1: pixels differ"
import os, sys
sys.path.insert(0, os.environ["HERE"])
from pngread import Image
image, values = Image(sys.argv[1]), [int(v) for v in sys.argv[2:]]
bad = 0
for at in range(0, len(values), 6):
    x, y, *want = values[at:at + 6]
    got = image.rgba(x, y)
    if any(abs(a - b) > 2 for a, b in zip(got, want)):
        print(f"({x},{y}) is {got}, expected {tuple(want)}")
        bad = 1
sys.exit(bad)
PY
}

thumbnail_corner_is() { # COLOR R G B A
  "$VANTEL" thumbnail -s 32 "$SAMPLE" "$WORK/thumb.png" --background "$1" || fail "--background $1"
  pixels_are "$WORK/thumb.png" 0 0 "$2" "$3" "$4" "$5"
}
thumbnail_corner_is NAVY 0 0 128 255
thumbnail_corner_is ' #F80 ' 255 136 0 255
thumbnail_corner_is '#FF800080' 255 128 0 128
thumbnail_corner_is 'rgb(255,128,0)' 255 128 0 255
thumbnail_corner_is 'rgba(100%, 50%, 0%, 25%)' 255 128 0 64
thumbnail_corner_is 'hsl(240 100% 50% / 0.5)' 0 0 255 128
thumbnail_corner_is seashell 255 245 238 255
"$VANTEL" render "$SAMPLE" -o "$WORK/navy.png" --zoom 0.1 --background navy || fail "render --background navy"
pixels_are "$WORK/navy.png" 0 0 0 0 128 255

# What info writes, in each of its forms, is the document's own background.
for form in hex hex-alpha rgba; do
  text=$("$VANTEL" info --colors "$form" "$SAMPLE" | sed -n 's/^background *//p')
  thumbnail_corner_is "$text" 18 18 24 255
done

for text in '#GGGGGG' 'rgb(.)' 'rgba(,,,)' 'rgb(1.2.3)' 'rgb(1,2)' $'navy\nred'; do
  expect_exit 2 "--background $text" "$VANTEL" render "$SAMPLE" -o "$WORK/refused.png" --background "$text"
  expect_one_error_line "--background $text" "'${text//$'\n'/\\n}'" "is not a colour"
  [ ! -e "$WORK/refused.png" ] || fail "--background $text wrote an output"
done

# The sample's 16:9 guide clears what is beneath: without --flatten its inside
# is translucent, with it every pixel is opaque.
"$VANTEL" render "$SAMPLE" -o "$WORK/holes.png" --zoom 0.25 || fail "render --zoom 0.25"
pixels_are "$WORK/holes.png" 240 135 188 188 215 38
"$VANTEL" render "$SAMPLE" -o "$WORK/flat.png" --zoom 0.25 --flatten || fail "render --flatten"
"$VANTEL" render "$SAMPLE" -o "$WORK/pink.png" --zoom 0.25 --flatten=hotpink || fail "render --flatten=hotpink"
pixels_are "$WORK/pink.png" 240 135 245 117 185 255 0 0 18 18 24 255
"$VANTEL" thumbnail -s 64 "$SAMPLE" "$WORK/flat-thumb.png" --flatten black || fail "thumbnail --flatten black"
for image in "$WORK/flat.png" "$WORK/flat-thumb.png"; do
  "$PYTHON" -c 'import sys; sys.path.insert(0, sys.argv[1]); from pngread import Image
sys.exit(0 if set(Image(sys.argv[2]).rgba_bytes()[3::4]) == {255} else 1)' "$HERE" "$image" ||
    fail "$image has transparent pixels"
done
expect_exit 2 "--flatten before a document" "$VANTEL" render "$SAMPLE" -o "$WORK/flat3.pdf" --flatten "$SAMPLE"
expect_one_error_line "--flatten before a document" "'$SAMPLE' is not a colour" "write --flatten=COLOR"
expect_exit 2 "--flatten on svg" "$VANTEL" render "$SAMPLE" -o "$WORK/flat.svg" --flatten
expect_exit 2 "--flatten translucent" "$VANTEL" render "$SAMPLE" -o "$WORK/flat2.png" --flatten '#FFF8'
[ ! -e "$WORK/flat.svg" ] && [ ! -e "$WORK/flat2.png" ] || fail "a refused --flatten wrote an output"
finish
