#!/bin/bash
# Runs the command exactly as data/vantel.thumbnailer's Exec line asks, the way
# a file browser does: `vantel` found on PATH, %s a size the browsers ask for,
# %u the document's file URI, %o an output path without extension that already
# exists empty (GNOME makes /tmp/.gnome_desktop_thumbnail.XXXXXX this way).
# Also: a URI that needs percent-decoding, an output that does not exist yet,
# and an output that the caller holds open and reads back the way tumblerd does.
# Each result must be a whole PNG of the fitted size showing the document.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
make_bin_dir

# A copy under a name that needs percent-encoding in its URI.
mkdir -p "$WORK/odd name"
cp "$EXAMPLES/sample.aspectratio" "$WORK/odd name/über sample.aspectratio"

run_case() { # SIZE DOCUMENT
  local size=$1 document=$2 output stderr
  output=$(mktemp "$WORK/.gnome_desktop_thumbnail.XXXXXX")
  stderr="$WORK/stderr"
  if ! run_exec_line "$size" "$document" "$output" 2>"$stderr"; then
    fail "size $size, $(basename "$document"): exit status non-zero: $(cat "$stderr")"
    rm -f "$output"
    return
  fi
  check_png "$output" "$document" "$size" || fail "size $size, $(basename "$document")"
  rm -f "$output"
}

for size in 128 256 512 1024; do
  run_case "$size" "$EXAMPLES/sample.aspectratio"
  run_case "$size" "$EXAMPLES/portrait-binary.aspectratio"
done
run_case 256 "$WORK/odd name/über sample.aspectratio"

# An output path that does not exist yet, also without extension.
output="$WORK/fresh-output"
run_exec_line 128 "$EXAMPLES/sample.aspectratio" "$output" || fail "fresh output: non-zero exit"
check_png "$output" "$EXAMPLES/sample.aspectratio" 128 || fail "fresh output"

# tumblerd creates the output file, keeps it open, and reads the PNG through
# that same descriptor after the command exits: the command must write into
# the file it was given, not replace it with another one.
output=$(mktemp "$WORK/tumbler-XXXXXX.png")
exec {held}<"$output"
run_exec_line 128 "$EXAMPLES/portrait-binary.aspectratio" "$output" || fail "held output: non-zero exit"
cat <&"$held" > "$WORK/read-through-held-descriptor"
exec {held}<&-
check_png "$WORK/read-through-held-descriptor" "$EXAMPLES/portrait-binary.aspectratio" 128 ||
  fail "the PNG is not in the file the caller created and holds open (was it replaced by another file?)"
rm -f "$output" "$WORK/read-through-held-descriptor"

leftovers=$(find "$WORK" -maxdepth 1 -type f ! -name stderr ! -name fresh-output)
[ -z "$leftovers" ] || fail "files left beside the outputs: $leftovers"
finish
