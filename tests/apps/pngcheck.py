#!/usr/bin/python3
"""Checks that a thumbnail is a whole PNG of the fitted size that shows its document.

    pngcheck.py IMAGE --document DOC --size N [--text KEY=VALUE ...]

Reads the PNG with pngread.py (zlib only), so it judges the bytes a file
browser would get. The document is read with plistlib for its canvas,
background and guides (a framing decision list, .fdl, with json for its
first canvas); the checks are:
  - the file is a complete PNG: signature, chunk CRCs, IHDR first, IEND last,
    image data that inflates to exactly the rows IHDR promises;
  - the larger side is N and the other keeps the canvas aspect (within a pixel);
  - pixels in the margin band at each side show the background colour;
  - inside the margin, the guides change at least 5% of the pixels;
  - every guide stroke at least two pixels wide appears in its colour;
  - for a list: the canvas and framing lines appear in their chart colours.
Exits 0 when all hold; otherwise prints one line per failure and exits 1.
"""
import argparse
import json
import math
import os
import plistlib
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from pngread import Image, NotPNG  # noqa: E402

def colour255(colour):
    return tuple(round(colour.get(k, 0) * 255) for k in ("red", "green", "blue", "alpha"))


def close(a, b, tolerance):
    return all(abs(p - q) <= tolerance for p, q in zip(a, b))


def guides(ratios):
    for guide in ratios:
        yield guide
        yield from guides(guide.get("children", []))


def band_pixel(start, end, scale, limit):
    """Index of a pixel lying wholly inside [start, end) canvas units, or None."""
    index = math.floor((start + end) / 2 * scale)
    if index < 0 or index >= limit or index / scale < start or (index + 1) / scale > end:
        return None
    return index


def size_failures(image, width, height, size):
    longer = max(width, height)
    expected = (size * width / longer, size * height / longer)
    if max(image.width, image.height) != size or \
            abs(image.width - expected[0]) > 1 or abs(image.height - expected[1]) > 1:
        return [f"image is {image.width}x{image.height}, expected the canvas "
                f"{width:g}x{height:g} fitted into {size} ({expected[0]:.1f}x{expected[1]:.1f})"]
    return []


def check_list(image, fdl, size):
    canvas = fdl["contexts"][0]["canvases"][0]["dimensions"]
    failures = size_failures(image, canvas["width"], canvas["height"], size)
    if failures:
        return failures
    seen = set(image.pixels())
    for layer, colour in (("canvas", (128, 128, 128, 255)), ("framing", (0, 204, 102, 255))):
        if not any(close(pixel, colour, 3) for pixel in seen):
            failures.append(f"no pixel shows the {layer} line's colour {colour}")
    return failures


def check(image, document, size):
    canvas = document["size"]
    width, height, margin = canvas["width"], canvas["height"], canvas["margin"]
    failures = size_failures(image, width, height, size)
    if failures:
        return failures
    longer = max(width, height)

    scale = size / longer
    background = colour255(document.get("backgroundColor", {}))
    xs = [band_pixel(0, margin, scale, image.width), band_pixel(width - margin, width, scale, image.width)]
    ys = [band_pixel(0, margin, scale, image.height), band_pixel(height - margin, height, scale, image.height)]
    probes = [(x, y) for x in xs for y in ys if x is not None and y is not None]
    if not probes:
        failures.append("no pixel lies wholly inside the margin band; cannot check the background")
    for x, y in probes:
        if not close(image.rgba(x, y), background, 3):
            failures.append(f"pixel ({x}, {y}) in the margin is {image.rgba(x, y)}, "
                            f"expected the background {background}")

    inner = [image.rgba(x, y)
             for y in range(math.ceil(margin * scale), math.floor((height - margin) * scale))
             for x in range(math.ceil(margin * scale), math.floor((width - margin) * scale))]
    drawn = sum(1 for pixel in inner if not close(pixel, background, 24))
    if drawn < 0.05 * len(inner):
        failures.append(f"only {drawn} of {len(inner)} pixels inside the margin differ from the "
                        f"background: the guides are not drawn")

    seen = set(image.pixels())
    for guide in guides(document.get("ratios", [])):
        stroke = colour255(guide["color"])
        if guide.get("weight", 2.0) * scale < 2 or stroke[3] != 255:
            continue
        if not any(close(pixel, stroke, 3) for pixel in seen):
            failures.append(f"no pixel shows the stroke colour {stroke} of the "
                            f"{guide['width']:g}:{guide['height']:g} guide")
    return failures


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("image")
    parser.add_argument("--document", required=True)
    parser.add_argument("--size", type=int, required=True)
    parser.add_argument("--text", action="append", default=[], help="KEY=VALUE expected in a tEXt chunk")
    args = parser.parse_args()
    try:
        image = Image(args.image)
    except (NotPNG, OSError) as error:
        print(f"{args.image}: not a whole PNG: {error}")
        return 1
    with open(args.document, "rb") as f:
        if args.document.lower().endswith(".fdl"):
            failures = check_list(image, json.load(f), args.size)
        else:
            failures = check(image, plistlib.load(f), args.size)
    for pair in args.text:
        key, value = pair.split("=", 1)
        found = image.text.get(key.encode())
        if found != value.encode():
            failures.append(f"tEXt {key} is {found!r}, expected {value!r}")
    for failure in failures:
        print(f"{args.image}: {failure}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
