"""How the launcher is reached while it runs: by starting it again, and over the session bus."""

import json
import re
import signal
import socket
import time

from harness import until
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

NAME = "org.amberquill.Amberquill"
OBJECT = "/org/amberquill/Amberquill"


class Reaching(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def call(self, method, *arguments):
        return self.session.run(
            *("gdbus", "call", "--session", "--dest", NAME, "--object-path", OBJECT),
            *("--method", f"org.freedesktop.Application.{method}", *arguments),
        )

    def act(self, action):
        self.call("ActivateAction", action, "[]", "{}")

    def expect_active(self):
        window = self.session.window_of_class(WINDOW_CLASS)
        until(lambda: self.session.focused_window() == window, "the focus")
        self.window = window

    def hide(self):
        self.session.press("Escape")
        self.expect_hidden()

    def start_again(self, **settings):
        """A second start: it must end well, at once and without a word."""
        second = self.begin_launcher(**settings)
        self.assertEqual(second.wait(), 0)
        self.assertEqual(second.lines, [])

    def test_a_second_start_shows_a_hidden_launcher_and_ends(self):
        launcher = self.begin_shown_launcher(self.made)
        self.hide()
        self.start_again()
        self.expect_active()
        self.end_launcher(launcher)

    def test_a_second_start_leaves_a_shown_launcher_up(self):
        launcher = self.begin_shown_launcher(self.made)
        self.start_again()
        self.expect_active()
        self.end_launcher(launcher)

    def test_the_action_toggles(self):
        launcher = self.begin_shown_launcher(self.made)
        self.act("toggle")
        self.expect_hidden()
        self.act("toggle")
        self.expect_active()
        self.act("hide")
        self.expect_hidden()
        self.act("show")
        self.expect_active()
        self.end_launcher(launcher)

    def test_the_end_of_the_first_makes_room_for_the_next(self):
        self.end_launcher(self.begin_shown_launcher(self.made))
        self.end_launcher(self.begin_shown_launcher(self.made))

    def test_a_first_that_hangs_is_not_waited_for_forever(self):
        first = self.begin_shown_launcher(self.made)
        self.hide()
        first.process.send_signal(signal.SIGSTOP)
        second = self.begin_launcher()
        self.expect_active()
        self.end_launcher(second)

    def test_a_first_that_dies_while_it_is_asked_leaves_the_start_to_the_second(self):
        first = self.begin_shown_launcher(self.made)
        self.hide()
        first.process.send_signal(signal.SIGSTOP)
        second = self.begin_launcher()
        until(lambda: len(self.bus_clients()) == 2, "the second start at the bus")
        first.kill()
        self.expect_active()
        self.act("toggle")
        self.expect_hidden()
        self.end_launcher(second)

    def bus_clients(self):
        """Processes other than the bus's own tools that have said hello."""
        answer = self.session.run(
            *("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/"),
            *("--method", "org.freedesktop.DBus.ListNames"),
        )
        # One of them is gdbus itself; the launcher has a second connection for starting applications.
        found = set()
        for name in re.findall(r"':[\d.]+'", answer):
            reply = self.session.run(
                *("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/"),
                *("--method", "org.freedesktop.DBus.GetConnectionUnixProcessID", name.strip("'")),
                check=False,
            )
            match = re.search(r"uint32 (\d+)", reply)
            if match and (comm := self.command_of(match[1])) == "amberquill":
                found.add((match[1], comm))
        return found

    @staticmethod
    def command_of(pid):
        try:
            with open(f"/proc/{pid}/comm", encoding="utf-8") as file:
                return file.read().strip()
        except OSError:
            return None


class WithoutABus(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def test_it_runs_all_the_same(self):
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.session.folder}/nowhere"
        self.end_launcher(self.begin_shown_launcher(self.made))

    def test_a_bus_that_hangs_hardly_delays_it(self):
        path = f"{self.session.folder}/hung"
        with socket.socket(socket.AF_UNIX) as hung:
            hung.bind(path)
            hung.listen(8)
            self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={path}"
            before = time.monotonic()
            launcher = self.begin_shown_launcher(self.made)
            self.assertLess(time.monotonic() - before, 5)
            self.click_icon(0)
            until(self.applications.started, "the application's start")
            self.expect_hidden()
            self.end_launcher(launcher)


class Ending(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def expect_saved(self, number):
        # Nothing changes, so nothing is saved before the end; what is saved then is written in our own way.
        layout = [{"app": {"_0": str(application.path)}} for application in self.made]
        self.layout_file.parent.mkdir()
        self.layout_file.write_text(json.dumps(layout), encoding="utf-8")
        launcher = self.begin_shown_launcher(self.made)
        self.assertEqual(self.layout_file.read_text(encoding="utf-8"), json.dumps(layout))
        launcher.process.send_signal(number)
        self.assertEqual(launcher.wait(), 0)
        self.assertNotEqual(self.layout_file.read_text(encoding="utf-8"), json.dumps(layout))
        self.assertEqual(json.loads(self.layout_file.read_bytes()), layout)

    def test_the_layout_is_saved_when_the_session_ends(self):
        self.expect_saved(signal.SIGTERM)

    def test_the_layout_is_saved_when_the_terminal_goes(self):
        self.expect_saved(signal.SIGHUP)

    def test_the_layout_is_saved_when_the_user_interrupts(self):
        self.expect_saved(signal.SIGINT)
