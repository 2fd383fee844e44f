#!/usr/bin/env python3
"""The demo product of the Windows build, under Wine, driven with real X input.

    drive_demo.py <demo folder> <zvwinenv.exe> <case>

Runs inside the windows-qt lane (DISPLAY is the lane's Xvfb, with no window manager;
WINEPREFIX is the lane's prefix). Each case copies the demo folder into a fresh place,
so that the language it saves stays with the case, starts it with an English system
language, finds its windows on the display and clicks and types with xdotool as a user
would.

Cases:
  title-menu   the menu button opens the title menu directly below itself
  about        the About dialog (560 x 350) opens over the middle of the window
  german       the language dialog (440 x 176) switches the demo to German, which is
               saved and holds at the next start
  screenshots  --screenshots draws the 16 pictures (4 views, 2 skins, 2 languages)
"""
import os
import queue
import shutil
import struct
import subprocess
import sys
import tempfile
import threading
import time
import zlib

from winedrive import check, fail, near, run_case, usage, xdotool_output as xdotool

# The demo's window, its shadow margin included, and its title bar: 45 high below the
# 5-pixel margin; from the right a 20-pixel gap, then close, maximise, minimise and menu,
# each 20 x 20 with 15 between them.
WIDTH, HEIGHT = 1000, 680
MARGIN = 5
TITLE_HEIGHT = 45
BUTTON = 20
BUTTON_GAP = 15
MENU_BUTTON_FROM_RIGHT = MARGIN + 20 + 3 * (BUTTON + BUTTON_GAP) + BUTTON

ENGLISH_MENU = "Feedback | Language | Export listing\u2026 | Home page | Check for updates | About"
GERMAN_MENU = "Feedback | Sprache | Liste exportieren\u2026 | Startseite | Nach Updates suchen | \u00dcber"
GERMAN_TITLE = "Ordnergr\u00f6\u00dfen: "


def click(point):
    xdotool("mousemove", point[0], point[1], "sleep", "0.3", "click", 1, "sleep", "0.3")


def keys(*names):
    xdotool("key", "--delay", 120, *names)


class Window:
    def __init__(self, wid, name, x, y, w, h):
        self.id, self.name = wid, name
        self.x, self.y, self.w, self.h = x, y, w, h

    def centre(self):
        return (self.x + self.w / 2.0, self.y + self.h / 2.0)

    def __repr__(self):
        return "%r %dx%d+%d+%d" % (self.name, self.w, self.h, self.x, self.y)


def visible_windows():
    """The display's viewable top-level windows with a size of more than a pixel."""
    found = []
    for wid in xdotool("search", "--onlyvisible", "--name", "").split():
        geometry = xdotool("getwindowgeometry", "--shell", wid)
        fields = dict(l.split("=", 1) for l in geometry.splitlines() if "=" in l)
        try:
            x, y, w, h = (int(fields[k]) for k in ("X", "Y", "WIDTH", "HEIGHT"))
        except (KeyError, ValueError):
            continue
        if w <= 1 or h <= 1 or (x, y) == (0, 0) and (w, h) == display_size():
            continue
        found.append(Window(wid, xdotool("getwindowname", wid).strip(), x, y, w, h))
    return found


_display_size = None


def display_size():
    global _display_size
    if _display_size is None:
        w, h = xdotool("getdisplaygeometry").split()
        _display_size = (int(w), int(h))
    return _display_size


def wait_for_window(wanted, timeout=15, exclude=()):
    end = time.time() + timeout
    while time.time() < end:
        for window in visible_windows():
            if window.id not in exclude and wanted(window):
                return window
        time.sleep(0.2)
    return None


def wait_until_only(ids, timeout=8):
    end = time.time() + timeout
    while time.time() < end:
        if all(w.id in ids for w in visible_windows()):
            return True
        time.sleep(0.2)
    return False


def to_windows_path(path):
    return "Z:" + path.replace("/", "\\")


class Install:
    """One installation of the product in a fresh folder, with a folder for it to show."""

    def __init__(self, demo):
        self.root = tempfile.mkdtemp(prefix="zvwindemo.")
        self.folder = os.path.join(self.root, "FolderLens")
        shutil.copytree(demo, self.folder)
        self.samples = os.path.join(self.root, "Holiday")
        for name, size in (("Photos/harbour.jpg", 390000), ("Photos/beach.jpg", 512000),
                           ("Documents/notes.txt", 3512), ("map.png", 153600)):
            path = os.path.join(self.samples, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "wb") as f:
                f.truncate(size)

    def saved_language(self):
        try:
            with open(os.path.join(self.folder, "language", "language"), encoding="utf-8") as f:
                return f.read()
        except OSError:
            return None

    def programs_running(self):
        """The PIDs of the programs started from this installation's folder (the demo and
        the companions it starts detached), as Wine names them in their command lines."""
        prefix = (to_windows_path(self.folder) + "\\").lower()
        pids = []
        for entry in os.listdir("/proc"):
            if not entry.isdigit():
                continue
            try:
                with open("/proc/%s/cmdline" % entry, "rb") as f:
                    program = f.read().split(b"\0", 1)[0].decode("utf-8", "replace")
            except OSError:
                continue
            if program.lower().startswith(prefix):
                pids.append(int(entry))
        return pids

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.remove()
        return False

    def remove(self):
        # A companion still starting would find its folder gone; the silent update check
        # ends by itself, anything else is ended by its PID.
        end = time.time() + 20
        while self.programs_running() and time.time() < end:
            time.sleep(0.2)
        for pid in self.programs_running():
            try:
                os.kill(pid, 15)
            except OSError:
                pass
        shutil.rmtree(self.root, ignore_errors=True)


class Demo:
    """zvcore-demo.exe of one installation under Wine, its diagnostics on standard error."""

    def __init__(self, install, zvwinenv, *arguments):
        self.lines = queue.Queue()
        self.log = []
        env = dict(os.environ, LANG="en_US.UTF-8")
        for name in ("LC_ALL", "LC_MESSAGES", "LANGUAGE"):
            env.pop(name, None)
        self.process = subprocess.Popen(
            ["wine", zvwinenv, "QT_FORCE_STDERR_LOGGING=1", "QT_LOGGING_RULES=default.debug=true",
             "--", "zvcore-demo.exe"] + list(arguments),
            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, cwd=install.folder, env=env)
        threading.Thread(target=self._read, daemon=True).start()
        self.main = None

    def _read(self):
        # Qt writes its messages in the system's ANSI code page, which Wine makes 1252
        # for an English locale.
        for raw in self.process.stderr:
            line = raw.decode("cp1252", errors="replace").rstrip("\r\n")
            self.log.append(line)
            self.lines.put(line)

    def wait_for_main(self):
        end = time.time() + 60
        while self.main is None and self.process.poll() is None and time.time() < end:
            self.main = wait_for_window(lambda w: (w.w, w.h) == (WIDTH, HEIGHT), 1)
        if self.main is None:
            raise RuntimeError("no %d x %d window; the demo said:\n%s" % (WIDTH, HEIGHT, "\n".join(self.log)))
        time.sleep(1.0)
        self.main = wait_for_window(lambda w: w.id == self.main.id, 5) or self.main
        return self.main

    def title_menu_line(self, skip=0, timeout=15):
        """The entries of the title menu, as the demo logs them when it fills it."""
        prefix = "Folder Lens: title menu: "
        end = time.time() + timeout
        while time.time() < end:
            seen = [l[len(prefix):] for l in self.log if l.startswith(prefix)]
            if len(seen) > skip:
                return seen[skip]
            time.sleep(0.2)
        return None

    def menu_button(self):
        """The menu button's rectangle on the screen: left, top, right and bottom edges."""
        left = self.main.x + self.main.w - MENU_BUTTON_FROM_RIGHT
        top = self.main.y + MARGIN + (TITLE_HEIGHT - BUTTON) // 2
        return (left, top, left + BUTTON, top + BUTTON)

    def open_title_menu(self):
        left, top, right, bottom = self.menu_button()
        click(((left + right) // 2, (top + bottom) // 2))
        return wait_for_window(lambda w: True, 8, exclude=(self.main.id,))

    def choose_from_title_menu(self, index):
        if self.open_title_menu() is None:
            return False
        keys(*(["Down"] * index + ["Return"]))
        return True

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()
        return False

    def close(self):
        if self.process.poll() is None and self.main is not None:
            # The title bar's close button, as a user ends the program.
            click((self.main.x + self.main.w - MARGIN - 20 - BUTTON // 2,
                   self.main.y + MARGIN + TITLE_HEIGHT // 2))
            try:
                self.process.wait(15)
            except subprocess.TimeoutExpired:
                pass
        if self.process.poll() is None:
            fail("the close button did not end the demo")
            xdotool("windowkill", self.main.id) if self.main is not None else None
            self.process.terminate()
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()


def showing(install, zvwinenv):
    """The installation's demo showing its sample folder; closed at the end of a with."""
    return Demo(install, zvwinenv, "--folder", to_windows_path(install.samples))


def case_title_menu(demo_dir, zvwinenv):
    with Install(demo_dir) as install, showing(install, zvwinenv) as demo:
        main = demo.wait_for_main()
        check(demo.title_menu_line() == ENGLISH_MENU,
              "the English title menu is %r" % demo.title_menu_line())
        menu = demo.open_title_menu()
        if check(menu is not None, "the menu button opened no window"):
            left, top, right, bottom = demo.menu_button()
            check(near(menu.x, left) and near(menu.y, bottom),
                  "the title menu %r does not open directly below its button (left %d, bottom %d)"
                  % (menu, left, bottom))
            check(menu.x < main.x + main.w and menu.y < main.y + main.h,
                  "the title menu %r is not over the window %r" % (menu, main))
            keys("Escape")
            check(wait_until_only({main.id}), "Escape did not close the title menu")


def case_about(demo_dir, zvwinenv):
    with Install(demo_dir) as install, showing(install, zvwinenv) as demo:
        main = demo.wait_for_main()
        # About is the sixth entry of the demo's menu.
        check(demo.choose_from_title_menu(6), "the title menu did not open")
        about = wait_for_window(lambda w: (w.w, w.h) == (560, 350), 10, exclude=(main.id,))
        if check(about is not None, "no About dialog of 560 x 350: %r" % visible_windows()):
            # Qt places a dialog over the middle of its parent, raised and moved left by
            # the 40 x 10 pixels it allows for a native frame when the parent has none.
            (ax, ay), (mx, my) = about.centre(), main.centre()
            check(near(ax, mx - 10) and near(ay, my - 40),
                  "the About dialog %r is not over the middle of the window %r" % (about, main))
            check(about.x >= main.x and about.y >= main.y and about.x + about.w <= main.x + main.w
                  and about.y + about.h <= main.y + main.h,
                  "the About dialog %r reaches outside the window %r" % (about, main))
            # Modal: a click on the main window's menu button opens nothing.
            left, top, right, bottom = demo.menu_button()
            click(((left + right) // 2, (top + bottom) // 2))
            time.sleep(1.0)
            others = [w for w in visible_windows() if w.id not in (main.id, about.id)]
            check(not others, "the window took a click while the About dialog was open: %r" % others)
            keys("Escape")
            check(wait_until_only({main.id}), "Escape did not close the About dialog")


def case_german(demo_dir, zvwinenv):
    with Install(demo_dir) as install:
        with showing(install, zvwinenv) as demo:
            main = demo.wait_for_main()
            check(demo.title_menu_line() == ENGLISH_MENU, "the English title menu is %r" % demo.title_menu_line())
            check(install.saved_language() in (None, "English"),
                  "a fresh install saved %r" % install.saved_language())
            # Language is the second entry; the dialog is 440 wide and 176 high.
            check(demo.choose_from_title_menu(2), "the title menu did not open")
            dialog = wait_for_window(lambda w: (w.w, w.h) == (440, 176), 10, exclude=(main.id,))
            if not check(dialog is not None, "no language dialog of 440 x 176: %r" % visible_windows()):
                return
            # The combo box, the right of the first row below a 10-pixel gap, lists the
            # languages in catalogue order, German sixth: open it and go down five entries.
            click((dialog.x + 5 + 430 - 22 - 60, dialog.y + 5 + 22 + 10 + 15))
            popup = wait_for_window(lambda w: True, 5, exclude=(main.id, dialog.id))
            if check(popup is not None, "the combo box opened no list"):
                check(popup.x >= dialog.x and popup.x < dialog.x + dialog.w,
                      "the combo box's list %r does not open beside its box in %r" % (popup, dialog))
            keys("Down", "Down", "Down", "Down", "Down", "Return")
            time.sleep(0.5)
            # OK: the right one of the two buttons at the bottom.
            click((dialog.x + 5 + 430 - 22 - 60, dialog.y + 176 - 5 - 22 - 15))
            # The menu is rebuilt from the German link file, the choice saved, the title
            # translated at once, and a restart offered (a window of its own).
            check(demo.title_menu_line(1) == GERMAN_MENU, "the title menu after the choice is %r"
                  % demo.title_menu_line(1))
            end = time.time() + 5
            while install.saved_language() != "German" and time.time() < end:
                time.sleep(0.2)
            check(install.saved_language() == "German", "the saved language is %r" % install.saved_language())
            offer = wait_for_window(lambda w: True, 8, exclude=(main.id,))
            check(offer is not None, "no restart offer")
            keys("Escape")
            check(wait_until_only({main.id}), "the restart offer did not close")
            now = wait_for_window(lambda w: w.id == main.id, 5)
            check(now is not None and now.name.startswith(GERMAN_TITLE),
                  "the window's title is %r" % (now.name if now else None))

        # A second start comes up in German.
        with showing(install, zvwinenv) as again:
            main = again.wait_for_main()
            check(again.title_menu_line() == GERMAN_MENU, "the second start's menu is %r" % again.title_menu_line())
            check(main.name.startswith(GERMAN_TITLE), "the second start's title is %r" % main.name)


def png_pixels(path):
    """Width, height and the set of distinct pixels of an 8-bit RGB or RGBA PNG file."""
    with open(path, "rb") as f:
        data = f.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("not a PNG file")
    pos, idat, header = 8, b"", None
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat += body
        pos += 12 + length
    width, height, depth, colour, _, _, interlace = header
    channels = {2: 3, 6: 4}.get(colour)
    if depth != 8 or channels is None or interlace:
        raise ValueError("a PNG of depth %d, colour type %d, interlace %d" % (depth, colour, interlace))
    raw = zlib.decompress(idat)
    stride = width * channels
    previous = bytearray(stride)
    colours = set()
    for row in range(height):
        start = row * (stride + 1)
        kind, line = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for i in range(stride):
            a = line[i - channels] if i >= channels else 0
            b = previous[i]
            c = previous[i - channels] if i >= channels else 0
            if kind == 1:
                line[i] = (line[i] + a) & 0xFF
            elif kind == 2:
                line[i] = (line[i] + b) & 0xFF
            elif kind == 3:
                line[i] = (line[i] + (a + b) // 2) & 0xFF
            elif kind == 4:
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                line[i] = (line[i] + (a if pa <= pb and pa <= pc else b if pb <= pc else c)) & 0xFF
        if row % 4 == 0:
            colours.update(bytes(line[i:i + channels]) for i in range(0, stride, channels * 3))
        previous = line
    return width, height, colours


def case_screenshots(demo_dir, zvwinenv):
    with Install(demo_dir) as install:
        shots = os.path.join(install.root, "shots")
        # Wine's prefix has no fonts of its own; the pictures' text is drawn with the
        # host's DejaVu fonts, which the offscreen children read from this folder.
        fonts = "/usr/share/fonts/truetype/dejavu"
        extra = ["QT_QPA_FONTDIR=" + to_windows_path(fonts)] if os.path.isdir(fonts) else []
        result = subprocess.run(
            ["wine", zvwinenv] + extra + ["--", "zvcore-demo.exe", "--screenshots", to_windows_path(shots)],
            cwd=install.folder, capture_output=True, timeout=600,
            env=dict(os.environ, LANG="en_US.UTF-8"))
        if not check(result.returncode == 0, "--screenshots ended with %d:\n%s"
                     % (result.returncode, result.stderr.decode("cp1252", "replace"))):
            return
        sizes = {"main": (WIDTH, HEIGHT), "about": (560, 350), "language": (440, 176)}
        # Text gives a picture hundreds of colours (its smoothed edges); the same views
        # drawn with no font reach a fifth of these (about 70, 25 and 15).
        least_colours = {"main": 200, "menu": 200, "about": 150, "language": 50}
        names = sorted(os.listdir(shots)) if os.path.isdir(shots) else []
        check(len([n for n in names if n.endswith(".png")]) == 16, "16 pictures expected, found %r" % names)
        for view in ("main", "menu", "about", "language"):
            for skin in ("light", "dark"):
                for language in ("English", "Arabic"):
                    name = "%s-%s-%s.png" % (view, skin, language)
                    path = os.path.join(shots, name)
                    if not check(os.path.isfile(path), "no %s" % name):
                        continue
                    width, height, colours = png_pixels(path)
                    if view in sizes:
                        check((width, height) == sizes[view],
                              "%s is %d x %d, not %d x %d" % ((name, width, height) + sizes[view]))
                    else:
                        check(width >= WIDTH and height >= HEIGHT,
                              "%s (%d x %d) does not hold the window" % (name, width, height))
                    check(len(colours) >= least_colours[view],
                          "%s has only %d colours: is its text missing?" % (name, len(colours)))


CASES = {
    "title-menu": case_title_menu,
    "about": case_about,
    "german": case_german,
    "screenshots": case_screenshots,
}


def main():
    if len(sys.argv) != 4 or sys.argv[3] not in CASES:
        return usage(__doc__)
    demo_dir, zvwinenv, case = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2]), sys.argv[3]
    if not os.path.isfile(os.path.join(demo_dir, "zvcore-demo.exe")):
        print("%s holds no zvcore-demo.exe" % demo_dir, file=sys.stderr)
        return 1
    return run_case(CASES, case, demo_dir, zvwinenv,
                    errors=(RuntimeError, ValueError, OSError, subprocess.SubprocessError))


if __name__ == "__main__":
    sys.exit(main())
