"""A session bus that hangs from a moment that the test chooses."""

import selectors
import socket
import threading


class _Connection:
    def __init__(self, client):
        self.client = client
        self.server = None  # None: not connected, nothing is answered
        self.received = b""  # all that the program has sent
        self.is_open = True  # the program has not given up


class HangingBus:
    """Forwards all data between a program and its bus until it hangs. After that it still reads."""

    def __init__(self, path, bus, at_connection=None, at_text=None):
        """Hangs at a connection, counted from 1, or at a text in the data. It forwards neither."""
        self.address = f"unix:path={path}"
        self.hangs = False
        self.connections = []
        self._bus = bus
        self._at_connection = at_connection
        self._at_text = at_text
        self._listening = socket.socket(socket.AF_UNIX)
        self._listening.bind(str(path))
        self._listening.listen()
        self._end, self._told = socket.socketpair()
        self._selector = selectors.DefaultSelector()
        self._selector.register(self._listening, selectors.EVENT_READ, self._accept)
        self._selector.register(self._told, selectors.EVENT_READ, None)
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._thread.start()

    def close(self):
        self._end.close()
        self._thread.join()
        for connection in self.connections:
            connection.client.close()
            if connection.server:
                connection.server.close()
        self._selector.close()
        self._listening.close()
        self._told.close()

    def _run(self):
        while True:
            for key, _ in self._selector.select():
                if key.data is None:
                    return
                key.data()

    def _accept(self):
        connection = _Connection(self._listening.accept()[0])
        self.connections.append(connection)
        if len(self.connections) == self._at_connection:
            self.hangs = True
        if not self.hangs:
            connection.server = socket.socket(socket.AF_UNIX)
            connection.server.connect(str(self._bus))
            self._selector.register(connection.server, selectors.EVENT_READ, lambda: self._answer(connection))
        self._selector.register(connection.client, selectors.EVENT_READ, lambda: self._take(connection))

    def _take(self, connection):
        data = self._receive(connection.client)
        connection.received += data
        if self._at_text and self._at_text in connection.received:
            self.hangs = True
        if not data:
            connection.is_open = False
            self._selector.unregister(connection.client)
            if connection.server:
                connection.server.shutdown(socket.SHUT_RDWR)
        elif not self.hangs:
            connection.server.sendall(data)

    def _answer(self, connection):
        data = self._receive(connection.server)
        if data and connection.is_open and not self.hangs:
            connection.client.sendall(data)
            return
        self._selector.unregister(connection.server)
        if not data and connection.is_open and not self.hangs:
            connection.client.shutdown(socket.SHUT_RDWR)

    @staticmethod
    def _receive(end):
        try:
            return end.recv(65536)
        except ConnectionError:
            return b""
