"""A user of the launcher: random actions with real keys and a real pointer."""

import json
import math
import time

from harness.waiting import until
from harness.xlib import screen_pixels
from harness.xorg import mode_line
from launcher.case import WINDOW_CLASS
from launcher.grid import Grid
from launcher.on_x11 import OnX11

PATIENCE = 120  # seconds: sanitizers make everything slow
SHORT_PATIENCE = 30
STILL = 0.15  # seconds without a change that mean rest: longer than a frame takes
WHEEL_PAUSE = 0.32  # seconds: the wheel turns no two pages in less
SIZES = ((1920, 1080), (1280, 720), (1600, 900), (1024, 768), (2560, 1440), (1366, 768))
GRIDS = ((5, 4), (6, 4), (7, 5), (8, 5), (8, 6), (9, 6))  # in the order of the menu
USUAL_GRID = GRIDS.index((7, 5))
THEMES, LANGUAGES = 3, 8
LARGEST = max(SIZES)
DIALOGS = (OnX11.RESET, OnX11.EXPORT, OnX11.IMPORT, OnX11.CHECK_FOR_UPDATES)


class SoakUser:
    def __init__(self, session, applications, launcher, chance):
        self._session = session
        self._applications = applications
        self._launcher = launcher
        self._chance = chance
        self._grid = GRIDS[USUAL_GRID]
        self._is_split = False
        self.done = {}  # how often each thing was done
        self.faults = []
        for size in SIZES:
            session.run("xrandr", "--newmode", self._mode(size), *mode_line(*size).split())
            session.run("xrandr", "--addmode", "screen", self._mode(size))
        (session.home / "Desktop").mkdir()

    # Window.

    def show(self):
        self._ask("show")
        self.expect_shown()

    def _rest(self):
        """Waits until nothing moves on the screen."""
        before = None

        def is_still():
            nonlocal before
            time.sleep(STILL)
            earlier, before = before, screen_pixels(self._session.display, *self._size())
            return earlier == before

        until(is_still, "the end of all movement", PATIENCE)

    def hide(self):
        self._close_other_windows()
        self._ask("hide")
        until(lambda: not self._window(), "the launcher's end", PATIENCE)

    def _ask(self, action):
        # A direct bus call: starting the program for that would take a second under a sanitizer.
        self._session.run(
            *("gdbus", "call", "--session", "--dest", WINDOW_CLASS, "--object-path", "/org/amberquill/Amberquill"),
            *("--method", "org.freedesktop.Application.ActivateAction", action, "[]", "{}"),
            patience=PATIENCE,
        )

    def _window(self):
        windows = self._session.windows_of_class(WINDOW_CLASS)
        return windows[0] if windows else None

    def expect_shown(self):
        """Waits until the launcher is up and has the focus."""

        def has_focus():
            window = self._window()
            return window is not None and self._session.focused_window() == window

        until(has_focus, "the launcher's focus", PATIENCE)

    def _other_windows(self):
        window = {self._window()}
        return set(self._session.windows("--pid", self._launcher.pid)) - window

    def _close_other_windows(self):
        def are_closed():
            if self._other_windows():
                self._session.press("Escape")
                time.sleep(0.1)
                return False
            return True

        until(are_closed, "the end of menus and dialogs", PATIENCE)

    def _begin(self):
        """Waits until the launcher is up and at rest, without other windows."""
        self._close_other_windows()
        self.show()
        self._rest()

    def _place(self):
        window = self._window()
        return until(lambda: self._session.geometry(window), "the launcher's place", PATIENCE)

    # Places.

    def _layout(self):
        path = self._session.data / "Amberquill" / "layout.json"
        return json.loads(path.read_bytes())

    def _slots(self):
        return self._grid[0] * self._grid[1]

    def _icon(self, slot, place=None):
        place = place or self._place()
        x, y = Grid(place.width, place.height, *self._grid).icon_centre(slot)
        return place.x + round(x), place.y + round(y)

    def _go_to_page(self, page, pages):
        """Clicks the page's dot."""
        place = self._place()
        pitch, dot, above_bottom = 24, 18, 26
        left = place.x + place.width / 2 - (pages * pitch - 6) / 2
        x = left + page * pitch + dot / 2
        if place.x < x < place.x + place.width:
            self._session.click(round(x), place.y + place.height - above_bottom - dot // 2)
            self._rest()

    def _expect_hidden(self, way):
        """Expects it to hide. Otherwise records the failure and hides it over the bus."""
        try:
            until(lambda: not self._window(), "the launcher's end", SHORT_PATIENCE)
        except AssertionError:
            self.faults.append(f"it was not hidden by: {way}, {time.strftime('%X')}")
            self.hide()

    def _page_count(self):
        return max(1, math.ceil(len(self._layout()) / self._slots()))

    # Actions.

    def do(self, name):
        getattr(self, name)()
        self.done[name] = self.done.get(name, 0) + 1

    def page_through(self):
        """Turns through all pages, forward and back."""
        self._begin()
        pages = self._page_count()
        self._go_to_page(0, pages)
        for direction in (1, -1):
            for _ in range(pages):
                self._turn(direction)
        if not self._window():
            raise AssertionError("the launcher went while its pages were turned")

    def turn_pages(self):
        self._begin()
        pages = self._page_count()
        self._go_to_page(self._chance.randrange(pages), pages)
        direction = self._chance.choice((1, -1))
        for _ in range(self._chance.randrange(3, 12)):
            self._turn(direction)

    def _turn(self, direction):
        if self._chance.random() < 0.5:
            self._session.wheel(direction)
        else:
            self._session.press("Right" if direction > 0 else "Left")
        time.sleep(WHEEL_PAUSE)

    def change_monitors(self):
        """Sets another size of the screen or two monitors, while the launcher is shown or hidden."""
        if self._chance.random() < 0.5:
            self._begin()
        elif self._window():
            self.hide()
        self._join()
        self._is_split = self._chance.random() < 0.3
        if self._is_split:
            width, height = self._size()
            left = round(width * self._chance.choice((0.4, 0.5, 0.6)))
            parts = (("left", left, 0, "screen"), ("right", width - left, left, "none"))
            for name, part, x, output in parts:
                geometry = f"{part}/{part // 4}x{height}/{height // 4}+{x}+0"
                self._session.run("xrandr", "--setmonitor", name, geometry, output)
        else:
            self._resize(self._chance.choice([size for size in SIZES if size != self._size()]))
        width, height = self._size()
        self._session.move_pointer(self._chance.randrange(width), height // 2)
        self._begin()
        self._rest()

    @staticmethod
    def _mode(size):
        return f"screen{size[0]}x{size[1]}"

    def usual_screen(self):
        """One monitor of the usual size."""
        self._join()
        self._resize(SIZES[0])

    def _join(self):
        if self._is_split:
            for name in ("right", "left"):
                self._session.run("xrandr", "--delmonitor", name)
        self._is_split = False

    def _size(self):
        return self._session.width, self._session.height

    def _resize(self, size):
        self._session.run("xrandr", "--output", "screen", "--mode", self._mode(size))
        self._session.width, self._session.height = size

    def install_and_remove(self):
        """Adds some applications, waits until they are listed, and removes them."""
        if self._chance.random() < 0.7:
            self._begin()
        numbers = self._applications.add(self._chance.randrange(10, 40))
        paths = {str(self._applications.path(number)) for number in numbers}
        until(lambda: paths <= self._listed(), "the new applications", PATIENCE)
        self._begin()
        pages = self._page_count()
        self._go_to_page(pages - 1, pages)
        self._applications.remove(numbers)
        until(lambda: not paths & self._listed(), "the end of the removed applications", PATIENCE)

    def _listed(self):
        paths = set()
        for item in self._layout():
            paths.update([item["app"]["_0"]] if "app" in item else item["folder"]["_0"]["apps"])
        return paths

    def drag(self):
        """Drags an icon to another place of its page, onto another icon, or to the next page."""
        self._begin()
        pages = self._page_count()
        self._go_to_page(self._chance.randrange(min(pages, 6)), pages)
        before = self._layout()
        place = self._place()
        taken, target = self._chance.sample(range(self._slots()), 2)
        self._session.take(*self._icon(taken, place))
        time.sleep(0.05)
        x, y = self._icon(target, place)
        self._session.move_pointer((x + self._icon(taken, place)[0]) // 2, y)
        aim = self._chance.random()
        if aim < 0.2:
            self._session.move_pointer(place.x + place.width - 8, place.y + place.height // 2)
            time.sleep(1.2)
            self._session.move_pointer(x, y + 20)
        else:
            reach = Grid(place.width, place.height, *self._grid).icon_size
            self._session.move_pointer(x if aim < 0.5 else x + round(reach * 0.7), y)
        time.sleep(0.7)
        self._session.drop()
        self._rest()
        if self._layout() != before:
            self.done["layouts changed by a drag"] = self.done.get("layouts changed by a drag", 0) + 1

    def open_folder(self):
        """Opens a folder, renames it, and sometimes drags an application out of it."""
        self._begin()
        items = self._layout()
        folders = [index for index, item in enumerate(items) if "folder" in item]
        if not folders:
            self.drag()
            return
        index = self._chance.choice(folders)
        self._go_to_page(index // self._slots(), self._page_count())
        place = self._place()
        self._session.click(*self._icon(index % self._slots(), place))
        self._rest()
        if self._chance.random() < 0.3:
            self._session.click(place.x + place.width // 2, self._title_height(place, items[index]))
            self._session.type(f" {self._chance.randrange(100)}")
            self._session.press("Return")
        if self._chance.random() < 0.5:
            middle = place.x + place.width // 2, place.y + place.height // 2
            self._session.take(*middle)
            self._session.move_pointer(place.x + 60, place.y + 140)
            time.sleep(0.9)
            self._session.drop()
            self._rest()
        self._session.press("Escape")
        self._rest()

    def _title_height(self, place, item):
        count = len(item["folder"]["_0"]["apps"])
        rows = max(1, math.ceil(count / max(4, min(count, self._grid[0]))))
        panel = rows * (place.height - 192) / self._grid[1] + 98
        return place.y + round((place.height - panel) / 2 + 10 + 39)

    def search(self):
        """Searches for part of a name; then clears the search, hides the launcher, or starts the result."""
        self._begin()
        name = self._applications.name(self._chance.randrange(2000))
        for letter in name[: self._chance.randrange(1, len(name) + 1)]:
            self._session.type(letter)
            time.sleep(0.05)
        self._rest()
        end = self._chance.random()
        if end < 0.4:
            self._session.press("Escape")
        elif end < 0.7:
            self._session.press("Return")
            self._rest()
        else:
            self.hide()

    def launch(self):
        self._begin()
        self._session.click(*self._icon(self._chance.randrange(self._slots())))
        self._rest()

    def browse_menu(self):
        """Opens a submenu and closes it again."""
        self._begin()
        self._session.press("Menu", *["Down"] * self._chance.randrange(3), "Right")
        time.sleep(0.2)
        self._session.press(*["Down"] * self._chance.randrange(1, 5))
        time.sleep(0.1)
        self._close_other_windows()

    def open_dialog(self, entry=None):
        """Opens the dialog of a reset, an export or an import, and cancels it, or exports."""
        self._begin()
        entry = self._chance.choice(DIALOGS) if entry is None else entry
        self._choose(entry)
        until(lambda: self._other_windows(), "the dialog", PATIENCE)
        time.sleep(0.3)
        if entry == OnX11.EXPORT:
            self._session.press("Return")
            time.sleep(0.3)
        self._close_other_windows()

    def sort(self):
        self._begin()
        self._choose(OnX11.SORT)
        self._rest()

    def change_grid(self, number=None):
        self._begin()
        number = self._chance.randrange(len(GRIDS)) if number is None else number
        self._choose(OnX11.GRID, number)
        self._grid = GRIDS[number]
        self._rest()

    def usual_grid(self):
        self.change_grid(USUAL_GRID)

    def change_theme(self, number=None):
        self._begin()
        self._choose(OnX11.BACKGROUND, self._chance.randrange(THEMES) if number is None else number)
        self._rest()

    def change_language(self, number=None):
        self._begin()
        self._choose(OnX11.LANGUAGE, self._chance.randrange(LANGUAGES) if number is None else number)
        self._rest()

    def see_everything(self):
        """Uses each choice and each dialog once, so that everything loaded at first use is loaded."""
        for number in range(len(GRIDS)):
            self.change_grid(number)
        for number in range(THEMES):
            self.change_theme(number)
        for number in range(LANGUAGES):
            self.change_language(number)
        for entry in DIALOGS:
            self.open_dialog(entry)
        for size in SIZES:
            self._resize(size)
            self._begin()
            self._rest()

    def usual_state(self):
        """Restores the first page and the usual screen, grid and language, so that measurements are comparable."""
        self.usual_screen()
        self.usual_grid()
        self.change_language(0)
        self._go_to_page(0, self._page_count())

    def _choose(self, entry, sub_entry=None):
        keys = ["Menu", *["Down"] * entry]
        if sub_entry is not None:
            keys += ["Right", *["Down"] * sub_entry]
        self._session.press(*keys, "Return")

    def come_and_go(self):
        """Shows and hides it by the chord, the bus, a click on empty space, or Escape."""
        # A drag may have made a folder and opened it, which Escape and clicks would only close.
        self.hide()
        self._begin()
        for _ in range(3):
            way = self._chance.choice(("chord", "Escape", "click", "bus"))
            if way == "chord":
                # Before the launcher knows that it has the focus, the chord requests the focus.
                self._rest()
                self._session.press("ctrl+alt+space")
            elif way == "Escape":
                self._session.press("Escape")
            elif way == "click":
                place = self._place()
                self._session.click(place.x + 8, place.y + place.height // 2)
            else:
                # A toggle right after a chord would count as the same press.
                self._ask("hide")
            self._expect_hidden(way)
            # With or without its previous backdrop.
            time.sleep(self._chance.choice((0.0, 0.1, 0.5, 1.0)))
            if self._chance.random() < 0.5:
                self._session.press("ctrl+alt+space")
                self.expect_shown()
            else:
                self.show()
            if self._chance.random() < 0.5:
                self._rest()
