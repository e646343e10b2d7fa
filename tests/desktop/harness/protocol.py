"""Clients that speak a server's protocol without a library."""

import socket
import struct


class Connection:
    """A local socket that reads whole messages."""

    def __init__(self, path):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(15)
        self._socket.connect(str(path))

    def close(self):
        self._socket.close()

    def send(self, message):
        self._socket.sendall(message)

    def receive(self, size):
        message = b""
        while len(message) < size:
            part = self._socket.recv(size - len(message))
            if not part:
                raise OSError("the server is gone")
            message += part
        return message


class WaylandClient:
    """A connection to a compositor with one of its globals, at one version of it."""

    DISPLAY = 1  # the first object of every connection

    def __init__(self, path, interface, version=1):
        self._connection = Connection(path)
        self._last_id = self.DISPLAY
        self._registry = self._new_id()
        self._request(self.DISPLAY, 1, "I", self._registry)
        announced = self._round_trip()
        self._global = self._new_id()
        name = interface.encode() + b"\0"
        size = len(name)
        name += b"\0" * (-size % 4)
        layout = f"II{len(name)}sII"
        self._request(self._registry, 0, layout, announced[interface], size, name, version, self._global)

    def close(self):
        self._connection.close()

    def _new_id(self):
        self._last_id += 1
        return self._last_id

    def _request(self, target, code, layout, *arguments):
        body = struct.pack(f"={layout}", *arguments)
        self._connection.send(struct.pack("=II", target, (8 + len(body)) << 16 | code) + body)

    def _round_trip(self):
        """Waits until the compositor has handled all requests. Returns the numbers of the globals that it announced."""
        announced = {}
        callback = self._new_id()
        self._request(self.DISPLAY, 0, "I", callback)
        while True:
            sender, head = struct.unpack("=II", self._connection.receive(8))
            body = self._connection.receive((head >> 16) - 8)
            code = head & 0xFFFF
            if sender == callback:
                return announced
            if sender == self.DISPLAY and code == 0:
                raise OSError(f"the compositor refuses: {body!r}")
            if sender == self._registry and code == 0:
                number, size = struct.unpack_from("=II", body)
                announced[body[8 : 8 + size - 1].decode()] = number
