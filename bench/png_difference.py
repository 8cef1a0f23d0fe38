#!/usr/bin/env python3
"""Compares two PNG pictures of the same size pixel by pixel: the mean absolute
difference over all RGBA samples (0...255), and the share of pixels where some
sample differs by more than a threshold. Only the standard library: 8-bit RGB
or RGBA, not interlaced (what cairo, librsvg and vantel write).

usage: png_difference.py A.png B.png [THRESHOLD]   (THRESHOLD defaults to 32)
"""
import struct
import sys
import zlib


def chunks(data):
    at = 8
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        yield kind, data[at + 8:at + 8 + size]
        at += 12 + size


def paeth(a, b, c):
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    if pa <= pb and pa <= pc:
        return a
    return b if pb <= pc else c


def unfilter(kind, row, prior, bpp):
    if kind == 0:
        return row
    if kind == 2:
        return bytearray((x + y) & 255 for x, y in zip(row, prior))
    out = bytearray(row)
    for i in range(len(out)):
        left = out[i - bpp] if i >= bpp else 0
        if kind == 1:
            out[i] = (out[i] + left) & 255
        elif kind == 3:
            out[i] = (out[i] + ((left + prior[i]) >> 1)) & 255
        else:
            upper_left = prior[i - bpp] if i >= bpp else 0
            out[i] = (out[i] + paeth(left, prior[i], upper_left)) & 255
    return out


def read_rgba(path):
    """(width, height, RGBA bytes)."""
    with open(path, "rb") as f:
        data = f.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        sys.exit(f"{path}: not a PNG file")
    parts = dict(IDAT=bytearray())
    for kind, body in chunks(data):
        if kind == b"IHDR":
            width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", body)
            if depth != 8 or colour not in (2, 6) or interlace:
                sys.exit(f"{path}: only 8-bit RGB or RGBA, not interlaced")
        elif kind == b"IDAT":
            parts["IDAT"] += body
    raw = zlib.decompress(bytes(parts["IDAT"]))
    bpp = 4 if colour == 6 else 3
    stride = width * bpp
    prior = bytearray(stride)
    pixels = bytearray()
    for y in range(height):
        at = y * (stride + 1)
        prior = unfilter(raw[at], raw[at + 1:at + 1 + stride], prior, bpp)
        pixels += prior
    if bpp == 3:
        rgba = bytearray(width * height * 4)
        for channel in range(3):
            rgba[channel::4] = pixels[channel::3]
        rgba[3::4] = b"\xff" * (width * height)
        pixels = rgba
    return width, height, pixels


def main(first, second, threshold=32):
    wa, ha, a = read_rgba(first)
    wb, hb, b = read_rgba(second)
    if (wa, ha) != (wb, hb):
        sys.exit(f"sizes differ: {wa}x{ha} and {wb}x{hb}")
    total = 0
    differing = 0
    for i in range(0, len(a), 4):
        d = [abs(a[i + k] - b[i + k]) for k in range(4)]
        total += sum(d)
        differing += max(d) > threshold
    print(f"mean absolute difference {total / len(a):.3f} of 255; "
          f"{100 * differing / (wa * ha):.3f}% of pixels differ by more than {threshold}")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], *(int(t) for t in sys.argv[3:4]))
