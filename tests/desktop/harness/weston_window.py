"""Weston in a window on an X server: a compositor of another kind with real keys."""

from harness.waiting import until
from harness.x11 import X11Session


class WestonInAWindowSession(X11Session):
    """The window covers the X server's screen, so what is pressed and seen there is Weston's."""

    def __init__(self, width=1280, height=720):
        super().__init__(width, height, window_manager=None)

    def begin(self):
        super().begin()
        socket = "wayland-test"
        self.start(
            "weston",
            "--backend=x11-backend.so",
            "--use-pixman",
            "--no-config",
            "--idle-time=0",
            f"--socket={socket}",
            f"--width={self.width}",
            f"--height={self.height}",
        )
        until((self.runtime / socket).exists, "the compositor")
        self.environment["WAYLAND_DISPLAY"] = socket
        self.environment["QT_QPA_PLATFORM"] = "wayland"
        self.move_pointer(self.width // 2, self.height - 30)
