#!/bin/bash
# Overlays written as ASC framing decision lists (`render -o x.fdl`): the ASC's
# schema accepts them, `vantel validate` finds nothing, and the list reads
# back to the very rectangles `info --json` lays the guides out at, with
# whole-number intents; the bytes repeat under SOURCE_DATE_EPOCH; other sizes
# scale the canvas and every guide alike.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
SCHEMA="$SOURCE_DIR/tests/data/fdl/ascfdl.schema.json"

# Nesting three deep, a margin, and ratios that are no whole numbers.
DOC="$WORK/shot.aspectratio"
"$VANTEL" new -o "$DOC" --canvas 4096x2160 --margin 16 --guide '2.39:1' --guide '16:9' \
  --guide '4:3 in=2' --guide '1.85:1 in=3' --guide '0.5625'

expect_exit 0 "render to .fdl" "$VANTEL" render "$DOC" -o "$WORK/shot.fdl"
expect_exit 0 "validate" "$VANTEL" validate "$WORK/shot.fdl"
[ "$(cat "$WORK/stdout")" = "$WORK/shot.fdl: ok" ] || fail "validate: '$(cat "$WORK/stdout")'"
[ -s "$WORK/stderr" ] && fail "validate warns: $(cat "$WORK/stderr")"

"$PYTHON" - "$SCHEMA" "$WORK/shot.fdl" <<'PY' || fail "the ASC schema refuses the written list"
import json, sys, jsonschema
with open(sys.argv[1]) as schema, open(sys.argv[2]) as written:
    validator = jsonschema.Draft202012Validator(json.load(schema),
                                                format_checker=jsonschema.Draft202012Validator.FORMAT_CHECKER)
    errors = [f"{'.'.join(map(str, e.absolute_path))}: {e.message}" for e in validator.iter_errors(json.load(written))]
assert not errors, errors
PY

"$VANTEL" info --json "$DOC" >"$WORK/overlay.json"
"$VANTEL" info --json "$WORK/shot.fdl" >"$WORK/list.json"
"$PYTHON" - "$WORK/overlay.json" "$WORK/list.json" <<'PY' || fail "the list does not hold the guides' rectangles"
import json, sys
overlay, listed = (json.load(open(path)) for path in sys.argv[1:])
def flat(guides, parent=""):  # drawing order, each with its path
    for i, guide in enumerate(guides, 1):
        path = f"{parent}.{i}" if parent else str(i)
        yield path, guide
        yield from flat(guide.get("children", []), path)
guides = list(flat(overlay["guides"]))
[context] = listed["contexts"]
[canvas] = context["canvases"]
assert canvas["canvas"]["rect"] == {"x": 0, "y": 0, "width": 4096, "height": 2160}, canvas["canvas"]
intents = {intent["id"]: intent for intent in listed["framingIntents"]}
assert listed["defaultFramingIntent"] == listed["framingIntents"][0]["id"]
assert len(canvas["decisions"]) == len(guides) == 5
for (path, guide), decision in zip(guides, canvas["decisions"]):
    assert decision["label"] == path, (decision, path)
    assert decision["framing"]["rect"] == guide["rect"], (path, decision["framing"], guide["rect"])
    assert decision["protection"] is None
    intent = intents[decision["framingIntentID"]]
    assert decision["id"] == canvas["id"] + "-" + intent["id"]
    width, height = intent["aspectWidth"], intent["aspectHeight"]
    assert width == int(width) and height == int(height), intent
    assert abs(width / height - guide["ratioWidth"] / guide["ratioHeight"]) < 1e-9, (intent, guide)
ratios = [(i["aspectWidth"], i["aspectHeight"]) for i in listed["framingIntents"]]
assert ratios == [(239, 100), (16, 9), (4, 3), (37, 20), (9, 16)], ratios
PY

# The same bytes twice under SOURCE_DATE_EPOCH, also through standard output.
SOURCE_DATE_EPOCH=1700000000 "$VANTEL" render "$DOC" -o "$WORK/first.fdl"
SOURCE_DATE_EPOCH=1700000000 "$VANTEL" render "$DOC" -o - --format fdl >"$WORK/second.fdl"
cmp -s "$WORK/first.fdl" "$WORK/second.fdl" || fail "SOURCE_DATE_EPOCH: two renders differ"
cmp -s "$WORK/first.fdl" "$WORK/shot.fdl" && fail "without SOURCE_DATE_EPOCH the uuid repeats"
"$PYTHON" -c 'import json, sys, uuid; assert uuid.UUID(json.load(open(sys.argv[1]))["uuid"]).version == 5' \
  "$WORK/first.fdl" || fail "SOURCE_DATE_EPOCH: the uuid is not name-based"

# Half the size: the canvas and every rectangle halved.
expect_exit 0 "render --width" "$VANTEL" render "$DOC" --width 2048 -o "$WORK/half.fdl"
"$PYTHON" - "$WORK/shot.fdl" "$WORK/half.fdl" <<'PY' || fail "--width does not scale the list"
import json, sys
full, half = (json.load(open(path))["contexts"][0]["canvases"][0] for path in sys.argv[1:])
assert half["dimensions"] == {"width": 2048, "height": 1080}, half["dimensions"]
for big, small in zip(full["framing_decisions"], half["framing_decisions"], strict=True):
    for key in ("dimensions", "anchor_point"):
        assert all(abs(small[key][k] - big[key][k] / 2) < 1e-9 for k in big[key]), (big, small)
PY

# A canvas of fractional size becomes the whole pixels a picture of it has,
# and no guide reaches past them by a rounding error.
"$PYTHON" - "$WORK/fraction.aspectratio" <<'PY'
import plistlib, sys
guide = {"id": "00000000-0000-4000-8000-000000000001", "width": 2.39, "height": 1.0,
         "color": {"red": 1.0, "green": 0.0, "blue": 0.0, "alpha": 1.0}, "weight": 2.0}
with open(sys.argv[1], "wb") as f:
    plistlib.dump({"size": {"width": 100.5, "height": 50.4, "margin": 0.0}, "ratios": [guide]}, f)
PY
expect_exit 0 "render a fractional canvas" "$VANTEL" render "$WORK/fraction.aspectratio" -o "$WORK/fraction.fdl"
"$PYTHON" - "$WORK/fraction.fdl" <<'PY' || fail "a fractional canvas: a guide reaches past the canvas"
import json, sys
canvas = json.load(open(sys.argv[1]))["contexts"][0]["canvases"][0]
assert canvas["dimensions"] == {"width": 101, "height": 50}, canvas["dimensions"]
for decision in canvas["framing_decisions"]:
    (x, y), (w, h) = decision["anchor_point"].values(), decision["dimensions"].values()
    assert x + w <= 101 and y + h <= 50, decision
PY

# Guides nested deeper than a path id can name (32 characters) still get ids.
guides=(--guide 1:1)
for level in $(seq 1 20); do guides+=(--guide "1:1 in=$level"); done
"$VANTEL" new -o "$WORK/deep.aspectratio" "${guides[@]}"
expect_exit 0 "render deep guides" "$VANTEL" render "$WORK/deep.aspectratio" -o "$WORK/deep.fdl"
expect_exit 0 "validate deep guides" "$VANTEL" validate "$WORK/deep.fdl"
"$PYTHON" - "$WORK/deep.fdl" <<'PY' || fail "deep guides: their ids are not their places in drawing order"
import json, sys
ids = [intent["id"] for intent in json.load(open(sys.argv[1]))["framing_intents"]]
assert ids[15:] == ["_".join(["1"] * 16)] + [f"guide{n}" for n in range(17, 22)], ids
PY

# Ratios whose exact terms are as large as 32-bit sides go are kept exact.
"$VANTEL" new -o "$WORK/extreme.aspectratio" --canvas 4096x2160 --guide '2147483647:2' --guide '2:2147483647'
expect_exit 0 "render extreme ratios" "$VANTEL" render "$WORK/extreme.aspectratio" -o "$WORK/extreme.fdl"
"$PYTHON" - "$WORK/extreme.fdl" <<'PY' || fail "extreme ratios: the intents are not exact"
import json, sys
ratios = [tuple(i["aspect_ratio"].values()) for i in json.load(open(sys.argv[1]))["framing_intents"]]
assert ratios == [(2147483647, 2), (2, 2147483647)], ratios
PY

# A list is drawn, not written as a list again; nothing is written.
expect_exit 2 "list to .fdl" "$VANTEL" render "$WORK/shot.fdl" -o "$WORK/again.fdl"
expect_one_error_line "list to .fdl" "$WORK/shot.fdl" "framing decision list already"
[ -e "$WORK/again.fdl" ] && fail "list to .fdl: a file was written"

# A list holds no background: a colour asked for it is refused, not dropped.
expect_exit 2 "--background to .fdl" "$VANTEL" render "$DOC" -o "$WORK/coloured.fdl" --background navy
expect_one_error_line "--background to .fdl" "--background" "no background"
[ -e "$WORK/coloured.fdl" ] && fail "--background to .fdl: a file was written"

finish
