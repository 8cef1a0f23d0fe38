#!/bin/bash
# `vantel info FILE` describes a document: description, canvas, background
# and the guides as a tree, each with its ratio text, laid-out size, colours
# in hex, weight, fill, grid and clearing. The expected sizes follow from the
# layout: the sample's 1840 x 1000 drawing area holds a 16:9 guide at
# 1777.78 x 1000 (height-limited), its 4:3 child inside that box at
# 1333.33 x 1000, and so on.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

expect_info() { # DOCUMENT EXPECTED_TEXT
  local status=0
  "$VANTEL" info "$1" >"$WORK/stdout" 2>"$WORK/stderr" || status=$?
  [ "$status" -eq 0 ] || fail "info $1: exit status $status: $(cat "$WORK/stderr")"
  printf '%s\n' "$2" >"$WORK/expected"
  diff -u "$WORK/expected" "$WORK/stdout" >"$WORK/diff" || fail "info $1 differs from what is expected:
$(cat "$WORK/diff")"
}

expect_info "$EXAMPLES/sample.aspectratio" "\
file         $EXAMPLES/sample.aspectratio
description  overlay_16x9_1x1_9x16
canvas       1920.0 x 1080.0, margin 40.0
background   #121218
guides       4 (3 at the top level), drawn in this order:
├─ 16∶9 at 1777.78 x 1000.0 px: outline #8DD3C7 weight 6.0, fill #282C34 alpha 0.6, rows in 3 equal parts, columns in 3 equal parts, clears what is beneath
│  └─ 4∶3 at 1333.33 x 1000.0 px: outline #FB8072 weight 4.0, fill #FB8072 alpha 0.25, keeps what is beneath
├─ 1∶1 at 1000.0 x 1000.0 px: outline #FDB462 weight 4.0, no fill, rows every 120 px, columns every 120 px, clears what is beneath
└─ 9∶16 at 562.5 x 1000.0 px: outline #BEBADA weight 4.0, fill #BEBADA alpha 0.15, keeps what is beneath"

# A binary property list; the 4:5 guide is width-limited in its 1032 x 1302 area.
expect_info "$EXAMPLES/portrait-binary.aspectratio" "\
file         $EXAMPLES/portrait-binary.aspectratio
description  overlay_4x5
canvas       1080.0 x 1350.0, margin 24.0
background   #FAF8F0
guides       2 (1 at the top level), drawn in this order:
└─ 4∶5 at 1032.0 x 1290.0 px: outline #80B1D3 weight 8.0, no fill, rows in 3 equal parts, columns in 3 equal parts, clears what is beneath
   └─ 1∶1 at 1032.0 x 1032.0 px: outline #FFED6F weight 4.0, no fill, keeps what is beneath"

# --colors writes every colour in one form, in the text and in JSON.
"$VANTEL" info --colors rgba "$EXAMPLES/sample.aspectratio" >"$WORK/rgba" || fail "--colors rgba"
grep -q '^background   rgba(18,18,24,1.0)$' "$WORK/rgba" || fail "--colors rgba: $(sed -n 4p "$WORK/rgba")"
grep -q 'fill rgba(40,44,52,0.6),' "$WORK/rgba" || fail "--colors rgba: no translucent fill"
"$VANTEL" info --json --colors hex-alpha "$EXAMPLES/sample.aspectratio" >"$WORK/json" || fail "--colors hex-alpha"
grep -q '"text" : "#282C3499"' "$WORK/json" || fail "--colors hex-alpha: no #282C3499 in the JSON"
status=0
"$VANTEL" info --colors hsl "$EXAMPLES/sample.aspectratio" 2>/dev/null || status=$?
[ "$status" -eq 2 ] || fail "--colors hsl: exit status $status, expected 2"

status=0
"$VANTEL" info "$WORK/missing.aspectratio" 2>"$WORK/stderr" || status=$?
[ "$status" -eq 3 ] || fail "missing document: exit status $status, expected 3"
grep -q "^$WORK/missing.aspectratio: cannot read" "$WORK/stderr" || fail "missing document: $(cat "$WORK/stderr")"
status=0
"$VANTEL" info 2>/dev/null || status=$?
[ "$status" -eq 2 ] || fail "no document: exit status $status, expected 2"

# Ratio texts are written as the reader's language writes numbers, from the
# locale data linked into the command (a trimmed copy of ICU's).
"$VANTEL" new -o "$WORK/scope.aspectratio" --guide '2.39:1' || fail "new --guide 2.39:1"
for reader in "de_DE.UTF-8 2,39∶1" "ar_EG.UTF-8 ٢٫٣٩∶١" "C 2.39∶1"; do
  LC_ALL=${reader%% *} "$VANTEL" info "$WORK/scope.aspectratio" >"$WORK/stdout" 2>"$WORK/stderr" \
    || fail "info in ${reader%% *}: $(cat "$WORK/stderr")"
  grep -q "^└─ ${reader#* } at 1840.0 x 769.87 px" "$WORK/stdout" || fail "info in ${reader%% *}: $(tail -1 "$WORK/stdout")"
done
finish
