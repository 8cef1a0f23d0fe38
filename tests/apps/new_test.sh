#!/bin/bash
# `vantel new`: writes a preset document (XML by default, binary on request)
# that validates, describes as the preset and renders; builds one from
# --guide expressions exactly as given, refusing bad ones in one line; refuses
# to replace a file without --force. The example of docs/format.md validates.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

run() { # COMMAND...: exit status in $status
  status=0
  "$VANTEL" "$@" >"$WORK/stdout" 2>"$WORK/stderr" || status=$?
}

expect_document() { # FILE SIGNATURE INFO_LINE_REGEX...
  local file=$1 signature=$2
  shift 2
  [ "$(head -c ${#signature} "$file")" = "$signature" ] || fail "$file does not start with $signature"
  run validate "$file"
  [ "$status" -eq 0 ] || fail "validate $file: exit status $status: $(cat "$WORK/stderr")"
  run info "$file"
  [ "$status" -eq 0 ] || fail "info $file: exit status $status: $(cat "$WORK/stderr")"
  grep -qx "canvas       1920.0 x 1080.0, margin 40.0" "$WORK/stdout" || fail "$file: not the 1920 x 1080 canvas"
  grep -qx "background   #000000" "$WORK/stdout" || fail "$file: background is not black"
  for line in "$@"; do
    grep -qE "^$line\$" "$WORK/stdout" || fail "$file: no line /$line/ in: $(cat "$WORK/stdout")"
  done
}

run new -o "$WORK/default.aspectratio"
[ "$status" -eq 0 ] || fail "new: exit status $status: $(cat "$WORK/stderr")"
expect_document "$WORK/default.aspectratio" "<?xml" \
  "description  overlay_1x1" \
  "guides       1 \(1 at the top level\), drawn in this order:" \
  "└─ 1∶1 at 1000.0 x 1000.0 px: outline #[0-9A-F]{6} weight 10.0, no fill, clears what is beneath"

run new --preset test --binary -o "$WORK/test.aspectratio"
[ "$status" -eq 0 ] || fail "new --preset test --binary: exit status $status: $(cat "$WORK/stderr")"
expect_document "$WORK/test.aspectratio" "bplist00" \
  "description  overlay_16x9_9x16" \
  "├─ 16∶9 at 1777.78 x 1000.0 px: outline #[0-9A-F]{6} weight 10.0, fill #000000 alpha 0.75, clears what is beneath" \
  "│  └─ 4∶3 at 1333.33 x 1000.0 px: outline #[0-9A-F]{6} weight 10.0, fill #00007E alpha 0.25, clears what is beneath" \
  "└─ 9∶16 at 562.5 x 1000.0 px: outline #[0-9A-F]{6} weight 10.0, no fill, rows in 3 equal parts, clears what is beneath"
run render "$WORK/test.aspectratio" -o "$WORK/test.png"
[ "$status" -eq 0 ] || fail "rendering a new document: exit status $status: $(cat "$WORK/stderr")"
check_png "$WORK/test.png" "$WORK/test.aspectratio" 1920 || fail "the new document's PNG"

# An existing file stays unless --force is given.
printf 'keep me' >"$WORK/existing.aspectratio"
run new -o "$WORK/existing.aspectratio"
[ "$status" -eq 2 ] || fail "existing file: exit status $status, expected 2"
grep -q -- "--force" "$WORK/stderr" || fail "existing file: the error does not mention --force: $(cat "$WORK/stderr")"
[ "$(cat "$WORK/existing.aspectratio")" = "keep me" ] || fail "new replaced an existing file without --force"
run new --force --preset test -o "$WORK/existing.aspectratio"
[ "$status" -eq 0 ] || fail "--force: exit status $status: $(cat "$WORK/stderr")"
expect_document "$WORK/existing.aspectratio" "<?xml" "description  overlay_16x9_9x16"

# - is standard output, even where a file named - exists.
touch "$WORK/-"
(cd "$WORK" && "$VANTEL" new -o - --binary >"$WORK/stdout") || fail "new -o -: exit status $?"
[ "$(head -c 8 "$WORK/stdout")" = bplist00 ] || fail "new -o -: no document on standard output"
[ ! -s "$WORK/-" ] || fail "new -o - wrote a file named -"

run new --preset wide -o "$WORK/wide.aspectratio"
[ "$status" -eq 2 ] || fail "unknown preset: exit status $status, expected 2"
run new
[ "$status" -eq 2 ] || fail "no output: exit status $status, expected 2"
run new -o "$WORK/no/such/folder/x.aspectratio"
[ "$status" -eq 3 ] || fail "unwritable output: exit status $status, expected 3"
grep -q "^$WORK/no/such/folder/x.aspectratio: cannot write" "$WORK/stderr" || fail "unwritable output: $(cat "$WORK/stderr")"
# Guides given one by one land in the document as given, nested by in=N.
run new -o "$WORK/shot.aspectratio" --canvas 3840x2160 --margin 40 --background '#121218' \
  --guide '2.39:1 color=#ff3b30 weight=4' --guide '16∶9 grid=3x3 in=1' \
  --guide '1.85 color=navy fill=#00ff0080 grid-px=100 noclear in=1'
[ "$status" -eq 0 ] || fail "new --guide: exit status $status: $(cat "$WORK/stderr")"
run info --json "$WORK/shot.aspectratio"
"$PYTHON" - "$WORK/stdout" <<'EOF' || fail "new --guide: the document is not the one given: $(cat "$WORK/stdout")"
import json, sys
info = json.load(open(sys.argv[1]))
assert info["canvas"] == {"width": 3840, "height": 2160, "margin": 40}
assert info["background"] == {"hex": "#121218", "alpha": 1}
def guide(g):
    return (g["ratioWidth"], g["ratioHeight"], g["outline"]["hex"], g["fill"], g["weight"],
            g["rows"], g["columns"], g["clearsParent"], [guide(c) for c in g["children"]])
clear = {"hex": "#000000", "alpha": 0}
(wide, ) = info["guides"]
colour = wide["children"][0]["outline"]["hex"]
assert guide(wide) == (2.39, 1, "#FF3B30", clear, 4, None, None, True, [
    (16, 9, colour, clear, 2, {"parts": 3}, {"parts": 3}, True, []),
    (1.85, 1, "#000080", {"hex": "#00FF00", "alpha": 128 / 255}, 2, {"every": 100}, {"every": 100}, False, [])]), guide(wide)
EOF

for preset in cinema social safe; do
  run new --preset "$preset" -o "$WORK/$preset.aspectratio"
  [ "$status" -eq 0 ] || fail "new --preset $preset: exit status $status: $(cat "$WORK/stderr")"
  expect_document "$WORK/$preset.aspectratio" "<?xml" "description  overlay_16x9"
done

# A bad expression: exit 2, one line naming the bad part, and no file.
while IFS='|' read -r expression part; do
  run new -o "$WORK/bad.aspectratio" --guide 16:9 --guide "$expression"
  [ "$status" -eq 2 ] || fail "--guide '$expression': exit status $status, expected 2"
  expect_one_error_line "--guide '$expression'" "--guide '$expression': " "$part"
  [ ! -e "$WORK/bad.aspectratio" ] || fail "--guide '$expression' left a file"
done <<'EOF'
2.39:1 colour=red|unknown key "colour"
16:0|bad ratio "16:0"
wide|bad ratio "wide"
4:3 in=2|"in=2" names no earlier guide; there is 1 before this one
4:3 in=0|"in=0" names no earlier guide
4:3 fill=#12|bad colour "fill=#12"
4:3 grid=3|bad grid "grid=3"
EOF

# -o - writes the document to standard output, and the reference's example is
# a document that can be drawn.
run new --preset cinema -o -
[ "$status" -eq 0 ] && [ "$(head -c 5 "$WORK/stdout")" = "<?xml" ] || fail "new -o -: exit status $status"
sed -n '/^```xml$/,/^```$/p' "$SOURCE_DIR/docs/format.md" | sed '1d;$d' >"$WORK/example.aspectratio"
run validate "$WORK/example.aspectratio"
[ "$status" -eq 0 ] || fail "the example of docs/format.md: $(cat "$WORK/stderr")"

leftovers=$(find "$WORK" -name '.*' -type f)
[ -z "$leftovers" ] || fail "temporary files left behind: $leftovers"
finish
