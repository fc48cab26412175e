#!/usr/bin/env python3
"""reproducible-zip.py BASE FOLDER STAMP OUT: zips BASE/FOLDER (entries named FOLDER/...) into OUT
with every entry in sorted order, dated STAMP (seconds since 1970, UTC), with fixed attributes and
compression, so that the same files give the same archive bytes."""
import os
import sys
import time
import zipfile


def main(base, folder, stamp, out):
    date = time.gmtime(max(int(stamp), 315532800))[:6]  # a zip cannot date before 1980
    paths = []
    for root, dirs, files in os.walk(os.path.join(base, folder)):
        dirs.sort()
        relative = os.path.relpath(root, base).replace(os.sep, "/")
        paths.append(relative + "/")
        paths.extend(relative + "/" + name for name in sorted(files))
    with zipfile.ZipFile(out + ".part", "w") as archive:
        for path in sorted(paths):
            info = zipfile.ZipInfo(path, date)
            info.create_system = 0  # MS-DOS: no Unix owner or mode bits
            if path.endswith("/"):
                info.external_attr = 0x10  # directory
                archive.writestr(info, b"")
                continue
            info.external_attr = 0x20  # archive
            info.compress_type = zipfile.ZIP_DEFLATED
            with open(os.path.join(base, path), "rb") as source:
                archive.writestr(info, source.read(), compresslevel=9)
    os.replace(out + ".part", out)


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    main(*sys.argv[1:])
