#!/bin/bash
# Dolphin's thumbnails: KIO's own PreviewJob (tests/apps/kio_preview_driver,
# asking as Dolphin does, with only our plugin enabled) loads the plugin from
# the build tree through QT_PLUGIN_PATH and runs it in KIO's thumbnail
# worker. The picture must be the one `vantel thumbnail` makes, for an
# overlay document and a framing decision list, and a bad document gets no
# thumbnail and one line naming it on the worker's standard error.
#
# Learned by running it: PreviewJob takes the MIME type from the shared MIME
# database (ours goes under a temporary XDG_DATA_HOME); without klauncher KIO
# starts the worker itself, so no session bus is needed; Qt runs offscreen,
# so no display either. The worker inherits QT_PLUGIN_PATH.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
DRIVER=${3:?path of kio_preview_driver}
PLUGIN=${4:?path of the built vantelthumbnail.so}
make_workdir
export HERE

mkdir -p "$WORK/plugins/kf5/thumbcreator" "$WORK/data/mime/packages" "$WORK/runtime"
chmod 700 "$WORK/runtime"
ln -s "$PLUGIN" "$WORK/plugins/kf5/thumbcreator/"
cp "$SOURCE_DIR/data/vantel-mime.xml" "$WORK/data/mime/packages/vantel.xml"
update-mime-database "$WORK/data/mime" 2>/dev/null
export QT_PLUGIN_PATH="$WORK/plugins" QT_QPA_PLATFORM=offscreen \
  XDG_DATA_HOME="$WORK/data" XDG_CACHE_HOME="$WORK/cache" XDG_CONFIG_HOME="$WORK/config" \
  XDG_RUNTIME_DIR="$WORK/runtime"

preview() { # FILE SIZE OUTPUT
  timeout 60 "$DRIVER" "$1" "$(basename "$PLUGIN" .so)" "$2" "$3"
}

# Every pixel within 2 of the command's thumbnail (Qt's round trip through
# straight alpha moves translucent ones by one), and COLOURS among the opaque.
same_picture() { # NAME PREVIEW THUMBNAIL COLOUR...
  "$PYTHON" - "$@" <<'PY' || fail "$1: the preview is not the picture \`vantel thumbnail\` makes"
import os, sys
sys.path.insert(0, os.environ["HERE"])
from pngread import Image
name, preview, reference = sys.argv[1:4]
got, want = Image(preview), Image(reference)
assert (got.width, got.height) == (want.width, want.height), (got.width, got.height, want.width, want.height)
a, b = got.rgba_bytes(), want.rgba_bytes()
worst = max(abs(p - q) for p, q in zip(a, b))
assert worst <= 2, f"{name}: a channel differs by {worst}"
seen = {bytes(a[i:i + 3]).hex().upper() for i in range(0, len(a), 4) if a[i + 3] == 255}
for colour in sys.argv[4:]:
    assert colour in seen, f"{name}: no opaque #{colour}"
PY
}

cp "$EXAMPLES/sample.aspectratio" "$WORK/sample.aspectratio"
# Large enough that the guides' outlines are whole pixels of their colour.
expect_exit 0 "overlay document" preview "$WORK/sample.aspectratio" 1024 "$WORK/sample.png"
"$VANTEL" thumbnail -s 1024 "$WORK/sample.aspectratio" "$WORK/sample-command.png"
same_picture "overlay document" "$WORK/sample.png" "$WORK/sample-command.png" 121218 8DD3C7 FDB462

cp "$SOURCE_DIR/tests/data/fdl/A65_effective-area_wdesqueeze.fdl" "$WORK/shot.fdl"
expect_exit 0 "framing decision list" preview "$WORK/shot.fdl" 256 "$WORK/shot.png"
"$VANTEL" thumbnail -s 256 "$WORK/shot.fdl" "$WORK/shot-command.png"
same_picture "framing decision list" "$WORK/shot.png" "$WORK/shot-command.png" 808080 0066CC FF9900 00CC66

printf 'not a property list' >"$WORK/bad.aspectratio"
expect_exit 1 "bad document" preview "$WORK/bad.aspectratio" 256 "$WORK/bad.png"
[ ! -e "$WORK/bad.png" ] || fail "bad document: a preview came back"
grep -qF "$WORK/bad.aspectratio: " "$WORK/stderr" || fail "bad document: no line names it: $(cat "$WORK/stderr")"
finish
