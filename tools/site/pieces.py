"""Pieces of sources in pages, and pages as plain words."""
import html
import os
import re
import subprocess
import sys

LANGUAGES = {'.c': 'c', '.cpp': 'cpp', '.py': 'python', '.sh': 'sh'}


def function_of(text, name):
    """The function of that name with the comment before it, as the source has it."""
    lines = text.split('\n')
    starts = [number for number, line in enumerate(lines)
              if re.match(rf'[^\s/#].*\b{re.escape(name)}\(', line) and not line.endswith(';')]
    if not starts:
        return None
    first = starts[0]
    last = next(number for number in range(first, len(lines))
                if lines[number] == '}' or lines[number].startswith('} '))
    while first > 0 and re.match(r'/\*| \*|//|template', lines[first - 1]):
        first -= 1
    return '\n'.join(lines[first:last + 1])


def included(words, path):
    """What <!-- include: FILE [FUNCTION] --> of the page at that path stands for."""
    file = path.parent / words[0]
    if not file.is_file():
        sys.exit(f'{path}: found no file {words[0]}, which it includes')
    piece = file.read_text()
    if len(words) > 1:
        piece = function_of(piece, words[1])
        if piece is None:
            sys.exit(f'{path}: found no function {words[1]} in {words[0]}, which it includes')
    return f'```{LANGUAGES[file.suffix]}\n{piece.strip()}\n```'


def fenced(text):
    """The blocks of code in a page: (language, lines)."""
    for match in re.finditer(r'^```(\w*)\n(.*?)^```$', text, re.M | re.S):
        yield match.group(1), match.group(2).rstrip('\n').split('\n')


def commands_of(lines):
    """The commands of a block that is nothing but such, each behind a dollar; none for other blocks."""
    commands = [line[2:] for line in lines if line.startswith('$ ')]
    return commands if len(commands) == len(lines) else []


class Runner:
    """Runs what pages show, in a folder that has the examples; the commands of one page after each
    other, so that what one leaves is there for the next."""

    def __init__(self, folder, examples, programs, environment):
        self.folder = folder
        (folder / 'examples').symlink_to(examples)
        path = ':'.join([*map(str, programs), os.environ['PATH']])
        self.environment = {**os.environ, **environment, 'PATH': path, 'NO_COLOR': '1',
                            'COLUMNS': '100'}

    def said(self, command, page):
        done = subprocess.run(['sh', '-c', command], cwd=self.folder, env=self.environment,
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            sys.exit(f'{page}: {command}: found status {done.returncode}, expected 0\n{done.stderr}')
        return done.stdout.rstrip('\n').split('\n') if done.stdout else []


def runner(folder, source, build):
    """A runner for what a build folder holds: the tool, and Python's package."""
    programs = [build / 'tools/ospf-harbor', source / 'examples']
    libraries = [build / each for each in ('runtime', 'src', 'libs/ospf-harbor-check')]
    return Runner(folder, source / 'examples', programs, {
        'PYTHONPATH': str(build / 'python'), 'PYTHONDONTWRITEBYTECODE': '1',
        'OSPF_HARBOR_LIBRARIES': ':'.join(map(str, libraries))})


def plain(text):
    return html.unescape(re.sub(r'<[^>]+>', '', text))


def escaped(text):
    return html.escape(text, quote=False)


def prose(text):
    """A sentence of a doc block, with names of code in the type of code."""
    return re.sub(r'(?<![\w/.])([A-Za-z]\w*_\w+)\b(?!\.\w)|`([^`]+)`',
                  lambda found: f'<code>{found.group(1) or found.group(2)}</code>', escaped(text))
