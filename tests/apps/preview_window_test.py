"""Drives vantel-preview in a headless X server: the first picture, a save
with a new background, a broken save, Right to the next document, then `1`
(100 %, scrollable) and `0` (fit), Ctrl+C (a PNG on the clipboard), a
resize, and Right on to a framing decision list beside them; then a named pipe whose writer is slow, which must not hold up the
window. Pictures are compared with what `vantel render` draws at the same
size.

usage: preview_window_test.py VANTEL_PREVIEW VANTEL SOURCE_DIR   (run under xvfb-run)
"""
import os, plistlib, shutil, struct, subprocess, sys, tempfile, time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import pngcheck  # noqa: E402  (reads PNG files with zlib alone)

preview, vantel, source = sys.argv[1], sys.argv[2], sys.argv[3]


def xdotool(*args):
    return subprocess.run(["xdotool", *args], capture_output=True, text=True).stdout.strip()


# Deadlines only end a failing run, so they are set for a loaded two-core
# machine running the sanitizer build, several times what a quiet one needs.
PATIENCE = 4


def wait_for(what, check, seconds):
    seconds *= PATIENCE
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


def screenshot(window):
    """(width, height, rgb(x, y)) of the whole window, from one xwd dump."""
    dump = subprocess.run(["xwd", "-silent", "-id", window], capture_output=True).stdout
    header = struct.unpack(">25I", dump[:100])
    start, line, width, height = header[0] + header[19] * 12, header[12], header[4], header[5]

    def rgb(x, y):
        at = start + y * line + x * 4
        return dump[at + 2], dump[at + 1], dump[at]

    return width, height, rgb


def mismatch(shot, reference, left, top, right_edge=0, bottom_edge=0):
    """Share of the reference's opaque pixels (on a 5-pixel grid) that the
    window, with the reference's corner at (left, top), shows in another
    colour. Edges of the window that scroll bars may cover are left out."""
    width, height, rgb = shot
    compared = differing = 0
    for y in range(0, reference.height, 5):
        for x in range(0, reference.width, 5):
            wx, wy = x + left, y + top
            if not (0 <= wx < width - right_edge and 0 <= wy < height - bottom_edge):
                continue
            expected = reference.rgba(x, y)
            if expected[3] != 255:
                continue  # not opaque: the window's checkerboard shows through
            compared += 1
            differing += any(abs(a - b) > 48 for a, b in zip(rgb(wx, wy), expected))
    assert compared > 1000, f"only {compared} pixels to compare"
    return differing / compared


def render(path, *size):
    out = path + "." + "x".join(size or ("full",)) + ".png"
    subprocess.run([vantel, "render", path, "-o", out, *(("--width", size[0]) if size else ())], check=True)
    return pngcheck.Image(out)


def document(path, red, green, blue):
    with open(os.path.join(source, "examples/sample.aspectratio"), "rb") as sample:
        contents = plistlib.load(sample)
    contents["backgroundColor"] = {"red": red / 255, "green": green / 255, "blue": blue / 255, "alpha": 1.0}
    with open(path + ".new", "wb") as out:
        plistlib.dump(contents, out)
    os.replace(path + ".new", path)  # as editors that save by rename do


def close(colour, expected):
    return all(abs(a - b) <= 3 for a, b in zip(colour, expected))


def shows(window, reference, left=0, top=0, edges=0):
    return mismatch(screenshot(window), reference, left, top, edges, edges) < 0.02


def check_fit_and_actual_size(window, fitted, actual):
    wait_for("the fitted picture", lambda: shows(window, fitted), 10)
    _, _, rgb = screenshot(window)
    holes = [(x, y) for y in range(0, 576, 7) for x in range(0, 1024, 7) if fitted.rgba(x, y)[3] == 0]
    checkered = sum(close(rgb(x, y), (204, 204, 204)) or close(rgb(x, y), (153, 153, 153)) for x, y in holes)
    assert holes and checkered > 0.9 * len(holes), f"{checkered} of {len(holes)} cleared pixels show the checkerboard"
    assert mismatch(screenshot(window), actual, 0, 0) > 0.2, "the comparison cannot tell fit from 100 %"

    xdotool("key", "--window", window, "1")
    wait_for("`1` shows the canvas at 100 %", lambda: shows(window, actual, edges=16), 10)
    xdotool("mousemove", "--window", window, "500", "300")
    xdotool("click", "--repeat", "4", "5")  # the wheel, downwards

    def scrolled_down():
        # One column of the window against the same column of the canvas
        # moved up by dy, on the canvas's opaque pixels (its guide lines
        # there): a line out of place differs in several rows.
        _, _, rgb = screenshot(window)
        column = [rgb(300, y) for y in range(560)]
        canvas = [actual.rgba(300, y) for y in range(1080)]

        def differing(dy):
            return sum(canvas[y + dy][3] == 255 and any(abs(a - b) > 48 for a, b in zip(column[y], canvas[y + dy]))
                       for y in range(560))
        return any(differing(dy) <= 2 for dy in range(1, 1080 - 560))
    wait_for("the wheel scrolls the picture at 100 %", scrolled_down, 10)
    xdotool("key", "--window", window, "0")
    wait_for("`0` fits the picture again", lambda: shows(window, fitted), 10)


def check_copy(window, path):
    xdotool("key", "--window", window, "ctrl+c")
    copied = path + ".copied.png"

    def clipboard_png():
        with open(copied, "wb") as out:
            return subprocess.run(["xclip", "-selection", "clipboard", "-t", "image/png", "-o"], stdout=out,
                                  stderr=subprocess.DEVNULL, timeout=5).returncode == 0
    wait_for("Ctrl+C puts a PNG on the clipboard", clipboard_png, 10)
    with open(path, "rb") as f:
        problems = pngcheck.check(pngcheck.Image(copied), plistlib.load(f), 1920)
    assert not problems, f"the copied PNG: {problems}"


def check_resize(window, path):
    xdotool("windowsize", window, "700", "700")
    resized = render(path, "700")  # 700 x 394, centred: from y = 153
    wait_for("the picture follows a resize", lambda: shows(window, resized, 0, 153), 10)
    _, _, rgb = screenshot(window)
    assert not close(rgb(350, 60), (30, 30, 200)), "the picture is not centred after the resize"


def check_slow_pipe(folder):
    """The window comes up while the document still trickles in through a
    pipe (a space at a time, where XML allows it), then shows it."""
    pipe = os.path.join(folder, "piped.aspectratio")
    os.mkfifo(pipe)
    with open(os.path.join(source, "examples/sample.aspectratio"), "rb") as sample:
        declaration, rest = sample.read().split(b"?>", 1)
    viewer = subprocess.Popen([preview, pipe])
    try:
        writer = os.open(pipe, os.O_WRONLY)
        os.write(writer, declaration + b"?>")
        trickle = lambda: os.write(writer, b" ") and xdotool("search", "--name", "piped.aspectratio")
        window = wait_for("the window appears while the pipe is still open", trickle, 10).split()[0]
        os.write(writer, rest)
        os.close(writer)
        wait_for("the piped document", lambda: "1920" in xdotool("getwindowname", window), 10)
    finally:
        viewer.kill()


folder = tempfile.mkdtemp()
first, second = os.path.join(folder, "a.aspectratio"), os.path.join(folder, "b.aspectratio")
document(first, 200, 30, 30)
document(second, 30, 30, 200)
shutil.copy(os.path.join(source, "tests/data/fdl/A_4448x3096_1-3x_FramingChart.fdl"), os.path.join(folder, "c.fdl"))
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
    check_fit_and_actual_size(window, render(second, "1024"), render(second))
    check_copy(window, second)
    check_resize(window, second)
    xdotool("key", "--window", window, "Right")
    wait_for("the list's title", lambda: "c.fdl" in xdotool("getwindowname", window), 3)
    xdotool("key", "--window", window, "Escape")
    wait_for("Escape closes the window", lambda: process.poll() is not None, 3)
    check_slow_pipe(folder)
finally:
    if process.poll() is None:
        process.kill()
    shutil.rmtree(folder)
print("ok")
