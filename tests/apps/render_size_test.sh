#!/bin/bash
# `vantel render` at another size than the canvas: --width, --height, both
# (fitted, or filled with --stretch) and --zoom give the expected pixel or
# point sizes, the drawing is scaled as a whole, and bad sizes are usage
# errors that write nothing.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
SAMPLE="$EXAMPLES/sample.aspectratio"  # 1920 x 1080

expect_size() { # NAME FORMAT WIDTH HEIGHT OPTIONS...
  local name=$1 format=$2 width=$3 height=$4
  shift 4
  "$VANTEL" render "$SAMPLE" -o "$WORK/out.$format" "$@" 2>"$WORK/stderr" || fail "$name: $(cat "$WORK/stderr")"
  "$PYTHON" "$HERE/imagecheck.py" "$WORK/out.$format" "$format" "$width" "$height" || fail "$name"
}

expect_size "width alone" png 960 540 --width 960
expect_size "height alone" png 480 270 --height 270
expect_size "both, fitted" png 500 281 --width 500 --height 500
expect_size "both, stretched" png 500 500 --width 500 --height 500 --stretch
expect_size "zoom" jpeg 2880 1620 --zoom 1.5
expect_size "PDF page in points" pdf 960 540 --zoom 0.5

# Every format of one command has the same size, rounded the same way.
for format in png svg pdf; do
  expect_size "zoom 0.37 as $format" "$format" 710 400 --zoom 0.37
done

# Documents made here: WIDTH x HEIGHT canvases of N guides, as children of
# the first, or side by side with 1-px grids both ways.
make_document() { # FILE WIDTH HEIGHT N children|grids
  "$PYTHON" - "$@" <<'EOF'
import plistlib, sys
path, width, height, count, kind = sys.argv[1], float(sys.argv[2]), float(sys.argv[3]), int(sys.argv[4]), sys.argv[5]
def guide(**extra):
    return {"id": "6B1F5E0C-3C7A-4E53-9B1D-2F6A0C8E4D01", "width": 1.0, "height": 1.0, "weight": 2.0,
            "color": {"red": 1.0, "green": 0.0, "blue": 0.0, "alpha": 1.0}, **extra}
grid = {"pixels": {"_0": 1}}
ratios = ([guide(children=[guide()] * (count - 1))] if kind == "children"
          else [guide(rowType=grid, columnType=grid)] * count)
with open(path, "wb") as out:
    plistlib.dump({"size": {"width": width, "height": height, "margin": 0.0}, "ratios": ratios}, out,
                  fmt=plistlib.FMT_BINARY)
EOF
}

# Sizes apply before any limit: a canvas too large for one bitmap renders
# smaller, as a thumbnail, and as a vector page of its own size.
make_document "$WORK/wide.aspectratio" 30000 20000 1 children
SAMPLE="$WORK/wide.aspectratio" expect_size "30000 x 20000 at --width 1500" png 1500 1000 --width 1500
SAMPLE="$WORK/wide.aspectratio" expect_size "30000 x 20000 as PDF" pdf 30000 20000
expect_exit 0 "thumbnail of 30000 x 20000" "$VANTEL" thumbnail -s 256 "$WORK/wide.aspectratio" "$WORK/thumb.png"
"$PYTHON" "$HERE/imagecheck.py" "$WORK/thumb.png" png 256 171 || fail "thumbnail of 30000 x 20000"

# What would take minutes or gigabytes is refused at once as a usage error
# naming the numbers and the limit; drawn smaller, the same documents draw.
make_document "$WORK/crowd.aspectratio" 16384 16384 40001 children
make_document "$WORK/grids.aspectratio" 16384 16384 30 grids
expect_refused() { # NAME PATTERN FILE OPTIONS...
  local name=$1 pattern=$2 file=$3
  shift 3
  expect_exit 2 "$name" timeout 20 "$VANTEL" render "$file" -o "$WORK/refused.png" "$@"
  expect_one_error_line "$name" "$file" "$pattern"
  [ ! -e "$WORK/refused.png" ] || fail "$name: wrote an output"
}
expect_refused "40001 children at 16384" "40001 guides .* limit of [0-9]+" "$WORK/crowd.aspectratio"
expect_refused "1-px grids at 16384" "grid lines .* limit of [0-9]+" "$WORK/grids.aspectratio"
expect_refused "30000 x 20000 as one bitmap" "limit of [0-9]+ MiB" "$WORK/wide.aspectratio"
expect_refused "JPEG 2000 at 16384" "jpeg2000 needs about [0-9]+ MiB .* limit of [0-9]+ MiB" "$SAMPLE" \
  --width 16384 --format jpeg2000
expect_refused "32767 x 32767 stretched" "limit of [0-9]+ MiB" "$SAMPLE" --width 32767 --height 32767 --stretch
expect_refused "40000 px wide" "limit of 32767 px a side" "$SAMPLE" --width 40000
expect_exit 2 "SVG at zoom 1e300" "$VANTEL" render "$SAMPLE" -o "$WORK/huge.svg" --zoom 1e300
expect_one_error_line "SVG at zoom 1e300" "$SAMPLE" "svg is larger than the limit of 16777216 px a side"
[ ! -e "$WORK/huge.svg" ] || fail "SVG at zoom 1e300: wrote an output"
expect_exit 0 "thumbnail of 40001 children" "$VANTEL" thumbnail "$WORK/crowd.aspectratio" "$WORK/thumb.png"
SAMPLE="$WORK/grids.aspectratio" expect_size "1-px grids at 256" png 256 256 --width 256

# The same picture at another size: a document twice the sample's size
# drawn at the sample's width is the sample's own rendering.
"$PYTHON" "$SOURCE_DIR/bench/scale_document.py" "$SAMPLE" "$WORK/double.aspectratio" 2
"$VANTEL" render "$WORK/double.aspectratio" --width 1920 -o "$WORK/scaled.png"
"$VANTEL" render "$SAMPLE" -o "$WORK/native.png"
difference=$("$PYTHON" "$SOURCE_DIR/bench/png_difference.py" "$WORK/native.png" "$WORK/scaled.png" 8)
case $difference in
  "mean absolute difference 0.0"*"; 0.0"*) ;;
  *) fail "4K document at --width 1920 differs from the 1080p one: $difference" ;;
esac

for bad in "--width 0" "--zoom -1" "--height nan" "--stretch --width 10" "--zoom 2 --width 10"; do
  # shellcheck disable=SC2086  # the options are words
  status=0
  "$VANTEL" render "$SAMPLE" -o "$WORK/bad.png" $bad 2>"$WORK/stderr" || status=$?
  [ "$status" -eq 2 ] || fail "$bad: exit $status, expected 2"
  [ "$(wc -l <"$WORK/stderr")" -eq 1 ] || fail "$bad: not one line: $(cat "$WORK/stderr")"
  [ ! -e "$WORK/bad.png" ] || fail "$bad: wrote an output"
done
finish
