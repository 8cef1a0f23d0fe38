#!/usr/bin/env python3
"""Compares two PNG pictures of the same size pixel by pixel: the mean absolute
difference over all RGBA samples (0...255), and the share of pixels where some
sample differs by more than a threshold. Reads with tests/apps/pngread.py
(zlib only): 8-bit, not interlaced (what cairo, librsvg and vantel write).

usage: png_difference.py A.png B.png [THRESHOLD]   (THRESHOLD defaults to 32)
"""
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "apps"))
from pngread import Image, NotPNG  # noqa: E402


def read_rgba(path):
    """(width, height, RGBA bytes)."""
    try:
        image = Image(path)
    except (NotPNG, OSError) as error:
        sys.exit(f"{path}: not a whole PNG: {error}")
    return image.width, image.height, image.rgba_bytes()


def main(first, second, threshold=32):
    wa, ha, a = read_rgba(first)
    wb, hb, b = read_rgba(second)
    if (wa, ha) != (wb, hb):
        sys.exit(f"sizes differ: {wa}x{ha} and {wb}x{hb}")
    total = 0
    differing = 0
    box = [wa, ha, -1, -1]
    for i in range(0, len(a), 4):
        d = [abs(a[i + k] - b[i + k]) for k in range(4)]
        total += sum(d)
        if max(d) > threshold:
            differing += 1
            x, y = (i // 4) % wa, (i // 4) // wa
            box = [min(box[0], x), min(box[1], y), max(box[2], x), max(box[3], y)]
    # Where the differences lie tells a shifted edge from a missing shape.
    where = f" (within x {box[0]}..{box[2]}, y {box[1]}..{box[3]})" if differing else ""
    print(f"mean absolute difference {total / len(a):.3f} of 255; "
          f"{100 * differing / (wa * ha):.3f}% of pixels differ by more than {threshold}{where}")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], *(int(t) for t in sys.argv[3:4]))
