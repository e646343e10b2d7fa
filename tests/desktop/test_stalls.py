"""Stalled file systems and very slow work."""

import json
import math
import os

from harness import until
from harness.stalling import StallingFolder
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

# The longest end on a busy machine. The stalls and slow work below take at least ten times as long.
END = 5


def slow_drawing():
    """A valid drawing that takes a minute to draw: a long curve over itself, in dashes."""

    def point(step, part):
        angle = step * 2.4 + part
        return f"{128 + 120 * math.cos(angle):.1f},{128 + 120 * math.sin(1.7 * angle):.1f}"

    curves = "".join(f"C{point(step, 0.1)} {point(step, 0.5)} {point(step, 0.9)}" for step in range(4000))
    dashes = 'fill="none" stroke="blue" stroke-width="9" stroke-dasharray="0.1 0.1"'
    return f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 256 256"><path {dashes} d="M0,0{curves}"/></svg>'


class Stalls(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def stalling(self, place):
        folder = StallingFolder(self.session, place)
        self.addCleanup(folder.end)
        return folder

    def expect_end(self, launcher):
        launcher.process.terminate()
        self.assertEqual(launcher.wait(END), 0)
        self.assertEqual(launcher.lines, [])

    def expect_saved_end(self, launcher):
        """Expects that the layout is saved at the end, in the launcher's own format."""
        layout = json.loads(self.layout_file.read_bytes())
        self.layout_file.write_text(json.dumps(layout, indent=4), encoding="utf-8")
        self.expect_end(launcher)
        self.assertNotIn("    ", self.layout_file.read_text(encoding="utf-8"))
        self.assertEqual(json.loads(self.layout_file.read_bytes()), layout)

    def show_page(self, applications, **settings):
        launcher = self.begin_launcher(**settings)
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(applications)
        self.expect_focus()
        until(self.layout_file.exists, "the layout")
        return launcher

    def add_slow_icon(self):
        icon = self.session.home / "slow.svg"
        icon.write_text(slow_drawing(), encoding="utf-8")
        self.applications.write_entry(self.applications.entries / "slow.desktop", "Slow", icon)
        return icon

    def test_a_slow_icon_does_not_delay_the_end(self):
        self.add_slow_icon()
        self.expect_saved_end(self.show_page(self.made))

    def test_an_icon_that_exceeds_the_time_limit_is_given_up_and_not_tried_at_the_next_start(self):
        icon = self.add_slow_icon()
        undecodable = self.session.cache / "Amberquill" / "undecodable"
        launcher = self.show_page(self.made)
        until(lambda: undecodable.exists() and str(icon) in undecodable.read_text(), "the icon to be given up")
        self.expect_end(launcher)
        known = undecodable.stat().st_mtime_ns
        launcher = self.show_page(self.made)
        self.expect_end(launcher)
        self.assertEqual(undecodable.stat().st_mtime_ns, known)

    def test_an_icon_on_a_stalled_mount_does_not_delay_the_end(self):
        place = self.session.home / "far"
        place.mkdir()
        (place / "icon.png").touch()
        self.applications.write_entry(self.applications.entries / "far.desktop", "Far", place / "icon.png")
        self.stalling(place).stall()
        self.expect_saved_end(self.show_page(self.made))

    def write_layout(self, applications):
        self.layout_file.parent.mkdir()
        layout = [{"app": {"_0": str(application.path)}} for application in applications]
        self.layout_file.write_text(json.dumps(layout), encoding="utf-8")

    def test_a_layout_on_a_stalled_mount_does_not_delay_the_end(self):
        self.write_layout(self.made)
        folder = self.stalling(self.layout_file.parent)
        launcher = self.show_page(self.made)
        folder.stall()
        self.expect_end(launcher)

    def test_a_layout_on_a_stalled_mount_does_not_prevent_saving_preferences(self):
        preferences = self.session.config / "Amberquill" / "preferences.json"
        preferences.parent.mkdir()
        os.mkfifo(preferences)
        self.write_layout(self.made)
        folder = self.stalling(self.layout_file.parent)
        # Failed writes are retried once the mount answers again, and at the end.
        logged = {"QT_LOGGING_RULES": "amberquill.saving.debug=true"}
        launcher = self.show_page(self.made, AMBERQUILL_SLOWDOWN="8", **logged)
        self.choose(self.IN_MENU_BAR)
        launcher.expect(f'amberquill.saving: "{preferences}" is no regular file')
        preferences.unlink()
        folder.stall()
        launcher.process.terminate()
        self.assertEqual(launcher.wait(END), 0)
        self.assertTrue(json.loads(preferences.read_bytes())["showInMenuBar"])

    def test_late_preferences_are_applied_and_never_overwritten(self):
        preferences = self.session.config / "Amberquill" / "preferences.json"
        preferences.parent.mkdir()
        stored = {"gridColumns": 5, "gridRows": 4, "unknown": 1}
        preferences.write_text(json.dumps(stored), encoding="utf-8")
        folder = self.stalling(preferences.parent)
        folder.stall()
        launcher = self.show_page(self.made)
        self.expect_end(launcher)
        self.assertEqual(json.loads((folder.behind / preferences.name).read_bytes()), stored)
        launcher = self.show_page(self.made)
        self.choose(self.IN_MENU_BAR)
        self.expect_no_other_window(launcher)
        folder.answer()
        merged = {**stored, "showInMenuBar": True}
        until(lambda: json.loads(preferences.read_bytes()) == merged, "what was set, among what was stored")
        until(lambda: self.wrong_places(self.made), "the stored grid")
        self.end_launcher(launcher)

    def test_a_late_layout_is_applied_and_never_overwritten(self):
        arranged = self.made[::-1]
        self.write_layout(arranged)
        folder = self.stalling(self.layout_file.parent)
        folder.stall()
        launcher = self.begin_launcher()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        self.expect_end(launcher)
        launcher = self.begin_launcher()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        folder.answer()
        self.expect_page(arranged)
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), [str(application.path) for application in arranged])

    def click_when_shown(self, slot):
        """Starts an application whose entry is on a mount that answers."""
        self.expect_focus()
        self.click_icon(slot)
        until(self.applications.started, "the application's start")

    def stall_bundles(self):
        self.bundle = self.applications.add_bundle("Bundle", "org.example.bundle")
        folder = self.stalling(self.applications.bundles)
        folder.stall()
        return folder

    def test_the_other_roots_are_shown_beside_a_stalled_root(self):
        folder = self.stall_bundles()
        launcher = self.begin_launcher()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        self.click_when_shown(1)
        self.act("show")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        folder.answer()
        self.expect_page([*self.made, self.bundle])
        self.end_launcher(launcher)

    def test_the_other_roots_are_followed_beside_a_stalled_root(self):
        folder = self.stall_bundles()
        launcher = self.show_page(self.made)
        self.made.append(self.applications.add_entry("App 9", "e9"))
        self.expect_page(self.made)
        folder.answer()
        self.expect_page([*self.made, self.bundle])
        late = self.applications.add_bundle("Late", "org.example.late")
        self.expect_page([*self.made, self.bundle, late])
        self.end_launcher(launcher)

    def test_the_applications_of_a_stalled_root_keep_their_places(self):
        bundle = self.applications.add_bundle("Bundle", "org.example.bundle")
        arranged = [bundle, *self.made]
        self.write_layout(arranged)
        folder = self.stalling(self.applications.bundles)
        self.end_launcher(self.show_page(arranged))
        folder.stall()
        launcher = self.begin_launcher()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.click_when_shown(1)
        self.expect_end(launcher)
        self.assertEqual(self.layout(), [str(application.path) for application in arranged])

    def test_a_stalled_root_does_not_delay_the_end(self):
        self.stall_bundles()
        self.expect_saved_end(self.show_page(self.made))

    def test_search_works_while_all_icons_are_slow(self):
        # The first run stores the names, so the next run shows the page before its scan.
        self.end_launcher(self.show_page(self.made))
        (self.session.cache / "Amberquill" / "icons").unlink(missing_ok=True)
        for number, application in enumerate(self.made):
            icon = self.session.home / f"slow{number}.svg"
            icon.write_text(slow_drawing(), encoding="utf-8")
            self.applications.write_entry(application.path, application.name, icon)
        launcher = self.begin_launcher()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()
        self.session.run("xdotool", "type", "App 3")

        def found():
            self.session.press("Return")
            return self.applications.started()

        until(found, "the application's start")
        self.expect_end(launcher)
