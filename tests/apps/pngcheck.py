#!/usr/bin/python3
"""Checks that a thumbnail is a whole PNG of the fitted size that shows its document.

    pngcheck.py IMAGE --document DOC --size N [--text KEY=VALUE ...]

Reads the PNG with zlib only (no imaging library), so it judges the bytes a
file browser would get. The document is read with plistlib for its canvas,
background and guides; the checks are:
  - the file is a complete PNG: signature, chunk CRCs, IHDR first, IEND last,
    image data that inflates to exactly the rows IHDR promises;
  - the larger side is N and the other keeps the canvas aspect (within a pixel);
  - pixels in the margin band at each side show the background colour;
  - inside the margin, the guides change at least 5% of the pixels;
  - every guide stroke at least two pixels wide appears in its colour.
Exits 0 when all hold; otherwise prints one line per failure and exits 1.
"""
import argparse
import math
import plistlib
import struct
import sys
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
CHANNELS = {0: 1, 2: 3, 4: 2, 6: 4}  # colour type -> samples per pixel (8-bit only)


class NotPNG(Exception):
    pass


def read_chunks(data):
    if not data.startswith(SIGNATURE):
        raise NotPNG("no PNG signature")
    chunks, offset = [], len(SIGNATURE)
    while offset < len(data):
        if offset + 12 > len(data):
            raise NotPNG(f"truncated chunk header at byte {offset}")
        length, kind = struct.unpack(">I4s", data[offset:offset + 8])
        body = data[offset + 8:offset + 8 + length]
        crc_bytes = data[offset + 8 + length:offset + 12 + length]
        if len(body) != length or len(crc_bytes) != 4:
            raise NotPNG(f"truncated {kind!r} chunk")
        if zlib.crc32(kind + body) & 0xFFFFFFFF != struct.unpack(">I", crc_bytes)[0]:
            raise NotPNG(f"bad CRC in {kind!r} chunk")
        chunks.append((kind, body))
        offset += 12 + length
        if kind == b"IEND":
            break
    if not chunks or chunks[0][0] != b"IHDR":
        raise NotPNG("first chunk is not IHDR")
    if chunks[-1][0] != b"IEND":
        raise NotPNG("no IEND chunk")
    if offset != len(data):
        raise NotPNG(f"{len(data) - offset} bytes after IEND")
    return chunks


def paeth(a, b, c):
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    if pa <= pb and pa <= pc:
        return a
    return b if pb <= pc else c


def unfilter(raw, width, height, bpp):
    stride = width * bpp
    if len(raw) != height * (stride + 1):
        raise NotPNG(f"image data holds {len(raw)} bytes, expected {height * (stride + 1)}")
    rows, previous = [], bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        kind, line = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for i in range(stride):
            left = line[i - bpp] if i >= bpp else 0
            up = previous[i]
            upleft = previous[i - bpp] if i >= bpp else 0
            if kind == 1:
                line[i] = (line[i] + left) & 0xFF
            elif kind == 2:
                line[i] = (line[i] + up) & 0xFF
            elif kind == 3:
                line[i] = (line[i] + (left + up) // 2) & 0xFF
            elif kind == 4:
                line[i] = (line[i] + paeth(left, up, upleft)) & 0xFF
            elif kind != 0:
                raise NotPNG(f"unknown filter {kind} in row {y}")
        rows.append(line)
        previous = line
    return rows


class Image:
    def __init__(self, path):
        with open(path, "rb") as f:
            chunks = read_chunks(f.read())
        width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", chunks[0][1])
        if depth != 8 or colour not in CHANNELS or interlace != 0:
            raise NotPNG(f"unsupported layout: depth {depth}, colour type {colour}, interlace {interlace}")
        self.width, self.height, self.channels = width, height, CHANNELS[colour]
        self.text = dict(body.split(b"\0", 1) for kind, body in chunks if kind == b"tEXt")
        compressed = b"".join(body for kind, body in chunks if kind == b"IDAT")
        try:
            raw = zlib.decompress(compressed)
        except zlib.error as error:
            raise NotPNG(f"image data does not inflate: {error}")
        self.rows = unfilter(raw, width, height, self.channels)

    def rgba(self, x, y):
        s = self.rows[y][x * self.channels:(x + 1) * self.channels]
        if self.channels == 1:
            return (s[0], s[0], s[0], 255)
        if self.channels == 2:
            return (s[0], s[0], s[0], s[1])
        return tuple(s) + ((255,) if self.channels == 3 else ())

    def pixels(self):
        for y in range(self.height):
            for x in range(self.width):
                yield self.rgba(x, y)


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


def check(image, document, size):
    failures = []
    canvas = document["size"]
    width, height, margin = canvas["width"], canvas["height"], canvas["margin"]
    longer = max(width, height)
    expected = (size * width / longer, size * height / longer)
    if max(image.width, image.height) != size or \
            abs(image.width - expected[0]) > 1 or abs(image.height - expected[1]) > 1:
        failures.append(f"image is {image.width}x{image.height}, expected the canvas "
                        f"{width:g}x{height:g} fitted into {size} ({expected[0]:.1f}x{expected[1]:.1f})")
        return failures

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
        document = plistlib.load(f)
    failures = check(image, document, args.size)
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
