"""The intended differences between the launcher and GTK, each with its reason."""

from dataclasses import dataclass
from typing import Callable

from files import ENDINGS, IconFile


@dataclass(frozen=True)
class Question:
    name: str
    size: int  # in logical pixels
    scale: int

    @property
    def edge(self):
        return self.size * self.scale


@dataclass(frozen=True)
class Kind:
    title: str
    reason: str
    holds: Callable[[Question, IconFile, IconFile], bool]  # either file may be None: no answer


def in_one_theme(ours, gtk):
    return None not in (ours, gtk) and ours.theme == gtk.theme and None not in (ours.directory, gtk.directory)


def drawings(ours, gtk):
    return in_one_theme(ours, gtk) and ours.is_drawing and gtk.is_drawing


def pictures(ours, gtk):
    return in_one_theme(ours, gtk) and not ours.is_drawing and not gtk.is_drawing


def is_meant(question, file):
    return file.directory.is_meant_for(question.edge)


def fit_alike(question, ours, gtk):
    if ours.directory.shape == gtk.directory.shape:
        return True
    distances = {abs(file.directory.size - question.edge) for file in (ours, gtk)}
    return drawings(ours, gtk) and is_meant(question, ours) and is_meant(question, gtk) and len(distances) == 1


# A difference has the first kind that matches.
KINDS = (
    Kind(
        "a picture inside GTK's library",
        "Nobody else can open it, and it has 16 or 24 pixels. We have Adwaita's, or none.",
        lambda question, ours, gtk: gtk is not None and gtk.is_in_gtk and (ours is None or ours.theme == "Adwaita"),
    ),
    Kind(
        "a name with an ending",
        "Entries have such names. GIO takes the ending off before GTK is asked; our lookup does so itself.",
        lambda question, ours, gtk: gtk is None
        and ours is not None
        and any(question.name == ours.stem + ending for ending in ENDINGS),
    ),
    Kind(
        "a symbolic picture whose colours are GTK's codes",
        "GTK replaces its colours when it draws. The drawing that it was made from looks right as it is.",
        lambda question, ours, gtk: in_one_theme(ours, gtk)
        and gtk.ending == ".symbolic.png"
        and ours.is_drawing
        and ours.stem == gtk.stem,
    ),
    Kind(
        "a compressed drawing",
        "GTK does not know .svgz and takes a picture of another size.",
        lambda question, ours, gtk: in_one_theme(ours, gtk)
        and ours.ending == ".svgz"
        and not gtk.is_drawing
        and gtk.pixels != question.edge,
    ),
    Kind(
        "an application's icon, and a namesake",
        "Both fit alike. GTK takes the one that the theme lists last, a symbol for a panel or a menu.",
        lambda question, ours, gtk: in_one_theme(ours, gtk)
        and ours.is_applications
        and not gtk.is_applications
        and fit_alike(question, ours, gtk),
    ),
    Kind(
        "namesakes in directories that fit alike",
        "The theme lists first what it wants most. GTK takes the last.",
        lambda question, ours, gtk: in_one_theme(ours, gtk)
        and ours.is_applications == gtk.is_applications
        and ours.is_drawing == gtk.is_drawing
        and fit_alike(question, ours, gtk)
        and ours.directory.position < gtk.directory.position,
    ),
    Kind(
        "a drawing in place of a smaller picture",
        "GTK enlarges the picture, which blurs it.",
        lambda question, ours, gtk: in_one_theme(ours, gtk)
        and ours.is_drawing
        and not gtk.is_drawing
        and gtk.pixels < question.edge,
    ),
    Kind(
        "a larger picture in place of a drawing",
        "Shrunk, it is 91 to 97 % as sharp as the drawing, measured on 34 programs that have both, and takes a tenth of"
        " the time: a page of icons is there sooner.",
        lambda question, ours, gtk: in_one_theme(ours, gtk)
        and not ours.is_drawing
        and gtk.is_drawing
        and ours.pixels > question.edge,
    ),
    Kind(
        "the next larger picture",
        "GTK takes a still larger one, whose directory says that it may be scaled. Shrunk, both look the same; the next"
        " larger one takes less time to read.",
        lambda question, ours, gtk: pictures(ours, gtk) and question.edge < ours.pixels < gtk.pixels,
    ),
    Kind(
        "a larger picture rather than a slightly smaller one",
        "GTK enlarges a picture by up to its directory's threshold, which blurs it.",
        lambda question, ours, gtk: pictures(ours, gtk) and gtk.pixels < question.edge <= ours.pixels,
    ),
    Kind(
        "a drawing meant for the size",
        "GTK prefers one that is meant for larger sizes only.",
        lambda question, ours, gtk: drawings(ours, gtk)
        and is_meant(question, ours)
        and not is_meant(question, gtk),
    ),
    Kind(
        "a drawing that was not made for a finer screen",
        "GTK takes one that was made for the same or a smaller size, for a screen of scale 2 or 3. Enlarged, it has"
        " fewer details, and a folder's small icons would differ from the same ones opened.",
        lambda question, ours, gtk: drawings(ours, gtk)
        and ours.directory.scale < gtk.directory.scale
        and (ours.directory.size >= gtk.directory.size or is_meant(question, ours)),
    ),
    Kind(
        "the drawing made for the next larger size",
        "GTK takes one for a still larger size, whose lines get thinner.",
        lambda question, ours, gtk: drawings(ours, gtk) and question.edge < ours.directory.size < gtk.directory.size,
    ),
    Kind(
        "a picture in a directory that the index does not list",
        "Programs install into sizes that hicolor's index lacks. We read the size off the directory's name.",
        lambda question, ours, gtk: ours is not None
        and ours.theme == "hicolor"
        and ours.directory is None
        and not ours.is_drawing
        and int(ours.path.split("/")[-3].partition("x")[0]) >= question.edge,
    ),
)
