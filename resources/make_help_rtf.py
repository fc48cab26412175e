#!/usr/bin/env python3
"""Writes help.rtf, the built-in help text, from help.txt (UTF-8): run after editing help.txt."""
import os

here = os.path.dirname(os.path.abspath(__file__))


def escape(line):
    out = []
    for ch in line:
        code = ord(ch)
        if ch in '\\{}':
            out.append('\\' + ch)
        elif code < 128:
            out.append(ch)
        else:
            out.append('\\u%d?' % (code if code < 32768 else code - 65536))
    return ''.join(out)


# help.txt: "# " begins a heading; "keys<TAB>meaning" is a row of the two-column table (one
# row a line, so nothing wraps at the window's first size); any other line is a paragraph.
KEY_COLUMN = 2600  # twips: room for the longest chord
# Lines are at least 15 points apart: Hangul at 10 points needs more than a Latin line.


def paragraph(line):
    if line.startswith('# '):
        return '\\pard\\sl300\\b ' + escape(line[2:]) + '\\b0\\par'
    if '\t' in line:
        keys, meaning = line.split('\t', 1)
        return ('\\pard\\sl300\\li200\\tx%d ' % KEY_COLUMN) + escape(keys) + '\\tab ' + escape(meaning) + '\\par'
    return '\\pard\\sl300 ' + escape(line) + '\\par'


with open(os.path.join(here, 'help.txt'), encoding='utf-8') as source:
    lines = source.read().rstrip('\n').split('\n')
body = '\n'.join(paragraph(line) for line in lines)
rtf = ('{\\rtf1\\ansi\\ansicpg949\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset129 GulimChe;}}\n'
       '\\f0\\fs20\\uc1\n' + body + '\n}\n')
with open(os.path.join(here, 'help.rtf'), 'w', encoding='ascii', newline='\n') as target:
    target.write(rtf)
