"""The examples of the documents run, and print what they say; the picture of the model has all
tables, and the tool prints the same model."""
import contextlib
import inspect
import io
import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

import ospf_harbor

PROJECT = pathlib.Path(__file__).parents[2]


class Model(unittest.TestCase):
    def test_the_picture_has_every_table_and_reference(self):
        svg = '{http://www.w3.org/2000/svg}'
        picture = xml.etree.ElementTree.parse(PROJECT / 'docs' / 'model.svg').getroot()
        boxes = {group.find(f'{svg}text').text: [text.text for text in group.iter(f'{svg}text')][2:]
                 for group in picture.iter(f'{svg}g')}
        references = {name: [field.name for field in table._data_class._fields.values()
                             if field.form == 'reference']
                      for name, table in ospf_harbor.MODEL.tables.items()}
        self.assertEqual(boxes, references)
        self.assertEqual(len(picture.findall(f'{svg}path')), sum(map(len, references.values())))
        width, height = (float(picture.get(name)) for name in ('width', 'height'))
        for box in picture.iter(f'{svg}rect'):
            left, top, wide, high = (float(box.get(name)) for name in ('x', 'y', 'width', 'height'))
            self.assertTrue(0 < left < left + wide < width and 0 < top < top + high < height)

    def model(self, *words):
        return subprocess.run([os.environ['OSPF_HARBOR_TOOL'], 'model', *words], text=True,
                              capture_output=True, check=False)

    def test_the_tool_prints_the_same(self):
        kinds = {'structures': 'structure', 'enumerations': 'enumeration',
                 'flag_sets': 'flag set', 'tables': 'table'}
        rows = [{'kind': kinds[name], **row} for name in kinds
                for row in ospf_harbor.MODEL.rows[name]]
        said = self.model('--json')
        self.assertEqual([json.loads(line) for line in said.stdout.splitlines()], rows)
        listed = self.model().stdout
        for row in rows:
            self.assertRegex(listed, rf'(?m)^  {row["name"]} +{row["kind"]} +'
                             rf'{re.escape(row["meaning"])}$')
        for row in rows[::10]:
            said = self.model(row['name'])
            self.assertTrue(said.stdout.startswith(f'{row["name"]}, {row["kind"]}: '))
            for part in row.get('fields', []) + row.get('members', []):
                self.assertRegex(said.stdout,
                                 rf'(?m)^  {part["name"]} .*{re.escape(part["meaning"])}$')
            self.assertEqual(json.loads(self.model(row['name'], '--json').stdout), row)

    def test_the_tool_names_the_nearest(self):
        for asked, nearest in (('ospf_aera', 'ospf_area, '), ('neighbor', 'ospf_neighbor, ')):
            said = self.model(asked)
            self.assertEqual(said.returncode, 2)
            self.assertIn(f'found "{asked}"', said.stderr)
            self.assertIn(f'the nearest are {nearest}', said.stderr)


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
