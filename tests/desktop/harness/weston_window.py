"""Weston in a window on an X server: a compositor of another kind with real keys."""

from harness.wayland import start_weston
from harness.x11 import X11Session


class WestonInAWindowSession(X11Session):
    """The window covers the X server's screen, so keys and pictures of that screen are Weston's."""

    def __init__(self, width=1280, height=720):
        super().__init__(width, height, window_manager=None)

    def begin(self):
        super().begin()
        start_weston(self, "x11-backend.so")
        self.move_pointer(self.width // 2, self.height - 30)
