import tempfile
from pathlib import Path

from harness import DesktopTestCase, X11Session
from harness.picture import Picture

SIZE = "1280x800"
# Renderers may differ in the last digit of a mixed colour and on the edges of scaled pictures.
LITTLE = 3
SHARE_BEYOND = 0.0001
MOVING = {"entrance", "page-turning", "folder-opening", "dropping"}  # at a scale or a place between two pixels
SHARE_BEYOND_MOVING = 0.015


def share_beyond(first, second, tolerance):
    """The part of the values of all pixels that differ by more than the tolerance."""
    differing = sum(1 for a, b in zip(first.pixels, second.pixels) if a - b > tolerance or b - a > tolerance)
    return differing / len(first.pixels)


class OfTheViews(DesktopTestCase):
    """A GPU and Qt's software renderer draw the same. OpenGL is Mesa's, on the CPU."""

    def draw(self, session, renderer):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        folder = Path(holder.name)
        program = session.start(
            self.build / "tests" / "view_pictures",
            *("--renderer", renderer),
            *("--size", SIZE),
            folder,
            environment={"LIBGL_ALWAYS_SOFTWARE": "1"},
        )
        self.assertEqual(program.wait(60), 0, session.report())
        return {path.stem: Picture.read(path) for path in folder.iterdir()}

    def test_opengl_and_software_agree_in_every_state(self):
        session = self.begin(X11Session(1280, 800, window_manager=None))
        software = self.draw(session, "software")
        opengl = self.draw(session, "opengl")
        self.assertGreater(len(software), 20)
        self.assertEqual(software.keys(), opengl.keys())
        for state, picture in sorted(software.items()):
            with self.subTest(state):
                other = opengl[state]
                self.assertEqual((picture.width, picture.height), (1280, 800))
                self.assertEqual((other.width, other.height), (1280, 800))
                most = SHARE_BEYOND_MOVING if state in MOVING else SHARE_BEYOND
                share = share_beyond(picture, other, LITTLE)
                self.assertLess(share, most)
