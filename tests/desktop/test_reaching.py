"""Activating the running launcher: by a second start, and over the session bus."""

import json
import re
import signal
from pathlib import Path

from harness import until
from harness.hanging_bus import HangingBus
from harness.xlib import KeyTaker, StubbornWindowManager
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

NAME = "org.amberquill.Amberquill"
OBJECT = "/org/amberquill/Amberquill"
TRAY_HOST = Path(__file__).parent / "harness" / "tray_host.py"


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
        """Starts it a second time. That process must succeed, at once and without output."""
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

    def test_verbose_prints_debug_lines(self):
        launcher = self.session.start(self.build / "amberquill", "--verbose", "--hide")
        launcher.expect("amberquill.shell: focus: Event::Launched QList()")
        second = self.session.start(self.build / "amberquill", "--verbose", "--toggle")
        self.assertEqual(second.wait(), 0)
        launcher.expect("amberquill.shell: focus: Event::ToggleRequested QList(Action::Show)")
        self.expect_active()
        self.assertEqual([line for line in launcher.lines if not line.startswith("amberquill.")], [])
        self.assertEqual(launcher.terminate(), 0)

    def test_without_verbose_nothing_is_printed(self):
        launcher = self.session.start(self.build / "amberquill", "--hide")
        until(lambda: "true" in self.session.ask_bus("NameHasOwner", NAME), "the program's name")
        second = self.session.start(self.build / "amberquill", "--toggle")
        self.assertEqual(second.wait(), 0)
        self.assertEqual(second.lines, [])
        self.expect_active()
        self.end_launcher(launcher)

    def test_after_the_first_instance_ends_another_one_starts(self):
        self.end_launcher(self.begin_shown_launcher(self.made))
        self.end_launcher(self.begin_shown_launcher(self.made))

    def test_a_hanging_first_instance_delays_a_second_start_only_for_a_time(self):
        first = self.begin_shown_launcher(self.made)
        self.hide()
        first.process.send_signal(signal.SIGSTOP)
        second = self.begin_launcher()
        self.expect_active()
        self.end_launcher(second)

    def test_if_the_first_instance_dies_during_the_call_the_second_one_starts(self):
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
        """Processes connected to the bus, other than the bus's own tools."""
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


class AfterTheBusCameBack(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def test_it_is_reachable_after_any_absence_of_the_bus(self):
        # The launcher's own retries are minutes apart.
        slow = {"AMBERQUILL_SLOWDOWN": "100"}
        launcher = self.session.start(self.build / "amberquill", "--hide", environment=slow)
        until(lambda: "true" in self.session.ask_bus("NameHasOwner", NAME), "the program's name")
        self.session.bus.kill()
        self.session.restart_bus()
        until(lambda: "true" in self.session.ask_bus("NameHasOwner", NAME), "the program's name again")
        self.assertEqual(self.begin_launcher().wait(), 0)
        self.session.window_of_class(WINDOW_CLASS)
        self.end_launcher(launcher)

    def begin_tray(self):
        tray = self.session.start("/usr/bin/python3", "-B", TRAY_HOST)
        tray.expect("item")
        return tray

    def begin_launcher_with_item(self):
        preferences = self.session.config / "Amberquill" / "preferences.json"
        preferences.parent.mkdir()
        preferences.write_text(json.dumps({"showInMenuBar": True}), encoding="utf-8")
        launcher = self.begin_shown_launcher(self.made)
        self.begin_tray()
        return launcher

    def test_its_status_item_is_in_the_new_tray(self):
        launcher = self.begin_launcher_with_item()
        for _ in range(2):
            self.session.bus.kill()
            self.session.restart_bus()
            tray = self.begin_tray()
            self.expect_focus()
            tray.send("activate")
            self.expect_hidden()
            tray.send("activate")
            self.window = self.session.window_of_class(WINDOW_CLASS)
        self.end_launcher(launcher)

    def test_applications_are_started_over_it(self):
        self.made.append(self.applications.add_activatable("App 9", "org.example.Activated"))
        launcher = self.begin_launcher_with_item()
        self.session.bus.kill()
        self.session.restart_bus()
        self.begin_tray()
        self.click_icon(8)
        until(self.applications.started, "the application's start")
        self.assertEqual(self.applications.started().splitlines()[0], "bus")
        self.end_launcher(launcher)


class WithoutABus(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def test_it_runs(self):
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.session.folder}/nowhere"
        self.end_launcher(self.begin_shown_launcher(self.made))

    def test_a_bus_that_hangs_hardly_delays_it(self):
        bus = HangingBus(self.session.folder / "hung", self.session.runtime / "bus", at_connection=1)
        self.addCleanup(bus.close)
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address
        launcher = self.begin_shown_launcher(self.made)
        # The call to the bus still waits for its answer.
        self.assertIn(b"AUTH", bus.connections[0].received)
        self.assertTrue(all(connection.is_open for connection in bus.connections))
        self.click_icon(0)
        until(self.applications.started, "the application's start")
        self.expect_hidden()
        self.end_launcher(launcher)


class Ending(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def expect_saved(self, number):
        # Nothing changes, so the layout is saved only at the end, in the launcher's own format.
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

    def test_the_layout_is_saved_when_the_terminal_closes(self):
        self.expect_saved(signal.SIGHUP)

    def test_the_layout_is_saved_when_the_user_interrupts(self):
        self.expect_saved(signal.SIGINT)


class ByTheChord(OnX11):
    """Control-Alt-Space works whatever window has the focus."""

    CHORD = "ctrl+alt+space"

    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def expect_active(self):
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()

    def begin_other_window(self):
        """A window of another program that has the focus."""
        self.session.start("xmessage", "-geometry", "300x200+50+50", "Another window")
        other = self.session.window_of_class("Xmessage")
        until(lambda: self.session.focused_window() == other, "the other window's focus")
        return other

    def test_it_hides_and_shows(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press(self.CHORD)
        self.expect_hidden()
        self.session.press(self.CHORD)
        self.expect_active()
        self.session.press(self.CHORD)
        self.expect_hidden()
        self.end_launcher(launcher)

    def test_it_shows_over_another_window_and_gives_the_focus_back(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press(self.CHORD)
        self.expect_hidden()
        other = self.begin_other_window()
        self.session.press(self.CHORD)
        self.expect_active()
        self.session.press(self.CHORD)
        self.expect_hidden()
        until(lambda: self.session.focused_window() == other, "the other window's focus")
        self.end_launcher(launcher)

    def test_held_keys_are_one_press(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.run("xdotool", "keydown", "ctrl", "keydown", "alt", "keydown", "space")
        self.expect_hidden()
        self.session.run("xdotool", "keydown", "space", "keydown", "space")
        self.session.run("xdotool", "keyup", "space", "keyup", "alt", "keyup", "ctrl")
        self.session.press(self.CHORD)
        self.expect_active()
        self.end_launcher(launcher)

    def test_a_search_typed_right_after_it_is_not_lost(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press(self.CHORD)
        self.expect_hidden()
        self.session.press(self.CHORD)
        self.expect_active()
        self.session.type("App 3")
        self.session.press("Return")
        until(self.applications.started, "the application's start")
        self.end_launcher(launcher)
        self.assertEqual(self.applications.started(), "App 3\n")

    def test_without_a_window_manager(self):
        self.begin_session(1280, 720, window_manager=None)
        made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        launcher = self.begin_shown_launcher(made)
        self.session.press(self.CHORD)
        self.expect_hidden()
        self.session.press(self.CHORD)
        self.expect_active()
        self.end_launcher(launcher)

    SPACE_BAR = 65  # the key's code

    def begin_client(self, kind):
        client = kind(self.session.display)
        self.addCleanup(client.close)
        return client

    def hold(self, *keys, seconds):
        """Presses keys and releases them after some seconds."""
        down = [word for key in keys for word in ("keydown", key)]
        up = [word for key in reversed(keys) for word in ("keyup", key)]
        self.session.run("xdotool", *down, "sleep", seconds, *up)

    def test_the_duration_of_the_press_does_not_matter(self):
        launcher = self.begin_shown_launcher(self.made)
        # Longer than Qt waits for a focus to come back, shorter than the launcher takes to fade.
        for seconds in (0.1, 0.11, 0.12, 0.13):
            self.hold("ctrl", "alt", "space", seconds=seconds)
            self.expect_hidden()
            self.hold("ctrl", "alt", "space", seconds=seconds)
            self.expect_active()
        self.end_launcher(launcher)

    def test_locks_do_not_matter(self):
        launcher = self.begin_shown_launcher(self.made)
        for lock in ("Caps_Lock", "Num_Lock", "Caps_Lock"):
            self.session.press(lock)
            self.session.press(self.CHORD)
            self.expect_hidden()
            self.session.press(self.CHORD)
            self.expect_active()
        self.end_launcher(launcher)

    def test_it_follows_the_keyboard_mapping(self):
        launcher = self.begin_shown_launcher(self.made, QT_LOGGING_RULES="amberquill.input.debug=true")
        other = self.begin_client(KeyTaker)
        letter_j = 44
        self.session.run("xmodmap", "-e", f"keycode {letter_j} = space", "-e", f"keycode {self.SPACE_BAR} = j j")
        chord = KeyTaker.CONTROL | KeyTaker.ALT
        # Testing the grab earlier could make the launcher's own grab fail.
        followed = "amberquill.input: the keyboard has changed; the chord is on"
        launcher.expect(f"{followed} std::vector({letter_j})")
        self.assertTrue(other.is_taken(letter_j, chord))
        self.assertFalse(other.is_taken(self.SPACE_BAR, chord))
        self.session.press(f"ctrl+alt+{letter_j}")
        self.expect_hidden()
        self.session.press(f"ctrl+alt+{letter_j}")
        self.expect_active()
        self.assertEqual(launcher.terminate(), 0)
        self.assertEqual([line for line in launcher.lines if not line.startswith(followed)], [])

    def test_a_chord_taken_by_another_program_is_left_to_it(self):
        other = self.begin_client(KeyTaker)
        self.assertTrue(other.take(self.SPACE_BAR, KeyTaker.CONTROL | KeyTaker.ALT))
        launcher = self.begin_shown_launcher(self.made)
        other.presses()
        self.session.press(self.CHORD)
        until(other.presses, "the other program's press")
        self.session.press("Escape")
        self.expect_hidden()
        self.end_launcher(launcher)

    def test_keys_of_other_programs_do_not_hide_the_launcher(self):
        other = self.begin_client(KeyTaker)
        f12 = 96
        self.assertTrue(other.take(f12, KeyTaker.ANY_MODIFIER))
        launcher = self.begin_shown_launcher(self.made)
        self.hold("F12", seconds=0.3)
        until(other.presses, "the other program's press")
        self.session.press(self.CHORD)
        self.expect_hidden()
        self.end_launcher(launcher)

    def test_brings_a_shown_launcher_to_the_front_first(self):
        self.begin_session(1280, 720, window_manager=None)
        made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        other = self.begin_other_window_without_manager()
        manager = self.begin_client(StubbornWindowManager)
        launcher = self.begin_launcher()
        window = self.session.window_of_class(WINDOW_CLASS)
        until(lambda: manager.was_asked_for_the_focus(window), "the launcher's wish for the focus")
        self.expect_page(made)
        self.assertEqual(self.session.focused_window(), other)
        self.session.press(self.CHORD)
        until(lambda: manager.was_asked_for_the_focus(window), "its wish to come to the front")
        self.expect_page(made)
        self.session.run("xdotool", "windowfocus", window)
        until(lambda: self.session.focused_window() == window, "the focus")
        self.session.press(self.CHORD)
        self.expect_hidden()
        self.end_launcher(launcher)

    def begin_other_window_without_manager(self):
        self.session.start("xmessage", "-geometry", "300x200+50+50", "Another window")
        other = self.session.window_of_class("Xmessage")
        self.session.run("xdotool", "windowfocus", other)
        until(lambda: self.session.focused_window() == other, "the other window's focus")
        return other

    def test_the_window_manager_may_be_replaced(self):
        launcher = self.begin_shown_launcher(self.made)
        # The focus goes with it.
        self.session.window_manager.kill()
        self.expect_hidden()
        self.toggle_twice()
        self.session.start_window_manager()
        self.toggle_twice()
        self.end_launcher(launcher)

    def toggle_twice(self):
        self.session.press(self.CHORD)
        self.expect_active()
        self.session.press(self.CHORD)
        self.expect_hidden()

    def test_it_works_during_and_after_a_bus_restart(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press(self.CHORD)
        self.expect_hidden()
        self.session.bus.kill()
        self.toggle_twice()
        self.session.restart_bus()
        self.toggle_twice()
        self.end_launcher(launcher)
