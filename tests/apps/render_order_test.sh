#!/bin/bash
# `vantel render` takes several documents in natural order of their names,
# numbers by value (shot2 before shot10), whatever order the shell gave
# them in: a batch reports its bad documents in that order on any number of
# threads. One PDF of several documents keeps the order given for its pages.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

# DOCUMENT WIDTH [GOOD_GUIDES]: a canvas WIDTH wide with one guide; with
# GOOD_GUIDES the guide has a grid too fine to draw, which the check refuses
# after reading that many good guides before it.
write_document() {
  "$PYTHON" - "$@" <<'PY'
import plistlib, sys
path, width = sys.argv[1], float(sys.argv[2])
def guide():
    return {"id": "6B1F5E0C-3C7A-4E53-9B1D-2F6A0C8E4D11", "width": 16.0, "height": 9.0,
            "color": {"red": 1.0, "green": 0.0, "blue": 0.0, "alpha": 1.0}, "weight": 2.0}
ratios = [guide()]
if len(sys.argv) > 3:
    ratios = [guide() for _ in range(int(sys.argv[3]))] + [guide()]
    ratios[-1]["rowType"] = {"divisor": {"_0": 500000}}
with open(path, "wb") as f:
    plistlib.dump({"size": {"width": width, "height": 100.0, "margin": 0.0}, "ratios": ratios}, f)
PY
}

mkdir -p "$WORK/bad" "$WORK/good"
# shot1 is slow to read, so on several threads later documents finish first.
write_document "$WORK/bad/shot1.aspectratio" 200 10000
for n in 2 9 10 11 100; do write_document "$WORK/bad/shot$n.aspectratio" 200 0; done
for n in 1 2 10; do write_document "$WORK/good/Page$n.aspectratio" $((n * 100)); done

# The shell's order puts shot10 before shot2; the reports must not.
mapfile -t inputs < <(printf '%s\n' "$WORK"/bad/*.aspectratio)
[ "$(basename "${inputs[1]}")" = "shot10.aspectratio" ] || fail "the glob did not give shell order: ${inputs[*]}"
expected=$(printf '%s\n' 1 2 9 10 11 100)
for jobs in 1 4; do
  status=0
  "$VANTEL" render "${inputs[@]}" --out-dir "$WORK/out" --jobs "$jobs" >/dev/null 2>"$WORK/stderr" || status=$?
  [ "$status" -eq 1 ] || fail "--jobs $jobs: exit status $status, expected 1"
  reported=$(sed -n 's|^.*/shot\([0-9]*\)\.aspectratio: .*|\1|p' "$WORK/stderr")
  [ "$reported" = "$expected" ] || fail "--jobs $jobs: reported in the order $(echo "$reported" | tr '\n' ' ')"
done

# Pages: Page10 (1000 pt wide), Page2 (200), Page1 (100), in the order given.
"$VANTEL" render "$WORK/good/Page10.aspectratio" "$WORK/good/Page2.aspectratio" "$WORK/good/page1.aspectratio" \
  -o "$WORK/book.pdf" 2>"$WORK/stderr" || true
grep -q "page1.aspectratio: cannot read" "$WORK/stderr" || fail "a missing page is not reported: $(cat "$WORK/stderr")"
"$VANTEL" render "$WORK/good/Page10.aspectratio" "$WORK/good/Page2.aspectratio" "$WORK/good/Page1.aspectratio" \
  -o "$WORK/book.pdf" || fail "the PDF of three documents was not written"
widths=$(pdfinfo -f 1 -l 3 "$WORK/book.pdf" | sed -n 's/^Page *[0-9]* size: *\([0-9.]*\) x .*/\1/p' | tr '\n' ' ')
[ "$widths" = "1000 200 100 " ] || fail "page widths in the order $widths, expected 1000 200 100"
finish
