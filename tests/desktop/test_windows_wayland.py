from harness import DesktopTestCase, SwaySession, WestonSession, until

LAUNCHER = "org.amberquill.Probe"


class WindowTestCase(DesktopTestCase):
    def begin_probe(self, *arguments, **settings):
        probe = self.session.start(
            self.build / "tests" / "window_probe",
            *arguments,
            environment={"QT_QUICK_BACKEND": "software", **settings},
        )
        probe.expect("ready")
        return probe


class OnWeston(WindowTestCase):
    def setUp(self):
        self.session = self.begin(WestonSession(1024, 640))
        until(self.shows_the_desktop, "the desktop")

    def colours(self):
        """The colours in the corners and on the edges."""
        picture = self.session.screenshot()
        self.assertEqual((picture.width, picture.height), (1024, 640))
        return {picture.at(x, y) for x in (0, 512, 1023) for y in (0, 320, 639)}

    def shows_the_desktop(self):
        """Its panel and its background have different colours."""
        return len(self.colours()) > 1

    def is_covered(self):
        """Whether the window, which has one colour, covers the screen."""
        return len(self.colours()) == 1

    def test_covers_the_whole_screen(self):
        probe = self.begin_probe()
        probe.send("present")
        probe.expect("size 1024x640")
        probe.expect("exposed")
        until(self.is_covered, "the window on the whole screen")

    def test_comes_and_goes(self):
        probe = self.begin_probe()
        for _ in range(3):
            probe.send("present")
            probe.expect("exposed")
            until(self.is_covered, "the window on the whole screen")
            probe.send("withdraw")
            probe.expect("hidden")
            until(self.shows_the_desktop, "the desktop")


class OnSway(WindowTestCase):
    def setUp(self):
        self.session = self.begin(SwaySession(screens=2))

    def test_covers_the_screen_that_the_compositor_calls_active(self):
        probe = self.begin_probe()
        for screen in ("HEADLESS-2", "HEADLESS-1", "HEADLESS-2"):
            self.session.tell("focus", "output", screen)
            probe.send("present")
            until(lambda: self.session.screen_of(LAUNCHER) == screen, f"the window on {screen}")
            probe.expect("focus in")
            probe.send("withdraw")
            probe.expect("focus out")
            until(lambda: self.session.screen_of(LAUNCHER) is None, "the window's end")

    def test_gets_the_focus_and_gives_it_back(self):
        other = self.begin_probe("--other")
        other.expect("focus in")
        probe = self.begin_probe()
        probe.send("present")
        probe.expect("focus in")
        other.expect("focus out")
        self.session.type("a")
        probe.expect("key a")
        probe.send("withdraw")
        other.expect("focus in")
        self.session.type("b")
        other.expect("key b")

    def test_comes_to_the_front_with_an_activation_token(self):
        probe = self.begin_probe(WAYLAND_DEBUG="1")
        probe.send("token made-up")
        probe.send("present")
        until(lambda: any("activate(\"made-up\"" in line for line in probe.lines), "the token's use")
        probe.expect("focus in")
        probe.send("environment XDG_ACTIVATION_TOKEN")
        self.assertEqual(probe.expect("environment"), "environment XDG_ACTIVATION_TOKEN=")
