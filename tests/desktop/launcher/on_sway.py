"""The launcher under Sway."""

from launcher.case import WINDOW_CLASS, LauncherTestCase


class OnSwayCase(LauncherTestCase):
    def begin_launcher(self, **settings):
        # The compositor may run as another user; Qt then warns about the runtime folder's owner.
        runtime = self.session.home / "runtime"
        runtime.mkdir(mode=0o700, exist_ok=True)
        socket = self.session.runtime / self.session.environment["WAYLAND_DISPLAY"]
        return super().begin_launcher(XDG_RUNTIME_DIR=str(runtime), WAYLAND_DISPLAY=str(socket), **settings)

    def is_up(self):
        return self.session.screen_of(WINDOW_CLASS) is not None
