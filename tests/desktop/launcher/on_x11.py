"""The launcher on an X server."""

from harness import X11Session, until
from launcher.applications import Applications
from launcher.case import WINDOW_CLASS, LauncherTestCase


class OnX11(LauncherTestCase):
    def begin_session(self, *arguments, **settings):
        self.session = self.begin(X11Session(*arguments, **settings))
        self.applications = Applications(self.session)

    def begin_shown_launcher(self, applications, **settings):
        """Starts it and waits until it shows the applications and has the focus."""
        launcher = self.begin_launcher(**settings)
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(applications)
        self.expect_focus()
        return launcher

    def expect_focus(self):
        """Waits until the launcher has the focus."""
        until(lambda: self.session.focused_window() == self.window, "the launcher's focus")

    def other_windows(self, launcher):
        """Its menus, dialogs and tool tips on the screen."""
        return set(self.session.windows("--pid", launcher.pid)) - set(self.session.windows_of_class(WINDOW_CLASS))

    def expect_no_other_window(self, launcher):
        until(lambda: not self.other_windows(launcher), "the end of its other windows")

    def expect_dialog(self, launcher, *others):
        """Waits for a dialog with the focus, beside the others. Returns its window."""

        def focused():
            window = self.session.focused_window()
            return window if window in self.other_windows(launcher) - set(others) else None

        return until(focused, "a dialog with the focus")

    # Entries of the launcher's menu, counted from the first one.
    GRID, BACKGROUND, LANGUAGE, SORT, RESET, EXPORT, IMPORT, RESCAN, AT_LOGIN = range(9)
    CHECK_FOR_UPDATES, CHECK_AUTOMATICALLY, IN_MENU_BAR, TOGGLE, QUIT = range(9, 14)

    def choose(self, entry, sub_entry=None):
        """Chooses an entry of the menu by keys; of its submenu, if that is asked for."""
        keys = ["Menu", *["Down"] * entry]
        if sub_entry is not None:
            keys += ["Right", *["Down"] * sub_entry]
        self.session.press(*keys, "Return")

    def expect_hidden(self):
        until(lambda: not self.session.windows_of_class(WINDOW_CLASS), "the window's end")

    def click_icon(self, slot):
        self.session.click(*(round(part) for part in self.grid.icon_centre(slot)))
