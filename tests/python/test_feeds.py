"""Feeds: what one reader is shown of a table, over all tables; between processes; misuse."""
import os
import subprocess
import sys
import tempfile
import threading
import unittest

import ospf_harbor
import samples
from ospf_harbor import ChangeKind, Closed, Error, LockNeeded, WrongThread

ADDS_AN_AREA = '''
import sys
import ospf_harbor
with ospf_harbor.Database(sys.argv[1]) as store, store.write():
    store.table('ospf_area', 'areas').add(area_id=51)
'''


class Feeds(samples.Mixin, unittest.TestCase):
    def test_rows_come_change_and_go(self):
        for kind in samples.tables():
            with self.subTest(table=kind._name):
                table = self.database.table(kind, 'followed', create=True)
                self.refused(Error, table.feed, code=22)
                table.follow()
                row = samples.add(table, 1)
                key, fields = table._key_of(row), row.to_dict()
                with table.feed() as feed:
                    self.assertTrue(feed.wait(0))
                    self.assertEqual(feed.changes(), [(ChangeKind.INSERTED, key, fields)])
                    self.assertEqual(feed.changes(), [])
                    self.assertFalse(feed.wait(0))
                    table.tell_changed(key)
                    table.tell_changed(key)
                    self.assertEqual(feed.changes(), [(ChangeKind.MODIFIED, key, fields)])
                    del table[key]
                    [gone] = feed.changes()
                    self.assertEqual((gone.kind, gone.key), (ChangeKind.DESTROYED, key))
                    self.assertNotIn(key, table)
                self.database.collect()
                table.free()
        self.database.collect()

    def test_misuse(self):
        table = self.database.table('ospf_area', 'areas', create=True)
        table.follow()
        feed = table.feed()
        refused = []

        def elsewhere():
            try:
                feed.changes()
            except WrongThread as why:
                refused.append(why)

        thread = threading.Thread(target=elsewhere)
        thread.start()
        thread.join()
        self.assertEqual(len(refused), 1)
        with self.database.read():
            self.refused(Error, feed.wait, 0, code=35)
        feed.close()
        feed.close()
        self.refused(Closed, feed.changes)
        self.refused(Closed, feed.wait, 0)
        table.free()
        self.database.collect()
        other = ospf_harbor.Database()
        areas = other.table('ospf_area', 'areas', create=True)
        areas.follow()
        left = areas.feed()
        self.assertIn('areas', other.close())
        self.refused(Closed, left.changes)
        left.close()

    def test_hears_of_other_processes(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, 'store')
            with ospf_harbor.Database(path) as store:
                with store.write():
                    store.table('ospf_area', 'areas', create=True).follow()
                with store.read():
                    feed = store.table('ospf_area', 'areas').feed()
                self.refused(LockNeeded, feed.changes)
                other = subprocess.Popen([sys.executable, '-c', ADDS_AN_AREA, path])
                self.assertTrue(feed.wait(20))
                self.assertEqual(other.wait(), 0)
                with store.read():
                    self.assertEqual(feed.changes(),
                                     [(ChangeKind.INSERTED, 51, {'area_id': 51})])
                self.assertFalse(feed.wait(0))
                feed.close()


if __name__ == '__main__':
    unittest.main()
