#!/usr/bin/env bash
# Draws docs/frame-line-chart.png, the picture in README's "ASC FDL" section:
# the frame-line chart of the ASC's Alexa 65 sample list (canvas, effective
# area, protection and framing), desqueezed, on a dark background so that
# every layer shows on light and dark pages alike.
#
# usage: docs/frame-line-chart.sh [BUILD_DIR]
set -euo pipefail
source_dir=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$source_dir/build}" && pwd)
"$build/apps/vantel/vantel" render "$source_dir/tests/data/fdl/A65_effective-area_wdesqueeze.fdl" \
  --desqueeze --width 800 --background '#202124' -o "$source_dir/docs/frame-line-chart.png"
