# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Draws the pointers HAND-M.CUR and drag.ico into the folder that this file stands in.

Shapes are closed polygons on a grid of 32 units, painted one over the other in the order in which
they are listed. Each pixel is the mean of GRAIN x GRAIN samples, which gives smooth edges.
"""

import math
import struct
from pathlib import Path

GRID = 32
SIZES = (32, 48, 64)
GRAIN = 8
FRAME = 1  # of a shape, in units: one sharp pixel in the smallest size

DARK = (0x1F, 0x2D, 0x38)
WHITE = (0xFF, 0xFF, 0xFF)
ACCENT = (0x3D, 0x6F, 0x94)
PALE = (0xC3, 0xD2, 0xDD)

ICON = 1
CURSOR = 2


def arc(centre, radius, start, end):
    """Points on an arc, in degrees; with y pointing down, 0 is right and 90 is below."""
    steps = max(2, round(abs(end - start) / 10))
    turns = (math.radians(start + (end - start) * i / steps) for i in range(steps + 1))
    return [(centre[0] + radius * math.cos(t), centre[1] + radius * math.sin(t)) for t in turns]


def capsule(a, b, radius):
    """The outline of a round-ended stroke from a to b."""
    heading = math.degrees(math.atan2(b[1] - a[1], b[0] - a[0]))
    return arc(b, radius, heading - 90, heading + 90) + arc(a, radius, heading + 90, heading + 270)


def box(left, top, right, bottom, radius):
    """The outline of a rectangle with round corners."""
    return (
        arc((left + radius, top + radius), radius, 180, 270)
        + arc((right - radius, top + radius), radius, 270, 360)
        + arc((right - radius, bottom - radius), radius, 0, 90)
        + arc((left + radius, bottom - radius), radius, 90, 180)
    )


def edges(points, width):
    """Strokes along all sides of a polygon: painted below it, they frame it with round corners."""
    return [capsule(a, b, width) for a, b in zip(points, points[1:] + points[:1])]


def paint(canvas, side, points, ink):
    """Fills one polygon (even-odd) on a canvas of side x side samples."""
    scale = side / GRID
    points = [(x * scale, y * scale) for x, y in points]
    heights = [y for _, y in points]
    for row in range(max(0, math.floor(min(heights))), min(side, math.ceil(max(heights)))):
        middle = row + 0.5
        crossings = sorted(
            x1 + (middle - y1) * (x2 - x1) / (y2 - y1)
            for (x1, y1), (x2, y2) in zip(points, points[1:] + points[:1])
            if (y1 <= middle) != (y2 <= middle)
        )
        for enter, leave in zip(crossings[::2], crossings[1::2]):
            first = min(side, max(0, round(enter)))
            last = min(side, max(first, round(leave)))
            canvas[row * side + first : row * side + last] = bytes([ink]) * (last - first)


def render(layers, size):
    """Paints (colour, polygons) layers; returns size x size pixels (red, green, blue, alpha)."""
    side = size * GRAIN
    canvas = bytearray(side * side)
    for ink, (_, polygons) in enumerate(layers, start=1):
        for points in polygons:
            paint(canvas, side, points, ink)
    colours = [colour for colour, _ in layers]
    return [mean(canvas, side, x, y, colours) for y in range(size) for x in range(size)]


def mean(canvas, side, x, y, colours):
    """The colour of one pixel: the mean of the samples that are painted; the rest is its alpha."""
    samples = bytearray()
    for row in range(y * GRAIN, (y + 1) * GRAIN):
        samples += canvas[row * side + x * GRAIN : row * side + (x + 1) * GRAIN]
    inks = [colours[sample - 1] for sample in samples if sample]
    if not inks:
        return (0, 0, 0, 0)
    red, green, blue = (round(sum(channel) / len(inks)) for channel in zip(*inks))
    return (red, green, blue, round(255 * len(inks) / len(samples)))


def bitmap(pixels, size):
    """A 32-bit bitmap as pointer files hold it: header, rows from the bottom up, AND mask."""
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    colours = bytearray()
    mask = bytearray()
    mask_row_bytes = (size + 31) // 32 * 4
    for y in reversed(range(size)):
        row = pixels[y * size : (y + 1) * size]
        bits = 0
        for red, green, blue, alpha in row:
            colours += bytes((blue, green, red, alpha))
            bits = bits << 1 | (alpha == 0)
        mask += (bits << (mask_row_bytes * 8 - size)).to_bytes(mask_row_bytes, "big")
    return header + bytes(colours) + bytes(mask)


def pointer_file(kind, layers, tip):
    """The bytes of an icon, or of a cursor whose hot spot is the pixel that holds `tip`."""
    images = [bitmap(render(layers, size), size) for size in SIZES]
    directory = struct.pack("<HHH", 0, kind, len(images))
    offset = len(directory) + 16 * len(images)
    for size, image in zip(SIZES, images):
        hot_spot = [math.floor(position * size / GRID) for position in tip]
        planes_and_bits = hot_spot if kind == CURSOR else (1, 32)
        directory += struct.pack("<BBBBHH", size, size, 0, 0, *planes_and_bits)
        directory += struct.pack("<II", len(image), offset)
        offset += len(image)
    return directory + b"".join(images)


def hand():
    """A hand with its first finger stretched upwards, and the tip of that finger."""
    strokes = [
        ((12, 5), (12, 20), 2),
        ((16.5, 13.5), (16.5, 20), 1.5),
        ((20.5, 14.5), (20.5, 20), 1.5),
        ((24.5, 15.5), (24.5, 20), 1.5),
        ((6.2, 16.2), (11.6, 22.4), 1.9),
    ]
    palm = [(10, 18), (26, 18), (26, 21.5), (24.4, 25), (13.4, 25), (10, 21.5)]
    cuff = box(13, 26, 25, 30, 0.6)
    creases = [capsule((x, top), (x, 19.5), 0.5) for x, top in ((14.5, 14), (18.5, 15), (22.5, 16))]
    layers = [
        (DARK, [capsule(a, b, radius + FRAME) for a, b, radius in strokes]),
        (DARK, edges(palm, FRAME) + edges(cuff, FRAME)),
        (WHITE, [capsule(a, b, radius) for a, b, radius in strokes] + [palm]),
        (DARK, creases),
        (ACCENT, [cuff]),
    ]
    return layers, (12, 2)


def dragged_row():
    """A row of a list between arrows up and down, with a pointer at the top left, and its tip."""
    arrow = [(1, 1.2), (1, 13), (4, 10.4), (6, 14.6), (8.2, 13.6), (6.2, 9.6), (9.6, 9.4)]
    row = box(11, 15, 31, 22, 0.8)
    up = [(21, 7.2), (26, 12), (16, 12)]
    down = [(21, 29.8), (26, 25), (16, 25)]
    layers = [
        (WHITE, edges(up, FRAME) + edges(down, FRAME)),
        (ACCENT, [up, down]),
        (DARK, edges(row, FRAME)),
        (WHITE, [row]),
        (ACCENT, [box(13, 17, 16, 20, 0.4)]),
        (PALE, [box(18, 18, 29, 19, 0.4)]),
        (DARK, edges(arrow, FRAME)),
        (WHITE, [arrow]),
    ]
    return layers, (0, 0)


def main():
    """Writes both files."""
    here = Path(__file__).resolve().parent
    (here / "HAND-M.CUR").write_bytes(pointer_file(CURSOR, *hand()))
    (here / "drag.ico").write_bytes(pointer_file(ICON, *dragged_row()))


if __name__ == "__main__":
    main()
