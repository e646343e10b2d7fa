"""A fake tray, run as a program: a watcher and host of status notifier items on the session bus.

Prints "item" when one registers and "item gone" when its owner leaves. Commands are lines of its input:
"activate" clicks the item, "icon" writes its symbol's name ("-" for none) and the sizes of its pictures, "menu" writes
the titles of its menu, nested ones in brackets and choices with a circle, and "choose TITLE" chooses the entry of that
title.
"""

import os

from gi.repository import Gio, GLib

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
DESCRIPTION = f"""<node><interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg direction="in" type="s"/></method>
<method name="RegisterStatusNotifierHost"><arg direction="in" type="s"/></method>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
<signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
<signal name="StatusNotifierHostRegistered"/>
</interface></node>"""


def say(text):
    print(text, flush=True)


class Host:
    def __init__(self, loop):
        self._loop = loop
        self._begun = ""  # of a line
        self._owner = None
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
        self._bus.register_object("/StatusNotifierWatcher", interface, self._called, self._property, None)
        Gio.bus_own_name_on_connection(self._bus, WATCHER, Gio.BusNameOwnerFlags.NONE, lambda *_: say("ready"), None)
        GLib.io_add_watch(0, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, self._told)

    def _called(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        invocation.return_value(None)
        name = arguments[0]
        if method == "RegisterStatusNotifierItem" and name != self._owner:
            self._owner = name
            Gio.bus_watch_name_on_connection(
                self._bus, name, Gio.BusNameWatcherFlags.NONE, None, lambda *_: self._gone(name)
            )
            say("item")

    def _gone(self, owner):
        if owner == self._owner:
            self._owner = None
            say("item gone")

    @staticmethod
    def _property(_bus, _sender, _path, _interface, name):
        return {
            "RegisteredStatusNotifierItems": GLib.Variant("as", []),
            "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
            "ProtocolVersion": GLib.Variant("i", 0),
        }[name]

    def _ask(self, path, interface, method, arguments):
        return self._bus.call_sync(
            self._owner, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, 10_000, None
        ).unpack()

    def _item(self, name):
        arguments = GLib.Variant("(ss)", (ITEM, name))
        return self._ask("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get", arguments)[0]

    def _menu(self):
        """The menu's entries, updated like at each opening: (id, title, enabled, checked, entries)."""
        path = self._item("Menu")
        self._ask(path, MENU, "AboutToShow", GLib.Variant("(i)", (0,)))
        layout = self._ask(path, MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))[1]

        def entry(node):
            number, properties, children = node
            title = "-" if properties.get("type") == "separator" else properties.get("label", "")
            marks = "" if properties.get("enabled", True) else "!"
            chosen = properties.get("toggle-state") == 1
            if properties.get("toggle-type") == "radio":
                marks += "●" if chosen else "○"
            else:
                marks += "*" if chosen else ""
            return number, title, marks, [entry(child) for child in children]

        return path, entry(layout)[3]

    def _told(self, _source, _condition):
        read = os.read(0, 4096).decode()
        if not read:
            self._loop.quit()
            return False
        *lines, self._begun = (self._begun + read).split("\n")
        for line in lines:
            self._carry_out(*line.partition(" ")[::2])
        return True

    def _carry_out(self, command, argument):
        if command == "activate":
            self._ask("/StatusNotifierItem", ITEM, "Activate", GLib.Variant("(ii)", (0, 0)))
        elif command == "icon":
            sizes = [f"{width}x{height}" for width, height, _ in self._item("IconPixmap")]
            say(" ".join(["icon", self._item("IconName") or "-", *sizes]))
        elif command == "menu":
            say("menu " + titles(self._menu()[1]))
        elif command == "choose":
            path, entries = self._menu()
            number = find(entries, argument)
            event = GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("i", 0), 0))
            self._ask(path, MENU, "Event", event)


def titles(entries):
    return ", ".join(
        title + marks + (f" [{titles(children)}]" if children else "") for _, title, marks, children in entries
    )


def find(entries, wanted):
    for number, title, _, children in entries:
        if title == wanted:
            return number
        nested = find(children, wanted)
        if nested is not None:
            return nested
    return None


if __name__ == "__main__":
    main_loop = GLib.MainLoop()
    host = Host(main_loop)
    main_loop.run()
