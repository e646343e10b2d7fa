import json

from harness import PixelWatch, until
from harness.picture import is_near
from harness.xlib import BlurringCompositor
from launcher.background import FORGOTTEN, LOGGED, background_at
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11


def part_of_way(colour, one, other, tolerance=4):
    """The share of `other` in a mixture of two colours, or None for any other colour."""
    span = max(range(3), key=lambda channel: abs(other[channel] - one[channel]))
    part = (colour[span] - one[span]) / (other[span] - one[span])
    mixture = [a + (b - a) * part for a, b in zip(one, other)]
    return part if -0.1 <= part <= 1.1 and is_near(colour, mixture, tolerance) else None


class BackdropOnX11(OnX11):
    width, height = 1280, 720
    settings = {}
    desktop = (128, 64, 32)  # the harness's colour of the root window

    def setUp(self):
        self.begin_session(self.width, self.height, **self.settings)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 4)]
        # A window manager shows a pop-up with the desktop's name at first.
        self.expect_desktop()

    def free_points(self):
        """Points of the bare background, far from each other."""
        grid = self.grid
        empty = [tuple(round(part) for part in grid.icon_centre(slot)) for slot in (9, 17, 34)]
        return [(5, 5), (self.width - 6, 5), *empty, (5, self.height - 6), (self.width - 6, self.height - 6)]

    def expected(self, point, behind=None, theme="blue"):
        return background_at(*point, self.width, self.height, behind or self.desktop, theme)

    def wrong_points(self, behind=None, theme="blue"):
        picture = self.session.screenshot()
        return {
            point: (picture.at(*point), self.expected(point, behind, theme))
            for point in self.free_points()
            if not is_near(picture.at(*point), self.expected(point, behind, theme), 3)
        }

    def expect_background(self, behind=None, theme="blue"):
        wrong = {}

        def is_right():
            nonlocal wrong
            wrong = self.wrong_points(behind, theme)
            return not wrong

        try:
            until(is_right, "the background")
        except AssertionError as error:
            raise AssertionError(f"{error}; seen and wanted: {wrong}") from None

    def show(self):
        self.session.run(
            *("gdbus", "call", "--session", "--dest", WINDOW_CLASS, "--object-path", "/org/amberquill/Amberquill"),
            *("--method", "org.freedesktop.Application.ActivateAction", "show", "[]", "{}"),
        )

    def expect_desktop(self, colour=None):
        colour = colour or self.desktop
        points = self.free_points()

        def is_seen():
            picture = self.session.screenshot()
            return all(picture.at(*point) == colour for point in points)

        until(is_seen, "the desktop")

    def hang_up(self, shape, colour):
        """Draws a shape on the root window and leaves the rest as it was."""
        picture = self.session.home / "desktop.png"
        size = f"{self.width}x{self.height}"
        self.session.run("convert", "-size", size, "xc:#804020", "-fill", colour, "-draw", shape, picture)
        # It reports a failure although it succeeds.
        self.session.run("display", "-window", "root", picture, check=False)
        until(lambda: self.session.screenshot().at(self.width - 5, 5) != self.desktop, "the picture")

    def begin_fading_launcher(self):
        """Starts a launcher that fades for seconds, so that each fade has many frames on a busy machine too."""
        return self.begin_launcher(AMBERQUILL_SLOWDOWN="16")

    def expect_fade(self, watch, points, comes=True):
        """Expects a monotonic fade from the desktop to the launcher's background, in many steps."""
        for point, seen in zip(points, watch.seen):
            ends = self.desktop, self.expected(point)
            parts = [part_of_way(colour, *(ends if comes else ends[::-1])) for colour in seen]
            told = f"at {point}, between {ends}: {seen}"
            self.assertNotIn(None, parts, told)
            for earlier, later in zip(parts, parts[1:]):
                self.assertGreater(later, earlier - 0.1, told)
            self.assertGreater(len(parts), 4, told)


class WithoutACompositor(BackdropOnX11):
    def test_the_desktop_is_seen_under_the_tint(self):
        self.begin_shown_launcher(self.made)
        self.expect_background()

    def test_each_theme_has_its_tint(self):
        preferences = self.session.config / "Amberquill" / "preferences.json"
        preferences.parent.mkdir(exist_ok=True)
        for theme in ("purple", "green"):
            preferences.write_text(json.dumps({"backgroundTheme": theme}), encoding="utf-8")
            launcher = self.begin_shown_launcher(self.made)
            self.expect_background(theme=theme)
            self.end_launcher(launcher)

    def test_it_fades_over_the_desktop_as_it_comes_and_goes(self):
        points = self.free_points()
        launcher = None
        for _ in range(2):
            with PixelWatch(self.session.display, points) as watch:
                if launcher:
                    self.show()
                else:
                    launcher = self.begin_fading_launcher()
                self.expect_background()
            self.expect_fade(watch, points)
            self.window = self.session.window_of_class(WINDOW_CLASS)
            self.expect_focus()
            with PixelWatch(self.session.display, points) as watch:
                self.session.press("Escape")
                self.expect_hidden()
                self.expect_desktop()
            self.expect_fade(watch, points, comes=False)
        self.end_launcher(launcher)

    def test_each_showing_shows_the_desktop_of_its_time(self):
        launcher = self.begin_shown_launcher(self.made, **LOGGED)
        self.expect_background()
        self.session.press("Escape")
        launcher.expect(FORGOTTEN)
        self.expect_desktop()
        green = (32, 160, 96)
        self.session.run("xsetroot", "-solid", "#20a060")
        self.expect_desktop(green)
        self.show()
        self.expect_background(green)
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()
        self.session.press("Escape")
        self.expect_hidden()
        self.expect_desktop(green)
        self.assertEqual(launcher.terminate(), 0)

    def test_what_is_on_the_desktop_is_blurred(self):
        self.hang_up("rectangle 640,0 1280,720", "#ffffff")
        launcher = self.begin_shown_launcher(self.made)
        middle = round(self.grid.icon_centre(17)[1])

        def share(x):
            """The share of white at this x, in a row of bare background."""
            seen = self.session.screenshot().at(x, middle)[2]
            dark, bright = self.expected((x, middle))[2], self.expected((x, middle), (255, 255, 255))[2]
            return (seen - dark) / (bright - dark)

        until(lambda: share(500) < 0.03 and share(780) > 0.97, "both sides")
        self.assertAlmostEqual(share(640), 0.5, delta=0.05)
        self.assertAlmostEqual(share(610), 0.16, delta=0.05)
        self.assertAlmostEqual(share(670), 0.84, delta=0.05)
        self.end_launcher(launcher)


    def test_its_own_dialogs_are_not_in_the_backdrop(self):
        launcher = self.begin_shown_launcher(self.made, LANGUAGE="en", **LOGGED)
        self.choose(self.CHECK_FOR_UPDATES)  # a build without a feed says that this is the latest version
        alert = self.expect_dialog(launcher)
        self.expect_hidden()
        launcher.expect(FORGOTTEN)
        self.show()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        place = until(lambda: self.session.geometry(alert), "the alert's place")
        middle = place.y + place.height // 2
        right, below = place.x + place.width + 30, place.y + place.height + 30
        beside = [(place.x - 30, middle), (right, middle), (place.x + 20, below)]

        def is_seen():
            picture = self.session.screenshot()
            return all(is_near(picture.at(*point), self.expected(point), 3) for point in beside)

        until(is_seen, "the desktop alone beside the alert")
        self.assertEqual(launcher.terminate(), 0)


class WithACompositor(BackdropOnX11):
    settings = {"compositor": "picom"}
    desktop = (128, 128, 128)  # the compositor ignores the root window

    test_the_desktop_is_seen_under_the_tint = WithoutACompositor.test_the_desktop_is_seen_under_the_tint

    def test_it_fades_over_the_desktop_as_it_comes(self):
        # While it hides, the window manager's frame is visible for a moment, like any window's.
        points = self.free_points()
        with PixelWatch(self.session.display, points) as watch:
            launcher = self.begin_fading_launcher()
            self.expect_background()
        self.expect_fade(watch, points)
        self.act("hide")
        self.expect_hidden()
        self.expect_desktop()
        with PixelWatch(self.session.display, points) as watch:
            self.show()
            self.expect_background()
        self.expect_fade(watch, points)
        self.end_launcher(launcher)


class WithACompositorThatBlurs(BackdropOnX11):
    """The colours of the launcher's own window show that the compositor does the blur."""

    BLACK = (0, 0, 0)
    PROPERTY = "_KDE_NET_WM_BLUR_BEHIND_REGION"

    def setUp(self):
        super().setUp()
        self.compositor = BlurringCompositor(self.session.display)

    def tearDown(self):
        if self.compositor:
            self.compositor.close()

    def begin_shown(self):
        launcher = self.begin_launcher()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        return launcher

    def region(self):
        return self.session.property(self.window, self.PROPERTY)

    def hide(self):
        self.act("hide")
        self.expect_hidden()
        self.expect_desktop()

    def test_the_compositor_blurs(self):
        launcher = self.begin_shown()
        self.expect_background(self.BLACK)
        self.assertEqual(self.region(), f"0, 0, {self.width}, {self.height}")
        self.end_launcher(launcher)

    def test_each_showing_follows_whether_the_compositor_blurs(self):
        launcher = self.begin_shown()
        self.expect_background(self.BLACK)
        self.hide()
        self.compositor.stop_blurring()
        self.show_captured()
        self.hide()
        self.compositor.close()
        self.compositor = None
        self.show_captured()
        self.hide()
        self.compositor = BlurringCompositor(self.session.display)
        self.show()
        self.expect_background(self.BLACK)
        self.assertEqual(self.region(), f"0, 0, {self.width}, {self.height}")
        self.end_launcher(launcher)

    def show_captured(self):
        self.show()
        self.expect_background(self.desktop)
        self.assertIsNone(self.region())

    def test_the_property_of_a_crashed_compositor_is_ignored(self):
        self.compositor.die()
        self.compositor = None
        self.assertIsNotNone(self.session.property("root", self.PROPERTY))
        launcher = self.begin_shown()
        self.expect_background()
        self.assertIsNone(self.region())
        self.end_launcher(launcher)


class WithoutAWindowManager(BackdropOnX11):
    settings = {"window_manager": None}

    test_the_desktop_is_seen_under_the_tint = WithoutACompositor.test_the_desktop_is_seen_under_the_tint
    test_it_fades_over_the_desktop_as_it_comes_and_goes = (
        WithoutACompositor.test_it_fades_over_the_desktop_as_it_comes_and_goes
    )


class OnTwoMonitors(BackdropOnX11):
    width, height = 1600, 600

    def setUp(self):
        super().setUp()
        self.hang_up("rectangle 800,0 1600,600", "#20a060")
        left, right = self.session.split_into_monitors()
        self.monitors = [(right, (32, 160, 96)), (left, self.desktop), (right, (32, 160, 96))]

    def point_at(self, monitor):
        self.session.move_pointer(monitor.x + 400, 300)

    def expect_covered(self, monitor, colour):
        def is_right():
            seen = self.session.screenshot()
            return all(
                is_near(seen.at(monitor.x + x, y), background_at(x, y, 800, 600, colour), 3)
                for x, y in ((5, 5), (794, 5), (5, 594), (794, 594))
            )

        until(is_right, f"the background over {colour}")

    def test_the_backdrop_shows_the_covered_monitor(self):
        for monitor, colour in self.monitors:
            self.point_at(monitor)
            launcher = self.begin_launcher()
            self.expect_covered(monitor, colour)
            self.end_launcher(launcher)

    def test_shown_on_one_hidden_and_shown_on_the_other(self):
        launcher = None
        for monitor, colour in self.monitors:
            self.point_at(monitor)
            if launcher:
                self.act("show")
            else:
                launcher = self.begin_launcher()
            self.expect_covered(monitor, colour)
            self.act("hide")
            self.expect_hidden()
        self.end_launcher(launcher)


class OnAScreenThatChanges(BackdropOnX11):
    width, height = 1600, 900

    def setUp(self):
        super().setUp()
        self.session.run("xrandr", "--newmode", "small", 50, *(1280, 1296, 1312, 1328), *(720, 723, 726, 729))
        self.session.run("xrandr", "--addmode", "screen", "small")

    def change(self, mode, width, height):
        self.session.run("xrandr", "--output", "screen", "--mode", mode)
        self.width, self.height = width, height
        self.session.width, self.session.height = width, height

        def has_changed():
            picture = self.session.screenshot()
            return picture.width == width and picture.height == height

        until(has_changed, "the screen's size")

    def test_the_background_follows_its_size_while_it_is_up(self):
        launcher = self.begin_shown_launcher(self.made)
        self.expect_background()
        self.change("small", 1280, 720)
        self.expect_background()
        self.expect_page(self.made)
        self.act("hide")
        self.expect_hidden()
        self.expect_desktop()
        self.act("show")
        self.expect_background()
        self.change("1600x900", 1600, 900)
        self.expect_background()
        self.expect_page(self.made)
        self.end_launcher(launcher)

    def test_the_blurred_region_follows_its_size(self):
        compositor = BlurringCompositor(self.session.display)
        self.addCleanup(compositor.close)
        launcher = self.begin_launcher()
        window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_background((0, 0, 0))
        self.change("small", 1280, 720)
        name = "_KDE_NET_WM_BLUR_BEHIND_REGION"
        until(lambda: self.session.property(window, name) == "0, 0, 1280, 720", "the region")
        self.expect_background((0, 0, 0))
        self.end_launcher(launcher)


class OnAScreenThatChangesWithoutAWindowManager(OnAScreenThatChanges):
    settings = {"window_manager": None}
