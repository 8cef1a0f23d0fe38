#!/bin/bash
# The forms of `vantel render` that fit into pipes and collections: an input
# of - is standard input (same limit, named stdin), -o - writes only the
# file to standard output, a closed pipe ends quietly,
# several documents make one PDF of a page each (on standard output too), and every format gives the
# same bytes on every run (PDF dates from SOURCE_DATE_EPOCH).
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
SAMPLE="$EXAMPLES/sample.aspectratio"             # 1920 x 1080
PORTRAIT="$EXAMPLES/portrait-binary.aspectratio"  # 1080 x 1350

"$VANTEL" render "$SAMPLE" -o - >"$WORK/piped.png" 2>"$WORK/stderr" || fail "-o -: $(cat "$WORK/stderr")"
"$PYTHON" "$HERE/imagecheck.py" "$WORK/piped.png" png 1920 1080 || fail "-o - is not the PNG alone"
"$VANTEL" render "$SAMPLE" -o - --format pdf --zoom 0.5 >"$WORK/piped.pdf" || fail "-o - --format pdf"
"$PYTHON" "$HERE/imagecheck.py" "$WORK/piped.pdf" pdf 960 540 || fail "-o - --format pdf"

# Standard input in, standard output out: the same picture as from the file.
cat "$SAMPLE" | "$VANTEL" render - -o - --format png 2>"$WORK/stderr" | cmp -s - "$WORK/piped.png" ||
  fail "cat doc | vantel render - -o - differs from rendering the file: $(cat "$WORK/stderr")"
status=0
head -c 9000000 /dev/zero | "$VANTEL" render - -o "$WORK/big.png" 2>"$WORK/stderr" || status=$?
[ "$status" -eq 1 ] && [ ! -e "$WORK/big.png" ] || fail "9 MB on stdin: exit $status, or an output was written"
grep -q "^stdin: .*8 MiB" "$WORK/stderr" || fail "9 MB on stdin: $(cat "$WORK/stderr")"

status=0
"$VANTEL" render "$SAMPLE" -o - --format tiff 2>"$WORK/stderr" | (exec 0<&-) || status=${PIPESTATUS[0]}
[ "$status" -ne 0 ] || fail "a closed pipe gave exit 0"
[ ! -s "$WORK/stderr" ] || fail "a closed pipe printed: $(cat "$WORK/stderr")"

"$VANTEL" render "$SAMPLE" "$PORTRAIT" "$SAMPLE" -o "$WORK/all.pdf" || fail "three documents to one PDF"
pages=$(pdfinfo -f 1 -l 3 "$WORK/all.pdf" | awk '/^Pages:/ {print $2} /^Page +[0-9]+ size:/ {print $4 "x" $6}' | xargs)
[ "$pages" = "3 1920x1080 1080x1350 1920x1080" ] || fail "pages of all.pdf: $pages"

"$VANTEL" render "$SAMPLE" "$PORTRAIT" -o - --format pdf >"$WORK/piped-pages.pdf" || fail "two documents to -o - --format pdf"
pdfinfo "$WORK/piped-pages.pdf" | grep -q "^Pages: *2$" || fail "-o - --format pdf did not get a page per document"
status=0
"$VANTEL" render "$SAMPLE" "$SAMPLE" -o - 2>"$WORK/stderr" >/dev/null || status=$?
[ "$status" -eq 2 ] && [ "$(wc -l <"$WORK/stderr")" -eq 1 ] || fail "-o - with two inputs: exit $status"
printf 'not a plist' >"$WORK/bad.aspectratio"
status=0
"$VANTEL" render "$SAMPLE" "$WORK/bad.aspectratio" -o "$WORK/some.pdf" 2>"$WORK/stderr" || status=$?
[ "$status" -eq 1 ] && [ ! -e "$WORK/some.pdf" ] || fail "a bad page: exit $status, or a PDF was written"
grep -q "bad.aspectratio" "$WORK/stderr" || fail "a bad page is not named: $(cat "$WORK/stderr")"

formats="png tiff bmp gif jpeg jpeg2000 pdf"
for format in $formats; do "$VANTEL" render "$SAMPLE" -o "$WORK/first.$format"; done
sleep 1  # a date written into a file would change
for format in $formats; do
  "$VANTEL" render "$SAMPLE" -o "$WORK/second.$format"
  cmp -s "$WORK/first.$format" "$WORK/second.$format" || fail "$format differs between runs"
done
SOURCE_DATE_EPOCH=1700000000 "$VANTEL" render "$SAMPLE" -o "$WORK/dated.pdf"
pdfinfo "$WORK/dated.pdf" | grep -q "CreationDate: *Tue Nov 14 22:13:20 2023" ||
  fail "SOURCE_DATE_EPOCH is not the creation date: $(pdfinfo "$WORK/dated.pdf" | grep -i date)"
finish
