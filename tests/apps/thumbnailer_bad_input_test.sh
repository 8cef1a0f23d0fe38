#!/bin/bash
# A document that cannot be read or decoded gets one line on standard error
# naming the file, a non-zero exit that is not a crash, and no output file
# (nor any temporary file beside where it would have been). An output that
# cannot be written (a full disk, a file-size limit) leaves every earlier
# file as it was; the document itself is never the output.
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

# The document is never its own output, nor through a link; a link at the
# output is replaced, not written through; - is standard output.
safe="$WORK/safe"
mkdir -p "$safe"
cp "$EXAMPLES/sample.aspectratio" "$safe/doc.aspectratio"
ln -s doc.aspectratio "$safe/link"
for output in doc.aspectratio link; do
  expect_exit 2 "output $output" "$VANTEL" thumbnail "$safe/doc.aspectratio" "$safe/$output"
  expect_one_error_line "output $output" "$safe/$output" "is the document being read"
done
cmp -s "$EXAMPLES/sample.aspectratio" "$safe/doc.aspectratio" ||
  { fail "the document was overwritten"; cp "$EXAMPLES/sample.aspectratio" "$safe/doc.aspectratio"; }
echo keep >"$safe/other"
ln -s other "$safe/to-other"
expect_exit 0 "a link as output" "$VANTEL" thumbnail "$safe/doc.aspectratio" "$safe/to-other"
[ ! -L "$safe/to-other" ] && [ "$(cat "$safe/other")" = keep ] || fail "the thumbnail was written through a link"
expect_exit 0 "standard output" bash -c 'cd "$1" && exec "$2" thumbnail doc.aspectratio -' - "$safe" "$VANTEL"
[ "$(head -c 4 "$WORK/stdout" | tail -c 3)" = PNG ] || fail "thumbnail to -: no PNG on standard output"
[ ! -e "$safe/-" ] || fail "thumbnail to - made a file named -"

# Each kind of output under a limit: an earlier thumbnail, the empty file a
# thumbnail service makes and holds, and none yet.
expect_outputs_kept() { # LABEL FOLDER REASON LIMITED-COMMAND-PREFIX...
  local label=$1 folder=$2 reason=$3 name
  shift 3
  for name in earlier.png empty.png new.png; do
    expect_exit 3 "$label, $name" "$@" "$VANTEL" thumbnail -s 512 "$safe/doc.aspectratio" "$folder/$name"
    expect_one_error_line "$label, $name" "$folder/$name: cannot write" "$reason"
  done
  cmp -s "$safe/to-other" "$folder/earlier.png" || fail "$label: the earlier thumbnail changed"
  [ -f "$folder/empty.png" ] && [ ! -s "$folder/empty.png" ] || fail "$label: the empty output is not empty"
  [ "$(find "$folder" -mindepth 1 ! -name fill | wc -l)" -eq 2 ] || fail "$label: left $(ls -A "$folder")"
}
limited="$WORK/limited"
mkdir "$limited"
cp "$safe/to-other" "$limited/earlier.png"
: >"$limited/empty.png"
expect_outputs_kept "file-size limit" "$limited" "File too large" bash -c 'ulimit -f 1; exec "$@"' -
disk="$WORK/disk"
mkdir "$disk"
if mount -t tmpfs -o size=64k tmpfs "$disk" 2>/dev/null; then
  trap 'umount "$disk"; rm -rf "$WORK"' EXIT
  cp "$safe/to-other" "$disk/earlier.png"
  : >"$disk/empty.png"
  dd if=/dev/zero of="$disk/fill" bs=1k 2>/dev/null || true
  expect_outputs_kept "full disk" "$disk" "No space left on device" env
else
  echo "cannot mount a tmpfs here (not root?): the full-disk case is not run"
fi
finish
