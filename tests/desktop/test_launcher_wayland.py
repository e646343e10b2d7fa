import json
from pathlib import Path

from harness import SwaySession, WestonInAWindowSession, WestonSession, until
from harness.hanging_bus import HangingBus
from harness.picture import is_near
from launcher import Applications, LauncherTestCase
from launcher.on_sway import OnSwayCase

PORTAL = Path(__file__).parent / "harness" / "shortcuts_portal.py"
TRAY_HOST = Path(__file__).parent / "harness" / "tray_host.py"


class OnWeston(LauncherTestCase):
    """Without a keyboard and a pointer."""

    def begin_session(self, width, height):
        self.session = self.begin(WestonSession(width, height))
        self.applications = Applications(self.session)
        until(self.shows_the_desktop, "the desktop")

    def shows_the_desktop(self):
        """Whether Weston's panel is visible: it is darker than the area below."""
        picture = self.session.screenshot()
        middle = picture.width // 2
        return sum(picture.at(middle, 10)) < 200 < sum(picture.at(middle, 60))

    def corners_are_covered(self):
        """Whether the launcher's blue is in the corners. The panel and the desktop have little colour."""
        picture = self.session.screenshot()
        corners = [picture.at(x, y) for x in (0, picture.width - 1) for y in (0, picture.height - 1)]
        return all(blue > red + 10 for red, _, blue in corners)

    def expect_use(self, width, height):
        self.begin_session(width, height)
        made = self.applications.add_many()
        self.assertFalse(self.corners_are_covered())
        launcher = self.begin_launcher()
        self.expect_page(made)
        self.assertTrue(self.corners_are_covered())
        self.end_launcher(launcher)
        until(self.shows_the_desktop, "the desktop")
        self.assertEqual(self.layout(), [str(application.path) for application in made])

    def test_covers_the_whole_screen_with_every_icon_in_its_place(self):
        self.expect_use(1920, 1080)

    def test_covers_a_small_screen(self):
        self.expect_use(1280, 800)

    def test_shows_and_hides_on_request(self):
        self.begin_session(1280, 800)
        made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        launcher = self.begin_launcher()
        self.expect_page(made)
        for _ in range(2):
            self.act("hide")
            until(self.shows_the_desktop, "the desktop")
            self.act("show")
            self.expect_page(made)
            self.assertTrue(self.corners_are_covered())
        self.end_launcher(launcher)

    def test_follows_installed_and_removed_applications(self):
        self.begin_session(1280, 800)
        made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        launcher = self.begin_launcher()
        self.expect_page(made)
        made.pop(2).path.unlink()
        self.expect_page(made)
        made.append(self.applications.add_entry("App 0", "e0"))
        self.expect_page(made)
        self.end_launcher(launcher)
        made.pop(0).path.unlink()
        launcher = self.begin_launcher()
        self.expect_page(made)
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), [str(application.path) for application in made])


class OnWestonInAWindow(LauncherTestCase):
    """With a keyboard."""

    def setUp(self):
        self.session = self.begin(WestonInAWindowSession())
        self.applications = Applications(self.session)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def shows_the_desktop(self):
        picture = self.session.screenshot()
        return sum(picture.at(picture.width // 2, 10)) < 200 < sum(picture.at(picture.width // 2, 60))

    def test_it_takes_text_toggles_and_starts_a_result(self):
        until(self.shows_the_desktop, "the desktop")
        launcher = self.begin_launcher()
        self.expect_page(self.made)
        self.act("toggle")
        until(self.shows_the_desktop, "the desktop")
        self.act("toggle")
        self.expect_page(self.made)
        self.session.type("app 7")
        self.expect_page(self.made[6:7])
        self.session.press("Escape")
        self.expect_page(self.made)
        self.session.press("Escape")
        until(self.shows_the_desktop, "the desktop")
        self.assertTrue(launcher.is_running())
        self.act("show")
        self.expect_page(self.made)
        self.session.type("app 3")
        self.expect_page(self.made[2:3])
        self.session.press("Return")
        until(self.applications.started, "the application's start")
        until(self.shows_the_desktop, "the desktop")
        self.end_launcher(launcher)
        self.assertEqual(self.applications.started(), f"{self.made[2].name}\n")


class OnSway(OnSwayCase):
    """With a keyboard, without a pointer."""

    def setUp(self):
        self.session = self.begin(SwaySession())
        picture = self.session.screenshot()
        self.session.width, self.session.height = picture.width, picture.height
        self.applications = Applications(self.session)
        self.made = self.applications.add_many()

    def press(self, key):
        self.session.run("wtype", "-k", key)

    def begin_shown_launcher(self):
        launcher = self.begin_launcher()
        until(self.is_up, "the window")
        self.expect_page(self.made)
        return launcher

    def test_the_arrow_keys_turn_pages(self):
        launcher = self.begin_shown_launcher()
        self.press("Right")
        self.expect_page(self.made, 1)
        self.press("Right")
        self.expect_page(self.made, 2)
        self.press("Left")
        self.expect_page(self.made, 1)
        self.end_launcher(launcher)

    def test_escape_hides_it(self):
        launcher = self.begin_shown_launcher()
        self.press("Escape")
        until(lambda: not self.is_up(), "the window's end")
        self.assertTrue(launcher.is_running())
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), [str(application.path) for application in self.made])

    def test_it_takes_text_toggles_and_starts_a_result(self):
        launcher = self.begin_shown_launcher()
        self.act("toggle")
        until(lambda: not self.is_up(), "the window's end")
        self.act("toggle")
        until(self.is_up, "the window")
        self.expect_page(self.made)
        self.session.type("app 87")
        self.expect_page(self.made[86:])
        self.press("Escape")
        self.expect_page(self.made)
        self.session.type("app 86")
        self.expect_page(self.made[85:86])
        self.press("Return")
        until(self.applications.started, "the application's start")
        until(lambda: not self.is_up(), "the window's end")
        self.end_launcher(launcher)
        self.assertEqual(self.applications.started(), f"{self.made[85].name}\n")

    def open_menu(self):
        self.press("F10")
        corner = round(self.session.width / 2) - 196 + 5, 84 + 200
        until(lambda: is_near(self.session.screenshot().at(*corner), (255, 255, 255), 40), "the menu")

    def test_the_menu_lies_above_it_and_works_by_keys(self):
        launcher = self.begin_shown_launcher()
        self.open_menu()
        self.assertTrue(self.is_up())
        for key in ("Down", "Right", "Down", "Down", "Return"):
            self.press(key)
        preferences = self.session.config / "Amberquill" / "preferences.json"
        until(lambda: preferences.exists() and '"green"' in preferences.read_text(encoding="utf-8"), "green")
        self.assertTrue(self.is_up())
        self.expect_page(self.made)
        self.press("Escape")
        until(lambda: not self.is_up(), "the window's end")
        self.end_launcher(launcher)

    RESET, EXPORT = 4, 5

    def choose(self, entry, title):
        """Chooses an entry of the menu and waits for its dialog."""
        self.open_menu()
        for key in (*["Down"] * entry, "Return"):
            self.press(key)
        self.expect_dialogs(title)

    def expect_dialogs(self, *titles):
        """Waits until exactly these dialogs are open above the launcher."""
        until(lambda: self.session.floating_windows() == [*titles], f"the dialogs {titles}")
        self.assertTrue(self.is_up())

    def write_layout(self, applications):
        self.layout_file.parent.mkdir(exist_ok=True)
        layout = [{"app": {"_0": str(application.path)}} for application in applications]
        self.layout_file.write_text(json.dumps(layout), encoding="utf-8")

    def test_a_dialog_above_it_takes_keys(self):
        mixed = self.made[::-1]
        self.write_layout(mixed)
        launcher = self.begin_launcher()
        self.expect_page(mixed)
        for key, wanted in (("Escape", mixed), ("Return", self.made)):
            self.choose(self.RESET, "Amberquill")
            self.press(key)
            self.expect_dialogs()
            self.expect_page(wanted)
        # The launcher has its keys again.
        self.session.type("app 87")
        self.expect_page(self.made[86:])
        self.end_launcher(launcher)

    def test_a_check_for_updates_hides_it_and_the_alert_takes_keys(self):
        launcher = self.begin_shown_launcher()
        self.open_menu()
        for key in (*["Down"] * 9, "Return"):
            self.press(key)
        until(lambda: not self.is_up(), "the launcher's end")
        until(lambda: self.session.floating_windows() == ["Amberquill"], "the alert")
        until(lambda: self.session.focused_window() == "Amberquill", "its focus")
        self.press("Return")
        until(lambda: not self.session.floating_windows(), "its end")
        self.assertFalse(self.is_up())
        self.end_launcher(launcher)

    def test_a_file_dialog_above_it_takes_text(self):
        desktop = self.session.home / "Desktop"
        desktop.mkdir()
        chosen = desktop / "mine.json"
        chosen.write_bytes(b"before")
        launcher = self.begin_shown_launcher()
        self.choose(self.EXPORT, "Export Layout")
        self.session.type(chosen.name)
        self.press("Return")
        # A second dialog asks before a file is replaced.
        self.expect_dialogs("Export Layout", "Export Layout")
        self.press("Escape")
        self.expect_dialogs("Export Layout")
        self.assertEqual(chosen.read_bytes(), b"before")
        self.press("Return")
        self.expect_dialogs("Export Layout", "Export Layout")
        self.session.run("wtype", "-M", "alt", "-k", "y")
        self.expect_dialogs()
        # The file is written after the dialog has closed.
        until(lambda: chosen.read_bytes() != b"before", "the written file")
        self.assertEqual(len(json.loads(chosen.read_bytes())["items"]), len(self.made))
        self.press("Escape")
        until(lambda: not self.is_up(), "the window's end")
        self.end_launcher(launcher)

    def test_it_hides_while_qt_handles_a_frame(self):
        slow = self.build / "tests" / "libslow_frame_callbacks.so"
        self.assertTrue(slow.is_file())
        launcher = self.begin_launcher(LD_PRELOAD=str(slow))
        for _ in range(8):
            until(self.is_up, "the window")
            self.act("hide")
            until(lambda: not self.is_up(), "the window's end")
            self.act("show")
        self.end_launcher(launcher)

    def test_it_hides_and_ends_while_nobody_can_see_it(self):
        launcher = self.begin_shown_launcher()
        self.session.tell("workspace", "another")
        for _ in range(2):
            self.act("show")
            until(self.is_up, "the window")
            self.act("hide")
            until(lambda: not self.is_up(), "the window's end")
        self.end_launcher(launcher)

    def test_a_press_of_the_portals_shortcut_toggles_it(self):
        portal = self.session.start("/usr/bin/python3", "-B", PORTAL)
        portal.expect("ready")
        launcher = self.begin_launcher(WAYLAND_DEBUG="1")
        until(self.is_up, "the window")
        self.assertEqual(portal.expect("program"), "program org.amberquill.Amberquill")
        self.assertEqual(portal.expect("bound"), "bound toggle-1 CTRL+ALT+space")
        for number in range(2):
            self.expect_page(self.made)
            # The launcher is active once it has keys, so a press hides it.
            self.session.type("app 87")
            self.expect_page(self.made[86:])
            portal.send("press hiding")
            until(lambda: not self.is_up(), "the window's end")
            portal.send(f"press showing-{number}")
            until(self.is_up, "the window")
            used = f'activate("showing-{number}"'
            until(lambda: any(used in line for line in launcher.lines), "the use of the activation token")
        self.assertEqual(launcher.terminate(), 0)

    def test_after_a_bus_restart_the_new_portal_has_the_shortcut(self):
        portal = self.session.start("/usr/bin/python3", "-B", PORTAL)
        # The launcher's own retries are minutes apart.
        launcher = self.begin_launcher(AMBERQUILL_SLOWDOWN="8")
        portal.expect("bound")
        self.session.bus.kill()
        self.session.restart_bus()
        portal = self.session.start("/usr/bin/python3", "-B", PORTAL)
        portal.expect("bound")
        until(self.is_up, "the window")
        portal.send("press hiding")
        until(lambda: not self.is_up(), "the window's end")
        self.end_launcher(launcher)

    def test_a_late_or_restarted_tray_has_its_item(self):
        preferences = self.session.config / "Amberquill" / "preferences.json"
        preferences.parent.mkdir()
        preferences.write_text(json.dumps({"showInMenuBar": True}), encoding="utf-8")
        launcher = self.begin_shown_launcher()
        for _ in range(2):
            tray = self.session.start("/usr/bin/python3", "-B", TRAY_HOST)
            tray.expect("item")
            # The launcher is active once it has keys, so a click hides it.
            self.session.type("app 87")
            self.expect_page(self.made[86:])
            tray.send("activate")
            until(lambda: not self.is_up(), "the window's end")
            tray.send("activate")
            until(self.is_up, "the window")
            self.expect_page(self.made)
            tray.kill()
        self.end_launcher(launcher)

    def expect_keys_while_the_bus_hangs(self, **moment):
        bus = HangingBus(self.session.folder / "hanging", self.session.runtime / "bus", **moment)
        self.addCleanup(bus.close)
        launcher = self.begin_launcher(DBUS_SESSION_BUS_ADDRESS=bus.address)
        until(self.is_up, "the window")
        until(lambda: bus.hangs, "the search for the portal")
        self.session.type("app 87")
        self.expect_page(self.made[86:])
        self.press("Escape")
        self.expect_page(self.made)
        self.end_launcher(launcher)

    def test_a_bus_that_hangs_before_the_portals_call_delays_no_key(self):
        # After the launcher's own connection and that of Qt.
        self.expect_keys_while_the_bus_hangs(at_connection=3)

    def test_a_bus_that_hangs_during_the_portals_call_delays_no_key(self):
        self.expect_keys_while_the_bus_hangs(at_text=b"org.freedesktop.portal.GlobalShortcuts")
