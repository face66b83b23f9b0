#!/usr/bin/env python3
"""Draws the program's icon: a control chart with its two limits and one point beyond them.

Writes src/qt/icons: a PNG for each size, the same in one .ico for Windows, and an .svg for desktops. The picture
is described once, in units of a 256th of its side, and drawn by distance to each shape, so that nothing but
Python is needed and every size is crisp by itself; small sizes have bolder lines and fewer points.
"""
import math
import pathlib
import struct
import zlib

OUT = pathlib.Path(__file__).resolve().parent.parent.parent / "src" / "qt" / "icons"
SIZES = (16, 20, 24, 32, 40, 48, 64, 128, 256)

GROUND = (28, 58, 94)
EDGE = (16, 36, 62)
LIMIT = (255, 196, 77)
TARGET = (112, 150, 190)
LINE = (236, 243, 250)
BEYOND = (255, 84, 66)

UPPER, LOWER, MIDDLE = 84, 196, 140
POINTS = ((40, 150), (74, 118), (108, 160), (142, 128), (178, 46), (216, 136))
FEW_POINTS = ((44, 156), (104, 124), (164, 46), (216, 146))
THE_ONE_BEYOND = 46


def strength(size):
    """How much bolder than life a small picture is drawn."""
    return 2.6 if size <= 20 else 1.9 if size <= 32 else 1.35 if size <= 48 else 1.0


def shapes(size):
    """The picture from back to front: (kind, geometry, half width, colour)."""
    bold = strength(size)
    points = FEW_POINTS if size <= 24 else POINTS
    yield ("box", (8, 8, 248, 248, 44), 0, EDGE)
    rim = 8 + 5 * bold / 1.3
    yield ("box", (rim, rim, 256 - rim, 256 - rim, 40), 0, GROUND)
    if size > 24:
        yield ("line", (28, MIDDLE, 228, MIDDLE), 2.5 * bold, TARGET)
    for y in (UPPER, LOWER):
        yield ("line", (28, y, 228, y), 4 * bold, LIMIT)
    for (x1, y1), (x2, y2) in zip(points, points[1:]):
        yield ("line", (x1, y1, x2, y2), 4 * bold, LINE)
    for x, y in points:
        if y == THE_ONE_BEYOND:
            if size > 24:
                yield ("dot", (x, y), 12 * bold + 9, LINE)
            yield ("dot", (x, y), 12 * bold + (4 if size > 24 else 0), BEYOND)
        elif size > 24:
            yield ("dot", (x, y), 9 * bold, LINE)


def distance(kind, where, half, x, y):
    """Signed distance in units: negative inside."""
    if kind == "dot":
        return math.hypot(x - where[0], y - where[1]) - half
    if kind == "line":
        x1, y1, x2, y2 = where
        dx, dy = x2 - x1, y2 - y1
        t = max(0.0, min(1.0, ((x - x1) * dx + (y - y1) * dy) / (dx * dx + dy * dy)))
        return math.hypot(x - x1 - t * dx, y - y1 - t * dy) - half
    left, top, right, bottom, radius = where
    qx = abs(x - (left + right) / 2) - (right - left) / 2 + radius
    qy = abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius
    return math.hypot(max(qx, 0), max(qy, 0)) + min(max(qx, qy), 0) - radius


def draw(size):
    """RGBA bytes of the picture, row by row."""
    unit = 256 / size
    layers = list(shapes(size))
    rows = bytearray()
    for row in range(size):
        rows.append(0)  # the PNG's filter of this row: none
        for column in range(size):
            x, y = (column + 0.5) * unit, (row + 0.5) * unit
            red = green = blue = alpha = 0.0
            for kind, where, half, colour in layers:
                cover = max(0.0, min(1.0, 0.5 - distance(kind, where, half, x, y) / unit))
                if cover > 0:
                    red, green, blue = (c * cover + old * (1 - cover) for c, old in zip(colour, (red, green, blue)))
                    alpha = cover + alpha * (1 - cover)
            if alpha > 0:
                red, green, blue = red / alpha, green / alpha, blue / alpha
            rows += bytes(round(min(255.0, part)) for part in (red, green, blue, alpha * 255))
    return bytes(rows)


def png(size):
    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(draw(size), 9)) +
            chunk(b"IEND", b""))


def ico(pictures):
    offset = 6 + 16 * len(pictures)
    head, body = struct.pack("<HHH", 0, 1, len(pictures)), b""
    for size, data in pictures:
        head += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset + len(body))
        body += data
    return head + body


def svg():
    parts = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 256 256">']
    for kind, where, half, colour in shapes(256):
        ink = "#%02x%02x%02x" % colour
        if kind == "box":
            left, top, right, bottom, radius = where
            parts.append(f'<rect x="{left:g}" y="{top:g}" width="{right - left:g}" height="{bottom - top:g}" '
                         f'rx="{radius}" fill="{ink}"/>')
        elif kind == "line":
            x1, y1, x2, y2 = where
            parts.append(f'<line x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}" stroke="{ink}" '
                         f'stroke-width="{2 * half:g}" stroke-linecap="round"/>')
        else:
            parts.append(f'<circle cx="{where[0]}" cy="{where[1]}" r="{half:g}" fill="{ink}"/>')
    return "\n".join(parts + ["</svg>", ""])


def main():
    OUT.mkdir(parents=True, exist_ok=True)
    pictures = [(size, png(size)) for size in SIZES]
    for size, data in pictures:
        (OUT / f"KDLimitDesk-{size}.png").write_bytes(data)
    (OUT / "KDLimitDesk.ico").write_bytes(ico(pictures))
    (OUT / "KDLimitDesk.svg").write_text(svg(), encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
