#!/usr/bin/env python3
"""How often `quill-tool detect` recognises real Korean text in EUC-KR and in Johab.

The text is every line of at least 10 Hangul syllables in the Korean message catalogs of this
machine (/usr/share/locale/ko/LC_MESSAGES/*.mo), each line once. Each line is written alone in a
file (with a line end), once as EUC-KR and once as Johab by Python's codecs; where code page 949
spells a line differently from the euc_kr codec (syllables outside KS X 1001), that spelling is
tested as a third file, since it is what Windows writes. Lines that neither codec can write are
counted and left out.

    bench/detect_johab.py [--tool PATH-TO-quill-tool] [--catalogs DIR] [--keep DIR]

Without --tool it builds quill-tool optimised in build/bench, as bench/run.sh does. It prints the
figures and exits 1 when either encoding is recognised below 98 % or an EUC-KR line is taken for
Johab.
"""
import argparse
import collections
import glob
import os
import struct
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BATCH = 500


def catalog_texts(path):
    """The translated texts of one .mo file."""
    with open(path, "rb") as f:
        data = f.read()
    order = "<" if struct.unpack("<I", data[:4])[0] == 0x950412DE else ">"
    count, _, translations = struct.unpack(order + "3I", data[8:20])
    for i in range(count):
        length, offset = struct.unpack(order + "2I", data[translations + 8 * i:translations + 8 * i + 8])
        yield data[offset:offset + length].decode("utf-8", "replace")


def korean_lines(folder):
    lines = set()
    for path in sorted(glob.glob(os.path.join(folder, "*.mo"))):
        for text in catalog_texts(path):
            for line in text.replace("\0", "\n").splitlines():
                if sum(1 for c in line if "\uac00" <= c <= "\ud7a3") >= 10:
                    lines.add(line)
    return sorted(lines)


def build_tool():
    build = os.path.join(ROOT, "build", "bench")
    subprocess.run(["cmake", "-S", ROOT, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                    "-DCMAKE_CXX_COMPILER=g++"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", build, "--target", "quill-tool"], check=True,
                   stdout=subprocess.DEVNULL)
    return os.path.join(build, "bin", "quill-tool")


def detect(tool, paths):
    answers = []
    for i in range(0, len(paths), BATCH):
        run = subprocess.run([tool, "detect"] + paths[i:i + BATCH], check=True,
                             stdout=subprocess.PIPE, text=True)
        answers += run.stdout.split()
    assert len(answers) == len(paths), "quill-tool detect gave %d answers for %d files" % (
        len(answers), len(paths))
    return answers


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--tool", help="quill-tool to run (default: build it in build/bench)")
    parser.add_argument("--catalogs", default="/usr/share/locale/ko/LC_MESSAGES")
    parser.add_argument("--keep", help="write the files here and keep them")
    args = parser.parse_args()
    tool = args.tool or build_tool()

    lines = korean_lines(args.catalogs)
    samples = []  # (kind, expected, line, bytes)
    unwritable = 0
    for line in lines:
        try:
            euc = line.encode("euc_kr")
            johab = line.encode("johab")
        except UnicodeEncodeError:
            unwritable += 1
            continue
        samples.append(("EUC-KR", "EUCKR", line, euc))
        samples.append(("Johab", "JOHAP", line, johab))
        cp949 = line.encode("cp949")
        if cp949 != euc:
            samples.append(("EUC-KR (code page 949)", "EUCKR", line, cp949))

    folder = args.keep or tempfile.mkdtemp(prefix="quill-detect-")
    os.makedirs(folder, exist_ok=True)
    paths = []
    for i, (_, _, _, data) in enumerate(samples):
        path = os.path.join(folder, "%06d.txt" % i)
        with open(path, "wb") as f:
            f.write(data + b"\n")
        paths.append(path)
    answers = detect(tool, paths)
    if not args.keep:
        for path in paths:
            os.remove(path)
        os.rmdir(folder)

    totals = collections.Counter()
    right = collections.Counter()
    wrong = collections.defaultdict(collections.Counter)
    for (kind, expected, _, _), answer in zip(samples, answers):
        totals[kind] += 1
        if answer == expected:
            right[kind] += 1
        else:
            wrong[kind][answer] += 1

    print("Korean catalog lines of 10 or more syllables: %d (%d that neither codec writes left out)"
          % (len(lines), unwritable))
    failed = False
    for kind in ("EUC-KR", "EUC-KR (code page 949)", "Johab"):
        if not totals[kind]:
            continue
        share = 100.0 * right[kind] / totals[kind]
        others = ", ".join("%s %d" % item for item in sorted(wrong[kind].items())) or "none"
        print("%-24s %6d of %6d recognised  %6.2f %%   taken for: %s"
              % (kind, right[kind], totals[kind], share, others))
        if kind == "EUC-KR" or kind == "Johab":
            failed |= share < 98.0
        if kind.startswith("EUC-KR"):
            failed |= wrong[kind]["JOHAP"] > 0
    return 1 if failed else 0


sys.exit(main())
