#!/bin/bash
# A real thumbnail consumer drives the command: XFCE's thumbnail service
# tumblerd, on a private D-Bus session, with our MIME type and .thumbnailer
# installed under a temporary XDG_DATA_HOME and the built `vantel` first on
# its PATH. We ask it over D-Bus (Thumbnailer1.Queue) for every flavour and
# check the PNGs it stores in $XDG_CACHE_HOME/thumbnails/<flavour>/<md5 of URI>.png.
#
# What tumblerd does, learned by running it: it reads .thumbnailer files only
# at start-up (so they are installed first); it takes the MIME type from the
# caller as given (a wrong type gets "No thumbnailer available"); it runs the
# Exec line from its own PATH with %u a file URI and %o /tmp/tumbler-XXXXXX.png;
# it re-encodes the PNG as 8-bit RGBA with Thumb::URI and Thumb::MTime; it
# sends Started/Ready/Error/Finished only to the caller, so a monitor
# connection watches them. It needs no display. Requests for several flavours
# of the same files queued at once can lose thumbnails, so they go one by one.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"

THUMBNAILER_IFACE=org.freedesktop.thumbnails.Thumbnailer1
THUMBNAILER_PATH=/org/freedesktop/thumbnails/Thumbnailer1
FLAVOURS="normal:128 large:256 x-large:512 xx-large:1024"

mime_type() { # DOCUMENT
  case "$1" in
    *.fdl) echo application/x-asc-fdl ;;
    *) echo application/x-vantel-aspect-ratio ;;
  esac
}

tumblerd_command() {
  local dir service dirs
  IFS=: read -ra dirs <<< "${XDG_DATA_DIRS:-/usr/local/share:/usr/share}"
  for dir in "${dirs[@]}"; do
    service="$dir/dbus-1/services/org.xfce.Tumbler.Thumbnailer1.service"
    [ -f "$service" ] && { sed -n 's/^Exec=//p' "$service"; return; }
  done
  echo "tumbler is not installed (no org.xfce.Tumbler.Thumbnailer1.service)" >&2
  return 1
}

bus_call() { # METHOD ARGS...
  local method=$1
  shift
  gdbus call --session --dest "$THUMBNAILER_IFACE" --object-path "$THUMBNAILER_PATH" \
    --method "$THUMBNAILER_IFACE.$method" "$@"
}

name_has_owner() {
  gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
    --method org.freedesktop.DBus.NameHasOwner "$THUMBNAILER_IFACE" 2>/dev/null | grep -q true
}

# dbus-monitor prints a signal's header, then its arguments one per line.
saw_finished() { # HANDLE
  awk -v handle="$1" '/member=Finished/ { next_is_handle = 1; next }
    next_is_handle && /uint32/ { if ($2 == handle) found = 1; next_is_handle = 0 }
    END { exit !found }' "$WORK/signals.log"
}

report_errors() {
  echo "--- Error signals from tumblerd:" >&2
  grep -A8 'member=Error' "$WORK/signals.log" | grep -E 'string|int32' >&2 || echo "(none)" >&2
  echo "--- tumblerd output:" >&2
  cat "$WORK/tumblerd.log" >&2
}

wait_for() { # SECONDS COMMAND...
  local deadline=$((SECONDS + $1))
  shift
  until "$@"; do
    [ "$SECONDS" -lt "$deadline" ] || return 1
    sleep 0.1
  done
}

in_session() {
  local tumblerd monitor daemon documents uris mimes flavour size handle started
  tumblerd=$(tumblerd_command)
  dbus-monitor --session "type='signal',interface='$THUMBNAILER_IFACE'" > "$WORK/signals.log" 2>&1 &
  monitor=$!
  wait_for 10 test -s "$WORK/signals.log" || fail "dbus-monitor did not start"
  "$tumblerd" > "$WORK/tumblerd.log" 2>&1 &
  daemon=$!
  if ! wait_for 30 name_has_owner; then
    fail "tumblerd did not take $THUMBNAILER_IFACE within 30 s"
    report_errors
    return
  fi

  mapfile -t documents < "$WORK/documents"
  uris=() mimes=()
  for doc in "${documents[@]}"; do
    uris+=("'$(file_uri "$doc")'")
    mimes+=("'$(mime_type "$doc")'")
  done
  for pair in $FLAVOURS; do
    flavour=${pair%%:*} size=${pair##*:}
    started=$SECONDS
    handle=$(bus_call Queue "[$(IFS=,; echo "${uris[*]}")]" "[$(IFS=,; echo "${mimes[*]}")]" \
      "$flavour" default 0 | sed -n 's/^(uint32 \([0-9]*\),)$/\1/p')
    if [ -z "$handle" ] || ! wait_for 120 saw_finished "$handle"; then
      fail "$flavour: tumblerd did not finish the request within 120 s"
      continue
    fi
    echo "$flavour: finished in $((SECONDS - started)) s"
    for doc in "${documents[@]}"; do
      local uri thumb
      uri=$(file_uri "$doc")
      thumb="$XDG_CACHE_HOME/thumbnails/$flavour/$(printf %s "$uri" | md5sum | cut -d' ' -f1).png"
      if [ ! -f "$thumb" ]; then
        fail "$flavour: no thumbnail for $uri at $thumb"
      else
        check_png "$thumb" "$doc" "$size" --text "Thumb::URI=$uri" || fail "$flavour: $uri"
      fi
    done
  done
  [ "$failures" -eq 0 ] || report_errors
  kill "$daemon" "$monitor" 2>/dev/null || true
  wait "$daemon" "$monitor" 2>/dev/null || true
}

if [ -n "${VANTEL_TUMBLER_WORK:-}" ]; then
  WORK=$VANTEL_TUMBLER_WORK
  in_session
  finish
  exit
fi

make_workdir
make_bin_dir
tumblerd_command > /dev/null || exit 1

export XDG_DATA_HOME="$WORK/data" XDG_CACHE_HOME="$WORK/cache" XDG_CONFIG_HOME="$WORK/config"
export PATH="$WORK/bin:$PATH"
unset DISPLAY WAYLAND_DISPLAY
mkdir -p "$XDG_DATA_HOME/mime/packages" "$XDG_DATA_HOME/thumbnailers" "$XDG_CACHE_HOME" "$XDG_CONFIG_HOME"
cp "$SOURCE_DIR/data/vantel-mime.xml" "$XDG_DATA_HOME/mime/packages/vantel.xml"
cp "$SOURCE_DIR/data/vantel.thumbnailer" "$XDG_DATA_HOME/thumbnailers/"
update-mime-database "$XDG_DATA_HOME/mime"

mkdir -p "$WORK/docs"
cp "$EXAMPLES/sample.aspectratio" "$WORK/docs/sample with space.aspectratio"
cp "$SOURCE_DIR/tests/data/fdl/A_4448x3096_1-3x_FramingChart.fdl" "$WORK/docs/chart.fdl"
printf '%s\n' "$EXAMPLES/sample.aspectratio" "$EXAMPLES/portrait-binary.aspectratio" \
  "$WORK/docs/sample with space.aspectratio" "$WORK/docs/chart.fdl" > "$WORK/documents"

# A file browser finds the type through shared-mime-info before it asks.
while read -r doc; do
  type=$(gio info -a standard::content-type "$doc" | sed -n 's/^ *standard::content-type: //p')
  [ "$type" = "$(mime_type "$doc")" ] || fail "shared-mime-info gives '$type' for $doc, expected $(mime_type "$doc")"
done < "$WORK/documents"

cat > "$WORK/bus.conf" <<'EOF'
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<!-- A session bus that activates nothing: the test starts tumblerd itself,
     with the environment above, and no second copy may be started for it. -->
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
EOF

status=0
VANTEL_TUMBLER_WORK="$WORK" dbus-run-session --config-file="$WORK/bus.conf" -- \
  "$BASH" "$0" "$VANTEL" "$SOURCE_DIR" \
  2> >(grep -vE 'Failed to set fd limit|became a monitor|Monitoring connection .* closed' >&2) || status=$?
[ "$status" -eq 0 ] || fail "the session reported failures"
finish
