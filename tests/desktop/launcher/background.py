"""What the launcher's background must look like over a desktop of one colour."""

import math

# A launcher shown again right after it was hidden has its earlier background; this log line says when that ends.
LOGGED = {"QT_LOGGING_RULES": "amberquill.window.debug=true"}
FORGOTTEN = "amberquill.window: the earlier backdrop is dropped"

THEMES = {
    "blue": ((0.18, 0.35, 0.63), (0.04, 0.10, 0.28)),
    "purple": ((0.40, 0.25, 0.62), (0.14, 0.07, 0.30)),
    "green": ((0.13, 0.47, 0.38), (0.02, 0.17, 0.14)),
}


def background_at(x, y, width, height, behind, theme="blue"):
    """The colour at a pixel: the desktop, over it the theme's gradient at 0.58, over that the glow."""
    across, down = x + 0.5, y + 0.5
    part = (across * width + down * height) / (width**2 + height**2)
    glow = 0.12 * max(0, 1 - math.hypot(across - width / 2, down) / 900)
    colour = []
    for top, bottom, desktop in zip(*THEMES[theme], behind):
        middle = (top + bottom) / 2
        gradient = top + (middle - top) * part / 0.45 if part < 0.45 else middle + (bottom - middle) * (part - 0.45) / 0.55
        tinted = desktop / 255 * (1 - 0.58) + gradient * 0.58
        colour.append(round(255 * (tinted * (1 - glow) + glow)))
    return tuple(colour)
