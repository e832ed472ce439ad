"""Random calls with random arguments on whatever is there, ended or not: each gives something or
raises an error of the package or of Python's own call, and the process goes on."""
import os
import random
import unittest

import ospf_harbor
import samples
from ospf_harbor import MODEL

STEPS = 4000
SEED = int(os.environ.get('HARBOR_PYTHON_SEED', 7))
PASSED_OVER = {'to_frame', 'from_records', 'wait'}  # which may wait without end


class Calls(samples.Mixin, unittest.TestCase):
    def setUp(self):
        super().setUp()
        self.random = random.Random(SEED)
        self.things = [self.database, ospf_harbor.Database(name='other')]

    def argument(self):
        pick = self.random.random()
        if pick < 0.3:
            return self.random.choice(self.things)
        if pick < 0.6:
            field = self.random.choice(samples.fields())[1]
            if field.form not in ('counter', 'reference'):
                return self.random.choice(samples.values(field, self.random.randrange(9)))
            return field.name
        if pick < 0.7:
            table = self.random.choice(list(samples.tables()))
            return self.random.choice([table, table._name, samples.key_of(table, 1),
                                       samples.row_of(table, 0)['fields']])
        return self.random.choice([None, 0, -1, 1 << 40, 1.5, '', 'x', 'a\0b', b'', b'\0' * 60, [],
                                   {}, (), object(), True, {'key': (1, 2)}, '10.0.0.1'])

    def take(self, made):
        if isinstance(made, (ospf_harbor.Structure, ospf_harbor.Table)):
            self.things.append(made)
        if len(self.things) > 60:
            del self.things[self.random.randrange(2, len(self.things))]

    def step(self):
        thing = self.random.choice(self.things)
        if self.random.random() < 0.2:
            table = self.random.choice(self.things[:2]).table(
                self.random.choice(list(samples.tables())), self.random.choice('ab'), create=True)
            self.take(table)
            self.take(samples.add(table, self.random.randrange(2)))
        if self.random.random() < 0.2:
            return self.take(self.random.choice(list(samples.structures()))(self.argument()))
        names = [name for name in dir(type(thing)) if not name.startswith('_')]
        names = [name for name in names if name not in PASSED_OVER]
        if isinstance(thing, ospf_harbor.Database):
            names.remove('close')
        name = self.random.choice([*names, '__getitem__', '__setitem__', '__delitem__', '__eq__',
                                   '__contains__', '__len__', '__repr__', '__lt__'])
        if self.random.random() < 0.4 and not callable(getattr(type(thing), name, None)):
            return setattr(thing, name, self.argument())
        got = getattr(thing, name)
        if callable(got):
            got = got(*(self.argument() for _ in range(self.random.choice((0, 0, 1, 1, 2)))))
        if hasattr(got, '__next__'):
            got = next(got, None)
        self.take(got)

    def test_nothing_but_errors(self):
        """AttributeError: what is not there, or is not set; the others: wrong numbers of arguments
        and kinds that Python itself refuses."""
        refused = done = 0
        for _ in range(STEPS):
            try:
                self.step()
                done += 1
            except (ospf_harbor.Error, AttributeError, TypeError, ValueError) as why:
                refused += 1
                self.assertNotIn('argument 1: <class', str(why))  # of ctypes
        self.assertGreater(done, STEPS // 10)
        self.assertGreater(refused, STEPS // 10)
        samples.empty(self.things[1])
        self.things.clear()
        self.assertEqual(MODEL.rows['library'], 'ospf_harbor_oper')
