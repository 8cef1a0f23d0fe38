#!/bin/bash
# `vantel new`: writes a preset document (XML by default, binary on request)
# that validates, describes as the preset and renders; refuses to replace a
# file without --force.
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
leftovers=$(find "$WORK" -name '.*' -type f)
[ -z "$leftovers" ] || fail "temporary files left behind: $leftovers"
finish
