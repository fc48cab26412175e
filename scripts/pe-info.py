#!/usr/bin/env python3
"""Prints what a Windows executable tells the loader and the user about itself, one fact a line:
machine, subsystem, timestamp, each imported library, and the version resource (its fixed
numbers and every string of every language block). Used to check the packaged programs without
running them."""
import struct
import sys

MACHINES = {0x14C: "i386", 0x8664: "amd64"}
SUBSYSTEMS = {2: "gui", 3: "console"}
RT_VERSION = 16


class Image:
    def __init__(self, data):
        self.data = data
        if data[:2] != b"MZ":
            raise ValueError("no MZ header")
        pe = struct.unpack_from("<I", data, 0x3C)[0]
        if data[pe:pe + 4] != b"PE\0\0":
            raise ValueError("no PE signature")
        (self.machine, sections, self.timestamp, _, _, optional_size,
         _) = struct.unpack_from("<HHIIIHH", data, pe + 4)
        optional = pe + 24
        magic = struct.unpack_from("<H", data, optional)[0]
        if magic not in (0x10B, 0x20B):
            raise ValueError("unknown optional header 0x%X" % magic)
        self.subsystem = struct.unpack_from("<H", data, optional + 68)[0]
        directories = optional + (96 if magic == 0x10B else 112)
        count = struct.unpack_from("<I", data, directories - 4)[0]
        self.directories = [struct.unpack_from("<II", data, directories + 8 * i)
                            for i in range(count)]
        self.sections = []
        table = optional + optional_size
        for i in range(sections):
            _, vsize, vaddr, rsize, raw = struct.unpack_from("<8sIIII", data, table + 40 * i)
            self.sections.append((vaddr, max(vsize, rsize), raw))

    def offset(self, rva):
        for vaddr, size, raw in self.sections:
            if vaddr <= rva < vaddr + size:
                return raw + rva - vaddr
        raise ValueError("address 0x%X is in no section" % rva)

    def cstring(self, rva):
        start = self.offset(rva)
        return self.data[start:self.data.index(b"\0", start)].decode("ascii")

    def imports(self):
        rva, size = self.directories[1] if len(self.directories) > 1 else (0, 0)
        names = []
        if not rva:
            return names
        at = self.offset(rva)
        while True:
            entry = struct.unpack_from("<IIIII", self.data, at)
            if entry == (0, 0, 0, 0, 0):
                return names
            names.append(self.cstring(entry[3]))
            at += 20

    def resource(self, type_id):
        """The bytes of the first resource of a type (any name, any language), or None."""
        rva = self.directories[2][0] if len(self.directories) > 2 else 0
        if not rva:
            return None
        base = self.offset(rva)

        def entries(directory):
            named, ids = struct.unpack_from("<HH", self.data, base + directory + 12)
            for i in range(named + ids):
                yield struct.unpack_from("<II", self.data, base + directory + 16 + 8 * i)

        for name, target in entries(0):
            if name != type_id:
                continue
            while target & 0x80000000:  # down the name and language levels
                target = next(entries(target & 0x7FFFFFFF))[1]
            data_rva, size = struct.unpack_from("<II", self.data, base + target)
            start = self.offset(data_rva)
            return self.data[start:start + size]
        return None


def version_nodes(block, at, end, path):
    """Walks a version resource's nested blocks: yields (path, key, value bytes, is_text)."""
    while at + 6 <= end:
        length, value_length, is_text = struct.unpack_from("<HHH", block, at)
        if length == 0:
            return
        key_end = at + 6
        while block[key_end:key_end + 2] != b"\0\0":
            key_end += 2
        key = block[at + 6:key_end].decode("utf-16-le")
        value_at = (key_end + 2 + 3) & ~3
        value_size = value_length * 2 if is_text else value_length
        yield path, key, block[value_at:value_at + value_size], is_text
        children = (value_at + value_size + 3) & ~3
        yield from version_nodes(block, children, at + length, path + [key])
        at = (at + length + 3) & ~3


def describe(path):
    image = Image(open(path, "rb").read())
    print("machine=%s" % MACHINES.get(image.machine, hex(image.machine)))
    print("subsystem=%s" % SUBSYSTEMS.get(image.subsystem, str(image.subsystem)))
    print("timestamp=%d" % image.timestamp)
    for name in image.imports():
        print("import=%s" % name)
    block = image.resource(RT_VERSION)
    if block is None:
        return
    for where, key, value, is_text in version_nodes(block, 0, len(block), []):
        if key == "VS_VERSION_INFO" and len(value) >= 52:
            signature, _, file_ms, file_ls, product_ms, product_ls = struct.unpack_from(
                "<IIIIII", value)
            if signature != 0xFEEF04BD:
                raise ValueError("bad fixed version signature")
            for name, ms, ls in (("file", file_ms, file_ls), ("product", product_ms, product_ls)):
                print("%sversion=%d.%d.%d.%d" % (name, ms >> 16, ms & 0xFFFF, ls >> 16, ls & 0xFFFF))
        elif is_text and len(where) >= 2 and where[-2] == "StringFileInfo":
            print("string %s %s=%s" % (where[-1], key, value.decode("utf-16-le").rstrip("\0")))


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: pe-info.py FILE.exe")
    try:
        describe(sys.argv[1])
    except (ValueError, struct.error, OSError) as error:
        sys.exit("%s: %s" % (sys.argv[1], error))
