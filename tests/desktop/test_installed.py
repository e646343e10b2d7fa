"""The installed launcher: desktops read its files, and the session bus starts it."""

import os
import re
import shutil
import signal
import tempfile
from pathlib import Path

from harness import until
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

NAME = "org.amberquill.Amberquill"
TRAY_HOST = Path(__file__).parent / "harness" / "tray_host.py"


class InstalledCase(OnX11):
    @classmethod
    def setUpClass(cls):
        cls.prefix = Path(cls.enterClassContext(tempfile.TemporaryDirectory())) / "a prefix"
        cls.install(cls.prefix)

    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        share = self.prefix / "share"
        self.session.environment["XDG_DATA_DIRS"] += f":{share}"
        shutil.copy(share / f"dbus-1/services/{NAME}.service", self.session.data / "dbus-1/services")
        # Like a desktop at login: programs that the bus starts need the display.
        shared = {name: self.session.environment[name] for name in ("DISPLAY", "XDG_DATA_DIRS")}
        self.session.ask_bus("UpdateActivationEnvironment", str(shared).replace("'", '"'))
        self.session.ask_bus("ReloadConfig")

    def activate(self):
        self.session.run("gapplication", "launch", NAME)

    def act(self, action):
        # Like desktops call an entry's action. (gdbus introspects the program first, so the bus would start the program
        # for that call.)
        self.session.run("gapplication", "action", NAME, action)

    def process(self):
        """The id of the process that owns the name."""
        answer = self.session.ask_bus("GetConnectionUnixProcessID", NAME)
        return int(re.search(r"uint32 (\d+)", answer)[1])

    def expect_active(self):
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()

    def expect_end(self, pid):
        """Asks the process to end, like a session, and waits until it has released the name."""
        os.kill(pid, signal.SIGTERM)
        until(lambda: "false" in self.session.ask_bus("NameHasOwner", NAME), "the end of the launcher")

    def second_start(self, *arguments):
        second = self.session.start(self.prefix / "bin/amberquill", *arguments)
        self.assertEqual(second.wait(), 0)
        self.assertEqual(second.lines, [])


class Installed(InstalledCase):
    def test_the_bus_starts_the_installed_program_and_it_is_shown(self):
        self.activate()
        self.expect_active()
        pid = self.process()
        self.assertEqual(Path(f"/proc/{pid}/exe").resolve(), self.prefix / "bin/amberquill")
        self.expect_end(pid)

    def test_a_toggle_that_starts_it_shows_it_and_the_next_one_hides_it(self):
        self.act("toggle")
        self.expect_active()
        self.expect_page(self.made)
        self.act("toggle")
        self.expect_hidden()
        self.expect_end(self.process())

    def test_started_by_hide_it_stays_hidden_until_it_is_shown(self):
        self.act("hide")
        pid = self.process()
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [])
        self.act("toggle")
        self.expect_active()
        self.expect_page(self.made)
        self.assertEqual(self.process(), pid)
        self.expect_end(pid)

    def test_a_second_start_does_what_its_argument_says(self):
        self.activate()
        self.expect_active()
        pid = self.process()
        self.second_start("--toggle")
        self.expect_hidden()
        self.second_start("--show")
        self.expect_active()
        self.second_start("--hide")
        self.expect_hidden()
        self.second_start("--toggle")
        self.expect_active()
        self.assertEqual(self.process(), pid)
        self.expect_end(pid)

    def test_it_never_lists_itself(self):
        self.act("show")
        self.expect_active()
        self.expect_page(self.made)
        until(self.layout_file.exists, "the layout")
        self.assertEqual(self.layout(), [str(application.path) for application in self.made])
        self.expect_end(self.process())

    def test_its_window_has_its_icon(self):
        self.act("show")
        self.expect_active()
        # Window managers show their own icon there meanwhile.
        until(lambda: "(128 x 128)" in (self.session.property(self.window, "_NET_WM_ICON") or ""), "the icon")
        self.expect_end(self.process())


class InATray(InstalledCase):
    def test_the_tray_draws_the_icon_themes_symbol_in_its_own_colour(self):
        # Like in the theme's own package.
        with open(self.session.data / "icons/hicolor/index.theme", "a", encoding="utf-8") as index:
            index.write("[symbolic/apps]\nSize=16\nMinSize=8\nMaxSize=512\nType=Scalable\n")
        preferences = self.session.config / "Amberquill" / "preferences.json"
        preferences.parent.mkdir()
        preferences.write_text('{"showInMenuBar": true}', encoding="utf-8")
        tray = self.session.start("/usr/bin/python3", "-B", TRAY_HOST)
        tray.expect("ready")
        self.activate()
        tray.expect("item")
        tray.send("icon")
        self.assertEqual(tray.expect("icon").split()[1], f"{NAME}-symbolic")
        self.assertTrue((self.prefix / f"share/icons/hicolor/symbolic/apps/{NAME}-symbolic.svg").exists())
        self.expect_end(self.process())


class ByKdesShortcut(InstalledCase):
    """The daemon of KDE's global shortcuts reads the installed entry."""

    COMPONENT = "/component/org_amberquill_Amberquill_desktop"
    CONTROL_ALT_SPACE = 0x0C000020  # as Qt writes keys with their modifiers

    def ask_daemon(self, path, method, *arguments):
        return self.session.run(
            *("gdbus", "call", "--session", "--dest", "org.kde.kglobalaccel", "--object-path", path),
            *("--method", f"org.kde.kglobalaccel.Component.{method}", *arguments),
            check=False,
        )

    def test_it_knows_the_chord_and_toggles_the_launcher(self):
        self.session.start("kglobalaccel5")
        listed = until(lambda: self.ask_daemon(self.COMPONENT, "allShortcutInfos"), "the daemon's list")
        actions = dict(re.findall(r"\('(\w+)', '[^']*', '[^']*', '[^']*', '[^']*', '[^']*', (?:@ai )?(\[\d*\])", listed))
        self.assertEqual(
            actions, {"_launch": "[]", "toggle": f"[{self.CONTROL_ALT_SPACE}]", "show": "[]", "hide": "[]"}, listed
        )
        self.ask_daemon(self.COMPONENT, "invokeShortcut", "toggle")
        self.expect_active()
        self.expect_page(self.made)
        self.ask_daemon(self.COMPONENT, "invokeShortcut", "toggle")
        self.expect_hidden()
        self.expect_end(self.process())
