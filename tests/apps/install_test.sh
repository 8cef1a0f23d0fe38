#!/bin/bash
# `cmake --install` places the command, the MIME type and the thumbnailer
# where file browsers look, and no SDK, both straight into a prefix (which also compiles
# the MIME database there) and into a DESTDIR staging tree for packagers
# (which leaves compiling to the package manager's trigger).
# Called as: install_test.sh VANTEL SOURCE_DIR CMAKE BUILD_DIR
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
CMAKE=${3:?cmake command}
BUILD_DIR=${4:?build directory}
make_workdir

check_tree() { # LABEL ROOT
  local label=$1 root=$2
  [ -x "$root/bin/vantel" ] || fail "$label: no executable bin/vantel"
  cmp -s "$root/share/mime/packages/vantel.xml" "$SOURCE_DIR/data/vantel-mime.xml" ||
    fail "$label: share/mime/packages/vantel.xml missing or not the one in data/"
  cmp -s "$root/share/thumbnailers/vantel.thumbnailer" "$SOURCE_DIR/data/vantel.thumbnailer" ||
    fail "$label: share/thumbnailers/vantel.thumbnailer missing or not the one in data/"
  "$root/bin/vantel" --version > /dev/null || fail "$label: installed vantel does not run"
  [ -z "$(find "$root" -name include -o -name '*.a' -o -name '*.pc' -o -name cmake)" ] ||
    fail "$label: a plain install holds SDK files, which belong to the sdk component"
  for file in share/man/man1/vantel.1.gz share/man/man5/vantel-aspectratio.5.gz \
              share/bash-completion/completions/vantel share/zsh/site-functions/_vantel \
              share/fish/vendor_completions.d/vantel.fish; do
    [ -s "$root/$file" ] || fail "$label: no $file"
  done
}

prefix="$WORK/prefix"
"$CMAKE" --install "$BUILD_DIR" --prefix "$prefix" > "$WORK/install.log" 2>&1 ||
  { cat "$WORK/install.log"; fail "cmake --install --prefix failed"; }
check_tree "prefix install" "$prefix"
grep -qx 'application/x-vantel-aspect-ratio:\*\.aspectratio' "$prefix/share/mime/globs" ||
  fail "prefix install: the compiled MIME database does not map *.aspectratio"

DESTDIR="$WORK/stage" "$CMAKE" --install "$BUILD_DIR" --prefix /usr > "$WORK/stage.log" 2>&1 ||
  { cat "$WORK/stage.log"; fail "DESTDIR install failed"; }
check_tree "DESTDIR install" "$WORK/stage/usr"
[ ! -e "$WORK/stage/usr/share/mime/mime.cache" ] ||
  fail "DESTDIR install: compiled a MIME database into the staging tree"

# The compiled database from the prefix install gives our type to the examples.
type=$(XDG_DATA_HOME="$prefix/share" gio info -a standard::content-type "$EXAMPLES/sample.aspectratio" |
  sed -n 's/^ *standard::content-type: //p')
[ "$type" = application/x-vantel-aspect-ratio ] || fail "installed MIME type not found: got '$type'"
type=$(XDG_DATA_HOME="$prefix/share" gio info -a standard::content-type \
  "$SOURCE_DIR/tests/data/fdl/A_4448x3096_1-3x_FramingChart.fdl" | sed -n 's/^ *standard::content-type: //p')
[ "$type" = application/x-asc-fdl ] || fail "framing decision lists are not application/x-asc-fdl: got '$type'"
finish
