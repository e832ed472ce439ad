"""What the command line tool does for Python: it loads captures and routers' answers into stores,
and computes. The library has no C interface to these, so the tool is run, and told to answer in
JSON. OSPF_HARBOR_TOOL names it; without that it is found as any command.
"""
import json
import os
import subprocess

from ._database import Database
from ._errors import BadType, Error


def _run(*words, found=(0,)):
    tool = os.environ.get('OSPF_HARBOR_TOOL', 'ospf-harbor')
    try:
        done = subprocess.run([tool, *map(os.fspath, words)], capture_output=True,
                              stdin=subprocess.DEVNULL, check=False)
    except OSError as failure:
        raise Error(failure.errno, f'{tool}: {failure.strerror}; OSPF_HARBOR_TOOL names the tool'
                    ) from None
    if done.returncode not in found:
        text = done.stderr.decode(errors='replace').strip() or f'status {done.returncode}'
        raise Error(22, text.removeprefix('ospf-harbor: '))
    return done.stdout


def _lines(*words, found=(0,)):
    return [json.loads(line) for line in _run(*words, '--json', found=found).splitlines()]


def _source(source):
    """The words by which a command reads a source: a database's store, or files."""
    if isinstance(source, Database):
        if not source.is_store:
            raise BadType('source', source, 'a store, or what --from takes: a private database has '
                          'no file')
        return ('--store', source.path)
    return ('--from', os.fspath(source))


def _load(kind, sources, store):
    # Made here when it is missing: at addresses that no other store of this process has.
    Database(store).close()
    _run('load', kind, *sources, '--store', store)
    return Database(store)


def load_capture(*files, store):
    """Loads captures (pcap, pcapng) into a store, made when it is missing, and opens it."""
    return _load('capture', files, store)


def load_frr(*folders, store):
    """Loads the JSON that a routing daemon prints, a folder for each router, into a store, made
    when it is missing, and opens it."""
    return _load('frr', folders, store)


def routes(source, router, *, version=None, instance=None):
    """The routes that a router has by its databases, as dictionaries. source: a store's Database,
    a capture, or whatever `--from` of the tool takes."""
    words = ['--router', str(router)]
    if version is not None:
        words.append(f'--v{version}')
    if instance is not None:
        words += ['--instance', str(instance)]
    return _lines('routes', *words, *_source(source))


def diff(old, new):
    """What differs between two captures or stored trees, as dictionaries."""
    return _lines('diff', old, new, found=(0, 1))


def check(source):
    """What is wrong in a network, as dictionaries. source: as for routes."""
    return _lines('check', *_source(source), found=(0, 1))
