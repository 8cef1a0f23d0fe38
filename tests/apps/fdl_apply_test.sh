#!/bin/bash
# `vantel fdl apply`: the ASC's published source and template make the
# canvas of its published result, placed after its source in a list that is
# otherwise the source unchanged and that validates; choices by id; a
# template asking for what the source lacks, or a choice it does not hold,
# is one line and exit 1 with nothing written; usage errors exit 2.
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
make_workdir
SOURCE="$SOURCE_DIR/tests/data/fdl/A_4448x3096_1-3x_FramingChart.fdl"
TEMPLATES="$SOURCE_DIR/tests/data/fdl/templates"
TEMPLATE="$TEMPLATES/Scen_18_Normalizing_LensSqueezeTo2-CANVAS-TEMPLATE.fdl"
EXPECTED="$TEMPLATES/Scen18-RESULT-A_4448x3096_1-3x_FramingChart.fdl"

# The new canvas (at AT in the first context) against the ASC's, to 0.001 px;
# without it the list must be the source as it was.
check_result() { # NAME RESULT SOURCE AT
  "$PYTHON" - "$2" "$3" "$4" "$EXPECTED" <<'PY' || fail "$1: the result differs (above)"
import json, sys
result, source, at, expected = json.load(open(sys.argv[1])), json.load(open(sys.argv[2])), int(sys.argv[3]), json.load(open(sys.argv[4]))
made = result["contexts"][0]["canvases"].pop(at)
want = expected["contexts"][0]["canvases"][1]
def numbers(canvas):
    decision = canvas["framing_decisions"][0]
    areas = [canvas["dimensions"], canvas["effective_dimensions"], canvas["effective_anchor_point"],
             decision["dimensions"], decision["anchor_point"], decision["protection_dimensions"],
             decision["protection_anchor_point"]]
    return [value for area in areas for value in area.values()] + [canvas["anamorphic_squeeze"]]
bad = [(a, b) for a, b in zip(numbers(made), numbers(want)) if abs(a - b) > 0.001]
if bad or made["source_canvas_id"] != "1" or result != source:
    sys.exit(f"differences {bad}, source {made['source_canvas_id']}, rest equal: {result == source}")
PY
}

expect_exit 0 "apply" "$VANTEL" fdl apply "$SOURCE" "$TEMPLATE" -o "$WORK/result.fdl"
check_result "apply" "$WORK/result.fdl" "$SOURCE" 1
expect_exit 0 "validate the result" "$VANTEL" validate "$WORK/result.fdl"
if grep -q ': error: ' "$WORK/stderr"; then fail "the result has errors: $(cat "$WORK/stderr")"; fi

# Chosen by id, the list and the template from one file, written to standard output.
"$PYTHON" -c 'import json,sys; d=json.load(open(sys.argv[1])); d["canvas_templates"].insert(0, dict(d["canvas_templates"][0], id="other", fit_method="width")); json.dump(d, open(sys.argv[2], "w"))' \
  "$EXPECTED" "$WORK/both.fdl"
expect_exit 0 "apply chosen by id" "$VANTEL" fdl apply "$WORK/both.fdl" "$WORK/both.fdl" --canvas 1 --decision 1-1 --template VX220310 -o -
mv "$WORK/stdout" "$WORK/chosen.fdl"
check_result "apply chosen by id" "$WORK/chosen.fdl" "$WORK/both.fdl" 1
# A decision alone is looked for on every canvas, as render looks for it.
expect_exit 0 "a decision alone" "$VANTEL" fdl apply "$WORK/both.fdl" "$TEMPLATE" \
  --decision 123456781234567812345678123456-1 -o "$WORK/second.fdl"
"$PYTHON" -c 'import json,sys; c=json.load(open(sys.argv[1]))["contexts"][0]["canvases"]; assert c[2]["source_canvas_id"] == c[1]["id"], c' \
  "$WORK/second.fdl" || fail "a decision alone: not applied on the canvas holding it"

# Refusals: one line naming the file, and an earlier RESULT left as it was.
echo earlier > "$WORK/kept.fdl"
"$PYTHON" -c 'import json,sys; d=json.load(open(sys.argv[1])); d["canvas_templates"][0]["preserve_from_source_canvas"]="canvas.effective_dimensions"; json.dump(d, open(sys.argv[2], "w"))' \
  "$TEMPLATE" "$WORK/effective.fdl"
expect_exit 1 "a layer the source lacks" "$VANTEL" fdl apply "$SOURCE" "$WORK/effective.fdl" -o "$WORK/kept.fdl"
expect_one_error_line "a layer the source lacks" "A_4448x3096_1-3x_FramingChart.fdl" \
  'cannot apply template "VX220310": the template keeps canvas.effective_dimensions, which canvas "1" does not have$'
expect_exit 1 "an unknown canvas" "$VANTEL" fdl apply "$SOURCE" "$TEMPLATE" --canvas 7 -o "$WORK/kept.fdl"
expect_one_error_line "an unknown canvas" "A_4448x3096_1-3x_FramingChart.fdl" 'no canvas "7"'
expect_exit 1 "an unknown decision" "$VANTEL" fdl apply "$SOURCE" "$TEMPLATE" --decision 1-7 -o "$WORK/kept.fdl"
expect_one_error_line "an unknown decision" "A_4448x3096_1-3x_FramingChart.fdl" 'no framing decision "1-7"'
expect_exit 1 "an unknown template" "$VANTEL" fdl apply "$SOURCE" "$TEMPLATE" --template hd -o "$WORK/kept.fdl"
expect_one_error_line "an unknown template" "CANVAS-TEMPLATE.fdl" 'holds no canvas template "hd"$'
expect_exit 1 "a template file without templates" "$VANTEL" fdl apply "$SOURCE" "$SOURCE" -o "$WORK/kept.fdl"
expect_exit 1 "an overlay as the source" "$VANTEL" fdl apply "$EXAMPLES/sample.aspectratio" "$TEMPLATE" -o "$WORK/kept.fdl"
expect_one_error_line "an overlay as the source" "sample.aspectratio" 'not an ASC framing decision list'
"$PYTHON" -c 'import json, sys; d = json.load(open(sys.argv[1])); d["contexts"][0]["canvases"][0]["dimensions"]["width"] = 0
json.dump(d, open(sys.argv[2], "w"))' "$SOURCE" "$WORK/broken.fdl"
expect_exit 1 "a source with errors" "$VANTEL" fdl apply "$WORK/broken.fdl" "$TEMPLATE" -o "$WORK/kept.fdl"
grep -qF "broken.fdl: error: contexts[0].canvases[0].dimensions.width: must be greater than 0" "$WORK/stderr" ||
  fail "a source with errors: $(cat "$WORK/stderr")"
[ "$(cat "$WORK/kept.fdl")" = earlier ] || fail "a refused apply changed RESULT"

expect_exit 2 "no output" "$VANTEL" fdl apply "$SOURCE" "$TEMPLATE"
expect_one_error_line "no output" "fdl apply" '--output is missing; see vantel fdl apply --help'
expect_exit 2 "both from standard input" "$VANTEL" fdl apply - - -o "$WORK/kept.fdl" </dev/null
expect_exit 2 "no subcommand" "$VANTEL" fdl
finish
