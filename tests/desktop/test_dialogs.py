"""The dialogs over the launcher: reset, export, import, by mouse and by keys."""

import json

from harness import until
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

BROKEN = b'{"format": "amberquill-layout", "items": [{"app"'


class Dialogs(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        self.desktop = self.session.home / "Desktop"
        self.desktop.mkdir()
        self.file = self.desktop / "Amberquill Layout.json"
        # Not in alphabetical order.
        self.mixed = self.made[::-1]
        self.write_layout(self.mixed)

    def write_layout(self, applications):
        self.layout_file.parent.mkdir(exist_ok=True)
        layout = [{"app": {"_0": str(application.path)}} for application in applications]
        self.layout_file.write_text(json.dumps(layout), encoding="utf-8")

    def expect_closed(self, launcher):
        """Expects that no dialog is left and the launcher is up with the focus."""
        self.expect_no_other_window(launcher)
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [self.window])
        self.expect_focus()

    def expect_above(self, dialog):
        def is_above():
            stack = self.session.property("root", "_NET_CLIENT_LIST_STACKING").split(", ")
            numbers = [int(each, 16) for each in stack if int(each, 16) in (self.window, dialog)]
            return numbers == [self.window, dialog]

        until(is_above, "the dialog above the launcher")
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [self.window])

    def window_at(self, x, y):
        self.session.move_pointer(x, y)
        answer = self.session.run("xdotool", "getmouselocation", "--shell")
        return next(line for line in answer.splitlines() if line.startswith("WINDOW="))

    def click_button(self, dialog, from_right):
        """Clicks a button of a message, counted from the right."""

        def settled():
            place = self.session.geometry(dialog)
            return place if abs(place.x + place.width / 2 - self.session.width / 2) < 40 else None

        place = until(settled, "the dialog in its place")
        button = place.x + place.width - 51 - 86 * from_right, place.y + place.height - 23
        # The window manager briefly shows a pop-up with the desktop's name above everything.
        frame = self.window_at(place.x + 5, place.y + 5)
        until(lambda: self.window_at(*button) == frame, "the button")
        self.session.click(*button)

    def test_a_reset_by_keys(self):
        launcher = self.begin_shown_launcher(self.mixed)
        self.choose(self.RESET)
        self.expect_above(self.expect_dialog(launcher))
        self.session.press("Escape")
        self.expect_closed(launcher)
        self.expect_page(self.mixed)
        self.choose(self.RESET)
        self.expect_dialog(launcher)
        self.session.press("Tab", "space")
        self.expect_closed(launcher)
        self.expect_page(self.mixed)
        self.choose(self.RESET)
        self.expect_dialog(launcher)
        self.session.press("Return")
        self.expect_closed(launcher)
        self.expect_page(self.made)
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), [str(application.path) for application in self.made])

    def test_a_reset_by_mouse(self):
        launcher = self.begin_shown_launcher(self.mixed)
        self.choose(self.RESET)
        self.click_button(self.expect_dialog(launcher), 0)
        self.expect_closed(launcher)
        self.expect_page(self.mixed)
        self.choose(self.RESET)
        self.click_button(self.expect_dialog(launcher), 1)
        self.expect_closed(launcher)
        self.expect_page(self.made)
        self.end_launcher(launcher)

    def test_a_layout_that_was_exported_is_the_same_when_it_is_imported(self):
        launcher = self.begin_shown_launcher(self.mixed)
        self.choose(self.EXPORT)
        dialog = self.expect_dialog(launcher)
        self.assertEqual(self.session.property(dialog, "_NET_WM_NAME"), '"Export Layout"')
        self.expect_above(dialog)
        self.session.press("Return")
        until(self.file.exists, "the file")
        self.expect_closed(launcher)
        self.assertEqual([path.name for path in self.desktop.iterdir()], [self.file.name])
        self.choose(self.SORT)
        self.expect_page(self.made)
        self.choose(self.IMPORT)
        dialog = self.expect_dialog(launcher)
        self.assertEqual(self.session.property(dialog, "_NET_WM_NAME"), '"Import Layout"')
        self.session.type(self.file.name)
        self.session.press("Return")
        self.expect_dialog(launcher, dialog)
        self.session.press("Return")
        self.expect_closed(launcher)
        self.expect_page(self.mixed)
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), [str(application.path) for application in self.mixed])

    def test_an_existing_file_is_replaced_only_after_confirmation(self):
        self.file.write_bytes(b"mine")
        launcher = self.begin_shown_launcher(self.mixed)
        self.choose(self.EXPORT)
        dialog = self.expect_dialog(launcher)
        self.session.press("Return")
        self.expect_dialog(launcher, dialog)
        self.session.press("Escape")
        until(lambda: self.session.focused_window() == dialog, "the file dialog")
        self.assertEqual(self.file.read_bytes(), b"mine")
        self.session.press("Return")
        self.expect_dialog(launcher, dialog)
        self.session.press("alt+y")
        # The file is written after the dialog has closed.
        until(lambda: self.file.read_bytes() != b"mine", "the written file")
        self.expect_closed(launcher)
        self.assertEqual(len(json.loads(self.file.read_bytes())["items"]), 8)
        self.end_launcher(launcher)

    def test_an_import_is_applied_only_after_confirmation(self):
        launcher = self.begin_shown_launcher(self.mixed)
        self.choose(self.EXPORT)
        self.expect_dialog(launcher)
        self.session.press("Return")
        until(self.file.exists, "the file")
        self.expect_closed(launcher)
        self.choose(self.SORT)
        self.expect_page(self.made)
        for from_right, wanted in ((0, self.made), (1, self.mixed)):
            self.choose(self.IMPORT)
            dialog = self.expect_dialog(launcher)
            self.session.type(self.file.name)
            self.session.press("Return")
            self.click_button(self.expect_dialog(launcher, dialog), from_right)
            self.expect_closed(launcher)
            self.expect_page(wanted)
        self.end_launcher(launcher)

    def test_a_broken_file_is_reported_and_changes_nothing(self):
        self.file.write_bytes(BROKEN)
        launcher = self.begin_shown_launcher(self.mixed)
        self.choose(self.LANGUAGE, 5)
        preferences = self.session.config / "Amberquill" / "preferences.json"
        until(lambda: preferences.exists() and '"de"' in preferences.read_text(encoding="utf-8"), "German")
        self.expect_no_other_window(launcher)
        self.choose(self.IMPORT)
        dialog = self.expect_dialog(launcher)
        self.assertEqual(self.session.property(dialog, "_NET_WM_NAME"), '"Anordnung importieren"')
        self.session.type(self.file.name)
        self.session.press("Return")
        question = self.expect_dialog(launcher, dialog)
        self.session.press("Return")
        self.expect_dialog(launcher, dialog, question)
        self.session.press("Return")
        self.expect_closed(launcher)
        self.expect_page(self.mixed)
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), [str(application.path) for application in self.mixed])

    def test_a_failed_export_is_reported(self):
        # Not even root can create a folder there.
        self.file.symlink_to("/proc/nowhere/layout.json")
        launcher = self.begin_shown_launcher(self.mixed)
        self.choose(self.EXPORT)
        dialog = self.expect_dialog(launcher)
        self.session.press("Return")
        self.expect_dialog(launcher, dialog)
        self.session.press("Return")
        self.expect_closed(launcher)
        self.end_launcher(launcher)

    def test_a_dialog_outlives_the_launcher_and_is_not_covered_by_it(self):
        launcher = self.begin_shown_launcher(self.mixed)
        self.choose(self.RESET)
        dialog = self.expect_dialog(launcher)
        self.act("hide")
        self.expect_hidden()
        self.assertIn(dialog, self.other_windows(launcher))
        other = self.session.start("xmessage", "other")
        until(lambda: self.session.focused_window() != dialog, "the other application's focus")
        self.session.run("xdotool", "windowactivate", "--sync", dialog)
        until(lambda: self.session.focused_window() == dialog, "the dialog's focus")
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [])
        other.kill()
        self.session.press("Return")
        self.expect_no_other_window(launcher)
        self.act("show")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        self.end_launcher(launcher)
