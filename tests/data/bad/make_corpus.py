#!/usr/bin/python3
"""Writes the corpus of broken overlay documents and expected.tsv, the line
each one must draw from `vantel validate`, `render` and `thumbnail`.

    /usr/bin/python3 tests/data/bad/make_corpus.py          # rewrites the corpus
    /usr/bin/python3 tests/data/bad/make_corpus.py deep OUT # a guide nested 10000 deep
    /usr/bin/python3 tests/data/bad/make_corpus.py huge OUT # 100 MB, plist header then junk

The last two are made by the end-to-end test at run time: too large to keep.

expected.tsv has one row per expected line on standard error, in order:
NAME <tab> EXIT CODE <tab> extended regular expression matched against the
whole line after "FILE: ". A name with several rows must print exactly those
lines.
"""
import copy
import pathlib
import plistlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
XML, BINARY = plistlib.FMT_XML, plistlib.FMT_BINARY
NAN, INF = float("nan"), float("inf")
BAD_DOCUMENT = 1


def rgba(red, green, blue, alpha):
    return {"red": red, "green": green, "blue": blue, "alpha": alpha}


def guide(uid, width, height, **extra):
    value = {"id": f"6B1F5E0C-3C7A-4E53-9B1D-2F6A0C8E4D{uid:02d}", "width": width, "height": height,
             "color": rgba(1.0, 0.0, 0.0, 1.0), "weight": 2.0}
    value.update(extra)
    return value


def valid():
    """A document that draws: every key of the format present once."""
    inner = guide(2, 4.0, 3.0, columnType={"pixels": {"_0": 20}}, clearParent=False)
    outer = guide(1, 16.0, 9.0, fillColor=rgba(0.0, 0.0, 0.0, 0.5), rowType={"divisor": {"_0": 3}},
                  columnType={"none": {}}, children=[inner])
    return {"size": {"width": 320.0, "height": 180.0, "margin": 10.0}, "ratios": [outer],
            "backgroundColor": rgba(0.1, 0.1, 0.1, 1.0)}


def changed(path, value=None, delete=False, document=None):
    """The valid document (or `document`) with the value at `path` replaced or deleted."""
    result = copy.deepcopy(document if document is not None else valid())
    parent = result
    for step in path[:-1]:
        parent = parent[step]
    if delete:
        del parent[path[-1]]
    else:
        parent[path[-1]] = value
    return result


def missing(*path):
    return changed(path, delete=True)


def replaced(*path_and_value):
    *path, value = path_and_value
    return changed(path, value)


def sized(width, height, margin):
    return replaced("size", {"width": width, "height": height, "margin": margin})


def one_guide(**fields):
    """A 320 x 180 canvas holding one guide with these fields changed."""
    value = guide(1, 16.0, 9.0)
    value.update(fields)
    return {"size": {"width": 320.0, "height": 180.0, "margin": 10.0}, "ratios": [value]}


def nested(depth):
    """One chain of guides `depth` levels deep; built without recursion."""
    root = guide(1, 1.0, 1.0)
    level = root
    for _ in range(depth - 1):
        child = guide(2, 1.0, 1.0)
        level["children"] = [child]
        level = child
    return {"size": {"width": 64.0, "height": 64.0, "margin": 0.0}, "ratios": [root]}


NOT_A_PLIST = r"The given data was not a valid property list\."
DAMAGED_TRAILER = NOT_A_PLIST + r" The binary property list's trailer is damaged\."
SAMPLE_XML = plistlib.dumps(valid(), fmt=XML)
SAMPLE_BINARY = plistlib.dumps(valid(), fmt=BINARY)

# name, document (a value, or raw bytes), plist format, exit code, expected lines
CASES = []


def case(name, document, *lines, fmt=XML, code=BAD_DOCUMENT):
    CASES.append((name, document, fmt, code, lines))


def key_not_found(path, key):
    prefix = path + r"\." if path else ""
    return prefix + key + r': No value associated with key "' + key + r'"\.'


def mismatch(path, expected, found):
    return path + ": Expected to decode " + expected + " but found " + found + r" instead\."


# Not a document at all.
case("not-a-plist", b"this is not a property list\n", NOT_A_PLIST)
case("empty", b"", NOT_A_PLIST)
case("truncated-binary", SAMPLE_BINARY[: len(SAMPLE_BINARY) // 2], DAMAGED_TRAILER)
case("truncated-binary-trailer", SAMPLE_BINARY[:-5], DAMAGED_TRAILER)
case("truncated-xml", SAMPLE_XML[: len(SAMPLE_XML) // 2], NOT_A_PLIST)
case("xml-without-plist", b'<?xml version="1.0" encoding="UTF-8"?>\n<html><body>hello</body></html>\n',
     NOT_A_PLIST)
case("root-array", [valid()], r"Expected to decode Dictionary but found an array instead\.")
case("root-string", "size", r"Expected to decode Dictionary but found a string instead\.")
case("root-string-binary", "size", r"Expected to decode Dictionary but found a string instead\.", fmt=BINARY)

# Required keys missing.
case("missing-size", missing("size"), key_not_found("", "size"))
case("missing-ratios", missing("ratios"), key_not_found("", "ratios"))
for key in ("width", "height", "margin"):
    case(f"missing-size-{key}", missing("size", key), key_not_found("size", key))
for key in ("id", "width", "height", "color", "weight"):
    case(f"missing-guide-{key}", missing("ratios", 0, key), key_not_found(r"ratios\[0\]", key))
case("missing-child-weight", missing("ratios", 0, "children", 0, "weight"),
     key_not_found(r"ratios\[0\]\.children\[0\]", "weight"))
for key in ("red", "green", "blue", "alpha"):
    case(f"missing-background-{key}", missing("backgroundColor", key), key_not_found("backgroundColor", key))
case("missing-color-alpha", missing("ratios", 0, "color", "alpha"), key_not_found(r"ratios\[0\]\.color", "alpha"))
case("missing-fill-blue", missing("ratios", 0, "fillColor", "blue"),
     key_not_found(r"ratios\[0\]\.fillColor", "blue"))
case("missing-grid-payload", replaced("ratios", 0, "rowType", {"divisor": {}}),
     key_not_found(r"ratios\[0\]\.rowType\.divisor", "_0"))

# Wrong types.
case("size-string", replaced("size", "320x180"), mismatch("size", "Dictionary", "a string"))
case("size-array", replaced("size", [320.0, 180.0, 10.0]), mismatch("size", "Dictionary", "an array"))
case("size-width-string", replaced("size", "width", "320"), mismatch(r"size\.width", "Double", "a string"))
case("size-height-bool", replaced("size", "height", True), mismatch(r"size\.height", "Double", "a boolean"))
case("size-margin-data", replaced("size", "margin", b"\x0a"), mismatch(r"size\.margin", "Double", "data"))
case("ratios-dictionary", replaced("ratios", {"0": valid()["ratios"][0]}),
     mismatch("ratios", "Array", "a dictionary"))
case("guide-string", replaced("ratios", ["16:9"]), mismatch(r"ratios\[0\]", "Dictionary", "a string"))
case("background-array", replaced("backgroundColor", [0.1, 0.1, 0.1, 1.0]),
     mismatch("backgroundColor", "Dictionary", "an array"))
case("background-red-string", replaced("backgroundColor", "red", "0.1"),
     mismatch(r"backgroundColor\.red", "Double", "a string"))
case("id-integer", replaced("ratios", 0, "id", 7), mismatch(r"ratios\[0\]\.id", "String", "an integer"))
case("id-not-uuid", replaced("ratios", 0, "id", "not-a-uuid"), r"ratios\[0\]\.id: Attempted to decode UUID from invalid UUID string\.")
case("guide-width-string", replaced("ratios", 0, "width", "16"),
     mismatch(r"ratios\[0\]\.width", "Double", "a string"))
case("guide-height-bool", replaced("ratios", 0, "height", False),
     mismatch(r"ratios\[0\]\.height", "Double", "a boolean"))
case("guide-color-string", replaced("ratios", 0, "color", "red"),
     mismatch(r"ratios\[0\]\.color", "Dictionary", "a string"))
case("guide-color-green-dictionary", replaced("ratios", 0, "color", "green", {}),
     mismatch(r"ratios\[0\]\.color\.green", "Double", "a dictionary"))
case("fill-integer", replaced("ratios", 0, "fillColor", 0),
     mismatch(r"ratios\[0\]\.fillColor", "Dictionary", "an integer"))
case("weight-string", replaced("ratios", 0, "weight", "2"),
     mismatch(r"ratios\[0\]\.weight", "Double", "a string"))
case("clear-parent-string", replaced("ratios", 0, "clearParent", "yes"),
     mismatch(r"ratios\[0\]\.clearParent", "Bool", "a string"))
case("clear-parent-integer", replaced("ratios", 0, "clearParent", 1),
     mismatch(r"ratios\[0\]\.clearParent", "Bool", "an integer"))
case("children-dictionary", replaced("ratios", 0, "children", {}),
     mismatch(r"ratios\[0\]\.children", "Array", "a dictionary"))
case("child-string", replaced("ratios", 0, "children", ["4:3"]),
     mismatch(r"ratios\[0\]\.children\[0\]", "Dictionary", "a string"))
case("grid-string", replaced("ratios", 0, "rowType", "thirds"),
     mismatch(r"ratios\[0\]\.rowType", "Dictionary", "a string"))
case("grid-case-not-dictionary", replaced("ratios", 0, "rowType", {"pixels": 50}),
     mismatch(r"ratios\[0\]\.rowType\.pixels", "Dictionary", "an integer"))
case("grid-payload-string", replaced("ratios", 0, "rowType", {"pixels": {"_0": "50"}}),
     mismatch(r"ratios\[0\]\.rowType\.pixels\._0", "Int", "a string"))
case("grid-payload-fraction", replaced("ratios", 0, "columnType", {"divisor": {"_0": 2.5}}),
     r"ratios\[0\]\.columnType\.divisor\._0: Number 2\.5 does not fit in Int\.")
case("grid-payload-huge", replaced("ratios", 0, "columnType", {"divisor": {"_0": 1e300}}),
     r"ratios\[0\]\.columnType\.divisor\._0: Number 1e\+300 does not fit in Int\.")
case("grid-payload-nan", replaced("ratios", 0, "columnType", {"pixels": {"_0": NAN}}),
     r"ratios\[0\]\.columnType\.pixels\._0: Number nan does not fit in Int\.", fmt=BINARY)
# Whole numbers that a 64-bit integer does not hold, or text that is not one,
# would otherwise wrap or be read only up to the first odd character.
case("grid-payload-beyond-int64-binary", replaced("ratios", 0, "columnType", {"divisor": {"_0": 2**64 - 1}}),
     r"ratios\[0\]\.columnType\.divisor\._0: Number 1\.8446744073709552e\+19 does not fit in Int\.", fmt=BINARY)
case("grid-payload-beyond-int64", replaced("ratios", 0, "columnType", {"divisor": {"_0": 2**64 - 1}}),
     r"ratios\[0\]\.columnType\.divisor\._0: Number 18446744073709551615 is not a whole number that fits in Int\.")
WIDE = plistlib.dumps(replaced("ratios", 0, "columnType", {"divisor": {"_0": 2**64 - 1}}), fmt=BINARY)
case("grid-payload-wider-than-64-bits-binary", WIDE.replace(b"\x14" + bytes(8), b"\x14\x01" + bytes(7), 1),
     NOT_A_PLIST + r" The binary property list holds a whole number wider than 64 bits\.")
case("grid-payload-exponent-text", SAMPLE_XML.replace(b"<integer>3</integer>", b"<integer>1e3</integer>", 1),
     r"ratios\[0\]\.rowType\.divisor\._0: Number 1e3 is not a whole number that fits in Int\.")
case("grid-no-case", replaced("ratios", 0, "rowType", {}),
     r"ratios\[0\]\.rowType: Invalid number of keys found, expected one\.")
case("grid-unknown-case", replaced("ratios", 0, "rowType", {"lines": {"_0": 3}}),
     r"ratios\[0\]\.rowType: Invalid number of keys found, expected one\.")
case("grid-two-cases", replaced("ratios", 0, "children", 0, "columnType",
                                {"pixels": {"_0": 20}, "divisor": {"_0": 3}}),
     r"ratios\[0\]\.children\[0\]\.columnType: Invalid number of keys found, expected one\.")

# Numbers that are not finite: in XML as libplist spells them, and binary.
case("canvas-width-nan-xml", sized(NAN, 180.0, 10.0), r"size\.width: nan is not a finite number")
case("canvas-height-inf-xml", sized(320.0, INF, 10.0), r"size\.height: inf is not a finite number")
case("canvas-nan-binary", sized(NAN, -INF, NAN), r"size\.width: nan is not a finite number",
     r"size\.height: -inf is not a finite number", r"size\.margin: nan is not a finite number", fmt=BINARY)
case("guide-width-nan", replaced("ratios", 0, "width", NAN), r"ratios\[0\]\.width: nan is not a finite number",
     fmt=BINARY)
case("guide-height-inf", replaced("ratios", 0, "height", INF), r"ratios\[0\]\.height: inf is not a finite number",
     fmt=BINARY)
case("weight-inf", replaced("ratios", 0, "weight", INF), r"ratios\[0\]\.weight: inf is not a finite number",
     fmt=BINARY)
case("color-nan", replaced("ratios", 0, "color", "green", NAN),
     r"ratios\[0\]\.color\.green: nan is not a finite number", fmt=BINARY)
case("background-alpha-inf", replaced("backgroundColor", "alpha", -INF),
     r"backgroundColor\.alpha: -inf is not a finite number", fmt=BINARY)
case("child-fill-nan-xml", replaced("ratios", 0, "children", 0, "fillColor", rgba(NAN, 0.0, 0.0, 1.0)),
     r"ratios\[0\]\.children\[0\]\.fillColor\.red: nan is not a finite number")

# Sizes out of range.
case("canvas-zero", sized(0.0, 0.0, 0.0), r"size: canvas 0\.0 x 0\.0 is smaller than one pixel")
case("canvas-below-a-pixel", sized(320.0, 0.99, 0.0), r"size: canvas 320\.0 x 0\.99 is smaller than one pixel")
case("canvas-negative", sized(-320.0, 180.0, 0.0), r"size\.width: canvas width -320\.0 is negative")
case("canvas-side-huge", sized(40000.0, 10.0, 0.0),
     r"size: canvas 40000\.0 x 10\.0 is larger than the limit of 32767 px a side")
case("canvas-1e308", sized(1e308, 1e308, 0.0),
     r"size: canvas 1e\+308 x 1e\+308 is larger than the limit of 32767 px a side", fmt=BINARY)
case("margin-negative", sized(320.0, 180.0, -10.0), r"size\.margin: margin -10\.0 is negative")
case("margin-fills-canvas", sized(320.0, 180.0, 90.0),
     r"size\.margin: margin 90\.0 leaves no room on a 320\.0 x 180\.0 canvas")
case("weight-negative", replaced("ratios", 0, "children", 0, "weight", -0.5),
     r"ratios\[0\]\.children\[0\]\.weight: weight -0\.5 is negative")
case("ratio-zero", replaced("ratios", 0, "height", 0.0),
     r"ratios\[0\]\.height: a guide needs a positive ratio side, not 0\.0")
case("ratio-negative", replaced("ratios", 0, "width", -16.0),
     r"ratios\[0\]\.width: a guide needs a positive ratio side, not -16\.0")
case("ratio-huge", replaced("ratios", 0, "width", 1e300),
     r"ratios\[0\]\.width: 1e\+300 is larger than the limit of 1000000000000000\.0")
# Sides in range whose ratio overflows: the guide would have no height.
case("ratio-overflow", replaced("ratios", 0, "height", 5e-324),
     r"ratios\[0\]: a guide of 16\.0 by 5e-324 has no usable ratio \(width / height is inf\)", fmt=BINARY)
case("divisor-too-many-lines", replaced("ratios", 0, "rowType", {"divisor": {"_0": 2**62}}),
     r"ratios\[0\]\.rowType: divisor 4611686018427387904 on a side of [0-9.]+ px would draw more than "
     r"100000 grid lines")
# A guide as thick as its box leaves sides of zero: a divisor there has no step.
case("divisor-on-zero-side", one_guide(width=1.0, height=1.0, weight=160.0, rowType={"divisor": {"_0": 3}}),
     r"ratios\[0\]\.rowType: divisor 3 on a side of 0\.0 px would give a zero grid step")
case("child-divisor-on-zero-side",
     one_guide(width=1.0, height=1.0, weight=0.0,
               children=[guide(2, 1.0, 1.0, weight=160.0, columnType={"divisor": {"_0": 7}})]),
     r"ratios\[0\]\.children\[0\]\.columnType: divisor 7 on a side of 0\.0 px would give a zero grid step")
# A divisor of zero draws nothing on any side; a negative one on a zero side
# has a step of -0, as much zero as +0.
case("divisors-zero-and-negative-on-zero-side",
     one_guide(width=1.0, height=1.0, weight=160.0, rowType={"divisor": {"_0": 0}},
               columnType={"divisor": {"_0": -3}}),
     r"ratios\[0\]\.columnType: divisor -3 on a side of 0\.0 px would give a zero grid step")
# Ratios whose quotient underflows to 0 would leave a parent of width 0, and
# a child fitted into it a height of 0 / 0.
case("ratio-underflow",
     one_guide(width=5e-324, height=1e15, weight=0.0,
               children=[guide(2, 5e-324, 1e15, weight=0.0, rowType={"pixels": {"_0": 3}})]),
     r"ratios\[0\]: a guide of 5e-324 by 1000000000000000\.0 has no usable ratio \(width / height is 0\.0\)",
     r"ratios\[0\]\.children\[0\]: a guide of 5e-324 by 1000000000000000\.0 has no usable ratio \(width / height is 0\.0\)",
     fmt=BINARY)
case("nested-65-deep", nested(65),
     r"ratios\[0\](\.children\[0\]){64}: guides nested deeper than 64 levels cannot be drawn", fmt=BINARY)

# Several problems in one document: each its own line, in document order.
case("several-problems",
     {"size": {"width": 320.0, "height": 180.0, "margin": -1.0},
      "ratios": [guide(1, 0.0, 9.0, weight=-2.0), guide(2, 4.0, 3.0, color=rgba(0.0, NAN, 0.0, 1.0))],
      "backgroundColor": rgba(0.0, 0.0, INF, 1.0)},
     r"size\.margin: margin -1\.0 is negative", r"backgroundColor\.blue: inf is not a finite number",
     r"ratios\[0\]\.width: a guide needs a positive ratio side, not 0\.0",
     r"ratios\[0\]\.weight: weight -2\.0 is negative", r"ratios\[1\]\.color\.green: nan is not a finite number",
     fmt=BINARY)

DEEP_DEPTH = 10000


def encode(document, fmt):
    if isinstance(document, bytes):
        return document
    return plistlib.dumps(document, fmt=fmt, sort_keys=False)


def write_corpus():
    for old in HERE.glob("*.aspectratio"):
        old.unlink()
    rows = []
    for name, document, fmt, code, lines in CASES:
        (HERE / f"{name}.aspectratio").write_bytes(encode(document, fmt))
        rows += [f"{name}\t{code}\t{line}" for line in lines]
    (HERE / "expected.tsv").write_text("\n".join(rows) + "\n")


def write_deep(output):
    """XML written by hand: plistlib recurses once per level and stops long before."""
    def scalars(uid):
        one = guide(uid, 1.0, 1.0)
        return plistlib.dumps(one, fmt=XML).split(b"<dict>", 1)[1].rsplit(b"</dict>", 1)[0]
    level, innermost = scalars(2), scalars(3)
    header = plistlib.dumps(nested(1), fmt=XML)
    before, after = header.split(b"<key>ratios</key>")
    after = after[after.index(b"</array>") + len(b"</array>"):]
    with open(output, "wb") as out:
        out.write(before + b"<key>ratios</key>\n<array>\n")
        for _ in range(DEEP_DEPTH - 1):
            out.write(b"<dict>" + level + b"<key>children</key>\n<array>\n")
        out.write(b"<dict>" + innermost + b"</dict>\n")
        out.write(b"</array>\n</dict>\n" * (DEEP_DEPTH - 1))
        out.write(b"</array>" + after)


def write_huge(output, megabytes=100):
    """An XML property list header, then junk that never closes the first value."""
    with open(output, "wb") as out:
        out.write(SAMPLE_XML[: SAMPLE_XML.index(b"<dict>")] + b"<dict>\n\t<key>size</key>\n\t<string>")
        chunk = b"junk " * 200_000  # 1 MB
        for _ in range(megabytes):
            out.write(chunk)


if __name__ == "__main__":
    if len(sys.argv) == 1:
        write_corpus()
    elif len(sys.argv) == 3 and sys.argv[1] == "deep":
        write_deep(sys.argv[2])
    elif len(sys.argv) == 3 and sys.argv[1] == "huge":
        write_huge(sys.argv[2])
    else:
        sys.exit(__doc__)
