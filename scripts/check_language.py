#!/usr/bin/env python3
"""Checks a language file against the program's own resources.

Reads the string table (resources/strings.inc), the menu and the dialogs (resources/quill.rc with
resources/resource.h) and the language file, and reports, in the language file's own syntax:
  - entries the file lacks (with the Korean text, ready to paste and translate),
  - entries for ids the resources no longer have (to delete),
  - dialogs without the hidden name control 996, and texts that no entry can reach,
  - accelerator letters used twice within a menu or a dialog, in Korean or in the language,
  - texts that look too wide for their control in either language,
  - help files that are not what resources/make_help_rtf.py writes from resources/help.txt.
Exit status 0 when all is well, 1 otherwise.

  check_language.py [LANGUAGE/English.lng]       check (the default file when none is given)
  check_language.py --skeleton                   print a language file with every key, in Korean
"""
import os
import re
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RESOURCES = os.path.join(ROOT, 'resources')
STRING_BASE = 50000
DIALOG_NAME_CONTROL = 996
LAST_TRANSLATED_CONTROL = 900
# Dialog units: a Latin character is about 4 wide at the dialog font, a Hangul syllable about 8;
# check boxes and radio buttons spend about 12 on their box.
LATIN_WIDTH, WIDE_WIDTH, BOX_WIDTH = 4, 8, 12


def read(path):
    with open(path, encoding='utf-8') as f:
        return f.read()


def defines():
    names = {'IDOK': 1, 'IDCANCEL': 2}
    for m in re.finditer(r'^#define\s+(\w+)\s+(-?\d+)', read(os.path.join(RESOURCES, 'resource.h')), re.M):
        names[m.group(1)] = int(m.group(2))
    return names


def resolve(expression, names):
    total = 0
    for term in expression.replace(' ', '').replace('-', '+-').split('+'):
        if not term:
            continue
        sign = -1 if term.startswith('-') else 1
        term = term.lstrip('-')
        total += sign * (int(term) if term.isdigit() else names[term])
    return total


def rc_text(quoted):
    """The text of a resource-script string: "" is a quote, \\t a tab."""
    body = quoted[1:-1].replace('""', '"')
    return body.replace('\\t', '\t').replace('\\n', '\n').replace('\\\\', '\\')


def arguments(text):
    result, current, quoted = [], '', False
    for c in text:
        if c == '"':
            quoted = not quoted
        if c == ',' and not quoted:
            result.append(current.strip())
            current = ''
        else:
            current += c
    result.append(current.strip())
    return result


def string_table():
    table = {}
    for m in re.finditer(r'^QUILL_STRING\((\d+),\s*(".*")\)\s*$', read(os.path.join(RESOURCES, 'strings.inc')), re.M):
        table[int(m.group(1))] = rc_text(m.group(2).replace('\\"', '""'))
    return table


class Menu:
    def __init__(self, name):
        self.name = name
        self.items = []  # (key, text, submenu or None)


def parse_rc(names):
    lines = [line.split('//')[0].rstrip() if not line.lstrip().startswith('//') else ''
             for line in read(os.path.join(RESOURCES, 'quill.rc')).split('\n')]
    menus, dialogs = [], []
    i = 0
    while i < len(lines):
        line = lines[i].strip()
        m = re.match(r'(\w+)\s+MENU\b', line)
        if m:
            i, bar = parse_menu(lines, i + 1, names, 'bar')
            menus.append(bar)
            continue
        m = re.match(r'(\w+)\s+DIALOG(EX)?\b', line)
        if m:
            i, dialog = parse_dialog(lines, i + 1, names, m.group(1))
            dialogs.append(dialog)
            continue
        i += 1
    return menus, dialogs


def parse_menu(lines, i, names, title):
    menu = Menu(title)
    while not lines[i].strip() == 'BEGIN':
        i += 1
    i += 1
    while True:
        line = lines[i].strip()
        if line == 'END':
            return i + 1, menu
        if line.startswith('POPUP'):
            text = rc_text(re.match(r'POPUP\s+(".*")', line).group(1))
            i, sub = parse_menu(lines, i + 1, names, text)
            menu.items.append((len(menu.items) + 1, text, sub))
            continue
        if line.startswith('MENUITEM'):
            if 'SEPARATOR' in line:
                menu.items.append((None, '', None))
            else:
                args = arguments(line[len('MENUITEM'):])
                menu.items.append((resolve(args[1], names), rc_text(args[0]), None))
        i += 1


TEXTLESS = {'EDITTEXT', 'COMBOBOX', 'LISTBOX'}
BOXED = {'AUTOCHECKBOX', 'AUTORADIOBUTTON', 'CHECKBOX', 'RADIOBUTTON', 'AUTO3STATE'}


class Dialog:
    def __init__(self, resource):
        self.resource = resource
        self.caption = None
        self.key = None
        self.controls = []  # (id, text, kind, width)


def parse_dialog(lines, i, names, resource):
    dialog = Dialog(resource)
    while lines[i].strip() != 'BEGIN':
        m = re.match(r'CAPTION\s+(".*")', lines[i].strip())
        if m:
            dialog.caption = rc_text(m.group(1))
        i += 1
    i += 1
    while lines[i].strip() != 'END':
        line = lines[i].strip()
        i += 1
        if not line:
            continue
        kind, _, rest = line.partition(' ')
        args = arguments(rest)
        if kind in TEXTLESS:
            text, args = '', args
        else:
            text, args = rc_text(args[0]), args[1:]
        control = resolve(args[0], names)
        rest = args[1:]
        if kind == 'CONTROL':
            cls = rest[0].strip('"').upper()
            rest = rest[2:]
            if 'BUTTON' in cls and ('CHECKBOX' in line or 'RADIO' in line):
                kind = 'AUTOCHECKBOX'
        width = int(rest[2]) if len(rest) > 2 and rest[2].lstrip('-').isdigit() else 0
        if kind in ('LTEXT', 'CTEXT', 'RTEXT') and len(rest) > 3 and rest[3].isdigit():
            width *= max(1, int(rest[3]) // 10)  # a static text wraps: one line per 10 units
        if control == DIALOG_NAME_CONTROL:
            dialog.key = text
            continue
        dialog.controls.append((control, text, kind, width))
    return i + 1, dialog


def decode_value(value):
    """The value as the program decodes it: quotes at its start and the line's end, escapes."""
    if value.startswith('"'):
        value = value[1:]
    if value.endswith('"'):
        value = value[:-1]
    out, i = [], 0
    simple = {'a': '\a', 'b': '\b', 'n': '\n', 'r': '\r', 't': '\t'}
    while i < len(value):
        c = value[i]
        if c != '\\':
            out.append(c)
            i += 1
            continue
        if i + 1 == len(value):
            break
        c = value[i + 1]
        i += 2
        if c in simple:
            out.append(simple[c])
        elif c == 'x' and re.match(r'[0-9a-fA-F]{2}', value[i:i + 2]):
            out.append(chr(int(value[i:i + 2], 16)))
            i += 2
        elif c in '0123' and re.match(r'[0-7]{2}', value[i:i + 2]):
            out.append(chr(int(c + value[i:i + 2], 8)))
            i += 2
        else:
            out.append(c)
    return ''.join(out)


def encode_value(text):
    text = text.replace('\\', '\\\\').replace('\t', '\\t').replace('\n', '\\n').replace('\r', '\\r')
    return '"%s"' % text if text != text.strip() else text


def read_language(path):
    """Entries in file order, the first of each key kept; and duplicated keys."""
    with open(path, 'rb') as f:
        data = f.read()
    entries, duplicates, problems = {}, [], []
    if any(b > 127 for b in data):
        problems.append('%s: not plain ASCII (the program reads it in the system code page)' % path)
    if data.startswith(b'\xef\xbb\xbf'):
        text = data[3:].decode('utf-8', 'replace')
    else:
        try:
            text = data.decode('utf-8')
        except UnicodeDecodeError:
            text = data.decode('cp949', 'replace')
    for number, line in enumerate(text.splitlines(), 1):
        if not line or line.startswith(';'):
            continue
        key, equals, value = line.partition('=')
        if not equals or not key:
            problems.append('%s:%d: not an entry: %s' % (path, number, line))
            continue
        if key in entries:
            duplicates.append(key)
            continue
        entries[key] = decode_value(value)
    return entries, duplicates, problems


def mnemonic(text):
    m = re.search(r'&([^&])', text.replace('&&', ''))
    return m.group(1).upper() if m else None


def collisions(where, texts):
    seen, found = {}, []
    for text in texts:
        letter = mnemonic(text)
        if letter is None:
            continue
        if letter in seen:
            found.append('%s: "&%s" in both %r and %r' % (where, letter, seen[letter], text))
        else:
            seen[letter] = text
    return found


def text_width(text):
    text = text.split('\t')[0].replace('&&', '\0').replace('&', '').replace('\0', '&')
    return sum(WIDE_WIDTH if ord(c) > 0x2e7f else LATIN_WIDTH for c in text)


FORMAT = re.compile(r'%[-+ #0]*[0-9*]*(?:\.[0-9*]+)?(?:l|ll|h|I64)?[diouxXcsSpfgeE%]')


def format_mismatch(where, korean, translated):
    """Printf directives must be the same and in the same order, or the arguments go astray."""
    a, b = FORMAT.findall(korean), FORMAT.findall(translated)
    return [] if a == b else ['%s: format %s in the resource, %s in the language file' % (where, a, b)]


def too_wide(where, kind, text, width):
    if not text or width <= 0 or kind in ('GROUPBOX', 'CONTROL', 'EDITTEXT'):
        return []
    need = text_width(text) + (BOX_WIDTH if kind in BOXED else 0)
    if kind in ('PUSHBUTTON', 'DEFPUSHBUTTON'):
        need += 4
    if need > width:
        return ['%s: %r needs about %d dialog units, its control is %d wide' % (where, text, need, width)]
    return []


def walk_menu(menu, visit):
    visit(menu)
    for _, _, sub in menu.items:
        if sub:
            walk_menu(sub, visit)


def expected_entries(names):
    """Every key the program looks up, with its Korean text and where it is: (key, text, place)."""
    menus, dialogs = parse_rc(names)
    wanted = []

    def visit(menu):
        for key, text, _ in menu.items:
            if key is not None:
                wanted.append((str(key), text, 'menu ' + menu.name))

    for menu in menus:
        walk_menu(menu, visit)
    for id_, text in sorted(string_table().items()):
        wanted.append((str(STRING_BASE + id_), text, 'string %d' % id_))
    return menus, dialogs, wanted


def check(path):
    names = defines()
    menus, dialogs, wanted = expected_entries(names)
    entries, duplicates, problems = read_language(path)
    missing, expected_keys, notes = [], set(), []

    def want(key, text, place):
        if key in expected_keys:
            return
        expected_keys.add(key)
        if key not in entries or entries[key] == '':
            missing.append('; %s\n%s=%s' % (place, key, encode_value(text)))

    for key, text, place in wanted:
        want(key, text, place)
        if place.startswith('string') and key in entries:
            problems.extend(format_mismatch(place, text, entries[key]))

    # Menus: the language's accelerators within each menu, and the resource's.
    def menu_collisions(menu):
        live = [item for item in menu.items if item[0] is not None]
        problems.extend(collisions('menu %s (resource)' % menu.name, [t for _, t, _ in live]))
        problems.extend(collisions('menu %s (%s)' % (menu.name, os.path.basename(path)),
                                   [entries.get(str(k), t) for k, t, _ in live]))

    for menu in menus:
        walk_menu(menu, menu_collisions)

    # Dialogs: base numbers that neither meet each other nor the menu's and the table's keys.
    ranges, next_base = [], 1000
    for dialog in dialogs:
        base_text = entries.get(dialog.key, '') if dialog.key else ''
        if base_text.isdigit():
            ranges.append((int(base_text), dialog.key))
            next_base = max(next_base, (int(base_text) // 1000 + 1) * 1000)
    ranges.sort()
    for (a, name_a), (b, name_b) in zip(ranges, ranges[1:]):
        if b < a + LAST_TRANSLATED_CONTROL:
            problems.append('%s=%d and %s=%d overlap' % (name_a, a, name_b, b))
    for base, name in ranges:
        if base < 1000 or base + LAST_TRANSLATED_CONTROL > STRING_BASE:
            problems.append('%s=%d meets the menu or string-table keys' % (name, base))

    for dialog in dialogs:
        where = '%s (%s)' % (dialog.resource, dialog.key or 'no name')
        if not dialog.key:
            problems.append('%s: no control %d naming its key' % (dialog.resource, DIALOG_NAME_CONTROL))
            continue
        expected_keys.add(dialog.key)
        base_text = entries.get(dialog.key, '')
        if not base_text.isdigit() or int(base_text) == 0:
            missing.append('; dialog %s\n%s=%d' % (dialog.resource, dialog.key, next_base))
            base, next_base = next_base, next_base + 1000
        else:
            base = int(base_text)
        if dialog.caption:
            want(str(base), dialog.caption, 'dialog %s: caption' % dialog.key)
        translated = []
        for control, text, kind, width in dialog.controls:
            if not text:
                continue
            if control < 0 or control >= LAST_TRANSLATED_CONTROL:
                problems.append('%s: %r has id %d, which no entry reaches' % (where, text, control))
                continue
            want(str(base + control), text, 'dialog %s: control %d' % (dialog.key, control))
            english = entries.get(str(base + control), text)
            translated.append(english)
            notes.extend(too_wide(where, kind, text, width))
            problems.extend(too_wide(where + ' in ' + os.path.basename(path), kind, english, width))
        problems.extend(collisions(where + ' (resource)', [t for _, t, _, _ in dialog.controls]))
        problems.extend(collisions('%s (%s)' % (where, os.path.basename(path)), translated))

    extra = [key for key in entries if key not in expected_keys]
    problems.extend('duplicate key %s (the first one counts)' % key for key in duplicates)
    problems.extend(check_help())

    if missing:
        print('; ---- missing from %s: translate and add ----' % path)
        print('\n'.join(missing))
    if extra:
        print('; ---- in %s for ids the program no longer has: delete ----' % path)
        print('\n'.join('%s=%s' % (key, encode_value(entries[key])) for key in extra))
    for note in notes:
        print('; NOTE (resource layout): ' + note)
    for problem in problems:
        print('; PROBLEM: ' + problem)
    if not (missing or extra or problems):
        print('%s: %d entries, complete' % (path, len(entries)))
        return 0
    return 1


def check_help():
    """The help files must be what the generator writes from help.txt today."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, os.path.join(RESOURCES, 'make_help_rtf.py'), folder], check=True)
        problems = []
        for produced in sorted(os.listdir(folder)):
            shipped = os.path.join(RESOURCES if produced == 'help.rtf' else os.path.join(ROOT, 'LANGUAGE'), produced)
            with open(os.path.join(folder, produced), 'rb') as a:
                fresh = a.read()
            try:
                with open(shipped, 'rb') as b:
                    current = b.read()
            except OSError:
                current = None
            if current != fresh:
                problems.append('%s is not what make_help_rtf.py writes from help.txt: run it' % shipped)
        return problems


def skeleton():
    names = defines()
    menus, dialogs, wanted = expected_entries(names)
    print('; Quill language file: every key, with the Korean text')
    printed = set()
    for key, text, place in wanted:
        if key not in printed:
            printed.add(key)
            print('%s=%s' % (key, encode_value(text)))
    base = 1000
    for dialog in dialogs:
        if not dialog.key:
            continue
        print('%s=%d' % (dialog.key, base))
        if dialog.caption:
            print('%d=%s' % (base, encode_value(dialog.caption)))
        for control, text, _, _ in dialog.controls:
            if text and 0 <= control < LAST_TRANSLATED_CONTROL:
                print('%d=%s' % (base + control, encode_value(text)))
        base += 1000


if __name__ == '__main__':
    if sys.argv[1:] == ['--skeleton']:
        skeleton()
        sys.exit(0)
    sys.exit(check(sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, 'LANGUAGE', 'English.lng')))
