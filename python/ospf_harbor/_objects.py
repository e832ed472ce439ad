"""Objects: the class that all structures of the model derive from."""
import ctypes
import json

from . import _rows
from ._database import READ, WRITE, Database, begin
from ._errors import BadImage, BadType, BadValue, Error, Gone
from ._fields import LEFT_OUT
from ._images import CHECK_OBJECT, Document, checked_image, document_failure, written
from ._library import Header, I32, Pointer, Text, U8, U32, function
from ._values import decoded, number_of, plain


class Structure:
    """A field's or a row's object. What it shows is in the database: each reading asks it, each
    setting changes it."""
    __slots__ = ('_life', '_address', '_rearranged', '_is_key')

    _name = None      # in C
    _fields = {}      # by name, in order
    _selector = None  # of a choice
    _key = None       # of a row: the field that is its table's key
    _made_plan = None
    _completion = {}  # what a row's object is given before its fields

    def __init__(self, database=None, /, **fields):
        """Makes an object of its own, in a database or, without one, in a private one that the
        package keeps for this; then sets the fields."""
        database = values_database() if database is None else database
        if not isinstance(database, Database):
            raise BadType(self._name, database, 'a Database')
        with database._enter(WRITE) as handle:
            life = database._own(*self._make(handle))
            self._bind(life, life.address)
            try:
                self.assign(fields)
            except BaseException:
                life.destroy(handle._pointer, 0, life.address)
                life.gone = 'it could not be made'
                raise

    @classmethod
    def _make(cls, handle):
        name = cls._name
        create = function(f'{name}_create', Pointer, Pointer, U32)
        address = handle._new(name, 'making an object', create)
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
        call = begin(life, mode)
        if self._rearranged is not None and self._rearranged != life.rearranged:
            call.handle._leave()
            raise Gone(f'the {self._name}', 'what it was part of has been replaced')
        return call

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
        with self._begin(WRITE):
            for name, value in fields.items():
                field = self._fields.get(name)
                if field is None:
                    raise BadValue(f'{self._name}.{name}', value,
                                   f'one of the fields {", ".join(self._fields)}')
                field.assign(self, value)

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
        return self._read(lambda field: LEFT_OUT if field.form == 'counter' else
                          field.get_there(self))

    def _read(self, value_of):
        """What value_of gives of each field that the object's variant holds and, in a choice, that
        is selected."""
        with self._begin(READ):
            variant = self.variant
            chosen = None if self._selector is None else int(getattr(self, self._selector))
            read = {}
            for name, field in self._fields.items():
                if field.since > variant or field.selector not in (None, chosen):
                    continue
                value = value_of(field)
                if value is not LEFT_OUT:
                    read[name] = value
            return read

    def copy(self, database=None):
        """A new object with the same content. References go along within a database."""
        own = database is None or database is self.database
        fields = self._to_assign() if own else self.to_dict()
        return self._plain_class(self.database if own else database, **fields)

    def to_dict(self):
        """The fields that the object's variant holds, embedded objects as dictionaries; of a choice
        what is selected. References, and the counts of arrays, are left out."""
        with self._begin(READ):
            return _rows.read(self._plan(), self._address) if self._address else {}

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
        with self._begin(READ):
            return Header.from_address(self._address).variant

    def __repr__(self):
        try:
            shown = ', '.join(f'{name}={value!r}' for name, value in self._read(
                lambda field: LEFT_OUT if field.form in ('counter', 'reference') else
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
        with self._begin(READ):
            with other._begin(READ):
                return function(f'{self._name}_compare', I32, Pointer, Pointer)(
                    self._address, other._address)

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
        with self._begin(READ) as handle:
            room = 1024 if length is None else length(handle._pointer, 0, self._address)
            return written(handle, self._name, call, write, room, grows)

    @classmethod
    def from_image(cls, image, database=None):
        """A new object from an image, which is checked first. What its references name are tables
        of the writer: they arrive empty."""
        image = checked_image(CHECK_OBJECT, cls._name, image, cls._has_references)
        made = cls._plain_class(database)
        with made._begin(WRITE) as handle:
            function(f'{cls._name}_unmarshal', U32, Pointer, U32, Pointer, Pointer, I32, U32,
                     Pointer)(handle._pointer, 0, image, made._address, len(image), 0, handle._err)
            if handle._error.value:
                handle._fail(cls._name, 'reading the image')
            return made

    @classmethod
    def from_xml(cls, text, database=None):
        """A new object from an XML document, which is checked first."""
        with Document(CHECK_OBJECT, cls._name, text) as document:
            made = cls._plain_class(database)
            with made._begin(WRITE) as handle:
                message = ctypes.create_string_buffer(512)
                function(f'{cls._name}_from_xml', None, Pointer, U32, Text, Pointer, Pointer,
                         Pointer, Pointer, I32)(
                    handle._pointer, 0, f'//{cls._name}'.encode(), document, made._address,
                    handle._err, message, 512)
                if handle._error.value:
                    document_failure(handle, cls._name, message)
                return made

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
        with self._begin(mode) as handle:
            call = function(f'{self._name}_{name}_state_flag_{whole}{verb}', result, Pointer, U32,
                            Pointer, *[U32] * len(values), Pointer)
            value = call(handle._pointer, 0, self._address, *values, handle._err)
            if handle._error.value:
                handle._fail(field.full_name)
            return value


_values = None


def values_database():
    """The database of objects that were made without one."""
    global _values
    if _values is None or _values.closed:
        _values = Database(name='values')
    return _values
