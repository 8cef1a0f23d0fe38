#!/usr/bin/env python3
"""Writes the property-list fixtures of the coder tests with Python's plistlib,
so that the tests read files made by a tool other than our own encoder.

Run from anywhere: python3 tests/data/plist/make_fixtures.py
"""
import copy
import pathlib
import plistlib

HERE = pathlib.Path(__file__).resolve().parent


def guide(uuid, width, height, color, weight, **extra):
    value = {"id": uuid, "width": width, "height": height, "color": color, "weight": weight}
    value.update(extra)
    return value


def rgba(red, green, blue, alpha):
    return {"red": red, "green": green, "blue": blue, "alpha": alpha}


def document():
    inner = guide("0F6A3C1E-5B7D-4E2A-9C41-7D2B8E6F1A30", 1, 1, rgba(0.0, 0.0, 1.0, 1.0), 1.5,
                  columnType={"divisor": {"_0": 3}}, clearParent=False)
    outer = guide("e621e1f8-c36c-495a-93fc-0c247a3e6e5f", 16.0, 9.0, rgba(1.0, 0.0, 0.0, 1.0), 2,
                  fillColor=rgba(1, 1, 1, 0.25), rowType={"pixels": {"_0": 50}}, children=[inner])
    plain = guide("8D1B3A4C-2E5F-4A6B-8C7D-9E0F1A2B3C4D", 4.0, 3.0, rgba(0.0, 0.5, 0.0, 1.0), 2.0)
    # Integers where reals are expected on purpose: they must decode as doubles.
    return {
        "size": {"width": 1920, "height": 1080.0, "margin": 24.5},
        "ratios": [outer, plain],
        "backgroundColor": rgba(0.1, 0.2, 0.3, 1.0),
    }


def write(name, value, fmt):
    (HERE / name).write_bytes(plistlib.dumps(value, fmt=fmt, sort_keys=False))


def main():
    xml, binary = plistlib.FMT_XML, plistlib.FMT_BINARY
    write("document-xml.plist", document(), xml)
    write("document-binary.plist", document(), binary)

    missing = copy.deepcopy(document())
    del missing["ratios"][0]["weight"]
    write("missing-weight-xml.plist", missing, xml)
    write("missing-weight-binary.plist", missing, binary)

    wrong = copy.deepcopy(document())
    wrong["ratios"][1]["width"] = "wide"
    write("wrong-type-xml.plist", wrong, xml)
    write("wrong-type-binary.plist", wrong, binary)

    bad_id = copy.deepcopy(document())
    bad_id["ratios"][0]["children"][0]["id"] = "not-a-uuid"
    write("bad-uuid-xml.plist", bad_id, xml)

    whole = plistlib.dumps(document(), fmt=binary, sort_keys=False)
    (HERE / "truncated-binary.plist").write_bytes(whole[: len(whole) // 2])
    (HERE / "not-a-plist.plist").write_bytes(b'{"size": {"width": 100}}\n')


if __name__ == "__main__":
    main()
