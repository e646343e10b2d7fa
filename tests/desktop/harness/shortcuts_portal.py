"""A fake desktop portal, run as a program: global shortcuts on the session bus.

Prints "ready", "program ID" for each registered program and "bound ID TRIGGER" for each bound shortcut. Commands are
lines of its input: "press TOKEN" presses the last bound shortcut, with that activation token.
"""

import os

from gi.repository import Gio, GLib

NAME = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
SHORTCUTS = "org.freedesktop.portal.GlobalShortcuts"
DESCRIPTION = f"""<node>
<interface name="org.freedesktop.host.portal.Registry">
<method name="Register"><arg direction="in" type="s"/><arg direction="in" type="a{{sv}}"/></method>
</interface>
<interface name="{SHORTCUTS}">
<method name="CreateSession"><arg direction="in" type="a{{sv}}"/><arg direction="out" type="o"/></method>
<method name="ListShortcuts">
<arg direction="in" type="o"/><arg direction="in" type="a{{sv}}"/><arg direction="out" type="o"/>
</method>
<method name="BindShortcuts">
<arg direction="in" type="o"/><arg direction="in" type="a(sa{{sv}})"/><arg direction="in" type="s"/>
<arg direction="in" type="a{{sv}}"/><arg direction="out" type="o"/>
</method>
<signal name="Activated"><arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{{sv}}"/></signal>
<signal name="Deactivated"><arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{{sv}}"/></signal>
<property name="version" type="u" access="read"/>
</interface></node>"""


def say(text):
    print(text, flush=True)


class Portal:
    def __init__(self, loop):
        self._loop = loop
        self._begun = ""  # of a line
        self._session = None
        self._shortcut = None
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        for interface in Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces:
            self._bus.register_object(PATH, interface, self._called, self._property, None)
        Gio.bus_own_name_on_connection(self._bus, NAME, Gio.BusNameOwnerFlags.NONE, lambda *_: say("ready"), None)
        GLib.io_add_watch(0, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, self._told)

    @staticmethod
    def _property(*_):
        return GLib.Variant("u", 1)

    def _called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        values = arguments.unpack()
        if method == "Register":
            say(f"program {values[0]}")
            invocation.return_value(None)
            return
        who, options = sender[1:].replace(".", "_"), values[-1] if method != "CreateSession" else values[0]
        results = {}
        if method == "CreateSession":
            self._session = f"{PATH}/session/{who}/{options['session_handle_token']}"
            results = {"session_handle": GLib.Variant("s", self._session)}
        elif method == "ListShortcuts":
            results = {"shortcuts": GLib.Variant("a(sa{sv})", [])}
        elif method == "BindShortcuts":
            results = {"shortcuts": arguments.get_child_value(1)}
        request = f"{PATH}/request/{who}/{options['handle_token']}"
        invocation.return_value(GLib.Variant("(o)", (request,)))
        response = GLib.Variant("(ua{sv})", (0, results))
        self._bus.emit_signal(sender, request, "org.freedesktop.portal.Request", "Response", response)
        if method == "BindShortcuts":
            for self._shortcut, described in values[1]:
                say(f"bound {self._shortcut} {described.get('preferred_trigger')}")

    def _press(self, token):
        for signal in ("Activated", "Deactivated"):
            options = {"activation_token": GLib.Variant("s", token)}
            arguments = GLib.Variant("(osta{sv})", (self._session, self._shortcut, 1, options))
            self._bus.emit_signal(None, PATH, SHORTCUTS, signal, arguments)

    def _told(self, _source, _condition):
        read = os.read(0, 4096).decode()
        if not read:
            self._loop.quit()
            return False
        *lines, self._begun = (self._begun + read).split("\n")
        for line in lines:
            command, _, argument = line.partition(" ")
            if command == "press":
                self._press(argument)
        return True


if __name__ == "__main__":
    main_loop = GLib.MainLoop()
    portal = Portal(main_loop)
    main_loop.run()
