"""Drives vantel-preview in a headless X server: the first picture, a save
with a new background, a broken save, and Right to the next document.

usage: preview_window_test.py VANTEL_PREVIEW SOURCE_DIR   (run under xvfb-run)
"""
import os, plistlib, shutil, struct, subprocess, sys, tempfile, time

preview, source = sys.argv[1], sys.argv[2]


def xdotool(*args):
    return subprocess.run(["xdotool", *args], capture_output=True, text=True).stdout.strip()


def wait_for(what, check, seconds):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        result = check()
        if result:
            return result
        time.sleep(0.05)
    sys.exit(f"FAIL: {what} within {seconds} s")


def pixel(window, x, y):
    """RGB of one pixel of the window, from an xwd dump (32-bit ZPixmap)."""
    dump = subprocess.run(["xwd", "-silent", "-id", window], capture_output=True).stdout
    header = struct.unpack(">25I", dump[:100])
    header_size, byte_order, bits, line, colours = header[0], header[7], header[11], header[12], header[19]
    assert bits == 32, f"xwd gave {bits} bits per pixel"
    at = header_size + colours * 12 + y * line + x * 4
    b, g, r = dump[at:at + 3] if byte_order == 0 else dump[at + 3:at:-1]
    return r, g, b


def document(path, red, green, blue):
    with open(os.path.join(source, "examples/sample.aspectratio"), "rb") as sample:
        contents = plistlib.load(sample)
    contents["backgroundColor"] = {"red": red / 255, "green": green / 255, "blue": blue / 255, "alpha": 1.0}
    with open(path + ".new", "wb") as out:
        plistlib.dump(contents, out)
    os.replace(path + ".new", path)  # as editors that save by rename do


def close(colour, expected):
    return all(abs(a - b) <= 3 for a, b in zip(colour, expected))


folder = tempfile.mkdtemp()
first, second = os.path.join(folder, "a.aspectratio"), os.path.join(folder, "b.aspectratio")
document(first, 200, 30, 30)
document(second, 30, 30, 200)
process = subprocess.Popen([preview, first])
try:
    window = wait_for("the window appears", lambda: xdotool("search", "--name", "a.aspectratio"), 10).split()[0]
    title = xdotool("getwindowname", window)
    assert "1920" in title and "1080" in title, f"title {title!r} lacks the canvas size"
    # The margin corner shows the background; the page fills the window's width.
    wait_for("the first picture", lambda: close(pixel(window, 6, 6), (200, 30, 30)), 5)

    document(first, 30, 200, 30)
    wait_for("the redraw after a save", lambda: close(pixel(window, 6, 6), (30, 200, 30)), 1)

    with open(first, "w") as broken:
        broken.write("<plist><dict><key>size</key>")
    time.sleep(0.6)
    assert process.poll() is None, "the window closed on a broken document"
    assert close(pixel(window, 6, 6), (30, 200, 30)), "the last good picture went away"
    height = int(xdotool("getwindowgeometry", "--shell", window).split("HEIGHT=")[1].split()[0])
    red, green, _ = pixel(window, 2, height - 2)
    assert red > 90 and green < 40, f"no error bar at the bottom: {(red, green)}"

    xdotool("windowactivate", "--sync", window)
    xdotool("key", "--window", window, "Right")
    wait_for("the next document's title", lambda: "b.aspectratio" in xdotool("getwindowname", window), 3)
    xdotool("key", "--window", window, "Escape")
    wait_for("Escape closes the window", lambda: process.poll() is not None, 3)
finally:
    if process.poll() is None:
        process.kill()
    shutil.rmtree(folder)
print("ok")
