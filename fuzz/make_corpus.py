#!/usr/bin/env python3
"""Writes the document fuzzer's seed corpus into fuzz/corpus/.

Small documents that between them reach every part of the format: XML and
binary property lists, grids of each kind, nesting, colours with and without
alpha, canvases from one pixel to the area limit, and a few documents the
check refuses. The examples/ documents are copied in as they are. Then
framing decision lists (JSON) of our own: every kind of area, user
properties, an old version read leniently, and one the check refuses.
"""
import json
import plistlib
import shutil
from pathlib import Path

HERE = Path(__file__).resolve().parent
CORPUS = HERE / "corpus"
EXAMPLES = HERE.parent / "examples"


def colour(r, g, b, a=1.0):
    return {"red": r, "green": g, "blue": b, "alpha": a}


def guide(n, width, height, weight=2.0, **extra):
    g = {"id": f"00000000-0000-4000-8000-{n:012d}", "width": width, "height": height,
         "color": colour(1.0, 0.5, 0.0), "weight": weight}
    g.update(extra)
    return g


def document(width, height, margin, ratios, background=colour(0.1, 0.1, 0.1)):
    doc = {"size": {"width": width, "height": height, "margin": margin}, "ratios": ratios}
    if background is not None:
        doc["backgroundColor"] = background
    return doc


def pixels(n):
    return {"pixels": {"_0": n}}


def divisor(n):
    return {"divisor": {"_0": n}}


def nested(depth):
    inner = guide(depth, 1.0, 1.0)
    for level in range(depth - 1, 0, -1):
        inner = guide(level, 4.0 if level % 2 else 3.0, 3.0 if level % 2 else 4.0, children=[inner])
    return inner


DOCUMENTS = {
    "empty": document(1920.0, 1080.0, 40.0, []),
    "no-background": document(640.0, 480.0, 0.0, [guide(1, 16.0, 9.0)], background=None),
    "pixel-grid": document(1920.0, 1080.0, 40.0,
                           [guide(1, 1.0, 1.0, rowType=pixels(120), columnType=pixels(7))]),
    "divisor-grid": document(1080.0, 1920.0, 10.0,
                             [guide(1, 9.0, 16.0, fillColor=colour(0.2, 0.4, 0.6, 0.5),
                                    rowType=divisor(3), columnType=divisor(4), clearParent=False)]),
    "none-grid": document(800.0, 600.0, 20.0, [guide(1, 4.0, 3.0, rowType={"none": {}})]),
    "siblings": document(1920.0, 1080.0, 40.0,
                         [guide(1, 16.0, 9.0, children=[guide(2, 4.0, 3.0), guide(3, 1.0, 1.0)]),
                          guide(4, 9.0, 16.0, weight=0.0, clearParent=False)]),
    "nested-deep": document(1000.0, 1000.0, 5.0, [nested(12)]),
    "small-canvas": document(96.0, 64.0, 4.0,
                             [guide(1, 3.0, 2.0, weight=1.5, rowType=divisor(5), columnType=pixels(3))]),
    "one-pixel": document(1.0, 1.0, 0.0, [guide(1, 1.0, 1.0, weight=0.0)]),
    "fractions": document(100.75, 33.25, 0.5, [guide(1, 0.001, 1000.0, weight=0.25)]),
    "largest": document(16384.0, 16384.0, 100.0,
                        [guide(1, 2.39, 1.0, rowType=divisor(1000), columnType=pixels(16))]),
    "thick-outline": document(300.0, 200.0, 10.0,
                              [guide(1, 1.0, 1.0, weight=500.0, rowType=divisor(2), columnType=pixels(1))]),
    "integers": document(640, 360, 8, [guide(1, 16, 9, weight=3)]),
    # Refused by the check: a negative weight, a zero ratio side, a zero margin room.
    "negative-weight": document(640.0, 480.0, 0.0, [guide(1, 1.0, 1.0, weight=-1.0)]),
    "zero-ratio": document(640.0, 480.0, 0.0, [guide(1, 0.0, 1.0)]),
    "margin-too-wide": document(100.0, 100.0, 50.0, [guide(1, 1.0, 1.0)]),
}


def framing_list(version, decision_width=3200.0):
    decision = {"id": "A-I", "framing_intent_id": "I", "label": "2.39",
                "dimensions": {"width": decision_width, "height": 1338.9121},
                "anchor_point": {"x": 320.0, "y": 410.54395},
                "protection_dimensions": {"width": 3520.0, "height": 1472.8033},
                "protection_anchor_point": {"x": 160.0, "y": 343.59835}, "_note": [1, "x"]}
    canvas = {"id": "A", "source_canvas_id": "A", "label": "open gate",
              "dimensions": {"width": 3840, "height": 2160},
              "effective_dimensions": {"width": 3600, "height": 2000},
              "effective_anchor_point": {"x": 120.0, "y": 80.0},
              "photosite_dimensions": {"width": 3840, "height": 2160},
              "physical_dimensions": {"width": 24.89, "height": 14.0},
              "anamorphic_squeeze": 1.3, "framing_decisions": [decision]}
    return {"uuid": "5463DBE4-EC30-4324-B8A1-67408AED40DB", "version": version, "fdl_creator": "seed",
            "default_framing_intent": "I",
            "framing_intents": [{"id": "I", "label": "2.39", "aspect_ratio": {"width": 239, "height": 100},
                                 "protection": 0.1}],
            "contexts": [{"label": "camera", "context_creator": "seed",
                          "clip_id": {"clip_name": "A001", "sequence": {"value": "A001_###.exr", "idx": "#",
                                                                        "min": 0, "max": 99}},
                          "canvases": [canvas]}],
            "canvas_templates": [{"id": "T", "target_dimensions": {"width": 1920, "height": 1080},
                                  "target_anamorphic_squeeze": 1.0, "fit_source": "framing_decision.dimensions",
                                  "fit_method": "fit_all", "round": {"even": "even", "mode": "up"}}],
            "_vendor": {"take": 3}}


LISTS = {
    "list-2.0": framing_list({"major": 2, "minor": 0}),
    "list-1.1": framing_list({"major": 1, "minor": 1}),
    # Refused: a framing wider than its protection and the canvas.
    "list-too-wide": framing_list({"major": 2, "minor": 0}, decision_width=5000.0),
}


def main():
    CORPUS.mkdir(exist_ok=True)
    for name, fdl in LISTS.items():
        with open(CORPUS / f"{name}.fdl", "w") as f:
            json.dump(fdl, f, indent=1)
    for name, doc in DOCUMENTS.items():
        for fmt, suffix in ((plistlib.FMT_XML, "xml"), (plistlib.FMT_BINARY, "binary")):
            with open(CORPUS / f"{name}-{suffix}.aspectratio", "wb") as f:
                plistlib.dump(doc, f, fmt=fmt, sort_keys=False)
    for example in sorted(EXAMPLES.glob("*.aspectratio")):
        shutil.copyfile(example, CORPUS / f"example-{example.name}")


if __name__ == "__main__":
    main()
