"""The examples of the documents run, and print what they say."""
import contextlib
import inspect
import io
import os
import pathlib
import re
import tempfile
import unittest

import ospf_harbor

PROJECT = pathlib.Path(__file__).parents[2]


class Examples(unittest.TestCase):
    def printed(self, code):
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            exec(compile(code, 'example', 'exec'), {})
        return out.getvalue()

    def of(self, document):
        """What the examples of a document print; they run in a folder with the project's."""
        blocks = re.findall(r'```python\n(.*?)```', (PROJECT / document).read_text(), re.DOTALL)
        self.assertTrue(blocks)
        before = os.getcwd()
        with tempfile.TemporaryDirectory() as folder:
            os.symlink(PROJECT / 'examples', os.path.join(folder, 'examples'))
            os.chdir(folder)
            try:
                for block in blocks:
                    printed = self.printed(block)
                    for said in re.findall(r'print\(.*\) +# (.*)', block):
                        self.assertIn(said + '\n', printed)
            finally:
                os.chdir(before)
        return printed

    def test_of_the_guide(self):
        self.assertIn('"area_id": 51', self.of('docs/python.md'))

    def test_of_the_readme(self):
        self.assertIn('0 core 10 10.255.0.2 10.255.0.3\n', self.of('README.md'))

    def test_of_the_package(self):
        text = inspect.getdoc(ospf_harbor)
        code = '\n'.join(line[4:] for line in text.splitlines() if line.startswith('    '))
        self.assertIn('name@kelp_vstring:eth0', self.printed(code))
