#!/usr/bin/env bash
# Time from starting vantel-preview on a 1920 x 1080 document to its window
# showing the document's background (first draw done), over RUNS runs.
# usage: xvfb-run -a -s "-screen 0 1280x1024x24" bench/preview_open.sh VANTEL_PREVIEW [RUNS]
set -euo pipefail
preview=$1
runs=${2:-10}
document=$(cd "$(dirname "$0")/.." && pwd)/examples/sample.aspectratio
for _ in $(seq "$runs"); do
  start=$(date +%s%N)
  "$preview" "$document" &
  pid=$!
  window=$(xdotool search --sync --name sample.aspectratio | head -n1)
  # The margin's corner shows the background (18, 18, 24) once drawn.
  until xwd -silent -id "$window" | /usr/bin/python3 -c '
import struct, sys
d = sys.stdin.buffer.read(); h = struct.unpack(">25I", d[:100])
at = h[0] + h[19] * 12 + 6 * h[12] + 6 * 4
sys.exit(0 if abs(d[at + 2] - 18) <= 3 and abs(d[at] - 24) <= 3 else 1)'; do :; done
  end=$(date +%s%N)
  echo "open and first draw: $(( (end - start) / 1000000 )) ms"
  kill "$pid"; wait "$pid" 2>/dev/null || true
done
