#!/usr/bin/env python3
"""Makes the PNG samples in data/ with ImageMagick, one per colour type, bit depth, interlace,
filter and compression level, and writes png_samples.inc: each file's size and the SHA-256 of
ImageMagick's own decoding (convert FILE rgba:-). Run it again only to change the samples; the
tests read the committed files and need no ImageMagick."""

import hashlib
import os
import struct
import subprocess
import sys
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = os.path.join(HERE, "data")

# A picture with smooth and sharp changes, so every filter has work to do.
SOURCE = ["-seed", "7", "-size", "37x23", "plasma:red-blue", "-fill", "yellow", "-draw",
          "circle 18,11 18,4", "-fill", "rgb(10,200,30)", "-draw", "rectangle 0,0 5,22"]
ALPHA = ["(", "-size", "37x23", "gradient:white-none", "-rotate", "0", ")", "-compose",
         "copy_opacity", "-composite"]

# name, extra convert arguments, expected (colour type, depth)
SAMPLES = []
for depth in (1, 2, 4, 8, 16):
    SAMPLES.append((f"grey{depth}", ["-colorspace", "gray", "-depth", str(depth),
                    "-define", f"png:bit-depth={depth}", "-define", "png:color-type=0"], (0, depth)))
for depth in (8, 16):
    SAMPLES.append((f"rgb{depth}", ["-depth", str(depth), "-define", f"png:bit-depth={depth}",
                    "-define", "png:color-type=2"], (2, depth)))
    SAMPLES.append((f"greyalpha{depth}", ALPHA + ["-colorspace", "gray", "-depth", str(depth),
                    "-define", f"png:bit-depth={depth}", "-define", "png:color-type=4"], (4, depth)))
    SAMPLES.append((f"rgba{depth}", ALPHA + ["-depth", str(depth), "-define",
                    f"png:bit-depth={depth}", "-define", "png:color-type=6"], (6, depth)))
for depth in (1, 2, 4, 8):
    SAMPLES.append((f"palette{depth}", ["-colors", str(min(2 ** depth, 200)), "-define",
                    f"png:bit-depth={depth}", "-define", "png:color-type=3"], (3, depth)))
# One colour made transparent: the tRNS key of grey and RGB pictures.
KEY = ["-fill", "rgb(0,0,0)", "-draw", "rectangle 3,3 9,9", "-transparent", "rgb(0,0,0)"]
SAMPLES.append(("grey8_key", ["-colorspace", "gray"] + KEY + ["-define", "png:bit-depth=8",
                "-define", "png:color-type=0"], (0, 8)))
SAMPLES.append(("rgb8_key", KEY + ["-define", "png:bit-depth=8", "-define", "png:color-type=2"], (2, 8)))
SAMPLES.append(("rgb16_key", KEY + ["-depth", "16", "-define", "png:bit-depth=16", "-define",
                "png:color-type=2"], (2, 16)))
# Each filter on its own (quality's units digit), and stored blocks (level 0).
for f in range(5):
    SAMPLES.append((f"rgb8_filter{f}", ["-quality", str(90 + f), "-define", "png:color-type=2",
                    "-define", "png:bit-depth=8"], (2, 8)))
SAMPLES.append(("rgba8_stored", ALPHA + ["-quality", "5", "-define", "png:color-type=6",
                "-define", "png:bit-depth=8"], (6, 8)))


def chunks(data):
    pos = 8
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        yield kind, data[pos + 8:pos + 8 + length]
        pos += 12 + length


def make(name, args, expected, interlace, size):
    path = os.path.join(DATA, name + ("_adam7" if interlace else "") + ".png")
    source = SOURCE if size is None else [a.replace("37x23", size) for a in SOURCE]
    extra = [a.replace("37x23", size) for a in args] if size else args
    subprocess.run(["convert"] + source + extra + ["-interlace", "PNG" if interlace else "none",
                    "-strip", "png:" + path], check=True)
    data = open(path, "rb").read()
    ihdr = next(body for kind, body in chunks(data) if kind == b"IHDR")
    width, height, depth, colour, _, _, laced = struct.unpack(">IIBBBBB", ihdr)
    if (colour, depth) != expected or laced != interlace:
        sys.exit(f"{path}: got colour {colour} depth {depth} interlace {laced}, wanted {expected}")
    pixels = subprocess.run(["convert", path, "-depth", "8", "rgba:-"], check=True,
                            capture_output=True).stdout
    assert len(pixels) == width * height * 4
    has_key = any(kind == b"tRNS" for kind, _ in chunks(data))
    return os.path.basename(path), width, height, hashlib.sha256(pixels).hexdigest(), has_key


def crafted(name, width, height, depth, colour, rows, extra, interlace=0):
    """A file ImageMagick will not write: palettes with partial transparency, keys at odd depths.
    Rows are already packed; each gets the filter of its number mod 5."""
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))
    bpp = max(1, depth * {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}[colour] // 8)
    raw, prior = b"", bytes(len(rows[0]))
    for y, row in enumerate(rows):
        f = y % 5
        out = bytearray()
        for i, x in enumerate(row):
            a = row[i - bpp] if i >= bpp else 0
            b = prior[i]
            c = prior[i - bpp] if i >= bpp else 0
            p = a + b - c
            paeth = a if abs(p - a) <= abs(p - b) and abs(p - a) <= abs(p - c) else (b if abs(p - b) <= abs(p - c) else c)
            out.append((x - [0, a, b, (a + b) // 2, paeth][f]) & 255)
        raw += bytes([f]) + bytes(out)
        prior = row
    data = (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, depth, colour, 0, 0, 0))
            + b"".join(chunk(k, v) for k, v in extra) + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))
    path = os.path.join(DATA, name + ".png")
    open(path, "wb").write(data)
    pixels = subprocess.run(["convert", path, "-depth", "8", "rgba:-"], check=True, capture_output=True).stdout
    assert len(pixels) == width * height * 4
    return os.path.basename(path), width, height, hashlib.sha256(pixels).hexdigest(), True


def pack(values, depth):
    bits = "".join(format(v, f"0{depth}b") for v in values)
    bits += "0" * (-len(bits) % 8)
    return bytes(int(bits[i:i + 8], 2) for i in range(0, len(bits), 8))


def crafted_samples():
    w, h = 19, 11
    palette = bytes(v for i in range(200) for v in ((i * 37) % 256, (i * 91) % 256, (255 - i) % 256))
    alpha = bytes((i * 53) % 256 for i in range(120))  # shorter than the palette: the rest opaque
    yield crafted("palette8_alpha", w, h, 8, 3, [bytes((x * 7 + y * 13) % 200 for x in range(w)) for y in range(h)],
                  [(b"PLTE", palette), (b"tRNS", alpha)])
    yield crafted("palette4_alpha", w, h, 4, 3, [pack([(x + y) % 12 for x in range(w)], 4) for y in range(h)],
                  [(b"PLTE", palette[:36]), (b"tRNS", bytes([0, 40, 80, 120, 160]))])
    yield crafted("grey2_key", w, h, 2, 0, [pack([(x * y) % 4 for x in range(w)], 2) for y in range(h)],
                  [(b"tRNS", b"\0\2")])
    yield crafted("grey16_key", w, h, 16, 0, [b"".join(struct.pack(">H", (x * 3000 + y * 700) % 65536) for x in range(w)) for y in range(h)],
                  [(b"tRNS", struct.pack(">H", 3000 * 2 + 700 * 3))])
    yield crafted("greyalpha16_ramp", 256, 4, 16, 4, [b"".join(struct.pack(">HH", x * 256 + y * 64 + 7, 65535 - x * 255) for x in range(256)) for y in range(4)], [])


def main():
    os.makedirs(DATA, exist_ok=True)
    rows = []
    for name, args, expected in SAMPLES:
        for interlace in (0, 1):
            rows.append(make(name, args, expected, interlace, None))
    # Pictures smaller than an Adam7 block leave some passes empty.
    for size in ("1x1", "3x2", "9x1"):
        tag = size.replace("x", "by")
        SIZED = [(f"rgba8_{tag}", ALPHA + ["-define", "png:color-type=6", "-define",
                  "png:bit-depth=8"], (6, 8)),
                 (f"grey2_{tag}", ["-colorspace", "gray", "-depth", "2", "-define",
                  "png:bit-depth=2", "-define", "png:color-type=0"], (0, 2))]
        for name, args, expected in SIZED:
            rows.append(make(name, args, expected, 1, size))
    rows.extend(crafted_samples())
    with open(os.path.join(HERE, "png_samples.inc"), "w") as out:
        out.write("// Made by gen_png_samples.py: file, width, height, SHA-256 of ImageMagick's RGBA.\n")
        for file, width, height, digest, _ in rows:
            out.write(f'{{"{file}", {width}, {height}, "{digest}"}},\n')
    keyed = [r[0] for r in rows if r[4]]
    print(f"{len(rows)} samples; with tRNS: {' '.join(keyed)}")


main()
