#!/usr/bin/env python3
"""Writes the help files from help.txt (UTF-8): help.rtf, the built-in Korean help, and
LANGUAGE/English.Help.rtf. Run after editing help.txt; with a folder argument both go there.

help.txt: every line in Korean is followed by its English, the same line with a leading '=';
';' begins a comment; an empty line is a gap in both. A Korean line without its English (or the
other way round) stops the generator, so the two help texts cannot drift apart."""
import os
import sys

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


# "# " begins a heading; "keys<TAB>meaning" is a row of the two-column table (one row a line,
# so nothing wraps at the window's first size); any other line is a paragraph.
KEY_COLUMN = 2600  # twips: room for the longest chord
# Lines are at least 15 points apart: Hangul at 10 points needs more than a Latin line.


def paragraph(line):
    if line.startswith('# '):
        return '\\pard\\sl300\\b ' + escape(line[2:]) + '\\b0\\par'
    if '\t' in line:
        keys, meaning = line.split('\t', 1)
        return ('\\pard\\sl300\\li200\\tx%d ' % KEY_COLUMN) + escape(keys) + '\\tab ' + escape(meaning) + '\\par'
    return '\\pard\\sl300 ' + escape(line) + '\\par'


def split_languages(lines):
    korean, english = [], []
    for number, line in enumerate(lines, 1):
        if line.startswith(';'):
            continue
        if line.startswith('='):
            if len(english) != len(korean) - 1 or not korean[-1]:
                sys.exit('help.txt:%d: English without the Korean line before it' % number)
            english.append(line[1:])
            continue
        if len(english) != len(korean):
            sys.exit('help.txt:%d: the line before has no English' % (number - 1))
        korean.append(line)
        if not line:
            english.append('')
    if len(english) != len(korean):
        sys.exit('help.txt: the last line has no English')
    return korean, english


def rtf(lines, codepage, charset, face):
    body = '\n'.join(paragraph(line) for line in lines)
    return ('{\\rtf1\\ansi\\ansicpg%d\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset%d %s;}}\n'
            '\\f0\\fs20\\uc1\n' % (codepage, charset, face) + body + '\n}\n')


def write(path, text):
    with open(path, 'w', encoding='ascii', newline='\n') as target:
        target.write(text)


with open(os.path.join(here, 'help.txt'), encoding='utf-8') as source:
    korean, english = split_languages(source.read().rstrip('\n').split('\n'))
if len(sys.argv) > 1:
    korean_path = os.path.join(sys.argv[1], 'help.rtf')
    english_path = os.path.join(sys.argv[1], 'English.Help.rtf')
else:
    korean_path = os.path.join(here, 'help.rtf')
    english_path = os.path.join(here, '..', 'LANGUAGE', 'English.Help.rtf')
write(korean_path, rtf(korean, 949, 129, 'GulimChe'))
write(english_path, rtf(english, 1252, 0, 'Courier New'))
