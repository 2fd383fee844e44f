#!/usr/bin/env python3
"""The core window of the Windows build, under Wine, driven with real X input.

    drive_corewindow.py <zv_corewindow_host.exe> <case>

Runs inside the windows-qt lane (DISPLAY is the lane's Xvfb, with no window manager;
WINEPREFIX is the lane's prefix). The host program prints its layout and, on every
change, a "status" line (see tests/display/zvcorewindowhost.cpp); this script moves
the pointer with xdotool, which reaches the window through Wine's X11 driver and the
frame's WM_NCHITTEST answers, and checks the status lines that follow.

Cases: drag-title, drag-content, drag-button, resize, fixed-size, maximize, minimize,
shadow-layered, shadow-qt, shadow-pixels, two-windows.
"""
import math
import os
import shutil
import queue
import subprocess
import sys
import threading
import time

from winedrive import check, fail, near, run_case, usage


def xdotool(*args):
    subprocess.run(["xdotool"] + [str(a) for a in args], check=True)


def drag(start, delta, steps=12, button_hold=0.15):
    """Presses at start, moves by delta in steps, releases."""
    x, y = start
    dx, dy = delta
    xdotool("mousemove", x, y)
    time.sleep(0.2)
    xdotool("mousedown", 1)
    time.sleep(button_hold)
    for i in range(1, steps + 1):
        xdotool("mousemove", x + dx * i // steps, y + dy * i // steps)
        time.sleep(0.03)
    time.sleep(0.2)
    xdotool("mouseup", 1)
    time.sleep(0.3)


def double_click(point):
    xdotool("mousemove", point[0], point[1])
    time.sleep(0.2)
    xdotool("click", "--repeat", 2, "--delay", 80, 1)


def click(point):
    xdotool("mousemove", point[0], point[1])
    time.sleep(0.2)
    xdotool("click", 1)


class Status:
    def __init__(self, line):
        parts = line.split()
        self.x, self.y, self.w, self.h = (int(v) for v in parts[1:5])
        self.state = parts[5]
        fields = dict(p.split("=", 1) for p in parts[6:])
        self.maxed = fields["maxed"] == "1"
        self.work = tuple(int(v) for v in fields["work"].split(","))
        shadow = fields["shadow"]
        self.shadow = None if shadow == "none" else tuple(int(v) for v in shadow.split(","))
        self.margins = tuple(int(v) for v in fields["margins"].split(","))
        self.active = fields["active"] == "1"

    def __repr__(self):
        return "(%d,%d %dx%d %s maxed=%d shadow=%s active=%d)" % (
            self.x, self.y, self.w, self.h, self.state, self.maxed, self.shadow, self.active)


class Host:
    """One zv_corewindow_host.exe under Wine."""

    def __init__(self, exe, *args):
        self.lines = queue.Queue()
        self.widgets = {}
        self.status = None
        self.process = subprocess.Popen(
            ["wine", exe, "--status"] + list(args),
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
            cwd=os.path.dirname(exe))
        threading.Thread(target=self._read, daemon=True).start()
        self.wait_for(lambda line: line == "ready", 60, "the window never became ready")
        self.wait_status(lambda s: True, 10, "no status")

    def _read(self):
        for line in self.process.stdout:
            self.lines.put(line.strip())
        self.lines.put(None)

    def _take(self, timeout):
        try:
            line = self.lines.get(timeout=timeout)
        except queue.Empty:
            return None, False
        if line is None:
            return None, True
        if line.startswith("widget "):
            name, x, y, w, h = line.split()[1:6]
            self.widgets[name] = (int(x), int(y), int(w), int(h))
        elif line.startswith("status "):
            self.status = Status(line)
        return line, False

    def wait_for(self, predicate, timeout, what):
        end = time.time() + timeout
        while time.time() < end:
            line, ended = self._take(min(0.2, max(0.01, end - time.time())))
            if ended:
                raise RuntimeError(what + " (the program ended)")
            if line is not None and predicate(line):
                return line
        raise RuntimeError(what)

    def wait_status(self, predicate, timeout, what):
        """Waits until the latest status satisfies predicate; False on timeout."""
        end = time.time() + timeout
        while True:
            if self.status is not None and predicate(self.status):
                return True
            if time.time() >= end:
                fail("%s; last status %r" % (what, self.status))
                return False
            self._take(0.1)

    def settle(self, seconds=1.0):
        end = time.time() + seconds
        while time.time() < end:
            self._take(0.1)
        return self.status

    def screen_point(self, name, fx=0.5, fy=0.5):
        x, y, w, h = self.widgets[name]
        return (self.status.x + x + int(w * fx), self.status.y + y + int(h * fy))

    def empty_title_point(self):
        """A point of the title bar that no visible child of it covers."""
        tx, ty, tw, th = self.widgets["title"]
        children = [g for n, g in self.widgets.items() if n not in ("title", "central")]
        y = ty + th // 2
        for x in range(tx + 8, tx + tw - 8, 4):
            if not any(cx <= x < cx + cw and cy <= y < cy + ch for cx, cy, cw, ch in children):
                return (self.status.x + x, self.status.y + y)
        raise RuntimeError("the title bar has no empty place")

    def close(self):
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()


def activate(host):
    """Makes the window the active one with a click on its content. Under Wine without a
    window manager the click that activates a window does not reach its buttons."""
    if host.status.active:
        return
    click(host.screen_point("central"))
    host.wait_status(lambda s: s.active, 5, "a click on the content did not activate the window")


def moved_by(before, dx, dy):
    return lambda s: near(s.x, before.x + dx) and near(s.y, before.y + dy) and s.w == before.w and s.h == before.h


def case_drag_title(exe):
    host = Host(exe, "--pos", "300,200")
    before = host.status
    drag(host.empty_title_point(), (150, 80))
    host.wait_status(moved_by(before, 150, 80), 10,
                     "a drag of the empty title by (+150, +80) from %r" % before)
    host.close()


def case_drag_content(exe):
    host = Host(exe, "--pos", "300,200", "--resizable")
    before = host.status
    drag(host.screen_point("central"), (150, 80))
    after = host.settle(1.5)
    check((after.x, after.y, after.w, after.h) == (before.x, before.y, before.w, before.h),
          "a drag inside the content moved or resized the window: %r -> %r" % (before, after))
    host.close()


def case_drag_button(exe):
    host = Host(exe, "--pos", "300,200")
    before = host.status
    buttons = [n for n in host.widgets if n.startswith("btn_") and n != "btn_close"]
    check(buttons, "the title bar shows no buttons: %r" % sorted(host.widgets))
    for name in buttons:
        drag(host.screen_point(name), (150, 80))
        after = host.settle(1.0)
        check((after.x, after.y) == (before.x, before.y) and after.state == "normal",
              "a drag that starts on %s moved the window: %r -> %r" % (name, before, after))
    host.close()


def border_drags(host):
    s = host.status
    mid_x, mid_y = s.x + s.w // 2, s.y + s.h // 2
    return [
        ("left", (s.x + 2, mid_y), (-40, 0), lambda b: (b.x - 40, b.y, b.w + 40, b.h)),
        ("right", (s.x + s.w - 3, mid_y), (40, 0), lambda b: (b.x, b.y, b.w + 40, b.h)),
        ("top", (mid_x, s.y + 2), (0, -30), lambda b: (b.x, b.y - 30, b.w, b.h + 30)),
        ("bottom", (mid_x, s.y + s.h - 3), (0, 30), lambda b: (b.x, b.y, b.w, b.h + 30)),
    ]


def case_resize(exe):
    host = Host(exe, "--pos", "300,200", "--resizable")
    for name, _, delta, expected in border_drags(host):
        before = host.status
        start = dict((n, p) for n, p, _, _ in border_drags(host))[name]
        drag(start, delta)
        want = expected(before)
        host.wait_status(lambda s: all(near(a, b) for a, b in zip((s.x, s.y, s.w, s.h), want)), 10,
                         "a drag of the %s border by %r from %r should give %r" % (name, delta, before, want))
    host.close()


def case_fixed_size(exe):
    host = Host(exe, "--pos", "300,200")
    for name, start, delta, _ in border_drags(host):
        before = host.status
        drag(start, delta)
        after = host.settle(1.0)
        check((after.w, after.h) == (before.w, before.h),
              "the %s border resized a window that is not resizable: %r -> %r" % (name, before, after))
    host.close()


def case_maximize(exe):
    host = Host(exe, "--pos", "300,200", "--resizable")
    before = host.status
    check(not before.maxed, "the maximise button is \"maxed\" before any maximise: %r" % before)
    double_click(host.empty_title_point())
    work = before.work
    if host.wait_status(lambda s: s.state == "maximized", 10, "a double click on the title did not maximise"):
        host.wait_status(lambda s: (s.x, s.y, s.w, s.h) == work, 5,
                         "the maximised window does not fill the work area %r" % (work,))
        host.wait_status(lambda s: s.maxed, 5, "the maximise button is not \"maxed\" while maximised")
    host.settle(0.5)
    double_click(host.empty_title_point())
    host.wait_status(lambda s: s.state == "normal" and (s.x, s.y, s.w, s.h) == (before.x, before.y, before.w, before.h),
                     10, "a second double click did not restore %r" % before)
    host.wait_status(lambda s: not s.maxed, 5, "the maximise button stayed \"maxed\" after the restore")
    # The button itself.
    host.settle(0.5)
    activate(host)
    click(host.screen_point("btn_max"))
    host.wait_status(lambda s: s.state == "maximized" and s.maxed, 10, "the maximise button did not maximise")
    host.close()


def case_minimize(exe):
    host = Host(exe, "--pos", "300,200")
    activate(host)
    click(host.screen_point("btn_min"))
    host.wait_status(lambda s: s.state == "minimized", 10, "the minimise button did not minimise")
    host.close()


def shadow_expected(s):
    # Size 5, offsets (0, 0): 5 pixels up and left of the window, 10 wider and taller.
    return (s.x - 5, s.y - 5, s.w + 10, s.h + 10, 1)


def case_shadow_layered(exe):
    host = Host(exe, "--pos", "300,200", "--resizable", "--shadow", "layered")
    host.wait_status(lambda s: s.shadow == shadow_expected(s), 10,
                     "no ZVShadowWnd window 5 pixels around the core window")
    before = host.status
    drag(host.empty_title_point(), (150, 80))
    host.wait_status(lambda s: moved_by(before, 150, 80)(s) and s.shadow == shadow_expected(s), 10,
                     "the shadow window did not follow the move")
    double_click(host.empty_title_point())
    host.wait_status(lambda s: s.state == "maximized" and s.shadow is not None and s.shadow[4] == 0, 10,
                     "the shadow window is still shown while the core window is maximised")
    host.close()
    # The window's own state changes, one a second: the shadow hides and comes back.
    host = Host(exe, "--pos", "300,200", "--resizable", "--shadow", "layered", "--then", "maximize,normal")
    for state, visible in (("maximized", 0), ("normal", 1)):
        host.wait_status(lambda s: s.state == state and s.shadow is not None and s.shadow[4] == visible
                         and (not visible or s.shadow == shadow_expected(s)), 10,
                         "the shadow window's visibility does not follow the state %s" % state)
    host.close()
    host = Host(exe, "--pos", "300,200", "--resizable", "--shadow", "layered")
    activate(host)
    click(host.screen_point("btn_min"))
    host.wait_status(lambda s: s.state == "minimized" and s.shadow is not None and s.shadow[4] == 0, 10,
                     "the shadow window is still shown while the core window is minimised")
    host.close()


def case_shadow_qt(exe):
    host = Host(exe, "--pos", "300,200", "--resizable", "--shadow", "qt")
    host.settle(1.0)
    check(host.status.shadow is None,
          "a ZVShadowWnd window exists although the shadow is painted by Qt: %r" % host.status)
    check(host.status.margins == (5, 5, 5, 5), "the painted shadow's margin is not 5: %r" % (host.status.margins,))
    before = host.status
    drag(host.empty_title_point(), (150, 80))
    host.wait_status(moved_by(before, 150, 80), 10, "a drag of the title of a Qt-shadowed window")
    # The margin goes while maximised (WM_SIZE with SIZE_MAXIMIZED) and comes back after.
    host.settle(0.8)
    double_click(host.empty_title_point())
    host.wait_status(lambda s: s.state == "maximized" and s.margins == (0, 0, 0, 0), 10,
                     "the painted margin stays while maximised")
    host.settle(0.8)
    double_click(host.empty_title_point())
    host.wait_status(lambda s: s.state == "normal" and s.margins == (5, 5, 5, 5), 10,
                     "the painted margin did not come back after the restore")
    host.close()


# The shadows' pixels, read back from the screen over a grey desktop while a compositing
# manager blends the windows' alpha (without one the X server keeps none).
DESKTOP_GREY = 128


def screen():
    """The whole screen: width, height and RGB bytes."""
    data = subprocess.run(["import", "-window", "root", "-depth", "8", "ppm:-"], capture_output=True, check=True,
                          timeout=30).stdout
    fields, pos = [], 0
    while len(fields) < 4:
        while data[pos:pos + 1].isspace():
            pos += 1
        end = pos
        while not data[end:end + 1].isspace():
            end += 1
        fields.append(data[pos:end])
        pos = end
    if fields[0] != b"P6" or fields[3] != b"255":
        raise RuntimeError("import gave no 8-bit PPM picture")
    width, height = int(fields[1]), int(fields[2])
    return width, height, data[pos + 1:]


def grey_at(picture, x, y):
    width, _, rgb = picture
    r, g, b = rgb[3 * (y * width + x):3 * (y * width + x) + 3]
    return (r + g + b) // 3


def over_grey(alpha):
    """Black of this alpha blended over the desktop's grey."""
    return DESKTOP_GREY * (255 - alpha) / 255.0


def layered_ramp():
    """The layered shadow beside the middle of an edge, at distances 1 to 5: the core
    window's shadow has size 5, sharpness 5 and darkness 40, so its kernel gives
    (1 - d / 6) * 40, truncated, at distance d."""
    size, sharpness, darkness = 5, 5, 40
    return [int((1 - d / (sharpness + 1.0)) * darkness) for d in range(1, size + 1)]


def painted_ramp():
    """The painted shadow at distances 1 to 5 outside the white background: five rings of
    alpha (sqrt(5) - sqrt(i)) * 20, each an antialiased one-pixel line on a pixel border,
    so that each pixel gets half of the two rings beside it, one drawn over the other."""
    rings = [int((math.sqrt(5) - math.sqrt(i)) * 20.0) for i in range(5)] + [0]
    ramp = []
    for k in range(1, 6):
        inner, outer = rings[k - 1] / 2.0, rings[k] / 2.0
        ramp.append(inner + outer * (1 - inner / 255.0))
    return ramp


def check_ramp(picture, what, points, alphas):
    """points: for each distance 1..n, the (x, y) of each edge; alphas: the expected alpha."""
    for distance, (alpha, edge_points) in enumerate(zip(alphas, points), start=1):
        want = over_grey(alpha)
        for edge, (x, y) in edge_points.items():
            got = grey_at(picture, x, y)
            check(abs(got - want) <= 2, "%s, %s edge, %d pixel(s) out: grey %d, expected %.1f (alpha %.1f)"
                  % (what, edge, distance, got, want, alpha))


def edge_points(left, top, right, bottom, distance):
    """The point at this distance outside the middle of each edge of the rectangle whose
    outermost pixels are at left, top, right and bottom."""
    mid_x, mid_y = (left + right) // 2, (top + bottom) // 2
    return {"left": (left - distance, mid_y), "right": (right + distance, mid_y),
            "top": (mid_x, top - distance), "bottom": (mid_x, bottom + distance)}


def case_shadow_pixels(exe):
    if not shutil.which("xcompmgr") or not shutil.which("import") or not shutil.which("xsetroot"):
        print("SKIPPED: the shadows' pixels need xcompmgr, xsetroot and ImageMagick's import")
        raise SystemExit(77)
    subprocess.run(["xsetroot", "-solid", "#%02x%02x%02x" % ((DESKTOP_GREY,) * 3)], check=True)
    compositor = subprocess.Popen(["xcompmgr", "-n"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        time.sleep(1.0)
        host = Host(exe, "--pos", "300,200", "--resizable", "--shadow", "layered")
        host.wait_status(lambda s: s.shadow == shadow_expected(s), 10, "no ZVShadowWnd window")
        for moved in (False, True):
            host.settle(1.0)
            s = host.status
            picture = screen()
            what = "the layered shadow" + (" after a move" if moved else "")
            check_ramp(picture, what, [edge_points(s.x, s.y, s.x + s.w - 1, s.y + s.h - 1, d) for d in range(1, 6)],
                       layered_ramp())
            # Nothing beyond the shadow's 5 pixels, and the corners rounded off.
            for name, (x, y) in edge_points(s.x, s.y, s.x + s.w - 1, s.y + s.h - 1, 6).items():
                check(grey_at(picture, x, y) == DESKTOP_GREY, "%s reaches 6 pixels out at the %s edge" % (what, name))
            check(grey_at(picture, s.x - 5, s.y - 5) == DESKTOP_GREY, "%s has a square corner" % what)
            if not moved:
                old = s
                drag(host.empty_title_point(), (150, 80))
                host.wait_status(moved_by(old, 150, 80), 10, "a drag of the title of a layered-shadow window")
        # The old place is bare desktop again.
        picture = screen()
        for name, (x, y) in edge_points(old.x, old.y, old.x + old.w - 1, old.y + old.h - 1, 1).items():
            if not (host.status.x <= x < host.status.x + host.status.w and host.status.y <= y < host.status.y + host.status.h):
                check(grey_at(picture, x, y) == DESKTOP_GREY, "the shadow stayed behind at the %s edge" % name)
        host.close()

        host = Host(exe, "--pos", "300,200", "--resizable", "--shadow", "qt")
        host.settle(1.5)
        s = host.status
        picture = screen()
        # The white background fills the window less its 5-pixel margin.
        check_ramp(picture, "the painted shadow",
                   [edge_points(s.x + 5, s.y + 5, s.x + s.w - 6, s.y + s.h - 6, d) for d in range(1, 6)],
                   painted_ramp())
        for name, (x, y) in edge_points(s.x, s.y, s.x + s.w - 1, s.y + s.h - 1, 1).items():
            check(grey_at(picture, x, y) == DESKTOP_GREY, "the painted shadow reaches out of the window at the %s edge" % name)
        host.close()
    finally:
        compositor.terminate()
        compositor.wait()
        subprocess.run(["xsetroot", "-def"], check=False)


def case_two_windows(exe):
    """Two core windows in one process, every mix of shadow modes, closed in either order."""
    for first in ("layered", "qt"):
        for second in ("layered", "qt"):
            for order in ("first", "second"):
                pairing = "%s,%s,%s" % (first, second, order)
                result = subprocess.run(["wine", exe, "--pair", pairing], capture_output=True, text=True,
                                        timeout=60, cwd=os.path.dirname(exe))
                lines = [l.strip() for l in result.stdout.splitlines() if l.strip()]
                counts = [int(l.split()[1]) for l in lines if l.startswith("shadows ")]
                layered = [first, second].count("layered")
                staying = second if order == "first" else first
                want = [layered, int(staying == "layered"), int(staying == "layered"), 0]
                check(result.returncode == 0 and "pair done" in lines,
                      "%s: ended with %d, output %r" % (pairing, result.returncode, lines))
                check(counts == want, "%s: shadow windows %r, expected %r" % (pairing, counts, want))


CASES = {
    "drag-title": case_drag_title,
    "drag-content": case_drag_content,
    "drag-button": case_drag_button,
    "resize": case_resize,
    "fixed-size": case_fixed_size,
    "maximize": case_maximize,
    "minimize": case_minimize,
    "shadow-layered": case_shadow_layered,
    "shadow-qt": case_shadow_qt,
    "shadow-pixels": case_shadow_pixels,
    "two-windows": case_two_windows,
}


def main():
    if len(sys.argv) != 3 or sys.argv[2] not in CASES:
        return usage(__doc__)
    return run_case(CASES, sys.argv[2], sys.argv[1])


if __name__ == "__main__":
    sys.exit(main())
