#!/bin/bash
# ASC framing decision lists in `vantel validate` and `vantel info`: camera
# samples pass, broken copies are refused with the JSON path of each fault,
# warnings alone keep exit 0, and info --json holds every area exactly as
# the file does.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
SAMPLES="$SOURCE_DIR/tests/data/fdl"

expect_exit 0 "validate samples" "$VANTEL" validate "$SAMPLES"/*.fdl
[ "$(grep -c ': ok$' "$WORK/stdout")" -eq 3 ] || fail "samples: stdout is '$(cat "$WORK/stdout")'"
if grep -q ': error: ' "$WORK/stderr"; then fail "samples: errors: $(cat "$WORK/stderr")"; fi

# Broken and old copies, named so that only their content says what they are.
"$PYTHON" - "$SAMPLES/A_4448x3096_1-3x_FramingChart.fdl" "$WORK" <<'PY'
import json, sys
source, folder = sys.argv[1], sys.argv[2]
def copy(name, change):
    fdl = json.load(open(source))
    change(fdl)
    json.dump(fdl, open(f"{folder}/{name}", "w"))
def broken(fdl):
    fdl["contexts"][0]["canvases"][0]["framing_decisions"][0]["dimensions"]["width"] = 0
    fdl["framing_intents"][0]["id"] = "one"
def old(fdl):
    fdl["version"] = {"major": 1, "minor": 1}
copy("broken.json", broken)
copy("old.json", old)
PY

expect_exit 1 "broken copy" "$VANTEL" validate - <"$WORK/broken.json"
decision='contexts\[0\]\.canvases\[0\]\.framing_decisions\[0\]'
grep -qE "^stdin: error: $decision\.dimensions\.width: must be greater than 0$" "$WORK/stderr" ||
  fail "broken copy: no width error: $(cat "$WORK/stderr")"
grep -qE "^stdin: error: $decision\.framing_intent_id: names no framing intent" "$WORK/stderr" ||
  fail "broken copy: no intent error: $(cat "$WORK/stderr")"
if [ -s "$WORK/stdout" ]; then fail "broken copy: called ok: $(cat "$WORK/stdout")"; fi
expect_exit 1 "info on a broken copy" "$VANTEL" info "$WORK/broken.json"
if [ -s "$WORK/stdout" ]; then fail "info described a broken list: $(cat "$WORK/stdout")"; fi

expect_exit 0 "old version" "$VANTEL" validate "$WORK/old.json"
[ "$(cat "$WORK/stdout")" = "$WORK/old.json: ok" ] || fail "old version: stdout is '$(cat "$WORK/stdout")'"
grep -qE "^$WORK/old.json: warning: version: version 1\.1 " "$WORK/stderr" || fail "old version: $(cat "$WORK/stderr")"

for sample in "$SAMPLES"/*.fdl; do
  expect_exit 0 "info --json $sample" "$VANTEL" info --json "$sample"
  "$PYTHON" - "$sample" "$WORK/stdout" <<'PY' || fail "info --json $sample does not hold the file's areas"
import json, math, sys
fdl, info = json.load(open(sys.argv[1])), json.load(open(sys.argv[2]))
def check(rect, anchor, size):
    exact = rect["rect"]
    assert (exact["x"], exact["y"]) == (anchor["x"], anchor["y"]), (exact, anchor)
    assert (exact["width"], exact["height"]) == (size["width"], size["height"]), (exact, size)
    edge = lambda value: math.floor(value + 0.5)  # halves away from zero, as the command rounds
    left, top = edge(anchor["x"]), edge(anchor["y"])
    assert rect["pixels"] == {"x": left, "y": top, "width": edge(anchor["x"] + size["width"]) - left,
                              "height": edge(anchor["y"] + size["height"]) - top}, rect
for context, described in zip(fdl["contexts"], info["contexts"], strict=True):
    for canvas, shown in zip(context["canvases"], described["canvases"], strict=True):
        squeeze = canvas.get("anamorphic_squeeze", 1)
        for decision, entry in zip(canvas["framing_decisions"], shown["decisions"], strict=True):
            check(entry["framing"], decision["anchor_point"], decision["dimensions"])
            if "protection_dimensions" in decision:
                check(entry["protection"], decision["protection_anchor_point"], decision["protection_dimensions"])
            size = decision["dimensions"]
            assert math.isclose(entry["desqueezedAspect"], size["width"] * squeeze / size["height"]), entry
PY
done

expect_exit 0 "info text" "$VANTEL" info "$SAMPLES/A65_effective-area_wdesqueeze.fdl"
grep -qF "decision pXLM4OnA-fiWILIY0 \"133-100Framing\" (intent fiWILIY0): 3450.951 x 2335.23 at 754.5245, 227.385 (pixels 3450.0 x 2336.0 at 755.0, 227.0), desqueezed aspect 1.33" \
  "$WORK/stdout" || fail "info text: $(cat "$WORK/stdout")"

finish
