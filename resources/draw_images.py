#!/usr/bin/env python3
"""Draws the menu-bar bitmaps 2, 3, 4 and the document icon 2 as small pixel pictures.

Run from this folder; it rewrites build_run.bmp, rebuild.bmp, build.bmp and document.ico.
"""
import struct

BACK = (0xD4, 0xD0, 0xC8)  # the corner colour, which the program turns into the bar's


def bmp(path, pixels):
    """An 8-bit bitmap with a colour table: the program swaps the corner colour's table entry
    for the window colour when it loads the picture."""
    height = len(pixels)
    width = len(pixels[0])
    palette = [BACK]
    for row_pixels in pixels:
        for colour in row_pixels:
            if colour not in palette:
                palette.append(colour)
    row = (width + 3) & ~3
    data = bytearray()
    for y in range(height - 1, -1, -1):
        line = bytes(palette.index(colour) for colour in pixels[y])
        data += line + b"\0" * (row - len(line))
    table = b"".join(bytes((b, g, r, 0)) for r, g, b in palette)
    offset = 54 + len(table)
    header = struct.pack("<2sIHHI", b"BM", offset + len(data), 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 8, 0, len(data), 2835, 2835,
                       len(palette), 0)
    with open(path, "wb") as f:
        f.write(header + info + table + data)


def canvas(width, height, colour=BACK):
    return [[colour for _ in range(width)] for _ in range(height)]


def rect(p, x0, y0, x1, y1, colour):
    for y in range(y0, y1 + 1):
        for x in range(x0, x1 + 1):
            p[y][x] = colour


def brick_wall(p, ox, oy):
    """Two courses of bricks: the build."""
    red, mortar = (0xB0, 0x40, 0x20), (0x60, 0x60, 0x60)
    rect(p, ox, oy, ox + 11, oy + 9, mortar)
    for course in range(3):
        y = oy + 1 + course * 3
        shift = 0 if course % 2 == 0 else 3
        for x in range(ox + 1, ox + 11):
            if (x - ox - shift) % 6 != 5:
                p[y][x] = red
                p[y + 1][x] = red


def build_run():
    p = canvas(24, 16)
    brick_wall(p, 1, 3)
    green = (0x10, 0x90, 0x20)
    for i in range(9):  # a play triangle beside the wall
        for y in range(3 + i // 2, 13 - i // 2):
            p[y][14 + i] = green
    return p


def build():
    p = canvas(16, 16)
    brick_wall(p, 2, 3)
    return p


def rebuild():
    p = canvas(24, 16)
    brick_wall(p, 1, 3)
    blue = (0x20, 0x40, 0xC0)
    # A turning arrow: a ring with an arrow head.
    cx, cy = 18, 8
    for y in range(16):
        for x in range(12, 24):
            d = (x - cx) ** 2 + (y - cy) ** 2
            if 12 <= d <= 22 and not (x > cx and y < cy):
                p[y][x] = blue
    for i in range(4):
        rect(p, 19 + i, 1 + i, 19 + i, 7 - i, blue)
    return p


def icon(path, pixels):
    """A 32x32 icon: 24-bit colour and its mask."""
    size = 32
    xor = bytearray()
    for y in range(size - 1, -1, -1):
        for colour in pixels[y]:
            r, g, b = colour if colour else (0, 0, 0)
            xor += bytes((b, g, r))
    mask = bytearray()
    for y in range(size - 1, -1, -1):
        bits = 0
        for x in range(size):
            bits = bits << 1 | (1 if pixels[y][x] is None else 0)
        mask += struct.pack(">I", bits)
    info = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 24, 0, len(xor) + len(mask), 0, 0, 0, 0)
    image = info + xor + mask
    head = struct.pack("<HHH", 0, 1, 1) + struct.pack("<BBBBHHII", size, size, 0, 0, 1, 24, len(image), 22)
    with open(path, "wb") as f:
        f.write(head + image)


def document():
    p = [[None] * 32 for _ in range(32)]
    paper, edge, ink, fold = (0xFF, 0xFF, 0xFF), (0x30, 0x30, 0x30), (0x20, 0x50, 0xB0), (0xC8, 0xC8, 0xC8)
    for y in range(2, 30):
        for x in range(5, 27):
            if x - 19 > y - 2:  # the folded corner
                continue
            p[y][x] = edge if x in (5, 26) or y in (2, 29) or x - 19 == y - 2 else paper
    for y in range(2, 10):
        for x in range(19, 27):
            if x - 19 <= y - 2 and x - 19 < 8 and y < 9:
                p[y][x] = fold if p[y][x] is not None and x - 19 != y - 2 else p[y][x]
    rect(p, 19, 9, 26, 9, edge)
    for line, length in ((12, 14), (15, 17), (18, 11), (21, 16), (24, 9)):
        rect(p, 8, line, 8 + length - 1, line, ink)
    return p


bmp("build_run.bmp", build_run())
bmp("rebuild.bmp", rebuild())
bmp("build.bmp", build())
icon("document.ico", document())
