#!/bin/bash
# vantel-preview --help and --version answer on the terminal and exit 0
# without a display to open a window on; an unknown option is refused there
# too, never taken for a file name.
set -u
preview=$1
fail() { echo "FAIL: $*" >&2; exit 1; }
run() { env -u DISPLAY -u WAYLAND_DISPLAY timeout 20 "$preview" "$@"; }

out=$(run --help) || fail "--help: exit $?: $out"
grep -q "^  vantel-preview FILE$" <<<"$out" || fail "--help shows no usage: $out"
out=$(run --version) || fail "--version: exit $?: $out"
[[ $out =~ ^vantel-preview\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "--version: $out"
status=0
err=$(run --bogus 2>&1 >/dev/null) || status=$?
[ "$status" -eq 64 ] && grep -q "unknown option '--bogus'" <<<"$err" || fail "--bogus: exit $status: $err"
echo "preview options: ok"
