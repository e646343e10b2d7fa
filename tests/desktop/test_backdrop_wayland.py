from harness import KWinSession, SwaySession, WestonSession, until
from harness.picture import is_near
from launcher.applications import Applications
from launcher.background import FORGOTTEN, LOGGED, background_at
from launcher.case import WINDOW_CLASS, LauncherTestCase
from launcher.on_sway import OnSwayCase


class HalfWhite(LauncherTestCase):
    """A desktop whose right half is white."""

    width, height = 1280, 720
    dark, bright = (128, 64, 32), (255, 255, 255)

    def begin_with(self, session):
        self.session = self.begin(session)
        self.session.width, self.session.height = self.width, self.height
        self.applications = Applications(self.session)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 4)]

    def paint(self, dark="#804020", bright="#ffffff"):
        """Writes a picture file of such a desktop."""
        picture = self.session.home / f"{dark}{bright}{self.width}.png".replace("#", "")
        half = f"rectangle {self.width // 2},0 {self.width},{self.height}"
        size = f"{self.width}x{self.height}"
        self.session.run("convert", "-size", size, f"xc:{dark}", "-fill", bright, "-draw", half, picture)
        picture.chmod(0o644)  # the compositor may run as another user
        return picture

    def expect_desktop(self):
        def is_seen():
            picture = self.session.screenshot()
            return picture.width == self.width and all(
                picture.at(x, y) == (self.dark if x < self.width // 2 else self.bright)
                for x in (5, self.width // 2 - 1, self.width // 2, self.width - 6)
                for y in (5, self.height - 6)
            )

        until(is_seen, "the desktop")

    def wrong_points(self, dark, bright):
        """The points, far from the middle, where the background is not the tint over these halves."""
        picture = self.session.screenshot()
        wrong = {}
        for x in (5, self.width // 4, self.width * 3 // 4, self.width - 6):
            for y in (5, self.height - 60, self.height - 6):
                behind = dark if x < self.width // 2 else bright
                wanted = background_at(x, y, self.width, self.height, behind)
                if not is_near(picture.at(x, y), wanted, 4):
                    wrong[x, y] = picture.at(x, y), wanted
        return wrong

    def expect_background(self, dark, bright):
        wrong = {}

        def is_right():
            nonlocal wrong
            wrong = self.wrong_points(dark, bright)
            return not wrong

        try:
            until(is_right, "the background")
        except AssertionError as error:
            raise AssertionError(f"{error}; seen and wanted: {wrong}") from None

    def expect_blurred(self):
        """Expects the tint over the desktop, with a blurred edge between its halves."""
        self.expect_background(self.dark, self.bright)
        y = self.height - 60
        seen = self.session.screenshot()

        def share(x):
            """The share of white at this x."""
            dark, bright = (background_at(x, y, self.width, self.height, half)[2] for half in (self.dark, self.bright))
            return (seen.at(x, y)[2] - dark) / (bright - dark)

        middle = self.width // 2
        self.assertAlmostEqual(share(middle), 0.5, delta=0.1)
        self.assertTrue(0.05 < share(middle - 25) < 0.45, share(middle - 25))
        self.assertTrue(0.55 < share(middle + 25) < 0.95, share(middle + 25))

    def expect_tint_alone(self):
        self.expect_background((0, 0, 0), (0, 0, 0))


class OnKWin(HalfWhite):
    def setUp(self):
        self.begin_with(KWinSession(self.width, self.height, blurs=True))
        self.session.hang_up(self.paint())
        self.expect_desktop()

    def test_the_compositor_blurs_what_is_behind(self):
        launcher = self.begin_launcher()
        self.expect_blurred()
        self.expect_page(self.made)
        self.end_launcher(launcher)

    def test_each_showing_follows_whether_the_compositor_blurs(self):
        launcher = self.begin_launcher()
        self.expect_blurred()
        for blurs in (True, False, True):
            self.act("hide")
            self.expect_desktop()
            self.session.blur(blurs)
            self.act("show")
            if blurs:
                self.expect_blurred()
            else:
                self.expect_tint_alone()
        self.end_launcher(launcher)


class OnSway(OnSwayCase, HalfWhite):
    """Sway shows black behind windows, so the launcher captures the screen."""

    def setUp(self):
        self.begin_with(SwaySession())
        self.session.hang_up(self.paint())
        self.expect_desktop()

    def hide(self):
        self.act("hide")
        until(lambda: not self.is_up(), "the window's end")
        self.expect_desktop()

    def test_the_desktop_is_seen_blurred_under_the_tint(self):
        launcher = self.begin_launcher()
        self.expect_blurred()
        self.expect_page(self.made)
        self.end_launcher(launcher)

    def test_each_showing_shows_the_desktop_of_its_time(self):
        launcher = self.begin_launcher(**LOGGED)
        self.expect_blurred()
        self.hide()
        launcher.expect(FORGOTTEN)
        self.dark, self.bright = (32, 160, 96), (0, 0, 0)
        self.session.hang_up(self.paint("#20a060", "#000000"))
        self.expect_desktop()
        self.act("show")
        self.expect_blurred()
        self.assertEqual(launcher.terminate(), 0)
        self.assertEqual(launcher.lines, [FORGOTTEN])

    def test_a_show_while_it_is_up_keeps_its_picture(self):
        launcher = self.begin_launcher(WAYLAND_DEBUG="1")
        self.expect_blurred()

        def copies():
            return sum("-> zwlr_screencopy_manager_v1" in line and "capture_output" in line for line in launcher.lines)

        self.assertEqual(copies(), 1)
        self.act("show")
        self.act("hide")
        until(lambda: not self.is_up(), "the window's end")
        self.assertEqual(copies(), 1)


class OnTurnedScreens(OnSwayCase, HalfWhite):
    def test_the_picture_stands_upright(self):
        self.begin_with(SwaySession())
        upright = self.width, self.height
        for turn in ("90", "180", "270", "flipped", "flipped-90", "flipped-180", "flipped-270"):
            with self.subTest(turn):
                self.session.tell("output", "HEADLESS-1", "transform", turn)
                self.width, self.height = reversed(upright) if turn.endswith(("90", "270")) else upright
                self.session.width, self.session.height = self.width, self.height
                self.session.hang_up(self.paint())
                self.expect_desktop()
                launcher = self.begin_launcher()
                self.expect_blurred()
                self.end_launcher(launcher)
                self.expect_desktop()


class OnTwoScreensOfSway(OnSwayCase, HalfWhite):
    COLOURS = {"HEADLESS-1": (128, 64, 32), "HEADLESS-2": (32, 160, 96)}

    def setUp(self):
        self.begin_with(SwaySession(screens=2))
        for screen, colour in self.COLOURS.items():
            plain = "#%02x%02x%02x" % colour
            self.session.hang_up(self.paint(plain, plain), screen)
            until(lambda: self.session.screenshot(screen).at(600, 600) == colour, f"the desktop of {screen}")

    def expect_shown_on(self, screen):
        points = [(x, y) for x in (5, self.width - 6) for y in (5, self.height - 6)]

        def is_right():
            seen = self.session.screenshot(screen)
            behind = self.COLOURS[screen]
            return all(
                is_near(seen.at(*point), background_at(*point, self.width, self.height, behind), 4) for point in points
            )

        until(lambda: self.session.screen_of(WINDOW_CLASS) == screen, f"the window on {screen}")
        until(is_right, f"the background over the desktop of {screen}")

    def test_the_backdrop_shows_the_covered_screen(self):
        for screen in ("HEADLESS-2", "HEADLESS-1", "HEADLESS-2"):
            self.session.tell("focus", "output", screen)
            launcher = self.begin_launcher()
            self.expect_shown_on(screen)
            self.end_launcher(launcher)

    def test_shown_on_one_hidden_and_shown_on_the_other(self):
        self.session.tell("focus", "output", "HEADLESS-1")
        launcher = self.begin_launcher(**LOGGED)
        self.expect_shown_on("HEADLESS-1")
        for screen in ("HEADLESS-2", "HEADLESS-1"):
            self.act("hide")
            until(lambda: not self.is_up(), "the window's end")
            launcher.expect(FORGOTTEN)
            self.session.tell("focus", "output", screen)
            self.act("show")
            self.expect_shown_on(screen)
        self.assertEqual(launcher.terminate(), 0)
        self.assertEqual(launcher.lines, [FORGOTTEN] * 2)


class OnWeston(HalfWhite):
    def test_without_a_picture_the_background_is_the_tint_alone(self):
        self.begin_with(WestonSession(self.width, self.height))
        launcher = self.begin_launcher()
        self.expect_tint_alone()
        self.expect_page(self.made)
        self.end_launcher(launcher)
