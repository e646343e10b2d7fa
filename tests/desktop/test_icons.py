"""Icons that nobody should have to decode, and the processes that decode them."""

import gzip
import os
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
from pathlib import Path

from harness import FileWatch, bad_icons, until
from harness.picture import is_near
from launcher.applications import Application, colour_number, png
from launcher.case import WINDOW_CLASS, is_shown
from launcher.grid import COLUMNS, SLOTS
from launcher.on_x11 import OnX11
from launcher.workers import WorkersCounted, WorkersKilled, is_running, status, workers_of

RED = (255, 0, 0)  # of the bad icons that can be seen all the same
STAND_IN = (10, 200, 120)  # the theme's icon of programs; no application's
UNKNOWN = None  # what a decoder makes of half a picture is its own affair
END = 1  # seconds that an end may take, whatever is being decoded
DECODED = 40  # seconds in which all is decoded, on a busy machine; two are allowed for each picture


class Icons(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        self.folder = self.session.home / "icons"
        self.folder.mkdir()
        self.made = []
        self.theme = self.session.data / "icons" / "hicolor" / "256x256" / "apps"
        self.stand_in = self.theme / "application-x-executable.png"
        self.stand_in.write_bytes(png(STAND_IN))

    def begin_launcher(self, **settings):
        # Root reads what nobody may read, unless it gives that up.
        dropped = ("setpriv", "--bounding-set", "-dac_override,-dac_read_search") if os.geteuid() == 0 else ()
        return self.session.start(*dropped, self.program, environment=settings)

    @property
    def program(self):
        return self.build / "amberquill"

    def add(self, name, icon, colour):
        """An entry with that icon, a file's path, and the colour that is to be seen. It comes after those before."""
        name = f"{len(self.made) + 1} {name}"
        path = self.applications.entries / f"{len(self.made)}.desktop"
        self.applications.write_entry(path, name, icon)
        self.made.append(Application(name, path, colour))

    def write(self, name, data):
        path = self.folder / name
        path.write_bytes(data)
        return path

    def add_good(self):
        number = len(self.made) + 1
        self.made.append(self.applications.add_entry(f"{number} good", f"good-{number}"))

    def add_slow(self, count):
        """Entries with drawings that take minutes. Returns the files' paths."""
        drawing = bad_icons.curves(4000)
        paths = [self.write(f"slow-{len(self.made) + number}.svg", drawing) for number in range(count)]
        for path in paths:
            self.add("slow", path, STAND_IN)
        return paths

    def wrong_on_page(self, page, slots=range(SLOTS)):
        picture = self.session.screenshot()
        shown = self.made[page * SLOTS : (page + 1) * SLOTS]
        return [
            (application.name, picture.at(*self.grid.icon_points(slot)[0]))
            for slot, application in enumerate(shown)
            if slot in slots
            and application.colour is not UNKNOWN
            and not is_shown(picture, self.grid, slot, application.colour)
        ]

    def expect_decoded(self, page):
        wrong = []

        def is_right():
            wrong[:] = self.wrong_on_page(page)
            return not wrong

        try:
            until(is_right, f"the icons of page {page + 1}", DECODED)
        except AssertionError as error:
            raise AssertionError(f"{error}; wrong: {wrong}") from None

    def expect_all_decoded(self):
        """Turns all the pages."""
        for page in range((len(self.made) + SLOTS - 1) // SLOTS):
            if page:
                self.session.press("Right")
            self.expect_decoded(page)

    def begin_shown(self, **settings):
        launcher = self.begin_launcher(**settings)
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()
        return launcher

    def recolour(self, place, colour):
        """What the application at that place is to show from now on."""
        self.made[place] = Application(self.made[place].name, self.made[place].path, colour)

    def undecodable(self):
        """The text of the file that names the files which are not to be tried again."""
        path = self.session.cache / "Amberquill" / "undecodable"
        return path.read_text(encoding="utf-8") if path.exists() else ""

    def expect_end(self, launcher):
        workers = workers_of(launcher)
        launcher.process.terminate()
        self.assertEqual(launcher.wait(END), 0)
        self.assertEqual(launcher.lines, [])
        until(lambda: not any(map(is_running, workers)), "the workers' end")

    def expect_rest(self, launcher):
        until(lambda: not workers_of(launcher), "the workers' end")


class Zoo(Icons):
    SHOWN = {"picture": RED, "none": STAND_IN, "either": UNKNOWN, "overload": STAND_IN}

    def test_of_bad_icons_the_stand_in_is_shown_and_of_all_others_their_own(self):
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
        # On pages of their own: what refers to a picture may wait for it.
        for name, data in bad_icons.references(address).items():
            self.add_good()
            # Whether the rest is drawn then is for the decoder to decide.
            self.add(name, self.write(name, data), UNKNOWN)
        launcher = self.begin_shown()
        self.expect_all_decoded()
        self.expect_rest(launcher)
        self.end_launcher(launcher)

    def test_no_file_is_opened_that_an_icon_refers_to(self):
        target = self.write("target.svg", bad_icons.svg(bad_icons.square(bad_icons.COLOUR)))
        watch = self.enterContext(FileWatch([target]))
        for address in (f"file://{target}", str(target), target.name):
            with self.subTest(address):
                self.expect_no_reference_followed(address)
                self.assertEqual(watch.opened, [])

    def test_nobody_is_called_whom_an_icon_refers_to(self):
        server = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(server.close)
        server.setblocking(False)
        self.expect_no_reference_followed("http://127.0.0.1:%d/icon.svg" % server.getsockname()[1])
        with self.assertRaises(BlockingIOError):
            server.accept()


class WhileSlowOnesAreDecoded(Icons):
    """A page of good icons, and one of good ones and many that take long."""

    def setUp(self):
        super().setUp()
        for _ in range(SLOTS):
            self.add_good()
        self.add_slow(20)
        for _ in range(COLUMNS):
            self.add_good()

    def begin_decoding(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.session.press("Right")
        until(lambda: workers_of(launcher) and not self.shows_any(range(SLOTS)), "the second page")
        self.expect_decoding(launcher)
        return launcher

    def shows_any(self, numbers):
        """Whether one of these applications of the first page, counted from 0, is in its place."""
        picture = self.session.screenshot()
        return any(is_shown(picture, self.grid, number, self.made[number].colour) for number in numbers)

    def expect_decoding(self, launcher):
        """Not all has been decoded yet, and somebody is at it."""
        self.assertTrue(workers_of(launcher))
        self.assertLess(self.undecodable().count("slow"), 20)

    def is_found(self, number):
        """Whether that application has come first, and no other is where it was."""
        picture = self.session.screenshot()
        return is_shown(picture, self.grid, 0, self.made[number].colour) and not self.shows_any(range(1, SLOTS))

    def test_what_is_typed_is_found_and_pages_are_turned(self):
        launcher = self.begin_decoding()
        for number in (2, 4):
            self.session.type(f"{number + 1} good")
            until(lambda number=number: self.is_found(number), "what was searched for")
            self.session.press("Escape")
            until(lambda: not self.shows_any((2, 4)), "all pages")
        self.session.press("Left")
        self.expect_decoded(0)
        self.expect_decoding(launcher)
        self.session.press("Right")
        self.expect_decoded(1)
        self.end_launcher(launcher)

    def test_it_ends_at_once(self):
        self.expect_end(self.begin_decoding())

    def test_it_ends_at_once_when_some_icons_were_given_up(self):
        launcher = self.begin_decoding()
        until(lambda: self.undecodable().count("slow") > 2, "some that are given up")
        self.expect_decoding(launcher)
        self.expect_end(launcher)


class OnTheNextStart(Icons):
    def setUp(self):
        super().setUp()
        for _ in range(3):
            self.add_good()
        self.slow = self.add_slow(5)
        self.harmless = [self.session.home / "pictures" / f"good-{number}.png" for number in (1, 2, 3)]
        self.end_launcher(self.decode_all())

    def decode_all(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.expect_rest(launcher)
        return launcher

    def test_what_could_not_be_decoded_is_not_tried_again(self):
        text = self.undecodable()
        for path in self.slow:
            self.assertIn(str(path), text)
        self.assertNotIn("good-", text)
        watch = self.enterContext(FileWatch([*self.slow, *self.harmless]))
        self.end_launcher(self.decode_all())
        # What was kept is looked at again.
        self.assertEqual(set(watch.read), set(self.harmless))
        self.assertEqual(self.undecodable(), text)

    def change(self, number):
        """Gives one of the drawings' applications an icon that can be decoded, in place of the other."""
        self.slow[number].write_bytes(png(bad_icons.COLOUR))
        self.recolour(3 + number, bad_icons.COLOUR)

    def test_what_has_changed_since_is(self):
        self.change(0)
        self.end_launcher(self.decode_all())

    def test_what_changes_meanwhile_is_when_the_applications_change(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.change(0)
        self.add_good()
        self.expect_decoded(0)
        self.end_launcher(launcher)


class Workers(Icons):
    def add_drawings(self, count):
        """Drawings that take a while."""
        for number in range(count):
            colour = colour_number(number)
            self.add("drawing", self.write(f"{number}.svg", bad_icons.curves(30, colour)), colour)

    def test_killed_at_random_they_leave_no_icon_behind(self):
        self.add_drawings(500)
        launcher = self.begin_shown()
        with WorkersKilled(launcher, seed=1) as killer:
            self.expect_all_decoded()
        self.assertGreater(killer.killed, 10)
        self.assertEqual(self.undecodable(), "")
        self.end_launcher(launcher)

    def test_stopped_they_are_replaced_and_no_file_is_to_blame(self):
        self.add_drawings(SLOTS)
        launcher = self.begin_launcher()
        for pid in until(lambda: workers_of(launcher), "a worker"):
            os.kill(pid, signal.SIGSTOP)
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_decoded(0)
        self.assertEqual(self.undecodable(), "")
        self.end_launcher(launcher)

    def test_no_more_than_two_run_at_a_time_and_none_when_all_is_decoded(self):
        self.add_slow(10)
        self.add_good()
        launcher = self.begin_launcher()
        with WorkersCounted(launcher) as count:
            self.window = self.session.window_of_class(WINDOW_CLASS)
            self.expect_decoded(0)
            self.expect_rest(launcher)
        self.assertIn(count.most, (1, 2))
        self.end_launcher(launcher)

    def test_they_are_confined(self):
        self.add_slow(8)
        launcher = self.begin_shown()

        def found():
            for pid in workers_of(launcher):
                try:
                    fields, limits = status(pid), self.limits(pid)
                    if fields.get("Seccomp") == "2" and self.holds_its_socket_only(pid):
                        return fields, limits
                except OSError:
                    pass  # ended meanwhile
            return None

        before, limits = until(found, "a worker that has locked itself in, with nothing open but its socket")
        self.assertEqual(before["NoNewPrivs"], "1")
        for limit in ("Max address space", "Max cpu time"):
            self.assertRegex(limits[limit], r"^\d+ ")
        self.end_launcher(launcher)

    def holds_its_socket_only(self, pid):
        """A picture is there for a moment as well, when it comes."""
        descriptors = {entry.name: os.readlink(entry) for entry in Path(f"/proc/{pid}/fd").iterdir()}
        socket_of = descriptors.pop("0", "")
        return socket_of.startswith("socket:") and descriptors == {"1": "/dev/null", "2": "/dev/null"}

    def limits(self, pid):
        lines = Path(f"/proc/{pid}/limits").read_text(encoding="utf-8").splitlines()
        return {line[:25].strip(): line[25:].strip() for line in lines}

    def test_they_end_with_the_launcher_that_has_just_come_up(self):
        self.add_slow(8)
        launcher = self.begin_launcher()
        self.session.window_of_class(WINDOW_CLASS)
        until(lambda: workers_of(launcher), "a worker")
        self.expect_end(launcher)

    def test_they_end_with_the_launcher_that_is_killed(self):
        self.add_slow(8)
        launcher = self.begin_shown()
        workers = until(lambda: workers_of(launcher), "a worker")
        launcher.process.kill()
        until(lambda: not any(map(is_running, workers)), "the workers' end")


class Formats(Icons):
    def converted(self, name, *options):
        """A picture of one colour as another program writes it."""
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

    def test_what_is_written_in_a_drawing_is_shown(self):
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

    def test_the_themes_icon_for_programs_stands_in(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def test_icons_that_come_later_take_the_stand_ins_places(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        (self.theme / "org.example.unknown.png").write_bytes(png(bad_icons.COLOUR))
        (self.folder / "gone.png").write_bytes(png(bad_icons.COLOUR))
        self.recolour(2, bad_icons.COLOUR)
        self.recolour(3, bad_icons.COLOUR)
        # As a package brings them.
        self.add_good()
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def test_a_theme_that_has_none_leaves_a_drawn_one(self):
        self.stand_in.unlink()
        launcher = self.begin_shown()
        for number in (1, 2, 3):
            self.recolour(number, UNKNOWN)
        self.expect_decoded(0)
        until(lambda: all(self.has_drawing(slot) for slot in (1, 2, 3)), "a drawing on each")
        self.assertFalse(self.has_drawing(0))
        self.end_launcher(launcher)

    def has_drawing(self, slot):
        """Whether what is in the middle of an icon differs plainly from the ground around it, which is even."""
        picture = self.session.screenshot()
        x, y = (round(part) for part in self.grid.icon_centre(slot))
        reach = round(self.grid.icon_size / 4)
        seen = [sum(picture.at(x + dx, y + dy)) for dx in range(-reach, reach) for dy in range(-reach, reach)]
        return max(seen) - min(seen) > 60


class Elsewhere(Icons):
    """The installed program, and its worker in its place or not."""

    @classmethod
    def setUpClass(cls):
        cls.mount = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cmake = os.environ.get("AMBERQUILL_CMAKE", "cmake")
        subprocess.run(
            [cmake, "--install", cls.build, "--prefix", cls.mount / "usr"], check=True, capture_output=True
        )

    def setUp(self):
        super().setUp()
        for _ in range(3):
            self.add_good()
        drawing = bad_icons.svg(bad_icons.square(bad_icons.COLOUR))
        self.add("drawing", self.write("drawing.svg", drawing), bad_icons.COLOUR)

    @property
    def program(self):
        return self.place / "bin/amberquill"

    def test_installed_it_decodes(self):
        self.place = self.mount / "usr"
        self.assertTrue(os.access(self.place / "libexec/amberquill-icons", os.X_OK))
        self.expect_icons()

    def test_moved_with_all_that_belongs_to_it_it_decodes(self):
        self.place = self.session.home / "a mount" / "usr"
        shutil.copytree(self.mount / "usr", self.place)
        self.expect_icons()

    def expect_icons(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def copy(self):
        """Has a copy run. Returns the path of its worker."""
        self.place = self.session.home / "usr"
        shutil.copytree(self.mount / "usr", self.place)
        return self.place / "libexec/amberquill-icons"

    def test_without_its_worker_it_shows_stand_ins_and_rests(self):
        self.copy().unlink()
        self.expect_no_icons()

    def test_without_its_worker_it_shows_what_was_kept(self):
        worker = self.copy()
        launcher = self.begin_shown()
        self.expect_decoded(0)
        # That is when they are written.
        self.session.press("Escape")
        until((self.session.cache / "Amberquill" / "icons").exists, "the kept icons")
        self.end_launcher(launcher)
        worker.unlink()
        launcher = self.begin_shown()
        self.expect_idle(launcher)
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def test_with_a_worker_that_does_not_work_it_shows_stand_ins_and_rests(self):
        worker = self.copy()
        for what in ("exit 0", "exit 1", "exec cat", "kill -SEGV $$", "exec sleep 1000"):
            with self.subTest(what):
                worker.write_text(f"#!/bin/sh\n{what}\n", encoding="utf-8")
                self.expect_no_icons()

    def expect_no_icons(self):
        launcher = self.begin_shown()
        self.expect_idle(launcher)
        self.assertEqual(self.undecodable(), "")
        self.session.type("drawing")
        self.session.press("Return")
        self.expect_hidden()
        until(lambda: "drawing" in self.applications.started(), "the start")
        self.end_launcher(launcher)
        (self.session.home / "started").unlink()

    def expect_idle(self, launcher):
        """Waits until it has used no processor time for a while."""
        spent = []

        def rests():
            fields = Path(f"/proc/{launcher.pid}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
            spent.append((*fields[11:15], len(workers_of(launcher))))
            return len(spent) > 50 and len(set(spent[-50:])) == 1

        until(rests, "an idle launcher")
