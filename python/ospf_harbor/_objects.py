"""Objects: the class that all structures of the model derive from, and the properties that its
fields become."""
import ctypes
import json

from . import _rows
from ._database import READ, WRITE, Database, begin
from ._errors import BadImage, BadType, BadValue, Error, Foreign, Gone
from ._library import (CheckResult, F64, Header, I32, ImageSpan, ImageVisitor, Pointer, TextField,
                       Size, Text, U8, U16, U32, checker, function)
from ._values import (ADDRESS_SIZE, address_of, address_value, decoded, dotted_number_of, encoded,
                      number_of, octets_of, plain, real_of, sequence_of, text_at, truth_of)

CHECK_OBJECT, CHECK_RECORD = 0, 1
_OID_PIECES = range(19, 22)
NUMBERS = {'uint8_t': (U8, 0xFF), 'uint16_t': (U16, 0xFFFF), 'uint32_t': (U32, 0xFFFFFFFF)}
_HEADER = 16  # of an address
VALUES_AT = {'enumeration': 12, 'flag set': 11}  # in such an object
# As the compiled module numbers them.
KINDS = {'uint8_t': 0, 'uint16_t': 1, 'uint32_t': 2, 'double': 3, 'kelp_boolean': 4,
         'kelp_vstring': 5, 'ip_address': 6}
MEMBER_KIND, FLAGS_KIND, OBJECT_KIND = 7, 8, 9
HELD = {'array': 1, 'arm': 2}
_LEFT_OUT = object()

_assign_text = function('kelp_vstring_assign', None, Pointer, U32, Pointer, Text, Size, Pointer)
_end_text = function('kelp_vstring_destroy_internal', None, Pointer, U32, Pointer, I32)
_new_text = function('kelp_vstring_create', Pointer, Pointer, U32)
_new_number = function('u_int32_create', Pointer, Pointer, U32)
_end_number = function('u_int32_destroy', None, Pointer, U32, Pointer)


class Structure:
    """A field's or a row's object. What it shows is in the database: each reading asks it, each
    setting changes it."""
    __slots__ = ('_life', '_address', '_rearranged', '_is_key')

    _name = None      # in C
    _fields = {}      # by name, in order
    _selector = None  # of a choice
    _key = None       # of a row: the field that is its table's key
    _made_plan = None

    def __init__(self, database=None, /, **fields):
        """Makes an object of its own, in a database or, without one, in a private one that the
        package keeps for this; then sets the fields."""
        database = values_database() if database is None else database
        if not isinstance(database, Database):
            raise BadType(self._name, database, 'a Database')
        handle = database._enter(WRITE)
        try:
            life = database._own(*self._make(handle))
            self._bind(life, life.address)
            try:
                self.assign(fields)
            except BaseException:
                life.destroy(handle._pointer, 0, life.address)
                life.gone = 'it could not be made'
                raise
        finally:
            handle._leave()

    @classmethod
    def _make(cls, handle):
        name = cls._name
        address = function(f'{name}_create', Pointer, Pointer, U32)(handle._pointer, 0)
        if not address:
            handle._fail(name, 'making an object')
        return address, function(f'{name}_destroy', None, Pointer, U32, Pointer)

    def _bind(self, life, address, is_key=False, rearranged=None):
        self._life = life
        self._address = address
        self._is_key = is_key
        self._rearranged = rearranged  # of what is in an arm: as the life said then
        return self

    @classmethod
    def _at(cls, life, address, is_key=False, rearranged=None):
        return cls.__new__(cls)._bind(life, address, is_key, rearranged)

    def _begin(self, mode):
        life = self._life
        handle = begin(life, mode)
        if self._rearranged is not None and self._rearranged != life.rearranged:
            handle._leave()
            raise Gone(f'the {self._name}', 'what it was part of has been replaced')
        return handle

    @property
    def database(self):
        """The database that the object is in."""
        return self._life.database

    # --- as a whole ---

    def assign(self, fields):
        """Sets fields: from a mapping, or all that another object has."""
        if isinstance(fields, Structure):
            if fields._fields is not self._fields:
                raise BadType(self._name, fields, f'an object of {self._name}')
            fields = fields._to_assign()
        elif not hasattr(fields, 'items'):
            raise BadType(self._name, fields, 'a mapping of fields, or an object')
        handle = self._begin(WRITE)
        try:
            for name, value in fields.items():
                field = self._fields.get(name)
                if field is None:
                    raise BadValue(f'{self._name}.{name}', value,
                                   f'one of the fields {", ".join(self._fields)}')
                field.assign(self, value)
        finally:
            handle._leave()

    @classmethod
    def _plan(cls):
        """What reads objects of the type as dictionaries."""
        kind = cls._plain_class
        if kind._made_plan is None:
            pieces = tuple(field.piece() for field in kind._fields.values()
                           if field.form not in ('counter', 'reference'))
            selector = kind._fields.get(kind._selector)
            kind._made_plan = _rows.plan(pieces, -1 if selector is None else selector.place)
        return kind._made_plan

    def _to_assign(self):
        return self._read(lambda field: _LEFT_OUT if field.form == 'counter' else
                          field.get_there(self))

    def _read(self, value_of):
        """What value_of gives of each field that the object's variant holds and, in a choice, that
        is selected."""
        handle = self._begin(READ)
        try:
            variant = self.variant
            chosen = None if self._selector is None else int(getattr(self, self._selector))
            read = {}
            for name, field in self._fields.items():
                if field.since > variant or field.selector not in (None, chosen):
                    continue
                value = value_of(field)
                if value is not _LEFT_OUT:
                    read[name] = value
            return read
        finally:
            handle._leave()

    def copy(self, database=None):
        """A new object with the same content. References go along within a database."""
        own = database is None or database is self.database
        fields = self._to_assign() if own else self.to_dict()
        return self._plain_class(self.database if own else database, **fields)

    def to_dict(self):
        """The fields that the object's variant holds, embedded objects as dictionaries; of a choice
        what is selected. References, and the counts of arrays, are left out."""
        handle = self._begin(READ)
        try:
            return _rows.read(self._plan(), self._address) if self._address else {}
        finally:
            handle._leave()

    def to_json(self, **options):
        """to_dict() as JSON: names of members, texts of addresses, hexadecimal octets."""
        return json.dumps(plain(self.to_dict()), **options)

    @classmethod
    def from_dict(cls, fields, database=None):
        """A new object with these fields, as to_dict or a parsed to_json gives them."""
        made = cls._plain_class(database)
        made.assign(fields)
        return made

    @classmethod
    def from_json(cls, text, database=None):
        """A new object with the fields in that JSON."""
        try:
            fields = json.loads(text)
        except ValueError as failure:
            raise BadImage(22, f'found no JSON: {failure}', cls._name) from None
        if not isinstance(fields, dict):
            raise BadType(cls._name, fields, 'an object')
        return cls.from_dict(fields, database)

    @property
    def variant(self):
        """Which variant of its type the object has."""
        handle = self._begin(READ)
        try:
            return Header.from_address(self._address).variant
        finally:
            handle._leave()

    def __repr__(self):
        try:
            shown = ', '.join(f'{name}={value!r}' for name, value in self._read(
                lambda field: _LEFT_OUT if field.form in ('counter', 'reference') else
                field.get_there(self)).items())
        except Error as why:
            shown = why.text
        return f'{type(self).__name__}({shown})'

    def __str__(self):
        return self.to_text()

    def __eq__(self, other):
        return self._compare(other) == 0 if self._is_alike(other) else NotImplemented

    def __lt__(self, other):
        return self._compare(other) < 0 if self._is_alike(other) else NotImplemented

    __hash__ = None

    def _is_alike(self, other):
        return isinstance(other, Structure) and other._fields is self._fields

    def _compare(self, other):
        mine = self._begin(READ)
        try:
            theirs = other._begin(READ)
            try:
                return function(f'{self._name}_compare', I32, Pointer, Pointer)(
                    self._address, other._address)
            finally:
                theirs._leave()
        finally:
            mine._leave()

    # --- images, text, XML ---

    def to_image(self):
        """The object's image, as it goes between processes and machines."""
        return self._written(
            function(f'{self._name}_marshal', U32, Pointer, U32, Pointer, Pointer, I32, Pointer),
            lambda call, handle, buffer, room: call(handle._pointer, 0, buffer, self._address, room,
                                                    handle._err),
            function(f'{self._name}_len', U32, Pointer, U32, Pointer))

    def to_text(self):
        """The object as text, a line for each value."""
        call = function(f'{self._name}_print', U32, Pointer, U32, Pointer, U32, Text, Pointer, U32,
                        Pointer)
        return decoded(self._written(
            call, lambda call, handle, buffer, room: call(
                handle._pointer, 0, buffer, 0, self._name.encode(), self._address, room,
                handle._err), grows=True))

    def to_xml(self):
        """The object as an XML element named after its type."""
        call = function(f'{self._name}_to_xml', U32, Pointer, U32, Text, Pointer, Pointer, U32, U32,
                        Pointer)
        return decoded(self._written(
            call, lambda call, handle, buffer, room: call(
                handle._pointer, 0, self._name.encode(), buffer, self._address, room, 0,
                handle._err)))

    def _written(self, call, write, length=None, grows=False):
        handle = self._begin(READ)
        try:
            room = 1024 if length is None else length(handle._pointer, 0, self._address)
            return written(handle, self._name, call, write, room, grows)
        finally:
            handle._leave()

    @classmethod
    def from_image(cls, image, database=None):
        """A new object from an image, which is checked first. What its references name are tables
        of the writer: they arrive empty."""
        image = checked_image(CHECK_OBJECT, cls._name, image, cls._has_references)
        made = cls._plain_class(database)
        handle = made._begin(WRITE)
        try:
            function(f'{cls._name}_unmarshal', U32, Pointer, U32, Pointer, Pointer, I32, U32,
                     Pointer)(handle._pointer, 0, image, made._address, len(image), 0, handle._err)
            if handle._error.value:
                handle._fail(cls._name, 'reading the image')
            return made
        finally:
            handle._leave()

    @classmethod
    def from_xml(cls, text, database=None):
        """A new object from an XML document, which is checked first."""
        with Document(CHECK_OBJECT, cls._name, text) as document:
            made = cls._plain_class(database)
            handle = made._begin(WRITE)
            try:
                message = ctypes.create_string_buffer(512)
                function(f'{cls._name}_from_xml', None, Pointer, U32, Text, Pointer, Pointer,
                         Pointer, Pointer, I32)(
                    handle._pointer, 0, f'//{cls._name}'.encode(), document, made._address,
                    handle._err, message, 512)
                if handle._error.value:
                    document_failure(handle, cls._name, message)
                return made
            finally:
                handle._leave()

    # --- state bytes ---

    def state_byte(self, field):
        """The state byte of a field, of an object that was made through a tracking handle: 0 not
        written, 2 written. Of an array, that of the whole."""
        return self._state(field, READ, 'get', U8)

    def set_state_byte(self, field, value):
        """Sets the state byte of a field."""
        self._state(field, WRITE, 'set', None, number_of(value, f'{self._name}.{field}', 255))

    def _state(self, name, mode, verb, result, *values):
        field = self._fields.get(name)
        if field is None or field.form == 'counter':
            raise BadValue(self._name, name, 'a field that has a state byte')
        whole = 'whole_' if field.form == 'array' else ''
        handle = self._begin(mode)
        try:
            call = function(f'{self._name}_{name}_state_flag_{whole}{verb}', result, Pointer, U32,
                            Pointer, *[U32] * len(values), Pointer)
            value = call(handle._pointer, 0, self._address, *values, handle._err)
            if handle._error.value:
                handle._fail(field.full_name)
            return value
        finally:
            handle._leave()


_values = None


def values_database():
    """The database of objects that were made without one."""
    global _values
    if _values is None or _values.closed:
        _values = Database(name='values')
    return _values


def written(handle, field, call, write, room, grows=False):
    """What a writer gives, called with more room until it fits. A text that is cut is no failure:
    it grows until there is room left."""
    room += 64
    while True:
        # Behind the room that is told lies what a writer may need for its last word.
        buffer = ctypes.create_string_buffer(b' ' * (room + 64), room + 64)
        length = write(call, handle, buffer, room)
        code = handle._error.value
        if code == 90 and room < 1 << 28 or code == 0 and grows and length + 256 >= room:
            handle._error.value = 0
            room *= 4
            continue
        if code:
            handle._fail(field)
        return buffer.raw[:length]


def _octets(image, name):
    if not isinstance(image, (bytes, bytearray, memoryview)):
        raise BadType(name, image, 'bytes')
    return bytes(image)


def _fault(result):
    return BadImage(22, result.text.decode(errors='replace'), result.path.decode() or None)


def checked_image(kind, name, image, has_references):
    """The image as a reader may have it: looked through, with its references empty. Without a
    reference it is the same bytes."""
    image = _octets(image, name)
    result = CheckResult()
    check = checker('ospf_harbor_check_image', U32, U32, Text, Text, Size, Pointer)
    if check(kind, name.encode(), image, len(image), ctypes.byref(result)):
        raise _fault(result)
    if not has_references:
        return image
    spans = []

    @ImageVisitor
    def visit(span, _):
        piece = span.contents
        if piece.piece in _OID_PIECES:
            spans.append((piece.offset, piece.length))

    checker('ospf_harbor_check_walk', U32, U32, Text, Text, Size, ImageVisitor, Pointer, Pointer)(
        kind, name.encode(), image, len(image), visit, None, None)
    emptied = bytearray(image)
    for offset, length in spans:
        emptied[offset:offset + length] = bytes(length)
    return bytes(emptied)


class Document:
    """An XML document that has been checked, parsed for the length of a block."""

    def __init__(self, kind, name, text):
        if isinstance(text, str):
            text = encoded(text, name)
        text = _octets(text, name)
        result = CheckResult()
        check = checker('ospf_harbor_check_xml', U32, U32, Text, Text, Size, Size, Pointer)
        if check(kind, name.encode(), text, len(text), 0, ctypes.byref(result)):
            raise _fault(result)
        self._text = text

    def __enter__(self):
        message = ctypes.create_string_buffer(512)
        parse = function('kelp_xml_parse', Pointer, Text, Size, Pointer, U32)
        self._document = parse(self._text, len(self._text), message, 512)
        if not self._document:
            raise BadImage(22, message.value.decode(errors='replace'))
        return self._document

    def __exit__(self, *_):
        function('kelp_xml_free', None, Pointer)(self._document)


def document_failure(handle, name, message):
    """Raises what a reader of a document said."""
    text = message.value.decode(errors='replace')
    try:
        handle._fail(name, 'reading the document')
    except Error as failure:
        raise BadImage(failure.code, text or failure.text, name) from None


# --- fields -------------------------------------------------------------------------------------


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
        handle = owner._begin(mode)
        try:
            result = call(handle._pointer, 0, owner._address, *arguments, handle._err)
            if handle._error.value:
                handle._fail(self.full_name)
            return result
        finally:
            handle._leave()

    def __get__(self, owner, kind=None):
        return self if owner is None else self.get(owner)

    def __set__(self, owner, value):
        if owner._is_key or owner._key == self.name:
            if owner._life.table is not None:
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
        handle = owner._begin(READ)
        try:
            return text_at(self._call(owner, READ, self._get))
        finally:
            handle._leave()

    def set(self, owner, value):
        octets = encoded(value, self.full_name)
        handle = owner._begin(WRITE)
        try:
            text = TextField()
            place = ctypes.byref(text)
            _assign_text(handle._pointer, 0, place, octets, len(octets), handle._err)
            try:
                if handle._error.value:
                    handle._fail(self.full_name)
                self._call(owner, WRITE, self._set, place)
            finally:
                _end_text(handle._pointer, 0, place, 0)
        finally:
            handle._leave()

    def as_key(self, value):
        return decoded(encoded(value, self.full_name))


class AddressValue(InPlace):
    def get(self, owner):
        handle = owner._begin(READ)
        try:
            return address_value(ctypes.string_at(self._call(owner, READ, self._get), ADDRESS_SIZE))
        finally:
            handle._leave()

    def set(self, owner, value):
        address = address_of(value, self.full_name)
        handle = owner._begin(WRITE)
        try:
            self._raise_variant(handle, owner)
            # The header goes along: that of the field stays as it is.
            place = self._call(owner, WRITE, self._get)
            ctypes.memmove(ctypes.byref(address), place, _HEADER)
            self._call(owner, WRITE, self._set, ctypes.byref(address))
        finally:
            handle._leave()

    def as_key(self, value):
        return address_value(bytes(address_of(value, self.full_name)))


class Embedded(InPlace):
    """An object within the object. Setting it sets its fields."""

    def get(self, owner):
        address = self._call(owner, READ, self._get)
        return self._model.structures[self.type]._at(owner._life, address, owner._is_key,
                                                     owner._rearranged)

    def set(self, owner, value):
        handle = owner._begin(WRITE)
        try:
            self._raise_variant(handle, owner)
            self.get(owner).assign(value)
        finally:
            handle._leave()


class Array(Field):
    """An array: octets as bytes, numbers and addresses as a list."""

    def __init__(self, owner, row, model):
        super().__init__(owner, row, model)
        self.counter = row['counter']
        self._count = function(f'{owner}_{row["counter"]}_get_value', U32, Pointer, U32, Pointer, Pointer)
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
        handle = owner._begin(READ)
        try:
            count = self._call(owner, READ, self._count)
            if self._of_addresses:
                return [address_value(ctypes.string_at(self._call(owner, READ, self._place, at),
                                                       ADDRESS_SIZE)) for at in range(count)]
            numbers = (self._number * count)()
            if count:
                self._call(owner, READ, self._get_all, ctypes.byref(numbers), count)
            return bytes(numbers) if self.type == 'uint8_t' else list(numbers)
        finally:
            handle._leave()

    def set(self, owner, value):
        if self._of_addresses:
            elements = [address_of(each, self.full_name)
                        for each in sequence_of(value, self.full_name)]
        elif self.type == 'uint8_t':
            elements = octets_of(value, self.full_name)
        else:
            elements = [dotted_number_of(each, self.full_name, self._most)
                        for each in sequence_of(value, self.full_name)]
        handle = owner._begin(WRITE)
        try:
            self._raise_variant(handle, owner)
            self._write(owner, elements)
        finally:
            handle._leave()

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
        handle = owner._begin(READ)
        try:
            address = self._call(owner, READ, self._get)
            if not address or int(getattr(owner, owner._selector)) != self.selector:
                return None
            if self.type == 'kelp_vstring':
                return text_at(address)
            if self.type in NUMBERS:
                return U32.from_address(address).value
            return self._model.structures[self.type]._at(owner._life, address, owner._is_key,
                                                         owner._life.rearranged)
        finally:
            handle._leave()

    def get_there(self, owner):
        value = self.get(owner)
        return _LEFT_OUT if value is None else value

    def set(self, owner, value):
        handle = owner._begin(WRITE)
        try:
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
        finally:
            handle._leave()

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
        if self.type == 'kelp_vstring':
            octets = encoded(value, self.full_name)
            address = _new_text(handle._pointer, 0)
            if address:
                _assign_text(handle._pointer, 0, address, octets, len(octets), handle._err)
                if handle._error.value:
                    _end_text(handle._pointer, 0, address, 1)
                    handle._fail(self.full_name)
        elif self.type in NUMBERS:
            number = number_of(value, self.full_name, 0xFFFFFFFF)
            address = _new_number(handle._pointer, 0)
            if address:
                function('u_int32_set_value', None, Pointer, U32, Pointer, U32, Pointer)(
                    handle._pointer, 0, address, number, handle._err)
        else:
            made = self._model.structures[self.type](owner.database)
            made.assign(value)
            made._life.destroy = None  # the choice owns it
            made._life.gone = 'it is an arm'
            address = made._address
        if not address:
            handle._fail(self.full_name, 'making the arm')
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
        handle = owner._begin(READ)
        try:
            address = self._call(owner, READ, self._get)
            return None if not address else self._model.table_at(owner.database, address)
        finally:
            handle._leave()

    def set(self, owner, value):
        if value is None:
            self._call(owner, WRITE, self._set, None)
            return
        if getattr(value, '_name', None) != self.type:
            raise BadType(self.full_name, value, f'a table {self.type} or None')
        if value.database is not owner.database:
            raise Foreign(f'{self.full_name}: the table')
        handle = value._begin(WRITE)
        try:
            self._call(owner, WRITE, self._set, value._address)
        finally:
            handle._leave()


FORMS = {'scalar': Value, 'enumeration': Value, 'flag set': Value, 'counter': Value,
         'embedded': Embedded, 'array': Array, 'arm': Arm, 'reference': Reference}
IN_PLACE = {'kelp_vstring': TextValue, 'ip_address': AddressValue}


def field_of(owner, row, model):
    kind = IN_PLACE.get(row['type']) if row['form'] == 'scalar' else None
    return (kind or FORMS[row['form']])(owner, row, model)
