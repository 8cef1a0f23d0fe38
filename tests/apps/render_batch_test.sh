#!/bin/bash
# `vantel render FILE... --out-dir DIR`: documents render in parallel into
# DIR/<stem>.<format>; a bad document gets one error line while the others
# are written; a summary ends the run; the exit status is 1 when a document
# was bad (3 when a file could not be read). Outputs do not depend on the
# number of threads. A progress line appears only when standard error is a terminal.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

mkdir -p "$WORK/in"
for i in 1 2 3; do cp "$EXAMPLES/sample.aspectratio" "$WORK/in/landscape$i.aspectratio"; done
cp "$EXAMPLES/portrait-binary.aspectratio" "$WORK/in/portrait.aspectratio"
"$PYTHON" - "$WORK/in/bad.aspectratio" <<'PY'
import plistlib, sys
guide = {"id": "6B1F5E0C-3C7A-4E53-9B1D-2F6A0C8E4D11", "width": 16.0, "height": 9.0,
         "color": {"red": 1.0, "green": 0.0, "blue": 0.0, "alpha": 1.0}, "weight": 2.0,
         "rowType": {"divisor": {"_0": 500000}}}
with open(sys.argv[1], "wb") as f:
    plistlib.dump({"size": {"width": 640.0, "height": 360.0, "margin": 10.0}, "ratios": [guide]}, f)
PY
GOOD=(landscape1 landscape2 portrait landscape3)
inputs=("$WORK/in/landscape1.aspectratio" "$WORK/in/landscape2.aspectratio" "$WORK/in/bad.aspectratio"
        "$WORK/in/portrait.aspectratio" "$WORK/in/landscape3.aspectratio")

run_batch() { # OUT_DIR JOBS [more options]
  local dir=$1 jobs=$2 status=0
  shift 2
  "$VANTEL" render "${inputs[@]}" --out-dir "$dir" --jobs "$jobs" "$@" >"$WORK/stdout" 2>"$WORK/stderr" || status=$?
  echo "$status"
}

for jobs in 1 3; do
  dir="$WORK/out-$jobs/nested"  # made by the command
  status=$(run_batch "$dir" "$jobs")
  [ "$status" -eq 1 ] || fail "--jobs $jobs: exit status $status, expected 1"
  [ "$(cat "$WORK/stdout")" = "rendered 4 of 5 files, 1 failed" ] ||
    fail "--jobs $jobs: summary is '$(cat "$WORK/stdout")'"
  [ "$(wc -l <"$WORK/stderr")" -eq 1 ] || fail "--jobs $jobs: expected one error line: $(cat "$WORK/stderr")"
  grep -q "^$WORK/in/bad.aspectratio: ratios\[0\]\.rowType: divisor 500000" "$WORK/stderr" ||
    fail "--jobs $jobs: the error line does not name the bad file and value: $(cat "$WORK/stderr")"
  if grep -q $'\r' "$WORK/stderr"; then fail "--jobs $jobs: progress written although standard error is no terminal"; fi
  for name in "${GOOD[@]}"; do
    [ -f "$dir/$name.png" ] || fail "--jobs $jobs: $name.png not written"
  done
  if [ -e "$dir/bad.png" ]; then fail "--jobs $jobs: the bad document was written"; fi
  [ "$(find "$dir" -type f | wc -l)" -eq 4 ] || fail "--jobs $jobs: other files in $dir: $(ls -A "$dir")"
done
"$PYTHON" "$HERE/imagecheck.py" "$WORK/out-3/nested/portrait.png" png 1080 1350 || fail "portrait.png"
check_png "$WORK/out-3/nested/landscape2.png" "$EXAMPLES/sample.aspectratio" 1920 || fail "landscape2.png"
for name in "${GOOD[@]}"; do
  cmp -s "$WORK/out-1/nested/$name.png" "$WORK/out-3/nested/$name.png" ||
    fail "$name.png differs between one and three threads"
done

# Another format names the outputs with its extension; a missing document
# among them makes the run an I/O failure.
inputs+=("$WORK/in/missing.aspectratio")
status=$(run_batch "$WORK/jpeg" 2 --format jpg)
[ "$status" -eq 3 ] || fail "missing document: exit status $status, expected 3"
[ "$(wc -l <"$WORK/stderr")" -eq 2 ] || fail "missing document: expected two error lines: $(cat "$WORK/stderr")"
grep -q "^$WORK/in/missing.aspectratio: cannot read" "$WORK/stderr" || fail "no line for the missing document"
grep -qx "rendered 4 of 6 files, 2 failed" "$WORK/stdout" || fail "summary is '$(cat "$WORK/stdout")'"
for name in "${GOOD[@]}"; do
  [ -f "$WORK/jpeg/$name.jpeg" ] || fail "$name.jpeg not written"
done

# Two documents with one name would overwrite each other: refused before anything is written.
mkdir -p "$WORK/other"
cp "$EXAMPLES/sample.aspectratio" "$WORK/other/landscape1.aspectratio"
status=0
"$VANTEL" render "$WORK/in/landscape1.aspectratio" "$WORK/other/landscape1.aspectratio" --out-dir "$WORK/clash" \
  2>"$WORK/stderr" || status=$?
[ "$status" -eq 2 ] || fail "two documents for one output: exit status $status, expected 2"
grep -q "landscape1.png" "$WORK/stderr" || fail "the clash is not explained: $(cat "$WORK/stderr")"
if [ -e "$WORK/clash" ]; then fail "a refused batch made its output folder"; fi

# On a terminal, a progress line counts the documents done.
inputs=("$WORK/in/landscape1.aspectratio" "$WORK/in/bad.aspectratio" "$WORK/in/portrait.aspectratio")
"$PYTHON" - "$WORK/terminal" "$VANTEL" render "${inputs[@]}" --out-dir "$WORK/tty" <<'PY'
import os, pty, subprocess, sys
record, command = sys.argv[1], sys.argv[2:]
terminal, child_side = pty.openpty()
process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=child_side)
os.close(child_side)
seen = b""
while True:
    try:
        chunk = os.read(terminal, 4096)
    except OSError:  # the child side closed
        break
    if not chunk:
        break
    seen += chunk
process.wait()
with open(record, "wb") as f:
    f.write(seen + b"\n--- stdout\n" + process.stdout.read())
PY
grep -q $'\rrendered 3/3' "$WORK/terminal" || fail "no progress line on a terminal: $(cat -v "$WORK/terminal")"
grep -q "bad.aspectratio: ratios\[0\]\.rowType" "$WORK/terminal" || fail "no error line on a terminal"
grep -qx "rendered 2 of 3 files, 1 failed" "$WORK/terminal" || fail "no summary: $(cat -v "$WORK/terminal")"
finish
