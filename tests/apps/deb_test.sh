#!/bin/bash
# The packages of `make deb` on this very machine: cpack makes them from the
# build tree, lintian finds no errors, apt-get installs them, the installed
# command runs and draws a thumbnail through the installed .thumbnailer,
# dpkg's triggers register the MIME type and the desktop file, and a purge
# leaves nothing of them on disk. Needs root or password-less sudo, else it
# is skipped. Every other test runs the build tree's programs by path or
# with its own folder first on PATH, so the installed copies shadow none.
# Called as: deb_test.sh VANTEL SOURCE_DIR CPACK BUILD_DIR
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
CPACK=${3:?cpack command}
BUILD_DIR=${4:?build directory}

sudo=()
if [ "$(id -u)" -ne 0 ]; then
  sudo -n true 2>/dev/null || { echo "skipped: installing packages needs root or password-less sudo"; exit 77; }
  sudo=(sudo -n)
fi
make_workdir
packages=(vantel vantel-dev)
# One run at a time on the machine: two would install and purge under each other.
exec 9> "${TMPDIR:-/tmp}/vantel-deb-test.lock"
flock 9
if dpkg-query -W "${packages[@]}" > /dev/null 2>&1; then
  echo "FAIL: vantel or vantel-dev is already installed here; this test would remove it" >&2
  exit 1
fi
apt_get() {
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y -q -o DPkg::Lock::Timeout=300 "$@" \
    > "$WORK/apt.log" 2>&1 || { cat "$WORK/apt.log" >&2; return 1; }
}
installed=false
purge() {
  if $installed; then apt_get purge "${packages[@]}" || fail "apt-get purge failed"; fi
  installed=false
}
lintian_pid=""
trap 'purge; [ -z "$lintian_pid" ] || kill "$lintian_pid" 2> /dev/null; rm -rf "$WORK"' EXIT

"$CPACK" --config "$BUILD_DIR/CPackConfig.cmake" -B "$WORK/packages" > "$WORK/cpack.log" 2>&1 ||
  { cat "$WORK/cpack.log" >&2; fail "cpack failed"; finish; }
version=$("$VANTEL" --version | sed -n '1s/^vantel //p')
deb="$WORK/packages/vantel_${version}_$(dpkg --print-architecture).deb"
dev="$WORK/packages/vantel-dev_${version}_$(dpkg --print-architecture).deb"
[ -f "$deb" ] && [ -f "$dev" ] || { ls "$WORK/packages" >&2; fail "no $deb and $dev"; finish; }
dpkg-deb -f "$deb" Depends | grep -q 'libc6 (>=' || fail "Depends was not computed by dpkg-shlibdeps: $(dpkg-deb -f "$deb" Depends)"
# lintian reads only the files: it runs while the packages are installed.
lintian --fail-on error "$deb" "$dev" > "$WORK/lintian.log" 2>&1 &
lintian_pid=$!

# What the packages hold and this machine does not have yet must be gone
# again after the purge; what they would overwrite stops the test.
dpkg-deb -c "$deb" > "$WORK/contents"
dpkg-deb -c "$dev" >> "$WORK/contents"
: > "$WORK/new-paths"
while read -r path; do
  if [ ! -e "$path" ]; then echo "$path" >> "$WORK/new-paths"
  elif [ ! -d "$path" ]; then fail "$path exists already; installing would overwrite it"; finish; fi
done < <(awk '{ sub(/^\./, "", $6); sub(/\/$/, "", $6); if ($6 != "") print $6 }' "$WORK/contents")

installed=true
apt_get install "$deb" "$dev" || { fail "apt-get install failed"; finish; }
[ "$(/usr/bin/vantel --version | head -1)" = "vantel $version" ] || fail "the installed vantel --version: $(/usr/bin/vantel --version)"
THUMBNAILER_ENTRY=/usr/share/thumbnailers/vantel.thumbnailer
mapfile -d '' words < <(exec_line_words 256 "$EXAMPLES/sample.aspectratio" "$WORK/thumbnail.png")
PATH=/usr/bin:/bin "${words[@]}" || fail "the installed thumbnailer's Exec line failed"
check_png "$WORK/thumbnail.png" "$EXAMPLES/sample.aspectratio" 256 || fail "the installed thumbnailer's picture"
grep -q ':\*\.aspectratio$' /usr/share/mime/globs2 || fail "the MIME database was not refreshed on install"
if grep -q 'applications/vantel-preview.desktop' "$WORK/contents"; then
  grep -q '^application/x-vantel-aspect-ratio=.*vantel-preview.desktop' /usr/share/applications/mimeinfo.cache ||
    fail "the desktop database was not refreshed on install"
fi
[ "$(man -w vantel-aspectratio)" = /usr/share/man/man5/vantel-aspectratio.5.gz ] || fail "man does not find vantel-aspectratio(5)"

dpkg-query -L "${packages[@]}" | sort > "$WORK/listed"
purge
while read -r path; do
  [ ! -e "$path" ] && [ ! -L "$path" ] || fail "left on disk after the purge: $path"
done < <(sort "$WORK/new-paths" | comm -12 - "$WORK/listed")
[ -s "$WORK/listed" ] || fail "dpkg -L listed nothing"
! grep -q ':\*\.aspectratio$' /usr/share/mime/globs2 || fail "the MIME database still knows *.aspectratio after the purge"
! grep -q 'vantel-preview.desktop' /usr/share/applications/mimeinfo.cache || fail "the desktop database still names vantel-preview"
wait "$lintian_pid" || { cat "$WORK/lintian.log" >&2; fail "lintian reports errors"; }
lintian_pid=""
finish
