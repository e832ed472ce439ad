#!/usr/bin/env python3
"""Prints which lines and branches of src/ and runtime/src/ the suite has run, by folder.

Reads what gcov has counted in the libraries of a build with --coverage. A rule is one line however
many types it is made for: a line or a branch has run when it did in one of its instances. Branches
that only a thrown exception takes are left out. Where an expression is repeated over the fields of
a type, instances differ in the number of their branches: all steps then share the two ways out of
one. What a process counted that was killed is lost.

    report.py [-v] BUILD      -v names the lines and branches that never ran
"""
import argparse
import collections
import json
import pathlib
import subprocess

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent


def counts_of(notes):
    """What gcov has to say about one object, as parsed JSON."""
    told = subprocess.run(['gcov', '--json-format', '--branch-probabilities', '--stdout', notes],
                          cwd=notes.parent, capture_output=True, text=True, check=True)
    return [json.loads(line) for line in told.stdout.splitlines() if line.startswith('{')]


def project_name(folder, name):
    path = pathlib.Path(name if name.startswith('/') else f'{folder}/{name}')
    try:
        name = str(path.resolve().relative_to(PROJECT))
    except ValueError:
        return None
    return name if name.startswith(('src/', 'runtime/src/')) else None


def gather(build):
    lines = collections.defaultdict(int)
    instances = collections.defaultdict(list)
    libraries = [build.resolve() / name for name in ('src', 'runtime')]
    for notes in sorted(path for folder in libraries for path in folder.rglob('*.gcno')):
        if not notes.with_suffix('.gcda').is_file():
            continue
        for told in counts_of(notes):
            for file in told['files']:
                name = project_name(told['current_working_directory'], file['file'])
                for line in file['lines'] if name else []:
                    place = (name, line['line_number'])
                    lines[place] += line['count']
                    taken = [branch['count'] for branch in line['branches'] if not branch['throw']]
                    if len(taken) > 1:
                        instances[place].append(taken)
    branches = collections.defaultdict(int)
    for place, taken in instances.items():
        step = len(taken[0]) if len({len(counts) for counts in taken}) == 1 else 2
        for counts in taken:
            for at, count in enumerate(counts):
                branches[(*place, at % step)] += count
    return lines, branches


def share(counts):
    ran = sum(1 for count in counts if count > 0)
    return f'{ran:6} of {len(counts):6} {100 * ran / len(counts) if counts else 100:6.1f} %'


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument('-v', '--verbose', action='store_true')
    options.add_argument('build', type=pathlib.Path)
    options = options.parse_args()
    lines, branches = gather(options.build)
    if not lines:
        raise SystemExit(f'{options.build}: nothing has been counted there')
    folders = sorted({str(pathlib.Path(name).parent) for name, _ in lines})
    print(f'{"":28}{"lines":>26}{"branches":>26}')
    for folder in [*folders, 'src', 'runtime/src']:
        def within(counts):
            return [count for place, count in counts.items()
                    if place[0].startswith(folder + '/')]
        print(f'{folder:28}{share(within(lines)):>26}{share(within(branches)):>26}')
    if options.verbose:
        for name, line in sorted(place for place, count in lines.items() if count == 0):
            print(f'{name}:{line}: never ran')
        for name, line, at in sorted(place for place, count in branches.items() if count == 0):
            if lines[(name, line)] > 0:
                print(f'{name}:{line}: branch {at} never taken')


if __name__ == '__main__':
    main()
