#!/bin/bash
# Thunar starts the thumbnailer twice at once for the same file and output.
# Both runs must succeed and leave one whole PNG, with no temporary files
# left beside it. Repeated, at the largest size so that the runs overlap.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
make_bin_dir

document="$EXAMPLES/sample.aspectratio"
mkdir -p "$WORK/out"
output="$WORK/out/.thumbnail-in-progress"

run_pair() { # LABEL SIZE SIZE: two runs at once on the one output
  run_exec_line "$2" "$document" "$output" 2>"$WORK/first.err" &
  local first=$!
  run_exec_line "$3" "$document" "$output" 2>"$WORK/second.err" &
  local second=$!
  wait "$first" || fail "$1: the $2 run failed: $(cat "$WORK/first.err")"
  wait "$second" || fail "$1: the $3 run failed: $(cat "$WORK/second.err")"
}

for round in 1 2 3 4 5; do
  run_pair "round $round" 1024 1024
  check_png "$output" "$document" 1024 || fail "round $round: output is not the whole thumbnail"
  others=$(find "$WORK/out" -mindepth 1 ! -path "$output")
  [ -z "$others" ] || fail "round $round: files left beside the output: $others"
  rm -f "$output"
done

# Two different sizes at once: whichever finishes last, the file must hold
# one whole PNG, never the head of one and the tail of the other.
for round in 1 2 3; do
  run_pair "mixed round $round" 1024 128
  check_png "$output" "$document" 1024 > /dev/null || check_png "$output" "$document" 128 ||
    fail "mixed round $round: output is not one whole thumbnail"
  rm -f "$output"
done
finish
