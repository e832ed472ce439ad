"""All types, fields and tables of the model through Python, in loops over the model."""
import copy
import copy
import ctypes
import json
import pathlib
import unittest

import ospf_harbor
import samples
from ospf_harbor import MODEL, BadType, BadValue, Error, Foreign
from ospf_harbor._values import plain


MODEL_VARIANTS = {row['name']: row['variants'] for row in MODEL.rows['structures']}


class Types(samples.Mixin, unittest.TestCase):
    def test_every_type_of_the_model_is_a_class(self):
        rows = MODEL.rows
        self.assertEqual(len(MODEL.structures), len(rows['structures']))
        self.assertEqual(len(MODEL.light_types), len(rows['enumerations']) + len(rows['flag_sets']))
        self.assertEqual(len(MODEL.tables), len(rows['tables']))
        for kind in (*samples.structures(), *samples.tables(), *MODEL.light_types.values()):
            self.assertIs(getattr(ospf_harbor, kind.__name__), kind)
            self.assertTrue(kind.__doc__)
        for kind, field in samples.fields():
            self.assertIs(getattr(kind, field.name), field)
            self.assertTrue(field.__doc__, field.full_name)

    def test_a_library_of_another_model_is_refused(self):
        for at in range(len(MODEL.rows['structures'])):
            rows = copy.deepcopy(MODEL.rows)
            rows['structures'][at]['used'][0] += 1
            with self.assertRaises(ImportError):
                type(MODEL)(rows)
            rows['structures'][at]['name'] = 'no_such_type'
            with self.assertRaises(ImportError):
                type(MODEL)(rows)

    def test_no_field_hides_what_rows_can_do(self):
        for kind, field in samples.fields():
            self.assertFalse(hasattr(ospf_harbor.Row, field.name), field.full_name)

    def test_every_field_takes_each_value_and_gives_it_back(self):
        for kind in samples.structures():
            made = kind(self.database)
            for field in samples.settable(kind):
                for value in samples.values(field):
                    with self.subTest(field=field.full_name, value=value):
                        setattr(made, field.name, value)
                        read = getattr(made, field.name)
                        read = samples.as_read(read)
                        self.assertEqual(read, value)
                        self.assertIs(type(read), type(value))

    def test_fields_stand_beside_each_other(self):
        for kind in samples.structures():
            for index in range(4):
                with self.subTest(kind=kind.__name__, index=index):
                    fields = samples.fields_of(kind, index)
                    made = kind(self.database, **fields)
                    self.assertEqual(made.to_dict(), fields)
                    shown = {field.name: getattr(made, field.name)
                             for field in samples.settable(kind) if field.name in fields}
                    shown = {name: samples.as_read(each) for name, each in shown.items()}
                    self.assertEqual(shown, fields)
                    self.assertTrue(repr(made).startswith(kind.__name__ + '('))

    def test_every_form_brings_the_object_back(self):
        for kind in samples.structures():
            for index in range(3):
                with self.subTest(kind=kind.__name__, index=index):
                    made = kind(self.database, **samples.fields_of(kind, index))
                    back = [kind.from_image(made.to_image(), self.database),
                            kind.from_xml(made.to_xml(), self.database),
                            kind.from_dict(made.to_dict(), self.database),
                            kind.from_json(made.to_json(), self.database),
                            made.copy(), made.copy(ospf_harbor.Database())]
                    for each in back:
                        self.assertEqual(each.to_dict(), made.to_dict())
                        self.assertEqual(each, made)
                        self.assertFalse(each < made)
                    self.assertIn(f'@{kind._name}', made.to_text())
                    self.assertEqual(json.loads(made.to_json()), plain(made.to_dict()))

    def test_addresses_keep_their_header(self):
        for kind, field in samples.fields():
            if field.form == 'scalar' and field.type == 'ip_address':
                made = kind(self.database)
                header = ctypes.string_at(made._address + field.place, 16)
                self.assertTrue(any(header))
                setattr(made, field.name, '10.0.0.1')
                self.assertEqual(ctypes.string_at(made._address + field.place, 16), header)

    def test_counters_follow_their_arrays(self):
        for kind, field in samples.fields():
            if field.form != 'array':
                continue
            made = kind(self.database)
            for value in samples.values(field):
                setattr(made, field.name, value)
                self.assertEqual(getattr(made, field.counter.name), len(value), field.full_name)
            self.refused(Error, setattr, made, field.counter.name, 1, code=1,
                         field=field.counter.full_name)

    def test_arms_select_and_give_way(self):
        for kind in samples.structures():
            for one in samples.arms(kind):
                for other in samples.arms(kind):
                    made = kind(self.database)
                    setattr(made, one.name, samples.values(one, 0)[0])
                    setattr(made, other.name, samples.values(other, 1)[1])
                    self.assertEqual(int(getattr(made, kind._selector)), other.selector)
                    kept = one is not other and one.selector == other.selector
                    self.assertEqual(getattr(made, one.name) is not None or one is other,
                                     kept or one is other, (one.full_name, other.full_name))
                    setattr(made, other.name, None)
                    self.assertIsNone(getattr(made, other.name))

    def test_fields_of_later_variants_are_refused_on_earlier_objects(self):
        late = [(kind, field) for kind, field in samples.fields() if field.since]
        self.assertTrue(late)
        for kind, field in late:
            with self.subTest(field=field.full_name):
                with self.database.handle(variants={kind._name: 0}).write():
                    made = kind(self.database)
                self.assertEqual(made.variant, 0)
                self.refused(Error, getattr, made, field.name, code=43, field=field.full_name)
                self.assertNotIn(field.name, made.to_dict())
                if field.form in ('reference', 'counter'):
                    continue
                value = samples.values(field)[0]
                with self.database.handle(variants={kind._name: 0}).write():
                    error = self.refused(Error, setattr, made, field.name, value, code=43)
                    self.assertEqual(error.field, field.full_name)
                self.assertNotIn(field.name, made.to_dict())
                setattr(made, field.name, value)  # which raises the variant to the handle's
                self.assertEqual(made.variant, MODEL_VARIANTS[kind._name] - 1)
                self.assertIn(field.name, made.to_dict())

    def test_state_bytes(self):
        with self.database.handle(state_tracking=True).write():
            for kind, field in samples.fields():
                if field.form == 'counter' or samples.arms(kind):
                    continue
                made = kind(self.database)
                self.assertEqual(made.state_byte(field.name), 0, field.full_name)
                if field.form == 'reference':
                    continue
                if field.form != 'embedded':
                    setattr(made, field.name, samples.values(field)[0])
                    self.assertEqual(made.state_byte(field.name), 2, field.full_name)
                made.set_state_byte(field.name, 77)
                self.assertEqual(made.state_byte(field.name), 77, field.full_name)
                self.refused(BadValue, made.set_state_byte, field.name, 256)
            self.refused(BadValue, made.state_byte, 'no such field')


class LightTypes(samples.Mixin, unittest.TestCase):
    def rows(self, name):
        return {row['name']: row for row in MODEL.rows[name]}

    def test_members_are_those_of_the_model(self):
        for name, row in self.rows('enumerations').items():
            members = {each.name: each.value for each in MODEL.light_types[name]}
            self.assertEqual(members, {each['name']: each['value'] for each in row['members']})
        for name, row in self.rows('flag_sets').items():
            members = {each.name: each.value for each in MODEL.light_types[name]}
            self.assertEqual(members, {each['name']: 1 << each['bit'] for each in row['members']})

    def test_members_by_name_and_number(self):
        for kind, field in samples.fields():
            if field.form not in ('enumeration', 'flag set'):
                continue
            made = kind(self.database)
            for member in MODEL.light_types[field.type]:
                for form in (member, member.name, int(member)):
                    setattr(made, field.name, form)
                    self.assertIs(getattr(made, field.name), member)
            if field.form == 'flag set':
                names = [each.name for each in MODEL.light_types[field.type]]
                setattr(made, field.name, names)
                self.assertEqual([each.name for each in getattr(made, field.name)], names)
            before = made.to_dict()
            self.refused(BadValue, setattr, made, field.name, 'no such name', code=22,
                         field=field.full_name)
            self.refused(BadType, setattr, made, field.name, 1.5, field=field.full_name)
            self.assertEqual(made.to_dict(), before)

    def test_numbers_that_no_member_has(self):
        for kind, field in samples.fields():
            if field.form == 'enumeration':
                made = kind(self.database)
                before = made.to_dict()
                self.refused(Error, setattr, made, field.name, 1000, field=field.full_name)
                self.refused(BadValue, setattr, made, field.name, 1 << 32, field=field.full_name)
                self.assertEqual(made.to_dict(), before)
            elif field.form == 'flag set':
                made = kind(self.database)
                setattr(made, field.name, 255)
                self.assertEqual(int(getattr(made, field.name)), 255)
                self.refused(BadValue, setattr, made, field.name, 256, field=field.full_name)


class WrongValues(samples.Mixin, unittest.TestCase):
    def wrong(self, field):
        """Values that a field has to refuse."""
        nothing = object()
        if field.form == 'reference':
            return [nothing, 1, 'text']
        if field.form == 'embedded':
            return [nothing, 5, 'text', {'no such field': 1}]
        if field.form == 'array':
            element = {'uint8_t': [256, -1], 'uint32_t': [1 << 32, 'x'], 'ip_address': ['x', 5]}
            return [nothing, 5, *([each] for each in element[field.type])]
        if field.type in MODEL.structures:
            return [nothing, 5, {'no such field': 1}]
        if field.type in samples.BOUNDS:
            return [nothing, -1, samples.BOUNDS[field.type] + 1, 1.0, True, 'text', b'1']
        return {'double': [nothing, None, '1', True, 10 ** 400],
                'kelp_boolean': [nothing, 2, 'yes', 1.0],
                'kelp_vstring': [nothing, 5, '\ud800'],
                'ip_address': [nothing, 5, 'text', '10.0.0.0/33', '10.0.0.1\0']}.get(field.type, [])

    def test_every_field_refuses_what_it_cannot_hold_and_keeps_what_it_had(self):
        for kind in samples.structures():
            made = kind(self.database, **samples.fields_of(kind, 1))
            before = made.to_dict()
            for field in kind._fields.values():
                for value in self.wrong(field) if field.form != 'counter' else []:
                    with self.subTest(field=field.full_name, value=value):
                        error = self.refused((BadType, BadValue), setattr, made, field.name, value,
                                             code=22)
                        self.assertTrue(error.field.startswith(field.full_name)
                                        or field.type in MODEL.structures, error.field)
                        self.assertEqual(made.to_dict(), before)

    def test_no_other_attributes(self):
        for kind in samples.structures():
            made = kind(self.database)
            with self.assertRaises(AttributeError):
                made.no_such_field = 1
            self.refused(BadValue, kind, self.database, no_such_field=1, text='one of the fields')

    def test_damaged_images_are_refused(self):
        for kind in samples.structures():
            image = kind(self.database, **samples.fields_of(kind, 1)).to_image()
            for length in range(0, len(image), max(1, len(image) // 40)):
                self.refused(ospf_harbor.BadImage, kind.from_image, image[:length], self.database)
            self.refused(ospf_harbor.BadImage, kind.from_image, image + b'\0', self.database)
            self.refused(ospf_harbor.BadImage, kind.from_xml, '<other/>', self.database)
            self.refused(ospf_harbor.BadImage, kind.from_json, '{', self.database)
            self.refused(BadType, kind.from_json, '[]', self.database)
            for wrong in (5, None, 'text', object()):
                self.refused(BadType, kind.from_image, wrong, self.database)


class Tables(samples.Mixin, unittest.TestCase):
    def test_rows_by_key_in_order(self):
        for kind in samples.tables():
            with self.subTest(table=kind._name):
                table = self.database.table(kind, 'rows', create=True)
                count = 2 if kind._name == 'tbl_ospf_instance' else 4
                for index in reversed(range(count)):
                    samples.add(table, index)
                keys = [samples.key_of(kind, index) for index in range(count)]
                self.assertEqual(list(table), keys)
                self.assertEqual(list(table.keys()), keys)
                self.assertEqual(len(table), count)
                self.assertEqual([key for key, _ in table.items()], keys)
                for index, row in enumerate(table.values()):
                    self.assertIsInstance(row, kind._row_class)
                    self.assertEqual(table[keys[index]], row)
                    self.assertIn(keys[index], table)
                    self.assertEqual(row.table, table)
                    self.assertEqual(row.source, 1)
                    fields = samples.row_of(kind, index)['fields']
                    self.assertEqual(row.to_dict(), fields)
                self.assertEqual(table.to_dicts(), [self.whole(row) for row in table.values()])
                self.assertEqual(json.loads(table.to_json()), plain(table.to_dicts()))
                self.assertEqual(self.database.table(kind._name[4:], 'rows'), table)
                self.assertEqual(table.name, 'rows')

    def whole(self, row):
        fields = row.to_dict()
        if row._table._key_class is not None:
            fields['key'] = row.key.to_dict()
        return fields

    def test_a_key_stands_once_and_stays(self):
        for kind in samples.tables():
            with self.subTest(table=kind._name):
                table = samples.filled(self.database, kind)
                before = table.to_dicts()
                self.refused(Error, samples.add, table, 1, code=17)
                row = table[samples.key_of(kind, 1)]
                if kind._key_class is None:
                    self.refused(Error, setattr, row, kind._data_key,
                                 samples.key_of(kind, 0), code=16)
                else:
                    for name in kind._key_fields:
                        self.refused(Error, setattr, row.key, name, getattr(row.key, name), code=16)
                self.assertEqual(table.to_dicts(), before)
                self.assertEqual(len(table), 2)

    def test_rows_come_and_go(self):
        for kind in samples.tables():
            with self.subTest(table=kind._name):
                table = samples.filled(self.database, kind)
                first, second = (samples.key_of(kind, index) for index in range(2))
                del table[first]
                self.assertNotIn(first, table)
                self.assertIn(second, table)
                self.assertEqual(len(table), 1)
                self.refused(ospf_harbor.NoSuchKey, table.__getitem__, first, code=2)
                self.refused(ospf_harbor.NoSuchKey, table.__delitem__, first)
                table[first] = samples.row_of(kind, 0)['fields']
                self.assertIn(first, table)
                other = {name: value for name, value in samples.fields_of(
                    kind._data_class, 1).items() if name != kind._data_key}
                table[first] = other
                self.assertEqual({**table[first].to_dict(), **other}, table[first].to_dict())
                fields = table[first].to_dict()
                self.assertEqual(table.pop(first), fields)
                self.assertEqual(table.pop(first, 5), 5)
                self.refused(ospf_harbor.NoSuchKey, table.pop, first)
                self.assertEqual(table.setdefault(first, fields).to_dict(), fields)
                self.assertEqual(table.setdefault(first).to_dict(), fields)
                self.assertEqual(table.popitem(), (first, fields))
                self.refused(Error, table.free, code=16)
                table.clear()
                self.assertEqual(list(table), [])
                self.refused(ospf_harbor.NoSuchKey, table.popitem)
                table.free()
                self.refused(ospf_harbor.NoSuchKey, self.database.table, kind, 'filled')
                self.refused(ospf_harbor.Gone, len, table)

    def test_record_images_and_documents(self):
        for kind in samples.tables():
            with self.subTest(table=kind._name):
                table = samples.filled(self.database, kind)
                others = self.database.table(kind, 'others', create=True)
                for index, row in enumerate(table.values()):
                    back = (others.add_image(row.to_record_image()) if index
                            else others.add_xml(row.to_record_xml()))
                    self.assertEqual(back, row)
                self.assertEqual(others.to_dicts(), table.to_dicts())
                self.refused(Error, others.add_image, row.to_record_image(), code=17)
                self.refused(ospf_harbor.BadImage, others.add_image, row.to_image())
                self.refused(ospf_harbor.BadImage, others.add_xml, '<x/>')
                self.assertEqual(len(others), 2)

    def test_a_row_of_a_key_alone_can_be_written(self):
        for kind in samples.tables():
            with self.subTest(table=kind._name):
                table = self.database.table(kind, 'keys alone', create=True)
                others = self.database.table(kind, 'read', create=True)
                key = samples.key_of(kind, 1)
                row = (table.add(key=key) if kind._key_class is not None
                       else table.add({kind._data_key: key}))
                self.assertEqual(others.add_image(row.to_record_image()), row)
                for field in row._fields.values():
                    if field.form == 'enumeration':
                        self.assertIn(getattr(row, field.name), MODEL.light_types[field.type])
                    choice = getattr(row, field.name) if field.form == 'embedded' else None
                    if choice is not None and choice._selector is not None:
                        there = [getattr(choice, arm.name) for arm in samples.arms(type(choice))]
                        self.assertEqual([each for each in there if each is not None], [0])

    def test_wrong_keys(self):
        for kind in samples.tables():
            table = samples.filled(self.database, kind)
            for wrong in (object(), (), [1], 1.5, ('x',) * 9, {'x': 1}):
                self.refused((BadType, BadValue), table.__getitem__, wrong)
                self.assertNotIn(wrong, table)
            self.refused(BadValue, table.add, {}, key=None if kind._key_class else (1, 2))
            self.assertEqual(len(table), 2)

    def test_every_reference(self):
        foreign = ospf_harbor.Database()
        for kind in samples.tables():
            row = samples.add(self.database.table(kind, 'above', create=True), 0)
            for field in kind._data_class._fields.values():
                if field.form != 'reference':
                    continue
                with self.subTest(field=field.full_name):
                    below = row.add_table(field.name)
                    self.assertEqual(getattr(row, field.name), below)
                    self.assertIs(type(below), MODEL.tables[field.type])
                    self.refused(Error, row.add_table, field.name, code=17)
                    self.refused(Error, below.free, code=11)
                    samples.add(below, 0)
                    self.assertEqual(len(row.table.to_dicts(True)[0][field.name]), 1)
                    wrong = next(each for each in samples.tables() if each._name != field.type)
                    self.refused(BadType, setattr, row, field.name,
                                 self.database.table(wrong, 'wrong', create=True))
                    self.refused(Foreign, setattr, row, field.name,
                                 foreign.new_table(field.type))
                    self.assertEqual(getattr(row, field.name), below)
                    self.assertIsNone(type(row)._plain_class.from_image(
                        row.to_image(), self.database).__getattribute__(field.name))
                    setattr(row, field.name, None)
                    self.assertIsNone(getattr(row, field.name))
                    setattr(row, field.name, below)
            self.refused(BadValue, row.add_table, 'no such field')
            count = len(self.database.tables())
            references = sum(field.form == 'reference' for field in row._fields.values())
            row.end()
            self.assertEqual(len(self.database.tables()), count - references)

    def test_sources_and_tenants(self):
        for kind in samples.tables():
            table = samples.filled(self.database, kind, 1)
            arguments = samples.row_of(kind, 0)
            other = table.add(arguments.pop('fields'), source=9, **arguments)
            self.assertEqual(other.source, 9)
            self.assertEqual([row.source for row in table.rows(0)], [1, 9])
            self.assertEqual([row.source for row in table.rows(9)], [9])
            self.refused(BadValue, next, table.rows(256))
            self.assertEqual(table[samples.key_of(kind, 0)].source, 1)
            tenant = self.database.handle(tenant=5)
            with tenant.write():
                self.assertEqual(len(table), 0)
                self.assertNotIn(samples.key_of(kind, 0), table)
                samples.add(table, 1)
                self.assertEqual(list(table), [samples.key_of(kind, 1)])
                table.clear()
            self.assertEqual(list(table), [samples.key_of(kind, 0)])
        self.refused(Error, self.database.handle, tenant=65536, code=22)


class Stubs(unittest.TestCase):
    def test_name_everything(self):
        """The emitted stubs are Python, and have each class with each of its fields."""
        import ast
        path = pathlib.Path(ospf_harbor.__file__).parent / '_types.pyi'
        classes = {node.name: {part.name for part in node.body if isinstance(part, ast.FunctionDef)
                               and 'property' in map(ast.unparse, part.decorator_list)}
                   | {target.id for part in node.body if isinstance(part, ast.Assign)
                      for target in part.targets}
                   for node in ast.parse(path.read_text()).body if isinstance(node, ast.ClassDef)}
        self.assertEqual(set(classes), set(MODEL.classes))
        for kind in samples.structures():
            plurals = {name for name, each in vars(kind).items()
                       if getattr(each, 'form', '') == 'reference'}
            self.assertEqual(set(kind._fields) | plurals, classes[kind.__name__])
        for members in MODEL.light_types.values():
            self.assertEqual(set(members.__members__), classes[members.__name__])
