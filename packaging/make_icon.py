"""Draws the program's icon, the two buildings of the window's header, as SVG.

    make_icon.py scalable | symbolic | PIXELS | table

With a number of pixels every edge lies on a whole pixel of a picture of that size, and what would
vanish is one pixel wide. The table has the boxes of the small sizes for the program to paint.
"""

import sys
from xml.etree import ElementTree


class Grid:
    """Lengths given as parts of the icon's side, snapped to whole pixels or not."""

    def __init__(self, side, is_snapped):
        self.side = side
        self.is_snapped = is_snapped

    def length(self, part):
        return max(1, round(part * self.side)) if self.is_snapped else part * self.side

    def middle(self, whole, part):
        """Where a part begins that stands in the middle of a whole."""
        return (whole - part) // 2 if self.is_snapped else (whole - part) / 2


def number(value):
    return f"{value:.3f}".rstrip("0").rstrip(".")


def box(x, y, width, height, radius=0.0, **attributes):
    shape = {"x": x, "y": y, "width": width, "height": height}
    if radius:
        shape["rx"] = radius
    values = {name: number(value) for name, value in shape.items()} | attributes
    return "<rect " + " ".join(f'{name}="{value}"' for name, value in values.items()) + "/>"


def buildings(grid, scale, left, right, panes):
    """The higher and the lower building, standing in the middle. `scale`: their size in the icon."""
    pane = grid.length(0.05 * scale)
    wall = grid.length(0.062 * scale)
    floor = grid.length(0.055 * scale)
    gap = grid.length(0.03 * scale)
    wide = grid.length(0.1 * scale)
    high_width = 2 * pane + 3 * wall
    low_width = wide + 2 * wall
    high = 3 * (pane + floor) + wall + grid.length(0.13 * scale)
    low = 2 * (pane + floor) + wall + grid.length(0.06 * scale)
    x = grid.middle(grid.side, high_width + gap + low_width)
    bottom = grid.side - grid.middle(grid.side, high)
    radius = 0.02 * scale * grid.side
    shapes = [
        box(x, bottom - high, high_width, high, radius, fill=left),
        box(x + high_width + gap, bottom - low, low_width, low, radius, fill=right),
    ]
    for row in range(3):
        y = bottom - high + wall + row * (pane + floor)
        shapes += [box(x + wall + column * (pane + wall), y, pane, pane, fill=panes)
                   for column in range(2)]
    for row in range(2):
        y = bottom - low + wall + row * (pane + floor)
        shapes.append(box(x + high_width + gap + wall, y, wide, pane, fill=panes))
    door = grid.length(0.08 * scale)
    door += (high_width - door) % 2 if grid.is_snapped else 0
    height = grid.length(0.09 * scale)
    shapes.append(box(x + (high_width - door) / 2, bottom - height, door, height, fill=panes))
    return shapes


def colour_icon(side, is_snapped):
    grid = Grid(side, is_snapped)
    margin = grid.length(0.047)
    line = grid.length(0.008)
    inner = side - 2 * margin
    radius = grid.length(0.19)
    return [
        "<defs>",
        '<linearGradient id="tile" x2="0" y2="1"><stop stop-color="#46464c"/>'
        '<stop offset="1" stop-color="#222225"/></linearGradient>',
        '<linearGradient id="high" x2="0" y2="1"><stop stop-color="#3ea0ff"/>'
        '<stop offset="1" stop-color="#0a74e8"/></linearGradient>',
        '<linearGradient id="low" x2="0" y2="1"><stop stop-color="#1f8dff"/>'
        '<stop offset="1" stop-color="#0860c8"/></linearGradient>',
        "</defs>",
        box(margin, margin, inner, inner, radius, fill="#5c5c62"),
        box(margin + line, margin + line, inner - 2 * line, inner - 2 * line, radius - line,
            fill="url(#tile)"),
        *buildings(grid, 1.22, "url(#high)", "url(#low)", "#eef6ff"),
    ]


def symbolic_icon(side):
    """One colour, which the desktop replaces by its own; the panes are holes."""
    shapes = buildings(Grid(side, True), 1.35, "white", "white", "black")
    return ['<mask id="holes">', *shapes, "</mask>",
            box(0, 0, side, side, fill="#2e3436", mask="url(#holes)")]


def document(kind):
    side = {"scalable": 128, "symbolic": 16}.get(kind) or int(kind)
    shapes = symbolic_icon(side) if kind == "symbolic" else colour_icon(side, kind != "scalable")
    opening = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{side}" height="{side}" '
               f'viewBox="0 0 {side} {side}">')
    return "\n".join([opening, *shapes, "</svg>"])


def table(side):
    svg = ElementTree.fromstring(document(side))
    stops = {f"url(#{each.get('id')})": [stop.get("stop-color") for stop in each]
             for each in svg.findall(".//{*}linearGradient")}
    for each in svg.findall(".//{*}rect"):
        place = ", ".join(map(each.get, ("x", "y", "width", "height")))
        fill = each.get("fill")
        top, bottom = (f"0xff{colour[1:]}" for colour in stops.get(fill, [fill, fill]))
        yield f"{{{side}, {{{place}}}, {each.get('rx', 0)}, {top}, {bottom}}},"


def main(kind):
    if kind == "table":
        print(*(line for side in (16, 32, 48) for line in table(side)), sep="\n")
    else:
        print(document(kind))


if __name__ == "__main__":
    main(sys.argv[1])
