#!/usr/bin/env bash
# Whole-process comparison of thumbnailers, the way a file browser runs them:
# `vantel thumbnail -s 256` on an overlay document against
# `gdk-pixbuf-thumbnailer -s 256` (GNOME's thumbnailer for images, here drawing
# the equivalent plain SVG through librsvg), each started once per thumbnail.
# Both commands run in one hyperfine session, so their figures compare.
#
# Outputs go to a tmpfs folder when there is one: on ext4, rewriting a file
# that was truncated makes the kernel flush it at close, which measures the
# disk rather than the thumbnailer (tumblerd's /tmp is a tmpfs on most desktops).
#
# usage: bench/compare_thumbnailer.sh [BUILD_DIR]
# needs: hyperfine, gdk-pixbuf-thumbnailer with the SVG loader (installed on
# request below), python3
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build}
vantel=$(cd "$build" && pwd)/apps/vantel/vantel
[ -x "$vantel" ] || { echo "no $vantel: build first (make build)" >&2; exit 1; }

need=()
command -v hyperfine > /dev/null || need+=(hyperfine)
command -v gdk-pixbuf-thumbnailer > /dev/null || need+=(libgdk-pixbuf2.0-bin)
compgen -G "/usr/lib/*/gdk-pixbuf-2.0/*/loaders/libpixbufloader-svg.so" > /dev/null || need+=(librsvg2-common)
if [ ${#need[@]} -gt 0 ]; then
  echo "compare_thumbnailer: installing the tools this comparison needs: ${need[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get install -y -qq --no-install-recommends "${need[@]}"
fi

scratch=/dev/shm
[ -d "$scratch" ] && [ -w "$scratch" ] || scratch=${TMPDIR:-/tmp}
work=$(mktemp -d "$scratch/vantel-thumbnail-bench.XXXXXX")
trap 'rm -rf "$work"' EXIT

for name in sample portrait-binary; do
  doc=$here/../examples/$name.aspectratio
  /usr/bin/python3 "$here/overlay_to_svg.py" "$doc" "$work/$name.svg"
  echo "== $name.aspectratio at 256 (outputs in $scratch)"
  hyperfine -N --warmup 20 --runs 300 --export-json "$work/$name.json" \
    -n "vantel thumbnail" "$vantel thumbnail -s 256 $doc $work/$name-vantel" \
    -n "gdk-pixbuf-thumbnailer" "gdk-pixbuf-thumbnailer -s 256 $work/$name.svg $work/$name-gdk"
  /usr/bin/python3 - "$work/$name.json" <<'PY'
import json, sys
runs = {r["command"]: r for r in json.load(open(sys.argv[1]))["results"]}
ours, theirs = runs["vantel thumbnail"], runs["gdk-pixbuf-thumbnailer"]
for label, r in (("vantel thumbnail", ours), ("gdk-pixbuf-thumbnailer", theirs)):
    print(f"{label:24s} mean {r['mean'] * 1e3:6.2f} ms  median {r['median'] * 1e3:6.2f} ms"
          f"  user {r['user'] * 1e3:5.2f} ms  system {r['system'] * 1e3:5.2f} ms")
print(f"vantel is {theirs['mean'] / ours['mean']:.1f}x faster by mean wall time, "
      f"{theirs['median'] / ours['median']:.1f}x by median, "
      f"{(theirs['user'] + theirs['system']) / (ours['user'] + ours['system']):.1f}x by CPU time "
      f"(target: at least 3x)")
PY
  /usr/bin/python3 "$here/../tests/apps/pngcheck.py" "$work/$name-vantel" --document "$doc" --size 256 > /dev/null ||
    echo "warning: vantel's thumbnail of $name did not pass tests/apps/pngcheck.py" >&2
done
