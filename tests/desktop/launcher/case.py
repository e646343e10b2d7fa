"""The launcher in a session, and checks of the screen."""

import json
import os
import subprocess

from harness import DesktopTestCase, until
from harness.picture import is_near
from launcher.grid import SLOTS, Grid

WINDOW_CLASS = "org.amberquill.Amberquill"


def is_shown(picture, grid, slot, colour):
    """Whether an icon of that colour is in its place and has the right size."""
    return all(is_near(picture.at(*point), colour, 3) for point in grid.icon_points(slot)) and not any(
        is_near(picture.at(*point), colour, 3) for point in grid.points_around_icon(slot)
    )


class LauncherTestCase(DesktopTestCase):
    """Sets `session` and `applications` in its setUp."""

    @classmethod
    def install(cls, prefix):
        cmake = os.environ.get("AMBERQUILL_CMAKE", "cmake")
        subprocess.run([cmake, "--install", cls.build, "--prefix", prefix], check=True, capture_output=True)

    def begin_launcher(self, **settings):
        """Starts it in the session's environment, with settings of its own."""
        return self.session.start(self.build / "amberquill", environment=settings)

    def act(self, action):
        """Calls an action of the running launcher over the bus: "show", "hide" or "toggle"."""
        self.session.run(
            *("gdbus", "call", "--session", "--dest", WINDOW_CLASS, "--object-path", "/org/amberquill/Amberquill"),
            *("--method", "org.freedesktop.Application.ActivateAction", action, "[]", "{}"),
        )

    def end_launcher(self, launcher):
        """Ends it like a session does and expects that it printed nothing."""
        self.assertEqual(launcher.terminate(), 0)
        self.assertEqual(launcher.lines, [])

    @property
    def grid(self):
        return Grid(self.session.width, self.session.height)

    @property
    def layout_file(self):
        return self.session.data / "Amberquill" / "layout.json"

    def items(self):
        """The items of the layout file: paths, and for each folder the list of its paths."""
        return [
            item["app"]["_0"] if "app" in item else item["folder"]["_0"]["apps"]
            for item in json.loads(self.layout_file.read_bytes())
        ]

    def layout(self):
        """The paths of the applications in the layout file, in order. It holds no folders here."""
        return paths_in(self.layout_file.read_bytes())

    def wrong_places(self, applications, page=0):
        """The wrong places of a page, with the colours there."""
        picture = self.session.screenshot()
        self.assertEqual((picture.width, picture.height), (self.session.width, self.session.height))
        shown = applications[page * SLOTS : (page + 1) * SLOTS]
        colours = [application.colour for application in applications if application.colour]
        wrong = {}
        for slot in range(SLOTS):
            wanted = shown[slot].colour if slot < len(shown) else None
            if wanted:
                right = is_shown(picture, self.grid, slot, wanted)
            else:
                right = not any(is_near(picture.at(*self.grid.icon_points(slot)[0]), each, 3) for each in colours)
            if not right:
                wrong[slot] = [picture.at(*point) for point in self.grid.icon_points(slot)]
        return wrong

    def expect_page(self, applications, page=0):
        """Waits until each icon of a page is in its place and all other places are empty."""
        wrong = {}

        def is_right():
            nonlocal wrong
            wrong = self.wrong_places(applications, page)
            return not wrong

        try:
            until(is_right, f"page {page + 1}")
        except AssertionError as error:
            raise AssertionError(f"{error}; colours in wrong places: {wrong}") from None


def paths_in(layout):
    """The paths in a layout of applications only."""
    items = json.loads(layout)
    if not all(item.keys() == {"app"} and item["app"].keys() == {"_0"} for item in items):
        raise AssertionError(f"not a list of applications: {items}")
    return [item["app"]["_0"] for item in items]
