"""The launcher under KWin, by real keys."""

from harness import KWinSession, until
from launcher import Applications, LauncherTestCase


class OnKWin(LauncherTestCase):
    def setUp(self):
        self.session = self.begin(KWinSession())
        self.applications = Applications(self.session)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def shows_the_desktop(self):
        """Whether all corners and the first icon's place are black."""
        picture = self.session.screenshot()
        right, bottom = picture.width - 1, picture.height - 1
        points = [(0, 0), (right, 0), (0, bottom), (right, bottom), self.grid.icon_points(0)[0]]
        return all(picture.at(*point) == (0, 0, 0) for point in points)

    def covers_the_screen(self):
        picture = self.session.screenshot()
        corners = [picture.at(x, y) for x in (0, picture.width - 1) for y in (0, picture.height - 1)]
        return all(blue > red + 10 for red, _, blue in corners)

    def test_it_takes_text_toggles_and_starts_a_result(self):
        until(self.shows_the_desktop, "the desktop")
        launcher = self.begin_launcher()
        self.expect_page(self.made)
        until(self.covers_the_screen, "the launcher on the whole screen")
        self.act("toggle")
        until(self.shows_the_desktop, "the desktop")
        self.act("toggle")
        self.expect_page(self.made)
        self.session.press(*"app 7")
        self.expect_page(self.made[6:7])
        self.session.press("Escape")
        self.expect_page(self.made)
        self.session.press("Escape")
        until(self.shows_the_desktop, "the desktop")
        self.assertTrue(launcher.is_running())
        self.act("show")
        self.expect_page(self.made)
        self.session.press(*"app 3")
        self.expect_page(self.made[2:3])
        self.session.press("Return")
        until(self.applications.started, "the application's start")
        until(self.shows_the_desktop, "the desktop")
        self.end_launcher(launcher)
        self.assertEqual(self.applications.started(), f"{self.made[2].name}\n")
