#!/usr/bin/env bash
# Whole-process comparison: `vantel render` to PNG against rsvg-convert drawing
# the equivalent plain SVG, at 1920x1080 and 3840x2160 (examples/sample.aspectratio
# and the same picture scaled by two), then peak memory and a pixel check that
# both tools drew the same picture, and the two files' sizes.
#
# Timed per size, in one hyperfine run so the figures share the machine's state:
#   vantel render   the picture as plain SVG can express it (clearParent off)
#   rsvg-convert    that picture as SVG
#   vantel as-is    the sample unchanged: its clearParent guides punch
#                   translucent holes, which costs the encoder an un-premultiply
#
# usage: bench/compare_rsvg.sh [--keep DIR] [BUILD_DIR]
#   --keep DIR   leave the documents, SVGs, PNGs and hyperfine JSON in DIR
# needs hyperfine, rsvg-convert (librsvg2-bin) and GNU time (/usr/bin/time)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

keep=
if [ "${1:-}" = --keep ]; then keep=$2; shift 2; fi
build=${1:-$here/../build}
vantel=$(cd "$build" && pwd)/apps/vantel/vantel
runs=${RUNS:-20}

for tool in hyperfine rsvg-convert /usr/bin/time /usr/bin/python3 "$vantel"; do
  command -v "$tool" > /dev/null || { echo "missing: $tool" >&2; exit 1; }
done

if [ -n "$keep" ]; then
  mkdir -p "$keep"
  work=$(cd "$keep" && pwd)
else
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
fi

echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'), load $(cut -d' ' -f1-3 /proc/loadavg)"
echo "tools:   $("$vantel" --version 2>/dev/null | head -1), $(rsvg-convert --version), $(hyperfine --version)"

# Peak resident memory in KiB: the median of five runs.
peak_memory() {
  for _ in 1 2 3 4 5; do
    /usr/bin/time -f '%M' -o "$work/time.txt" "$@" > /dev/null
    cat "$work/time.txt"
  done | sort -n | sed -n 3p
}

for factor in 1 2; do
  label=$([ "$factor" = 1 ] && echo 1920x1080 || echo 3840x2160)
  doc=$work/sample-$label.aspectratio
  plain=$work/plain-$label.aspectratio
  /usr/bin/python3 "$here/scale_document.py" "$here/../examples/sample.aspectratio" "$doc" "$factor"
  /usr/bin/python3 "$here/scale_document.py" --keep-parents "$here/../examples/sample.aspectratio" "$plain" "$factor"
  /usr/bin/python3 "$here/overlay_to_svg.py" "$plain" "$work/plain-$label.svg"

  vantel_cmd=("$vantel" render "$plain" -o "$work/vantel-$label.png")
  rsvg_cmd=(rsvg-convert "$work/plain-$label.svg" -o "$work/rsvg-$label.png")
  as_is_cmd=("$vantel" render "$doc" -o "$work/vantel-as-is-$label.png")

  echo
  echo "== $label"
  hyperfine --warmup 3 --runs "$runs" -N --export-json "$work/hyperfine-$label.json" \
    -n "vantel render $label" "${vantel_cmd[*]}" \
    -n "rsvg-convert $label" "${rsvg_cmd[*]}" \
    -n "vantel render, sample as-is, $label" "${as_is_cmd[*]}"

  echo "peak memory (median of 5, KiB): vantel $(peak_memory "${vantel_cmd[@]}")," \
       "rsvg-convert $(peak_memory "${rsvg_cmd[@]}")," \
       "vantel as-is $(peak_memory "${as_is_cmd[@]}");" \
       "one bitmap is $(( 4 * 1920 * 1080 * factor * factor / 1024 )) KiB"
  echo -n "same picture? vantel against rsvg-convert: "
  /usr/bin/python3 "$here/png_difference.py" "$work/vantel-$label.png" "$work/rsvg-$label.png" 4
  vantel_size=$(stat -c %s "$work/vantel-$label.png")
  rsvg_size=$(stat -c %s "$work/rsvg-$label.png")
  echo "file size (bytes): vantel $vantel_size, rsvg-convert $rsvg_size," \
       "ratio $(awk -v a="$vantel_size" -v b="$rsvg_size" 'BEGIN { printf "%.2f", a / b }')"
done
