#!/usr/bin/env python3
"""Writes an overlay document as the equivalent plain SVG (rects and lines with
the same colours, widths and positions), so that other renderers can draw the
same picture for whole-process comparisons.

usage: overlay_to_svg.py INPUT.aspectratio OUTPUT.svg
"""
import plistlib
import sys


def rgba(c):
    r, g, b = (round(c[k] * 255) for k in ("red", "green", "blue"))
    return f"rgb({r},{g},{b})", c["alpha"]


def fitted(guide, width, height, margin):
    r = guide["width"] / guide["height"]
    aw, ah = width - 2 * margin, height - 2 * margin
    if r < aw / ah:
        return r * ah, ah
    return aw, aw / r


def offsets(grid, length):
    if not grid:
        return []
    (case, payload), = grid.items()
    if case == "none":
        return []
    n = payload["_0"]
    step = float(n) if case == "pixels" else length / n
    if step <= 0 or step >= length:
        return []
    return [step * i for i in range(1, int(length / step) + 1) if step * i < length]


def guide_svg(guide, box_w, box_h, margin, cx, cy, out):
    """A guide fitted into a box (the canvas less its margin at the top level,
    the parent's fitted box below it), centred on the canvas centre."""
    w, h = fitted(guide, box_w, box_h, margin)
    weight = guide["weight"]
    rw, rh = w - weight, h - weight
    x0, y0 = cx - rw / 2, cy - rh / 2
    stroke, stroke_a = rgba(guide["color"])
    fill, fill_a = rgba(guide.get("fillColor", CLEAR))
    out.append(f'<rect x="{x0}" y="{y0}" width="{rw}" height="{rh}" fill="{fill}" '
               f'fill-opacity="{fill_a}" stroke="{stroke}" stroke-opacity="{stroke_a}" '
               f'stroke-width="{weight}"/>')
    line = f'stroke="{stroke}" stroke-opacity="{stroke_a}" stroke-width="{weight}"'
    for o in offsets(guide.get("rowType"), rh):
        out.append(f'<line x1="{x0}" y1="{y0 + o}" x2="{x0 + rw}" y2="{y0 + o}" {line}/>')
    for o in offsets(guide.get("columnType"), rw):
        out.append(f'<line x1="{x0 + o}" y1="{y0}" x2="{x0 + o}" y2="{y0 + rh}" {line}/>')
    for child in guide.get("children", []):
        guide_svg(child, w, h, 0, cx, cy, out)


CLEAR = {"red": 0, "green": 0, "blue": 0, "alpha": 0}


def main(source, target):
    with open(source, "rb") as f:
        doc = plistlib.load(f)
    size = doc["size"]
    width, height, margin = size["width"], size["height"], size["margin"]
    fill, fill_a = rgba(doc.get("backgroundColor", CLEAR))
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}">',
           f'<rect x="0" y="0" width="{width}" height="{height}" fill="{fill}" '
           f'fill-opacity="{fill_a}"/>']
    for guide in doc["ratios"]:
        guide_svg(guide, width, height, margin, width / 2, height / 2, out)
    out.append("</svg>")
    with open(target, "w") as f:
        f.write("\n".join(out) + "\n")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
