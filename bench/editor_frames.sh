#!/usr/bin/env bash
# vantel-editor's speed: exec to the first frame on the 1920 x 1080 sample,
# and an edit on a 3840 x 2160 document of 50 guides to the end of the frame
# that shows it. Runs in a headless X server of its own unless DISPLAY is
# set. Figures: docs/performance.md.
# usage: bench/editor_frames.sh VANTEL_EDITOR VANTEL [RUNS]
set -euo pipefail
editor=$(realpath "$1")
vantel=$(realpath "$2")
runs=${3:-10}
script=$(dirname "$0")/editor_frames.py
if [ -z "${DISPLAY:-}" ]; then
  exec xvfb-run -a -s "-screen 0 1280x1024x24" /usr/bin/python3 "$script" "$editor" "$vantel" "$runs"
fi
exec /usr/bin/python3 "$script" "$editor" "$vantel" "$runs"
