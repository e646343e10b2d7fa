"""The resources that an X server holds for a process, by the extension X-Resource."""

import ctypes
from contextlib import contextmanager

PROCESS_ID = 2  # XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID
HEAD = 8  # words of a reply before its list; the third is the list's length


@contextmanager
def _connection(display):
    xcb, res = ctypes.CDLL("libxcb.so.1"), ctypes.CDLL("libxcb-res.so.0")
    xcb.xcb_connect.restype = ctypes.c_void_p
    connection = ctypes.c_void_p(xcb.xcb_connect(display.encode(), None))
    try:
        yield res, connection
    finally:
        xcb.xcb_disconnect(connection)


def _reply(res, connection, request, *arguments):
    """The words of a reply."""
    cookie = getattr(res, request)(connection, *arguments)
    taken = getattr(res, f"{request}_reply")
    taken.restype = ctypes.c_void_p
    reply = taken(connection, ctypes.c_uint(cookie), None)
    if not reply:
        raise OSError(f"no answer to {request}")
    words = ctypes.cast(reply, ctypes.POINTER(ctypes.c_uint32))
    result = words[: HEAD + words[1]]
    ctypes.CDLL(None).free(ctypes.c_void_p(reply))
    return result


def _clients(res, connection, process):
    """The base of the resource ids of each of the process's connections."""
    wanted = (ctypes.c_uint32 * 2)(0, PROCESS_ID)
    words = _reply(res, connection, "xcb_res_query_client_ids", 1, wanted)
    place = HEAD
    for _ in range(words[2]):
        client, length, value = words[place], words[place + 2], words[place + 3]
        if value == process:
            yield ctypes.c_uint32(client)
        place += 3 + length // 4


def x_resources(display, process):
    """The number of the process's resources, and the megabytes of its pixmaps."""
    count, size = 0, 0
    with _connection(display) as (res, connection):
        for client in _clients(res, connection, process):
            kinds = _reply(res, connection, "xcb_res_query_client_resources", client)
            count += sum(kinds[HEAD + 1 :: 2])
            size += _reply(res, connection, "xcb_res_query_client_pixmap_bytes", client)[2]
    return count, size / 1024 / 1024
