#!/usr/bin/env bash
# Takes docs/thunar-thumbnails.png: Thunar under Xvfb showing a folder of
# overlay documents with the thumbnails `vantel thumbnail` drew for them
# (through the tumbler service), everything installed under a temporary
# prefix with private XDG folders. Runs Thunar as `nobody` (as root it shows
# a warning bar) and twice: tumbler can lose a thumbnail when Thunar asks for
# one file twice at once, and the second visit shows what is in the cache.
# Then takes docs/preview-window.png: the same folder with vantel-preview's
# window open in front of it on one document.
#
# usage: docs/screenshot.sh [BUILD_DIR]     (installs Thunar, Xvfb, xdotool,
# xfwm4 and ImageMagick when they are missing)
set -euo pipefail
source_dir=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$source_dir/build}" && pwd)
output=$source_dir/docs/thunar-thumbnails.png
preview_output=$source_dir/docs/preview-window.png
width=1000 height=560

need=()
command -v thunar > /dev/null || need+=(thunar)
command -v Xvfb > /dev/null || need+=(xvfb)
command -v import > /dev/null || need+=(imagemagick)
command -v tumblerd > /dev/null || [ -x /usr/lib/x86_64-linux-gnu/tumbler-1/tumblerd ] || need+=(tumbler)
command -v xdotool > /dev/null || need+=(xdotool)
command -v xfwm4 > /dev/null || need+=(xfwm4)
if [ ${#need[@]} -gt 0 ]; then
  echo "screenshot: installing ${need[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get install -y -qq --no-install-recommends "${need[@]}" adwaita-icon-theme
fi

work=$(mktemp -d /tmp/vantel-screenshot.XXXXXX)
trap 'kill "${xvfb:-}" 2> /dev/null || true; rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" > "$work/install.log"
folder=$work/home/Overlays
mkdir -p "$folder" "$work/config/xfce4/xfconf/xfce-perchannel-xml" "$work/runtime"
cp "$source_dir/examples/sample.aspectratio" "$folder/Sample overlay.aspectratio"
cp "$source_dir/examples/portrait-binary.aspectratio" "$folder/Portrait (binary).aspectratio"
/usr/bin/python3 - "$folder" <<'EOF'
import plistlib, sys, uuid
from pathlib import Path

def colour(r, g, b, a=1.0):
    return {"red": r / 255, "green": g / 255, "blue": b / 255, "alpha": a}

def guide(w, h, color, weight, **extra):
    return {"id": str(uuid.uuid4()).upper(), "width": float(w), "height": float(h),
            "color": color, "weight": float(weight), "clearParent": False, **extra}

def thirds(n=3):
    return {"divisor": {"_0": n}}

def document(name, w, h, margin, background, ratios):
    size = {"width": float(w), "height": float(h), "margin": float(margin)}
    with open(Path(sys.argv[1]) / f"{name}.aspectratio", "wb") as f:
        plistlib.dump({"size": size, "ratios": ratios, "backgroundColor": background}, f, sort_keys=False)

document("Cinema 2.39 in 16x9", 1920, 1080, 30, colour(20, 22, 30), [
    guide(16, 9, colour(120, 130, 150), 4),
    guide(2.39, 1, colour(255, 190, 80), 8, fillColor=colour(255, 190, 80, 0.15),
          rowType=thirds(), columnType=thirds())])
document("Instagram portrait 4x5", 1080, 1350, 24, colour(250, 248, 240), [
    guide(4, 5, colour(128, 177, 211), 10, rowType=thirds(), columnType=thirds(),
          children=[guide(1, 1, colour(240, 120, 100), 8)])])
document("Square grid", 1200, 1200, 40, colour(32, 36, 44), [
    guide(1, 1, colour(141, 211, 199), 6, rowType={"pixels": {"_0": 120}}, columnType={"pixels": {"_0": 120}})])
document("Safe areas 16x9", 1920, 1080, 0, colour(10, 60, 90), [
    guide(16, 9, colour(255, 255, 255), 10, children=[guide(16, 9, colour(255, 230, 120), 6)]),
    guide(4, 3, colour(255, 120, 120), 6, fillColor=colour(255, 120, 120, 0.12))])
document("Golden thirds 3x2", 1500, 1000, 30, colour(246, 240, 228), [
    guide(3, 2, colour(60, 60, 70), 6, rowType=thirds(), columnType=thirds(),
          fillColor=colour(200, 170, 120, 0.25))])
document("Story 9x16", 1080, 1920, 30, colour(40, 20, 50), [
    guide(9, 16, colour(230, 120, 200), 10, rowType=thirds(4), columnType=thirds(2),
          fillColor=colour(230, 120, 200, 0.15))])
EOF
cat > "$work/config/xfce4/xfconf/xfce-perchannel-xml/thunar.xml" <<EOF
<?xml version="1.0" encoding="UTF-8"?>
<channel name="thunar" version="1.0">
  <property name="last-view" type="string" value="ThunarIconView"/>
  <property name="last-icon-view-zoom-level" type="string" value="THUNAR_ZOOM_LEVEL_250_PERCENT"/>
  <property name="last-window-width" type="int" value="$width"/>
  <property name="last-window-height" type="int" value="$height"/>
  <property name="last-separator-position" type="int" value="150"/>
  <property name="last-location-bar" type="string" value="ThunarLocationButtons"/>
</channel>
EOF
chmod 700 "$work/runtime"
chown -R nobody:nogroup "$work"

Xvfb :77 -screen 0 "${width}x${height}x24" -nolisten tcp > "$work/xvfb.log" 2>&1 &
xvfb=$!
sleep 2
as_nobody=(setpriv --reuid=nobody --regid=nogroup --clear-groups
  env HOME="$work/home" XDG_DATA_HOME="$work/prefix/share" XDG_CACHE_HOME="$work/cache"
  XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/runtime" DISPLAY=:77 NO_AT_BRIDGE=1
  PATH="$work/prefix/bin:$PATH")
"${as_nobody[@]}" dbus-run-session -- bash -c "
  thunar '$folder' 2> /dev/null & sleep 20; thunar -q
  thunar '$folder' 2> /dev/null & sleep 8
  import -window root '$work/shot.png'
  # A window manager frames the preview as a desktop would.
  xfwm4 --compositor=off 2> /dev/null & sleep 3
  vantel-preview '$folder/Story 9x16.aspectratio' 2> /dev/null & sleep 3
  xdotool search --sync --name 'Story 9x16' windowmove 690 40; sleep 1
  import -window root '$work/preview.png'; thunar -q" 2> /dev/null || true
convert "$work/shot.png" -strip "$output"
convert "$work/preview.png" -strip "$preview_output"
echo "wrote $output ($(stat -c %s "$output") bytes) and $preview_output ($(stat -c %s "$preview_output") bytes)"
