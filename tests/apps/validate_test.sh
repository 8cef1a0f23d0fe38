#!/bin/bash
# `vantel validate FILE...`: "FILE: ok" for a document that can be drawn; for
# the others one line per problem, in document order, naming the file and
# where the value is; exit 0 when all are fine, 1 for a bad document, 3 for an
# unreadable file, 2 for bad usage. `info` refuses a bad document with the
# same lines.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

# Handmade documents: each a small overlay with one kind of fault.
"$PYTHON" - "$WORK" <<'PY'
import plistlib, sys
folder = sys.argv[1]
red = {"red": 1.0, "green": 0.0, "blue": 0.0, "alpha": 1.0}

def guide(uid, width, height, **extra):
    g = {"id": f"6B1F5E0C-3C7A-4E53-9B1D-2F6A0C8E4D{uid:02d}", "width": float(width),
         "height": float(height), "color": red, "weight": 2.0}
    g.update(extra)
    return g

def document(name, ratios, size=(640.0, 360.0, 10.0)):
    body = {"size": dict(zip(("width", "height", "margin"), size)), "ratios": ratios}
    with open(f"{folder}/{name}.aspectratio", "wb") as f:
        plistlib.dump(body, f)

# Two problems, one of them nested: both reported, in document order.
document("nested", [guide(1, 16, 9, weight=-1.0),
                    guide(2, 1, 1, children=[guide(3, 4, 3, columnType={"divisor": {"_0": 200000}})])])
document("tiny-canvas", [guide(1, 1, 1)], size=(0.5, 360.0, 0.0))
document("wide-margin", [], size=(640.0, 360.0, 180.0))
document("zero-ratio", [guide(1, 0, 9)])
document("no-weight", [{k: v for k, v in guide(1, 16, 9).items() if k != "weight"}])
document("empty-grid", [guide(1, 16, 9, rowType={})])
PY
printf 'not a property list' >"$WORK/garbage.aspectratio"

run() { # COMMAND...: exit status in $status, output in $WORK/stdout and $WORK/stderr
  status=0
  "$VANTEL" "$@" >"$WORK/stdout" 2>"$WORK/stderr" || status=$?
}

expect_lines() { # NAME FILE LINE_REGEX...: standard error holds exactly these lines
  local name=$1 file=$2
  shift 2
  local -a expected=("$@")
  mapfile -t actual <"$WORK/stderr"
  if [ "${#actual[@]}" -ne "${#expected[@]}" ]; then
    fail "$name: ${#actual[@]} lines, expected ${#expected[@]}: $(cat "$WORK/stderr")"
    return
  fi
  for i in "${!expected[@]}"; do
    [[ "${actual[$i]}" == "$file: "* ]] || fail "$name: line $((i + 1)) does not start with the file: ${actual[$i]}"
    [[ "${actual[$i]#"$file: "}" =~ ^${expected[$i]}$ ]] || fail "$name: line $((i + 1)) is '${actual[$i]}'"
  done
}

run validate "$EXAMPLES/sample.aspectratio" "$EXAMPLES/portrait-binary.aspectratio"
[ "$status" -eq 0 ] || fail "good documents: exit status $status: $(cat "$WORK/stderr")"
[ "$(cat "$WORK/stdout")" = "$EXAMPLES/sample.aspectratio: ok
$EXAMPLES/portrait-binary.aspectratio: ok" ] || fail "good documents: stdout is '$(cat "$WORK/stdout")'"
if [ -s "$WORK/stderr" ]; then fail "good documents: something on standard error: $(cat "$WORK/stderr")"; fi

check_bad() { # NAME LINE_REGEX...
  local name=$1 file="$WORK/$1.aspectratio"
  shift
  run validate "$file"
  [ "$status" -eq 1 ] || fail "$name: exit status $status, expected 1"
  if [ -s "$WORK/stdout" ]; then fail "$name: called ok: $(cat "$WORK/stdout")"; fi
  expect_lines "validate $name" "$file" "$@"
  run info "$file"
  [ "$status" -eq 1 ] || fail "info $name: exit status $status, expected 1"
  if [ -s "$WORK/stdout" ]; then fail "info $name: described a bad document: $(cat "$WORK/stdout")"; fi
  expect_lines "info $name" "$file" "$@"
}

check_bad nested 'ratios\[0\]\.weight: weight -1\.0 is negative' \
  'ratios\[1\]\.children\[0\]\.columnType: divisor 200000 on a side of [0-9.]+ px would draw more than 100000 grid lines'
check_bad tiny-canvas 'size: canvas 0\.5 x 360\.0 is smaller than one pixel'
check_bad wide-margin 'size\.margin: margin 180\.0 leaves no room on a 640\.0 x 360\.0 canvas'
check_bad zero-ratio 'ratios\[0\]\.width: a guide needs a positive ratio side, not 0\.0'
check_bad no-weight 'ratios\[0\]\.weight: .*"weight".*'
check_bad empty-grid 'ratios\[0\]\.rowType: Invalid number of keys found, expected one\.'
check_bad garbage '.+'

# Several files: every one is reported; the worst outcome decides the exit status.
run validate "$WORK/nested.aspectratio" "$EXAMPLES/sample.aspectratio" "$WORK/zero-ratio.aspectratio"
[ "$status" -eq 1 ] || fail "mixed documents: exit status $status, expected 1"
[ "$(cat "$WORK/stdout")" = "$EXAMPLES/sample.aspectratio: ok" ] || fail "mixed documents: stdout '$(cat "$WORK/stdout")'"
[ "$(wc -l <"$WORK/stderr")" -eq 3 ] || fail "mixed documents: expected three problem lines: $(cat "$WORK/stderr")"
run validate "$WORK/nested.aspectratio" "$WORK/missing.aspectratio"
[ "$status" -eq 3 ] || fail "an unreadable file: exit status $status, expected 3"
grep -q "^$WORK/missing.aspectratio: cannot read" "$WORK/stderr" || fail "no line for the unreadable file"
run validate - <"$EXAMPLES/sample.aspectratio"
[ "$(cat "$WORK/stdout")" = "stdin: ok" ] || fail "validate -: '$(cat "$WORK/stdout")', not named stdin as its errors are"
run validate
[ "$status" -eq 2 ] || fail "no files: exit status $status, expected 2"
finish
