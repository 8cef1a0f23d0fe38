#!/usr/bin/env bash
# Whole-process comparison: `vantel render` to PNG against rsvg-convert drawing
# the same picture as plain SVG, on three scenes:
#   1920x1080  examples/sample.aspectratio (clearParent off: plain SVG has no
#              equivalent of the holes it punches)
#   3840x2160  ten guides of different ratios, each with a grid
#   7680x4320  200 overlapping guides with translucent fills
# (the last two from bench/guide_scenes.py). Per scene: both commands timed in
# one hyperfine run, so that the pair shares the machine's state; peak memory;
# the two files' sizes; and a pixel check that both drew the same picture.
# Ends with one table of the time ratio, peak memory and size ratio.
#
# usage: bench/compare_rsvg.sh [--keep DIR] [BUILD_DIR]
#   --keep DIR   leave the documents, SVGs, PNGs and hyperfine JSON in DIR
#   RUNS=n       timed runs per command (default 20; the 7680x4320 scene
#                takes a quarter of them, at least 5)
#   CHECK_8K=1   also check the 7680x4320 pixels (pure Python: minutes)
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

# The process without a picture: a one-pixel canvas. What a render holds
# above this is the bitmap and the encoder's buffers.
/usr/bin/python3 - "$work/dot.aspectratio" <<'EOF'
import plistlib, sys
plistlib.dump({"size": {"width": 1.0, "height": 1.0, "margin": 0.0}, "ratios": []}, open(sys.argv[1], "wb"))
EOF
start_memory=$(peak_memory "$vantel" render "$work/dot.aspectratio" -o "$work/dot.png")
echo "peak memory of a one-pixel render: $start_memory KiB"

/usr/bin/python3 "$here/scale_document.py" --keep-parents "$here/../examples/sample.aspectratio" \
  "$work/sample.aspectratio" 1
/usr/bin/python3 "$here/guide_scenes.py" gridded "$work/gridded.aspectratio"
/usr/bin/python3 "$here/guide_scenes.py" translucent "$work/translucent.aspectratio"

table=$work/table.tsv
: > "$table"
for scene in sample:1920x1080 gridded:3840x2160 translucent:7680x4320; do
  name=${scene%%:*} size=${scene#*:}
  width=${size%x*} height=${size#*x}
  scene_runs=$runs
  [ "$name" != translucent ] || scene_runs=$(( runs / 4 > 5 ? runs / 4 : 5 ))
  /usr/bin/python3 "$here/overlay_to_svg.py" "$work/$name.aspectratio" "$work/$name.svg"

  vantel_cmd=("$vantel" render "$work/$name.aspectratio" -o "$work/vantel-$name.png")
  rsvg_cmd=(rsvg-convert "$work/$name.svg" -o "$work/rsvg-$name.png")

  echo
  echo "== $name $size"
  hyperfine --warmup 2 --runs "$scene_runs" -N --export-json "$work/hyperfine-$name.json" \
    -n "vantel render $name" "${vantel_cmd[*]}" \
    -n "rsvg-convert $name" "${rsvg_cmd[*]}"

  vantel_memory=$(peak_memory "${vantel_cmd[@]}")
  rsvg_memory=$(peak_memory "${rsvg_cmd[@]}")
  bitmap=$(( 4 * width * height / 1024 ))
  echo "peak memory (median of 5, KiB): vantel $vantel_memory, rsvg-convert $rsvg_memory; one bitmap is $bitmap KiB"
  if [ "$name" != translucent ] || [ "${CHECK_8K:-}" = 1 ]; then
    echo -n "same picture? vantel against rsvg-convert: "
    /usr/bin/python3 "$here/png_difference.py" "$work/vantel-$name.png" "$work/rsvg-$name.png" 4
  fi
  vantel_size=$(stat -c %s "$work/vantel-$name.png")
  rsvg_size=$(stat -c %s "$work/rsvg-$name.png")
  echo "file size (bytes): vantel $vantel_size, rsvg-convert $rsvg_size"
  printf '%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\n' "$name" "$size" "$vantel_memory" "$rsvg_memory" "$bitmap" \
    "$vantel_size" "$rsvg_size" "$scene_runs" >> "$table"
done

echo
/usr/bin/python3 - "$work" "$table" "$start_memory" <<'EOF'
import json, math, sys
work, table, start = sys.argv[1], sys.argv[2], int(sys.argv[3])
print("| scene | runs | `vantel render` | `rsvg-convert` | faster by | peak memory, vantel / rsvg | vantel above start-up, in bitmaps | PNG size, vantel / rsvg | size ratio |")
print("|---|---|---|---|---|---|---|---|---|")
for line in open(table):
    name, size, vm, rm, bitmap, vs, rs, runs = line.split("\t")
    vm, rm, bitmap, vs, rs = int(vm), int(rm), int(bitmap), int(vs), int(rs)
    results = json.load(open(f"{work}/hyperfine-{name}.json"))["results"]
    (v, r) = ((x["mean"], x["stddev"]) for x in results)
    ratio = r[0] / v[0]
    spread = ratio * math.hypot(v[1] / v[0], r[1] / r[0])
    ms = lambda t: f"{t[0] * 1000:.0f} ± {t[1] * 1000:.0f} ms" if t[0] >= 0.1 else f"{t[0] * 1000:.1f} ± {t[1] * 1000:.1f} ms"
    print(f"| {name} {size} | {runs.strip()} | {ms(v)} | {ms(r)} | {ratio:.1f} ± {spread:.1f} x "
          f"| {vm / 1024:.1f} MB / {rm / 1024:.1f} MB | {(vm - start) / bitmap:.2f} "
          f"| {vs:,} B / {rs:,} B | {vs / rs:.2f} |")
EOF
