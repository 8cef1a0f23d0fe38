"""Drives vantel-editor in a headless X server with keys, as a person would:
a new document at a missing path, Insert, a 2.39:1 guide in red, a 16:9
child with a 3 x 3 grid, Ctrl+S (checked through `vantel info --json`),
the tree's rows after a guide moved,
Ctrl+E (the same bytes as `vantel render`), Delete and Ctrl+Z, a change on
disk, and the prompt before closing with unsaved changes. Then documents
that cannot be drawn or read: their problems as `vantel validate` words
them, and Ctrl+S leaving the file as it was.

usage: editor_window_test.py VANTEL_EDITOR VANTEL   (run under xvfb-run)
"""
import json, os, plistlib, shutil, struct, subprocess, sys, tempfile, time

editor, vantel = sys.argv[1], sys.argv[2]
os.environ["GSETTINGS_BACKEND"] = "memory"  # the file chooser's settings stay in the process


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


def keys(window, *names):
    for name in names:
        xdotool("key", "--window", window, name)
        time.sleep(0.15)


def typed(window, text):
    keys(window, "ctrl+l")
    xdotool("type", "--window", window, text)
    keys(window, "Return")


def info(path):
    return json.loads(subprocess.run([vantel, "info", "--json", path], capture_output=True, check=True).stdout)


def share_of(window, looks):
    """Share of the window's pixels (on a 4-pixel grid) whose (r, g, b) `looks` right."""
    dump = subprocess.run(["xwd", "-silent", "-id", window], capture_output=True).stdout
    if len(dump) < 100:
        return 0  # not mapped yet
    header = struct.unpack(">25I", dump[:100])
    start, line, width, height = header[0] + header[19] * 12, header[12], header[4], header[5]
    near = total = 0
    for y in range(0, height, 4):
        for x in range(0, width, 4):
            at = start + y * line + x * 4
            total += 1
            near += looks(dump[at + 2], dump[at + 1], dump[at])
    return near / total


def black(r, g, b):
    return r < 16 and g < 16 and b < 16


def problem_bar(r, g, b):
    return r > 90 and g < 40 and b < 40


def start(path, shown, share=0.1):
    """The editor on `path`, once its window shows what `shown` tells (keys
    sent before the first frame may be lost)."""
    process = subprocess.Popen([editor, path], stderr=subprocess.PIPE, text=True)
    name = os.path.basename(path)
    window = wait_for(f"the window of {name}",
                      lambda: xdotool("search", "--all", "--pid", str(process.pid), "--name", f"^\\*?{name} "), 10).split()[0]
    wait_for(f"the first picture of {name}", lambda: share_of(window, shown) > share, 10)
    return process, window


def title_says(window, saved):
    return lambda: xdotool("getwindowname", window).startswith("*") != saved


def design(folder):
    path = os.path.join(folder, "frames.aspectratio")
    process, window = start(path, black)
    try:
        keys(window, "Insert")
        typed(window, "2.39:1 color=red")
        keys(window, "ctrl+Insert")
        typed(window, "16:9 grid=3x3")
        wait_for("the unsaved mark", title_says(window, False), 10)
        keys(window, "ctrl+s")
        wait_for("the saved title", title_says(window, True), 10)
        guides = info(path)["guides"]
        assert len(guides) == 1, guides
        outer = guides[0]
        assert (outer["ratioWidth"], outer["ratioHeight"], outer["outline"]["hex"], outer["outline"]["alpha"]) == \
            (2.39, 1.0, "#FF0000", 1.0), outer
        assert len(outer["children"]) == 1, outer
        inner = outer["children"][0]
        assert (inner["ratioWidth"], inner["ratioHeight"], inner["rows"], inner["columns"]) == \
            (16.0, 9.0, {"parts": 3}, {"parts": 3}), inner
        assert "children" not in inner or not inner["children"], inner

        keys(window, "Delete", "ctrl+s")
        wait_for("the removal saved", lambda: info(path)["guides"][0]["children"] == [], 10)
        keys(window, "ctrl+z", "ctrl+s")
        wait_for("the undone removal saved", lambda: info(path)["guides"][0]["children"] == [inner], 10)
        designed = os.path.join(folder, "designed.aspectratio")
        shutil.copy(path, designed)

        changed_on_disk(path, window)

        keys(window, "Insert", "ctrl+w")
        wait_for("the prompt before closing", lambda: xdotool("search", "--name", "^Unsaved Changes$"), 20)
        assert process.poll() is None and xdotool("search", "--name", "frames.aspectratio"), "the window closed"
    finally:
        process.kill()
    return designed


# The tree keeps its rows through an edit and moves them: Up after Alt+Down
# selects the row now above the moved guide, the child of the guide it
# passed, and the words typed then change that child.
def tree_follows_moves(folder):
    path = os.path.join(folder, "moves.aspectratio")
    subprocess.run([vantel, "new", "-o", path, "--guide", "16:9 noclear", "--guide", "4:3 noclear",
                    "--guide", "1:1 noclear in=2", "--guide", "2.39:1 noclear"], check=True, capture_output=True)
    process, window = start(path, black)
    try:
        keys(window, "alt+Down", "Up")
        typed(window, "weight=7")
        wait_for("the unsaved mark", title_says(window, False), 10)
        keys(window, "ctrl+s")
        wait_for("the saved title", title_says(window, True), 10)
        guides = info(path)["guides"]
        assert [g["ratioWidth"] for g in guides] == [4.0, 16.0, 2.39], guides
        assert [g["weight"] for g in guides[0]["children"]] + [g["weight"] for g in guides] == \
            [7.0, 2.0, 2.0, 2.0], guides
    finally:
        process.kill()


# A document read as a binary property list is saved as one.
def keeps_binary(designed):
    path = designed.replace("designed", "binary")
    with open(designed, "rb") as xml, open(path, "wb") as binary:
        plistlib.dump(plistlib.load(xml), binary, fmt=plistlib.FMT_BINARY)
    process, window = start(path, black)
    try:
        keys(window, "Insert", "ctrl+s")
        wait_for("the binary save", lambda: len(info(path)["guides"]) == 2, 10)
    finally:
        process.kill()
    with open(path, "rb") as saved:
        assert saved.read(6) == b"bplist", "a binary document was saved as XML"


# With unsaved edits, a change on disk is not taken without asking.
def asks_before_reload(designed):
    path = designed.replace("designed", "edited")
    shutil.copy(designed, path)
    process, window = start(path, black)
    try:
        keys(window, "Insert")
        wait_for("the unsaved mark", title_says(window, False), 10)
        with open(path, "rb") as saved:
            contents = plistlib.load(saved)
        contents["ratios"] = []
        with open(path, "wb") as out:
            plistlib.dump(contents, out)
        wait_for("the question about the change on disk", lambda: xdotool("search", "--name", "^Changed on Disk$"), 20)
        assert xdotool("getwindowname", window).startswith("*"), "the unsaved edits went"
    finally:
        process.kill()


# The export from a window opened on the designed document.
def exports_as_render(path):
    process, window = start(path, black)
    try:
        keys(window, "ctrl+e")
        chooser = wait_for("the export dialog", lambda: xdotool("search", "--name", "^Export Picture$"), 20).split()[0]
        exported = path[:-len(".aspectratio")] + ".png"

        def accepted():  # the chooser may not take keys before its first frame
            keys(chooser, "Return")  # the document's own name and folder, as PNG
            return os.path.exists(exported) or time.sleep(0.5) or os.path.exists(exported)

        wait_for("the exported PNG", accepted, 20)
        rendered = path + ".rendered.png"
        subprocess.run([vantel, "render", path, "-o", rendered], check=True)
        with open(exported, "rb") as one, open(rendered, "rb") as other:
            assert one.read() == other.read(), "the export differs from vantel render's PNG"
    finally:
        process.kill()


# With no unsaved edits the editor reloads a file written by someone else.
def changed_on_disk(path, window):
    with open(path, "rb") as saved:
        contents = plistlib.load(saved)
    contents["ratios"] = []
    contents["backgroundColor"] = {"red": 0.0, "green": 0.0, "blue": 1.0, "alpha": 1.0}
    with open(path + ".new", "wb") as out:
        plistlib.dump(contents, out)
    os.replace(path + ".new", path)
    wait_for("the picture of the file changed on disk", lambda: share_of(window, lambda r, g, b: b > 200 and r < 40 and g < 40) > 0.2, 20)
    assert xdotool("getwindowname", window).startswith("frames"), "a reload is no unsaved change"


def refuses(folder, name, contents, still_shows=None):
    path = os.path.join(folder, name)
    with open(path, "wb") as out:
        out.write(contents)
    checked = subprocess.run([vantel, "validate", path], capture_output=True, text=True)
    process, window = start(path, problem_bar, 0.005)
    try:
        if still_shows:
            wait_for(f"the drawable part of {name}", lambda: share_of(window, still_shows) > 0.005, 10)
        keys(window, "ctrl+s")
        time.sleep(0.5)
        assert process.poll() is None, f"the editor ended on {name}"
    finally:
        process.kill()
    shown = process.stderr.read().splitlines()
    expected = checked.stderr.splitlines()
    assert expected and shown[:len(expected)] == expected, f"{name}: shown {shown}, validate says {expected}"
    assert any("not saved" in line for line in shown[len(expected):]), f"{name}: Ctrl+S said nothing"
    with open(path, "rb") as kept:
        assert kept.read() == contents, f"Ctrl+S changed {name}"


def bad_documents(folder):
    guide = {"id": "9B0A6A5E-3F1C-4E8A-9D8C-2A1B3C4D5E6F", "width": 16.0, "height": 0.0, "weight": 2.0,
             "color": {"red": 1.0, "green": 0.0, "blue": 0.0, "alpha": 1.0}}
    drawable = dict(guide, id="1C2D3E4F-5A6B-4C7D-8E9F-0A1B2C3D4E5F", height=9.0, weight=30.0,
                    color={"red": 0.0, "green": 1.0, "blue": 0.0, "alpha": 1.0})
    undrawable = {"size": {"width": 1920.0, "height": 1080.0, "margin": 0.0}, "ratios": [guide, drawable]}
    green = lambda r, g, b: g > 200 and r < 40 and b < 40  # noqa: E731
    refuses(folder, "undrawable.aspectratio", plistlib.dumps(undrawable), green)
    refuses(folder, "unreadable.aspectratio", b"<plist><dict><key>size</key>")


folder = tempfile.mkdtemp()
try:
    designed = design(folder)
    tree_follows_moves(folder)
    keeps_binary(designed)
    asks_before_reload(designed)
    exports_as_render(designed)
    bad_documents(folder)
finally:
    shutil.rmtree(folder)
print("ok")
