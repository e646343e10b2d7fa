from harness import Geometry, until
from launcher.case import paths_in
from launcher.on_x11 import OnX11


class WithManyApplications(OnX11):
    def setUp(self):
        self.begin_session(1920, 1080)
        self.made = self.applications.add_many()

    def paths(self, applications=None):
        return [str(application.path) for application in applications or self.made]

    def test_covers_the_whole_screen(self):
        self.begin_shown_launcher(self.made)
        until(lambda: self.session.geometry(self.window) == Geometry(0, 0, 1920, 1080), "the whole screen")

    def test_the_wheel_turns_pages(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.move_pointer(*self.grid.gap())
        self.session.wheel(1)
        self.expect_page(self.made, 1)
        self.session.wheel(1)
        self.expect_page(self.made, 2)
        self.session.wheel(-1)
        self.expect_page(self.made, 1)
        self.end_launcher(launcher)

    def test_the_arrow_keys_turn_pages(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press("Right")
        self.expect_page(self.made, 1)
        self.session.press("Right")
        self.expect_page(self.made, 2)
        self.session.press("Left", "Left")
        self.expect_page(self.made, 0)
        self.end_launcher(launcher)

    def test_escape_hides_it(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press("Escape")
        self.expect_hidden()
        self.assertTrue(launcher.is_running())
        self.end_launcher(launcher)
        self.assertEqual(self.applications.started(), "")

    def test_a_click_on_empty_space_hides_it(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.click(*self.grid.gap())
        self.expect_hidden()
        self.assertTrue(launcher.is_running())
        self.end_launcher(launcher)
        self.assertEqual(self.applications.started(), "")

    def expect_start(self, slot, page=0):
        """Expects that a click on a place starts its application once, and nothing else."""
        launcher = self.begin_shown_launcher(self.made)
        for turned in range(page):
            self.session.press("Right")
            self.expect_page(self.made, turned + 1)
        name = self.made[page * 35 + slot].name
        self.click_icon(slot)
        until(self.applications.started, f"the start of {name}")
        self.expect_hidden()
        self.end_launcher(launcher)
        self.assertEqual(self.applications.started(), f"{name}\n")

    def test_a_click_starts_the_application_of_a_desktop_entry(self):
        self.expect_start(15)

    def test_a_click_on_another_page_starts_its_application(self):
        self.expect_start(15, page=1)

    def test_a_click_starts_a_bundles_program(self):
        self.assertTrue(self.made[2].path.match("*.app"))
        self.expect_start(2)

    def test_a_click_starts_a_bundles_program_that_lies_beside_its_resources(self):
        self.assertTrue((self.made[33].path / "program").exists())
        self.expect_start(33)

    def test_renamed_applications_keep_their_places(self):
        self.end_launcher(self.begin_shown_launcher(self.made))
        first = self.layout_file.read_bytes()
        self.assertEqual(paths_in(first), self.paths())
        self.applications.rename(self.made[86], "AAA")
        self.applications.rename(self.made[0], "Zzz")
        launcher = self.begin_shown_launcher(self.made)
        for page in (1, 2):
            self.session.press("Right")
            self.expect_page(self.made, page)
        self.end_launcher(launcher)
        self.assertEqual(self.layout_file.read_bytes(), first)

    def test_follows_applications_installed_and_removed_while_it_was_not_running(self):
        self.end_launcher(self.begin_shown_launcher(self.made))
        self.made[7].path.unlink()
        added = self.applications.add_entry("App 0", "org.example.new")
        now = self.made[:7] + self.made[8:] + [added]
        launcher = self.begin_shown_launcher(now)
        for page in (1, 2):
            self.session.press("Right")
            self.expect_page(now, page)
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), self.paths(now))

    def test_follows_applications_installed_and_removed_while_it_is_up(self):
        launcher = self.begin_shown_launcher(self.made)
        self.made[7].path.unlink()
        removed = self.made[:7] + self.made[8:]
        self.expect_page(removed)
        for page in (1, 2):
            self.session.press("Right")
            self.expect_page(removed, page)
        now = [*removed, self.applications.add_entry("App 0", "org.example.new", themed=True)]
        self.expect_page(now, 2)
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), self.paths(now))

    def test_follows_bundles_that_come_and_go_while_it_is_up(self):
        launcher = self.begin_shown_launcher(self.made)
        self.made[2].path.rename(self.session.home / "elsewhere.app")
        now = self.made[:2] + self.made[3:]
        self.expect_page(now)
        (self.session.home / "elsewhere.app").rename(self.made[2].path)
        self.expect_page(self.made)
        for page in (1, 2):
            self.session.press("Right")
            self.expect_page(self.made, page)
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), self.paths())

    def test_sets_aside_an_unreadable_layout(self):
        broken = b'[{"app":{"_0":"/usr/share/applications/one.desktop"}},{"app"'
        self.layout_file.parent.mkdir()
        self.layout_file.write_bytes(broken)
        self.end_launcher(self.begin_shown_launcher(self.made))
        self.assertEqual(self.layout(), self.paths())
        others = [path for path in self.layout_file.parent.iterdir() if path != self.layout_file]
        self.assertEqual([path.read_bytes() for path in others], [broken])

    def test_shows_every_application_without_writable_folders(self):
        occupied = [folder / "Amberquill" for folder in (self.session.data, self.session.config, self.session.cache)]
        for path in occupied:
            path.write_bytes(b"")
        launcher = self.begin_shown_launcher(self.made)
        self.session.press("Right")
        self.expect_page(self.made, 1)
        self.end_launcher(launcher)
        self.assertEqual([path.read_bytes() for path in occupied], [b""] * 3)


class WithAwkwardApplications(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]

    def expect_listed(self, *others):
        """Expects the usual applications in their places, followed by the paths of the others."""
        self.end_launcher(self.begin_shown_launcher(self.made))
        made = [application.path for application in self.made]
        self.assertEqual(self.layout(), [str(path) for path in (*made, *others)])

    def test_entries_that_are_not_utf8_are_skipped(self):
        latin = b"[Desktop Entry]\nType=Application\nName=Caf\xe9\nExec=true\n"
        (self.applications.entries / "latin.desktop").write_bytes(latin)
        (self.applications.entries / "wide.desktop").write_bytes(latin.decode("latin-1").encode("utf-16"))
        (self.applications.entries / "noise.desktop").write_bytes(bytes(range(256)) * 64)
        self.expect_listed()

    def test_link_cycles_do_not_hang_it(self):
        for folder in (self.applications.entries, self.applications.bundles):
            (folder / "back").symlink_to(folder)
            (folder / "deeper").mkdir()
            (folder / "deeper" / "up").symlink_to("..")
        (self.applications.entries / "own.desktop").symlink_to("own.desktop")
        (self.applications.bundles / "deeper" / "round.app").symlink_to("round.app")
        # A bundle is recognised by its name alone, even if the link is broken.
        self.expect_listed(self.applications.bundles / "deeper" / "round.app")

    def test_bundles_without_a_readable_property_list_are_listed(self):
        (self.applications.bundles / "Bare.app").mkdir()
        noise = self.applications.bundles / "Noise.app" / "Contents"
        noise.mkdir(parents=True)
        (noise / "Info.plist").write_bytes(bytes(range(256)) * (5 * 1024 * 4))
        nested = self.applications.bundles / "Nested.app" / "Contents"
        nested.mkdir(parents=True)
        (nested / "Info.plist").write_bytes(b'<plist version="1.0">' + b"<array>" * (5 * 1024 * 1024 // 7))
        self.expect_listed(*(self.applications.bundles / f"{name}.app" for name in ("Bare", "Nested", "Noise")))

    def test_an_undecodable_icon_is_replaced_by_the_generic_one(self):
        icon = self.session.home / "text.png"
        icon.write_text("This is no picture.\n" * 100, encoding="utf-8")
        path = self.applications.entries / "text.desktop"
        self.applications.write_entry(path, "Text", icon)
        launcher = self.begin_shown_launcher(self.made)
        slot = len(self.made)

        def is_stand_in():
            # Its plate is lighter than the background beside it.
            picture = self.session.screenshot()
            plate = picture.at(*self.grid.icon_points(slot)[0])
            beside = picture.at(*self.grid.points_around_icon(slot)[0])
            return all(a > b + 8 for a, b in zip(plate, beside))

        until(is_stand_in, "the stand-in")
        self.end_launcher(launcher)
        self.assertEqual(self.layout(), [str(application.path) for application in self.made] + [str(path)])


class OnOtherDesktops(OnX11):
    """A start, a page turn and a click work alike on all desktops."""

    def expect_use(self, width, height, **settings):
        self.begin_session(width, height, **settings)
        made = self.applications.add_many()
        launcher = self.begin_shown_launcher(made)
        self.assertEqual(self.session.geometry(self.window), Geometry(0, 0, width, height))
        self.session.move_pointer(*self.grid.gap())
        self.session.wheel(1)
        self.expect_page(made, 1)
        self.session.press("Left")
        self.expect_page(made, 0)
        self.click_icon(16)
        until(self.applications.started, "the application's start")
        self.expect_hidden()
        self.end_launcher(launcher)
        self.assertEqual(self.applications.started(), f"{made[16].name}\n")

    def test_without_a_window_manager(self):
        self.expect_use(1920, 1080, window_manager=None)

    def test_with_a_compositor(self):
        self.expect_use(1920, 1080, compositor="picom")

    def test_on_a_small_screen(self):
        self.expect_use(1280, 800)

    def test_on_a_small_screen_with_nothing_else(self):
        self.expect_use(1280, 800, window_manager=None)
