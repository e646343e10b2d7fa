import os
import tempfile
import unittest
from pathlib import Path

from harness import DesktopTestCase, FileWatch, Picture, Session, X11Session, until
from harness.picture import is_near
from harness.programs import processes_marked
from harness.session import MARK


class EndOfASession(DesktopTestCase):
    def test_ends_programs_that_left_their_parents(self):
        with Session() as session:
            session.start("sh", "-c", "setsid sleep 300 & setsid sleep 300 & echo started").expect("started")
            until(lambda: len(processes_marked(MARK, str(session.folder))) >= 3, "the two and the bus")
        self.assertEqual(processes_marked(MARK, str(session.folder)), [])

    def test_removes_its_folders(self):
        with Session() as session:
            folder = session.folder
            self.assertEqual(os.stat(session.runtime).st_mode & 0o777, 0o700)
        self.assertFalse(folder.exists())

    def test_follows_also_a_failed_begin(self):
        class Broken(Session):
            def begin(self):
                raise AssertionError("no server")

        session = Broken()
        with self.assertRaisesRegex(AssertionError, "no server"):
            session.__enter__()
        self.assertFalse(session.folder.exists())
        self.assertEqual(processes_marked(MARK, str(session.folder)), [])


class Waiting(unittest.TestCase):
    def test_fails_with_the_last_answer(self):
        with self.assertRaisesRegex(AssertionError, "a wonder; last answer: 0"):
            until(lambda: 0, "a wonder", patience=0.05)

    def test_returns_the_answer(self):
        self.assertEqual(until(iter([0, 0, 7]).__next__, "seven"), 7)


class WatchedFiles(unittest.TestCase):
    def test_are_recorded_when_they_are_opened_and_read(self):
        with tempfile.TemporaryDirectory() as folder:
            paths = [Path(folder, name) for name in ("first", "second")]
            for path in paths:
                path.write_text("text", encoding="utf-8")
            with FileWatch(paths) as watch:
                self.assertEqual((watch.opened, watch.read), ([], []))
                paths[0].open("rb").close()
                self.assertEqual((watch.opened, watch.read), ([paths[0]], []))
                paths[1].read_text(encoding="utf-8")
                self.assertEqual(watch.opened, paths)
                self.assertIn(paths[1], watch.read)
                self.assertNotIn(paths[0], watch.read)


class Pictures(DesktopTestCase):
    def test_hold_the_screens_pixels(self):
        session = self.begin(X11Session(64, 48, window_manager=None))
        picture = session.screenshot()
        self.assertEqual((picture.width, picture.height), (64, 48))
        self.assertEqual(picture.colours(), {(0x80, 0x40, 0x20): 64 * 48})

    def test_are_saved_and_read_again(self):
        picture = Picture(2, 2, bytes(range(12)))
        with tempfile.TemporaryDirectory() as folder:
            picture.save(f"{folder}/picture.png")
            self.assertEqual(Picture.read(f"{folder}/picture.png"), picture)

    def test_points_outside_are_refused(self):
        with self.assertRaises(IndexError):
            Picture(2, 2, bytes(12)).at(2, 0)

    def test_colours_are_near_within_the_tolerance(self):
        self.assertTrue(is_near((10, 10, 10), (18, 2, 10)))
        self.assertFalse(is_near((10, 10, 10), (19, 10, 10)))


class Sessions(DesktopTestCase):
    def test_run_beside_each_other(self):
        one = self.begin(X11Session(64, 48))
        other = self.begin(X11Session(64, 48, window_manager=None))
        self.assertNotEqual(one.display, other.display)
        self.assertTrue(one.has_window_manager())
        self.assertFalse(other.has_window_manager())
        self.assertNotEqual(
            one.environment["DBUS_SESSION_BUS_ADDRESS"], other.environment["DBUS_SESSION_BUS_ADDRESS"]
        )


if __name__ == "__main__":
    unittest.main()
