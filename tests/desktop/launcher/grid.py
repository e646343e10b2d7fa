"""Where a page's tiles must stand, in points from the screen's upper left corner."""

import math
from dataclasses import dataclass

COLUMNS = 7
ROWS = 5
SLOTS = COLUMNS * ROWS


@dataclass(frozen=True)
class Grid:
    width: int
    height: int
    columns: int = COLUMNS
    rows: int = ROWS

    @property
    def _margin(self):
        return max(0.08 * self.width, 70)

    @property
    def _cell(self):
        return (self.width - 2 * self._margin) / self.columns, (self.height - 192) / self.rows

    @property
    def cell_width(self):
        return self._cell[0]

    @property
    def _label_height(self):
        return math.ceil(1.4 * min(max(0.075 * self._cell[1], 11), 14))

    @property
    def icon_size(self):
        width, height = self._cell
        return min(max(min(0.8 * (height - self._label_height - 8), 0.62 * width), 36), 128)

    def cell_centre(self, slot):
        width, height = self._cell
        row, column = divmod(slot, self.columns)
        return self._margin + (column + 0.5) * width, 120 + (row + 0.5) * height

    def icon_centre(self, slot):
        x, y = self.cell_centre(slot)
        return x, y - (self._label_height + 8) / 2

    def icon_points(self, slot):
        """Points that the icon covers: its centre, and just inside of each edge."""
        x, y = self.icon_centre(slot)
        reach = self.icon_size / 2 - 3
        return [
            (round(x + dx), round(y + dy)) for dx, dy in ((0, 0), (-reach, 0), (reach, 0), (0, -reach), (0, reach))
        ]

    def points_around_icon(self, slot):
        """Free points just outside of the icon's edges."""
        x, y = self.icon_centre(slot)
        reach = self.icon_size / 2 + 3
        return [(round(x + dx), round(y + dy)) for dx, dy in ((-reach, 0), (reach, 0), (0, -reach), (0, reach))]

    def gap(self):
        """A point on the page that belongs to no tile: the corner of four cells."""
        width, height = self._cell
        return round(self._margin + width), round(120 + height)
