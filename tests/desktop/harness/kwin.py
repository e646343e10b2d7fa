"""Wayland sessions on KWin without a screen."""

import shutil
from pathlib import Path

from harness.picture import Picture
from harness.protocol import WaylandClient
from harness.session import Session
from harness.waiting import until

SCREENSHOT = Path(__file__).parent / "kwin_screenshot.py"


class FakeKeyboard(WaylandClient):
    """The keys of a compositor's "fake input" protocol, under the American layout."""

    CODES = {"Escape": 1, "Return": 28, "space": 57, "Right": 106, "Left": 105, "Down": 108}
    ROWS = {2: "1234567890", 16: "qwertyuiop", 30: "asdfghjkl", 44: "zxcvbnm"}
    AUTHENTICATE, KEY = 0, 10

    def __init__(self, path):
        super().__init__(path, "org_kde_kwin_fake_input", version=4)
        self._codes = dict(self.CODES, **{" ": self.CODES["space"]})
        for first, letters in self.ROWS.items():
            self._codes.update({letter: first + number for number, letter in enumerate(letters)})
        # Two empty texts: the program's name and its reason.
        self._request(self._global, self.AUTHENTICATE, "I4sI4s", 1, b"", 1, b"")
        self._round_trip()

    def press(self, *keys):
        """One after the other, by name or by letter."""
        for key in keys:
            for state in (1, 0):
                self._request(self._global, self.KEY, "II", self._codes[key], state)
        self._round_trip()


class KWinSession(Session):
    def __init__(self, width=1280, height=720, blurs=False, environment=None):
        super().__init__(environment)
        self.width = width
        self.height = height
        self._blurs = blurs

    def begin(self):
        # The installed program has a file capability that not every system permits; a copy has none.
        program = self.folder / "kwin_wayland"
        shutil.copyfile(shutil.which("kwin_wayland"), program)
        program.chmod(0o700)
        # Without a GPU, KWin blurs only if this is set.
        (self.config / "kwinrc").write_text(f"[Plugins]\nblurEnabled={str(self._blurs).lower()}\n", encoding="utf-8")
        socket = self.runtime / "wayland-test"
        self.start(
            program,
            "--virtual",
            *("--width", self.width),
            *("--height", self.height),
            *("--socket", socket.name),
            "--no-lockscreen",
            "--no-kactivities",
            environment={
                "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1",
                "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1",
                # Its effects and plugins are in the system's folder, which other programs of the session do not use.
                "XDG_DATA_DIRS": "/usr/share",
            },
        )
        until(socket.exists, "the compositor")
        self.environment["WAYLAND_DISPLAY"] = socket.name
        self.environment["QT_QPA_PLATFORM"] = "wayland"
        self._keyboard = FakeKeyboard(socket)
        until(self._takes_pictures, "its service for pictures")
        self._camera = self.start("/usr/bin/python3", "-B", SCREENSHOT)

    def _takes_pictures(self):
        place = ("--dest", "org.kde.KWin", "--object-path", "/org/kde/KWin/ScreenShot2")
        return "CaptureActiveScreen" in self.run("gdbus", "introspect", "--session", *place, check=False)

    def end(self):
        if hasattr(self, "_keyboard"):
            self._keyboard.close()
        super().end()

    def press(self, *keys):
        self._keyboard.press(*keys)

    def hang_up(self, picture):
        """Shows a picture file, as large as the screen, on the desktop."""
        # The reader needs the MIME database in the system's folder.
        settings = {"XDG_DATA_DIRS": "/usr/share"}
        self.start("swaybg", "--image", picture, "--mode", "center", environment=settings)

    def blur(self, begins):
        """Switches the effect on or off while KWin runs, and waits until its clients are notified."""
        method = "org.kde.kwin.Effects." + ("loadEffect" if begins else "unloadEffect")
        self.run("gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path", "/Effects", "--method", method, "blur")
        until(lambda: ("org_kde_kwin_blur_manager" in self.run("weston-info")) == begins, "the effect")

    def screenshot(self):
        path = self.home / "screenshot"
        self._camera.send(str(path))
        width, height, stride = (int(part) for part in self._camera.expect("picture").split()[1:])
        return Picture.from_bgra(width, height, stride, path.read_bytes())
