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
