"""The processes that decode icons: busy, killed, sandboxed, moved and missing."""

import os
import shutil
import signal
import tempfile
from pathlib import Path

from harness import bad_icons, until
from launcher.applications import colour_number
from launcher.case import WINDOW_CLASS, is_shown
from launcher.grid import COLUMNS, SLOTS
from launcher.icons import DECODED, Icons
from launcher.workers import WorkersCounted, WorkersKilled, is_running, status, workers_of


class WhileSlowOnesAreDecoded(Icons):
    """A page of good icons, and one with many slow ones."""

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
        until(lambda: not self.shows_any(range(SLOTS)), "the second page")
        self.expect_decoding(launcher)
        return launcher

    def shows_any(self, numbers):
        """Whether one of these applications of the first page, counted from 0, is in its place."""
        picture = self.session.screenshot()
        return any(is_shown(picture, self.grid, number, self.made[number].colour) for number in numbers)

    def expect_decoding(self, launcher):
        """Expects that icons are still being decoded."""
        # None runs for a moment between two that are given up.
        until(lambda: workers_of(launcher), "a worker")
        self.assertLess(self.undecodable().count("slow"), 20)

    def is_found(self, number):
        """Whether that application is first and its former place is empty."""
        picture = self.session.screenshot()
        return is_shown(picture, self.grid, 0, self.made[number].colour) and not self.shows_any(range(1, SLOTS))

    def test_search_and_page_turns_work_meanwhile(self):
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

    def test_it_ends_at_once_with_undecodable_icons(self):
        launcher = self.begin_decoding()
        until(lambda: self.undecodable().count("slow") > 2, "some that are given up", DECODED)
        self.expect_decoding(launcher)
        self.expect_end(launcher)


class Workers(Icons):
    def add_drawings(self, count):
        """Slow drawings."""
        for number in range(count):
            colour = colour_number(number)
            self.add("drawing", self.write(f"{number}.svg", bad_icons.curves(30, colour)), colour)

    def test_all_icons_are_shown_while_workers_are_killed_at_random(self):
        self.add_drawings(500)
        launcher = self.begin_shown()
        with WorkersKilled(launcher, seed=1) as killer:
            self.expect_all_decoded()
        self.assertGreater(killer.killed, 10)
        self.assertEqual(self.undecodable(), "")
        self.end_launcher(launcher)

    def test_stopped_workers_are_replaced_and_no_file_is_undecodable(self):
        self.add_drawings(SLOTS)
        launcher = self.begin_launcher()
        for pid in until(lambda: workers_of(launcher), "a worker"):
            os.kill(pid, signal.SIGSTOP)
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_decoded(0)
        self.assertEqual(self.undecodable(), "")
        self.end_launcher(launcher)

    def test_at_most_two_run_and_none_after_decoding(self):
        self.add_slow(10)
        self.add_good()
        launcher = self.begin_launcher()
        with WorkersCounted(launcher) as count:
            self.window = self.session.window_of_class(WINDOW_CLASS)
            self.expect_decoded(0)
            self.expect_rest(launcher)
        self.assertIn(count.most, (1, 2))
        self.end_launcher(launcher)

    def test_they_are_sandboxed(self):
        self.add_slow(8)
        launcher = self.begin_shown()

        def found():
            for pid in workers_of(launcher):
                try:
                    fields, limits = status(pid), self.limits(pid)
                    if fields.get("Seccomp") == "2" and self.holds_its_socket_only(pid):
                        return fields, limits
                except OSError:
                    pass  # it has ended
            return None

        fields, limits = until(found, "a worker that has locked itself in, with nothing open but its socket")
        self.assertEqual(fields["NoNewPrivs"], "1")
        self.assertRegex(limits["Max cpu time"], r"^\d+ ")
        # Sanitizers reserve terabytes, so there is no limit.
        if int(fields["VmSize"].split()[0]) < 1 << 30:
            self.assertRegex(limits["Max address space"], r"^\d+ ")
        self.end_launcher(launcher)

    def holds_its_socket_only(self, pid):
        """Whether the socket is the only open file. While a picture arrives, that is open too."""
        descriptors = {entry.name: os.readlink(entry) for entry in Path(f"/proc/{pid}/fd").iterdir()}
        socket_of = descriptors.pop("0", "")
        return socket_of.startswith("socket:") and descriptors == {"1": "/dev/null", "2": "/dev/null"}

    def limits(self, pid):
        lines = Path(f"/proc/{pid}/limits").read_text(encoding="utf-8").splitlines()
        return {line[:25].strip(): line[25:].strip() for line in lines}

    def test_their_exit_status_is_known_if_sigchld_was_ignored_at_the_start(self):
        self.add_good()
        launcher = self.session.start("env", "--ignore-signal=CHLD", self.program)
        self.session.window_of_class(WINDOW_CLASS)
        self.assertFalse(int(status(launcher.pid)["SigIgn"], 16) & 1 << (signal.SIGCHLD - 1))
        self.end_launcher(launcher)

    def test_they_end_with_a_launcher_that_has_just_started(self):
        self.add_slow(8)
        launcher = self.begin_launcher()
        self.session.window_of_class(WINDOW_CLASS)
        until(lambda: workers_of(launcher), "a worker")
        self.expect_end(launcher)

    def test_they_end_with_a_killed_launcher(self):
        self.add_slow(8)
        launcher = self.begin_shown()
        workers = until(lambda: workers_of(launcher), "a worker")
        launcher.process.kill()
        until(lambda: not any(map(is_running, workers)), "the workers' end")


class Elsewhere(Icons):
    """The installed program, with or without its worker."""

    @classmethod
    def setUpClass(cls):
        cls.mount = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.install(cls.mount / "usr")

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

    def test_moved_with_its_worker_it_decodes(self):
        self.place = self.session.home / "a mount" / "usr"
        shutil.copytree(self.mount / "usr", self.place)
        self.expect_icons()

    def expect_icons(self):
        launcher = self.begin_shown()
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def copy(self):
        """Runs a copy. Returns the path of its worker."""
        self.place = self.session.home / "usr"
        shutil.copytree(self.mount / "usr", self.place)
        return self.place / "libexec/amberquill-icons"

    def test_without_its_worker_it_shows_generic_icons_and_is_idle(self):
        self.copy().unlink()
        self.expect_no_icons()

    def test_without_its_worker_it_shows_stored_icons(self):
        worker = self.copy()
        launcher = self.begin_shown()
        self.expect_decoded(0)
        # Icons are stored when it is hidden.
        self.session.press("Escape")
        until((self.session.cache / "Amberquill" / "icons").exists, "the kept icons")
        self.end_launcher(launcher)
        worker.unlink()
        launcher = self.begin_shown()
        self.expect_idle(launcher)
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def test_icons_are_decoded_when_shown_again_with_the_worker_back(self):
        worker = self.copy()
        away = worker.rename(worker.with_suffix(".away"))
        launcher = self.begin_shown()
        self.expect_idle(launcher)
        self.assertEqual(len(self.wrong_on_page(0)), len(self.made))
        away.rename(worker)
        until(lambda: self.asks_when_shown_again(launcher), "a worker")
        self.expect_decoded(0)
        self.end_launcher(launcher)

    def asks_when_shown_again(self, launcher):
        """Whether a worker was started. It runs for some seconds."""
        self.act("hide")
        self.expect_hidden()
        self.act("show")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_focus()
        return workers_of(launcher)

    def test_with_a_broken_worker_it_shows_generic_icons_and_is_idle(self):
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
        """Waits until the launcher uses no processor time for a while."""
        spent = []

        def rests():
            fields = Path(f"/proc/{launcher.pid}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
            spent.append((*fields[11:15], len(workers_of(launcher))))
            return len(spent) > 50 and len(set(spent[-50:])) == 1

        until(rests, "an idle launcher")
