"""Times vantel-editor from the lines it prints with VANTEL_EDITOR_TIMING:
exec to the end of the first frame with the picture (the parent adds the
exec-to-main part), and edits of a 3840 x 2160 document of 50 guides, each
from the document's change announcement to the end of the frame after it.

usage: editor_frames.py VANTEL_EDITOR VANTEL RUNS   (with DISPLAY set; see editor_frames.sh)
"""
import os, statistics, subprocess, sys, tempfile, threading, time

editor, vantel, runs = sys.argv[1], sys.argv[2], int(sys.argv[3])
sample = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "sample.aspectratio")
PREFIX = "vantel-editor: timing:"


def start(document):
    env = dict(os.environ, VANTEL_EDITOR_TIMING="1", GSETTINGS_BACKEND="memory")
    return time.monotonic(), subprocess.Popen([editor, document], env=env, stderr=subprocess.PIPE, text=True)


def first_frame(started, process):
    """(wall ms from exec, processor ms) at the first frame with the picture."""
    for line in process.stderr:
        words = line.split()
        if line.startswith(PREFIX) and words[2] == "first-frame":
            program_ms, cpu = float(words[3]), float(words[5])
            total = (time.monotonic() - started) * 1000
            return total, cpu  # the program's own ms plus exec-to-main is the parent's wall time
    sys.exit("vantel-editor ended before its first frame")


def open_times():
    samples = []
    for _ in range(runs):
        started, process = start(sample)
        samples.append(first_frame(started, process))
        process.kill()
        process.wait()
    wall, cpu = [s[0] for s in samples], [s[1] for s in samples]
    print(f"open 1920x1080 sample, {runs} runs: first frame {statistics.median(wall):.0f} ms after exec"
          f" (min {min(wall):.0f}), processor {statistics.median(cpu):.0f} ms (median)")


def fifty_guides(folder):
    path = os.path.join(folder, "fifty.aspectratio")
    ratios = ["16:9", "2.39:1", "1.85:1", "4:3", "1:1"]
    expressions = []
    for top in range(10):
        expressions.append(f"{ratios[top % 5]} weight=4 grid=3x3")
        for child in range(4):
            expressions.append(f"{ratios[(top + child + 1) % 5]} weight=2 noclear in={top * 5 + 1}")
    arguments = [vantel, "new", "-o", path]
    for expression in expressions:
        arguments += ["--guide", expression]
    subprocess.run(arguments, check=True, capture_output=True)
    with open(path, "rb") as written:
        data = written.read()
    subprocess.run([sys.executable, "-c", f"""
import plistlib
d = plistlib.loads({data!r})
d["size"] = {{"width": 3840.0, "height": 2160.0, "margin": 40.0}}
open({path!r}, "wb").write(plistlib.dumps(d))"""], check=True)
    return path


def edit_times(folder):
    started, process = start(fifty_guides(folder))
    first_frame(started, process)
    events = []

    def read():
        for line in process.stderr:
            words = line.split()
            if line.startswith(PREFIX) and words[2] == "edit-announced":
                events.append(("edit", float(words[3]), float(words[5])))
            elif line.startswith(PREFIX) and words[2] == "refreshed":
                events.append(("refreshed", float(words[3]), float(words[5])))
            elif line.startswith(PREFIX) and words[2] == "frame":
                events.append(("frame", float(words[8]), float(words[4]), float(words[6])))

    threading.Thread(target=read, daemon=True).start()
    window = subprocess.run(["xdotool", "search", "--all", "--pid", str(process.pid), "--name", "fifty"],
                            capture_output=True, text=True).stdout.split()[0]
    for step in range(20):  # the first guide down and up again: the drawing order changes each time
        subprocess.run(["xdotool", "key", "--window", window, "alt+Down" if step % 2 == 0 else "alt+Up"])
        time.sleep(0.3)
    process.kill()
    latencies, refreshes, refresh_cpus, paints, cpus = [], [], [], [], []
    for at, event in enumerate(events):
        if event[0] != "edit":
            continue
        refreshed = next((e for e in events[at:] if e[0] == "refreshed"), None)
        frame = next((e for e in events[at:] if e[0] == "frame" and e[2] > 0.5), None)
        if frame and refreshed:
            latencies.append(frame[1] - event[1])
            refreshes.append(refreshed[1] - event[1])
            refresh_cpus.append(refreshed[2] - event[2])
            paints.append(frame[2])
            cpus.append(frame[3])
    if len(latencies) < 15:
        sys.exit(f"only {len(latencies)} of 20 edits reached a frame")
    print(f"edit 3840x2160, 50 guides, {len(latencies)} edits: announcement to painted frame"
          f" {statistics.median(latencies):.1f} ms median, {max(latencies):.1f} max;"
          f" panels refreshed {statistics.median(refreshes):.1f} ms after it"
          f" (processor {statistics.median(refresh_cpus):.1f});"
          f" paint {statistics.median(paints):.1f} ms (processor {statistics.median(cpus):.1f})")


open_times()
with tempfile.TemporaryDirectory() as folder:
    edit_times(folder)
