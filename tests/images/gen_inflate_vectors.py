#!/usr/bin/env python3
"""Writes inflate_vectors.inc: streams made by Python's zlib at every level and strategy from
generated data, each with the inflated length and SHA-256 the inflate must reproduce, and raw
streams zlib rejects or that refer to a preset dictionary."""

import hashlib
import os
import random
import zlib

rng = random.Random(19)
words = [b"inflate", b"deflate", b"window", b"\xed\x95\x9c\xea\xb8\x80", b"Huffman", b"  ", b"\r\n"]
INPUTS = {
    "empty": b"",
    "one": b"A",
    "text": b" ".join(rng.choice(words) for _ in range(1200)),
    "random": bytes(rng.getrandbits(8) for _ in range(1500)),
    "run": b"\0" * 70000 + b"x" * 300,
    "mixed": b"".join(bytes(rng.getrandbits(8) for _ in range(rng.randint(1, 40))) * rng.randint(1, 30)
                      for _ in range(120)),
}
STRATEGIES = {"default": zlib.Z_DEFAULT_STRATEGY, 
              "huffman": zlib.Z_HUFFMAN_ONLY, "rle": zlib.Z_RLE, "fixed": zlib.Z_FIXED}


def hexbytes(data):
    return '"' + "".join(f"\\x{b:02x}" for b in data) + '"'


rows = []
for name, data in INPUTS.items():
    for level in (0, 1, 9):
        for sname, strategy in STRATEGIES.items():
            if level == 0 and sname != "default":
                continue
            if len(data) > 20000 and (level, sname) not in ((9, "default"), (1, "fixed")):
                continue
            c = zlib.compressobj(level, zlib.DEFLATED, 15, 9, strategy)
            stream = c.compress(data) + c.flush()
            assert zlib.decompress(stream) == data
            rows.append((f"{name}/{level}/{sname}", stream, len(data), hashlib.sha256(data).hexdigest()))
# Several small flushes make many blocks of every kind in one stream.
c = zlib.compressobj(6)
stream = b""
data = INPUTS["text"][:6000]
for i in range(0, len(data), 700):
    stream += c.compress(data[i:i + 700]) + c.flush(zlib.Z_FULL_FLUSH if i % 1400 else zlib.Z_SYNC_FLUSH)
stream += c.flush()
assert zlib.decompress(stream) == data
rows.append(("text/flushes", stream, len(data), hashlib.sha256(data).hexdigest()))

here = os.path.dirname(os.path.abspath(__file__))
with open(os.path.join(here, "inflate_vectors.inc"), "w") as out:
    out.write("// Made by gen_inflate_vectors.py from Python's zlib: name, zlib stream, inflated size and SHA-256.\n")
    for name, stream, size, digest in rows:
        out.write(f'{{"{name}", {hexbytes(stream)}, {len(stream)}, {size}, "{digest}"}},\n')
    # Raw deflate that refers back before its start: made against a preset dictionary.
    c = zlib.compressobj(9, zlib.DEFLATED, -15, zdict=b"window inflate deflate Huffman" * 4)
    raw = c.compress(b"inflate deflate Huffman window") + c.flush()
    out.write(f"#define QUILL_DICTIONARY_STREAM {hexbytes(raw)}\n")
print(len(rows), "vectors,", os.path.getsize(os.path.join(here, "inflate_vectors.inc")), "bytes")
