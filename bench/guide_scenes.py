#!/usr/bin/env python3
"""Writes the large benchmark documents that bench/compare_rsvg.sh times beside
the sample: always the same document for the same arguments (a fixed seed),
every guide with clearParent off so that bench/overlay_to_svg.py can write the
same picture as plain SVG.

  gridded      3840x2160, ten guides of different ratios, each divided by a
               grid (a line every n pixels or n equal parts), light fills
  translucent  7680x4320, 200 guides of ratios from 1:4 to 4:1, all centred
               and so overlapping, each filled with a translucent colour

usage: guide_scenes.py gridded|translucent OUTPUT
"""
import plistlib
import random
import sys
import uuid


def colour(rng, alpha):
    return {"red": rng.random(), "green": rng.random(), "blue": rng.random(), "alpha": alpha}


def guide(rng, width, height, weight, fill_alpha, **extra):
    g = {"id": str(uuid.UUID(int=rng.getrandbits(128), version=4)).upper(),
         "width": float(width), "height": float(height),
         "color": colour(rng, 1.0), "weight": float(weight),
         "fillColor": colour(rng, fill_alpha), "clearParent": False}
    g.update(extra)
    return g


def gridded(rng):
    ratios = [(16, 9), (4, 3), (1, 1), (21, 9), (9, 16), (3, 2), (2, 3), (5, 4), (4, 5), (239, 100)]
    guides = []
    for i, (w, h) in enumerate(ratios):
        grid = {"pixels": {"_0": 60 + 20 * i}} if i % 2 else {"divisor": {"_0": 3 + i}}
        guides.append(guide(rng, w, h, 4 + i % 3 * 2, 0.08, rowType=grid, columnType=grid))
    return (3840, 2160, 80), guides


def translucent(rng):
    guides = []
    for _ in range(200):
        ratio = 4 ** rng.uniform(-1, 1)
        guides.append(guide(rng, round(ratio * 1000), 1000, rng.choice([4, 6, 8, 12]),
                            round(rng.uniform(0.05, 0.3), 3)))
    return (7680, 4320, 160), guides


def main(scene, target):
    rng = random.Random(15)
    (width, height, margin), guides = {"gridded": gridded, "translucent": translucent}[scene](rng)
    document = {
        "size": {"width": float(width), "height": float(height), "margin": float(margin)},
        "ratios": guides,
        "backgroundColor": {"red": 18 / 255, "green": 18 / 255, "blue": 24 / 255, "alpha": 1.0},
    }
    with open(target, "wb") as f:
        plistlib.dump(document, f, fmt=plistlib.FMT_XML, sort_keys=False)


if __name__ == "__main__":
    main(*sys.argv[1:])
