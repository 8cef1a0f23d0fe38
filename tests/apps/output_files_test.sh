#!/bin/bash
# What `vantel render` leaves when it cannot finish: Ctrl+C during a batch of
# large BMPs and SIGTERM during a download end the run with 130 / 143 and
# remove every temporary file; a file-size limit is a write error naming the
# output, with the earlier output kept. A device or a pipe named as the
# output is written into, never replaced.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

big="$WORK/big"
mkdir -p "$big" "$WORK/out" "$WORK/tmp"
for i in 1 2 3 4; do
  "$PYTHON" "$SOURCE_DIR/bench/scale_document.py" "$EXAMPLES/sample.aspectratio" "$big/shot$i.aspectratio" 2.5
done

hidden_files() { find "$1" -mindepth 1 -name '.*' | tr '\n' ' '; }

# Ctrl+C while the outputs are being written: the run is held still once a
# temporary file exists, so that the signal lands mid-write. Other workers
# may be making their files as the signal comes; a few tries make that likely.
for attempt in 1 2 3 4 5; do
  rm -f "$WORK"/out/*
  set -m  # job control: a background job otherwise starts with SIGINT ignored
  "$VANTEL" render "$big"/*.aspectratio --out-dir "$WORK/out" --format bmp --jobs 4 2>"$WORK/stderr" &
  run=$!
  set +m
  until compgen -G "$WORK/out/.*.bmp.*" >/dev/null || ! kill -0 "$run" 2>/dev/null; do :; done
  kill -STOP "$run" 2>/dev/null || true
  caught=$(hidden_files "$WORK/out")
  kill -INT "$run" 2>/dev/null || true
  kill -CONT "$run" 2>/dev/null || true
  status=0
  wait "$run" || status=$?
  [ -n "$caught" ] || fail "the batch ended before a temporary file was seen"
  [ "$status" -eq 130 ] || fail "Ctrl+C during a batch: exit status $status, expected 130"
  [ -z "$(hidden_files "$WORK/out")" ] || fail "Ctrl+C during a batch (try $attempt) left $(hidden_files "$WORK/out")"
done

# SIGTERM during a download that never ends.
"$PYTHON" "$SOURCE_DIR/tests/support/http_server.py" "$EXAMPLES" >"$WORK/port" &
server=$!
trap 'kill "$server" 2>/dev/null; rm -rf "$WORK"' EXIT
for _ in $(seq 100); do [ -s "$WORK/port" ] && break; sleep 0.1; done
TMPDIR="$WORK/tmp" "$VANTEL" render "http://127.0.0.1:$(head -n 1 "$WORK/port")/stall" -o "$WORK/stall.png" &
run=$!
for _ in $(seq 200); do compgen -G "$WORK/tmp/vantel-download-*" >/dev/null && break; sleep 0.05; done
kill -TERM "$run"
status=0
wait "$run" || status=$?
[ "$status" -eq 143 ] || fail "SIGTERM during a download: exit status $status, expected 143"
[ -z "$(ls -A "$WORK/tmp")" ] || fail "SIGTERM during a download left $(ls -A "$WORK/tmp")"

# A file-size limit (ulimit -f counts KiB) far below the BMP.
cp "$EXAMPLES/sample.aspectratio" "$WORK/out/earlier.bmp"
expect_exit 3 "file-size limit" bash -c 'ulimit -f 64; exec "$@"' - \
  "$VANTEL" render "$big/shot1.aspectratio" -o "$WORK/out/earlier.bmp"
expect_one_error_line "file-size limit" "$WORK/out/earlier.bmp: cannot write" "File too large"
cmp -s "$EXAMPLES/sample.aspectratio" "$WORK/out/earlier.bmp" || fail "file-size limit: the earlier output changed"
[ -z "$(hidden_files "$WORK/out")" ] || fail "file-size limit left $(hidden_files "$WORK/out")"

# A character device (what /dev/null is) and a pipe no one reads.
mknod "$WORK/null" c 1 3
expect_exit 0 "a device as output" "$VANTEL" render "$EXAMPLES/sample.aspectratio" -o "$WORK/null" --format png
[ -c "$WORK/null" ] || fail "the device given as output was replaced"
mkfifo "$WORK/pipe"
expect_exit 3 "a pipe no one reads" "$VANTEL" new -o "$WORK/pipe" --force
expect_one_error_line "a pipe no one reads" "$WORK/pipe: cannot write" "no one is reading"
[ -p "$WORK/pipe" ] || fail "the pipe given as output was replaced"
finish
