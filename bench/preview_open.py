"""Times vantel-preview on the 1920 x 1080 sample document: from exec to the
end of the first frame that drew the picture, stage by stage, and the frames
of a resize. The program reports its stages itself (VANTEL_PREVIEW_TIMING);
this script adds the exec-to-main part, which only the parent can see.

usage: preview_open.py VANTEL_PREVIEW RUNS   (with DISPLAY set; see preview_open.sh)
"""
import os, statistics, struct, subprocess, sys, threading, time

preview, runs = sys.argv[1], int(sys.argv[2])
document = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "sample.aspectratio")
STAGES = ["main", "gtk-started", "document-read", "picture-drawn", "first-frame"]


def start(extra_env):
    env = dict(os.environ, VANTEL_PREVIEW_TIMING="1", **extra_env)
    started = time.monotonic()
    process = subprocess.Popen([preview, document], env=env, stderr=subprocess.PIPE, text=True)
    return started, process


def read_stages(started, process):
    """Stage -> (ms since exec, cpu ms) up to the first frame; exec-to-main is
    the parent's wall time to the first frame less the program's own."""
    stages = {}
    for line in process.stderr:
        words = line.split()
        if line.startswith("vantel-preview: timing:") and words[2] != "frame":
            stages[words[2]] = (float(words[3]), float(words[5]))
        if "first-frame" in stages:
            break
    total = (time.monotonic() - started) * 1000
    if "first-frame" not in stages:
        sys.exit(f"vantel-preview ended before its first frame; it said {stages}")
    to_main = total - stages["first-frame"][0]
    return {name: (to_main + at, cpu) for name, (at, cpu) in stages.items()}


def stop(process):
    process.kill()
    process.wait()


def background_at_corner(window):
    """The sample's background (18, 18, 24) at the margin corner, from xwd."""
    dump = subprocess.run(["xwd", "-silent", "-id", window], capture_output=True).stdout
    header = struct.unpack(">25I", dump[:100])
    at = header[0] + header[19] * 12 + 6 * header[12] + 6 * 4
    blue, green, red = dump[at:at + 3]
    return abs(red - 18) <= 3 and abs(green - 18) <= 3 and abs(blue - 24) <= 3


def window_of(process):
    out = subprocess.run(["xdotool", "search", "--sync", "--name", "sample.aspectratio"],
                         capture_output=True, text=True).stdout
    return out.split()[0]


def open_times(label, extra_env):
    samples = []
    for run in range(runs):
        started, process = start(extra_env)
        samples.append(read_stages(started, process))
        if run == 0 and not background_at_corner(window_of(process)):
            sys.exit(f"{label}: the first frame did not show the document")
        stop(process)
    print(f"\n{label}: {runs} runs, ms after exec (median / min), processor ms (median)")
    for stage in STAGES:
        wall = [sample[stage][0] for sample in samples]
        cpu = [sample[stage][1] for sample in samples]
        print(f"  {stage:14} {statistics.median(wall):7.1f} / {min(wall):7.1f}   cpu {statistics.median(cpu):6.1f}")


def collect_frames(process):
    """Frame lines as (width, height, ms, cpu ms, arrival), filled by a thread."""
    frames = []

    def read():
        for line in process.stderr:
            words = line.split()
            if len(words) >= 7 and words[2] == "frame":
                width, height = map(int, words[3].split("x"))
                frames.append((width, height, float(words[4]), float(words[6]), time.monotonic()))

    threading.Thread(target=read, daemon=True).start()
    return frames


def resize_frames():
    """Drives 60 resizes as fast as xdotool can send them, then checks that
    the last frame has the last size and came soon after the last resize."""
    started, process = start({})
    read_stages(started, process)
    window = window_of(process)
    frames = collect_frames(process)
    sizes = [(700 + 9 * step, 400 + 7 * step) for step in range(60)]
    resizing_from = time.monotonic()
    for width, height in sizes:
        subprocess.run(["xdotool", "windowsize", window, str(width), str(height)])
    last_resize = time.monotonic()
    time.sleep(2)
    stop(process)
    frames = [f for f in frames if f[2] > 0.5]  # the paints that drew, not the empty ones
    last = frames[-1]
    print(f"\nresize: {len(sizes)} sizes in {(last_resize - resizing_from) * 1000:.0f} ms, {len(frames)} frames drawn")
    print(f"  frame ms (median / max): {statistics.median(f[2] for f in frames):.1f} / {max(f[2] for f in frames):.1f},"
          f" cpu median {statistics.median(f[3] for f in frames):.1f}")
    print(f"  last frame {last[0]}x{last[1]} (last size {sizes[-1][0]}x{sizes[-1][1]}),"
          f" {(last[4] - last_resize) * 1000:.0f} ms after the last resize")
    if (last[0], last[1]) != sizes[-1]:
        sys.exit("the last frame does not have the window's last size")


open_times("as shipped (cairo renderer, no GL)", {})
open_times("GTK's GL renderer (GSK_RENDERER=ngl)", {"GSK_RENDERER": "ngl"})
open_times("cairo renderer, GL loaded at start (GDK_DEBUG set empty)", {"GSK_RENDERER": "cairo", "GDK_DEBUG": ""})
resize_frames()
