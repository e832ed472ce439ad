"""Rows: objects that are in a table, with the key by which it has them."""
from ._database import READ, WRITE
from ._errors import BadType, BadValue, Error, Gone
from ._library import I32, Pointer, RecordShell, U32
from ._objects import Structure
from ._values import decoded


class Row(Structure):
    """A row: the object that it holds, with its fields, and the key by which its table has it."""
    __slots__ = ()
    _table = None  # the class of its table

    def __init__(self, *_, **__):
        raise BadType(self._table._name, self, 'a row made by add() of its table')

    @property
    def key(self):
        """The key: a value, or in a table whose rows have a key object that object."""
        table = self._table
        if table._key_class is None:
            return getattr(self, self._key)
        with self._begin(READ) as handle:
            address = table._get_key(handle._pointer, 0, self._life.address)
            if not address:
                raise Gone(f'the key of a row of {table._name}', 'the row has none')
            return table._key_class._at(self._life, address, True)

    @property
    def table(self):
        """The table that the row is in."""
        with self._begin(READ):
            return self._table._of(self._life.table)

    @property
    def source(self):
        """The source that the row came from: 1 is the default, 255 marks a shadow row."""
        with self._begin(READ):
            return RecordShell.from_address(self._life.address).src

    def add_table(self, field):
        """Makes a table for a reference of the row to point at, which has none yet; gives it."""
        reference = self._fields.get(field)
        if reference is None or reference.form != 'reference':
            raise BadValue(self._name, field, 'a field that refers to a table')
        with self._begin(WRITE):
            if reference.get(self) is not None:
                raise Error(17, 'found a table there, expected none', reference.full_name)
            table = reference._model.tables[reference.type].make(self.database)
            try:
                reference.set(self, table)
            except BaseException:
                table.free()
                raise
            return table

    def end(self):
        """Takes the row out of its table and ends it, and with it the tables that nothing else
        refers to, with their rows."""
        with self._begin(WRITE) as handle:
            self._table._of(self._life.table)._end_row(handle, self)

    def to_record_image(self):
        """The image of the row as a whole, with its key and the identity of its table."""
        table = self._table
        return self._written(
            table._operation('table_record_marshal', U32, Pointer, Pointer, I32, Pointer),
            lambda call, handle, buffer, room: call(handle._pointer, 0, buffer, self._life.address,
                                                    room, handle._err))

    def to_record_xml(self):
        """The row as an XML element named after its table."""
        table = self._table
        return decoded(self._written(
            table._operation('table_record_to_xml', U32, Pointer, Pointer, I32, Pointer),
            lambda call, handle, buffer, room: call(handle._pointer, 0, buffer, self._life.address,
                                                    room, handle._err)))
