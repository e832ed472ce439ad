#!/usr/bin/python3
"""What tools/abi/compare.py calls a break, and what an addition."""
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / 'tools/abi'))

import compare  # noqa: E402

HEADER = '''/* A header. */
#ifndef T_H
#define T_H
#define T_MOST 5
typedef struct t_opaque t_opaque;
typedef struct t_pair { int first; int second; } t_pair;
typedef struct t_options { size_t struct_size; int a; } t_options;
enum t_kind { T_A = 0, T_B = 1 };
typedef int (*t_callback)(t_opaque *of, int what);
KELP_API const char t_name[4];
KELP_API int t_do(t_opaque *what, /* of this */ int how);
static inline int t_quick(int a) { return a; }
#endif
'''
LAYOUT = '''# Places.

t: size 40, tracked 56, used 32
  a: offset 12, width 2, state 0
'''


def seen(header=HEADER, layout=LAYOUT):
    declared = {compare.name_of(each): each for each in
                map(compare.without_names, compare.statements(header))}
    return {**declared, **compare.layout_of(layout)}


class Compare(unittest.TestCase):
    def changed(self, old, new, layout=False):
        """What a change of the text breaks, and adds."""
        text = LAYOUT if layout else HEADER
        self.assertIn(old, text)
        now = seen(layout=text.replace(old, new)) if layout else seen(header=text.replace(old, new))
        return [len(each) for each in compare.compare(seen(), now)]

    def test_every_declaration_is_seen(self):
        self.assertEqual(sorted(seen()), [
            'function t_do', 'function t_quick', 'layout of t', 'layout of t.a', 'macro T_MOST',
            'type t_callback', 'type t_kind', 'type t_opaque', 'type t_options', 'type t_pair',
            'variable t_name'])

    def test_breaks(self):
        for old, new in (('int how', 'long how'), ('KELP_API int t_do', 'KELP_API long t_do'),
                         ('int how);', 'int how, int more);'), ('T_B = 1', 'T_B = 2'),
                         ('T_MOST 5', 'T_MOST 6'), ('int second;', 'int second; int third;'),
                         ('size_t struct_size; int a;', 'size_t struct_size; int b; int a;'),
                         ('t_name[4]', 't_name[8]'), ('(t_opaque *of, int what)', '(int what)'),
                         ('KELP_API int t_do(t_opaque *what, /* of this */ int how);', '')):
            with self.subTest(new=new):
                self.assertEqual(self.changed(old, new), [1, 0])
        for old, new in (('offset 12', 'offset 16'), ('used 32', 'used 40'),
                         ('  a: offset 12, width 2, state 0\n', '')):
            with self.subTest(new=new):
                self.assertEqual(self.changed(old, new, layout=True), [1, 0])

    def test_additions(self):
        for old, new in (('#endif', 'KELP_API void t_more(void);\n#endif'), ('T_B = 1', 'T_B = 1, T_C = 2'),
                         ('int a; }', 'int a; int b; }')):
            with self.subTest(new=new):
                self.assertEqual(self.changed(old, new), [0, 1])
        self.assertEqual(self.changed('size 40, tracked 56, used 32', 'size 48, tracked 64, used 32 40',
                                      layout=True), [0, 1])

    def test_neither(self):
        for old, new in (('int how', 'int other'), ('A header', 'The header'), ('*what', '* what')):
            with self.subTest(new=new):
                self.assertEqual(self.changed(old, new), [0, 0])

    def test_what_was_released_is_there(self):
        self.assertGreater(len(compare.read_interface(compare.RELEASED / 'interface.txt')), 8000)
        self.assertGreater(len(compare.interface_now()), 8000)


if __name__ == '__main__':
    unittest.main()
