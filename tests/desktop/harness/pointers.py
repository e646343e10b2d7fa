"""Simulated wheels and touchpads that programs cannot tell from real ones."""

import struct

from harness.protocol import Connection, WaylandClient

HORIZONTAL, VERTICAL = "horizontal", "vertical"


class InputTestPointer:
    """A device of Xorg's driver "inputtest": speaks the protocol of xf86-input-inputtest-protocol.h, version 1.1."""

    CLIENT_VERSION, WAIT_FOR_SYNC, MOTION = range(3)
    AXES = {HORIZONTAL: 2, VERTICAL: 3}
    MOST_AXES = 64

    def __init__(self, path):
        self._connection = Connection(path)
        self._connection.send(struct.pack("=IIHH", 12, self.CLIENT_VERSION, 1, 1))
        self._connection.receive(12)

    def close(self):
        self._connection.close()

    def scroll(self, axis, *units):
        """Moves by each number of 120ths of a notch, down or right for positive ones, as fast as it is taken."""
        for each in units:
            values = [0.0] * self.MOST_AXES
            values[self.AXES[axis]] = each
            mask = (1 << self.AXES[axis]).to_bytes(8, "little")
            tail = struct.pack("@IxxxxI8sxxxx128d", 0, 0, mask, *values, *[0.0] * self.MOST_AXES)
            self._connection.send(struct.pack("=II", 8 + len(tail), self.MOTION) + tail)
        self._connection.send(struct.pack("=II", 8, self.WAIT_FOR_SYNC))
        self._connection.receive(8)


class WaylandPointer(WaylandClient):
    """A pointer plugged into a compositor by the protocol wlr-virtual-pointer-unstable-v1."""

    WHEEL, FINGER, CONTINUOUS = 0, 1, 2
    AXES = {VERTICAL: 0, HORIZONTAL: 1}

    def __init__(self, path):
        super().__init__(path, "zwlr_virtual_pointer_manager_v1")
        self._time = 0
        self._pointer = self._new_id()
        self._request(self._global, 0, "II", 0, self._pointer)
        self._round_trip()

    def move(self, x, y, width, height):
        """To a point of a screen of that size."""
        self._request(self._pointer, 1, "IIIII", self._now(), x, y, width, height)
        self._frame()

    def turn_wheel(self, axis, notches):
        """Down or right for positive numbers."""
        for _ in range(abs(notches)):
            step = 1 if notches > 0 else -1
            self._request(self._pointer, 7, "IIii", self._now(), self.AXES[axis], step * 15 * 256, step)
            self._request(self._pointer, 5, "I", self.WHEEL)
            self._frame()

    def scroll(self, source, axis, *points):
        """Moves by each number of points, down or right for positive ones. It may go on."""
        for each in points:
            self._request(self._pointer, 3, "IIi", self._now(), self.AXES[axis], round(each * 256))
            # Sent after the axis: the compositor's library applies it to that axis only.
            self._request(self._pointer, 5, "I", source)
            self._frame()

    def lift(self, axis):
        """The fingers leave the touchpad."""
        self._request(self._pointer, 6, "II", self._now(), self.AXES[axis])
        self._request(self._pointer, 5, "I", self.FINGER)
        self._frame()

    def _frame(self):
        self._request(self._pointer, 4, "")
        self._round_trip()

    def _now(self):
        self._time += 10
        return self._time
