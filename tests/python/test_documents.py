"""The examples of the documents run, and print what they say."""
import contextlib
import inspect
import io
import pathlib
import re
import unittest

import ospf_harbor

GUIDE = pathlib.Path(__file__).parents[2] / 'docs' / 'python.md'


class Examples(unittest.TestCase):
    def printed(self, code):
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            exec(compile(code, 'example', 'exec'), {})
        return out.getvalue()

    def test_of_the_guide(self):
        blocks = re.findall(r'```python\n(.*?)```', GUIDE.read_text(), re.DOTALL)
        self.assertTrue(blocks)
        for block in blocks:
            printed = self.printed(block)
            for said in re.findall(r'print\(.*\) +# (.*)', block):
                self.assertIn(said + '\n', printed)

    def test_of_the_package(self):
        text = inspect.getdoc(ospf_harbor)
        code = '\n'.join(line[4:] for line in text.splitlines() if line.startswith('    '))
        self.assertIn('name@kelp_vstring:eth0', self.printed(code))
