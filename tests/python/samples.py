"""Values for any field of the model, and tables with rows: what the tests of the Python package
share. All of it follows from the model; nothing here names a type or a field."""
import ipaddress

import ospf_harbor
from ospf_harbor import MODEL

BOUNDS = {'uint8_t': 0xFF, 'uint16_t': 0xFFFF, 'uint32_t': 0xFFFFFFFF}
ADDRESSES = [ipaddress.ip_address('10.1.2.3'), ipaddress.ip_interface('192.0.2.1/24'),
             ipaddress.ip_address('2001:db8::5'), ipaddress.ip_address('fe80::1%7'),
             ipaddress.ip_interface('2001:db8::/32'), ipaddress.ip_interface('fe80::2%9/64'), None]


def values(field, index=0):
    """A list of values that the field takes, different from each other; index moves them on."""
    kind = field.type
    if field.form == 'array':
        element = values_of_type(kind, index)
        lists = [element[:3], element[1:2], []]
        return [bytes(each) for each in lists] if kind == 'uint8_t' else lists
    if field.form == 'embedded' or kind in MODEL.structures:
        return [fields_of(MODEL.structures[kind], each) for each in (index, index + 1)]
    if kind in MODEL.light_types:
        members = MODEL.light_types[kind]
        if field.form == 'enumeration':
            return list(members)
        return [members(0), *members, members(sum(members))]
    return values_of_type(kind, index)


def values_of_type(kind, index=0):
    if kind in BOUNDS:
        most = BOUNDS[kind]
        return [(index + 1) & most, most, 0, (index * 2654435761 + 7) & most]
    if kind == 'double':
        return [index + 0.25, -1e300, 0.0, float('inf'), 5e-324]
    if kind == 'kelp_boolean':
        return [True, False]
    if kind == 'ip_address':
        return ADDRESSES[index % 6:] + ADDRESSES[:index % 6]
    if kind == 'kelp_vstring':
        return [f'text {index}', '', 'ü<&>"\n\t', 'x' * 3000, '\udcff\0\x01']
    raise AssertionError(f'no values for {kind}')


def as_read(value):
    """What a field gave, as to_dict has it."""
    return value.to_dict() if isinstance(value, ospf_harbor.Structure) else value


def settable(kind):
    """The fields of a structure that hold values."""
    return [field for field in kind._fields.values() if field.form not in ('counter', 'reference')]


def arms(kind):
    return [field for field in kind._fields.values() if field.form == 'arm']


def fields_of(kind, index=0):
    """Fields for a whole object, as to_dict gives them: of a choice one selection."""
    fields = {}
    chosen = None
    if arms(kind):
        selectors = sorted({field.selector for field in arms(kind)})
        chosen = selectors[index % len(selectors)]
    for at, field in enumerate(settable(kind)):
        if field.name == kind._selector:
            fields[field.name] = MODEL.light_types[field.type](chosen)
        elif field.form != 'arm' or field.selector == chosen:
            given = values(field, index)
            fields[field.name] = given[(at + index) % len(given)]
    return fields


def key_of(table, index):
    """The key number index of a table: they rise with it."""
    def part(kind, name):
        field = kind._fields[name]
        if field.type == 'ip_address':
            return ipaddress.ip_address(f'10.0.0.{index}')
        if field.type == 'kelp_vstring':
            return f'key {index}'
        if field.form == 'enumeration':
            members = list(MODEL.light_types[field.type])
            return members[min(index, len(members) - 1)]
        return index
    if table._key_class is None:
        return part(table._data_class, table._data_key)
    return tuple(part(table._key_class, name) for name in table._key_fields)


def row_of(table, index):
    """Arguments of add() for the row number index of a table."""
    fields = fields_of(table._data_class, index)
    if table._key_class is not None:
        return {'fields': fields, 'key': key_of(table, index)}
    return {'fields': {**fields, table._data_key: key_of(table, index)}}


def add(table, index):
    arguments = row_of(table, index)
    return table.add(arguments.pop('fields'), **arguments)


def filled(database, kind, count=2, name='filled'):
    """A table of that kind with rows."""
    table = database.table(kind, name, create=True)
    for index in range(count):
        add(table, index)
    return table


def structures():
    return MODEL.structures.values()


def tables():
    return MODEL.tables.values()


def fields():
    """All fields, with their structures."""
    return [(kind, field) for kind in structures() for field in kind._fields.values()]


def empty(database):
    """Ends all that is in the database, from what nothing refers to on; what is followed goes when it
    is collected."""
    for feed in list(database._feeds):
        feed.close()
    for table in database.tables():
        for row in list(table.rows(0)):
            for field in row._fields.values():
                if field.form == 'reference':
                    field.set(row, None)
    for table in database.tables():
        table.clear()
    database.collect()
    for table in database.tables():
        table.free()
    database.collect()


class Mixin:
    """A database for each test, closed at its end without anything left in it."""

    def setUp(self):
        self.database = ospf_harbor.Database(name='test')
        self.addCleanup(self._close)

    def _close(self):
        empty(self.database)
        self.assertEqual(self.database.close(), '')

    def refused(self, kind, call, *arguments, code=None, field=None, text=None, **named):
        """The error by which a call is refused; it has a code and a text."""
        with self.assertRaises(kind) as caught:
            call(*arguments, **named)
        error = caught.exception
        self.assertIsInstance(error, ospf_harbor.Error)
        self.assertIsInstance(error.code, int)
        self.assertGreater(error.code, 0)
        self.assertTrue(error.text)
        if code is not None:
            self.assertEqual(error.code, code, str(error))
        if field is not None:
            self.assertEqual(error.field, field)
        if text is not None:
            self.assertIn(text, str(error))
        return error
