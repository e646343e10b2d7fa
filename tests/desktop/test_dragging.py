import json

from harness import until
from harness.picture import is_near
from launcher.case import is_shown
from launcher.on_x11 import OnX11


class Dragging(OnX11):
    """Icons are dragged by a real pointer, at the speed of a hand."""

    def setUp(self):
        self.begin_session(1920, 1080)
        self.made = self.applications.add_many()

    def paths(self, *numbers):
        return [str(self.made[number].path) for number in numbers]

    def icon(self, slot):
        return tuple(round(part) for part in self.grid.icon_centre(slot))

    def take(self, slot):
        """Presses the button on the middle of the icon in that place and begins a drag."""
        self.session.take(*self.icon(slot))
        until(lambda: not self.is_in_place(slot, self.made[slot]), "the empty cell")

    def is_in_place(self, slot, application):
        return is_shown(self.session.screenshot(), self.grid, slot, application.colour)

    def expect_in_place(self, slot, application):
        until(lambda: self.is_in_place(slot, application), f"{application.name} in place {slot}")

    def place_of(self, application):
        """The middle of the area with the application's colour, or None."""
        picture = self.session.screenshot()
        points = [
            (x, y)
            for x in range(0, self.session.width, 6)
            for y in range(0, self.session.height, 6)
            if is_near(picture.at(x, y), application.colour, 3)
        ]
        if len(points) < 20:
            return None
        return tuple(round(sum(part) / len(points)) for part in zip(*points))

    def expect_open_folder(self):
        """Waits until the page is dimmed: before that, Escape would hide the launcher."""
        until(lambda: not self.is_in_place(0, self.made[0]), "the dimmed page")

    def test_an_icon_that_rests_between_others_makes_room_and_stays_there(self):
        launcher = self.begin_shown_launcher(self.made)
        self.take(3)
        x, y = self.icon(5)
        self.session.move_pointer(x + round(self.grid.icon_size * 0.7), y)
        self.expect_in_place(3, self.made[4])
        self.expect_in_place(4, self.made[5])
        self.session.drop()
        self.expect_in_place(5, self.made[3])
        self.end_launcher(launcher)
        self.assertEqual(self.items()[:7], self.paths(0, 1, 2, 4, 5, 3, 6))

    def test_an_icon_dropped_on_another_makes_a_folder_that_opens(self):
        launcher = self.begin_shown_launcher(self.made)
        self.take(3)
        self.session.move_pointer(*self.icon(10))
        self.expect_in_place(0, self.made[0])
        self.session.drop()
        self.expect_open_folder()
        self.session.press("Escape")
        self.expect_in_place(3, self.made[4])
        self.end_launcher(launcher)
        self.assertEqual(self.items()[9], self.paths(10, 3))
        self.assertEqual(self.items()[:4], self.paths(0, 1, 2, 4))

    def test_an_icon_held_at_the_edge_moves_to_the_next_page(self):
        launcher = self.begin_shown_launcher(self.made)
        self.take(3)
        edge = self.session.width - 10, round(self.session.height / 2)
        self.session.move_pointer(*edge)
        until(lambda: self.is_in_place(1, self.made[36]), "page 2")
        x, y = self.icon(2)
        self.session.move_pointer(x + round(self.grid.icon_size * 0.7), y)
        self.expect_in_place(1, self.made[37])
        self.session.drop()
        self.expect_in_place(2, self.made[3])
        self.end_launcher(launcher)
        numbers = [number for number in range(38) if number != 3]
        self.assertEqual(self.items()[:38], self.paths(*numbers, 3))

    def test_an_application_dragged_out_of_its_folder_is_on_the_page_again(self):
        paths = self.paths(*range(len(self.made)))
        folder = {"id": "3F2504E0-4F89-11D3-9A0C-0305E82C3301", "name": "Folder", "apps": paths[:3]}
        self.layout_file.parent.mkdir(parents=True)
        self.layout_file.write_text(
            json.dumps([{"folder": {"_0": folder}}] + [{"app": {"_0": path}} for path in paths[3:]])
        )
        launcher = self.begin_launcher()
        until(lambda: self.is_in_place(1, self.made[3]), "the launcher")
        self.click_icon(0)
        # Three applications fill the first three of the panel's four columns, and the panel is in the middle.
        resting = self.session.width / 2 - self.grid.cell_width / 2
        until(lambda: abs((self.place_of(self.made[1]) or (0, 0))[0] - resting) < 4, "the panel at rest")
        resting_place = self.place_of(self.made[1])
        self.session.take(*resting_place)
        # The icon follows the pointer. A drag that starts outside the panel would use the page's places at once.
        until(lambda: (self.place_of(self.made[1]) or resting_place)[0] > resting_place[0] + 4, "the drag")
        x, y = self.icon(29)
        # The pointer stays beside the icon: on it, the icon would become the drop target and stay so further out.
        beside = x + round(self.grid.icon_size * 0.75)
        self.session.move_pointer(beside, y + 30)
        # Motion events that arrive together are merged, and the page takes them only once the folder is closed.
        self.expect_in_place(2, self.made[3])
        self.session.move_pointer(beside, y)
        self.expect_in_place(28, self.made[30])
        self.session.drop()
        self.expect_in_place(29, self.made[1])
        self.end_launcher(launcher)
        self.assertEqual(self.items()[0], self.paths(0, 2))
        self.assertEqual(self.items()[29], self.paths(1)[0])
