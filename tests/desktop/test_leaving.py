"""Closing the launcher, and input while it fades out."""

from harness import SwaySession, until
from harness.xlib import Pager
from launcher.applications import Applications
from launcher.case import WINDOW_CLASS
from launcher.on_sway import OnSwayCase
from launcher.on_x11 import OnX11


class OnAnXServer(OnX11):
    def setUp(self):
        self.begin_session(1280, 800)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def close_window(self):
        pager = Pager(self.session.display)
        self.addCleanup(pager.close)
        pager.close_window(self.window)

    def active_window(self):
        told = self.session.property("root", "_NET_ACTIVE_WINDOW")
        return int(told.split(",")[0], 16) if told else None

    def expect_again(self):
        """Expects that the chord shows and hides it again."""
        self.session.press("ctrl+alt+space")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        self.expect_focus()
        self.session.press("ctrl+alt+space")
        self.expect_hidden()

    def test_closed_by_a_key_of_the_window_manager_it_hides(self):
        launcher = self.begin_shown_launcher(self.made)
        # It closes the window that it knows to have the focus, which it learns later than the server.
        until(lambda: self.active_window() == self.window, "the window manager's knowledge of the focus")
        self.session.press("alt+F4")
        self.expect_hidden()
        self.expect_again()
        self.end_launcher(launcher)

    def test_closed_by_another_program_it_hides(self):
        launcher = self.begin_shown_launcher(self.made)
        self.close_window()
        self.expect_hidden()
        self.expect_again()
        self.end_launcher(launcher)

    def test_closed_with_its_menu_open_it_hides_with_the_menu(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press("F10")
        until(lambda: self.other_windows(launcher), "the menu")
        self.close_window()
        self.expect_hidden()
        self.expect_no_other_window(launcher)
        self.expect_again()
        self.end_launcher(launcher)

    def test_a_double_click_starts_an_application_once(self):
        launcher = self.begin_shown_launcher(self.made, AMBERQUILL_SLOWDOWN="8")
        x, y = (round(part) for part in self.grid.icon_centre(2))
        self.session.move_pointer(x, y)
        self.session.run("xdotool", "click", "--repeat", 2, "--delay", 60, 1)
        self.session.click(*(round(part) for part in self.grid.icon_centre(5)))
        self.expect_hidden()
        until(self.applications.started, "the start")
        self.expect_again()
        self.assertEqual(self.applications.started(), f"{self.made[2].name}\n")
        self.end_launcher(launcher)

    def test_after_it_is_shown_again_a_click_starts_an_application(self):
        launcher = self.begin_shown_launcher(self.made, AMBERQUILL_SLOWDOWN="8")
        self.session.press("Escape")
        self.click_icon(2)
        self.session.press("ctrl+alt+space")
        self.expect_page(self.made)
        self.click_icon(5)
        self.expect_hidden()
        until(self.applications.started, "the start")
        self.assertEqual(self.applications.started(), f"{self.made[5].name}\n")
        self.end_launcher(launcher)


class OnSway(OnSwayCase):
    def test_closed_by_the_compositor_it_hides(self):
        self.session = self.begin(SwaySession())
        self.applications = Applications(self.session)
        self.applications.add_entry("App 1", "e1")
        launcher = self.begin_launcher()
        until(self.is_up, "the launcher")
        for _ in range(2):
            self.session.tell(f"[app_id={WINDOW_CLASS}]", "kill")
            until(lambda: not self.is_up(), "the window's end")
            self.act("toggle")
            until(self.is_up, "the launcher again")
        self.end_launcher(launcher)
