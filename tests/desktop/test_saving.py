"""The user's files are kept and saved."""

import json
import os

from harness import until
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

NO_FILE = "is no regular file: nothing is saved there"


class Saving(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        self.layout_file.parent.mkdir()

    def expect_to_work_without_saving(self):
        """Expects a working launcher with one line in the debug log."""
        launcher = self.begin_shown_launcher(self.made, QT_LOGGING_RULES="amberquill.saving.debug=true")
        self.choose(self.SORT)
        until(lambda: launcher.lines and launcher.lines[0].endswith(NO_FILE), "the line in the log")
        self.act("hide")
        self.expect_hidden()
        self.act("show")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        self.assertEqual(launcher.terminate(), 0)
        self.assertEqual(len(launcher.lines), 1, launcher.lines)

    def test_temporary_files_of_killed_saves_are_removed_after_the_start(self):
        folders = [self.layout_file.parent, self.session.config / "Amberquill", self.session.cache / "Amberquill"]
        elsewhere = self.session.home / "dotfiles"
        elsewhere.mkdir()
        self.layout_file.symlink_to(elsewhere / "layout.json")
        (elsewhere / "layout.json").write_bytes(b"[]")
        left = []
        for folder in [*folders, elsewhere]:
            folder.mkdir(exist_ok=True)
            left += [folder / f".amberquill-{name}" for name in ("0123456789abcdef", "fedcba9876543210", "a1B2c3")]
        own = [elsewhere / ".amberquill-config", elsewhere / ".amberquill-0123456789abcdef.json"]
        for path in [*left, *own]:
            path.write_bytes(b"half a lay")
        launcher = self.begin_shown_launcher(self.made)
        until(lambda: not [path for path in left if path.exists()], "the end of the temporary files")
        self.assertEqual([path for path in own if not path.exists()], [])
        self.end_launcher(launcher)

    def test_a_folder_in_the_layouts_place_is_kept(self):
        self.layout_file.mkdir()
        self.expect_to_work_without_saving()
        self.assertEqual(list(self.layout_file.parent.glob("layout.json*")), [self.layout_file])

    def test_a_link_to_a_folder_and_the_folder_are_kept(self):
        documents = self.session.home / "Documents"
        documents.mkdir()
        self.layout_file.symlink_to(documents)
        self.expect_to_work_without_saving()
        self.assertTrue(documents.is_dir())
        self.assertEqual(os.listdir(documents), [])
        self.assertEqual(list(self.layout_file.parent.glob("layout.json*")), [self.layout_file])

    def test_a_pipe_in_the_layouts_place_is_kept(self):
        os.mkfifo(self.layout_file)
        self.expect_to_work_without_saving()
        self.assertTrue(self.layout_file.is_fifo())

    def test_a_failed_save_is_retried_until_it_succeeds(self):
        paths = [str(application.path) for application in self.made]
        self.layout_file.write_text(json.dumps([{"app": {"_0": path}} for path in reversed(paths)]), encoding="utf-8")
        launcher = self.begin_shown_launcher(self.made[::-1])
        folder = self.layout_file.parent
        aside = folder.with_name("aside")
        folder.rename(aside)
        folder.write_bytes(b"no folder")
        self.choose(self.SORT)
        self.expect_page(self.made)
        folder.unlink()
        aside.rename(folder)
        until(lambda: self.layout() == paths, "the sorted layout")
        self.end_launcher(launcher)

    def test_importing_a_copy_restores_a_sorted_layout(self):
        paths = [str(application.path) for application in self.made]
        self.layout_file.write_text(json.dumps([{"app": {"_0": path}} for path in reversed(paths)]), encoding="utf-8")
        launcher = self.begin_shown_launcher(self.made[::-1])
        self.choose(self.SORT)
        self.expect_page(self.made)
        history = self.layout_file.parent / "layout-history"
        copy = until(lambda: list(history.glob("* before sort (*).json")) if history.exists() else None, "the copy")[0]
        self.choose(self.IMPORT)
        dialog = self.expect_dialog(launcher)
        self.session.type(str(copy))
        self.session.press("Return")
        self.expect_dialog(launcher, dialog)
        self.session.press("Return")
        self.expect_page(self.made[::-1])
        until(lambda: self.layout() == paths[::-1], "the layout as it was")
        self.end_launcher(launcher)
        self.assertEqual(len(list(history.iterdir())), 2, "one before the sorting, one before the import")
