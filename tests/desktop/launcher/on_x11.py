"""The launcher on an X server."""

from harness import X11Session, until
from launcher.applications import Applications
from launcher.case import WINDOW_CLASS, LauncherTestCase


class OnX11(LauncherTestCase):
    def begin_session(self, *arguments, **settings):
        self.session = self.begin(X11Session(*arguments, **settings))
        self.applications = Applications(self.session)

    def begin_shown_launcher(self, applications):
        """Once it is up with everything in its place and has the focus."""
        launcher = self.begin_launcher()
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(applications)
        until(lambda: self.session.focused_window() == self.window, "the focus")
        return launcher

    def expect_hidden(self):
        until(lambda: not self.session.windows_of_class(WINDOW_CLASS), "the window's end")

    def click_icon(self, slot):
        self.session.click(*(round(part) for part in self.grid.icon_centre(slot)))
