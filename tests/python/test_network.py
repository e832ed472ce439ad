"""Recorded networks through Python: the tree as attributes, as dictionaries and as frames, and what
the command line tool does for Python."""
import os
import pathlib
import sys
import tempfile
import types
import unittest

import ospf_harbor
import samples

CAMPUS = pathlib.Path(__file__).parents[2] / 'examples' / 'data' / 'campus'


class Network(samples.Mixin, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.capture = str(CAMPUS / 'all.pcap')
        cls.store = ospf_harbor.load_capture(cls.capture, store=cls.folder / 'capture')
        cls.addClassCleanup(cls.store.close)

    def test_the_tree_as_attributes(self):
        with ospf_harbor.load_frr(CAMPUS / 'r1', store=self.folder / 'frr') as store, store.read():
            instance = store.instances[4, '10.255.0.1']
            self.assertEqual(instance.key.router_id, 0x0AFF0001)
            self.assertIs(instance.key.af, ospf_harbor.AddressFamily.ADDR_FAMILY_IPV4)
            neighbors = instance.areas[0].interfaces['core'].neighbors
            self.assertEqual(sorted(str(key) for key in neighbors), ['10.255.0.2', '10.255.0.3'])
            self.assertEqual(neighbors['10.255.0.2'].state.name, 'NBR_STATE_FULL')
            self.assertIs(instance.area.__class__, instance.areas.__class__)

    def test_the_tree_as_dictionaries(self):
        with self.store.read():
            instances = self.store.instances
            whole = instances.to_dicts(tables=True)
            self.assertEqual(len(whole), len(instances))
            for fields, (key, row) in zip(whole, instances.items()):
                self.assertEqual(tuple(fields['key'].values()), key)
                self.assertEqual([area['area_id'] for area in fields['area']], list(row.areas))
                for area, below in zip(fields['area'], row.areas.values()):
                    if below.area_scope_lsas is not None:
                        self.assertEqual(area['area_scope_lsas'],
                                         below.area_scope_lsas.to_dicts(tables=True))
            self.assertIn('"area_scope_lsa"', instances.to_json(tables=True))

    def test_every_row_reads_alike_one_by_one_and_at_once(self):
        with self.store.read():
            count = 0
            for table in self.store.tables():
                rows = table.to_dicts()
                for fields, row in zip(rows, table.values()):
                    fields.pop('key', None)
                    shown = {field.name: getattr(row, field.name)
                             for field in samples.settable(type(row)) if field.name in fields}
                    shown = {name: samples.as_read(value) for name, value in shown.items()}
                    self.assertEqual(shown, fields)
                    count += 1
                self.assertEqual(len(rows), len(table))
            self.assertGreater(count, 100)

    def test_routes_of_a_store_and_of_a_capture(self):
        routes = ospf_harbor.routes(self.store, '10.255.0.1', version=2)
        self.assertGreater(len(routes), 3)
        self.assertEqual(ospf_harbor.routes(self.capture, '10.255.0.1', version=2), routes)
        self.refused(ospf_harbor.Error, ospf_harbor.routes, self.store, '9.9.9.9', code=22,
                     text='9.9.9.9')
        self.refused(ospf_harbor.BadType, ospf_harbor.routes, self.database, '10.255.0.1')

    def test_differences_and_findings(self):
        self.assertEqual(ospf_harbor.diff(self.capture, self.capture), [])
        self.assertGreater(len(ospf_harbor.diff(self.capture, str(CAMPUS / 'r1'))), 0)
        self.assertIsInstance(ospf_harbor.check(self.capture), list)
        self.refused(ospf_harbor.Error, ospf_harbor.load_capture, 'no such file',
                     store=self.folder / 'no', text='no such file')
        tool, os.environ['OSPF_HARBOR_TOOL'] = os.environ['OSPF_HARBOR_TOOL'], '/no/such/tool'
        try:
            self.refused(ospf_harbor.Error, ospf_harbor.diff, 'a', 'b', code=2,
                         text='OSPF_HARBOR_TOOL')
        finally:
            os.environ['OSPF_HARBOR_TOOL'] = tool

    def test_a_tree_that_python_makes(self):
        self.refused(ospf_harbor.NoSuchKey, lambda: self.database.instances)
        instances = self.database.make_tree()
        self.refused(ospf_harbor.Error, self.database.make_tree, code=17)
        row = instances.add(key=(6, '10.0.0.9'))
        area = row.add_table('area').add(area_id='0.0.0.1')
        area.add_table('interfaces').add(name='eth0', cost=3)
        self.assertEqual(self.database.instances[6, '10.0.0.9'].areas[1].interfaces['eth0'].cost, 3)
        self.database.table('ospf_rev1', 'ospf').clear()
        self.assertEqual(len(self.database.tables()), 1)

    def test_frames(self):
        table = samples.filled(self.database, ospf_harbor.AreaScopeLsaTable)
        made = []
        stand_in = types.ModuleType('pandas')
        stand_in.DataFrame = types.SimpleNamespace(
            from_records=lambda rows: made.append(rows) or 'frame')
        there = sys.modules.get('pandas')
        try:
            sys.modules['pandas'] = stand_in
            self.assertEqual(table.to_frame(), 'frame')
            sys.modules['pandas'] = None
            self.refused(ospf_harbor.Error, table.to_frame, code=95)
        finally:
            sys.modules.pop('pandas')
            if there is not None:
                sys.modules['pandas'] = there
        rows = table.to_dicts()
        self.assertEqual([each['key.lsa_id'] for each in made[0]],
                         [each['key']['lsa_id'] for each in rows])
        values = [value for each in made[0] for value in each.values()]
        self.assertFalse(any(isinstance(value, dict) for value in values))
