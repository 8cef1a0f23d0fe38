#!/bin/bash
# --background COLOR on render and thumbnail: each colour text form reaches the
# canvas corner pixel; text that would silently become black is bad usage
# (exit 2) naming the text, with nothing written.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
SAMPLE="$EXAMPLES/sample.aspectratio"

corner_is() { # PNG R G B A (half-transparent pixels round through premultiplied storage)
  "$PYTHON" - "$@" <<'PY' || fail "$1: corner pixel is not ($2,$3,$4,$5)"
import sys
import os; sys.path.insert(0, os.environ["HERE"])
from pngread import Image
want = [int(v) for v in sys.argv[2:6]]
got = Image(sys.argv[1]).rgba(0, 0)
sys.exit(0 if all(abs(a - b) <= 2 for a, b in zip(got, want)) else (print(got) or 1))
PY
}
export HERE

"$VANTEL" render "$SAMPLE" -o "$WORK/navy.png" --background navy || fail "render --background navy"
corner_is "$WORK/navy.png" 0 0 128 255
"$VANTEL" render "$SAMPLE" -o "$WORK/hex.png" --background '#FF800080' || fail "render --background #FF800080"
corner_is "$WORK/hex.png" 255 128 0 128
"$VANTEL" thumbnail -s 64 "$SAMPLE" "$WORK/thumb.png" --background 'rgba(0.2,0.4,0.6,0.5)' ||
  fail "thumbnail --background rgba()"
corner_is "$WORK/thumb.png" 51 102 153 128

for text in Navy '#FFF' 'rgb()'; do
  status=0
  "$VANTEL" render "$SAMPLE" -o "$WORK/refused.png" --background "$text" 2>"$WORK/stderr" || status=$?
  [ "$status" -eq 2 ] || fail "--background $text: exit $status, expected 2"
  grep -qF -- "$text" "$WORK/stderr" || fail "--background $text: error does not name it: $(cat "$WORK/stderr")"
  [ ! -e "$WORK/refused.png" ] || fail "--background $text wrote an output"
done
"$VANTEL" render --help | tr -s " \n" " " | grep -q "0-1 scale" || fail "render --help does not give the rgb() scale"
finish
