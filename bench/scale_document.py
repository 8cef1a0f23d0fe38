#!/usr/bin/env python3
"""Writes a copy of an overlay document scaled by a factor: canvas, margin,
stroke weights and pixel grids all grow together, so the picture stays the
same at a higher resolution. With --keep-parents every guide's clearParent is
turned off: the cleared areas have no plain-SVG equivalent, so this is the
picture bench/overlay_to_svg.py writes.

usage: scale_document.py [--keep-parents] INPUT OUTPUT FACTOR
"""
import plistlib
import sys


def scale_guide(guide, k, keep_parents):
    guide["weight"] *= k
    if keep_parents:
        guide["clearParent"] = False
    for key in ("rowType", "columnType"):
        grid = guide.get(key, {})
        if "pixels" in grid:
            grid["pixels"]["_0"] = int(grid["pixels"]["_0"] * k)
    for child in guide.get("children", []):
        scale_guide(child, k, keep_parents)


def main(source, target, factor, keep_parents=False):
    k = float(factor)
    with open(source, "rb") as f:
        doc = plistlib.load(f)
    for key in ("width", "height", "margin"):
        doc["size"][key] *= k
    for guide in doc["ratios"]:
        scale_guide(guide, k, keep_parents)
    with open(target, "wb") as f:
        plistlib.dump(doc, f, sort_keys=False)


if __name__ == "__main__":
    arguments = sys.argv[1:]
    keep = "--keep-parents" in arguments
    main(*(a for a in arguments if a != "--keep-parents"), keep_parents=keep)
