#!/usr/bin/python3
"""Checks that a rendered PNG shows a document's guides where the layout puts them.

    layoutcheck.py IMAGE --document DOC [--step N]

Lays the document out the way the renderer does (each guide the largest box of
its ratio inside the canvas less the margin, or inside its parent's box,
centred on the canvas; the rectangle shrunk by the stroke weight; grid lines
from the rectangle's corner), then replays the drawing for single pixels:
background, and per guide in drawing order: clear (when it clears what is
beneath), fill, outline, row lines, column lines, then its children.

Every pixel on a lattice of rows and columns N pixels apart is compared with
that replay, except pixels that an edge crosses (anti-aliased). The check
fails on any mismatch, and unless the compared pixels show the background,
a cleared area, the outline and the fill of every guide and the grid lines of
every guide with a grid. Reads the PNG with pngcheck.py. Exits 0 when all hold.
"""
import argparse
import os
import plistlib
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from pngcheck import Image, NotPNG  # noqa: E402

TOLERANCE = 3  # per premultiplied 8-bit channel: rounding in drawing and encoding


class Box:
    """An axis-aligned rectangle [left, right) x [top, bottom) in canvas units."""

    def __init__(self, left, top, right, bottom):
        self.left, self.top, self.right, self.bottom = left, top, right, bottom

    def grown(self, by):
        return Box(self.left - by, self.top - by, self.right + by, self.bottom + by)

    def coverage(self, x, y):
        """'full', 'none' or 'partial' for the pixel square [x, x+1) x [y, y+1)."""
        if x >= self.right or x + 1 <= self.left or y >= self.bottom or y + 1 <= self.top:
            return "none"
        if x >= self.left and x + 1 <= self.right and y >= self.top and y + 1 <= self.bottom:
            return "full"
        return "partial"


class Band:
    """The outline of a stroked rectangle: the outer box less the inner one."""

    def __init__(self, rect, width):
        self.outer, self.inner = rect.grown(width / 2), rect.grown(-width / 2)

    def coverage(self, x, y):
        outer = self.outer.coverage(x, y)
        inner = self.inner.coverage(x, y) if self.inner.right > self.inner.left else "none"
        if outer == "none" or inner == "full":
            return "none"
        if outer == "full" and inner == "none":
            return "full"
        return "partial"


def premultiplied(colour):
    """A document colour as premultiplied 0...1 RGBA."""
    alpha = colour.get("alpha", 0)
    return tuple(colour.get(k, 0) * alpha for k in ("red", "green", "blue")) + (alpha,)


def fitted(guide, width, height, margin):
    ratio = guide["width"] / guide["height"]
    aw, ah = width - 2 * margin, height - 2 * margin
    return (ratio * ah, ah) if ratio < aw / ah else (aw, aw / ratio)


def grid_offsets(grid, length):
    if not grid or "none" in grid:
        return []
    if "pixels" in grid:
        step = float(grid["pixels"]["_0"])
        if step < 1 or step >= length:
            return []
    else:
        step = length / grid["divisor"]["_0"]
    offsets, value = [], step
    while (value < length) if step > 0 else (value > length):
        offsets.append(value)
        value += step
    return offsets


def guide_operations(guide, path, box, centre):
    """(label, region, colour or None for clear) for one guide and its children, in drawing order."""
    weight = guide["weight"]
    width, height = fitted(guide, *box)
    rect = Box(centre[0] - (width - weight) / 2, centre[1] - (height - weight) / 2,
               centre[0] + (width - weight) / 2, centre[1] + (height - weight) / 2)
    stroke = premultiplied(guide["color"])
    fill = premultiplied(guide.get("fillColor", {}))
    ops = []
    if guide.get("clearParent", True):
        ops.append(("cleared area", rect, None))
    ops.append((f"fill of {path}", rect, fill))
    ops.append((f"outline of {path}", Band(rect, weight), stroke))
    for offset in grid_offsets(guide.get("rowType"), rect.bottom - rect.top):
        y = rect.top + offset
        ops.append((f"grid line of {path}", Box(rect.left, y - weight / 2, rect.right, y + weight / 2), stroke))
    for offset in grid_offsets(guide.get("columnType"), rect.right - rect.left):
        x = rect.left + offset
        ops.append((f"grid line of {path}", Box(x - weight / 2, rect.top, x + weight / 2, rect.bottom), stroke))
    for i, child in enumerate(guide.get("children", [])):
        ops += guide_operations(child, f"{path}.children[{i}]", (width, height, 0), centre)
    return ops


def operations(document):
    size = document["size"]
    width, height, margin = size["width"], size["height"], size["margin"]
    ops = [("background", Box(0, 0, width, height), premultiplied(document.get("backgroundColor", {})))]
    for i, guide in enumerate(document["ratios"]):
        ops += guide_operations(guide, f"ratios[{i}]", (width, height, margin), (width / 2, height / 2))
    # A fully transparent fill draws nothing; leave it out so it cannot be "seen".
    return [op for op in ops if op[2] is None or op[2][3] > 0]


def expected_pixel(ops, x, y):
    """(premultiplied 0...255 RGBA, label of the last visible operation), or None when an edge crosses the pixel."""
    pixel, label = (0.0, 0.0, 0.0, 0.0), "nothing drawn"
    for name, region, colour in ops:
        coverage = region.coverage(x, y)
        if coverage == "partial":
            return None
        if coverage == "none":
            continue
        if colour is None:
            pixel = (0.0, 0.0, 0.0, 0.0)
        else:
            pixel = tuple(s + d * (1 - colour[3]) for s, d in zip(colour, pixel))
        label = name
    return tuple(round(c * 255) for c in pixel), label


def actual_pixel(image, x, y):
    r, g, b, a = image.rgba(x, y)
    return tuple(round(c * a / 255) for c in (r, g, b)) + (a,)


def required_labels(document):
    labels = {"background", "cleared area"} if clears_without_fill(document["ratios"]) else {"background"}

    def walk(guides, prefix):
        for i, guide in enumerate(guides):
            path = f"{prefix}[{i}]" if prefix == "ratios" else f"{prefix}.children[{i}]"
            labels.add(f"outline of {path}")
            if guide.get("fillColor", {}).get("alpha", 0) > 0:
                labels.add(f"fill of {path}")
            if any(k in guide.get(t, {"none": {}}) for t in ("rowType", "columnType") for k in ("pixels", "divisor")):
                labels.add(f"grid line of {path}")
            walk(guide.get("children", []), path)

    walk(document["ratios"], "ratios")
    return labels


def clears_without_fill(guides):
    """Whether some guide clears what is beneath and draws no fill over it."""
    return any((g.get("clearParent", True) and g.get("fillColor", {}).get("alpha", 0) == 0)
               or clears_without_fill(g.get("children", [])) for g in guides)


def check(image, document, step):
    size = document["size"]
    if (image.width, image.height) != (int(size["width"]), int(size["height"])):
        return [f"image is {image.width}x{image.height}, expected the canvas {size['width']:g}x{size['height']:g}"], {}
    ops = operations(document)
    failures, seen = [], {}
    lattice = {(x, y) for y in range(0, image.height, step) for x in range(image.width)}
    lattice |= {(x, y) for x in range(0, image.width, step) for y in range(image.height)}
    for x, y in sorted(lattice):
        expected = expected_pixel(ops, x, y)
        if expected is None:
            continue
        colour, label = expected
        seen[label] = seen.get(label, 0) + 1
        actual = actual_pixel(image, x, y)
        if any(abs(a - e) > TOLERANCE for a, e in zip(actual, colour)):
            if len(failures) < 20:
                failures.append(f"pixel ({x}, {y}) should show the {label} as premultiplied {colour}, "
                                f"but is {actual}")
            else:
                failures[-1] = "... and more mismatching pixels"
    for label in sorted(required_labels(document) - set(seen)):
        failures.append(f"no compared pixel shows the {label}")
    return failures, seen


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("image")
    parser.add_argument("--document", required=True)
    parser.add_argument("--step", type=int, default=23, help="pixels between the compared rows and columns")
    args = parser.parse_args()
    try:
        image = Image(args.image)
    except (NotPNG, OSError) as error:
        print(f"{args.image}: not a whole PNG: {error}")
        return 1
    with open(args.document, "rb") as f:
        document = plistlib.load(f)
    failures, seen = check(image, document, args.step)
    for failure in failures:
        print(f"{args.image}: {failure}")
    if not failures:
        print(f"{args.image}: " + ", ".join(f"{label} ({count} px)" for label, count in sorted(seen.items())))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
