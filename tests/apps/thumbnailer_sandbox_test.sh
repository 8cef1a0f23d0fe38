#!/bin/bash
# GNOME runs thumbnailers inside a bubblewrap sandbox that shows only /usr
# (plus /etc/ld.so.cache and the /bin, /lib, ... links into /usr), with a
# private /tmp holding the document as /tmp/gnome-desktop-file-to-thumbnail.EXT
# (EXT the document's own extension, which tells a framing decision list)
# and expecting /tmp/gnome-desktop-thumbnailer.png; no network, no home, no
# /etc. The installed command must work there. We install into a prefix,
# mount it as /usr/local inside the same sandbox, and run the Exec line.
# Called as: thumbnailer_sandbox_test.sh VANTEL SOURCE_DIR CMAKE BUILD_DIR
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
CMAKE=${3:?cmake command}
BUILD_DIR=${4:?build directory}
make_workdir

"$CMAKE" --install "$BUILD_DIR" --prefix "$WORK/prefix" > "$WORK/install.log" 2>&1 ||
  { cat "$WORK/install.log" >&2; fail "cmake --install failed"; finish; }

sandbox=(bwrap --ro-bind /usr /usr --ro-bind-try /etc/ld.so.cache /etc/ld.so.cache)
for dir in bin lib64 lib sbin; do
  [ -e "/$dir" ] || continue
  if [ "/$dir" -ef "/usr/$dir" ]; then
    sandbox+=(--symlink "/usr/$dir" "/$dir")
  else
    sandbox+=(--ro-bind "/$dir" "/$dir")
  fi
done
sandbox+=(--proc /proc --dev /dev --chdir / --setenv GIO_USE_VFS local
  --unshare-all --die-with-parent
  --ro-bind "$WORK/prefix" /usr/local
  --setenv PATH /usr/local/bin:/usr/bin:/bin --unsetenv HOME)

run_sandboxed() { # SIZE DOCUMENT
  local size=$1 document=$2 outdir words input
  input=/tmp/gnome-desktop-file-to-thumbnail.${document##*.}
  outdir=$(mktemp -d "$WORK/gnome-desktop-thumbnailer-XXXXXX")
  mapfile -d '' words < <(exec_line_words "$size" "$input" /tmp/gnome-desktop-thumbnailer.png)
  if ! "${sandbox[@]}" --bind "$outdir" /tmp \
      --ro-bind "$document" "$input" \
      "${words[@]}" 2>"$WORK/stderr"; then
    fail "size $size, $(basename "$document"): failed in the sandbox: $(cat "$WORK/stderr")"
    return
  fi
  check_png "$outdir/gnome-desktop-thumbnailer.png" "$document" "$size" ||
    fail "size $size, $(basename "$document") in the sandbox"
  # GNOME then deletes the output and the input's mount point, removes the
  # folder, and warns when the thumbnailer left other files in it.
  rm -f "$outdir/gnome-desktop-thumbnailer.png" "$outdir/$(basename "$input")"
  rmdir "$outdir" 2>/dev/null || fail "files left in the sandbox's /tmp: $(ls -A "$outdir")"
}

if ! "${sandbox[@]}" /usr/bin/true 2>"$WORK/stderr"; then
  fail "bubblewrap cannot make a sandbox here: $(cat "$WORK/stderr")"
  finish
fi
run_sandboxed 256 "$EXAMPLES/sample.aspectratio"
run_sandboxed 1024 "$EXAMPLES/portrait-binary.aspectratio"
run_sandboxed 512 "$SOURCE_DIR/tests/data/fdl/G_5040x3780_1x_TopAligned-FramingChart.fdl"
finish
