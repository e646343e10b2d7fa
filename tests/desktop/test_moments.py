"""The screen in the middle of slowed-down motions."""

import json

from harness import until
from harness.picture import is_near
from launcher.on_x11 import OnX11

SLOWDOWN = 16
PATIENCE = 60  # seconds; a motion takes up to ten


class Moments(OnX11):
    def setUp(self):
        self.begin_session(1280, 720, environment={"AMBERQUILL_SLOWDOWN": str(SLOWDOWN)})
        self.made = self.applications.add_many()
        self.edge = self.grid.icon_size

    def icon(self, slot):
        return tuple(round(part) for part in self.grid.icon_centre(slot))

    def left_at_rest(self, slot):
        return self.grid.icon_centre(slot)[0] - self.edge / 2

    def begin_launcher_at_rest(self):
        launcher = self.begin_launcher()
        until(lambda: not self.wrong_places(self.made), "page 1", PATIENCE)
        return launcher

    def take(self, slot):
        self.session.take(*self.icon(slot))
        until(lambda: slot in self.wrong_places(self.made), "the drag", PATIENCE)

    def extent(self, picture, y, application):
        """The first point of the row with the application's colour and the one after the last; or None."""
        points = [x for x in range(picture.width) if is_near(picture.at(x, y), application.colour, 3)]
        return (points[0], points[-1] + 1) if points else None

    def seen_until(self, measure, is_over, what):
        """Takes pictures until the motion is over. Returns all measured values, in order."""
        seen = []

        def ended():
            value = measure(self.session.screenshot())
            if value is not None:
                seen.append(value)
            return seen and is_over(seen[-1])

        until(ended, what, PATIENCE)
        return seen

    def expect_on_the_way(self, parts, precision=0.03):
        """Expects that the parts of a way never go back and that some lie in its middle."""
        for earlier, later in zip(parts, parts[1:]):
            self.assertGreater(later, earlier - precision, parts)
        self.assertTrue(any(0.1 < part < 0.9 for part in parts), parts)

    def test_icons_that_make_room_slide_side_by_side_and_the_dragged_one_stays_at_the_pointer(self):
        launcher = self.begin_launcher_at_rest()
        self.take(3)
        x, y = self.icon(5)
        pointer = x + round(self.edge * 0.7), y
        self.session.move_pointer(*pointer)

        def measured(picture):
            extents = [self.extent(picture, y, self.made[number]) for number in (3, 4, 5)]
            return tuple(extents) if all(extents) else None

        def is_over(extents):
            return all(abs(extents[each][0] - self.left_at_rest(each + 2)) <= 1 for each in (1, 2))

        seen = self.seen_until(measured, is_over, "the icons in their new places")
        parts = []
        for dragged, fourth, fifth in seen:
            ways = [
                (self.left_at_rest(slot) - extent[0]) / self.grid.cell_width for slot, extent in ((4, fourth), (5, fifth))
            ]
            self.assertAlmostEqual(ways[0], ways[1], delta=0.03)
            parts.append(ways[0])
        self.expect_on_the_way(parts)
        for dragged, *_ in seen[len(seen) // 2 :]:
            self.assertAlmostEqual(sum(dragged) / 2, pointer[0], delta=2)
        self.assertAlmostEqual(seen[-1][0][1] - seen[-1][0][0], self.edge * 1.1, delta=3)
        self.session.drop()
        until(lambda: not self.wrong_places([*self.made[:3], *self.made[4:6], self.made[3], *self.made[6:]]), "the drop",
              PATIENCE)
        self.end_launcher(launcher)

    def test_an_application_shrinks_into_the_folder_to_be_and_the_page_dims_as_it_opens(self):
        launcher = self.begin_launcher_at_rest()
        self.take(3)
        x, y = self.icon(10)
        # Beside the middle, so that the left half stays visible.
        self.session.move_pointer(x + round(self.edge * 0.55), y)

        def left_part(picture):
            extent = self.extent(picture, y, self.made[10])
            return (self.edge / 2 - (x - extent[0])) / (self.edge * 0.11) if extent else None

        shrunk = self.seen_until(left_part, lambda part: abs(part - 1) < 0.15, "the application in its frame")
        # A device pixel is a ninth of the way here.
        self.assertTrue(any(0.15 < part < 0.85 for part in shrunk), shrunk)
        frame = self.session.screenshot().at(x - round(self.edge * 0.44), y)
        beside = self.session.screenshot().at(x - round(self.edge * 0.55), y)
        self.assertTrue(all(inside > outside + 15 for inside, outside in zip(frame, beside)), (frame, beside))

        other = self.icon(1)
        bright = self.session.screenshot().at(*other)
        self.assertTrue(is_near(bright, self.made[1].colour, 3))
        self.session.drop()
        channel = max(range(3), key=lambda each: bright[each])
        dimmed = self.seen_until(
            lambda picture: picture.at(*other)[channel],
            lambda value, last=[]: last.append(value) or (value < bright[channel] - 40 and last[-4:] == [value] * 4),
            "the dimmed page",
        )
        self.expect_on_the_way([(bright[channel] - each) / (bright[channel] - dimmed[-1]) for each in dimmed])
        self.session.press("Escape")
        until(lambda: is_near(self.session.screenshot().at(*other), bright, 3), "the bright page", PATIENCE)
        self.end_launcher(launcher)

    def test_both_pages_slide_as_one_while_an_icon_is_carried_to_the_next(self):
        launcher = self.begin_launcher_at_rest()
        self.take(3)
        y = self.icon(0)[1]
        self.session.move_pointer(self.session.width - 10, 600)

        def measured(picture):
            extents = [self.extent(picture, y, self.made[number]) for number in (5, 6, 35)]
            return tuple(extents) if extents[2] else None

        seen = self.seen_until(
            measured, lambda extents: abs(extents[2][0] - self.left_at_rest(0)) <= 1, "page 2 in its place"
        )
        parts = []
        both = 0
        for _, last_of_first, first_of_second in seen:
            shift = self.left_at_rest(0) + self.session.width - first_of_second[0]
            parts.append(shift / self.session.width)
            whole = last_of_first and last_of_first[1] - last_of_first[0] >= self.edge - 2
            if whole and first_of_second[1] < self.session.width:
                both += 1
                self.assertAlmostEqual(last_of_first[0], self.left_at_rest(6) - shift, delta=2)
        self.expect_on_the_way(parts)
        self.assertGreater(both, 0)
        self.session.drop()
        self.end_launcher(launcher)

    def test_the_panel_fades_while_an_application_is_pulled_out_of_its_folder(self):
        paths = [str(application.path) for application in self.made]
        # One row on the page, so that nothing but the panel changes where the panel is.
        folder = {"id": "3F2504E0-4F89-11D3-9A0C-0305E82C3301", "name": "Folder", "apps": paths[:3]}
        rest = {"id": "3F2504E0-4F89-11D3-9A0C-0305E82C3302", "name": "Rest", "apps": paths[4:]}
        self.layout_file.parent.mkdir(parents=True)
        self.layout_file.write_text(
            json.dumps([{"folder": {"_0": folder}}, {"app": {"_0": paths[3]}}, {"folder": {"_0": rest}}])
        )
        launcher = self.begin_launcher()
        until(
            lambda: is_near(self.session.screenshot().at(*self.icon(1)), self.made[3].colour, 3), "the page", PATIENCE
        )
        page = self.session.screenshot()
        self.click_icon(0)
        # The second of three applications; the panel has four columns.
        x = round(self.session.width / 2 - self.grid.cell_width / 2)

        def icon_at_rest():
            picture = self.session.screenshot()
            top = next((y for y in range(200, 600) if is_near(picture.at(x, y), self.made[1].colour, 3)), None)
            extent = self.extent(picture, top + 20, self.made[1]) if top else None
            rests = extent and abs(sum(extent) / 2 - x) <= 1 and abs(extent[1] - extent[0] - self.edge) <= 1
            return (x, top + round(self.edge / 2)) if rests else None

        icon = until(icon_at_rest, "the panel at rest", PATIENCE)
        # In the panel's empty cell.
        place = round(self.session.width / 2 + 1.5 * self.grid.cell_width), icon[1]
        panel, bare = self.session.screenshot().at(*place), page.at(*place)
        channel = max(range(3), key=lambda each: abs(panel[each] - bare[each]))
        way = bare[channel] - panel[channel]
        self.assertGreater(abs(way), 12, (panel, bare))
        self.session.take(*icon)
        self.session.move_pointer(100, 660)
        seen = self.seen_until(
            lambda picture: picture.at(*place)[channel], lambda value: abs(value - bare[channel]) <= 1, "the bare page"
        )
        self.expect_on_the_way([(each - panel[channel]) / way for each in seen], precision=0.15)
        self.session.drop()
        self.end_launcher(launcher)
