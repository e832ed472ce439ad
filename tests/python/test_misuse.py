"""What a program does wrong raises, with a code and a text, and ends nothing but the call: closed
databases, what has been ended, locks, threads, other databases, stores."""
import gc
import os
import subprocess
import sys
import tempfile
import threading
import unittest
import weakref

import ospf_harbor
import samples
from ospf_harbor import (BadType, BadValue, Closed, Error, Foreign, Gone, LockNeeded,
                         WrongThread)
from ospf_harbor._library import I32, I64, Pointer, U32, function


def calls_on(thing):
    """All that can be asked of an object, a row or a table without arguments."""
    calls = [('repr', lambda: repr(thing))]
    for name in dir(type(thing)):
        if name.startswith('_') or name in ('database', 'rows', 'items'):
            continue
        member = getattr(type(thing), name)
        if callable(member) and not isinstance(member, type):
            if name in ('end', 'free', 'clear', 'to_dict', 'to_json', 'to_image', 'to_text',
                        'to_xml', 'to_record_image', 'to_record_xml', 'to_dicts', 'first', 'copy'):
                calls.append((name, getattr(thing, name)))
        else:
            calls.append((name, lambda name=name: getattr(thing, name)))
    return calls


def in_thread(call):
    """Makes the call in another thread; what it raises is raised here."""
    caught = []

    def run():
        try:
            call()
        except Exception as failure:
            caught.append(failure)

    thread = threading.Thread(target=run)
    thread.start()
    thread.join()
    if caught:
        raise caught[0]


class Ended(samples.Mixin, unittest.TestCase):
    def everything_raises(self, thing, kind):
        for name, call in calls_on(thing):
            with self.subTest(thing=type(thing).__name__, name=name):
                if name == 'repr':
                    self.assertIn(type(thing).__name__ if not isinstance(
                        thing, ospf_harbor.Table) else thing._name, call())
                elif name == 'state_byte':
                    continue
                else:
                    self.refused(kind, call)
        if isinstance(thing, ospf_harbor.Structure):
            for field in samples.settable(type(thing)):
                self.refused(kind, setattr, thing, field.name, samples.values(field)[0])
            self.refused(kind, thing.state_byte, next(iter(thing._fields)))
            self.refused(kind, thing.assign, {})
            self.refused(kind, thing.__eq__, thing)

    def test_rows_and_what_is_in_them(self):
        for kind in samples.tables():
            table = samples.filled(self.database, kind)
            row = table.first()
            inside = [getattr(row, field.name) for field in row._fields.values()
                      if field.form == 'embedded']
            inside += [row.key] if kind._key_class else []
            del table[samples.key_of(kind, 0)]
            for thing in (row, *inside):
                self.everything_raises(thing, Gone)

    def test_tables(self):
        for kind in samples.tables():
            table = self.database.table(kind, 'x', create=True)
            again = self.database.table(kind, 'x')
            table.free()
            self.everything_raises(again, Gone)
            self.refused(Gone, samples.add, again, 0)
            self.refused(Gone, next, again.rows())
            self.refused(Gone, again.__getitem__, samples.key_of(kind, 0))

    def test_rows_of_other_tenants_keep_their_table(self):
        table = self.database.table('ospf_area', 'x', create=True)
        theirs, mine = self.database.handle(tenant=5), self.database.handle(tenant=6)
        with theirs.write():
            row = samples.add(table, 1)
        with mine.write():
            self.assertEqual(len(table), 0)
            self.refused(Error, table.free, code=16)
        self.assertEqual(row.area_id, 1)
        with theirs.write():
            table.clear()

    def test_a_walk_over_a_row_that_is_ended(self):
        for kind in samples.tables():
            table = samples.filled(self.database, kind)
            walk = table.rows()
            next(walk).end()
            self.refused(Gone, next, walk)
            self.assertEqual(len(list(table.rows())), 1)
            for row in list(table.values()):
                row.end()
            self.assertEqual(len(table), 0)

    def test_tables_that_are_marked_for_replication(self):
        mark = function('kelp_table_enable_cursors', I32, Pointer, Pointer, U32, Pointer)
        for kind in samples.tables():
            table = samples.filled(self.database, kind)
            with self.database.handle().write():
                mark(self.database._local.handle._pointer, table._address, 1, None)
            row = table.first()
            row.end()
            self.everything_raises(row, Gone)
            self.assertEqual(list(table), [samples.key_of(kind, 1)])
            self.assertEqual(self.database.collect()['records_ended'], 1)
            table.clear()
            self.assertEqual(self.database.collect()['records_ended'], 1)
            table.free()
            self.refused(Gone, len, table)
            self.database.collect()
            above = self.database.new_table('ospf_area').add(area_id=1)
            below = above.add_table('interfaces')
            with self.database.write():
                mark(self.database._local.handle._pointer, below._address, 1, None)
                row = below.add(name='x')
                row.end()
                self.database.collect()
                below.free()
                again = above.interfaces
                above.interfaces = None
                self.database.collect()
            for thing in (below, again, row):
                self.refused(Gone, thing.to_dicts if thing is not row else thing.to_dict)
            above.table.clear()
            self.database.tables()[0].free()
        self.assertEqual(self.database.tables(), [])

    def test_an_arm_that_gave_way(self):
        for kind in samples.structures():
            for field in samples.arms(kind):
                made = kind(self.database)
                setattr(made, field.name, samples.values(field)[0])
                arm = getattr(made, field.name)
                setattr(made, field.name, samples.values(field)[1])
                if isinstance(arm, ospf_harbor.Structure):
                    self.everything_raises(arm, Gone)
                self.assertTrue(made.to_dict())

    def test_everything_of_a_closed_database(self):
        database = ospf_harbor.Database()
        things = [kind(database) for kind in samples.structures()]
        for kind in samples.tables():
            table = samples.filled(database, kind)
            things += [table, table.first()]
        handle, lock = database.handle(), database.read()
        walk = table.rows()
        next(walk)
        self.assertNotEqual(database.close(), '')
        self.assertEqual(database.close(), '')
        self.assertTrue(database.closed)
        for thing in things:
            self.everything_raises(thing, Closed)
        for call in (database.tables, database.make_tree, database.memory, database.handle,
                     handle.read().__enter__, handle.write().__enter__, lock.__enter__,
                     lambda: database.instances, lambda: next(walk),
                     lambda: database.table('ospf_area', 'x'),
                     lambda: database.new_table('ospf_area'),
                     lambda: ospf_harbor.OspfArea(database)):
            self.refused(Closed, call)
        handle.close()
        self.assertIn('closed', repr(database))

    def test_objects_that_nobody_holds_are_given_back(self):
        for kind in samples.structures():
            kind(self.database, **samples.fields_of(kind, 1))
        gc.collect()
        samples.filled(self.database, next(iter(samples.tables())))  # whoever comes next ends them

    def test_databases_that_nobody_holds_are_closed(self):
        database = ospf_harbor.Database()
        area = ospf_harbor.OspfArea(database)
        there = weakref.ref(database)
        del database
        gc.collect()
        self.assertEqual(area.area_id, 0)
        del area
        gc.collect()
        self.assertIsNone(there())


class Others(samples.Mixin, unittest.TestCase):
    def test_things_of_another_kind(self):
        for wrong in (None, 5, 'x', object(), [], ospf_harbor.OspfArea):
            self.refused(BadValue, self.database.table, wrong, 'x')
            if wrong is not None:
                self.refused(BadType, ospf_harbor.OspfArea, wrong)
        for kind in samples.tables():
            for name in ('', 'a\0b'):
                self.refused(BadValue, self.database.table, kind, name, create=True)
            self.refused(BadType, self.database.table, kind, 5)
            self.refused(Error, self.database.table, kind, 'x' * 300, create=True, code=7)
            self.refused(BadType, kind, self.database)
            self.refused(BadType, kind._row_class, self.database)
        for kind in samples.structures():
            made = kind(self.database)
            other = next(each for each in samples.structures() if each is not kind)(self.database)
            self.refused(BadType, made.assign, other)
            self.refused(BadType, made.assign, 5)
            self.assertNotEqual(made, other)
            self.assertNotEqual(made, 5)
            with self.assertRaises(TypeError):
                hash(made)
            with self.assertRaises(TypeError):
                made < other

    def test_an_object_moves_into_another_database_as_a_copy(self):
        other = ospf_harbor.Database()
        table = self.database.table('ospf_area', 'x', create=True)
        area = ospf_harbor.OspfArea(other, area_id=7)
        table.add(area)
        area.area_id = 8
        self.assertEqual(list(table), [7])
        area.interfaces = other.new_table('ospf_interface')
        self.refused(Foreign, table.add, area)
        self.assertEqual(list(table), [7])

    def test_without_memory(self):
        small = ospf_harbor.Database(memory_limit=64 << 10)
        table = small.table('ospf_interface', 'x', create=True)
        with self.assertRaises(Error) as caught:
            for index in range(100000):
                table.add(name='x' * 100 + str(index))
        self.assertEqual(caught.exception.code, 12)
        self.assertEqual(len(table), index)
        self.assertEqual(len(table.to_dicts()), index)
        table.clear()
        table.free()
        self.assertEqual(small.close(), '')


class Allocations(samples.Mixin, unittest.TestCase):
    """Every allocation fails once: the call says so, changes nothing, and leaves nothing behind."""

    def failing(self, call):
        """Makes the call with each of its allocations failing, until it is done."""
        fail_after = function('kelp_database_fail_allocation_after', None, Pointer, I64)
        for count in range(100):
            fail_after(self.database._pointer, count)
            try:
                call()
                return count
            except Error as failure:
                self.assertEqual(failure.code, 12, str(failure))
            finally:
                fail_after(self.database._pointer, -1)
        raise AssertionError('it never ends')

    def test_of_objects(self):
        for kind in samples.structures():
            fields = samples.fields_of(kind, 1)
            made = []
            self.assertGreater(self.failing(lambda: made.append(kind(self.database, **fields))), 0)
            self.assertEqual(made[0].to_dict(), fields)
            image, document = made[0].to_image(), made[0].to_xml()
            self.failing(lambda: kind.from_image(image, self.database))
            self.failing(lambda: kind.from_xml(document, self.database))

    def test_of_rows(self):
        for kind in samples.tables():
            table = samples.filled(self.database, kind, 1)
            before = table.to_dicts()
            self.assertGreater(self.failing(lambda: samples.add(table, 1)), 0)
            self.assertEqual(len(table), 2)
            self.assertEqual(table.to_dicts()[:1], before)
            image = table[samples.key_of(kind, 1)].to_record_image()
            del table[samples.key_of(kind, 1)]
            self.failing(lambda: table.add_image(image))
            self.assertEqual(len(table), 2)
            row = table.first()
            for field in row._fields.values():
                if field.form == 'reference':
                    self.failing(lambda: row.add_table(field.name))
                    self.assertEqual(len(getattr(row, field.name)), 0)


class Locks(samples.Mixin, unittest.TestCase):
    def test_nothing_changes_under_the_read_lock(self):
        table = samples.filled(self.database, ospf_harbor.OspfAreaTable)
        area = table.first()
        with self.database.read():
            self.assertEqual(area.key, 0)
            for call in (lambda: samples.add(table, 5), table.clear, area.end, table.free,
                         lambda: setattr(area, 'interfaces', None),
                         lambda: area.add_table('interfaces'),
                         lambda: ospf_harbor.OspfArea(self.database),
                         lambda: self.database.write().__enter__()):
                self.refused(LockNeeded, call)
            with self.database.read():
                self.assertEqual(len(table), 2)
        with self.database.write():
            with self.database.read():
                samples.add(table, 5)
        self.assertEqual(len(table), 3)

    def test_locks_that_are_asked_for_twice_or_left_twice(self):
        lock = self.database.read()
        self.refused(Error, lock.__exit__, None, None, None, code=1)
        with lock:
            self.refused(Error, lock.__enter__, code=35)
            handle = self.database.handle()
            self.refused(Error, handle.write().__enter__, code=35)
        self.refused(Error, lock.__exit__, None, None, None, code=1)
        with lock:
            self.assertEqual(self.database.tables(), [])
        with handle.write():
            self.refused(Error, handle.close, code=16)
            self.refused(Error, self.database.close, code=16)
        handle.close()
        handle.close()
        self.refused(Closed, handle.read().__enter__)

    def test_other_threads_have_their_own(self):
        handle = self.database.handle()
        self.refused(WrongThread, in_thread, handle.read().__enter__)
        self.refused(WrongThread, in_thread, handle.close)
        with self.database.read() as _:
            pass
        lock = self.database.write()
        lock.__enter__()
        self.refused(WrongThread, in_thread, lambda: lock.__exit__(None, None, None))
        self.refused(Error, in_thread, self.database.close, code=16)
        lock.__exit__(None, None, None)
        area = ospf_harbor.OspfArea(self.database, area_id=5)
        in_thread(lambda: setattr(area, 'area_id', 6))
        self.assertEqual(area.area_id, 6)

    def test_many_threads_at_once(self):
        table = self.database.table('ospf_area', 'x', create=True)
        failures = []
        names = set(ospf_harbor.OspfArea(self.database).to_dict())

        def work(number):
            try:
                for turn in range(40):
                    row = table.add(area_id=number * 1000 + turn)
                    for each in table.to_dicts():
                        self.assertEqual(set(each), names)
                    self.assertGreaterEqual(len(list(table.values())), 1)
                    if turn % 2:
                        row.end()
            except Gone as why:  # of a walk, by another thread
                self.assertIn('walk', str(why))
            except Exception as why:
                failures.append(why)

        threads = [threading.Thread(target=work, args=(number,)) for number in range(6)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])


class Stores(samples.Mixin, unittest.TestCase):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = os.path.join(folder.name, 'store')
        self.store = ospf_harbor.Database(self.path)
        self.addCleanup(self.store.close)

    def test_a_forked_child(self):
        """Has private databases as they were, and of stores nothing."""
        table = samples.filled(self.database, ospf_harbor.OspfAreaTable)
        child = os.fork()
        if child == 0:
            status = 1
            try:
                samples.add(table, 5)
                self.refused(Error, self.store.read().__enter__, code=1)
                status = 0 if len(table) == 3 else 2
            finally:
                os._exit(status)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0)
        self.assertEqual(len(table), 2)

    def test_a_store_needs_a_lock(self):
        for call in (self.store.tables, lambda: self.store.table('ospf_area', 'x'),
                     lambda: ospf_harbor.OspfArea(self.store), lambda: self.store.instances):
            self.refused(LockNeeded, call)

    def test_what_was_found_under_a_lock_goes_with_it(self):
        for kind in samples.tables():
            with self.store.write():
                table = samples.filled(self.store, kind)
                row = table.first()
                inside = [getattr(row, field.name) for field in row._fields.values()
                          if field.form == 'embedded']
                loose = kind._data_class(self.store)
            with self.store.read():
                for thing in (row, loose, *inside):
                    self.refused(Gone, thing.to_dict)
                self.refused(Gone, len, table)
                found = self.store.table(kind, 'filled')
                self.assertEqual(len(found.to_dicts()), 2)
                self.assertIn(samples.key_of(kind, 1), found)
                self.refused(LockNeeded, samples.add, found, 2)

    def test_a_reader_does_not_end_what_another_found(self):
        with self.store.write():
            samples.filled(self.store, ospf_harbor.OspfAreaTable)
        with self.store.read():
            table = self.store.table('ospf_area', 'filled')

            def read():
                with self.store.read():
                    self.assertEqual(len(self.store.table('ospf_area', 'filled')), 2)

            in_thread(read)
            self.assertEqual(len(table), 2)

    def test_a_thread_that_ends_with_its_lock(self):
        found = []

        def leave():
            self.store.write().__enter__()
            ospf_harbor.OspfInterface(self.store, name='let go within the transaction')
            found.append(ospf_harbor.OspfInterface(self.store, name='let go behind it'))
            found.append(samples.filled(self.store, ospf_harbor.OspfAreaTable))

        in_thread(leave)
        gc.collect()
        with self.store.read():
            self.assertEqual(self.store.tables(), [])  # it was never committed
            self.refused(Gone, len, found.pop())
            loose = found.pop()
        with self.store.write():
            samples.filled(self.store, ospf_harbor.OspfAreaTable)
        with self.store.read():
            self.refused(Gone, loose.to_dict)

    def test_a_block_that_raises_is_undone(self):
        for kind in samples.tables():
            with self.store.write():
                samples.filled(self.store, kind)
            with self.assertRaises(ZeroDivisionError):
                with self.store.write():
                    self.store.table(kind, 'filled').clear()
                    1 / 0
            with self.store.read():
                self.assertEqual(len(self.store.table(kind, 'filled')), 2)

    def test_files_that_are_no_stores(self):
        self.refused(Error, ospf_harbor.Database, self.path, code=16)
        self.refused(Error, ospf_harbor.Database, __file__, code=22)
        self.refused(Error, ospf_harbor.Database, self.path + '-not', create=False, code=2)
        self.refused(Error, ospf_harbor.Database, name='', code=22)
        self.refused(BadType, ospf_harbor.Database, name=5)
        for wrong in ({'name': 'a\0b'}, {'memory_limit': -1}, {'wait_ms': 1 << 32}):
            self.refused(BadValue, ospf_harbor.Database, code=22, **wrong)
        for wrong in ({'tenant': -1}, {'variants': {'ospf_area': 200}}, {'variants': {'': 1}}):
            self.refused(Error, self.store.handle, code=22, **wrong)

    def test_another_process_reads_what_was_committed(self):
        with self.store.write():
            samples.filled(self.store, ospf_harbor.OspfAreaTable, 3)
        program = ('import ospf_harbor, sys\n'
                   'store = ospf_harbor.Database(sys.argv[1], read_only=True)\n'
                   'with store, store.read():\n'
                   '    print(list(store.table("ospf_area", "filled")))\n'
                   '    try: store.write().__enter__()\n'
                   '    except ospf_harbor.LockNeeded as failure: print(failure.code)\n')
        done = subprocess.run([sys.executable, '-c', program, self.path], capture_output=True,
                              text=True, check=False)
        self.assertEqual(done.stdout, '[0, 1, 2]\n1\n', done.stderr)
