"""A fake session manager, run as a program: it speaks XSMP to the programs of its session.

Prints "at ADDRESS" once it listens. Its one client's reports are "saved" or "not saved", "asks the user", "gone", and
"restarts: yes" or "restarts: no" for the next session. Commands are lines of its input: "save" makes the
client save itself for the session's end, "die" ends the client.
"""

import ctypes
import os
import select

SAVE_LOCAL, SAVE_BOTH = 1, 2
INTERACT_NONE, INTERACT_ANY = 0, 2
RESTART_STYLE = b"RestartStyleHint"
RESTART_NEVER = 3

ice = ctypes.CDLL("libICE.so.6", mode=ctypes.RTLD_GLOBAL)
sm = ctypes.CDLL("libSM.so.6")
libc = ctypes.CDLL(None)

pointer = ctypes.c_void_p
libc.free.argtypes = [pointer]
ice.IceAcceptConnection.restype = pointer
ice.IceAcceptConnection.argtypes = [pointer, pointer]
ice.IceCloseConnection.argtypes = [pointer]
ice.IceComposeNetworkIdList.restype = ctypes.c_char_p
ice.IceConnectionNumber.argtypes = [pointer]
ice.IceConnectionStatus.argtypes = [pointer]
ice.IceGetListenConnectionNumber.argtypes = [pointer]
ice.IceProcessMessages.argtypes = [pointer, pointer, pointer]
sm.SmFreeProperty.argtypes = [pointer]
sm.SmsCleanUp.argtypes = [pointer]
sm.SmsDie.argtypes = [pointer]
sm.SmsGenerateClientID.argtypes = [pointer]
sm.SmsGenerateClientID.restype = pointer
sm.SmsGetIceConnection.argtypes = [pointer]
sm.SmsGetIceConnection.restype = pointer
sm.SmsRegisterClientReply.argtypes = [pointer, pointer]
sm.SmsSaveYourself.argtypes = [pointer] + [ctypes.c_int] * 4
sm.SmsSaveYourselfPhase2.argtypes = [pointer]


class Value(ctypes.Structure):
    _fields_ = [("length", ctypes.c_int), ("value", pointer)]


class Property(ctypes.Structure):
    _fields_ = [
        ("name", ctypes.c_char_p),
        ("type", ctypes.c_char_p),
        ("count", ctypes.c_int),
        ("values", ctypes.POINTER(Value)),
    ]


class Callback(ctypes.Structure):
    _fields_ = [("function", pointer), ("data", pointer)]


CALLBACKS = (
    "register_client",
    "interact_request",
    "interact_done",
    "save_yourself_request",
    "save_yourself_phase2_request",
    "save_yourself_done",
    "close_connection",
    "set_properties",
    "delete_properties",
    "get_properties",
)


def say(text):
    print(text, flush=True)


class Manager:
    def __init__(self):
        self._client = None
        self._begun = ""  # of a line
        self._ends = False
        # Callbacks take at most four arguments; those with fewer ignore the rest.
        function = ctypes.CFUNCTYPE(ctypes.c_int, pointer, pointer, pointer, pointer)
        self._functions = {name: function(getattr(self, f"_{name}", self._nothing)) for name in CALLBACKS}
        mask, callbacks = ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(Callback)
        self._accepting = ctypes.CFUNCTYPE(ctypes.c_int, pointer, pointer, mask, callbacks, pointer)(self._new_client)
        error = ctypes.create_string_buffer(256)
        trust = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_char_p)
        self._trust = trust(lambda _: 1)
        if not sm.SmsInitialize(b"tests", b"1", self._accepting, None, self._trust, 255, error):
            raise OSError(error.value.decode())
        count = ctypes.c_int()
        listening = ctypes.POINTER(pointer)()
        if not ice.IceListenForConnections(ctypes.byref(count), ctypes.byref(listening), 255, error):
            raise OSError(error.value.decode())
        self._listening = {
            ice.IceGetListenConnectionNumber(listening[index]): listening[index] for index in range(count.value)
        }
        for each in self._listening.values():
            ice.IceSetHostBasedAuthProc(pointer(each), self._trust)
        addresses = ice.IceComposeNetworkIdList(count, listening).decode().split(",")
        self._connections = {}
        say("at " + next(address for address in addresses if address.startswith("local/")))

    def _new_client(self, _connection, _data, mask, callbacks, _reason):
        mask[0] = (1 << len(CALLBACKS)) - 1
        for index, name in enumerate(CALLBACKS):
            callbacks[index].function = ctypes.cast(self._functions[name], pointer)
            callbacks[index].data = None
        return 1

    def _nothing(self, *_):
        return 1

    def _register_client(self, client, _data, previous, _unused):
        if previous:
            return 0  # of another session
        self._client = client
        sm.SmsRegisterClientReply(client, sm.SmsGenerateClientID(client))
        sm.SmsSaveYourself(client, SAVE_LOCAL, False, INTERACT_NONE, False)
        return 1

    def _interact_request(self, *_):
        say("asks the user")
        return 1

    def _save_yourself_phase2_request(self, client, *_):
        sm.SmsSaveYourselfPhase2(client)
        return 1

    def _save_yourself_done(self, _client, _data, success, _unused):
        say("saved" if (success or 0) & 1 else "not saved")
        return 1

    def _close_connection(self, client, *_):
        connection = sm.SmsGetIceConnection(client)
        self._connections = {number: each for number, each in self._connections.items() if each != connection}
        sm.SmsCleanUp(client)
        ice.IceCloseConnection(connection)
        self._client = None
        say("gone")
        return 1

    def _set_properties(self, _client, _data, count, properties):
        listed = ctypes.cast(properties, ctypes.POINTER(ctypes.POINTER(Property)))
        for index in range((count or 0) & 0xFFFFFFFF):
            each = listed[index].contents
            if each.name == RESTART_STYLE:
                style = ctypes.cast(each.values[0].value, ctypes.POINTER(ctypes.c_ubyte))[0]
                say("restarts: " + ("no" if style == RESTART_NEVER else "yes"))
            sm.SmFreeProperty(ctypes.cast(listed[index], pointer))
        libc.free(properties)
        return 1

    def _accept(self, listening):
        status = ctypes.c_int()
        connection = ice.IceAcceptConnection(listening, ctypes.byref(status))
        if connection:
            while ice.IceConnectionStatus(connection) == 0:
                ice.IceProcessMessages(connection, None, None)
            self._connections[ice.IceConnectionNumber(connection)] = connection

    def _told(self):
        read = os.read(0, 4096).decode()
        if not read:
            self._ends = True
        *lines, self._begun = (self._begun + read).split("\n")
        for line in lines:
            if line == "save":
                sm.SmsSaveYourself(self._client, SAVE_BOTH, True, INTERACT_ANY, False)
            elif line == "die":
                sm.SmsDie(self._client)

    def run(self):
        while not self._ends:
            ready, _, _ = select.select([0, *self._listening, *self._connections], [], [])
            for number in ready:
                if number == 0:
                    self._told()
                elif number in self._listening:
                    self._accept(self._listening[number])
                elif number in self._connections:
                    connection = self._connections[number]
                    if ice.IceProcessMessages(connection, None, None) == 1:  # an error of the connection
                        self._connections.pop(number, None)
                        say("gone")


if __name__ == "__main__":
    Manager().run()
