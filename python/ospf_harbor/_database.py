"""Databases, handles and locks, and what is known of everything that was found in a database.

A thread reaches a database through a handle: one of its own that is made when it first asks, or one
that it made by `Database.handle`. Whatever is read takes the read lock, and whatever is changed the
write lock, for as long as the call lasts; `with database.read():` and `with database.write():` hold
a lock over many calls. A store has to be touched within one of these: what was found under a lock
of a store is gone when the lock is given up, since other processes may change it then.
"""
import ctypes
import os
import threading
import weakref
from collections import deque

from ._errors import BadValue, Closed, Error, Gone, LockNeeded, NoSuchKey, WrongThread
from ._library import (CollectorReport, DatabaseOptions, HandleOptions, I32, KelpError,
                       MemoryStatistics, Pointer, StoreOptions, Text, U16, U32, checked, function)
from ._values import encoded, number_of

READ, WRITE = 1, 2
TREE = 'ospf'  # the name of the root's table
LEFT_UNDER_A_LOCK = 'found under a lock of a store that has been given up'

_lock = {READ: function('kelp_lock_read', I32, Pointer, Pointer),
         WRITE: function('kelp_lock_write', I32, Pointer, Pointer)}
_unlock = function('kelp_unlock', I32, Pointer, Pointer)
_rollback = function('kelp_rollback', I32, Pointer, Pointer)
_last_error = function('kelp_handle_last_error', I32, Pointer, Pointer)
_clear_last_error = function('kelp_clear_last_error', None, Pointer)
_destroy_handle = function('kelp_handle_destroy', None, Pointer)
_set_tenant = function('kelp_tenant_set', None, U16)
_get_tenant = function('mt_get_tenant_id', None, Pointer)


def current_tenant():
    tenant = U16()
    _get_tenant(ctypes.byref(tenant))
    return tenant.value


class Findings:
    """What was found in a private database, or under one lock of a store: why it is gone, all at
    once."""
    __slots__ = ('gone',)

    def __init__(self):
        self.gone = None


class Life:
    """What is known of one object, record or table: whether it is still there. Everything that
    Python has of it shares one of these."""
    __slots__ = ('database', 'address', 'findings', 'gone', 'destroy', 'table', 'rearranged',
                 'index', '__weakref__')

    def __init__(self, database, address, findings, destroy=None):
        self.database = database
        self.address = address
        self.findings = findings
        self.gone = None       # why it is no longer there
        self.destroy = destroy  # of an object that nothing in the database owns
        self.table = None      # the life of the table that a record is in
        self.rearranged = 0    # rises when what an object points at is replaced
        self.index = None      # of a table: records by key

    def why_gone(self):
        """Why it is no longer there, None while it is."""
        return self.gone or self.findings.gone

    def __del__(self):
        # Whoever changes the database next ends it; this may be any thread, within any call.
        if self.destroy is not None and self.gone is None:
            self.database._abandoned.append((self.findings, self.destroy, self.address))


class Call:
    """The length of a call, as a context that gives the handle; they may be within each other."""
    __slots__ = ('handle',)

    def __init__(self, handle):
        self.handle = handle

    def __enter__(self):
        return self.handle

    def __exit__(self, *_):
        self.handle._leave()


class Handle:
    """A thread's way into a database, with a tenant, state tracking and variants of its own. Made
    by `Database.handle`; used by the thread that made it."""

    def __init__(self, database, tenant=None, state_tracking=None, variants=None):
        options = HandleOptions()
        function('kelp_handle_options_init', None, Pointer)(ctypes.byref(options))
        if state_tracking is not None:
            options.state_tracking = 1 if state_tracking else 2
        if tenant is not None:
            options.tenant = number_of(tenant, 'tenant', 65535)
        self._pointer = None
        self.database = database
        self._thread = threading.get_ident()
        self._has_tenant = tenant is not None
        self._lock = 0
        self._depth = 0
        self._error = U32()
        self._err = ctypes.byref(self._error)
        # Of a store: what is found under the lock that the handle holds.
        self._lives = weakref.WeakValueDictionary() if database.is_store else database._lives
        self._findings = Findings() if database.is_store else database._findings
        create = function('kelp_handle_create', Pointer, Pointer, Pointer, Pointer)
        before = current_tenant()  # which making a handle changes
        self._pointer, _ = checked(create, database._open_pointer(), ctypes.byref(options))
        _set_tenant(before)
        database._handles.add(self)
        set_variant = function('kelp_handle_set_variant', I32, Pointer, Text, I32, Pointer)
        for name, variant in (variants or {}).items():
            checked(set_variant, self._pointer, encoded(name, 'variants'),
                    number_of(variant, f'variant of {name}', 127))

    def __del__(self):
        self._destroy()

    def _destroy(self):
        if getattr(self, '_pointer', None) is not None:
            pointer, self._pointer = self._pointer, None
            if self.database._pointer is not None:
                if self._lock and self.database.is_store:  # of a thread that ended with it
                    self._findings.gone = LEFT_UNDER_A_LOCK
                _destroy_handle(pointer)

    def read(self):
        """The read lock, as a context: others may read, nobody changes anything."""
        return Lock(self.database, READ, self)

    def write(self):
        """The write lock, as a context. In a store it is a transaction, which is undone when the
        block raises."""
        return Lock(self.database, WRITE, self)

    def close(self):
        """Ends the handle; an ended one is passed over."""
        self._check_thread()
        if self._depth:
            raise Error(16, 'the handle holds a lock')
        self._destroy()

    def __repr__(self):
        return f'<Handle of {self.database!r}>'

    def _check_thread(self):
        if self._thread != threading.get_ident():
            raise WrongThread('the handle')

    def _take(self, mode):
        error = KelpError()
        tenant = current_tenant() if self._has_tenant else None
        if _lock[mode](self._pointer, ctypes.byref(error)):
            raise Error(error.code, error.text.decode(errors='replace'))
        self._lock, self._tenant_before = mode, tenant
        if mode == WRITE:
            self.database._end_abandoned(self)

    def _give_up(self, undo):
        """Ends the lock. In a store all that was found under it is gone."""
        database = self.database
        if database.is_store and self._lock == WRITE:
            database._end_unplaced(self)
        give_up = _rollback if undo and database.is_store and self._lock == WRITE else _unlock
        self._lock = 0
        if database.is_store:
            self._findings.gone = LEFT_UNDER_A_LOCK
            self._findings = Findings()
            self._lives.clear()
        error = KelpError()
        give_up(self._pointer, ctypes.byref(error))
        if self._tenant_before is not None:
            _set_tenant(self._tenant_before)
        if error.code:
            raise Error(error.code, error.text.decode(errors='replace'))

    def _leave(self):
        """Ends a call that `Database._enter` began."""
        self._depth -= 1
        if self._depth == 0:
            self._give_up(False)

    def _new(self, field, what, call, *arguments):
        """Calls what makes something, and has no error word: what it leaves in the handle says why
        it gave none, so nothing older may stand there."""
        _clear_last_error(self._pointer)
        made = call(self._pointer, 0, *arguments)
        if not made:
            self._fail(field, what)
        return made

    def _fail(self, field=None, what='a call'):
        """Raises what the last call left in the error word or in the handle."""
        code, self._error.value = self._error.value, 0
        error = KelpError()
        _last_error(self._pointer, ctypes.byref(error))
        code = code or error.code or 22
        text = error.text.decode(errors='replace') if error.code == code else ''
        raise Error(code, text or f'{what} failed: {os.strerror(code)}', field)


class Lock:
    """A lock for the length of a block; it may stand within a block of the same thread that has
    it already."""

    def __init__(self, database, mode, handle=None):
        self._database = database
        self._mode = mode
        self._asked = handle
        self._handle = None

    def __enter__(self):
        if self._handle is not None:
            raise Error(35, 'the lock is held already; ask for one for each block')
        database = self._database
        if self._asked is not None:
            self._asked._check_thread()
            database._open_pointer()
            if self._asked._pointer is None:
                raise Closed('the handle')
        self._before = getattr(database._local, 'handle', None)
        if self._asked is not None:
            database._local.handle = self._asked
        try:
            self._handle = database._enter(self._mode, True).handle
        except BaseException:
            self._restore()
            raise
        return database

    def _restore(self):
        if self._asked is not None:
            self._database._local.handle = self._before
            if self._before is None:
                del self._database._local.handle

    def __exit__(self, kind, error, trace):
        handle = self._handle
        if handle is None:
            raise Error(1, 'the lock is not held')
        handle._check_thread()
        self._handle = None
        try:
            handle._depth -= 1
            if handle._depth == 0:
                handle._give_up(kind is not None)
        finally:
            self._restore()


class Database:
    """A database in the memory of this process, or with a path the store in that file.

    Of a store: `read_only`; `create`, whether a missing file is made; `power`, whether commits of a
    new one survive a loss of power; `reserve`, the bytes that a new one can grow to; `wait_ms`, how
    long a lock is waited for. Of a private database: `name`, for messages; `memory_limit` in bytes;
    `shared`, whether it follows the rules of a shared one."""

    def __init__(self, path=None, *, name='python', read_only=False, create=True, power=False,
                 reserve=None, wait_ms=None, memory_limit=0, shared=False):
        self._pointer = None
        self._local = threading.local()
        self._handles = weakref.WeakSet()
        self._lives = weakref.WeakValueDictionary()  # of a private one: records, tables by address
        self._findings = Findings()
        self._unplaced = weakref.WeakSet()           # objects that nothing in the database owns
        self._abandoned = deque()
        self._feeds = weakref.WeakSet()
        for option, number in (('reserve', reserve), ('wait_ms', wait_ms),
                               ('memory_limit', memory_limit)):
            if number is not None:
                number_of(number, option, 0xFFFFFFFF if option == 'wait_ms' else (1 << 63) - 1)
        self.is_store = path is not None
        self.path = os.fspath(path) if self.is_store else None
        self.name = self.path if self.is_store else name
        if self.is_store:
            options = StoreOptions()
            function('kelp_store_options_init', None, Pointer)(ctypes.byref(options))
            options.read_only, options.create = bool(read_only), bool(create)
            options.durability = bool(power)
            if reserve is not None:
                options.reserved_bytes = reserve
            if wait_ms is not None:
                options.wait_ms = wait_ms
            opened = function('kelp_database_open_file', Pointer, Text, Pointer, Pointer)
        else:
            options = DatabaseOptions()
            function('kelp_database_options_init', None, Pointer)(ctypes.byref(options))
            options.memory_limit, options.marked_shared = memory_limit, bool(shared)
            opened = function('kelp_database_open_private', Pointer, Text, Pointer, Pointer)
        name = os.fsencode(self.path) if self.is_store else encoded(name, 'name')
        if b'\0' in name:
            raise BadValue('name', name, 'a name without NUL')
        self._pointer, _ = checked(opened, name, ctypes.byref(options))

    def __repr__(self):
        closed = ', closed' if self._pointer is None else ''
        return f'<Database {self.name!r}{closed}>'

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __del__(self):
        if getattr(self, '_pointer', None) is not None:
            for feed in list(self._feeds):
                feed._end()
            for handle in list(self._handles):
                handle._destroy()
            function('kelp_database_close', I32, Pointer, Pointer)(self._pointer, None)
            self._pointer = None

    @property
    def closed(self):
        """Whether the database has been closed."""
        return self._pointer is None

    def close(self):
        """Closes the database; all that is in a private one is freed. Gives "", or what was left
        in it. A closed one is passed over; one that another thread, or a block around this call,
        holds a lock of is not closed (16)."""
        if self._pointer is None:
            return ''
        handles = list(self._handles)
        for handle in handles:
            if handle._depth:
                raise Error(16, f'{self!r}: found a lock that is held, expected none')
        if not self.is_store:
            with self.write():
                self._end_unplaced(self._local.handle)
        self._findings.gone = 'its database has been closed'
        for feed in list(self._feeds):
            feed._end()
        for handle in list(self._handles):
            handle._destroy()
        _, error = checked(function('kelp_database_close', I32, Pointer, Pointer),
                           self._open_pointer())
        self._pointer = None
        self._local = threading.local()
        return error.text.decode(errors='replace')

    def handle(self, *, tenant=None, state_tracking=None, variants=None):
        """Makes a handle for this thread. `tenant` is set while it holds a lock; `state_tracking`
        True or False turns the state bytes of what it makes on or off; `variants` fixes the
        variants of types by name, as {"ospf_area": 0}."""
        return Handle(self, tenant, state_tracking, variants)

    def read(self):
        """The read lock of this thread, as a context: `with database.read():`."""
        return Lock(self, READ)

    def write(self):
        """The write lock of this thread, as a context. In a store the block is a transaction,
        which is committed at its end and undone when it raises. A private database is not
        undone."""
        return Lock(self, WRITE)

    def memory(self):
        """What the objects take: a dictionary of numbers."""
        with self._enter(READ, True):
            numbers = MemoryStatistics()
            function('kelp_database_memory', None, Pointer, Pointer)(self._pointer,
                                                                   ctypes.byref(numbers))
            return {name: getattr(numbers, name) for name, _ in MemoryStatistics._fields_}

    def collect(self):
        """Finishes what was put off: ends rows and tables that were marked for it, of tables that
        are marked for replication. Gives how many."""
        with self._enter(WRITE) as handle:
            report = CollectorReport()
            checked(function('kelp_collector_run', I32, Pointer, Pointer, Pointer),
                    handle._pointer, ctypes.byref(report))
            self._end_uncollected()
            return {name: getattr(report, name) for name, _ in report._fields_}

    # --- tables ---

    def table(self, kind, name, create=False):
        """The table of that kind ("ospf_area", or its class) and name; with `create` it is made
        when it is missing."""
        return self._model().table_class(kind).open(self, name, create)

    def new_table(self, kind):
        """A new table without a name, for a row to refer to."""
        return self._model().table_class(kind).make(self)

    def tables(self):
        """All tables of the database, named or not."""
        with self._enter(READ):
            return [self._model().table_at(self, address) for address in self._table_addresses()]

    def _table_addresses(self):
        following = function('kelp_database_next_table', Pointer, Pointer, Pointer)
        addresses = []
        while address := following(self._pointer, addresses[-1] if addresses else None):
            addresses.append(address)
        return addresses

    @property
    def instances(self):
        """The instances of the tree that the command line tool loads and stores, by family and
        router ID: `database.instances[4, "10.0.0.1"].areas[0]`."""
        with self._enter(READ):
            root = self.table('ospf_rev1', TREE).first()
            table = None if root is None else root.instance
            if table is None:
                raise NoSuchKey('found no tree of instances in the database')
            return table

    def make_tree(self):
        """Makes the tree's root row with an empty table of instances, which it gives; 17 when
        there is a root row."""
        with self._enter(WRITE):
            return self.table('ospf_rev1', TREE, create=True).add().add_table('instance')

    @staticmethod
    def _model():
        from ._model import MODEL  # which is made of what stands here
        return MODEL

    # --- what the rest of the package calls ---

    def _open_pointer(self):
        if self._pointer is None:
            raise Closed(repr(self))
        return self._pointer

    def _thread_handle(self):
        """The handle of this thread, made when it has none."""
        if self._pointer is None:
            raise Closed(repr(self))
        try:
            return self._local.handle
        except AttributeError:
            self._local.handle = Handle(self)
            return self._local.handle

    def _enter(self, mode, explicit=False):
        """Begins a call of this thread under that lock at least, and gives it."""
        handle = self._thread_handle()
        if handle._depth:
            if handle._lock < mode:
                raise LockNeeded('found the read lock, expected the write lock: '
                                 'use `with database.write():`')
        else:
            if self.is_store and not explicit:
                raise LockNeeded('found no lock, expected one: a store is touched within '
                                 '`with database.read():` or `with database.write():`')
            if handle._pointer is None:
                raise Closed('the handle')
            handle._take(mode)
        handle._depth += 1
        return Call(handle)

    def _life_of(self, address):
        """The life of the record or table at an address, made when it is new."""
        handle = self._local.handle
        life = handle._lives.get(address)
        if life is None:
            life = handle._lives[address] = Life(self, address, handle._findings)
        return life

    def _end_life(self, address, why='it has been ended'):
        life = self._local.handle._lives.pop(address, None)
        if life is not None:
            life.gone = why

    def _end_uncollected(self):
        """Says of tables that are no longer in the database, and of their rows, that they are
        gone."""
        there = set(self._table_addresses())
        for life in list(self._local.handle._lives.values()):
            table = life.table or life
            if table.address not in there:
                self._end_life(life.address, 'the collector has ended its table')

    def _own(self, address, destroy):
        """The life of a new object that nothing in the database owns yet."""
        life = Life(self, address, self._local.handle._findings, destroy)
        self._unplaced.add(life)
        return life

    def _end_unplaced(self, handle):
        """Ends the objects that nothing in the database owns: nobody can reach them any more."""
        for life in list(self._unplaced):
            if life.destroy is not None and life.why_gone() is None:
                life.gone = LEFT_UNDER_A_LOCK if self.is_store else 'its database has been closed'
                life.destroy(handle._pointer, 0, life.address)
        self._unplaced.clear()
        self._end_abandoned(handle)

    def _end_abandoned(self, handle):
        while self._abandoned:
            findings, destroy, address = self._abandoned.popleft()
            if findings.gone is None:  # else it was undone
                destroy(handle._pointer, 0, address)


def begin(life, mode):
    """Begins a call on what has that life, and gives it."""
    call = life.database._enter(mode)
    gone = life.why_gone()
    if gone is not None:
        call.handle._leave()
        raise Gone('the object', gone)
    return call
