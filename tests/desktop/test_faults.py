"""Failures around the launcher while it is up."""

import json
import signal
from pathlib import Path

from harness import Geometry, until
from harness.xlib import BellListener
from launcher.case import WINDOW_CLASS
from launcher.grid import Grid
from launcher.on_x11 import OnX11

SESSION_MANAGER = Path(__file__).parent / "harness" / "session_manager.py"


class Faults(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def expect_shown(self):
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()

    def test_starting_a_removed_application_beeps_and_the_launcher_works_on(self):
        launcher = self.begin_shown_launcher(self.made)
        bell = BellListener(self.session.display)
        self.addCleanup(bell.close)
        # The launcher still lists it: only the program was removed, not its entry.
        (self.session.home / "record").rename(self.session.home / "elsewhere")
        self.click_icon(2)
        self.expect_hidden()
        until(bell.heard, "the beep")
        (self.session.home / "elsewhere").rename(self.session.home / "record")
        self.act("show")
        self.expect_shown()
        self.expect_page(self.made)
        self.click_icon(2)
        until(self.applications.started, "the application's start")
        self.end_launcher(launcher)
        self.assertEqual(bell.heard(), 0)

    def test_another_window_that_takes_the_focus_hides_it(self):
        launcher = self.begin_shown_launcher(self.made)
        other = self.session.start("xmessage", "other")
        until(lambda: self.session.windows_of_class("Xmessage"), "the other window")
        self.session.run("xdotool", "windowactivate", *self.session.windows_of_class("Xmessage"))
        self.expect_hidden()
        other.kill()
        self.act("toggle")
        self.expect_shown()
        self.end_launcher(launcher)

    def test_it_works_after_a_restart_of_the_window_manager(self):
        # The session starts with another window manager.
        launcher = self.begin_shown_launcher(self.made)
        watch = self.session.start("xprop", "-root", "-spy", "_NET_SUPPORTING_WM_CHECK")
        watch.expect("_NET_SUPPORTING_WM_CHECK(WINDOW)")
        self.session.run("openbox", "--restart")
        # The window manager restarts, and the focus goes, some time after the command.
        watch.expect("_NET_SUPPORTING_WM_CHECK(WINDOW)")
        self.act("hide")
        self.expect_hidden()
        self.act("show")
        until(lambda: self.session.windows_of_class(WINDOW_CLASS), "the launcher")
        self.expect_shown()
        until(lambda: self.session.geometry(self.window) == Geometry(0, 0, 1280, 720), "the whole screen")
        self.session.press("Escape")
        self.expect_hidden()
        self.act("show")
        self.expect_shown()
        self.expect_page(self.made)
        self.end_launcher(launcher)

    def expect_sound_end(self, number):
        launcher = self.begin_shown_launcher(self.made)
        self.session.take(*(round(part) for part in self.grid.icon_centre(2)))
        until(lambda: 2 in self.wrong_places(self.made), "the drag")
        launcher.process.send_signal(number)
        self.assertEqual(launcher.wait(), 0)
        self.assertEqual(launcher.lines, [])
        self.session.drop()
        paths = [str(application.path) for application in self.made]
        self.assertEqual(sorted(self.layout()), sorted(paths))
        launcher = self.begin_launcher()
        self.expect_page([next(each for each in self.made if str(each.path) == path) for path in self.layout()])
        self.end_launcher(launcher)

    def test_the_sessions_end_during_a_drag_leaves_a_valid_layout(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number.name):
                self.expect_sound_end(number)

    def begin_session_manager(self):
        manager = self.session.start("/usr/bin/python3", "-B", SESSION_MANAGER)
        self.session.environment["SESSION_MANAGER"] = manager.expect("at ").removeprefix("at ")
        return manager

    def expect_managed_end(self, manager, launcher):
        """Expects that it saves itself and ends at the session manager's request, at once and without a question."""
        manager.expect("saved")  # once at its start
        until(self.layout_file.exists, "the layout")
        self.layout_file.unlink()
        manager.send("save")
        manager.expect("restarts: no")
        manager.expect("saved")
        self.assertEqual(sorted(self.layout()), sorted(str(application.path) for application in self.made))
        manager.send("die")
        self.assertEqual(launcher.wait(), 0)
        self.assertEqual(launcher.lines, [])
        manager.expect("gone")
        self.assertNotIn("asks the user", manager.lines)

    def test_a_session_manager_ends_it_during_a_drag(self):
        manager = self.begin_session_manager()
        launcher = self.begin_shown_launcher(self.made)
        self.session.take(*(round(part) for part in self.grid.icon_centre(2)))
        until(lambda: 2 in self.wrong_places(self.made), "the drag")
        self.expect_managed_end(manager, launcher)
        self.session.drop()

    def test_no_dialog_of_its_own_delays_the_sessions_end(self):
        (self.session.home / "Desktop").mkdir()
        (self.session.home / "Desktop" / "Amberquill Layout.json").write_bytes(b"mine")
        manager = self.begin_session_manager()
        launcher = self.begin_shown_launcher(self.made)
        self.choose(self.EXPORT)
        dialog = self.expect_dialog(launcher)
        self.session.press("Return")
        self.expect_dialog(launcher, dialog)
        self.expect_managed_end(manager, launcher)
        self.assertEqual((self.session.home / "Desktop" / "Amberquill Layout.json").read_bytes(), b"mine")

    def test_invalid_preferences_are_silently_the_defaults(self):
        path = self.session.config / "Amberquill" / "preferences.json"
        path.parent.mkdir()
        wrong = {"gridColumns": "8", "gridRows": True, "backgroundTheme": 3, "appLanguage": 1.5, "showInDock": "no",
                 "showInMenuBar": []}
        for content in (b"", b'{"gridColumns": 8, "gri', b"\xff\xfe", b"[]", b"null", json.dumps(wrong).encode()):
            path.write_bytes(content)
            self.end_launcher(self.begin_shown_launcher(self.made))

    def test_unwritable_preferences_apply_until_the_end(self):
        path = self.session.config / "Amberquill"
        path.write_bytes(b"no folder")
        launcher = self.begin_shown_launcher(self.made)
        self.choose(self.BACKGROUND, 2)

        def is_green():
            red, green, blue = self.session.screenshot().at(5, 715)
            return green > blue and green > red

        until(is_green, "the green background")
        self.end_launcher(launcher)
        self.assertEqual(path.read_bytes(), b"no folder")


class OnTwoMonitors(OnX11):
    """The same screen, as two monitors side by side."""

    def setUp(self):
        self.begin_session(2560, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        self.left, self.right = self.session.split_into_monitors()

    def expect_on(self, monitor):
        self.window = self.session.window_of_class(WINDOW_CLASS)
        until(lambda: self.session.geometry(self.window) == monitor, f"the launcher on {monitor}")

    def expect_icons_on(self, monitor):
        grid = Grid(monitor.width, monitor.height)

        def is_right():
            picture = self.session.screenshot()
            return all(
                picture.at(monitor.x + round(grid.icon_centre(slot)[0]), round(grid.icon_centre(slot)[1]))
                == application.colour
                for slot, application in enumerate(self.made)
            )

        until(is_right, "every icon in its place")

    def test_it_covers_the_monitor_under_the_pointer(self):
        self.session.move_pointer(1900, 600)
        launcher = self.begin_launcher()
        self.expect_on(self.right)
        self.expect_icons_on(self.right)
        self.act("hide")
        self.expect_hidden()
        self.session.move_pointer(300, 600)
        self.act("show")
        self.expect_on(self.left)
        self.expect_icons_on(self.left)
        self.end_launcher(launcher)

    def test_unplugging_a_monitor_loses_no_icon(self):
        self.session.move_pointer(1900, 600)
        launcher = self.begin_launcher()
        self.expect_on(self.right)
        self.session.run("xrandr", "--delmonitor", "right")
        self.session.run("xrandr", "--delmonitor", "left")
        self.expect_on(Geometry(0, 0, 2560, 720))
        self.expect_icons_on(Geometry(0, 0, 2560, 720))
        self.session.press("Escape")
        self.expect_hidden()
        self.act("show")
        self.expect_on(Geometry(0, 0, 2560, 720))
        self.end_launcher(launcher)
