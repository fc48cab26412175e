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


with open(os.path.join(here, 'help.txt'), encoding='utf-8') as source:
    lines = source.read().rstrip('\n').split('\n')
body = '\\par\n'.join(escape(line) for line in lines)
rtf = ('{\\rtf1\\ansi\\ansicpg949\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset129 GulimChe;}}\n'
       '\\f0\\fs20\\uc1\n' + body + '\\par\n}\n')
with open(os.path.join(here, 'help.rtf'), 'w', encoding='ascii', newline='\n') as target:
    target.write(rtf)
