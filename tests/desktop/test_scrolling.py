import re

from harness import SwaySession, XorgSession, until
from harness.pointers import HORIZONTAL, VERTICAL, WaylandPointer
from launcher import Applications, LauncherTestCase
from launcher.case import WINDOW_CLASS

LOGGED = {"QT_LOGGING_RULES": "amberquill.window.debug=true"}
NOTCH = "amberquill.window: a wheel turns by a notch"
END = "amberquill.window: a swipe ends"


class OnX11(LauncherTestCase):
    """Smooth scrolling by XInput 2, as drivers report it."""

    UNITS = 8  # 120ths of a notch in a point
    LOGGED = {"QT_LOGGING_RULES": f"{LOGGED['QT_LOGGING_RULES']};qt.qpa.input.events.debug=true"}

    def setUp(self):
        self.session = self.begin(XorgSession(1280, 800))
        self.made = Applications(self.session).add_many()
        self.launcher = self.begin_launcher(**self.LOGGED)
        self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        self.session.move_pointer(*self.grid.gap())

    def tearDown(self):
        self.assertEqual(self.launcher.terminate(), 0)

    def take(self, device):
        """Uses the device once. The first event scrolls nothing: Qt only reads and logs the device's position."""
        device.scroll(VERTICAL, self.UNITS)
        self.launcher.expect("qt.qpa.input.events: scrolling device")

    def angle_in(self, lines):
        """The angle of the wheel's turn, from Qt's log."""
        return sum(int(angle) for angle in re.findall(r"angle QPoint\(0,(-?\d+)\)", "\n".join(lines)))

    def swipe(self, axis, points):
        """In steps of five points, and waits until the launcher takes it as ended."""
        step = 5 * self.UNITS if points > 0 else -5 * self.UNITS
        self.session.touchpad.scroll(axis, *[step] * (abs(points) // 5))
        self.launcher.expect(END)

    def test_a_swipe_turns_a_page_each_way(self):
        self.take(self.session.touchpad)
        self.swipe(HORIZONTAL, 100)
        self.expect_page(self.made, 1)
        self.swipe(HORIZONTAL, 100)
        self.expect_page(self.made, 2)
        self.swipe(HORIZONTAL, -100)
        self.expect_page(self.made, 1)

    def test_a_vertical_swipe_turns_a_page_each_way(self):
        self.take(self.session.touchpad)
        self.swipe(VERTICAL, 70)
        self.expect_page(self.made, 1)
        self.swipe(VERTICAL, -70)
        self.expect_page(self.made)

    def test_a_short_swipe_turns_no_page_and_does_not_add_up_with_the_next(self):
        self.take(self.session.touchpad)
        self.swipe(HORIZONTAL, 80)
        self.swipe(HORIZONTAL, 80)
        self.swipe(VERTICAL, 50)
        self.expect_page(self.made)
        self.swipe(HORIZONTAL, 100)
        self.expect_page(self.made, 1)

    def test_the_fractions_of_a_wheels_notch_add_up(self):
        self.assertEqual(self.launcher.terminate(), 0)
        # Slow fades, so that no fraction expires before the last one arrives.
        self.launcher = self.begin_launcher(**self.LOGGED, AMBERQUILL_SLOWDOWN="4")
        self.expect_page(self.made)
        self.take(self.session.wheel_device)
        # Turns at the same time may arrive as one event.
        self.session.wheel_device.scroll(VERTICAL, *[15] * 7)
        until(lambda: self.angle_in(self.launcher.lines) == -105, "the first parts")
        self.session.wheel_device.scroll(VERTICAL, 15)
        self.launcher.expect(NOTCH)
        self.assertEqual(self.angle_in(self.launcher.lines[: self.launcher.lines.index(NOTCH)]), -120)
        self.expect_page(self.made, 1)
        self.session.wheel_device.scroll(VERTICAL, *[-7.5] * 16)
        self.expect_page(self.made)
        self.assertEqual(self.launcher.lines.count(NOTCH), 2)

    def test_scrolling_in_another_window_does_not_count(self):
        self.session.press("Escape")
        until(lambda: not self.session.windows_of_class(WINDOW_CLASS), "the window's end")
        self.session.touchpad.scroll(HORIZONTAL, *[40] * 50)
        self.assertEqual(self.launcher.terminate(), 0)
        self.launcher = self.begin_launcher(**self.LOGGED)
        self.expect_page(self.made)
        self.take(self.session.touchpad)
        self.swipe(HORIZONTAL, 80)
        self.expect_page(self.made)


class OnSway(LauncherTestCase):
    """The pointer's events of Wayland."""

    def setUp(self):
        self.session = self.begin(SwaySession())
        picture = self.session.screenshot()
        self.session.width, self.session.height = picture.width, picture.height
        self.made = Applications(self.session).add_many()
        socket = self.session.runtime / self.session.environment["WAYLAND_DISPLAY"]
        self.pointer = WaylandPointer(socket)
        self.addCleanup(self.pointer.close)
        # The compositor may run as another user; Qt then warns about the runtime folder's owner.
        runtime = self.session.home / "runtime"
        runtime.mkdir(mode=0o700)
        self.launcher = self.begin_launcher(XDG_RUNTIME_DIR=str(runtime), WAYLAND_DISPLAY=str(socket), **LOGGED)
        self.expect_page(self.made)
        self.pointer.move(*self.grid.gap(), picture.width, picture.height)

    def tearDown(self):
        self.assertEqual(self.launcher.terminate(), 0)

    def swipe(self, axis, points):
        step = 5 if points > 0 else -5
        self.pointer.scroll(WaylandPointer.FINGER, axis, *[step] * (abs(points) // 5))
        self.pointer.lift(axis)
        self.launcher.expect(END)

    def test_the_wheel_turns_pages(self):
        self.pointer.turn_wheel(VERTICAL, 1)
        self.expect_page(self.made, 1)
        self.pointer.turn_wheel(HORIZONTAL, 1)
        self.expect_page(self.made, 2)
        self.pointer.turn_wheel(VERTICAL, -1)
        self.expect_page(self.made, 1)
        self.assertEqual(self.launcher.lines, [NOTCH] * 3)

    def test_a_swipe_turns_a_page_each_way(self):
        self.swipe(HORIZONTAL, 100)
        self.expect_page(self.made, 1)
        self.swipe(HORIZONTAL, -100)
        self.expect_page(self.made)
        self.swipe(VERTICAL, 70)
        self.expect_page(self.made, 1)

    def test_a_short_swipe_turns_no_page_and_does_not_add_up_with_the_next(self):
        self.swipe(HORIZONTAL, 80)
        self.swipe(HORIZONTAL, 80)
        self.expect_page(self.made)
        self.swipe(HORIZONTAL, 100)
        self.expect_page(self.made, 1)

    def test_a_swipe_goes_on_while_the_fingers_rest(self):
        self.pointer.scroll(WaylandPointer.FINGER, HORIZONTAL, *[5] * 16)

        def is_shifted():
            picture, points = self.session.screenshot(), self.grid.icon_points(1)
            return picture.at(points[0][0] - 80, points[0][1]) == self.made[1].colour

        until(is_shifted, "the pages under the fingers")
        self.pointer.scroll(WaylandPointer.FINGER, HORIZONTAL, *[5] * 4)
        self.pointer.lift(HORIZONTAL)
        self.expect_page(self.made, 1)

    def test_a_pointing_sticks_swipe_ends_by_itself(self):
        self.pointer.scroll(WaylandPointer.CONTINUOUS, VERTICAL, *[5] * 14)
        self.launcher.expect(END)
        self.expect_page(self.made, 1)
