"""Applications with icons of all kinds, and checks of their display."""

import os

from harness import bad_icons, until
from launcher.applications import Application, png
from launcher.case import WINDOW_CLASS, is_shown
from launcher.grid import SLOTS
from launcher.on_x11 import OnX11
from launcher.workers import is_running, workers_of

STAND_IN = (10, 200, 120)  # the theme's icon of programs; no application's
UNKNOWN = None  # decoders may show any part of half a picture
END = 1  # seconds that an end may take, even during decoding
DECODED = 100  # seconds for decoding all icons on a busy machine: 20 slow ones by two processes, ten each


class Icons(OnX11):
    """Starts without applications. `made` are those that a case adds, in the order on the pages."""

    def setUp(self):
        self.begin_session(1280, 720)
        self.folder = self.session.home / "icons"
        self.folder.mkdir()
        self.made = []
        self.theme = self.session.data / "icons" / "hicolor" / "256x256" / "apps"
        self.stand_in = self.theme / "application-x-executable.png"
        self.stand_in.write_bytes(png(STAND_IN))

    def begin_launcher(self, **settings):
        # Root can read files without permissions, unless it drops that capability.
        dropped = ("setpriv", "--bounding-set", "-dac_override,-dac_read_search") if os.geteuid() == 0 else ()
        return self.session.start(*dropped, self.program, environment=settings)

    @property
    def program(self):
        return self.build / "amberquill"

    def add(self, name, icon, colour):
        """Adds an entry with that icon, a file's path, and the expected colour. Entries are shown in order."""
        name = f"{len(self.made) + 1} {name}"
        path = self.applications.entries / f"{len(self.made)}.desktop"
        self.applications.write_entry(path, name, icon)
        self.made.append(Application(name, path, colour))

    def write(self, name, data):
        path = self.folder / name
        path.write_bytes(data)
        return path

    def add_good(self):
        number = len(self.made) + 1
        self.made.append(self.applications.add_entry(f"{number} good", f"good-{number}"))

    def add_slow(self, count):
        """Entries with drawings that take minutes. Returns the files' paths."""
        drawing = bad_icons.curves(4000)
        paths = [self.write(f"slow-{len(self.made) + number}.svg", drawing) for number in range(count)]
        for path in paths:
            self.add("slow", path, STAND_IN)
        return paths

    def wrong_on_page(self, page, slots=range(SLOTS)):
        picture = self.session.screenshot()
        shown = self.made[page * SLOTS : (page + 1) * SLOTS]
        return [
            (application.name, picture.at(*self.grid.icon_points(slot)[0]))
            for slot, application in enumerate(shown)
            if slot in slots
            and application.colour is not UNKNOWN
            and not is_shown(picture, self.grid, slot, application.colour)
        ]

    def expect_decoded(self, page):
        wrong = []

        def is_right():
            wrong[:] = self.wrong_on_page(page)
            return not wrong

        try:
            until(is_right, f"the icons of page {page + 1}", DECODED)
        except AssertionError as error:
            raise AssertionError(f"{error}; wrong: {wrong}") from None

    def expect_all_decoded(self):
        """Turns all the pages."""
        for page in range((len(self.made) + SLOTS - 1) // SLOTS):
            if page:
                self.session.press("Right")
            self.expect_decoded(page)

    def begin_shown(self, **settings):
        launcher = self.begin_launcher(**settings)
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()
        return launcher

    def recolour(self, place, colour):
        """Sets the expected colour of the application at that place."""
        self.made[place] = Application(self.made[place].name, self.made[place].path, colour)

    def undecodable(self):
        """The content of the list of undecodable files."""
        path = self.session.cache / "Amberquill" / "undecodable"
        return path.read_text(encoding="utf-8") if path.exists() else ""

    def expect_end(self, launcher):
        workers = workers_of(launcher)
        launcher.process.terminate()
        self.assertEqual(launcher.wait(END), 0)
        self.assertEqual(launcher.lines, [])
        until(lambda: not any(map(is_running, workers)), "the workers' end")

    def expect_rest(self, launcher):
        until(lambda: not workers_of(launcher), "the workers' end")
