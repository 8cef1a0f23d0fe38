#!/bin/bash
# A document that cannot be read or decoded gets one line on standard error
# naming the file, a non-zero exit that is not a crash, and no output file
# (nor any temporary file beside where it would have been).
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
make_bin_dir

docs="$WORK/docs"
mkdir -p "$docs" "$WORK/out"
echo 'this is not a property list' > "$docs/garbage.aspectratio"
: > "$docs/empty.aspectratio"
head -c 200 "$EXAMPLES/portrait-binary.aspectratio" > "$docs/truncated-binary.aspectratio"
"$PYTHON" - "$docs/no-size.aspectratio" <<'EOF'
import plistlib, sys
with open(sys.argv[1], "wb") as f:
    plistlib.dump({"ratios": [], "backgroundColor": {"red": 1.0, "green": 0.0, "blue": 0.0, "alpha": 1.0}}, f)
EOF
mkdir "$docs/folder.aspectratio"

expect_refusal() { # LABEL NAME COMMAND...
  local label=$1 name=$2 status=0 lines
  shift 2
  "$@" 2>"$WORK/stderr" >"$WORK/stdout" || status=$?
  if [ "$status" -eq 0 ]; then
    fail "$label: exit status 0"
  elif [ "$status" -gt 125 ]; then
    fail "$label: exit status $status (killed by a signal?)"
  fi
  lines=$(wc -l < "$WORK/stderr")
  if [ "$lines" -ne 1 ] || [ "$(wc -c < "$WORK/stderr")" -le 1 ]; then
    fail "$label: expected one line on standard error, got: $(cat "$WORK/stderr")"
  elif ! grep -qF "$name" "$WORK/stderr"; then
    fail "$label: the error does not name $name: $(cat "$WORK/stderr")"
  fi
  if [ -n "$(ls -A "$WORK/out")" ]; then
    fail "$label: left $(ls -A "$WORK/out") in the output folder"
    rm -rf "${WORK:?}/out/"* "$WORK"/out/.[!.]*
  fi
}

for name in garbage empty truncated-binary no-size folder missing; do
  expect_refusal "$name (Exec line)" "$name.aspectratio" \
    run_exec_line 256 "$docs/$name.aspectratio" "$WORK/out/.gnome_desktop_thumbnail.bad"
done
expect_refusal "missing (plain path)" "missing.aspectratio" \
  "$VANTEL" thumbnail -s 128 "$docs/missing.aspectratio" "$WORK/out/thumb.png"
expect_refusal "garbage (plain path)" "garbage.aspectratio" \
  "$VANTEL" thumbnail -s 128 "$docs/garbage.aspectratio" "$WORK/out/thumb.png"
# A web address names no local file, even when its path is the path of one.
expect_refusal "web address" "not a file path or a local file URI" \
  "$VANTEL" thumbnail -s 128 "http://127.0.0.1$EXAMPLES/sample.aspectratio" "$WORK/out/thumb.png"
finish
