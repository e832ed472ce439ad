"""The classes of the model, made from its JSON form: a class for each type, row and table."""
import json

from ._errors import BadValue
from ._fields import FLAGS_KIND, KINDS, MEMBER_KIND, OBJECT_KIND, field_of
from ._library import PACKAGE, TableShell, TypeRecord, oper
from ._objects import Structure
from ._row import Row
from ._tables import Table
from ._values import Enumeration, Flags, address_value


def class_name(name):
    """ospf_area as OspfArea, tbl_ospf_area as OspfAreaTable."""
    if name.startswith('tbl_'):
        return class_name(name[4:]) + 'Table'
    return ''.join(part[:1].upper() + part[1:] for part in name.split('_'))


def plural(name):
    """By which the table of a reference is found too: areas for area."""
    if name.endswith('s'):
        return name
    return name[:-1] + 'ies' if name.endswith('y') else name + 's'


class Model:
    """All types and tables by their C names."""

    def __init__(self, rows):
        self.rows = rows
        self._check_library()
        self.light_types = {}
        self.counted_from_one = {each['name'] for each in rows['enumerations']
                                 if each['counts_from_one']}
        self.structures = {}
        self.tables = {}
        self.classes = {}  # by Python name
        for row in rows['enumerations']:
            self._add_members(Enumeration, row, {each['name']: each['value']
                                                 for each in row['members']})
        for row in rows['flag_sets']:
            self._add_members(Flags, row, {each['name']: 1 << each['bit']
                                           for each in row['members']})
        for row in rows['structures']:
            self._add_structure(row)
        for row in rows['tables']:
            self._add_table(row)

    def _publish(self, made):
        made.__module__ = 'ospf_harbor'
        self.classes[made.__name__] = made
        return made

    def _add_members(self, kind, row, members):
        made = kind(class_name(row['name']), members)
        made.__doc__ = row['meaning'] + '\n\n' + '\n'.join(
            f'{each["name"]}: {each["meaning"]}' for each in row['members'])
        self.light_types[row['name']] = self._publish(made)

    def _add_structure(self, row):
        name = row['name']
        fields = {each['name']: field_of(name, each, self) for each in row['fields']}
        for field in fields.values():
            if field.form == 'array':
                field.counter = fields[field.counter]
        references = {plural(field.name): field for field in fields.values()
                      if field.form == 'reference'}
        below = [self.structures[field.type] for field in fields.values()
                 if field.form in ('embedded', 'arm') and field.type in self.structures]
        made = type(class_name(name), (Structure,), {
            '__slots__': (), '__doc__': row['meaning'], **references, **fields, '_name': name,
            '_fields': fields, '_selector': row.get('selected_by'),
            '_completion': self._completion(fields),
            '_has_references': bool(references) or any(each._has_references for each in below),
            '_size': row['size']})
        made._plain_class = made
        self.structures[name] = self._publish(made)

    def _completion(self, fields):
        """What makes a fresh object one that can be written as it is: a number that has a name, and
        in a choice the arm that stands for none."""
        values = {}
        for field in fields.values():
            kind = self.structures.get(field.type)
            if field.form == 'enumeration' and field.type in self.counted_from_one:
                values[field.name] = next(iter(self.light_types[field.type]))
            elif field.form == 'embedded' and kind._selector is not None:
                values[field.name] = {arm.name: 0 for arm in kind._fields.values()
                                      if arm.form == 'arm' and arm.type == 'uint32_t'}
        return values

    def _add_table(self, row):
        name = row['name']
        data = self.structures[row['record']]
        key = self.structures[row['key_type']] if 'key_type' in row else None
        row_class = self._publish(type(class_name(name[4:]) + 'Row', (Row, data), {
            '__slots__': (), '__doc__': f'A row of {name}: {row["meaning"]}',
            '_key': row.get('key_field')}))
        table = self._publish(type(class_name(name), (Table,), {
            '__slots__': (), '__doc__': row['meaning'], '_name': name, '_row_class': row_class,
            '_data_class': data, '_key_class': key, '_data_key': row.get('key_field'),
            '_key_fields': tuple(key._fields) if key else (row['key_field'],),
            '_key_part': f'{row["key_type"]}_' if key else f'{row["record"]}_{row["key_field"]}'}))
        row_class._table = table
        table._prepare()
        self.tables[name] = table

    def kind_of(self, field):
        """How the compiled module reads a field's values, and what it needs for it."""
        if field.type in self.structures:
            return OBJECT_KIND, self.structures[field.type]._plan()
        if field.form == 'enumeration':
            return MEMBER_KIND, {int(each): each for each in self.light_types[field.type]}
        if field.form == 'flag set':
            return FLAGS_KIND, [self.light_types[field.type](bits) for bits in range(256)]
        return KINDS[field.type], address_value

    def table_at(self, database, address):
        """The table object at an address, of whatever type it is."""
        name = TableShell.from_address(address).header.tinfo.contents.type_name
        return self.tables[name.decode()]._of(database._life_of(address))

    def table_class(self, name):
        """The class of a table by its name, with or without "tbl_" before it."""
        if isinstance(name, type) and issubclass(name, Table) and name._name:
            return name
        made = None
        if isinstance(name, str):
            made = self.tables.get(name) or self.tables.get(f'tbl_{name}')
        if made is None:
            raise BadValue('table', name, 'one of ' + ', '.join(self.tables))
        return made

    def _check_library(self):
        """What is read at its place has to lie there: a library of another model is refused."""
        for row in self.rows['structures']:
            try:
                record = TypeRecord.in_dll(oper, f'_{row["name"]}_type_info_internal')
            except ValueError as why:
                raise ImportError(f'{why}: it is not the library of this package') from None
            info = record.varinfo.contents
            used = [info.entries[at].used_length for at in range(info.n_variants)]
            if used[:row['variants']] != row['used']:  # a newer one has more behind
                raise ImportError(f'found {used} bytes of {row["name"]} in the library, expected '
                                  f'{row["used"]}: it is not the library of this package')


MODEL = Model(json.loads((PACKAGE / 'model.json').read_text()))
