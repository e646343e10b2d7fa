from harness import DesktopTestCase, Geometry, X11Session, until
from harness.picture import is_near
from harness.xlib import BellListener, StartupListener
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

LAUNCHER = "org.amberquill.Probe"
PANEL = (0, 255, 0)
OTHER = (255, 255, 255)
OTHER_BEHIND = (127, 127, 255)  # half of its white, half of the window's blue
SILENT = ("ready", "exposed", "covered", "focus in", "focus out", "hidden", "size ")  # the probe's own output


class WindowTestCase(DesktopTestCase):
    """A probe's window and the windows of other programs around it."""

    def begin_probe(self, session, *arguments, environment=None):
        settings = {"QT_QUICK_BACKEND": "software", **(environment or {})}
        probe = session.start(self.build / "tests" / "window_probe", *arguments, environment=settings)
        probe.expect("ready")
        return probe

    def begin_other(self, session):
        """Shows an ordinary window with the focus, like the user's current application."""
        other = self.begin_probe(session, "--other")
        other.expect("exposed")
        if session.has_window_manager():
            other.expect("focus in")
        else:
            window = session.windows_of_class("Probe")[0]
            session.run("xdotool", "windowfocus", "--sync", window)
            other.expect("focus in")
        return other

    def present(self, session, probe):
        probe.send("present")
        probe.expect("exposed")
        return session.window_of_class(LAUNCHER)

    def expect_geometry(self, session, window, geometry):
        until(lambda: session.geometry(window) == geometry, f"{geometry}, not {session.geometry(window)}")


class WithAWindowManager(WindowTestCase):
    def setUp(self):
        self.session = self.begin(X11Session(1280, 720))
        self.screen = Geometry(0, 0, 1280, 720)

    def test_covers_the_whole_screen(self):
        probe = self.begin_probe(self.session)
        window = self.present(self.session, probe)
        self.expect_geometry(self.session, window, self.screen)

    def test_lies_above_panels_and_other_windows(self):
        panel = self.begin_probe(self.session, "--panel")
        panel.expect("exposed")
        self.begin_other(self.session)
        until(lambda: self.session.screenshot().at(640, 10) == PANEL, "the panel")
        probe = self.begin_probe(self.session)
        self.present(self.session, probe)

        def colours():
            picture = self.session.screenshot()
            return {picture.at(640, 10), picture.at(200, 200), picture.at(1279, 719)}

        until(lambda: len(colours()) == 1, "one colour everywhere")
        self.assertNotIn(PANEL, colours())

    def test_tells_the_window_manager_its_type_and_states(self):
        probe = self.begin_probe(self.session)
        window = self.present(self.session, probe)
        wanted = {
            "_NET_WM_STATE_FULLSCREEN",
            "_NET_WM_STATE_ABOVE",
            "_NET_WM_STATE_SKIP_TASKBAR",
            "_NET_WM_STATE_SKIP_PAGER",
        }
        until(lambda: wanted <= self.session.atoms(window, "_NET_WM_STATE"), "the states")
        self.assertIn("_NET_WM_WINDOW_TYPE_NORMAL", self.session.atoms(window, "_NET_WM_WINDOW_TYPE"))
        self.assertEqual(self.session.property(window, "_NET_WM_DESKTOP"), "4294967295")
        self.assertEqual(self.session.property(window, "_NET_WM_BYPASS_COMPOSITOR"), "2")
        self.assertEqual(self.session.property(window, "WM_CLASS"), f'"probe", "{LAUNCHER}"')

    def test_tells_the_window_manager_again_at_each_showing(self):
        probe = self.begin_probe(self.session)
        for _ in range(3):
            window = self.present(self.session, probe)
            until(
                lambda: {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_FULLSCREEN", "_NET_WM_STATE_SKIP_TASKBAR"}
                <= self.session.atoms(window, "_NET_WM_STATE"),
                "the states",
            )
            self.assertEqual(self.session.property(window, "_NET_WM_DESKTOP"), "4294967295")
            self.expect_geometry(self.session, window, self.screen)
            probe.send("withdraw")
            probe.expect("hidden")
            until(lambda: self.session.geometry(window) is None, "the window's end")

    def test_gets_the_focus_and_gives_it_back(self):
        other = self.begin_other(self.session)
        probe = self.begin_probe(self.session)
        self.present(self.session, probe)
        probe.expect("focus in")
        other.expect("focus out")
        self.session.press("a")
        probe.expect("key a")
        probe.send("withdraw")
        other.expect("focus in")
        self.session.press("b")
        other.expect("key b")

    def test_gets_the_focus_also_long_after_its_last_event(self):
        # The window manager knows when the other window was last used; an older request is refused.
        probe = self.begin_probe(self.session)
        self.present(self.session, probe)
        probe.expect("focus in")
        probe.send("withdraw")
        probe.expect("focus out")
        other = self.begin_other(self.session)
        self.session.press("c")
        other.expect("key c")
        self.present(self.session, probe)
        probe.expect("focus in")
        other.expect("focus out")

    def test_comes_to_the_front_again_while_it_is_up(self):
        probe = self.begin_probe(self.session)
        window = self.present(self.session, probe)
        probe.expect("focus in")
        self.begin_other(self.session)
        probe.expect("focus out")
        probe.send("present")
        probe.expect("focus in")
        self.expect_geometry(self.session, window, self.screen)

    def test_stays_on_every_desktop(self):
        probe = self.begin_probe(self.session)
        window = self.present(self.session, probe)
        desktop = self.session.current_desktop()
        self.session.run("xdotool", "set_desktop", 2)
        until(lambda: self.session.current_desktop() == 2 != desktop, "the other desktop")
        self.expect_geometry(self.session, window, self.screen)

    def test_is_listed_in_task_bars_if_requested(self):
        probe = self.begin_probe(self.session)
        probe.send("listed yes")
        window = self.present(self.session, probe)
        until(lambda: "_NET_WM_STATE_ABOVE" in self.session.atoms(window, "_NET_WM_STATE"), "the states")
        self.assertNotIn("_NET_WM_STATE_SKIP_TASKBAR", self.session.atoms(window, "_NET_WM_STATE"))
        probe.send("listed no")
        until(lambda: "_NET_WM_STATE_SKIP_TASKBAR" in self.session.atoms(window, "_NET_WM_STATE"), "no entry")
        probe.send("listed yes")
        until(lambda: "_NET_WM_STATE_SKIP_TASKBAR" not in self.session.atoms(window, "_NET_WM_STATE"), "an entry")

    def test_completes_its_startup_notification(self):
        listener = StartupListener(self.session.display)
        self.addCleanup(listener.close)
        probe = self.begin_probe(self.session)
        probe.send("token panel-1-host_TIME5")
        self.present(self.session, probe)
        until(lambda: listener.heard() == "remove: ID=panel-1-host_TIME5", "the end of the startup")

    def test_prints_nothing(self):
        probe = self.begin_probe(self.session)
        for _ in range(5):
            # A window that is mapped again before the window manager sees its withdrawal may stay hidden.
            probe.send("present")
            probe.expect("focus in")
            probe.send("withdraw")
            probe.expect("focus out")
        probe.send("present")
        probe.expect("focus in")
        probe.send("quit")
        self.assertEqual(probe.wait(), 0)
        self.assertEqual([line for line in probe.lines if not line.startswith(SILENT)], [])


class WithACompositor(WindowTestCase):
    def test_the_windows_behind_show_through(self):
        session = self.begin(X11Session(640, 480, compositor="picom"))
        self.begin_other(session)
        until(lambda: session.screenshot().at(200, 200) == OTHER, "the other window")
        probe = self.begin_probe(session)
        self.present(session, probe)
        until(lambda: is_near(session.screenshot().at(200, 200), OTHER_BEHIND), "the other window behind")
        probe.send("withdraw")
        until(lambda: session.screenshot().at(200, 200) == OTHER, "the other window again")


class WithoutAWindowManager(WindowTestCase):
    def setUp(self):
        self.session = self.begin(X11Session(1280, 720, window_manager=None))

    def test_covers_the_whole_screen(self):
        probe = self.begin_probe(self.session)
        window = self.present(self.session, probe)
        self.expect_geometry(self.session, window, Geometry(0, 0, 1280, 720))

    def test_asks_for_every_desktop_in_both_ways(self):
        # A window manager removes the request that it does not support. Here there is none.
        probe = self.begin_probe(self.session)
        window = self.present(self.session, probe)
        self.assertIn("_NET_WM_STATE_STICKY", self.session.atoms(window, "_NET_WM_STATE"))
        self.assertEqual(self.session.property(window, "_NET_WM_DESKTOP"), "4294967295")

    def test_lies_above_other_windows(self):
        self.begin_other(self.session)
        until(lambda: self.session.screenshot().at(200, 200) == OTHER, "the other window")
        probe = self.begin_probe(self.session)
        self.present(self.session, probe)
        until(lambda: self.session.screenshot().at(200, 200) != OTHER, "the window above it")

    def test_gets_the_focus_and_gives_it_back(self):
        other = self.begin_other(self.session)
        probe = self.begin_probe(self.session)
        for key in "ab":
            self.present(self.session, probe)
            probe.expect("focus in")
            other.expect("focus out")
            self.session.press(key)
            probe.expect(f"key {key}")
            probe.send("withdraw")
            probe.expect("focus out")
            other.expect("focus in")
            self.session.press(key)
            other.expect(f"key {key}")

    def test_gives_the_focus_to_the_pointers_window_when_the_earlier_one_is_gone(self):
        other = self.begin_other(self.session)
        probe = self.begin_probe(self.session)
        self.present(self.session, probe)
        probe.expect("focus in")
        other.terminate()
        probe.send("withdraw")
        until(lambda: self.session.focused_window() == 1, "the focus under the pointer")

    def test_does_not_move_a_focus_that_the_user_changed(self):
        self.begin_other(self.session)
        probe = self.begin_probe(self.session)
        self.present(self.session, probe)
        probe.expect("focus in")
        third = self.begin_probe(self.session, "--other")
        third.expect("focus in")
        probe.send("withdraw")
        probe.expect("hidden")
        self.session.press("a")
        third.expect("key a")

    def test_prints_nothing(self):
        probe = self.begin_probe(self.session)
        for _ in range(5):
            probe.send("present")
            probe.send("withdraw")
        probe.send("present")
        probe.expect("focus in")
        probe.send("quit")
        self.assertEqual(probe.wait(), 0)
        self.assertEqual([line for line in probe.lines if not line.startswith(SILENT)], [])

    def test_notices_a_late_window_manager(self):
        probe = self.begin_probe(self.session)
        window = self.present(self.session, probe)
        probe.send("withdraw")
        until(lambda: self.session.geometry(window) is None, "the window's end")
        self.session.start_window_manager()
        window = self.present(self.session, probe)
        until(lambda: "_NET_WM_STATE_ABOVE" in self.session.atoms(window, "_NET_WM_STATE"), "the states")
        probe.expect("focus in")

    def test_notices_the_window_managers_end(self):
        manager = self.session.start_window_manager()
        other = self.begin_other(self.session)
        manager.kill()
        probe = self.begin_probe(self.session)
        self.present(self.session, probe)
        probe.expect("focus in")
        other.expect("focus out")

    def test_rings_the_bell(self):
        bell = BellListener(self.session.display)
        self.addCleanup(bell.close)
        probe = self.begin_probe(self.session)
        self.assertEqual(bell.heard(), 0)
        probe.send("beep")
        until(bell.heard, "the bell")


class OnTwoMonitors(WindowTestCase):
    window_manager = "openbox"

    def setUp(self):
        self.session = self.begin(X11Session(1600, 600, window_manager=self.window_manager))
        self.left, self.right = self.session.split_into_monitors()

    def test_covers_the_monitor_under_the_pointer(self):
        probe = self.begin_probe(self.session)
        for x in (1200, 400, 800, 799, 1599, 0, 0, 1200):
            monitor = self.right if x >= 800 else self.left
            self.session.move_pointer(x, 300)
            window = self.present(self.session, probe)
            self.expect_geometry(self.session, window, monitor)
            probe.send("withdraw")
            until(lambda: self.session.geometry(window) is None, "the window's end")

    def test_moves_to_the_pointers_monitor_while_it_is_up(self):
        probe = self.begin_probe(self.session)
        self.session.move_pointer(400, 300)
        window = self.present(self.session, probe)
        self.expect_geometry(self.session, window, self.left)
        self.session.move_pointer(1200, 300)
        probe.send("present")
        self.expect_geometry(self.session, window, self.right)
        self.session.move_pointer(400, 300)
        probe.send("present")
        self.expect_geometry(self.session, window, self.left)

    def test_moves_to_another_monitor_when_its_own_is_removed(self):
        probe = self.begin_probe(self.session)
        self.session.move_pointer(1200, 300)
        window = self.present(self.session, probe)
        self.expect_geometry(self.session, window, self.right)
        self.session.run("xrandr", "--delmonitor", "right")
        self.expect_geometry(self.session, window, self.left)

    def test_follows_its_monitors_size(self):
        probe = self.begin_probe(self.session)
        self.session.move_pointer(400, 300)
        window = self.present(self.session, probe)
        self.session.run("xrandr", "--delmonitor", "right")
        self.session.run("xrandr", "--delmonitor", "left")
        self.expect_geometry(self.session, window, Geometry(0, 0, 1600, 600))


class OnTwoMonitorsWithoutAWindowManager(OnTwoMonitors):
    window_manager = None


class OnScaledMonitors(WindowTestCase):
    def present_on(self, x, settings):
        session = self.begin(X11Session(1600, 600))
        left, right = session.split_into_monitors()
        probe = self.begin_probe(session, environment=settings)
        session.move_pointer(x, 300)
        window = self.present(session, probe)
        self.expect_geometry(session, window, right if x >= 800 else left)

    def test_covers_every_device_pixel(self):
        self.present_on(1200, {"QT_SCALE_FACTOR": "2"})

    def test_covers_every_device_pixel_at_a_fraction(self):
        self.present_on(400, {"QT_SCALE_FACTOR": "1.5"})

    def test_finds_the_monitor_among_different_scales(self):
        self.present_on(801, {"QT_SCREEN_SCALE_FACTORS": "left=2;right=1.25"})

    def test_finds_the_monitor_on_the_edge_at_a_rounded_scale(self):
        self.present_on(799, {"QT_SCREEN_SCALE_FACTORS": "left=1.75;right=1.75"})


class TheLauncherOnTwoMonitors(OnX11):
    window_manager = "openbox"

    def setUp(self):
        self.begin_session(1600, 600, window_manager=self.window_manager)
        self.left, self.right = self.session.split_into_monitors()
        for number in range(1, 9):
            self.applications.add_entry(f"App {number}", f"e{number}")
        self.session.move_pointer(400, 300)
        self.launcher = self.begin_launcher()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_place(self.left)

    def point_at(self, monitor):
        self.session.move_pointer(monitor.x + 400, 300)

    def expect_place(self, monitor):
        until(lambda: self.session.geometry(self.window) == monitor, f"it on {monitor}")
        self.expect_focus()

    def expect_menu(self, monitor):
        """F10 opens the menu there, and Escape closes it."""
        self.session.press("F10")

        def menus():
            places = [self.session.geometry(each) for each in self.other_windows(self.launcher)]
            return places if places and None not in places else None

        for place in until(menus, "the menu"):
            self.assertIn(place.x, range(monitor.x, monitor.x + monitor.width))
        self.session.press("Escape")
        self.expect_no_other_window(self.launcher)
        self.expect_focus()

    def test_each_showing_is_on_the_pointers_monitor_and_so_is_the_menu(self):
        for _ in range(4):
            for monitor in (self.right, self.left):
                self.session.press("ctrl+alt+space")
                self.expect_hidden()
                self.point_at(monitor)
                self.session.press("ctrl+alt+space")
                self.window = self.session.window_of_class(WINDOW_CLASS)
                self.expect_place(monitor)
                self.expect_menu(monitor)

    def test_a_show_while_it_is_up_moves_it_and_the_menu_to_the_pointers_monitor(self):
        for _ in range(4):
            for monitor in (self.right, self.left):
                self.point_at(monitor)
                self.act("show")
                self.expect_place(monitor)
                self.expect_menu(monitor)

    def test_a_show_while_it_hides_moves_it_to_the_pointers_monitor(self):
        for _ in range(4):
            for monitor in (self.right, self.left):
                self.point_at(monitor)
                self.session.press("Escape", "ctrl+alt+space")
                self.expect_place(monitor)
                self.expect_menu(monitor)


class TheLauncherOnTwoMonitorsWithoutAWindowManager(TheLauncherOnTwoMonitors):
    window_manager = None
