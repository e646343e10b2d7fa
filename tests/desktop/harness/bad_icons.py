"""Malicious and broken drawings, as bytes or as bytes by file name."""

import math

COLOUR = (253, 97, 149)  # of their visible parts


def svg(inside, declarations=""):
    """A drawing of 256 × 256 units."""
    names = 'xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink"'
    return f'<?xml version="1.0"?>\n{declarations}<svg {names} viewBox="0 0 256 256">{inside}</svg>'.encode()


def square(colour):
    return '<rect width="256" height="256" fill="#%02x%02x%02x"/>' % colour


def curves(count, colour=None):
    """Dashed curves over each other; 4,000 take minutes. With a colour, a square of it covers them."""

    def point(step, part):
        angle = step * 2.4 + part
        return f"{128 + 120 * math.cos(angle):.1f},{128 + 120 * math.sin(1.7 * angle):.1f}"

    path = "".join(f"C{point(step, 0.1)} {point(step, 0.5)} {point(step, 0.9)}" for step in range(count))
    dashes = 'fill="none" stroke="blue" stroke-width="9" stroke-dasharray="0.1 0.1"'
    return svg(f'<path {dashes} d="M0,0{path}"/>' + (square(colour) if colour else ""))


def references(address):
    """Drawings of COLOUR with every kind of reference to another file."""

    def drawing(inside, declarations=""):
        return svg(inside + square(COLOUR), declarations)

    return {
        "image.svg": drawing(f'<image width="9" height="9" href="{address}"/>'),
        "linked-image.svg": drawing(f'<image width="9" height="9" xlink:href="{address}"/>'),
        "use.svg": drawing(f'<use xlink:href="{address}#a"/>'),
        "fill.svg": drawing(f'<path fill="url({address}#a)" d="M0,0h9v9z"/>'),
        "mask.svg": drawing(f'<g mask="url({address}#a)" clip-path="url({address}#a)"><path d="M0,0h9v9z"/></g>'),
        "filter.svg": drawing(
            f'<filter id="f"><feImage xlink:href="{address}"/></filter><path filter="url(#f)" d="M0,0h9v9z"/>'
            f'<path filter="url({address}#f)" d="M0,0h9v9z"/>'
        ),
        "import.svg": drawing(f'<style>@import "{address}"; @import url({address});</style>'),
        "sheet.svg": drawing("", f'<?xml-stylesheet type="text/css" href="{address}"?>\n'),
        "font.svg": drawing(
            f'<style>@font-face {{ font-family: x; src: url({address}); }}</style><text font-family="x">a</text>'
        ),
        "entity.svg": drawing("<g>&x;</g>", f'<!DOCTYPE svg [<!ENTITY x SYSTEM "{address}">]>\n'),
        "parameter.svg": drawing("", f'<!DOCTYPE svg [<!ENTITY % x SYSTEM "{address}"> %x;]>\n'),
        "definition.svg": drawing("", f'<!DOCTYPE svg SYSTEM "{address}">\n'),
        "include.svg": drawing(f'<xi:include xmlns:xi="http://www.w3.org/2001/XInclude" href="{address}"/>'),
        "include-text.svg": drawing(
            f'<text><xi:include xmlns:xi="http://www.w3.org/2001/XInclude" parse="text" href="{address}"/></text>'
        ),
    }
