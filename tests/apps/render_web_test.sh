#!/bin/bash
# http(s) documents: `vantel render`, `info` and `validate` read a document
# from a local web server on 127.0.0.1 (started here, never the internet).
# A served document renders like the same file read from disk and takes its
# --out-dir name from the address (an escaped "/" in it is refused, and the
# path is fetched as written); a 9 MiB one is stopped while downloading
# with the limit in the message; a 404, a refused connection and https to a
# plain http port get one line naming the address and the exit code of an
# unreadable file; nothing is written for a failure.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

site="$WORK/site"
mkdir -p "$site"
cp "$EXAMPLES/sample.aspectratio" "$site/sample.aspectratio"
"$PYTHON" -c 'import sys; open(sys.argv[1], "wb").write(b"<" * (9 << 20))' "$site/huge.aspectratio"
# /stream/ serves the file named by the last part of the path as requested.
cp "$EXAMPLES/portrait-binary.aspectratio" "$site/x%2Fsample.aspectratio"

"$PYTHON" "$SOURCE_DIR/tests/support/http_server.py" "$site" >"$WORK/port" &
server=$!
trap 'kill "$server" 2>/dev/null; rm -rf "$WORK"' EXIT
for _ in $(seq 100); do [ -s "$WORK/port" ] && break; sleep 0.1; done
web="http://127.0.0.1:$(head -n 1 "$WORK/port")"
# Downloads land in the temporary folder: a private one shows what is left.
export TMPDIR="$WORK/tmp"
mkdir -p "$TMPDIR"

# A served document draws as the file does.
"$VANTEL" render "$EXAMPLES/sample.aspectratio" -o "$WORK/local.png"
expect_exit 0 "render from http" "$VANTEL" render "$web/sample.aspectratio" -o "$WORK/web.png"
cmp -s "$WORK/local.png" "$WORK/web.png" || fail "the served document rendered differently from the file"
expect_exit 0 "render --out-dir from http" "$VANTEL" render "$web/sample.aspectratio?v=2" --out-dir "$WORK/outs"
[ -f "$WORK/outs/sample.png" ] || fail "--out-dir did not name the output after the address: $(ls "$WORK/outs")"
expect_exit 0 "validate from http" "$VANTEL" validate "$web/sample.aspectratio"
expect_exit 0 "info from http" "$VANTEL" info "$web/sample.aspectratio"
grep -q "1920" "$WORK/stdout" || fail "info from http does not describe the canvas: $(cat "$WORK/stdout")"

# The path goes out as written: an escaped "/" stays inside one name. As an
# --out-dir name it names no file and is refused before anything is fetched.
"$VANTEL" render "$EXAMPLES/portrait-binary.aspectratio" -o "$WORK/portrait.png"
expect_exit 0 "escaped slash" "$VANTEL" render "$web/stream/x%2Fsample.aspectratio" -o "$WORK/escaped.png"
cmp -s "$WORK/portrait.png" "$WORK/escaped.png" || fail "an escaped slash in the path fetched another document"
for path in /x%2Fsample.aspectratio /a%00.aspectratio /a/..%2F..%2Fb.aspectratio; do
  expect_exit 2 "--out-dir name from $path" "$VANTEL" render "$web$path" --out-dir "$WORK/unnamed"
  expect_one_error_line "--out-dir name from $path" "$web$path: " "cannot name a file"
done
[ ! -e "$WORK/unnamed" ] || fail "a refused --out-dir name left files: $(find "$WORK/unnamed")"

# Failures: the line names the address; no output appears.
for path in /huge.aspectratio /stream/huge.aspectratio; do
  expect_exit 1 "9 MiB at $path" "$VANTEL" render "$web$path" -o "$WORK/huge.png"
  expect_one_error_line "9 MiB at $path" "$web$path: " "limit of 8 MiB.*stopped"
done
expect_exit 3 "404" "$VANTEL" render "$web/missing.aspectratio" -o "$WORK/missing.png"
expect_one_error_line "404" "$web/missing.aspectratio: " "404 Not Found"
expect_exit 3 "404 validate" "$VANTEL" validate "$web/missing.aspectratio"
expect_one_error_line "404 validate" "$web/missing.aspectratio: " "404 Not Found"
expect_exit 3 "refused connection" "$VANTEL" render "http://127.0.0.1:1/a.aspectratio" -o "$WORK/refused.png"
expect_one_error_line "refused connection" "http://127.0.0.1:1/a.aspectratio: " "connection was refused"
expect_exit 3 "https to http" "$VANTEL" render "${web/http:/https:}/sample.aspectratio" -o "$WORK/tls.png"
expect_one_error_line "https to http" "${web/http:/https:}/sample.aspectratio: " "cannot download: the TLS handshake failed \(is it an http server\?\)$"
expect_exit 3 "bad address" "$VANTEL" render "http://127.0.0.1/a b.aspectratio" -o "$WORK/bad.png"
expect_one_error_line "bad address" "http://127.0.0.1/a b.aspectratio: " "not a valid"
expect_exit 3 "missing TMPDIR" env TMPDIR="$WORK/absent" "$VANTEL" render "$web/sample.aspectratio" -o "$WORK/tmpdir.png"
expect_one_error_line "missing TMPDIR" "$web/sample.aspectratio: " "temporary folder $WORK/absent"
for name in huge missing refused tls bad tmpdir; do
  [ ! -e "$WORK/$name.png" ] || fail "a failed download left $name.png"
done
leftovers=$(find "$TMPDIR" -mindepth 1 | wc -l)
[ "$leftovers" -eq 0 ] || fail "temporary files left behind: $(ls "$TMPDIR")"

finish
