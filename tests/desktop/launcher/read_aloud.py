"""The launcher's objects as a screen reader receives them."""

import json
from pathlib import Path

from harness import until
from launcher.on_x11 import OnX11

READER = Path(__file__).parents[1] / "accessibility" / "reader.py"
BUS = "/usr/libexec/at-spi-bus-launcher"
PYTHON = "/usr/bin/python3"  # the interpreter that has the introspection package


class ReadAloud(OnX11):
    def begin_session(self, *arguments, **settings):
        settings["environment"] = {**settings.get("environment", {}), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        super().begin_session(*arguments, **settings)
        # AT-SPI's registry is in the system's data folders, which other programs of the session do not use.
        self.session.start(BUS, "--launch-immediately", environment={"XDG_DATA_DIRS": "/usr/share"})
        until(lambda: "true" in self.session.ask_bus("NameHasOwner", "org.a11y.Bus"), "the bus of accessible objects")

    def tree(self):
        """All its objects, in order."""
        answer = self.session.run(PYTHON, "-B", READER, "tree", check=False)
        return json.loads(answer) if answer.strip() else []

    def find(self, role, name):
        """The one object of that role and name; None while it does not exist."""
        found = [each for each in self.tree() if each["role"] == role and each["name"] == name]
        return found[0] if len(found) == 1 else None

    def press_object(self, role, name):
        """Presses an object once it exists: it may just be created again."""
        command = (PYTHON, "-B", READER, "press", role, name)

        def answered():
            answer = self.session.result_of(*command)
            return answer if answer.returncode != 1 else None

        answer = until(answered, f"{role} {name!r}")
        self.assertEqual(answer.returncode, 0, answer.stderr)

    def follow_menus(self):
        """Starts a reader that prints "menu TITLES" for each menu that opens from now on."""
        reader = self.session.start(PYTHON, "-B", READER, "menus")
        reader.expect("ready")
        return reader

    def objects_in(self, role, name):
        """The objects in the one window of that role and name, in order; empty while it does not exist."""
        objects = self.tree()
        starts = [index for index, each in enumerate(objects) if (each["role"], each["name"]) == (role, name)]
        if len(starts) != 1:
            return []
        inside = objects[starts[0] + 1 :]
        ends = (index for index, each in enumerate(inside) if each["role"] in ("alert", "dialog"))
        return inside[: next(ends, None)]
