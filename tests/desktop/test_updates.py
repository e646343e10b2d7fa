"""Updates, from the menu entry to the start of the new program."""

import json
import os
import tempfile
from pathlib import Path

from harness import until
from launcher.case import WINDOW_CLASS
from launcher.read_aloud import ReadAloud
from launcher.updates import SigningKey, UpdateServer, feed, program_image, write_information

PAGE = "https://example.org/amberquill/9.9"
NOTES = "Faster.\n<b>Bolder.</b>"


class Updates(ReadAloud):
    @classmethod
    def setUpClass(cls):
        # The folder in which an image is mounted.
        cls.mount = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.install(cls.mount / "usr")

    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        self.server = self.enterContext(UpdateServer())
        self.key = SigningKey()
        self.settings = {}
        self.preferences = self.session.config / "Amberquill" / "preferences.json"

    def begin_launcher(self):
        return self.session.start(self.mount / "usr/bin/amberquill", environment=self.settings)

    def inform(self, **values):
        write_information(self.mount / "usr/share/amberquill/Info.plist", **values)

    def offer(self, body, status=200, **values):
        """Serves the feed; the installed program has version 7.8."""
        self.server.answers["/feed"] = status, body
        self.inform(version="7.8", feed_address=self.server.address("/feed"), **values)

    def begin_checking(self):
        """Starts the launcher and checks for updates."""
        launcher = self.begin_shown_launcher(self.made)
        self.choose(self.CHECK_FOR_UPDATES)
        return launcher

    def check_again(self):
        self.act("show")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        until(lambda: self.session.focused_window() == self.window, "the focus")
        self.choose(self.CHECK_FOR_UPDATES)

    def expect_texts(self, role, title, texts, focused):
        """Waits for a dialog with these texts and this focused button. The launcher is hidden."""
        read = []

        def is_there():
            nonlocal read
            read = [(each["name"], each["states"], each["role"]) for each in self.objects_in(role, title)]
            named = {name for name, states, _ in read if name and "showing" in states}
            return named >= set(texts) and any(name == focused and "focused" in states for name, states, _ in read)

        try:
            until(is_there, f"{texts}")
        except AssertionError as error:
            raise AssertionError(f"{error}; read: {read}") from None
        self.expect_hidden()
        return [name for name, _, role in read if role == "push button"]

    def expect_message(self, *texts, focused="OK"):
        return self.expect_texts("alert", "Amberquill", texts, focused)

    def expect_found(self, focused="Install Update"):
        title = "A new version of Amberquill is available"
        return self.expect_texts(
            "dialog", title, [title, "Amberquill 9.9 is available. You have version 7.8."], focused
        )

    def expect_gone(self, launcher):
        """There is no dialog any more, and the launcher is still hidden."""
        self.expect_no_other_window(launcher)
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [])

    def stored(self):
        return json.loads(self.preferences.read_bytes()) if self.preferences.exists() else {}


class Checks(Updates):
    def test_without_a_feed_the_up_to_date_alert_is_above_the_launcher(self):
        self.inform(version="7.8")
        launcher = self.begin_checking()
        self.expect_message("You're up to date", "Amberquill 7.8 is the latest version.")
        alert = self.session.focused_window()
        self.assertIn("_NET_WM_STATE_ABOVE", self.session.atoms(alert, "_NET_WM_STATE"))
        # Another application takes the focus and ends.
        other = self.session.start("xmessage", "other")
        until(lambda: self.session.focused_window() != alert, "the other application's focus")
        other.kill()
        until(lambda: self.session.focused_window() == alert, "the alert's focus")
        self.assertEqual(self.session.windows_of_class(WINDOW_CLASS), [])
        self.session.press("Return")
        self.expect_gone(launcher)
        self.assertEqual(self.server.requests, [])
        self.act("show")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        self.end_launcher(launcher)

    def test_a_missing_version_is_zero(self):
        self.inform()
        launcher = self.begin_checking()
        self.expect_message("Amberquill 0 is the latest version.")
        self.session.press("Escape")
        self.expect_gone(launcher)
        self.end_launcher(launcher)

    def test_a_missing_or_empty_feed_counts_as_up_to_date(self):
        self.offer(b"not found", status=404)
        launcher = self.begin_checking()
        self.expect_message("You're up to date", "Amberquill 7.8 is the latest version.")
        self.session.press("Return")
        self.expect_gone(launcher)
        self.assertEqual(self.server.request_count("/feed"), 1)
        self.server.answers["/feed"] = 200, b""
        self.check_again()
        self.expect_message("You're up to date", "Amberquill 7.8 is the latest version.")
        self.session.press("Return")
        self.expect_gone(launcher)
        self.assertEqual(self.server.request_count("/feed"), 2)
        self.end_launcher(launcher)

    def test_a_feed_without_a_newer_version_is_fetched_twice(self):
        self.offer(feed("7.8", NOTES))
        launcher = self.begin_checking()
        self.expect_message("You're up to date", "Amberquill 7.8 is the latest version.")
        self.assertEqual(self.server.request_count("/feed"), 2)
        self.session.press("Return")
        self.expect_gone(launcher)
        self.end_launcher(launcher)

    def test_the_switch_is_stored(self):
        self.inform(version="7.8")
        launcher = self.begin_shown_launcher(self.made)
        for on in (False, True):
            self.choose(self.CHECK_AUTOMATICALLY)
            until(lambda: self.stored().get("SUEnableAutomaticChecks") is on, f"the switch: {on}")
            self.expect_no_other_window(launcher)
        self.end_launcher(launcher)


class Offers(Updates):
    def setUp(self):
        super().setUp()
        self.opened = self.session.home / "opened"
        folder = self.session.home / "bin"
        folder.mkdir()
        opener = folder / "xdg-open"
        opener.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$@\" > '{self.opened}.part'\nmv '{self.opened}.part' '{self.opened}'\n")
        opener.chmod(0o755)
        self.settings["PATH"] = f"{folder}:{os.environ['PATH']}"

    def test_a_program_that_is_not_an_image_opens_the_page(self):
        self.offer(feed("9.9", NOTES, page=PAGE))
        launcher = self.begin_checking()
        buttons = self.expect_found(focused="Open Release Page")
        self.assertNotIn("Install Update", buttons)
        self.session.press("Return")
        until(self.opened.exists, "the page")
        self.assertEqual(self.opened.read_text(), f"{PAGE}\n")
        self.expect_gone(launcher)
        self.end_launcher(launcher)

    def test_a_page_without_https_is_not_offered(self):
        self.offer(feed("9.9", NOTES, page=self.server.address("/page")))
        launcher = self.begin_checking()
        buttons = self.expect_found(focused="Remind Me Later")
        self.assertNotIn("Open Release Page", buttons)
        self.session.press("Return")
        self.expect_gone(launcher)
        self.end_launcher(launcher)

    def test_a_check_by_the_user_shows_a_skipped_version(self):
        self.offer(feed("9.9", NOTES, page=PAGE))
        launcher = self.begin_checking()
        self.expect_found(focused="Open Release Page")
        self.session.press("Escape")
        self.expect_gone(launcher)
        self.assertNotIn("SUSkippedVersion", self.stored())
        self.check_again()
        self.expect_found(focused="Open Release Page")
        self.press_object("push button", "Skip This Version")
        self.expect_gone(launcher)
        until(lambda: self.stored().get("SUSkippedVersion") == "9.9", "the skipped version")
        self.check_again()
        self.expect_found(focused="Open Release Page")
        self.press_object("push button", "Remind Me Later")
        self.expect_gone(launcher)
        self.assertFalse(self.opened.exists())
        self.end_launcher(launcher)

    def expect_in(self, language, title, notes_title, *texts, focused):
        self.preferences.parent.mkdir()
        self.preferences.write_text(json.dumps({"appLanguage": language}), encoding="utf-8")
        self.offer(feed("9.9", "Schneller & 速い.", page=PAGE))
        launcher = self.begin_checking()
        self.expect_texts("dialog", title, [title, notes_title, *texts], focused)
        notes = next(each for each in self.objects_in("dialog", title) if each["name"] == notes_title and each["text"])
        self.assertEqual(notes["text"], "Schneller & 速い.")
        self.session.press("Escape")
        self.expect_gone(launcher)
        self.end_launcher(launcher)

    def test_it_is_shown_in_german(self):
        self.expect_in(
            "de",
            "Eine neue Version von Amberquill ist verfügbar",
            "Versionshinweise",
            "Amberquill 9.9 ist verfügbar. Du hast Version 7.8.",
            "Diese Version überspringen",
            "Später erinnern",
            focused="Seite der Version öffnen",
        )

    def test_it_is_shown_in_japanese(self):
        self.expect_in(
            "ja",
            "Amberquillの新しいバージョンがあります",
            "リリースノート",
            "Amberquill 9.9を利用できます。お使いのバージョンは7.8です。",
            "このバージョンをスキップ",
            "あとで通知",
            focused="リリースページを開く",
        )


class Installations(Updates):
    """The program runs from an image that the user may replace."""

    def setUp(self):
        super().setUp()
        self.started = self.session.home / "started-again"
        self.image = self.session.home / "images" / "Amberquill.AppImage"
        self.image.parent.mkdir()
        self.old = program_image("7.8", self.started)
        self.new = program_image("9.9", self.started)
        self.image.write_bytes(self.old)
        self.image.chmod(0o755)
        self.settings = {"APPIMAGE": str(self.image), "APPDIR": str(self.mount)}

    def offer_image(self, image=None, key=None, signature=None, length=None):
        image = image or self.new
        self.server.answers["/image"] = 200, image
        body = feed(
            "9.9",
            NOTES,
            address=self.server.address("/image"),
            length=length or len(image),
            signature=signature or self.key.sign(image),
        )
        self.offer(body, key=key if key is not None else self.key.public)

    def expect_old_alone(self):
        self.assertEqual(self.image.read_bytes(), self.old)
        self.assertEqual([path.name for path in self.image.parent.iterdir()], [self.image.name])

    def test_the_image_is_replaced_and_the_new_program_started(self):
        self.offer_image()
        launcher = self.begin_checking()
        self.expect_found()
        self.session.press("Return")
        self.expect_message("The update is installed", "Restart Amberquill to use version 9.9.", focused="Restart Now")
        self.assertEqual(self.image.read_bytes(), self.new)
        self.assertEqual([path.name for path in self.image.parent.iterdir()], [self.image.name])
        self.assertFalse(self.started.exists())
        self.session.press("Return")
        self.assertEqual(launcher.wait(), 0)
        self.assertEqual(launcher.lines, [])
        until(lambda: self.started.exists() and self.started.read_text() == "9.9\n", "the new program")

    def test_a_restart_can_be_postponed(self):
        self.offer_image()
        launcher = self.begin_checking()
        self.expect_found()
        self.session.press("Return")
        self.expect_message("The update is installed", focused="Restart Now")
        self.session.press("Escape")
        self.expect_gone(launcher)
        self.assertEqual(self.image.read_bytes(), self.new)
        self.end_launcher(launcher)
        self.assertFalse(self.started.exists())

    def test_a_cancelled_download_changes_nothing(self):
        self.offer_image()
        self.server.hold("/image", 200_000)
        launcher = self.begin_checking()
        self.expect_found()
        self.session.press("Return")
        self.expect_texts(
            "dialog", "Downloading the update…", ["Downloading the update…", "200.0 kB of 400.1 kB"], "Cancel"
        )
        self.session.press("Return")
        self.expect_gone(launcher)
        self.expect_old_alone()
        self.end_launcher(launcher)
        self.expect_old_alone()

    def test_a_download_is_paused_and_resumed(self):
        self.offer_image()
        rest = self.server.hold("/image", 200_000)
        launcher = self.begin_checking()
        self.expect_found()
        self.session.press("Return")
        self.expect_texts("dialog", "Downloading the update…", ["200.0 kB of 400.1 kB"], "Cancel")
        self.press_object("push button", "Pause")
        self.expect_texts("dialog", "The download is paused", ["200.0 kB of 400.1 kB", "Resume"], "Cancel")
        rest.set()
        self.press_object("push button", "Resume")
        self.expect_message("The update is installed", focused="Restart Now")
        self.assertEqual(self.image.read_bytes(), self.new)
        self.session.press("Escape")
        self.expect_gone(launcher)
        self.end_launcher(launcher)

    def expect_refusal(self, reason):
        launcher = self.begin_checking()
        self.expect_found()
        self.session.press("Return")
        self.expect_message("Update Failed", reason)
        self.expect_old_alone()
        self.session.press("Return")
        self.expect_gone(launcher)
        self.end_launcher(launcher)
        self.expect_old_alone()
        downloads = self.session.cache / "Amberquill" / "updates"
        self.assertEqual([path for path in downloads.rglob("*") if path.stat().st_size > 100_000], [])

    def test_a_signature_with_another_key_is_refused(self):
        self.offer_image(signature=SigningKey(2).sign(self.new))
        self.expect_refusal(
            "The update’s signature is not valid: it may have been tampered with. It was deleted and not installed."
        )

    def test_without_a_key_nothing_is_installed(self):
        self.offer_image(key="")
        self.expect_refusal("This copy of Amberquill has no key to check updates with. Nothing was installed.")
        self.assertEqual(self.server.request_count("/image"), 0)

    def test_a_download_of_a_wrong_length_is_refused(self):
        self.offer_image(length=len(self.new) - 1)
        self.expect_refusal("The download does not have the announced size. It was deleted and not installed.")

    def test_a_program_older_than_the_feeds_version_is_refused(self):
        self.offer_image(image=program_image("7.7", self.started))
        self.expect_refusal("The update is not newer than this version. It was not installed.")
