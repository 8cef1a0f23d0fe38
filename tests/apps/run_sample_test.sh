#!/bin/bash
# What `make run` does: render examples/sample.aspectratio to a PNG. The
# picture must show the background, every guide's fill and outline, the grid
# lines and the nested guide where the layout puts them, and the area a guide
# clears; layoutcheck.py compares the pixels with the layout, pixel by pixel
# along a lattice of rows and columns.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir

"$VANTEL" render "$EXAMPLES/sample.aspectratio" -o "$WORK/sample.png" || fail "render: exit status $?"
"$PYTHON" "$HERE/layoutcheck.py" "$WORK/sample.png" --document "$EXAMPLES/sample.aspectratio" ||
  fail "the sample's PNG does not match its layout"
finish
