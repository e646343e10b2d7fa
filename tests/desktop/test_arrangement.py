"""An arrangement is kept while packages, folders and sessions come and go."""

import json

from harness import until
from launcher.on_x11 import OnX11


class Arrangement(OnX11):
    """Eight applications, not in alphabetical order."""

    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        self.made.reverse()
        self.entries = self.made[0].path.parent
        self.layout_file.parent.mkdir()
        self.write_layout({"app": {"_0": str(application.path)}} for application in self.made)
        self.arranged = self.items()

    def write_layout(self, items):
        self.layout_file.write_text(json.dumps(list(items)), encoding="utf-8")

    def expect_arranged(self, launcher, *new):
        """Expects the arrangement, followed by the new applications."""
        self.expect_page([*self.made, *new])
        self.end_launcher(launcher)
        self.assertEqual(self.items(), self.arranged + [str(application.path) for application in new])

    def test_an_upgrade_that_removes_an_entry_for_a_moment_keeps_the_arrangement(self):
        launcher = self.begin_shown_launcher(self.made)
        entry = self.made[2].path.read_bytes()
        self.made[2].path.unlink()
        # The new application is shown at once. By then the other one is known to be missing and still has its place.
        new = self.applications.add_entry("New", "new")
        self.expect_page([*self.made, new])
        self.made[2].path.write_bytes(entry)
        self.expect_arranged(launcher, new)

    def test_after_a_long_upgrade_the_entry_returns_to_its_place(self):
        launcher = self.begin_shown_launcher(self.made)
        entry = self.made[2].path.read_bytes()
        self.made[2].path.unlink()
        self.expect_page(self.made[:2] + self.made[3:])
        until(lambda: len(self.items()) == 7, "the layout without it")
        self.made[2].path.write_bytes(entry)
        self.expect_arranged(launcher)

    def test_a_folder_of_entries_that_goes_and_comes_back_keeps_the_arrangement(self):
        launcher = self.begin_shown_launcher(self.made)
        away = self.session.home / "away"
        self.entries.rename(away)
        # Once this application is shown, the folder is known to be missing.
        new = self.applications.add_bundle("New", "org.example.new")
        self.expect_page([*self.made, new])
        away.rename(self.entries)
        self.expect_arranged(launcher, new)

    def test_a_start_without_the_systems_folders_keeps_all_places(self):
        """Like a start by a cron job, without XDG_DATA_DIRS."""
        folder = self.session.system_data / "applications"
        self.entries.rename(folder)
        paths = [str(folder / application.path.name) for application in self.made]
        some = {"id": "3F2504E0-4F89-11D3-9A0C-0305E82C3301", "name": "Some", "apps": paths[1:4]}
        items = [{"app": {"_0": path}} for path in paths]
        self.write_layout([items[0], {"folder": {"_0": some}}, *items[4:]])
        arranged = json.loads(self.layout_file.read_bytes())
        launcher = self.begin_launcher(XDG_DATA_DIRS="/nonexistent")
        until(lambda: self.items() == [[]], "the layout without them")
        self.end_launcher(launcher)
        launcher = self.begin_launcher()
        until(lambda: json.loads(self.layout_file.read_bytes()) == arranged, "the arrangement")
        self.end_launcher(launcher)
