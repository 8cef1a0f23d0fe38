#!/usr/bin/env bash
# Takes docs/editor-window.png: vantel-editor under Xvfb on a cinema
# document, its 2.39:1 guide selected, as the README shows it.
#
# usage: docs/editor-screenshot.sh [BUILD_DIR]   (needs Xvfb and xdotool)
set -euo pipefail
source_dir=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$source_dir/build}" && pwd)
output=$source_dir/docs/editor-window.png
work=$(mktemp -d /tmp/vantel-editor-shot.XXXXXX)
trap 'kill "${editor:-}" "${xvfb:-}" 2> /dev/null || true; rm -rf "$work"' EXIT

document=$work/Cinema.aspectratio
"$build/apps/vantel/vantel" new --guide "16:9 color=#7882A0 weight=4" \
  --guide "2.39:1 color=#FFBE50 fill=rgba(255,190,80,0.15) weight=8 grid=3x3 noclear in=1" \
  --guide "1.85:1 color=#8DD3C7 weight=4 noclear in=1" -o "$document" > /dev/null

Xvfb :78 -screen 0 1200x760x24 -nolisten tcp > "$work/xvfb.log" 2>&1 &
xvfb=$!
sleep 1
export DISPLAY=:78 GSETTINGS_BACKEND=memory
"$build/apps/vantel-editor/vantel-editor" "$document" 2> "$work/editor.log" &
editor=$!
for _ in $(seq 100); do
  window=$(xdotool search --all --pid "$editor" --name Cinema 2> /dev/null | head -n1) && [ -n "$window" ] && break
  sleep 0.1
done
sleep 1
for key in Down; do xdotool key --window "$window" "$key"; sleep 0.2; done
sleep 0.5
xwd -silent -id "$window" > "$work/shot.xwd"
/usr/bin/python3 - "$work/shot.xwd" "$output" <<'PY'
import struct, sys, zlib
dump = open(sys.argv[1], "rb").read()
header = struct.unpack(">25I", dump[:100])
start, line, width, height = header[0] + header[19] * 12, header[12], header[4], header[5]
rows = b"".join(b"\0" + bytes(c for x in range(width) for c in dump[start + y * line + x * 4:start + y * line + x * 4 + 3][::-1])
                for y in range(height))
chunk = lambda kind, data: struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
open(sys.argv[2], "wb").write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
                              + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))
PY
echo "wrote $output"
