#!/usr/bin/env python3
"""Draws the program's icons: one .ico each, with 16, 32 and 48 pixels, 32 bits a pixel with alpha.

    draw_icons.py            writes the .ico files beside this script
    draw_icons.py --sheet F  also writes a contact sheet (PPM) to look at

Everything is drawn on a field of 16 by 16 units. The three sizes are whole multiples of it, so an edge on a whole unit
falls between two pixels in each of them and stays sharp. Coverage of a pixel comes from the signed distance to the
shape's edge, in pixels. Needs nothing but Python.
"""
import math
import struct
import sys
from pathlib import Path

SIZES = (16, 32, 48)

OUTLINE = (52, 62, 78)
WHITE = (255, 255, 255)
PAPER = ((255, 255, 255), (226, 232, 240))
STEEL = ((236, 240, 245), (166, 177, 191))
DARK_STEEL = ((124, 137, 154), (78, 90, 107))
AMBER = ((255, 221, 128), (243, 176, 54))
AMBER_LIGHT = ((255, 236, 170), (250, 199, 90))
AMBER_DARK = ((226, 160, 44), (205, 135, 26))
AMBER_LINE = (146, 92, 12)
BLUE = ((104, 180, 240), (28, 105, 190))
BLUE_LINE = (16, 66, 128)
GREEN = ((120, 206, 112), (38, 142, 56))
GREEN_LINE = (20, 92, 36)
VIOLET = ((196, 160, 236), (126, 84, 184))
VIOLET_LINE = (78, 46, 124)


# ---- shapes: the signed distance in units, negative inside ----
def box(x0, y0, x1, y1, radius=0.0):
    cx, cy, hx, hy = (x0 + x1) / 2, (y0 + y1) / 2, (x1 - x0) / 2 - radius, (y1 - y0) / 2 - radius

    def distance(x, y):
        dx, dy = abs(x - cx) - hx, abs(y - cy) - hy
        return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius
    return distance


def disc(cx, cy, radius):
    return lambda x, y: math.hypot(x - cx, y - cy) - radius


def ellipse(cx, cy, rx, ry):
    """Near enough for thin rings: the distance is scaled by the slope of the implicit form."""
    def distance(x, y):
        u, v = (x - cx) / rx, (y - cy) / ry
        value = math.hypot(u, v)
        slope = math.hypot(u / rx, v / ry)
        return (value - 1) * value / slope if slope > 1e-9 else -min(rx, ry)
    return distance


def polygon(*points):
    def distance(x, y):
        best, inside = math.inf, False
        for (ax, ay), (bx, by) in zip(points, points[1:] + points[:1]):
            ex, ey = bx - ax, by - ay
            t = max(0.0, min(1.0, ((x - ax) * ex + (y - ay) * ey) / (ex * ex + ey * ey)))
            best = min(best, math.hypot(x - ax - t * ex, y - ay - t * ey))
            if (ay > y) != (by > y) and x < ax + (y - ay) * ex / ey:
                inside = not inside
        return -best if inside else best
    return distance


def line(ax, ay, bx, by, width):
    ex, ey = bx - ax, by - ay

    def distance(x, y):
        t = max(0.0, min(1.0, ((x - ax) * ex + (y - ay) * ey) / (ex * ex + ey * ey)))
        return math.hypot(x - ax - t * ex, y - ay - t * ey) - width / 2
    return distance


def union(*shapes):
    return lambda x, y: min(shape(x, y) for shape in shapes)


def both(*shapes):
    return lambda x, y: max(shape(x, y) for shape in shapes)


def grown(shape, by):
    return lambda x, y: shape(x, y) - by


# ---- painting ----
class Canvas:
    """Straight-alpha pixels; `unit` is the number of pixels of a unit, `hair` the width of an outline in units."""

    def __init__(self, size):
        self.size, self.unit = size, size / 16
        self.hair = (2 if size == 48 else 1) / self.unit
        self.pixel = 1 / self.unit
        self.pixels = [[(0.0, 0.0, 0.0, 0.0)] * size for _ in range(size)]

    def fill(self, shape, colour, opacity=1.0):
        """`colour` is one colour, or (top, bottom) of a gradient down the shape's field."""
        rows = [(p + 0.5) / self.unit for p in range(self.size)]
        covered = [(j, i, min(1.0, max(0.0, 0.5 - shape(x, y) * self.unit)))
                   for j, y in enumerate(rows) for i, x in enumerate(rows)]
        covered = [(j, i, c * opacity) for j, i, c in covered if c > 0]
        if not covered:
            return
        top, bottom = covered[0][0], covered[-1][0]
        for j, i, alpha in covered:
            if isinstance(colour[0], tuple):
                t = (j - top) / (bottom - top) if bottom > top else 0
                rgb = tuple(a + (b - a) * t for a, b in zip(*colour))
            else:
                rgb = colour
            r, g, b, under = self.pixels[j][i]
            out = alpha + under * (1 - alpha)
            mix = [(n * alpha + o * under * (1 - alpha)) / out for n, o in zip(rgb, (r, g, b))]
            self.pixels[j][i] = (*mix, out)

    def solid(self, shape, colour, edge=OUTLINE):
        """A shape with an outline that lies inside its edge, so that it ends where the shape ends."""
        self.fill(shape, edge)
        self.fill(grown(shape, -self.hair), colour)

    def bgra(self):
        return [[(round(b), round(g), round(r), round(a * 255)) for r, g, b, a in row] for row in self.pixels]


# ---- parts that several icons share ----
def page(c):
    fold = 4
    body = polygon((3, 1), (13 - fold, 1), (13, 1 + fold), (13, 15), (3, 15))
    c.solid(body, PAPER)
    c.solid(polygon((13 - fold, 1), (13, 1 + fold), (13 - fold, 1 + fold)), STEEL)


def text_lines(c, rows, left=5, right=11):
    for y, end in rows:
        c.fill(box(left, y, end or right, y + c.hair), (148, 163, 184))


def server(c, lamp, colour=STEEL):
    c.solid(box(1, 1, 11, 15, 1), colour)
    for y in (3, 7):
        c.fill(box(3, y, 9, y + 2), DARK_STEEL)
        c.fill(box(7, y + c.pixel, 8, y + c.pixel + 1) if c.size > 16 else box(7, y, 8, y + 1), lamp)
    c.fill(box(3, 11, 6, 12), DARK_STEEL[0])


def badge(c, cx, cy, radius, colour, edge):
    """A disc that stands off from what is under it by a rim of nothing."""
    rim = disc(cx, cy, radius + c.pixel * (1 if c.size == 16 else 1.5))
    for j in range(c.size):
        for i in range(c.size):
            cover = min(1.0, max(0.0, 0.5 - rim((i + 0.5) / c.unit, (j + 0.5) / c.unit) * c.unit))
            r, g, b, a = c.pixels[j][i]
            c.pixels[j][i] = (r, g, b, a * (1 - cover))
    c.solid(disc(cx, cy, radius), colour, edge)


def globe(c, cx, cy, radius, colour, edge):
    badge(c, cx, cy, radius, colour, edge)
    inner = disc(cx, cy, radius - c.hair)
    thin = c.pixel * (0.4 if c.size == 16 else 0.75)
    ring = ellipse(cx, cy, radius * 0.45, radius - c.hair / 2)
    meridian = grown(lambda x, y: abs(ring(x, y)), thin)
    half = c.pixel * (0.5 if c.size == 16 else 1)
    equator = box(0, cy - half, 16, cy + half)
    c.fill(both(union(meridian, equator), inner), WHITE, 0.85)


# Middle and radius: an odd number of pixels at 16, so that the equator falls on whole ones.
GLOBE = {16: (11.5, 11.5, 4.5), 32: (11, 11, 5), 48: (11, 11, 5)}


# ---- the icons ----
def folder(c):
    c.solid(union(box(1, 2, 7, 8, 1), box(1, 4, 15, 9, 1)), AMBER_DARK, AMBER_LINE)
    c.solid(box(1, 5, 15, 14, 1), AMBER, AMBER_LINE)
    c.fill(box(1 + c.hair, 5 + c.hair, 15 - c.hair, 5 + c.hair + c.pixel), AMBER_LIGHT[0])


def openfolder(c):
    c.solid(union(box(1, 2, 7, 8, 1), box(1, 4, 13, 14, 1)), AMBER_DARK, AMBER_LINE)
    flap = polygon((4, 7), (16, 7), (13, 14), (1, 14))
    c.solid(flap, AMBER, AMBER_LINE)
    c.fill(both(box(0, 7 + c.hair, 16, 7 + c.hair + c.pixel), grown(flap, -c.hair)), AMBER_LIGHT[0])


def file(c):
    page(c)
    text_lines(c, ((6, None), (8, None), (10, None), (12, 9)))


def link(c):
    page(c)
    text_lines(c, ((6, None),))
    c.solid(box(1, 8, 9, 16, 1), BLUE, BLUE_LINE)
    if c.size == 16:
        head, shaft = (box(4, 10, 7, 11), box(6, 10, 7, 13)), [box(k, 16 - k, k + 1, 17 - k) for k in (3, 4, 5)]
        c.fill(union(*head, *shaft), WHITE)
        return
    left, right, top, bottom = (round(v * c.unit) / c.unit for v in (3.6, 7.4, 9.6, 13.4))
    c.fill(union(line(3.4, 13.6, 6, 11, 1.3), polygon((left, top), (right, top), (right, bottom))), WHITE)


def device(c):
    half = c.pixel * (0.5 if c.size == 16 else 1)
    for middle in (4.5, 6.5, 9.5, 11.5) if c.size == 16 else (5, 8, 11):
        c.fill(box(middle - half, 1, middle + half, 15), DARK_STEEL[0])
        c.fill(box(1, middle - half, 15, middle + half), DARK_STEEL[0])
    c.solid(box(3, 3, 13, 13, 1), GREEN, GREEN_LINE)
    c.fill(box(5, 5, 7, 7) if c.size == 16 else disc(6, 6, 1), WHITE, 0.85)


def pipe(c):
    c.solid(box(2, 4, 14, 12), VIOLET, VIOLET_LINE)
    c.fill(box(5, 4 + 2 * c.hair, 11, 4 + 3 * c.hair), WHITE, 0.55)
    for x in (1, 11):
        c.solid(box(x, 2, x + 4, 14, 0.5), VIOLET, VIOLET_LINE)
        c.fill(box(x + c.hair, 2 + 2 * c.hair, x + 4 - c.hair, 2 + 3 * c.hair), WHITE, 0.55)


def computer(c):
    c.fill(box(6, 11, 10, 14), DARK_STEEL)
    c.solid(box(3, 13, 13, 15, 0.5), STEEL)
    c.solid(box(1, 1, 15, 12, 1), STEEL)
    c.fill(box(3, 3, 13, 10), BLUE)
    c.fill(polygon((3, 3), (8, 3), (4, 10), (3, 10)), WHITE, 0.22)


def drive(c):
    c.solid(polygon((4, 4), (12, 4), (15, 9), (15, 10), (1, 10), (1, 9)), STEEL)
    c.solid(box(1, 8, 15, 13, 1), STEEL)
    c.fill(box(3, 10, 9, 11), DARK_STEEL[0])
    c.fill(box(11, 10, 13, 11), GREEN[1])


def site(c):
    server(c, (150, 232, 140))
    globe(c, *GLOBE[c.size], BLUE, BLUE_LINE)


def site_sel(c):
    server(c, (150, 255, 120), AMBER_LIGHT)
    globe(c, *GLOBE[c.size], GREEN, GREEN_LINE)


def addsite(c):
    server(c, (150, 232, 140))
    badge(c, 11, 11, 5, GREEN, GREEN_LINE)
    half = c.pixel * (1 if c.size == 16 else 2)
    c.fill(union(box(8, 11 - half, 14, 11 + half), box(11 - half, 8, 11 + half, 14)), WHITE)


def zarn(c):
    c.solid(box(0, 0, 16, 16, 3), BLUE, BLUE_LINE)
    c.fill(union(box(3, 4, 10, 6), polygon((10, 2), (13, 5), (10, 8))), WHITE)
    c.fill(union(box(6, 10, 13, 12), polygon((6, 8), (3, 11), (6, 14))), WHITE)


ICONS = {f.__name__: f for f in (zarn, addsite, computer, device, drive, file, folder, link, openfolder, pipe, site,
                                 site_sel)}


# ---- files ----
def image(rows):
    """An icon image as a bitmap with its mask: bottom row first, mask rows padded to 4 bytes."""
    size = len(rows)
    head = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    colour = b"".join(bytes(pixel) for row in reversed(rows) for pixel in row)
    mask = b""
    for row in reversed(rows):
        bits = "".join("1" if pixel[3] == 0 else "0" for pixel in row).ljust((size + 31) // 32 * 32, "0")
        mask += int(bits, 2).to_bytes(len(bits) // 8, "big")
    return head + colour + mask


def icon_file(images):
    offset, head, body = 6 + 16 * len(images), struct.pack("<HHH", 0, 1, len(images)), b""
    for rows in images:
        data = image(rows)
        head += struct.pack("<BBBBHHII", len(rows), len(rows), 0, 0, 1, 32, len(data), offset + len(body))
        body += data
    return head + body


def sheet(drawn, path, zoom=4):
    """All icons on white, grey, dark and highlight, at their size, and the sizes again enlarged."""
    grounds = ((255, 255, 255), (240, 240, 240), (0, 120, 215), (32, 32, 32))
    cells = [(size, ground, 1) for ground in grounds for size in SIZES] + [(s, grounds[0], zoom) for s in SIZES]
    width = sum(size * z + 8 for size, _, z in cells)
    height = 48 * zoom + 8
    field = [[(200, 200, 200)] * width for _ in range(height * len(drawn))]
    for k, images in enumerate(drawn.values()):
        left = 4
        for size, ground, z in cells:
            rows = images[SIZES.index(size)]
            for y in range(size * z):
                for x in range(size * z):
                    b, g, r, a = rows[y // z][x // z]
                    field[k * height + 4 + y][left + x] = tuple(
                        (n * a + o * (255 - a)) // 255 for n, o in zip((r, g, b), ground))
            left += size * z + 8
    data = bytes(v for row in field for pixel in row for v in pixel)
    Path(path).write_bytes(f"P6 {width} {len(field)} 255\n".encode() + data)


def main():
    folder_of_icons = Path(__file__).parent
    drawn = {}
    for name, draw in ICONS.items():
        canvases = [Canvas(size) for size in SIZES]
        for canvas in canvases:
            draw(canvas)
        drawn[name] = [canvas.bgra() for canvas in canvases]
        (folder_of_icons / f"{name}.ico").write_bytes(icon_file(drawn[name]))
    if sys.argv[1:2] == ["--sheet"]:
        sheet(drawn, sys.argv[2])


if __name__ == "__main__":
    main()
