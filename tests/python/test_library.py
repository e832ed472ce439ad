"""The structures that the package hands to the runtime are those of its headers, member by member: a
shorter one would be written behind its end."""
import pathlib
import re
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / 'tools/abi'))

import compare  # noqa: E402
from ospf_harbor import _library  # noqa: E402

IN_C = {'CollectorReport': 'kelp_collector_report', 'DatabaseOptions': 'kelp_database_options',
        'HandleOptions': 'kelp_handle_options', 'KelpError': 'kelp_error',
        'MemoryStatistics': 'kelp_memory_statistics', 'StoreOptions': 'kelp_store_options'}


class Structures(unittest.TestCase):
    def test_have_the_members_of_the_headers(self):
        declared = compare.interface_now()
        for name, in_c in IN_C.items():
            with self.subTest(structure=name):
                members = compare.members_of(declared[f'type {in_c}'], ';')
                self.assertEqual([each for each, _ in getattr(_library, name)._fields_],
                                 [re.search(r'(\w+)(\[\w+\])?$', each).group(1) for each in members])


if __name__ == '__main__':
    unittest.main()
