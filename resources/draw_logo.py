#!/usr/bin/env python3
"""Draws the program's built-in logo: a quill over a night-blue ground and the name in large
pixel letters, with the lower right corner left quiet for the version text painted over it.

Run from this folder; it rewrites logo.png (8-bit RGB, written with zlib only).
"""
import math
import struct
import zlib

WIDTH, HEIGHT = 360, 140

GLYPHS = {
    "Q": [".###.", "#...#", "#...#", "#...#", "#.#.#", "#..#.", ".##.#"],
    "u": [".....", ".....", "#...#", "#...#", "#...#", "#..##", ".##.#"],
    "i": ["..#..", ".....", ".##..", "..#..", "..#..", "..#..", ".###."],
    "l": [".##..", "..#..", "..#..", "..#..", "..#..", "..#..", ".###."],
}


def mix(a, b, t):
    return tuple(round(x + (y - x) * t) for x, y in zip(a, b))


def ground(x, y):
    top, bottom = (12, 24, 58), (18, 78, 104)
    glow = math.exp(-((x - 90) ** 2 + (y - 70) ** 2) / 5200.0) * 0.35
    return mix(mix(top, bottom, y / (HEIGHT - 1)), (70, 130, 170), glow)


def quill(x, y):
    """The feather's colour at a pixel, or None. The axis runs from the nib at the lower left
    up to the tip at the upper right; the vane is a leaf around it, bent a little."""
    nib, tip = (34.0, 128.0), (128.0, 10.0)
    ax, ay = tip[0] - nib[0], tip[1] - nib[1]
    length = math.hypot(ax, ay)
    ux, uy = ax / length, ay / length
    dx, dy = x - nib[0], y - nib[1]
    u = (dx * ux + dy * uy) / length  # 0 at the nib, 1 at the tip
    v = -dx * uy + dy * ux  # signed distance from the axis
    if u < 0 or u > 1:
        return None
    v -= 9.0 * math.sin(math.pi * u) * u  # the bend
    if u < 0.12:  # the nib: a dark point widening to the shaft
        return (30, 30, 40) if abs(v) <= 1.0 + u * 18 else None
    if abs(v) <= 1.0:
        return (250, 236, 200)  # the shaft
    if u < 0.22:
        return None
    width = 20.0 * math.sin(math.pi * (u - 0.22) / 0.78) ** 0.7
    if abs(v) > width:
        return None
    # Barbs: fine stripes slanting toward the tip, a little darker toward the edge.
    stripe = (u * length * 0.9 - abs(v) * 0.6) % 4.0
    shade = 1.0 - 0.25 * abs(v) / max(width, 1.0) - (0.12 if stripe < 1.0 else 0.0)
    base = (236, 240, 246) if v < 0 else (206, 218, 232)
    return tuple(round(c * shade) for c in base)


def letters(x, y):
    """The name in 5x7 letters scaled by seven, with a soft shadow."""
    scale, left, top, gap = 7, 150, 36, 6

    def ink(px, py):
        for i, ch in enumerate("Quill"):
            gx = px - (left + i * (5 * scale + gap))
            gy = py - top
            if 0 <= gx < 5 * scale and 0 <= gy < 7 * scale:
                if GLYPHS[ch][gy // scale][gx // scale] == "#":
                    return True
        return False

    if ink(x, y):
        return mix((255, 244, 214), (250, 196, 90), (y - top) / (7 * scale))
    if ink(x - 3, y - 3):
        return "shadow"
    return None


def pixel(x, y):
    colour = ground(x, y)
    text = letters(x, y)
    if text == "shadow":
        colour = mix(colour, (0, 0, 0), 0.5)
    elif text:
        return text
    feather = quill(x, y)
    if feather:
        return feather
    # A thin rule under the name.
    if 104 <= y <= 105 and 150 <= x <= 340:
        return mix(colour, (250, 196, 90), 0.7)
    return colour


def png(path, width, height, rows):
    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data +
                struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF))

    raw = b"".join(b"\0" + bytes(v for rgb in row for v in rgb) for row in rows)
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
                chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


if __name__ == "__main__":
    png("logo.png", WIDTH, HEIGHT,
        [[pixel(x, y) for x in range(WIDTH)] for y in range(HEIGHT)])
