# Shared by the end-to-end scripts in this folder; sourced, not run.
# Each script is called as: SCRIPT VANTEL SOURCE_DIR [more...]
# shellcheck disable=SC2034  # EXAMPLES and others are for the sourcing scripts

set -euo pipefail

VANTEL=$(realpath "${1:?path of the built vantel command}")
SOURCE_DIR=$(realpath "${2:?source directory}")
HERE="$SOURCE_DIR/tests/apps"
EXAMPLES="$SOURCE_DIR/examples"
PYTHON=/usr/bin/python3
failures=0

fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}

finish() {
  if [ "$failures" -ne 0 ]; then
    echo "$failures check(s) failed" >&2
    exit 1
  fi
  echo "all checks passed"
}

# Runs COMMAND with its output in $WORK/stdout and $WORK/stderr and checks
# the exit status.
expect_exit() { # CODE NAME COMMAND...
  local expected=$1 name=$2 status=0
  shift 2
  "$@" >"$WORK/stdout" 2>"$WORK/stderr" || status=$?
  [ "$status" -eq "$expected" ] || fail "$name: exit status $status, expected $expected: $(cat "$WORK/stderr")"
}

# The single line on standard error must name the input and say what is wrong.
expect_one_error_line() { # NAME INPUT PATTERN
  local lines
  lines=$(wc -l <"$WORK/stderr")
  [ "$lines" -eq 1 ] || fail "$1: $lines lines on standard error, expected one: $(cat "$WORK/stderr")"
  grep -qF -- "$2" "$WORK/stderr" || fail "$1: the error does not name $2: $(cat "$WORK/stderr")"
  grep -qE -- "$3" "$WORK/stderr" || fail "$1: the error does not say /$3/: $(cat "$WORK/stderr")"
}

make_workdir() {
  WORK=$(mktemp -d "${TMPDIR:-/tmp}/vantel-e2e.XXXXXX")
  trap 'rm -rf "$WORK"' EXIT
}

# A folder holding only `vantel`, to put first on PATH: the .thumbnailer
# Exec line names the command, not a path.
make_bin_dir() {
  mkdir -p "$WORK/bin"
  ln -sf "$VANTEL" "$WORK/bin/vantel"
}

file_uri() {
  "$PYTHON" -c 'import pathlib, sys; print(pathlib.Path(sys.argv[1]).resolve().as_uri())' "$1"
}

# The Exec line of data/vantel.thumbnailer (or of THUMBNAILER_ENTRY) with
# %s, %u, %i, %o substituted, split into words the way the desktop entry
# rules do for an unquoted line.
exec_line_words() { # SIZE INPUT_PATH OUTPUT_PATH
  "$PYTHON" - "${THUMBNAILER_ENTRY:-$SOURCE_DIR/data/vantel.thumbnailer}" "$@" <<'EOF'
import configparser, pathlib, sys
entry, size, path, output = sys.argv[1:]
parser = configparser.ConfigParser(interpolation=None)
parser.optionxform = str
parser.read(entry)
line = parser["Thumbnailer Entry"]["Exec"]
codes = {"s": size, "u": pathlib.Path(path).resolve().as_uri(), "i": path, "o": output, "%": "%"}
words = []
for word in line.split():
    out, i = "", 0
    while i < len(word):
        if word[i] == "%" and i + 1 < len(word):
            out += codes[word[i + 1]]
            i += 2
        else:
            out += word[i]
            i += 1
    words.append(out)
print("\0".join(words), end="")
EOF
}

# Runs the Exec line for SIZE on INPUT writing OUTPUT, with our `vantel` first on PATH.
run_exec_line() { # SIZE INPUT_PATH OUTPUT_PATH
  local words
  mapfile -d '' words < <(exec_line_words "$@")
  PATH="$WORK/bin:$PATH" "${words[@]}"
}

check_png() { # IMAGE DOCUMENT SIZE [--text K=V]
  local image=$1 document=$2 size=$3
  shift 3
  "$PYTHON" "$HERE/pngcheck.py" "$image" --document "$document" --size "$size" "$@"
}
