#!/usr/bin/python3
"""Prints the fields that the tables hold a value of after a load: filled_fields.py capture|answers FILE.
One a line, as type.field."""
import sys

import ospf_harbor
from ospf_harbor import MODEL

FOUND = set()


def is_empty(value):
    return value is None or value in (0, '', b'', [], {})


def walk(kind, held):
    """The fields of an object, which to_dicts gave; true when there was any."""
    there = False
    for name, field in kind._fields.items():
        value = held.get(name)
        if field.form == 'reference':
            for row in value or ():
                walk_row(MODEL.tables[field.type], row)
            filled = bool(value)
        elif field.form == 'embedded' and value:
            filled = walk(MODEL.structures[field.type], value)
        else:
            filled = not is_empty(value)
        if filled:
            FOUND.add(f'{kind._name}.{name}')
            there = True
    return there


def walk_row(table, row):
    if table._key_class is not None:
        walk(table._key_class, row['key'])
    walk(table._data_class, row)


load = {'capture': ospf_harbor.load_capture, 'answers': ospf_harbor.load_frr}[sys.argv[1]]
with load(sys.argv[2], store='filled.store') as store, store.read():
    instances = store.instances
    for each in instances.to_dicts(tables=True):
        walk_row(type(instances), each)
print('\n'.join(sorted(FOUND)))
