"""The launcher's drawings of icons, compared with rsvg-convert's, and the comparison itself."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import compare

BUILD = Path(os.environ["AMBERQUILL_BUILD"])
EDGES = (48, 120, 256)
ICONS = 100


class IconsOfThemes(unittest.TestCase):
    def test_look_as_rsvg_convert_draws_them(self):
        icons = compare.compared(compare.installed_icons(ICONS), EDGES, BUILD)
        self.assertEqual(len(icons), ICONS)
        different = [
            f"{icon.path} at {drawing.edge}: {drawing.different} pixels, by {drawing.most} at most"
            for icon in icons
            for drawing in icon.drawings
            if drawing.different
        ]
        self.assertFalse(different, "\n".join(["", *different]))


class Comparison(unittest.TestCase):
    """For pictures with one pixel that is not transparent."""

    EDGE = 8

    def compared(self, ours, theirs):
        with tempfile.TemporaryDirectory() as folder:
            drawing = compare.Drawing(self.EDGE, Path(folder, "ours.png"), Path(folder, "theirs.png"))
            for path, colour in ((drawing.ours, ours), (drawing.theirs, theirs)):
                size = f"{self.EDGE}x{self.EDGE}"
                command = ["convert", "-size", size, "xc:none", "-fill", colour, "-draw", "point 3,5", f"PNG32:{path}"]
                subprocess.run(command, check=True)
            compare.compare(compare.Icon(Path("icon.svg"), [drawing]))
            return drawing.different, drawing.most

    def test_equal_pictures_do_not_differ(self):
        self.assertEqual(self.compared("rgb(10,20,30)", "rgb(10,20,30)"), (0, 0))

    def test_a_single_pixel_that_differs_visibly_counts(self):
        self.assertEqual(self.compared("rgb(10,20,30)", "rgb(10,23,30)"), (1, 3))

    def test_differences_by_rounding_are_not_visible(self):
        self.assertEqual(self.compared("rgb(10,20,30)", "rgb(8,20,32)"), (0, 2))

    def test_opacity_counts(self):
        self.assertEqual(self.compared("rgba(255,255,255,1)", "none"), (1, 255))

    def test_a_colours_difference_is_weighted_by_its_opacity(self):
        self.assertEqual(self.compared("rgba(250,0,0,0.02)", "rgba(0,0,250,0.02)")[0], 1)
        self.assertEqual(self.compared("rgba(250,0,0,0.004)", "rgba(0,0,250,0.004)")[0], 0)


if __name__ == "__main__":
    unittest.main()
