#!/usr/bin/python3
"""Checks that a file is an image of a given format and pixel size, from its own bytes.

    imagecheck.py FILE FORMAT WIDTH HEIGHT

FORMAT is png, tiff, bmp, gif, jpeg, jpeg2000, pdf or svg. The check reads the
signature and the header fields that give the size (a PDF: its header, a page
whose MediaBox is exactly WIDTH x HEIGHT points, and its end-of-file marker;
an SVG: the width and height of its root). Prints
one line and exits 1 when the file does not match.
"""
import re
import struct
import sys


def png(data):
    if not data.startswith(b"\x89PNG\r\n\x1a\n") or data[12:16] != b"IHDR":
        raise ValueError("no PNG signature and IHDR")
    if not data.endswith(b"IEND\xaeB`\x82"):
        raise ValueError("no IEND at the end")
    return struct.unpack(">II", data[16:24])


def tiff(data):
    order = {b"II*\x00": "<", b"MM\x00*": ">"}.get(data[:4])
    if order is None:
        raise ValueError("no TIFF signature")
    (ifd,) = struct.unpack(order + "I", data[4:8])
    (count,) = struct.unpack(order + "H", data[ifd:ifd + 2])
    tags = {}
    for i in range(count):
        tag, kind, _, value = struct.unpack(order + "HHI4s", data[ifd + 2 + 12 * i:ifd + 14 + 12 * i])
        tags[tag] = struct.unpack(order + ("H" if kind == 3 else "I"), value[:2 if kind == 3 else 4])[0]
    return tags[256], tags[257]


def bmp(data):
    if data[:2] != b"BM" or struct.unpack("<I", data[2:6])[0] != len(data):
        raise ValueError("no BMP signature or a wrong file size in the header")
    width, height = struct.unpack("<ii", data[18:26])
    return width, abs(height)


def gif(data):
    if data[:6] not in (b"GIF87a", b"GIF89a") or not data.endswith(b";"):
        raise ValueError("no GIF signature or trailer")
    return struct.unpack("<HH", data[6:10])


def jpeg(data):
    if not data.startswith(b"\xff\xd8\xff") or not data.endswith(b"\xff\xd9"):
        raise ValueError("no JPEG start and end markers")
    offset = 2
    while offset < len(data):
        marker, length = data[offset + 1], struct.unpack(">H", data[offset + 2:offset + 4])[0]
        if 0xC0 <= marker <= 0xC3:
            height, width = struct.unpack(">HH", data[offset + 5:offset + 9])
            return width, height
        offset += 2 + length
    raise ValueError("no frame header")


def jpeg2000(data):
    if not data.startswith(b"\x00\x00\x00\x0cjP  \r\n\x87\n"):
        raise ValueError("no JPEG 2000 (JP2) signature box")
    at = data.find(b"ihdr")
    if at < 0:
        raise ValueError("no image header box")
    height, width = struct.unpack(">II", data[at + 4:at + 12])
    return width, height


def pdf(data):
    if not data.startswith(b"%PDF-") or b"%%EOF" not in data[-32:]:
        raise ValueError("no PDF header or end-of-file marker")
    box = re.search(rb"/MediaBox\s*\[\s*([-\d.]+)\s+([-\d.]+)\s+([-\d.]+)\s+([-\d.]+)\s*\]", data)
    if box is None:
        raise ValueError("no page MediaBox")
    x0, y0, x1, y1 = (float(v) for v in box.groups())
    return x1 - x0, y1 - y0


def svg(data):
    root = re.search(rb'<svg\b[^>]*\bwidth="([^"]+)"[^>]*\bheight="([^"]+)"', data)
    if root is None:
        raise ValueError("no svg root with a width and height")
    return float(root.group(1)), float(root.group(2))


def main():
    path, kind, width, height = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
    with open(path, "rb") as f:
        data = f.read()
    try:
        size = globals()[kind](data)
    except (ValueError, KeyError, IndexError, struct.error) as error:
        print(f"{path}: not a whole {kind} file: {error or type(error).__name__}")
        return 1
    if tuple(size) != (width, height):
        print(f"{path}: {kind} of {size[0]}x{size[1]}, expected {width}x{height}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
