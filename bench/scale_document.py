#!/usr/bin/env python3
"""Writes a copy of an overlay document scaled by a factor: canvas, margin,
stroke weights and pixel grids all grow together, so the picture stays the
same at a higher resolution.

usage: scale_document.py INPUT OUTPUT FACTOR
"""
import plistlib
import sys


def scale_guide(guide, k):
    guide["weight"] *= k
    for key in ("rowType", "columnType"):
        grid = guide.get(key, {})
        if "pixels" in grid:
            grid["pixels"]["_0"] = int(grid["pixels"]["_0"] * k)
    for child in guide.get("children", []):
        scale_guide(child, k)


def main(source, target, factor):
    k = float(factor)
    with open(source, "rb") as f:
        doc = plistlib.load(f)
    for key in ("width", "height", "margin"):
        doc["size"][key] *= k
    for guide in doc["ratios"]:
        scale_guide(guide, k)
    with open(target, "wb") as f:
        plistlib.dump(doc, f, sort_keys=False)


if __name__ == "__main__":
    main(*sys.argv[1:4])
