#!/usr/bin/env bash
# Installs every Debian package the build, tests and benchmarks need.
# Idempotent: when everything is present it only asks dpkg and returns.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  libplist-dev nlohmann-json3-dev libxml2-dev libicu-dev libssl-dev
  # icupkg and genccode: the vantel command links a trimmed copy of ICU's data
  icu-devtools
  libcairo2-dev libdeflate-dev libtiff-dev libgif-dev libjpeg62-turbo-dev libopenjp2-7-dev
  libpng-dev libcli11-dev libgtest-dev libgmock-dev libbenchmark-dev
  python3 python3-plist
  # http(s) documents: libcurl's headers (the OpenSSL build; the library
  # itself, libcurl4, is loaded on the first download) and the certificate
  # authorities https checks servers against
  libcurl4-openssl-dev libcurl4 ca-certificates
  # vantel-preview, and driving its window in the tests: a headless X server,
  # screenshots, keys, the clipboard, the desktop database
  libgtk-4-dev xvfb xauth x11-apps xdotool xclip desktop-file-utils xdg-utils libglib2.0-bin
  # make fuzz: libFuzzer ships with clang's runtime libraries
  clang libclang-rt-14-dev
  # reading back the PDFs `vantel render` writes
  poppler-utils
  # framing decision lists `vantel render` writes are checked against the ASC's schema
  python3-jsonschema
  # bench/compare_rsvg.sh: timing, and the reference renderer it is measured against
  hyperfine librsvg2-bin
  # end-to-end thumbnailer tests: a real consumer (tumblerd on a private
  # session bus), MIME lookup, GNOME's sandbox
  tumbler dbus-daemon dbus-bin libglib2.0-bin shared-mime-info bubblewrap
  # Dolphin's thumbnail plugin: KDE Frameworks 5's KIO headers (Qt 5 comes
  # along), and KIO's thumbnail worker that the test's PreviewJob runs it in
  libkf5kio-dev kio-extras
  # the SDK test: Inkscape reads the layers of the plotter example's SVG
  inkscape
  # SVG output is checked against real consumers: librsvg (above), Chromium,
  # and libxml2's own reader for the depth it accepts
  chromium libxml2-utils
  # make deb: dpkg-shlibdeps computes the package's Depends; its test checks
  # the packages with lintian
  dpkg-dev lintian
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "install-deps: installing ${missing[*]}"
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
# Waits for the dpkg lock rather than failing while another install (the
# package test, say) holds it.
$sudo apt-get install -y -qq --no-install-recommends -o DPkg::Lock::Timeout=600 "${missing[@]}"
