#!/usr/bin/python3
"""What a change breaks against the last release: compare.py compares, compare.py --release writes.

abi/released/ holds what the last release promised: the version, each function, type and macro of the
public C headers as they are written there, and the places of all fields. Compared with the headers and
abi/layout.txt as they are now:

- what is gone, or is declared otherwise, breaks programs that were built against the release: it wants a
  new major version;
- what came is an addition: it wants a new minor version.

The status is 1 when the version in CMakeLists.txt does not allow for what is found.
"""
import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
RELEASED = SOURCE / 'abi/released'
HEADERS = ['include', 'runtime/include', 'libs/ospf-harbor-check/include']


def statements(text):
    """The declarations of a header, each on one line: without comments and what guards it."""
    text = re.sub(r'/\*.*?\*/', ' ', text, flags=re.S)
    text = text.replace('\\\n', ' ')
    for line in re.findall(r'^\s*#\s*define\s+(\w+(?:\([^)]*\))?)[ \t]*(.*)$', text, re.M):
        if not line[0].endswith('_H'):
            yield '#define ' + ' '.join(line).strip()
    text = re.sub(r'^\s*#.*$', '', text, flags=re.M)
    text = re.sub(r'\bKELP_EXTERN_C_(BEGIN|END)\b', '', text)
    depth, begin = 0, 0
    for place, sign in enumerate(text):
        depth += (sign == '{') - (sign == '}')
        if depth == 0 and (sign == ';' or (sign == '}' and is_function(text[begin:place]))):
            statement = ' '.join(text[begin:place].split())
            if statement:
                yield statement + (' }' if sign == '}' else '')
            begin = place + 1


def without_names(statement):
    """A function without the names of its arguments, which no program depends on."""
    return re.sub(r'([\w*]\s*[ *])\w+(\[\w*\])?(?=\s*[,)])', lambda each: each.group(1).rstrip() +
                  (each.group(2) or ''), statement)


def is_function(text):
    """Whether what opened a brace is the body of a function, behind which no semicolon stands."""
    return re.match(r'\s*(static inline|KELP_API)?[^{;]*\)\s*\{', text) is not None


def name_of(statement):
    """What a statement declares: its kind and name."""
    patterns = [(r'#define (\w+)', 'macro'), (r'typedef .*\(\*(\w+)\)\(', 'type'),
                (r'typedef .*\}\s*(\w+)$', 'type'), (r'typedef .*?(\w+)(\[\w+\])?$', 'type'),
                (r'(?:enum|struct|union) (\w+)(?: \{.*)?$', 'type'),
                (r'(?:extern|KELP_API) [^(]*?(\w+)(?:\[\w*\])?$', 'variable'),
                (r'[^({]*?(\w+)\(', 'function')]
    for pattern, kind in patterns:
        found = re.match(pattern, statement)
        if found:
            return f'{kind} {found.group(1)}'
    if statement.startswith('enum {'):
        return 'type of ' + re.search(r'\{ (\w+)', statement).group(1)
    sys.exit(f'found "{statement[:80]}", expected a declaration')


def interface_now():
    declared = {}
    for folder in HEADERS:
        for path in sorted((SOURCE / folder).rglob('*.h')):
            for statement in statements(path.read_text()):
                # A type may be named before it is defined.
                name = name_of(statement)
                if name.startswith('function'):
                    statement = without_names(statement)
                if name not in declared or len(statement) > len(declared[name]):
                    declared[name] = statement
    return declared


def layout_of(text):
    """abi/layout.txt as words: 'type T' and 'field T.f' with what is said of each."""
    places, owner = {}, None
    for line in text.split('\n'):
        found = re.match(r'( *)(\w+): (.*)', line)
        if not found:
            continue
        if not found.group(1):
            owner = found.group(2)
            places[f'layout of {owner}'] = found.group(3)
        else:
            places[f'layout of {owner}.{found.group(2)}'] = found.group(3)
    return places


def grown(before, now):
    """Whether a type only got variants: objects are made by the library, which knows their size."""
    old, new = (re.search(r'used (.*)$', each).group(1).split(' ') for each in (before, now))
    return new[:len(old)] == old


def members_of(statement, separator):
    body = re.search(r'\{(.*)\}', statement)
    return [each.strip() for each in body.group(1).split(separator) if each.strip()] if body else []


def only_grown(name, before, now):
    """Whether programs that know the one can live with the other: an enumeration with more members, a
    structure that tells its size with more at its end, a type with more variants."""
    if name.endswith('_HIGHEST_VARIANT'):
        return True  # the layout says whether what was there stayed
    if name.startswith('layout of'):
        return '.' not in name and grown(before, now)
    separator = ',' if 'enum' in before else ';'
    old, new = (members_of(each, separator) for each in (before, now))
    if separator == ';' and not (old and 'struct_size' in old[0]):
        return False
    return bool(old) and new[:len(old)] == old


def compare(before, now):
    """What breaks, and what was added: lists of sentences."""
    breaks = [f'{name} is gone' for name in before.keys() - now.keys()]
    added = [f'{name} is new' for name in now.keys() - before.keys()]
    for name in before.keys() & now.keys():
        old, new = before[name], now[name]
        if old == new:
            continue
        change = f'{name}:\n    was {old}\n    now {new}'
        (added if only_grown(name, old, new) else breaks).append(change)
    return sorted(breaks), sorted(added)


def version_now():
    text = (SOURCE / 'CMakeLists.txt').read_text()
    return re.search(r'^project\(.* VERSION ([0-9.]+) ', text, re.M).group(1)


def read_interface(path):
    return {name_of(line): line for line in path.read_text().splitlines()}


def release():
    RELEASED.mkdir(exist_ok=True)
    (RELEASED / 'version.txt').write_text(version_now() + '\n')
    (RELEASED / 'interface.txt').write_text(
        ''.join(text + '\n' for _, text in sorted(interface_now().items())))
    (RELEASED / 'layout.txt').write_text((SOURCE / 'abi/layout.txt').read_text())
    return 0


def check():
    before = {**read_interface(RELEASED / 'interface.txt'),
              **layout_of((RELEASED / 'layout.txt').read_text())}
    now = {**interface_now(), **layout_of((SOURCE / 'abi/layout.txt').read_text())}
    breaks, added = compare(before, now)
    released = (RELEASED / 'version.txt').read_text().strip()
    old, new = ([int(part) for part in each.split('.')] for each in (released, version_now()))
    for title, found in (('breaks programs built against', breaks), ('comes on top of', added)):
        if found:
            print(f'What {title} {released}:')
            print(''.join(f'  {each}\n' for each in found), end='')
    print(f'{len(before)} declarations and places of {released}: {len(breaks)} broken, '
          f'{len(added)} added')
    if breaks and new[0] == old[0]:
        print(f'found version {version_now()}, expected {old[0] + 1}.0.0')
        return 1
    if added and new[:2] == old[:2]:
        print(f'found version {version_now()}, expected {old[0]}.{old[1] + 1}.0 or a later one')
        return 1
    return 0


if __name__ == '__main__':
    if sys.argv[1:] not in ([], ['--release']):
        sys.exit('usage: compare.py [--release]')
    sys.exit(release() if sys.argv[1:] else check())
