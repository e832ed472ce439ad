"""Tables as mappings by key.

A table of the library has no look-up by key: it is a tree that is walked in the order of its keys.
The first look-up of a table here walks it once and keeps where each key is. In a private database
that index follows what is added and ended; in a store it lasts as long as the lock, since other
processes change the store in between.
"""
import collections.abc
import ctypes
import json

from . import _feeds, _rows
from ._database import READ, WRITE, begin, current_tenant
from ._errors import BadType, BadValue, Error, Gone, NoSuchKey
from ._images import CHECK_RECORD, Document, checked_image, document_failure
from ._library import I32, I64, Pointer, TableShell, Text, U32, function
from ._objects import Structure
from ._values import decoded, encoded, number_of, plain

DEFAULT_SOURCE = 1
_are_cursors_enabled = function('kelpdb_table_are_cursors_enabled', U32, Pointer, U32, Pointer,
                                Pointer)
_references = function('kelp_handle_oid_references', I64, Pointer, Pointer)


class Table(collections.abc.MutableMapping):
    """A table: rows by key, in the order of the keys. Keys are numbers (of 32 bits also dotted
    quads), texts, addresses, enumerations, or tuples of these."""
    __slots__ = ('_life', '_address')

    _name = None         # in C
    _row_class = None
    _data_class = None
    _key_class = None    # of a key object beside the data
    _key_fields = ()
    _made_key_plan = None
    __hash__ = None

    def __init__(self, *_, **__):
        raise BadType(self._name, self, 'a table that Database.table() opens')

    @classmethod
    def _of(cls, life):
        table = cls.__new__(cls)
        table._life = life
        table._address = life.address
        return table

    @classmethod
    def _operation(cls, name, result, *arguments):
        return function(f'{cls._name}_{name}', result, Pointer, U32, *arguments)

    @classmethod
    def _prepare(cls):
        """Takes the functions that every walk needs."""
        fields = f'{cls._data_class._name}_get_field'
        cls._get_data = staticmethod(cls._operation(fields, Pointer, Pointer))
        if cls._key_class is not None:
            fields = f'{cls._key_class._name}_get_field'
            cls._get_key = staticmethod(cls._operation(fields, Pointer, Pointer))
        first = f'{cls._key_part}_get_first_not_pending_destroy'
        cls._first = staticmethod(cls._operation(first, Pointer, Pointer, U32, Pointer))
        # source, whether it is the only one, no rows that wait for their end, other keys too
        following = f'{cls._key_part}_get_next_internal'
        cls._next = staticmethod(cls._operation(following, Pointer, Pointer, Pointer, U32, U32, U32,
                                                U32, Pointer))
        cls._count = staticmethod(cls._operation('table_get_count', U32, Pointer))

    # --- opening ---

    @classmethod
    def open(cls, database, name, create=False):
        """The table of that name; with `create` it is made when it is missing."""
        octets = encoded(name, cls._name)
        if not octets or b'\0' in octets:
            raise BadValue(cls._name, name, 'a name')
        with database._enter(WRITE if create else READ) as handle:
            opened = cls._operation('table_open', Pointer, Text, U32, Pointer)(
                handle._pointer, 0, octets, 0 if create else 1, handle._err)
            if handle._error.value not in (0, 2):
                handle._fail(cls._name)
            handle._error.value = 0
            if not opened:
                if create:
                    handle._fail(cls._name, 'making a table')
                raise NoSuchKey(f'found no table named {name!r}', cls._name)
            return cls._of(database._life_of(opened))

    @classmethod
    def make(cls, database):
        """A new table without a name, for a row to refer to."""
        with database._enter(WRITE) as handle:
            made = cls._operation('table_open_auto_id', Pointer, U32, Pointer)(
                handle._pointer, 0, 0, handle._err)
            if not made or handle._error.value:
                handle._fail(cls._name, 'making a table')
            return cls._of(database._life_of(made))

    def _begin(self, mode):
        return begin(self._life, mode)

    @property
    def database(self):
        """The database that the table is in."""
        return self._life.database

    @property
    def name(self):
        """The name that the table was opened by, without its identity; "" of one without a name."""
        with self._begin(READ):
            path = TableShell.from_address(self._address).tbl_name
            return decoded(path.rsplit(b'/', 1)[0])

    def __repr__(self):
        try:
            return f'<Table {self._name} {self.name!r}, {len(self)} rows>'
        except Error as why:
            return f'<Table {self._name}: {why.text}>'

    # --- reading ---

    def __len__(self):
        with self._begin(READ) as handle:
            return self._count(handle._pointer, 0, self._address)

    def __bool__(self):
        return len(self) > 0

    def rows(self, source=DEFAULT_SOURCE):
        """Walks the rows in the order of their keys: those of this thread's tenant and of a
        source, 1 being the default and 0 any but shadow rows."""
        source = self._source(source)
        row = None
        while True:
            with self._begin(READ) as handle:
                if row is not None and row._life.why_gone() is not None:
                    raise Gone(f'a walk of {self._name}', 'the row where it stands has been ended')
                row = self._step(handle, row, source)
            if row is None:
                return
            yield row

    def _source(self, source):
        return number_of(source, f'{self._name}: source', 255)

    def _step(self, handle, row, source):
        if row is None:
            record = self._first(handle._pointer, 0, self._address, source, handle._err)
        else:
            record = self._next(handle._pointer, 0, self._address, row._life.address, source,
                                source != 0, 1, 0, handle._err)
        if handle._error.value:
            handle._fail(self._name)
        return None if not record else self._row(handle, record)

    def _row(self, handle, record):
        life = self.database._life_of(record)
        life.table = self._life
        data = self._get_data(handle._pointer, 0, record)
        return self._row_class._at(life, data or 0)

    def __iter__(self):
        for row in self.rows():
            yield self._key_of(row)

    def values(self):
        """The rows, in the order of their keys."""
        return self.rows()

    def items(self):
        """Pairs of key and row."""
        return ((self._key_of(row), row) for row in self.rows())

    def keys(self):
        """The keys, in their order."""
        return iter(self)

    @classmethod
    def _key_of(cls, row):
        """The key as it stands in the index: plain and hashable."""
        if cls._key_class is None:
            return row.key
        key = row.key
        return tuple(getattr(key, name) for name in cls._key_fields)

    def _wanted(self, key):
        """A key as somebody wrote it, as it stands in the index."""
        if self._key_class is None:
            return self._data_class._fields[self._data_key].as_key(key)
        if isinstance(key, self._key_class):
            return tuple(getattr(key, name) for name in self._key_fields)
        if isinstance(key, collections.abc.Mapping) and set(key) == set(self._key_fields):
            key = tuple(key[name] for name in self._key_fields)
        if not isinstance(key, tuple) or len(key) != len(self._key_fields):
            raise BadType(self._name, key, f'a tuple of {", ".join(self._key_fields)}')
        return tuple(self._key_class._fields[name].as_key(part)
                     for name, part in zip(self._key_fields, key))

    def _index(self, handle):
        life = self._life
        tenant = current_tenant()
        if life.index is None or life.index[0] != tenant:
            records = []
            rows = self._read(handle, self._key_plan(), records)
            keys = (row.get(self._data_key) if self._key_class is None
                    else tuple(row['key'].values()) if 'key' in row else None for row in rows)
            life.index = (tenant, dict(zip(keys, records)))
        return life.index[1]

    @classmethod
    def _key_plan(cls):
        """Reads of the data objects what keys are made of."""
        if cls._made_key_plan is None:
            fields = cls._data_class._fields
            cls._made_key_plan = _rows.plan(
                () if cls._key_class else (fields[cls._data_key].piece(),), -1)
        return cls._made_key_plan

    def _read(self, handle, plan, records=None):
        """All rows as dictionaries; their records go into the list."""
        key = None if self._key_class is None else self._key_class._plan()
        rows = _rows.rows(address_of_function(self._first), address_of_function(self._next),
                          handle._pointer, self._address, ctypes.addressof(handle._error),
                          DEFAULT_SOURCE, plan, key, records)
        if handle._error.value:
            handle._fail(self._name)
        return rows

    def __getitem__(self, key):
        wanted = self._wanted(key)
        with self._begin(READ) as handle:
            record = self._index(handle).get(wanted)
            if record is None:
                raise NoSuchKey(f'found no row with the key {key!r}', self._name)
            return self._row(handle, record)

    def __contains__(self, key):
        try:
            self[key]
        except (NoSuchKey, BadValue, BadType):
            return False
        return True

    def __eq__(self, other):
        if not isinstance(other, Table):
            return NotImplemented
        return self._life is other._life

    def first(self):
        """The row with the lowest key, None in an empty table."""
        return next(self.rows(), None)

    def to_dicts(self, tables=False):
        """The rows as dictionaries, in their order; a key object as "key". With `tables` each
        reference has the rows of its table. Reads the objects at their places, without a call for
        each field."""
        with self._begin(READ) as handle:
            records = [] if tables else None
            rows = self._read(handle, self._data_class._plan(), records)
            for record, fields in zip(records or (), rows):
                self._add_tables(self._row(handle, record), fields)
            return rows

    @staticmethod
    def _add_tables(row, fields):
        """Adds what the row refers to."""
        for field in row._fields.values():
            if field.form == 'reference' and row._address and field.since <= row.variant:
                below = field.get(row)
                if below is not None:
                    fields[field.name] = below.to_dicts(True)

    def to_json(self, tables=False, **options):
        """to_dicts() as JSON."""
        return json.dumps(plain(self.to_dicts(tables)), **options)

    def to_frame(self):
        """The rows as a pandas DataFrame, a column for each field: what is embedded, and the key
        object, with a dot between the names. Needs pandas."""
        try:
            import pandas
        except ImportError:
            raise Error(95, 'found no pandas, which frames are of', self._name) from None
        return pandas.DataFrame.from_records([dict(flattened(row)) for row in self.to_dicts()])

    # --- changing ---

    def add(self, fields=None, /, *, key=None, source=DEFAULT_SOURCE, **more):
        """Makes a row from fields (a mapping or an object) and `more`, and enters it; gives it. What
        is not given is as in a new object, but that an interface has no authentication selected and
        a neighbour is down. A table whose rows have a key object takes `key`, a tuple or a mapping.
        17 when the key is there already: nothing is changed then."""
        fields = {} if fields is None else fields
        if isinstance(fields, collections.abc.Mapping) and self._key_class is not None:
            fields = dict(fields)
            key = fields.pop('key', key)
        if (key is None) != (self._key_class is None):
            raise BadValue(self._name, key, 'a key for a table whose rows have a key object, and '
                           'no other')
        source = self._source(source)
        with self._begin(WRITE) as handle:
            create = self._operation('create_record_w_src', Pointer, U32, Pointer)
            record = handle._new(self._name, 'making a row', create, source, handle._err)
            try:
                self._fill(handle, record, fields, key, more)
                return self._enter_record(handle, record)
            except BaseException:
                self._destroy_record(handle, record)
                raise

    def _fill(self, handle, record, fields, key, more):
        if self._key_class is not None:
            parts = dict(zip(self._key_fields, self._wanted(key)))
            self._place(handle, record, self._key_class(self.database, **parts))
        data = self._data_class(self.database)
        self._place(handle, record, data)
        data.assign({name: value for name, value in data._completion.items()
                     if data._fields[name].since <= data.variant})
        data.assign(fields)
        data.assign(more)

    def _place(self, handle, record, made):
        """Gives the record the object, which it owns from then on."""
        self._operation(f'{made._name}_set_field', None, Pointer, Pointer)(
            handle._pointer, 0, record, made._address)
        get = self._operation(f'{made._name}_get_field', Pointer, Pointer)
        if get(handle._pointer, 0, record) != made._address:
            handle._fail(self._name, 'placing an object in a row')
        made._life.destroy = None

    def _enter_record(self, handle, record):
        self._operation('insert', None, Pointer, Pointer, Pointer)(
            handle._pointer, 0, self._address, record, handle._err)
        if handle._error.value:
            handle._fail(self._name, 'entering a row')
        row = self._row(handle, record)
        if self._life.index is not None and row.source == DEFAULT_SOURCE:
            if self._life.index[0] == current_tenant():
                self._life.index[1][self._key_of(row)] = record
            else:
                self._life.index = None
        return row

    def _destroy_record(self, handle, record):
        handle._error.value = 0
        self._operation('destroy_record', None, Pointer, Pointer)(handle._pointer, 0, record,
                                                                  handle._err)
        handle._error.value = 0

    def __setitem__(self, key, fields):
        """Gives the row of that key these fields, or adds one."""
        wanted = self._wanted(key)
        with self._begin(WRITE) as handle:
            if wanted in self._index(handle):
                self[key].assign(fields)
            elif self._key_class is not None:
                self.add(fields, key=wanted)
            else:
                if isinstance(fields, Structure):
                    fields = fields._to_assign()
                self.add({**fields, self._data_key: wanted})

    def __delitem__(self, key):
        """Ends the row of that key, with what is below it."""
        self[key].end()

    _ASKED_FOR = object()

    def pop(self, key, default=_ASKED_FOR):
        """Ends the row of that key and gives what its fields were."""
        with self._begin(WRITE) as handle:
            if default is not self._ASKED_FOR and key not in self:
                return default
            row = self[key]
            fields = row.to_dict()
            self._end_row(handle, row)
            return fields

    def popitem(self):
        """Ends the row with the lowest key; gives the key and what its fields were."""
        with self._begin(WRITE):
            row = self.first()
            if row is None:
                raise NoSuchKey('found no row', self._name)
            key = self._key_of(row)
            return key, self.pop(key)

    def setdefault(self, key, default=None):
        """The row of that key, made of these fields when it is not there."""
        with self._begin(WRITE):
            if key not in self:
                self[key] = {} if default is None else default
            return self[key]

    def clear(self):
        """Ends all rows that a walk shows, with what is below them."""
        with self._begin(WRITE) as handle:
            for row in list(self.rows(0)):
                if row._life.gone is None:
                    self._end_row(handle, row)

    def free(self):
        """Ends the table, which is empty (16 when it is not); 11 when a row refers to it."""
        with self._begin(WRITE) as handle:
            if self._holds():
                raise Error(16, f'found {self._holds()} rows, expected none, of whatever tenant and '
                            'source: clear() it first', self._name)
            name = 'request_table_free' if self._has_cursors(handle) else 'table_free'
            self._operation(name, None, Pointer, Pointer)(handle._pointer, 0, self._address,
                                                          handle._err)
            if handle._error.value:
                handle._fail(self._name, 'freeing a table')
            self.database._end_life(self._address)

    def follow(self):
        """Marks the table to be followed: readers hear of rows that come and go from then on, and of
        others by `tell_changed`. Rows that go stay until `Database.collect()`."""
        _feeds.follow(self)

    def feed(self):
        """A reader of what changes in a table that is followed, 22 in another one."""
        return _feeds.Feed(self)

    def tell_changed(self, key):
        """Has readers hear of the row of that key, whose fields were set."""
        _feeds.tell_changed(self, self[key])

    def _holds(self):
        return TableShell.from_address(self._address).record_count

    def _has_cursors(self, handle):
        return bool(_are_cursors_enabled(handle._pointer, 0, self._address, handle._err))

    def _end_row(self, handle, row):
        for field in row._fields.values():
            if field.form == 'reference' and row._address and field.since <= row.variant:
                self._end_below(handle, row, field)
        index = self._life.index
        if index is not None:
            if index[1].get(self._key_of(row)) == row._life.address:
                del index[1][self._key_of(row)]
        if self._has_cursors(handle):
            call = self._operation('request_record_destroy', None, Pointer, Pointer, Pointer)
            call(handle._pointer, 0, self._address, row._life.address, handle._err)
        else:
            call = self._operation('destroy_record', None, Pointer, Pointer)
            call(handle._pointer, 0, row._life.address, handle._err)
        self.database._end_life(row._life.address)
        if handle._error.value:
            handle._fail(self._name, 'ending a row')

    def _end_below(self, handle, row, field):
        """Gives up a reference, and ends its table when this was the last. One that names nothing
        here is emptied."""
        try:
            table = field.get(row)
        except Error:
            table = None
        last = table is not None and _references(handle._pointer, table._address) <= 1
        if last:
            table.clear()
        field.set(row, None)
        if last and not table._holds():
            table.free()

    # --- images and XML ---

    def add_image(self, image):
        """Reads a row's image (to_record_image), which is checked first, and enters the row; its
        references arrive empty."""
        image = checked_image(CHECK_RECORD, self._name, image, self._data_class._has_references)
        read = self._operation('table_record_unmarshal', U32, Pointer, Pointer, I32, U32, Pointer)
        with self._begin(WRITE) as handle:
            record = Pointer()
            read(handle._pointer, 0, ctypes.byref(record), image, len(image), 0, handle._err)
            return self._enter_read(handle, record.value, lambda: handle._fail(self._name))

    def add_xml(self, text):
        """Reads a row's XML (to_record_xml), which is checked first, and enters the row."""
        read = self._operation('table_record_from_xml', Pointer, Pointer, Pointer, Pointer, I32)
        with Document(CHECK_RECORD, self._name, text) as document:
            with self._begin(WRITE) as handle:
                message = ctypes.create_string_buffer(512)
                record = read(handle._pointer, 0, document, handle._err, message, 512)
                return self._enter_read(handle, record,
                                        lambda: document_failure(handle, self._name, message))

    def _enter_read(self, handle, record, fail):
        try:
            if handle._error.value or not record:
                fail()
            return self._enter_record(handle, record)
        except BaseException:
            if record:
                self._destroy_record(handle, record)
            raise


def address_of_function(call):
    return ctypes.cast(call, Pointer).value


def flattened(fields, before=''):
    for name, value in fields.items():
        if isinstance(value, dict):
            yield from flattened(value, f'{before}{name}.')
        else:
            yield before + name, value
