"""A display without a screen, a window manager, and a user's hands: Xvfb, openbox, xdotool."""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

from lv2_bundle import RATE

HELPERS = pathlib.Path(__file__).parent
# By name, in pixels of a window that shows the preset voice.
POINTS = {name: (int(x), int(y)) for name, x, y in
          (line.split() for line in (HELPERS / "view/golden/points.txt").read_text().splitlines())}


class Desk:
    """Ends with all that was started on it. Programs see `env`, and write what they say into `folder`."""

    def __init__(self, name, folder, env):
        self.name, self.folder, self.running = name, folder, []
        for tool in ("Xvfb", "openbox", "xdotool", "xwininfo", "xprop", "import"):
            if not shutil.which(tool):
                sys.exit(f"{name}: {tool} is missing: script/install-packages hosts")
        seen, told = os.pipe()
        display = self.start("Xvfb", "-displayfd", str(told), "-screen", "0", "2600x1300x24", "-nolisten", "tcp",
                             "-noreset", env=env, pass_fds=[told])
        os.close(told)
        with os.fdopen(seen) as numbers:
            number = numbers.readline().strip()
        if not number:
            sys.exit(f"{name}: Xvfb doesn't run: {self.said_by(display)}")
        self.env = env | {"DISPLAY": f":{number}", "NO_AT_BRIDGE": "1", "JACK_DEFAULT_SERVER": folder.name,
                          "JACK_NO_AUDIO_RESERVATION": "1"}
        self.wait("display", lambda: self.quiet("xwininfo", "-root").returncode == 0)
        self.start("openbox")
        self.wait("window manager", lambda: "window id" in self.quiet("xprop", "-root", "_NET_SUPPORTING_WM_CHECK").stdout)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(self.running):
            process.terminate()  # a JACK server that is killed leaves its memory and its place among servers
            try:
                process.wait(3)
            except subprocess.TimeoutExpired:  # asks whether to save
                process.kill()
                process.wait()

    def start(self, *command, env=None, **options):
        with open(self.folder / f"{pathlib.Path(command[0]).name}.log", "w") as log:
            process = subprocess.Popen([str(word) for word in command], env=env or self.env, stdin=subprocess.DEVNULL,
                                       stdout=log, stderr=subprocess.STDOUT, **options)
        self.running.append(process)
        return process

    def start_jack(self):
        self.start("jackd", "--no-realtime", "--no-mlock", "-n", self.folder.name, "-d", "dummy", "-r", RATE)
        self.wait("JACK server", lambda: self.quiet("jack_lsp").returncode == 0)

    def said_by(self, process):
        """The last line of it."""
        lines = (self.folder / f"{pathlib.Path(process.args[0]).name}.log").read_text(errors="replace").split("\n")
        return next((line for line in reversed(lines) if line.strip()), "nothing")

    def fail(self, what):
        picture = pathlib.Path(tempfile.gettempdir()) / f"check-hosts-{self.name}.png"
        self.quiet("import", "-silent", "-window", "root", picture)
        for process in self.running:
            if process.poll() is not None:
                what += f"; {process.args[0]} has ended, it says: {self.said_by(process)}"
        sys.exit(f"{self.name}: {what}; {picture} shows the screen")

    def wait(self, what, found, seconds=40):
        """What found() returns as soon as that is anything."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if result := found():
                return result
            time.sleep(0.2)
        return self.fail(f"no {what}")

    def written(self, file, end, save):
        """The text that save() makes a program write to a file. The last word of it is known."""
        before = file.stat().st_mtime_ns
        save()

        def whole():
            text = file.read_text() if file.stat().st_mtime_ns != before else ""
            return text if text.rstrip().endswith(end) else None

        return self.wait(f"whole {file.name}", whole)

    def quiet(self, *command):
        return subprocess.run([str(word) for word in command], env=self.env, capture_output=True, text=True, check=False)

    def xdotool(self, *words):
        return self.quiet("xdotool", *words).stdout

    def window(self, title):
        """The window with a title, which is a regular expression."""
        return int(self.wait(f"window '{title}'", lambda: self.xdotool("search", "--onlyvisible", "--name", title)).split()[-1])

    def plugin_window(self, host):
        """The innermost in a host's window that has the usual size."""
        size = "{}x{}".format(*POINTS["window"])

        def found():
            return re.findall(rf"^ +(0x\w+) .* {size}\+", self.quiet("xwininfo", "-tree", "-id", host).stdout, re.M)

        return int(self.wait(f"plugin's window of {size} pixels", found)[-1], 16)

    def picture(self, window):
        """A list of pixels, each three bytes."""
        shot = subprocess.run(["import", "-silent", "-window", str(window), "-depth", "8", "rgb:-"], env=self.env,
                              capture_output=True, check=False).stdout
        return [shot[at : at + 3] for at in range(0, len(shot), 3)]

    def is_shown(self, window):
        return "IsViewable" in self.quiet("xwininfo", "-id", window).stdout

    def activate(self, window):
        self.xdotool("windowactivate", "--sync", window)

    def place(self, window, x, y):
        self.xdotool("windowmove", window, x, y, "sleep", "0.5")

    def click(self, window, point, button=1, times=1):
        self.xdotool("mousemove", "--window", window, *point, "sleep", "0.1",
                     "click", "--repeat", times, "--delay", 80, button)

    def drag(self, window, begin, end):
        half = [(a + b) // 2 for a, b in zip(begin, end)]
        at = ["mousemove", "--window", window]
        self.xdotool(*at, *begin, "sleep", "0.1", "mousedown", 1, "sleep", "0.1", *at, *half, "sleep", "0.1", *at, *end,
                     "sleep", "0.1", "mouseup", 1)

    def keys(self, *names):
        self.xdotool("key", "--delay", 40, *names)

    def type(self, text):
        self.xdotool("type", "--delay", 40, "--", text)
