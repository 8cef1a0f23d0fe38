#!/usr/bin/env bash
# xdg-open on a document, with the launchers, the MIME type and their
# databases installed into a temporary prefix, starts the default handler
# and its window appears: the editor as `make install-user` sets it, and the
# preview window, which "Open With" offers beside it, once chosen.
# usage (under xvfb-run): preview_xdg_open_test.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$1
source=$2
prefix=$(mktemp -d)
trap '[ -n "${pid:-}" ] && kill "$pid" 2>/dev/null; rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" > /dev/null
update-desktop-database "$prefix/share/applications"
export XDG_DATA_HOME=$prefix/share XDG_DATA_DIRS=$prefix/share:/usr/share XDG_CONFIG_HOME=$prefix/config
export PATH=$prefix/bin:$PATH
# As on GNOME, xdg-open hands the file to GLib, which reads the MIME and
# desktop databases of XDG_DATA_HOME.
export XDG_CURRENT_DESKTOP=GNOME
cp "$source/examples/sample.aspectratio" "$prefix/opened.aspectratio"
gio info -a standard::content-type "$prefix/opened.aspectratio" | grep -q application/x-vantel-aspect-ratio ||
  { echo "FAIL: the document's type is not recognised"; exit 1; }
type=application/x-vantel-aspect-ratio
handlers=$(gio mime "$type")
for app in vantel-editor vantel-preview; do
  grep -q "$app.desktop" <<< "$handlers" || { echo "FAIL: $app is not offered for $type: $handlers"; exit 1; }
done

# Opens the document with the default handler, and waits for the window of
# PROGRAM as installed here.
opens_with() {
  xdg-mime default "$1.desktop" "$type"
  xdg-open "$prefix/opened.aspectratio" &
  for _ in $(seq 100); do
    pid=""
    for candidate in $(pgrep -x "$1" || true); do  # only the one installed here
      [[ $(readlink "/proc/$candidate/exe") == "$prefix"/* ]] && pid=$candidate
    done
    [ -n "$pid" ] && window=$(xdotool search --all --pid "$pid" --name opened.aspectratio 2>/dev/null | head -n1) &&
      [ -n "$window" ] && { kill "$pid"; pid=""; return 0; }
    sleep 0.1
  done
  echo "FAIL: xdg-open did not open a $1 window"
  exit 1
}
opens_with vantel-editor
opens_with vantel-preview
echo ok
