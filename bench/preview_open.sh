#!/usr/bin/env bash
# Time from exec of vantel-preview on the 1920 x 1080 sample to its first
# frame with the picture, stage by stage, for the renderer it picks and for
# GTK's GL renderer; then the frames of a fast resize. Runs in a headless X
# server of its own unless DISPLAY is set. Figures: docs/performance.md.
# usage: bench/preview_open.sh VANTEL_PREVIEW [RUNS]
set -euo pipefail
preview=$(realpath "$1")
runs=${2:-10}
script=$(dirname "$0")/preview_open.py
if [ -z "${DISPLAY:-}" ]; then
  exec xvfb-run -a -s "-screen 0 1280x1024x24" /usr/bin/python3 "$script" "$preview" "$runs"
fi
exec /usr/bin/python3 "$script" "$preview" "$runs"
