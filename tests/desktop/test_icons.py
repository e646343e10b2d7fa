"""Icons that are bad, missing or of an uncommon format."""

import gzip
import os
import socket
import struct

from harness import FileWatch, bad_icons, until
from harness.picture import is_near
from launcher.applications import png
from launcher.icons import DECODED, STAND_IN, UNKNOWN, Icons

RED = (255, 0, 0)  # of bad icons that are shown nevertheless


class Zoo(Icons):
    SHOWN = {"picture": RED, "none": STAND_IN, "either": UNKNOWN, "overload": STAND_IN}

    def test_bad_icons_are_replaced_by_the_generic_one_and_others_are_shown(self):
        self.add_special_files()
        self.add_bad_icons()
        launcher = self.begin_shown()
        self.expect_all_decoded()
        self.end_launcher(launcher)

    def add_bad_icons(self):
        listed = self.session.run(self.build / "tests" / "write_bad_icons", self.folder)
        for name, ending in (line.split() for line in listed.splitlines()):
            self.add_good()
            self.add(name, self.folder / name, self.SHOWN[ending])

    def add_special_files(self):
        names = ("pipe", "folder", "missing", "loop", "link", "secret")
        special = {name: self.folder / f"{name}.png" for name in names}
        os.mkfifo(special["pipe"])
        special["folder"].mkdir()
        special["loop"].symlink_to(special["loop"])
        special["link"].symlink_to("/dev/zero")
        special["secret"].write_bytes(png((1, 2, 3)))
        special["secret"].chmod(0)
        for name, path in {**special, "device": "/dev/zero", "memory": "/proc/self/mem"}.items():
            self.add_good()
            self.add(name, path, STAND_IN)

    def expect_no_reference_followed(self, address):
        # On separate pages: drawings that refer to a picture may wait for it.
        for name, data in bad_icons.references(address).items():
            self.add_good()
            # The decoder decides whether the rest is drawn.
            self.add(name, self.write(name, data), UNKNOWN)
        launcher = self.begin_shown()
        self.expect_all_decoded()
        self.expect_rest(launcher)
        self.end_launcher(launcher)

    def test_no_file_that_an_icon_refers_to_is_opened(self):
        target = self.write("target.svg", bad_icons.svg(bad_icons.square(bad_icons.COLOUR)))
        watch = self.enterContext(FileWatch([target]))
        for address in (f"file://{target}", str(target), target.name):
            with self.subTest(address):
                self.expect_no_reference_followed(address)
                self.assertEqual(watch.opened, [])

    def test_no_server_that_an_icon_refers_to_is_contacted(self):
        server = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(server.close)
        server.setblocking(False)
        self.expect_no_reference_followed("http://127.0.0.1:%d/icon.svg" % server.getsockname()[1])
        with self.assertRaises(BlockingIOError):
            server.accept()


class OnTheNextStart(Icons):
    def setUp(self):
        super().setUp()
        for _ in range(3):
            self.add_good()
        self.slow = self.add_slow(5)
        self.harmless = [self.session.home / "pictures" / f"good-{number}.png" for number in (1, 2, 3)]
        launcher = self.begin_shown()
        self.expect_decoded(0)
        until(lambda: all(str(path) in self.undecodable() for path in self.slow), "the slow ones' end", DECODED)
        self.expect_rest(launcher)
        self.end_launcher(launcher)

    def test_an_undecodable_icon_is_not_tried_again(self):
        text = self.undecodable()
        self.assertNotIn("good-", text)
        watch = self.enterContext(FileWatch([*self.slow, *self.harmless]))
        launcher = self.begin_shown()
        self.expect_decoded(0)
        until(lambda: set(watch.read) >= set(self.harmless), "the check of the stored icons")
        self.expect_rest(launcher)
        self.end_launcher(launcher)
        self.assertEqual(set(watch.read), set(self.harmless))
        self.assertEqual(self.undecodable(), text)

    def change(self, number):
        """Replaces the icon of one of the drawings' applications by a decodable one."""
        self.slow[number].write_bytes(png(bad_icons.COLOUR))
        self.recolour(3 + number, bad_icons.COLOUR)

    def test_a_changed_icon_is_tried_again(self):
        self.change(0)
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def test_a_changed_icon_is_tried_again_when_the_applications_change(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.change(0)
        self.add_good()
        self.expect_decoded(0)
        self.end_launcher(launcher)


class Formats(Icons):
    def converted(self, name, *options):
        """A picture of one colour, written by another program."""
        path = self.folder / name
        self.session.run("convert", "-size", "64x64", "xc:#%02x%02x%02x" % bad_icons.COLOUR, *options, path)
        return path

    def test_icons_of_all_formats_are_shown(self):
        drawing = bad_icons.svg(bad_icons.square(bad_icons.COLOUR))
        picture = png(bad_icons.COLOUR)
        entry = b"ic08" + struct.pack(">I", len(picture) + 8) + picture
        files = [
            self.write("icon.png", picture),
            self.write("icon.svg", drawing),
            self.write("icon.svgz", gzip.compress(drawing)),
            self.write("icon.icns", b"icns" + struct.pack(">I", len(entry) + 8) + entry),
            self.converted("icon.webp", "-define", "webp:lossless=true"),
            self.converted("icon.jpeg", "-quality", "100"),
            *(self.converted(f"icon.{ending}") for ending in ("tiff", "xpm", "ico")),
        ]
        for path in files:
            self.add(path.name, path, bad_icons.COLOUR)
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def test_text_in_a_drawing_is_shown(self):
        # A full block in the middle, for which a font is needed.
        block = '<text x="128" y="192" font-size="192" text-anchor="middle" fill="#%02x%02x%02x">\u2588</text>'
        drawing = bad_icons.svg(bad_icons.square(RED) + block % bad_icons.COLOUR)
        self.add("text", self.write("text.svg", drawing), UNKNOWN)
        self.add_good()
        launcher = self.begin_shown()
        self.expect_decoded(0)
        middle = tuple(round(part) for part in self.grid.icon_centre(0))
        until(lambda: is_near(self.session.screenshot().at(*middle), bad_icons.COLOUR), "the text")
        self.end_launcher(launcher)


class WithoutAnIcon(Icons):
    def setUp(self):
        super().setUp()
        self.add_good()
        self.add("none", "", STAND_IN)
        self.add("unknown", "org.example.unknown", STAND_IN)
        self.add("gone", self.folder / "gone.png", STAND_IN)
        self.add_good()

    def test_the_themes_generic_icon_is_shown(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def test_icons_installed_later_replace_the_generic_one(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        (self.theme / "org.example.unknown.png").write_bytes(png(bad_icons.COLOUR))
        (self.folder / "gone.png").write_bytes(png(bad_icons.COLOUR))
        self.recolour(2, bad_icons.COLOUR)
        self.recolour(3, bad_icons.COLOUR)
        # Written like a package's files.
        self.add_good()
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def test_without_a_theme_icon_a_drawn_one_is_shown(self):
        self.stand_in.unlink()
        launcher = self.begin_shown()
        for number in (1, 2, 3):
            self.recolour(number, UNKNOWN)
        self.expect_decoded(0)
        until(lambda: all(self.has_drawing(slot) for slot in (1, 2, 3)), "a drawing on each")
        self.assertFalse(self.has_drawing(0))
        self.end_launcher(launcher)

    def has_drawing(self, slot):
        """Whether an icon's middle differs clearly from the even background around it."""
        picture = self.session.screenshot()
        x, y = (round(part) for part in self.grid.icon_centre(slot))
        reach = round(self.grid.icon_size / 4)
        seen = [sum(picture.at(x + dx, y + dy)) for dx in range(-reach, reach) for dy in range(-reach, reach)]
        return max(seen) - min(seen) > 60
