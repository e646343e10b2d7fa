"""The task-bar entry and the status item, in StatusNotifier and XEmbed trays."""

import json
from pathlib import Path

from harness import until
from harness.picture import is_near
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

# Qt's state change, a tenth of a second after the launcher lost the focus to no window.
LOGGED = {"QT_LOGGING_RULES": "qt.quick.focus.debug=true;amberquill.tray.debug=true"}
FOCUS_IS_LOST = 'qt.quick.focus: deactivated "Amberquill"'
TRAY_HOST = Path(__file__).parent / "harness" / "tray_host.py"
SETTINGS = (
    "Grid [5 × 4○, 6 × 4○, 7 × 5●, 8 × 5○, 8 × 6○, 9 × 6○], Background [Blue●, Purple○, Green○], "
    "Language [Automatic (System)●, English○, Italiano○, Español○, Français○, Deutsch○, 中文○, 日本語○], -, "
    "Sort by Name, Reset Layout…, Export Layout…, Import Layout…, Refresh App List, -, Open at Login"
)
SWITCH = 56  # the item's own entry in its menu, below the menu's upper edge
UPDATES = "Check for Updates…, Check for Updates Automatically*"
MENU = (
    f"Shortcut, -, Show in Dock*, Show in Menu Bar*, Settings [{SETTINGS}], -, About Amberquill, {UPDATES}, -, "
    "Quit Amberquill"
)


class Presence(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def write_preferences(self, **values):
        path = self.session.config / "Amberquill" / "preferences.json"
        path.parent.mkdir()
        path.write_text(json.dumps(values), encoding="utf-8")

    def begin_tray(self):
        tray = self.session.start("/usr/bin/python3", "-B", TRAY_HOST)
        tray.expect("ready")
        return tray

    def expect_menu(self, tray, wanted):
        """Expects the item's menu as the tray receives it."""
        tray.send("menu")
        self.assertEqual(tray.expect("menu ").removeprefix("menu ").replace("_", "").replace("\t", " "), wanted)

    def expect_shown(self):
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()

    def is_listed(self):
        return "_NET_WM_STATE_SKIP_TASKBAR" not in self.session.atoms(self.window, "_NET_WM_STATE")

    def test_a_first_start_has_a_task_bar_entry_and_no_status_item(self):
        tray = self.begin_tray()
        launcher = self.begin_shown_launcher(self.made)
        until(self.is_listed, "the task-bar entry")
        self.choose(self.IN_MENU_BAR)
        tray.expect("item")
        self.expect_no_other_window(launcher)
        # Now the entry before it can be chosen too.
        self.choose(self.IN_MENU_BAR + 1)
        tray.expect("item gone")
        self.end_launcher(launcher)
        self.assertEqual(tray.lines, ["ready", "item", "item gone"])

    def test_a_click_toggles_before_and_after_the_menu(self):
        self.write_preferences(showInMenuBar=True)
        tray = self.begin_tray()
        launcher = self.begin_shown_launcher(self.made)
        tray.expect("item")
        for _ in range(2):
            tray.send("activate")
            self.expect_hidden()
            self.expect_menu(tray, MENU)
            tray.send("activate")
            self.expect_shown()
        tray.send("icon")
        tray.expect("icon - 22x22 64x64")
        self.end_launcher(launcher)
        tray.expect("item gone")

    def test_its_menus_entries_work(self):
        self.write_preferences(showInMenuBar=True)
        tray = self.begin_tray()
        launcher = self.begin_shown_launcher(self.made)
        tray.expect("item")
        tray.send("choose Shortcut")
        self.expect_hidden()
        tray.send("choose Shortcut")
        self.expect_shown()
        tray.send("choose Show in Dock")
        until(lambda: not self.is_listed(), "the end of the task-bar entry")
        self.expect_shown()
        alone = MENU.replace("Show in Dock*, Show in Menu Bar*", "Show in Dock, Show in Menu Bar!*")
        self.expect_menu(tray, alone)
        tray.send("choose Deutsch")
        tray.send("menu")
        self.assertIn("Raster [", tray.expect("menu "))
        tray.send("choose Amberquill beenden")
        self.assertEqual(launcher.wait(), 0)
        self.assertEqual(launcher.lines, [])

    def begin_with_about_panel(self):
        """Returns the tray, the launcher, which is hidden, and the panel."""
        self.write_preferences(showInMenuBar=True)
        tray = self.begin_tray()
        launcher = self.begin_shown_launcher(self.made)
        tray.expect("item")
        tray.send("choose About Amberquill")
        panel = self.expect_dialog(launcher)
        self.expect_hidden()
        return tray, launcher, panel

    def test_the_about_panel_is_not_covered_by_the_launcher(self):
        tray, launcher, panel = self.begin_with_about_panel()
        # Another application is shown and ends.
        other = self.session.start("xmessage", "other")
        until(lambda: self.session.focused_window() != panel, "the other application's focus")
        other.kill()
        until(lambda: self.session.focused_window() == panel, "the panel's focus")
        self.session.run("xdotool", "windowactivate", "--sync", panel)
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [])
        self.session.press("Escape")
        self.expect_no_other_window(launcher)
        tray.send("activate")
        self.expect_shown()
        self.end_launcher(launcher)

    def test_the_launcher_works_above_the_about_panel(self):
        _, launcher, panel = self.begin_with_about_panel()
        for _ in range(2):
            self.session.press("ctrl+alt+space")
            self.window = self.session.window_of_class(WINDOW_CLASS)
            self.expect_focus()
            self.expect_page(self.made)
            self.session.press("Escape")
            self.expect_hidden()
            until(lambda: self.session.focused_window() == panel, "the panel's focus")
        self.session.press("ctrl+alt+space")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()
        self.session.type(self.made[0].name)
        self.session.press("Return")
        until(self.applications.started, "the start")
        self.assertEqual(self.applications.started(), f"{self.made[0].name}\n")
        self.end_launcher(launcher)

    def test_a_late_or_restarted_tray_has_it(self):
        self.write_preferences(showInMenuBar=True)
        launcher = self.begin_shown_launcher(self.made)
        self.act("hide")
        self.expect_hidden()
        for _ in range(2):
            tray = self.begin_tray()
            tray.expect("item")
            tray.send("activate")
            self.expect_shown()
            tray.send("activate")
            self.expect_hidden()
            tray.kill()
        self.end_launcher(launcher)

    def begin_xembed_tray(self, *options):
        """Starts an XEmbed tray in the lower left corner."""
        tray = self.session.start("trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request", *options)
        window = self.session.window_of_class("trayer")
        return tray, window

    def expect_item_in(self, window):
        """Waits until the tray holds the item. Returns the item's place."""

        def place():
            listed = self.session.run("xwininfo", "-id", window, "-tree", check=False)
            ids = [line.split()[0] for line in listed.splitlines() if '"amberquill"' in line.lower()]
            return self.session.geometry(ids[0]) if ids else None

        try:
            return until(place, "the item in the tray")
        except AssertionError as error:
            windows = self.session.run("xwininfo", "-root", "-tree", check=False)
            raise AssertionError(f"{error}; the windows:\n{windows}") from None

    def begin_hidden_with_xembed_tray(self, **settings):
        """Returns the launcher, and the point in the middle of its item."""
        self.write_preferences(showInMenuBar=True)
        _, window = self.begin_xembed_tray()
        launcher = self.begin_shown_launcher(self.made, **{**LOGGED, **settings})
        self.act("hide")
        self.expect_hidden()
        item = self.expect_item_in(window)
        return launcher, (item.x + item.width // 2, item.y + item.height // 2)

    def test_a_real_click_in_an_xembed_tray_shows_it(self):
        launcher, middle = self.begin_hidden_with_xembed_tray()
        self.session.click(*middle)
        self.expect_shown()
        self.assertEqual(launcher.terminate(), 0)

    def test_real_clicks_in_an_xembed_tray_open_the_menu(self):
        launcher, middle = self.begin_hidden_with_xembed_tray()
        # Qt closes menus when it believes that the focus is lost.
        launcher.expect(FOCUS_IS_LOST)
        alone = self.other_windows(launcher)
        for button, key in ((1, "ctrl"), (3, None)):
            if key:
                self.session.run("xdotool", "keydown", key)
            self.session.click(*middle, button=button)
            until(lambda: self.other_windows(launcher) - alone, "the menu")
            if key:
                # Not earlier: a busy launcher reads the state of the keys late.
                self.session.run("xdotool", "keyup", key)
            self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [])
            self.session.press("Escape")
            until(lambda: not self.other_windows(launcher) - alone, "its end")
        # With another button than the last click, so that it is not a double click.
        self.session.click(*middle)
        self.expect_shown()
        self.assertEqual(launcher.terminate(), 0)

    @staticmethod
    def tinted(level):
        """Options of a tray that is grey of this level."""
        return "--transparent", "true", "--alpha", "0", "--tint", f"0x{level:02x}{level:02x}{level:02x}"

    def expect_symbol(self, window, panel, symbol):
        """Waits until the red levels of the item's pixels range from the panel's to the symbol's."""
        levels = []

        def is_seen():
            item = self.expect_item_in(window)
            area = item.x, item.y, item.width, item.height
            levels[:] = sorted(red for red, _, _ in self.session.screenshot().colours(*area))
            return all(abs(a - b) < 3 for a, b in zip((levels[0], levels[-1]), sorted((panel, symbol))))

        try:
            until(is_seen, f"the symbol on {panel}")
        except AssertionError as error:
            raise AssertionError(f"{error}; levels of red there: {levels}") from None

    def test_the_symbol_in_an_xembed_tray_contrasts_with_light_and_dark_panels(self):
        self.write_preferences(showInMenuBar=True)
        launcher = self.begin_shown_launcher(self.made)
        self.act("hide")
        self.expect_hidden()
        for panel, symbol in ((0xF0, 0x24), (0x20, 0xFF)):
            tray, window = self.begin_xembed_tray(*self.tinted(panel))
            self.expect_symbol(window, panel, symbol)
            tray.kill()
            until(lambda: not self.session.windows_of_class("trayer"), "the tray's end")
        self.end_launcher(launcher)

    def expect_xembed_item_turned_off(self, choose):
        """Turns the item off in its own menu; `choose` receives the menu's place."""
        # Freed memory is overwritten, so that a use after free is detected.
        launcher, middle = self.begin_hidden_with_xembed_tray(MALLOC_PERTURB_="165")
        # Qt closes menus when it believes that the focus is lost.
        launcher.expect(FOCUS_IS_LOST)
        alone = self.other_windows(launcher)
        self.session.click(*middle, button=3)
        menu = until(lambda: self.other_windows(launcher) - alone, "the menu").pop()
        choose(until(lambda: self.session.geometry(menu), "its place"))
        until(lambda: not self.other_windows(launcher), "the end of the menu and of the item")
        self.session.press("ctrl+alt+space")
        self.expect_shown()
        self.assertEqual(launcher.terminate(), 0)

    def test_an_item_in_an_xembed_tray_is_turned_off_in_its_menu_by_keys(self):
        # After the entry of the keys and that of the task bar.
        self.expect_xembed_item_turned_off(lambda _: self.session.press("Down", "Down", "Down", "Return"))

    def test_an_item_in_an_xembed_tray_is_turned_off_in_its_menu_by_a_click(self):
        self.expect_xembed_item_turned_off(lambda menu: self.session.click(menu.x + 60, menu.y + SWITCH))

    def test_the_items_menu_opens_while_the_launcher_stays_up(self):
        left, right = self.session.split_into_monitors()
        self.write_preferences(showInMenuBar=True)
        _, window = self.begin_xembed_tray()
        self.session.move_pointer(right.x + 300, 300)
        launcher = self.begin_launcher()
        self.expect_shown()
        until(lambda: self.session.geometry(self.window) == right, "the launcher on the right")
        item = self.expect_item_in(window)
        alone = self.other_windows(launcher)
        self.session.click(item.x + item.width // 2, item.y + item.height // 2, button=3)
        menu = until(lambda: self.other_windows(launcher) - alone, "the menu").pop()
        place = until(lambda: self.session.geometry(menu), "its place")
        self.assertLessEqual(place.x + place.width, left.width)
        corner = place.x + 5, place.y + place.height - 5
        until(lambda: is_near(self.session.screenshot().at(*corner), (255, 255, 255), 40), "the menu above all")
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [self.window])
        self.session.press("Escape")
        until(lambda: not self.other_windows(launcher) - alone, "its end")
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [self.window])
        until(lambda: self.session.focused_window() == self.window, "the focus")
        self.end_launcher(launcher)

    def test_a_late_or_restarted_xembed_tray_has_it(self):
        self.write_preferences(showInMenuBar=True)
        launcher = self.begin_shown_launcher(self.made)
        self.act("hide")
        self.expect_hidden()
        for _ in range(2):
            tray, window = self.begin_xembed_tray()
            self.expect_item_in(window)
            tray.kill()
            until(lambda: not self.session.windows_of_class("trayer"), "the tray's end")
        self.end_launcher(launcher)
