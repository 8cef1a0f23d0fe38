#!/bin/bash
# Every broken document of tests/data/bad/ (and more made here: a guide
# nested 10000 deep, a 100 MB file, /dev/zero, a named pipe no one writes to,
# files that cannot be read) through
# `vantel validate`, `vantel render -o` and `vantel thumbnail`: each must print
# exactly its expected lines on standard error, each starting with the file's
# path, exit with its expected code, not crash, and write nothing: no output,
# no temporary file, and an earlier output left byte for byte as it was.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

CORPUS="$SOURCE_DIR/tests/data/bad"
declare -A code lines
while IFS=$'\t' read -r name status line; do
  code[$name]=$status
  lines[$name]+="$line"$'\n'
done <"$CORPUS/expected.tsv"

files=()
for name in "${!code[@]}"; do
  [ -f "$CORPUS/$name.aspectratio" ] || fail "$name: listed in expected.tsv, but there is no $name.aspectratio"
  files+=("$CORPUS/$name.aspectratio")
done
for file in "$CORPUS"/*.aspectratio; do
  name=$(basename "$file" .aspectratio)
  [ -n "${code[$name]:-}" ] || fail "$name.aspectratio has no line in expected.tsv"
done
[ "${#files[@]}" -ge 80 ] || fail "only ${#files[@]} documents in the corpus"

# Too large to keep in the source tree; the generator makes them.
made="$WORK/made"
mkdir -p "$made"
"$PYTHON" "$CORPUS/make_corpus.py" deep "$made/deep-10000.aspectratio"
code[deep-10000]=1
lines[deep-10000]=$'The given data was not a valid property list\\. Containers nest deeper than 512 levels\\.\n'
"$PYTHON" "$CORPUS/make_corpus.py" huge "$made/huge-100mb.aspectratio"
code[huge-100mb]=1
lines[huge-100mb]=$'the file is larger than the limit of 8 MiB for an overlay document\n'
code[zero]=1  # /dev/zero: endless, so only a bounded read ends
lines[zero]=${lines[huge-100mb]}
mkdir "$made/folder.aspectratio"
code[folder]=3
lines[folder]=$'cannot read: Is a directory\n'
code[missing]=3
lines[missing]=$'cannot read: No such file or directory\n'
mkfifo "$made/fifo.aspectratio"  # a named pipe no one writes to
code[fifo]=3
lines[fifo]=$'cannot read: nothing arrived within 3 seconds\n'
files+=("$made/deep-10000.aspectratio" "$made/huge-100mb.aspectratio" /dev/zero "$made/folder.aspectratio"
        "$made/missing.aspectratio" "$made/fifo.aspectratio")

out="$WORK/out"
earlier="$WORK/earlier.png"
"$VANTEL" render "$EXAMPLES/sample.aspectratio" -o "$earlier"

# Runs one command on FILE with the output folder empty (or holding only a copy
# of an earlier picture at OUTPUT, when given) and checks what it leaves.
check() { # LABEL FILE EXISTING_OUTPUT|"" COMMAND...
  local label=$1 file=$2 existing=$3 name status=0 i
  shift 3
  name=$(basename "$file" .aspectratio)
  rm -rf "$out" && mkdir "$out"
  if [ -n "$existing" ]; then cp "$earlier" "$existing"; fi
  # A hang must fail the test, not stall it; usage is measured for the huge file.
  if [[ "$file" == */huge-100mb.aspectratio || "$file" == /dev/zero ]]; then
    # Measured with its peak memory; a Python start-up per run would double
    # the test's time, so only these two pay for it.
    "$PYTHON" - "$WORK/usage" timeout 60 "$@" >"$WORK/stdout" 2>"$WORK/stderr" <<'PY' || status=$?
import resource, subprocess, sys
status = subprocess.call(sys.argv[2:])
with open(sys.argv[1], "w") as usage:
    print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss // 1024, file=usage)
sys.exit(status if status >= 0 else 128 - status)
PY
  else
    timeout 60 "$@" >"$WORK/stdout" 2>"$WORK/stderr" || status=$?
  fi
  if [ "$status" -ge 124 ]; then
    fail "$label $name: exit status $status (a crash, a signal or a hang)"
  elif [ "$status" -ne "${code[$name]}" ]; then
    fail "$label $name: exit status $status, expected ${code[$name]}"
  fi
  if grep -qE 'Aborted|Sanitizer|runtime error|terminate called|Segmentation' "$WORK/stderr"; then
    fail "$label $name: crashed: $(cat "$WORK/stderr")"
  fi
  if [ -s "$WORK/stdout" ]; then fail "$label $name: wrote on standard output: $(head -c 300 "$WORK/stdout")"; fi
  mapfile -t expected < <(printf '%s' "${lines[$name]}")
  mapfile -t actual <"$WORK/stderr"
  if [ "${#actual[@]}" -ne "${#expected[@]}" ]; then
    fail "$label $name: ${#actual[@]} lines on standard error, expected ${#expected[@]}: $(head -c 600 "$WORK/stderr")"
  else
    for i in "${!expected[@]}"; do
      if [[ "${actual[$i]}" != "$file: "* ]]; then
        fail "$label $name: line $((i + 1)) does not start with the file's path: ${actual[$i]}"
      elif ! [[ "${actual[$i]#"$file: "}" =~ ^${expected[$i]}$ ]]; then
        fail "$label $name: line $((i + 1)) is '${actual[$i]#"$file: "}', expected /${expected[$i]}/"
      fi
    done
  fi
  if [ -n "$existing" ]; then
    cmp -s "$earlier" "$existing" || fail "$label $name: the earlier output was changed"
    rm -f "$existing"
  fi
  if [ -n "$(ls -A "$out")" ]; then fail "$label $name: left $(ls -A "$out" | tr '\n' ' ')in the output folder"; fi
}

for file in "${files[@]}"; do
  check validate "$file" "" "$VANTEL" validate "$file"
  check render "$file" "" "$VANTEL" render "$file" -o "$out/picture.png"
  check "render over an earlier picture:" "$file" "$out/picture.png" "$VANTEL" render "$file" -o "$out/picture.png"
  check thumbnail "$file" "" "$VANTEL" thumbnail -s 128 "$file" "$out/thumbnail"
  check "thumbnail over an earlier one:" "$file" "$out/thumbnail" "$VANTEL" thumbnail -s 128 "$file" "$out/thumbnail"
  if [[ "$file" == */huge-100mb.aspectratio || "$file" == /dev/zero ]]; then
    # Refused without holding the whole file, let alone a tree built from it.
    [ "$(cat "$WORK/usage")" -lt 128 ] || fail "$file took $(cat "$WORK/usage") MiB of memory"
  fi
done

# The render command with --out-dir takes the same path for each document.
run_status=0
"$VANTEL" render "$CORPUS/not-a-plist.aspectratio" "$CORPUS/grid-two-cases.aspectratio" --out-dir "$out" \
  >"$WORK/stdout" 2>"$WORK/stderr" || run_status=$?
[ "$run_status" -eq 1 ] || fail "render --out-dir: exit status $run_status, expected 1"
grep -qxF "$CORPUS/grid-two-cases.aspectratio: ratios[0].children[0].columnType: Invalid number of keys found, expected one." \
  "$WORK/stderr" || fail "render --out-dir: no line for grid-two-cases: $(cat "$WORK/stderr")"
[ -z "$(ls -A "$out")" ] || fail "render --out-dir: left $(ls -A "$out" | tr '\n' ' ')"
finish
