"""Feeds: what changes in a table, as one reader is shown it."""
import ctypes
import enum
import time
import typing

from ._database import READ, WRITE, Life
from ._errors import Closed, Error, WrongThread
from ._library import I32, Pointer, U32, U64, checked, function

_open = function('kelp_feed_cursor_open', Pointer, Pointer, Pointer, Pointer)
_next = function('kelp_feed_cursor_next', I32, Pointer, Pointer)
_close = function('kelp_feed_cursor_close', None, Pointer)
_wait = function('kelp_feed_wait', I32, Pointer, Pointer, U32, Pointer)
_follow = function('kelp_table_enable_cursors', I32, Pointer, Pointer, U32, Pointer)
_changed = function('kelp_feed_record_changed', I32, Pointer, Pointer, Pointer, Pointer)
_TIMED_OUT = 110
_STEP = 0.5  # seconds that are slept at once: a signal is heard between


class ChangeKind(enum.IntEnum):
    """What happened to a row, as a reader sees it."""
    INSERTED = 1
    MODIFIED = 2
    DESTROYED = 3


class Change(typing.NamedTuple):
    """A row that came, changed or went: its key, and its fields as dictionaries."""
    kind: ChangeKind
    key: object
    fields: dict


class _Found(ctypes.Structure):
    _fields_ = [('table', Pointer), ('record', Pointer), ('kind', U32), ('sequence', U64)]


class Feed:
    """One reader of a table that is followed: begins in front of everything, so that each row that is
    there comes as inserted first. `Table.feed()` makes it; it is used by the thread that made it."""

    def __init__(self, table):
        self._cursor = None
        self._database = table.database
        self._kind = type(table)
        with table._begin(READ) as handle:
            self._thread = handle._thread
            self._cursor, _ = checked(_open, handle._pointer, table._address)
        self._database._feeds.add(self)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __del__(self):
        self._end()

    def _end(self):
        cursor, self._cursor = getattr(self, '_cursor', None), None
        if cursor is not None and self._database._pointer is not None:
            _close(cursor)

    def close(self):
        """Ends the reader, which holds back rows that went; an ended one is passed over."""
        self._end()

    def _here(self):
        """The thread's handle, when the feed can be used here."""
        if self._cursor is None:
            raise Closed('the feed')
        handle = self._database._thread_handle()
        if handle._thread != self._thread:
            raise WrongThread('the feed')
        return handle

    def changes(self):
        """The changes since the last look, each row once. In a store within `with database.read():`."""
        self._here()
        told = []
        found = _Found()
        with self._database._enter(READ) as handle:
            while _next(self._cursor, ctypes.byref(found)):
                told.append(self._told(handle, found))
        return told

    def _told(self, handle, found):
        kind = self._kind
        life = Life(self._database, found.record, handle._findings)
        row = kind._row_class._at(life, kind._get_data(handle._pointer, 0, found.record) or 0)
        return Change(ChangeKind(found.kind), kind._key_of(row), row.to_dict())

    def wait(self, seconds=None):
        """Sleeps until there is a change, or for so long, and tells whether there is. Under no lock."""
        handle = self._here()
        end = None if seconds is None else time.monotonic() + seconds
        while True:
            left = _STEP if end is None else max(0, min(_STEP, end - time.monotonic()))
            try:
                checked(_wait, handle._pointer, self._cursor, int(left * 1000))
                return True
            except Error as failure:
                if failure.code != _TIMED_OUT:
                    raise
            if end is not None and time.monotonic() >= end:
                return False


def follow(table):
    """Marks the table to be followed."""
    with table._begin(WRITE) as handle:
        checked(_follow, handle._pointer, table._address, 1)


def tell_changed(table, row):
    """Has readers hear of a row whose fields were set."""
    with table._begin(WRITE) as handle:
        checked(_changed, handle._pointer, table._address, row._life.address)
