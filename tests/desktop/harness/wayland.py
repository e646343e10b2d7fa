"""Wayland sessions on Weston and on Sway without a screen."""

import json
import os

from harness.picture import Picture
from harness.session import Session
from harness.waiting import until


def start_weston(session, backend, *arguments):
    """Starts Weston, as large as the session, and makes the session's programs its clients."""
    socket = "wayland-test"
    session.start(
        "weston",
        f"--backend={backend}",
        "--use-pixman",
        "--no-config",
        "--idle-time=0",
        f"--socket={socket}",
        f"--width={session.width}",
        f"--height={session.height}",
        *arguments,
    )
    until((session.runtime / socket).exists, "the compositor")
    session.environment["WAYLAND_DISPLAY"] = socket
    session.environment["QT_QPA_PLATFORM"] = "wayland"


class WestonSession(Session):
    def __init__(self, width=1280, height=720, environment=None):
        super().__init__(environment)
        self.width = width
        self.height = height

    def begin(self):
        start_weston(self, "headless-backend.so", "--debug")

    def screenshot(self):
        for old in self.home.glob("wayland-screenshot-*.png"):
            old.unlink()
        self.run("weston-screenshooter")
        return Picture.read(next(self.home.glob("wayland-screenshot-*.png")))


class SwaySession(Session):
    """A tiling compositor with any number of screens side by side. It takes keys, but has no pointer."""

    NOBODY = 65534

    def __init__(self, screens=1, environment=None):
        super().__init__(environment)
        self._screens = screens

    def begin(self):
        configuration = self.folder / "sway.conf"
        configuration.write_text("output * bg #804020 solid_color\ndefault_border none\n", encoding="utf-8")
        settings = {
            "WLR_BACKENDS": "headless",
            "WLR_HEADLESS_OUTPUTS": str(self._screens),
            "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_RENDERER": "pixman",
            # swaybg needs the MIME database in the system's folder.
            "XDG_DATA_DIRS": "/usr/share",
        }
        command = ["sway", "-c", configuration]
        if os.geteuid() == 0:
            # It refuses to run as root; the user who runs the tests may use its sockets nevertheless.
            for path in (self.folder, *self.folder.rglob("*")):
                os.chown(path, self.NOBODY, self.NOBODY)
            command[:0] = ["setpriv", f"--reuid={self.NOBODY}", f"--regid={self.NOBODY}", "--clear-groups"]
        self.start(*command, environment=settings)
        socket = until(lambda: self._sockets("wayland-*"), "the compositor")[0]
        self.environment["SWAYSOCK"] = str(until(lambda: self._sockets("sway-ipc.*"), "its control socket")[0])
        self.environment["WAYLAND_DISPLAY"] = socket.name
        self.environment["QT_QPA_PLATFORM"] = "wayland"
        until(lambda: len(self.ask("get_outputs")) == self._screens, "its screens")
        # A keyboard that stays plugged in: clients lose the first keys of a new keyboard.
        hour = 3_600_000
        self.start("wtype", "-s", hour, "a")
        until(lambda: self.ask("get_inputs"), "its keyboard")

    def _sockets(self, pattern):
        return [path for path in self.runtime.glob(pattern) if path.is_socket()]

    def ask(self, question):
        """Sway's answer to a request of its control protocol, for example "get_tree"."""
        return json.loads(self.run("swaymsg", "--raw", "--type", question))

    def tell(self, *command):
        self.run("swaymsg", "--", *command)

    def hang_up(self, picture, screen="*"):
        """Shows a picture file, as large as the screen, on the desktop."""
        self.tell("output", screen, "bg", str(picture), "stretch")

    def screen_of(self, application):
        """The name of the screen with the application's window, or None."""

        def find(node, screen):
            screen = node["name"] if node["type"] == "output" else screen
            if node.get("app_id") == application:
                return screen
            return next(filter(None, (find(child, screen) for child in node["nodes"])), None)

        return find(self.ask("get_tree"), None)

    def floating_windows(self):
        """The titles of the windows that lie above the tiled ones: dialogs."""

        def find(node):
            for child in node["nodes"]:
                yield from find(child)
            yield from (child["name"] for child in node["floating_nodes"] if child["type"] == "floating_con")

        return list(find(self.ask("get_tree")))

    def focused_window(self):
        """The title of the window with the focus, or None."""

        def find(node):
            if node["focused"] and node["type"] in ("con", "floating_con"):
                return node["name"]
            return next(filter(None, (find(child) for child in (*node["nodes"], *node["floating_nodes"]))), None)

        return find(self.ask("get_tree"))

    def type(self, text):
        self.run("wtype", text)

    def screenshot(self, screen=None):
        """A picture of all screens, or of one."""
        return Picture.from_ppm(self.run_raw("grim", "-t", "ppm", *(["-o", screen] if screen else []), "-"))
