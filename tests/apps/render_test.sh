#!/bin/bash
# `vantel render FILE -o OUT`: every bitmap format, chosen by the output's
# extension or by --format, decodes as that format at the canvas size; PDF is
# a vector page of the canvas; usage,
# bad documents and unreadable or unwritable files get their exit codes and
# one line naming the file; a failed render leaves an earlier output as it was
# and no temporary file behind.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
SAMPLE="$EXAMPLES/sample.aspectratio"

check_image() { # FILE FORMAT (the sample's 1920x1080 canvas)
  "$PYTHON" "$HERE/imagecheck.py" "$1" "$2" 1920 1080 || fail "$1 is not a whole $2 image of the canvas"
}

# Formats from the extension, any case, and the alternative extensions.
for pair in png:png tiff:tiff tif:tiff bmp:bmp gif:gif jpeg:jpeg jpg:jpeg JPG:jpeg jpeg2000:jpeg2000 jp2:jpeg2000; do
  extension=${pair%%:*} format=${pair##*:}
  output="$WORK/out.$extension"
  expect_exit 0 "render to .$extension" "$VANTEL" render "$SAMPLE" -o "$output"
  if [ -s "$WORK/stdout" ]; then fail "render to .$extension printed on standard output: $(cat "$WORK/stdout")"; fi
  check_image "$output" "$format"
done
check_png "$WORK/out.png" "$SAMPLE" 1920 || fail "the PNG does not show the sample document"

# --format wins over the extension, and names a format for a file without one.
expect_exit 0 "--format gif" "$VANTEL" render "$SAMPLE" -o "$WORK/picture.png" --format gif
check_image "$WORK/picture.png" gif
expect_exit 0 "--format TIFF without extension" "$VANTEL" render "$SAMPLE" -o "$WORK/picture" --format TIFF
check_image "$WORK/picture" tiff

# The binary example renders as well.
expect_exit 0 "binary document" "$VANTEL" render "$EXAMPLES/portrait-binary.aspectratio" -o "$WORK/portrait.png"
check_png "$WORK/portrait.png" "$EXAMPLES/portrait-binary.aspectratio" 1350 || fail "the binary document's PNG"

# Bad usage: exit 2, nothing written.
expect_exit 2 "unknown extension" "$VANTEL" render "$SAMPLE" -o "$WORK/out.webp"
grep -q "format" "$WORK/stderr" || fail "unknown extension: the error does not mention the format"
expect_exit 2 "unknown --format" "$VANTEL" render "$SAMPLE" -o "$WORK/out2.png" --format webp
expect_exit 2 "no output named" "$VANTEL" render "$SAMPLE"
expect_exit 2 "-o with two documents" "$VANTEL" render "$SAMPLE" "$SAMPLE" -o "$WORK/two.png"
# What the parser refuses reads as the command's other usage errors: one
# line quoting what was typed.
refused() { # PATTERN ARGUMENT...
  local pattern=$1
  shift
  expect_exit 2 "$*" "$VANTEL" "$@"
  expect_one_error_line "$*" "vantel: " "$pattern"
}
refused "^vantel: --output and --out-dir cannot be given together" render "$SAMPLE" -o "$WORK/both.png" --out-dir "$WORK/both"
refused "^vantel: --jobs: '0' is not a whole number from 1 to 1024" render "$SAMPLE" --out-dir "$WORK/zero" --jobs 0
refused "^vantel: unknown command 'bogus'; the commands are render, thumbnail" bogus
refused "^vantel: render: unknown option '--bogus'; see vantel render --help" render "$SAMPLE" --bogus -o "$WORK/x.png"
refused "^vantel: info: unexpected argument 'extra'" info "$SAMPLE" extra
refused "^vantel: --width: 'abc' is not a number$" render "$SAMPLE" --width abc -o "$WORK/x.png"
refused "^vantel: --width: needs a value" render "$SAMPLE" -o "$WORK/x.png" --width
refused "^vantel: --colors: 'x' is not one of hex, hex-alpha, rgba" info --colors x "$SAMPLE"
refused "^vantel: thumbnail: OUTPUT is missing" thumbnail "$SAMPLE"
for leftover in out.webp out2.png two.png both.png both zero; do
  if [ -e "$WORK/$leftover" ]; then fail "a refused render wrote $leftover"; fi
done
cp "$SAMPLE" "$WORK/self.png"
expect_exit 2 "rendering a document over itself" "$VANTEL" render "$WORK/self.png" -o "$WORK/self.png"
cmp -s "$SAMPLE" "$WORK/self.png" || fail "rendering a document over itself replaced the document"

# Unreadable input: exit 3, one line naming it.
expect_exit 3 "missing document" "$VANTEL" render "$WORK/missing.aspectratio" -o "$WORK/missing.png"
expect_one_error_line "missing document" "$WORK/missing.aspectratio" "cannot read"
expect_exit 3 "a folder as document" "$VANTEL" render "$WORK" -o "$WORK/folder.png"

# A bad document: exit 1, one line per problem, and an earlier output stays.
"$PYTHON" - "$WORK/bad.aspectratio" <<'PY'
import plistlib, sys
guide = {"id": "6B1F5E0C-3C7A-4E53-9B1D-2F6A0C8E4D11", "width": 16.0, "height": 9.0,
         "color": {"red": 1.0, "green": 0.0, "blue": 0.0, "alpha": 1.0}, "weight": -3.0}
with open(sys.argv[1], "wb") as f:
    plistlib.dump({"size": {"width": 640.0, "height": 360.0, "margin": 10.0}, "ratios": [guide]}, f)
PY
printf 'earlier picture' >"$WORK/kept.png"
expect_exit 1 "bad document" "$VANTEL" render "$WORK/bad.aspectratio" -o "$WORK/kept.png"
expect_one_error_line "bad document" "$WORK/bad.aspectratio" "ratios\[0\]\.weight: .*negative"
[ "$(cat "$WORK/kept.png")" = "earlier picture" ] || fail "a refused document changed the earlier output"
printf 'not a property list' >"$WORK/garbage.aspectratio"
expect_exit 1 "not a property list" "$VANTEL" render "$WORK/garbage.aspectratio" -o "$WORK/kept.png"
expect_one_error_line "not a property list" "$WORK/garbage.aspectratio" "."
[ "$(cat "$WORK/kept.png")" = "earlier picture" ] || fail "an unreadable document changed the earlier output"

# Unwritable output: exit 3, no temporary file left beside it, an earlier
# output untouched. (A folder in the output's place cannot be replaced, even by root.)
mkdir -p "$WORK/taken.png" "$WORK/out-folder"
expect_exit 3 "a folder in the output's place" "$VANTEL" render "$SAMPLE" -o "$WORK/taken.png"
expect_one_error_line "a folder in the output's place" "$WORK/taken.png" "cannot write"
[ -d "$WORK/taken.png" ] || fail "the folder in the output's place was replaced"
expect_exit 3 "output folder missing" "$VANTEL" render "$SAMPLE" -o "$WORK/no/such/folder/out.png"
expect_one_error_line "output folder missing" "$WORK/no/such/folder/out.png" "cannot write"
leftovers=$(find "$WORK" -name '.*' -type f)
[ -z "$leftovers" ] || fail "temporary files left behind: $leftovers"

# PDF: one page of the canvas in points, drawn as vector paths (no embedded
# image), which shows the document when rasterised at 72 dpi; a bad document
# leaves no PDF; --out-dir names the files .pdf.
expect_exit 0 "render to .pdf" "$VANTEL" render "$SAMPLE" -o "$WORK/sample.pdf"
pdfinfo "$WORK/sample.pdf" >"$WORK/pdfinfo" || fail "the PDF does not open in pdfinfo"
grep -q '^Pages: *1$' "$WORK/pdfinfo" || fail "the PDF is not one page: $(cat "$WORK/pdfinfo")"
grep -q '^Page size: *1920 x 1080 pts' "$WORK/pdfinfo" || fail "the PDF page is not the canvas: $(cat "$WORK/pdfinfo")"
[ "$(pdfimages -list "$WORK/sample.pdf" | tail -n +3 | wc -l)" -eq 0 ] || fail "the PDF embeds a bitmap"
pdftoppm -png -r 72 -singlefile "$WORK/sample.pdf" "$WORK/from-pdf"
check_png "$WORK/from-pdf.png" "$SAMPLE" 1920 || fail "the PDF does not show the sample document"
expect_exit 1 "bad document to PDF" "$VANTEL" render "$WORK/bad.aspectratio" -o "$WORK/bad.pdf"
if [ -e "$WORK/bad.pdf" ]; then fail "a refused document left a PDF"; fi
expect_exit 0 "--out-dir --format pdf" "$VANTEL" render "$SAMPLE" "$EXAMPLES/portrait-binary.aspectratio" \
  --out-dir "$WORK/pdfs" --format pdf
for name in sample portrait-binary; do
  pdfinfo "$WORK/pdfs/$name.pdf" >/dev/null || fail "--out-dir --format pdf did not write $name.pdf"
done

# A successful render replaces an earlier output whole.
expect_exit 0 "replacing an output" "$VANTEL" render "$SAMPLE" -o "$WORK/kept.png"
check_image "$WORK/kept.png" png
finish
