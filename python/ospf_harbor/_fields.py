"""The fields of structures as properties of their classes."""
import ctypes

from ._database import READ, WRITE
from ._errors import BadType, Error, Foreign
from ._library import F64, I32, Pointer, Size, Text, TextField, U8, U16, U32, function
from ._values import (ADDRESS_SIZE, address_of, address_value, decoded, dotted_number_of, encoded,
                      number_of, octets_of, real_of, sequence_of, text_at, truth_of)

NUMBERS = {'uint8_t': (U8, 0xFF), 'uint16_t': (U16, 0xFFFF), 'uint32_t': (U32, 0xFFFFFFFF)}
_HEADER = 16  # of an address
VALUES_AT = {'enumeration': 12, 'flag set': 11}  # in such an object
# As the compiled module numbers them.
KINDS = {'uint8_t': 0, 'uint16_t': 1, 'uint32_t': 2, 'double': 3, 'kelp_boolean': 4,
         'kelp_vstring': 5, 'ip_address': 6}
MEMBER_KIND, FLAGS_KIND, OBJECT_KIND = 7, 8, 9
HELD = {'array': 1, 'arm': 2}
LEFT_OUT = object()

_assign_text = function('kelp_vstring_assign', None, Pointer, U32, Pointer, Text, Size, Pointer)
_end_text = function('kelp_vstring_destroy_internal', None, Pointer, U32, Pointer, I32)
_new_text = function('kelp_vstring_create', Pointer, Pointer, U32)
_new_number = function('u_int32_create', Pointer, Pointer, U32)
_end_number = function('u_int32_destroy', None, Pointer, U32, Pointer)


class Field:
    """A field of a structure as a property: `get` asks the library, `set` changes it there."""

    def __init__(self, owner, row, model):
        self.name = row['name']
        self.type = row['type']
        self.form = row['form']
        self.since = row['since']
        self.place = row['offset'] + VALUES_AT.get(self.form, 0)
        self.selector = row.get('selector')
        self.full_name = f'{owner}.{self.name}'
        since = f' Known from variant {self.since} on.' if self.since else ''
        self.__doc__ = f'{row["meaning"]}{since}'
        self._model = model

    def _function(self, verb, result, *arguments):
        """<type>_<field>_<verb>, which takes a handle, the space and the object before and the
        error word behind."""
        return function(f'{self.full_name.replace(".", "_")}_{verb}', result, Pointer, U32, Pointer,
                        *arguments, Pointer)

    def _call(self, owner, mode, call, *arguments):
        with owner._begin(mode) as handle:
            result = call(handle._pointer, 0, owner._address, *arguments, handle._err)
            if handle._error.value:
                handle._fail(self.full_name)
            return result

    def __get__(self, owner, kind=None):
        return self if owner is None else self.get(owner)

    def __set__(self, owner, value):
        if owner._is_key or owner._key == self.name:
            with owner._begin(READ):
                in_table = owner._life.table is not None
            if in_table:
                raise Error(16, 'found a row that is in its table, expected one that is not: a '
                            'key stays; end the row and add another', self.full_name)
        self.set(owner, value)

    def set(self, owner, value):
        raise NotImplementedError

    def _raise_variant(self, handle, owner):
        """Brings an object of an earlier variant to the handle's where that has the field, as the
        library's own setters do."""
        if self.since <= owner.variant:
            return
        number = list(owner._fields).index(self.name)
        holds = function(f'{owner._name}_is_valid_cr', U32, Pointer, Pointer, U32)
        if holds(handle._pointer, owner._address, number):
            function(f'{owner._name}_adjust_variant', None, Pointer, U32, Pointer, Pointer)(
                handle._pointer, 0, owner._address, handle._err)

    def assign(self, owner, value):
        """Sets the field among others, as from what to_dict gave."""
        self.__set__(owner, value)

    def get_there(self, owner):
        """The value where it is one of its object's, as an arm is not that is missing."""
        return self.get(owner)

    def piece(self):
        """What _rows.plan is told: name, kind, how it is held, first variant, place, those of an
        array's count and of an arm's selecting value, and what the kind needs besides."""
        kind, needed = self._model.kind_of(self)
        return (self.name, kind, HELD.get(self.form, 0), self.since, self.place,
                self.counter.place if self.form == 'array' else 0, self.selector or 0, needed)

    def as_key(self, value):
        """The value as `get` would give it, hashable: for look-ups."""
        raise BadType(self.full_name, value, 'a key')


class Value(Field):
    """A number, a boolean, an enumeration or a flag set."""

    def __init__(self, owner, row, model):
        super().__init__(owner, row, model)
        kind = self.type
        self._to_python = lambda value: value
        number = U32
        if kind in NUMBERS:
            number, most = NUMBERS[kind]
            self._to_c = lambda value: dotted_number_of(value, self.full_name, most)
        elif kind == 'double':
            number = F64
            self._to_c = lambda value: real_of(value, self.full_name)
        elif kind == 'kelp_boolean':
            self._to_python = bool
            self._to_c = lambda value: truth_of(value, self.full_name)
        else:
            members = self._members = model.light_types[kind]
            self._to_python = members.of if self.form == 'enumeration' else members
            self._to_c = lambda value: int(members.of(value, self.full_name))
        self._get = self._function('get_value', number)
        self._set = None if self.form == 'counter' else self._function('set_value', None, number)

    def get(self, owner):
        return self._to_python(self._call(owner, READ, self._get))

    def set(self, owner, value):
        if self._set is None:
            raise Error(1, 'follows from the array behind it', self.full_name)
        self._call(owner, WRITE, self._set, self._to_c(value))

    def assign(self, owner, value):
        if self._set is not None:
            super().assign(owner, value)

    def as_key(self, value):
        number = self._to_c(value)
        if self.form == 'enumeration' and number not in self._members._value2member_map_:
            # A family is also what people call it: 4 and 6.
            named = [each for each in self._members if each.name.endswith(f'V{number}')]
            number = named[0] if named else number
        return self._to_python(number)


class InPlace(Field):
    """What lies in its object and is reached by its address."""

    def __init__(self, owner, row, model):
        super().__init__(owner, row, model)
        self._get = self._function('get', Pointer)
        self._set = self._function('set', None, Pointer)


class TextValue(InPlace):
    def get(self, owner):
        with owner._begin(READ):
            return text_at(self._call(owner, READ, self._get))

    def set(self, owner, value):
        octets = encoded(value, self.full_name)
        with owner._begin(WRITE) as handle:
            text = TextField()
            place = ctypes.byref(text)
            _assign_text(handle._pointer, 0, place, octets, len(octets), handle._err)
            try:
                if handle._error.value:
                    handle._fail(self.full_name)
                self._call(owner, WRITE, self._set, place)
            finally:
                _end_text(handle._pointer, 0, place, 0)

    def as_key(self, value):
        return decoded(encoded(value, self.full_name))


class AddressValue(InPlace):
    def get(self, owner):
        with owner._begin(READ):
            return address_value(ctypes.string_at(self._call(owner, READ, self._get), ADDRESS_SIZE))

    def set(self, owner, value):
        address = address_of(value, self.full_name)
        with owner._begin(WRITE) as handle:
            self._raise_variant(handle, owner)
            # The header goes along: that of the field stays as it is.
            place = self._call(owner, WRITE, self._get)
            ctypes.memmove(ctypes.byref(address), place, _HEADER)
            self._call(owner, WRITE, self._set, ctypes.byref(address))

    def as_key(self, value):
        return address_value(bytes(address_of(value, self.full_name)))


class Embedded(InPlace):
    """An object within the object. Setting it sets its fields."""

    def get(self, owner):
        address = self._call(owner, READ, self._get)
        return self._model.structures[self.type]._at(owner._life, address, owner._is_key,
                                                     owner._rearranged)

    def set(self, owner, value):
        with owner._begin(WRITE) as handle:
            self._raise_variant(handle, owner)
            self.get(owner).assign(value)


class Array(Field):
    """An array: octets as bytes, numbers and addresses as a list."""

    def __init__(self, owner, row, model):
        super().__init__(owner, row, model)
        self.counter = row['counter']
        self._count = function(f'{owner}_{row["counter"]}_get_value', U32, Pointer, U32, Pointer,
                               Pointer)
        self._end = self._function('remove_elements', None)
        self._of_addresses = self.type == 'ip_address'
        self._place = self._function('get', Pointer, U32)
        if self._of_addresses:
            self._set_one = self._function('set', None, U32, Pointer)
        else:
            self._number, self._most = NUMBERS[self.type]
            self._get_all = self._function('get_mem', None, Pointer, U32)
            self._set_all = self._function('set_mem', None, Pointer, U32)

    def get(self, owner):
        with owner._begin(READ):
            count = self._call(owner, READ, self._count)
            if self._of_addresses:
                return [address_value(ctypes.string_at(self._call(owner, READ, self._place, at),
                                                       ADDRESS_SIZE)) for at in range(count)]
            numbers = (self._number * count)()
            if count:
                self._call(owner, READ, self._get_all, ctypes.byref(numbers), count)
            return bytes(numbers) if self.type == 'uint8_t' else list(numbers)

    def set(self, owner, value):
        if self._of_addresses:
            elements = [address_of(each, self.full_name)
                        for each in sequence_of(value, self.full_name)]
        elif self.type == 'uint8_t':
            elements = octets_of(value, self.full_name)
        else:
            elements = [dotted_number_of(each, self.full_name, self._most)
                        for each in sequence_of(value, self.full_name)]
        with owner._begin(WRITE) as handle:
            self._raise_variant(handle, owner)
            self._write(owner, elements)

    def _write(self, owner, elements):
        self._call(owner, WRITE, self._count)  # a variant without the array is told before
        if self._of_addresses or not elements:
            self._call(owner, WRITE, self._end)
            for at, address in enumerate(elements):
                self._call(owner, WRITE, self._set_one, at, ctypes.byref(address))
            return
        numbers = (self._number * len(elements))(*elements)
        self._call(owner, WRITE, self._set_all, ctypes.byref(numbers), len(elements))


class Arm(Field):
    """An arm of a choice: None while another is selected. Setting it selects it; None takes it
    off. What the arm or an earlier selection held is ended."""

    def __init__(self, owner, row, model):
        super().__init__(owner, row, model)
        self._get = self._function('get', Pointer)
        self._set = self._function('set', None, Pointer)
        self._detach = self._function('get_detach', Pointer)

    def get(self, owner):
        with owner._begin(READ):
            address = self._call(owner, READ, self._get)
            if not address or int(getattr(owner, owner._selector)) != self.selector:
                return None
            if self.type == 'kelp_vstring':
                return text_at(address)
            if self.type in NUMBERS:
                return U32.from_address(address).value
            return self._model.structures[self.type]._at(owner._life, address, owner._is_key,
                                                         owner._life.rearranged)

    def get_there(self, owner):
        value = self.get(owner)
        return LEFT_OUT if value is None else value

    def set(self, owner, value):
        with owner._begin(WRITE) as handle:
            if value is None:
                if self._is_selected(owner):
                    self._end(handle, owner)
                return
            arm = self._make(handle, value, owner)
            try:
                self._raise_variant(handle, owner)
                self._give_way(handle, owner)
                self._call(owner, WRITE, self._set, arm)
            except BaseException:
                self._destroy(handle, arm)
                raise

    def _is_selected(self, owner):
        return int(getattr(owner, owner._selector)) == self.selector

    def _give_way(self, handle, owner):
        """Ends the arms of another selection, and what this arm has."""
        self._call(owner, WRITE, self._get)  # a variant without the arm is told before
        selected = int(getattr(owner, owner._selector))
        for arm in owner._fields.values():
            if arm.form == 'arm' and arm.selector == selected != self.selector:
                if arm.since <= owner.variant:
                    arm._end(handle, owner)
        self._end(handle, owner)

    def _end(self, handle, owner):
        if not self._call(owner, WRITE, self._get):
            return
        setattr(owner, owner._selector, self.selector)  # what is not selected is not given back
        address = self._call(owner, WRITE, self._detach)
        owner._life.rearranged += 1
        self._destroy(handle, address)

    def _make(self, handle, value, owner):
        if self.type in self._model.structures:
            made = self._model.structures[self.type](owner.database)
            made.assign(value)
            made._life.destroy = None  # the choice owns it
            made._life.gone = 'it is an arm'
            return made._address
        if self.type in NUMBERS:
            number = number_of(value, self.full_name, 0xFFFFFFFF)
            address = handle._new(self.full_name, 'making the arm', _new_number)
            function('u_int32_set_value', None, Pointer, U32, Pointer, U32, Pointer)(
                handle._pointer, 0, address, number, handle._err)
            return address
        octets = encoded(value, self.full_name)
        address = handle._new(self.full_name, 'making the arm', _new_text)
        _assign_text(handle._pointer, 0, address, octets, len(octets), handle._err)
        if handle._error.value:
            _end_text(handle._pointer, 0, address, 1)
            handle._fail(self.full_name)
        return address

    def _destroy(self, handle, address):
        if self.type == 'kelp_vstring':
            _end_text(handle._pointer, 0, address, 1)
        elif self.type in NUMBERS:
            _end_number(handle._pointer, 0, address)
        else:
            function(f'{self.type}_destroy', None, Pointer, U32, Pointer)(handle._pointer, 0,
                                                                         address)


class Reference(Field):
    """A reference to a table: that table, or None. The object counts as one that refers to it."""

    def __init__(self, owner, row, model):
        super().__init__(owner, row, model)
        self._get = self._function('get_by_ref', Pointer)
        self._set = self._function('set_by_ref', None, Pointer)

    def get(self, owner):
        with owner._begin(READ):
            address = self._call(owner, READ, self._get)
            return None if not address else self._model.table_at(owner.database, address)

    def set(self, owner, value):
        if value is None:
            self._call(owner, WRITE, self._set, None)
            return
        if getattr(value, '_name', None) != self.type:
            raise BadType(self.full_name, value, f'a table {self.type} or None')
        if value.database is not owner.database:
            raise Foreign(f'{self.full_name}: the table')
        with value._begin(WRITE):
            self._call(owner, WRITE, self._set, value._address)


FORMS = {'scalar': Value, 'enumeration': Value, 'flag set': Value, 'counter': Value,
         'embedded': Embedded, 'array': Array, 'arm': Arm, 'reference': Reference}
IN_PLACE = {'kelp_vstring': TextValue, 'ip_address': AddressValue}


def field_of(owner, row, model):
    kind = IN_PLACE.get(row['type']) if row['form'] == 'scalar' else None
    return (kind or FORMS[row['form']])(owner, row, model)
