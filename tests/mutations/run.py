#!/usr/bin/env python3
"""Would the tests notice? Applies the mutations of the lists beside this file, runs the tests that
each names, and prints those that no test noticed.

A list holds mutations with an empty line between two, lines that begin with # are comments:

    src/types/array_field.cpp
    ? system_tests ArrayField*

    @ void remove_elements(
    - index >= count
    + index > count

    - index == UINT32_MAX
    + false
    ? system_tests HighestIndex*

A line without a mark is a file, that of all mutations up to the next such line; the tests beside it
are those of the mutations that name none. `-` is the text that is there and `+` what stands in its
place: a whole expression, or whole statements with their semicolons (`+` alone: nothing). The text
must stand in the file once; `@` is a text before it, from which on it is looked for. `?` names a
test program of the dev build and the tests in it of which one must fail; settings of its
environment (NAME=value) may stand before it. Rules of headers that a test has compiled into itself are tried
with the test's source in place of a program (with + between several), which is then compiled with
the mutations. One line more says what is out of the ordinary:

    = why nobody can tell the two apart: nothing may fail then
    ! alone: the text is a declaration or is evaluated by the compiler

All mutations are built into one pair of libraries, behind a switch that the environment sets, and
the programs of the dev build run with these libraries; each mutation then costs its tests alone.
Those marked `!` are built one by one, which is slow. All are built, whichever are tried. The
sources themselves are never changed: the work is done in a copy. The status is 1 when a mutation
survives, or was never reached by its tests.

    run.py [--build FOLDER] [-j JOBS] [LIST or text in a row ...]
    run.py --find        says only whether all texts stand where their rows have them
"""
import argparse
import concurrent.futures
import os
import pathlib
import re
import signal
import subprocess
import sys
import time
import zlib

HERE = pathlib.Path(__file__).resolve().parent
PROJECT = HERE.parent.parent
SWITCH = """// Which mutation is in force: the number in HARBOR_MUTATION, told to HARBOR_MUTATION_REACHED.
#pragma once
#ifdef __cplusplus
#include <cstdlib>
#include <type_traits>
#include <fcntl.h>
#include <unistd.h>
inline bool harbor_mutation_chosen(int number) {
  static const int chosen = std::getenv("HARBOR_MUTATION") ? std::atoi(std::getenv("HARBOR_MUTATION")) : 0;
  if (chosen != number) return false;
  static const bool told = [] {
    const char *path = std::getenv("HARBOR_MUTATION_REACHED");
    const int file = path == nullptr ? -1 : ::open(path, O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    return file >= 0 && ::close(file) == 0;
  }();
  static_cast<void>(told);
  return true;
}
constexpr bool harbor_mutated(int number) {
  return std::is_constant_evaluated() ? false : harbor_mutation_chosen(number);
}
#endif
"""
MARKS = '@-+?=!'
# Tests that run so many times as long as without a mutation, and a minute, do not end.
PATIENCE = 3


class Row:
    def __init__(self, place, group, lines):
        """The group is the row that named the file, None when this one has to."""
        self.place = place
        self.file, self.after, self.old, self.new = group and group.file, None, None, None
        self.tests, self.equivalent, self.alone = [], None, False
        if lines[0][0] not in MARKS:
            self.file, lines = lines[0], lines[1:]
            group = None
        for line in lines:
            mark, text = line[0], line[1:].strip()
            if mark == '@':
                self.after = text
            elif mark == '-':
                self.old = text
            elif mark == '+':
                self.new = text
            elif mark == '?':
                program, names = re.match(r'((?:\w+=\w+ )*\S+) *(.*)', text).groups()
                self.tests.append((program, names or '*'))
            elif mark == '=':
                self.equivalent = text
            elif mark == '!':
                self.alone = True
            else:
                raise SystemExit(f'{place}: a line begins with "{mark}"; expected @ - + ? = or !')
        if group and not self.tests:
            self.tests = group.tests
        self.opens_group = not group
        if not self.file:
            raise SystemExit(f'{place}: no line above names a file')
        if (self.old is None) != (self.new is None) or (not self.old and not self.opens_group):
            raise SystemExit(f'{place}: a mutation has a line with - and one with +')
        if not self.tests:
            raise SystemExit(f'{place}: no line with ? here or beside the file')
        # It stays when others come and go, so that only what those touch is built again.
        self.number = zlib.crc32(f'{self.file}{self.after}{self.old}{self.new}'.encode()) >> 1

    def __str__(self):
        return f'{self.place}  {self.file}\n    - {self.old}\n    + {self.new}'

    def find(self, text):
        start = 0
        if self.after is not None:
            start = text.find(self.after)
            if start < 0:
                raise SystemExit(f'{self.place}: {self.file} has no "{self.after}"')
        at = text.find(self.old, start)
        if at < 0 or (self.after is None and text.find(self.old, at + 1) >= 0):
            found = 'not' if at < 0 else 'more than once'
            raise SystemExit(f'{self.place}: "{self.old}" stands {found} in {self.file}')
        return at

    def switched(self):
        """Both texts, behind the switch."""
        chosen = f'harbor_mutated({self.number})'
        if self.old.endswith((';', '}')):
            return f'if ({chosen}) {{ {self.new} }} else {{ {self.old} }}'
        return f'({chosen} ? ({self.new}) : ({self.old}))'


def read_lists():
    rows = []
    for path in sorted(HERE.glob('*.txt')):
        block, begins, group = [], 0, None
        for at, line in enumerate(path.read_text().splitlines() + [''], 1):
            if line.startswith('#'):
                continue
            if line.strip():
                begins = begins if block else at
                block.append(line)
            elif block:
                row = Row(f'{path.name}:{begins}', group, block)
                group = row if row.opens_group else group
                if row.old:
                    rows.append(row)
                block = []
    known = {}
    for row in rows:
        if row.number in known:
            raise SystemExit(f'{row.place}: stands at {known[row.number].place} already')
        known[row.number] = row
    return rows


class Mutants:
    """The copy of the sources, and the libraries built of it."""

    def __init__(self, folder, jobs):
        self.source, self.build, self.jobs = folder / 'source', folder / 'build', jobs
        self.texts = {}

    def copy(self):
        listed = subprocess.run(
            ['git', 'ls-files', '-co', '--exclude-standard', 'CMakeLists.txt', 'cmake', 'include',
             'src', 'runtime', 'abi', 'tools/emit', 'tests/support',
             'tests/harness/exports.cpp', 'libs/*/include'],
            cwd=PROJECT, check=True, capture_output=True, text=True).stdout.splitlines()
        for name in listed:
            if (PROJECT / name).is_file():
                self.texts[name] = (PROJECT / name).read_bytes()

    def write(self, changed):
        for path in self.source.rglob('*'):
            if path.is_file() and str(path.relative_to(self.source)) not in self.texts:
                path.unlink()
        for name, text in self.texts.items():
            text = changed.get(name, text)
            path = self.source / name
            if not path.is_file() or path.read_bytes() != text:
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(text)
                path.chmod((PROJECT / name).stat().st_mode)
        switch = self.source.parent / 'mutation.hpp'
        if not switch.is_file() or switch.read_text() != SWITCH:
            switch.write_text(SWITCH)

    def switched(self, rows):
        changed, edits = {}, {}
        for row in rows:
            text = self.text_of(row)
            edits.setdefault(row.file, []).append((row.find(text), row))
        for name, found in edits.items():
            text, end = self.texts[name].decode(), None
            for at, row in sorted(found, key=lambda edit: edit[0], reverse=True):
                if end is not None and at + len(row.old) > end:
                    raise SystemExit(f'{row.place}: overlaps another mutation; mark one alone (!)')
                text = text[:at] + row.switched() + text[at + len(row.old):]
                end = at
            changed[name] = text.encode()
        return changed

    def text_of(self, row):
        if row.file not in self.texts:
            raise SystemExit(f'{row.place}: there is no file {row.file}')
        return self.texts[row.file].decode()

    def single(self, row):
        text = self.text_of(row)
        at = row.find(text)
        return {row.file: (text[:at] + row.new + text[at + len(row.old):]).encode()}

    def make(self):
        """Builds the libraries; the compiler's complaints when that fails."""
        flags = f'-O0 -g0 -w -include {self.source.parent / "mutation.hpp"}'
        if not (self.build / 'build.ninja').is_file():
            subprocess.run(['cmake', '-G', 'Ninja', '-S', self.source, '-B', self.build,
                            '-DCMAKE_BUILD_TYPE=Debug', f'-DCMAKE_CXX_FLAGS_DEBUG={flags}',
                            '-DCMAKE_C_FLAGS_DEBUG=-O0 -g0 -w', '-DHARBOR_TESTS=OFF',
                            '-DHARBOR_TOOLS=OFF'], check=True, stdout=subprocess.DEVNULL)
        made = subprocess.run(['ninja', '-C', self.build, f'-j{self.jobs}', 'ospf_harbor_oper'],
                              capture_output=True, text=True)
        return '' if made.returncode == 0 else made.stdout + made.stderr


class Programs:
    """The test programs of the dev build, run with the mutants' libraries, and those that are made
    of a test's source and the mutants' headers."""

    def __init__(self, dev, mutants):
        self.mutants, self.seconds = mutants, {}
        self.places = {path.name: path for folder in ('tests', 'runtime')
                       for path in (dev / folder).glob('*_tests') if os.access(path, os.X_OK)}
        self.libraries = f'{mutants.build}/src:{mutants.build}/runtime'
        self.reached = mutants.source.parent / 'reached'
        self.reached.mkdir(exist_ok=True)

    def compile(self, sources):
        """A program of test sources whose rules are in headers."""
        made = self.mutants.build / pathlib.Path(sources.partition('+')[0]).stem
        source = self.mutants.source
        places = [source / name if (source / name).is_file() else PROJECT / name
                  for name in sources.split('+')]
        subprocess.run(['c++', '-std=c++20', '-O0', '-w', '-include', source.parent / 'mutation.hpp',
                        f'-I{source}/src', f'-I{source}/include', f'-I{source}/runtime/include',
                        f'-I{source}/runtime/src',
                        f'-I{PROJECT}/tests', *places, '-o', made, '-lgtest', '-lgtest_main'],
                       check=True)
        self.places[sources] = made

    def fail(self, row, number, tests=None):
        """The first failure under the mutation of that number, None when nothing fails."""
        mark = self.reached / str(row.number)
        mark.unlink(missing_ok=True)
        environment = {**os.environ, 'LD_LIBRARY_PATH': self.libraries,
                       'HARBOR_MUTATION': str(number), 'HARBOR_MUTATION_REACHED': str(mark)}
        for command, names in tests or row.tests:
            *settings, program = command.split(' ')
            if program not in self.places:
                raise SystemExit(f'{row.place}: there is no test program {program} in the dev build')
            # A session of its own, so that it ends with the children of its tests.
            run = subprocess.Popen([self.places[program], f'--gtest_filter={names}',
                                    '--gtest_fail_fast', '--gtest_brief=1'],
                                   env=environment | dict(one.split('=') for one in settings),
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                   errors='replace', cwd=self.reached, start_new_session=True)
            begun = time.monotonic()
            try:
                output, _ = run.communicate(
                    timeout=60 + PATIENCE * self.seconds.get((command, names), 60))
            except subprocess.TimeoutExpired:
                os.killpg(run.pid, signal.SIGKILL)
                run.communicate()
                return 'no end'
            if number == 0:
                self.seconds[(command, names)] = time.monotonic() - begun
            if run.returncode < 0:
                return f'signal {-run.returncode}'
            failed = re.search(r'\[  FAILED  \] (\S+?),? ', output + ' ')
            if run.returncode > 0:
                return failed.group(1) if failed else f'status {run.returncode}'
            if re.search(r'\[  PASSED  \] 0 tests', output):
                raise SystemExit(f'{row.place}: {program} has no test {names}')
        return None

    def was_reached(self, row):
        return (self.reached / str(row.number)).is_file()


def complaints(output, rows, mutants):
    """The rows on whose lines the compiler found errors."""
    found = {}
    for name, line in re.findall(r'^(\S+?):(\d+):\d+: error', output, re.M):
        for row in rows:
            text = mutants.texts[row.file].decode()
            if name.endswith(row.file) and text.count('\n', 0, row.find(text)) + 1 == int(line):
                found[row.place] = row
    return list(found.values())


def judge(row, failure, reached):
    if row.equivalent is not None:
        return ('not equivalent', f'noticed by {failure}') if failure else ('equivalent', '')
    if failure:
        return 'noticed', failure
    return ('survived', '') if reached else ('never reached', '')


def find_all(rows, mutants):
    """Ends with the first row whose text is not where it should be, or overlaps another's."""
    for row in rows:
        if (PROJECT / row.file).is_file():
            mutants.texts[row.file] = (PROJECT / row.file).read_bytes()
    mutants.switched([row for row in rows if not row.alone])
    for row in rows:
        if row.alone:
            mutants.single(row)
    print(f'{len(rows)} mutations stand where their rows have them')


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument('--build', default=PROJECT / 'build', type=pathlib.Path)
    options.add_argument('-j', '--jobs', default=os.cpu_count(), type=int)
    options.add_argument('-v', '--verbose', action='store_true', help='name each failing test')
    options.add_argument('--find', action='store_true', help='only find the texts of all rows')
    options.add_argument('wanted', nargs='*')
    options = options.parse_args()
    every = read_lists()
    rows = [row for row in every
            if not options.wanted or any(text in str(row) for text in options.wanted)]
    mutants = Mutants(options.build.resolve() / 'mutate', options.jobs)
    if options.find:
        return find_all(every, mutants)
    mutants.copy()
    switched = mutants.switched([row for row in every if not row.alone])
    mutants.write(switched)
    output = mutants.make()
    if output:
        blamed = complaints(output, every, mutants)
        for row in blamed:
            print(f'does not compile beside the others (mark it alone: !): {row}')
        raise SystemExit(1 if blamed else output[-3000:])
    programs = Programs(options.build.resolve() / 'dev', mutants)
    verdicts = []

    def tell(row, verdict):
        verdicts.append((row, *verdict))
        if options.verbose or verdict[0] not in ('noticed', 'equivalent'):
            print(f'{verdict[0]} {verdict[1]}: {row}', flush=True)

    def try_one(row):
        return row, judge(row, programs.fail(row, row.number), programs.was_reached(row))

    first = {}
    for row in rows:
        for tests in row.tests:
            first.setdefault(tests, row)
    for sources in sorted({program for program, _ in first if program.endswith('.cpp')}):
        programs.compile(sources)
    for tests, row in first.items():
        failure = programs.fail(row, 0, [tests])
        if failure:
            raise SystemExit(f'{row.place}: without any mutation, {failure}')
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for row, verdict in pool.map(try_one, [row for row in rows if not row.alone]):
            tell(row, verdict)
    for row in rows:
        if row.alone:
            mutants.write({**switched, **mutants.single(row)})
            broken = mutants.make()
            tell(row, ('noticed', 'the compiler') if broken
                 else judge(row, programs.fail(row, 0), True))

    counts = {}
    for _, verdict, _ in verdicts:
        counts[verdict] = counts.get(verdict, 0) + 1
    print(f'{len(rows)} mutations: ' + ', '.join(f'{n} {v}' for v, n in sorted(counts.items())))
    sys.exit(any(verdict not in ('noticed', 'equivalent') for verdict in counts))


if __name__ == '__main__':
    main()
