#!/bin/bash
# The libraries as an outside project sees them: install the SDK into a
# temporary prefix, build examples/plotter with pkg-config alone and with
# find_package(Vantel), run both, and have Inkscape read the layers written.
# Called as: sdk_plotter_test.sh VANTEL SOURCE_DIR CMAKE BUILD_DIR
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
CMAKE=${3:?cmake command}
BUILD_DIR=${4:?build directory}
make_workdir

"$CMAKE" --install "$BUILD_DIR" --prefix "$WORK/prefix" --component sdk > "$WORK/install.log" 2>&1 ||
  { cat "$WORK/install.log"; fail "cmake --install --component sdk failed"; }
export PKG_CONFIG_PATH="$WORK/prefix/lib/pkgconfig"
pkg-config --cflags vantel | grep -q -- "-I$WORK/prefix/lib/pkgconfig/../../include" ||
  fail "vantel.pc does not point into the prefix it was installed to"
# pkg-config alone, without --static, must be enough to link a consumer of
# the static archives.
# shellcheck disable=SC2046  # the flags are words
c++ -o "$WORK/plotter-pc" "$SOURCE_DIR/examples/plotter/main.cpp" $(pkg-config --cflags --libs vantel) \
  2> "$WORK/pc.log" || { tail -5 "$WORK/pc.log"; fail "plotter does not link with pkg-config --cflags --libs vantel"; }
"$WORK/plotter-pc" "$WORK/out-pc" && [ -s "$WORK/out-pc/SVG/plotter.svg" ] || fail "the pkg-config build of plotter wrote nothing"
"$CMAKE" -S "$SOURCE_DIR/examples/plotter" -B "$WORK/plotter" -DCMAKE_PREFIX_PATH="$WORK/prefix" \
  > "$WORK/configure.log" 2>&1 || { cat "$WORK/configure.log"; fail "find_package(Vantel) failed"; }
"$CMAKE" --build "$WORK/plotter" > "$WORK/build.log" 2>&1 || { cat "$WORK/build.log"; fail "plotter does not build"; }
"$WORK/plotter/plotter" "$WORK/out" || fail "plotter failed"
svg="$WORK/out/SVG/plotter.svg"
[ -s "$svg" ] || fail "plotter wrote no $svg"

command -v inkscape > /dev/null || fail "inkscape is not installed (scripts/install-deps.sh)"
HOME="$WORK" inkscape --query-all "$svg" > "$WORK/query.txt" 2> "$WORK/inkscape.log" ||
  { cat "$WORK/inkscape.log"; fail "inkscape cannot read $svg"; }
for layer in 0.5 2.0; do
  grep -q "^$layer," "$WORK/query.txt" || { cat "$WORK/query.txt"; fail "inkscape lists no layer $layer"; }
done
finish
