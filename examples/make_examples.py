#!/usr/bin/env python3
"""Writes the sample overlay documents in examples/ (XML and binary plists)."""
import plistlib
from pathlib import Path

HERE = Path(__file__).resolve().parent


def colour(r, g, b, a=1.0):
    return {"red": r / 255, "green": g / 255, "blue": b / 255, "alpha": a}


def guide(uid, width, height, color, weight, **extra):
    g = {"id": uid, "width": float(width), "height": float(height),
         "color": color, "weight": float(weight)}
    g.update(extra)
    return g


def thirds():
    return {"divisor": {"_0": 3}}


sample = {
    "size": {"width": 1920.0, "height": 1080.0, "margin": 40.0},
    "ratios": [
        guide("6B1F5E0C-3C7A-4E53-9B1D-2F6A0C8E4D11", 16, 9, colour(141, 211, 199), 6,
              fillColor=colour(40, 44, 52, 0.6), rowType=thirds(), columnType=thirds(),
              children=[
                  guide("0E2C8B4A-71D5-4F0E-A3C9-5B7D9E1F2A33", 4, 3, colour(251, 128, 114), 4,
                        fillColor=colour(251, 128, 114, 0.25), clearParent=False),
              ]),
        guide("A4D3C2B1-1E2F-4A5B-8C7D-9E0F1A2B3C44", 1, 1, colour(253, 180, 98), 4,
              rowType={"pixels": {"_0": 120}}, columnType={"pixels": {"_0": 120}}),
        guide("5F6E7D8C-9BA0-4C1D-8E2F-3A4B5C6D7E55", 9, 16, colour(190, 186, 218), 4,
              fillColor=colour(190, 186, 218, 0.15), clearParent=False),
    ],
    "backgroundColor": colour(18, 18, 24),
}

portrait = {
    "size": {"width": 1080.0, "height": 1350.0, "margin": 24.0},
    "ratios": [
        guide("1D2C3B4A-5E6F-4A7B-9C8D-0E1F2A3B4C66", 4, 5, colour(128, 177, 211), 8,
              rowType=thirds(), columnType=thirds(),
              children=[
                  guide("7A8B9C0D-1E2F-4B3C-8D4E-5F6A7B8C9D77", 1, 1, colour(255, 237, 111), 4,
                        clearParent=False),
              ]),
    ],
    "backgroundColor": colour(250, 248, 240),
}

with open(HERE / "sample.aspectratio", "wb") as f:
    plistlib.dump(sample, f, fmt=plistlib.FMT_XML, sort_keys=False)
with open(HERE / "portrait-binary.aspectratio", "wb") as f:
    plistlib.dump(portrait, f, fmt=plistlib.FMT_BINARY, sort_keys=False)
