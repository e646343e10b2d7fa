"""The launcher's menu, by mouse and by keys."""

import json

from harness import until
from harness.picture import is_near
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

MENU_BUTTON = 466, 62
WHITE = 255, 255, 255


class Menus(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number:02}", f"e{number}") for number in range(1, 13)]

    def preferences(self):
        path = self.session.config / "Amberquill" / "preferences.json"
        return json.loads(path.read_bytes()) if path.exists() else {}

    def expect_menu(self, launcher):
        """Waits for the menu above the launcher. Returns its place."""
        window = until(lambda: self.other_windows(launcher), "the menu").pop()
        place = until(lambda: self.session.geometry(window), "its place")
        corner = place.x + 5, place.y + place.height - 5
        until(lambda: is_near(self.session.screenshot().at(*corner), WHITE, 40), "the menu above the launcher")
        return place

    def expect_still_up(self):
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [self.window])
        self.expect_focus()
        self.expect_page(self.made)

    def test_the_button_opens_it_at_the_pointer_and_escape_closes_only_the_menu(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.click(*MENU_BUTTON)
        place = self.expect_menu(launcher)
        self.assertEqual((place.x, place.y), MENU_BUTTON)
        self.session.press("Escape")
        self.expect_no_other_window(launcher)
        self.expect_still_up()
        self.end_launcher(launcher)

    def test_the_menu_key_and_f10_open_it_below_its_button(self):
        launcher = self.begin_shown_launcher(self.made)
        for key in ("Menu", "F10", "shift+F10"):
            self.session.press(key)
            place = self.expect_menu(launcher)
            self.assertLess(abs(place.x - 444), 3)
            self.assertLess(abs(place.y - 84), 3)
            self.session.press("Escape")
            self.expect_no_other_window(launcher)
        self.expect_still_up()
        self.end_launcher(launcher)

    def test_a_click_beside_it_closes_only_the_menu(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.click(*MENU_BUTTON)
        self.expect_menu(launcher)
        self.session.click(1200, 500)
        self.expect_no_other_window(launcher)
        self.expect_still_up()
        self.end_launcher(launcher)

    def test_it_closes_with_the_launcher(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press("Menu", "Right")
        self.expect_menu(launcher)
        self.act("toggle")
        self.expect_hidden()
        self.expect_no_other_window(launcher)
        self.act("toggle")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_still_up()
        self.session.press("Escape")
        self.expect_hidden()
        self.end_launcher(launcher)

    def test_grid_background_and_language_are_chosen_by_keys(self):
        launcher = self.begin_shown_launcher(self.made)
        self.choose(self.GRID, 3)
        until(lambda: self.preferences() == {"gridColumns": 8, "gridRows": 5}, "the grid of 8 by 5")
        self.choose(self.GRID, 2)
        until(lambda: self.preferences() == {"gridColumns": 7, "gridRows": 5}, "the grid of 7 by 5")
        self.expect_page(self.made)
        self.choose(self.BACKGROUND, 2)
        until(lambda: self.preferences().get("backgroundTheme") == "green", "the green background")
        # The menu is in German now; its keys are the same.
        self.choose(self.LANGUAGE, 5)
        until(lambda: self.preferences().get("appLanguage") == "de", "German")
        self.choose(self.LANGUAGE, 0)
        until(lambda: self.preferences().get("appLanguage") == "system", "the system's language")
        self.expect_still_up()
        self.end_launcher(launcher)

    def test_the_task_bar_entry_cannot_be_turned_off_alone_and_says_why(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.click(*MENU_BUTTON)
        place = self.expect_menu(launcher)
        menu = self.other_windows(launcher)
        # Its entries by their distance from the menu's upper edge.
        dock = 273
        self.session.move_pointer(place.x + 80, place.y + dock)
        self.session.move_pointer(place.x + 82, place.y + dock)
        until(lambda: self.other_windows(launcher) - menu, "the tool tip")
        self.session.run("xdotool", "click", 1)
        self.session.press("Escape")
        self.expect_no_other_window(launcher)
        self.assertEqual(self.preferences(), {})
        self.expect_still_up()
        self.end_launcher(launcher)

    def test_the_chords_entry_hides_the_launcher(self):
        launcher = self.begin_shown_launcher(self.made)
        self.choose(self.TOGGLE)
        self.expect_hidden()
        self.end_launcher(launcher)

    def test_the_last_entry_quits(self):
        launcher = self.begin_shown_launcher(self.made)
        self.choose(self.QUIT)
        self.assertEqual(launcher.wait(), 0)
        self.assertEqual(launcher.lines, [])

    def test_starting_at_login_is_read_from_the_file_at_each_opening(self):
        entry = self.session.config / "autostart" / "org.amberquill.Amberquill.desktop"
        launcher = self.begin_shown_launcher(self.made)
        self.choose(self.AT_LOGIN)
        until(entry.exists, "the entry")
        self.assertIn("amberquill", entry.read_text(encoding="utf-8"))
        # Another tool turned it off: choosing the entry turns it on.
        for off in ("Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"):
            written = entry.read_text(encoding="utf-8")
            entry.write_text(written + off, encoding="utf-8")
            self.choose(self.AT_LOGIN)
            until(lambda: entry.read_text(encoding="utf-8") == written, "the entry as it was")
        self.choose(self.AT_LOGIN)
        until(lambda: not entry.exists(), "its end")
        self.expect_still_up()
        self.end_launcher(launcher)
